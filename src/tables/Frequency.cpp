#include "tables/Frequency.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/dao/CompensatedSum.h"
#include "platform/dao/TextOrder.h"
#include "platform/system/NumberFormat.h"
#include "tables/labels.h"
#include "tables/missing.h"

#include <QHash>
#include <algorithm>
#include <array>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

enum Column { Wert, Auspraegung, Missing, Anzahl, Prozent, GueltProzent, KumulProzent };
constexpr int rowHeight = 228;
constexpr std::array<int, 7> firstWidths{500, 2000, 800, 800, 800, 800, 800};

/// What a value's cell shows; nothing for system-missing, whose cell is as empty as that of an empty text.
std::optional<QString> shownText(const dao::Value& value) {
    return value.isNull() ? std::nullopt : std::optional(value.toText());
}

class FrequencyBuilder {
public:
    FrequencyBuilder(ResultTable& table, const FrequencyInput& input)
        : table_(table), in_(input), widths_(input.AutoColWidth, input.textWidth) {}

    BuildOutcome build();

private:
    ResultTable& table_;
    const FrequencyInput& in_;
    const AxisMarks* marks_ = nullptr; ///< that decide in place of the definition
    QHash<QString, size_t> met_;       ///< values of a text so far
    QHash<QString, int> looks_;        ///< values that look alike so far: blanks around a text can't be seen
    std::optional<MissingDefinition> definition_;
    ColumnWidths widths_;
    std::vector<double> sortKeys_;
    dao::CompensatedSum total_, validTotal_;
    int lastRow_ = 0; ///< the row that the filling stood at when the counts ended
    int dataRows_ = 0;
    int sumRow_ = -1;  ///< once it is known
    int nullRow_ = -1; ///< as the values arrived

    bool marked(int row) const { return isMark(table_.Cell(Missing, row)); }
    double number(int column, int row) const { return dao::leadingNumber(table_.Cell(column, row), true); }
    void write(int column, int row, const QString& text);
    bool holdsValues(const AxisMarks& marks);
    void prepare();
    BuildOutcome fill();
    bool skipUnknown();
    bool fillRow(int row);
    void mark(int row, const dao::Value& value);
    void sort();
    void writeSums(int validRow);
    BuildOutcome percentages();
    bool validPercent(int row, double count, double valid, double cumulated, double& sum);
    void finish();
};

void FrequencyBuilder::write(int column, int row, const QString& text) {
    table_.setCell(column, row, text);
    widths_.note(column, text, row == 0 || row == sumRow_);
}

/// True if these are just the values of `counts`: marks that were set for other values are none for these.
bool FrequencyBuilder::holdsValues(const AxisMarks& marks) {
    QHash<QString, size_t> arriving;
    size_t rows = 0;
    for (in_.counts.MoveFirst(); !in_.counts.Eof(); in_.counts.MoveNext()) {
        if (in_.counts.value(1).isNull())
            continue;
        ++rows;
        const dao::Value value = in_.counts.value(0);
        const std::optional<QString> text = shownText(value);
        if (++arriving[AxisMarks::keyOf(text)] > marks.count(text))
            return false;
    }
    return rows == marks.values().size();
}

void FrequencyBuilder::prepare() {
    const int columns = in_.CumulatedPercent ? 7 : 6;
    const bool empty = in_.counts.Bof() && in_.counts.Eof();
    if (in_.marks && !empty && holdsValues(in_.marks->rows))
        marks_ = &in_.marks->rows;
    table_.Clear();
    table_.Tag = TableKind::Frequency;
    table_.markedBy = marks_ ? Marks::By::Hand : Marks::By::Definition;
    table_.setRows(2);
    table_.setCols(columns);
    for (int column = 0; column < columns; ++column)
        table_.setColWidth(column, firstWidths[static_cast<size_t>(column)]);
    table_.setRowHeight(0, rowHeight);
    table_.setRowHeight(1, rowHeight);
    table_.FixedRows = 1;
    table_.FixedCols = 1;
    const std::array<QString, 7> headers{u"Wert"_s,    u"Ausprägung"_s,   u"Missing"_s,      u"Anzahl"_s,
                                         u"Prozent"_s, u"Gült.Prozent"_s, u"Kumul.Prozent"_s};
    for (int column = 0; column < columns; ++column) {
        write(column, 0, TranslateText(headers[static_cast<size_t>(column)]));
        if (column >= Missing)
            table_.setCellAlignment(column, 0, ResultTable::RightTop);
    }
    if (!empty)
        in_.counts.MoveFirst();
    if (in_.dtMissing && !marks_)
        definition_.emplace(*in_.dtMissing);
}

BuildOutcome FrequencyBuilder::build() {
    prepare();
    if (in_.counts.Eof())
        return BuildOutcome::Empty;
    BuildOutcome outcome = fill();
    sort();
    if (outcome != BuildOutcome::Complete)
        return outcome;
    sumRow_ = lastRow_ + 1;
    writeSums(sumRow_ + (in_.SeparateValidCases ? 2 : 1));
    outcome = percentages();
    if (outcome == BuildOutcome::Complete)
        finish();
    return outcome;
}

/// Passes over rows whose count is Null. @return false when the counts ended
bool FrequencyBuilder::skipUnknown() {
    if (!in_.counts.value(1).isNull())
        return true;
    showTableWarning(u"Warnung: unbekannte Anzahl fehlender Werte in Gewichtungsvariable."_s);
    while (!in_.counts.Eof() && in_.counts.value(1).isNull())
        in_.counts.MoveNext();
    return !in_.counts.Eof();
}

BuildOutcome FrequencyBuilder::fill() {
    for (int row = 1;; ++row) {
        lastRow_ = row;
        if (!skipUnknown())
            return BuildOutcome::Complete;
        dataRows_ = row;
        if (!fillRow(row))
            return BuildOutcome::Aborted;
        table_.setRows(table_.Rows() + 1);
        table_.setRowHeight(table_.Rows() - 1, rowHeight);
        in_.counts.MoveNext();
        if (in_.counts.Eof())
            return BuildOutcome::Complete;
        if (row == maxFrequencyRows) {
            showTableWarning(u"25000 Zeilen erreicht, Abbruch"_s);
            return BuildOutcome::Truncated;
        }
    }
}

/// @return false for Abort after a failed look-up
bool FrequencyBuilder::fillRow(int row) {
    const dao::Value value = in_.counts.value(0);
    const dao::Value count = in_.counts.value(1);
    const QString text = value.toText();
    write(Wert, row, text);
    total_.add(count.toDouble());
    std::optional<QString> label;
    if (trapped([&] { label = labelOf(in_.labels, value); }) == Trap::Aborted)
        return false;
    write(Auspraegung, row, label.value_or(value.isNull() ? u"SYSMIS"_s : QString()));
    table_.setCellAlignment(Auspraegung, row, ResultTable::LeftCenter);
    mark(row, value);
    if (value.isNull())
        nullRow_ = row;
    table_.setCellAlignment(Missing, row, ResultTable::RightTop);
    write(Anzahl, row, NumberFormat::fixed(count.toDouble(), 0));
    if (!marked(row))
        validTotal_.add(count.toDouble());
    sortKeys_.push_back(number(Wert, row));
    return true;
}

/// A value is missing by hand or by definition; of several that look alike each has its own mark.
void FrequencyBuilder::mark(int row, const dao::Value& value) {
    const std::optional<QString> text = shownText(value);
    const size_t nth = met_[AxisMarks::keyOf(text)]++;
    if (text && looks_[dao::foldedText(text->trimmed())]++ > 0)
        table_.addNote(TableNote::ofLookAlikes());
    if (!marks_) {
        const bool missing =
            value.isNull() || (definition_ && value.isNumeric() && definition_->contains(value.toDouble()));
        write(Missing, row, missing ? u"X"_s : QString());
        return;
    }
    const AxisMarks::Value* kept = marks_->find(text, nth);
    if (!kept)
        return;
    write(Missing, row, kept->mark);
    if (in_.CumulatedPercent && kept->missing() && kept->cumulated)
        write(KumulProzent, row, NumberFormat::fixed(*kept->cumulated, 1));
}

/// Brings the rows in order of number, equal ones as they arrived. A text that is no number counts by the
/// number it starts with, system-missing as 0. Cells are read with either decimal separator.
void FrequencyBuilder::sort() {
    std::vector<int> order(sortKeys_.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        return sortKeys_[static_cast<size_t>(a)] < sortKeys_[static_cast<size_t>(b)];
    });
    table_.orderRows(1, order);
    table_.shape = {.rows = {1, dataRows_}, .columns = {Anzahl, table_.Cols() - 1}};
    const auto null = std::ranges::find(order, nullRow_ - 1);
    if (null != order.end())
        table_.shape.nullRow = 1 + static_cast<int>(null - order.begin());
}

void FrequencyBuilder::writeSums(int validRow) {
    table_.setRows(validRow + 1);
    for (int row = sumRow_; row <= validRow; ++row) {
        table_.setRowHeight(row, rowHeight);
        for (int column = 0; column < table_.Cols(); ++column)
            table_.setCell(column, row, QString());
        table_.setCellAlignment(Auspraegung, row, ResultTable::LeftCenter);
        table_.setCellAlignment(Missing, row, ResultTable::RightTop);
    }
    write(Anzahl, sumRow_, NumberFormat::fixed(total_.value(), 0));
    write(Auspraegung, sumRow_, TranslateText(u"Summe"_s));
    write(Auspraegung, validRow, TranslateText(u"Gültige Fälle"_s));
    write(Anzahl, validRow, NumberFormat::fixed(validTotal_.value(), 0));
    table_.shape.sumRow = sumRow_;
    table_.shape.validRow = validRow;
}

/// Columns 4 to 6. The bases are taken back from the cells, so with weights they are the rounded counts.
BuildOutcome FrequencyBuilder::percentages() {
    const double all = number(Anzahl, sumRow_);
    double valid = 0;
    for (int row = 1; row <= dataRows_; ++row)
        if (!marked(row))
            valid += number(Anzahl, row);
    double percentSum = 0, validSum = 0, cumulated = 0;
    for (int row = 1; row <= dataRows_; ++row) {
        const double count = number(Anzahl, row);
        if (all != 0) {
            const double percent = count * 100.0 / all;
            write(Prozent, row, NumberFormat::fixed(percent, 1));
            percentSum += percent;
        }
        if (marked(row)) {
            write(GueltProzent, row, u" "_s);
        } else {
            cumulated += count;
            if (!validPercent(row, count, valid, cumulated, validSum))
                return BuildOutcome::Aborted;
        }
        if (in_.cancelled && in_.cancelled())
            return BuildOutcome::Cancelled;
    }
    write(Prozent, sumRow_, NumberFormat::fixed(percentSum, 1));
    write(GueltProzent, sumRow_, NumberFormat::fixed(validSum, 1));
    return BuildOutcome::Complete;
}

/// Counts that cancel out (negative weights) leave no base: a division by zero, as an error to be seen.
/// @return false for Abort
bool FrequencyBuilder::validPercent(int row, double count, double valid, double cumulated, double& sum) {
    if (count + valid == 0)
        return true;
    const auto step = [&] {
        if (valid == 0)
            dao::raiseRuntimeError(11);
        const double percent = count / valid * 100.0;
        write(GueltProzent, row, NumberFormat::fixed(percent, 1));
        if (in_.CumulatedPercent)
            write(KumulProzent, row, NumberFormat::fixed(cumulated / valid * 100.0, 1));
        sum += percent;
    };
    return computeOrTell(bool(in_.onFailure), step, [&](const dao::Error& error) {
        const QString& value = table_.Cell(table_.Cell(Wert, row).isEmpty() ? Auspraegung : Wert, row);
        for (int column = GueltProzent; column < table_.Cols(); ++column)
            in_.onFailure(value + u", "_s + table_.Cell(column, 0), error);
    });
}

void FrequencyBuilder::finish() {
    if (!in_.CommaInPercent)
        table_.exchangeSeparators(Anzahl, 1);
    table_.shape.cases = {{table_.Cell(Anzahl, sumRow_), table_.Cell(Anzahl, table_.shape.validRow)}};
    if (!in_.AutoColWidth)
        return;
    for (int column = 0; column < table_.Cols(); ++column)
        table_.setColWidth(column, widths_.width(column));
}

} // namespace

BuildOutcome BuildFrequencyTable(ResultTable& table, const FrequencyInput& input) {
    BuildOutcome outcome = BuildOutcome::Aborted;
    trapped([&] {
        outcome = BuildOutcome::Aborted;
        outcome = FrequencyBuilder(table, input).build();
    });
    return outcome;
}

void cumulateAnew(ResultTable& table, bool commaInPercent) {
    if (table.Cols() <= KumulProzent)
        return;
    const auto number = [&](int row) { return dao::leadingNumber(table.Cell(Anzahl, row), true); };
    // What was missing has a blank there.
    const auto counted = [&](int row) { return table.Cell(GueltProzent, row) != u" "; };
    const Span& rows = table.shape.rows;
    double valid = 0, cumulated = 0;
    for (int row = rows.first; row <= rows.last; ++row)
        valid += counted(row) ? number(row) : 0;
    for (int row = rows.first; row <= rows.last; ++row) {
        if (!counted(row))
            continue;
        cumulated += number(row);
        if (table.Cell(KumulProzent, row).isEmpty() || valid == 0)
            continue;
        const QString text = NumberFormat::fixed(cumulated / valid * 100.0, 1);
        table.setCell(KumulProzent, row, commaInPercent ? text : exchangedSeparators(text));
    }
}
