#include "widgets/ResultTableView.h"

#include "tables/Marks.h"
#include "tables/TableBuilder.h"
#include "tables/tableText.h"
#include "widgets/ResultTableModel.h"
#include "widgets/TableHeads.h"
#include "widgets/tableRoom.h"
#include "widgets/twips.h"

#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <functional>
#include <numeric>

namespace {

constexpr int twipsPerInch = 1440;
constexpr int leastPadding = 6; ///< of a row, above and below its line
/// Characters that a heading gets above narrower figures, that a label gets, and that a fixed column keeps at the
/// least; where there is room each gets what it needs.
constexpr int mostOfHeading = 20, mostOfLabel = 40, leastOfFixed = 6;

int total(const std::vector<int>& widths) {
    return std::accumulate(widths.begin(), widths.end(), 0);
}

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
    connect(top, &QHeaderView::sectionResized, this, [this](int section, int, int size) {
        if (!layingOut_ && size > 0)
            columnDragged(section + model_->table.FixedCols, size);
    });
    connect(left, &QHeaderView::sectionResized, this, [this](int section, int, int size) {
        if (!layingOut_ && size > 0)
            rowDragged(section + model_->table.FixedRows, size);
    });
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

/// A width that the user gives a column belongs to the table.
void ResultTableView::columnDragged(int column, int size) {
    columns_[static_cast<size_t>(column)] = {size, size, size};
    const int twips = pixelsToTwips(*this, size);
    model_->table.giveColWidth(column, twips);
    if (onColumnWidth)
        onColumnWidth(column, twips);
}

void ResultTableView::rowDragged(int row, int size) {
    const int twips = pixelsToTwips(*this, size);
    model_->table.setRowHeight(row, twips);
    if (onRowHeight)
        onRowHeight(row, twips);
}

bool ResultTableView::hasShapeOf(const ResultTable& table) const {
    const ResultTable& mine = model_->table;
    if (table.Rows() != mine.Rows() || table.Cols() != mine.Cols() || table.FixedRows != mine.FixedRows ||
        table.FixedCols != mine.FixedCols || table.percentOf != mine.percentOf || laidOutMarks_ != markColumn_ ||
        laidOutFont_ != font())
        return false;
    for (int column = 0; column < table.Cols(); ++column)
        if (table.ColWidth(column) != mine.ColWidth(column) ||
            table.hasGivenWidth(column) != mine.hasGivenWidth(column))
            return false;
    for (int row = 0; row < table.Rows(); ++row)
        if (table.RowHeight(row) != mine.RowHeight(row))
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
    const IdleSections idle = idleSections(table, markColumn_, markRow_);
    model_->narrowMarks = idle.narrowMarks;
    model_->lowMarks = idle.lowMarks;
    model_->replace(table);
    laidOutMarks_ = markColumn_;
    laidOutFont_ = font();
    measure(idle);
    layOut();
}

/// What each row and column wants: measured once a table, shared out at each size of the window.
void ResultTableView::measure(const IdleSections& idle) {
    const ResultTable& table = model_->table;
    const QScopedValueRollback<bool> own(layingOut_, true);
    const int narrow = fontMetrics().horizontalAdvance(u'X') + 2 * cellMargin(*this);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + leastPadding);
    columns_.assign(static_cast<size_t>(table.Cols()), {});
    for (int column = 0; column < table.Cols(); ++column) {
        Wants& wants = columns_[static_cast<size_t>(column)];
        const bool hidden = idle.columns[static_cast<size_t>(column)];
        if (column >= table.FixedCols)
            horizontalHeader()->setSectionHidden(column - table.FixedCols, hidden);
        if (idle.narrowMarks && column == markColumn)
            wants = {narrow, narrow};
        else if (!hidden)
            wants = wantsOf(column);
    }
    for (int row = table.FixedRows; row < table.Rows(); ++row) {
        // What was hidden in the table before is so still.
        verticalHeader()->setSectionHidden(row - table.FixedRows, idle.rows[static_cast<size_t>(row)]);
        if (!idle.rows[static_cast<size_t>(row)])
            measureRow(row, idle.lowMarks && row == markRow);
    }
}

/// A line at the least, whatever height was given for another font.
void ResultTableView::measureRow(int row, bool low) {
    QHeaderView& left = *verticalHeader();
    const int wanted =
        low ? fontMetrics().height() : std::max(left.defaultSectionSize(), pixels(model_->table.RowHeight(row)));
    if (const int section = row - model_->table.FixedRows; left.sectionSize(section) != wanted)
        left.resizeSection(section, wanted);
}

/// Heads of another height may bring the scroll bar or take it away, and its room with it.
void ResultTableView::layOut() {
    if (layingOut_ || columns_.size() != static_cast<size_t>(model_->table.Cols()))
        return;
    const QScopedValueRollback<bool> own(layingOut_, true);
    const bool bar = verticalScrollBar()->isVisible();
    shareRoom();
    if (verticalScrollBar()->isVisible() != bar)
        shareRoom();
}

/// The columns get what they want as far as there is room; the fixed ones leave at least half of it to the others.
void ResultTableView::shareRoom() {
    auto& top = static_cast<FixedCells&>(*horizontalHeader());
    auto& left = static_cast<FixedCells&>(*verticalHeader());
    const size_t fixed = static_cast<size_t>(std::max(0, std::min(model_->table.FixedCols, model_->table.Cols())));
    const int bar = verticalScrollBar()->isVisible() ? verticalScrollBar()->width() : 0;
    const int room = std::max(0, width() - 2 * frameWidth() - bar);
    std::vector<int> widths, lacking;
    for (size_t column = 0; column < columns_.size(); ++column) {
        widths.push_back(columns_[column].least);
        lacking.push_back(columns_[column].whole - widths.back());
    }
    const int others = std::accumulate(widths.begin() + static_cast<std::ptrdiff_t>(fixed), widths.end(), 0);
    left.widths.assign(widths.begin(), widths.begin() + static_cast<std::ptrdiff_t>(fixed));
    narrowFixedColumns(std::max(width() / 2, room - others));
    std::copy(left.widths.begin(), left.widths.end(), widths.begin());
    std::fill(lacking.begin(), lacking.begin() + static_cast<std::ptrdiff_t>(fixed), 0);
    const std::vector<int> shares = shareOut(room - total(widths), lacking);
    std::ranges::transform(widths, shares, widths.begin(), std::plus());
    // What is left over spares the headings their further lines, if it is enough for all.
    std::vector<int> longer(widths.size());
    for (size_t column = fixed; column < columns_.size(); ++column)
        if (!model_->table.hasGivenWidth(static_cast<int>(column)))
            longer[column] = std::max(0, columns_[column].line - widths[column]);
    if (total(longer) <= room - total(widths))
        std::ranges::transform(widths, longer, widths.begin(), std::plus());
    for (size_t column = fixed; column < columns_.size(); ++column)
        if (const int section = static_cast<int>(column - fixed); !top.isSectionHidden(section))
            top.resizeSection(section, widths[column]);
    top.fitHeights(left.widths);
    for (QHeaderView* header : {static_cast<QHeaderView*>(&top), static_cast<QHeaderView*>(&left)}) {
        header->updateGeometry();
        header->viewport()->update();
    }
    updateGeometries();
    corner_->update();
}

/// The least is the table's width, but no more than the cells need where a heading or a label is long, and what short
/// labels need where the font is larger than the table's widths are meant for. The whole shows every text in full, a
/// heading in its lines.
ResultTableView::Wants ResultTableView::wantsOf(int column) const {
    const ResultTable& table = model_->table;
    if (table.ColWidth(column) <= 0)
        return {};
    const int margins = 2 * cellMargin(*this);
    const int character = fontMetrics().averageCharWidth();
    const int wanted = pixels(table.ColWidth(column)) + margins;
    const int atLeast = mostOfHeading * character + margins;
    QString longest;
    for (int row = table.FixedRows; row < table.Rows(); ++row)
        if (const QString text = table.shownCell(column, row); text.size() > longest.size())
            longest = text;
    const int needed = widestText(column, longest);
    int whole = needed, line = 0;
    for (int row = 0; row < table.FixedRows; ++row) {
        whole = std::max(whole, widthOfHead(model_->headText(column, row), font()));
        line = std::max(line, widthOfHead(model_->headText(column, row), font(), 1));
    }
    whole += margins;
    line = std::min(line, mostOfLabel * character) + margins;
    if (table.hasGivenWidth(column)) {
        const int kept = givenWidth(column, longest, needed);
        if (!widthsAreLeast_)
            return {kept, kept, kept};
        int words = kept;
        for (int row = 0; row < table.FixedRows; ++row)
            words = std::max(words, widthOfHead(model_->headText(column, row), font(), mostOfHeading) + margins);
        const int least = std::max(kept, std::min(words, mostOfLabel * character));
        return {least, std::max(least, whole), std::max(least, line)};
    }
    if (column < table.FixedCols)
        return {std::max(std::min(wanted, whole), needed + margins), whole, line};
    if (wanted <= atLeast)
        return {std::clamp(needed + margins, wanted, atLeast), whole, line};
    const int shown = isFigure(longest) ? needed : std::min(needed, mostOfLabel * character);
    // A heading that fits needs no more than it takes.
    return {std::min({wanted, whole, std::max(atLeast, shown + margins)}), whole, line};
}

/// Pixels of the widest text below the headings. Among so many texts that are nearly as long as the longest one is
/// sought that a table of ten thousand rows is measured quickly.
int ResultTableView::widestText(int column, const QString& longest) const {
    constexpr int mostMeasured = 100;
    const ResultTable& table = model_->table;
    int widest = fontMetrics().horizontalAdvance(longest);
    int measured = 0;
    for (int row = table.FixedRows; row < table.Rows() && measured < mostMeasured; ++row)
        if (const QString text = table.shownCell(column, row); 4 * text.size() > 3 * longest.size()) {
            widest = std::max(widest, fontMetrics().horizontalAdvance(text));
            ++measured;
        }
    return widest;
}

/// What a column had room for in a face of eight points it has room for in this one; what it cut it may cut, but for
/// figures.
int ResultTableView::givenWidth(int column, const QString& longest, int needed) const {
    const ResultTable& table = model_->table;
    const int margins = 2 * cellMargin(*this);
    int width = pixels(table.ColWidth(column));
    const auto held = [&](qsizetype characters) {
        return table.ColWidth(column) >= estimatedTextWidth(QString(characters, u'x'));
    };
    if (isFigure(longest) || held(longest.size()))
        width = std::max(width, needed + margins);
    for (int row = 0; row < table.FixedRows; ++row) {
        const QString head = model_->headText(column, row);
        qsizetype line = head.size() / mostHeadLines;
        for (const QString& word : head.split(u' '))
            line = std::max(line, word.size());
        if (held(line))
            width = std::max(width, widthOfHead(head, font()) + margins);
    }
    return width;
}

/// Takes from the widest until all of them have room: what parts no word of a heading first, and only then more.
void ResultTableView::narrowFixedColumns(int room) {
    auto& left = static_cast<FixedCells&>(*verticalHeader());
    const int least = leastOfFixed * fontMetrics().averageCharWidth();
    std::vector<int> words(left.widths.size(), least);
    for (size_t column = 0; column < words.size(); ++column)
        for (int row = 0; row < model_->table.FixedRows; ++row)
            words[column] = std::max(
                words[column], widthOfHead(model_->headText(static_cast<int>(column), row), font(), mostOfHeading) +
                                   2 * cellMargin(*this));
    for (const std::vector<int>& floors : {words, std::vector<int>(words.size(), least)}) {
        std::vector<int> spare(words.size());
        for (int excess = total(left.widths) - room; excess > 0;) {
            std::ranges::transform(left.widths, floors, spare.begin(), std::minus());
            const auto most = std::ranges::max_element(spare);
            const int less = most == spare.end() ? 0 : std::min(excess, *most);
            if (less <= 0)
                break;
            left.widths[static_cast<size_t>(most - spare.begin())] -= less;
            excess -= less;
        }
    }
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

namespace {

int firstShown(const QHeaderView& header) {
    for (int section = 0; section < header.count(); ++section)
        if (!header.isSectionHidden(section))
            return section;
    return -1;
}

} // namespace

/// Who comes by the keyboard sees where the arrow keys start from.
void ResultTableView::focusInEvent(QFocusEvent* event) {
    QTableView::focusInEvent(event);
    if (event->reason() == Qt::MouseFocusReason || currentIndex().isValid())
        return;
    const int row = firstShown(*verticalHeader()), column = firstShown(*horizontalHeader());
    if (row >= 0 && column >= 0)
        setCurrentIndex(model_->index(row, column));
}

void ResultTableView::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    layOut();
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
