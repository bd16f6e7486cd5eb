#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <list>
#include <vector>

/// One entry of a view, or the view itself as the root.
struct CatalogueNode {
    QString Key; ///< letter of the view, then the entry's key; the root's ends in "0"
    QString Text;
    CatalogueNode* Parent = nullptr;
    int Image = 0, SelectedImage = 0, ExpandedImage = 0;
    int Place = 0; ///< among its siblings, from 0
    bool Expanded = false;
    std::vector<CatalogueNode*> Children;

    /// The entry's key without the letter.
    QString id() const { return Key.mid(1); }
    /// Gives the node the icons of an entry with or without a description.
    void setDescribed(bool described);
    /// True if the node is another or stands below it.
    bool isWithin(const CatalogueNode& other) const;
};

/// What shows a tree, as it must know of each change before and after.
class CatalogueTreeWatcher {
public:
    virtual ~CatalogueTreeWatcher() = default;
    /// All nodes go, and perhaps others come.
    virtual void resetting() {}
    virtual void reset() {}
    /// @param parent null for the root
    virtual void inserting(const CatalogueNode* /*parent*/, int /*place*/) {}
    virtual void inserted() {}
    virtual void removing(const CatalogueNode& /*node*/) {}
    virtual void removed() {}
    /// @param before the node comes before the one that stands there now; behind the last: their number
    virtual void moving(const CatalogueNode& /*node*/, const CatalogueNode& /*parent*/, int /*before*/) {}
    virtual void moved() {}
    /// Another text or other icons.
    virtual void changed(const CatalogueNode& /*node*/) {}
    virtual void expandedChanged(const CatalogueNode& /*node*/) {}
    /// The tree ends before its watcher.
    virtual void treeGone() {}
};

/// The tree of a view's entries, by key. Keys are compared without regard to case, as the engine does. It changes in
/// place: a node stays where it is in memory until it is removed or all are. Who remembers one beyond an event
/// remembers its key.
class CatalogueTree {
public:
    CatalogueTree() = default;
    ~CatalogueTree();
    CatalogueTree(const CatalogueTree&) = delete;
    CatalogueTree& operator=(const CatalogueTree&) = delete;

    void clear();
    /// Adds the root. @throws dao::Error 35602 if there is a node of that key
    CatalogueNode& addRoot(const QString& key, const QString& text);
    /// Adds a node as the last child of another, with plain icons.
    /// @throws dao::Error 35601 no parent of that key, 35602 the key is in the tree already
    CatalogueNode& add(const QString& parentKey, const QString& key, const QString& text) {
        return insert(parentKey, key, text, false, -1);
    }
    /// Adds a node among the children of another.
    /// @param described which icons it gets @param place from 0; -1, or one beyond the last, is behind the last
    /// @throws as add()
    CatalogueNode& insert(const QString& parentKey, const QString& key, const QString& text, bool described, int place);
    /// Removes a node with all below it. @return false if there is none of that key
    bool remove(const QString& key);
    /// Moves a node with all below it; texts, keys and icons stay. In the order of adding they are the last from now
    /// on. @param place among its new siblings, as insert() has it
    /// @return false, and nothing is changed, if either is not there or the parent stands below the node
    bool move(const QString& key, const QString& parentKey, int place);
    /// Gives a node another text and the icons of one with or without a description. @return false if there is none
    bool change(const QString& key, const QString& text, bool described);
    /// Gives the root another text, after the language of the user interface has changed.
    void setRootText(const QString& text);
    /// Whether the children of a node are in view. @return false if there is none of that key
    bool setExpanded(const QString& key, bool expanded);
    /// Takes over the nodes of a tree that was read anew, which is left empty; what was expanded stays so, by key.
    void replaceBy(CatalogueTree& fresh);

    const CatalogueNode* root() const { return nodes_.empty() ? nullptr : &nodes_.front(); }
    /// Null if there is none.
    const CatalogueNode* find(const QString& key) const;
    /// In the order in which they were added.
    const std::list<CatalogueNode>& nodes() const { return nodes_; }
    /// A node's place among those that live, from 1, in the order in which they were added.
    int Index(const CatalogueNode& node) const;

    /// The user stopped the reading: what is missing is no fault of the catalogue.
    bool CutShort = false;
    /// Failures of the reading, in words; of those that were told before the user hears nothing again.
    QStringList Faults, Told;

    void watch(CatalogueTreeWatcher& watcher) { watchers_.push_back(&watcher); }
    void unwatch(CatalogueTreeWatcher& watcher) { std::erase(watchers_, &watcher); }

private:
    std::list<CatalogueNode> nodes_;
    QHash<QString, std::list<CatalogueNode>::iterator> byKey_;
    QString lastParentKey_;
    CatalogueNode* lastParent_ = nullptr;
    std::vector<CatalogueTreeWatcher*> watchers_;

    CatalogueNode* at(const QString& key) const;
    CatalogueNode& append(const QString& key, const QString& text, CatalogueNode* parent, int place);
    template<class Call>
    void tell(Call&& call);
};

/// The node behind another in a walk through all that stands below `top`, each before what stands below it; null at
/// the end. The walk begins with `top`.
const CatalogueNode* nextWithin(const CatalogueNode& top, const CatalogueNode& node);

/// The node that takes over what a removed one has been to the user: the next of its siblings, else the one before,
/// else the parent; null for the root.
const CatalogueNode* successorOf(const CatalogueNode& node);

/// Letter of a view in the keys of its nodes: "A" for view 1.
QChar viewLetter(int view);
/// The view that a node's or assignment's key belongs to; 0 or less for none.
int viewOfKey(const QString& key);
/// What a tree shows of an entry: an entry with a description keeps an empty name, one without shows its key.
QString shownText(const QString& id, const QString& name, bool described);
/// Whether a description's text counts as one: neither empty nor one blank.
bool isDescription(const QString& text);

/// Deeper than any real tree; what goes beyond is damaged or made to do harm.
inline constexpr int deepestEntry = 500;

/// Rebuilds the tree of a view of the open catalogue, in the original language or in English. Failures are
/// reported and the tree stays as far as it was built; so it does when the user stops a reading that takes long. An
/// entry that stands below itself is reported and not followed.
void Update_TreeView(CatalogueTree& tree, int view, bool english);
/// Adds one entry; a failure (its parent is not in the tree, its key is) is reported.
/// @return true if it was added
bool Update_TreeViewAddnode(CatalogueTree& tree, const QString& key, const QString& parentKey, const QString& text,
                            const QString& description, int view);

/// An entry that is in the catalogue but not in its tree.
struct UnreachedEntry {
    QString key, parentKey, text;
};
/// Entries of a view that no way from the root leads to: their parent is missing, or they stand below
/// themselves. The tree must have been built from the same catalogue.
std::vector<UnreachedEntry> unreachedEntries(const CatalogueTree& tree, int view, bool english);
