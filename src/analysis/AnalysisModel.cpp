#include "analysis/AnalysisModel.h"

#include "analysis/boundRows.h"
#include "analysis/builders.h"
#include "analysis/comparisonEntries.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "config/Options.h"
#include "diagnostics/errors.h"

using namespace Qt::StringLiterals;

namespace {

bool isStored(dao::Recordset& row, const QString& field) {
    return row.hasField(field) && !row.text(field).isEmpty();
}

} // namespace

AnalysisModel::AnalysisModel() : builders(tableBuilders()) {}

QString AnalysisModel::studyQuerySource() {
    QStringList statements;
    for (int view = 1; view <= gViews.lastRow(); ++view)
        if (gViews.at(view, ViewTable::Type) == "1"_L1)
            statements << u"Select * from tkey_"_s + gViews.at(view, ViewTable::Table) + u" Where dt_IsGroup = 0;"_s;
    return statements.join(u" UNION "_s);
}

void AnalysisModel::open() {
    trapped([this] { openNow(); });
}

void AnalysisModel::openNow() {
    englishContents_ = gOptions.EnglishLanguage;
    request = {};
    clearTable();
    tab_ = 0;
    bCreationMode = false;
    dtData1.source = studyQuerySource();
    dtData1.recordset = dtData1.source.isEmpty() ? nullptr : queryRows(dtData1.source);
    // A study that is not there: the list of variables starts empty.
    dtData2.source = u"select * from tkey_Variable where fi_StudyNo like 'QX1919';"_s;
    dtData2.recordset = queryRows(dtData2.source);
    variableChoices_.clear();
    variables_.clear();
    creationOffered_ = gCatalogueOptions.VaridexCreationMode && dtData2.recordset;
    for (const QString& field :
         {u"dt_Instruction"_s, u"dt_Table"_s, u"dt_TableLayout"_s, u"dt_Graph"_s, u"dt_GraphLayout"_s})
        creationOffered_ = creationOffered_ && dtData2.recordset->hasField(field);
}

const QString& AnalysisModel::contentField(const QString& original, const QString& english) const {
    return englishContents_ ? english : original;
}

bool AnalysisModel::findStudy(const QString& study) {
    return findRow(dtData1.recordset, u"[id_StudyNo] = "_s + quoted(study));
}

bool AnalysisModel::findVariable(const QString& name) {
    return findRow(dtData2.recordset, u"id_Varname = "_s + quoted(name));
}

/// The variable in the current row of dtData2.
BoundPicker AnalysisModel::pickedVariable() const {
    return {dtData2.recordset->text(u"id_VarName"_s),
            dtData2.recordset->text(contentField(u"dt_VarLabel"_s, u"dt_EnVarLabel"_s))};
}

bool AnalysisModel::StudyClick(const QString& study) {
    bool found = false;
    trapped([&] { found = clickStudy(study); });
    return found;
}

bool AnalysisModel::clickStudy(const QString& study) {
    if (!findStudy(study))
        return false;
    const QString number = dtData1.recordset->text(u"id_StudyNo"_s);
    request.dbcStudy = {number, dtData1.recordset->text(contentField(u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s))};
    const QString variables =
        u"select * from [tkey_Variable] where [fi_StudyNo] = "_s + quoted(number) + u" order by dt_Position;"_s;
    const bool changed = variables != dtData2.source;
    if (changed) {
        loadVariables(variables);
        for (QString* field : {&request.dtTable, &request.dtTable2, &request.dtField, &request.dtField2,
                               &request.dtMissing, &request.sMissing, &request.dtMissing2, &request.dtVarGroup,
                               &request.dtYear, &request.dbcVarGewicht_1Uni})
            field->clear();
        request.dbcVarGewicht.clear();
    }
    request.Option3 = WeightKind::noWeight;
    loadWeights();
    loadParts();
    // A repeated click keeps the variables.
    if (changed) {
        request.dbcVariable.clear();
        request.dbcVariable2.clear();
        request.dbcVariableUni.clear();
        request.dbcVariable2Uni.clear();
    }
    loadVariable(false);
    return true;
}

void AnalysisModel::loadVariables(const QString& statement) {
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

bool AnalysisModel::chooseVariable(const QString& name) {
    bool found = false;
    trapped([&] {
        found = findVariable(name);
        if (!found)
            return;
        request.dbcVariable = pickedVariable();
        loadVariable(false);
    });
    return found;
}

bool AnalysisModel::chooseVariable2(const QString& name) {
    bool found = false;
    trapped([&] {
        found = findVariable(name);
        if (!found)
            return;
        request.dbcVariable2 = pickedVariable();
        loadVariable2();
    });
    return found;
}

void AnalysisModel::dbcVariable_Change() {
    trapped([this] { loadVariable(false); });
}

void AnalysisModel::dbcVariable2_Change() {
    trapped([this] { loadVariable2(); });
}

/// The statistics were chosen for one variable; another one starts with the options'.
void AnalysisModel::forgetStatistics() {
    if (request.dbcStudy.value == describedStudy_.value && request.dbcVariable.value == describedVariable_.value)
        return;
    describedStudy_ = request.dbcStudy;
    describedVariable_ = request.dbcVariable;
    request.dtDesc.clear();
    request.dtDescDigits.clear();
}

/// @param keepChoices at the start of a run: missing values that the user chose for this variable hold
void AnalysisModel::loadVariable(bool keepChoices) {
    forgetStatistics();
    hasInstruction_ = hasTable_ = hasGraph_ = false;
    if (!findVariable(request.dbcVariable.value))
        return;
    dao::Recordset& row = *dtData2.recordset;
    request.dtTable = row.text(u"dt_TableName"_s);
    request.dtField = row.text(u"dt_FieldName"_s);
    request.dtMissing = missingOverride_.value_or(row.text(u"dt_Missing"_s));
    if (!keepChoices || !bUserMissing)
        request.sMissing = request.dtMissing;
    request.dtYear = findStudy(request.dbcStudy.value) ? dtData1.recordset->text(u"dt_Year"_s) : QString();
    loadGroup();
    const dao::RecordsetPtr stored =
        queryRows(u"SELECT * FROM tkey_Variable WHERE fi_StudyNo="_s + quoted(request.dbcStudy.value) +
                  u" AND id_VarName="_s + quoted(request.dbcVariable.value) + u";"_s);
    if (!hasRows(stored))
        return;
    request.dbcVariableUni =
        stored->text(u"id_VarName"_s) + u": "_s + stored->text(contentField(u"dt_VarLabel"_s, u"dt_EnVarLabel"_s));
    hasInstruction_ = isStored(*stored, u"dt_Instruction"_s);
    hasTable_ = isStored(*stored, u"dt_Table"_s);
    hasGraph_ = isStored(*stored, u"dt_Graph"_s);
}

/// The group of the variable in the current row of dtData2.
void AnalysisModel::loadGroup() {
    request.dtVarGroup.clear();
    const dao::Value group = dtData2.recordset->value(u"dt_VarGroup"_s);
    if (group.isNull() || group.toText().isEmpty() || !gDatabase.TableExist(u"tkey_VarGroups"_s))
        return;
    const dao::RecordsetPtr groups = queryRows(u"tkey_VarGroups"_s);
    if (findRow(groups, u"id_VarGroup = "_s + group.toText()))
        request.dtVarGroup = groups->text(contentField(u"dt_VarGroupName"_s, u"dt_VarGroupNameEn"_s));
}

void AnalysisModel::loadVariable2() {
    if (!findVariable(request.dbcVariable2.value))
        return;
    dao::Recordset& row = *dtData2.recordset;
    request.dtTable2 = row.text(u"dt_TableName"_s);
    request.dtField2 = row.text(u"dt_FieldName"_s);
    request.dtMissing2 = row.text(u"dt_Missing"_s);
    const BoundPicker picked = pickedVariable();
    request.dbcVariable2Uni = picked.value + u": "_s + picked.text;
}

void AnalysisModel::overrideMissing(const std::optional<QString>& definition) {
    missingOverride_ = definition;
    bUserMissing = false;
    trapped([this] { loadVariable(true); });
}

/// The run of a comparison left the filter of its last entry; a part that the study shown has not got goes with it.
void AnalysisModel::leaveComparison() {
    if (request.optFilter != FilterKind::FilterParts)
        return;
    const QString id = request.dbcParts.value;
    const bool own = hasParts_ && isWholeNumber(id) && findRow(dtData5.recordset, u"id_Part = "_s + id);
    if (!own)
        setFilterKind(FilterKind::noFilter);
    request.dbcParts = own ? request.dbcParts : BoundPicker();
    loadPart();
}

bool AnalysisModel::chooseMode(AnalysisMode mode) {
    if (!builders[static_cast<size_t>(mode)])
        return false;
    if (request.mode == AnalysisMode::Comparison && mode != AnalysisMode::Comparison)
        trapped([this] { leaveComparison(); });
    // What the user said of missing values was said of another table.
    if (request.mode != mode && std::exchange(bUserMissing, false))
        request.sMissing = request.dtMissing;
    request.mode = mode;
    if (mode == AnalysisMode::Frequency) {
        request.dbcVariable2.clear();
        request.dbcVariable2Uni.clear();
        request.dtTable2.clear();
        request.dtField2.clear();
    }
    if (mode == AnalysisMode::Comparison)
        request.Option3 = WeightKind::noWeight;
    trapped([this] { loadWeights(); });
    return true;
}

std::vector<BoundPicker> AnalysisModel::studies() {
    return rowList(dtData1.recordset, u"id_StudyNo"_s, contentField(u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s));
}

AnalysisView AnalysisModel::view() const {
    AnalysisView v;
    const AnalysisMode mode = request.mode;
    v.requestTab = tab_ == 0;
    v.tableTab = v.tableCommands = tab_ == 1;
    v.chartTab = tab_ == 2;
    v.printInColour = v.chartTab && gOptions.GraphColor;
    v.comparison = mode == AnalysisMode::Comparison;
    v.secondVariable = mode == AnalysisMode::Crosstab || (mode == AnalysisMode::Descriptives && request.chkDescGroup);
    v.cmdDescriptives = mode == AnalysisMode::Descriptives;
    v.dt_WeightRE = !request.dt_WeightRE.isEmpty();
    v.dt_WeightHH = !request.dt_WeightHH.isEmpty();
    v.Option3 = {true, v.dt_WeightRE, v.dt_WeightHH, true};
    v.userWeight = request.Option3 == WeightKind::WeightUser;
    v.optFilter = {true, hasParts_, true};
    v.dbcPartsShown = hasParts_;
    v.dbcPartsEnabled = hasParts_ && request.optFilter == FilterKind::FilterParts;
    v.txtFilterEnabled = request.optFilter == FilterKind::FilterUser;
    v.chkVaridexCreation = creationOffered_;
    v.cbValuesShown = tab_ == 1 && cbValuesShown_;
    v.storedTableCommands = bCreationMode && tab_ != 0;
    v.instructionCommands = bCreationMode && tab_ == 0;
    v.cmdInstructionLoad = hasInstruction_;
    v.cmdTableLoad = hasTable_;
    v.cmdGraphLoad = hasGraph_;
    v.cmd_ClearTrend = v.cmd_SaveTrend = !request.lst_TrendVars.isEmpty();
    for (size_t i = 0; i < v.mode.size(); ++i)
        v.mode[i] = static_cast<bool>(builders[i]);
    return v;
}
