#include "tables/Descriptives.h"

#include "platform/dao/DBEngine.h"
#include "platform/system/NumberFormat.h"
#include "support/ScriptedAsker.h"
#include "support/TableText.h"
#include "support/TestHome.h"
#include "tables/mdStats.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace Qt::StringLiterals;

namespace {

const dao::Value unknown;
using StatRows = std::vector<std::vector<dao::Value>>;

/// The cases of `stat`, in a table of that name.
class Statistics : public testing::Test {
protected:
    Statistics() { NumberFormat::setDecimalSeparator(u','); }

    TestHome home_;
    ScriptedAsker asker_;
    dao::DatabasePtr file_ = dao::DBEngine::instance().Workspaces(0).CreateDatabase(home_.path(u"s.mdb"_s));
    int type_ = dao::dbDouble, weightType_ = dao::dbDouble, groupType_ = dao::dbDouble;
    ResultTable table_;
    QString missing_, digits_ = u"2"_s;
    bool weighted_ = false, comma_ = true;
    std::function<void(const QString&, const dao::Error&)> onFailure_;

    /// Rows of VAR, W2 and, with a third cell, VAR2.
    dao::RecordsetPtr stat(const StatRows& rows) {
        if (file_->TableDefs().contains(u"stat"_s))
            file_->TableDefs().Delete(u"stat"_s);
        const dao::TableDefPtr table = file_->CreateTableDef(u"stat"_s);
        QStringList fields{u"VAR"_s, u"W2"_s, u"VAR2"_s};
        fields.resize(rows.empty() ? 2 : static_cast<qsizetype>(rows.front().size()));
        const int types[] = {type_, weightType_, groupType_};
        for (qsizetype i = 0; i < fields.size(); ++i)
            table->Fields.push_back(dao::TableDef::CreateField(fields[i], types[i]));
        file_->TableDefs().Append(table);
        dao::DBEngine::instance().Workspaces(0).BeginTrans();
        const auto appender = file_->openAppender(u"stat"_s, fields);
        for (const std::vector<dao::Value>& row : rows) {
            for (size_t i = 0; i < row.size(); ++i) {
                if (row[i].kind() == dao::Value::Kind::Text)
                    appender->setText(static_cast<int>(i), row[i].toText());
                else if (!row[i].isNull())
                    appender->setNumber(static_cast<int>(i), row[i].toDouble());
            }
            appender->appendRow();
        }
        dao::DBEngine::instance().Workspaces(0).CommitTrans();
        return file_->OpenRecordset(u"SELECT * FROM stat"_s, dao::dbOpenSnapshot);
    }

    BuildOutcome build(const StatRows& rows, const std::vector<Statistic>& statistics) {
        const dao::RecordsetPtr cases = stat(rows);
        DescriptivesInput input{.stat = *cases,
                                .stat2 = *cases,
                                .missingText = missing_,
                                .weighted = weighted_,
                                .digits = digits_,
                                .groupVariable = u"V6"_s,
                                .groupMissing = u"7 thru 9"_s,
                                .CommaInPercent = comma_,
                                .cancelled = {},
                                .onFailure = onFailure_};
        for (const Statistic statistic : statistics)
            input.selection[static_cast<size_t>(statistic)] = true;
        if (digits_.count(u';') == 0)
            input.digits = QString(digits_ + u';').repeated(14);
        return BuildDescriptivesTable(table_, input);
    }

    QStringList lines() const { return linesOf(table_); }

    /// The public procedures over the rows, in the order of the table's.
    std::vector<double> all(const StatRows& rows, const QString& weight, const QString& missing = QString()) {
        using namespace mdStats;
        const QString x = u"VAR"_s;
        const dao::RecordsetPtr r = stat(rows);
        const double m = Mean(*r, x, weight, missing);
        dao::Value mode;
        Mode(mode, x, weight, false, missing, [this](const QString& sql) { return file_->OpenRecordset(sql); });
        return {Count(*r, x, weight),
                Minimum(*r, x, missing),
                Maximum(*r, x, missing),
                m,
                StdDev(m, *r, x, weight, missing),
                ValidN(*r, x, weight, missing),
                Sum(*r, x, weight, missing),
                Skewness(m, *r, x, weight, missing),
                Kurtosis(m, *r, x, weight, missing),
                mode.isNull() ? -1 : mode.toDouble(),
                Percentile25(*r, x, weight, missing),
                Median(*r, x, weight, missing),
                Percentile75(*r, x, weight, missing)};
    }

    static void expectNear(const std::vector<double>& ours, const std::vector<double>& theirs, double relative) {
        ASSERT_EQ(ours.size(), theirs.size());
        for (size_t i = 0; i < ours.size(); ++i)
            EXPECT_NEAR(ours[i], theirs[i], relative * std::max(1.0, std::fabs(theirs[i]))) << "statistic " << i;
    }
};

int errorOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const dao::Error& error) {
        return error.number();
    }
    return 0;
}

StatRows randomCases(unsigned seed, size_t count, bool wholeWeights) {
    std::mt19937 random(seed);
    StatRows rows;
    for (size_t i = 0; i < count; ++i) {
        const auto pick = random();
        const double weight = wholeWeights ? 1 + static_cast<double>(random() % 4) : 1;
        rows.push_back({pick % 17 == 0 ? unknown : dao::Value(static_cast<double>(pick % 40) / 4), weight});
    }
    return rows;
}

} // namespace

TEST_F(Statistics, OfHandWorkedCases) {
    const QString none;
    const QString w = u"W2"_s;
    struct Example {
        StatRows rows;
        QString weight, missing;
        // Count, Minimum, Maximum, Mean, StdDev, ValidN, Sum, Skewness, Kurtosis, Mode, 25 %, Median, 75 %
        std::vector<double> expected;
    };
    const std::vector<Example> examples{
        // 2 4 4 5 5 5 8, beside them a Null and a 9 that is missing. Deviations from 33/7 in sevenths: -19 -5
        // -5 2 2 2
        // 23, their squares add up to 952, cubes to 5082, fourth powers to 411460. p = 2 and 6, half of W
        // is 3.5.
        {{{4, 1}, {unknown, 1}, {5, 1}, {2, 1}, {5, 1}, {9, 1}, {4, 1}, {8, 1}, {5, 1}},
         none,
         u"9"_s,
         {9, 2, 8, 33.0 / 7, std::sqrt(68.0 / 21), 7, 33, 726.0 / 343 / std::pow(136.0 / 49, 1.5), 14695.0 / 4624, 5, 4,
          5, 5}},
        {{{1, 1}, {2, 1}, {3, 1}}, none, none, {3, 1, 3, 2, 1, 3, 6, 0, 1.5, 1, 1, 2, 3}},
        // p = 1.25 and 3.75; W / 2 = 2 is whole, so the median lies between the second and the third.
        {{{8, 1}, {4, 1}, {2, 1}, {1, 1}},
         none,
         none,
         {4, 1, 8, 3.75, std::sqrt(115.0 / 12), 4, 15, 405.0 / 32 / std::pow(115.0 / 16, 1.5), 25141.0 / 13225, 1, 1.25,
          3, 7}},
        // W = 4. The powers' sums take no weights: S2 = S4 = 2, so the kurtosis is 0.5 / 0.25.
        {{{1, 2}, {3, 2}}, w, none, {4, 1, 3, 2, std::sqrt(4.0 / 3), 4, 8, 0, 2, 1, 1.5, 2, 3}},
        // W = 5: 2 is exceeded on 1; p = 1.5 and 4.5: 1 + 3·0.5 and 4 + 1·0.5. The mode counts rows.
        {{{5, 1}, {1, 3}, {4, 1}},
         w,
         none,
         {5, 1, 5, 2.4, std::sqrt(3.8), 5, 12, 2366.0 / 625 / std::pow(282.0 / 125, 1.5), 29215.0 / 13254, 1, 2.5, 1,
          4.5}},
        // Broken weights and a zero: 2 is reached on 2, the next case is the one without weight.
        {{{6, 1}, {3, 0}, {1, 0.5}, {2, 2.5}},
         w,
         none,
         {4, 1, 6, 2.875, std::sqrt(215.0 / 48), 4, 11.5, 2977.0 / 512 / std::pow(225.0 / 64, 1.5), 36971.0 / 16875, 1,
          2.25, 2.5, 2.75}},
        // Equal values stay in the order of the rows: W / 2 = 2 is reached on the second 1, and 2 is next.
        {{{1, 1}, {1, 2}, {2, 1}},
         w,
         none,
         {4, 1, 2, 1.25, 0.5, 4, 5, 0.390625 / 4 / std::pow(0.171875, 1.5), 0.32421875 / 4 / (0.171875 * 0.171875), 1,
          1, 1.5, 1.75}},
        {{{7, 1}, {8, 1}}, none, u"7 thru 8"_s, {2, 0, 0, 0, 0, 0, 0, 0, 0, -1, 0, 0, 0}},
        {{}, none, none, {0, 0, 0, 0, 0, 0, 0, 0, 0, -1, 0, 0, 0}},
    };
    for (size_t i = 0; i < examples.size(); ++i) {
        SCOPED_TRACE(i);
        const Example& e = examples[i];
        expectNear(all(e.rows, e.weight, e.missing), e.expected, 1e-14);
    }
}

TEST_F(Statistics, LoseNoDigitsInSums) {
    const QString x = u"VAR"_s;
    EXPECT_EQ(mdStats::Sum(*stat({{1e16, 1}, {1, 1}, {-1e16, 1}}), x, {}, {}), 1.0);
    // Far from zero the deviations still are what they are: 1, 2, 3 shifted.
    const dao::RecordsetPtr shifted = stat({{1e9 + 1, 1}, {1e9 + 2, 1}, {1e9 + 3, 1}});
    EXPECT_EQ(mdStats::StdDev(mdStats::Mean(*shifted, x, {}, {}), *shifted, x, {}, {}), 1.0);
    // Twenty tenths are 2, so W / 2 is whole and reached on the tenth case.
    StatRows tenths;
    for (int i = 1; i <= 20; ++i)
        tenths.push_back({i, 0.1});
    EXPECT_EQ(mdStats::Median(*stat(tenths), x, u"W2"_s, {}), 10.5);
}

TEST_F(Statistics, OfEqualValuesHaveNoSpreadAndNoShape) {
    const QString x = u"VAR"_s;
    // None of these is a binary fraction, so neither are most of their sums what their multiples should be.
    const std::vector<std::pair<double, int>> constants{{0.1, 3},      {0.7, 3},  {3.3, 6},
                                                        {123.456, 10}, {9.9, 13}, {-0.1, 3}};
    for (const auto& [value, count] : constants)
        for (const QString& weight : {QString(), u"W2"_s}) {
            SCOPED_TRACE(testing::Message() << count << " times " << value << (weight.isEmpty() ? "" : ", weighted"));
            const dao::RecordsetPtr r = stat(StatRows(static_cast<size_t>(count), {value, 1.3}));
            const double m = mdStats::Mean(*r, x, weight, {});
            EXPECT_EQ(m, value);
            EXPECT_EQ(mdStats::StdDev(m, *r, x, weight, {}), 0.0);
            EXPECT_EQ(mdStats::Skewness(m, *r, x, weight, {}), 0.0);
            EXPECT_EQ(mdStats::Kurtosis(m, *r, x, weight, {}), 0.0);
        }
}

TEST_F(Statistics, RaiseWhatCannotBeComputed) {
    const QString x = u"VAR"_s, w = u"W2"_s;
    const auto deviation = [&](const StatRows& rows) {
        const dao::RecordsetPtr r = stat(rows);
        return errorOf([&] { mdStats::StdDev(mdStats::Mean(*r, x, w, {}), *r, x, w, {}); });
    };
    EXPECT_EQ(deviation({{5, 1}}), 11) << "W is 1";
    EXPECT_EQ(deviation({{1, 0.25}, {3, 0.25}}), 5) << "W is below 1: a negative variance";
    EXPECT_EQ(deviation({{1, unknown}}), 94);
    weightType_ = dao::dbText;
    EXPECT_EQ(deviation({{1, u"x"_s}}), 13);
    EXPECT_EQ(deviation({{unknown, u"x"_s}, {1, u"2"_s}, {2, u"2,0"_s}}), 0) << "a weight of no case that counts";
    EXPECT_EQ(errorOf([&] { mdStats::Count(*stat({{unknown, u"x"_s}, {1, u"2"_s}}), x, w); }), 13);
    type_ = dao::dbText;
    EXPECT_EQ(deviation({{u"x"_s, u"1"_s}}), 13);
    EXPECT_EQ(errorOf([&] { mdStats::Minimum(*stat({{u"x"_s, u"1"_s}}), x, {}); }), 13);
    type_ = weightType_ = dao::dbDouble;
    EXPECT_EQ(errorOf([&] { mdStats::Skewness(0, *stat({{1, -1}, {2, -1}}), x, w, {}); }), 5);
    EXPECT_EQ(errorOf([&] { mdStats::Sum(*stat({{1.7e308, 1}, {1.7e308, 1}}), x, {}, {}); }), 6);
    EXPECT_EQ(errorOf([&] { mdStats::Kurtosis(0, *stat({{1e100, 1}, {2, 1}}), x, {}, {}); }), 6);
    EXPECT_EQ(errorOf([&] { mdStats::FormatStat(1, -1); }), 5);
    EXPECT_EQ(mdStats::Skewness(4, *stat({{4, 1}, {4, 1}}), x, {}, {}), 0.0) << "a zero denominator";
}

TEST_F(Statistics, FollowTheirInvariants) {
    for (const unsigned seed : {1U, 2U, 3U}) {
        SCOPED_TRACE(seed);
        const StatRows ones = randomCases(seed, 500, false);
        const QString missing = u"2,5;7"_s;
        const std::vector<double> plain = all(ones, {}, missing);
        expectNear(all(ones, u"W2"_s, missing), plain, 0);

        // A weight of n stands for n cases, but for Count's rows, moments without weights and walks that look
        // at the next case.
        const StatRows weighted = randomCases(seed, 300, true);
        StatRows repeated;
        for (const std::vector<dao::Value>& row : weighted)
            for (int i = 0; i < row[1].toDouble(); ++i)
                repeated.push_back({row[0], 1});
        std::vector<double> a = all(weighted, u"W2"_s, missing), b = all(repeated, {}, missing);
        for (const size_t kept : {0U, 1U, 2U, 3U, 4U, 5U, 6U})
            EXPECT_NEAR(a[kept], b[kept], 1e-12 * std::max(1.0, std::fabs(b[kept])));

        // 3 - 2x: what measures place follows, what measures shape does not change but for its sign.
        StatRows turned = ones;
        for (std::vector<dao::Value>& row : turned)
            if (!row[0].isNull())
                row[0] = 3 - 2 * row[0].toDouble();
        const std::vector<double> t = all(turned, {}, u"-2;-11"_s);
        const std::vector<double> expected{plain[0],
                                           3 - 2 * plain[2],
                                           3 - 2 * plain[1],
                                           3 - 2 * plain[3],
                                           2 * plain[4],
                                           plain[5],
                                           3 * plain[5] - 2 * plain[6],
                                           -plain[7],
                                           plain[8],
                                           t[9],
                                           t[10],
                                           3 - 2 * plain[11],
                                           t[12]};
        expectNear(t, expected, 1e-12);
    }
}

TEST_F(Statistics, ModeIsTheSmallestOfTheMostFrequentValues) {
    const StatRows rows{{3, 1}, {2, 1}, {3, unknown}, {2, 1}, {9, 1}, {9, 1}, {9, 1}, {unknown, 1}, {1, 5}};
    const auto mode = [&](const QString& weight, bool several) {
        stat(rows);
        dao::Value result;
        mdStats::Mode(result, u"VAR"_s, weight, several, u"9"_s,
                      [this](const QString& sql) { return file_->OpenRecordset(sql); });
        return result.toText();
    };
    EXPECT_EQ(mode({}, false), u"2"_s);
    EXPECT_EQ(mode({}, true), u"2; 3"_s);
    // By rows that have a weight, whatever it is: one 3 is left, and 1 does not win by its 5.
    EXPECT_EQ(mode(u"W2"_s, true), u"2"_s);
}

TEST_F(Statistics, OneRowAStatistic) {
    using enum Statistic;
    missing_ = u"9"_s;
    EXPECT_EQ(build({{4, 1}, {5, 1}, {9, 1}, {unknown, 1}},
                    {Count, Minimum, Maximum, ArithmeticMean, StandardDeviation, ValidN, Range, Sum, Variance, Skewness,
                     Kurtosis, Mode, Median, Percentiles}),
              BuildOutcome::Complete);
    EXPECT_EQ(lines(), (QStringList{u"|Statistik|Wert"_s, u"|Count|4,00"_s, u"|Minimum|4,00"_s, u"|Maximum|5,00"_s,
                                    u"|ArithmeticMean|4,50"_s, u"|StandardDeviation|0,71"_s, u"|ValidN|2,00"_s,
                                    u"|Range|1,00"_s, u"|Sum|9,00"_s, u"|Variance|0,50"_s, u"|Skewness|0,00"_s,
                                    u"|Kurtosis|1,00"_s, u"|Mode|4,00"_s, u"|Median|4,50"_s, u"|25%-Percentile|4,75"_s,
                                    u"|50%-Percentile|4,50"_s, u"|75%-Percentile|5,00"_s}));
    EXPECT_EQ(table_.ColWidth(2), 2000);
    EXPECT_EQ(table_.CellAlignment(2, 3), ResultTable::RightTop);

    build({{1, 1}}, {});
    EXPECT_EQ(lines(), QStringList(u"|Statistik|Wert"_s));
    EXPECT_EQ(build({}, {Count, Sum}), BuildOutcome::Empty);
    EXPECT_EQ(lines(), QStringList(u"|Statistik|Wert"_s));
    build({{9, 1}, {unknown, 1}}, {Count, Maximum, Percentiles});
    EXPECT_EQ(lines().mid(1), (QStringList{u"|Count|2,00"_s, u"|Maximum|"_s, u"|25%-Percentile|"_s,
                                           u"|50%-Percentile|"_s, u"|75%-Percentile|"_s}));
    weighted_ = true;
    missing_.clear();
    build({{9, 1.5}, {unknown, 1}, {3, 0.5}}, {Count, Sum, ValidN});
    EXPECT_EQ(lines().mid(1), (QStringList{u"|Count|3,00"_s, u"|ValidN|2,00"_s, u"|Sum|15,00"_s}));
}

TEST_F(Statistics, ShowTheirDigits) {
    using enum Statistic;
    // Thirteen numbers, as the options have them from the start: the fourteenth counts as 0.
    digits_ = u"0;1;2;;4;5;6;7;8;9;10;11;12;"_s;
    comma_ = false;
    build({{-12.345678, 1}, {-12.345678, 1}}, {Count, Minimum, Maximum, ArithmeticMean, Median, Percentiles});
    EXPECT_EQ(lines().mid(1),
              (QStringList{u"|Count|2"_s, u"|Minimum|-12.3"_s, u"|Maximum|-12.35"_s, u"|ArithmeticMean|-12"_s,
                           u"|Median|-12.345678000000"_s, u"|25%-Percentile|-12"_s, u"|50%-Percentile|-12"_s,
                           u"|75%-Percentile|-12"_s}));
    EXPECT_EQ(mdStats::FormatStat(12.5, 2), u"12,50"_s);
    EXPECT_EQ(mdStats::FormatStat(1234567.5, 0), u"1234568"_s);
    digits_ = u"2;x;-1;2;"_s;
    asker_.answer(ui::Answer::Ignore).answer(ui::Answer::Ignore);
    build({{1, 1}}, {Minimum, Maximum, ArithmeticMean});
    EXPECT_EQ(lines().mid(1), (QStringList{u"|Minimum|"_s, u"|Maximum|"_s, u"|ArithmeticMean|1.00"_s}));
}

TEST_F(Statistics, OfATextVariableAreAMessage) {
    using enum Statistic;
    type_ = dao::dbText;
    build({{u"1"_s, 1}, {u"2"_s, 1}}, {Count, Minimum, Median});
    const QString message = u"Descriptives nur für numerische Felder"_s;
    EXPECT_EQ(lines(), (QStringList{u"|Statistik|Wert"_s, u"|Count|2,00"_s, u"||"_s + message}));
    build({{u"1"_s, 1, 7}}, {Sum});
    EXPECT_EQ(lines(), (QStringList{u"V6|Sum"_s, message + u"|"_s}));
}

TEST_F(Statistics, OneRowAGroup) {
    using enum Statistic;
    missing_ = u"9"_s;
    digits_ = u"1"_s;
    const StatRows rows{{4, 1, 2.5}, {5, 1, 10}, {7, 1, 10}, {9, 1, -1}, {5, 1, unknown}, {8, 1, 2.5}};
    build(rows, {Count, Range, Mode, Percentiles});
    // A Null group equals nothing; a group of missing values has its count only; the mode is that of all
    // cases.
    EXPECT_EQ(lines(),
              (QStringList{u"V6|Count|Range|Mode|25%-Percentile|50%-Percentile|75%-Percentile"_s, u"|0,0|||||"_s,
                           u"-1|1,0|||||"_s, u"2,5|2,0|4,0|5,0|7,0|6,0|8,0"_s, u"10|2,0|2,0|5,0|6,5|6,0|7,0"_s}));
    EXPECT_EQ(table_.ColWidth(3), 1500);
    EXPECT_EQ(table_.ColAlignment(1), ResultTable::RightTop);
    // 5 stands twice, all other values once; so the mode would be 5 in every group.
    groupType_ = dao::dbText;
    build({{4, 1, u"it's \"b\""_s}, {6, 1, u"Älter"_s}, {8, 1, u"älter"_s}, {1, 1, u""_s}, {2, 1, unknown}},
          {Count, Sum});
    EXPECT_EQ(lines().mid(1), (QStringList{u"|0,0|"_s, u"|1,0|1,0"_s, u"it's \"b\"|1,0|4,0"_s, u"Älter|2,0|14,0"_s}));
}

TEST_F(Statistics, LeaveACellEmptyAndGoOn) {
    using enum Statistic;
    const std::vector<Statistic> wanted{ArithmeticMean, StandardDeviation, Variance, Sum};
    asker_.answer(ui::Answer::Retry).answer(ui::Answer::Ignore);
    EXPECT_EQ(build({{5, 1}}, wanted), BuildOutcome::Complete);
    EXPECT_EQ(asker_.texts(), QStringList(2, u"11\r\nDivision by zero"_s));
    EXPECT_EQ(lines().mid(1),
              (QStringList{u"|ArithmeticMean|5,00"_s, u"|StandardDeviation|"_s, u"|Sum|5,00"_s, u"|Variance|"_s}));
    asker_.answer(ui::Answer::Abort);
    EXPECT_EQ(build({{5, 1}}, wanted), BuildOutcome::Aborted);
    // A weight that cannot be read: the count asks, then the number of valid cases, without which there is
    // nothing.
    weightType_ = dao::dbText;
    weighted_ = true;
    asker_.answer(ui::Answer::Ignore).answer(ui::Answer::Ignore);
    build({{5, u"1"_s}, {6, u"x"_s}}, {Count, Maximum, Sum, Median});
    EXPECT_EQ(lines().mid(1), (QStringList{u"|Count|"_s, u"|Maximum|"_s, u"|Sum|"_s, u"|Median|"_s}));
    EXPECT_EQ(asker_.lastText(), u"13\r\nType mismatch"_s);
    weighted_ = false;
    weightType_ = dao::dbDouble;

    QStringList heard;
    onFailure_ = [&](const QString& place, const dao::Error& error) {
        heard << place + u' ' + QString::number(error.number());
    };
    build({{5, 1, 1}, {6, 1, 2}, {7, 1, 2}}, {StandardDeviation});
    EXPECT_EQ(heard, QStringList(u"1, StandardDeviation 11"_s));
    EXPECT_EQ(lines(), (QStringList{u"V6|StandardDeviation"_s, u"1|"_s, u"2|0,71"_s}));

    // What stays empty because another statistic failed is told of as well, each title once.
    heard.clear();
    build({{5, 1, 1}, {6, 1, 2}, {7, 1, 2}}, {StandardDeviation, Variance});
    EXPECT_EQ(heard, (QStringList{u"1, StandardDeviation 11"_s, u"1, Variance 11"_s}));
}

TEST(DescriptiveChoices, AreWrittenAsANumber) {
    const StatisticSelection first = selectionOf(126);
    for (size_t i = 0; i < first.size(); ++i)
        EXPECT_EQ(first[i], i <= static_cast<size_t>(Statistic::ValidN));
    EXPECT_EQ(maskOf(first), 126);
    EXPECT_EQ(maskOf({}), 0);
    EXPECT_EQ(selectionOf(1), StatisticSelection{}) << "the lowest power stands for nothing";
    StatisticSelection every;
    every.fill(true);
    EXPECT_EQ(maskOf(every), 32766);
    EXPECT_EQ(selectionOf(40000), every);
}

TEST(DescriptiveChoices, KnowFieldTypesByName) {
    EXPECT_EQ(fieldTypeName(dao::dbDouble), u"Double"_s);
    EXPECT_EQ(fieldTypeName(dao::dbLong, dao::dbAutoIncrField), u"AutoNumber"_s);
    EXPECT_EQ(fieldTypeName(15), u"GUID"_s);
    EXPECT_EQ(fieldTypeName(19), u"Numeric"_s);
    EXPECT_EQ(fieldTypeName(109), u"Complex Text"_s);
    EXPECT_EQ(fieldTypeName(77), u"Field type 77 unknown"_s);
    const auto numeric = [](int type) {
        return isStatisticField({.Name = {}, .Type = type, .SourceTable = {}, .SourceField = {}});
    };
    QList<int> types;
    for (int type = 1; type <= 120; ++type)
        if (numeric(type))
            types << type;
    EXPECT_EQ(types, (QList<int>{3, 4, 5, 6, 7, 19}));
}

TEST_F(Statistics, GroupsThatAreMissingAreNotedAndTheirCellsStay) {
    build({{1, 1, 2}, {3, 1, 8}, {4, 1, unknown}, {5, 1, 9.5}}, {Statistic::Count});
    EXPECT_EQ(lines(), (QStringList{u"V6|Count"_s, u"|0,00"_s, u"2|1,00"_s, u"8|1,00"_s, u"9,5|1,00"_s}));
    EXPECT_EQ(table_.groups,
              (std::vector<RowGroup>{{1, u"SYSMIS"_s, true}, {2, {}, false}, {3, {}, true}, {4, {}, false}}));
    EXPECT_EQ(table_.shownCell(0, 3), u"8 (Missing)");
}
