#include "catalogue/fileStamp.h"

#include "platform/dao/RawFile.h"

#include <QFile>
#include <QFileInfo>
#include <QtEndian>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

bool look(const QString& path, struct stat& found) {
    return stat(QFile::encodeName(path).constData(), &found) == 0;
}

qint64 modification(const struct stat& found) {
    constexpr qint64 nanosecondsOfASecond = 1'000'000'000;
    return static_cast<qint64>(found.st_mtim.tv_sec) * nanosecondsOfASecond + found.st_mtim.tv_nsec;
}

} // namespace

FileStamp fileStamp(const QString& path) {
    constexpr int countOffset = 24, countSize = 4; // in the head of every SQLite file, the highest byte first
    // The companions of a linked file lie beside its target.
    const QString file = QFileInfo(path).canonicalFilePath();
    FileStamp stamp;
    struct stat found {};
    if (file.isEmpty() || !look(file, found))
        return stamp;
    stamp.size = found.st_size;
    stamp.modified = modification(found);
    stamp.device = found.st_dev;
    stamp.inode = found.st_ino;
    const QByteArray count = dao::RawFile(file, dao::RawFile::Access::Read).read(countSize, countOffset);
    if (!count.isEmpty())
        stamp.changes = qFromBigEndian<quint32>(count.constData());
    stamp.journal = look(file + u"-journal"_s, found) && found.st_size > 0;
    // An empty log comes and goes with whoever has the file open.
    if (look(file + u"-wal"_s, found) && found.st_size > 0) {
        stamp.logSize = found.st_size;
        stamp.logModified = modification(found);
    }
    return stamp;
}
