#include "editing/Entries.h"

#include "catalogue/CDaoDatabase.h"
#include "editing/EntryEdit.h"
#include "editing/studyNumbers.h"
#include "platform/dao/TextOrder.h"

using namespace Qt::StringLiterals;
using namespace entryEdit;

namespace {

enum class Written { Yes, No, NumberRefused };

/// An entry that is to be made.
struct NewEntry {
    QString parent; ///< key of the entry above it, "0" at the top
    QString name, description;
    QString number; ///< of a study or group
    bool group = false;
};

/// A change of an entry; what has no value stays as it is.
struct Change {
    QString key;
    Content before;
    EditBasis basis;
    std::optional<QString> name, description;
    std::optional<bool> group;

    bool isNone() const { return !name && !description && !group; }
};

/// A name, a number: nothing if the user wants to end.
QString ask(const QString& prompt, const QString& title, const QString& proposal) {
    const QString answer = ui::asker().inputBox(prompt, title, proposal).value_or(QString());
    return answer.trimmed().isEmpty() ? QString() : answer;
}

bool askIsGroup(const QString& title, bool isGroup) {
    const ui::Box box{.text = TranslateText(u"Wählen Sie 'ja', wenn es eine Studie und keine Gruppe ist:"_s),
                      .title = title,
                      .icon = ui::Icon::Question,
                      .buttons = ui::Buttons::YesNo,
                      .defaultButton = isGroup ? ui::Answer::No : ui::Answer::Yes,
                      .mustAnswer = true};
    return ui::asker().messageBox(box) == ui::Answer::No;
}

/// Asks for a description and writes with it. After a write that failed the dialog comes back with what was typed,
/// until it is written or the user cancels.
/// @param kept what the entry has anyway
/// @param text that the dialog begins with, and what the user leaves it at
/// @param write gets the text, nothing where the dialog was cancelled, and whether a write has failed before
Written describeAndWrite(const QString& name, const QString& kept, QString& text,
                         const std::function<Written(const std::optional<QString>&, bool again)>& write) {
    const QString caption = TranslateText(u"Beschreibung eingeben für"_s) + u" '"_s + askedName(name) + u'\'';
    for (bool again = false;; again = true) {
        const std::optional<QString> edited = ui::asker().editText(caption, text, kept);
        if (!edited && again)
            return Written::No;
        const bool typed = again || (edited && *edited != text);
        if (edited)
            text = *edited;
        Written written = Written::No;
        attempt([&] { written = write(edited, again); });
        if (written != Written::No || !typed)
            return written;
    }
}

EntryText entryText(const QString& name, const QString& description) {
    return {.name = name, .described = isDescription(description)};
}

CatalogueChange changeOf(CatalogueChange::Kind kind, const ViewTables& tables, const QString& key,
                         const EntryText& text) {
    CatalogueChange change{.kind = kind, .view = tables.view, .key = tables.nodeKey(key)};
    (tables.english ? change.english : change.original) = text;
    return change;
}

/// The place behind the last of some siblings.
qint64 nextOrder(dao::Recordset& siblings) {
    if (siblings.Eof())
        return 1;
    siblings.MoveLast();
    const dao::Value last = siblings.value(u"Order"_s);
    return (last.isNumeric() ? last.toInteger() : 0) + 1;
}

/// @return key of the new entry
QString add(const ViewTables& tables, const NewEntry& entry) {
    const dao::RecordsetPtr rows = tables.rowsBelow(entry.parent);
    EntryFields fields{{u"fid"_s, tables.stored(entry.parent)},
                       {u"Order"_s, nextOrder(*rows)},
                       {tables.columns.text, entry.name},
                       {tables.columns.description, storedDescription(entry.description)}};
    if (tables.study) {
        fields.emplace_back(tables.columns.key, entry.number);
        fields.emplace_back(u"dt_IsGroup"_s, entry.group);
    }
    rows->AddNew();
    setFields(*rows, fields);
    rows->Update();
    rows->setBookmark(rows->LastModified());
    return rows->text(tables.columns.key);
}

/// Where an entry is to be made.
struct Above {
    QString key, text; ///< "0" at the top; as the tree shows it
    EditBasis basis;

    /// Reads it anew. @return false if it is gone
    bool read(const ViewTables& tables) {
        basis = {};
        basis.entry(tables.nodeKey(key));
        return key == u"0" || contentOf(tables, key);
    }
};

/// @param key gets the new entry's
EditOutcome writeNew(const ViewTables& tables, const NewEntry& entry, const EditBasis& basis, QString& key) {
    const QString what = TranslateText(tables.study ? u"Neue Studie"_s : u"Neuer Eintrag"_s);
    return perform({.name = editName(what, entry.name),
                    .tables = {tables.entries},
                    .stillSo = [&] { return basis.stillSo() && (!tables.study || !isStudyNumberTaken(entry.number)); },
                    .write =
                        [&](CatalogueChanges& changes) {
                            key = add(tables, entry);
                            CatalogueChange change = changeOf(CatalogueChange::Kind::Added, tables, key,
                                                              entryText(entry.name, entry.description));
                            change.parentKey = tables.nodeKey(entry.parent);
                            changes.push_back(change);
                            return true;
                        }});
}

Written makeEntry(ExplorerModel& model, const ViewTables& tables, NewEntry entry, Above above, QString& text) {
    return describeAndWrite(entry.name, QString(), text, [&](const std::optional<QString>& edited, bool again) {
        // After a refusal the text is the one typed before, and Cancel leaves the entry without.
        entry.description = edited.value_or(QString());
        const QString fault = tables.study ? whyNotStudyNumber(entry.number) : QString();
        if (!fault.isEmpty()) {
            ui::asker().messageBox({.text = fault, .icon = ui::Icon::Exclamation});
            return Written::NumberRefused;
        }
        // The failure before may have been another program's change, which the user has been told of.
        if (again && !above.read(tables)) {
            tellNotFound();
            return Written::No;
        }
        QString key;
        if (writeNew(tables, entry, above.basis, key) != EditOutcome::Done)
            return Written::No;
        goTo(model, tables.nodeKey(key));
        return Written::Yes;
    });
}

bool newCategory(ExplorerModel& model, const ViewTables& tables, const Above& above) {
    const QString proposal = TranslateText(u"Neuer Eintrag"_s);
    const QString name =
        ask(u'\'' + askedName(above.text) + u"'\r\n"_s + TranslateText(u"Bitte geben Sie einen Namen ein:"_s), proposal,
            proposal);
    QString text;
    return !name.isEmpty() &&
           makeEntry(model, tables, {.parent = above.key, .name = name, .description = {}, .number = {}}, above,
                     text) == Written::Yes;
}

bool newStudy(ExplorerModel& model, const ViewTables& tables, const Above& above) {
    const QString title = TranslateText(u"Neue Studie"_s), group = askedName(above.text);
    const QString prompt =
        gLanguage != 0 ? TranslateText(u"Bitte geben Sie den Namen für die neue Sudie oder Gruppe ein"_s) + u' ' + group
                       : u"Bitte geben Sie den Namen für die neue Studie oder Gruppe in '"_s + group + u"' ein:"_s;
    NewEntry entry{.parent = above.key,
                   .name = ask(prompt, title, TranslateText(u"Neue Studie/Gruppe"_s)),
                   .description = {},
                   .number = {}};
    if (entry.name.isEmpty())
        return false;
    QString text;
    for (;;) {
        entry.number =
            ask(TranslateText(u"Welche Studiennummer soll diese Studie haben?"_s), title, u"G001"_s).trimmed();
        if (entry.number.isEmpty())
            return false;
        entry.group = askIsGroup(title, false);
        const Written written = makeEntry(model, tables, entry, above, text);
        if (written != Written::NumberRefused)
            return written == Written::Yes;
    }
}

void update(const ViewTables& tables, const Change& change) {
    const dao::RecordsetPtr row = tables.row(change.key);
    EntryFields fields;
    if (change.name)
        fields.emplace_back(tables.columns.text, *change.name);
    if (change.description)
        fields.emplace_back(tables.columns.description, *change.description);
    if (change.group)
        fields.emplace_back(u"dt_IsGroup"_s, *change.group);
    row->Edit();
    setFields(*row, fields);
    row->Update();
}

EditOutcome writeChange(const ViewTables& tables, const QString& what, const Change& change) {
    const QString before = change.before.name;
    return perform({.name = editName(what, before.isEmpty() ? change.key : before),
                    .tables = {tables.entries},
                    .stillSo = [&] { return change.basis.stillSo(); },
                    .write =
                        [&](CatalogueChanges& changes) {
                            update(tables, change);
                            changes.push_back(
                                changeOf(CatalogueChange::Kind::Renamed, tables, change.key,
                                         entryText(change.name.value_or(change.before.name),
                                                   change.description.value_or(change.before.description))));
                            return true;
                        }});
}

/// Asks for the description of an entry and writes it with what else is to change.
bool describeEntry(ExplorerModel& model, const ViewTables& tables, const QString& what, const QString& name,
                   Change change) {
    const QString offered = isDescription(change.before.description) ? change.before.description : QString();
    QString text = offered;
    const Written written =
        describeAndWrite(name, offered, text, [&](const std::optional<QString>& edited, bool again) {
            change.description =
                edited && *edited != offered ? std::optional(storedDescription(*edited)) : std::nullopt;
            if (again) {
                change.basis = EditBasis().entry(tables.nodeKey(change.key));
                const std::optional<Content> now = contentOf(tables, change.key);
                if (!now) {
                    tellNotFound();
                    return Written::No;
                }
                change.before = *now;
            }
            if (change.isNone())
                return Written::Yes;
            return writeChange(tables, what, change) == EditOutcome::Done ? Written::Yes : Written::No;
        });
    if (written != Written::Yes || change.isNone())
        return false;
    goTo(model, tables.nodeKey(change.key));
    return true;
}

bool rename(ExplorerModel& model, const CatalogueNode& node, const ViewTables& tables) {
    const QString key = node.id(), text = node.Text, title = TranslateText(u"Umbenennen"_s);
    Change change{
        .key = key, .before = {}, .basis = EditBasis().entry(node.Key), .name = {}, .description = {}, .group = {}};
    const std::optional<Content> before = contentOf(tables, key);
    if (before && !isAsShown(node, tables))
        return false;
    const QString name =
        ask(u'\'' + askedName(text) + u"'\r\n"_s + TranslateText(u"Bitte geben Sie den neuen Namen ein:"_s) + u' ',
            title, text);
    if (name.isEmpty()) {
        ui::asker().messageBox(
            {.text = askedName(text) + u' ' + TranslateText(u"nicht umbenannt!"_s), .icon = ui::Icon::Information});
        return false;
    }
    if (!before) {
        tellNotFound();
        return false;
    }
    change.before = *before;
    // A key that is shown for want of a name does not become one by being left as it is.
    if (name != text)
        change.name = name;
    if (tables.study) {
        if (const bool group = askIsGroup(title, before->group); group != before->group)
            change.group = group;
    }
    return describeEntry(model, tables, title, name, change);
}

} // namespace

bool newEntry(ExplorerModel& model) {
    return onSelected(model, u"[Entries.newEntry]"_s, [&](const CatalogueNode& node, const ViewTables& tables) {
        if (isRefused(tables.view))
            return false;
        Above above{.key = node.id(), .text = node.Text, .basis = {}};
        if (!above.read(tables)) {
            tellNotFound();
            return false;
        }
        if (!isAsShown(node, tables))
            return false;
        return tables.study ? newStudy(model, tables, above) : newCategory(model, tables, above);
    });
}

bool renameEntry(ExplorerModel& model) {
    return onSelected(model, u"[Entries.renameEntry]"_s, [&](const CatalogueNode& node, const ViewTables& tables) {
        return !isRefused(tables.view) && rename(model, node, tables);
    });
}

bool editDescription(ExplorerModel& model) {
    return onSelected(model, u"[Entries.editDescription]"_s, [&](const CatalogueNode& node, const ViewTables& tables) {
        if (isRefused(tables.view))
            return false;
        const QString key = node.id(), name = node.Text;
        const EditBasis basis = EditBasis().entry(node.Key);
        const std::optional<Content> before = contentOf(tables, key);
        if (!before) {
            tellNotFound();
            return false;
        }
        if (!isAsShown(node, tables))
            return false;
        return describeEntry(
            model, tables, TranslateText(u"Beschreibung bearbeiten"_s), name,
            {.key = key, .before = *before, .basis = basis, .name = {}, .description = {}, .group = {}});
    });
}
