#include "explorer/showCardFile.h"

#include "platform/system/Paths.h"

QString showCardPath(const QString& catalogue, const QString& name) {
    const QString folder = Paths::folderOf(catalogue);
    return folder.isEmpty() ? QString() : Paths::join(folder, name);
}

QString showCardFile(const QString& catalogue, const QString& name) {
    if (Paths::folderOf(catalogue).isEmpty())
        return {};
    // A catalogue that is reached by a link has its files beside it, not beside the link.
    return Paths::fileWithin(Paths::folderOf(Paths::resolved(catalogue)), name);
}
