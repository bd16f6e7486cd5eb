#pragma once

#include "explorer/ExplorerModel.h"

#include <QWidget>
#include <functional>
#include <vector>

class CatalogueTreeModel;
class QLabel;
class QTreeView;

/// The left side of the explorer: the tree of its view, and above it the entries that no way leads to.
class frmExplorerTree : public QWidget {
public:
    /// @param model not owned
    explicit frmExplorerTree(ExplorerModel& model);

    /// The user has chosen the node of that key.
    std::function<void(const QString& key)> onChosen;

    /// Has the model read the tree of a view, and shows it with nothing selected.
    void open(int view);
    void selectNode(const CatalogueNode& node);
    /// Until changed() the tree changes in place, or is another: whatever is in view stays there.
    void changing();
    void changed();
    void scrollToSelected();
    void scrollTo(const CatalogueNode& node);
    QTreeView* view() const { return tvTreeView_; }
    /// Titles beside each other stand on one line.
    void setTitleHeight(int height);
    /// Texts in the language in force.
    void refreshTitles();

private:
    ExplorerModel& model_;
    QLabel *lblTitle0_, *lblUnreached_;
    QTreeView* tvTreeView_;
    CatalogueTreeModel* treeModel_;
    /// Where the tree is scrolled to: keys of the nodes from the first one in view.
    struct Scrolled {
        QStringList keys = {};
        int above = 0, across = 0; ///< pixels of the first one that are out of view; the horizontal bar
    } scrolled_;

    void build();
    void connectTree();
    void nodesReset();
    void reportUnreached();
};
