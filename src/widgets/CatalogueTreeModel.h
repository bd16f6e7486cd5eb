#pragma once

#include "explorer/CatalogueTree.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>
#include <QStyledItemDelegate>
#include <functional>

/// The tree of a view's entries for a tree view, which hears of every change in place.
class CatalogueTreeModel : public QAbstractItemModel, private CatalogueTreeWatcher {
public:
    /// @param tree not owned; once it is gone the model is empty
    explicit CatalogueTreeModel(CatalogueTree& tree, QObject* parent = nullptr);
    ~CatalogueTreeModel() override;

    /// A node of the tree is to be shown with its children, or without.
    std::function<void(const CatalogueNode&)> onExpanded;

    QModelIndex indexOf(const CatalogueNode* node) const;
    static const CatalogueNode* nodeOf(const QModelIndex& index);
    /// Icon of a number, read once.
    QIcon icon(int number) const;

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& = {}) const override { return 1; }
    QVariant data(const QModelIndex& index, int role) const override;

private:
    CatalogueTree* tree_;
    mutable QHash<int, QIcon> icons_;

    const CatalogueNode* root() const { return tree_ ? tree_->root() : nullptr; }
    void resetting() override { beginResetModel(); }
    void reset() override { endResetModel(); }
    void inserting(const CatalogueNode* parent, int place) override;
    void inserted() override { endInsertRows(); }
    void removing(const CatalogueNode& node) override;
    void removed() override { endRemoveRows(); }
    void moving(const CatalogueNode& node, const CatalogueNode& parent, int before) override;
    void moved() override { endMoveRows(); }
    void changed(const CatalogueNode& node) override;
    void expandedChanged(const CatalogueNode& node) override;
    void treeGone() override { tree_ = nullptr; }
};

/// Draws a node with its icon for a selected or expanded one.
class CatalogueNodeDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
