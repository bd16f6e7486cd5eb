#include "analysis/AnalysisModel.h"
#include "analysis/request/DescriptivesChoice.h"
#include "analysis/request/MissingChoice.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "platform/system/NumberFormat.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"
#include "tables/missing.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class DescriptivesRun : public testing::Test {
protected:
    DescriptivesRun() : catalogue_(home_.path(u"archive"_s)) {
        catalogue_.fill();
        EXPECT_EQ(catalogue_.open(), 1);
        NumberFormat::setDecimalSeparator(u',');
        model_.open();
        EXPECT_TRUE(model_.edit().StudyClick(u"QX1919"_s));
        model_.edit().chooseMode(AnalysisMode::Descriptives);
        EXPECT_TRUE(model_.edit().chooseVariable(u"V5"_s));
    }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;

    QString cells() const {
        QStringList rows;
        for (int row = 1; row < model_.result().mfgGrid.Rows(); ++row)
            rows << model_.result().mfgGrid.Cell(1, row) + u':' + model_.result().mfgGrid.Cell(2, row);
        return rows.join(u' ');
    }

    void choose(const QString& statistics, const QString& digits = u"0;0;0;1;1;0;0;0;0;0;0;0;0;"_s) {
        model_.edit().change(RequestPart::Statistics, [&](AnalysisRequest& r) {
            r.dtDesc = statistics;
            r.dtDescDigits = digits;
        });
    }
};

} // namespace

TEST_F(DescriptivesRun, ShowsTheStatisticsOfTheOptionsOrOfTheWindow) {
    // V5: 1 1 2 2, 9 missing, one Null. The options choose the first six with two digits each.
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(),
              u"Count:6,00 Minimum:1,00 Maximum:2,00 ArithmeticMean:1,50 StandardDeviation:0,58 ValidN:4,00"_s);
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V5: Zufriedenheit (N=6,00)"_s);
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);

    choose(u"10"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"Count:6 Maximum:2"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused) << "a second run finds the choice still there";
    model_.edit().dbcVariable_Change();
    EXPECT_EQ(model_.request().dtDesc, u"10"_s) << "the variable is the same";
    EXPECT_TRUE(model_.edit().StudyClick(u"QX1919"_s));
    EXPECT_EQ(model_.request().dtDesc, u"10"_s);
    EXPECT_TRUE(model_.edit().chooseVariable(u"V7"_s));
    EXPECT_EQ(model_.request().dtDesc + model_.request().dtDescDigits, u""_s);
    // An option counts at the next run, without any other change.
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    gOptions.Descriptives = 4;
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"Minimum:1,00"_s);
    choose(u"0"_s);
    model_.changeTab(1);
    EXPECT_EQ(model_.result().mfgGrid.Rows(), 1);
}

TEST_F(DescriptivesRun, WeightsFiltersAndGroups) {
    choose(u"410"_s); // Count, Maximum, ArithmeticMean, Range, Sum: 2 + 8 + 16 + 128 + 256
    EXPECT_TRUE(model_.edit().chooseWeight(WeightKind::WeightUser, u"V7"_s));
    model_.changeTab(1);
    // Weights 1 2 1 2 1 2 add up to 9; of the valid cases 6: 1 + 2 + 2 + 4.
    EXPECT_EQ(cells(), u"Count:9 Maximum:2 ArithmeticMean:1,5 Range:1 Sum:9"_s);
    const auto text = [](const QString& name) { return gDatabase.CurrentDatabase()->QueryDefs().Item(name)->SQL(); };
    EXPECT_EQ(text(u"stat"_s),
              u"SELECT q.*, QX1919_1.V5 AS VAR  FROM (q INNER JOIN QX1919_1 ON q.ID = QX1919_1.dt_CaseID)"_s);
    EXPECT_EQ(text(u"stat2"_s), text(u"stat"_s));

    EXPECT_TRUE(model_.edit().chooseWeight(WeightKind::noWeight));
    model_.edit().chooseFilterText(u"V9<60"_s);
    model_.changeTab(1);
    EXPECT_EQ(cells(), u"Count:4 Maximum:2 ArithmeticMean:1,3 Range:1 Sum:4"_s);
    model_.edit().chooseFilterText(u"V9<0"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u""_s);

    EXPECT_TRUE(model_.edit().chooseFilter(FilterKind::noFilter));
    EXPECT_TRUE(model_.edit().chooseVariable2(u"V7"_s));
    EXPECT_TRUE(model_.edit().chooseVariable(u"V6"_s));
    choose(u"272"_s);
    model_.edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.chkDescGroup = true; });
    model_.changeTab(1);
    EXPECT_EQ(text(u"stat"_s), u"SELECT q.*, QX1919_2.V6 AS VAR , QX1919_1.V7 AS VAR2  FROM ((q INNER JOIN QX1919_2 ON "
                               "q.ID = QX1919_2.dt_CaseID)INNER JOIN QX1919_1 ON q.ID = QX1919_1.dt_CaseID)"_s);
    // V6 1 3 2 with V7 1, and 2 1 Null with V7 2.
    const ResultTable& t = model_.result().mfgGrid;
    QStringList rows;
    for (int row = 0; row < t.Rows(); ++row)
        rows << t.Cell(0, row) + u' ' + t.Cell(1, row) + u' ' + t.Cell(2, row);
    EXPECT_EQ(rows, (QStringList{u"V7 ArithmeticMean Sum"_s, u"1 2,0 6"_s, u"2 1,5 3"_s}));
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V6: Vertrauen nach V7: Geschlecht"_s);
}

TEST_F(DescriptivesRun, AsksForMissingValues) {
    choose(u"72"_s); // Maximum, ValidN
    QStringList opened;
    bool cancel = true;
    RunHooks hooks;
    hooks.askMissing = [&](const QString& sMissing) {
        opened << sMissing;
        MissingChoice choice(sMissing);
        choice.EinzelWert = u"2"_s;
        QString fault;
        return cancel ? std::nullopt : choice.cmdOK(fault);
    };
    model_.setHooks(hooks);
    model_.changeTab(1);
    EXPECT_EQ(cells(), u"Maximum:2 ValidN:4"_s) << "Cancel lets the run go on";
    model_.changeTab(2);
    EXPECT_EQ(opened, QStringList(u"9"_s)) << "a valid table asks nothing";
    cancel = false;
    choose(u"72"_s);
    model_.changeTab(1);
    EXPECT_EQ(cells(), u"Maximum:9 ValidN:3"_s);
    EXPECT_FALSE(model_.request().bUserMissing);
    gOptions.IncludeMissingDesc = true;
    model_.changeTab(1);
    EXPECT_EQ(cells(), u"Maximum:9 ValidN:5"_s);
    gOptions.AskMissing = gOptions.IncludeMissingDesc = false;
    model_.changeTab(1);
    EXPECT_EQ(opened.size(), 3);
    EXPECT_EQ(cells(), u"Maximum:2 ValidN:4"_s);
}

TEST_F(DescriptivesRun, GoesOnWithoutAStatisticThatCannotBeComputed) {
    choose(u"112"_s); // ArithmeticMean, StandardDeviation, ValidN
    model_.edit().chooseFilterText(u"V9=31"_s);
    asker_.answer(ui::Answer::Ignore);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"ArithmeticMean:1,0 StandardDeviation: ValidN:1"_s);
    EXPECT_EQ(asker_.lastText(), u"11\r\nDivision by zero"_s);
    choose(u"32"_s);
    asker_.answer(ui::Answer::Abort);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused);
    EXPECT_EQ(model_.tab(), 0);
    QStringList heard;
    RunHooks hooks;
    hooks.onStatisticFailure = [&](const QString& place, const dao::Error&) { heard << place; };
    model_.setHooks(hooks);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(heard, QStringList(u"StandardDeviation"_s));
    EXPECT_TRUE(model_.edit().chooseVariable(u"V8"_s));
    EXPECT_TRUE(model_.edit().chooseFilter(FilterKind::noFilter));
    model_.changeTab(1);
    EXPECT_EQ(cells(), u"Count:6,00 :Descriptives nur für numerische Felder"_s);
}

TEST_F(DescriptivesRun, ChoiceReadsAndWritesWindowAndOptions) {
    const DescriptivesChoice first = DescriptivesChoice::of(model_.request(), gOptions);
    EXPECT_EQ(first, DescriptivesChoice::defaults(gOptions));
    EXPECT_EQ(first.dtDesc(), u"126"_s);
    EXPECT_EQ(first.dtDescDigits(), u"2;2;2;2;2;2;2;2;2;2;2;2;2;0;"_s) << "the fourteenth is missing";
    model_.edit().change(RequestPart::Statistics, [](AnalysisRequest& r) { r.dtDesc = u"4"_s; });
    EXPECT_EQ(DescriptivesChoice::of(model_.request(), gOptions), first)
        << "without digits the window has chosen nothing";

    DescriptivesChoice choice;
    EXPECT_EQ(choice.dtDesc(), u"0"_s);
    choice.cmbDigits.fill(u"3"_s);
    choice.chkDescriptives[13] = choice.chkDescriptives[0] = true;
    choice.applyTo(model_.edit());
    EXPECT_EQ(model_.request().dtDesc, u"16386"_s);
    EXPECT_EQ(DescriptivesChoice::of(model_.request(), gOptions), choice);
    EXPECT_EQ(gOptions.Descriptives, 126);
    choice.applyTo(gOptions);
    EXPECT_EQ(DescriptivesChoice::defaults(gOptions), choice);
    EXPECT_EQ(DescriptivesChoice::captions()[8], u"Varianz"_s);
}

TEST_F(DescriptivesRun, MissingChoiceTakesEveryShapeUnchanged) {
    struct Shape {
        QString text, boxes, result; ///< boxes and result with a comma
    };
    const std::vector<Shape> shapes{
        {u""_s, u"values ||"_s, {}},
        {u"9"_s, u"values 9||"_s, u"9"_s},
        {u"8,5;-9"_s, u"values 8,5|-9|"_s, u"8,5, -9"_s},
        {u"7.5, 8, 9"_s, u"values 7,5|8|9"_s, u"7,5, 8, 9"_s},
        {u"90 thru 99"_s, u"range |90|99"_s, u"90 thru 99"_s},
        {u"1 thru 5;9"_s, u"range 9|1|5"_s, u"1 thru 5, 9"_s},
        {u"lowest thru -0,5, 0"_s, u"range 0|-1,79769313486231E+308|-0,5"_s, u"-1,79769313486231E+308 thru -0,5, 0"_s},
        {u"90 thru Highest"_s, u"range |90|1,79769313486231E+308"_s, u"90 thru 1,79769313486231E+308"_s},
        {u"highest"_s, u"values 1,79769313486231E+308||"_s, u"1,79769313486231E+308"_s},
    };
    for (const QChar separator : {u',', u'.'}) {
        NumberFormat::setDecimalSeparator(separator);
        const auto inForce = [&](QString text) {
            // The comma between values has a blank behind it, the decimal one has not.
            text.replace(u", "_s, u"# "_s);
            return text.replace(u',', separator).replace(u'#', u',');
        };
        for (const Shape& shape : shapes) {
            SCOPED_TRACE(shape.text.toStdString());
            const MissingChoice choice(shape.text);
            EXPECT_EQ(choice.Option1, MissingChoice::Calculation::WithSettings);
            const bool range = choice.Option2 == MissingChoice::Shape::Range;
            EXPECT_EQ((range ? u"range "_s : u"values "_s) + choice.EinzelWert + u'|' + choice.Rangevon + u'|' +
                          choice.Rangebis,
                      inForce(shape.boxes));
            QString fault;
            const std::optional<MissingAnswer> answer = choice.cmdOK(fault);
            EXPECT_EQ(answer.has_value(), !shape.text.isEmpty());
            if (!answer)
                continue;
            EXPECT_EQ(answer->sMissing, inForce(shape.result));
            const MissingDefinition before(shape.text), after(answer->sMissing);
            for (const double x : {-1e300, -9.0, -0.5, 0.0, 1.0, 5.0, 7.5, 8.5, 9.0, 90.0, 1e300, 1.79769313486231e308})
                EXPECT_EQ(before.contains(x), after.contains(x)) << x;
            EXPECT_EQ(MissingChoice(answer->sMissing).Rangevon, choice.Rangevon) << "a second time";
        }
    }
}

TEST_F(DescriptivesRun, MissingChoiceSaysWhichBoxFails) {
    using Shape = MissingChoice::Shape;
    const QString refused = u"Bitte einen gültigen Wert eingeben!"_s;
    struct Input {
        std::optional<Shape> shape;
        QString einzelWert, von, bis, answer;
    };
    const std::vector<Input> inputs{
        {std::nullopt, u"1"_s, {}, {}, u"Bitte auswählen!"_s},
        {Shape::Values, {}, u"2"_s, {}, refused + u" 1"_s},
        {Shape::Values, u"1"_s, u"x"_s, {}, refused + u" 2"_s},
        {Shape::Values, u"1"_s, u"2"_s, u"01"_s, refused + u" 3"_s},
        {Shape::Values, u"1.000,5"_s, {}, {}, refused + u" 1"_s},
        {Shape::Range, u"x"_s, u"1"_s, u"2"_s, refused + u" 1, 2"_s},
        {Shape::Range, {}, {}, u"2"_s, refused + u" 1, 2"_s},
        {Shape::Range, {}, u"1"_s, u"inf"_s, refused + u" 3"_s},
    };
    for (const Input& input : inputs) {
        MissingChoice choice(u"9"_s);
        choice.Option2 = input.shape;
        choice.EinzelWert = input.einzelWert;
        choice.Rangevon = input.von;
        choice.Rangebis = input.bis;
        QString fault;
        EXPECT_FALSE(choice.cmdOK(fault));
        EXPECT_EQ(fault, input.answer);
    }

    MissingChoice choice(u"9"_s);
    choice.Rangebis = u" 4,5 "_s;
    QString fault;
    std::optional<MissingAnswer> answer = choice.cmdOK(fault);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->sMissing, u"9, 4,5"_s) << "a further blank would make a third value";
    EXPECT_TRUE(answer->bUserMissing);
    EXPECT_EQ(MissingChoice::last().kind, 1);
    EXPECT_EQ(MissingChoice::last().Rangebis, 4.5);
    choice.Option1 = MissingChoice::Calculation::WithoutMissing;
    answer = choice.cmdOK(fault);
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->sMissing, u""_s);
    EXPECT_FALSE(answer->bUserMissing);
    EXPECT_EQ(MissingChoice::last().kind, 0);
}
