#pragma once

#include "explorer/CatalogueTree.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QIcon>
#include <QStyledItemDelegate>

/// The tree of a view's entries for a tree view.
class CatalogueTreeModel : public QAbstractItemModel {
public:
    /// @param tree not owned
    explicit CatalogueTreeModel(const CatalogueTree& tree, QObject* parent = nullptr);

    /// Shows nothing while the tree is being built; it may be painted meanwhile.
    void beginRebuilding();
    /// The tree is new.
    void endRebuilding();
    /// The root has another text.
    void rootChanged();
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
    const CatalogueTree& tree_;
    const CatalogueNode* root_ = nullptr;
    mutable QHash<int, QIcon> icons_;
};

/// Draws a node with its icon for a selected or expanded one.
class CatalogueNodeDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};
