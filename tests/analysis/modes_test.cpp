#include "analysis/AnalysisModel.h"
#include "analysis/request/preselection.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TableText.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"
#include "tables/tableText.h"

#include <QMap>
#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

class AllModes : public testing::Test {
protected:
    AllModes() : catalogue_(home_.path(u"archive"_s)) { catalogue_.fill(); }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;
    ComparisonList& list_ = model_.comparison();

    void open() {
        ASSERT_EQ(catalogue_.open(), 1);
        gOptions.AskMissing = false;
        gOptions.HeaderValAddVar = false;
        model_.open();
    }

    /// QX1919 in a mode: V5, by V6 in another table, or V5 of both studies.
    void ask(AnalysisMode mode, const QString& first = u"V5"_s, const QString& second = u"V6"_s) {
        model_.edit().chooseMode(mode);
        model_.edit().StudyClick(u"QX1919"_s);
        model_.edit().chooseVariable(first);
        model_.edit().change(RequestPart::Entries, [](AnalysisRequest& r) { r.lst_TrendVars.clear(); });
        if (mode == AnalysisMode::Crosstab)
            model_.edit().chooseVariable2(second);
        if (mode == AnalysisMode::Comparison) {
            list_.addVariable(u"QX1919"_s, first);
            list_.addVariable(u"QX2020"_s, u"V5"_s);
        }
    }

    /// Value to count, with the two sums as "Summe" and "Gültige Fälle".
    static QMap<QString, QString> counts(const ResultTable& table, int column) {
        QMap<QString, QString> found;
        for (int row = 1; row < table.Rows(); ++row)
            if (!table.Cell(column, row).isEmpty())
                found[table.Cell(0, row).isEmpty() ? table.Cell(1, row) : table.Cell(0, row)] = table.Cell(column, row);
        return found;
    }
};

constexpr AnalysisMode everyMode[] = {AnalysisMode::Frequency, AnalysisMode::Crosstab, AnalysisMode::Descriptives,
                                      AnalysisMode::Comparison};

} // namespace

/// Random cases in thirty studies, each in a file of its own: more than one connection can hold.
TEST_F(AllModes, EachOfSixtyColumnsOfAComparisonHasTheCountsOfItsEntrysFrequency) {
    std::mt19937 random(20'180'331);
    const auto below = [&](unsigned n) { return static_cast<unsigned>(random() % n); };
    for (int i = 0; i < 30; ++i) {
        const QString study = u"RS%1"_s.arg(i, 2, 10, QChar(u'0'));
        const QString table = study + u"_1"_s;
        std::vector<std::vector<dao::Value>> cases;
        for (unsigned c = 20 + below(30); c > 0; --c) {
            const auto value = [&](unsigned n) { return below(9) == 0 ? dao::Value() : dao::Value(double(below(n))); };
            cases.push_back({value(6), value(4), dao::Value(0.25 * (1 + below(8)))});
        }
        catalogue_.together([&] {
            catalogue_.addStudy(study, study, {{"dt_WeightRE", u"W"_s}});
            for (const QString& name : {u"A"_s, u"B"_s, u"W"_s})
                catalogue_.addVariable(study, name, table, {{"dt_Missing", u"2"_s}});
        });
        const auto number = [](const QString& name) { return dao::FieldDefinition{name, dao::dbDouble}; };
        catalogue_.addCases(study, table, {number(u"A"_s), number(u"B"_s), number(u"W"_s)}, cases);
    }
    open();
    model_.edit().chooseMode(AnalysisMode::Comparison);
    for (int i = 0; i < 60; ++i) {
        gOptions.ComparisonWeight = i % 3 == 0 ? 1 : 0;
        ASSERT_TRUE(list_.addVariable(u"RS%1"_s.arg(i / 2, 2, 10, QChar(u'0')), i % 2 ? u"B"_s : u"A"_s));
        if (i % 5 == 0) {
            list_.select({i});
            model_.edit().typeFilterText(u"B<3"_s);
            list_.ApplyComparisonEntryChange(false);
        }
    }
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
    const ResultTable compared = model_.result().mfgGrid;
    const QList<ComparisonEntry> entries = list_.entries();
    gOptions.SeparateValidCases = gOptions.CumulatedPercent = false;
    for (int i = 0; i < 60; ++i) {
        model_.edit().chooseMode(AnalysisMode::Comparison);
        list_.select({i});
        model_.edit().chooseMode(AnalysisMode::Frequency);
        ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed) << i;
        EXPECT_EQ(counts(compared, i + 3), counts(model_.result().mfgGrid, 3)) << entries[i].text.toStdString();
    }
    EXPECT_TRUE(asker_.boxes.empty()) << asker_.lastText().toStdString();
}

TEST_F(AllModes, ARunStoppedAtAnyMomentLeavesNoTableThatPassesForWholeAndTheNextOneIsRight) {
    open();
    for (const AnalysisMode mode : everyMode) {
        ask(mode);
        ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
        const QString whole = clipText(model_.result().mfgGrid) + model_.result().lblLabel;
        int stopAt = 0;
        for (bool stopped = true; stopped; ++stopAt) {
            ASSERT_LT(stopAt, 500);
            ask(mode == AnalysisMode::Frequency ? AnalysisMode::Crosstab : AnalysisMode::Frequency);
            model_.changeTab(1);
            ask(mode);
            int turns = 0;
            asker_.onEventTurn = [&] {
                if (turns++ == stopAt)
                    model_.stop();
            };
            const RunOutcome outcome = model_.changeTab(1);
            asker_.onEventTurn = nullptr;
            stopped = outcome == RunOutcome::Cancelled;
            EXPECT_TRUE(stopped || outcome == RunOutcome::Computed);
            if (stopped) {
                EXPECT_NE(model_.tableState(), TableState::Current) << stopAt;
            }
            model_.changeTab(0);
            model_.changeTab(1);
            EXPECT_EQ(clipText(model_.result().mfgGrid) + model_.result().lblLabel, whole) << stopAt;
            EXPECT_EQ(model_.tableState(), TableState::Current);
        }
        EXPECT_GT(stopAt, 3);
    }
}

TEST_F(AllModes, TakeATextVariableAsThePartsSay) {
    open();
    const QString V8 = u"V8"_s;
    for (const AnalysisMode mode : everyMode) {
        ask(mode, V8);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed) << int(mode) << asker_.lastText().toStdString();
        EXPECT_EQ(model_.tableState(), TableState::Current);
        const bool refused = clipText(model_.result().mfgGrid).contains(u"Descriptives nur für numerische Felder"_s);
        EXPECT_EQ(refused, mode == AnalysisMode::Descriptives);
    }
    ask(AnalysisMode::Crosstab, u"V5"_s, V8);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(asker_.boxes.empty()) << asker_.lastText().toStdString();
}

TEST_F(AllModes, AnApostropheInAVariablesNameEndsNoCondition) {
    catalogue_.addStudy(u"AP"_s, u"Apostroph"_s);
    for (const QString& name : {u"O'X"_s, u"V"_s})
        catalogue_.addVariable(u"AP"_s, name, u"AP_1"_s, {{"dt_FieldName", name == "V"_L1 ? u"V"_s : u"OX"_s}});
    catalogue_.addValue(u"AP"_s, u"O'X"_s, u"1"_s, u"eins"_s);
    catalogue_.addCases(u"AP"_s, u"AP_1"_s, {{u"OX"_s, dao::dbDouble}, {u"V"_s, dao::dbDouble}}, {{1, 2}, {1, 2}});
    open();
    model_.edit().StudyClick(u"AP"_s);
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    model_.edit().chooseVariable(u"O'X"_s);
    model_.edit().chooseVariable2(u"V"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
    EXPECT_EQ(linesOf(model_.result().mfgGrid, 3).value(0), u"1|eins||2|2|2"_s);
}

/// A range says nothing about a text that is no number: "a", "b" and the empty text are valid beside it.
TEST_F(AllModes, ARangeOfMissingNumbersTakesNoTextOutOfACrosstab) {
    catalogue_.addStudy(u"TR"_s, u"Texte und Bereiche"_s);
    catalogue_.addVariable(u"TR"_s, u"T"_s, u"TR_1"_s, {{"dt_Missing", u"100 thru 200"_s}});
    for (const QString& name : {u"Z"_s, u"V"_s})
        catalogue_.addVariable(u"TR"_s, name, u"TR_1"_s, {{"dt_Missing", u"100 thru 200"_s}});
    catalogue_.addValue(u"TR"_s, u"T"_s, u"150"_s, u"k.A."_s);
    catalogue_.addCases(u"TR"_s, u"TR_1"_s, {{u"T"_s, dao::dbText}, {u"Z"_s, dao::dbText}, {u"V"_s, dao::dbDouble}},
                        {{u"a"_s, u"1"_s, 1},
                         {u"a"_s, u"1"_s, 2},
                         {u""_s, u"2"_s, 1},
                         {u"150"_s, u"150"_s, 1},
                         {u"7"_s, u"2"_s, 1},
                         {dao::Value(), u"1"_s, 1},
                         {u"b"_s, u"1"_s, 0}});
    open();
    QStringList counted;
    RunHooks hooks;
    hooks.onStatement = [&](const QString& name, const QString& text) {
        if (name == "counts"_L1)
            counted << text;
    };
    model_.setHooks(hooks);
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    model_.edit().StudyClick(u"TR"_s);
    const auto rows = [&](const QString& variable, const QString& filter) {
        counted.clear();
        model_.edit().chooseVariable(variable);
        model_.edit().chooseVariable2(u"V"_s);
        if (filter.isEmpty())
            model_.edit().chooseFilter(FilterKind::noFilter);
        else
            model_.edit().chooseFilterText(filter);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
        return linesOf(model_.result().mfgGrid, 3);
    };
    EXPECT_EQ(rows(u"T"_s, u"V>0"_s), (QStringList{u"|||1||1|1"_s, u"7|||1||1|1"_s, u"a|||1|1|2|2"_s,
                                                   u"Summe|||3|1|4|"_s, u"Gült. Summe|||3|1||4"_s}));
    // The statement is asked as it stands, and the cases it passes over are counted by another.
    const QString start =
        u"SELECT TR_1.T AS [T], TR_1.V AS [V], Count(q.ID) AS Count FROM (q INNER JOIN TR_1 ON q.ID = TR_1.dt_CaseID) "
        "WHERE TR_1.V>0"_s;
    const QString end = u" GROUP BY TR_1.T, TR_1.V ORDER BY TR_1.T, TR_1.V;"_s;
    EXPECT_EQ(
        counted,
        (QStringList{start + u" AND (TR_1.T < 100 OR TR_1.T > 200) "_s + end,
                     start +
                         u" AND ((TR_1.T < 100 OR TR_1.T > 200) OR (TR_1.T Is Not Null AND Not IsNumeric(TR_1.T))) "_s +
                         end}));
    EXPECT_EQ(model_.tableState(), TableState::Current);
    // Exchanged, the texts stand in the columns: 7, a and the empty text by V = 1 and 2.
    const auto flip = [this](bool on) {
        model_.edit().change(RequestPart::Mode, [on](AnalysisRequest& r) { r.chkFlipXtab = r.bCreationMode = on; });
    };
    flip(true);
    EXPECT_EQ(rows(u"T"_s, u"V>0"_s),
              (QStringList{u"1|||1|1|1|3|3"_s, u"2|||||1|1|1"_s, u"Summe|||1|1|2|4|"_s, u"Gült. Summe|||1|1|2||4"_s}));
    EXPECT_EQ(counted.size(), 2);
    flip(false);
    // Beside a text or not: what is missing, be it Null, stays out with a filter.
    EXPECT_EQ(rows(u"Z"_s, u"V>0"_s),
              (QStringList{u"1|||2|1|3|3"_s, u"2|||2||2|2"_s, u"Summe|||4|1|5|"_s, u"Gült. Summe|||4|1||5"_s}));
    EXPECT_TRUE(asker_.boxes.empty()) << asker_.lastText().toStdString();
}

/// The engine takes no notice of case, and hands a text over in whichever spelling came first in its group: that must
/// not tear a value apart where it is counted beside another variable or in another entry.
TEST_F(AllModes, CountTextsThatDifferInCaseAsOneValue) {
    catalogue_.addStudy(u"MC"_s, u"Schreibweisen"_s);
    for (const QString& name : {u"T"_s, u"V"_s})
        catalogue_.addVariable(u"MC"_s, name, u"MC_1"_s);
    catalogue_.addCases(
        u"MC"_s, u"MC_1"_s, {{u"T"_s, dao::dbText}, {u"V"_s, dao::dbDouble}},
        {{u"b"_s, 1}, {u"B"_s, 2}, {u"b"_s, 2}, {u"B"_s, 1}, {u"B"_s, 3}, {u"b"_s, 4}, {u"ä"_s, 1}, {u"Ä"_s, 2}});
    open();
    gOptions.ShowValidSums = gOptions.SeparateValidCases = gOptions.CumulatedPercent = false;
    const auto table = [this](const QList<int>& columns, int first) {
        model_.computeAnew();
        EXPECT_EQ(model_.facts().outcome, RunOutcome::Computed) << asker_.lastText().toStdString();
        QStringList rows;
        for (int row = first; row < model_.result().mfgGrid.Rows(); ++row) {
            QStringList cells;
            for (const int column : columns)
                cells << model_.result().mfgGrid.Cell(column, row);
            rows << cells.join(u'|');
        }
        return rows.join(u' ');
    };
    model_.edit().chooseMode(AnalysisMode::Frequency);
    model_.edit().StudyClick(u"MC"_s);
    model_.edit().chooseVariable(u"T"_s);
    EXPECT_EQ(table({0, 3}, 1), u"b|6 ä|2 |8 |8"_s);
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    model_.edit().chooseVariable2(u"V"_s);
    EXPECT_EQ(table({0, 3, 4, 5, 6, 7}, 3), u"b|2|2|1|1|6 ä|1|1|||2 Summe|3|3|1|1|8"_s);
    model_.mfgGrid_Click({3, 3, 2, 2});
    EXPECT_EQ(table({0, 2, 3, 7}, 3), u"b|X|2|6 ä||1|2 Summe||3|8"_s);
    model_.edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.bCreationMode = r.chkFlipXtab = true; });
    EXPECT_EQ(table({0, 3, 4, 5}, 3), u"1|2|1|3 2|2|1|3 3|1||1 4|1||1 Summe|6|2|8"_s);

    model_.edit().chooseMode(AnalysisMode::Comparison);
    for (int i = 0; i < 3; ++i) {
        list_.addVariable(u"MC"_s, u"T"_s);
        list_.select({i});
        model_.edit().typeFilterText(u"V="_s + QString::number(i + 1));
        list_.ApplyComparisonEntryChange(false);
    }
    EXPECT_EQ(table({0, 3, 4, 5}, 1), u"b|2|2|1 ä|1|1| |3|3|1 |3|3|1 |||"_s);
    EXPECT_TRUE(asker_.boxes.empty()) << asker_.lastText().toStdString();
}

/// 75 times 1.3 is 97.5 and 205 times 1.7 is 348.5, whatever is added to what in between: no mode may show 97 or 348,
/// neither in a cell nor as the sum over 75 values.
TEST_F(AllModes, RoundAWeightedCountThatEndsInAHalfUp) {
    catalogue_.together([&] {
        catalogue_.addStudy(u"HW"_s, u"Halbe"_s, {{"dt_WeightRE", u"W"_s}});
        for (const QString& name : {u"V"_s, u"N"_s, u"K"_s, u"W"_s})
            catalogue_.addVariable(u"HW"_s, name, u"HW_1"_s);
    });
    std::vector<std::vector<dao::Value>> cases;
    for (int i = 1; i <= 205; ++i) {
        cases.push_back({2, 0, 1, 1.7});
        if (i <= 75)
            cases.push_back({1, i, 1, 1.3});
    }
    std::vector<dao::FieldDefinition> fields;
    for (const QString& name : {u"V"_s, u"N"_s, u"K"_s, u"W"_s})
        fields.push_back({name, dao::dbDouble});
    catalogue_.addCases(u"HW"_s, u"HW_1"_s, fields, cases);
    open();
    gOptions.ComparisonWeight = 1;
    const QMap<QString, QString> expected{
        {u"1"_s, u"98"_s}, {u"2"_s, u"349"_s}, {u"Summe"_s, u"446"_s}, {u"Gültige Fälle"_s, u"446"_s}};
    for (const AnalysisMode mode : {AnalysisMode::Frequency, AnalysisMode::Comparison}) {
        SCOPED_TRACE(int(mode));
        model_.edit().chooseMode(mode);
        model_.edit().StudyClick(u"HW"_s);
        model_.edit().chooseVariable(u"V"_s);
        model_.edit().chooseWeight(WeightKind::WeightRE);
        if (mode == AnalysisMode::Comparison) {
            list_.addVariable(u"HW"_s, u"V"_s);
            list_.addVariable(u"HW"_s, u"N"_s);
            list_.select({1});
            model_.edit().typeFilterText(u"V=1"_s);
            list_.ApplyComparisonEntryChange(false);
        }
        ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
        const QMap<QString, QString> found = counts(model_.result().mfgGrid, 3);
        for (auto value = expected.begin(); value != expected.end(); ++value)
            EXPECT_EQ(found[value.key()], value.value()) << value.key().toStdString();
        if (mode == AnalysisMode::Frequency) {
            model_.edit().chooseVariable(u"N"_s);
            model_.edit().chooseFilterText(u"V=1"_s);
            ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
            model_.edit().chooseFilter(FilterKind::noFilter);
        }
        const QMap<QString, QString> sums = counts(model_.result().mfgGrid, mode == AnalysisMode::Frequency ? 3 : 4);
        EXPECT_EQ(sums[u"Summe"_s], u"98"_s);
        EXPECT_EQ(sums[u"Gültige Fälle"_s], u"98"_s);
    }
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    model_.edit().chooseFilter(FilterKind::noFilter);
    model_.edit().chooseVariable(u"V"_s);
    model_.edit().chooseVariable2(u"K"_s);
    model_.edit().chooseWeight(WeightKind::WeightRE);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
    EXPECT_EQ(model_.result().mfgGrid.Cell(3, 3) + u' ' + model_.result().mfgGrid.Cell(3, 4), u"98 349"_s);
}

TEST_F(AllModes, NothingOfAComparisonsLastEntryCountsInAnotherMode) {
    catalogue_.addVariable(u"QX1919"_s, u"SE"_s, u"QX1919_1"_s, {{"dt_FieldName", u"V7"_s}});
    catalogue_.execute(
        u"UPDATE tkey_Study SET dt_query = 'SELECT QX1919_1.dt_CaseID AS ID, QX1919_1.V7 AS SE FROM QX1919_1;' "
        "WHERE id_StudyNo = 'QX1919'"_s);
    open();
    model_.edit().chooseMode(AnalysisMode::Comparison);
    model_.edit().StudyClick(u"QX1919"_s);
    model_.edit().chooseVariable(u"V5"_s);
    ASSERT_TRUE(model_.edit().choosePart(u"1"_s));
    ASSERT_TRUE(list_.cmd_AddTrend());
    ASSERT_TRUE(model_.edit().StudyClick(u"QX2020"_s));
    model_.edit().chooseVariable(u"V5"_s);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
    EXPECT_EQ(model_.request().optFilter, FilterKind::FilterParts) << "the run leaves the entry's filter";
    model_.edit().chooseMode(AnalysisMode::Frequency);
    EXPECT_EQ(model_.request().optFilter, FilterKind::noFilter) << "this study has no such part";
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.result().lblLabel.count(u"Fälle aus"_s), 0);
}

TEST_F(AllModes, AnEntryFollowsOnlyAWindowThatShowsItsStudy) {
    open();
    model_.edit().chooseMode(AnalysisMode::Comparison);
    list_.addVariable(u"QX1919"_s, u"V5"_s);
    list_.select({0});
    model_.edit().chooseFilter(FilterKind::FilterUser);
    model_.edit().typeFilterText(u"V7=1"_s);
    EXPECT_TRUE(asker_.boxes.empty()) << "an empty filter is none, and one that is being typed does not count yet";
    model_.edit().StudyClick(u"QX2020"_s);
    model_.edit().chooseFilterText(u"V7=1"_s);
    EXPECT_TRUE(asker_.boxes.empty()) << "this is the filter of another study";
}

TEST_F(AllModes, ASelectionOfVariablesBecomesTheRequest) {
    open();
    const std::vector<SelectedVariable> three{{u"QX1919"_s, u"V5"_s}, {u"QX1919"_s, u"V7"_s}, {u"QX1919"_s, u"V6"_s}};
    preselectVariables(model_.edit(), three);
    EXPECT_EQ(model_.request().mode, AnalysisMode::Crosstab);
    EXPECT_EQ(model_.request().dbcVariable2.value, u"V7");
    model_.open();
    preselectVariables(model_.edit(), {{u"QX1919"_s, u"V5"_s}, {u"QX2020"_s, u"V5"_s}});
    EXPECT_EQ(model_.request().mode, AnalysisMode::Frequency) << "the second is of another study";
    EXPECT_EQ(model_.request().dbcVariable.value, u"V5");
    for (const int weight : {0, 1, 2}) {
        model_.open();
        gOptions.ComparisonWeight = weight;
        preselectComparison(model_.edit(), list_,
                            {{u"QX1919"_s, u"V5"_s}, {u"QX2020"_s, u"V5"_s}, {u"WEG"_s, u"V5"_s}});
        ASSERT_EQ(list_.entries().size(), 2);
        EXPECT_EQ(list_.entries()[0].at(ComparisonEntry::Weight), weight == 1 ? u"V3"_s : QString());
        EXPECT_EQ(list_.entries()[1].at(ComparisonEntry::Weight), QString());
        EXPECT_EQ(comparisonTitle(u"Trend"_s), weight == 0 ? u"Trend"_s : u"Trend (gewichtet)"_s);
    }
}

TEST_F(AllModes, MarksOfAComparisonBelongToItsEntriesAndOutliveOptionsThatKeepItsRows) {
    open();
    ask(AnalysisMode::Comparison);
    model_.changeTab(1);
    int one = 1;
    while (model_.result().mfgGrid.Cell(0, one) != u"1")
        ++one;
    EXPECT_EQ(model_.mfgGrid_Click({one, one, 2, 2}), ClickEffect::Marked);
    const QString valid = model_.result().mfgGrid.Cell(3, model_.result().mfgGrid.Rows() - 2);
    gOptions.HeaderYear = !gOptions.HeaderYear;
    model_.computeAnew();
    EXPECT_EQ(model_.result().mfgGrid.Cell(2, one), u"X");
    EXPECT_NE(model_.result().mfgGrid.Cell(3, model_.result().mfgGrid.Rows() - 2), valid);
    EXPECT_TRUE(standsOn(*model_.result().facts)[0].contains(u"von Hand gesetzt: "_s));
    // Another entry: the marks are none of its.
    list_.addVariable(u"QX1919"_s, u"V7"_s);
    asker_.answer(ui::Answer::Yes).answer(ui::Answer::No);
    model_.cmdCalculate();
    EXPECT_NE(model_.result().mfgGrid.Cell(2, one), u"X");
    EXPECT_EQ(model_.result().mfgGrid.Cols(), 6);
    EXPECT_EQ(model_.tableState(), TableState::Current);
}
