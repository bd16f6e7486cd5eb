#include "app/SampleArchive.h"

#include "platform/system/Paths.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

bool SampleArchive::isBuilt() const {
    return QFileInfo(catalogue).isFile();
}

SampleArchive SampleArchive::find(const QString& programFolder) {
    SampleArchive found;
    found.catalogue = Paths::join(Paths::join(Paths::userDataFolder(), u"samples"_s), u"solvarden.mdb"_s);
    for (const QString& folder : {u"/../share/varidex/samples"_s, u"/../samples"_s}) {
        const QString file = QDir::cleanPath(programFolder + folder + u"/archive.json"_s);
        if (found.description.isEmpty() && QFileInfo(file).isFile())
            found.description = Paths::native(file);
    }
    if (!found.description.isEmpty()) {
        found.questionnaires = Paths::join(Paths::folderOf(found.description), u"fragebogen"_s);
        found.dataSets = Paths::join(Paths::folderOf(found.description), u"daten"_s);
    }
    return found;
}
