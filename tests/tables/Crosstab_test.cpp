#include "CrosstabFixture.h"

#include "platform/system/NumberFormat.h"

#include <QRandomGenerator>
#include <cmath>
#include <map>

using namespace Qt::StringLiterals;

TEST(RoundHalfUp, TakesHalvesUp) {
    const std::vector<std::pair<double, double>> cases{{2.5, 3},    {-2.5, -2}, {2.4, 2}, {-2.6, -3},
                                                       {-0.5, 0.0}, {0.49, 0},  {7, 7},   {-7, -7}};
    for (const auto& [x, rounded] : cases)
        EXPECT_EQ(RoundHalfUp(x), rounded) << x;
}

TEST_F(CrosstabTest, RoundsEachCellAndSumsWhatItShows) {
    // 2.5 and 2.5 are 3 and 3, their sum 6; a cell below a half is empty, and so is the row that has no
    // other.
    build({{1, 1, 2.5}, {1, 2, 2.5}, {2, 1, -2.5}, {2, 2, 4.4}, {3, 1, 0.4}, {3, 2, 0.3}});
    EXPECT_EQ(text(shown_), u"1Ost 2West S V / 1ja 3 3 6 6 / 2nein -2 4 2 2 / S 1 7 8 . / V 1 7 . 8"_s);
    EXPECT_EQ(text(column_),
              u"1Ost 2West S V / 1ja 300,0 42,9 . 75,0 / 2nein -200,0 57,1 . 25,0 / V 100,0 100,0 . 100,0"_s);
    EXPECT_EQ(shown_.Cell(1, 0), u"B"_s);
    EXPECT_EQ(shown_.Cell(0, 1), u"A"_s);
    EXPECT_EQ(shown_.Cell(2, 2), u"Missing"_s);
    EXPECT_EQ(shown_.FixedRows, 2);
    EXPECT_EQ(total_.FixedCols, 2);
    EXPECT_EQ(shown_.ColWidth(1), 2000);
    EXPECT_EQ(shown_.CellAlignment(3, 1), ResultTable::RightTop);
}

TEST_F(CrosstabTest, RoundsASumOfTenthsAsItsDigitsHaveIt) {
    // Ten times 0.15 and thirty times 0.35, added up as weights are.
    double tenths = 0, thirds = 0;
    for (int i = 0; i < 10; ++i)
        tenths += 0.15;
    for (int i = 0; i < 30; ++i)
        thirds += 0.35;
    build({{1, 1, tenths}, {1, 2, thirds}});
    EXPECT_EQ(text(shown_), u"1Ost 2West S V / 1ja 2 11 13 13 / S 2 11 13 . / V 2 11 . 13"_s);
}

TEST_F(CrosstabTest, CountsARowThatCancelsOutInTheValidSumsToo) {
    // The row of value 1 adds up to 0 and is not shown; "Summe" and "Gült. Summe" hold its cells all the same.
    build({{1, 1, 3}, {1, 2, -3}, {2, 1, 3}, {2, 2, 5}});
    EXPECT_EQ(text(shown_), u"1Ost 2West S V / 2nein 3 5 8 8 / S 6 2 8 . / V 6 2 . 8"_s);
    EXPECT_EQ(column_.Cell(3, 3), u"50,0"_s);
}

TEST_F(CrosstabTest, HasNoPercentagesOfNothing) {
    options_.IncludeMissingInPercentXTab = true;
    EXPECT_EQ(build({}), BuildOutcome::Empty);
    EXPECT_EQ(shown_.Rows(), 4);
    EXPECT_EQ(shown_.Cell(1, 0), u"B"_s);
    build({{1, 1, 0}, {1, 2, 0.4}});
    EXPECT_EQ(text(shown_), u"V / V ."_s) << "values without cases are left out, and with the last of them the sums";
    // A weighting that cancels out leaves sums to show, but none to relate to; and says so.
    for (int i = 0; i < 6; ++i)
        asker_.answer(ui::Answer::Ignore);
    EXPECT_EQ(build({{1, 1, 3}, {2, 2, -3}}), BuildOutcome::Complete);
    EXPECT_EQ(text(shown_), u"1Ost 2West S V / 1ja 3 . 3 3 / 2nein . -3 -3 -3 / S 3 -3 0 . / V 3 -3 . ."_s);
    EXPECT_EQ(text(column_), u"1Ost 2West S / 1ja 100,0 0,0 . / 2nein 0,0 100,0 . / S 100,0 100,0 ."_s);
    EXPECT_EQ(text(total_), u"1Ost 2West S / 1ja 0,0 0,0 0,0 / 2nein 0,0 0,0 0,0 / S 0,0 0,0 0,0"_s);
    EXPECT_EQ(asker_.lastText(), u"11\r\nDivision by zero"_s);
    QStringList told;
    onFailure_ = [&told](const QString& place, const dao::Error&) { told << place; };
    build({{1, 1, 3}, {2, 2, -3}});
    EXPECT_EQ(told, (QStringList{u"1, Summe"_s, u"2, Summe"_s, u"Summe, Summe"_s, u"Summe, 1"_s, u"Summe, 2"_s,
                                 u"Summe, Summe"_s}));
}

TEST_F(CrosstabTest, AsksAboutACountThatIsNoNumber) {
    asker_.answer(ui::Answer::Ignore).answer(ui::Answer::Abort);
    EXPECT_EQ(build({{1, 1, 2}, {1, 2, null}}), BuildOutcome::Complete);
    EXPECT_EQ(text(shown_), u"1Ost S V / 1ja 2 2 2 / S 2 2 . / V 2 . 2"_s);
    EXPECT_EQ(build({{1, 1, 2}, {1, 2, null}}), BuildOutcome::Aborted);
    EXPECT_EQ(asker_.lastText(), u"94\r\nInvalid use of Null"_s);
}

TEST_F(CrosstabTest, KeepsSystemMissingInOnePlaceOnEachAxis) {
    options_.IncludeMissingXTab = true;
    const Rows rows{{null, null, 7}, {null, 1, 2}, {null, 2, 1}, {1, null, 3}, {2, null, 1}, {1, 1, 4}};
    build(rows);
    // What is missing on both sides is in no cell.
    EXPECT_EQ(text(shown_), u"SYSMIS* 1Ost 2West S V / SYSMIS* . 2 1 3 . / 1ja 3 4 . 7 4 / "
                            "2nein 1 . . 1 . / S 4 6 1 11 . / V . 4 . . 4"_s);
    labels_.push_back({u"A"_s, u""_s, u"weiß nicht"_s});
    labels_.push_back({u"B"_s, u""_s, u"fehlt"_s});
    options_.NoColumnLabels = true;
    build(rows);
    EXPECT_EQ(text(shown_), u".* 1 2 S V / weiß_nicht* . 2 1 3 . / 1ja 3 4 . 7 4 / "
                            "2nein 1 . . 1 . / S 4 6 1 11 . / V . 4 . . 4"_s.replace(u".* 1"_s, u"* 1"_s));
    options_.IncludeMissingXTab = false;
    build(rows);
    EXPECT_EQ(text(shown_), u"1 S V / 1ja 4 4 4 / S 4 4 . / V 4 . 4"_s) << "labelled, so left out of the rows too";
}

TEST_F(CrosstabTest, KeepsAMissingRowWithoutLabelButNoSuchColumn) {
    rowMissing_ = u"7 thru 9"_s;
    columnMissing_ = u"7 thru 9"_s;
    build({{1, 1, 2}, {8, 1, 1}, {9, 1, 1}, {1, 8, 1}, {null, 1, 1}});
    EXPECT_EQ(text(shown_), u"1Ost S V / SYSMIS* 1 1 . / 1ja 2 2 2 / 8* 1 1 . / S 4 4 . / V 2 . 2"_s);
}

TEST_F(CrosstabTest, SortsNumbersByNumberAndOtherTextsAsTexts) {
    for (const QChar separator : {u',', u'.'}) {
        NumberFormat::setDecimalSeparator(separator);
        build({{10, 2, 1}, {-1.2, 1, 1}, {-1.5, 1, 1}, {9, 1, 1}});
        EXPECT_EQ(text(shown_).replace(separator, u'.'), u"1Ost 2West S V / -1.5 1 . 1 1 / -1.2 1 . 1 1 / "
                                                         "9k.A. 1 . 1 1 / 10 . 1 1 1 / S 3 1 4 . / V 3 1 . 4"_s);
    }
    NumberFormat::setDecimalSeparator(u',');
    // An empty text is a value like others, no system-missing and no heading.
    build({{u"b"_s, u"B"_s, 1}, {u""_s, u"B"_s, 2}, {u" a "_s, u""_s, 3}}, dao::dbText);
    EXPECT_EQ(text(shown_), u". B S V / . . 2 2 2 / a 3 . 3 3 / b . 1 1 1 / S 3 3 6 . / V 3 3 . 6"_s);
    EXPECT_TRUE(asker_.boxes.empty());
    build({{u"a"_s, u"x"_s, 1}, {u" a"_s, u"x"_s, 2}}, dao::dbText);
    EXPECT_EQ(text(shown_), u"x S V / a 1 1 1 / S 1 1 . / V 1 . 1"_s) << "the first record of what reads alike";
    EXPECT_EQ(asker_.boxes.size(), 1u) << "never without a word";
}

TEST_F(CrosstabTest, TakesItsAxesFrom25000RecordsAndItsCellsFromAll) {
    Rows rows;
    for (int i = 0; i < 25000; ++i)
        rows.push_back({i % 200, 1000 + i / 200, 1});
    labels_.clear();
    EXPECT_EQ(build(rows), BuildOutcome::Complete);
    EXPECT_EQ(asker_.texts(), QStringList(u"25000 Zeilen erreicht, Abbruch"_s));
    EXPECT_EQ(shown_.Rows(), 205);
    EXPECT_EQ(shown_.Cell(128, 203), u"25000"_s);
    EXPECT_TRUE(shown_.notes.empty()) << "nothing is missing yet";
    rows.erase(rows.begin());
    rows.push_back({500, 1000, 9});
    rows.push_back({0, 1000, 5});
    EXPECT_EQ(build(rows), BuildOutcome::Complete);
    EXPECT_EQ(asker_.boxes.size(), 1u) << "no box for records behind";
    ASSERT_EQ(shown_.notes.size(), 1u);
    EXPECT_TRUE(shown_.notes[0].text().startsWith(u"Mehr als 25000 Kombinationen"_s));
    EXPECT_EQ(column_.notes, shown_.notes) << "in every view";
    EXPECT_EQ(shown_.Cell(0, 203), u"500"_s);
    EXPECT_EQ(shown_.Cell(3, 3), u"5"_s) << "a record behind the limit, of values that are there";
    rows.insert(rows.begin(), {0, 1001, 1});
    build(rows);
    EXPECT_EQ(shown_.Rows(), 205) << "500 has come behind the limit";
    rows.clear();
    for (int i = 0; i < 2001; ++i)
        rows.push_back({i, i, 1});
    asker_.answer(ui::Answer::Abort);
    EXPECT_EQ(build(rows), BuildOutcome::Aborted);
    EXPECT_EQ(asker_.lastText(), u"7\r\nOut of memory"_s);
}

TEST_F(CrosstabTest, EndsWhenCancelledWithoutNumbersAndTakesItsMarksAgain) {
    const Rows rows{{1, 1, 1}, {2, 1, 1}, {2, 2, 1}};
    build(rows);
    shown_.setCell(2, 4, u"X"_s);
    marks_ = Marks::of(shown_);
    const QString axes = u"1Ost 2West S / 1ja . . . / 2nein* . . . / S . . ."_s;
    for (const auto& [turn, left] :
         std::vector<std::pair<int, QString>>{{1, u"1Ost S / S . ."_s}, {3, axes}, {4, axes}, {5, axes}}) {
        int turns = 0;
        cancelled_ = [&, at = turn] { return ++turns == at; };
        EXPECT_EQ(build(rows), BuildOutcome::Cancelled) << turn;
        EXPECT_EQ(text(shown_), left);
        EXPECT_EQ(column_.Rows(), 4);
    }
    cancelled_ = nullptr;
    build(rows);
    EXPECT_EQ(text(shown_), u"1Ost 2West S V / 1ja 1 . 1 1 / 2nein* 1 1 2 . / S 2 1 3 . / V 1 . . 1"_s);
}

TEST_F(CrosstabTest, CountsAgainByTheUsersMarksWhetherValidSumsStandOrNot) {
    columnMissing_ = u"2"_s;
    const Rows rows{{1, 1, 3}, {1, 2, 1}, {2, 1, 2}, {2, 2, 4}};
    for (const bool sums : {true, false}) {
        for (const bool withN : {true, false}) {
            options_ = {.IncludeMissingXTab = true,
                        .IncludeNinXTab = withN,
                        .ShowValidSums = sums,
                        .ShowPercentSign = false,
                        .AutoColWidth = false};
            marks_.reset();
            build(rows);
            if (withN)
                shown_ = column_; // a new calculation may be asked for in any view
            shown_.setCell(3, 2, u"X"_s);
            shown_.setCell(4, 2, u" "_s);
            for (int again = 0; again < 2; ++again) {
                marks_ = Marks::of(shown_);
                build(rows);
            }
            const QString valid = sums ? u" / V . 5 . 5"_s : QString();
            EXPECT_EQ(text(shown_), sums ? u"1Ost* 2West S V / 1ja 3 1 4 1 / 2nein 2 4 6 4 / S 5 5 10 . / V . 5 . 5"_s
                                         : u"1Ost* 2West S / 1ja 3 1 4 / 2nein 2 4 6 / S 5 5 10"_s);
            EXPECT_EQ(column_.Cell(4, 4), u"80,0"_s);
            EXPECT_EQ(column_.Cell(3, 4), u""_s);
            EXPECT_EQ(shown_.markedBy, Marks::By::Hand);
        }
    }
}

/// Titles, clicks, marks and charts find values and sums by the shape, in whichever view.
TEST_F(CrosstabTest, SaysOfEachViewWhereItHasWhat) {
    columnMissing_ = u"2"_s;
    options_.IncludeMissingXTab = true;
    options_.IncludeNinXTab = true;
    // Row 9 has only a missing column: its percentages are empty, so the views of valid percent leave it out.
    build({{null, 1, 2}, {1, 1, 3}, {1, 2, 1}, {9, 2, 4}});
    const auto where = [](const ResultTable& table) {
        const TableShape& s = table.shape;
        return u"%1-%2 %3 %4 %5 | %6-%7 %8 %9"_s.arg(s.rows.first)
            .arg(s.rows.last)
            .arg(s.sumRow)
            .arg(s.validRow)
            .arg(s.nullRow)
            .arg(s.columns.first)
            .arg(s.columns.last)
            .arg(s.sumColumn)
            .arg(s.validColumn)
            .toStdString();
    };
    EXPECT_EQ(where(shown_), "3-5 6 7 3 | 3-4 5 6");
    EXPECT_EQ(shown_.Cell(0, 7), u"Gült. Summe"_s);
    for (const ResultTable* view : {&column_, &row_, &total_}) {
        const TableShape& s = view->shape;
        EXPECT_EQ(view->Cell(0, s.rows.first), u""_s);
        EXPECT_EQ(s.nullRow, s.rows.first);
        for (int row = s.rows.first; row <= s.rows.last; ++row)
            EXPECT_TRUE((QStringList{u""_s, u"1"_s, u"9"_s}).contains(view->Cell(0, row)));
        if (s.sumRow >= 0) {
            EXPECT_EQ(view->Cell(0, s.sumRow), u"Summe"_s);
        }
        ASSERT_GE(s.validRow, 0);
        EXPECT_EQ(view->Cell(0, s.validRow), u"Gült. Summe"_s);
        EXPECT_EQ(view->Cell(s.sumColumn, 0), u"Summe"_s);
        EXPECT_EQ(view->Cell(s.validColumn, 0), u"Gült. Summe"_s);
        EXPECT_EQ(s.cases, shown_.shape.cases);
    }
    EXPECT_EQ(shown_.shape.casesOf(), (StatedCases{u"10"_s, u"3"_s}));
    options_.ShowValidSums = false;
    build({{null, 1, 2}, {1, 1, 3}});
    EXPECT_EQ(where(shown_), "3-4 5 -1 3 | 3-3 4 -1");
    EXPECT_EQ(shown_.shape.casesOf().valid, std::nullopt);
}

TEST_F(CrosstabTest, FitsItsColumns) {
    options_.AutoColWidth = true;
    columnMissing_ = u"2"_s;
    options_.IncludeMissingXTab = true;
    build({{1, 1, 3}, {1, 2, 1}});
    // 1.2 times the width; 50 more in the first row and in that of the sums.
    EXPECT_EQ(shown_.ColWidth(0), 11 * 120) << "Gült. Summe";
    EXPECT_EQ(shown_.ColWidth(1), 2 * 120) << "ja";
    EXPECT_EQ(shown_.ColWidth(4), 4 * 120) << "West";
    EXPECT_EQ(column_.ColWidth(3), 5 * 120) << "100,0";
    EXPECT_EQ(shown_.ColWidth(5), 5 * 120 + 50) << "Summe";
}

namespace {

/// Cases of two variables of a few values without missing ones, from a seed, with whole-number weights.
struct CrosstabCase {
    int a, b;
    double weight;
};

std::vector<CrosstabCase> crosstabCases(quint32 seed) {
    QRandomGenerator random(seed);
    std::vector<CrosstabCase> cases(static_cast<size_t>(random.bounded(1, 400)));
    for (CrosstabCase& one : cases)
        one = {random.bounded(1, 7), random.bounded(1, 9), random.bounded(1, 5) * 1.0};
    return cases;
}

template<class Take>
std::vector<std::vector<dao::Value>> grouped(const std::vector<CrosstabCase>& cases, Take&& weightOf) {
    std::map<std::pair<int, int>, double> counts;
    for (const CrosstabCase& one : cases)
        if (const double weight = weightOf(one); weight != 0)
            counts[{one.a, one.b}] += weight;
    std::vector<std::vector<dao::Value>> rows;
    for (const auto& [values, count] : counts)
        rows.push_back({values.first, values.second, count});
    return rows;
}

} // namespace

TEST_F(CrosstabTest, HoldsWhatHoldsForAnyCases) {
    options_.IncludeMissingInPercentXTab = true;
    const auto weight = [](const CrosstabCase& one) { return one.weight; };
    for (quint32 seed = 1; seed <= 12; ++seed) {
        const std::vector<CrosstabCase> cases = crosstabCases(seed);
        build(grouped(cases, weight));
        const ResultTable whole = shown_, columns = column_, rows = row_, totals = total_;
        // The margins are the frequencies.
        std::map<QString, double> frequencies;
        for (const CrosstabCase& one : cases)
            frequencies[QString::number(one.a)] += one.weight;
        for (int row = 3; row < whole.Rows() - 2; ++row)
            EXPECT_EQ(whole.Cell(whole.Cols() - 2, row).toDouble(), frequencies[whole.Cell(0, row)]) << seed;
        EXPECT_EQ(static_cast<size_t>(whole.Rows() - 5), frequencies.size()) << seed;
        // Weights of another scale are the same weights.
        build(grouped(cases, [](const CrosstabCase& one) { return 8 * one.weight; }));
        EXPECT_EQ(text(column_), text(columns)) << seed;
        EXPECT_EQ(text(row_), text(rows)) << seed;
        EXPECT_EQ(text(total_), text(totals)) << seed;
        // Two parts make the whole.
        std::map<QString, double> parts;
        for (const bool small : {true, false}) {
            build(grouped(cases, [small](const CrosstabCase& one) { return (one.b < 4) == small ? one.weight : 0; }));
            for (int row = 3; row < shown_.Rows(); ++row)
                for (int column = 3; column < shown_.Cols(); ++column)
                    parts[shown_.Cell(0, row) + u'|' + shown_.Cell(column, 0)] += shown_.Cell(column, row).toDouble();
        }
        for (int row = 3; row < whole.Rows(); ++row)
            for (int column = 3; column < whole.Cols() - 2; ++column)
                EXPECT_EQ(whole.Cell(column, row).toDouble(), parts[whole.Cell(0, row) + u'|' + whole.Cell(column, 0)])
                    << seed;
        // Exchanged variables give the table turned over, row percentages for column percentages.
        std::vector<CrosstabCase> flipped = cases;
        for (CrosstabCase& one : flipped)
            std::swap(one.a, one.b);
        build(grouped(flipped, weight));
        for (int row = 3; row < whole.Rows(); ++row)
            for (int column = 3; column < whole.Cols(); ++column)
                EXPECT_EQ(shown_.Cell(row, column), whole.Cell(column, row)) << seed;
        for (int row = 3; row < rows.Rows(); ++row)
            for (int column = 3; column < rows.Cols(); ++column)
                EXPECT_EQ(column_.Cell(row, column), rows.Cell(column, row)) << seed;
    }
}
