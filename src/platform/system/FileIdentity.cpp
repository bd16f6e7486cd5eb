#include "platform/system/FileIdentity.h"

#include <QFile>
#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

QString identityAt(int folder, const char* path, int flags) {
    struct statx found {};
    if (statx(folder, path, flags, STATX_INO | STATX_BTIME, &found) != 0)
        return {};
    // The number of a device may change with every start of the machine; the moment of birth does not. Where
    // a file system does not keep it, the device has to do.
    if ((found.stx_mask & STATX_BTIME) != 0)
        return u"%1.%2.%3"_s.arg(found.stx_ino).arg(found.stx_btime.tv_sec).arg(found.stx_btime.tv_nsec);
    return u"%1:%2:%3"_s.arg(found.stx_ino).arg(found.stx_dev_major).arg(found.stx_dev_minor);
}

} // namespace

QString fileIdentity(const QString& path) {
    return identityAt(AT_FDCWD, QFile::encodeName(path).constData(), AT_SYMLINK_NOFOLLOW);
}

QString fileIdentity(int descriptor) {
    return identityAt(descriptor, "", AT_EMPTY_PATH);
}
