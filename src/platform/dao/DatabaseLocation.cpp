#include "platform/dao/DatabaseLocation.h"

#include "platform/dao/Error.h"
#include "platform/dao/RawFile.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

QFileInfo absoluteInfo(const QString& path) {
    QFileInfo info(Paths::onDisk(path));
    return QFileInfo(QDir::cleanPath(info.absoluteFilePath()));
}

void readStatus(DatabaseLocation& location) {
    struct stat found {};
    if (stat(QFile::encodeName(location.path).constData(), &found) != 0) {
        return;
    }
    constexpr qint64 nanosecondsOfASecond = 1'000'000'000;
    location.device = static_cast<quint64>(found.st_dev);
    location.inode = static_cast<quint64>(found.st_ino);
    location.rights = static_cast<quint32>(found.st_mode);
    location.changed = static_cast<qint64>(found.st_ctim.tv_sec) * nanosecondsOfASecond + found.st_ctim.tv_nsec;
}

void identify(DatabaseLocation& location) {
    readStatus(location);
    const QString canonical = QFileInfo(location.path).canonicalFilePath();
    location.identity = canonical.isEmpty() ? location.path : canonical;
}

} // namespace

DatabaseLocation DatabaseLocation::findNew(const QString& path) {
    const QFileInfo info = absoluteInfo(path);
    if (path.isEmpty() || !QFileInfo(info.path()).isDir()) {
        raiseEngineError(3044, path);
    }
    if (info.isDir()) {
        raiseEngineError(3051, path);
    }
    DatabaseLocation location;
    location.path = info.filePath();
    identify(location);
    location.findWritable();
    return location;
}

DatabaseLocation DatabaseLocation::find(const QString& path) {
    DatabaseLocation location = findNew(path);
    const QFileInfo info(location.path);
    if (!info.exists()) {
        raiseEngineError(3024, path);
    }
    if (!info.isFile() || !info.isReadable()) {
        raiseEngineError(3051, path);
    }
    if (info.size() == 0) {
        raiseEngineError(3343, path);
    }
    return location;
}

void DatabaseLocation::findWritable() {
    const QFileInfo file(path);
    // A change needs a journal beside the file itself, so its folder counts too, not that of a link to it.
    const QFileInfo folder(QFileInfo(identity).path());
    writable = (!file.exists() || file.isWritable()) && folder.isWritable();
}

bool DatabaseLocation::isUnchanged() const {
    DatabaseLocation now;
    now.path = path;
    readStatus(now);
    return inode != 0 && now.device == device && now.inode == inode && now.rights == rights && now.changed == changed;
}

QByteArray DatabaseLocation::uri(Mode mode) const {
    const QByteArray file = "file:" + QFile::encodeName(path).toPercentEncoding("/");
    switch (mode) {
    case Mode::ReadWrite:
        return file + "?mode=rw";
    case Mode::ReadWriteCreate:
        return file + "?mode=rwc";
    case Mode::ReadOnly:
        return file + "?mode=ro";
    case Mode::Immutable:
        return file + "?immutable=1";
    }
    return file;
}

bool DatabaseLocation::isQuiet() const {
    return QFileInfo(identity + u"-journal"_s).size() == 0 && QFileInfo(identity + u"-wal"_s).size() == 0;
}

bool DatabaseLocation::isInWal() const {
    constexpr int readVersion = 19; // offset of the version that a reader must know
    return RawFile(identity, RawFile::Access::Read).read(1, readVersion) == QByteArray(1, '\x02');
}

} // namespace dao
