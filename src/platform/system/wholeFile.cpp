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
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size() || !file.commit())
        return file.errorString();
    return {};
}
