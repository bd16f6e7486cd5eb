#include "explorer/showCardFile.h"

#include "platform/system/Paths.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

QString showCardPath(const QString& catalogue, const QString& name) {
    const QString folder = Paths::folderOf(catalogue);
    return folder.isEmpty() ? QString() : Paths::join(folder, name);
}

QString showCardFile(const QString& catalogue, const QString& name) {
    if (Paths::folderOf(catalogue).isEmpty() || name.isEmpty() || name.contains(QChar::Null))
        return {};
    // A catalogue that is reached by a link has its files beside it, not beside the link.
    const QString folder = QFileInfo(Paths::folderOf(Paths::resolved(catalogue))).canonicalFilePath();
    const QString file = QFileInfo(Paths::onDisk(Paths::join(folder, name))).canonicalFilePath();
    const QString inside = folder.endsWith(u'/') ? folder : folder + u'/';
    if (folder.isEmpty() || !file.startsWith(inside) || !QFileInfo(file).isFile())
        return {};
    return file;
}
