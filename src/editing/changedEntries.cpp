#include "editing/changedEntries.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "catalogue/schema.h"
#include "explorer/CatalogueTree.h"
#include "explorer/EntryColumns.h"
#include "platform/dao/TextOrder.h"

#include <QHash>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Kind = dao::ChangedRow::Kind;

/// More entries with other variables than this, and an explorer looks at its own without asking which.
constexpr qsizetype mostNamed = 8;

bool isTable(const QString& table, const QString& other) {
    return dao::compareTexts(table, other) == 0;
}

QString textOf(const std::optional<dao::Value>& value) {
    return value ? value->toText() : QString();
}

/// The entries of a view as they stand in the catalogue.
class EntriesNow {
public:
    explicit EntriesNow(int view)
        : study_(isStudyView(view)), table_(schema::entryTableName(gViews.at(view, ViewTable::Table))) {
        const QString key = EntryColumns(study_, false).key;
        const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenRecordset(
            u"SELECT "_s + key + u", fid FROM "_s + table_ + u" ORDER BY fid, [order]"_s, dao::dbOpenSnapshot);
        QHash<QString, int> siblings;
        for (; !rows->Eof(); rows->MoveNext()) {
            const QString parent = rows->value(1).toText();
            int& place = siblings[dao::foldedText(parent)];
            byKey_.insert(dao::foldedText(rows->value(0).toText()), {parent.isEmpty() ? u"0"_s : parent, place});
            ++place;
        }
        parents_ = QSet<QString>(siblings.keyBegin(), siblings.keyEnd());
    }

    struct Where {
        QString parent;
        int place = 0;
    };
    bool has(const QString& id) const { return id == u"0" || byKey_.contains(dao::foldedText(id)); }
    Where where(const QString& id) const { return byKey_.value(dao::foldedText(id)); }
    bool isParent(const QString& id) const { return parents_.contains(dao::foldedText(id)); }
    /// Whether the parents of an entry lead to the top.
    bool isReached(QString id) const {
        for (qsizetype steps = 0; id != u"0"; ++steps) {
            if (!has(id) || steps > byKey_.size())
                return false;
            id = where(id).parent;
        }
        return true;
    }

private:
    bool study_;
    QString table_;
    QHash<QString, Where> byKey_; ///< folded
    QSet<QString> parents_;       ///< folded
};

/// One of the entries on which variables hang, which studies have and categories name; empty if there is none.
QString withVariables(int view, const QStringList& ids) {
    const bool study = isStudyView(view);
    const QString field = study ? u"fi_StudyNo"_s : u"fid"_s;
    const QString table = study ? u"tkey_Variable"_s : schema::assignmentTableName(gViews.at(view, ViewTable::Table));
    constexpr qsizetype together = 500; // keep a statement short
    for (qsizetype from = 0; from < ids.size(); from += together) {
        QStringList list;
        for (const QString& id : ids.mid(from, together))
            list += study ? quoted(id) : id;
        const dao::RecordsetPtr rows =
            gDatabase.CurrentDatabase()->OpenRecordset(u"SELECT TOP 1 "_s + field + u" FROM "_s + table + u" WHERE "_s +
                                                           field + u" In ("_s + list.join(u", "_s) + u')',
                                                       dao::dbOpenSnapshot);
        if (!rows->Eof())
            return rows->value(0).toText();
    }
    return {};
}

/// What a tree shows that is built anew.
EntryText treeText(const QString& id, const QString& name, const QString& description) {
    const bool described = isDescription(description);
    return {shownText(id, name, described), described};
}

/// An entry's text as it stands in the catalogue; nothing if the entry is gone.
std::optional<EntryText> textNow(int view, const QString& id, bool english) {
    const EntryColumns columns(isStudyView(view), english);
    const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenRecordset(
        u"SELECT * FROM "_s + schema::entryTableName(gViews.at(view, ViewTable::Table)) + u" WHERE "_s + columns.key +
        u" = "_s + (isStudyView(view) ? quoted(id) : id));
    if (rows->Eof())
        return std::nullopt;
    const auto cell = [&](const QString& field) { return rows->hasField(field) ? rows->text(field) : QString(); };
    return treeText(id, cell(columns.text), cell(columns.description));
}

} // namespace

ChangedEntries::Entry ChangedEntries::entryOf(const dao::ChangedRow& row, bool study) {
    const EntryColumns original(study, false), english(study, true);
    Entry entry;
    entry.kind = row.kind();
    entry.id = textOf(row.kind() == Kind::Added ? row.after(original.key) : row.before(original.key));
    entry.parentBefore = textOf(row.before(original.parent));
    entry.moved = row.after(original.parent).has_value();
    entry.ordered = row.after(u"Order"_s).has_value();
    for (const EntryColumns* columns : {&original, &english}) {
        const std::optional<dao::Value> name = row.after(columns->text), description = row.after(columns->description);
        entry.renamed = entry.renamed || name || description;
        if (row.kind() == Kind::Added)
            (columns == &original ? entry.original : entry.english) =
                treeText(entry.id, textOf(name), textOf(description));
    }
    return entry;
}

void ChangedEntries::add(const dao::ChangedRow& row) {
    const QString table = row.table();
    if (isTable(table, u"tkey_Variable"_s)) {
        variables_ = true;
        return;
    }
    for (int view = 1; view <= gViews.lastRow(); ++view) {
        const QString suffix = gViews.at(view, ViewTable::Table);
        const bool study = isStudyView(view);
        if (isTable(table, schema::entryTableName(suffix))) {
            views_[view].entries.push_back(entryOf(row, study));
            // Lists show titles of studies.
            variables_ = variables_ || (study && !views_[view].entries.back().ordered);
        } else if (!study && isTable(table, schema::assignmentTableName(suffix))) {
            const std::optional<dao::Value> before = row.before(u"fid"_s), after = row.after(u"fid"_s);
            if (before || after == before)
                views_[view].assigned.insert(textOf(before));
            if (after)
                views_[view].assigned.insert(textOf(after));
        }
    }
}

void ChangedEntries::requireWhole() const {
    constexpr int conflict = 3197;
    for (const auto& [view, of] : views_) {
        const auto leaves = [](const Entry& entry) { return entry.kind == Kind::Removed; };
        const auto comes = [](const Entry& entry) { return entry.kind == Kind::Added || entry.moved; };
        if (std::ranges::none_of(of.entries, [&](const Entry& entry) { return leaves(entry) || comes(entry); }))
            continue;
        const EntriesNow now(view);
        QStringList gone;
        for (const Entry& entry : of.entries) {
            if (leaves(entry) && !now.has(entry.id))
                gone += entry.id;
            if (leaves(entry) ? !now.has(entry.id) && now.isParent(entry.id) : comes(entry) && !now.isReached(entry.id))
                dao::raiseEngineError(conflict, entry.id);
        }
        if (const QString entry = withVariables(view, gone); !entry.isEmpty())
            dao::raiseEngineError(conflict, entry);
    }
}

void ChangedEntries::addEntries(CatalogueChanges& changes, int view, const std::vector<Entry>& entries) {
    using enum CatalogueChange::Kind;
    const QChar letter = viewLetter(view);
    QSet<QString> removed, added;
    for (const Entry& entry : entries)
        (entry.kind == Kind::Removed ? removed : added).insert(dao::foldedText(entry.id));
    for (const Entry& entry : entries)
        if (entry.kind == Kind::Removed && !removed.contains(dao::foldedText(entry.parentBefore)))
            changes.push_back({.kind = Removed, .view = view, .key = letter + entry.id});
    for (const Entry& entry : entries)
        if (entry.kind == Kind::Changed && entry.renamed)
            changes.push_back({.kind = Renamed,
                               .view = view,
                               .key = letter + entry.id,
                               .original = textNow(view, entry.id, false),
                               .english = textNow(view, entry.id, true)});
    std::vector<const Entry*> placed;
    QSet<QString> waiting;
    for (const Entry& entry : entries)
        if (entry.kind == Kind::Added || (entry.kind == Kind::Changed && entry.moved)) {
            placed.push_back(&entry);
            waiting.insert(dao::foldedText(entry.id));
        }
    if (placed.empty())
        return;
    // Parents before what stands below them, siblings in their order. What nothing leads to is in no tree.
    const EntriesNow now(view);
    QHash<QString, std::vector<const Entry*>> below;
    std::sort(placed.begin(), placed.end(),
              [&](const Entry* a, const Entry* b) { return now.where(a->id).place < now.where(b->id).place; });
    std::vector<const Entry*> ready;
    for (const Entry* entry : placed) {
        const QString parent = dao::foldedText(now.where(entry->id).parent);
        if (waiting.contains(parent))
            below[parent].push_back(entry);
        else if (now.has(parent))
            ready.push_back(entry);
    }
    for (size_t i = 0; i < ready.size(); ++i) {
        const Entry& entry = *ready[i];
        const EntriesNow::Where where = now.where(entry.id);
        CatalogueChange change{.kind = entry.kind == Kind::Added ? Added : Moved,
                               .view = view,
                               .key = letter + entry.id,
                               .parentKey = letter + where.parent,
                               .place = where.place};
        if (entry.kind == Kind::Added) {
            change.original = entry.original;
            change.english = entry.english;
        }
        changes.push_back(std::move(change));
        for (const Entry* child : below.value(dao::foldedText(entry.id)))
            ready.push_back(child);
    }
}

void ChangedEntries::addRows(CatalogueChanges& changes) const {
    using enum CatalogueChange::Kind;
    for (int view = 1; view <= gViews.lastRow(); ++view) {
        const auto found = views_.find(view);
        const QSet<QString> assigned = found != views_.end() ? found->second.assigned : QSet<QString>();
        if (variables_ || assigned.size() > mostNamed || assigned.contains(QString())) {
            changes.push_back({.kind = Rows, .view = view});
            continue;
        }
        for (const QString& id : assigned)
            changes.push_back({.kind = Rows, .view = view, .key = viewLetter(view) + id});
    }
}

CatalogueChanges ChangedEntries::changes() const {
    CatalogueChanges changes;
    for (const auto& [view, of] : views_) {
        const bool ordered = std::any_of(of.entries.begin(), of.entries.end(), [](const Entry& entry) {
            return entry.kind == Kind::Changed && entry.ordered && !entry.moved;
        });
        if (ordered)
            changes.push_back({.kind = CatalogueChange::Kind::Ordered, .view = view});
        else
            addEntries(changes, view, of.entries);
    }
    addRows(changes);
    return changes;
}
