#include "tables/Comparison.h"

#include "platform/system/NumberFormat.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TableText.h"
#include "support/TestHome.h"
#include "support/TestRecordsets.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const dao::Value noValue;

/// A comparison as a run sets it up, filled entry by entry.
class ComparisonTable : public testing::Test {
protected:
    TestHome home_;
    ScriptedAsker asker_;
    TestRecordsets recordsets_{home_.path(u"t.mdb"_s)};
    ResultTable table_, percent_, absolute_;
    std::optional<Marks> marks_;
    bool valFirst_ = true, addVar_ = false, comma_ = true;
    std::function<bool()> cancelled_;

    void setUp(int entries) {
        table_.Clear();
        table_.setRows(4);
        table_.setCols(entries + 3);
    }

    /// @param type dao::dbText for a text variable
    BuildOutcome add(int entry, const QString& header, const TestRecordsets::Rows& counts,
                     const TestRecordsets::Rows& labels = {}, const QString& missing = u"9"_s,
                     int type = dao::dbDouble) {
        table_.setCell(entry + 2, 0, header);
        const dao::RecordsetPtr c = recordsets_.make(u"c"_s, {{u"Value"_s, type}, {u"Count"_s, dao::dbDouble}}, counts);
        const dao::RecordsetPtr l =
            recordsets_.make(u"l"_s, {{u"dt_Value"_s, dao::dbText}, {u"dt_Label"_s, dao::dbText}}, labels);
        const ComparisonInput input{.counts = *c,
                                    .labels = *l,
                                    .dtMissing = missing,
                                    .column = entry + 2,
                                    .HeaderValFirst = valFirst_,
                                    .HeaderValAddVar = addVar_,
                                    .CommaInPercent = comma_,
                                    .AutoColWidth = false,
                                    .marks = marks_ ? &*marks_ : nullptr,
                                    .cancelled = cancelled_};
        return BuildComparisonColumn(table_, percent_, absolute_, input);
    }

    static QStringList rows(const ResultTable& table) { return linesOf(table, 1); }
};

} // namespace

TEST_F(ComparisonTable, EachEntryAddsAColumnAndNewValuesComeToTheirSortedPlace) {
    setUp(2);
    EXPECT_EQ(add(1, u"A, V5"_s, {{noValue, 4}, {1, 10}, {3, 20}, {9, 6}}, {{u"1"_s, u"ja"_s}, {u"9"_s, u"k.A."_s}}),
              BuildOutcome::Complete);
    EXPECT_EQ(add(2, u"B, V5"_s, {{1, 5}, {2, 7.6}, {9, 2.5}, {noValue, 1}}, {{u"1"_s, u"yes"_s}, {u"2"_s, u"nein"_s}},
                  u"2"_s),
              BuildOutcome::Complete);
    // Totals are sums of what came, not of what is shown: 5 + 7,6 + 2,5 + 1 = 16,1. The 9 is marked by the first entry,
    // so that of the second is not valid; its own missing value 2 is marked, since it brought it: valid is 5.
    EXPECT_EQ(rows(table_), (QStringList{u"|SYSMIS|X|4|1"_s, u"1|ja||10|5"_s, u"2|nein|X||8"_s, u"3|||20|"_s,
                                         u"9|k.A.|X|6|3"_s, u"|Summe||40|16"_s, u"|Gültige Fälle||30|5"_s, u"||||"_s}));
    EXPECT_EQ(rows(absolute_), rows(table_));
    // Valid percent only: 10/30, 20/30, 5/5.
    EXPECT_EQ(rows(percent_),
              (QStringList{u"|SYSMIS|X||"_s, u"1|ja||33,3|100,0"_s, u"2|nein|X||"_s, u"3|||66,7|"_s, u"9|k.A.|X||"_s,
                           u"|Summe|||"_s, u"|Gültige Fälle||100,0|100,0"_s, u"||||"_s}));
}

TEST_F(ComparisonTable, ValuesThatEntriesLabelOtherwiseAreNamedBelow) {
    addVar_ = true;
    setUp(2);
    add(1, u"A (V5)"_s, {{1, 1}, {2, 1}, {3, 1}, {4, 1}, {9, 1}},
        {{u"1"_s, u"Ja"_s}, {u"2"_s, u"DE"_s}, {u"3"_s, u"ES"_s}, {u"9"_s, u"k.A."_s}});
    EXPECT_TRUE(table_.notes.empty());
    // 1 differs in case only, 4 has no label in the first and 9 none here: nothing is claimed of them.
    const TestRecordsets::Rows labels = {
        {u"1"_s, u"ja"_s}, {u"2"_s, u"DK"_s}, {u"3"_s, u"DE"_s}, {u"4"_s, u"ES"_s}, {u"5"_s, u"FI"_s}};
    add(2, u"B (V5)"_s, {{noValue, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {9, 1}}, labels, u"4;5"_s);
    ASSERT_EQ(table_.notes.size(), 1u);
    EXPECT_TRUE(table_.notes[0].text().endsWith(u"zeigt wird das des ersten: 2; 3"_s));
    EXPECT_EQ(percent_.notes, table_.notes);
}

TEST_F(ComparisonTable, AnEntryWithoutCasesHasZeroSumsAndNoPercents) {
    setUp(3);
    add(1, u"A"_s, {});
    add(2, u"B"_s, {{1, 2}});
    add(3, u"C"_s, {});
    EXPECT_EQ(rows(table_), (QStringList{u"1||||2|"_s, u"|Summe||0|2|0"_s, u"|Gültige Fälle||0|2|0"_s, u"|||||"_s}));
    EXPECT_EQ(rows(percent_),
              (QStringList{u"1||||100,0|"_s, u"|Summe||||"_s, u"|Gültige Fälle|||100,0|"_s, u"|||||"_s}));
}

TEST_F(ComparisonTable, LabelsFollowTheirTwoOptions) {
    struct Case {
        bool valFirst, addVar;
        QStringList labels;
    };
    // The header up to its first bracket goes behind the label.
    for (const Case& c : {Case{true, false, {u"SYSMIS"_s, u"ja"_s, QString()}},
                          Case{true, true, {u"SYSMIS (A, V5)"_s, u"ja (A, V5)"_s, u" (A, V5)"_s}},
                          Case{false, true, {u"SYSMIS"_s, QString(), QString()}}}) {
        valFirst_ = c.valFirst;
        addVar_ = c.addVar;
        setUp(2);
        add(1, u"A, V5 (G. V3)"_s, {{noValue, 1}, {1, 1}, {2, 1}}, {{u"1"_s, u"ja"_s}});
        add(2, u"B"_s, {{noValue, 1}, {1, 1}, {2, 1}}, {{u"2"_s, u"später"_s}});
        ASSERT_EQ(table_.Rows(), 7);
        for (int row = 1; row <= 3; ++row)
            EXPECT_EQ(table_.Cell(1, row), c.labels[row - 1]);
    }
}

TEST_F(ComparisonTable, TextsSortAsTextsAndMarksOfTheUserHoldThroughARun) {
    setUp(1);
    add(1, u"A"_s, {{u"Bern"_s, 2}, {u"aarau"_s, 3}, {u"Zug"_s, 1}}, {}, QString(), dao::dbText);
    EXPECT_EQ(rows(table_), (QStringList{u"aarau|||3"_s, u"Bern|||2"_s, u"Zug|||1"_s, u"|Summe||6"_s,
                                         u"|Gültige Fälle||6"_s, u"|||"_s}));

    // An empty text is a value like any other; only what is not there is missing. Neither takes the other's row.
    setUp(2);
    const TestRecordsets::Rows texts{{noValue, 1}, {u""_s, 2}, {u"Bern"_s, 3}};
    for (const int entry : {1, 2})
        add(entry, u"A"_s, texts, {}, QString(), dao::dbText);
    EXPECT_EQ(rows(table_), (QStringList{u"|SYSMIS|X|1|1"_s, u"|||2|2"_s, u"Bern|||3|3"_s, u"|Summe||6|6"_s,
                                         u"|Gültige Fälle||5|5"_s, u"||||"_s}));
    // A label of its own does not part system-missing from the other entries' cases.
    setUp(2);
    add(1, u"A"_s, {{noValue, 1}, {1, 2}}, {{u""_s, u"nicht erhoben"_s}});
    add(2, u"B"_s, {{noValue, 4}});
    EXPECT_EQ(rows(table_)[0], u"|nicht erhoben|X|1|4"_s);

    setUp(1);
    comma_ = false;
    add(1, u"A"_s, {{1, 1}, {2, 2}, {9, 3}});
    table_.setCell(2, 1, u"X"_s);
    table_.setCell(2, 3, u" "_s);
    marks_ = Marks::of(table_);
    setUp(1);
    // What a hand has not marked is missing by its definition.
    add(1, u"A"_s, {{1, 1}, {3, 2}, {9, 4}}, {}, u"3;9"_s);
    EXPECT_EQ(table_.markedBy, Marks::By::Hand);
    EXPECT_EQ(rows(table_),
              (QStringList{u"1||X|1"_s, u"3||X|2"_s, u"9|| |4"_s, u"|Summe||7"_s, u"|Gültige Fälle||4"_s, u"|||"_s}));
    EXPECT_EQ(percent_.Cell(3, 3), u"100.0"_s);
}

/// Blanks around a text can't be seen: four rows look alike, each keeps its own mark, and that is reported.
TEST_F(ComparisonTable, TextsThatLookAlikeKeepTheirOwnMarksAndAreReported) {
    const TestRecordsets::Rows texts{{u"a"_s, 1}, {u" a"_s, 2}, {u"a "_s, 4}, {u"b"_s, 8}};
    setUp(2);
    add(1, u"A"_s, texts, {}, QString(), dao::dbText);
    ASSERT_EQ(table_.notes.size(), 1u);
    int plain = 1;
    while (table_.Cell(0, plain) != u"a"_s)
        ++plain;
    table_.setCell(2, plain, u"X"_s);
    marks_ = Marks::of(table_);
    setUp(2);
    add(1, u"A"_s, texts, {}, QString(), dao::dbText);
    add(2, u"B"_s, {{u" a"_s, 1}, {u"b"_s, 1}}, {}, QString(), dao::dbText);
    EXPECT_EQ(table_.Cell(3, table_.shape.validRow), u"14"_s);
    EXPECT_EQ(table_.Cell(4, table_.shape.validRow), u"2"_s);
    EXPECT_EQ(table_.notes.size(), 1u);
    EXPECT_EQ(percent_.notes, table_.notes);
}

TEST_F(ComparisonTable, CancelEndsItAndTheLimitIsTold) {
    setUp(1);
    cancelled_ = [] { return true; };
    EXPECT_EQ(add(1, u"A"_s, {{1, 1}}), BuildOutcome::Cancelled);
    cancelled_ = nullptr;
    TestRecordsets::Rows many;
    for (int i = 0; i < 25003; ++i)
        many.push_back({i, 1});
    setUp(1);
    EXPECT_EQ(add(1, u"A"_s, many), BuildOutcome::Complete);
    EXPECT_EQ(asker_.texts(), QStringList{u"25000 Zeilen erreicht, Abbruch"_s});
    EXPECT_EQ(table_.Cell(3, 25004), u"25003"_s);
}
