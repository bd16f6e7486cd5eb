#include "platform/system/wholeFile.h"

#include "app/globals.h"

#include <QFileInfo>
#include <QSaveFile>

using namespace Qt::StringLiterals;

QString saveBytes(const QString& path, const QByteArray& content) {
    // A file that is written beside it and renamed would take the place of a device or a pipe.
    if (const QFileInfo there(path); there.exists() && !there.isFile() && !there.isDir())
        return said(u"keine gewöhnliche Datei"_s, u"not an ordinary file"_s);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    const qint64 written = file.write(content);
    // A disk that is full takes a part; only who goes on hears why.
    if (written >= 0 && written < content.size())
        file.write(content.mid(written));
    return written == content.size() && file.commit() ? QString() : file.errorString();
}
