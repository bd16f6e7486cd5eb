#include "analysis/request/RequestEditor.h"

#include "analysis/request/boundRows.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "config/Options.h"
#include "diagnostics/errors.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

FileStamp stampOfCatalogue() {
    const dao::DatabasePtr database = gDatabase.CurrentDatabase();
    return database ? fileStamp(database->Name()) : FileStamp();
}

/// Of a catalogue that lacks the field: no.
bool hasText(const dao::Recordset& row, const QString& field) {
    return row.hasField(field) && !row.text(field).isEmpty();
}

} // namespace

QString studyQuerySource() {
    QStringList statements;
    for (int view = 1; view <= gViews.lastRow(); ++view)
        if (gViews.at(view, ViewTable::Type) == "1"_L1)
            statements << u"Select * from tkey_"_s + gViews.at(view, ViewTable::Table) + u" Where dt_IsGroup = 0;"_s;
    return statements.join(u" UNION "_s);
}

QString variableQuerySource(const QString& study) {
    return u"select * from [tkey_Variable] where [fi_StudyNo] = "_s + quoted(study) + u" order by dt_Position;"_s;
}

void RequestEditor::change(RequestPart part, const std::function<void(AnalysisRequest&)>& step) {
    step(request_);
    changed(part);
}

void RequestEditor::replace(const AnalysisRequest& request, const FileStamp& catalogue) {
    request_ = request;
    stamp_ = catalogue;
    changed(RequestPart::Opened);
}

int RequestEditor::listen(std::function<void(RequestPart)> listener) {
    listeners_.emplace_back(++lastListener_, std::move(listener));
    return lastListener_;
}

void RequestEditor::forget(int listener) {
    std::erase_if(listeners_, [listener](const auto& entry) { return entry.first == listener; });
}

void RequestEditor::changed(RequestPart part) {
    for (const auto& [number, listener] : listeners_)
        listener(part);
}

void RequestEditor::open() {
    trapped([this] { openNow(); });
    changed(RequestPart::Opened);
}

void RequestEditor::openNow() {
    englishContents_ = gOptions.EnglishLanguage;
    request_ = {};
    stamp_ = stampOfCatalogue();
    dtData1.source = studyQuerySource();
    dtData1.recordset = dtData1.source.isEmpty() ? nullptr : queryRows(dtData1.source);
    // A study that is not there: the list of variables starts empty.
    dtData2.source = u"select * from tkey_Variable where fi_StudyNo like 'QX1919';"_s;
    dtData2.recordset = queryRows(dtData2.source);
    variableChoices_.clear();
    variables_.clear();
    canKeep_ = dtData2.recordset != nullptr;
    for (const QString& field :
         {u"dt_Instruction"_s, u"dt_Table"_s, u"dt_TableLayout"_s, u"dt_Graph"_s, u"dt_GraphLayout"_s})
        canKeep_ = canKeep_ && dtData2.recordset->hasField(field);
    creationOffered_ = gCatalogueOptions.VaridexCreationMode && canKeep_;
}

const QString& RequestEditor::contentField(const QString& original, const QString& english) const {
    return englishContents_ ? english : original;
}

bool RequestEditor::findStudy(const QString& study) {
    return findRow(dtData1.recordset, u"[id_StudyNo] = "_s + quoted(study));
}

bool RequestEditor::findVariable(const QString& name) {
    return findRow(dtData2.recordset, u"id_Varname = "_s + quoted(name));
}

/// The variable in the current row of dtData2.
BoundPicker RequestEditor::pickedVariable() const {
    return {dtData2.recordset->text(u"id_VarName"_s),
            dtData2.recordset->text(contentField(u"dt_VarLabel"_s, u"dt_EnVarLabel"_s))};
}

std::vector<BoundPicker> RequestEditor::studies() {
    return rowList(dtData1.recordset, u"id_StudyNo"_s, contentField(u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s));
}

bool RequestEditor::StudyClick(const QString& study) {
    bool found = false;
    trapped([&] { found = clickStudy(study); });
    if (found)
        changed(RequestPart::Study);
    return found;
}

bool RequestEditor::clickStudy(const QString& study) {
    if (!findStudy(study))
        return false;
    const QString number = dtData1.recordset->text(u"id_StudyNo"_s);
    request_.dbcStudy = {number, dtData1.recordset->text(contentField(u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s))};
    const QString variables = variableQuerySource(number);
    const bool changed = variables != dtData2.source;
    if (changed) {
        loadVariables(variables);
        for (QString* field : {&request_.dtTable, &request_.dtTable2, &request_.dtField, &request_.dtField2,
                               &request_.dtMissing, &request_.sMissing, &request_.dtMissing2, &request_.dtVarGroup,
                               &request_.dtYear, &request_.dbcVarGewicht_1Uni})
            field->clear();
        request_.dbcVarGewicht.clear();
    }
    request_.Option3 = WeightKind::noWeight;
    namedWeight_.reset();
    loadWeights();
    loadParts();
    // A repeated click keeps the variables.
    if (changed) {
        request_.dbcVariable.clear();
        request_.dbcVariable2.clear();
        request_.dbcVariableUni.clear();
        request_.dbcVariable2Uni.clear();
    }
    loadVariable(false);
    return true;
}

void RequestEditor::loadVariables(const QString& statement) {
    dtData2.source = statement;
    dtData2.recordset = queryRows(statement);
    variableChoices_.clear();
    variables_.clear();
    if (!hasRows(dtData2.recordset))
        return;
    dao::Recordset& rows = *dtData2.recordset;
    const int name = rows.indexOf(u"id_VarName"_s);
    const int label = rows.indexOf(contentField(u"dt_VarLabel"_s, u"dt_EnVarLabel"_s));
    const int caseTable = rows.indexOf(u"dt_TableName"_s);
    const int field = rows.indexOf(u"dt_FieldName"_s);
    for (rows.MoveFirst(); !rows.Eof(); rows.MoveNext()) {
        variables_.push_back({rows.value(name).toText(),
                              rows.value(label).toText(),
                              {rows.value(caseTable).toText(), rows.value(field).toText()}});
        variableChoices_ << variables_.back().name + u": "_s + variables_.back().label;
    }
    rows.MoveFirst();
}

bool RequestEditor::chooseVariable(const QString& name) {
    bool found = false;
    trapped([&] {
        found = findVariable(name);
        if (!found)
            return;
        request_.dbcVariable = pickedVariable();
        loadVariable(false);
    });
    if (found)
        changed(RequestPart::Variables);
    return found;
}

bool RequestEditor::chooseVariable2(const QString& name) {
    bool found = false;
    trapped([&] {
        found = findVariable(name);
        if (!found)
            return;
        request_.dbcVariable2 = pickedVariable();
        loadVariable2();
    });
    if (found)
        changed(RequestPart::Variables);
    return found;
}

void RequestEditor::dbcVariable_Change() {
    trapped([this] { loadVariable(true); });
    changed(RequestPart::Variables);
}

void RequestEditor::dbcVariable2_Change() {
    trapped([this] { loadVariable2(); });
    changed(RequestPart::Variables);
}

bool RequestEditor::refresh() {
    bool reread = false;
    const Trap end = trapped([&] {
        const FileStamp now = stampOfCatalogue();
        reread = now != stamp_ && !request_.dbcStudy.isEmpty();
        if (reread)
            readAgain();
        stamp_ = now;
        loadVariable(true);
    });
    changed(reread ? RequestPart::Study : RequestPart::Variables);
    return end != Trap::Aborted;
}

void RequestEditor::besideFields(const std::function<void()>& write) {
    const FileStamp before = stampOfCatalogue();
    write();
    const FileStamp after = stampOfCatalogue();
    // One commit more is this one's own.
    if (before == stamp_ && after.changes - before.changes <= 1 && after.logSize == before.logSize)
        stamp_ = after;
}

/// Somebody has written to the catalogue since: a study may have been replaced as a whole.
void RequestEditor::readAgain() {
    dtData1.recordset = dtData1.source.isEmpty() ? nullptr : queryRows(dtData1.source);
    loadVariables(QString(dtData2.source));
    if (!findVariable(request_.dbcVariable.value)) {
        request_.dtTable.clear();
        request_.dtField.clear();
    }
    if (!request_.dbcVariable2.isEmpty()) {
        request_.dtTable2.clear();
        request_.dtField2.clear();
        loadVariable2();
    }
    loadWeights();
    keepNamedWeight();
    readParts();
    if (request_.mode == AnalysisMode::Comparison || request_.optFilter != FilterKind::FilterParts)
        return;
    // A part is known by its number; where it has gone nothing takes its place.
    if (isPart(request_.dbcParts.value))
        loadPart();
    else
        request_.dbcParts.clear();
}

/// The statistics were chosen for one variable; another one starts with the options'.
void RequestEditor::forgetStatistics() {
    if (request_.dbcStudy.value == describedStudy_.value && request_.dbcVariable.value == describedVariable_.value)
        return;
    describedStudy_ = request_.dbcStudy;
    describedVariable_ = request_.dbcVariable;
    request_.dtDesc.clear();
    request_.dtDescDigits.clear();
}

/// @param keepChoices where the variable stays: missing values that the user chose for it hold
void RequestEditor::loadVariable(bool keepChoices) {
    forgetStatistics();
    kept_ = {};
    if (!findVariable(request_.dbcVariable.value))
        return;
    dao::Recordset& row = *dtData2.recordset;
    request_.dtTable = row.text(u"dt_TableName"_s);
    request_.dtField = row.text(u"dt_FieldName"_s);
    request_.dtMissing = missingOverride_.value_or(row.text(u"dt_Missing"_s));
    if (!keepChoices || !request_.bUserMissing)
        request_.sMissing = request_.dtMissing;
    request_.dtYear = findStudy(request_.dbcStudy.value) ? dtData1.recordset->text(u"dt_Year"_s) : QString();
    loadGroup();
    const dao::RecordsetPtr stored =
        queryRows(u"SELECT * FROM tkey_Variable WHERE fi_StudyNo="_s + quoted(request_.dbcStudy.value) +
                  u" AND id_VarName="_s + quoted(request_.dbcVariable.value) + u";"_s);
    if (!hasRows(stored))
        return;
    request_.dbcVariableUni =
        stored->text(u"id_VarName"_s) + u": "_s + stored->text(contentField(u"dt_VarLabel"_s, u"dt_EnVarLabel"_s));
    kept_ = {hasText(*stored, u"dt_Instruction"_s), hasText(*stored, u"dt_Table"_s), hasText(*stored, u"dt_Graph"_s)};
}

/// The group of the variable in the current row of dtData2.
void RequestEditor::loadGroup() {
    request_.dtVarGroup.clear();
    const dao::Value group = dtData2.recordset->value(u"dt_VarGroup"_s);
    if (group.isNull() || group.toText().isEmpty() || !gDatabase.TableExist(u"tkey_VarGroups"_s))
        return;
    const dao::RecordsetPtr groups = queryRows(u"tkey_VarGroups"_s);
    if (findRow(groups, u"id_VarGroup = "_s + group.toText()))
        request_.dtVarGroup = groups->text(contentField(u"dt_VarGroupName"_s, u"dt_VarGroupNameEn"_s));
}

void RequestEditor::loadVariable2() {
    if (!findVariable(request_.dbcVariable2.value))
        return;
    dao::Recordset& row = *dtData2.recordset;
    request_.dtTable2 = row.text(u"dt_TableName"_s);
    request_.dtField2 = row.text(u"dt_FieldName"_s);
    request_.dtMissing2 = missingOverride2_.value_or(row.text(u"dt_Missing"_s));
    const BoundPicker picked = pickedVariable();
    request_.dbcVariable2Uni = picked.value + u": "_s + picked.text;
}

void RequestEditor::overrideMissing(const std::optional<QString>& definition) {
    missingOverride_ = definition;
    request_.bUserMissing = false;
    trapped([this] { loadVariable(true); });
    changed(RequestPart::Missing);
}

void RequestEditor::overrideMissing2(const std::optional<QString>& definition) {
    missingOverride2_ = definition;
    trapped([this] { loadVariable2(); });
    changed(RequestPart::Missing);
}

void RequestEditor::chooseMode(AnalysisMode mode) {
    if (request_.mode == AnalysisMode::Comparison && mode != AnalysisMode::Comparison)
        trapped([this] { leaveComparison(); });
    // What the user said of missing values was said of another table.
    if (request_.mode != mode && std::exchange(request_.bUserMissing, false))
        request_.sMissing = request_.dtMissing;
    request_.mode = mode;
    if (mode == AnalysisMode::Frequency) {
        request_.dbcVariable2.clear();
        request_.dbcVariable2Uni.clear();
        request_.dtTable2.clear();
        request_.dtField2.clear();
    }
    if (mode == AnalysisMode::Comparison)
        request_.Option3 = WeightKind::noWeight;
    namedWeight_.reset();
    trapped([this] { loadWeights(); });
    changed(RequestPart::Mode);
}
