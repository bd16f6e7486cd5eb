#include "explorer/CatalogueChange.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "explorer/ExplorerModel.h"
#include "support/PrintQt.h"
#include "support/SameTree.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using Kind = CatalogueChange::Kind;

namespace {

/// What a window of a model does with its list, without a window.
class ShowingHost : public ListviewHost {
public:
    ExplorerModel model{this};
    int readings = 0;

    void listFilled() override { ++readings; }
    void itemClick() override { model.showRow(model.list.selectedRow, false); }
    void changing() override { EXPECT_GT(gBusy, 0) << "events of the refilling lead nowhere"; }
};

/// Open models of the three views, one of the categories in English.
class Changes : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ShowingHost studyWindow, categoryWindow, englishWindow, trendWindow;
    ExplorerModel &studies = studyWindow.model, &categories = categoryWindow.model, &english = englishWindow.model,
                  &trends = trendWindow.model;

    void SetUp() override {
        catalogue.fill();
        for (int id = 11; id <= 14; ++id)
            catalogue.addCategory(u"Category"_s, id, id == 14 ? 12 : 2, id, u"Blatt %1"_s.arg(id));
        catalogue.addAssignment(u"Category"_s, 12, u"QX1919"_s, u"V7"_s);
    }

    void open() {
        ASSERT_EQ(catalogue.open(), 1);
        studies.open(1);
        categories.open(2);
        openEnglish();
        trends.open(3);
    }

    void openEnglish() {
        gOptions.EnglishLanguage = true;
        english.open(2);
        gOptions.EnglishLanguage = false;
    }

    static void execute(const QString& statement) { gDatabase.CurrentDatabase()->Execute(statement); }

    void expectFresh(EmptyTexts empty = EmptyTexts::No) {
        for (const ExplorerModel* model : ExplorerModel::open())
            EXPECT_TRUE(sameAsFresh(*model, model == &english ? empty : EmptyTexts::No));
    }

    static QString variables(const ExplorerModel& model) {
        QStringList names;
        for (const VariableRow& row : model.list.rows)
            names << row.cell(1) + u' ' + row.Text;
        return names.join(u", "_s);
    }
};

const EntryText named{u"Neu"_s, false}, described{u"Neu"_s, true};

TEST_F(Changes, EachIsTakenInPlaceAsAReadingWouldShowIt) {
    open();
    ASSERT_TRUE(categories.select(u"B12"_s));
    const QString insert = u"INSERT INTO tkey_Category (id, fid, [Order], dt_IndicatorName, dt_EnIndicatorName, "
                           "dt_IndicatorDescription) VALUES "_s;
    const struct {
        const char* name;
        QString statement;
        CatalogueChange change;
    } table[] = {
        {"a plain one, in one language",
         insert + u"(20, 2, 99, 'Neu', Null, ' ')"_s,
         {.kind = Kind::Added, .view = 2, .key = u"B20"_s, .parentKey = u"B2"_s, .original = named}},
        {"a described one in both, before the others",
         insert + u"(21, 2, 0, 'Neu', 'New', 'x')"_s,
         {.kind = Kind::Added,
          .view = 2,
          .key = u"B21"_s,
          .parentKey = u"B2"_s,
          .place = 0,
          .original = described,
          .english = EntryText{u"New"_s, false}}},
        {"below one without children, nameless",
         insert + u"(22, 13, 1, '', Null, ' ')"_s,
         {.kind = Kind::Added, .view = 2, .key = u"B22"_s, .parentKey = u"B13"_s, .original = EntryText{}}},
        {"another name and a description",
         u"UPDATE tkey_Category SET dt_IndicatorName = 'Neu', "
         "dt_IndicatorDescription = 'x' WHERE id = 12"_s,
         {.kind = Kind::Renamed, .view = 2, .key = u"b12"_s, .original = described}},
        {"in English only",
         u"UPDATE tkey_Category SET dt_EnIndicatorName = 'New' WHERE id = 12"_s,
         {.kind = Kind::Renamed, .view = 2, .key = u"B12"_s, .english = EntryText{u"New"_s, false}}},
        {"a name that goes",
         u"UPDATE tkey_Category SET dt_IndicatorName = '', dt_IndicatorDescription = ' ' "
         "WHERE id = 12"_s,
         {.kind = Kind::Renamed, .view = 2, .key = u"B12"_s, .original = EntryText{}}},
        {"behind its siblings",
         u"UPDATE tkey_Category SET [Order] = 100 WHERE id = 11"_s,
         {.kind = Kind::Moved, .view = 2, .key = u"B11"_s, .parentKey = u"B2"_s}},
        {"a way forward",
         u"UPDATE tkey_Category SET [Order] = 13 WHERE id = 21"_s,
         {.kind = Kind::Moved, .view = 2, .key = u"B21"_s, .parentKey = u"B2"_s, .place = 2}},
        {"with what stands below it",
         u"UPDATE tkey_Category SET fid = 1, [Order] = 100 WHERE id = 12"_s,
         {.kind = Kind::Moved, .view = 2, .key = u"B12"_s, .parentKey = u"B1"_s}},
        {"with what stood below it",
         u"DELETE FROM tkey_Category WHERE id = 13 OR id = 22"_s,
         {.kind = Kind::Removed, .view = 2, .key = u"B13"_s}},
        {"siblings in another order",
         u"UPDATE tkey_Category SET [Order] = 200 - [Order] WHERE fid = 2"_s,
         {.kind = Kind::Ordered, .view = 2, .key = u"B2"_s}},
        {"below one that another program has added",
         insert + u"(30, 2, 300, 'fremd', Null, Null);"_s + insert + u"(31, 30, 1, 'Neu', Null, Null)"_s,
         {.kind = Kind::Added, .view = 2, .key = u"B31"_s, .parentKey = u"B30"_s, .original = named}},
        {"one that has no place in the tree",
         u"UPDATE tkey_Category SET fid = 77 WHERE id = 31"_s,
         {.kind = Kind::Moved, .view = 2, .key = u"B31"_s, .parentKey = u"B77"_s}},
        {"the parent that was missing",
         insert + u"(77, 2, 400, 'wieder da', Null, Null)"_s,
         {.kind = Kind::Added, .view = 2, .key = u"B77"_s, .parentKey = u"B2"_s, .original = named}},
    };
    for (const auto& [name, statement, change] : table) {
        SCOPED_TRACE(name);
        for (const QString& one : statement.split(u';'))
            execute(one);
        announce({change});
        expectFresh(EmptyTexts::MayBe);
        EXPECT_EQ(categories.state.selectedKey, u"B12"_s);
        EXPECT_EQ(categories.state.selectionTitle, categories.tree.find(u"B12"_s)->Text);
        EXPECT_EQ(variables(categories), u"QX1919 V7"_s);
        EXPECT_EQ(gBusy, 0);
    }
    EXPECT_EQ(english.tree.find(u"B77"_s)->Text, u"77"_s) << "was read anew, with what it lacked";
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(Changes, ANewEntryHasNoTextInTheOtherLanguageUntilTheNextReading) {
    open();
    execute(u"INSERT INTO tkey_Category (id, fid, [Order], dt_IndicatorName) VALUES (20, 3, 1, 'Neu')"_s);
    announce({{.kind = Kind::Added, .view = 2, .key = u"B20"_s, .parentKey = u"B3"_s, .original = named}});
    EXPECT_EQ(categories.tree.find(u"B20"_s)->Text, u"Neu"_s);
    EXPECT_EQ(english.tree.find(u"B20"_s)->Text, QString());
    EXPECT_TRUE(english.tree.find(u"B3"_s)->Expanded);
    EXPECT_FALSE(sameAsFresh(english));
    english.rebuild();
    EXPECT_EQ(english.tree.find(u"B20"_s)->Text, u"20"_s);
    EXPECT_TRUE(sameAsFresh(english));
}

TEST_F(Changes, WhoStandsInWhatGoesStandsAtTheNearestThatStays) {
    open();
    catalogue.addAssignment(u"Category"_s, 13, u"QX2020"_s, u"V5"_s);
    const struct {
        const char *selected, *removed, *then;
        const char* variables;
    } table[] = {
        {"B14", "B12", "B13", "QX2020 V5"}, // from below the entry to the sibling behind it
        {"B13", "B13", "B11", ""},          // the last one's neighbour
        {"B11", "B11", "B2", "QX1919 V6, QX1919 V7"},
        {"B3", "B1", "B2", "QX1919 V6, QX1919 V7"},
        {"B2", "B2", "B0", ""},
    };
    execute(u"DELETE FROM trel_VariableCategory WHERE fid = 2"_s);
    catalogue.addAssignment(u"Category"_s, 2, u"QX1919"_s, u"V6"_s);
    catalogue.addAssignment(u"Category"_s, 2, u"QX1919"_s, u"V7"_s);
    for (const auto& [selected, removed, then, listed] : table) {
        SCOPED_TRACE(removed);
        const QString key = QString::fromLatin1(removed);
        ASSERT_TRUE(categories.select(QString::fromLatin1(selected), true));
        const QString below = key == u"B12" ? u" OR fid = 12"_s : key == u"B1" ? u" OR fid = 1"_s : QString();
        execute(u"DELETE FROM tkey_Category WHERE id = "_s + key.mid(1) + below);
        announce({{.kind = Kind::Removed, .view = 2, .key = key}});
        EXPECT_EQ(categories.state.selectedKey, QString::fromLatin1(then));
        EXPECT_EQ(categories.list.Tag, QString::fromLatin1(then));
        EXPECT_EQ(variables(categories), QString::fromLatin1(listed));
        EXPECT_EQ(categories.panelA.isFilled(), !categories.list.rows.empty());
        expectFresh();
    }
    // The same where the tree is read anew because another program has deleted.
    open();
    trends.select(u"C1"_s);
    execute(u"DELETE FROM tkey_Trend WHERE id = 1"_s);
    announce({{.kind = Kind::Ordered, .view = 3}});
    EXPECT_NE(trends.state.selectedKey, u"C1"_s);
    EXPECT_TRUE(trends.selectedNode());
    EXPECT_EQ(trends.list.Tag, trends.state.selectedKey);
}

TEST_F(Changes, InADamagedCatalogueTheTreesAreWhatAReadingGivesAndNothingIsToldTwice) {
    catalogue.addStudy(u"QX5"_s, u"verwaist"_s, {{"fid", u"G002"_s}, {"Order", 1}});
    catalogue.addCategory(u"Category"_s, 7, 8, 1, u"im Kreis"_s);
    catalogue.addCategory(u"Category"_s, 8, 7, 1, u"im Kreis"_s);
    catalogue.addCategory(u"Trend"_s, 71, 0, 5, u"ohne Platz"_s, {{"Order", dao::Value()}});
    catalogue.addCategory(u"Trend"_s, 72, 0, 5, u"ohne Platz"_s, {{"Order", dao::Value()}});
    open();
    ASSERT_EQ(asker.boxes.size(), 1u) << "the study whose group is missing";
    EXPECT_EQ(categories.unreached().size(), 2u);
    asker.boxes.clear();
    const struct {
        const char* name;
        QString statement;
        CatalogueChange change;
    } table[] = {
        {"the missing group comes, and with it its member",
         u"INSERT INTO tkey_Study (id_StudyNo, fid, [Order], dt_StudyTitle) VALUES ('G002', '0', 9, 'Gruppe 2')"_s,
         {.kind = Kind::Added, .view = 1, .key = u"AG002"_s, .parentKey = u"A0"_s, .original = named}},
        {"a cycle is broken",
         u"UPDATE tkey_Category SET fid = 2, [Order] = 50 WHERE id = 7"_s,
         {.kind = Kind::Moved, .view = 2, .key = u"B7"_s, .parentKey = u"B2"_s}},
        {"a cycle closes",
         u"UPDATE tkey_Category SET fid = 8 WHERE id = 7"_s,
         {.kind = Kind::Moved, .view = 2, .key = u"B7"_s, .parentKey = u"B8"_s}},
        {"behind siblings without a place",
         u"INSERT INTO tkey_Trend (id, fid, [Order], dt_IndicatorName) VALUES (73, 0, 900, 'Neu')"_s,
         {.kind = Kind::Added, .view = 3, .key = u"C73"_s, .parentKey = u"C0"_s, .original = named}},
        {"one of them goes",
         u"DELETE FROM tkey_Trend WHERE id = 71"_s,
         {.kind = Kind::Removed, .view = 3, .key = u"C71"_s}},
        {"what is nowhere",
         u"DELETE FROM tkey_Trend WHERE id = 4711"_s,
         {.kind = Kind::Removed, .view = 3, .key = u"C4711"_s}},
        {"the root is nobody's to move",
         u"DELETE FROM tkey_Trend WHERE id = 4711"_s,
         {.kind = Kind::Moved, .view = 3, .key = u"C0"_s, .parentKey = u"C72"_s}},
    };
    for (const auto& [name, statement, change] : table) {
        SCOPED_TRACE(name);
        execute(statement);
        announce({change});
        expectFresh();
        EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    }
    EXPECT_TRUE(categories.unreached().size() == 2u && studies.unreached().empty());
    // A group within one that sorts behind it can't show its members: a reading says so once, whatever is open.
    execute(u"UPDATE tkey_Study SET fid = 'QX2020' WHERE id_StudyNo = 'G001'"_s);
    announce({{.kind = Kind::Moved, .view = 1, .key = u"AG001"_s, .parentKey = u"AQX2020"_s}});
    EXPECT_EQ(asker.boxes.size(), 1u) << "QX1919 stands in G001";
    EXPECT_EQ(studies.tree.find(u"AQX1919"_s), nullptr);
    EXPECT_EQ(studies.unreached().size(), 1u);
    expectFresh();
}

TEST_F(Changes, TreesTooDeepAreReadAnew) {
    catalogue.together([&] {
        for (int id = 1001; id < 1500; ++id)
            catalogue.addCategory(u"Trend"_s, id, id == 1001 ? 0 : id - 1, 1, u"tief"_s);
    });
    open();
    ASSERT_TRUE(asker.boxes.empty());
    execute(u"INSERT INTO tkey_Trend (id, fid, [Order], dt_IndicatorName) VALUES (2000, 0, 9, 'Neu')"_s);
    announce({{.kind = Kind::Added, .view = 3, .key = u"C2000"_s, .parentKey = u"C0"_s, .original = named}});
    execute(u"UPDATE tkey_Trend SET fid = 2000 WHERE id = 1001"_s);
    announce({{.kind = Kind::Moved, .view = 3, .key = u"C1001"_s, .parentKey = u"C2000"_s}});
    EXPECT_EQ(asker.boxes.size(), 1u) << "told as at the opening";
    expectFresh();
    execute(u"UPDATE tkey_Trend SET fid = 0 WHERE id = 1001"_s);
    announce({{.kind = Kind::Moved, .view = 3, .key = u"C1001"_s, .parentKey = u"C0"_s}});
    expectFresh();
    EXPECT_TRUE(trends.tree.Faults.isEmpty());
}

TEST_F(Changes, RowsAreReadAnewWhereTheyMayBeOthersAndOneStaysAtOnesVariable) {
    open();
    ASSERT_TRUE(studies.select(u"AQX1919"_s));
    ASSERT_TRUE(studies.showRow(2, true));
    studies.list.selectedRow = 2;
    ASSERT_TRUE(studies.showRowInB(4));
    ASSERT_TRUE(categories.select(u"B1"_s));
    ASSERT_EQ(variables(categories), u"QX1919 V5, QX2020 V5"_s);
    ASSERT_TRUE(trends.select(u"C1"_s));
    const int before = trendWindow.readings;

    // A variable of a study goes: from its list, from the categories that list it, not from where one stands.
    execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' AND id_VarName = 'V5'"_s);
    announce({{.kind = Kind::Rows, .view = 1, .key = u"AQX1919"_s}});
    EXPECT_EQ(variables(studies), u"QX1919 V3, QX1919 V6, QX1919 V7, QX1919 V8, QX1919 V9"_s);
    EXPECT_EQ(studies.list.selectedRow, 1);
    EXPECT_EQ(studies.panelA.variable(), u"V6"_s);
    EXPECT_TRUE(studies.assignmentsShown());
    EXPECT_EQ(studies.panelA.fact(u"Position"_s).text, u"2 von 5"_s);
    EXPECT_EQ(studies.panelB.variable(), u"V8"_s);
    EXPECT_EQ(studies.panelB.fact(u"Position"_s).text, u"4 von 5"_s);
    EXPECT_EQ(variables(categories), u"QX2020 V5"_s);
    EXPECT_EQ(categories.panelA.study(), u"QX2020"_s);
    EXPECT_GT(trendWindow.readings, before) << "a trend may list it too";

    // The one that is selected goes: the one behind it is next, and at last nothing of the node is left.
    for (const auto& [gone, next] : {std::pair{u"V6"_s, u"V7"_s}, std::pair{u"V9"_s, u"V7"_s}}) {
        execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' AND id_VarName = '"_s + gone + u'\'');
        announce({{.kind = Kind::Rows, .view = 1, .key = u"AQX1919"_s}});
        EXPECT_EQ(studies.panelA.variable(), next);
        EXPECT_EQ(studies.list.rows[static_cast<size_t>(studies.list.selectedRow)].Text, next);
    }
    execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'QX1919'"_s);
    announce({{.kind = Kind::Rows, .view = 1}});
    EXPECT_TRUE(studies.list.rows.empty());
    EXPECT_FALSE(studies.panelA.isFilled());
    EXPECT_FALSE(studies.panelB.isFilled());
    EXPECT_FALSE(studies.moveB(ExplorerModel::Step::First));
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(Changes, AFilterStaysAndWhatItFoundInTheViewLeadsNowhereElse) {
    open();
    ASSERT_TRUE(categories.select(u"B1"_s));
    categories.setFilter(u"zufr"_s);
    catalogue.addAssignment(u"Category"_s, 1, u"QX1919"_s, u"V7"_s);
    announce({{.kind = Kind::Rows, .view = 2, .key = u"B1"_s}});
    EXPECT_EQ(categories.filter(), u"zufr"_s);
    EXPECT_EQ(categories.list.shown.size(), 2u);
    EXPECT_EQ(categories.list.rows.size(), 3u);

    // Over the whole view, with nothing selected, and from an entry without variables.
    for (const bool selected : {false, true}) {
        openEnglish();
        if (selected) {
            ASSERT_TRUE(english.select(u"B0"_s));
        }
        english.setFilter(u"v7"_s);
        const size_t found = english.list.rows.size();
        ASSERT_GT(found, 0u);
        ASSERT_TRUE(english.showRow(0, true));
        const QString fid = english.panelA.fid;
        execute(u"DELETE FROM trel_VariableCategory WHERE fid = "_s + fid);
        execute(u"DELETE FROM tkey_Category WHERE id = "_s + fid + u" OR fid = "_s + fid);
        announce({{.kind = Kind::Removed, .view = 2, .key = u'B' + fid}});
        EXPECT_EQ(english.filter(), u"v7"_s);
        for (size_t row = 0; row < english.list.rows.size(); ++row) {
            ASSERT_TRUE(english.showRow(static_cast<int>(row), true));
            EXPECT_NE(english.panelA.fid, fid);
        }
        expectFresh();
    }
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(Changes, AssignmentsInViewFollowTheCategoriesOfOtherViews) {
    open();
    ASSERT_TRUE(studies.select(u"AQX1919"_s));
    ASSERT_TRUE(studies.showRow(3, true));
    ASSERT_EQ(studies.panelA.variable(), u"V7"_s);
    const auto names = [&] {
        QStringList all;
        for (const Assignment& assignment : studies.DBList1)
            all << assignment.text;
        return all;
    };
    ASSERT_TRUE(names().contains(u"Blatt 12"_s));
    execute(u"UPDATE tkey_Category SET dt_IndicatorName = 'Neu' WHERE id = 12"_s);
    announce({{.kind = Kind::Renamed, .view = 2, .key = u"B12"_s, .original = named}});
    EXPECT_TRUE(names().contains(u"Neu"_s));
    EXPECT_FALSE(names().contains(u"Blatt 12"_s));
    // The variable that takes a deleted one's place shows its own.
    execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' AND id_VarName = 'V7'"_s);
    announce({{.kind = Kind::Rows, .view = 1, .key = u"AQX1919"_s}});
    EXPECT_TRUE(studies.panelA.isFilled());
    EXPECT_NE(studies.panelA.variable(), u"V7"_s);
    EXPECT_TRUE(studies.assignmentsShown());
}

TEST_F(Changes, RevealListsANodeAndLeavesOneThatIsListedWhereOneStands) {
    open();
    EXPECT_FALSE(studies.reveal(u"AQX4711"_s));
    EXPECT_TRUE(studies.reveal(u"Aqx1919"_s));
    EXPECT_EQ(studies.state.selectedKey, u"AQX1919"_s);
    studies.list.selectedRow = 3;
    ASSERT_TRUE(studies.showRow(3, true));
    EXPECT_TRUE(studies.reveal(u"AQX1919"_s));
    EXPECT_EQ(studies.list.selectedRow, 3);
    EXPECT_EQ(studies.panelA.variable(), u"V7"_s);
    EXPECT_TRUE(studies.assignmentsShown());
}

TEST_F(Changes, ViewsOfOneTableChangeTogether) {
    open();
    gViews.set(3, ViewTable::Table, u"category"_s);
    trends.open(3);
    execute(u"UPDATE tkey_Category SET dt_IndicatorName = 'Neu' WHERE id = 12"_s);
    announce({{.kind = Kind::Renamed, .view = 2, .key = u"B12"_s, .original = named}});
    EXPECT_EQ(trends.tree.find(u"C12"_s)->Text, u"Neu"_s);
    expectFresh();
}

TEST(TreesInPlace, KeepTheOrderOfAddingAndNumberWhatLives) {
    CatalogueTree tree;
    tree.addRoot(u"B0"_s, u"Kategorien"_s);
    for (const char* key : {"B1", "B2", "B3"})
        tree.add(u"B0"_s, QString::fromLatin1(key), {});
    tree.add(u"B1"_s, u"B4"_s, {});
    tree.insert(u"B0"_s, u"B5"_s, {}, true, 1);
    const auto order = [&] {
        EXPECT_TRUE(isSound(tree));
        QString keys;
        for (const CatalogueNode& node : tree.nodes())
            keys += node.id();
        return keys;
    };
    const auto below = [&] {
        QString keys;
        for (const CatalogueNode* node : tree.root()->Children)
            keys += node->id();
        return keys;
    };
    EXPECT_EQ(below(), u"1523"_s);
    const CatalogueNode* kept = tree.find(u"B3"_s);
    const struct {
        const char *key, *parent;
        int place;
        bool moves;
        const char *below, *order;
    } moves[] = {
        {"B5", "B0", 3, true, "1235", "012345"},  {"B1", "B4", 0, false, "1235", "012345"},
        {"B1", "B1", 0, false, "1235", "012345"}, {"B0", "B3", 0, false, "1235", "012345"},
        {"B1", "B0", -1, true, "2351", "023514"}, {"B1", "B0", 9, true, "2351", "023514"},
        {"B9", "B0", 0, false, "2351", "023514"}, {"B3", "B2", 0, true, "251", "025143"},
        {"B3", "B0", 1, true, "2351", "025143"},
    };
    for (const auto& [key, parent, place, does, then, added] : moves) {
        EXPECT_EQ(tree.move(QString::fromLatin1(key), QString::fromLatin1(parent), place), does) << key;
        EXPECT_EQ(below(), QString::fromLatin1(then));
        EXPECT_EQ(order(), QString::fromLatin1(added));
    }
    EXPECT_TRUE(tree.remove(u"b1"_s));
    EXPECT_FALSE(tree.remove(u"B4"_s)) << "gone with its parent";
    EXPECT_EQ(order(), u"0253"_s);
    EXPECT_EQ(tree.find(u"B3"_s), kept) << "who stays stays where it is in memory";
    EXPECT_NO_THROW(tree.add(u"B3"_s, u"B1"_s, {})) << "a key that has gone is free";
    EXPECT_THROW(tree.add(u"B4"_s, u"B6"_s, {}), dao::Error);
    EXPECT_EQ(order(), u"02531"_s);
}

} // namespace
