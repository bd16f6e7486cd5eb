#include "catalogue/fileKind.h"

#include "app/globals.h"
#include "catalogue/schema.h"
#include "platform/dao/DBEngine.h"
#include "platform/system/Paths.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <map>

using namespace Qt::StringLiterals;

namespace {

constexpr double viewsAtMost = 9;

/// The program that a survey file of that name comes from; empty for another name.
QString surveyProgramByName(const QString& path) {
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == u"sav" || suffix == u"zsav" || suffix == u"por")
        return u"SPSS"_s;
    return suffix == u"dta" ? u"Stata"_s : QString();
}

/// The same by what it begins with. A portable file says in five alphabets that it is one; ASCII is the second.
QString surveyProgramByContent(const QByteArray& head) {
    if (head.startsWith("$FL2") || head.startsWith("$FL3") || head.contains("SPSS PORT FILE"))
        return u"SPSS"_s;
    if (head.startsWith("<stata_dta>"))
        return u"Stata"_s;
    // Releases 8 to 12: number of the release, order of bytes, 1, and a byte that is not used.
    const bool isOldStata = head.size() > 3 && head[0] >= 0x69 && head[0] <= 0x73 && (head[1] == 1 || head[1] == 2) &&
                            head[2] == 1 && head[3] == 0;
    return isOldStata ? u"Stata"_s : QString();
}

/// The study table that the views of a catalogue name: that of the first view with a name and a table, `tkey_Study`
/// where the catalogue has no views of its own.
QString studyTableOf(dao::Database& database) {
    std::map<QString, QString> options;
    if (database.TableDefs().contains(u"tsys_Options"_s)) {
        const dao::RecordsetPtr rows =
            database.OpenRecordset(u"SELECT dt_OptionName, dt_OptionValue FROM tsys_Options"_s, dao::dbOpenSnapshot);
        for (; !rows->Eof(); rows->MoveNext())
            options[rows->text(u"dt_OptionName"_s)] = rows->text(u"dt_OptionValue"_s);
        rows->Close();
    }
    const int count =
        static_cast<int>(std::clamp(dao::leadingNumber(options[u"NumberOfFrmExplorers"_s], false), 1.0, viewsAtMost));
    for (int view = 1; view <= count; ++view) {
        const QString prefix = u"frmExplorer"_s + QString::number(view);
        if (!options[prefix + u"Name"_s].isEmpty() && !options[prefix + u"Table"_s].isEmpty())
            return schema::entryTableName(options[prefix + u"Table"_s]);
    }
    return schema::entryTableName(u"Study"_s);
}

} // namespace

FileKind kindByHead(const QString& path) {
    QFile file(Paths::resolved(path));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = file.read(512);
    if (head.startsWith("SQLite format 3"))
        return {};
    const QString byName = surveyProgramByName(path), byContent = surveyProgramByContent(head);
    if (!byName.isEmpty() || !byContent.isEmpty())
        return {FileKind::SurveyFile, byContent.isEmpty() ? byName : byContent, !byName.isEmpty()};
    if (head.isEmpty())
        return {FileKind::Empty};
    if (head.mid(4, 11) == "Standard Je" || head.mid(4, 11) == "Standard AC")
        return {FileKind::AccessDatabase};
    return {FileKind::NoDatabase};
}

FileKind kindOfDatabase(dao::Database& database) try {
    const QString studies = studyTableOf(database);
    dao::TableDefs& tables = database.TableDefs();
    if (tables.contains(studies))
        return {};
    if (tables.contains(u"tblStat"_s) && tables.contains(u"sys"_s))
        return {FileKind::SystemDatabase};
    for (int i = 0; i < tables.Count(); ++i) {
        const dao::TableDefPtr table = tables.Item(i);
        if (table->Attributes() == dao::dbAttachedTable)
            continue;
        const std::vector<dao::ColumnInfo> columns = table->columns();
        if (!columns.empty() && columns.front().name.compare(u"dt_CaseID"_s, Qt::CaseInsensitive) == 0)
            return {FileKind::CaseFile, table->Name()};
    }
    return {FileKind::OtherDatabase, studies};
} catch (const std::exception&) {
    return {}; // whoever reads it next tells what is wrong with it
}

FileKind kindOfFile(const QString& path, bool readOnly) {
    const FileKind byHead = kindByHead(path);
    if (byHead.kind != FileKind::Catalogue)
        return byHead;
    // A database that cannot be opened is told of by whoever opens it next.
    try {
        const dao::DatabasePtr database =
            dao::DBEngine::instance().Workspaces(0).OpenDatabase(Paths::resolved(path), false, readOnly);
        const FileKind kind = kindOfDatabase(*database);
        database->Close();
        return kind;
    } catch (const std::exception&) {
        return {};
    }
}

QStringList studyNumbersIn(const QString& path) {
    QStringList numbers;
    try {
        const dao::DatabasePtr database =
            dao::DBEngine::instance().Workspaces(0).OpenDatabase(Paths::resolved(path), false, true);
        try {
            const dao::RecordsetPtr rows = database->OpenRecordset(
                u"SELECT id_StudyNo FROM ["_s + studyTableOf(*database) + u']', dao::dbOpenSnapshot);
            for (; !rows->Eof(); rows->MoveNext())
                numbers << rows->text(u"id_StudyNo"_s);
            rows->Close();
        } catch (const std::exception&) {
            numbers.clear(); // the import says what is wrong with it
        }
        database->Close();
    } catch (const std::exception&) {
        return {};
    }
    return numbers;
}

QString kindWords(const FileKind& kind) {
    const auto words = [&]() -> QString {
        switch (kind.kind) {
        case FileKind::Catalogue:
            return {};
        case FileKind::SurveyFile:
            return kind.canBeImported
                       ? TranslateText(
                             u"ist eine Umfragedatei (%1) und kein Katalog. Sie muss erst importiert werden."_s)
                       : TranslateText(
                             u"ist eine Umfragedatei (%1) unter anderem Namen und kein Katalog. Mit der Endung "
                             u".sav, .zsav, .por oder .dta kann sie importiert werden."_s);
        case FileKind::CaseFile:
            return TranslateText(
                u"ist eine Falldatei (Tabelle %1) und kein Katalog. Öffnen Sie den Katalog, zu dem sie "
                u"gehört."_s);
        case FileKind::SystemDatabase:
            return TranslateText(u"ist die Systemdatenbank mit den Texten des Programms und kein Katalog."_s);
        case FileKind::OtherDatabase:
            return TranslateText(u"ist eine Datenbank ohne Studien (Tabelle %1) und kein Katalog."_s);
        case FileKind::AccessDatabase:
            return TranslateText(u"ist eine Datenbank von Microsoft Access; diese Form wird nicht gelesen."_s);
        case FileKind::Empty:
            return TranslateText(u"ist leer und kein Katalog."_s);
        case FileKind::NoDatabase:
            return TranslateText(u"ist keine Datenbank und kein Katalog."_s);
        }
        return {};
    }();
    return words.contains(u"%1"_s) ? words.arg(kind.detail) : words;
}

QString refusalOf(const QString& path, const FileKind& kind) {
    const QString words = kindWords(kind);
    return words.isEmpty() ? QString()
                           : TranslateText(u"Die Datei"_s) + u"\r\n"_s + Paths::native(path) + u"\r\n"_s + words;
}
