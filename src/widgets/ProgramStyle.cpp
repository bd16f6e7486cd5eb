#include "widgets/ProgramStyle.h"

#include "widgets/Icons.h"
#include "widgets/contrast.h"

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
    return view && !view->hasFocus() && view->window()->windowType() != Qt::Popup &&
           view->window()->windowType() != Qt::ToolTip;
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

bool isDark(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < 128;
}

/// An empty box would hardly be seen on a dark ground.
void outlineOnDark(QPainter& painter, const QStyleOption& option, bool round) {
    if (!isDark(option.palette))
        return;
    QColor line = option.palette.color(QPalette::WindowText);
    line.setAlphaF(option.state & QStyle::State_Enabled ? 0.55F : 0.25F);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(line);
    painter.setBrush(Qt::NoBrush);
    const QRectF box = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
    if (round)
        painter.drawEllipse(box);
    else
        painter.drawRoundedRect(box, 2, 2);
    painter.restore();
}

/// As is the line between the parts of a menu, which is drawn darker than its ground.
void separateOnDark(QPainter& painter, const QStyleOptionMenuItem& item) {
    if (!isDark(item.palette) || item.menuItemType != QStyleOptionMenuItem::Separator || !item.text.isEmpty())
        return;
    QColor line = item.palette.color(QPalette::WindowText);
    line.setAlphaF(0.25F);
    constexpr int margin = 5;
    painter.fillRect(QRect(item.rect.left() + margin, item.rect.center().y(), item.rect.width() - 2 * margin, 1), line);
}

} // namespace

/// Half of the text's colour, as which a prompt is drawn elsewhere, is too little on most grounds. What is out of use
/// stands back further, but one wants to read what there would be.
void ProgramStyle::polish(QPalette& palette) {
    QProxyStyle::polish(palette);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        palette.setColor(group, QPalette::PlaceholderText,
                         faintText(palette.color(group, QPalette::Text), palette.color(group, QPalette::Base)));
    constexpr double outOfUse = 3;
    for (const auto& [role, ground] :
         {std::pair(QPalette::Text, QPalette::Base), std::pair(QPalette::WindowText, QPalette::Window),
          std::pair(QPalette::ButtonText, QPalette::Button)}) {
        const QColor behind = palette.color(QPalette::Disabled, ground);
        if (contrast(palette.color(QPalette::Disabled, role), behind) < outOfUse)
            palette.setColor(QPalette::Disabled, role,
                             faintText(palette.color(QPalette::Active, role), behind, outOfUse));
    }
    palette.setColor(QPalette::Disabled, QPalette::PlaceholderText, palette.color(QPalette::Disabled, QPalette::Text));
}

int ProgramStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    const int own = QProxyStyle::pixelMetric(metric, option, widget);
    const int line = QFontMetrics(widget ? widget->font() : QApplication::font()).height();
    switch (metric) {
    case PM_TitleBarHeight:
        return std::max(own, line + 8);
    case PM_ButtonIconSize:
    case PM_SmallIconSize:
        return std::max(own, line);
    case PM_MessageBoxIconSize:
        return std::max(own, line * 2);
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return std::max(own, line / 4);
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

int ProgramStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                            QStyleHintReturn* data) const {
    // What is out of use is grey; a second, lighter drawing of it is hard to read on dark.
    if (hint == SH_EtchDisabledText)
        return 0;
    // The lines of a table are as faint on a dark ground as on a light one, but they are there.
    if (hint == SH_Table_GridLineColor && option && isDark(option->palette))
        return static_cast<int>(option->palette.color(QPalette::Base).lighter(210).rgb());
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
    const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
    if (element == CE_ComboBoxLabel && box && box->currentIcon.isNull()) {
        QStyleOptionComboBox elided(*box);
        const int room = subControlRect(CC_ComboBox, box, SC_ComboBoxEditField, widget).width() - 2;
        elided.currentText = box->fontMetrics.elidedText(box->currentText, Qt::ElideRight, room);
        QProxyStyle::drawControl(element, &elided, painter, widget);
        return;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
    if (const auto* entry = qstyleoption_cast<const QStyleOptionMenuItem*>(option); element == CE_MenuItem && entry)
        separateOnDark(*painter, *entry);
    if (element == CE_ShapedFrame && qobject_cast<const QAbstractScrollArea*>(widget) && widget->hasFocus()) {
        painter->setPen(option->palette.color(QPalette::Highlight));
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
    }
}

/// The shadow below the title of the window in use is drawn in the colour of texts: on dark, white below white, it
/// would blur the title.
void ProgramStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                      const QWidget* widget) const {
    const auto* bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
    if (control == CC_TitleBar && bar && (bar->titleBarState & State_Active) && isDark(bar->palette)) {
        QStyleOptionTitleBar shadowed(*bar);
        shadowed.palette.setColor(QPalette::Text, Qt::black);
        QProxyStyle::drawComplexControl(control, &shadowed, painter, widget);
        return;
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
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
    const auto* focus = qstyleoption_cast<const QStyleOptionFocusRect*>(option);
    if (element == PE_FrameFocusRect && focus && (focus->state & State_Item) &&
        focus->backgroundColor == focus->palette.color(QPalette::Highlight)) {
        // A frame that is filled with the colour of the selection lies over the text of the cell and pales it.
        QColor line = focus->palette.color(QPalette::HighlightedText);
        line.setAlpha(110);
        painter->save();
        painter->setPen(line);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(focus->rect.adjusted(0, 0, -1, -1));
        painter->restore();
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton)
        outlineOnDark(*painter, *option, element == PE_IndicatorRadioButton);
}

QIcon ProgramStyle::standardIcon(StandardPixmap picture, const QStyleOption* option, const QWidget* widget) const {
    switch (picture) {
    case SP_MessageBoxQuestion:
        return Icons::get(QStringLiteral("help"));
    case SP_MessageBoxInformation:
        return Icons::get(QStringLiteral("about"));
    case SP_MessageBoxWarning:
        return Icons::get(QStringLiteral("warning"));
    case SP_MessageBoxCritical:
        return Icons::get(QStringLiteral("error"));
    default:
        return QProxyStyle::standardIcon(picture, option, widget);
    }
}
