#include "explorer/ExplorerModel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"

namespace {

std::vector<ExplorerModel*>& living() {
    static std::vector<ExplorerModel*> models;
    return models;
}

} // namespace

ExplorerModel::ExplorerModel(ListviewHost* host) : host_(host ? host : &none_) {
    living().push_back(this);
}

ExplorerModel::~ExplorerModel() {
    std::erase(living(), this);
}

const std::vector<ExplorerModel*>& ExplorerModel::open() {
    return living();
}

void ExplorerModel::open(int view) {
    state = ExplorerState();
    state.ltreetype = static_cast<qint16>(view);
    state.bIsStudy = gViews.at(view, ViewTable::Type) == u"1";
    state.bELTree = state.bELVV = state.bVarWindowForEnglishLanguage = gOptions.EnglishLanguage;
    list = VariableList();
    ownRows_ = false;
    search_.clear();
    list.makeColumns(state.bELTree);
    // Beside the tree that may be in view: reading gives event turns.
    CatalogueTree fresh;
    Update_TreeView(fresh, view, state.bELTree);
    tree.clear();
    tree.replaceBy(fresh);
    readUnreached();
}

bool ExplorerModel::select(const QString& key, bool force) {
    const CatalogueNode* node = tree.find(key);
    if (!node)
        return false;
    if (force)
        search_.clear();
    Update_Listview(*node, force, state, list, *this, state.ltreetype);
    return true;
}

const CatalogueNode* ExplorerModel::nodeOf(const VariableRow& row) const {
    return searchesView() ? tree.find(search_.nodeOf(row.Position)) : selectedNode();
}

bool ExplorerModel::showRow(int row, bool assignments) {
    if (row < 0 || row >= static_cast<int>(list.rows.size()))
        return false;
    const VariableRow& variable = list.rows[static_cast<size_t>(row)];
    const CatalogueNode* node = nodeOf(variable);
    if (!node || !panelA.show(*node, variable.cell(1), variable.Text, state,
                              searchesView() ? dao::RecordsetPtr() : list.recordset))
        return false;
    if (state.bOpenSecondVarWindow)
        showRowInB(row);
    if (assignments)
        fillA();
    else {
        assignmentsShown_ = false;
        pagesA.empty();
    }
    return true;
}

bool ExplorerModel::showRowInB(int row) {
    if (state.lVarWindow == 0)
        state.lVarWindow = 1;
    if (row < 0 || row >= static_cast<int>(list.rows.size()))
        return false;
    const VariableRow& variable = list.rows[static_cast<size_t>(row)];
    const CatalogueNode* node = nodeOf(variable);
    if (!node || !panelB.show(*node, variable.cell(1), variable.Text, state))
        return false;
    fillB();
    return true;
}

bool ExplorerModel::moveB(Step step) {
    if (!panelB.move(step, state))
        return false;
    fillB();
    return true;
}

void ExplorerModel::fillA() {
    if (!panelA.isFilled())
        return;
    assignmentsShown_ = true;
    Fill(DBList1, gDatabase.CurrentDatabase(), panelA.study(), panelA.variable(), state.bELTree);
    pagesA.fill(panelA.study(), panelA.variable(), state.bVarWindowForEnglishLanguage);
}

void ExplorerModel::fillB() {
    if (!panelB.isFilled())
        return;
    Fill(DBList1_B, gDatabase.CurrentDatabase(), panelB.study(), panelB.variable(), state.bELTree);
    pagesB.fill(panelB.study(), panelB.variable(), state.bELVV);
}

bool ExplorerModel::switchLanguageB() {
    state.bELVV = !state.bELVV;
    if (!panelB.refill(state))
        return false;
    fillB();
    return true;
}

int ExplorerModel::stepInList(Step step, int current) const {
    const int count = static_cast<int>(list.shown.size());
    switch (step) {
    case Step::First:
        return count > 0 ? 0 : -1;
    case Step::Back:
        return current > 0 && current < count ? current - 1 : -1;
    case Step::Next:
        return current >= 0 && current + 1 < count ? current + 1 : -1;
    case Step::Last:
        return count - 1;
    }
    return -1;
}

void ExplorerModel::prepareFilter() {
    if (searchesView() && !search_.isRead())
        search_.read(tree, state, list);
    else if (!searchesView() && !texts_.isRead() && list.recordset)
        texts_.read(*list.recordset);
}

void ExplorerModel::setFilter(const QString& words) {
    filter_ = words.trimmed().isEmpty() ? QString() : words;
    if (!filter_.isEmpty())
        prepareFilter();
    if (searchesView())
        searchView();
    else
        list.filterBy(texts_.matching(words));
}

void ExplorerModel::searchView() {
    list.rows.clear();
    list.selectedRow = -1;
    found_ = search_.find(filter_, list.rows);
    list.filterBy({});
    list.sort();
}

int ExplorerModel::found() const {
    return searchesView() ? found_ : static_cast<int>(list.shown.size());
}

int ExplorerModel::searched() const {
    return searchesView() ? search_.size() : static_cast<int>(list.rows.size());
}

void ExplorerModel::listFilled() {
    texts_.clear();
    ownRows_ = !list.rows.empty();
    // The filter was meant for the entry that was shown; what was only read again stays narrowed.
    setFilter(filteredId_ == state.sel_id ? filter_ : QString());
    filteredId_ = state.sel_id;
    list.selectedRow = list.shown.empty() ? -1 : list.shown.front();
    if (standing_ && !standing_->wasEmpty()) {
        const std::vector<int> selected = standing_->in(list).selected;
        list.selectedRow = selected.empty() ? -1 : list.shown[static_cast<size_t>(selected.front())];
    }
    host_->listFilled();
}

void ExplorerModel::itemClick() {
    if (!standing_)
        host_->itemClick();
}

void ExplorerModel::clearPanelA() {
    if (standing_)
        return;
    panelA.clear();
    pagesA.empty();
    host_->clearPanelA();
}

void ExplorerModel::clearAssignmentList() {
    if (standing_)
        return;
    assignmentsShown_ = false;
    DBList1.clear();
    host_->clearAssignmentList();
}
