#include "explorer/VariablePanel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/CDaoPersistance.h"
#include "catalogue/StudyRows.h"
#include "diagnostics/errors.h"
#include "explorer/VariableList.h"
#include "platform/ui/Asker.h"

using namespace Qt::StringLiterals;

const QStringList factKeys = {u"english"_s,  u"fixed"_s,    u"list"_s,   u"first"_s, u"back"_s, u"next"_s, u"last"_s,
                              u"Position"_s, u"Variable"_s, u"Studie"_s, u"Welle"_s, u"Jahr"_s, u"Label"_s};

bool VariablePanel::isEnglish(const ExplorerState& state) const {
    return place_ == Place::A ? state.bVarWindowForEnglishLanguage : state.bELVV;
}

QString VariablePanel::statement(const ExplorerState& state) const {
    const QString sql =
        nodeVariablesStatement(state.bIsStudy, state.ltreetype, fid, gDatabase.TableExist(u"tkey_VarGroups"_s));
    const QString select = u"SELECT "_s;
    return place_ == Place::B && state.bIsStudy ? select + u"'0' AS fid, "_s + sql.mid(select.size()) : sql;
}

void VariablePanel::bind(const CatalogueNode& node, const ExplorerState& state, const dao::RecordsetPtr& ofList) {
    fid = node.id();
    fidName = node.Text;
    recordset_ = ofList;
    if (recordset_)
        return;
    CDaoPersistance persistance;
    recordset_ = persistance.GetRecordset(gDatabase.CurrentDatabase(), statement(state), dao::dbOpenDynaset);
    // A failure has been reported; the next click tries again.
    if (!recordset_)
        fid.clear();
}

bool VariablePanel::show(const CatalogueNode& node, const QString& study, const QString& variable,
                         const ExplorerState& state, const dao::RecordsetPtr& ofList) {
    if (fid != node.id() || (ofList && ofList != recordset_))
        bind(node, state, ofList);
    if (!recordset_)
        return false;
    if (recordset_->RecordCount() == 0) {
        ui::asker().messageBox({.text = TranslateText(u"Keine Variablen gefunden!"_s)});
        return false;
    }
    find(study, variable);
    fill(isEnglish(state));
    return true;
}

bool VariablePanel::find(const QString& study, const QString& variable) {
    recordset_->MoveLast();
    recordset_->FindFirst(u"fi_StudyNo="_s + quoted(study) + u" AND fi_VariableNo="_s + quoted(variable));
    if (!recordset_->NoMatch())
        return true;
    recordset_->MoveFirst();
    return false;
}

VariablePanel::Again VariablePanel::showAgain(const CatalogueNode* node, const ExplorerState& state,
                                              const dao::RecordsetPtr& ofList) {
    fid.clear();
    recordset_.reset();
    if (node && filled_)
        bind(*node, state, ofList);
    if (!recordset_ || recordset_->RecordCount() == 0) {
        clear();
        return Again::Nothing;
    }
    const bool same = find(VariablePanel::study(), VariablePanel::variable());
    fill(isEnglish(state));
    return same ? Again::Same : Again::Other;
}

bool VariablePanel::move(Step step, const ExplorerState& state) {
    if (!recordset_ || recordset_->RecordCount() == 0)
        return false;
    switch (step) {
    case Step::First:
        recordset_->MoveFirst();
        break;
    case Step::Back:
        recordset_->MovePrevious();
        if (recordset_->Bof())
            recordset_->MoveFirst();
        break;
    case Step::Next:
        recordset_->MoveNext();
        if (recordset_->Eof())
            recordset_->MoveLast();
        break;
    case Step::Last:
        recordset_->MoveLast();
        break;
    }
    fill(isEnglish(state));
    return true;
}

bool VariablePanel::refill(const ExplorerState& state) {
    if (filled_)
        fill(isEnglish(state));
    return filled_;
}

void VariablePanel::clear() {
    question.clear();
    values = {};
    facts_.clear();
    filled_ = false;
}

void VariablePanel::fill(bool english) {
    const auto text = [this](const QString& field) { return recordset_->text(field); };
    const auto setFact = [this](const QString& key, const QString& value) {
        facts_[key] = {value, TranslateText(key) + u' ' + value};
    };
    filled_ = true;
    question = text(english ? u"dt_EnQuestionText"_s : u"dt_QuestionText"_s);
    facts_[u"Position"_s] = {QString::number(recordset_->AbsolutePosition() + 1) + u' ' + TranslateText(u"von"_s) +
                                 u' ' + QString::number(recordset_->RecordCount()),
                             QString()};
    setFact(u"Variable"_s, text(u"fi_VariableNo"_s));
    setFact(u"Studie"_s, text(u"fi_StudyNo"_s));
    setFact(u"Jahr"_s, text(u"dt_Year"_s));
    setFact(u"Label"_s, text(u"dt_VarLabel"_s));
    // The tip names the original label in either language.
    facts_[u"Label"_s].text = text(english ? u"dt_EnVarLabel"_s : u"dt_VarLabel"_s);
    if (gCatalogueOptions.ShowVarGroupInfo)
        fillGroup(english);
    readValues();
}

void VariablePanel::readValues() {
    values = {};
    attempt([this] { values = VariableValues::of(*gDatabase.CurrentDatabase(), study(), variable()); });
}

void VariablePanel::fillGroup(bool english) {
    const dao::Value group = recordset_->value(english ? u"dt_VarGroupNameEn"_s : u"dt_VarGroupName"_s);
    const QString name = said(gCatalogueOptions.VarGroupInfoName, gCatalogueOptions.VarGroupInfoNameEnglish);
    facts_[u"Welle"_s] = {group.toText(), group.isNull() ? QString() : name + u' ' + group.toText()};
}
