#include "catalogue/fileRights.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"
#include "platform/system/Paths.h"

#include <QFile>

using namespace Qt::StringLiterals;

void giveRights(const QString& from, const QString& to) {
    // Qt adds what the current user may do, which is no bit of its own.
    const QFile::Permissions bits = QFile::Permissions(0x7077);
    const QFile::Permissions wanted = QFile::permissions(from) & bits;
    QFile file(to);
    if ((file.permissions() & bits) == wanted || file.setPermissions(wanted))
        return;
    throw ImportError(
        said(u"Die Rechte von '%1' können nicht gesetzt werden: %2"_s, u"The rights of '%1' cannot be set: %2"_s)
            .arg(Paths::native(to), file.errorString()));
}
