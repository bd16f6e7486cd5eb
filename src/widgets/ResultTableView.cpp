#include "widgets/ResultTableView.h"

#include "tables/Marks.h"
#include "tables/tableText.h"
#include "widgets/toolTips.h"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionHeader>
#include <algorithm>
#include <numeric>

namespace {

constexpr int twipsPerInch = 1440;
/// Characters that a heading gets above narrower figures, that a label gets, and that a fixed column keeps at the
/// least.
constexpr int mostOfHeading = 20, mostOfLabel = 40, leastOfFixed = 6;

/// Room for a cell's text beside its margins.
int cellMargin(const QWidget& widget) {
    return widget.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &widget) + 3;
}

Qt::Alignment alignmentOf(const ResultTable& table, int column, int row) {
    int alignment = table.CellAlignment(column, row);
    if (alignment == 0)
        alignment = table.ColAlignment(column);
    if (alignment == ResultTable::LeftCenter)
        return Qt::AlignLeft | Qt::AlignVCenter;
    if (alignment == ResultTable::RightTop)
        return Qt::AlignRight | Qt::AlignVCenter;
    return (isFigure(table.Cell(column, row)) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

} // namespace

/// The cells beside the fixed rows and columns.
class ResultTableModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    ResultTable table;

    int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : std::max(0, table.Rows() - table.FixedRows);
    }
    int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : std::max(0, table.Cols() - table.FixedCols);
    }
    QVariant data(const QModelIndex& index, int role) const override {
        const int column = index.column() + table.FixedCols;
        const int row = index.row() + table.FixedRows;
        switch (role) {
        case Qt::DisplayRole:
        case Qt::AccessibleTextRole:
            return table.Cell(column, row);
        case Qt::ToolTipRole:
            return plainToolTip(table.Cell(column, row));
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
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
            return {};
        QStringList cells;
        if (orientation == Qt::Horizontal)
            for (int row = 0; row < table.FixedRows; ++row)
                cells << table.Cell(section + table.FixedCols, row);
        else
            for (int column = 0; column < table.FixedCols; ++column)
                cells << table.Cell(column, section + table.FixedRows);
        return role == Qt::ToolTipRole ? plainToolTip(cells.join(u'\n')) : cells.join(u'\n');
    }
    QFont markedFont;
    QBrush markedBrush;
    bool isMarked(int column, int row) const {
        return (row < static_cast<int>(rows_.size()) && rows_[static_cast<size_t>(row)]) ||
               (column < static_cast<int>(columns_.size()) && columns_[static_cast<size_t>(column)]);
    }

    void replace(const ResultTable& other) {
        beginResetModel();
        take(other);
        endResetModel();
    }
    void update(const ResultTable& other) {
        take(other);
        if (rowCount() > 0 && columnCount() > 0)
            Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
    }

private:
    std::vector<bool> rows_, columns_; ///< marked

    void take(const ResultTable& other) {
        table = other;
        rows_.clear();
        columns_.clear();
        for (int row = 0; row < table.Rows(); ++row)
            rows_.push_back(isMarkedRow(table, row));
        for (int column = 0; column < table.Cols(); ++column)
            columns_.push_back(isMarkedColumn(table, column));
    }
};

namespace {

/// One fixed cell, as a heading.
void paintHeading(QPainter* painter, const QRect& rect, const QWidget& widget, const ResultTableModel& model,
                  int column, int row, QStyle::State state) {
    const ResultTable& table = model.table;
    QStyleOptionHeader option;
    option.initFrom(&widget);
    option.rect = rect;
    option.state |= state;
    option.section = 1;
    widget.style()->drawControl(QStyle::CE_HeaderSection, &option, painter, &widget);
    const int margin = cellMargin(widget);
    const QRect inner = rect.adjusted(margin, 0, -margin, 0);
    painter->setFont(model.isMarked(column, row) ? model.markedFont : widget.font());
    const QString text = painter->fontMetrics().elidedText(table.Cell(column, row), Qt::ElideRight, inner.width());
    painter->setPen(widget.palette().color(QPalette::ButtonText));
    painter->drawText(inner, static_cast<int>(alignmentOf(table, column, row)) | Qt::TextSingleLine, text);
}

/// Shows the fixed rows as lines of the heading above, the fixed columns as columns of the heading at the left.
class FixedCells : public QHeaderView {
public:
    FixedCells(Qt::Orientation orientation, const ResultTableModel& model, QWidget* parent)
        : QHeaderView(orientation, parent), model_(model) {
        setSectionsClickable(true);
        setHighlightSections(true);
        setMinimumSectionSize(8);
    }

    /// Widths of the fixed columns, for the heading at the left.
    std::vector<int> widths;
    int lineHeight = 0;

    QSize sizeHint() const override {
        if (orientation() == Qt::Horizontal)
            return {QHeaderView::sizeHint().width(), std::max(1, model_.table.FixedRows) * lineHeight};
        int width = 0;
        for (const int one : widths)
            width += one;
        return {width, QHeaderView::sizeHint().height()};
    }

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override {
        const ResultTable& table = model_.table;
        QStyle::State state = QStyle::State_None;
        if (selectionModel() &&
            (orientation() == Qt::Horizontal ? selectionModel()->columnIntersectsSelection(section, rootIndex())
                                             : selectionModel()->rowIntersectsSelection(section, rootIndex())))
            state |= QStyle::State_On;
        if (orientation() == Qt::Horizontal) {
            for (int row = 0; row < table.FixedRows; ++row)
                paintHeading(painter, {rect.x(), rect.y() + row * lineHeight, rect.width(), lineHeight}, *this, model_,
                             section + table.FixedCols, row, state);
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

private:
    const ResultTableModel& model_;
};

/// The cells that are fixed both ways.
class CornerCells : public QWidget {
public:
    CornerCells(const ResultTableModel& model, const FixedCells& top, const FixedCells& left, QWidget* parent)
        : QWidget(parent), model_(model), top_(top), left_(left) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const ResultTable& table = model_.table;
        int x = 0;
        for (int column = 0; column < static_cast<int>(left_.widths.size()) && column < table.Cols(); ++column) {
            const int width = left_.widths[static_cast<size_t>(column)];
            for (int row = 0; row < table.FixedRows && row < table.Rows(); ++row)
                paintHeading(&painter, {x, row * top_.lineHeight, width, top_.lineHeight}, *this, model_, column, row,
                             QStyle::State_None);
            x += width;
        }
    }

private:
    const ResultTableModel& model_;
    const FixedCells& top_;
    const FixedCells& left_;
};

} // namespace

ResultTableView::ResultTableView(const QString& name, QWidget* parent)
    : QTableView(parent), model_(new ResultTableModel(this)) {
    setObjectName(name);
    auto* top = new FixedCells(Qt::Horizontal, *model_, this);
    auto* left = new FixedCells(Qt::Vertical, *model_, this);
    setHorizontalHeader(top);
    setVerticalHeader(left);
    corner_ = new CornerCells(*model_, *top, *left, this);
    setModel(model_);
    setCornerButtonEnabled(false);
    setSelectionMode(QAbstractItemView::ContiguousSelection);
    setTabKeyNavigation(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setWordWrap(false);
    setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    left->setSectionResizeMode(QHeaderView::Fixed);
    connect(top, &QHeaderView::sectionClicked, this, [this] {
        if (onHeader)
            onHeader();
    });
    connect(left, &QHeaderView::sectionClicked, this, [this](int section) {
        if (onHeader && section + model_->table.FixedRows == markRow_)
            onHeader();
    });
}

const ResultTable& ResultTableView::table() const {
    return model_->table;
}

int ResultTableView::pixels(int twips) const {
    return (twips * logicalDpiX() + twipsPerInch / 2) / twipsPerInch;
}

int ResultTableView::textWidth(const QString& text) const {
    return fontMetrics().horizontalAdvance(text) * twipsPerInch / std::max(1, logicalDpiX());
}

bool ResultTableView::hasShapeOf(const ResultTable& table) const {
    const ResultTable& mine = model_->table;
    if (table.Rows() != mine.Rows() || table.Cols() != mine.Cols() || table.FixedRows != mine.FixedRows ||
        table.FixedCols != mine.FixedCols)
        return false;
    for (int column = 0; column < table.Cols(); ++column)
        if (table.ColWidth(column) != mine.ColWidth(column))
            return false;
    return true;
}

void ResultTableView::updateTable(const ResultTable& table) {
    model_->markedFont = font();
    model_->markedFont.setItalic(true);
    QColor shade = palette().color(QPalette::Text);
    shade.setAlpha(18);
    model_->markedBrush = shade;
    if (hasShapeOf(table)) {
        model_->update(table);
        for (QWidget* fixed : {horizontalHeader()->viewport(), verticalHeader()->viewport(), corner_})
            fixed->update();
        return;
    }
    model_->replace(table);
    layOut();
}

void ResultTableView::layOut() {
    const ResultTable& table = model_->table;
    auto& top = static_cast<FixedCells&>(*horizontalHeader());
    auto& left = static_cast<FixedCells&>(*verticalHeader());
    const int least = fontMetrics().height() + 6;
    top.lineHeight = least + 2;
    fixedWidths_.clear();
    for (int column = 0; column < table.FixedCols && column < table.Cols(); ++column)
        fixedWidths_.push_back(widthOf(column));
    for (int column = table.FixedCols; column < table.Cols(); ++column)
        top.resizeSection(column - table.FixedCols, widthOf(column));
    left.setDefaultSectionSize(std::max(least, table.Rows() > 1 ? pixels(table.RowHeight(1)) : 0));
    top.updateGeometry();
    narrowFixedColumns();
    corner_->update();
}

/// Width of a column in pixels: the table's, but no more than its cells need where its heading or a label is long, and
/// what short labels need where the font is larger than the table's widths are meant for.
int ResultTableView::widthOf(int column) const {
    const ResultTable& table = model_->table;
    if (table.ColWidth(column) <= 0)
        return 0;
    const int margins = 2 * cellMargin(*this);
    const int character = fontMetrics().averageCharWidth();
    const int wanted = pixels(table.ColWidth(column)) + margins;
    const int least = mostOfHeading * character + margins;
    QString longest;
    for (int row = table.FixedRows; row < table.Rows(); ++row)
        if (table.Cell(column, row).size() > longest.size())
            longest = table.Cell(column, row);
    const int needed = fontMetrics().horizontalAdvance(longest);
    if (wanted <= least)
        return std::clamp(needed + margins, wanted, least);
    const int shown = isFigure(longest) ? needed : std::min(needed, mostOfLabel * character);
    return std::min(wanted, std::max(least, shown + margins));
}

/// The fixed columns leave half of the view to the others.
void ResultTableView::narrowFixedColumns() {
    auto& left = static_cast<FixedCells&>(*verticalHeader());
    const int least = leastOfFixed * fontMetrics().averageCharWidth();
    left.widths = fixedWidths_;
    int excess = std::accumulate(left.widths.begin(), left.widths.end(), 0) - width() / 2;
    while (excess > 0) {
        const auto widest = std::ranges::max_element(left.widths);
        const int less = std::min(excess, *widest - least);
        if (less <= 0)
            break;
        *widest -= less;
        excess -= less;
    }
    left.updateGeometry();
    updateGeometries();
}

GridSelection ResultTableView::selection() const {
    const QItemSelection ranges = selectionModel()->selection();
    if (ranges.isEmpty())
        return {-1, -1, -1, -1};
    const QItemSelectionRange& range = ranges.first();
    const QModelIndex end = currentIndex();
    const auto other = [](int low, int high, int current) { return current == low ? high : low; };
    GridSelection selected;
    selected.RowSel = end.row() + model_->table.FixedRows;
    selected.Row = other(range.top(), range.bottom(), end.row()) + model_->table.FixedRows;
    selected.ColSel = end.column() + model_->table.FixedCols;
    selected.Col = other(range.left(), range.right(), end.column()) + model_->table.FixedCols;
    return selected;
}

void ResultTableView::reportMark() {
    const GridSelection selected = selection();
    if (selected.Row < 0 || !onMark)
        return;
    const bool inColumn = selected.Col == markColumn_ && selected.ColSel == markColumn_;
    const bool inRow = selected.Row == markRow_ && selected.RowSel == markRow_;
    if (inColumn || inRow)
        onMark(selected);
}

void ResultTableView::mousePressEvent(QMouseEvent* event) {
    const QModelIndex index = indexAt(event->position().toPoint());
    pressedInMarks_ =
        event->button() == Qt::LeftButton && index.isValid() &&
        (index.column() + model_->table.FixedCols == markColumn_ || index.row() + model_->table.FixedRows == markRow_);
    QTableView::mousePressEvent(event);
}

void ResultTableView::mouseReleaseEvent(QMouseEvent* event) {
    QTableView::mouseReleaseEvent(event);
    if (pressedInMarks_ && event->button() == Qt::LeftButton) {
        pressedInMarks_ = false;
        reportMark();
    }
}

void ResultTableView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Space && (markColumn_ >= 0 || markRow_ >= 0)) {
        reportMark();
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}

/// Who comes by the keyboard sees where the arrow keys start from.
void ResultTableView::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason && !currentIndex().isValid() && model_->rowCount() > 0 &&
        model_->columnCount() > 0)
        setCurrentIndex(model_->index(0, 0));
}

void ResultTableView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    narrowFixedColumns();
}

void ResultTableView::updateGeometries() {
    QTableView::updateGeometries();
    if (!corner_)
        return;
    const QRect top = horizontalHeader()->geometry();
    const QRect left = verticalHeader()->geometry();
    corner_->setGeometry(QRect(QPoint(left.left(), top.top()), QPoint(left.right(), top.bottom())));
    corner_->raise();
}
