#include "analysis/AnalysisModel.h"

#include "analysis/boundRows.h"
#include "analysis/comparisonEntries.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"

// Which cases of the study count, and with what weight: its weights, its parts, the filter.

using namespace Qt::StringLiterals;

namespace {

constexpr int deleteKey = 46;

} // namespace

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
    dtData5.recordset = queryRows(dtData5.source);
    hasParts_ = hasRows(dtData5.recordset);
    if (!hasParts_)
        return;
    dtData5.recordset->MoveFirst();
    request.dbcParts = {dtData5.recordset->text(u"id_Part"_s), partName(*dtData5.recordset, englishContents_)};
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
        if (!isWholeNumber(request.dbcParts.value) ||
            !findRow(dtData5.recordset, u"id_Part = "_s + request.dbcParts.value)) {
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

std::vector<BoundPicker> AnalysisModel::parts() {
    if (!hasParts_)
        return {};
    return rowList(dtData5.recordset, u"id_Part"_s, contentField(u"dt_PartName"_s, u"dt_EnPartName"_s));
}

bool AnalysisModel::choosePart(const QString& id) {
    if (!isWholeNumber(id) || !hasParts_ || !findRow(dtData5.recordset, u"id_Part = "_s + id))
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
        if (!findRow(dtData5.recordset, u"id_Part = "_s + request.dbcParts.value)) {
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
                    {.text = TranslateText(u"Variable zum Datensatz-Teil nicht gefunden:"_s) + selectionVariable_,
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
