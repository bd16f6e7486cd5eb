#include "analysis/AnalysisModel.h"

#include "analysis/builders.h"
#include "analysis/comparisonEntries.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/StudyRows.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int deleteKey = 46;

dao::RecordsetPtr query(const QString& statement) {
    return CDaoPersistance().GetRecordset(gDatabase.CurrentDatabase(), statement, dao::dbOpenDynaset);
}

bool hasRows(const dao::RecordsetPtr& recordset) {
    return recordset && !(recordset->Bof() && recordset->Eof());
}

/// Goes to the first row that satisfies a condition; a failure is reported and counts as no match.
bool find(const dao::RecordsetPtr& recordset, const QString& criteria) {
    if (!hasRows(recordset))
        return false;
    return attempt([&] { recordset->FindFirst(criteria); }) && !recordset->NoMatch();
}

bool isNumber(const QString& text) {
    bool good = false;
    text.toLongLong(&good);
    return good;
}

bool isStored(dao::Recordset& row, const QString& field) {
    return row.hasField(field) && !row.text(field).isEmpty();
}

} // namespace

AnalysisModel::AnalysisModel() : builders(tableBuilders()) {}

QString AnalysisModel::studyQuerySource() {
    QStringList statements;
    for (int view = 1; view <= gViews.lastRow(); ++view)
        if (gViews.at(view, ViewTable::Type) == "1"_L1)
            statements << u"Select * from tkey_"_s + gViews.at(view, ViewTable::Table) +
                              u" Where dt_IsGroup = 0;"_s;
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
    dtData1.recordset = dtData1.source.isEmpty() ? nullptr : query(dtData1.source);
    // A study that is not there: the list of variables starts empty.
    dtData2.source = u"select * from tkey_Variable where fi_StudyNo like 'QX1919';"_s;
    dtData2.recordset = query(dtData2.source);
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
    return find(dtData1.recordset, u"[id_StudyNo] = "_s + quoted(study));
}

bool AnalysisModel::findVariable(const QString& name) {
    return find(dtData2.recordset, u"id_Varname = "_s + quoted(name));
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
    request.dbcStudy = {number,
                        dtData1.recordset->text(contentField(u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s))};
    const QString variables = u"select * from [tkey_Variable] where [fi_StudyNo] = "_s + quoted(number) +
                              u" order by dt_Position;"_s;
    const bool changed = variables != dtData2.source;
    if (changed) {
        loadVariables(variables);
        for (QString* field : {&request.dtTable, &request.dtTable2, &request.dtField, &request.dtField2,
                               &request.dtMissing, &request.sMissing, &request.dtMissing2,
                               &request.dtVarGroup, &request.dtYear, &request.dbcVarGewicht_1Uni})
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
    dtData2.recordset = query(statement);
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

/// The standard weights of the study in the current row of dtData1; a kind that it has not got can't be
/// chosen.
void AnalysisModel::loadWeights() {
    request.dt_WeightHH.clear();
    request.dt_WeightRE.clear();
    if (!findStudy(request.dbcStudy.value))
        return;
    request.dt_WeightHH = dtData1.recordset->text(u"dt_WeightHH"_s);
    request.dt_WeightRE = dtData1.recordset->text(u"dt_WeightRE"_s);
}

void AnalysisModel::loadParts() {
    hasParts_ = false;
    request.dbcParts.clear();
    setFilterKind(FilterKind::noFilter);
    request.txtFilter.clear();
    if (!gDatabase.TableExist(u"tkey_Parts"_s))
        return;
    dtData5.source =
        u"select * from [tkey_Parts] where [fi_StudyNo] = "_s + quoted(request.dbcStudy.value) +
        u" AND [dt_SeparateAnalysisOnly] = -1 ORDER BY  dt_SelectionVariable,Val([dt_SelectionCriteria]);"_s;
    dtData5.recordset = query(dtData5.source);
    hasParts_ = hasRows(dtData5.recordset);
    if (!hasParts_)
        return;
    dtData5.recordset->MoveFirst();
    request.dbcParts = {dtData5.recordset->text(u"id_Part"_s),
                        partName(*dtData5.recordset, englishContents_)};
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
        query(u"SELECT * FROM tkey_Variable WHERE fi_StudyNo="_s + quoted(request.dbcStudy.value) +
              u" AND id_VarName="_s + quoted(request.dbcVariable.value) + u";"_s);
    if (!hasRows(stored))
        return;
    request.dbcVariableUni = stored->text(u"id_VarName"_s) + u": "_s +
                             stored->text(contentField(u"dt_VarLabel"_s, u"dt_EnVarLabel"_s));
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
    const dao::RecordsetPtr groups = query(u"tkey_VarGroups"_s);
    if (find(groups, u"id_VarGroup = "_s + group.toText()))
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
    const bool own = hasParts_ && isNumber(id) && find(dtData5.recordset, u"id_Part = "_s + id);
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

bool AnalysisModel::chooseWeight(WeightKind kind, const QString& variable) {
    switch (kind) {
    case WeightKind::noWeight:
        break;
    case WeightKind::WeightRE:
        if (request.dt_WeightRE.isEmpty())
            return false;
        break;
    case WeightKind::WeightHH:
        if (request.dt_WeightHH.isEmpty())
            return false;
        break;
    case WeightKind::WeightUser:
        if (!findVariable(variable))
            return false;
        request.dbcVarGewicht = pickedVariable();
        request.dbcVarGewicht_1Uni = request.dbcVarGewicht.value + u": "_s + request.dbcVarGewicht.text;
        break;
    }
    request.Option3 = kind;
    if (applyComparisonEntryChange)
        applyComparisonEntryChange();
    return true;
}

void AnalysisModel::chooseUserWeight() {
    request.Option3 = WeightKind::WeightUser;
    if (applyComparisonEntryChange)
        applyComparisonEntryChange();
}

/// Switches the kind of filter; the user's own text is kept for the next time.
void AnalysisModel::setFilterKind(FilterKind kind) {
    if (request.optFilter == FilterKind::FilterUser)
        lastFilterText_ = request.txtFilter;
    request.optFilter = kind;
}

bool AnalysisModel::chooseFilter(FilterKind kind) {
    if (kind == FilterKind::FilterParts && !hasParts_)
        return false;
    setFilterKind(kind);
    switch (kind) {
    case FilterKind::noFilter:
        request.dbcParts.clear();
        dbcParts_Change();
        break;
    case FilterKind::FilterParts:
        // The run of a comparison may have left another study's part, or none.
        if (!isNumber(request.dbcParts.value) || !find(dtData5.recordset, u"id_Part = "_s + request.dbcParts.value)) {
            dtData5.recordset->MoveFirst();
            request.dbcParts.value = dtData5.recordset->text(u"id_Part"_s);
        }
        dbcParts_Change();
        return true;
    case FilterKind::FilterUser:
        request.txtFilter = lastFilterText_;
        break;
    }
    if (applyComparisonEntryChange)
        applyComparisonEntryChange();
    return true;
}

void AnalysisModel::typeFilterText(const QString& text) {
    lastFilterText_ = text;
    request.txtFilter = text;
    request.optFilter = FilterKind::FilterUser;
}

void AnalysisModel::chooseFilterText(const QString& text) {
    typeFilterText(text);
    if (applyComparisonEntryChange)
        applyComparisonEntryChange();
}

FilterResult AnalysisModel::checkFilter(const QString& text) const {
    FilterSurroundings surroundings;
    surroundings.find = [this](const QString& word, bool&) -> std::optional<VariablePlace> {
        for (const StudyVariable& variable : variables_)
            if (dao::compareTexts(variable.name, word) == 0)
                return variable.place;
        return std::nullopt;
    };
    surroundings.attach = [](const QString&) { return true; };
    return translateFilter(text, surroundings);
}

namespace {

/// Key and text of every row of a recordset, which stands at its first row then.
std::vector<BoundPicker> listOf(const dao::RecordsetPtr& recordset, const QString& key, const QString& text) {
    std::vector<BoundPicker> list;
    if (!hasRows(recordset))
        return list;
    for (recordset->MoveFirst(); !recordset->Eof(); recordset->MoveNext())
        list.push_back({recordset->text(key), recordset->text(text)});
    recordset->MoveFirst();
    return list;
}

} // namespace

std::vector<BoundPicker> AnalysisModel::studies() {
    return listOf(dtData1.recordset, u"id_StudyNo"_s, contentField(u"dt_StudyTitle"_s, u"dt_EnStudyTitle"_s));
}

std::vector<BoundPicker> AnalysisModel::parts() {
    if (!hasParts_)
        return {};
    return listOf(dtData5.recordset, u"id_Part"_s, contentField(u"dt_PartName"_s, u"dt_EnPartName"_s));
}

bool AnalysisModel::choosePart(const QString& id) {
    if (!isNumber(id) || !hasParts_ || !find(dtData5.recordset, u"id_Part = "_s + id))
        return false;
    setFilterKind(FilterKind::FilterParts);
    request.dbcParts.value = id;
    dbcParts_Change();
    return true;
}

void AnalysisModel::dbcParts_Change() {
    trapped([this] { loadPart(); });
}

void AnalysisModel::loadPart() {
    request.dtTableParts.clear();
    request.dtFieldParts.clear();
    request.dtCriteria.clear();
    selectionVariable_.clear();
    if (!request.dbcParts.isEmpty()) {
        if (!find(dtData5.recordset, u"id_Part = "_s + request.dbcParts.value)) {
            request.dbcParts.text.clear();
            return;
        }
        dao::Recordset& part = *dtData5.recordset;
        request.dbcParts.text = partName(part, englishContents_);
        request.dtCriteria = part.text(u"dt_SelectionCriteria"_s);
        const dao::Value variable = part.value(u"dt_SelectionVariable"_s);
        selectionVariable_ = variable.toText();
        if (!variable.isNull()) {
            if (!findVariable(selectionVariable_)) {
                ui::asker().messageBox(
                    {.text =
                         TranslateText(u"Variable zum Datensatz-Teil nicht gefunden:"_s) + selectionVariable_,
                     .icon = ui::Icon::Exclamation});
                return;
            }
            request.dtTableParts = dtData2.recordset->text(u"dt_TableName"_s);
            request.dtFieldParts = dtData2.recordset->text(u"dt_FieldName"_s);
        }
    }
    Update_Filter();
}

void AnalysisModel::Update_Filter() {
    request.txtFilter =
        request.dbcParts.text.isEmpty() ? QString() : selectionVariable_ + u" = "_s + request.dtCriteria;
}

bool AnalysisModel::dbcParts_KeyDown(int key) {
    if (key != deleteKey)
        return false;
    return chooseFilter(FilterKind::noFilter);
}

AnalysisView AnalysisModel::view() const {
    AnalysisView v;
    const AnalysisMode mode = request.mode;
    v.requestTab = tab_ == 0;
    v.tableTab = v.tableCommands = tab_ == 1;
    v.chartTab = tab_ == 2;
    v.printInColour = v.chartTab && gOptions.GraphColor;
    v.comparison = mode == AnalysisMode::Comparison;
    v.secondVariable =
        mode == AnalysisMode::Crosstab || (mode == AnalysisMode::Descriptives && request.chkDescGroup);
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
