#include "catalogue/mdDataBase.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/fileKind.h"
#include "diagnostics/errors.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

void removeWorkDatabaseLinks() {
    const QString work = Paths::join(Paths::applicationFolder(), u"stat.mdb"_s);
    if (!mdDataBase::fileExists(work))
        return;
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(work);
    attempt([&] { database->TableDefs().DeleteLinks(); }, reportProgramError);
    database->Close();
}

/// Tells of a file that is no catalogue. @return true if it is refused
bool refused(const QString& file, const FileKind& kind) {
    const QString words = refusalOf(file, kind);
    if (words.isEmpty())
        return false;
    ui::asker().messageBox({.text = words, .icon = ui::Icon::Exclamation});
    return true;
}

/// Opens a file as the catalogue. Whatever else was opened would show the views of the catalogue before.
/// @return true for an open catalogue; a file that is none is refused, and nothing is open
bool openCatalogue(const QString& file, bool readOnly) {
    if (refused(file, kindByHead(file)))
        return false;
    gDatabase.setDatabase(file);
    gDatabase.OpenQXDatabase(readOnly);
    if (gDatabase.State() != 1)
        return false;
    if (!refused(file, kindOfDatabase(*gDatabase.CurrentDatabase())))
        return true;
    gDatabase.CloseDatabase();
    return false;
}

} // namespace

namespace mdDataBase {

qint16 OpenQXDatabase(const QString& file, bool readOnly) {
    const ProcedureScope scope(u"[mdDatabase.OpenQXDatabase]"_s);
    gDatabase.CloseDatabase();
    if (!fileExists(file)) {
        reportMissingFile(file);
        return 0;
    }
    if (!openCatalogue(file, readOnly))
        return gDatabase.State();
    CloseRc();
    if (gDatabase.TableExist(u"tsys_options"_s))
        GetDatabaseOptions();
    else
        GetDefaultDatabaseOptions();
    return gDatabase.State();
}

qint16 OpenLastDataBase(const QString& file) {
    const ProcedureScope scope(u"[mdDatabase.OpenLastDataBase]"_s);
    if (!fileExists(file))
        return 0;
    if (openCatalogue(file, false)) {
        CloseRc();
        GetDatabaseOptions();
    }
    return gDatabase.State();
}

void CloseDataBase() {
    const ProcedureScope scope(u"[mdDataBase.CloseDataBase]"_s);
    if (gCatalogueOptions.RemoveTableLinksOnExitDB && gDatabase.State() == 1)
        attempt([] { gDatabase.CurrentDatabase()->TableDefs().DeleteLinks(); }, reportProgramError);
    gDatabase.CloseDatabase();
    attempt(removeWorkDatabaseLinks, reportProgramError);
    CloseRc();
    gWindowSerials.fill(0);
    if (gUnloadWindows)
        gUnloadWindows();
    ui::asker().setPointer(ui::Pointer::Default);
}

void CloseRc() {
    const ProcedureScope scope(u"[mdDatabase.CloseRc]"_s);
}

void reportMissingFile(const QString& file) {
    ui::asker().messageBox({.text = TranslateText(u"Die Datenbankdatei:"_s) + u" \r\n"_s + file + u"\r\n"_s +
                                    TranslateText(u"kann nicht gefunden werden."_s)});
}

bool fileExists(const QString& path) {
    return Paths::exists(path) && !QFileInfo(Paths::onDisk(Paths::native(path))).isDir();
}

} // namespace mdDataBase
