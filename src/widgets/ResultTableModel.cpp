#include "widgets/ResultTableModel.h"

#include "app/globals.h"
#include "tables/tableText.h"
#include "widgets/toolTips.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int twoLines = 480; ///< twips

const QString markTip = u"Anklicken oder Leertaste: als fehlend markieren"_s;

} // namespace

Qt::Alignment alignmentOf(const ResultTable& table, int column, int row) {
    int alignment = table.CellAlignment(column, row);
    if (alignment == 0)
        alignment = table.ColAlignment(column);
    if (alignment < 1 || alignment > 8)
        return (isFigure(table.Cell(column, row)) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    // Left, in the middle, right; of each at the top, in the middle, at the bottom. Where there is one line only, all
    // stand on it.
    constexpr Qt::AlignmentFlag across[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    constexpr Qt::AlignmentFlag down[] = {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};
    return across[alignment / 3] | (table.RowHeight(row) < twoLines ? Qt::AlignVCenter : down[alignment % 3]);
}

int ResultTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(0, table.Rows() - table.FixedRows);
}

int ResultTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : std::max(0, table.Cols() - table.FixedCols);
}

QVariant ResultTableModel::data(const QModelIndex& index, int role) const {
    const int column = index.column() + table.FixedCols;
    const int row = index.row() + table.FixedRows;
    switch (role) {
    case Qt::DisplayRole:
        // The word "Missing" between the axes of a crosstab names nothing while there are no marks.
        if (narrowMarks && column == markColumn && row == markRow && table.Tag == TableKind::Crosstab)
            return QString();
        return table.Cell(column, row);
    case Qt::AccessibleTextRole:
        return table.Cell(column, row);
    case Qt::ToolTipRole:
        return plainToolTip(isMarkPlace(column, row) ? TranslateText(markTip) : table.Cell(column, row));
    case Qt::FontRole:
        return isMarked(column, row) ? QVariant(markedFont) : QVariant();
    case Qt::BackgroundRole:
        return isMarked(column, row) ? QVariant(markedBrush) : QVariant();
    case Qt::TextAlignmentRole:
        return QVariant(alignmentOf(table, column, row));
    default:
        return {};
    }
}

QVariant ResultTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    QStringList cells;
    const auto add = [&](int column, int row) {
        const bool shorter = role == Qt::DisplayRole && !(narrowMarks && column == markColumn);
        cells << (shorter ? headText(column, row) : table.shownCell(column, row));
    };
    if (orientation == Qt::Horizontal)
        for (int row = 0; row < table.FixedRows; ++row)
            add(section + table.FixedCols, row);
    else
        for (int column = 0; column < table.FixedCols; ++column)
            add(column, section + table.FixedRows);
    if (role != Qt::ToolTipRole)
        return cells.join(u'\n');
    const bool marks = orientation == Qt::Horizontal
                           ? isMarkPlace(section + table.FixedCols, table.shape.rows.first)
                           : isMarkPlace(table.shape.columns.first, section + table.FixedRows);
    cells.removeAll(QString());
    if (marks)
        cells << TranslateText(markTip);
    return plainToolTip(cells.join(u'\n'));
}

/// An empty place that a person would not take for one to click at.
bool ResultTableModel::isMarkPlace(int column, int row) const {
    return (narrowMarks && column == markColumn && table.shape.rows.contains(row)) ||
           (lowMarks && row == markRow && table.shape.columns.contains(column));
}

QString ResultTableModel::headText(int column, int row) const {
    const QString text = table.shownCell(column, row);
    if (narrowMarks && column == markColumn && !text.isEmpty())
        return u"X"_s;
    const bool head = row == 0 && column < static_cast<int>(table.shortHeads.size());
    const QString shorter = head ? table.shortHeads[static_cast<size_t>(column)] : QString();
    return shorter.isEmpty() ? text : shorter;
}

bool ResultTableModel::isMarked(int column, int row) const {
    return (row < static_cast<int>(rows_.size()) && rows_[static_cast<size_t>(row)]) ||
           (column < static_cast<int>(columns_.size()) && columns_[static_cast<size_t>(column)]);
}

void ResultTableModel::replace(const ResultTable& other) {
    beginResetModel();
    take(other);
    endResetModel();
}

void ResultTableModel::update(const ResultTable& other) {
    take(other);
    if (rowCount() > 0 && columnCount() > 0)
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void ResultTableModel::take(const ResultTable& other) {
    table = other;
    rows_.clear();
    columns_.clear();
    for (int row = 0; row < table.Rows(); ++row)
        rows_.push_back(isMarkedRow(table, row));
    for (const RowGroup& group : table.groups)
        rows_[static_cast<size_t>(group.row)] = group.missing;
    for (int column = 0; column < table.Cols(); ++column)
        columns_.push_back(isMarkedColumn(table, column));
}
