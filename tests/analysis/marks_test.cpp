#include "analysis/AnalysisModel.h"
#include "analysis/result/provenance.h"
#include "app/globals.h"
#include "config/Options.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TableText.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Marks of missing values that a hand has set, through whatever happens between one table and the next. V5 of QX1919
/// has 1, 1, 2, 2, 9 and Null, V7 has 1 and 2 in turn; 9 is missing by definition.
class HandMarks : public testing::Test {
protected:
    HandMarks() : catalogue_(home_.path(u"archive"_s)) {
        catalogue_.fill();
        catalogue_.open();
        gOptions.ShowPercentSign = gOptions.CumulatedPercent = gOptions.HeaderValAddVar = false;
        model_.open();
        model_.edit().StudyClick(u"QX1919"_s);
        model_.edit().chooseVariable(u"V5"_s);
    }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;

    static constexpr AnalysisMode everyMode[] = {AnalysisMode::Frequency, AnalysisMode::Crosstab,
                                                 AnalysisMode::Comparison};

    void ask(AnalysisMode mode) {
        model_.edit().chooseMode(mode);
        model_.edit().chooseVariable(u"V5"_s);
        if (mode == AnalysisMode::Crosstab)
            model_.edit().chooseVariable2(u"V7"_s);
        if (mode == AnalysisMode::Comparison && model_.request().lst_TrendVars.isEmpty()) {
            model_.comparison().addVariable(u"QX1919"_s, u"V5"_s);
            model_.comparison().addVariable(u"QX2020"_s, u"V5"_s);
        }
    }
    /// The rows or columns with an "X", by their value or label.
    QStringList rows() const { return Marks::of(model_.result().marked()).rows.missing(); }
    QStringList columns() const { return Marks::of(model_.result().marked()).columns.missing(); }
    int rowOf(const QString& value) const {
        const ResultTable& table = model_.result().mfgGrid;
        for (int row = table.shape.rows.first; row <= table.shape.rows.last; ++row)
            if (table.Cell(0, row) == value)
                return row;
        return -1;
    }
    void clickRow(const QString& value) {
        EXPECT_EQ(model_.mfgGrid_Click({rowOf(value), rowOf(value), 2, 2}), ClickEffect::Marked);
    }
    /// Calculates anew by the marks as they are.
    void calculate() {
        asker_.answer(ui::Answer::Yes).answer(ui::Answer::No);
        model_.cmdCalculate();
    }
    /// A table with 1 marked by hand.
    void markOne(AnalysisMode mode) {
        ask(mode);
        if (model_.changeTab(1) == RunOutcome::Reused) {
            asker_.answer(ui::Answer::Yes).answer(ui::Answer::Yes);
            model_.cmdCalculate();
        }
        ASSERT_EQ(model_.facts().outcome, RunOutcome::Computed) << asker_.lastText().toStdString();
        clickRow(u"1"_s);
        EXPECT_EQ(model_.tableState(), TableState::OtherMarks);
    }
    void stopAtTurn(int turn) {
        asker_.onEventTurn = [this, turn, turns = 0]() mutable {
            if (turns++ == turn)
                model_.stop();
        };
    }
};

} // namespace

TEST_F(HandMarks, AreTakenOverByATableInAnotherLanguageShapeOrOption) {
    struct Change {
        const char* what;
        AnalysisMode mode;
        std::function<void()> make;
    };
    const auto flip = [](bool& option) { return [&option] { option = !option; }; };
    const std::vector<Change> changes{
        {"language", AnalysisMode::Frequency, [] { gLanguage = gLanguage == 1 ? 0 : 1; }},
        {"language", AnalysisMode::Crosstab, [] { gLanguage = gLanguage == 1 ? 0 : 1; }},
        {"language", AnalysisMode::Comparison, [] { gLanguage = gLanguage == 1 ? 0 : 1; }},
        {"blank row", AnalysisMode::Frequency, flip(gOptions.SeparateValidCases)},
        {"one column more", AnalysisMode::Frequency, flip(gOptions.CumulatedPercent)},
        {"separator", AnalysisMode::Frequency, flip(gOptions.CommaInPercent)},
        {"valid sums", AnalysisMode::Crosstab, flip(gOptions.ShowValidSums)},
        {"labels", AnalysisMode::Crosstab, flip(gOptions.NoRowLabels)},
        {"N", AnalysisMode::Crosstab, flip(gOptions.IncludeNinXTab)},
        {"missing values shown", AnalysisMode::Crosstab, flip(gOptions.IncludeMissingXTab)},
        {"header", AnalysisMode::Comparison, flip(gOptions.HeaderYear)},
        {"labels of values", AnalysisMode::Comparison, flip(gOptions.HeaderValFirst)},
    };
    for (const Change& change : changes) {
        SCOPED_TRACE(std::string(change.what) + " " + std::to_string(int(change.mode)));
        markOne(change.mode);
        const QStringList marked = rows();
        ASSERT_TRUE(marked.contains(u"1"_s));
        const QString otherMarks = stateText(TableState::OtherMarks);
        EXPECT_TRUE(provenanceLines(model_.result()).contains(otherMarks)) << "a copy has the mark, its numbers don't";
        change.make();
        EXPECT_EQ(model_.tableState(), TableState::OtherOptions);
        model_.computeAnew();
        EXPECT_EQ(model_.tableState(), TableState::Current);
        EXPECT_TRUE(rows().contains(u"1"_s));
        EXPECT_FALSE(rows().contains(u"2"_s));
        EXPECT_FALSE(provenanceLines(model_.result()).contains(otherMarks));
        EXPECT_TRUE(standsOn(*model_.result().facts).join(u' ').contains(u"von Hand gesetzt:"_s));
        change.make();
        asker_.answer(ui::Answer::Yes).answer(ui::Answer::Yes);
        model_.cmdCalculate();
        EXPECT_FALSE(rows().contains(u"1"_s)) << "the definition again";
    }
}

TEST_F(HandMarks, FollowTheLanguageByThemselvesWhereNothingElseHasChanged) {
    for (const AnalysisMode mode : everyMode) {
        SCOPED_TRACE(int(mode));
        gLanguage = 0;
        markOne(mode);
        gLanguage = 1;
        EXPECT_EQ(model_.tableState(), TableState::OtherOptions);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
        EXPECT_TRUE(rows().contains(u"1"_s));
        // Two things at once: the table is another one, and its definition counts.
        gLanguage = 0;
        gOptions.CommaInPercent = !gOptions.CommaInPercent;
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
        EXPECT_FALSE(rows().contains(u"1"_s));
    }
}

TEST_F(HandMarks, BelongToTheirValueOnWhicheverAxisItStands) {
    gOptions.IncludeMissingXTab = true;
    markOne(AnalysisMode::Crosstab);
    clickRow(u"9"_s);                                                   // valid now
    EXPECT_EQ(model_.mfgGrid_Click({2, 2, 4, 4}), ClickEffect::Marked); // V7 = 2
    model_.edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = r.bCreationMode = true; });
    EXPECT_EQ(model_.tableState(), TableState::OtherRequest);
    model_.computeAnew();
    EXPECT_EQ(columns(), (QStringList{u"SYSMIS"_s, u"1"_s}));
    EXPECT_EQ(rows(), QStringList(u"2"_s));
    // V7 = 1 has 1, 2 and 9 once each, of which 2 and 9 are valid.
    EXPECT_EQ(linesOf(model_.result().mfgGrid, 3).value(0), u"1|männlich|||1|1|1|3|2"_s);
    EXPECT_TRUE(standsOn(*model_.result().facts)
                    .join(u' ')
                    .contains(u"V5: 9 (von Hand gesetzt: 1, von Hand gültig: 9), V7: von Hand gesetzt: 2"_s));
    // A value that its definition leaves out was made valid by hand: it stays where missing values are not shown.
    gOptions.IncludeMissingXTab = false;
    model_.computeAnew();
    EXPECT_EQ(linesOf(model_.result().mfgGrid, 3).value(0), u"1|männlich||1|1|1|3|2"_s);
}

/// The values of a definition stay excluded whether a row shows them or not, and whether a case has them or not.
TEST_F(HandMarks, AreNamedBesideTheWholeDefinition) {
    struct Case {
        AnalysisMode mode;
        QString definition;
        bool shown;    ///< missing values have a row
        QString other; ///< a second value that is clicked
        QString words;
    };
    const std::vector<Case> cases{
        {AnalysisMode::Crosstab, u"9"_s, false, QString(), u"V5: 9 (von Hand gesetzt: 1), V7: ohne Definition"_s},
        {AnalysisMode::Crosstab, u"90 thru 99;9"_s, false, u"2"_s,
         u"V5: 90 thru 99;9 (von Hand gesetzt: 1; 2), V7: "_s},
        {AnalysisMode::Crosstab, u"7;8;9"_s, true, u"9"_s,
         u"V5: 7;8;9 (von Hand gesetzt: 1, von Hand gültig: 9), V7"_s},
        {AnalysisMode::Frequency, u"8;9"_s, true, QString(), u"Missing-Definition: 8;9 (von Hand gesetzt: 1)"_s},
        {AnalysisMode::Frequency, QString(), true, QString(), u"Missing-Definition: von Hand gesetzt: 1"_s},
    };
    for (const Case& one : cases) {
        catalogue_.execute(u"UPDATE tkey_Variable SET dt_Missing = %1 WHERE id_VarName = 'V5'"_s.arg(
            one.definition.isEmpty() ? u"Null"_s : u'\'' + one.definition + u'\''));
        gOptions.IncludeMissingXTab = one.shown;
        model_.open();
        model_.edit().StudyClick(u"QX1919"_s);
        markOne(one.mode);
        if (!one.other.isEmpty())
            clickRow(one.other);
        calculate();
        const QString words = standsOn(*model_.result().facts).join(u' ');
        EXPECT_TRUE(words.contains(one.words)) << words.toStdString();
    }
}

TEST_F(HandMarks, OfARunThatWasStoppedAreTakenByTheNextOneOfTheSameTableAndByNoOther) {
    for (const AnalysisMode mode : everyMode) {
        for (int turn = 0;; ++turn) {
            SCOPED_TRACE(std::to_string(int(mode)) + " stopped at turn " + std::to_string(turn));
            ASSERT_LT(turn, 200);
            markOne(mode);
            stopAtTurn(turn);
            calculate();
            asker_.onEventTurn = nullptr;
            const bool stopped = model_.facts().outcome == RunOutcome::Cancelled;
            if (stopped) {
                EXPECT_NE(model_.tableState(), TableState::Current);
            }
            // The odd ones go on to another variable, the even ones finish what was stopped.
            if (turn % 2 == 1 && mode != AnalysisMode::Comparison) {
                if (mode == AnalysisMode::Frequency)
                    model_.edit().chooseVariable(u"V7"_s);
                else
                    model_.edit().chooseVariable2(u"V6"_s);
                EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
                EXPECT_FALSE(rows().contains(u"1"_s)) << "marks of another table";
                EXPECT_EQ(model_.result().marks.by, Marks::By::Definition);
            } else {
                EXPECT_EQ(model_.changeTab(1), stopped ? RunOutcome::Computed : RunOutcome::Reused);
                EXPECT_TRUE(rows().contains(u"1"_s));
                EXPECT_EQ(model_.tableState(), TableState::Current);
            }
            model_.edit().change(RequestPart::Entries, [](AnalysisRequest& r) { r.lst_TrendVars.clear(); });
            if (!stopped)
                break;
        }
    }
}

TEST_F(HandMarks, OfAStoppedRunAreNoneForAnotherStudyWeightOrAfterOptions) {
    const auto stopped = [this](AnalysisMode mode) {
        markOne(mode);
        stopAtTurn(0);
        calculate();
        asker_.onEventTurn = nullptr;
        ASSERT_EQ(model_.facts().outcome, RunOutcome::Cancelled);
    };
    const auto nothingByHand = [this] {
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
        EXPECT_FALSE(rows().contains(u"1"_s));
    };
    stopped(AnalysisMode::Frequency);
    model_.edit().StudyClick(u"QX2020"_s);
    model_.edit().chooseVariable(u"V5"_s);
    nothingByHand();
    model_.edit().StudyClick(u"QX1919"_s);
    stopped(AnalysisMode::Frequency);
    model_.optionsApplied();
    nothingByHand();
    stopped(AnalysisMode::Comparison);
    model_.edit().change(RequestPart::Entries,
                         [](AnalysisRequest& r) { r.lst_TrendVars[0].column[ComparisonEntry::Weight] = u"V3"_s; });
    nothingByHand();
    // A check that refuses a run in between changes nothing of what is shown.
    ask(AnalysisMode::Crosstab);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    stopAtTurn(0);
    model_.computeAnew();
    asker_.onEventTurn = nullptr;
    EXPECT_EQ(model_.tableState(), TableState::Stopped);
    model_.edit().chooseUserWeight();
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused);
    model_.edit().chooseWeight(WeightKind::noWeight);
    EXPECT_EQ(model_.tableState(), TableState::Stopped);
}

TEST_F(HandMarks, OfSystemMissingAreNoneOfAnEmptyText) {
    gOptions.IncludeMissingXTab = true;
    ask(AnalysisMode::Crosstab);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    clickRow(QString());
    calculate();
    EXPECT_EQ(rows(), QStringList(u"9"_s)) << "system-missing was made valid by hand";
    EXPECT_TRUE(model_.result().lblLabel.endsWith(u"(N=5)"_s));
    model_.edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = r.bCreationMode = true; });
    model_.computeAnew();
    EXPECT_EQ(columns(), QStringList(u"9"_s));
}

TEST_F(HandMarks, ATableThatIsCutShortNamesNoMarksOfAnotherOne) {
    catalogue_.addStudy(u"QX5"_s, u"Viele Werte"_s);
    catalogue_.addVariable(u"QX5"_s, u"V5"_s, u"QX5_1"_s, {{"dt_Missing", u"9"_s}});
    std::vector<std::vector<dao::Value>> cases;
    for (int i = 1; i <= 25001; ++i)
        cases.push_back({i});
    catalogue_.addCases(u"QX5"_s, u"QX5_1"_s, {dao::TableDef::CreateField(u"V5"_s, dao::dbDouble)}, cases);
    markOne(AnalysisMode::Frequency);
    calculate();
    const auto words = [this] { return standsOn(*model_.result().facts).join(u' '); };
    ASSERT_TRUE(words().contains(u"Missing-Definition: 9 (von Hand gesetzt: 1)"_s));
    model_.edit().refresh();
    ASSERT_TRUE(model_.edit().StudyClick(u"QX5"_s));
    model_.edit().chooseVariable(u"V5"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Truncated);
    EXPECT_EQ(model_.tableState(), TableState::CutShort);
    EXPECT_TRUE(words().endsWith(u"Missing-Definition: 9"_s)) << words().toStdString();
}

/// What each mode's table looks at, and nothing else, makes it one of other options.
TEST_F(HandMarks, ATableIsOfOtherOptionsWhereOneThatItShowsHasChanged) {
    using Option = bool Options::*;
    const std::vector<Option> all{&Options::CumulatedPercent,
                                  &Options::SeparateValidCases,
                                  &Options::IncludeMissing,
                                  &Options::IncludeMissingXTab,
                                  &Options::IncludeMissingInPercentXTab,
                                  &Options::IncludeNinXTab,
                                  &Options::IncludeNinXTabPercent,
                                  &Options::IncludeNinXTabPercentNFirst,
                                  &Options::NoColumnLabels,
                                  &Options::NoRowLabels,
                                  &Options::ShowValidSums,
                                  &Options::ShowPercentSign,
                                  &Options::CommaInPercent,
                                  &Options::AutoColWidth,
                                  &Options::HeaderStudy,
                                  &Options::HeaderVar,
                                  &Options::HeaderYear,
                                  &Options::HeaderGroup,
                                  &Options::HeaderValFirst,
                                  &Options::HeaderValAddVar,
                                  &Options::HeaderAddWeight,
                                  &Options::HeaderAddFilter,
                                  &Options::AutomaticVariableColumnWidth,
                                  &Options::EnglishLanguage};
    const auto of = [&](size_t first, size_t last, std::initializer_list<size_t> more) {
        std::vector<Option> some(all.begin() + static_cast<std::ptrdiff_t>(first),
                                 all.begin() + static_cast<std::ptrdiff_t>(last));
        for (const size_t index : more)
            some.push_back(all[index]);
        return some;
    };
    const std::pair<AnalysisMode, std::vector<Option>> modes[] = {{AnalysisMode::Frequency, of(0, 3, {12, 13})},
                                                                  {AnalysisMode::Crosstab, of(3, 14, {})},
                                                                  {AnalysisMode::Comparison, of(14, 23, {12, 13})}};
    for (const auto& [mode, looked] : modes) {
        ask(mode);
        ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
        for (size_t i = 0; i < all.size(); ++i) {
            gOptions.*all[i] = !(gOptions.*all[i]);
            const bool other = std::ranges::find(looked, all[i]) != looked.end();
            EXPECT_EQ(model_.tableState(), other ? TableState::OtherOptions : TableState::Current)
                << int(mode) << ' ' << i;
            gOptions.*all[i] = !(gOptions.*all[i]);
        }
    }
}

TEST_F(HandMarks, EndWithARequestThatHasChanged) {
    markOne(AnalysisMode::Frequency);
    calculate();
    EXPECT_EQ(rows(), (QStringList{u"SYSMIS"_s, u"1"_s, u"9"_s}));
    model_.edit().chooseFilterText(u"V7=1"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(rows(), QStringList(u"9"_s));
    clickRow(u"1"_s);
    model_.edit().chooseFilter(FilterKind::noFilter);
    model_.computeAnew();
    EXPECT_EQ(rows(), (QStringList{u"SYSMIS"_s, u"9"_s}));
    // The same table again, by its definition: nobody has asked for the marks of before.
    clickRow(u"1"_s);
    model_.edit().chooseVariable(u"V7"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(rows(), QStringList());
    model_.edit().chooseVariable(u"V5"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(rows(), (QStringList{u"SYSMIS"_s, u"9"_s}));
}

TEST(ValueMarks, AreNamedByWhatTellsThemApart) {
    EXPECT_EQ((ValueMark{u"1"_s, u"sehr"_s}.text()), u"1");
    EXPECT_EQ((ValueMark{QString(), u"SYSMIS (SV1, V7)"_s, true}.text()), u"SYSMIS") << "not of one column alone";
    EXPECT_EQ((ValueMark{QString(), u"nicht gefragt"_s, true}.text()), u"nicht gefragt");
    EXPECT_EQ((ValueMark{}.text()), u"\"\"") << "an empty text";
}

/// Of a value's row the first entry that brings it decides, so the others' definitions alone would be untrue of it.
TEST_F(HandMarks, OfAComparisonSayWhereAnEarlierEntryHasDecidedAgainstADefinition) {
    ask(AnalysisMode::Comparison);
    model_.comparison().addVariable(u"QX1919"_s, u"V7"_s); // 1 and 2 only
    model_.edit().change(RequestPart::Entries, [](AnalysisRequest& r) {
        r.lst_TrendVars[1] = r.lst_TrendVars[0];
        r.lst_TrendVars[0].column[ComparisonEntry::Missing] = u"2"_s;
        r.lst_TrendVars[1].column[ComparisonEntry::Missing] = u"9"_s;
        r.lst_TrendVars[2].column[ComparisonEntry::Missing].clear();
        r.lst_TrendVars[1].column[ComparisonEntry::Filter] = u"V7=1"_s;
        r.lst_TrendVars[1].column[ComparisonEntry::FilterInfo] = u"user"_s;
    });
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
    const auto endOf = [this](int entry) {
        return standsOn(*model_.result().facts).value(entry).section(u" · "_s, -1);
    };
    EXPECT_EQ(endOf(0), u"Missing-Definition: 2"_s);
    EXPECT_EQ(endOf(1), u"Missing-Definition: 9 (nach einem früheren Eintrag ausgeschlossen: 2, nach einem früheren "
                        "Eintrag gültig: 9)"_s);
    EXPECT_EQ(endOf(2), u"Missing-Definition: nach einem früheren Eintrag ausgeschlossen: 2"_s);
    // As typed: whoever reads it knows no tables.
    EXPECT_TRUE(standsOn(*model_.result().facts).value(1).contains(u"Filter: V7=1 ·"_s));
    // What a hand has decided is said of all of them, in a line of its own.
    clickRow(u"2"_s);
    calculate();
    EXPECT_EQ(endOf(0), u"Missing-Definition: von Hand gültig: 2"_s);
    EXPECT_EQ(endOf(2), u"Missing-Definition: 9 (nach einem früheren Eintrag gültig: 9)"_s);
    EXPECT_EQ(endOf(3), u"Missing-Definition: ohne Definition"_s);
}

TEST_F(HandMarks, AComparisonIsWholeOnlyAfterItsLastEntry) {
    ask(AnalysisMode::Comparison);
    // Turns come before each entry's counts and with each row of its column: the second column is under way.
    int columnsSeen = 0;
    asker_.onEventTurn = [&] { columnsSeen = std::max(columnsSeen, static_cast<int>(model_.facts().counts.size())); };
    RunHooks hooks;
    hooks.onStatement = [&, entries = 0](const QString& name, const QString&) mutable {
        if (name == "counts"_L1 && ++entries == 2)
            model_.stop();
    };
    model_.setHooks(hooks);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Cancelled);
    ASSERT_TRUE(model_.result().facts);
    EXPECT_FALSE(model_.result().facts->complete);
    EXPECT_EQ(model_.tableState(), TableState::CutShort);
    EXPECT_EQ(model_.mfgGrid_Click({1, 1, 2, 2}), ClickEffect::None) << "a part takes no marks";
    // Its words follow no language: what is unfinished is computed anew, by the definition.
    gLanguage = 1;
    model_.setHooks({});
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.tableState(), TableState::Current);
}

TEST_F(HandMarks, WhatWasSaidOfMissingValuesEndsWithTheMode) {
    model_.edit().chooseMode(AnalysisMode::Descriptives);
    RunHooks hooks;
    hooks.askMissing = [this](const QString&) {
        model_.stop();
        return std::optional(MissingAnswer{u"2"_s, true});
    };
    model_.setHooks(hooks);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Cancelled);
    EXPECT_EQ(model_.request().sMissing, u"2"_s) << "the next run goes on with it";
    model_.setHooks({});
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.result().facts->request.sMissing, u"2"_s);
    model_.setHooks(hooks);
    model_.edit().change(RequestPart::Statistics, [](AnalysisRequest&) {});
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Cancelled);
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    EXPECT_EQ(model_.request().sMissing, u"9"_s);
    EXPECT_FALSE(model_.request().bUserMissing);
}

/// The title names the N that the percentages below it rest on, also where an option has changed since.
TEST_F(HandMarks, TheTitleOfATableThatStaysNamesTheBaseOfItsPercentages) {
    gOptions.IncludeMissingInPercentXTab = false;
    ask(AnalysisMode::Crosstab);
    model_.changeTab(1);
    const QString title = model_.result().lblLabel;
    EXPECT_TRUE(title.endsWith(u"(N=4)"_s));
    EXPECT_EQ(model_.result().mfgGrid2.Cell(3, 4), u"50,0"_s) << "1 of the 2 valid cases of V7 = 1";
    gOptions.IncludeMissingInPercentXTab = true;
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);
    EXPECT_EQ(model_.result().lblLabel, title);
    EXPECT_EQ(model_.tableState(), TableState::OtherOptions);
    model_.computeAnew();
    EXPECT_TRUE(model_.result().lblLabel.endsWith(u"(N=5)"_s));
    EXPECT_EQ(model_.result().mfgGrid2.Cell(4, 4), u"33,3"_s) << "1 of the 3 of V7 = 2 that are shown";
    // A frequency table has both bases, and its title follows the option.
    ask(AnalysisMode::Frequency);
    gOptions.IncludeMissing = false;
    model_.changeTab(1);
    EXPECT_TRUE(model_.result().lblLabel.endsWith(u"(N=4)"_s));
    gOptions.IncludeMissing = true;
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);
    EXPECT_TRUE(model_.result().lblLabel.endsWith(u"(N=6)"_s));
    EXPECT_EQ(model_.tableState(), TableState::Current);
}
