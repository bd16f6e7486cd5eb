#include "analysis/AnalysisModel.h"

#include "config/Options.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"
#include "tables/tableText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// V5 (1, 1, 2, 2, 9, Null; 9 is missing and labelled) by V7 (1, 2 in turn).
class CrosstabRun : public testing::Test {
protected:
    CrosstabRun() : catalogue_(home_.path(u"archive"_s)) {
        catalogue_.fill();
        catalogue_.open();
        gOptions.ShowPercentSign = false;
        model_.open();
        model_.edit().StudyClick(u"QX1919"_s);
        model_.edit().chooseMode(AnalysisMode::Crosstab);
        model_.edit().chooseVariable(u"V5"_s);
        model_.edit().chooseVariable2(u"V7"_s);
    }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;

    /// Values and cells of the shown table, a mark as "X" behind its value.
    QString shown() const {
        const ResultTable& t = model_.result().mfgGrid;
        QStringList rows;
        for (int row = 3; row < t.Rows(); ++row) {
            QStringList cells(t.Cell(0, row) + t.Cell(2, row));
            for (int column = 3; column < t.Cols(); ++column)
                cells << t.Cell(column, row);
            rows << cells.join(u'|');
        }
        return rows.join(u' ');
    }
    void change(const std::function<void(AnalysisRequest&)>& step) { model_.edit().change(RequestPart::Mode, step); }
    QString compute() {
        model_.computeAnew();
        EXPECT_EQ(model_.facts().outcome, RunOutcome::Computed);
        return shown();
    }
};

const QString title = u"QX1919, V5: Zufriedenheit nach V7: Geschlecht"_s;

} // namespace

TEST_F(CrosstabRun, ShowsItsFourViews) {
    const QString counts = u"X||1|1| 1|1|1|2|2 2|1|1|2|2 Summe|2|3|5| Gült. Summe|2|2||4"_s;
    EXPECT_EQ(compute(), counts);
    EXPECT_EQ(model_.result().lblLabel, title + u" (N=4)"_s);
    EXPECT_TRUE(model_.view().cbValuesShown);
    const QStringList views{counts, u"X|||| 1|50,0|50,0||50,0 2|50,0|50,0||50,0 Gült. Summe|100,0|100,0||100,0"_s,
                            u"X|||| 1|50,0|50,0||100,0 2|50,0|50,0||100,0 Gült. Summe|50,0|50,0||100,0"_s,
                            u"X|||| 1|25,0|25,0||50,0 2|25,0|25,0||50,0 Gült. Summe|50,0|50,0||100,0"_s};
    for (const int view : {1, 2, 3, 0, 3}) {
        model_.chooseValues(view);
        EXPECT_EQ(model_.request().cbValues, view);
        EXPECT_EQ(shown(), views[view]);
        EXPECT_EQ(model_.result().mfgGrid.Tag, TableKind::Crosstab);
    }
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);
    EXPECT_EQ(model_.result().lblLabel, title) << "percentages have no N";
    EXPECT_EQ(compute(), views[3]) << "the view that was chosen is chosen again";
    EXPECT_EQ(model_.request().cbValues, 3);
    EXPECT_EQ(percentBaseText(model_.result().mfgGrid), u"Gesamtprozente, N (gültige Fälle): Gült. Summe = 4");
    model_.chooseValues(1);
    EXPECT_EQ(percentBaseText(model_.result().mfgGrid),
              u"Spaltenprozente, N (gültige Fälle): 1 männlich = 2; 2 weiblich = 2; Gült. Summe = 4");
    gOptions.IncludeMissingInPercentXTab = true;
    compute();
    EXPECT_EQ(percentBaseText(model_.result().mfgGrid),
              u"Spaltenprozente, N (alle Fälle der Tabelle): 1 männlich = 2; 2 weiblich = 3; Summe = 5");
    gOptions.IncludeMissingInPercentXTab = false;
    gOptions.ShowValidSums = false;
    model_.chooseValues(2);
    compute();
    EXPECT_EQ(percentBaseText(model_.result().mfgGrid),
              u"Zeilenprozente, N (gültige Fälle): 1 zufrieden = 2; 2 unzufrieden = 2; Gült. Summe = 4");
    model_.edit().chooseMode(AnalysisMode::Frequency);
    const QString before = shown();
    model_.chooseValues(3);
    EXPECT_EQ(shown(), before);
}

TEST_F(CrosstabRun, ExchangesVariablesWithTheirDefinitionsInCreationModeOnly) {
    gOptions.IncludeMissingXTab = true;
    change([](AnalysisRequest& r) { r.chkFlipXtab = true; });
    const QString upright = u"X||1|1| 1|1|1|2|2 2|1|1|2|2 9X|1||1| Summe|3|3|6| Gült. Summe|2|2||4"_s;
    EXPECT_EQ(compute(), upright);
    change([](AnalysisRequest& r) { r.bCreationMode = true; });
    EXPECT_EQ(compute(), u"1||1|1|1|3|2 2|1|1|1||3|2 Summe|1|2|2|1|6| Gült. Summe||2|2|||4"_s);
    EXPECT_EQ(model_.result().mfgGrid.Cell(0, 1), u"V7"_s);
    EXPECT_EQ(model_.result().mfgGrid.Cell(3, 2) + model_.result().mfgGrid.Cell(4, 2) +
                  model_.result().mfgGrid.Cell(6, 2),
              u"XX"_s);
}

TEST_F(CrosstabRun, CountsAgainByTheUsersMarks) {
    gOptions.IncludeMissingXTab = true;
    compute();
    model_.mfgGrid_Click({4, 4, 2, 2}); // 1 is missing now, 9 is not
    model_.mfgGrid_Click({6, 6, 2, 2});
    asker_.answer(ui::Answer::Yes).answer(ui::Answer::No);
    model_.cmdCalculate();
    EXPECT_EQ(shown(), u"X||1|1| 1X|1|1|2| 2|1|1|2|2 9 |1||1|1 Summe|3|3|6| Gült. Summe|2|1||3"_s);
    EXPECT_EQ(model_.result().lblLabel, title + u" (N=3)"_s);
    model_.edit().chooseVariable2(u"V6"_s);
    model_.changeTab(1);
    EXPECT_EQ(model_.result().mfgGrid.Cell(2, 4), u""_s) << "marks of another table are none for this one";
}

TEST_F(CrosstabRun, NamesInItsTitleTheSumThatPercentagesRestOnOrNone) {
    for (int i = 0; i < 16; ++i) {
        gOptions.IncludeMissingXTab = (i & 1) != 0;
        gOptions.IncludeMissingInPercentXTab = (i & 2) != 0;
        gOptions.IncludeNinXTab = (i & 4) != 0;
        gOptions.ShowValidSums = (i & 8) != 0;
        compute();
        // Six cases, one of them left out as labelled missing; four valid.
        const QString all = gOptions.IncludeMissingXTab ? u" (N=6)"_s : u" (N=5)"_s;
        const QString valid = gOptions.ShowValidSums ? u" (N=4)"_s : QString();
        EXPECT_EQ(model_.result().lblLabel, title + (gOptions.IncludeMissingInPercentXTab ? all : valid)) << i;
    }
}

TEST_F(CrosstabRun, RefusesTwoViewsOfAComparison) {
    model_.edit().chooseMode(AnalysisMode::Comparison);
    ASSERT_TRUE(model_.comparison().addVariable(u"QX1919"_s, u"V5"_s));
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    const auto ofTwo = [this] {
        const ResultTable& t = model_.result().mfgGrid;
        return t.Cell(0, 3) + u'|' + t.Cell(3, 3);
    };
    EXPECT_EQ(ofTwo(), u"2|2"_s);
    model_.chooseValues(1);
    EXPECT_EQ(ofTwo(), u"2|50,0"_s);
    for (const int view : {2, 3}) {
        model_.chooseValues(1);
        model_.chooseValues(view);
        EXPECT_EQ(ofTwo(), u"2|2"_s);
        EXPECT_EQ(model_.request().cbValues, 0);
        EXPECT_EQ(asker_.lastText(), u"In Vergleichsauswertung nicht erlaubt"_s);
    }
}
