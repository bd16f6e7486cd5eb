#include "catalogue/mdDataBase.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/fileKind.h"
#include "config/Options.h"
#include "diagnostics/LogFile.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QDate>
#include <QFile>
#include <QLocale>
#include <gtest/gtest.h>
#include <sqlite3.h>

using namespace Qt::StringLiterals;

namespace {

QString contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void link(dao::Database& database, const QString& name, const QString& file, const QString& table) {
    const dao::TableDefPtr definition = database.CreateTableDef(name);
    definition->setConnect(u";DATABASE="_s + file);
    definition->setSourceTableName(table);
    database.TableDefs().Append(definition);
}

int links(const QString& file) {
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(file);
    int count = 0;
    for (int i = 0; i < database->TableDefs().Count(); ++i)
        count += database->TableDefs().Item(i)->Attributes() == dao::dbAttachedTable ? 1 : 0;
    database->Close();
    return count;
}

class Opening : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
};

TEST_F(Opening, AMissingFileClosesTheCatalogueBeforeAndIsToldOnlyToWhoChoseIt) {
    catalogue.fill();
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_EQ(gDatabase.Database(), catalogue.path());
    const QString gone = home.path(u"gone.mdb"_s);
    EXPECT_EQ(mdDataBase::OpenQXDatabase(gone), 0);
    EXPECT_EQ(asker.lastText(), u"Die Datenbankdatei: \r\n"_s + gone + u"\r\nkann nicht gefunden werden."_s);
    EXPECT_EQ(gDatabase.State(), 0);
    EXPECT_EQ(gDatabase.CurrentDatabase(), nullptr);
    gLanguage = 1;
    EXPECT_EQ(gDatabase.Database(), u"Keine Datenbankdatei ausgewählt"_s);
    const size_t boxes = asker.boxes.size();
    EXPECT_EQ(mdDataBase::OpenLastDataBase(gone), 0);
    EXPECT_EQ(mdDataBase::OpenLastDataBase(QString()), 0);
    EXPECT_EQ(asker.boxes.size(), boxes);
}

TEST_F(Opening, AFileThatIsNoCatalogueIsRefusedInWordsThatSayWhatItIs) {
    catalogue.fill();
    const auto file = [this](const QString& name, const QByteArray& content) {
        QFile written(home.path(name));
        EXPECT_TRUE(written.open(QIODevice::WriteOnly));
        written.write(content);
        return written.fileName();
    };
    const auto database = [this](const QString& name) {
        dao::DBEngine::instance().Workspaces(0).CreateDatabase(home.path(name))->Close();
        return home.path(name);
    };
    // A catalogue but for the table that its first view, the second by number, stands on.
    TestCatalogue headless(home.path(), u"headless.mdb"_s);
    headless.addOption(u"NumberOfFrmExplorers"_s, u"2"_s);
    headless.addOption(u"frmExplorer1Table"_s, u"Nameless"_s);
    headless.addOption(u"frmExplorer2Name"_s, u"Umfragen"_s);
    headless.addOption(u"frmExplorer2Table"_s, u"Umfrage"_s);
    const std::pair<QString, QString> cases[] = {
        {catalogue.caseFile(u"QX1919"_s), u"eine Falldatei (Tabelle QX1919_1)"_s},
        {headless.path(), u"ohne Studien (Tabelle tkey_Umfrage)"_s},
        {database(u"bare.mdb"_s), u"ohne Studien (Tabelle tkey_Study)"_s},
        {QStringLiteral(VARIDEX_BINARIES "/Vx.mdb"), u"die Systemdatenbank"_s},
        {file(u"empty.mdb"_s, {}), u"ist leer"_s},
        {file(u"notes.mdb"_s, QByteArray(5000, 'x')), u"keine Datenbank"_s},
        {file(u"old.mdb"_s, QByteArray("\0\1\0\0Standard Jet DB\0", 20)), u"Microsoft Access"_s},
        {file(u"a.sav"_s, "$FL2@(#) SPSS"), u"eine Umfragedatei (SPSS) und kein"_s},
        {file(u"a.dta"_s, "damaged"), u"eine Umfragedatei (Stata) und kein"_s},
        {file(u"b.mdb"_s, QByteArray("\x72\2\1\0", 4)), u"eine Umfragedatei (Stata) unter anderem Namen"_s},
        {file(u"c.mdb"_s, QByteArray(40, ' ') + "ASCII SPSS PORT FILE"), u"(SPSS) unter anderem Namen"_s}};
    for (const auto& [path, words] : cases) {
        SCOPED_TRACE(qPrintable(path));
        for (const auto open :
             {+[](const QString& name) { return mdDataBase::OpenQXDatabase(name); }, mdDataBase::OpenLastDataBase}) {
            asker.boxes.clear();
            EXPECT_EQ(open(path), 0);
            ASSERT_EQ(asker.boxes.size(), 1u);
            EXPECT_TRUE(asker.lastText().contains(path) && asker.lastText().contains(words))
                << qPrintable(asker.lastText());
            EXPECT_EQ(gDatabase.State(), 0);
        }
    }
    EXPECT_FALSE(refusalOf(u"a"_s, kindOfFile(catalogue.caseFile(u"QX1919"_s))).isEmpty());
    EXPECT_TRUE(kindOfFile(home.path(u"a.sav"_s)).canBeImported);
    EXPECT_FALSE(kindOfFile(home.path(u"b.mdb"_s)).canBeImported) << "the importer goes by the name";
    headless.execute(u"DELETE FROM tsys_Options WHERE dt_OptionName = 'frmExplorer2Table'"_s);
    asker.boxes.clear();
    EXPECT_EQ(mdDataBase::OpenQXDatabase(headless.path()), 1) << "without a view of its own it is tkey_Study's";
}

// A catalogue without options gets the default view only when it is chosen by hand.
TEST_F(Opening, WithoutOptionsTheDefaultViewComesByHandAndAReportAtStart) {
    catalogue.fill();
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(catalogue.path());
    database->TableDefs().Delete(u"tsys_Options"_s);
    database->Close();

    EXPECT_EQ(mdDataBase::OpenLastDataBase(catalogue.path()), 1);
    EXPECT_GE(asker.boxes.size(), 1u);
    EXPECT_EQ(gViews.lastRow(), -1);
    EXPECT_TRUE(contents(home.path(u"home/Sql.log"_s)).contains(u"SELECT * FROM tsys_Options"_s));

    asker.boxes.clear();
    EXPECT_EQ(catalogue.open(), 1);
    EXPECT_TRUE(asker.boxes.empty());
    EXPECT_EQ(gViews.at(1, ViewTable::Name), u"Studien"_s);
    EXPECT_EQ(gViews.at(1, ViewTable::Table), u"Study"_s);
    EXPECT_EQ(gViews.at(1, ViewTable::Type), u"1"_s);
    EXPECT_EQ(gViews.at(1, ViewTable::CompAnalysis), u"0"_s);
    EXPECT_TRUE(gOptions.EnglishLanguage);
    EXPECT_TRUE(gCatalogueOptions.RemoveTableLinksOnExitDB);
}

TEST_F(Opening, ARecordsetHasItsCountAndAFailureIsLoggedAndReported) {
    catalogue.fill();
    ASSERT_EQ(catalogue.open(), 1);
    CDaoPersistance persistance;
    const auto get = [&](const QString& statement) {
        return persistance.GetRecordset(gDatabase.CurrentDatabase(), statement, dao::dbOpenDynaset);
    };
    const dao::RecordsetPtr variables = get(u"SELECT * FROM tkey_Variable WHERE fi_StudyNo = 'qx1919';"_s);
    ASSERT_NE(variables, nullptr);
    EXPECT_EQ(variables->RecordCount(), 6);
    EXPECT_EQ(variables->AbsolutePosition(), 0);
    const dao::RecordsetPtr none = get(u"SELECT * FROM tkey_Variable WHERE fi_StudyNo = 'QX1';"_s);
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->RecordCount(), 0);

    const QString wrong = u"SELECT * FROM tkey_Nowhere;"_s;
    EXPECT_EQ(get(wrong), nullptr);
    EXPECT_EQ(get(wrong), nullptr);
    EXPECT_EQ(persistance.SqlString(), wrong);
    const QString entry =
        QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat) + u"\r\n"_s + wrong + u"\r\n"_s;
    EXPECT_EQ(contents(home.path(u"home/Sql.log"_s)), entry + entry);
    EXPECT_EQ(asker.boxes.size(), 2u);
    EXPECT_TRUE(asker.lastText().contains(u"[CDaoPersistance.GetRecordset]"_s));
    EXPECT_TRUE(asker.lastText().contains(u"tkey_Nowhere"_s));
    EXPECT_EQ(asker.pointer(), ui::Pointer::Default);

    EXPECT_EQ(persistance.GetRecordset(nullptr, u"SELECT 1;"_s, dao::dbOpenDynaset), nullptr);
    EXPECT_EQ(asker.boxes.size(), 2u);

    QFile log(home.path(u"home/Sql.log"_s));
    ASSERT_TRUE(log.open(QIODevice::WriteOnly));
    log.write(QByteArray(LogFile::mostBytes - 1, 'x') + '\n');
    log.close();
    EXPECT_EQ(get(wrong), nullptr);
    EXPECT_EQ(contents(log.fileName()), entry) << "the log does not grow without end";
}

TEST_F(Opening, ClosingRemovesLinksAsTheCatalogueSaysAndThoseOfTheWorkDatabaseAlways) {
    const QString work = home.path(u"home/stat.mdb"_s);
    const auto attach = [&] {
        for (const QString& name : {u"QX1919_1"_s, u"QX1919_2"_s})
            link(*gDatabase.CurrentDatabase(), name, catalogue.caseFile(u"QX1919"_s), name);
        const dao::DatabasePtr stat = dao::DBEngine::instance().OpenDatabase(work);
        link(*stat, u"QX1919_1"_s, catalogue.caseFile(u"QX1919"_s), u"QX1919_1"_s);
        stat->Close();
    };
    static int unloaded;
    unloaded = 0;
    gUnloadWindows = [] { ++unloaded; };
    catalogue.fill();
    dao::DBEngine::instance().Workspaces(0).CreateDatabase(work)->Close();

    ASSERT_EQ(catalogue.open(), 1);
    attach();
    EXPECT_TRUE(gDatabase.TableExist(u"qx1919_1"_s));
    gWindowSerials[2] = 7;
    gCatalogueOptions.RemoveTableLinksOnExitDB = false;
    mdDataBase::CloseDataBase();
    EXPECT_EQ(links(catalogue.path()), 2);
    EXPECT_EQ(links(work), 0);
    EXPECT_EQ(gWindowSerials[2], 0);

    ASSERT_EQ(catalogue.open(), 1);
    mdDataBase::CloseDataBase();
    gUnloadWindows = nullptr;
    EXPECT_EQ(links(catalogue.path()), 0);
    EXPECT_EQ(unloaded, 2);
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_FALSE(gDatabase.TableExist(u"QX1919_1"_s));
    EXPECT_TRUE(gDatabase.TableExist(u"TKEY_VARIABLE"_s));
}

TEST_F(Opening, ClosingTakesNoTableForALinkThatHasItsName) {
    catalogue.fill();
    sqlite3* stranger = nullptr;
    sqlite3_open(catalogue.path().toUtf8().constData(), &stranger);
    const QByteArray links = "CREATE TABLE __vx_links(name, source, connect);"
                             "INSERT INTO __vx_links SELECT upper(name), 'QX1919_1', ';DATABASE=" +
                             catalogue.caseFile(u"QX1919"_s).toUtf8() +
                             "' FROM sqlite_schema WHERE type = 'table' AND name LIKE 't%'";
    const int result = sqlite3_exec(stranger, links.constData(), nullptr, nullptr, nullptr);
    sqlite3_close(stranger);
    ASSERT_EQ(result, SQLITE_OK);

    ASSERT_EQ(catalogue.open(), 1);
    const int tables = gDatabase.CurrentDatabase()->TableDefs().Count();
    ASSERT_TRUE(gCatalogueOptions.RemoveTableLinksOnExitDB);
    mdDataBase::CloseDataBase();
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_EQ(gDatabase.CurrentDatabase()->TableDefs().Count(), tables);
    EXPECT_EQ(gDatabase.CurrentDatabase()->OpenRecordset(u"SELECT * FROM tkey_Variable"_s)->RecordCount(), 8);
    mdDataBase::CloseDataBase();
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

} // namespace
