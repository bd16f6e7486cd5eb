#include "widgets/ProgramStyle.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontMetrics>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

namespace {

const QAbstractItemView* viewOf(const QWidget* widget) {
    return qobject_cast<const QAbstractItemView*>(widget);
}

/// A list that drops down belongs to the field that it drops from, which has the keyboard.
bool lacksFocus(const QWidget* widget) {
    const QAbstractItemView* view = viewOf(widget);
    return view && !view->hasFocus() && view->window()->windowType() != Qt::Popup && view->window()->windowType() != Qt::ToolTip;
}

QColor paleHighlight(const QPalette& palette) {
    QColor pale = palette.color(QPalette::Active, QPalette::Highlight);
    pale.setAlphaF(0.25F);
    return pale;
}

/// What is selected without the keyboard is drawn as plain text on a pale ground.
void makePale(QStyleOptionViewItem& item) {
    if (!(item.state & QStyle::State_Selected))
        return;
    item.state &= ~QStyle::State_Selected;
    item.backgroundBrush = paleHighlight(item.palette);
}

} // namespace

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    const int own = QProxyStyle::pixelMetric(metric, option, widget);
    const int line = QFontMetrics(widget ? widget->font() : QApplication::font()).height();
    switch (metric) {
    case PM_TitleBarHeight:
        return std::max(own, line + 8);
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return std::max(own, line * 3 / 4);
    default:
        return own;
    }
}

QSize ProgramStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                     const QWidget* widget) const {
    const QSize own = QProxyStyle::sizeFromContents(type, option, contents, widget);
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    const bool captioned = type == CT_PushButton && button && !button->text.isEmpty();
    return captioned ? own.expandedTo({contents.width() + button->fontMetrics.averageCharWidth() * 4, 0}) : own;
}

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget, QStyleHintReturn* data) const {
    // What is out of use is grey; a second, lighter drawing of it is hard to read on dark.
    if (hint == SH_EtchDisabledText)
        return 0;
    // A maximised child keeps its own title bar: its buttons stay out of the menu bar and its title out of the frame's.
    return hint == SH_Workspace_FillSpaceOnMaximize ? 1 : QProxyStyle::styleHint(hint, option, widget, data);
}

void ProgramStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element == CE_ItemViewItem && item && lacksFocus(item->widget)) {
        QStyleOptionViewItem pale(*item);
        makePale(pale);
        QProxyStyle::drawControl(element, &pale, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_ShapedFrame && qobject_cast<const QAbstractScrollArea*>(widget) && widget->hasFocus()) {
        painter->setPen(option->palette.color(QPalette::Highlight));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    }
}

void ProgramStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
    const auto* item = qstyleoption_cast<const QStyleOptionViewItem*>(option);
    if (element == PE_PanelItemViewRow && item && lacksFocus(item->widget)) {
        QStyleOptionViewItem pale(*item);
        makePale(pale);
        QProxyStyle::drawPrimitive(element, &pale, painter, widget);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}
