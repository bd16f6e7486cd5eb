#include "widgets/FactsStrip.h"

#include "explorer/VariablePanel.h"
#include "widgets/ElidedLabel.h"
#include "widgets/FlowLayout.h"
#include "widgets/Icons.h"
#include "widgets/toolTips.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QToolButton>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

struct SwitchLook {
    const char16_t* key;
    const char16_t* text; ///< shown where there is no picture
    bool stays;           ///< keeps pressed in
    const char16_t* picture;
    const char16_t* pictureOn;
};
constexpr SwitchLook switchLooks[switchCount] = {
    {u"english", u"E", true, u"switch-english", u"switch-english-on"},
    {u"fixed", u"F", true, u"font", u"font"},
    {u"list", u"L", true, u"switch-list", u"switch-list-on"},
    {u"first", u"<<", false, u"go-first", u"go-first"},
    {u"back", u"<-", false, u"go-back", u"go-back"},
    {u"next", u"->", false, u"go-next", u"go-next"},
    {u"last", u">>", false, u"go-last", u"go-last"},
};

void showPicture(QToolButton& cell, const char16_t* name) {
    cell.setIcon(Icons::get(QString::fromUtf16(name)));
    cell.setToolButtonStyle(cell.icon().isNull() ? Qt::ToolButtonTextOnly : Qt::ToolButtonIconOnly);
}

} // namespace

FactsStrip::FactsStrip(QWidget* parent) : QFrame(parent) {
    setFrameShape(NoFrame);
    auto* line = new FlowLayout(this);
    auto* switches = new QWidget(this);
    auto* switchLine = new QHBoxLayout(switches);
    switchLine->setContentsMargins(0, 0, 0, 0);
    switchLine->setSpacing(1);
    for (const SwitchLook& look : switchLooks) {
        const QString key = QString::fromUtf16(look.key);
        auto* cell = new QToolButton(switches);
        cell->setText(QString::fromUtf16(look.text));
        cell->setAutoRaise(true);
        cell->setIconSize(QSize(1, 1) * qMax(16, fontMetrics().height()));
        cell->installEventFilter(this);
        buttons_ << cell;
        cell->setCheckable(look.stays);
        showPicture(*cell, look.picture);
        cell->setProperty("CtrlTyp", QString());
        connect(cell, &QToolButton::clicked, this, [this, key] {
            if (switched)
                switched(key);
        });
        if (key == u"first")
            switchLine->addSpacing(fontMetrics().averageCharWidth());
        switchLine->addWidget(cell);
        cells_[key] = cell;
    }
    line->add(switches);
    for (const QString& key : factKeys.mid(switchCount)) {
        auto* cell = new ElidedLabel(this);
        cell->setProperty("CtrlTyp", QString());
        // The label may be of any length: it takes what the line leaves over, or a line of its own before it is cut.
        const bool isLabel = key == u"Label";
        cell->leastCharacters = isLabel ? 32 : 4;
        line->add(cell, isLabel ? 1 : 0);
        cells_[key] = cell;
    }
    QFont strong = font();
    strong.setBold(true);
    cells_[u"Variable"_s]->setFont(strong);
    stopAt(buttons_.first());
    line->setSpacing(fontMetrics().averageCharWidth() * 2);
    line->lineSpacing = 1;
}

/// The strip is one stop of the Tab key; within it the arrow keys go on.
void FactsStrip::stopAt(QWidget* button) {
    for (QWidget* cell : buttons_)
        cell->setFocusPolicy(cell == button ? Qt::TabFocus : Qt::NoFocus);
}

void FactsStrip::orderTabs(QWidget* before, const QList<QWidget*>& after) {
    const auto taking =
        std::ranges::find_if(buttons_, [](const QWidget* cell) { return cell->focusPolicy() != Qt::NoFocus; });
    QWidget* const stop = taking == buttons_.end() ? buttons_.first() : *taking;
    QWidget* last = before;
    for (QWidget* cell : buttons_ + after) {
        // Only what takes the focus can be put in order.
        if (buttons_.contains(cell))
            cell->setFocusPolicy(Qt::TabFocus);
        if (last)
            setTabOrder(last, cell);
        last = cell;
    }
    stopAt(stop);
}

QStringList FactsStrip::keys() const {
    QStringList present;
    for (const QString& key : factKeys)
        if (cells_.contains(key))
            present << key;
    return present;
}

void FactsStrip::removeCell(const QString& key) {
    delete cells_.take(key);
    toolTips_.remove(key);
}

QToolButton* FactsStrip::button(const QString& key) const {
    return qobject_cast<QToolButton*>(cells_.value(key));
}

QString FactsStrip::text(const QString& key) const {
    const QWidget* of = cell(key);
    return of ? of->property("text").toString() : QString();
}

void FactsStrip::setText(const QString& key, const QString& text) {
    if (auto* label = qobject_cast<QLabel*>(cells_.value(key)))
        label->setText(text);
}

void FactsStrip::setToolTipOf(const QString& key, const QString& toolTip) {
    QWidget* of = cell(key);
    if (!of)
        return;
    toolTips_[key] = toolTip;
    of->setToolTip(plainToolTip(toolTip));
    of->setAccessibleName(button(key) ? toolTip : QString());
}

void FactsStrip::setOn(const QString& key, bool on) {
    QToolButton* of = button(key);
    if (!of)
        return;
    of->setChecked(on);
    for (const SwitchLook& look : switchLooks)
        if (key == QString::fromUtf16(look.key))
            showPicture(*of, on ? look.pictureOn : look.picture);
}

bool FactsStrip::isOn(const QString& key) const {
    const QToolButton* of = button(key);
    return of && of->isChecked();
}

bool FactsStrip::event(QEvent* event) {
    const bool done = QFrame::event(event);
    // A splitter asks what is least needed, not what is needed for a width: lines that are there must stay in view.
    if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
        setMinimumHeight(layout()->heightForWidth(width()));
    return done;
}

bool FactsStrip::eventFilter(QObject* watched, QEvent* event) {
    const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
    if (key != Qt::Key_Left && key != Qt::Key_Right)
        return QFrame::eventFilter(watched, event);
    const qsizetype place = buttons_.indexOf(static_cast<QWidget*>(watched)) + (key == Qt::Key_Left ? -1 : 1);
    if (place >= 0 && place < buttons_.size()) {
        stopAt(buttons_[place]);
        buttons_[place]->setFocus(Qt::TabFocusReason);
    }
    return true;
}
