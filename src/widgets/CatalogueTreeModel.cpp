#include "widgets/CatalogueTreeModel.h"

#include "explorer/iconNames.h"
#include "widgets/Icons.h"

CatalogueTreeModel::CatalogueTreeModel(const CatalogueTree& tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree), root_(tree.root()) {}

void CatalogueTreeModel::beginRebuilding() {
    beginResetModel();
    root_ = nullptr;
    endResetModel();
}

void CatalogueTreeModel::endRebuilding() {
    beginResetModel();
    root_ = tree_.root();
    endResetModel();
}

void CatalogueTreeModel::rootChanged() {
    Q_EMIT dataChanged(indexOf(root_), indexOf(root_));
}

QModelIndex CatalogueTreeModel::indexOf(const CatalogueNode* node) const {
    return node && root_ ? createIndex(node->Place, 0, node) : QModelIndex();
}

const CatalogueNode* CatalogueTreeModel::nodeOf(const QModelIndex& index) {
    return static_cast<const CatalogueNode*>(index.constInternalPointer());
}

QIcon CatalogueTreeModel::icon(int number) const {
    const auto known = icons_.constFind(number);
    return known != icons_.constEnd() ? *known : *icons_.insert(number, Icons::get(iconName(number)));
}

QModelIndex CatalogueTreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (!hasIndex(row, column, parent))
        return {};
    return indexOf(parent.isValid() ? nodeOf(parent)->Children[static_cast<size_t>(row)] : root_);
}

QModelIndex CatalogueTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? indexOf(nodeOf(index)->Parent) : QModelIndex();
}

int CatalogueTreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return root_ ? 1 : 0;
    return static_cast<int>(nodeOf(parent)->Children.size());
}

QVariant CatalogueTreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    if (role == Qt::DisplayRole)
        return nodeOf(index)->Text;
    if (role == Qt::DecorationRole)
        return icon(nodeOf(index)->Image);
    return {};
}

void CatalogueNodeDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const CatalogueNode* node = CatalogueTreeModel::nodeOf(index);
    const auto* model = static_cast<const CatalogueTreeModel*>(index.model());
    if (option->state & QStyle::State_Selected)
        option->icon = model->icon(node->SelectedImage);
    else if (option->state & QStyle::State_Open)
        option->icon = model->icon(node->ExpandedImage);
}
