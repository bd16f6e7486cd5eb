#include "analysis/request/RequestEditor.h"
#include "analysis/request/boundRows.h"
#include "analysis/request/comparisonEntries.h"
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

/// An entry of a comparison may follow, after its question.
void RequestEditor::casesChanged(RequestPart part) {
    if (casesFollower_)
        casesFollower_();
    changed(part);
}

/// The run of a comparison left the filter of its last entry; a part that the study shown has not got goes with it.
void RequestEditor::leaveComparison() {
    if (request_.optFilter != FilterKind::FilterParts)
        return;
    const bool own = isPart(request_.dbcParts.value);
    if (!own)
        setFilterKind(FilterKind::noFilter);
    request_.dbcParts = own ? request_.dbcParts : BoundPicker();
    loadPart();
}

/// The standard weights of the study in the current row of dtData1; a kind that it has not got can't be
/// chosen.
void RequestEditor::loadWeights() {
    request_.dt_WeightHH.clear();
    request_.dt_WeightRE.clear();
    if (!findStudy(request_.dbcStudy.value))
        return;
    request_.dt_WeightHH = dtData1.recordset->text(u"dt_WeightHH"_s);
    request_.dt_WeightRE = dtData1.recordset->text(u"dt_WeightRE"_s);
}

QString& RequestEditor::standardWeight(WeightKind kind) {
    return kind == WeightKind::WeightRE ? request_.dt_WeightRE : request_.dt_WeightHH;
}

/// A variable that has gone from the study is nobody's weight: not the study's own one takes its place.
void RequestEditor::keepNamedWeight() {
    if (namedWeight_)
        standardWeight(namedWeight_->kind) = findVariable(namedWeight_->variable) ? namedWeight_->variable : QString();
}

void RequestEditor::loadParts() {
    hasParts_ = false;
    request_.dbcParts.clear();
    setFilterKind(FilterKind::noFilter);
    request_.txtFilter.clear();
    readParts();
    if (!hasParts_)
        return;
    dtData5.recordset->MoveFirst();
    request_.dbcParts = {dtData5.recordset->text(u"id_Part"_s), partName(*dtData5.recordset, englishContents_)};
}

void RequestEditor::readParts() {
    hasParts_ = false;
    if (!gDatabase.TableExist(u"tkey_Parts"_s))
        return;
    dtData5.source =
        u"select * from [tkey_Parts] where [fi_StudyNo] = "_s + quoted(request_.dbcStudy.value) +
        u" AND [dt_SeparateAnalysisOnly] = -1 ORDER BY  dt_SelectionVariable,Val([dt_SelectionCriteria]);"_s;
    dtData5.recordset = queryRows(dtData5.source);
    hasParts_ = hasRows(dtData5.recordset);
}

/// True for the number of a part of the study for separate analysis.
bool RequestEditor::isPart(const QString& id) {
    return hasParts_ && isWholeNumber(id) && findRow(dtData5.recordset, u"id_Part = "_s + id);
}

bool RequestEditor::chooseWeight(WeightKind kind, const QString& variable) {
    switch (kind) {
    case WeightKind::noWeight:
        break;
    case WeightKind::WeightRE:
        if (request_.dt_WeightRE.isEmpty())
            return false;
        break;
    case WeightKind::WeightHH:
        if (request_.dt_WeightHH.isEmpty())
            return false;
        break;
    case WeightKind::WeightUser:
        if (!findVariable(variable))
            return false;
        request_.dbcVarGewicht = pickedVariable();
        request_.dbcVarGewicht_1Uni = request_.dbcVarGewicht.value + u": "_s + request_.dbcVarGewicht.text;
        break;
    }
    request_.Option3 = kind;
    casesChanged(RequestPart::Weight);
    return true;
}

bool RequestEditor::chooseNamedWeight(WeightKind kind, const QString& variable) {
    if (!findVariable(variable))
        return false;
    standardWeight(kind) = pickedVariable().value;
    namedWeight_ = {kind, pickedVariable().value};
    return chooseWeight(kind);
}

void RequestEditor::chooseUserWeight() {
    request_.Option3 = WeightKind::WeightUser;
    casesChanged(RequestPart::Weight);
}

/// Switches the kind of filter; the user's own text is kept for the next time.
void RequestEditor::setFilterKind(FilterKind kind) {
    if (request_.optFilter == FilterKind::FilterUser)
        lastFilterText_ = request_.txtFilter;
    request_.optFilter = kind;
}

bool RequestEditor::chooseFilter(FilterKind kind) {
    if (kind == FilterKind::FilterParts && !hasParts_)
        return false;
    setFilterKind(kind);
    switch (kind) {
    case FilterKind::noFilter:
        request_.dbcParts.clear();
        trapped([this] { loadPart(); });
        break;
    case FilterKind::FilterParts:
        // The run of a comparison may have left another study's part, or none.
        if (!isPart(request_.dbcParts.value)) {
            dtData5.recordset->MoveFirst();
            request_.dbcParts.value = dtData5.recordset->text(u"id_Part"_s);
        }
        trapped([this] { loadPart(); });
        changed(RequestPart::Filter);
        return true;
    case FilterKind::FilterUser:
        request_.txtFilter = lastFilterText_;
        break;
    }
    casesChanged(RequestPart::Filter);
    return true;
}

void RequestEditor::typeFilterText(const QString& text) {
    lastFilterText_ = text;
    request_.txtFilter = text;
    request_.optFilter = FilterKind::FilterUser;
    changed(RequestPart::Filter);
}

void RequestEditor::chooseFilterText(const QString& text) {
    typeFilterText(text);
    casesChanged(RequestPart::Filter);
}

std::vector<BoundPicker> RequestEditor::parts() {
    if (!hasParts_)
        return {};
    return rowList(dtData5.recordset, u"id_Part"_s, contentField(u"dt_PartName"_s, u"dt_EnPartName"_s));
}

bool RequestEditor::choosePart(const QString& id) {
    if (!isPart(id))
        return false;
    setFilterKind(FilterKind::FilterParts);
    request_.dbcParts.value = id;
    dbcParts_Change();
    return true;
}

void RequestEditor::dbcParts_Change() {
    trapped([this] { loadPart(); });
    changed(RequestPart::Filter);
}

void RequestEditor::loadPart() {
    request_.dtCriteria.clear();
    selectionVariable_.clear();
    if (!request_.dbcParts.isEmpty()) {
        if (!findRow(dtData5.recordset, u"id_Part = "_s + request_.dbcParts.value)) {
            request_.dbcParts.text.clear();
            return;
        }
        dao::Recordset& part = *dtData5.recordset;
        request_.dbcParts.text = partName(part, englishContents_);
        request_.dtCriteria = part.text(u"dt_SelectionCriteria"_s);
        const dao::Value variable = part.value(u"dt_SelectionVariable"_s);
        selectionVariable_ = variable.toText();
        if (!variable.isNull()) {
            if (!findVariable(selectionVariable_)) {
                ui::asker().messageBox(
                    {.text = TranslateText(u"Variable zum Datensatz-Teil nicht gefunden:"_s) + selectionVariable_,
                     .icon = ui::Icon::Exclamation});
                return;
            }
        }
    }
    Update_Filter();
}

void RequestEditor::Update_Filter() {
    request_.txtFilter =
        request_.dbcParts.text.isEmpty() ? QString() : selectionVariable_ + u" = "_s + request_.dtCriteria;
}

bool RequestEditor::dbcParts_KeyDown(int key) {
    if (key != deleteKey)
        return false;
    return chooseFilter(FilterKind::noFilter);
}
