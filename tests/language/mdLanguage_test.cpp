#include "app/globals.h"
#include "diagnostics/errors.h"
#include "language/CCtrl.h"
#include "language/CSys.h"
#include "language/CText.h"
#include "language/SystemDatabase.h"
#include "language/mdLanguage.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

int startWindowsShown = 0;

/// A window whose texts are its controls' own.
class FakeWindow : public ControlHost {
public:
    explicit FakeWindow(QString name) : name_(std::move(name)) {}
    std::vector<ControlText> places;
    int titlesBuilt = 0;

    QString windowName() const override { return name_; }
    std::vector<ControlText> controls() const override { return places; }
    void refreshTitles() override { ++titlesBuilt; }
    void setControlText(const ControlText& control, const QString& text) override {
        for (ControlText& place : places)
            if (place.type == control.type && place.name == control.name && place.index == control.index &&
                place.key == control.key && place.property == control.property)
                place.text = text;
    }
    QStringList texts() const {
        QStringList all;
        for (const ControlText& place : places)
            all << place.text;
        return all;
    }

private:
    QString name_;
};

class SystemTexts : public ::testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    QString path = SystemTable::path();

    SystemTexts() {
        gTextObject = {};
        gCatalogueOptions = {};
        startWindowsShown = 0;
    }
    ~SystemTexts() override {
        gTextObject = {};
        mdLanguage::showStartWindow = nullptr;
    }

    void make(SystemRows rows = {}) {
        rows.texts.push_back({u"Fehler"_s, u"Error"_s, {}});
        ASSERT_EQ(makeSystemDatabase(path, rows), QStringList());
    }
    void execute(const QString& statement) {
        const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(path);
        database->Execute(statement);
        database->Close();
    }
    CSys settings() {
        CSys object;
        object.DatabaseName = path;
        return object;
    }
};

} // namespace

TEST_F(SystemTexts, WithoutASystemDatabaseEachObjectSaysSoAndTheProgramGoesOnInGerman) {
    const QString german = u"Die Datenbankdatei "_s + path + u"\r\nkonnte nicht gefunden werden!"_s;
    const QString english = u"The Database-File "_s + path + u"\r\ncould not be found!"_s;
    mdLanguage::showStartWindow = [] { ++startWindowsShown; };
    mdLanguage::LoadTextTable();
    mdLanguage::StartProgram();
    EXPECT_EQ(gLanguage, 0);
    EXPECT_EQ(startWindowsShown, 1);
    EXPECT_EQ(gErrHandler.AppTitle, u"Varidex"_s);
    gLanguage = 1;
    EXPECT_EQ(mdLanguage::GetFormStatus(), 1);
    EXPECT_EQ(TranslateText(u"Fehler"_s), u"Fehler"_s);
    asker.setPointer(ui::Pointer::Wait);
    mdLanguage::SetLanguage(0);
    EXPECT_EQ(gLanguage, 1) << "stays where the write failed";
    EXPECT_EQ(asker.pointer(), ui::Pointer::Default);
    mdLanguage::SaveSysSettings(0, 0);
    EXPECT_EQ(gLanguage, 0) << "follows whether or not the write succeeded";
    const std::pair<QString, QString> expected[] = {{german, u"CTextObject"_s},
                                                    {german, u"SysObject"_s},
                                                    {english, u"SysObject"_s},
                                                    {english, u"SysObject"_s},
                                                    {english, u"CTextObject"_s}};
    ASSERT_EQ(asker.boxes.size(), 5u);
    for (size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(asker.boxes[i].text, expected[i].first);
        EXPECT_EQ(asker.boxes[i].title, expected[i].second);
        EXPECT_EQ(asker.boxes[i].icon, ui::Icon::Critical);
    }
}

TEST_F(SystemTexts, TheStoredLanguageAndFlagAreInForceAtTheNextStart) {
    make();
    mdLanguage::showStartWindow = [] { ++startWindowsShown; };
    mdLanguage::LoadTextTable();
    mdLanguage::StartProgram();
    EXPECT_EQ(startWindowsShown, 1) << "a new system database asks for the language";
    EXPECT_EQ(TranslateText(u"Fehler"_s), u"Fehler"_s);
    mdLanguage::SaveSysSettings(1, 0);
    gLanguage = 0;
    mdLanguage::StartProgram();
    EXPECT_EQ(startWindowsShown, 1);
    EXPECT_EQ(gLanguage, 1);
    EXPECT_EQ(TranslateText(u"fehler "_s), u"Error"_s);
    mdLanguage::SetFormStatus(1);
    mdLanguage::SetLanguage(0);
    EXPECT_EQ(mdLanguage::GetFormStatus(), 1);
    EXPECT_EQ(settings().GetLanguage(), 0);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(SystemTexts, AWriteThatChangesNoRowIsAFailureInGermanWords) {
    make();
    execute(u"delete from sys where key = 'Language'"_s);
    gLanguage = 1;
    CSys object = settings();
    object.SetLanguage(1);
    object.SetFormStatus(0);
    EXPECT_EQ(object.Status(), -1) << "a later success does not hide it";
    EXPECT_EQ(object.ErrorMessage(), u"Es wurden keine Änderungen des Wertes Language vorgenommen!"_s);
    EXPECT_EQ(object.GetLanguage(), 0);
    EXPECT_TRUE(
        object.ErrorMessage().startsWith(u"Error at: GetLanguage\r\nErrorNumber: 3021\r\nErrorDescription:\r\n"_s));
    execute(u"delete from sys"_s);
    CSys other = settings();
    other.SetFormStatus(0);
    EXPECT_EQ(other.ErrorMessage(), u"Es wurden keine Änderungen des Wertes ShowForm vorgenommen!"_s);
}

TEST_F(SystemTexts, ABrokenTextTableIsReportedAndAnUnsortedOneMisses) {
    make({{{u"Anzahl"_s, u"Count"_s, {}}, {u"Summe"_s, u"Sum"_s, {}}}, {}});
    CText table;
    table.DatabaseName = path;
    const auto recreateQuery = [&](const QString& sql) {
        const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(path);
        database->QueryDefs().Item(u"qdfTblText"_s)->setSQL(sql);
        database->Close();
        table.LoadTextTable();
    };
    recreateQuery(u"SELECT Deutsch, Englisch FROM tblText ORDER BY UCase(Trim(Deutsch)) DESC;"_s);
    EXPECT_EQ(table.Status(), 0);
    EXPECT_EQ(table.TLE(u"Summe"_s), u"Summe"_s);
    recreateQuery(u"SELECT Nix, Englisch FROM tblText;"_s);
    EXPECT_EQ(table.Status(), -1);
    EXPECT_TRUE(table.ErrorMessage().startsWith(u"PROC: LoadTextTable\r\nNR.: 3061\r\nDESC: "_s));
    recreateQuery(u"SELECT Deutsch, Englisch FROM tblText WHERE false;"_s);
    EXPECT_EQ(table.ErrorMessage(), u"The TextTable\r\ncould not be opened!"_s);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("this is no database, and long enough to be seen as none");
    file.close();
    table.LoadTextTable();
    EXPECT_EQ(table.ErrorMessage(), u"The Database "_s + path + u"\r\ncould not be opened!"_s);
    EXPECT_EQ(table.TLE(u"Summe"_s), u"Summe"_s);
}

TEST_F(SystemTexts, AWindowTakesTheTextsOfItsControlsTypeByType) {
    SystemRows rows;
    const QString window = u"frmExplorer"_s;
    rows.controls = {
        {window, u"Form"_s, u"frmExplorer"_s, u"Caption"_s, 0, u"Ansicht"_s, u"View"_s},
        {window, u"Label"_s, u"lblTitle"_s, u"Caption"_s, std::nullopt, u"Keine"_s, u"None"_s}, // of no member
        {window, u"Label"_s, u"lblTitle"_s, u"Caption"_s, 0, u"Alle"_s, u"All"_s},
        {window, u"Label"_s, u"lblTitle"_s, u"Caption"_s, 1, u"Einige"_s, u"Some"_s},
        {u"frmOther"_s, u"Label"_s, u"lblTitle"_s, u"Caption"_s, 1, u"Andere"_s, u"Others"_s},
        {window, u"CommandButton"_s, u"cmdGo"_s, u"ToolTipText"_s, std::nullopt, u"Startet"_s, u"Starts"_s},
        {window, u"commandbutton"_s, u"CMDGO"_s, u"Caption"_s, std::nullopt, u"Los"_s, u"Go"_s},
        {window, u"ComboBox"_s, u"cmbA"_s, u"List"_s, 1, u"Zwei"_s, u"Two"_s},
        {window, u"TextBox"_s, u"txtA"_s, u"Text"_s, std::nullopt, u"Feld"_s, u"Field"_s},
    };
    make(rows);
    FakeWindow explorer(window);
    explorer.places = {
        {u"Label"_s, u"lblTitle"_s, 0},
        {u"Label"_s, u"lblTitle"_s, 1, u"Caption"_s, {}, {}, u"alt"_s},
        {u"Label"_s, u"lblFree"_s, std::nullopt, u"Caption"_s, {}, {}, u"entworfen"_s},
        {u"CommandButton"_s, u"cmdGo"_s, std::nullopt, u"Caption"_s},
        {u"CommandButton"_s, u"cmdGo"_s, std::nullopt, u"ToolTipText"_s},
        {u"ComboBox"_s, u"cmbA"_s, 1, u"List"_s},
        {u"ComboBox"_s, u"cmbA"_s, 1, u"List"_s, {}, u"user_defined"_s, u"eigenes"_s},
        {u"TextBox"_s, u"txtA"_s, std::nullopt, u"Text"_s, {}, {}, u"bleibt"_s},
        {u"ListView"_s, u"lvListView"_s, 3, u"Text"_s, u"SY"_s},
        {u"ListView"_s, u"lvListView"_s, 4, u"Text"_s, u"VL"_s},
        {u"Statusbar"_s, u"sb"_s, 1, u"ToolTipText"_s, u"Welle"_s},
        {u"Form"_s, window, std::nullopt, u"Caption"_s, {}, {}, u"neu"_s},
    };
    explorer.places[6].name = u"cmbOwn"_s;
    gCatalogueOptions.VarGroupInfoName = u"Welle"_s;
    gCatalogueOptions.VarGroupInfoNameEnglish = u"Wave"_s;
    // The system database decides here, not gLanguage.
    settings().SetLanguage(1);
    mdLanguage::SetCtrlProps(explorer);
    EXPECT_EQ(explorer.texts(),
              (QStringList{u"All"_s, u"Some"_s, u"entworfen"_s, u"Go"_s, u"Starts"_s, u"Two"_s, u"eigenes"_s,
                           u"bleibt"_s, u"Jahr"_s, u"Label (Original Language)"_s, u"Wave"_s, u"View"_s}));
    QFile log(home.path(u"home/Ctrl.clf"_s));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().startsWith("[frmExplorer]\r\nfrmExplorer=neu\r\nlblTitle(0)=\r\nlblTitle(1)=alt\r\n"
                                         "lblFree=entworfen\r\n"));
    settings().SetLanguage(0);
    mdLanguage::RefreshForms({&explorer});
    EXPECT_EQ(explorer.texts()[3], u"Los"_s);
    EXPECT_EQ(explorer.titlesBuilt, 1);
    EXPECT_EQ(asker.pointer(), ui::Pointer::Default);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(SystemTexts, ControlTextsWithoutAWindowOrADatabaseFail) {
    FakeWindow window(u"frmMain"_s);
    mdLanguage::SetCtrlProps(window);
    EXPECT_EQ(asker.boxes.at(0).title, u"CCtrlObject"_s);
    CCtrl texts;
    texts.DatabaseName = path;
    texts.SetControlProps();
    EXPECT_EQ(texts.Status(), -1);
    EXPECT_EQ(texts.ErrorMessage(), u"No Form defined"_s);
}

TEST_F(SystemTexts, TheMakersOfTheTextsTakeOverANewerEditionAndExportAWindow) {
    SystemRows rows;
    rows.controls = {{u"frmMain"_s, u"Menu"_s, u"mnFile"_s, u"Caption"_s, std::nullopt, u"Datei"_s, u"Fiel"_s},
                     {u"frmMain"_s, u"Menu"_s, u"mnuFileMRU"_s, u"Caption"_s, 2, u"Zwei"_s, u"Two"_s}};
    make(rows);
    execute(u"insert into tblstatneu (FormName, CtrlTyp, CtrlName, Property, Deutsch, Englisch) "
            "values ('frmMain', 'Menu', 'mnFile', 'Caption', 'Datei', 'File')"_s);
    CCtrl texts;
    texts.DatabaseName = path;
    texts.UpdateTblStat();
    EXPECT_EQ(texts.Status(), 0) << qPrintable(texts.ErrorMessage());
    EXPECT_EQ(asker.lastText(), u"Es wurden 1 Sätze aktualisiert"_s);
    FakeWindow window(u"frmMain"_s);
    window.places = {{u"Menu"_s, u"mnFile"_s, std::nullopt}, {u"Menu"_s, u"mnuFileMRU"_s, 2}};
    settings().SetLanguage(1);
    mdLanguage::SetCtrlProps(window);
    texts.setCurrentForm(&window);
    texts.WriteCtrlProps();
    QFile file(home.path(u"home/frmMain.txt"_s));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(),
              QByteArray("frmMain;Menu;mnFile;;Caption;File\r\nfrmMain;Menu;mnuFileMRU;2;Caption;Two\r\n"));
    EXPECT_TRUE(asker.lastText().startsWith(u"Es wurden: 2 Controls in die \r\nDatei: "_s));
}
