#pragma once

#include "explorer/CatalogueTree.h"
#include "explorer/ExplorerState.h"
#include "explorer/VariableList.h"

/// One view of the open catalogue as an explorer shows it, without the window: its state, its tree and its
/// list.
class ExplorerModel {
public:
    ExplorerState state;
    CatalogueTree tree;
    VariableList list;

    /// The window that shows this model; not owned.
    explicit ExplorerModel(ListviewHost* host = nullptr) : host_(host ? host : &none_) {}

    /// Begins with a view, in the contents' language that is in force, and builds its tree.
    void open(int view);
    /// Shows the variables of a node. @return false if the tree has no node of that key
    bool select(const QString& key, bool force = false);

private:
    ListviewHost none_;
    ListviewHost* host_;
};
