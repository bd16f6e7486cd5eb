#include "explorer/frmExplorer.h"

#include "app/globals.h"
#include "config/Options.h"
#include "explorer/frmExplorerList.h"
#include "explorer/frmExplorerTree.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "widgets/Desktop.h"
#include "widgets/ElidedLabel.h"
#include "widgets/ExplorerPages.h"
#include "widgets/ExplorerPanel.h"
#include "widgets/FactsStrip.h"
#include "widgets/Icons.h"
#include "widgets/ValueList.h"
#include "widgets/VariableListView.h"
#include "widgets/gestures.h"
#include "widgets/twips.h"

#include <QApplication>
#include <QHash>
#include <QListWidget>
#include <QSplitter>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

constexpr int narrowest = 3000; ///< twips; a window narrower than this is not laid out
constexpr int leastPlace = 64;  ///< characters in the width of a panel and its pages

frmExplorer* explorerOfView(int view) {
    for (Form* form : Form::open())
        if (auto* explorer = dynamic_cast<frmExplorer*>(form); explorer && explorer->viewNumber() == view)
            return explorer;
    return nullptr;
}

void setShare(QSplitter& splitter, int share) {
    splitter.setSizes({share * 10, (1000 - share) * 10});
}

const QHash<QString, ExplorerModel::Step>& steps() {
    static const QHash<QString, ExplorerModel::Step> all = {{u"first"_s, ExplorerModel::Step::First},
                                                            {u"back"_s, ExplorerModel::Step::Back},
                                                            {u"next"_s, ExplorerModel::Step::Next},
                                                            {u"last"_s, ExplorerModel::Step::Last}};
    return all;
}

} // namespace

frmExplorer* frmExplorer::OpenExplorerView(int view) {
    frmExplorer* window = nullptr;
    {
        const BusyScope busy;
        window = new frmExplorer(view);
        desktop().adopt(*window);
        window->Form_Resize();
    }
    desktop().panelsChanged();
    return window;
}

frmExplorer::frmExplorer(int view) : Form(*this, u"frmExplorer"_s) {
    const BusyScope busy;
    buildControls();
    // Before the columns are there: a pass over those that are would change the year's heading.
    mdLanguage::SetCtrlProps(*this);
    openView(view);
    connectControls();
    addShortcuts();
    addContextMenus();
    showSwitches();
    refreshTitles();
    Form_Resize();
    // Whoever opens a view looks for an entry of its tree first.
    tree_->view()->setFocus();
}

frmExplorer::~frmExplorer() {
    // A window in view that is deleted is closed on the way, when what its lists show has gone already.
    if (isWindow())
        hide();
    layout_.takeFrom(model_.list);
    if (layout_.toText() != layoutBefore_)
        layout_.store(model_.state.bIsStudy);
}

void frmExplorer::openView(int view) {
    tree_->open(view);
    panelsAtFirst_ = ExplorerLayout::storedPanels();
    layout_ = ExplorerLayout::stored(model_.state.bIsStudy);
    layout_.giveTo(model_.list);
    list_->view()->listChanged();
    list_->view()->showColumns();
    layout_.takeFrom(model_.list);
    layoutBefore_ = layout_.toText();
    setShare(*imgSplitter_, layout_.tree);
    numberWindow();
    if (!gCatalogueOptions.ShowVarGroupInfo)
        for (ExplorerPanel* panel : {panelA_, panelB_})
            panel->sbStatusBarV->removeCell(u"Welle"_s);
    fixedFont_ = gOptions.FixedFont;
    propFont_ = gOptions.PropFont;
    for (ExplorerPanel* panel : {panelA_, panelB_})
        panel->setQuestionFont(propFont_);
    setWindowIcon(
        Icons::get(Icons::ofView(gViews.at(view, ViewTable::Type), gViews.at(view, ViewTable::CompAnalysis))));
}

/// One above the highest number among the windows of the view.
void frmExplorer::numberWindow() {
    int number = 1;
    for (const Form* form : Form::open())
        if (form != this && form->windowName() == windowName() && form->viewNumber() == viewNumber() &&
            form->Tag.toInt() >= number)
            number = form->Tag.toInt() + 1;
    Tag = model_.state.Tag = QString::number(number);
}

// ---- selecting

void frmExplorer::nodeShown(const CatalogueNode& node) {
    const BusyScope busy;
    list_->setTitle(node.Text);
    tree_->selectNode(node);
}

void frmExplorer::listFilled() {
    const BusyScope busy;
    rowShown_ = false;
    list_->fill();
    if (const CatalogueNode* node = model_.selectedNode())
        tree_->selectNode(*node);
}

void frmExplorer::clearPanelA() {
    panelA_->show(model_.panelA);
    pagesA_->showPages();
}

void frmExplorer::clearAssignmentList() {
    panelA_->showAssignments({});
    rowShown_ = false;
}

void frmExplorer::changing() {
    tree_->changing();
    list_->changing();
}

void frmExplorer::changed() {
    tree_->changed();
    list_->changed();
    showA();
    showB();
    rowShown_ = model_.assignmentsShown();
}

void frmExplorer::nodeRevealed(const CatalogueNode& node) {
    const BusyScope busy;
    tree_->selectNode(node);
    tree_->scrollToSelected();
    focusTree();
}

void frmExplorer::nodeBroughtIntoView(const CatalogueNode& node) {
    tree_->scrollTo(node);
}

void frmExplorer::rowRevealed(int row) {
    {
        const BusyScope busy;
        list_->view()->selectOnly(model_.list.placeOf(row));
        focusList();
    }
    lvListView_ItemClick(true);
    openPanelsSoon();
}

void frmExplorer::focusTree() {
    tree_->view()->setFocus();
}

void frmExplorer::focusList() {
    list_->view()->setFocus();
}

bool frmExplorer::showNode(const QString& key) {
    const CatalogueNode* node = model_.tree.find(key);
    if (!node)
        return false;
    nodeRevealed(*node);
    return model_.select(key);
}

std::vector<int> frmExplorer::selectedRows() const {
    return list_->selectedRows();
}

void frmExplorer::lvListView_ItemClick(bool assignments) {
    const int row = list_->rowToShow();
    if (row < 0)
        return;
    model_.list.selectedRow = row;
    rowShown_ = assignments;
    if (!model_.showRow(row, assignments))
        return;
    if (assignments) {
        showA();
    } else {
        panelA_->show(model_.panelA);
        pagesA_->showPages();
    }
    if (model_.state.bOpenSecondVarWindow)
        showB();
}

void frmExplorer::lvListView_DblClick() {
    const int row = list_->rowToShow();
    if (row < 0)
        return;
    const bool opening = model_.state.lVarWindow == 0;
    const bool shown = model_.showRowInB(row);
    if (opening) {
        layout_.list = layout_.panelA = 500;
        Form_Resize();
        panelsChosen();
        list_->view()->setFocus();
    }
    tree_->scrollToSelected();
    if (shown)
        showB();
}

void frmExplorer::showA() {
    panelA_->show(model_.panelA);
    panelA_->showAssignments(model_.DBList1);
    pagesA_->showPages();
}

void frmExplorer::showB() {
    panelB_->show(model_.panelB);
    panelB_->showAssignments(model_.DBList1_B);
    pagesB_->showPages();
}

// ---- panels

void frmExplorer::setPanels(int lVarWindow) {
    model_.state.lVarWindow = lVarWindow;
    layOut();
    if (lVarWindow > 0 && list_->view()->firstSelectedPlace() >= 0)
        lvListView_ItemClick(true);
    catchUpPages();
    panelsChosen();
}

/// Open or closed, the panels are from now on as the user wants them.
void frmExplorer::panelsChosen() {
    openPanels_.stop();
    panelsAtFirst_ = 0;
    ExplorerLayout::storePanels(model_.state.lVarWindow);
    desktop().panelsChanged();
}

/// Under a pointer that is about to click again, or that draws a selection, nothing may move: the panels wait for it.
void frmExplorer::openPanelsSoon() {
    if (panelsAtFirst_ > 0)
        openPanels_.start(QApplication::doubleClickInterval());
}

void frmExplorer::openPanelsNow() {
    if (QGuiApplication::mouseButtons() != Qt::NoButton || gBusy > 0)
        openPanels_.start();
    else if (panelsAtFirst_ > 0)
        onGesture([this] { setPanels(panelsAtFirst_); });
}

void frmExplorer::switchPanelLanguage() {
    switchChosen(false, u"english"_s);
}

void frmExplorer::switchChosen(bool panelB, const QString& key) {
    ExplorerState& state = model_.state;
    ExplorerPanel& panel = panelB ? *panelB_ : *panelA_;
    if (steps().contains(key)) {
        if (!panelB)
            moveA(steps()[key]);
        else if (model_.moveB(steps()[key]))
            showB();
    } else if (key == u"english") {
        if (panelB) {
            if (model_.switchLanguageB())
                showB();
        } else {
            state.bVarWindowForEnglishLanguage = !state.bVarWindowForEnglishLanguage;
            if (list_->rowToShow() >= 0) {
                lvListView_ItemClick(true);
            } else if (model_.panelA.refill(state)) { // its row is filtered away
                model_.fillA();
                showA();
            }
        }
    } else if (key == u"fixed") {
        panel.setQuestionFont(panel.questionFont() == fixedFont_ ? propFont_ : fixedFont_);
    } else if (key == u"list") {
        bool& shown = panelB ? state.bShowAssignListB : state.bShowAssignList;
        shown = !shown;
        Form_Resize();
    }
    showSwitches();
}

void frmExplorer::moveA(ExplorerModel::Step step) {
    const int place = model_.stepInList(step, list_->view()->currentPlace());
    if (place < 0)
        return;
    {
        const BusyScope busy;
        list_->view()->selectOnly(place);
    }
    lvListView_ItemClick(true);
}

void frmExplorer::showSwitches() {
    const ExplorerState& state = model_.state;
    const auto show = [this](ExplorerPanel& panel, bool english, bool list) {
        panel.sbStatusBarV->setOn(u"english"_s, english);
        panel.sbStatusBarV->setOn(u"fixed"_s, panel.questionFont() == fixedFont_);
        panel.sbStatusBarV->setOn(u"list"_s, list);
    };
    show(*panelA_, state.bVarWindowForEnglishLanguage, state.bShowAssignList);
    show(*panelB_, state.bELVV, state.bShowAssignListB);
}

void frmExplorer::MyDBList_DblClick(const QString& key) {
    const Jump jump = jumpOf(key, viewNumber(), model_.tree, [](int view) { return explorerOfView(view) != nullptr; });
    bool found = jump.to == Jump::To::NodeHere && showNode(key);
    if (jump.to == Jump::To::OtherWindow || jump.to == Jump::To::NewWindow) {
        const BusyScope busy;
        frmExplorer* other = jump.to == Jump::To::OtherWindow ? explorerOfView(jump.view) : OpenExplorerView(jump.view);
        desktop().activate(*other);
        found = other->showNode(key);
    }
    if (!found)
        ui::asker().messageBox({.text = TranslateText(u"Zuordnung nicht gefunden"_s)});
}

// ---- layout and looks

void frmExplorer::Form_Resize() {
    layOut();
    catchUpPages();
}

void frmExplorer::layOut() {
    if (isMinimized() || width() < twipsToPixels(*this, narrowest))
        return;
    const ExplorerState& state = model_.state;
    QWidget* const panelsA = panelA_->parentWidget();
    QWidget* const panelsB = panelB_->parentWidget();
    panelsB->setVisible(state.lVarWindow == 2);
    panelsA->setVisible(state.lVarWindow > 0);
    imgSplitter2_->setVisible(state.lVarWindow > 0);
    panelA_->arrange(gOptions.AlignSBVTop, state.bShowAssignList, gOptions.AssignListHeight);
    panelB_->arrange(gOptions.AlignSBVTop, state.bShowAssignListB, gOptions.AssignListHeight);
    setShare(*imgSplitter_, layout_.tree);
    setShare(*imgSplitter3_, layout_.list);
    setShare(*imgSplitter2_, layout_.panelA);
    for (ExplorerPanel* panel : {panelA_, panelB_})
        setShare(*panel->splValues, layout_.question);
    placePages();
    sharePlaces();
}

void frmExplorer::sharePlaces() {
    setShare(*imgSplitter4_, layout_.besideA);
    setShare(*imgSplitter5_, layout_.besideB);
}

/// A panel with hardly room for its own leaves none to its pages.
void frmExplorer::placePages() {
    const int least = leastPlace * fontMetrics().averageCharWidth();
    const int panels = model_.state.lVarWindow;
    const auto place = [&](ExplorerPages& pages, PanelPages& model, const QSplitter& room, bool open) {
        const bool shown = gOptions.ShowCards && (!open || !room.isVisible() || room.width() >= least);
        pages.setVisible(shown);
        model.setInSight(shown && open);
    };
    place(*pagesA_, model_.pagesA, *imgSplitter4_, panels > 0);
    place(*pagesB_, model_.pagesB, *imgSplitter5_, panels == 2);
}

/// What has come into view with the layout is read.
void frmExplorer::catchUpPages() {
    onGesture([this] {
        model_.pagesA.catchUp();
        model_.pagesB.catchUp();
    });
    pagesA_->showPages();
    pagesB_->showPages();
}

void frmExplorer::roomChanged() {
    const bool before[] = {pagesA_->isHidden(), pagesB_->isHidden()};
    placePages();
    if (before[0] == pagesA_->isHidden() && before[1] == pagesB_->isHidden())
        return;
    sharePlaces();
    catchUpPages();
}

void frmExplorer::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    roomChanged();
}

void frmExplorer::refreshPages() {
    onGesture([this] {
        if (model_.pagesA.refresh())
            pagesA_->showPages();
        if (model_.pagesB.refresh())
            pagesB_->showPages();
    });
}

void frmExplorer::pageTurned(bool panelB, int page) {
    onGesture([&] {
        (panelB ? model_.pagesB : model_.pagesA).turnTo(page);
        panelB ? model_.fillB() : model_.fillA();
    });
    if (panelB) {
        showB();
    } else {
        showA();
        rowShown_ = model_.panelA.isFilled();
    }
}

bool frmExplorer::showsFixedFont() const {
    return panelA_->questionFont() == fixedFont_;
}

void frmExplorer::ChangeFont() {
    const QString fixed = u"Courier New"_s;
    QFont font;
    font.setFamily(panelA_->questionFont() == fixed ? u"MS Sans Serif"_s : fixed);
    for (ExplorerPanel* panel : {panelA_, panelB_}) {
        panel->setQuestionFont(font.family());
        panel->DBList1->setFont(font);
        panel->fidName->setFont(font);
        panel->values->setFont(font);
    }
    list_->view()->setFont(font);
    showSwitches();
}

void frmExplorer::optionsApplied() {
    for (ExplorerPanel* panel : {panelA_, panelB_}) {
        if (panel->questionFont() == fixedFont_)
            panel->setQuestionFont(gOptions.FixedFont);
        else if (panel->questionFont() == propFont_)
            panel->setQuestionFont(gOptions.PropFont);
    }
    fixedFont_ = gOptions.FixedFont;
    propFont_ = gOptions.PropFont;
    showSwitches();
    Form_Resize();
}
