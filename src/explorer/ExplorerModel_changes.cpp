#include "explorer/ExplorerModel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/schema.h"
#include "explorer/EntryColumns.h"
#include "platform/dao/TextOrder.h"

#include <QScopedValueRollback>
#include <algorithm>
#include <optional>

// Taking over what was written to the catalogue.

using namespace Qt::StringLiterals;

namespace {

bool sameText(const QString& a, const QString& b) {
    return dao::compareTexts(a, b) == 0;
}

int depthOf(const CatalogueNode& node) {
    int depth = 0;
    for (const CatalogueNode* above = node.Parent; above; above = above->Parent)
        ++depth;
    return depth;
}

/// Levels below a node.
int heightOf(const CatalogueNode& top) {
    const int own = depthOf(top);
    int height = 0;
    for (const CatalogueNode* node = &top; node; node = nextWithin(top, *node))
        if (node->Children.empty())
            height = std::max(height, depthOf(*node) - own);
    return height;
}

/// Studies come in the order of their parents' keys, so a group's row comes before those of its members only if its own
/// parent's key comes before its own.
bool isReadBeforeItsMembers(const CatalogueNode& node) {
    return !node.Parent || dao::compareTexts(node.Parent->id(), node.id()) < 0;
}

/// Where one stands in a tree that was read anew: at the node itself, or at the nearest that is there.
QString standingIn(const CatalogueTree& fresh, const CatalogueNode& node) {
    for (const CatalogueNode* at = &node; at->Parent; at = at->Parent) {
        const std::vector<CatalogueNode*>& siblings = at->Parent->Children;
        const auto isThere = [&](const CatalogueNode* sibling) { return fresh.find(sibling->Key) != nullptr; };
        const auto own = siblings.begin() + at->Place;
        if (const auto found = std::find_if(own, siblings.end(), isThere); found != siblings.end())
            return (*found)->Key;
        const auto before = std::make_reverse_iterator(own);
        if (const auto found = std::find_if(before, siblings.rend(), isThere); found != siblings.rend())
            return (*found)->Key;
    }
    return fresh.root() ? fresh.root()->Key : QString();
}

QString inView(const QString& key, int view) {
    return key.isEmpty() ? key : viewLetter(view) + key.mid(1);
}

/// A change as a model of a view takes it: views may share a table, and a category lists variables that a study loses
/// or gets again.
std::optional<CatalogueChange> asSeenFrom(int view, const CatalogueChange& change) {
    using Kind = CatalogueChange::Kind;
    if (view == change.view)
        return change;
    const auto table = [](int of) { return schema::entryTableName(gViews.at(of, ViewTable::Table)); };
    if (isStudyView(view) == isStudyView(change.view) && sameText(table(view), table(change.view))) {
        CatalogueChange same = change;
        same.view = view;
        same.key = inView(change.key, view);
        same.parentKey = inView(change.parentKey, view);
        return same;
    }
    const bool variables = change.kind == Kind::Added || change.kind == Kind::Removed || change.kind == Kind::Rows;
    if (isStudyView(change.view) && variables)
        return CatalogueChange{.kind = Kind::Rows, .view = view};
    return {};
}

} // namespace

/// While it lives the model and its window change in place.
class ExplorerModel::Change {
public:
    explicit Change(ExplorerModel& model) : model_(model) {
        if (model_.changing_++ == 0)
            model_.host_->changing();
    }
    ~Change() {
        if (--model_.changing_ == 0)
            model_.host_->changed();
    }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

private:
    BusyScope busy_; ///< ends behind the last word to the window
    ExplorerModel& model_;
};

void announce(const CatalogueChanges& changes) {
    if (changes.empty())
        return;
    const BusyScope busy;
    const std::vector<ExplorerModel*> models = ExplorerModel::open();
    for (ExplorerModel* model : models)
        // Reading a tree gives event turns, in which a window may go.
        if (std::ranges::count(ExplorerModel::open(), model))
            model->take(changes);
}

void ExplorerModel::take(const CatalogueChanges& changes) {
    const int view = state.ltreetype;
    std::vector<CatalogueChange> mine;
    bool assignments = false;
    const bool told = std::ranges::count(changes, view, &CatalogueChange::view) > 0;
    for (const CatalogueChange& change : changes) {
        if (const std::optional<CatalogueChange> seen =
                told && change.view != view ? std::nullopt : asSeenFrom(view, change))
            mine.push_back(*seen);
        assignments |= !isStudyView(change.view) && (panelA.isFilled() || panelB.isFilled());
    }
    if (view == 0 || (mine.empty() && !assignments))
        return;
    const Change scope(*this);
    Pending pending{.assignments = assignments};
    for (const CatalogueChange& change : mine)
        apply(change, pending);
    finish(pending);
}

void ExplorerModel::rebuild() {
    const Change scope(*this);
    finish({.tree = true});
}

void ExplorerModel::refreshPanels() {
    const Change scope(*this);
    finish({.rows = true, .panels = true});
}

bool ExplorerModel::reveal(const QString& key) {
    const CatalogueNode* node = tree.find(key);
    if (!node)
        return false;
    const QString found = node->Key;
    {
        const BusyScope busy;
        host_->nodeRevealed(*node);
    }
    if (!sameText(found, list.Tag))
        return select(found, true);
    refreshPanels();
    return true;
}

bool ExplorerModel::bringIntoView(const QString& key) {
    const CatalogueNode* node = tree.find(key);
    if (node)
        host_->nodeBroughtIntoView(*node);
    return node;
}

bool ExplorerModel::revealRow(int row) {
    if (list.placeOf(row) < 0)
        return false;
    list.selectedRow = row;
    host_->rowRevealed(row);
    return true;
}

// ---- one change

void ExplorerModel::apply(const CatalogueChange& change, Pending& pending) {
    using Kind = CatalogueChange::Kind;
    const bool searching = searchesView() && !filter_.isEmpty();
    switch (change.kind) {
    case Kind::Added:
        pending.rows |= searching;
        search_.clear();
        pending.tree |= !pending.tree && !insert(change);
        break;
    case Kind::Renamed:
        pending.tree |= !pending.tree && !rename(change, pending);
        break;
    case Kind::Moved:
        pending.rows = pending.panels = true;
        pending.tree |= !pending.tree && !move(change);
        break;
    case Kind::Removed:
        pending.rows = pending.panels = true;
        pending.tree |= !pending.tree && !remove(change.key, pending);
        break;
    case Kind::Ordered:
        pending.tree = true;
        break;
    case Kind::Rows:
        pending.panels = true;
        pending.rows |= searching || change.key.isEmpty() || sameText(change.key, list.Tag);
        search_.clear();
        break;
    }
}

/// Where the catalogue is damaged, an edit may bring entries into view that could not be reached before.
bool ExplorerModel::changesInPlace() const {
    return tree.CutShort || (tree.Faults.isEmpty() && unreached_.empty());
}

/// Whether a reading would show a node of that height, and what stands below it, below the parent.
bool ExplorerModel::readsInPlace(const CatalogueNode& parent, const CatalogueNode* top) const {
    if (!state.bIsStudy)
        return depthOf(parent) + 1 + (top ? heightOf(*top) : 0) < deepestEntry;
    return isReadBeforeItsMembers(parent) &&
           (!top || top->Children.empty() || dao::compareTexts(parent.id(), top->id()) < 0);
}

bool ExplorerModel::insert(const CatalogueChange& change) {
    if (!changesInPlace())
        return false;
    const CatalogueNode* parent = tree.find(change.parentKey);
    if (!parent || tree.find(change.key))
        return tree.CutShort;
    if (!readsInPlace(*parent, nullptr))
        return false;
    const std::optional<EntryText>& text = state.bELTree ? change.english : change.original;
    tree.insert(change.parentKey, change.key,
                text ? shownText(change.key.mid(1), text->name, text->described) : QString(), text && text->described,
                change.place);
    tree.setExpanded(change.parentKey, true);
    return true;
}

bool ExplorerModel::rename(const CatalogueChange& change, Pending& pending) {
    const std::optional<EntryText>& text = state.bELTree ? change.english : change.original;
    if (!text)
        return true;
    if (!changesInPlace())
        return false;
    const CatalogueNode* node = tree.find(change.key);
    if (!node || node == tree.root())
        return tree.CutShort;
    tree.change(change.key, shownText(node->id(), text->name, text->described), text->described);
    pending.title = true;
    return true;
}

bool ExplorerModel::move(const CatalogueChange& change) {
    if (!changesInPlace())
        return false;
    const CatalogueNode* node = tree.find(change.key);
    const CatalogueNode* parent = tree.find(change.parentKey);
    if (!node || !parent)
        return tree.CutShort;
    if (!readsInPlace(*parent, node) || !tree.move(change.key, change.parentKey, change.place))
        return false;
    tree.setExpanded(change.parentKey, true);
    return true;
}

bool ExplorerModel::remove(const QString& key, Pending& pending) {
    if (!changesInPlace())
        return false;
    const CatalogueNode* node = tree.find(key);
    if (!node || node == tree.root())
        return tree.CutShort;
    const CatalogueNode* selected = selectedNode();
    if (selected && selected->isWithin(*node))
        standAt(successorOf(*node)->Key, pending);
    return tree.remove(key);
}

// ---- all of them

/// The node that was selected has gone: nothing of it stays in view.
void ExplorerModel::standAt(const QString& key, Pending& pending) {
    state.selectedKey = key;
    list.rows.clear();
    list.recordset.reset();
    list.filterBy({});
    pending.left = pending.panels = true;
}

void ExplorerModel::readTree(Pending& pending) {
    CatalogueTree fresh;
    // What an open window of the view has told is known.
    for (const ExplorerModel* model : open())
        if (model->state.ltreetype == state.ltreetype)
            fresh.Told += model->tree.Faults;
    Update_TreeView(fresh, state.ltreetype, state.bELTree);
    const CatalogueNode* selected = selectedNode();
    const QString standing = selected ? standingIn(fresh, *selected) : QString();
    tree.replaceBy(fresh);
    readUnreached();
    if (selected && !sameText(standing, state.selectedKey))
        standAt(standing, pending);
    pending.title = true;
}

void ExplorerModel::readUnreached() {
    unreached_.clear();
    if (!tree.CutShort)
        unreached_ = unreachedEntries(tree, state.ltreetype, state.bELTree);
}

void ExplorerModel::finish(Pending pending) {
    if (pending.tree)
        readTree(pending);
    if (pending.left) {
        host_->listFilled();
        clearPanelA();
        clearAssignmentList();
        select(state.selectedKey, true);
    } else if (pending.rows) {
        refreshList();
    }
    if ((pending.rows || pending.panels) && !pending.left)
        refreshA();
    if (pending.rows || pending.panels)
        refreshB();
    if (pending.assignments)
        refreshAssignments();
    if (pending.title)
        refreshTitles();
}

void ExplorerModel::refreshList() {
    search_.clear();
    const int place = list.placeOf(list.selectedRow);
    const QScopedValueRollback standing(
        standing_, std::optional(ListStanding(list, place < 0 ? std::vector<int>() : std::vector{place}, place, -1)));
    if (const CatalogueNode* node = selectedNode()) {
        Update_Listview(*node, true, state, list, *this, state.ltreetype);
    } else { // the filter may search the view before the first node is selected
        list.rows.clear();
        listFilled();
    }
}

void ExplorerModel::refreshA() {
    const bool assignments = assignmentsShown_;
    const bool filled = panelA.isFilled();
    const CatalogueNode* node = searchesView() ? tree.find(viewLetter(state.ltreetype) + panelA.fid) : selectedNode();
    // Without the list's rows a failure has been reported, and would be again.
    const bool read = searchesView() || list.recordset;
    const auto again =
        panelA.showAgain(read ? node : nullptr, state, searchesView() ? dao::RecordsetPtr() : list.recordset);
    if (again == VariablePanel::Again::Same) {
        if (assignments)
            fillA();
        return;
    }
    if (filled) {
        clearPanelA();
        clearAssignmentList();
    }
    if (read && list.selectedRow >= 0)
        host_->itemClick();
    // The row that takes over shows as much as the one before it did.
    if (assignments)
        fillA();
}

void ExplorerModel::refreshB() {
    const bool filled = panelB.isFilled();
    const CatalogueNode* node = tree.find(viewLetter(state.ltreetype) + panelB.fid);
    if (panelB.showAgain(node, state) != VariablePanel::Again::Nothing) {
        fillB();
    } else if (filled) {
        DBList1_B.clear();
        pagesB.empty();
    }
}

void ExplorerModel::refreshAssignments() {
    if (panelA.isFilled() && assignmentsShown_)
        Fill(DBList1, gDatabase.CurrentDatabase(), panelA.study(), panelA.variable(), state.bELTree);
    if (panelB.isFilled())
        Fill(DBList1_B, gDatabase.CurrentDatabase(), panelB.study(), panelB.variable(), state.bELTree);
}

void ExplorerModel::refreshTitles() {
    if (const CatalogueNode* node = selectedNode()) {
        state.selectionTitle = node->Text;
        host_->nodeShown(*node);
    }
    for (VariablePanel* panel : {&panelA, &panelB})
        if (const CatalogueNode* node = tree.find(viewLetter(state.ltreetype) + panel->fid); node && panel->isFilled())
            panel->fidName = node->Text;
}
