#include "explorer/frmExplorerTree.h"

#include "app/globals.h"
#include "explorer/iconNames.h"
#include "widgets/CatalogueTreeModel.h"
#include "widgets/Form.h"
#include "widgets/gestures.h"
#include "widgets/toolTips.h"

#include <QLabel>
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
    const auto nodeChosen = [this] {
        onGesture([this] {
            if (const QModelIndex node = tvTreeView_->currentIndex();
                node.isValid() && tvTreeView_->selectionModel()->isSelected(node))
                onChosen(CatalogueTreeModel::nodeOf(node)->Key);
        });
    };
    connect(tvTreeView_->selectionModel(), &QItemSelectionModel::selectionChanged, this, nodeChosen);
    connect(tvTreeView_, &QTreeView::clicked, this, nodeChosen);
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
    treeModel_->beginRebuilding();
    model_.open(view);
    treeModel_->endRebuilding();
    tvTreeView_->expand(treeModel_->indexOf(model_.tree.root()));
    tvTreeView_->setCurrentIndex({});
    if (!model_.tree.CutShort)
        unreached_ = unreachedEntries(model_.tree, view, model_.state.bELTree);
}

void frmExplorerTree::selectNode(const CatalogueNode& node) {
    tvTreeView_->setCurrentIndex(treeModel_->indexOf(&node));
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
    treeModel_->rootChanged();
    tvTreeView_->setAccessibleName(lblTitle0_->text());
    reportUnreached();
}

void frmExplorerTree::reportUnreached() {
    constexpr size_t named = 20;
    const std::vector<UnreachedEntry>& entries = unreached_;
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
