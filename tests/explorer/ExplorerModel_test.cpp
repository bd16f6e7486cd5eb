#include "explorer/ExplorerModel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "explorer/ExplorerLayout.h"
#include "explorer/iconNames.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Explorer : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ExplorerModel model;

    void SetUp() override {
        catalogue.fill();
        catalogue.addStudy(u"QX3"_s, u"mit Texten"_s, {{"dt_Year", u"2003"_s}});
        catalogue.addVariable(u"QX3"_s, u"A"_s, u"QX3_1"_s,
                              {{"dt_VarLabel", u"Übergewicht"_s},
                               {"dt_QuestionText", u"Wie schwer\r\nsind Sie?"_s},
                               {"dt_EnQuestionText", u"What do you weigh?"_s}});
        catalogue.addVariable(u"QX3"_s, u"B'1"_s, u"QX3_1"_s,
                              {{"dt_VarLabel", u"Ärzte"_s}, {"dt_EnVarLabel", u"Doctors"_s}});
        catalogue.addVariable(u"QX3"_s, u"C"_s, u"QX3_1"_s, {{"dt_VarLabel", u"Wie oft"_s}});
        ASSERT_EQ(catalogue.open(), 1);
        model.open(1);
        ASSERT_TRUE(model.select(u"AQX3"_s));
    }

    QString shown() const {
        QString names;
        for (const int row : model.list.shown)
            names += model.list.rows[static_cast<size_t>(row)].Text + u' ';
        return names;
    }

    QString filtered(const QString& words) {
        model.setFilter(words);
        return shown();
    }
};

TEST_F(Explorer, APanelShowsTheRecordInItsLanguageAndTipsKeepTheOriginalLabel) {
    ASSERT_TRUE(model.showRow(1, true));
    EXPECT_EQ(model.panelA.fact(u"Position"_s).text, u"2 von 3"_s);
    EXPECT_EQ(model.panelA.variable(), u"B'1"_s) << "an apostrophe ends no condition";
    EXPECT_EQ(model.panelA.fact(u"Jahr"_s).toolTip, u"Jahr 2003"_s);
    EXPECT_EQ(model.panelA.fact(u"Welle"_s).toolTip, QString()) << "a variable of no group";
    model.state.bVarWindowForEnglishLanguage = true;
    ASSERT_TRUE(model.panelA.refill(model.state));
    EXPECT_EQ(model.panelA.fact(u"Label"_s).text, u"Doctors"_s);
    EXPECT_EQ(model.panelA.fact(u"Label"_s).toolTip, u"Label Ärzte"_s);
    ASSERT_TRUE(model.showRow(0, true));
    EXPECT_EQ(model.panelA.question, u"What do you weigh?"_s);

    ASSERT_TRUE(model.select(u"AQX1919"_s));
    ASSERT_TRUE(model.showRow(1, true));
    EXPECT_EQ(model.panelA.fact(u"Welle"_s).text, u"Wave 1"_s);
    EXPECT_EQ(model.panelA.fact(u"Welle"_s).toolTip, gCatalogueOptions.VarGroupInfoName + u" Wave 1"_s);
}

TEST_F(Explorer, PanelBKeepsItsResultSetUntilANodeIsOpenedInIt) {
    ASSERT_TRUE(model.showRowInB(2));
    EXPECT_EQ(model.state.lVarWindow, 1);
    EXPECT_EQ(model.panelB.fid, u"QX3"_s);
    ASSERT_TRUE(model.select(u"AQX2020"_s));
    ASSERT_TRUE(model.moveB(ExplorerModel::Step::Next));
    EXPECT_EQ(model.panelB.fact(u"Position"_s).text, u"3 von 3"_s) << "not beyond the last";
    ASSERT_TRUE(model.moveB(ExplorerModel::Step::Back));
    EXPECT_EQ(model.panelB.variable(), u"B'1"_s);

    // What has gone meanwhile shows the first of the set; a set without any says so.
    ASSERT_TRUE(model.select(u"AQX3"_s));
    model.list.rows[1].Text = u"fort"_s;
    ASSERT_TRUE(model.showRowInB(1));
    EXPECT_EQ(model.panelB.variable(), u"A"_s);
    ASSERT_TRUE(model.select(u"AQX2020"_s));
    catalogue.execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'QX2020';"_s);
    EXPECT_FALSE(model.showRowInB(0));
    EXPECT_EQ(asker.lastText(), u"Keine Variablen gefunden!"_s);
}

TEST_F(Explorer, StepsOfPanelAStayWithinTheRowsInView) {
    using enum ExplorerModel::Step;
    EXPECT_EQ(model.stepInList(Back, 0), -1);
    EXPECT_EQ(model.stepInList(Next, 2), -1);
    EXPECT_EQ(model.stepInList(Back, 2), 1);
    EXPECT_EQ(model.stepInList(Next, 0), 1);
    EXPECT_EQ(model.stepInList(Next, -1), -1) << "without a row";
    EXPECT_EQ(model.stepInList(Last, -1), 2);
    model.setFilter(u"wie"_s);
    EXPECT_EQ(model.stepInList(Last, 0), 1);
    model.setFilter(u"nirgends"_s);
    EXPECT_EQ(model.stepInList(First, -1), -1);
    EXPECT_EQ(model.stepInList(Last, -1), -1);
}

TEST_F(Explorer, TheFilterFindsWordsInAnyTextOfEitherLanguage) {
    EXPECT_EQ(filtered(u"WIE"_s), u"A C "_s) << "question text and label";
    EXPECT_EQ(filtered(u"übergew"_s), u"A "_s);
    EXPECT_EQ(filtered(u"ä"_s), u"B'1 "_s) << "an a is another letter";
    EXPECT_EQ(filtered(u"DOCTORS ÄRZTE"_s), u"B'1 "_s) << "all words, wherever they stand";
    EXPECT_EQ(filtered(u"oft a"_s), QString()) << "no word spans two variables";
    // A word lies within one text: the end of one and the beginning of the next make none.
    EXPECT_EQ(filtered(u"b'1ärz"_s), QString());
    EXPECT_EQ(filtered(u"ärztedoc"_s), QString());
    EXPECT_EQ(filtered(u"ärz 1"_s), u"B'1 "_s);
    EXPECT_EQ(filtered(u"  "_s), u"A B'1 C "_s);
    model.list.selectedRow = 1;
    EXPECT_EQ(filtered(u"wie"_s), u"A C "_s);
    EXPECT_EQ(model.list.selectedRow, -1) << "a hidden row is not selected";
    model.list.headerClicked(0);
    model.list.headerClicked(0);
    EXPECT_EQ(shown(), u"C A "_s) << "sorting keeps the rows hidden";
    ASSERT_TRUE(model.select(u"AQX3"_s, true));
    EXPECT_EQ(shown(), u"C A "_s) << "so does reading the same entry again";
    ASSERT_TRUE(model.select(u"AQX2020"_s));
    EXPECT_EQ(model.filter(), QString());
    EXPECT_EQ(shown(), u"V7 V5 "_s);
}

TEST_F(Explorer, AssignmentsComeFromEveryCategoryViewInTheTreesLanguage) {
    std::vector<Assignment> list;
    Fill(list, gDatabase.CurrentDatabase(), u"QX1919"_s, u"V5"_s, true);
    QStringList drawn;
    for (const Assignment& one : list)
        drawn << u"%1 %2 %3"_s.arg(one.key, one.text).arg(one.icon);
    EXPECT_EQ(drawn, (QStringList{u"B1 Attitudes 8"_s, u"C1 Satisfaction 10"_s}));
    Fill(list, gDatabase.CurrentDatabase(), u"QX3"_s, u"C"_s, true);
    EXPECT_TRUE(list.empty());
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());

    const auto to = [&](const QString& key, int open) {
        return jumpOf(key, 1, model.tree, [open](int view) { return view == open; }).to;
    };
    EXPECT_EQ(to(u"AQX3"_s, 2), Jump::To::NodeHere);
    EXPECT_EQ(to(u"AQX9"_s, 2), Jump::To::Nowhere);
    EXPECT_EQ(to(u"B1"_s, 2), Jump::To::OtherWindow);
    EXPECT_EQ(to(u"I1"_s, 2), Jump::To::NewWindow) << "the last letter of a view";
    EXPECT_EQ(to(u"J1"_s, 2), Jump::To::Nowhere);
}

TEST_F(Explorer, AnEntryWithoutVariablesFindsThoseOfTheWholeView) {
    const auto found = [&](const QString& words) {
        QStringList rows;
        model.setFilter(words);
        for (const int row : model.list.shown)
            rows << model.list.rows[static_cast<size_t>(row)].cell(1) + u' ' +
                        model.list.rows[static_cast<size_t>(row)].Text;
        return rows.join(u", "_s);
    };
    EXPECT_FALSE(model.searchesView());
    EXPECT_EQ(found(u"satisf"_s), QString()) << "a study's filter stays with the study";
    for (const QString& key : {u"AG001"_s, u"A0"_s}) {
        ASSERT_TRUE(model.select(key));
        ASSERT_TRUE(model.searchesView());
        EXPECT_EQ(found(QString()), QString());
        EXPECT_EQ(found(u"  "_s), QString());
        EXPECT_EQ(found(u"satisf"_s), u"QX1919 V5, QX2020 V5"_s);
    }
    EXPECT_EQ(model.found(), 2);
    EXPECT_EQ(model.searched(), 11);
    ASSERT_TRUE(model.showRow(1, true));
    EXPECT_EQ(model.panelA.study(), u"QX2020"_s);
    EXPECT_EQ(model.panelA.fidName, u"Erhebung 2020"_s);
    EXPECT_EQ(model.panelA.fact(u"Position"_s).text, u"1 von 2"_s) << "its place in its study";
    ASSERT_TRUE(model.showRowInB(0));
    EXPECT_EQ(model.panelB.study(), u"QX1919"_s);
    EXPECT_EQ(model.stepInList(ExplorerModel::Step::Next, 0), 1);
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());

    // Sorted as the user has sorted, and read once until the list is read anew.
    model.list.headerClicked(1);
    model.list.headerClicked(1);
    EXPECT_EQ(found(u"satisf"_s), u"QX2020 V5, QX1919 V5"_s);
    catalogue.execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' AND id_VarName = 'V5';"_s);
    ASSERT_TRUE(model.select(u"A0"_s, true));
    EXPECT_EQ(found(u"satisf"_s), u"QX2020 V5"_s);
    ASSERT_TRUE(model.select(u"AQX3"_s));
    EXPECT_EQ(model.filter(), QString());
    EXPECT_EQ(model.list.rows.size(), 3u);

    // A variable of two categories is found once, where it stands first.
    catalogue.addAssignment(u"Category"_s, 3, u"QX2020"_s, u"V5"_s);
    model.open(2);
    EXPECT_EQ(found(u"v"_s), u"QX1919 V7, QX2020 V5, QX1919 V6"_s) << "in the order of the tree, assigned ones only";
    ASSERT_TRUE(model.showRow(1, true));
    EXPECT_EQ(model.panelA.fidName, u"Einstellungen"_s);
}

TEST_F(Explorer, ALayoutSurvivesItsTextAndDamageToIt) {
    model.list.columns[1].Width = 1234;
    model.list.columns[1].widthBy = ListColumn::By::User;
    model.list.columns[2].Width = 4321;
    model.list.headerClicked(4);
    model.list.headerClicked(4);
    ExplorerLayout layout;
    layout.tree = 250;
    layout.besideB = 333;
    layout.takeFrom(model.list);
    const ExplorerLayout read = ExplorerLayout::fromText(layout.toText());
    VariableList other;
    other.makeColumns(true);
    read.giveTo(other);
    EXPECT_EQ(read.tree, 250);
    EXPECT_EQ(read.besideB, 333);
    EXPECT_EQ(other.columns[1].Width, 1234);
    EXPECT_EQ(other.columns[2].Width, 850) << "what a list measured is no wish";
    EXPECT_EQ(other.columns[static_cast<size_t>(other.sortKey)].Key, u"VL"_s) << "by key, not by place";
    EXPECT_TRUE(other.sorted && other.descending);
    const ExplorerLayout damaged = ExplorerLayout::fromText(u"tree=-4 list=x SN=0 VN=99999999 sort= =7 panelA"_s);
    EXPECT_EQ(damaged.tree, 300);
    EXPECT_EQ(damaged.list, 500);
    damaged.giveTo(other);
    EXPECT_FALSE(other.sorted);
    EXPECT_EQ(other.columns[0].Width, 850);
}

TEST_F(Explorer, IconsFollowTheNumberingOfTheViews) {
    EXPECT_EQ(iconName(6), u"study"_s);
    EXPECT_EQ(iconName(9), u"category-open"_s);
    EXPECT_EQ(iconName(24), u"variable"_s);
    EXPECT_EQ(iconName(25), u"study-described"_s);
    EXPECT_EQ(iconName(28), u"category-described-open"_s);
    gViews.set(2, ViewTable::CompAnalysis, u"1"_s);
    EXPECT_EQ(iconName(8), u"trend"_s) << "two views may have a category of the same name";
}

} // namespace
