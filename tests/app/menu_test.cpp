#include "app/MainMenu.h"
#include "app/RecentFiles.h"
#include "app/ToolbarModel.h"
#include "app/globals.h"
#include "app/start.h"
#include "app/windowPlace.h"
#include "config/CProfile.h"
#include "config/Options.h"
#include "platform/dao/Error.h"
#include "platform/system/Paths.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Active = MainState::Active;

QStringList menuEnabledOf(const QStringList& names, const MainState& state) {
    QStringList enabled;
    for (const QString& name : names)
        if (MainMenu::enabled(name, state))
            enabled << name;
    return enabled;
}

QStringList menuKeys(const ToolbarModel& toolbar) {
    QStringList keys;
    for (const ToolbarButton& button : toolbar.buttons())
        keys << (button.isSeparator() ? u"|"_s : button.key);
    return keys;
}

} // namespace

TEST(MainMenuRules, WhatCanBeUsedFollowsTheCatalogueAndTheActiveWindow) {
    const QStringList menus = {u"mnFile"_s, u"mnuView"_s, u"mnuEdit"_s, u"mnuOptions"_s, u"mnuWindow"_s, u"mnuHelp"_s};
    const QStringList ofWindows = {u"mnuAuswertungsansicht"_s, u"mnuFilePrint"_s, u"mnuFilePreview"_s,
                                   u"mnuFileClose"_s};
    const QStringList keys = {u"ODB"_s, u"EXPL1"_s, u"A"_s, u"V"_s, u"EL"_s, u"O"_s, u"H"_s};
    const MainState none;
    EXPECT_EQ(menuEnabledOf(menus, none), (QStringList{u"mnFile"_s, u"mnuOptions"_s, u"mnuHelp"_s}));
    EXPECT_EQ(menuEnabledOf(keys, none), (QStringList{u"ODB"_s, u"O"_s, u"H"_s}));
    EXPECT_FALSE(MainMenu::enabled(u"mnFileClose"_s, none));
    EXPECT_FALSE(MainMenu::enabled(u"mnuViewExplorers(1)"_s, none)) << "its shortcut works no more than its menu";
    EXPECT_TRUE(MainMenu::enabled(u"mnuEnglishLanguage"_s, none));

    struct Case {
        Active active;
        QStringList enabled;
        bool panelLanguage;
    };
    for (const Case& c : {Case{Active::None, {}, false}, Case{Active::Explorer, ofWindows, true},
                          Case{Active::Analysis, ofWindows, false}, Case{Active::Document, ofWindows.mid(1), false},
                          Case{Active::Preview, {u"mnuFilePrint"_s, u"mnuFileClose"_s}, false},
                          Case{Active::Other, ofWindows.mid(3), false}}) {
        const MainState open{.catalogueOpen = true, .active = c.active};
        EXPECT_EQ(menuEnabledOf(menus, open), menus);
        EXPECT_EQ(menuEnabledOf(keys, open), keys) << "a button does not wait for the view menu's rules";
        EXPECT_EQ(menuEnabledOf(ofWindows, open), c.enabled) << int(c.active);
        EXPECT_EQ(MainMenu::enabled(u"mnuVVEL"_s, open), c.panelLanguage) << int(c.active);
        EXPECT_FALSE(MainMenu::enabled(u"mnuViewGraphicOptions"_s, open)) << "no chart is in view";
    }
}

// Each entry by a letter: New, rename (U), description (B), delete (L), Position; cut (X), Copy, paste (V); copy to
// (O), move to (I), copy and move Here; find (S), find next (W).
TEST(MainMenuRules, WhatEditsAndSearchesFollowsTheWindowTheKeyboardTheModeAndTheMedium) {
    const std::pair<char, QString> entries[] = {
        {'N', u"mnuNeueKategorie"_s}, {'U', u"mnuKategorieUmbenennen"_s}, {'B', u"mnuBeschreibungBearbeiten"_s},
        {'L', u"mnuLöschen"_s},       {'P', u"mnuEditShowPosition"_s},    {'X', u"mnuEditCut"_s},
        {'C', u"mnuEditCopy"_s},      {'V', u"mnuEditPaste"_s},           {'O', u"mnuEditCopyTo"_s},
        {'I', u"mnuEditMoveTo"_s},    {'H', u"mnuEditCopyHere"_s},        {'H', u"mnuEditMoveHere"_s},
        {'S', u"mnuSuchen"_s},        {'W', u"mnuWeitersuchen"_s}};
    using Focus = MainState::Focus;
    const MainState topics{.catalogueOpen = true, .active = Active::Explorer, .editStudies = true};
    MainState studies = topics, closed = topics, medium = topics, analysis = topics, table = topics;
    studies.studies = closed.studies = medium.readOnly = table.tableOrder = true;
    closed.editStudies = false;
    analysis.active = table.active = Active::Analysis;
    const QString readOnly = u"Die Datenbank ist schreibgeschützt."_s,
                  mode = u"Studien lassen sich nur ändern, wenn die Option EditStudiesMode gesetzt ist."_s;
    struct Case {
        const char* what;
        MainState state;
        Focus focus;
        std::string enabled;
        QString whyNoNew = {}, whyNoCopyTo = {};
    };
    for (Case c : {Case{"topics", topics, Focus::Tree, "NUBLPXCVOIHHSW"},
                   Case{"their variables", topics, Focus::List, "NLXCVOIHHSW"},
                   Case{"a text beside them", topics, Focus::Text, "NXCVSW"},
                   Case{"a panel beside them", topics, Focus::Elsewhere, "NXCVSW"},
                   Case{"studies", studies, Focus::Tree, "NUBLPXCVOIHHSW"},
                   Case{"variables of a study", studies, Focus::List, "NLXCVOHHSW"},
                   Case{"studies that stay as they are", closed, Focus::Tree, "SW", mode, mode},
                   Case{"their variables", closed, Focus::List, "OSW", mode},
                   Case{"a text beside them", closed, Focus::Text, "CSW", mode, mode},
                   Case{"a medium", medium, Focus::Tree, "SW", readOnly, readOnly},
                   Case{"a list on a medium", medium, Focus::List, "SW", readOnly, readOnly},
                   Case{"an analysis", analysis, Focus::Tree, "C"}, Case{"a table", table, Focus::Elsewhere, "PC"},
                   Case{"another window", {.catalogueOpen = true, .active = Active::Other}, Focus::Text, ""},
                   Case{"no window", {.catalogueOpen = true}, Focus::Tree, ""},
                   Case{"no catalogue", {.active = Active::Explorer}, Focus::Tree, ""},
                   Case{"a run", {.catalogueOpen = true, .busy = true, .active = Active::Explorer}, Focus::Tree, ""}}) {
        c.state.focus = c.focus;
        std::string enabled;
        for (const auto& [letter, name] : entries)
            if (MainMenu::enabled(name, c.state))
                enabled += letter;
        EXPECT_EQ(enabled, c.enabled) << c.what << ' ' << int(c.focus);
        EXPECT_EQ(MainMenu::reasonOff(u"mnuNeueKategorie"_s, c.state), c.whyNoNew) << c.what;
        EXPECT_EQ(MainMenu::reasonOff(u"mnuEditCopyTo"_s, c.state), c.whyNoCopyTo) << c.what;
        EXPECT_EQ(MainMenu::enabled(u"mnuErweiterteSuche"_s, c.state), c.state.catalogueOpen && !c.state.busy);
    }
    MainState nothing = topics;
    nothing.whyNotHere = u"Es ist kein Eintrag kopiert."_s;
    nothing.focus = Focus::Tree;
    EXPECT_FALSE(MainMenu::enabled(u"mnuEditCopyHere"_s, nothing));
    EXPECT_EQ(MainMenu::reasonOff(u"mnuEditMoveHere"_s, nothing), nothing.whyNotHere);
    EXPECT_EQ(MainMenu::reasonOff(u"mnuEditMoveTo"_s, nothing), QString());
}

TEST(MainMenuRules, TheHistoryNamesTheStepThatItTakesBackOrDoesAgain) {
    const auto enabled = [](bool undo, bool redo, Active active) {
        const MainState state{.catalogueOpen = true, .active = active, .canUndo = undo, .canRedo = redo};
        return menuEnabledOf({u"mnuEditUndo"_s, u"mnuEditRedo"_s}, state).size();
    };
    for (const Active active : {Active::None, Active::Explorer, Active::Analysis, Active::Other})
        EXPECT_EQ(enabled(true, false, active) * 10 + enabled(true, true, active) + enabled(false, false, active), 12);
    const QString undo = u"&Rück"_s;
    EXPECT_EQ(MainMenu::historyCaption(undo, {}), undo);
    EXPECT_EQ(MainMenu::historyCaption(undo, u"Löschen \"A & B\""_s), u"&Rück: Löschen \"A && B\""_s);
    const QString cut = MainMenu::historyCaption(undo, u"Neu\r\n\"x"_s + QString(52, u'y') + u"\U0001F600\U0001F600"_s);
    EXPECT_EQ(cut, u"&Rück: Neu \"x"_s + QString(52, u'y') + u'…') << "on one line, no half character at its end";
}

TEST(MainMenuRules, WhileSomethingRunsOnlyOtherWindowsAndTheWayOutAreLeft) {
    const MainState busy{.catalogueOpen = true, .busy = true, .active = Active::Analysis};
    QStringList left;
    for (const MenuEntry& entry : MainMenu::entries())
        if (!entry.menu.isEmpty() && !MainMenu::isMenu(entry.name) && MainMenu::enabled(entry.name, busy))
            left << entry.name;
    EXPECT_EQ(left, (QStringList{u"mnuFileExit"_s, u"mnuWindowCascade"_s, u"mnuWindowTileVertical"_s,
                                 u"mnuWindowTileHorizontal"_s, u"mnuWindowArrangeIcons"_s, u"mnuWindowNext"_s,
                                 u"mnuWindowPrevious"_s}));
    EXPECT_FALSE(MainMenu::enabled(u"A"_s, busy));
}

TEST(MainMenuRules, APanelCommandOpensItsPanelsOrClosesThemAndTheMarksFollow) {
    const int after[2][3] = {{1, 0, 1}, {2, 2, 0}};
    const QString commands[] = {u"mnu1VarWindow"_s, u"mnu2VarWindow"_s};
    for (int command = 0; command < 2; ++command)
        for (int panels = 0; panels < 3; ++panels) {
            EXPECT_EQ(MainMenu::panelsAfter(commands[command], panels), after[command][panels]) << command << panels;
            const MainState state{.catalogueOpen = true, .active = Active::Explorer, .panels = panels};
            EXPECT_EQ(MainMenu::checked(commands[command], state), panels == command + 1);
        }
    EXPECT_TRUE(MainMenu::enabled(u"mnLngE"_s, {.language = 0}) && !MainMenu::enabled(u"mnLngG"_s, {.language = 0}));
    EXPECT_TRUE(MainMenu::enabled(u"mnLngG"_s, {.language = 1}) && !MainMenu::enabled(u"mnLngE"_s, {.language = 1}));
}

TEST(Toolbar, HasAButtonForEachViewAndForEachDescriptionWithANameNumberedWithoutAGap) {
    const TestHome home;
    gOptions = {};
    gOptions.EnglishLanguage = true;
    gCatalogueOptions.NumberOfFrmExplorers = 2;
    gViews.resize(2);
    gViews.set(1, ViewTable::Name, u"Studien"_s);
    gViews.set(2, ViewTable::Name, u"Themen"_s);
    gViews.set(2, ViewTable::NameEnglish, u"Topics"_s);
    gViews.set(2, ViewTable::DescName, u"Themenbeschreibung"_s);
    ToolbarModel toolbar;
    toolbar.build();
    EXPECT_EQ(menuKeys(toolbar).join(u' '),
              u"ODB DBD | EXPL1 EXPL2 | DESC1 | A F SPSS | D | E | V VV | SCON | EL | O | | H"_s);
    EXPECT_EQ(toolbar.index(u"ODB"_s), 1);
    EXPECT_EQ(toolbar.index(u"EXPL1"_s), 4);
    EXPECT_EQ(toolbar.index(u"EXPL3"_s), 0);
    const auto button = [&](const QString& key) {
        return toolbar.buttons()[static_cast<size_t>(toolbar.index(key)) - 1];
    };
    EXPECT_EQ(button(u"DESC1"_s).command, u"mnuViewDescriptions(2)"_s);
    EXPECT_EQ(button(u"EXPL2"_s).tooltip, u"Themen"_s);
    EXPECT_TRUE(button(u"EL"_s).pressed);
    gLanguage = 1;
    toolbar.build();
    EXPECT_EQ(button(u"EXPL2"_s).tooltip, u"Topics"_s);
    gViews.clear();
    gCatalogueOptions = {};
    gOptions = {};
}

TEST(RecentFilesList, KeepsTheLastFourNewestFirstWithoutDoublesUnderAnyName) {
    const TestHome home;
    RecentFiles recent;
    recent.RegistryPath = SettingsKeys::user;
    EXPECT_EQ(recent.GetRecentFiles(), QStringList());
    const QStringList files = {u"/a/Ärzte;1 \"x\".mdb"_s, u"/a/каталог.mdb"_s, u"/a/قاعدة.mdb"_s, u"C:\\daten\\4.mdb"_s,
                               u"/a/五.klor"_s};
    for (const QString& file : files)
        recent.SetRecentFiles(file);
    EXPECT_EQ(recent.GetRecentFiles(), (QStringList{files[4], files[3], files[2], files[1]}));
    recent.SetRecentFiles(files[2]);
    EXPECT_EQ(recent.GetRecentFiles(), (QStringList{files[2], files[4], files[3], files[1]}));

    QFile(home.path(u"A.mdb"_s)).open(QIODevice::WriteOnly);
    recent.SetRecentFiles(home.path(u"A.mdb"_s));
    recent.SetRecentFiles(home.path(u"a.MDB"_s));
    EXPECT_EQ(recent.GetRecentFiles().size(), 4);
    EXPECT_EQ(recent.GetRecentFiles().value(1), files[2]) << "two spellings of one file are one entry";
}

TEST(WindowPlaces, AWindowThatCannotBeGraspedComesOntoTheNearestScreenAndOthersStay) {
    const QList<QRect> two = {{0, 0, 1920, 1040}, {1920, 0, 1280, 1024}};
    struct Case {
        QRect wanted;
        QList<QRect> screens;
        QRect placed;
    };
    for (const Case& c : {
             Case{{100, 50, 800, 600}, two, {100, 50, 800, 600}},
             Case{{-40, -5, 1000, 700}, two, {-40, -5, 1000, 700}}, // partly outside, as people leave them
             Case{{2000, 50, 800, 600}, two, {2000, 50, 800, 600}},
             Case{{2000, 50, 800, 600}, two.mid(0, 1), {1120, 50, 800, 600}}, // its screen is gone
             Case{{100, -700, 800, 600}, two, {100, 0, 800, 600}},            // the title is out of reach
             Case{{5000, 5000, 4000, 4000}, two.mid(0, 1), {0, 0, 1920, 1040}},
             Case{{0, 0, 0, -7}, two, {0, 0, 320, 240}},
             Case{{2000000000, 10, 800, 600}, two.mid(0, 1), {1120, 10, 800, 600}},
         }) {
        const QRect placed = placeOnScreens(c.wanted, c.screens);
        EXPECT_TRUE(placed == c.placed) << c.wanted.x() << ' ' << c.wanted.y() << " to " << placed.x() << ' '
                                        << placed.y() << ' ' << placed.width() << ' ' << placed.height();
    }
}

TEST(OpeningOfTheMainWindow, APathThatIsNotValidGetsItsOwnBoxAndOthersTheStandardOne) {
    const TestHome home;
    ScriptedAsker asker;
    gOptions.DatabasePath = u"Q:\\weg"_s;
    gOptions.DatabaseName = u"k.mdb"_s;
    EXPECT_FALSE(Main::openingStep([] { throw dao::Error(3044, u"not a path"_s); }));
    ASSERT_EQ(asker.boxes.size(), 1u);
    EXPECT_EQ(asker.boxes[0].text,
              u"Pfad zur DatenbankQ:\\weg\\k.mdbnicht gefunden!\r\nGeben Sie in den Optionen den korrekten "
              u"Pfad an."_s);
    EXPECT_EQ(asker.boxes[0].icon, ui::Icon::Exclamation);

    int runs = 0;
    asker.answer(ui::Answer::Retry).answer(ui::Answer::Ignore);
    EXPECT_TRUE(Main::openingStep([&] {
        ++runs;
        throw dao::Error(3061, u"Too few parameters."_s);
    }));
    EXPECT_EQ(runs, 2);
    EXPECT_EQ(asker.lastText(), u"3061\r\nToo few parameters."_s);
    gOptions = {};
}
