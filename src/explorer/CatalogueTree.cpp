#include "explorer/CatalogueTree.h"

#include "app/globals.h"
#include "platform/dao/Error.h"
#include "platform/dao/TextOrder.h"
#include "platform/dao/Value.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// True if the key is that of a node or of one of those above it.
bool isOnWayToRoot(const CatalogueNode* node, const QString& key) {
    for (; node; node = node->Parent)
        if (dao::compareTexts(node->Key, key) == 0)
            return true;
    return false;
}

void numberChildren(CatalogueNode& parent, size_t from) {
    for (size_t place = from; place < parent.Children.size(); ++place)
        parent.Children[place]->Place = static_cast<int>(place);
}

void putInto(CatalogueNode& parent, CatalogueNode& node, int place) {
    parent.Children.insert(parent.Children.begin() + place, &node);
    node.Parent = &parent;
    numberChildren(parent, static_cast<size_t>(place));
}

void takeOut(CatalogueNode& node) {
    CatalogueNode& parent = *node.Parent;
    parent.Children.erase(parent.Children.begin() + node.Place);
    numberChildren(parent, static_cast<size_t>(node.Place));
}

std::vector<const CatalogueNode*> subtree(const CatalogueNode& top) {
    std::vector<const CatalogueNode*> nodes;
    for (const CatalogueNode* node = &top; node; node = nextWithin(top, *node))
        nodes.push_back(node);
    return nodes;
}

} // namespace

void CatalogueNode::setDescribed(bool described) {
    Image = 2 * viewOfKey(Key) + (described ? 23 : 4);
    SelectedImage = ExpandedImage = Image + 1;
}

bool CatalogueNode::isWithin(const CatalogueNode& other) const {
    const CatalogueNode* node = this;
    while (node && node != &other)
        node = node->Parent;
    return node;
}

CatalogueTree::~CatalogueTree() {
    tell([](CatalogueTreeWatcher& watcher) { watcher.treeGone(); });
}

template<class Call>
void CatalogueTree::tell(Call&& call) {
    for (CatalogueTreeWatcher* watcher : watchers_)
        call(*watcher);
}

void CatalogueTree::clear() {
    tell([](CatalogueTreeWatcher& watcher) { watcher.resetting(); });
    byKey_.clear();
    nodes_.clear();
    lastParentKey_.clear();
    lastParent_ = nullptr;
    CutShort = false;
    Faults.clear();
    tell([](CatalogueTreeWatcher& watcher) { watcher.reset(); });
}

CatalogueNode& CatalogueTree::addRoot(const QString& key, const QString& text) {
    return append(key, text, nullptr, 0);
}

CatalogueNode& CatalogueTree::insert(const QString& parentKey, const QString& key, const QString& text, bool described,
                                     int place) {
    // Entries come in the order of their parents: most have the one of the entry before.
    CatalogueNode* parent = parentKey == lastParentKey_ ? lastParent_ : at(parentKey);
    if (!parent)
        throw dao::Error(
            35601,
            TranslateText(u"Element nicht gefunden: Der Eintrag \"%1\" gehört zu \"%2\", das nicht im Baum steht."_s)
                .arg(key.mid(1), parentKey.mid(1)));
    lastParentKey_ = parentKey;
    lastParent_ = parent;
    CatalogueNode& node = append(key, text, parent, place);
    node.setDescribed(described);
    return node;
}

CatalogueNode& CatalogueTree::append(const QString& key, const QString& text, CatalogueNode* parent, int place) {
    const QString folded = dao::foldedText(key);
    if (byKey_.contains(folded)) {
        throw dao::Error(
            35602, (isOnWayToRoot(parent, key)
                        ? TranslateText(u"Schlüssel nicht eindeutig: Der Eintrag \"%1\" steht unter sich selbst."_s)
                        : TranslateText(u"Schlüssel nicht eindeutig: Der Eintrag \"%1\" steht schon im Baum."_s))
                       .arg(key.mid(1)));
    }
    const int count = parent ? static_cast<int>(parent->Children.size()) : 0;
    if (place < 0 || place > count)
        place = count;
    tell([&](CatalogueTreeWatcher& watcher) { watcher.inserting(parent, place); });
    CatalogueNode& node = nodes_.emplace_back();
    byKey_.insert(folded, std::prev(nodes_.end()));
    node.Key = key;
    node.Text = text;
    node.setDescribed(false);
    if (parent)
        putInto(*parent, node, place);
    tell([](CatalogueTreeWatcher& watcher) { watcher.inserted(); });
    return node;
}

bool CatalogueTree::remove(const QString& key) {
    CatalogueNode* top = at(key);
    if (!top)
        return false;
    if (!top->Parent) {
        clear();
        return true;
    }
    tell([&](CatalogueTreeWatcher& watcher) { watcher.removing(*top); });
    takeOut(*top);
    lastParentKey_.clear();
    lastParent_ = nullptr;
    for (const CatalogueNode* node : subtree(*top))
        nodes_.erase(byKey_.take(dao::foldedText(node->Key)));
    tell([](CatalogueTreeWatcher& watcher) { watcher.removed(); });
    return true;
}

bool CatalogueTree::move(const QString& key, const QString& parentKey, int place) {
    CatalogueNode* node = at(key);
    CatalogueNode* parent = at(parentKey);
    if (!node || !parent || !node->Parent || parent->isWithin(*node))
        return false;
    const bool here = node->Parent == parent;
    const int others = static_cast<int>(parent->Children.size()) - (here ? 1 : 0);
    if (place < 0 || place > others)
        place = others;
    if (!here || place != node->Place) {
        const int before = here && place > node->Place ? place + 1 : place;
        tell([&](CatalogueTreeWatcher& watcher) { watcher.moving(*node, *parent, before); });
        takeOut(*node);
        putInto(*parent, *node, place);
        tell([](CatalogueTreeWatcher& watcher) { watcher.moved(); });
    }
    for (const CatalogueNode* moved : subtree(*node))
        nodes_.splice(nodes_.end(), nodes_, byKey_.value(dao::foldedText(moved->Key)));
    return true;
}

bool CatalogueTree::change(const QString& key, const QString& text, bool described) {
    CatalogueNode* node = at(key);
    if (!node)
        return false;
    node->Text = text;
    node->setDescribed(described);
    tell([&](CatalogueTreeWatcher& watcher) { watcher.changed(*node); });
    return true;
}

void CatalogueTree::setRootText(const QString& text) {
    if (!nodes_.empty())
        change(nodes_.front().Key, text, false);
}

bool CatalogueTree::setExpanded(const QString& key, bool expanded) {
    CatalogueNode* node = at(key);
    if (!node)
        return false;
    if (node->Expanded != expanded) {
        node->Expanded = expanded;
        tell([&](CatalogueTreeWatcher& watcher) { watcher.expandedChanged(*node); });
    }
    return true;
}

void CatalogueTree::replaceBy(CatalogueTree& fresh) {
    for (CatalogueNode& node : fresh.nodes_)
        if (const CatalogueNode* before = find(node.Key))
            node.Expanded = before->Expanded;
    tell([](CatalogueTreeWatcher& watcher) { watcher.resetting(); });
    nodes_.swap(fresh.nodes_);
    byKey_.swap(fresh.byKey_);
    lastParentKey_.clear();
    lastParent_ = nullptr;
    CutShort = fresh.CutShort;
    Faults = fresh.Faults;
    fresh.clear();
    tell([](CatalogueTreeWatcher& watcher) { watcher.reset(); });
}

CatalogueNode* CatalogueTree::at(const QString& key) const {
    const auto found = byKey_.constFind(dao::foldedText(key));
    return found == byKey_.constEnd() ? nullptr : &**found;
}

const CatalogueNode* CatalogueTree::find(const QString& key) const {
    return at(key);
}

int CatalogueTree::Index(const CatalogueNode& node) const {
    int index = 1;
    for (const CatalogueNode& other : nodes_) {
        if (&other == &node)
            return index;
        ++index;
    }
    return 0;
}

const CatalogueNode* nextWithin(const CatalogueNode& top, const CatalogueNode& node) {
    if (!node.Children.empty())
        return node.Children.front();
    for (const CatalogueNode* from = &node; from != &top; from = from->Parent)
        if (const auto next = static_cast<size_t>(from->Place) + 1; next < from->Parent->Children.size())
            return from->Parent->Children[next];
    return nullptr;
}

const CatalogueNode* successorOf(const CatalogueNode& node) {
    if (!node.Parent)
        return nullptr;
    const std::vector<CatalogueNode*>& siblings = node.Parent->Children;
    const auto place = static_cast<size_t>(node.Place);
    if (place + 1 < siblings.size())
        return siblings[place + 1];
    return place > 0 ? siblings[place - 1] : node.Parent;
}

QChar viewLetter(int view) {
    return QChar(static_cast<char16_t>(64 + view));
}

int viewOfKey(const QString& key) {
    return key.isEmpty() ? 0 : key.front().unicode() - viewLetter(0).unicode();
}

QString shownText(const QString& id, const QString& name, bool described) {
    return name.isEmpty() && !described ? id : name;
}

bool isDescription(const QString& text) {
    return !text.isEmpty() && text != u" ";
}
