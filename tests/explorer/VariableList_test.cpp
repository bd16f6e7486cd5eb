#include "explorer/ExplorerModel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/KeptTexts.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Notes what the window is told, in order.
class NotingHost : public ListviewHost {
public:
    QStringList told;

    void nodeShown(const CatalogueNode& node) override { told << u"shown "_s + node.Key; }
    void listFilled() override { told << u"filled"_s; }
    void clearPanelA() override { told << u"panel"_s; }
    void itemClick() override { told << u"click"_s; }
    void clearAssignmentList() override { told << u"assignments"_s; }
};

QString drawn(const VariableList& list) {
    QString text;
    for (const VariableRow& row : list.rows)
        text += row.Text + u'|' + QStringList(row.SubItems.begin(), row.SubItems.end()).join(u'|') + u'\n';
    return text;
}

QString names(const VariableList& list) {
    QStringList all;
    for (const VariableRow& row : list.rows)
        all << row.Text;
    return all.join(u' ');
}

class List : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    NotingHost host;
    ExplorerModel model{&host};

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
    }
};

TEST_F(List, AStudyListsItsVariablesInTheirOrder) {
    model.open(1);
    ASSERT_TRUE(model.select(u"AQX1919"_s));
    EXPECT_EQ(drawn(model.list).toStdString(), "V3|QX1919||1919|Gewicht|Weight\n"
                                               "V5|QX1919|Welle 1|1919|Zufriedenheit|Satisfaction\n"
                                               "V6|QX1919||1919|Vertrauen|Trust\n"
                                               "V7|QX1919|Welle 2|1919|Geschlecht|Sex\n"
                                               "V8|QX1919||1919|Beruf|Occupation\n"
                                               "V9|QX1919||1919|Alter|Age\n");
    EXPECT_EQ(model.list.Tag, u"AQX1919"_s);
    EXPECT_EQ(model.state.selectionTitle, u"Erhebung 1919"_s);
    EXPECT_EQ(model.list.selectedRow, 0);
    EXPECT_EQ(host.told, (QStringList{u"shown AQX1919"_s, u"filled"_s, u"panel"_s, u"click"_s, u"assignments"_s}));
    // A group has no variables: an empty list, no message.
    ASSERT_TRUE(model.select(u"AG001"_s));
    EXPECT_TRUE(model.list.rows.empty());
    EXPECT_EQ(model.list.selectedRow, -1);
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(List, ACategoryListsItsVariablesByStudyWithAndWithoutGroups) {
    gOptions.EnglishLanguage = true;
    gLanguage = 1;
    model.open(2);
    ASSERT_TRUE(model.select(u"B1"_s));
    EXPECT_EQ(drawn(model.list).toStdString(), "V5|QX1919|Wave 1|1919|Satisfaction|Zufriedenheit\n"
                                               "V5|QX2020||2020|Satisfaction|Zufriedenheit\n");
    gDatabase.CurrentDatabase()->TableDefs().Delete(u"tkey_VarGroups"_s);
    ASSERT_TRUE(model.select(u"B1"_s, true));
    EXPECT_EQ(drawn(model.list).toStdString(), "V5|QX1919||1919|Satisfaction|Zufriedenheit\n"
                                               "V5|QX2020||2020|Satisfaction|Zufriedenheit\n");
    model.open(1);
    ASSERT_TRUE(model.select(u"AQX2020"_s));
    EXPECT_EQ(drawn(model.list).toStdString(), "V5|QX2020||2020|Satisfaction|Zufriedenheit\n"
                                               "V7|QX2020||2020|Sex|Geschlecht\n");
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(List, ANodeThatIsShownIsReadAgainOnlyByForce) {
    model.open(3);
    ASSERT_TRUE(model.select(u"C1"_s));
    ASSERT_EQ(names(model.list), u"V5 V5"_s);
    catalogue.execute(u"DELETE FROM trel_VariableTrend WHERE fi_StudyNo = 'QX2020';"_s);
    host.told.clear();
    ASSERT_TRUE(model.select(u"C1"_s));
    EXPECT_EQ(names(model.list), u"V5 V5"_s);
    EXPECT_TRUE(host.told.isEmpty());
    ASSERT_TRUE(model.select(u"C1"_s, true));
    EXPECT_EQ(names(model.list), u"V5"_s);
    EXPECT_FALSE(model.select(u"C9"_s));
    // A statement that fails leaves the rows as they are.
    gDatabase.CurrentDatabase()->TableDefs().Delete(u"trel_VariableTrend"_s);
    ASSERT_TRUE(model.select(u"C1"_s, true));
    EXPECT_EQ(names(model.list), u"V5"_s);
    EXPECT_EQ(asker.boxes.size(), 1u);
}

TEST_F(List, TheUsersSortingOutlivesTheNextNode) {
    catalogue.addVariable(u"QX1919"_s, u"V10"_s, u"QX1919_1"_s, {{"dt_VarLabel", u"alter Wohnort"_s}});
    model.open(1);
    ASSERT_TRUE(model.select(u"AQX1919"_s));
    VariableList& list = model.list;
    list.headerClicked(0);
    EXPECT_EQ(names(list), u"V10 V3 V5 V6 V7 V8 V9"_s) << "by text, not by number";
    list.headerClicked(0);
    EXPECT_EQ(names(list), u"V9 V8 V7 V6 V5 V3 V10"_s);
    list.headerClicked(0);
    EXPECT_EQ(names(list), u"V3 V5 V6 V7 V8 V9 V10"_s);
    list.headerClicked(list.columnOf(u"VL"_s));
    EXPECT_EQ(names(list), u"V9 V10 V8 V7 V3 V6 V5"_s) << "without regard to case";
    list.headerClicked(list.columnOf(u"WE"_s));
    EXPECT_EQ(names(list), u"V3 V6 V8 V9 V10 V5 V7"_s) << "equal cells keep the statement's order";
    list.headerClicked(list.columnOf(u"WE"_s));
    list.headerClicked(list.columnOf(u"WE"_s));
    list.headerClicked(list.columnOf(u"WE"_s));
    ASSERT_TRUE(model.select(u"AQX1919"_s, true));
    EXPECT_EQ(names(list), u"V7 V5 V3 V6 V8 V9 V10"_s);
    EXPECT_EQ(list.selectedRow, 0);
}

TEST_F(List, ColumnsFollowLanguagesAndOptions) {
    const auto drawnColumns = [this] {
        QStringList all;
        for (const ListColumn& column : model.list.columns)
            all << u"%1 %2 %3"_s.arg(column.Key).arg(column.Width).arg(column.Heading);
        return all.join(u", "_s).toStdString();
    };
    model.open(1);
    EXPECT_EQ(drawnColumns(), "VN 850 Variable, SN 850 Studie, WE 850 Welle, SY 850 Jahr, "
                              "VL 4000 Label (Originalsprache), EL 4000 Label (Englisch)");
    gOptions.EnglishLanguage = true;
    gCatalogueOptions.ShowVarGroupInfo = false;
    gLanguage = 1;
    loadKeptTexts();
    model.open(1);
    EXPECT_EQ(drawnColumns(), "VN 850 Variable, SN 850 Study, SY 850 Year, EL 4000 Label (English), "
                              "VL 4000 Label (Original Language)");
    gOptions.AutomaticVariableColumnWidth = true;
    catalogue.addVariable(u"QX2020"_s, u"Haushalt"_s, u"QX2020_1"_s);
    ASSERT_TRUE(model.select(u"AQX2020"_s));
    EXPECT_EQ(model.list.columns[0].Width, 8 * 150 + 400);
}

// The fragments are joined with no blank between them; without groups one bracket stays open.
TEST(ListStatements, StandAsTheyAreGiven) {
    EXPECT_EQ(studyVariablesStatement(u"S"_s, u"QX1"_s, true).toStdString(),
              "SELECT tkey_Variable.id_VarName AS fi_VariableNo, tkey_Variable.fi_StudyNo, "
              "tkey_Variable.dt_VarLabel, "
              "tkey_Variable.dt_QuestionText, tkey_S.dt_StudyTitle, tkey_S.dt_Year, tkey_S.dt_StudyDescription, "
              "tkey_Variable.dt_Position, tkey_Variable.dt_EnVarLabel, tkey_Variable.dt_EnQuestionText, "
              "tkey_VarGroups.dt_VarGroupName, tkey_VarGroups.dt_VarGroupNameEn, tkey_S.dt_EnStudyTitle "
              "FROM (tkey_Variable LEFT JOIN tkey_S ON tkey_Variable.fi_StudyNo = tkey_S.id_StudyNo) LEFT JOIN "
              "tkey_VarGroups ON tkey_Variable.dt_VarGroup = tkey_VarGroups.id_VarGroup "
              "  WHERE [fi_StudyNo] = 'QX1' ORDER BY tkey_Variable.fi_StudyNo, tkey_Variable.dt_Position;");
    EXPECT_EQ(categoryVariablesStatement(u"T"_s, u"S"_s, u"12"_s, false).toStdString(),
              "SELECT trel_VariableT.fid, trel_VariableT.fi_VariableNo, trel_VariableT.fi_StudyNo, "
              "tkey_Variable.dt_VarLabel, tkey_Variable.dt_QuestionText, tkey_S.dt_Year, "
              "tkey_Variable.dt_Position, "
              "tkey_Variable.dt_EnVarLabel, tkey_Variable.dt_EnQuestionText, '' AS dt_VarGroupName, "
              "'' AS dt_VarGroupNameEn FROM ((tkey_Variable LEFT JOIN tkey_S ON "
              "tkey_Variable.fi_StudyNo = tkey_S.id_StudyNo) LEFT JOIN trel_VariableT ON "
              "(tkey_Variable.id_VarName = trel_VariableT.fi_VariableNo) AND "
              "(tkey_Variable.fi_StudyNo = trel_VariableT.fi_StudyNo)  WHERE trel_VariableT.fid = 12 "
              "ORDER BY trel_VariableT.fid, trel_VariableT.fi_StudyNo, tkey_Variable.dt_Position;");
}

} // namespace
