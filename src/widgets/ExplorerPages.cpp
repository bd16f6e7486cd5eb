#include "widgets/ExplorerPages.h"

#include "app/globals.h"
#include "explorer/PanelPages.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"
#include "tables/tableText.h"
#include "widgets/ContextMenu.h"
#include "widgets/Desktop.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Form.h"
#include "widgets/Icons.h"
#include "widgets/PictureSurface.h"
#include "widgets/ResultTableView.h"
#include "widgets/gestures.h"
#include "widgets/tableRoom.h"
#include "widgets/toolTips.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QSlider>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// What the explanation of a graph leaves the picture at the least, as a share of the width.
constexpr int mostOfExplanation = 3;

/// Tabs that get very narrow between two panels where the font is large; their tips have the captions in full.
class NarrowTabs : public QTabBar {
public:
    using QTabBar::QTabBar;

protected:
    /// The tab in view looks like the others when it has nothing: a tab bar itself draws only those pale.
    void initStyleOption(QStyleOptionTab* option, int index) const override {
        QTabBar::initStyleOption(option, index);
        if (!isTabEnabled(index))
            option->palette.setCurrentColorGroup(QPalette::Disabled);
    }

    QSize minimumTabSizeHint(int index) const override {
        const QSize least = QTabBar::minimumTabSizeHint(index);
        return {std::min(least.width(), fontMetrics().averageCharWidth() * 5), least.height()};
    }
};

} // namespace

ExplorerPages::ExplorerPages(PanelPages& pages, const QString& suffix, QWidget* parent)
    : QWidget(parent), pages_(pages) {
    build(suffix);
    connectControls();
    showPages();
}

void ExplorerPages::build(const QString& suffix) {
    tabShowCard = new NarrowTabs(this);
    tabShowCard->setObjectName(u"tabShowCard"_s + suffix);
    for (const QString& page : {u"ShowCard"_s, u"Tabelle"_s, u"Grafik"_s})
        tabShowCard->addTab(page);
    tabShowCard->setDrawBase(true);
    tabShowCard->setExpanding(false);
    tabShowCard->setUsesScrollButtons(false);
    tabShowCard->setElideMode(Qt::ElideRight);
    lblTableTitle = withOwnText(new QLabel(this), u"lblTableTitle"_s + suffix);
    lblTableTitle->setTextFormat(Qt::PlainText);
    lblTableTitle->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    QFont heading = lblTableTitle->font();
    heading.setBold(true);
    lblTableTitle->setFont(heading);
    lblTableValues = withOwnText(new ElidedLabel(this), u"lblTableValues"_s + suffix);
    pictureRow_ = new QWidget(this);
    lblGraphExplain = withOwnText(new QPlainTextEdit(pictureRow_), u"lblGraphExplain"_s + suffix);
    lblGraphExplain->setReadOnly(true);
    lblGraphExplain->setTabChangesFocus(true);
    lblGraphExplain->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    picShowCard = withOwnText(new PictureSurface(pages_.view, pictureRow_), u"picShowCard"_s + suffix);
    mfgTable = new ResultTableView(u"mfgTable"_s + suffix, this);
    mfgTable->takeWidthsAsLeast();
    zoomRow_ = new QWidget(this);
    sldShowCard = withOwnText(new QSlider(Qt::Horizontal, zoomRow_), u"sldShowCard"_s + suffix);
    sldShowCard->setRange(PictureView::least, PictureView::most);
    sldShowCard->setSingleStep(25);
    sldShowCard->setPageStep(250);
    sldShowCard->setMinimumWidth(fontMetrics().averageCharWidth() * 4);
    lblZoom_ = withOwnText(new QLabel(zoomRow_), u"lblZoom"_s + suffix);
    cmdFit_ = new QToolButton(zoomRow_);
    cmdFit_->setObjectName(u"cmdFit"_s + suffix);
    cmdFit_->setText(u"Einpassen"_s);
    cmdFit_->setIcon(Icons::get(u"fit"_s));
    cmdFit_->setFocusPolicy(Qt::TabFocus);

    auto* zoom = new QHBoxLayout(zoomRow_);
    zoom->setContentsMargins({});
    zoom->addWidget(sldShowCard, 1);
    zoom->addWidget(lblZoom_);
    zoom->addWidget(cmdFit_);
    auto* picture = new QHBoxLayout(pictureRow_);
    picture->setContentsMargins({});
    picture->addWidget(lblGraphExplain);
    picture->addWidget(picShowCard, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(qMax(3, fontMetrics().height() / 8));
    column->addWidget(tabShowCard);
    column->addWidget(lblTableTitle);
    column->addWidget(lblTableValues);
    column->addWidget(mfgTable, 1);
    column->addWidget(pictureRow_, 1);
    column->addWidget(zoomRow_);
}

void ExplorerPages::connectControls() {
    connect(tabShowCard, &QTabBar::currentChanged, this, [this](int page) {
        if (turned && page >= 0)
            turned(page);
    });
    connect(sldShowCard, &QSlider::valueChanged, this, [this](int value) {
        pages_.view.setSlider(value);
        picShowCard->update();
        showZoom();
    });
    connect(cmdFit_, &QToolButton::clicked, this, [this] { picShowCard->fit(); });
    picShowCard->onZoom = [this] { showZoom(); };
    mfgTable->installEventFilter(this);
    picShowCard->installEventFilter(this);
    new ContextMenu(
        *mfgTable,
        [this](QMenu& menu) { menu.addAction(TranslateText(u"Tabelle kopieren"_s), this, [this] { copyTable(); }); },
        ContextMenu::Selection::Stays);
}

/// A tab without anything behind it can't be chosen. The one in view stays in view all the same, where the tab bar
/// would go on to the next.
void ExplorerPages::showTabs() {
    const QSignalBlocker silent(tabShowCard);
    for (int page = 0; page < PanelPages::pageCount; ++page)
        tabShowCard->setTabEnabled(page, pages_.isEnabled(page));
    tabShowCard->setCurrentIndex(pages_.page());
}

void ExplorerPages::showPages() {
    // Who was at what now goes out of sight stays on the page.
    const QWidget* before = QApplication::focusWidget();
    const bool hadFocus = before && before != tabShowCard && isAncestorOf(before);
    showTabs();
    const bool table = pages_.table(), picture = !pages_.picSC().isNull();
    lblTableTitle->setToolTip(plainToolTip(pages_.lblTableTitle()));
    lblTableTitle->setVisible(!pages_.lblTableTitle().isEmpty());
    lblTableValues->setText(pages_.lblTableValues());
    lblTableValues->setVisible(!pages_.lblTableValues().isEmpty());
    if (lblGraphExplain->toPlainText() != pages_.lblGraphExplain())
        lblGraphExplain->setPlainText(pages_.lblGraphExplain());
    lblGraphExplain->setVisible(!pages_.lblGraphExplain().isEmpty());
    fitTexts();
    mfgTable->updateTable(table ? *pages_.table() : ResultTable());
    mfgTable->setVisible(table);
    pictureRow_->setVisible(!table);
    zoomRow_->setVisible(picture);
    if (picture)
        picShowCard->show(&pages_.picSC());
    else if (const QString fault = faultWords(); !fault.isEmpty())
        picShowCard->showFault(fault);
    else
        picShowCard->showEmpty(emptyWords());
    if (hadFocus && !isAncestorOf(QApplication::focusWidget()))
        (table ? static_cast<QWidget*>(mfgTable) : picShowCard)->setFocus();
    const QString card = pages_.page() == PanelPages::ShowCard ? Paths::fileOf(pages_.Tag()) : QString();
    picShowCard->setAccessibleDescription(picture ? card : faultWords().isEmpty() ? emptyWords() : faultWords());
    showZoom();
}

/// Nobody is to take an empty page for one that could not be shown. Without a variable there is nothing to say.
QString ExplorerPages::emptyWords() const {
    if (!pages_.hasVariable() || pages_.isEnabled(pages_.page()))
        return {};
    switch (pages_.page()) {
    case PanelPages::ShowCard:
        return TranslateText(u"Keine ShowCard in der gewählten Sprache."_s);
    case PanelPages::Table:
        return TranslateText(u"Keine gespeicherte Tabelle."_s);
    default:
        return TranslateText(u"Keine gespeicherte Grafik."_s);
    }
}

QString ExplorerPages::faultWords() const {
    if (pages_.page() == PanelPages::Table && pages_.fault() != PictureFault::None)
        return TranslateText(u"Die gespeicherte Tabelle ist beschädigt."_s);
    const QString words = TranslateText(::faultWords(pages_.fault()));
    const bool named = !words.isEmpty() && pages_.page() == PanelPages::ShowCard;
    return named ? words + u'\n' + Paths::fileOf(pages_.Tag()) : words;
}

void ExplorerPages::showZoom() {
    const QSignalBlocker silent(sldShowCard);
    sldShowCard->setValue(pages_.view.slider());
    const int percent = std::max(1, qRound(pages_.view.zoom() * 100));
    lblZoom_->setText(said(u"%1 %"_s, u"%1%"_s).arg(percent));
    // The row stays as it is while the number grows.
    lblZoom_->setMinimumWidth(lblZoom_->fontMetrics().horizontalAdvance(u"400 %"_s));
    // One line of both would reach across half the window.
    picShowCard->setToolTip(
        pages_.picSC().isNull()
            ? QString()
            : TranslateText(
                  u"Ziehen verschiebt das Bild, Strg+Mausrad ändert seine Größe, ein Doppelklick stellt beides zurück."_s) +
                  u'\n' + TranslateText(u"Tasten: Pfeile, +, -, F (einpassen), 0 (zurück), Strg+C (kopieren)"_s));
}

/// The title in the lines that the width gives it; the explanation as wide as its lines, so far as the picture keeps
/// its part.
void ExplorerPages::fitTexts() {
    lblTableTitle->setText(headLines(pages_.lblTableTitle(), lblTableTitle->font(), width()).join(u'\n'));
    int widest = 0;
    for (const QString& line : pages_.lblGraphExplain().split(u'\n'))
        widest = std::max(widest, lblGraphExplain->fontMetrics().horizontalAdvance(line.left(200)));
    const int margins = 2 * qRound(lblGraphExplain->document()->documentMargin()) + 2 * lblGraphExplain->frameWidth() +
                        fontMetrics().averageCharWidth() * 3;
    lblGraphExplain->setFixedWidth(std::max(1, std::min(widest + margins, width() / mostOfExplanation)));
}

void ExplorerPages::refreshTexts() {
    tabShowCard->setTabToolTip(PanelPages::ShowCard, TranslateText(u"ShowCard der Variable"_s));
    tabShowCard->setTabToolTip(PanelPages::Table, TranslateText(u"Gespeicherte Tabelle"_s));
    tabShowCard->setTabToolTip(PanelPages::Graph, TranslateText(u"Gespeicherte Grafik"_s));
    tabShowCard->setAccessibleName(TranslateText(u"ShowCard, Tabelle und Grafik der Variable"_s));
    picShowCard->setAccessibleName(TranslateText(u"Bild der Variable"_s));
    sldShowCard->setAccessibleName(TranslateText(u"Größe des Bildes in Tausendsteln"_s));
    mfgTable->setAccessibleName(TranslateText(u"Gespeicherte Tabelle"_s));
    lblGraphExplain->setAccessibleName(TranslateText(u"Erklärung der Grafik"_s));
    showPages();
}

void ExplorerPages::copyTable() {
    onGesture([this] {
        if (!pages_.table())
            return;
        ResultTable table = *pages_.table();
        const QString title = pages_.lblTableTitle();
        const QString values = pages_.lblTableValues();
        ui::asker().setClipboard((values.isEmpty() ? title : title + u"\r\n"_s + values) + u"\r\n"_s + clipText(table),
                                 htmlTable(title, table, values.isEmpty() ? QStringList() : QStringList(values)));
        desktop().mention(TranslateText(u"Tabelle in Zwischenablage kopiert."_s));
    });
}

void ExplorerPages::copyPicture() {
    onGesture([this] {
        if (pages_.picSC().isNull())
            return;
        ui::asker().copyPicture(pages_.picSC().full(), {});
        desktop().mention(TranslateText(u"Bild in Zwischenablage kopiert."_s));
    });
}

/// Table and picture have the keys for copying before a menu takes them.
bool ExplorerPages::eventFilter(QObject* watched, QEvent* event) {
    const bool ours = watched == mfgTable || watched == picShowCard;
    if (!ours || (event->type() != QEvent::ShortcutOverride && event->type() != QEvent::KeyPress) ||
        !static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy))
        return QWidget::eventFilter(watched, event);
    event->accept();
    if (event->type() == QEvent::KeyPress)
        watched == mfgTable ? copyTable() : copyPicture();
    return true;
}

void ExplorerPages::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    fitTexts();
}
