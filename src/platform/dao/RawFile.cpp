#include "platform/dao/RawFile.h"

#include <QFile>
#include <cstdlib>
#include <sys/stat.h>

namespace dao {

RawFile::RawFile(const QString& path, Access access) {
    const QByteArray encoded = QFile::encodeName(path);
    struct stat found {};
    if (stat(encoded.constData(), &found) != 0 || !S_ISREG(found.st_mode)) {
        return;
    }
    sqlite3_vfs* const layer = sqlite3_vfs_find(nullptr);
    name_ = sqlite3_create_filename(encoded.constData(), "", "", 0, nullptr);
    file_ = static_cast<sqlite3_file*>(std::calloc(1, static_cast<size_t>(layer->szOsFile)));
    if (name_ == nullptr || file_ == nullptr) {
        return;
    }
    const int way = access == Access::Read ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
    int opened = 0;
    if (layer->xOpen(layer, name_, file_, way | SQLITE_OPEN_MAIN_DB, &opened) != SQLITE_OK ||
        (access == Access::ReadWrite && (opened & SQLITE_OPEN_READWRITE) == 0)) {
        if (isOpen()) {
            file_->pMethods->xClose(file_);
        }
        file_->pMethods = nullptr;
    }
}

RawFile::~RawFile() {
    if (isOpen()) {
        file_->pMethods->xUnlock(file_, SQLITE_LOCK_NONE);
        file_->pMethods->xClose(file_);
    }
    std::free(file_);
    sqlite3_free_filename(name_);
}

QByteArray RawFile::read(int size, qint64 offset) const {
    QByteArray bytes(size, '\0');
    if (!isOpen() || file_->pMethods->xRead(file_, bytes.data(), size, offset) != SQLITE_OK) {
        return {};
    }
    return bytes;
}

bool RawFile::isBeingWritten() const {
    int reserved = 0;
    return file_->pMethods->xCheckReservedLock(file_, &reserved) == SQLITE_OK && reserved != 0;
}

bool RawFile::lockAll() {
    if (file_->pMethods->xLock(file_, SQLITE_LOCK_SHARED) == SQLITE_OK &&
        file_->pMethods->xLock(file_, SQLITE_LOCK_EXCLUSIVE) == SQLITE_OK) {
        return true;
    }
    // Two that wait for each other with half of the lock in hand would wait for good.
    file_->pMethods->xUnlock(file_, SQLITE_LOCK_NONE);
    return false;
}

} // namespace dao
