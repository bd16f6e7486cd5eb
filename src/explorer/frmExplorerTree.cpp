#include "explorer/frmExplorerTree.h"

#include "app/globals.h"
#include "explorer/iconNames.h"
#include "widgets/CatalogueTreeModel.h"
#include "widgets/Form.h"
#include "widgets/gestures.h"
#include "widgets/toolTips.h"

#include <QLabel>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// "Alle Studien (Originalsprache)", in the language of the labels, by the language of the contents.
QString allEntriesTitle(int view, bool english) {
    return said(u"Alle "_s, u"All "_s) + viewName(view) +
           (english ? said(u" (Englisch)"_s, u" (English)"_s)
                    : said(u" (Originalsprache)"_s, u" (Original Language)"_s));
}

} // namespace

frmExplorerTree::frmExplorerTree(ExplorerModel& model) : model_(model) {
    build();
    connectTree();
}

void frmExplorerTree::connectTree() {
    const auto nodeChosen = [this] {
        onGesture([this] {
            if (const QModelIndex node = tvTreeView_->currentIndex();
                node.isValid() && tvTreeView_->selectionModel()->isSelected(node))
                // The key's own copy: the node may go while its variables are listed.
                onChosen(QString(CatalogueTreeModel::nodeOf(node)->Key));
        });
    };
    connect(tvTreeView_->selectionModel(), &QItemSelectionModel::selectionChanged, this, nodeChosen);
    connect(tvTreeView_, &QTreeView::clicked, this, nodeChosen);
    // The tree itself knows what is expanded, so that it is kept whatever becomes of the view's own rows.
    const auto opened = [this](bool expanded) {
        return [this, expanded](const QModelIndex& node) {
            model_.tree.setExpanded(CatalogueTreeModel::nodeOf(node)->Key, expanded);
        };
    };
    connect(tvTreeView_, &QTreeView::expanded, this, opened(true));
    connect(tvTreeView_, &QTreeView::collapsed, this, opened(false));
    treeModel_->onExpanded = [this](const CatalogueNode& node) {
        tvTreeView_->setExpanded(treeModel_->indexOf(&node), node.Expanded);
    };
    connect(treeModel_, &CatalogueTreeModel::modelReset, this, [this] { nodesReset(); });
}

void frmExplorerTree::build() {
    // The beginnings of the entries are to be told apart in a narrow window too.
    setMinimumWidth(fontMetrics().averageCharWidth() * 16);
    lblTitle0_ = withOwnText(new QLabel, arrayName(u"lblTitle"_s, 0));
    lblTitle0_->setTextFormat(Qt::PlainText);
    lblTitle0_->setWordWrap(true);
    lblUnreached_ = withOwnText(new QLabel, u"lblUnreached"_s);
    lblUnreached_->setTextFormat(Qt::PlainText);
    lblUnreached_->setWordWrap(true);
    lblUnreached_->setMinimumWidth(1);
    lblUnreached_->setFrameShape(QFrame::StyledPanel);
    tvTreeView_ = withOwnText(new QTreeView, u"tvTreeView"_s);
    treeModel_ = new CatalogueTreeModel(model_.tree, tvTreeView_);
    tvTreeView_->setModel(treeModel_);
    tvTreeView_->setItemDelegate(new CatalogueNodeDelegate(tvTreeView_));
    tvTreeView_->setHeaderHidden(true);
    tvTreeView_->setUniformRowHeights(true);
    const int line = qMax(16, fontMetrics().height());
    tvTreeView_->setIconSize({line, line});
    tvTreeView_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(lblTitle0_);
    column->addWidget(lblUnreached_);
    column->addWidget(tvTreeView_, 1);
}

void frmExplorerTree::open(int view) {
    model_.open(view);
}

void frmExplorerTree::nodesReset() {
    const CatalogueTree& tree = model_.tree;
    for (const CatalogueNode& node : tree.nodes())
        if (node.Expanded)
            tvTreeView_->expand(treeModel_->indexOf(&node));
    const BusyScope busy;
    tvTreeView_->setCurrentIndex(treeModel_->indexOf(model_.selectedNode()));
}

void frmExplorerTree::changing() {
    const bool perPixel = tvTreeView_->verticalScrollMode() == QAbstractItemView::ScrollPerPixel;
    scrolled_ = {.across = tvTreeView_->horizontalScrollBar()->value()};
    const int end = tvTreeView_->viewport()->height();
    QModelIndex node = tvTreeView_->indexAt({0, 0});
    if (node.isValid() && perPixel)
        scrolled_.above = -tvTreeView_->visualRect(node).top();
    for (; node.isValid() && tvTreeView_->visualRect(node).top() < end; node = tvTreeView_->indexBelow(node))
        scrolled_.keys << CatalogueTreeModel::nodeOf(node)->Key;
    tvTreeView_->setAutoScroll(false);
}

void frmExplorerTree::changed() {
    if (const CatalogueNode* selected = model_.selectedNode())
        selectNode(*selected);
    for (const QString& key : scrolled_.keys) {
        const CatalogueNode* node = model_.tree.find(key);
        const auto isClosed = [](const CatalogueNode* above) { return above && !above->Expanded; };
        bool hidden = !node;
        for (const CatalogueNode* above = node; above && !hidden; above = above->Parent)
            hidden = isClosed(above->Parent);
        if (hidden)
            continue;
        tvTreeView_->scrollTo(treeModel_->indexOf(node), QAbstractItemView::PositionAtTop);
        if (key == scrolled_.keys.front() && scrolled_.above > 0)
            tvTreeView_->verticalScrollBar()->setValue(tvTreeView_->verticalScrollBar()->value() + scrolled_.above);
        break;
    }
    tvTreeView_->horizontalScrollBar()->setValue(scrolled_.across);
    tvTreeView_->setAutoScroll(true);
    reportUnreached();
}

void frmExplorerTree::selectNode(const CatalogueNode& node) {
    tvTreeView_->setCurrentIndex(treeModel_->indexOf(&node));
}

void frmExplorerTree::scrollTo(const CatalogueNode& node) {
    tvTreeView_->scrollTo(treeModel_->indexOf(&node));
}

void frmExplorerTree::scrollToSelected() {
    tvTreeView_->scrollTo(tvTreeView_->currentIndex());
}

void frmExplorerTree::setTitleHeight(int height) {
    lblTitle0_->setMinimumHeight(height);
}

void frmExplorerTree::refreshTitles() {
    const int view = model_.state.ltreetype;
    lblTitle0_->setText(allEntriesTitle(view, model_.state.bELTree));
    model_.tree.setRootText(viewName(view));
    tvTreeView_->setAccessibleName(lblTitle0_->text());
    reportUnreached();
}

void frmExplorerTree::reportUnreached() {
    constexpr size_t named = 20;
    const std::vector<UnreachedEntry>& entries = model_.unreached();
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
    lblUnreached_->setToolTip(plainToolTip(texts.join(u'\n')));
}
