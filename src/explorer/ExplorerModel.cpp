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
    Update_Listview(*node, force, state, list, *host_, state.ltreetype);
    return true;
}
