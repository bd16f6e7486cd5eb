#include "explorer/CatalogueTree.h"

#include "app/globals.h"
#include "config/Options.h"
#include "support/SameTree.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Tree : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    CatalogueTree tree;

    void SetUp() override { catalogue.fill(); }

    std::string build(int view, bool english = false) {
        EXPECT_EQ(catalogue.open(), 1);
        Update_TreeView(tree, view, english);
        return drawn(tree).toStdString();
    }

    QStringList unreached(int view) {
        QStringList keys;
        for (const UnreachedEntry& entry : unreachedEntries(tree, view, false))
            keys << entry.key;
        return keys;
    }
};

TEST_F(Tree, StudiesStandBelowTheirGroupsInBothLanguages) {
    EXPECT_EQ(build(1), "A0 Studien 6/7/7\n"
                        " AG001 Gruppe 6/7/7\n"
                        "  AQX1919 Erhebung 1919 25/26/26\n"
                        " AQX2020 Erhebung 2020 6/7/7\n");
    EXPECT_TRUE(tree.root()->Expanded);
    EXPECT_EQ(tree.find(u"AQX1919"_s)->Parent, tree.find(u"Ag001"_s));
    EXPECT_EQ(tree.Index(*tree.find(u"AQX2020"_s)), 3) << "nodes are numbered as the statement brings them";
    gLanguage = 1;
    // The description exists in German only, so the English icon is the plain one.
    EXPECT_EQ(build(1, true), "A0 Studies 6/7/7\n"
                              " AG001 Group 6/7/7\n"
                              "  AQX1919 Survey 1919 6/7/7\n"
                              " AQX2020 Survey 2020 6/7/7\n");
}

TEST_F(Tree, CategoriesFollowTheirOrderAndFallBackOnlyWithoutADescription) {
    catalogue.addCategory(u"Category"_s, 4, 3, 1, QString(), {{"dt_IndicatorDescription", u" "_s}});
    catalogue.addCategory(u"Category"_s, 5, 3, 2, QString(), {{"dt_IndicatorDescription", u"x"_s}});
    EXPECT_EQ(build(2), "B0 Kategorien 8/9/9\n"
                        " B2 Demographie 27/28/28\n"
                        " B1 Einstellungen 8/9/9\n"
                        "  B3 Vertrauen 8/9/9\n"
                        "   B4 4 8/9/9\n"
                        "   B5  27/28/28\n");
    EXPECT_TRUE(unreached(2).isEmpty());
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(Tree, SiblingsStandAsTheStatementOfTheirParentBringsThem) {
    const dao::Value places[] = {{}, 2, 1, {}, 2, 1, 2, {}};
    int id = 40;
    for (const dao::Value& place : places) {
        catalogue.addCategory(u"Category"_s, --id, 3, 1, u"x"_s);
        catalogue.execute(u"UPDATE tkey_Category SET [Order] = %1 WHERE id = %2"_s.arg(
            place.isNull() ? u"Null"_s : place.toText(), QString::number(id)));
    }
    build(2);
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(catalogue.path());
    const dao::RecordsetPtr rows =
        database->OpenRecordset(u"SELECT * FROM tkey_Category WHERE [fid]=3 ORDER BY [order] ASC;"_s);
    QStringList asked, shown;
    for (; !rows->Eof(); rows->MoveNext())
        asked << rows->text(u"id"_s);
    for (const CatalogueNode* node : tree.find(u"B3"_s)->Children)
        shown << node->id();
    EXPECT_EQ(shown, asked);
    EXPECT_EQ(shown, u"32 36 39 34 37 33 35 38"_s.split(u' '));
    database->Close();
}

TEST_F(Tree, AReadingThatTakesLongTellsHowFarItIsAndEndsWhereTheUserStopsIt) {
    struct View : ui::ProgressView {
        QStringList& seen;
        explicit View(QStringList& list) : seen(list) {}
        bool show(const QString& text, int done, int total) override {
            seen << u"%1 %2/%3"_s.arg(text).arg(done).arg(total);
            return seen.size() < 3;
        }
    };
    QStringList seen;
    asker.onProgress = [&](bool mayStop) {
        EXPECT_TRUE(mayStop);
        return std::make_unique<View>(seen);
    };
    EXPECT_NE(build(2).find("B3 Vertrauen"), std::string::npos);
    EXPECT_TRUE(seen.isEmpty()) << "what is done at once shows nothing";
    ui::Progress::patience = 0;
    EXPECT_EQ(build(2), "B0 Kategorien 8/9/9\n"
                        " B2 Demographie 27/28/28\n"
                        " B1 Einstellungen 8/9/9\n");
    ui::Progress::patience = 1000;
    EXPECT_EQ(seen, (QStringList{u"Die Einträge werden gelesen: Kategorien 0/3"_s,
                                 u"Die Einträge werden gelesen: Kategorien 1/3"_s,
                                 u"Die Einträge werden gelesen: Kategorien 2/3"_s}));
    EXPECT_TRUE(tree.CutShort);
    build(2);
    EXPECT_FALSE(tree.CutShort);
}

TEST(TreeKeys, AreToldApartAsTheEngineTellsTexts) {
    CatalogueTree tree;
    tree.addRoot(u"A0"_s, u"Studien"_s);
    const CatalogueNode& sharp = tree.add(u"a0"_s, u"AStraße"_s, {});
    tree.add(u"A0"_s, u"AStrasse"_s, {});
    EXPECT_EQ(tree.find(u"aSTRAßE"_s), &sharp);
    EXPECT_THROW(tree.add(u"A0"_s, u"ASTRASSE"_s, {}), dao::Error);
}

TEST_F(Tree, AStudyWithoutItsParentIsReportedAndTheRestGoesOn) {
    catalogue.addStudy(u"QX1"_s, u"verwaist"_s, {{"fid", u"G002"_s}});
    catalogue.addStudy(u"QX2"_s, u"ohne Gruppe"_s);
    catalogue.addStudy(u"QX3"_s, u"beschrieben"_s, {{"dt_StudyDescription", u"x"_s}});
    catalogue.addStudy(u"QX4"_s, u"oben"_s, {{"fid", u"0"_s}, {"Order", 3}});
    build(1);
    ASSERT_EQ(asker.boxes.size(), 2u) << "QX1 and the described QX3; a plain entry without a parent stands at the top";
    EXPECT_TRUE(asker.lastText().contains(u"[Module1.Update_TreeViewAddnode]"_s));
    EXPECT_TRUE(asker.lastText().contains(u"(35601)"_s)) << qPrintable(asker.lastText());
    EXPECT_EQ(tree.find(u"AQX2"_s)->Parent, tree.root());
    EXPECT_EQ(tree.find(u"AQX4"_s)->Parent, tree.root());
    EXPECT_EQ(unreached(1), (QStringList{u"QX3"_s, u"QX1"_s}));
}

TEST_F(Tree, ACycleEndsWithAReportAndWhatNoWayLeadsToIsNamed) {
    catalogue.addCategory(u"Category"_s, 0, 0, 9, u"sich selbst"_s);
    catalogue.addCategory(u"Category"_s, 7, 8, 1, u"im Kreis"_s);
    catalogue.addCategory(u"Category"_s, 8, 7, 1, u"im Kreis"_s);
    build(2);
    ASSERT_EQ(asker.boxes.size(), 1u);
    EXPECT_TRUE(asker.lastText().contains(u"Der Eintrag \"0\" steht unter sich selbst"_s))
        << qPrintable(asker.lastText());
    EXPECT_EQ(tree.nodes().size(), 4u);
    EXPECT_EQ(unreached(2), (QStringList{u"0"_s, u"8"_s, u"7"_s}));
}

TEST_F(Tree, EntriesInAFolderThatIsGoneSendTheUserToTheOptions) {
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(catalogue.path());
    database->TableDefs().Delete(u"tkey_Trend"_s);
    const dao::TableDefPtr link = database->CreateTableDef(u"tkey_Trend"_s);
    link->setConnect(u";DATABASE="_s + home.path(u"gone/trends.mdb"_s));
    link->setSourceTableName(u"tkey_Trend"_s);
    database->TableDefs().Append(link);
    database->Close();
    gOptions.DatabasePath = u"C:\\archive"_s;
    gOptions.DatabaseName = u"survey.mdb"_s;
    build(3);
    ASSERT_EQ(asker.boxes.size(), 1u);
    EXPECT_EQ(asker.boxes[0].icon, ui::Icon::Exclamation);
    EXPECT_EQ(asker.lastText(), u"Pfad zur Datenbank C:\\archive\\survey.mdb nicht gefunden!\r\n"
                                "Geben Sie in den Optionen den korrekten Pfad an."_s);
    EXPECT_EQ(tree.nodes().size(), 1u);
}

TEST_F(Tree, ATreeTooDeepEndsWithOneReport) {
    catalogue.together([&] {
        for (int id = 1001; id < 1600; ++id)
            catalogue.addCategory(u"Trend"_s, id, id == 1001 ? 0 : id - 1, 1, u"tief"_s);
    });
    build(3);
    ASSERT_EQ(asker.boxes.size(), 1u);
    EXPECT_TRUE(asker.lastText().contains(u"tiefer als 500 Stufen"_s)) << qPrintable(asker.lastText());
    EXPECT_EQ(tree.nodes().size(), 502u);
    EXPECT_EQ(tree.find(u"C1501"_s), nullptr);
}

} // namespace
