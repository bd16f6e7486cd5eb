#include "explorer/CatalogueTree.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/schema.h"
#include "diagnostics/errors.h"
#include "explorer/EntryColumns.h"
#include "explorer/iconNames.h"
#include "explorer/missingFolder.h"
#include "platform/ui/Asker.h"

#include <optional>

// Reading a view's tree from the open catalogue.

using namespace Qt::StringLiterals;

namespace {

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

/// Runs a step of the reading: a failure is noted with the tree, and reported unless it was told before.
template<class Step>
bool attemptOn(CatalogueTree& tree, Step&& step) {
    bool done = false;
    attempt(
        [&] {
            try {
                step();
                done = true;
            } catch (const dao::Error& error) {
                tree.Faults << error.description();
                if (!tree.Told.contains(error.description()))
                    throw;
            }
        },
        reportTreeError);
    return done;
}

class TreeBuilder {
public:
    TreeBuilder(CatalogueTree& tree, int view, bool english)
        : tree_(tree), view_(view), study_(isStudyView(view)), columns_(study_, english),
          table_(schema::entryTableName(gViews.at(view, ViewTable::Table))) {}

    /// Adds all entries.
    void build() {
        if (!study_)
            readAhead();
        addBelow(u"0"_s, 1);
    }

private:
    CatalogueTree& tree_;
    int view_;
    bool study_;
    EntryColumns columns_;
    QString table_;
    QString reading_ = TranslateText(u"Die Einträge werden gelesen:"_s) + u' ' + viewName(view_);
    ui::Progress progress_{ui::Progress::Stop::Allowed, [this] { return countEntries(); }};
    /// The entries of a category view by their parents, each parent's in their order.
    std::optional<QHash<double, std::vector<TreeEntry>>> ahead_;

    /// What is below each parent is asked of the whole table at once: a statement for each takes fifty times as long.
    /// Where that can't be read so, each parent's statement will say why.
    void readAhead() {
        const QString description = u"Left("_s + columns_.description + u", 2) AS Beginning"_s;
        attempt(
            [&] {
                const dao::RecordsetPtr recordset = gDatabase.CurrentDatabase()->OpenRecordset(
                    u"SELECT "_s +
                        QStringList{columns_.key, columns_.parent, columns_.text, description}.join(u", "_s) +
                        u" FROM "_s + table_ + u" ORDER BY [order] ASC;"_s,
                    dao::dbOpenSnapshot);
                if (!dao::isNumericType(recordset->Fields()[0].Type) ||
                    !dao::isNumericType(recordset->Fields()[1].Type))
                    return;
                QHash<double, std::vector<TreeEntry>> entries;
                for (; !recordset->Eof(); recordset->MoveNext())
                    if (const dao::Value parent = recordset->value(1); !parent.isNull())
                        entries[parent.toDouble()].push_back({recordset->value(0).toText(), parent.toText(),
                                                              recordset->value(2).toText(),
                                                              recordset->value(3).toText()});
                ahead_ = std::move(entries);
            },
            [](const dao::Error&) {});
    }

    /// Adds the entries below a parent and, in a category view, what stands below them.
    void addBelow(const QString& parent, int depth) {
        const ProcedureScope scope(u"[Module1.Update_TreeView]"_s);
        attemptOn(tree_, [&] {
            ui::asker().eventTurn();
            if (ahead_) {
                const auto below = ahead_->constFind(*dao::textToNumber(parent));
                if (below == ahead_->constEnd())
                    return;
                for (size_t i = 0; i < below->size() && goesOn(); ++i)
                    addEntry((*below)[i], depth);
                return;
            }
            CDaoPersistance persistance;
            // Every description is read: one by one from the file would take many times as long.
            const dao::RecordsetPtr recordset = persistance.GetRecordset(gDatabase.CurrentDatabase(), statement(parent),
                                                                         dao::dbOpenSnapshot, isMissingFolder);
            if (!recordset) {
                tree_.Faults << statement(parent);
                return;
            }
            const EntryReader reader(*recordset, columns_);
            for (; !recordset->Eof() && goesOn(); recordset->MoveNext())
                addEntry(reader.current(), depth);
            recordset->Close();
        });
    }

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
        attemptOn(tree_, [&] {
            // The key goes into the statement as it stands, so nothing but a number may get there.
            if (!dao::textToNumber(entry.key))
                dao::raiseRuntimeError(13);
            if (depth >= deepestEntry)
                throw dao::Error(28, TranslateText(u"Der Baum ist tiefer als %1 Stufen beim Eintrag \"%2\"."_s)
                                         .arg(deepestEntry)
                                         .arg(entry.key));
            addBelow(entry.key, depth + 1);
        });
    }
};

} // namespace

void Update_TreeView(CatalogueTree& tree, int view, bool english) {
    const ui::WaitPointer wait;
    const ProcedureScope scope(u"[Module1.Update_TreeView]"_s);
    ui::asker().eventTurn();
    tree.clear();
    const auto name = gLanguage == 0 ? ViewTable::Name : ViewTable::NameEnglish;
    CatalogueNode& root = tree.addRoot(viewLetter(view) + u"0"_s, gViews.at(view, name));
    root.Expanded = true;
    TreeBuilder(tree, view, english).build();
}

bool Update_TreeViewAddnode(CatalogueTree& tree, const QString& key, const QString& parentKey, const QString& text,
                            const QString& description, int view) {
    const ProcedureScope scope(u"[Module1.Update_TreeViewAddnode]"_s);
    return attemptOn(tree, [&] {
        const QChar letter = viewLetter(view);
        // An entry with a description keeps an empty name and fails without a parent; only a plain one falls back.
        const bool described = isDescription(description);
        const QString parent = !described && parentKey.isEmpty() ? u"0"_s : parentKey;
        tree.insert(letter + parent, letter + key, shownText(key, text, described), described, -1);
    });
}

std::vector<UnreachedEntry> unreachedEntries(const CatalogueTree& tree, int view, bool english) {
    const EntryColumns columns(isStudyView(view), english);
    std::vector<UnreachedEntry> unreached;
    const QString statement = u"SELECT "_s + QStringList{columns.key, columns.parent, columns.text}.join(u", "_s) +
                              u" FROM "_s + schema::entryTableName(gViews.at(view, ViewTable::Table)) +
                              u" ORDER BY [fid], [order];"_s;
    // What fails here has failed when the tree was built, and was reported then.
    const auto silent = [](const dao::Error&) {};
    if (!gDatabase.CurrentDatabase())
        return unreached;
    attempt(
        [&] {
            const dao::RecordsetPtr recordset =
                gDatabase.CurrentDatabase()->OpenRecordset(statement, dao::dbOpenSnapshot);
            for (; !recordset->Eof(); recordset->MoveNext()) {
                const QString key = recordset->value(0).toText();
                // An entry of the root's own key is never in the tree, though the key is.
                const CatalogueNode* node = tree.find(viewLetter(view) + key);
                if (!node || node == tree.root())
                    unreached.push_back({key, recordset->value(1).toText(), recordset->value(2).toText()});
            }
            recordset->Close();
        },
        silent);
    return unreached;
}
