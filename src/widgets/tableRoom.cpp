#include "widgets/tableRoom.h"

#include <QFontMetrics>
#include <QTextLayout>
#include <algorithm>
#include <numeric>

namespace {

bool isEmpty(const ResultTable& table, int firstColumn, int lastColumn, int firstRow, int lastRow) {
    for (int row = firstRow; row <= lastRow; ++row)
        for (int column = firstColumn; column <= lastColumn; ++column)
            if (!table.Cell(column, row).isEmpty())
                return false;
    return true;
}

bool anyMark(const ResultTable& table, bool inColumn) {
    const Span span = inColumn ? table.shape.rows : table.shape.columns;
    for (int i = span.first; i <= span.last; ++i)
        if (isMark(inColumn ? table.Cell(markColumn, i) : table.Cell(i, markRow)))
            return true;
    return false;
}

/// Beyond the values of a table of percentages only what has a percentage says something.
void hideEmptySums(const ResultTable& table, IdleSections& idle) {
    const int firstRow = table.shape.rows.first, firstColumn = table.shape.columns.first;
    const int lastRow = table.Rows() - 1, lastColumn = table.Cols() - 1;
    for (int row = table.shape.rows.last + 1; row <= lastRow; ++row)
        if (isEmpty(table, firstColumn, lastColumn, row, row))
            idle.rows[static_cast<size_t>(row)] = true;
    for (int column = table.shape.columns.last + 1; column <= lastColumn; ++column)
        if (isEmpty(table, column, column, firstRow, lastRow))
            idle.columns[static_cast<size_t>(column)] = true;
}

} // namespace

IdleSections idleSections(const ResultTable& table, int columnOfMarks, int rowOfMarks) {
    const int rows = table.Rows(), columns = table.Cols();
    IdleSections idle{.rows = std::vector<bool>(static_cast<size_t>(rows)),
                      .columns = std::vector<bool>(static_cast<size_t>(columns))};
    if (table.Tag == TableKind::None || table.shape.rows.count() == 0)
        return idle;
    if (table.percentOf != PercentOf::None)
        hideEmptySums(table, idle);
    // The spare row of a comparison, the first column of statistics; a blank row between others parts them.
    for (int row = rows - 1; row > table.shape.rows.last && isEmpty(table, 0, columns - 1, row, row); --row)
        idle.rows[static_cast<size_t>(row)] = true;
    for (int column = 0; column < table.FixedCols; ++column)
        if (isEmpty(table, column, column, 0, rows - 1))
            idle.columns[static_cast<size_t>(column)] = true;
    if (table.Tag == TableKind::Descriptives || columns <= markColumn || anyMark(table, true)) {
        // a column that says something, or none
    } else if (columnOfMarks == markColumn) {
        idle.narrowMarks = true;
    } else {
        idle.columns[markColumn] = true;
    }
    if (table.Tag != TableKind::Crosstab || rows <= markRow || anyMark(table, false))
        return idle;
    if (rowOfMarks == markRow)
        idle.lowMarks = true;
    else
        idle.rows[markRow] = true;
    return idle;
}

namespace {

/// The text in lines of a width, as many as it takes. Widths are rounded up: a line must not lose its last letter.
QStringList wrapped(const QString& text, const QFont& font, int width) {
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(std::max(1, width));
        lines << text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();
    return lines;
}

} // namespace

QStringList headLines(const QString& text, const QFont& font, int width, int most) {
    const QString plain = text.simplified();
    const QFontMetrics metrics(font);
    if (plain.isEmpty() || metrics.horizontalAdvance(plain) <= width)
        return {plain};
    QStringList lines = wrapped(plain, font, width);
    if (lines.size() <= most)
        return lines;
    const QString rest = lines.mid(most - 1).join(u' ');
    lines.resize(most - 1);
    return lines << metrics.elidedText(rest, Qt::ElideRight, width);
}

int widthOfHead(const QString& text, const QFont& font, int most) {
    const QString plain = text.simplified();
    const QFontMetrics metrics(font);
    const int whole = metrics.horizontalAdvance(plain) + 1;
    int width = whole / most;
    for (const QString& word : plain.split(u' '))
        width = std::max(width, metrics.horizontalAdvance(word) + 1);
    while (width < whole && wrapped(plain, font, width).size() > most)
        width += std::max(1, metrics.averageCharWidth());
    return std::min(width, whole);
}

std::vector<int> shareOut(int room, const std::vector<int>& wants) {
    std::vector<size_t> order(wants.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::sort(order, {}, [&](size_t i) { return wants[i]; });
    std::vector<int> shares(wants.size());
    int left = std::max(0, room), asking = static_cast<int>(wants.size());
    for (const size_t i : order) {
        shares[i] = std::clamp(wants[i], 0, left / asking--);
        left -= shares[i];
    }
    return shares;
}
