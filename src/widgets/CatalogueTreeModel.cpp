#include "widgets/CatalogueTreeModel.h"

#include "explorer/iconNames.h"
#include "widgets/Icons.h"

CatalogueTreeModel::CatalogueTreeModel(CatalogueTree& tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(&tree) {
    tree.watch(*this);
}

CatalogueTreeModel::~CatalogueTreeModel() {
    if (tree_)
        tree_->unwatch(*this);
}

void CatalogueTreeModel::inserting(const CatalogueNode* parent, int place) {
    beginInsertRows(indexOf(parent), place, place);
}

void CatalogueTreeModel::removing(const CatalogueNode& node) {
    beginRemoveRows(indexOf(node.Parent), node.Place, node.Place);
}

void CatalogueTreeModel::moving(const CatalogueNode& node, const CatalogueNode& parent, int before) {
    beginMoveRows(indexOf(node.Parent), node.Place, node.Place, indexOf(&parent), before);
}

void CatalogueTreeModel::changed(const CatalogueNode& node) {
    const QModelIndex index = indexOf(&node);
    Q_EMIT dataChanged(index, index);
}

void CatalogueTreeModel::expandedChanged(const CatalogueNode& node) {
    if (onExpanded)
        onExpanded(node);
}

QModelIndex CatalogueTreeModel::indexOf(const CatalogueNode* node) const {
    return node ? createIndex(node->Place, 0, node) : QModelIndex();
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
    return indexOf(parent.isValid() ? nodeOf(parent)->Children[static_cast<size_t>(row)] : root());
}

QModelIndex CatalogueTreeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? indexOf(nodeOf(index)->Parent) : QModelIndex();
}

int CatalogueTreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid())
        return root() ? 1 : 0;
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
