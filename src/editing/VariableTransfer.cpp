#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/schema.h"
#include "diagnostics/errors.h"
#include "editing/CopyMove.h"
#include "editing/ViewEntries.h"
#include "editing/tableRows.h"
#include "explorer/CatalogueTree.h"
#include "platform/dao/TextOrder.h"
#include "platform/ui/Asker.h"

#include <QHash>
#include <map>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// What an assignment to another entry takes over.
struct Assigned {
    dao::Value study, variable, question, print;
    bool operator==(const Assigned&) const = default;
};

/// The rows of a list in which a variable is looked for by its name and a pattern of its study's number, read once.
/// Most rows of a large list have other names than those that are looked for: they are not kept.
class SearchedRows {
public:
    /// @param name the field that has the variable's name @param hasKeys whether its rows are named by their id
    /// @param wanted names that are looked for, folded
    SearchedRows(const QString& statement, const QString& name, bool hasKeys, const QSet<QString>& wanted) {
        const dao::RecordsetPtr rows = openCatalogue().OpenRecordset(statement, dao::dbOpenSnapshot);
        const auto place = [&](const QString& field) { return rows->hasField(field) ? rows->indexOf(field) : -1; };
        const auto cell = [&](int at) { return at < 0 ? dao::Value() : rows->value(at); };
        const int id = hasKeys ? rows->indexOf(u"id"_s) : -1, study = rows->indexOf(u"fi_StudyNo"_s),
                  variable = rows->indexOf(name), question = place(u"dt_QuestionNo"_s),
                  print = place(u"dt_PrintSelect"_s);
        for (; !rows->Eof(); rows->MoveNext())
            if (const dao::Value is = cell(variable); wanted.contains(dao::foldedText(is.toText())))
                add({cell(study), is, cell(question), cell(print)}, cell(id));
    }

    void add(const Assigned& row, const dao::Value& id = {}) {
        if (!row.study.isNull() && !row.variable.isNull()) {
            byBoth_[keyOf(row.variable.toText(), row.study.toText())].push_back(rows_.size());
            if (!byName_.isEmpty())
                byName_[dao::foldedText(row.variable.toText())].push_back(rows_.size());
        }
        rows_.push_back({row, id, false});
    }
    void remove(size_t place) { rows_[place].gone = true; }

    /// The first row of that name.
    std::optional<size_t> find(const QString& name) const {
        for (const size_t place : named(name))
            if (!rows_[place].gone)
                return place;
        return std::nullopt;
    }
    /// The first row of that name whose study is like the pattern.
    std::optional<size_t> find(const QString& name, const QString& study) const {
        static const QString wildcards = u"*?#["_s;
        const bool isPattern =
            std::any_of(study.begin(), study.end(), [](QChar letter) { return wildcards.contains(letter); });
        const std::vector<size_t> places = isPattern ? named(name) : byBoth_.value(keyOf(name, study));
        for (const size_t place : places)
            if (!rows_[place].gone && (!isPattern || dao::matchesPattern(rows_[place].content.study.toText(), study)))
                return place;
        return std::nullopt;
    }
    const Assigned& operator[](size_t place) const { return rows_[place].content; }
    const dao::Value& id(size_t place) const { return rows_[place].id; }

private:
    struct Row {
        Assigned content;
        dao::Value id;
        bool gone;
    };
    std::vector<Row> rows_;
    QHash<QString, std::vector<size_t>> byBoth_;
    mutable QHash<QString, std::vector<size_t>> byName_; ///< folded; made when it is first asked

    static QString keyOf(const QString& name, const QString& study) {
        return dao::foldedText(name + QChar::Null + study);
    }
    std::vector<size_t> named(const QString& name) const {
        if (byName_.isEmpty())
            for (size_t place = 0; place < rows_.size(); ++place)
                if (!rows_[place].content.study.isNull() && !rows_[place].content.variable.isNull())
                    byName_[dao::foldedText(rows_[place].content.variable.toText())].push_back(place);
        return byName_.value(dao::foldedText(name));
    }
};

/// What becomes of one variable.
struct Step {
    enum class Kind { Added, Duplicate, Missing, Nothing };
    Kind kind = Kind::Nothing;
    Assigned content;
    bool leaves = false; ///< its row is deleted
    dao::Value id;       ///< of that row
    bool operator==(const Step&) const = default;
};

} // namespace

struct VariableTransfer::Rest {
    std::vector<MovedVariable> variables;
    int listed;
    ShownEntry target;
    TransferMode mode;
    EditBasis basis;
    std::vector<Step> steps;
    std::vector<qint64> version = {}; ///< of what they rest on
    bool tellMissing = true;

    int view() const { return viewOfKey(target.key); }
    bool moves() const { return mode == TransferMode::Move; }

    /// What becomes of the variables, one after the other, each in what those before it leave.
    std::vector<Step> pass();
    QStringList passed() const;
    void ask();
    Step stepOf(const MovedVariable& variable, SearchedRows& source, SearchedRows& there, bool fromStudy);
    void askAboutDuplicate(const MovedVariable& variable) const;
    void tellOfMissing(const MovedVariable& variable, bool fromStudy);
    QString label(const MovedVariable& variable) const;
    bool write(CatalogueChanges& changes) const;
    bool append(ui::Progress& progress) const;
    PlannedEdit edit() const;
};

/// The tables that pass() reads.
QStringList VariableTransfer::Rest::passed() const {
    QStringList tables{ViewTables(view(), target.english).assignments};
    for (const MovedVariable& variable : variables)
        if (const QString table = ViewTables(viewOfKey(variable.entry), target.english).assignments;
            !tables.contains(table))
            tables << table;
    return tables;
}

std::vector<Step> VariableTransfer::Rest::pass() {
    QSet<QString> names;
    for (const MovedVariable& variable : variables)
        names.insert(dao::foldedText(variable.name));
    const ViewTables to(view(), target.english);
    SearchedRows there(u"SELECT * from "_s + to.assignments + u" WHERE fid = "_s + to.literal(target.key.mid(1)) +
                           u" ;"_s,
                       u"fi_VariableNo"_s, true, names);
    std::map<std::pair<QString, QString>, SearchedRows> sources; // by entry; of a study view by study
    std::vector<Step> all;
    all.reserve(variables.size());
    for (const MovedVariable& variable : variables) {
        const ViewTables from(viewOfKey(variable.entry), target.english);
        if (!from.study && isSameEntry(variable.entry, target.key)) {
            all.emplace_back(); // dropped on itself
            continue;
        }
        const std::pair place(variable.entry, from.study ? dao::foldedText(variable.study) : QString());
        auto known = sources.find(place);
        if (known == sources.end())
            known = sources
                        .try_emplace(
                            place,
                            from.study ? u"SELECT fi_StudyNo, id_VarName from tkey_Variable  WHERE [fi_StudyNo] = "_s +
                                             quoted(variable.study) + u" ;"_s
                                       : u"SELECT * FROM "_s + from.assignments + u" WHERE fid = "_s +
                                             from.literal(variable.entry.mid(1)) + u" ;"_s,
                            from.study ? u"id_VarName"_s : u"fi_VariableNo"_s, !from.study, names)
                        .first;
        all.push_back(stepOf(variable, known->second, there, from.study));
    }
    return all;
}

void VariableTransfer::Rest::ask() {
    for (size_t i = 0; i < steps.size(); ++i)
        if (steps[i].kind == Step::Kind::Missing)
            tellOfMissing(variables[i], isStudyView(viewOfKey(variables[i].entry)));
        else if (steps[i].kind == Step::Kind::Duplicate && ShowDuplicateMessage)
            askAboutDuplicate(variables[i]);
}

Step VariableTransfer::Rest::stepOf(const MovedVariable& variable, SearchedRows& source, SearchedRows& there,
                                    bool fromStudy) {
    Step step;
    const std::optional<size_t> found =
        fromStudy ? source.find(variable.name) : source.find(variable.name, variable.study);
    if (!found) {
        step.kind = Step::Kind::Missing;
        return step;
    }
    const bool isThere = there.find(variable.name, variable.study).has_value();
    step.kind = isThere ? Step::Kind::Duplicate : Step::Kind::Added;
    step.content = source[*found];
    if (!isThere)
        there.add(step.content);
    if (moves() && !fromStudy) {
        step.leaves = true;
        step.id = source.id(*found);
        source.remove(*found);
    }
    return step;
}

void VariableTransfer::Rest::askAboutDuplicate(const MovedVariable& variable) const {
    const QString text = u"Variable "_s + askedName(variable.name) + said(u" aus Studie "_s, u" from study  "_s) +
                         askedName(variable.study) + said(u" ist bereits in "_s, u" is already in "_s) +
                         askedName(target.text) + u' ' +
                         TranslateText(u"Kategorie vorhanden und wird übersprungen!"_s) + u"\r\n"_s +
                         TranslateText(u"Möchten Sie für jede weitere doppelte Variable diese Meldung bekommen?"_s);
    if (ui::asker().messageBox({.text = text, .icon = ui::Icon::Question, .buttons = ui::Buttons::YesNo}) ==
        ui::Answer::No)
        ShowDuplicateMessage = false;
}

void VariableTransfer::Rest::tellOfMissing(const MovedVariable& variable, bool fromStudy) {
    if (!tellMissing)
        return;
    bool noMore = false;
    ui::Box box{.text = fromStudy ? TranslateText(u"Variable nicht gefunden!"_s)
                                  : u"Variable "_s + askedName(variable.name) + u' ' +
                                        TranslateText(u"nicht gefunden!"_s) + u' ',
                .icon = ui::Icon::Exclamation};
    if (variables.size() > 1) {
        box.check = TranslateText(u"Bei weiteren fehlenden Variablen nicht mehr melden"_s);
        box.checked = &noMore;
    }
    ui::asker().messageBox(box);
    tellMissing = !noMore;
}

QString VariableTransfer::Rest::label(const MovedVariable& variable) const {
    return TranslateText(u"Variable"_s) + u" '"_s + variable.name + u"' "_s + TranslateText(u"aus Studie"_s) + u" '"_s +
           variable.study + u"' "_s + TranslateText(moves() ? u"verschieben..."_s : u"kopieren..."_s);
}

/// @return false once the user has stopped it
bool VariableTransfer::Rest::append(ui::Progress& progress) const {
    const ViewTables to(view(), target.english);
    const QStringList fields = presentFields(to.assignments, assignmentFields());
    const std::unique_ptr<dao::Appender> appender = openCatalogue().openAppender(to.assignments, fields);
    const dao::Value id = to.stored(target.key.mid(1));
    for (size_t i = 0; i < steps.size(); ++i) {
        if (!progress.next(label(variables[i])))
            return false;
        if (steps[i].kind != Step::Kind::Added)
            continue;
        const Assigned& content = steps[i].content;
        appendCells(*appender, fields, assignmentFields(),
                    {id, content.study, content.variable, content.question, content.print});
    }
    return true;
}

bool VariableTransfer::Rest::write(CatalogueChanges& changes) const {
    ui::Progress progress(ui::Progress::Stop::Allowed,
                          [this] { return std::max(listed, static_cast<int>(variables.size())); });
    if (!append(progress))
        return false;
    std::map<int, std::vector<dao::Value>> leaving; // by view
    for (size_t i = 0; i < steps.size(); ++i)
        if (steps[i].leaves)
            leaving[viewOfKey(variables[i].entry)].push_back(steps[i].id);
    for (const auto& [from, ids] : leaving)
        deleteNamedRows(ViewTables(from, target.english).assignments, u"id"_s, ids);
    if (!progress.next(TranslateText(u"Ansicht aktualisieren..."_s)))
        return false;
    // Lists of other entries stay as they are: one of many thousand rows takes longer to read than a drop to write.
    std::map<QString, int> touched{{target.key, view()}};
    if (!leaving.empty())
        for (size_t i = 0; i < steps.size(); ++i)
            if (steps[i].leaves)
                touched.emplace(variables[i].entry, viewOfKey(variables[i].entry));
    for (const auto& [entry, of] : touched)
        for (const int shown : viewsOf(of))
            changes.push_back(
                {.kind = CatalogueChange::Kind::Rows, .view = shown, .key = viewLetter(shown) + entry.mid(1)});
    return true;
}

PlannedEdit VariableTransfer::Rest::edit() const {
    const QString what = TranslateText(moves() ? u"Verschieben"_s : u"Kopieren"_s);
    PlannedEdit edit{variables.size() == 1
                         ? editName(what, variables.front().name)
                         : what + u' ' + QString::number(variables.size()) + u' ' + TranslateText(u"Variablen"_s),
                     {ViewTables(view(), target.english).assignments},
                     {},
                     {}};
    for (size_t i = 0; i < steps.size(); ++i)
        if (steps[i].leaves)
            if (const QString table = ViewTables(viewOfKey(variables[i].entry), target.english).assignments;
                !edit.tables.contains(table))
                edit.tables << table;
    return edit;
}

VariableTransfer::VariableTransfer(std::vector<MovedVariable> variables, int listed, const ShownEntry& target,
                                   TransferMode mode, EditBasis basis)
    : rest_(new Rest{std::move(variables), listed, target, mode, std::move(basis), {}}) {
    rest_->basis.entry(target.key);
    rest_->version = openCatalogue().contentVersion(rest_->passed());
    rest_->steps = rest_->pass();
}

VariableTransfer::~VariableTransfer() = default;

EditOutcome VariableTransfer::run() {
    rest_->ask();
    const auto writes = [](const Step& step) { return step.kind == Step::Kind::Added || step.leaves; };
    if (std::ranges::none_of(rest_->steps, writes))
        return EditOutcome::Stopped;
    PlannedEdit edit = rest_->edit();
    // Reading a large entry again is worth its time only if somebody has written meanwhile.
    const auto isSame = [&] {
        return openCatalogue().contentVersion(rest_->passed()) == rest_->version || rest_->pass() == rest_->steps;
    };
    edit.stillSo = [&] { return rest_->basis.stillSo() && isSame(); };
    edit.write = [&](CatalogueChanges& changes) { return rest_->write(changes); };
    return perform(edit);
}
