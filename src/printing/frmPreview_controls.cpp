#include "app/globals.h"
#include "printing/frmPreview.h"
#include "widgets/ContextMenu.h"
#include "widgets/EntryFindBar.h"
#include "widgets/FlowLayout.h"
#include "widgets/Icons.h"
#include "widgets/PreviewArea.h"
#include "widgets/gestures.h"
#include "widgets/toolTips.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QShortcut>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// A field for a number that counts when it is left or Enter is pressed.
QSpinBox* numberField(const QString& name, int least, int most, QWidget* parent) {
    auto* field = withOwnText(new QSpinBox(parent), name);
    field->setRange(least, most);
    field->setKeyboardTracking(false);
    field->setAlignment(Qt::AlignRight);
    return field;
}

/// Widgets of the toolbar that stay together when it breaks.
QWidget* together(std::initializer_list<QWidget*> widgets, QWidget* parent) {
    auto* group = new QWidget(parent);
    auto* row = new QHBoxLayout(group);
    row->setContentsMargins(0, 0, group->fontMetrics().averageCharWidth(), 0);
    row->setSpacing(2);
    for (QWidget* widget : widgets)
        row->addWidget(widget);
    return group;
}

} // namespace

void frmPreview::build() {
    area_ = withOwnText(new PreviewArea(*model_, this), u"pages"_s);
    find_ = new EntryFindBar(*model_, this);
    auto* column = new QVBoxLayout(this);
    column->setSpacing(qMax(3, fontMetrics().height() / 4));
    column->addLayout(buildToolbar());
    column->addWidget(area_, 1);
    column->addWidget(find_);
    column->addWidget(buildFoot());
}

QToolButton* frmPreview::button(const QString& name, const QString& icon, const std::function<void()>& steps) {
    auto* made = withOwnText(new QToolButton(this), name);
    made->setIcon(Icons::get(icon));
    made->setAutoRaise(true);
    connect(made, &QToolButton::clicked, this, [this, steps] { change(steps); });
    return made;
}

FlowLayout* frmPreview::buildToolbar() {
    using Fit = PreviewModel::Fit;
    cmdPrint_ = button(u"cmdPrint"_s, u"print"_s, [this] { cmdPrint_Click(); });
    cmdSave_ = button(u"cmdSave"_s, u"save-pdf"_s, [this] { cmdSave_Click(); });
    cmdPrevious_ = button(u"cmdPrevious"_s, u"go-back"_s, [this] { model_->previousPage(); });
    lblPage_ = withOwnText(new QLabel(this), u"lblPage"_s);
    txtPage_ = numberField(u"txtPage"_s, 1, 1, this);
    lblPage_->setBuddy(txtPage_);
    lblCount_ = withOwnText(new QLabel(this), u"lblCount"_s);
    cmdNext_ = button(u"cmdNext"_s, u"go-next"_s, [this] { model_->nextPage(); });
    cmdBack_ = button(u"cmdBack"_s, u"undo"_s, [this] { model_->back(); });
    cmdZoomOut_ = button(u"cmdZoomOut"_s, u"zoom-out"_s, [this] { model_->zoomOut(); });
    txtZoom_ = numberField(u"txtZoom"_s, qRound(PreviewModel::leastZoom * 100), 100, this);
    txtZoom_->setSuffix(u" %"_s);
    txtZoom_->setSingleStep(10);
    cmdZoomIn_ = button(u"cmdZoomIn"_s, u"zoom-in"_s, [this] { model_->zoomIn(); });
    // Pressed once more, the size stays and no longer follows the window.
    const auto fit = [this](Fit wanted) { model_->setFit(model_->fit() == wanted ? Fit::None : wanted); };
    cmdWidth_ = button(u"cmdWidth"_s, u"page-width"_s, [fit] { fit(Fit::Width); });
    cmdWhole_ = button(u"cmdWhole"_s, u"page-whole"_s, [fit] { fit(Fit::Page); });
    cmdTwo_ = button(u"cmdTwo"_s, u"two-pages"_s, [this] { model_->setTwoPages(!model_->twoPages()); });
    for (QToolButton* kept : {cmdWidth_, cmdWhole_, cmdTwo_})
        kept->setCheckable(true);
    cmdFind_ = button(u"cmdFind"_s, u"search"_s, [this] { askForEntry(); });
    auto* bar = new FlowLayout;
    bar->setSpacing(2);
    bar->add(together({cmdPrint_, cmdSave_}, this));
    bar->add(together({cmdPrevious_, lblPage_, txtPage_, lblCount_, cmdNext_, cmdBack_}, this));
    bar->add(together({cmdZoomOut_, txtZoom_, cmdZoomIn_}, this));
    bar->add(together({cmdWidth_, cmdWhole_, cmdTwo_}, this));
    bar->add(together({cmdFind_}, this));
    return bar;
}

QWidget* frmPreview::buildFoot() {
    auto* foot = new QWidget(this);
    lblState_ = withOwnText(new QLabel(foot), u"lblState"_s);
    lblState_->setTextFormat(Qt::PlainText);
    lblState_->setWordWrap(true);
    pgbPages_ = withOwnText(new QProgressBar(foot), u"pgbPages"_s);
    pgbPages_->setRange(0, 1000);
    pgbPages_->setTextVisible(false);
    pgbPages_->setMaximumWidth(fontMetrics().averageCharWidth() * 30);
    pgbPages_->setMaximumHeight(fontMetrics().height());
    cmdStop_ = button(u"cmdStop"_s, u"stop"_s, [this] { cmdStop_Click(); });
    auto* row = new QHBoxLayout(foot);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(lblState_, 1);
    row->addWidget(pgbPages_, 1);
    row->addWidget(cmdStop_);
    return foot;
}

void frmPreview::connectControls() {
    connect(&slice_, &QTimer::timeout, this, [this] { work(); });
    area_->onChanged = [this] { showState(); };
    area_->tellLink = [this](int entry) {
        const ReportEntry& to = model_->run().layout().outline().entries[static_cast<size_t>(entry)];
        return (to.name + u' ' + to.title).trimmed();
    };
    find_->onFound = [this] { showState(); };
    find_->onClosed = [this] { area_->setFocus(); };
    connect(txtPage_, &QSpinBox::valueChanged, this,
            [this](int page) { change([&] { model_->jumpToPage(page - 1); }); });
    connect(txtZoom_, &QSpinBox::valueChanged, this,
            [this](int percent) { change([&] { model_->setZoom(percent / 100.0); }); });
    // Enter in a field leads back to the pages.
    for (QSpinBox* field : {txtPage_, txtZoom_})
        connect(field->findChild<QLineEdit*>(), &QLineEdit::returnPressed, this, [this] { area_->setFocus(); });
    addShortcuts();
    offerMenu();
}

void frmPreview::addShortcuts() {
    const auto add = [this](const QList<QKeySequence>& keys, const std::function<void()>& steps) {
        for (const QKeySequence& sequence : keys)
            connect(new QShortcut(sequence, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut),
                    &QShortcut::activated, this, [this, steps] { change(steps); });
    };
    add({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal}, [this] { model_->zoomIn(); });
    add({Qt::CTRL | Qt::Key_Minus}, [this] { model_->zoomOut(); });
    add({Qt::CTRL | Qt::Key_0}, [this] { model_->resetZoom(); });
    add({Qt::CTRL | Qt::Key_F}, [this] { askForEntry(); });
    add({Qt::CTRL | Qt::Key_G}, [this] { askForPage(); });
    add({Qt::CTRL | Qt::Key_S}, [this] { cmdSave_Click(); });
    add({Qt::ALT | Qt::Key_Left}, [this] { model_->back(); });
}

/// At the right mouse button, what the buttons offer.
void frmPreview::offerMenu() {
    new ContextMenu(*area_, [this](QMenu& menu) {
        for (QToolButton* offered : {cmdPrint_, cmdSave_, static_cast<QToolButton*>(nullptr), cmdPrevious_, cmdNext_,
                                     cmdBack_, static_cast<QToolButton*>(nullptr), cmdZoomIn_, cmdZoomOut_, cmdWidth_,
                                     cmdWhole_, cmdTwo_, static_cast<QToolButton*>(nullptr), cmdFind_})
            if (offered)
                ContextMenu::addButton(menu, *offered);
            else
                menu.addSeparator();
    });
}

void frmPreview::nameControls() {
    const std::pair<QWidget*, QString> names[] = {
        {cmdPrint_, TranslateText(u"Den Bericht drucken (Strg+P)"_s)},
        {cmdSave_, TranslateText(u"Den Bericht als PDF speichern (Strg+S)"_s)},
        {cmdPrevious_, TranslateText(u"Vorige Seite (Strg+Bild nach oben)"_s)},
        {cmdNext_, TranslateText(u"Nächste Seite (Strg+Bild nach unten)"_s)},
        {cmdBack_, TranslateText(u"Zurück, woher der letzte Sprung kam (Alt+Nach links)"_s)},
        {txtPage_, TranslateText(u"Gehe zu Seite (Strg+G)"_s)},
        {cmdZoomOut_, TranslateText(u"Verkleinern (Strg+Minus)"_s)},
        {txtZoom_, TranslateText(u"Größe der Seiten in Prozent (Strg+0 für den Anfangswert)"_s)},
        {cmdZoomIn_, TranslateText(u"Vergrößern (Strg+Plus)"_s)},
        {cmdWidth_, TranslateText(u"Ganze Breite der Seite (W)"_s)},
        {cmdWhole_, TranslateText(u"Ganze Seite (F)"_s)},
        {cmdTwo_, TranslateText(u"Zwei Seiten nebeneinander (2)"_s)},
        {cmdFind_, TranslateText(u"Eine Variable suchen (Strg+F)"_s)},
        {pgbPages_, TranslateText(u"Die Seiten werden gesetzt …"_s)}};
    for (const auto& [control, text] : names) {
        control->setToolTip(asToolTip(text));
        control->setAccessibleName(text);
        if (auto* offered = qobject_cast<QToolButton*>(control))
            offered->setText(text.section(u" ("_s, 0, 0)); // in the menu
    }
    lblPage_->setText(TranslateText(u"Seite"_s));
}
