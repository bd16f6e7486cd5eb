#include "tables/Crosstab.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/system/NumberFormat.h"
#include "tables/CrosstabAxis.h"
#include "tables/CrosstabPercent.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr int firstData = 3;

double finite(double number) {
    if (!std::isfinite(number))
        dao::raiseRuntimeError(6);
    return number;
}

/// Takes out every row without any text from the marks on.
void removeEmptyRows(ResultTable& table) {
    std::vector<int> order, removed;
    for (int row = 2; row < table.Rows(); ++row) {
        bool empty = true;
        for (int column = 2; empty && column < table.Cols(); ++column)
            empty = table.Cell(column, row).isEmpty();
        (empty ? removed : order).push_back(row - 2);
    }
    const int kept = static_cast<int>(order.size());
    order.insert(order.end(), removed.begin(), removed.end());
    table.orderRows(2, order);
    table.setRows(2 + kept);
    for (int& row : removed)
        row += 2;
    table.shape.rowsRemoved(removed);
}

void removeValidSums(ResultTable& table) {
    if (table.shape.validRow >= 0)
        DeleteRow(table, table.shape.validRow);
    if (table.shape.validColumn >= 0)
        DeleteColumn(table, table.shape.validColumn);
}

class CrosstabBuilder {
public:
    CrosstabBuilder(const CrosstabTables& tables, const CrosstabInput& input)
        : t_(tables), shown_(tables.shown), in_(input),
          columns_(in_.counts, in_.labels,
                   {1, in_.columnMissing, in_.options.IncludeMissingXTab, in_.options.NoColumnLabels, false,
                    in_.marks ? &in_.marks->columns : nullptr}),
          rows_(in_.counts, in_.labels,
                {0, in_.rowMissing, in_.options.IncludeMissingXTab, in_.options.NoRowLabels, true,
                 in_.marks ? &in_.marks->rows : nullptr}) {}

    BuildOutcome build();

private:
    const CrosstabTables& t_;
    ResultTable& shown_;
    const CrosstabInput& in_;
    CrosstabAxis columns_, rows_;
    std::vector<double> cells_; ///< rounded, row by row; 0 shows as nothing
    std::vector<bool> taken_;   ///< cells whose record was met
    bool ambiguous_ = false;    ///< a cell had a second record
    std::vector<double> rowSums_, columnSums_;
    std::vector<int> keptRows_, keptColumns_;
    double total_ = 0;

    double& cell(int column, int row) {
        return cells_[static_cast<size_t>(row) * static_cast<size_t>(columns_.size()) + static_cast<size_t>(column)];
    }
    qint64 cellCount() const { return qint64{columns_.size()} * rows_.size(); }
    std::array<ResultTable*, 5> all() const {
        return {&shown_, &t_.columnPercent, &t_.rowPercent, &t_.totalPercent, &t_.absolute};
    }
    bool cancelled() const { return in_.cancelled && in_.cancelled(); }
    void prepare();
    BuildOutcome readAxes();
    BuildOutcome readCells();
    bool readCell(int column, int row);
    BuildOutcome sumRows();
    void sumColumns();
    void writeAxes(const std::vector<int>& columns, const std::vector<int>& rows);
    BuildOutcome leaveAxes(BuildOutcome outcome);
    void writeTable();
    void writeValidSums();
    bool writePercentages();
    void noteBases(ResultTable& table, PercentOf of) const;
    void tidy();
    void setWidths(ResultTable& table) const;
};

void CrosstabBuilder::prepare() {
    for (ResultTable* table : all()) {
        *table = ResultTable();
        table->Tag = TableKind::Crosstab;
        table->markedBy = in_.marks ? Marks::By::Hand : Marks::By::Definition;
        table->FixedRows = table->FixedCols = 2;
        table->setRows(4);
        table->setCols(4);
        table->setColWidth(0, 750);
        table->setColWidth(1, 2000);
        table->setCell(1, 0, in_.counts.Fields()[1].Name);
        table->setCell(0, 1, in_.counts.Fields()[0].Name);
    }
}

BuildOutcome CrosstabBuilder::build() {
    prepare();
    if (in_.counts.Bof() && in_.counts.Eof())
        return BuildOutcome::Empty;
    BuildOutcome outcome = readAxes();
    columns_.finish();
    rows_.finish();
    if (outcome == BuildOutcome::Complete)
        outcome = readCells();
    if (outcome == BuildOutcome::Complete)
        outcome = sumRows();
    if (outcome != BuildOutcome::Complete)
        return leaveAxes(outcome);
    sumColumns();
    writeTable();
    writeValidSums();
    if (!writePercentages())
        return BuildOutcome::Aborted;
    tidy();
    if (ambiguous_)
        showTableWarning(
            u"Warnung: Mehrere Werte sehen in der Tabelle gleich aus; gezählt ist jeweils nur der erste."_s);
    return BuildOutcome::Complete;
}

BuildOutcome CrosstabBuilder::readAxes() {
    int records = 0;
    for (in_.counts.MoveFirst(); !in_.counts.Eof() && records < maxCrosstabRecords; in_.counts.MoveNext()) {
        ++records;
        if (!columns_.takeRecord())
            return BuildOutcome::Aborted;
        if (cancelled())
            return BuildOutcome::Cancelled;
        if (!rows_.takeRecord())
            return BuildOutcome::Aborted;
    }
    if (records == maxCrosstabRecords && in_.counts.Eof())
        showTableWarning(u"25000 Zeilen erreicht, Abbruch"_s);
    // Values that only later records have are in no row: N is smaller than what was counted.
    if (!in_.counts.Eof())
        shown_.addNote(TableNote{
            u"Mehr als 25000 Kombinationen: Werte, die erst danach vorkommen, fehlen in der Tabelle und in N."_s, {}});
    return BuildOutcome::Complete;
}

/// The first record of each combination. One with both values Null belongs nowhere.
BuildOutcome CrosstabBuilder::readCells() {
    const qint64 size = cellCount();
    if (size > maxCrosstabCells)
        dao::raiseRuntimeError(7);
    cells_.assign(static_cast<size_t>(size), 0);
    taken_.assign(static_cast<size_t>(size), false);
    for (in_.counts.MoveFirst(); !in_.counts.Eof(); in_.counts.MoveNext()) {
        const int row = rows_.positionOfRecord();
        const int column = row < 0 ? -1 : columns_.positionOfRecord();
        if (column >= 0 && !(in_.counts.value(0).isNull() && in_.counts.value(1).isNull()) && !readCell(column, row))
            return BuildOutcome::Aborted;
    }
    return BuildOutcome::Complete;
}

/// A sum of weights as its 15 significant digits have it: ten times 0.15 is 1.5, whatever their sum lacks of it.
double withoutNoise(double sum) {
    return QByteArray::number(sum, 'g', 15).toDouble();
}

/// @return false for Abort after a count that is no number
bool CrosstabBuilder::readCell(int column, int row) {
    const size_t index = static_cast<size_t>(row) * static_cast<size_t>(columns_.size()) + static_cast<size_t>(column);
    if (taken_[index]) {
        ambiguous_ = true;
        return true;
    }
    taken_[index] = true;
    return trapped([&] { cells_[index] = RoundHalfUp(withoutNoise(finite(in_.counts.value(2).toDouble()))); }) !=
           Trap::Aborted;
}

BuildOutcome CrosstabBuilder::sumRows() {
    for (int row = 0; row < rows_.size(); ++row) {
        double sum = 0;
        for (int column = 0; column < columns_.size(); ++column)
            sum += cell(column, row);
        rowSums_.push_back(RoundHalfUp(finite(sum)));
        if (cancelled())
            return BuildOutcome::Cancelled;
    }
    return BuildOutcome::Complete;
}

/// Sums of the columns and of all, and which values have cases at all.
void CrosstabBuilder::sumColumns() {
    for (int row = 0; row < rows_.size(); ++row) {
        total_ += rowSums_[static_cast<size_t>(row)];
        if (rowSums_[static_cast<size_t>(row)] != 0)
            keptRows_.push_back(row);
    }
    total_ = RoundHalfUp(finite(total_));
    for (int column = 0; column < columns_.size(); ++column) {
        double sum = 0;
        for (int row = 0; row < rows_.size(); ++row)
            sum += cell(column, row);
        columnSums_.push_back(RoundHalfUp(finite(sum)));
        if (columnSums_.back() != 0)
            keptColumns_.push_back(column);
    }
}

/// Values, labels and marks with a row and a column "Summe", nothing in the cells.
void CrosstabBuilder::writeAxes(const std::vector<int>& columns, const std::vector<int>& rows) {
    const int lastColumn = firstData + static_cast<int>(columns.size());
    const int lastRow = firstData + static_cast<int>(rows.size());
    shown_.setRows(lastRow + 1);
    shown_.setCols(lastColumn + 1);
    for (int column = firstData; column < lastColumn; ++column) {
        const CrosstabAxis::Entry& entry = columns_.at(columns[static_cast<size_t>(column - firstData)]);
        shown_.setCell(column, 0, entry.value);
        shown_.setCell(column, 1, entry.label);
        shown_.setCell(column, 2, entry.mark);
    }
    for (int row = firstData; row < lastRow; ++row) {
        const CrosstabAxis::Entry& entry = rows_.at(rows[static_cast<size_t>(row - firstData)]);
        shown_.setCell(0, row, entry.value);
        shown_.setCell(1, row, entry.label);
        shown_.setCell(2, row, entry.mark);
    }
    shown_.setCell(lastColumn, 0, TranslateText(u"Summe"_s));
    shown_.setCell(0, lastRow, TranslateText(u"Summe"_s));
    shown_.setCell(2, 2, TranslateText(u"Missing"_s));
    const auto nullAmong = [](const CrosstabAxis& axis, const std::vector<int>& positions) {
        const auto null = std::ranges::find_if(positions, [&](int position) { return axis.at(position).null; });
        return null == positions.end() ? -1 : firstData + static_cast<int>(null - positions.begin());
    };
    shown_.shape = {.rows = {firstData, lastRow - 1},
                    .columns = {firstData, lastColumn - 1},
                    .sumRow = lastRow,
                    .sumColumn = lastColumn,
                    .nullRow = nullAmong(rows_, rows),
                    .nullColumn = nullAmong(columns_, columns)};
}

/// What a table that goes no further shows: all values with their marks, no number.
BuildOutcome CrosstabBuilder::leaveAxes(BuildOutcome outcome) {
    if (cellCount() > maxCrosstabCells)
        return outcome;
    std::vector<int> columns(static_cast<size_t>(columns_.size())), rows(static_cast<size_t>(rows_.size()));
    std::iota(columns.begin(), columns.end(), 0);
    std::iota(rows.begin(), rows.end(), 0);
    writeAxes(columns, rows);
    return outcome;
}

/// The table of absolute values, but for its valid sums. Without a single value it has no sums either.
void CrosstabBuilder::writeTable() {
    writeAxes(keptColumns_, keptRows_);
    const int lastColumn = shown_.Cols() - 1, lastRow = shown_.Rows() - 1;
    for (int row = firstData; row < lastRow; ++row) {
        const int position = keptRows_[static_cast<size_t>(row - firstData)];
        for (int column = firstData; column < lastColumn; ++column)
            if (const double count = cell(keptColumns_[static_cast<size_t>(column - firstData)], position); count != 0)
                shown_.setCell(column, row, NumberFormat::plain(count));
        shown_.setCell(lastColumn, row, NumberFormat::plain(rowSums_[static_cast<size_t>(position)]));
    }
    for (int column = firstData; column < lastColumn; ++column) {
        const int position = keptColumns_[static_cast<size_t>(column - firstData)];
        shown_.setCell(column, lastRow, NumberFormat::plain(columnSums_[static_cast<size_t>(position)]));
    }
    shown_.setCell(lastColumn, lastRow, NumberFormat::plain(total_));
    if (keptColumns_.empty() && keptRows_.empty()) {
        shown_.removeCol(lastColumn);
        shown_.removeRow(lastRow);
    }
}

/// Adds row and column "Gült. Summe": sums over what is marked on neither axis, nothing where they are 0. Values whose
/// own sum is 0 are not shown, but count here as they do in "Summe".
void CrosstabBuilder::writeValidSums() {
    const int lastColumn = shown_.Cols(), lastRow = shown_.Rows();
    shown_.setCols(lastColumn + 1);
    shown_.setRows(lastRow + 1);
    shown_.setCell(0, lastRow, TranslateText(u"Gült. Summe"_s));
    shown_.setCell(lastColumn, 0, TranslateText(u"Gült. Summe"_s));
    shown_.shape.validRow = lastRow;
    shown_.shape.validColumn = lastColumn;
    std::vector<double> byColumn(static_cast<size_t>(columns_.size())), byRow(static_cast<size_t>(rows_.size()));
    double total = 0;
    for (int row = 0; row < rows_.size(); ++row)
        for (int column = 0; column < columns_.size(); ++column) {
            if (rows_.at(row).marked() || columns_.at(column).marked())
                continue;
            byRow[static_cast<size_t>(row)] += cell(column, row);
            byColumn[static_cast<size_t>(column)] += cell(column, row);
            total += cell(column, row);
        }
    const auto write = [this](int column, int row, double sum) {
        if (sum != 0)
            shown_.setCell(column, row, NumberFormat::plain(sum));
    };
    for (size_t r = 0; r < keptRows_.size(); ++r)
        write(lastColumn, firstData + static_cast<int>(r), byRow[static_cast<size_t>(keptRows_[r])]);
    for (size_t c = 0; c < keptColumns_.size(); ++c)
        write(firstData + static_cast<int>(c), lastRow, byColumn[static_cast<size_t>(keptColumns_[c])]);
    write(lastColumn, lastRow, total);
}

bool CrosstabBuilder::writePercentages() {
    CrosstabPercent percent(shown_, in_);
    using Of = CrosstabPercent::Of;
    if (!percent.fill(t_.columnPercent, Of::Column) || !percent.fill(t_.rowPercent, Of::Row) ||
        !percent.fill(t_.totalPercent, Of::Total))
        return false;
    const CrosstabOptions& options = in_.options;
    // Valid sums that are the sums themselves say nothing.
    const bool without = !options.IncludeMissingXTab && options.IncludeMissingInPercentXTab && percent.nothingMarked();
    const int fewer = !without ? 0 : options.IncludeNinXTab ? 2 : 1;
    for (ResultTable* table : {&t_.columnPercent, &t_.rowPercent, &t_.totalPercent}) {
        table->setRows(table->Rows() - fewer);
        table->setCols(table->Cols() - fewer);
        table->shape = shown_.shape;
        table->notes = shown_.notes;
        table->percentOfValid = !options.IncludeMissingInPercentXTab;
        // The numbers of cases stand between the sums.
        const int shift = options.IncludeNinXTab ? 1 : 0;
        table->shape.validRow = without ? -1 : shown_.shape.validRow + shift;
        table->shape.validColumn = without ? -1 : shown_.shape.validColumn + shift;
    }
    noteBases(t_.columnPercent, PercentOf::Columns);
    noteBases(t_.rowPercent, PercentOf::Rows);
    noteBases(t_.totalPercent, PercentOf::All);
    return true;
}

/// The sums that the percentages rest on: the table of percentages itself need not show them.
void CrosstabBuilder::noteBases(ResultTable& table, PercentOf of) const {
    table.percentOf = of;
    const TableShape& shape = shown_.shape;
    const int row = table.percentOfValid ? shape.validRow : shape.sumRow;
    const int column = table.percentOfValid ? shape.validColumn : shape.sumColumn;
    if (row < 0 || column < 0)
        return;
    const auto note = [&](const QString& value, const QString& label, const QString& n) {
        if (!n.isEmpty())
            table.bases.push_back({value, label, n});
    };
    for (int c = shape.columns.first; of == PercentOf::Columns && c <= shape.columns.last; ++c)
        note(shown_.Cell(c, 0), shown_.Cell(c, 1), shown_.Cell(c, row));
    for (int r = shape.rows.first; of == PercentOf::Rows && r <= shape.rows.last; ++r)
        note(shown_.Cell(0, r), shown_.Cell(1, r), shown_.Cell(column, r));
    note(shown_.Cell(column, 0), QString(), shown_.Cell(column, row));
}

void CrosstabBuilder::tidy() {
    t_.absolute = shown_;
    for (ResultTable* table : all())
        setWidths(*table);
    for (ResultTable* table : {&t_.columnPercent, &t_.rowPercent, &t_.totalPercent})
        removeEmptyRows(*table);
    for (ResultTable* table : all()) {
        if (!in_.options.ShowValidSums)
            removeValidSums(*table);
        for (int row = 0; row < 2; ++row)
            for (int column = 2; column < table->Cols(); ++column)
                table->setCellAlignment(column, row, ResultTable::RightTop);
    }
    const TableShape& shape = shown_.shape;
    const auto cell = [&](int column, int row) {
        return column < 0 || row < 0 ? std::nullopt : std::optional(shown_.Cell(column, row));
    };
    const StatedCases cases{cell(shape.sumColumn, shape.sumRow), cell(shape.validColumn, shape.validRow)};
    for (ResultTable* table : all())
        table->shape.cases = {cases};
}

void CrosstabBuilder::setWidths(ResultTable& table) const {
    if (!in_.options.AutoColWidth)
        return;
    ColumnWidths widths(true, in_.textWidth);
    const int sumRow = firstData + static_cast<int>(keptRows_.size());
    for (int row = 0; row < table.Rows(); ++row)
        for (int column = 0; column < table.Cols(); ++column) {
            const QString& text = table.Cell(column, row);
            widths.note(column, isMark(text) ? u"Mis"_s : text, row == 0 || row == sumRow);
        }
    for (int column = 0; column < table.Cols(); ++column)
        table.setColWidth(column, widths.width(column));
}

} // namespace

double RoundHalfUp(double x) {
    const double floor = std::floor(x);
    return x - floor >= 0.5 ? floor + 1 : floor;
}

BuildOutcome BuildCrosstabTable(const CrosstabTables& tables, const CrosstabInput& input) {
    BuildOutcome outcome = BuildOutcome::Aborted;
    trapped([&] {
        outcome = BuildOutcome::Aborted;
        outcome = CrosstabBuilder(tables, input).build();
    });
    return outcome;
}
