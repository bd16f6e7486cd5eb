#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/Entries.h"
#include "editing/EntryEdit.h"
#include "platform/dao/TextOrder.h"

#include <algorithm>
#include <deque>
#include <map>

using namespace Qt::StringLiterals;
using namespace entryEdit;

namespace {

/// @return true if it is refused, and the user has been told why
bool deletionIsRefused(const ViewTables& tables) {
    if (!tables.study || gOptions.EditStudiesMode)
        return isRefused(tables.view);
    ui::asker().messageBox({.text = TranslateText(u"Studien und deren Variablen können nicht gelöscht werden"_s),
                            .icon = ui::Icon::Exclamation});
    return true;
}

bool confirmed(const QString& question, const QString& title) {
    return ui::asker().messageBox({.text = question,
                                   .title = title,
                                   .icon = ui::Icon::Question,
                                   .buttons = ui::Buttons::OkCancel,
                                   .defaultButton = ui::Answer::Cancel}) == ui::Answer::Ok;
}

int countBelow(const CatalogueNode& node) {
    int count = 1;
    for (const CatalogueNode* child : node.Children)
        count += countBelow(*child);
    return count;
}

/// Whether the tree shows an entry where it is, with all that stands below it.
bool showsAll(const CatalogueTree& tree, const CatalogueNode& node, const ViewTables& tables,
              const std::vector<EntryRow>& entries) {
    if (countBelow(node) != static_cast<int>(entries.size()))
        return false;
    return std::all_of(entries.begin(), entries.end(), [&](const EntryRow& entry) {
        const CatalogueNode* shown = tree.find(tables.nodeKey(entry.key));
        return shown && shown->Parent && dao::compareTexts(shown->Parent->id(), entry.parent) == 0 &&
               (shown->Text.isEmpty() || entry.name.isEmpty() || shown->Text == entry.name);
    });
}

/// What a tree that was read anew still does not show is damaged: that is said once, and no reason to keep it.
bool isTold(const std::vector<EntryRow>& entries) {
    static std::vector<EntryRow> told;
    if (told == entries)
        return true;
    told = entries;
    return false;
}

void deleteOne(const ViewTables& tables, const QString& key) {
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM "_s + tables.assignments + u" WHERE "_s +
                                         (tables.study ? u"fi_StudyNo"_s : u"fid"_s) + u" = "_s + tables.literal(key));
    tables.row(key)->Delete();
}

bool deleteWithAllBelow(const ViewTables& tables, const std::vector<EntryRow>& entries, const EditBasis& basis) {
    ui::Progress progress(ui::Progress::Stop::Allowed, [&] { return static_cast<int>(entries.size()); });
    const EntryRow& first = entries.front();
    const auto write = [&](CatalogueChanges& changes) {
        for (const EntryRow& entry : entries) {
            const QString name = askedName(entry.name.isEmpty() ? entry.key : entry.name);
            if (!progress.next(u" '"_s + name + u"' "_s + TranslateText(u"löschen..."_s)))
                return false;
            deleteOne(tables, entry.key);
        }
        changes.push_back(
            {.kind = CatalogueChange::Kind::Removed, .view = tables.view, .key = tables.nodeKey(first.key)});
        return true;
    };
    return perform({.name = editName(TranslateText(u"Löschen"_s), first.name.isEmpty() ? first.key : first.name),
                    .tables = {tables.entries, tables.assignments},
                    .stillSo = [&] { return basis.stillSo(); },
                    .write = write}) == EditOutcome::Done;
}

bool deleteNode(ExplorerModel& model, const CatalogueNode& node, const ViewTables& tables) {
    if (node.id() == u"0") {
        ui::asker().messageBox(
            {.text = TranslateText(u"Oberster Eintrag kann nicht gelöscht werden"_s), .icon = ui::Icon::Exclamation});
        return false;
    }
    const EditBasis basis = EditBasis().subtree(node.Key);
    const std::vector<EntryRow> entries = ViewEntries(tables).subtree(node.id());
    if (entries.empty()) {
        tellNotFound();
        return false;
    }
    if (!showsAll(model.tree, node, tables, entries) && !isTold(entries)) {
        tellChanged();
        return false;
    }
    const QString next = successorOf(node)->Key;
    const QString question = TranslateText(u"Möchten Sie löschen:"_s) + u"\r\n '"_s + askedName(node.Text) +
                             u"'\r\n"_s +
                             TranslateText(u"(Achtung! Alle Unterkategorien und Variablenzuordnungen werden "
                                           "mitgelöscht!)"_s);
    if (!confirmed(question, TranslateText(tables.study ? u"löschen"_s : u"Löschen"_s)) ||
        !deleteWithAllBelow(tables, entries, basis))
        return false;
    goTo(model, next);
    return true;
}

/// A row of the list that is to be deleted.
struct Doomed {
    QString study, variable;
};
/// By the entry that they are rows of.
using DoomedRows = std::map<QString, std::vector<Doomed>>;

/// The stored rows that some rows of the list stand for.
class StoredRows {
public:
    /// Finds one for each of an entry's, no one twice.
    StoredRows(const ViewTables& tables, const QString& key, const std::vector<Doomed>& wanted) {
        rows_ = gDatabase.CurrentDatabase()->OpenRecordset(
            tables.study
                ? u"SELECT fi_StudyNo, id_VarName FROM tkey_Variable WHERE fi_StudyNo = "_s + tables.literal(key)
                : u"SELECT * FROM "_s + tables.assignments + u" WHERE fid = "_s + tables.literal(key));
        const int study = rows_->indexOf(u"fi_StudyNo"_s);
        const int variable = rows_->indexOf(tables.study ? u"id_VarName"_s : u"fi_VariableNo"_s);
        QHash<std::pair<QString, QString>, std::deque<qint64>> places;
        for (; !rows_->Eof(); rows_->MoveNext())
            places[keyOf(rows_->value(study).toText(), rows_->value(variable).toText())].push_back(rows_->Bookmark());
        for (const Doomed& row : wanted) {
            std::deque<qint64>& same = places[keyOf(row.study, row.variable)];
            if (same.empty())
                return;
            found_.push_back(same.front());
            same.pop_front();
        }
        all_ = true;
    }

    bool haveAll() const { return all_; }
    void remove(size_t row) {
        rows_->setBookmark(found_[row]);
        rows_->Delete();
    }

private:
    dao::RecordsetPtr rows_;
    std::vector<qint64> found_;
    bool all_ = false;

    static std::pair<QString, QString> keyOf(const QString& study, const QString& variable) {
        return {dao::foldedText(study), dao::foldedText(variable)};
    }
};

bool allThere(const ViewTables& tables, const DoomedRows& doomed) {
    return std::all_of(doomed.begin(), doomed.end(), [&](const auto& ofEntry) {
        return StoredRows(tables, ofEntry.first, ofEntry.second).haveAll();
    });
}

/// @return false if the user has stopped it
bool removeRows(const ViewTables& tables, const QString& key, const std::vector<Doomed>& doomed,
                ui::Progress& progress) {
    StoredRows stored(tables, key, doomed);
    for (size_t i = 0; i < doomed.size(); ++i) {
        if (!progress.next(TranslateText(u"Variable"_s) + u" '"_s + doomed[i].variable + u"' "_s +
                           TranslateText(u"aus Studie"_s) + u" '"_s + doomed[i].study + u"' "_s +
                           TranslateText(u"löschen..."_s)))
            return false;
        stored.remove(i);
    }
    return true;
}

bool writeDeletion(const ViewTables& tables, const DoomedRows& doomed, int count, const QString& title) {
    ui::Progress progress(ui::Progress::Stop::Allowed, [&] { return count; });
    const auto write = [&](CatalogueChanges& changes) {
        for (const auto& [key, rows] : doomed) {
            if (!removeRows(tables, key, rows, progress))
                return false;
            changes.push_back({.kind = CatalogueChange::Kind::Rows, .view = tables.view, .key = tables.nodeKey(key)});
        }
        return progress.next(TranslateText(u"Ansicht aktualisieren..."_s));
    };
    return perform({.name = editName(TranslateText(u"Variablen löschen"_s), title),
                    .tables = {tables.assignments},
                    .stillSo = [&] { return allThere(tables, doomed); },
                    .write = write}) == EditOutcome::Done;
}

QString questionOfRows(const ViewTables& tables, const QString& title) {
    const QString asked =
        TranslateText(u"Möchten Sie die ausgewählten Variablen löschen:"_s) + u"\r\n '"_s + askedName(title) + u"' "_s;
    return asked + (tables.study ? TranslateText(u"löschen?"_s) : u"?"_s);
}

} // namespace

bool deleteEntry(ExplorerModel& model) {
    return onSelected(model, u"[Entries.deleteEntry]"_s, [&](const CatalogueNode& node, const ViewTables& tables) {
        return !deletionIsRefused(tables) && deleteNode(model, node, tables);
    });
}

bool deleteRows(ExplorerModel& model, const std::vector<int>& rows) {
    return onSelected(model, u"[Entries.deleteRows]"_s, [&](const CatalogueNode&, const ViewTables& tables) {
        if (deletionIsRefused(tables) || model.state.selectionTitle.isEmpty() || rows.empty())
            return false;
        DoomedRows doomed;
        for (const int row : rows) {
            const VariableRow& variable = model.list.rows.at(static_cast<size_t>(row));
            const CatalogueNode* node = model.nodeOf(variable);
            if (node)
                doomed[node->id()].push_back({variable.cell(1), variable.Text});
        }
        const QString title = model.state.selectionTitle;
        if (!confirmed(questionOfRows(tables, title), TranslateText(u"Löschen"_s)))
            return false;
        if (!allThere(tables, doomed)) {
            ui::asker().messageBox(
                {.text = TranslateText(u"Variable nicht gefunden!"_s), .icon = ui::Icon::Exclamation});
            announce({{.kind = CatalogueChange::Kind::Rows, .view = tables.view}});
            return false;
        }
        return writeDeletion(tables, doomed, static_cast<int>(rows.size()), title);
    });
}
