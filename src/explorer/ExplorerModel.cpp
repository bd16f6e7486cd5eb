#include "explorer/ExplorerModel.h"

#include "app/globals.h"
#include "config/Options.h"

void ExplorerModel::open(int view) {
    state = ExplorerState();
    state.ltreetype = static_cast<qint16>(view);
    state.bIsStudy = gViews.at(view, ViewTable::Type) == u"1";
    state.bELTree = state.bELVV = state.bVarWindowForEnglishLanguage = gOptions.EnglishLanguage;
    list = VariableList();
    list.makeColumns(state.bELTree);
    Update_TreeView(tree, view, state.bELTree);
}

bool ExplorerModel::select(const QString& key, bool force) {
    const CatalogueNode* node = tree.find(key);
    if (!node)
        return false;
    Update_Listview(*node, force, state, list, *this, state.ltreetype);
    return true;
}

bool ExplorerModel::showRow(int row, bool assignments) {
    const CatalogueNode* node = selectedNode();
    if (!node || row < 0 || row >= static_cast<int>(list.rows.size()))
        return false;
    const VariableRow& variable = list.rows[static_cast<size_t>(row)];
    if (!panelA.show(*node, variable.cell(1), variable.Text, state, list.recordset))
        return false;
    if (state.bOpenSecondVarWindow)
        showRowInB(row);
    if (assignments)
        Fill(DBList1, panelA.study(), panelA.variable(), state.bELTree);
    return true;
}

bool ExplorerModel::showRowInB(int row) {
    if (state.lVarWindow == 0)
        state.lVarWindow = 1;
    const CatalogueNode* node = selectedNode();
    if (!node || row < 0 || row >= static_cast<int>(list.rows.size()))
        return false;
    const VariableRow& variable = list.rows[static_cast<size_t>(row)];
    if (!panelB.show(*node, variable.cell(1), variable.Text, state))
        return false;
    Fill(DBList1_B, panelB.study(), panelB.variable(), state.bELTree);
    return true;
}

bool ExplorerModel::moveB(Step step) {
    if (!panelB.move(step, state))
        return false;
    Fill(DBList1_B, panelB.study(), panelB.variable(), state.bELTree);
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
    if (!texts_.isRead() && list.recordset)
        texts_.read(*list.recordset);
}

void ExplorerModel::setFilter(const QString& words) {
    filter_ = words;
    if (!words.isEmpty())
        prepareFilter();
    list.filterBy(texts_.matching(words));
}

void ExplorerModel::listFilled() {
    texts_.clear();
    // The filter was meant for the entry that was shown; what was only read again stays narrowed.
    setFilter(filteredId_ == state.sel_id ? filter_ : QString());
    filteredId_ = state.sel_id;
    list.selectedRow = list.shown.empty() ? -1 : list.shown.front();
    host_->listFilled();
}

void ExplorerModel::clearPanelA() {
    panelA.clear();
    host_->clearPanelA();
}

void ExplorerModel::clearAssignmentList() {
    DBList1.clear();
    host_->clearAssignmentList();
}
