#include "tables/Frequency.h"

#include "platform/system/NumberFormat.h"
#include "support/ScriptedAsker.h"
#include "support/TableText.h"
#include "support/TestHome.h"
#include "support/TestRecordsets.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const dao::Value null;
using Rows = TestRecordsets::Rows;

/// A table with what it is made from, all options as a fresh installation has them but for automatic widths.
class FrequencyTable : public testing::Test {
protected:
    TestHome home_;
    ScriptedAsker asker_;
    ResultTable table_;
    std::optional<Marks> marks_; ///< set by hand
    std::optional<QString> dtMissing_;
    bool cumulated_ = true, separate_ = true, comma_ = true, autoWidth_ = false;
    std::function<bool()> cancelled_;
    std::function<void(const QString&, const dao::Error&)> onFailure_;
    Rows labels_{{u"1"_s, u"ja"_s}, {u"2.0"_s, u"nein"_s}, {u"9"_s, u"keine Angabe"_s}};

    TestRecordsets recordsets_{home_.path(u"t.mdb"_s)};

    BuildOutcome build(const Rows& rows) {
        const dao::RecordsetPtr counts =
            recordsets_.make(u"counts"_s, {{u"Value"_s, dao::dbDouble}, {u"Count"_s, dao::dbDouble}}, rows);
        const dao::RecordsetPtr labels =
            recordsets_.make(u"labels"_s, {{u"dt_Value"_s, dao::dbText}, {u"dt_Label"_s, dao::dbText}}, labels_);
        const FrequencyInput input{.counts = *counts,
                                   .labels = *labels,
                                   .dtMissing = dtMissing_,
                                   .CumulatedPercent = cumulated_,
                                   .SeparateValidCases = separate_,
                                   .CommaInPercent = comma_,
                                   .AutoColWidth = autoWidth_,
                                   .textWidth = [](const QString& text) { return static_cast<int>(text.size()) * 100; },
                                   .cancelled = cancelled_,
                                   .onFailure = onFailure_,
                                   .marks = marks_ ? &*marks_ : nullptr};
        return BuildFrequencyTable(table_, input);
    }

    QStringList rows() const { return linesOf(table_); }
};

} // namespace

TEST_F(FrequencyTable, ShowsValuesLabelsMarksAndPercentagesOfAllAndOfValidCases) {
    dtMissing_ = u"9"_s;
    EXPECT_EQ(build({{null, 1}, {1, 3}, {2, 5}, {9, 1}}), BuildOutcome::Complete);
    // 10 cases, 8 of them valid; system-missing stands at 0.
    EXPECT_EQ(rows(), (QStringList{u"Wert|Ausprägung|Missing|Anzahl|Prozent|Gült.Prozent|Kumul.Prozent"_s,
                                   u"|SYSMIS|X|1|10,0| |"_s, u"1|ja||3|30,0|37,5|37,5"_s,
                                   u"2|nein||5|50,0|62,5|100,0"_s, u"9|keine Angabe|X|1|10,0| |"_s,
                                   u"|Summe||10|100,0|100,0|"_s, u"||||||"_s, u"|Gültige Fälle||8|||"_s}));
    EXPECT_EQ(table_.FixedRows, 1);
    EXPECT_EQ(table_.FixedCols, 1);
    EXPECT_EQ(table_.ColWidth(1), 2000);
    EXPECT_EQ(table_.CellAlignment(2, 1), ResultTable::RightTop);
}

TEST_F(FrequencyTable, RestsOnRoundedCountsWithWeights) {
    EXPECT_EQ(build({{1, 2.4}, {2, 2.4}}), BuildOutcome::Complete);
    EXPECT_EQ(rows().mid(1), (QStringList{u"1|ja||2|40,0|50,0|50,0"_s, u"2|nein||2|40,0|50,0|100,0"_s,
                                          u"|Summe||5|80,0|100,0|"_s, u"||||||"_s, u"|Gültige Fälle||5|||"_s}));
}

TEST_F(FrequencyTable, LeavesPercentagesOutWhereThereIsNoBase) {
    dtMissing_ = u"1 thru 2"_s;
    build({{1, 4}, {2, 1}});
    EXPECT_EQ(rows().mid(1), (QStringList{u"1|ja|X|4|80,0| |"_s, u"2|nein|X|1|20,0| |"_s, u"|Summe||5|100,0|0,0|"_s,
                                          u"||||||"_s, u"|Gültige Fälle||0|||"_s}));
    dtMissing_ = u""_s;
    build({{1, 0.0}});
    EXPECT_EQ(rows().mid(1),
              (QStringList{u"1|ja||0|||"_s, u"|Summe||0|0,0|0,0|"_s, u"||||||"_s, u"|Gültige Fälle||0|||"_s}));
    EXPECT_EQ(build({}), BuildOutcome::Empty);
    EXPECT_EQ(table_.Rows(), 2);
}

TEST_F(FrequencyTable, GoesOnWithoutPercentagesOfValidCasesThatCancelOut) {
    dtMissing_ = u"9"_s;
    const Rows counts{{1, 2}, {2, -2}, {9, 5}};
    const QStringList expected{
        u"1|ja||2|40,0||"_s, u"2|nein||-2|-40,0||"_s,  u"9|keine Angabe|X|5|100,0| |"_s, u"|Summe||5|100,0|0,0|"_s,
        u"||||||"_s,         u"|Gültige Fälle||0|||"_s};
    QStringList told;
    onFailure_ = [&](const QString& place, const dao::Error& error) {
        told << place + u' ' + QString::number(error.number());
    };
    EXPECT_EQ(build(counts), BuildOutcome::Complete);
    EXPECT_EQ(rows().mid(1), expected);
    EXPECT_EQ(told, (QStringList{u"1, Gült.Prozent 11"_s, u"1, Kumul.Prozent 11"_s, u"2, Gült.Prozent 11"_s,
                                 u"2, Kumul.Prozent 11"_s}));
    EXPECT_TRUE(asker_.boxes.empty());
    // Where nobody listens the box asks, once a row.
    onFailure_ = {};
    asker_.answer(ui::Answer::Ignore).answer(ui::Answer::Ignore);
    EXPECT_EQ(build(counts), BuildOutcome::Complete);
    EXPECT_EQ(rows().mid(1), expected);
    asker_.answer(ui::Answer::Abort);
    EXPECT_EQ(build(counts), BuildOutcome::Aborted);
}

TEST_F(FrequencyTable, SortsByNumberUnderEitherSeparatorWhateverTheOrderOfArrival) {
    labels_ = {{u""_s, u"leer"_s}};
    for (const QChar separator : {u',', u'.'}) {
        NumberFormat::setDecimalSeparator(separator);
        build({{10, 1}, {-1.2, 1}, {null, 1}, {-1.5, 1}, {0, 1}, {1e20, 1}, {2, 1}});
        QStringList values;
        for (int row = 1; row <= 7; ++row)
            values << QString(table_.Cell(0, row)).replace(u',', u'.');
        EXPECT_EQ(values, (QStringList{u"-1.5"_s, u"-1.2"_s, u""_s, u"0"_s, u"2"_s, u"10"_s, u"1E+20"_s}));
        EXPECT_EQ(table_.Cell(1, 3), u"leer"_s) << "a label of the empty code stands for SYSMIS";
        EXPECT_EQ(table_.Cell(1, 5), u""_s);
    }
}

TEST_F(FrequencyTable, WarnsOncePerStretchOfUnknownCounts) {
    build({{1, null}, {2, null}, {3, 7}, {4, null}});
    EXPECT_EQ(asker_.texts(), QStringList(2, u"Warnung: unbekannte Anzahl fehlender Werte in Gewichtungsvariable."_s));
    // The counts ended within a stretch: one row stays empty before the sums.
    EXPECT_EQ(rows().mid(1), (QStringList{u"3|||7|100,0|100,0|100,0"_s, u"||||||"_s, u"|Summe||7|100,0|100,0|"_s,
                                          u"||||||"_s, u"|Gültige Fälle||7|||"_s}));
}

TEST_F(FrequencyTable, TakesExactly25000Values) {
    Rows counts;
    for (int i = 1; i <= 25000; ++i)
        counts.push_back({i, 1});
    labels_.clear();
    EXPECT_EQ(build(counts), BuildOutcome::Complete);
    EXPECT_EQ(table_.Rows(), 25004);
    EXPECT_EQ(table_.Cell(3, 25001), u"25000"_s);
    EXPECT_EQ(table_.Cell(6, 25000), u"100,0"_s);
    EXPECT_TRUE(asker_.boxes.empty());
    counts.push_back({25001, 1});
    EXPECT_EQ(build(counts), BuildOutcome::Truncated);
    EXPECT_EQ(asker_.texts(), QStringList(u"25000 Zeilen erreicht, Abbruch"_s));
    EXPECT_EQ(table_.Cell(1, table_.Rows() - 1), u""_s) << "no sums under a table that was cut short";
}

TEST_F(FrequencyTable, EndsAtOnceWhenCancelled) {
    int rows = 0;
    cancelled_ = [&rows] { return ++rows == 2; };
    EXPECT_EQ(build({{1, 1}, {2, 1}, {3, 1}}), BuildOutcome::Cancelled);
    EXPECT_EQ(table_.Cell(4, 2), u"33,3"_s);
    EXPECT_EQ(table_.Cell(4, 3), u""_s);
    EXPECT_EQ(table_.Cell(4, 4), u""_s);
}

TEST_F(FrequencyTable, KeepsTheUsersMarksWithTheirValues) {
    dtMissing_ = u"9"_s;
    comma_ = false;
    // System-missing arrives first and ends behind -3: marks must follow values, not rows.
    const Rows counts{{null, 2}, {-3, 1}, {1, 3}, {9, 4}};
    build(counts);
    EXPECT_EQ(rows()[3], u"1|ja||3|30.0|75.0|100.0"_s) << "the other separator";
    table_.setCell(2, 3, u"X"_s);
    table_.setCell(2, 4, u" "_s);
    marks_ = Marks::of(table_);
    // Neither the shape nor the separator of the table before is that of the next one.
    separate_ = !separate_;
    build(counts);
    separate_ = !separate_;
    build(counts);
    EXPECT_EQ(table_.markedBy, Marks::By::Hand);
    // A cumulated percentage of a row marked since stays where it was, in the same separator as the rest.
    EXPECT_EQ(rows().mid(1), (QStringList{u"-3|||1|10.0|20.0|20.0"_s, u"|SYSMIS|X|2|20.0| |"_s,
                                          u"1|ja|X|3|30.0| |100.0"_s, u"9|keine Angabe| |4|40.0|80.0|100.0"_s,
                                          u"|Summe||10|100.0|100.0|"_s, u"||||||"_s, u"|Gültige Fälle||5|||"_s}));
    // Where there is no base any more, no percentage of the run before may stay.
    build({{null, 0.0}, {-3, 0.0}, {1, 0.0}, {9, 0.0}});
    EXPECT_EQ(rows()[1], u"-3|||0|||"_s);
    // Marks of other values are no marks for these.
    build({{1, 3}, {9, 4}});
    EXPECT_EQ(table_.markedBy, Marks::By::Definition);
    EXPECT_EQ(rows()[2], u"9|keine Angabe|X|4|57.1| |"_s);
}

/// Two numbers that look alike have a mark each, and are reported.
TEST_F(FrequencyTable, ValuesThatLookAlikeKeepTheirOwnMarks) {
    const Rows counts{{1.0, 2}, {1.0 + 1e-15, 3}, {2, 5}};
    build(counts);
    ASSERT_EQ(table_.notes.size(), 1u);
    table_.setCell(2, 2, u"X"_s);
    marks_ = Marks::of(table_);
    build(counts);
    EXPECT_EQ(table_.Cell(2, 1) + u'|' + table_.Cell(2, 2) + u'|' + table_.Cell(2, 3), u"|X|"_s);
    EXPECT_EQ(table_.shape.casesOf(), (StatedCases{u"10"_s, u"7"_s}));
    build({{1, 2}, {2, 5}});
    EXPECT_TRUE(table_.notes.empty());
}

TEST_F(FrequencyTable, FollowsItsOptions) {
    cumulated_ = separate_ = false;
    autoWidth_ = true;
    build({{1, 1}, {2, 3}});
    EXPECT_EQ(rows(), (QStringList{u"Wert|Ausprägung|Missing|Anzahl|Prozent|Gült.Prozent"_s, u"1|ja||1|25,0|25,0"_s,
                                   u"2|nein||3|75,0|75,0"_s, u"|Summe||4|100,0|100,0"_s, u"|Gültige Fälle||4||"_s}));
    // 1.2 times the width, 50 more in the header and in the sum row: "Wert" 4, "Gültige Fälle" 13,
    // "Gült.Prozent" 12 characters.
    EXPECT_EQ(table_.ColWidth(0), 530);
    EXPECT_EQ(table_.ColWidth(1), 1560);
    EXPECT_EQ(table_.ColWidth(5), 1490);
    EXPECT_EQ(table_.RowHeight(4), 228);
}

TEST_F(FrequencyTable, AsksOnceAboutADefinitionThatDoesntRead) {
    dtMissing_ = u"x"_s;
    asker_.answer(ui::Answer::Abort);
    EXPECT_EQ(build({{1, 1}, {2, 3}}), BuildOutcome::Complete);
    EXPECT_EQ(table_.Cell(2, 1), u""_s);
}
