#include "tables/CrosstabPercent.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/system/NumberFormat.h"

#include <cmath>

using namespace Qt::StringLiterals;

CrosstabPercent::CrosstabPercent(const ResultTable& absolute, const CrosstabInput& input)
    : absolute_(absolute), in_(input), options_(input.options), cols_(absolute.Cols()), rows_(absolute.Rows()),
      numbers_(static_cast<size_t>(cols_) * static_cast<size_t>(rows_)) {
    size_t index = 0;
    for (int row = 0; row < rows_; ++row)
        for (int column = 0; column < cols_; ++column, ++index)
            if (row > 2 && column > 2 && filled(column, row))
                numbers_[index] = dao::leadingNumber(absolute_.Cell(column, row), true);
}

bool CrosstabPercent::nothingMarked() const {
    for (int column = 3; column < cols_; ++column)
        if (columnMarked(column))
            return false;
    for (int row = 3; row < rows_; ++row)
        if (rowMarked(row))
            return false;
    return true;
}

/// Size, values, labels and marks; the labels of the sums with N between them.
void CrosstabPercent::writeFrame(ResultTable& table) const {
    const int more = options_.IncludeNinXTab ? 2 : 0;
    table.setRows(rows_ + more);
    table.setCols(cols_ + more);
    for (int row = 0; row < rows_; ++row)
        for (int column = 0; column < (row < 3 ? cols_ : 3); ++column)
            table.setCell(column, row, absolute_.Cell(column, row));
    if (!options_.IncludeNinXTab)
        return;
    const QString sum = TranslateText(u"Summe"_s), validSum = TranslateText(u"Gült. Summe"_s);
    int back = 0;
    for (const QString& label : {u"N "_s + validSum, validSum, u"N "_s + sum, sum}) {
        ++back;
        if (table.Rows() - back > 2)
            table.setCell(0, table.Rows() - back, label);
        if (table.Cols() - back > 2)
            table.setCell(table.Cols() - back, 0, label);
    }
}

bool CrosstabPercent::fill(ResultTable& table, Of of) {
    writeFrame(table);
    const int shift = options_.IncludeNinXTab ? 1 : 0;
    for (int row = 3; row < rows_; ++row) {
        for (int column = 3; column < cols_; ++column) {
            QString text;
            if (!compute(text, of, column, row))
                return false;
            table.setCell(column + (column == cols_ - 1 ? shift : 0), row + (row == rows_ - 1 ? shift : 0),
                          withN(text, column, row));
            if (options_.IncludeNinXTab)
                writeN(table, column, row);
        }
    }
    return true;
}

/// @return false for Abort
bool CrosstabPercent::compute(QString& text, Of of, int column, int row) {
    return computeOrTell(
        bool(in_.onFailure), [&] { text = withSignAndSeparator(percent(of, column, row)); },
        [&](const dao::Error& error) {
            in_.onFailure(absolute_.Cell(0, row) + u", "_s + absolute_.Cell(column, 0), error);
        });
}

QString CrosstabPercent::percent(Of of, int column, int row) {
    return options_.IncludeMissingInPercentXTab ? percentOfAll(of, column, row) : percentOfValid(of, column, row);
}

/// Percentages of the sums over all values.
QString CrosstabPercent::percentOfAll(Of of, int column, int row) {
    const int sumColumn = cols_ - 2, sumRow = rows_ - 2;
    if ((row == rows_ - 1 && column == sumColumn) || (row == sumRow && column == cols_ - 1))
        return {};
    const double total = sumColumn > 2 && sumRow > 2 ? number(sumColumn, sumRow) : 0;
    double base = total;
    // The sum before this one decides whether there is anything to relate to; in front of the first value
    // stands no sum at all.
    double neighbour = total;
    if (of == Of::Column) {
        base = column == cols_ - 1 ? total : number(column, sumRow);
        neighbour = column > 3 ? number(column - 1, sumRow) : base;
    } else if (of == Of::Row) {
        base = row == rows_ - 1 ? total : number(sumColumn, row);
        neighbour = row > 3 ? number(sumColumn, row - 1) : base;
    }
    return filled(column, row) && neighbour != 0 ? quotient(column, row, base) : u"0,0"_s;
}

/// Percentages of the sums over valid values, shown for valid values and these sums alone.
QString CrosstabPercent::percentOfValid(Of of, int column, int row) {
    const int lastColumn = cols_ - 1, lastRow = rows_ - 1;
    const bool ofRow = of != Of::Column, ofColumn = of != Of::Row;
    if ((ofRow && column == lastColumn - 1) || (ofColumn && row == lastRow - 1))
        return {};
    if ((ofRow && columnMarked(column)) || (ofColumn && rowMarked(row)))
        return {};
    const double base = number(of == Of::Column ? column : lastColumn, of == Of::Row ? row : lastRow);
    return base != 0 && filled(column, row) ? quotient(column, row, base) : QString();
}

/// @throws dao::Error 11 without a base, 6 beyond the range of numbers
QString CrosstabPercent::quotient(int column, int row, double base) {
    if (base == 0)
        dao::raiseRuntimeError(11);
    const double percent = number(column, row) * 100.0 / base;
    if (!std::isfinite(percent))
        dao::raiseRuntimeError(6);
    auto text = formatted_.constFind(percent);
    if (text == formatted_.constEnd())
        text = formatted_.insert(percent, NumberFormat::fixed(percent, 1));
    return *text;
}

QString CrosstabPercent::withSignAndSeparator(QString text) const {
    if (options_.ShowPercentSign && !text.isEmpty())
        text += u'%';
    return options_.CommaInPercent ? text : exchangedSeparators(text);
}

/// The percentage with the number of cases beside it: for each combination, and for the valid sums where the
/// percentages rest on them.
QString CrosstabPercent::withN(const QString& percent, int column, int row) const {
    const bool valid = !options_.IncludeMissingInPercentXTab;
    const bool columnTakesN = column < cols_ - 2 || (valid && column == cols_ - 1);
    const bool rowTakesN = row < rows_ - 2 || (valid && row == rows_ - 1);
    if (!options_.IncludeNinXTabPercent || !columnTakesN || !rowTakesN || !filled(column, row))
        return percent;
    const QString& n = absolute_.Cell(column, row);
    if (!options_.IncludeNinXTabPercentNFirst)
        return percent + u" ("_s + n + u")"_s;
    return percent.isEmpty() ? n : n + u" ("_s + percent + u")"_s;
}

/// The number of a sum, in the row or column beside that of its percentage.
void CrosstabPercent::writeN(ResultTable& table, int column, int row) const {
    if (!filled(column, row))
        return;
    const auto offset = [this](int index, int count) {
        if (index == count - 1)
            return 2;
        return index == count - 2 && options_.IncludeMissingInPercentXTab ? 1 : 0;
    };
    const int right = offset(column, cols_), down = offset(row, rows_);
    if (right == 0 && down == 0)
        return;
    const QString& n = absolute_.Cell(column, row);
    table.setCell(column + right, row + down, options_.IncludeNinXTabPercentNFirst ? n : u"("_s + n + u")"_s);
}
