#include "widgets/TableHeads.h"

#include "widgets/ResultTableModel.h"
#include "widgets/tableRoom.h"

#include <QPainter>
#include <QStyleOptionHeader>
#include <algorithm>
#include <numeric>

namespace {

constexpr int headPadding = 8;

/// One fixed cell, as a heading.
void paintHeading(QPainter* painter, const QRect& rect, const QWidget& widget, const ResultTableModel& model,
                  int column, int row, QStyle::State state) {
    if (rect.width() <= 0)
        return;
    QStyleOptionHeader option;
    option.initFrom(&widget);
    option.rect = rect;
    option.state |= state;
    option.section = 1;
    widget.style()->drawControl(QStyle::CE_HeaderSection, &option, painter, &widget);
    const int margin = cellMargin(widget);
    const QRect inner = rect.adjusted(margin, 0, -margin, 0);
    painter->setFont(model.isMarked(column, row) ? model.markedFont : widget.font());
    const int lines = row < model.table.FixedRows ? mostHeadLines : 1;
    const QString text = headLines(model.headText(column, row), painter->font(), inner.width(), lines).join(u'\n');
    painter->setPen(widget.palette().color(QPalette::ButtonText));
    painter->drawText(inner, static_cast<int>(alignmentOf(model.table, column, row)), text);
}

} // namespace

int cellMargin(const QWidget& widget) {
    return widget.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &widget) + 3;
}

FixedCells::FixedCells(Qt::Orientation orientation, const ResultTableModel& model, QWidget* parent)
    : QHeaderView(orientation, parent), model_(model) {
    setSectionsClickable(true);
    setHighlightSections(true);
    setMinimumSectionSize(8);
}

QSize FixedCells::sizeHint() const {
    if (orientation() == Qt::Horizontal)
        return {QHeaderView::sizeHint().width(),
                std::max(fontMetrics().height() + headPadding, std::accumulate(heights.begin(), heights.end(), 0))};
    return {std::accumulate(widths.begin(), widths.end(), 0), QHeaderView::sizeHint().height()};
}

void FixedCells::fitHeights(const std::vector<int>& corner) {
    const ResultTable& table = model_.table;
    const int margins = 2 * cellMargin(*this);
    heights.assign(static_cast<size_t>(std::max(0, table.FixedRows)), 0);
    for (int row = 0; row < table.FixedRows; ++row) {
        qsizetype lines = 1;
        for (int column = 0; column < table.Cols(); ++column) {
            const bool fixed = column < table.FixedCols;
            const int width = fixed ? corner[static_cast<size_t>(column)] : sectionSize(column - table.FixedCols);
            if (width > margins)
                lines = std::max(lines, headLines(model_.headText(column, row), font(), width - margins).size());
        }
        heights[static_cast<size_t>(row)] =
            fontMetrics().height() + headPadding + static_cast<int>(lines - 1) * fontMetrics().lineSpacing();
    }
}

void FixedCells::paintSection(QPainter* painter, const QRect& rect, int section) const {
    const ResultTable& table = model_.table;
    QStyle::State state = QStyle::State_None;
    if (selectionModel() &&
        (orientation() == Qt::Horizontal ? selectionModel()->columnIntersectsSelection(section, rootIndex())
                                         : selectionModel()->rowIntersectsSelection(section, rootIndex())))
        state |= QStyle::State_On;
    if (orientation() == Qt::Horizontal) {
        int y = rect.y();
        for (int row = 0; row < table.FixedRows && row < static_cast<int>(heights.size()); ++row) {
            const int height = heights[static_cast<size_t>(row)];
            paintHeading(painter, {rect.x(), y, rect.width(), height}, *this, model_, section + table.FixedCols, row,
                         state);
            y += height;
        }
        return;
    }
    int x = rect.x();
    for (int column = 0; column < table.FixedCols && column < static_cast<int>(widths.size()); ++column) {
        const int width = widths[static_cast<size_t>(column)];
        paintHeading(painter, {x, rect.y(), width, rect.height()}, *this, model_, column, section + table.FixedRows,
                     state);
        x += width;
    }
}

void CornerCells::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const ResultTable& table = model_.table;
    int x = 0;
    for (int column = 0; column < static_cast<int>(left_.widths.size()) && column < table.Cols(); ++column) {
        const int width = left_.widths[static_cast<size_t>(column)];
        int y = 0;
        for (int row = 0; row < table.Rows() && row < static_cast<int>(top_.heights.size()); ++row) {
            const int height = top_.heights[static_cast<size_t>(row)];
            paintHeading(&painter, {x, y, width, height}, *this, model_, column, row, QStyle::State_None);
            y += height;
        }
        x += width;
    }
}
