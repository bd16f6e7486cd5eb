#include "explorer/CatalogueTree.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/schema.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "explorer/EntryColumns.h"
#include "explorer/iconNames.h"
#include "explorer/missingFolder.h"
#include "platform/dao/TextOrder.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

namespace {

/// Deeper than any real tree; what goes beyond is damaged or made to do harm.
constexpr int maxDepth = 500;

struct TreeEntry {
    QString key, parentKey, text, description;
};

/// Reads entries from a recordset, its columns looked up once.
class EntryReader {
public:
    EntryReader(const dao::Recordset& recordset, const EntryColumns& columns)
        : recordset_(recordset), key_(recordset.indexOf(columns.key)), parent_(recordset.indexOf(columns.parent)),
          text_(recordset.indexOf(columns.text)), description_(recordset.indexOf(columns.description)) {}

    TreeEntry current() const { return {cell(key_), cell(parent_), cell(text_), cell(description_)}; }

private:
    const dao::Recordset& recordset_;
    int key_, parent_, text_, description_;

    QString cell(int column) const { return recordset_.value(column).toText(); }
};

void reportTreeError(const dao::Error& error) {
    if (!reportMissingFolder(error))
        reportError(error);
}

/// True if the key is that of a node or of one of those above it.
bool isOnWayToRoot(const CatalogueNode* node, const QString& key) {
    for (; node; node = node->Parent)
        if (dao::compareTexts(node->Key, key) == 0)
            return true;
    return false;
}

class TreeBuilder {
public:
    TreeBuilder(CatalogueTree& tree, int view, bool english)
        : tree_(tree), view_(view), study_(isStudyView(view)), columns_(study_, english),
          table_(schema::entryTableName(gViews.at(view, ViewTable::Table))) {}

    /// Adds the entries below a parent and, in a category view, what stands below them.
    void addBelow(const QString& parent, int depth) {
        const ProcedureScope scope(u"[Module1.Update_TreeView]"_s);
        attempt(
            [&] {
                ui::asker().eventTurn();
                CDaoPersistance persistance;
                // Every description is read: one by one from the file would take many times as long.
                const dao::RecordsetPtr recordset = persistance.GetRecordset(
                    gDatabase.CurrentDatabase(), statement(parent), dao::dbOpenSnapshot, isMissingFolder);
                if (!recordset)
                    return;
                const EntryReader reader(*recordset, columns_);
                for (; !recordset->Eof() && goesOn(); recordset->MoveNext())
                    addEntry(reader.current(), depth);
                recordset->Close();
            },
            reportTreeError);
    }

private:
    CatalogueTree& tree_;
    int view_;
    bool study_;
    EntryColumns columns_;
    QString table_;
    QString reading_ = TranslateText(u"Die Einträge werden gelesen:"_s) + u' ' + viewName(view_);
    ui::Progress progress_{ui::Progress::Stop::Allowed, [this] { return countEntries(); }};

    bool goesOn() {
        tree_.CutShort = !progress_.next(reading_);
        return !tree_.CutShort;
    }

    int countEntries() const {
        try {
            const QString statement = u"SELECT Count(*) AS n FROM "_s + table_;
            return static_cast<int>(
                gDatabase.CurrentDatabase()->OpenRecordset(statement, dao::dbOpenSnapshot)->value(0).toInteger());
        } catch (const dao::Error&) {
            return 0; // The reading itself will say what is wrong.
        }
    }

    QString statement(const QString& parent) const {
        return study_ ? u"SELECT * FROM "_s + table_ + u" ORDER BY [fid], [order] ASC;"_s
                      : u"SELECT * FROM "_s + table_ + u" WHERE [fid]="_s + parent + u" ORDER BY [order] ASC;"_s;
    }

    void addEntry(const TreeEntry& entry, int depth) {
        const bool added =
            Update_TreeViewAddnode(tree_, entry.key, entry.parentKey, entry.text, entry.description, view_);
        if (!added || study_)
            return;
        attempt(
            [&] {
                // The key goes into the statement as it stands, so nothing but a number may get there.
                if (!dao::textToNumber(entry.key))
                    dao::raiseRuntimeError(13);
                if (depth >= maxDepth)
                    throw dao::Error(28, TranslateText(u"Der Baum ist tiefer als %1 Stufen beim Eintrag \"%2\"."_s)
                                             .arg(maxDepth)
                                             .arg(entry.key));
                addBelow(entry.key, depth + 1);
            },
            reportTreeError);
    }
};

} // namespace

void CatalogueTree::clear() {
    byKey_.clear();
    nodes_.clear();
    lastParentKey_.clear();
    lastParent_ = nullptr;
}

CatalogueNode& CatalogueTree::addRoot(const QString& key, const QString& text) {
    return append(key, text, nullptr);
}

CatalogueNode& CatalogueTree::add(const QString& parentKey, const QString& key, const QString& text) {
    // Entries come in the order of their parents: most have the one of the entry before.
    CatalogueNode* parent = parentKey == lastParentKey_ ? lastParent_ : byKey_.value(dao::foldedText(parentKey));
    if (!parent)
        throw dao::Error(
            35601,
            TranslateText(u"Element nicht gefunden: Der Eintrag \"%1\" gehört zu \"%2\", das nicht im Baum steht."_s)
                .arg(key.mid(1), parentKey.mid(1)));
    lastParentKey_ = parentKey;
    lastParent_ = parent;
    return append(key, text, parent);
}

CatalogueNode& CatalogueTree::append(const QString& key, const QString& text, CatalogueNode* parent) {
    CatalogueNode*& place = byKey_[dao::foldedText(key)];
    if (place) {
        throw dao::Error(
            35602, (isOnWayToRoot(parent, key)
                        ? TranslateText(u"Schlüssel nicht eindeutig: Der Eintrag \"%1\" steht unter sich selbst."_s)
                        : TranslateText(u"Schlüssel nicht eindeutig: Der Eintrag \"%1\" steht schon im Baum."_s))
                       .arg(key.mid(1)));
    }
    CatalogueNode& node = nodes_.emplace_back();
    node.Key = key;
    node.Text = text;
    node.Parent = parent;
    node.Index = static_cast<int>(nodes_.size());
    if (parent) {
        node.Place = static_cast<int>(parent->Children.size());
        parent->Children.push_back(&node);
    }
    place = &node;
    return node;
}

void CatalogueTree::setRootText(const QString& text) {
    if (!nodes_.empty())
        nodes_.front().Text = text;
}

const CatalogueNode* CatalogueTree::find(const QString& key) const {
    return byKey_.value(dao::foldedText(key));
}

QChar viewLetter(int view) {
    return QChar(static_cast<char16_t>(64 + view));
}

int viewOfKey(const QString& key) {
    return key.isEmpty() ? 0 : key.front().unicode() - viewLetter(0).unicode();
}

void Update_TreeView(CatalogueTree& tree, int view, bool english) {
    const ui::WaitPointer wait;
    const ProcedureScope scope(u"[Module1.Update_TreeView]"_s);
    ui::asker().eventTurn();
    tree.clear();
    tree.CutShort = false;
    const auto name = gLanguage == 0 ? ViewTable::Name : ViewTable::NameEnglish;
    CatalogueNode& root = tree.addRoot(viewLetter(view) + u"0"_s, gViews.at(view, name));
    root.Image = 2 * view + 4;
    root.SelectedImage = 2 * view + 5;
    root.ExpandedImage = root.Image + 1;
    root.Expanded = true;
    TreeBuilder(tree, view, english).addBelow(u"0"_s, 1);
}

bool Update_TreeViewAddnode(CatalogueTree& tree, const QString& key, const QString& parentKey, const QString& text,
                            const QString& description, int view) {
    const ProcedureScope scope(u"[Module1.Update_TreeViewAddnode]"_s);
    return attempt(
        [&] {
            const QChar letter = viewLetter(view);
            const bool described = !description.isEmpty() && description != u" ";
            // An entry with a description keeps an empty name and fails without a parent; only a plain one
            // falls back.
            CatalogueNode& node = described ? tree.add(letter + parentKey, letter + key, text)
                                            : tree.add(letter + (parentKey.isEmpty() ? u"0"_s : parentKey),
                                                       letter + key, text.isEmpty() ? key : text);
            node.Image = 2 * view + (described ? 23 : 4);
            node.SelectedImage = node.Image + 1;
            node.ExpandedImage = node.Image + 1;
        },
        reportTreeError);
}

std::vector<UnreachedEntry> unreachedEntries(const CatalogueTree& tree, int view, bool english) {
    const EntryColumns columns(isStudyView(view), english);
    std::vector<UnreachedEntry> unreached;
    const QString statement = u"SELECT * FROM "_s + schema::entryTableName(gViews.at(view, ViewTable::Table)) +
                              u" ORDER BY [fid], [order];"_s;
    // What fails here has failed when the tree was built, and was reported then.
    const auto silent = [](const dao::Error&) {};
    if (!gDatabase.CurrentDatabase())
        return unreached;
    attempt(
        [&] {
            const dao::RecordsetPtr recordset =
                gDatabase.CurrentDatabase()->OpenRecordset(statement, dao::dbOpenDynaset);
            const EntryReader reader(*recordset, columns);
            for (; !recordset->Eof(); recordset->MoveNext()) {
                const TreeEntry entry = reader.current();
                // An entry of the root's own key is never in the tree, though the key is.
                const CatalogueNode* node = tree.find(viewLetter(view) + entry.key);
                if (!node || node == tree.root())
                    unreached.push_back({entry.key, entry.parentKey, entry.text});
            }
            recordset->Close();
        },
        silent);
    return unreached;
}
