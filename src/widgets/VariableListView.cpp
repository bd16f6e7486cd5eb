#include "widgets/VariableListView.h"

#include "explorer/iconNames.h"
#include "widgets/Icons.h"
#include "widgets/emptyList.h"
#include "widgets/rowList.h"
#include "widgets/toolTips.h"
#include "widgets/twips.h"

#include <QEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// Widths of letters by themselves, each asked for once.
class LetterWidths {
public:
    explicit LetterWidths(const QFontMetrics& metrics) : metrics_(metrics) {}

    int sum(QStringView text) {
        int all = 0;
        for (const QChar letter : text) {
            if (letter.unicode() >= known_.size()) {
                all += metrics_.horizontalAdvance(letter);
                continue;
            }
            int& width = known_[letter.unicode()];
            if (width == 0)
                width = metrics_.horizontalAdvance(letter);
            all += width;
        }
        return all;
    }

private:
    const QFontMetrics& metrics_;
    std::array<int, 256> known_{};
};

} // namespace

VariableListModel::VariableListModel(const VariableList& list, QObject* parent)
    : QAbstractTableModel(parent), list_(list), icon_(Icons::get(iconName(VariableRow::smallIcon))) {}

void VariableListModel::listChanged() {
    beginResetModel();
    endResetModel();
}

void VariableListModel::headingsChanged() {
    if (columnCount() > 0)
        Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

int VariableListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(list_.shown.size());
}

int VariableListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(list_.columns.size());
}

QVariant VariableListModel::data(const QModelIndex& index, int role) const {
    const auto place = static_cast<size_t>(index.row());
    if (!index.isValid() || place >= list_.shown.size())
        return {};
    if (role == Qt::DisplayRole)
        return list_.rows[static_cast<size_t>(list_.shown[place])].cell(index.column());
    if (role == Qt::ToolTipRole)
        return plainToolTip(list_.rows[static_cast<size_t>(list_.shown[place])].cell(index.column()));
    if (role == Qt::DecorationRole && index.column() == 0)
        return icon_;
    return {};
}

QVariant VariableListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    const QString& heading = list_.columns[static_cast<size_t>(section)].Heading;
    if (role == Qt::DisplayRole)
        return heading;
    if (role == Qt::ToolTipRole)
        return asToolTip(heading + u" (%1)"_s.arg(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + section))
                                                      .toString(QKeySequence::NativeText)));
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

VariableListView::VariableListView(VariableList& list, QWidget* parent)
    : QTableView(parent), list_(list), model_(list) {
    setModel(&model_);
    showAsRows(*this);
    setHorizontalScrollMode(ScrollPerPixel);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setTextElideMode(Qt::ElideRight);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setSortIndicatorShown(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) {
        if (headerChosen)
            headerChosen(column);
    });
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        // The width that the last one fills is not its own.
        const bool fills = column + 1 == model_.columnCount() && horizontalHeader()->length() <= viewport()->width();
        if (settingWidths_ || fills || width <= 0)
            return;
        ListColumn& set = list_.columns[static_cast<size_t>(column)];
        set.Width = pixelsToTwips(*this, qRound((width - iconRoom(column)) / fontScale()));
        set.widthBy = ListColumn::By::User;
    });
    fitRowHeight(*this);
}

void VariableListView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        fitRowHeight(*this);
        fitColumns();
    }
}

/// A row that one looks at stays in view when the room gets less.
void VariableListView::resizeEvent(QResizeEvent* event) {
    const QModelIndex row = model_.index(currentPlace() >= 0 ? currentPlace() : firstSelectedPlace(), 0);
    const QRect before = visualRect(row);
    const bool inView = row.isValid() && before.top() >= 0 && before.bottom() < event->oldSize().height();
    {
        const QScopedValueRollback setting(settingWidths_, true);
        QTableView::resizeEvent(event);
        setWidths();
    }
    if (!inView)
        return;
    const int across = horizontalScrollBar()->value();
    scrollTo(row);
    horizontalScrollBar()->setValue(across);
}

void VariableListView::listChanged() {
    const QScopedValueRollback setting(settingWidths_, true);
    model_.listChanged();
    scrollToTop();
}

void VariableListView::showColumns() {
    const QScopedValueRollback setting(settingWidths_, true);
    horizontalHeader()->setSortIndicator(list_.sorted ? list_.sortKey : -1,
                                         list_.descending ? Qt::DescendingOrder : Qt::AscendingOrder);
    // Under nothing there is nothing to scroll to.
    setHorizontalScrollBarPolicy(list_.rows.empty() ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
    setWidths();
}

int VariableListView::widthOf(int column) const {
    const auto place = static_cast<size_t>(column);
    const ListColumn& one = list_.columns[place];
    if (one.widthBy == ListColumn::By::Nobody && place < needs_.size())
        return needs_[place].width;
    return qMax(qRound(twipsToPixels(*this, one.Width) * fontScale()) + iconRoom(column),
                horizontalHeader()->sectionSizeHint(column));
}

void VariableListView::fitColumns() {
    if (!list_.rows.empty()) {
        needs_.clear();
        for (int column = 0; column < model_.columnCount(); ++column)
            needs_.push_back(needOf(column));
    }
    showColumns();
}

/// Only texts about as long as the longest count, and of those not all: a list may have many thousands. Which of them
/// is the widest its letters tell one by one; it alone is measured as it is drawn, which costs a hundred times as much.
VariableListView::Need VariableListView::needOf(int column) const {
    constexpr int mostCompared = 1000;
    constexpr int mostCharacters = 60;
    qsizetype longest = 0;
    for (const VariableRow& row : list_.rows)
        longest = std::max(longest, row.cell(column).size());
    const QFontMetrics metrics = fontMetrics();
    const int letter = metrics.averageCharWidth();
    if (longest == 0)
        return {letter * 4, true};
    LetterWidths letters(metrics);
    const QString* widest = nullptr;
    int most = -1, compared = 0;
    for (size_t i = 0; i < list_.rows.size() && compared < mostCompared; ++i)
        if (const QString& text = list_.rows[i].cell(column); text.size() * 10 >= longest * 9) {
            ++compared;
            if (const int width = letters.sum(QStringView(text).left(mostCharacters * 2)); width > most) {
                most = width;
                widest = &text;
            }
        }
    const int advance = widest ? metrics.horizontalAdvance(widest->left(mostCharacters * 2)) : 0;
    const int width = std::min(advance, letter * mostCharacters) + letter * 2 + iconRoom(column);
    return {std::max(width, horizontalHeader()->sectionSizeHint(column))};
}

/// The last column fills what is left. If it has nothing to show, the one before takes the room. A column that keeps
/// its width isn't touched meanwhile: whatever changes is painted once more.
void VariableListView::setWidths() {
    const auto columns = static_cast<size_t>(model_.columnCount());
    if (columns == 0)
        return;
    const auto isBare = [this](size_t place) {
        return list_.columns[place].widthBy == ListColumn::By::Nobody && place < needs_.size() && needs_[place].empty;
    };
    size_t filling = columns - 1;
    while (filling > 0 && isBare(filling))
        --filling;
    if (list_.columns[filling].widthBy != ListColumn::By::Nobody)
        filling = columns - 1;
    std::vector<int> widths;
    int others = 0;
    for (size_t place = 0; place < columns; ++place) {
        widths.push_back(widthOf(static_cast<int>(place)));
        others += place == filling ? 0 : widths.back();
    }
    widths[filling] = std::max(widths[filling], viewport()->width() - others);
    for (size_t place = columns; place-- > 0;)
        horizontalHeader()->resizeSection(static_cast<int>(place), widths[place]);
}

double VariableListView::fontScale() const {
    constexpr double smallCharacter = 90;                     // twips
    const QString capitals = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ"_s; // names of variables are written so
    const int width =
        pixelsToTwips(*this, fontMetrics().horizontalAdvance(capitals)) / static_cast<int>(capitals.size());
    return qMax(1.0, width / smallCharacter);
}

int VariableListView::iconRoom(int column) const {
    return column == 0 ? iconSize().width() + fontMetrics().averageCharWidth() : 0;
}

int VariableListView::firstSelectedPlace() const {
    int first = -1;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        if (first < 0 || range.top() < first)
            first = range.top();
    return first;
}

std::vector<int> VariableListView::selectedPlaces() const {
    std::vector<int> places;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            places.push_back(row);
    std::ranges::sort(places);
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

void VariableListView::selectOnly(int place) {
    selectPlaces({place}, place);
}

void VariableListView::selectPlaces(const std::vector<int>& places, int current) {
    QItemSelection selection;
    const int lastColumn = model_.columnCount() - 1;
    for (size_t i = 0; i < places.size();) {
        size_t end = i + 1;
        while (end < places.size() && places[end] == places[end - 1] + 1)
            ++end;
        selection.select(model_.index(places[i], 0), model_.index(places[end - 1], lastColumn));
        i = end;
    }
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    if (current < 0 && !places.empty())
        current = places.front();
    if (current >= 0) {
        const int column = qMax(0, currentIndex().column());
        selectionModel()->setCurrentIndex(model_.index(current, column), QItemSelectionModel::NoUpdate);
        scrollTo(model_.index(current, 0));
    }
}

void VariableListView::keyboardSearch(const QString& start) {
    const int column = list_.sorted ? list_.sortKey : 0;
    if (currentIndex().isValid() && currentIndex().column() != column)
        selectionModel()->setCurrentIndex(currentIndex().siblingAtColumn(column), QItemSelectionModel::NoUpdate);
    QTableView::keyboardSearch(start);
}

/// Rows are what the keys go through, whatever column is in view.
QModelIndex VariableListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const int column = qMax(0, currentIndex().column());
    if (action == MoveHome)
        return model_.index(0, column);
    if (action == MoveEnd)
        return model_.index(model_.rowCount() - 1, column);
    return QTableView::moveCursor(action, modifiers);
}

void VariableListView::setHint(const QString& hint) {
    if (std::exchange(hint_, hint) != hint)
        viewport()->update();
}

void VariableListView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model_.rowCount() == 0)
        paintHint(*this, hint_);
}

/// A text that is seen as a whole needs no tooltip.
bool VariableListView::viewportEvent(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const QModelIndex cell = indexAt(static_cast<QHelpEvent*>(event)->pos());
        if (cell.isValid() && sizeHintForIndex(cell).width() <= visualRect(cell).width() &&
            viewport()->rect().contains(visualRect(cell))) {
            QToolTip::hideText();
            return true;
        }
    }
    return QTableView::viewportEvent(event);
}

void VariableListView::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    // The frame's entry for copying has no effect in a list, and a cell's text is not put in its place.
    if (event->matches(QKeySequence::Copy))
        return;
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && opened) {
        opened();
    } else if (event->modifiers() == Qt::ControlModifier && key >= Qt::Key_1 &&
               key < Qt::Key_1 + model_.columnCount()) {
        if (headerChosen)
            headerChosen(key - Qt::Key_1);
    } else {
        QTableView::keyPressEvent(event);
        if (key == Qt::Key_Space && chosenAgain)
            chosenAgain();
    }
}
