#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "diagnostics/errors.h"
#include "editing/CopyMove.h"
#include "editing/ViewEntries.h"
#include "editing/studyNumbers.h"
#include "editing/tableRows.h"
#include "explorer/CatalogueTree.h"
#include "platform/dao/TextOrder.h"
#include "platform/ui/Asker.h"

#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

const QStringList& categoryFields() {
    static const QStringList fields = {u"dt_IndicatorName"_s, u"dt_EnIndicatorName"_s, u"dt_IndicatorDescription"_s,
                                       u"dt_EnIndicatorDescription"_s};
    return fields;
}

const QStringList& studyFields() {
    static const QStringList fields = {u"dt_StudyTitle"_s,         u"dt_EnStudyTitle"_s, u"dt_StudyDescription"_s,
                                       u"dt_enStudyDescription"_s, u"dt_Year"_s,         u"dt_WeightHH"_s,
                                       u"dt_WeightRE"_s,           u"dt_query"_s,        u"dt_IsGroup"_s};
    return fields;
}

/// Of a variable, behind the number of its study.
const QStringList& variableFields() {
    static const QStringList fields = {u"fi_StudyNo"_s,      u"id_VarName"_s,   u"dt_VarLabel"_s,
                                       u"dt_QuestionText"_s, u"dt_TableName"_s, u"dt_FieldName"_s,
                                       u"dt_Position"_s,     u"dt_Format"_s,    u"dt_Missing"_s};
    return fields;
}

EntryText shownText(const dao::Value& name, const dao::Value& description) {
    return {name.toText(), isDescription(description.toText())};
}

/// Cells of a row by the names of fields; Null where the table has none of that name.
std::vector<dao::Value> cellsOf(const dao::Recordset& row, const QStringList& fields) {
    std::vector<dao::Value> cells;
    for (const QString& field : fields)
        cells.push_back(row.hasField(field) ? row.value(field) : dao::Value());
    return cells;
}

/// Behind the last of the rows, which are siblings in their order.
int orderBehind(const std::vector<EntryRow>& siblings) {
    return siblings.empty() ? 1 : static_cast<int>(siblings.back().order) + 1;
}

void say(const QString& text) {
    ui::asker().messageBox({.text = text, .icon = ui::Icon::Exclamation});
}

} // namespace

struct EntryTransfer::Rest {
    ShownEntry source, target;
    TransferMode mode;
    EditBasis basis;
    ViewTables from, to;
    std::vector<EntryRow> walk;      ///< the entry and what stands below it, child before next sibling
    bool otherwise = false;          ///< than the windows show: the entry has another name, or the target is gone or
                                     ///< stands below the entry by now
    QHash<QString, QString> numbers; ///< of copied studies, by folded old number
    QString newKey;

    Rest(const ShownEntry& sourceEntry, const ShownEntry& targetEntry, TransferMode wanted, EditBasis restsOn);
    bool moves() const { return mode == TransferMode::Move; }
    /// Views of one table are one view to what is written.
    bool crosses() const { return dao::compareTexts(from.entries, to.entries) != 0; }
    QString nameOf(const EntryRow& row) const { return row.name.isEmpty() ? row.key : row.name; }
    QString label(const EntryRow& row) const {
        return u" '"_s + nameOf(row) + u"' "_s + TranslateText(moves() ? u"verschieben..."_s : u"kopieren..."_s);
    }

    bool askForNumbers();
    bool keepsNumbers();
    bool numbersAreFree() const;
    QString faultOf(const QString& number) const;
    PlannedEdit edit() const;

    bool write(CatalogueChanges& changes);
    void moveWithin(CatalogueChanges& changes);
    bool writeNew(CatalogueChanges& changes, ui::Progress& progress);
    const QStringList& fields() const { return from.study ? studyFields() : categoryFields(); }
    std::vector<dao::Value> keys() const;
    QHash<QString, std::vector<dao::Value>> contents() const;
    QString addEntry(dao::Recordset& rows, const EntryRow& row, const std::vector<dao::Value>& content,
                     const QString& parent, int order) const;
    void announceNew(CatalogueChanges& changes, const std::vector<dao::Value>& content, const QString& key,
                     const QString& parent) const;
    void copyAssignments(const QHash<QString, QString>& newKeys) const;
    void copyVariables() const;
    void deleteOld() const;
};

EntryTransfer::Rest::Rest(const ShownEntry& sourceEntry, const ShownEntry& targetEntry, TransferMode wanted,
                          EditBasis restsOn)
    : source(sourceEntry), target(targetEntry), mode(wanted), basis(std::move(restsOn)),
      from(viewOfKey(source.key), source.english), to(viewOfKey(target.key), source.english) {
    basis.entry(target.key).subtree(source.key);
    const ViewEntries entries(from);
    walk = entries.subtree(source.key.mid(1));
    const QString place = target.key.mid(1);
    const bool isRoot = place == u"0";
    if (crosses())
        otherwise = !isRoot && !ViewEntries(to).find(place);
    else
        otherwise = !isRoot && (!entries.find(place) || std::ranges::any_of(walk, [&](const EntryRow& row) {
            return dao::compareTexts(row.key, place) == 0;
        }));
    // A node that was shown without text is as good as any.
    otherwise |= !walk.empty() && !source.text.isEmpty() && source.text != nameOf(walk.front());
}

/// Why a study cannot get a number, empty if it can: one that was chosen before it in this copy is taken too.
QString EntryTransfer::Rest::faultOf(const QString& number) const {
    const bool chosen =
        std::ranges::any_of(numbers, [&](const QString& other) { return dao::compareTexts(other, number) == 0; });
    return chosen ? TranslateText(u"Die Studiennummer ist bereits vergeben."_s) : whyNotStudyNumber(number);
}

/// A study that moves to another view has its number in its own until then.
bool EntryTransfer::Rest::numbersAreFree() const {
    return std::ranges::none_of(numbers, [&](const QString& number) {
        return moves() ? !to.row(number)->Eof() : isStudyNumberTaken(number) || hasStudyVariables(number);
    });
}

/// Studies that move to another view keep their numbers. @return false if one of them is taken there
bool EntryTransfer::Rest::keepsNumbers() {
    for (const EntryRow& row : walk)
        numbers.insert(dao::foldedText(row.key), row.key);
    if (numbersAreFree())
        return true;
    say(TranslateText(u"Die Studiennummer ist bereits vergeben."_s));
    return false;
}

/// A new number for each study and group, in the order of the walk. @return false if nothing is to be copied
bool EntryTransfer::Rest::askForNumbers() {
    for (const EntryRow& row : walk) {
        const std::optional<QString> number = ui::asker().inputBox(
            TranslateText(u"Bitte geben Sie eine neue Studiennummer für"_s) + u' ' + askedName(nameOf(row)),
            TranslateText(u"Studie kopieren"_s), row.key);
        if (!number || number->isEmpty())
            return false;
        if (const QString fault = faultOf(*number); !fault.isEmpty()) {
            say(fault);
            return false;
        }
        numbers.insert(dao::foldedText(row.key), *number);
    }
    return true;
}

PlannedEdit EntryTransfer::Rest::edit() const {
    PlannedEdit edit{
        editName(TranslateText(moves() ? u"Verschieben"_s : u"Kopieren"_s), source.text), {to.entries}, {}, {}};
    // What hangs on an entry goes along by itself, unless it is made anew.
    if (!moves() || (crosses() && !from.study))
        edit.tables << to.assignments;
    if (moves() && crosses()) {
        edit.tables << from.entries;
        if (!from.study)
            edit.tables << from.assignments;
    }
    return edit;
}

// ---- writing

bool EntryTransfer::Rest::write(CatalogueChanges& changes) {
    ui::Progress progress(ui::Progress::Stop::Allowed, [this] { return static_cast<int>(walk.size()); });
    if (moves() && !crosses()) {
        if (!progress.next(label(walk.front())))
            return false;
        moveWithin(changes);
    } else if (!writeNew(changes, progress)) {
        return false;
    }
    if (!progress.next(TranslateText(u"Ansicht aktualisieren..."_s)))
        return false;
    // The tree of a study view is read anew as a whole.
    QSet<int> views = viewsOf(to.view);
    if (moves())
        views |= viewsOf(from.view);
    for (const int view : views)
        if (to.study)
            changes.push_back({.kind = CatalogueChange::Kind::Ordered, .view = view});
        else if (!moves() || crosses())
            changes.push_back({.kind = CatalogueChange::Kind::Rows, .view = view});
    return true;
}

void EntryTransfer::Rest::moveWithin(CatalogueChanges& changes) {
    const EntryRow& top = walk.front();
    const QString parent = target.key.mid(1);
    const int order = orderBehind(ViewEntries(to).below(parent));
    const dao::RecordsetPtr row = from.row(top.key);
    row->Edit();
    row->setValue(u"fid"_s, to.stored(parent));
    row->setValue(u"Order"_s, order);
    row->Update();
    newKey = from.nodeKey(top.key);
    if (!to.study)
        for (const int view : viewsOf(to.view))
            changes.push_back({.kind = CatalogueChange::Kind::Moved,
                               .view = view,
                               .key = viewLetter(view) + top.key,
                               .parentKey = viewLetter(view) + parent});
}

/// Makes the entries anew, each below what its parent has become, with what hangs on them; of a move the old ones go.
bool EntryTransfer::Rest::writeNew(CatalogueChanges& changes, ui::Progress& progress) {
    const QString place = target.key.mid(1);
    const int firstOrder = orderBehind(ViewEntries(to).below(place));
    const QHash<QString, std::vector<dao::Value>> content = contents();
    const dao::RecordsetPtr rows = openCatalogue().OpenRecordset(u"Select * from "_s + to.entries);
    QHash<QString, QString> newKeys; // by folded old key
    QHash<QString, int> below;       // new children by new key
    for (size_t i = 0; i < walk.size(); ++i) {
        if (!progress.next(label(walk[i])))
            return false;
        const QString old = dao::foldedText(walk[i].key);
        const QString parent = i == 0 ? place : newKeys.value(dao::foldedText(walk[i].parent));
        const int order = i == 0 ? firstOrder : ++below[parent];
        const std::vector<dao::Value> cells = content.value(old);
        newKeys.insert(old, addEntry(*rows, walk[i], cells, parent, order));
        announceNew(changes, cells, newKeys[old], parent);
    }
    newKey = to.nodeKey(newKeys.value(dao::foldedText(walk.front().key)));
    if (!from.study)
        copyAssignments(newKeys);
    else if (!moves())
        copyVariables();
    if (!moves())
        return true;
    deleteOld();
    if (!from.study)
        for (const int view : viewsOf(from.view))
            changes.push_back(
                {.kind = CatalogueChange::Kind::Removed, .view = view, .key = viewLetter(view) + walk.front().key});
    return true;
}

std::vector<dao::Value> EntryTransfer::Rest::keys() const {
    std::vector<dao::Value> all;
    for (const EntryRow& row : walk)
        all.push_back(from.stored(row.key));
    return all;
}

/// What is copied of each entry, by its folded key.
QHash<QString, std::vector<dao::Value>> EntryTransfer::Rest::contents() const {
    QHash<QString, std::vector<dao::Value>> all;
    readRows(from.entries, from.columns.key, keys(), [&](const dao::Recordset& row) {
        all.insert(dao::foldedText(row.text(from.columns.key)), cellsOf(row, fields()));
    });
    return all;
}

/// @return the new entry's key
QString EntryTransfer::Rest::addEntry(dao::Recordset& rows, const EntryRow& row, const std::vector<dao::Value>& content,
                                      const QString& parent, int order) const {
    rows.AddNew();
    if (to.study)
        rows.setValue(to.columns.key, numbers.value(dao::foldedText(row.key), row.key));
    rows.setValue(u"fid"_s, to.stored(parent));
    rows.setValue(u"Order"_s, order);
    for (int i = 0; i < fields().size(); ++i) {
        const dao::Value& cell = content[static_cast<size_t>(i)];
        const bool isWanted = from.study ? !cell.toText().isEmpty() : !cell.isNull();
        if (isWanted && rows.hasField(fields()[i]))
            rows.setValue(fields()[i], cell);
    }
    rows.Update();
    rows.setBookmark(rows.LastModified());
    return rows.text(to.columns.key);
}

void EntryTransfer::Rest::announceNew(CatalogueChanges& changes, const std::vector<dao::Value>& content,
                                      const QString& key, const QString& parent) const {
    if (to.study)
        return;
    for (const int view : viewsOf(to.view))
        changes.push_back({.kind = CatalogueChange::Kind::Added,
                           .view = view,
                           .key = viewLetter(view) + key,
                           .parentKey = viewLetter(view) + parent,
                           .original = shownText(content[0], content[2]),
                           .english = shownText(content[1], content[3])});
}

void EntryTransfer::Rest::copyAssignments(const QHash<QString, QString>& newKeys) const {
    const QStringList present = presentFields(to.assignments, assignmentFields());
    const std::unique_ptr<dao::Appender> appender = openCatalogue().openAppender(to.assignments, present);
    // Read to the end before the first is added: both may be of one table.
    std::vector<std::vector<dao::Value>> rows;
    readRows(from.assignments, u"fid"_s, keys(), [&](const dao::Recordset& row) {
        rows.push_back(cellsOf(row, assignmentFields()));
        rows.back()[0] = to.stored(newKeys.value(dao::foldedText(rows.back()[0].toText())));
    });
    for (const std::vector<dao::Value>& row : rows)
        appendCells(*appender, present, assignmentFields(), row);
}

void EntryTransfer::Rest::copyVariables() const {
    const QString table = u"tkey_Variable"_s;
    const QStringList present = presentFields(table, variableFields());
    const std::unique_ptr<dao::Appender> appender = openCatalogue().openAppender(table, present);
    for (const EntryRow& study : walk) {
        const QString statement =
            u"SELECT "_s + present.join(u", "_s) + u" FROM tkey_Variable WHERE fi_StudyNo = "_s + quoted(study.key);
        const dao::RecordsetPtr rows = openCatalogue().OpenRecordset(statement + u" ;"_s, dao::dbOpenSnapshot);
        for (; !rows->Eof(); rows->MoveNext()) {
            std::vector<dao::Value> cells = cellsOf(*rows, variableFields());
            cells[0] = numbers.value(dao::foldedText(study.key));
            appendCells(*appender, present, variableFields(), cells);
        }
    }
}

void EntryTransfer::Rest::deleteOld() const {
    if (!from.study)
        deleteRowsWith(from.assignments, u"fid"_s, keys());
    deleteNamedRows(from.entries, from.columns.key, keys());
}

// ---- the whole

EntryTransfer::EntryTransfer(const ShownEntry& source, const ShownEntry& target, TransferMode mode, EditBasis basis)
    : rest_(new Rest(source, target, mode, std::move(basis))) {}

EntryTransfer::~EntryTransfer() = default;

QString EntryTransfer::newKey() const {
    return rest_->newKey;
}

EditOutcome EntryTransfer::run() {
    if (rest_->walk.empty()) {
        say(TranslateText(u"Kann nicht kopiert werden! ("_s) + rest_->source.key + u')');
        return EditOutcome::Stopped;
    }
    bool wanted = true;
    if (rest_->from.study && !rest_->otherwise && (!rest_->moves() || rest_->crosses()) &&
        !attempt([&] { wanted = rest_->moves() ? rest_->keepsNumbers() : rest_->askForNumbers(); }))
        return EditOutcome::Failed;
    if (!wanted)
        return EditOutcome::Stopped;
    PlannedEdit edit = rest_->edit();
    edit.stillSo = [&] { return !rest_->otherwise && rest_->basis.stillSo() && rest_->numbersAreFree(); };
    edit.write = [&](CatalogueChanges& changes) { return rest_->write(changes); };
    const EditOutcome outcome = perform(edit);
    if (outcome != EditOutcome::Done)
        rest_->newKey.clear();
    else if (rest_->moves() && rest_->crosses())
        for (RememberedEntry* remembered : {&SourceNode, &ClipboardNode})
            if (isSameEntry(remembered->key(), rest_->source.key))
                remembered->set(rest_->newKey, remembered->english());
    return outcome;
}
