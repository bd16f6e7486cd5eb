#include "explorer/frmExplorer.h"

#include "config/Options.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "widgets/CatalogueTreeModel.h"
#include "widgets/Desktop.h"
#include "widgets/ElidedLabel.h"
#include "widgets/ExplorerPanel.h"
#include "widgets/FactsStrip.h"
#include "widgets/Icons.h"
#include "widgets/VariableListView.h"
#include "widgets/notBuilt.h"
#include "widgets/twips.h"

#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSplitter>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

constexpr int narrowest = 3000; ///< twips; a window narrower than this is not laid out

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
    showSwitches();
    refreshTitles();
    Form_Resize();
    applyNotBuilt(*this);
    // Whoever opens a view looks for an entry of its tree first.
    tvTreeView_->setFocus();
}

frmExplorer::~frmExplorer() {
    layout_.takeFrom(model_.list);
    if (layout_.toText() != layoutBefore_)
        layout_.store(model_.state.bIsStudy);
}

void frmExplorer::openView(int view) {
    treeModel_->beginRebuilding();
    model_.open(view);
    treeModel_->endRebuilding();
    tvTreeView_->expand(treeModel_->indexOf(model_.tree.root()));
    tvTreeView_->setCurrentIndex({});
    layout_ = ExplorerLayout::stored(model_.state.bIsStudy);
    layout_.giveTo(model_.list);
    lvListView_->listChanged();
    lvListView_->showColumns();
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
    if (!model_.tree.CutShort)
        unreached_ = unreachedEntries(model_.tree, view, model_.state.bELTree);
    setWindowIcon(
        Icons::get(Icons::ofView(gViews.at(view, ViewTable::Type), gViews.at(view, ViewTable::CompAnalysis))));
    reportUnreached();
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

void frmExplorer::reportUnreached() {
    constexpr size_t named = 20;
    const std::vector<UnreachedEntry>& entries = unreached_;
    QStringList texts;
    for (size_t i = 0; i < entries.size() && i < named; ++i)
        texts << u"%1 (%2)"_s.arg(entries[i].text.left(60), entries[i].key.left(60));
    if (entries.size() > named)
        texts << u"…"_s;
    lblUnreached_->setVisible(!entries.empty() || model_.tree.CutShort);
    if (model_.tree.CutShort) {
        lblUnreached_->setText(TranslateText(u"Das Lesen wurde angehalten: Es fehlen Einträge."_s));
        lblUnreached_->setToolTip(TranslateText(u"Öffnen Sie die Sicht noch einmal, um alle zu sehen."_s));
        return;
    }
    lblUnreached_->setText(TranslateText(u"Einträge, zu denen kein Weg führt:"_s) + u' ' +
                           QString::number(entries.size()) + u"\n"_s + texts.mid(0, 3).join(u", "_s) +
                           (entries.size() > 3 ? u", …"_s : QString()));
    lblUnreached_->setToolTip(u"<p>"_s + texts.join(u'\n').toHtmlEscaped().replace(u'\n', u"<br>"_s) + u"</p>"_s);
}

// ---- selecting

void frmExplorer::nodeShown(const CatalogueNode& node) {
    const BusyScope busy;
    lblTitle1_->setText(node.Text);
    tvTreeView_->setCurrentIndex(treeModel_->indexOf(&node));
}

void frmExplorer::listFilled() {
    const BusyScope busy;
    rowShown_ = false;
    txtQuickFilter_->setText(model_.filter());
    lvListView_->listChanged();
    lvListView_->showColumns();
    if (const int place = model_.list.placeOf(model_.list.selectedRow); place >= 0)
        lvListView_->selectOnly(place);
    showRowCount();
    if (const CatalogueNode* node = model_.selectedNode())
        tvTreeView_->setCurrentIndex(treeModel_->indexOf(node));
}

void frmExplorer::clearPanelA() {
    panelA_->show(model_.panelA);
}

void frmExplorer::clearAssignmentList() {
    panelA_->showAssignments({});
    rowShown_ = false;
}

bool frmExplorer::showNode(const QString& key) {
    const CatalogueNode* node = model_.tree.find(key);
    if (!node)
        return false;
    {
        const BusyScope busy;
        tvTreeView_->setCurrentIndex(treeModel_->indexOf(node));
        tvTreeView_->scrollTo(treeModel_->indexOf(node));
    }
    tvTreeView_->setFocus();
    return model_.select(key);
}

std::vector<int> frmExplorer::selectedRows() const {
    std::vector<int> rows = lvListView_->selectedPlaces();
    for (int& row : rows)
        row = model_.list.shown[static_cast<size_t>(row)];
    return rows;
}

int frmExplorer::rowToShow() const {
    const int first = lvListView_->firstSelectedPlace();
    const int place = first >= 0 ? first : lvListView_->currentPlace();
    return place < 0 ? -1 : model_.list.shown[static_cast<size_t>(place)];
}

void frmExplorer::lvListView_ItemClick(bool assignments) {
    const int row = rowToShow();
    if (row < 0)
        return;
    model_.list.selectedRow = row;
    rowShown_ = assignments;
    if (!model_.showRow(row, assignments))
        return;
    panelA_->show(model_.panelA);
    if (assignments)
        panelA_->showAssignments(model_.DBList1);
    if (model_.state.bOpenSecondVarWindow)
        showB();
}

void frmExplorer::lvListView_DblClick() {
    const int row = rowToShow();
    if (row < 0)
        return;
    const bool opening = model_.state.lVarWindow == 0;
    const bool shown = model_.showRowInB(row);
    if (opening) {
        layout_.list = layout_.panelA = 500;
        Form_Resize();
        desktop().panelsChanged();
        lvListView_->setFocus();
    }
    tvTreeView_->scrollTo(tvTreeView_->currentIndex());
    if (shown)
        showB();
}

void frmExplorer::showB() {
    panelB_->show(model_.panelB);
    panelB_->showAssignments(model_.DBList1_B);
}

// ---- order and extent of the list

std::vector<int> frmExplorer::selectedPositions() const {
    std::vector<int> positions = selectedRows();
    for (int& row : positions)
        row = model_.list.rows[static_cast<size_t>(row)].Position;
    return positions;
}

int frmExplorer::currentPosition() const {
    const int place = lvListView_->currentPlace();
    if (place < 0)
        return -1;
    const int row = model_.list.shown[static_cast<size_t>(place)];
    return model_.list.rows[static_cast<size_t>(row)].Position;
}

void frmExplorer::headerChosen(int column) {
    const std::vector<int> selected = selectedPositions();
    const int current = currentPosition();
    model_.list.headerClicked(column);
    listOrderChanged(selected, current);
    lvListView_->showColumns();
}

void frmExplorer::filterChanged() {
    const std::vector<int> selected = selectedPositions();
    const int current = currentPosition();
    model_.setFilter(txtQuickFilter_->text());
    listOrderChanged(selected, current);
    showRowCount();
}

/// Rows that are still in view stay selected; the others are not.
void frmExplorer::listOrderChanged(const std::vector<int>& selected, int current) {
    const BusyScope busy;
    const VariableList& list = model_.list;
    lvListView_->listChanged();
    std::vector<bool> wanted(list.rows.size());
    for (const int position : selected)
        wanted[static_cast<size_t>(position)] = true;
    std::vector<int> places;
    int currentPlace = -1;
    for (size_t place = 0; place < list.shown.size(); ++place) {
        const int position = list.rows[static_cast<size_t>(list.shown[place])].Position;
        if (wanted[static_cast<size_t>(position)])
            places.push_back(static_cast<int>(place));
        if (position == current)
            currentPlace = static_cast<int>(place);
    }
    lvListView_->selectPlaces(places, currentPlace);
    model_.list.selectedRow = rowToShow();
}

void frmExplorer::showRowCount() {
    const QString all = QString::number(model_.list.rows.size());
    const QString shown = QString::number(model_.list.shown.size());
    lblRowCount_->setText((model_.filter().isEmpty() ? all : shown + u' ' + TranslateText(u"von"_s) + u' ' + all) +
                          u' ' + TranslateText(model_.list.rows.size() == 1 ? u"Variable"_s : u"Variablen"_s));
    // An entry without variables is no fault, and says nothing.
    lvListView_->setHint(!model_.selectedNode()
                             ? TranslateText(u"Wählen Sie links einen Eintrag, um seine Variablen zu sehen."_s)
                         : model_.list.rows.empty() ? QString()
                                                    : TranslateText(u"Zum Schnellfilter passt keine Variable."_s));
}

// ---- panels

void frmExplorer::setPanels(int lVarWindow) {
    model_.state.lVarWindow = lVarWindow;
    Form_Resize();
    if (lVarWindow > 0 && lvListView_->firstSelectedPlace() >= 0)
        lvListView_ItemClick(true);
    desktop().panelsChanged();
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
        bool& english = panelB ? state.bELVV : state.bVarWindowForEnglishLanguage;
        english = !english;
        if (panelB) {
            if (model_.panelB.refill(state))
                panelB_->show(model_.panelB);
        } else if (rowToShow() >= 0) {
            lvListView_ItemClick(true);
        } else if (model_.panelA.refill(state)) {
            panelA_->show(model_.panelA); // its row is filtered away
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
    const int place = model_.stepInList(step, lvListView_->currentPlace());
    if (place < 0)
        return;
    {
        const BusyScope busy;
        lvListView_->selectOnly(place);
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
}

void frmExplorer::ChangeFont() {
    const QString fixed = u"Courier New"_s;
    QFont font;
    font.setFamily(panelA_->questionFont() == fixed ? u"MS Sans Serif"_s : fixed);
    for (ExplorerPanel* panel : {panelA_, panelB_}) {
        panel->setQuestionFont(font.family());
        panel->DBList1->setFont(font);
        panel->fidName->setFont(font);
    }
    lvListView_->setFont(font);
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
