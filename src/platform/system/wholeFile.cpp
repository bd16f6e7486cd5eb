#include "platform/system/wholeFile.h"

#include "app/globals.h"

#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

bool writeAll(QIODevice& to, const char* bytes, qint64 size) {
    while (size > 0) {
        const qint64 written = to.write(bytes, size);
        if (written <= 0)
            return false;
        bytes += written;
        size -= written;
    }
    return true;
}

bool flushAll(QFileDevice& file) {
    return file.flush() || file.flush();
}

QString saveWhole(const QString& path, const std::function<bool(QIODevice&)>& write) {
    // A file that is written beside it and renamed would take the place of a device or a pipe.
    if (const QFileInfo there(path); there.exists() && !there.isFile() && !there.isDir())
        return said(u"keine gewöhnliche Datei"_s, u"not an ordinary file"_s);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    if (!write(file))
        return {};
    return flushAll(file) && file.commit() ? QString() : file.errorString();
}

QString saveBytes(const QString& path, const QByteArray& content) {
    QString reason;
    const QString end = saveWhole(path, [&](QIODevice& file) {
        const bool written = writeAll(file, content.constData(), content.size());
        if (!written)
            reason = file.errorString();
        return written;
    });
    return end.isEmpty() ? reason : end;
}
