#include "widgets/HitListView.h"

#include "app/globals.h"
#include "explorer/iconNames.h"
#include "platform/dao/TextOrder.h"
#include "platform/ui/Asker.h"
#include "widgets/Icons.h"
#include "widgets/emptyList.h"
#include "widgets/rowList.h"
#include "widgets/toolTips.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QTextLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int before = 24, behind = 140; ///< characters around a term
constexpr qsizetype longestCell = 300, longestTip = 1500;

/// Draws a text with some places in bold, as it would be drawn without them.
class ContextDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QStyleOptionViewItem item = option;
        initStyleOption(&item, index);
        item.text.clear();
        const QStyle* style = item.widget ? item.widget->style() : QApplication::style();
        style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);

        const QRect room = style->subElementRect(QStyle::SE_ItemViewItemText, &item, item.widget)
                               .adjusted(item.fontMetrics.averageCharWidth() / 2, 0, 0, 0);
        TermContext context = static_cast<const HitListModel*>(index.model())->contextAt(index.row());
        QTextLayout layout(context.text, item.font);
        layout.setCacheEnabled(false);
        layOut(layout, context);
        const qreal end = room.width() - item.fontMetrics.horizontalAdvance(u'…') - 1;
        if (layout.lineAt(0).naturalTextWidth() > room.width()) {
            comeToTerm(context, layout, end - item.fontMetrics.horizontalAdvance(u'…'));
            layout.setText(context.text);
            layOut(layout, context);
        }
        if (layout.lineAt(0).naturalTextWidth() > room.width()) {
            const int last = layout.lineAt(0).xToCursor(end, QTextLine::CursorOnCharacter);
            layout.setText(context.text.left(last) + u'…');
            layOut(layout, context);
        }
        // A selection without the keyboard is drawn pale, and its text as any other.
        const bool lit = (item.state & QStyle::State_Selected) && item.widget && item.widget->hasFocus();
        painter->save();
        painter->setClipRect(room);
        painter->setPen(item.palette.color(lit ? QPalette::HighlightedText : QPalette::Text));
        layout.draw(painter, QPointF(room.left(), room.top() + (room.height() - layout.lineAt(0).height()) / 2));
        painter->restore();
    }

private:
    /// What stands before the first term gives way where that would end behind `end`.
    static void comeToTerm(TermContext& context, const QTextLayout& layout, qreal end) {
        if (context.places.empty())
            return;
        const QTextLine line = layout.lineAt(0);
        const TermPlace first = context.places.front();
        const qreal beyond = line.cursorToX(static_cast<int>(first.start + first.length)) - end;
        if (beyond <= 0)
            return;
        const int covered = line.xToCursor(beyond, QTextLine::CursorOnCharacter);
        const qsizetype cut = std::min<qsizetype>(first.start, layout.nextCursorPosition(covered));
        const QString dots = u"…"_s;
        context.text = dots + context.text.mid(cut);
        for (TermPlace& place : context.places)
            place.start += dots.size() - cut;
    }

    /// On one line, which may hold less than the whole text.
    static void layOut(QTextLayout& layout, const TermContext& context) {
        const qsizetype length = layout.text().size();
        QList<QTextLayout::FormatRange> bold;
        for (const TermPlace& place : context.places) {
            QTextLayout::FormatRange range;
            range.start = static_cast<int>(std::min(place.start, length));
            range.length = static_cast<int>(std::min(place.start + place.length, length)) - range.start;
            range.format.setFontWeight(QFont::Bold);
            if (range.length > 0)
                bold << range;
        }
        layout.setFormats(bold);
        layout.beginLayout();
        layout.createLine().setLineWidth(1e6);
        layout.endLayout();
    }
};

/// Of a way that is too long both ends say most.
class WayDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->textElideMode = Qt::ElideMiddle;
    }
};

QString cut(const QString& text, qsizetype most) {
    return text.size() > most ? text.left(most) + u'…' : text;
}

} // namespace

// ---- model

void HitListModel::begin(const HitList& hits, const QStringList& terms) {
    beginResetModel();
    hits_ = &hits;
    terms_ = terms;
    shown_ = hits.size();
    order_.clear();
    inSight_.clear();
    endResetModel();
}

void HitListModel::grow() {
    const int now = hits_ ? hits_->size() : 0;
    if (now <= shown_)
        return;
    beginInsertRows({}, shown_, now - 1);
    if (!order_.empty())
        for (int hit = shown_; hit < now; ++hit)
            order_.push_back(hit);
    shown_ = now;
    endInsertRows();
}

void HitListModel::settle() {
    if (sortedBy_ >= 0)
        sort(sortedBy_, direction_);
}

int HitListModel::hitAt(int row) const {
    if (row < 0 || row >= shown_)
        return -1;
    return order_.empty() ? row : order_[static_cast<size_t>(row)];
}

int HitListModel::rowOf(int hit) const {
    if (hit < 0 || hit >= shown_ || order_.empty())
        return hit < shown_ ? hit : -1;
    return static_cast<int>(std::ranges::find(order_, hit) - order_.begin());
}

int HitListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : shown_;
}

int HitListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : Columns;
}

const HitListModel::Shown& HitListModel::shownAt(int row) const {
    const int hit = hitAt(row);
    if (const Shown* known = inSight_.object(hit))
        return *known;
    auto* shown = new Shown{hits_->at(hit), {}};
    shown->context = termContext(shown->hit.text, terms_, before, behind);
    inSight_.insert(hit, shown);
    return *shown;
}

const TermContext& HitListModel::contextAt(int row) const {
    return shownAt(row).context;
}

const QIcon& HitListModel::icon(int number) const {
    const auto known = icons_.constFind(number);
    return known != icons_.constEnd() ? *known : *icons_.insert(number, Icons::get(iconName(number)));
}

QVariant HitListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= shown_)
        return {};
    const auto text = [&](qsizetype most) {
        const Shown& shown = shownAt(index.row());
        return index.column() == Text  ? cut(shown.hit.text, most)
               : index.column() == Way ? shown.hit.way
                                       : shown.context.text;
    };
    if (role == Qt::DisplayRole)
        return text(longestCell);
    if (role == Qt::ToolTipRole)
        return plainToolTip(text(longestTip));
    if (role == Qt::DecorationRole && index.column() == Text)
        return icon(shownAt(index.row()).hit.icon());
    return {};
}

QVariant HitListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= Columns)
        return {};
    const QString heading = TranslateText(section == Text  ? u"Treffer"_s
                                          : section == Way ? u"Stelle im Katalog"_s
                                                           : u"Umgebung"_s);
    if (role == Qt::DisplayRole)
        return heading;
    if (role == Qt::ToolTipRole)
        return asToolTip(heading + u" (%1)"_s.arg(QKeySequence(Qt::ALT | static_cast<Qt::Key>(Qt::Key_1 + section))
                                                      .toString(QKeySequence::NativeText)));
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

void HitListModel::headingsChanged() {
    Q_EMIT headerDataChanged(Qt::Horizontal, 0, Columns - 1);
}

/// By what stands at the term and behind it, as a concordance does.
std::vector<int> HitListModel::byContext() const {
    constexpr int compared = 40;
    std::vector<std::pair<QString, int>> keys;
    for (int hit = 0; hit < shown_; ++hit) {
        const TermContext context = termContext(hits_->text(hit), terms_, 0, compared);
        const qsizetype at = context.places.empty() ? 0 : context.places.front().start;
        keys.emplace_back(dao::foldedText(QStringView(context.text).mid(at, compared)), hit);
    }
    std::ranges::stable_sort(keys, [this](const auto& a, const auto& b) {
        return direction_ == Qt::DescendingOrder ? b.first < a.first : a.first < b.first;
    });
    std::vector<int> order;
    for (const auto& key : keys)
        order.push_back(key.second);
    return order;
}

/// The rows that somebody holds on to (the current one, the selected one) go where their hits go.
void HitListModel::sort(int column, Qt::SortOrder order) {
    sortedBy_ = column;
    direction_ = order;
    if (!hits_)
        return;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList held = persistentIndexList();
    std::vector<int> hitsHeld;
    for (const QModelIndex& index : held)
        hitsHeld.push_back(hitAt(index.row()));
    // Only the hits that are rows already.
    order_.clear();
    if (column >= 0) {
        const ui::WaitPointer wait;
        order_ = column == Context ? byContext()
                                   : hits_->sorted(column == Way ? HitList::By::Way : HitList::By::Text,
                                                   order == Qt::DescendingOrder);
        std::erase_if(order_, [this](int hit) { return hit >= shown_; });
    }
    QModelIndexList moved;
    for (qsizetype i = 0; i < held.size(); ++i)
        moved << index(rowOf(hitsHeld[static_cast<size_t>(i)]), held[i].column());
    changePersistentIndexList(held, moved);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

// ---- view

HitListView::HitListView(HitListModel& model, QWidget* parent) : QTableView(parent), model_(model) {
    setModel(&model_);
    showAsRows(*this);
    setSelectionMode(SingleSelection);
    setHorizontalScrollMode(ScrollPerPixel);
    setItemDelegateForColumn(HitListModel::Way, new WayDelegate(this));
    setItemDelegateForColumn(HitListModel::Context, new ContextDelegate(this));
    QHeaderView& heads = *horizontalHeader();
    heads.setHighlightSections(false);
    heads.setTextElideMode(Qt::ElideRight);
    heads.setStretchLastSection(true);
    heads.setSortIndicatorClearable(true);
    heads.setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    connect(&heads, &QHeaderView::sectionResized, this, [this](int column) {
        widthsByUser_ = widthsByUser_ || (!settingWidths_ && column + 1 < HitListModel::Columns);
    });
    connect(this, &QTableView::doubleClicked, this, [this] {
        if (opened)
            opened();
    });
    fitRowHeight(*this);
}

/// Until the user has other wishes the columns share the room: what was found, where, and most to what is around it.
void HitListView::fitColumns() {
    if (widthsByUser_)
        return;
    const QScopedValueRollback setting(settingWidths_, true);
    const int least = fontMetrics().averageCharWidth() * 16, room = viewport()->width();
    for (const auto& [column, percent] : {std::pair(HitListModel::Text, 30), std::pair(HitListModel::Way, 25)})
        setColumnWidth(column, std::max({least, horizontalHeader()->sectionSizeHint(column), room * percent / 100}));
}

void HitListView::goTo(int row) {
    selectionModel()->setCurrentIndex(model_.index(row, std::max(0, currentIndex().column())),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(model_.index(row, 0));
}

void HitListView::setHint(const QString& hint) {
    if (std::exchange(hint_, hint) != hint)
        viewport()->update();
    setAccessibleDescription(hint);
}

/// Rows are what the keys go through, whatever column is in view.
QModelIndex HitListView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    const int column = qMax(0, currentIndex().column());
    if (action == MoveHome)
        return model_.index(0, column);
    if (action == MoveEnd)
        return model_.index(model_.rowCount() - 1, column);
    return QTableView::moveCursor(action, modifiers);
}

void HitListView::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && opened) {
        opened();
    } else if (event->modifiers() == Qt::AltModifier && key >= Qt::Key_1 && key <= Qt::Key_3) {
        // As a click goes round: up, down, as found.
        QHeaderView& heads = *horizontalHeader();
        const int column = key - Qt::Key_1;
        if (heads.sortIndicatorSection() != column)
            heads.setSortIndicator(column, Qt::AscendingOrder);
        else if (heads.sortIndicatorOrder() == Qt::AscendingOrder)
            heads.setSortIndicator(column, Qt::DescendingOrder);
        else
            heads.setSortIndicator(-1, Qt::AscendingOrder);
    } else {
        QTableView::keyPressEvent(event);
    }
}

void HitListView::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model_.rowCount() == 0)
        paintHint(*this, hint_);
}

void HitListView::changeEvent(QEvent* event) {
    QTableView::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        fitRowHeight(*this);
        fitColumns();
    }
}

/// The hit that was opened stays in sight where windows are arranged anew for it. The event of a view that was hidden
/// meanwhile doesn't know the size before.
void HitListView::resizeEvent(QResizeEvent* event) {
    const int top = currentIndex().isValid() ? rowViewportPosition(currentRow()) : -1;
    const bool inSight = top >= 0 && top < heightBefore_;
    heightBefore_ = event->size().height();
    QTableView::resizeEvent(event);
    fitColumns();
    if (inSight)
        scrollTo(currentIndex().siblingAtColumn(0));
}
