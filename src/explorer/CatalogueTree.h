#pragma once

#include <QHash>
#include <QString>
#include <deque>
#include <vector>

/// One entry of a view, or the view itself as the root.
struct CatalogueNode {
    QString Key; ///< letter of the view, then the entry's key; the root's ends in "0"
    QString Text;
    CatalogueNode* Parent = nullptr;
    int Image = 0, SelectedImage = 0, ExpandedImage = 0;
    int Index = 0; ///< running number in the tree, from 1
    int Place = 0; ///< among its siblings, from 0
    bool Expanded = false;
    std::vector<CatalogueNode*> Children;

    /// The entry's key without the letter.
    QString id() const { return Key.mid(1); }
};

/// The tree of a view's entries, by key. Keys are compared without regard to case, as the engine
/// does. Nodes stay where they are until the tree is cleared.
class CatalogueTree {
public:
    CatalogueTree() = default;
    CatalogueTree(const CatalogueTree&) = delete;
    CatalogueTree& operator=(const CatalogueTree&) = delete;

    void clear();
    /// Adds the root. @throws dao::Error 35602 if there is a node of that key
    CatalogueNode& addRoot(const QString& key, const QString& text);
    /// Adds a node as the last child of another.
    /// @throws dao::Error 35601 no parent of that key, 35602 the key is in the tree already
    CatalogueNode& add(const QString& parentKey, const QString& key, const QString& text);

    const CatalogueNode* root() const { return nodes_.empty() ? nullptr : &nodes_.front(); }
    /// Null if there is none.
    const CatalogueNode* find(const QString& key) const;
    /// Gives the root another text, after the language of the user interface has changed.
    void setRootText(const QString& text);
    /// The user stopped the reading: what is missing is no fault of the catalogue.
    bool CutShort = false;
    /// In the order in which they were added.
    const std::deque<CatalogueNode>& nodes() const { return nodes_; }

private:
    std::deque<CatalogueNode> nodes_;
    QHash<QString, CatalogueNode*> byKey_;
    QString lastParentKey_;
    CatalogueNode* lastParent_ = nullptr;

    CatalogueNode& append(const QString& key, const QString& text, CatalogueNode* parent);
};

/// Letter of a view in the keys of its nodes: "A" for view 1.
QChar viewLetter(int view);
/// The view that a node's or assignment's key belongs to; 0 or less for none.
int viewOfKey(const QString& key);

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
