#include "app/globals.h"
#include "app/start.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/CProfile.h"
#include "config/Options.h"
#include "config/OptionsModel.h"
#include "diagnostics/errors.h"
#include "language/SystemDatabase.h"
#include "language/SystemTable.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString startWindow; ///< what stood when the start window was asked for
int unloaded = 0;

class StartAndStop : public ::testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;

    StartAndStop() { gOptions = {}; }
    ~StartAndStop() override {
        mdLanguage::showStartWindow = nullptr;
        gUnloadWindows = nullptr;
        gOptions = {};
    }
    static void store(const QString& name, const QString& text) {
        ASSERT_FALSE(CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, name, text));
    }
    static QString stored(const QString& name) { return storedSetting(name, u"none"_s).toString(); }
};

} // namespace

TEST_F(StartAndStop, AFreshMachineStartsWithDefaultsAsksForTheLanguageAndOpensNothing) {
    SystemRows rows;
    rows.texts = {{u"Fehler"_s, u"Error"_s, {}}};
    ASSERT_EQ(makeSystemDatabase(SystemTable::path(), rows), QStringList());
    gErrorTrapping = false;
    gOptions.MaxItems = 1;
    startWindow.clear();
    mdLanguage::showStartWindow = [] {
        startWindow = TranslateText(u"Fehler"_s) + QString::number(gOptions.MaxItems) + gErrHandler.Destination;
    };
    Main::StartServices();
    EXPECT_EQ(startWindow, u"Fehler20"_s + Paths::join(home.path(u"home"_s), u"Error.log"_s))
        << "texts, options and error handler stand before the start window";
    EXPECT_TRUE(gErrorTrapping);
    EXPECT_EQ(asker.pointer(), ui::Pointer::Default);
    EXPECT_EQ(Main::OpenDefDB(), 0);
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(StartAndStop, TheStoredCatalogueOpensAndStopStoresPlaceAndContentsSwitch) {
    TestCatalogue catalogue(home.path());
    catalogue.fill();
    const QString name = Paths::fileOf(catalogue.path()).toUpper();
    store(u"DatabasePath"_s, Paths::folderOf(catalogue.path()) + u'\\');
    store(u"DatabaseName"_s, name);
    gOptions.DatabaseName = u"not the stored one"_s;
    EXPECT_EQ(Main::OpenDefDB(), 1);
    EXPECT_EQ(gOptions.DatabaseName, name);

    unloaded = 0;
    gUnloadWindows = [] { ++unloaded; };
    gOptions.EnglishLanguage = true;
    gOptions.MaxItems = 3;
    Main::Stop(Main::WindowPlace{-15, 30, 9000, 6000});
    EXPECT_EQ(gDatabase.State(), 0);
    EXPECT_EQ(unloaded, 1);
    EXPECT_EQ(stored(u"MainLeft"_s), u"-15"_s);
    EXPECT_EQ(stored(u"MainHeight"_s), u"6000"_s);
    EXPECT_EQ(stored(u"EnglishLanguage"_s), u"1"_s);
    EXPECT_EQ(stored(u"MaxItems"_s), u"none"_s) << "no other option is written at exit";
    const Main::WindowPlace place = Main::StoredPlace(1000, 500);
    EXPECT_EQ(place.left, -15);
    EXPECT_EQ(place.width, 9000);

    gOptions.EnglishLanguage = false;
    Main::Stop(std::nullopt);
    EXPECT_EQ(stored(u"EnglishLanguage"_s), u"1"_s) << "a minimised window leaves what was stored";
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(StartAndStop, TheCatalogueOpenedLastOpensAgainUnlessTheOptionsHoldToAnother) {
    SystemRows rows;
    rows.texts = {{u"Fehler"_s, u"Error"_s, {}}};
    ASSERT_EQ(makeSystemDatabase(SystemTable::path(), rows), QStringList());
    TestCatalogue first(home.path(), u"eins.klor"_s), second(home.path(), u"zwei.mdb"_s);
    const auto nextStart = [] {
        mdDataBase::CloseDataBase();
        OptionsFromRegistry();
        const qint16 state = Main::OpenDefDB();
        Main::reopened();
        return state == 1 ? Paths::fileOf(gDatabase.Database()) : QString();
    };
    EXPECT_EQ(nextStart(), QString());
    Main::rememberCatalogue(first.path());
    OptionsModel dialog;
    EXPECT_EQ(dialog.value(u"txtDatabaseName"_s), u"eins.klor"_s) << "the dialog says what the next start opens";
    ASSERT_TRUE(dialog.apply());
    EXPECT_EQ(nextStart(), u"eins.klor"_s);
    dialog.load();
    dialog.setValue(u"txtDatabaseName"_s, u"zwei.mdb"_s);
    ASSERT_TRUE(dialog.apply());
    EXPECT_EQ(nextStart(), u"zwei.mdb"_s) << "what was set there holds";
    const dao::DatabasePtr bare = dao::DBEngine::instance().OpenDatabase(second.path());
    bare->TableDefs().Delete(u"tsys_Options"_s);
    bare->Close();
    EXPECT_EQ(nextStart(), u"zwei.mdb"_s) << "without options of its own, too, and without a word";
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    asker.boxes.clear();
    mdDataBase::CloseDataBase();
    EXPECT_EQ(Main::OpenDefDB(), 1);
    asker.answer(ui::Answer::No).answer(ui::Answer::No);
    EXPECT_EQ(nextStart(), QString()) << "the start before has ended while it opened";
    EXPECT_EQ(nextStart(), QString());
    EXPECT_EQ(asker.boxes.size(), 2u);
    EXPECT_EQ(asker.boxes.back().defaultButton, ui::Answer::No);
    asker.answer(ui::Answer::Yes);
    EXPECT_EQ(nextStart(), u"zwei.mdb"_s);
    EXPECT_EQ(nextStart(), u"zwei.mdb"_s);
    EXPECT_EQ(asker.boxes.size(), 3u) << "it opens well";
    asker.boxes.clear();
    gOptions.ReopenCatalogue = false;
    Main::rememberCatalogue(first.path());
    EXPECT_EQ(nextStart(), u"zwei.mdb"_s);
    Main::rememberCatalogue(first.path());
    QFile::remove(first.path());
    EXPECT_EQ(nextStart(), QString());
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(StartAndStop, AStoredCatalogueThatIsGoneAndABadPlaceArePassedOver) {
    store(u"DatabasePath"_s, home.path());
    store(u"DatabaseName"_s, u"gone.mdb"_s);
    store(u"MainWidth"_s, u"breit"_s);
    EXPECT_EQ(Main::OpenDefDB(), 0);
    EXPECT_EQ(Main::StoredPlace(1000, 500).width, 900);
    EXPECT_EQ(Main::StoredPlace(1000, 500).top, 0);
    EXPECT_TRUE(asker.boxes.empty());
}
