#include "analysis/frmAuswertung_widgets.h"
#include "app/globals.h"
#include "widgets/notBuilt.h"

#include <QScopedValueRollback>
#include <utility>

using namespace Qt::StringLiterals;

/// How the analysis window shows its model.

namespace {

constexpr int chartTab = 2;

int placeOf(const std::vector<BoundPicker>& list, const QString& value) {
    for (size_t i = 0; i < list.size(); ++i)
        if (list[i].value == value)
            return static_cast<int>(i);
    return -1;
}

int placeOf(const std::vector<StudyVariable>& list, const QString& name) {
    for (size_t i = 0; i < list.size(); ++i)
        if (list[i].name == name)
            return static_cast<int>(i);
    return -1;
}

void showInAll(std::initializer_list<ChoicePicker*> pickers, int index) {
    for (ChoicePicker* picker : pickers)
        picker->showChoice(index);
}

} // namespace

void frmAuswertung::showModel() {
    if (showing_)
        return;
    const QScopedValueRollback<bool> showing(showing_, true);
    const AnalysisView view = model_.view();
    w_->SSTab->setCurrentIndex(model_.tab());
    showRequest(view);
    showWeight(view);
    showFilter(view);
    showComparison(view);
    showTable(view);
    w_->SSTab->setTabEnabled(chartTab, false);
    w_->SSTab->setTabToolTip(chartTab, TranslateText(u"In dieser Version noch nicht enthalten."_s));
    applyNotBuilt(*this);
}

void frmAuswertung::showRequest(const AnalysisView& view) {
    const AnalysisRequest& r = model_.request();
    const std::vector<BoundPicker> studies = model_.edit().studies();
    QStringList numbers, titles, names, labels;
    for (const BoundPicker& study : studies) {
        numbers << study.value;
        titles << study.text;
    }
    for (const StudyVariable& variable : model_.edit().variables()) {
        names << variable.name;
        labels << variable.label;
    }
    w_->dbcStudy_1->setChoices(numbers);
    w_->dbcStudy->setChoices(titles);
    showInAll({w_->dbcStudy_1, w_->dbcStudy}, placeOf(studies, r.dbcStudy.value));
    const auto pickers = w_->variablePickers();
    for (size_t i = 0; i < pickers.size(); ++i)
        pickers[i]->setChoices(i < 3 ? names : i < 6 ? labels : model_.edit().variableChoices());
    showInAll({w_->dbcVariable_1, w_->dbcVariable, w_->dbcVariableUni},
              placeOf(model_.edit().variables(), r.dbcVariable.value));
    showInAll({w_->dbcVariable_2, w_->dbcVariable2, w_->dbcVariable2Uni},
              placeOf(model_.edit().variables(), r.dbcVariable2.value));
    w_->lblVariable->setText(r.dbcVariableUni);
    w_->lblVariable2->setText(r.dbcVariable2Uni);
    showLongLabels();

    QRadioButton* modes[] = {w_->Option1, w_->Option2, w_->Option4, w_->Option5};
    modes[static_cast<size_t>(r.mode)]->setChecked(true);
    w_->fraVariable2->setVisible(view.secondVariable);
    w_->cmdDescriptives->setVisible(view.cmdDescriptives);
    w_->chkDescGroup->setVisible(view.cmdDescriptives);
    w_->chkDescGroup->setChecked(r.chkDescGroup);
    w_->chkFlipXtab->setVisible(r.mode == AnalysisMode::Crosstab && view.chkVaridexCreation);
    w_->chkFlipXtab->setChecked(r.chkFlipXtab);
    w_->chkFlipXtab->setEnabled(model_.request().bCreationMode);
    w_->chkFlipXtab->setToolTip(model_.request().bCreationMode ? QString()
                                                               : TranslateText(u"Nur im Varidex Creation Mode."_s));
    w_->chkVaridexCreation->setVisible(view.chkVaridexCreation);
    w_->chkVaridexCreation->setChecked(model_.request().bCreationMode);
    w_->chkPreserveLayout->setVisible(view.instructionCommands);
    w_->cbValuesInstruct->setVisible(view.instructionCommands);
}

/// A label that its picker has no room for stands below it in full.
void frmAuswertung::showLongLabels() {
    for (const auto& [label, picker] :
         {std::pair{w_->lblVariable, w_->dbcVariable}, {w_->lblVariable2, w_->dbcVariable2}})
        label->setVisible(!label->text().isEmpty() && !picker->showsWhole());
}

void frmAuswertung::showWeight(const AnalysisView& view) {
    const AnalysisRequest& r = model_.request();
    for (size_t i = 0; i < w_->Option3.size(); ++i)
        w_->Option3[i]->setEnabled(view.Option3[i]);
    w_->Option3[static_cast<size_t>(r.Option3)]->setChecked(true);
    w_->dt_WeightRE->setText(r.dt_WeightRE);
    w_->dt_WeightRE->setVisible(view.dt_WeightRE);
    w_->dt_WeightHH->setText(r.dt_WeightHH);
    w_->dt_WeightHH->setVisible(view.dt_WeightHH);
    for (ChoicePicker* picker : {w_->dbcVarGewicht_1, w_->dbcVarGewicht, w_->dbcVarGewicht_1Uni}) {
        picker->setEnabled(view.userWeight);
        picker->showChoice(placeOf(model_.edit().variables(), r.dbcVarGewicht.value));
    }
}

void frmAuswertung::showFilter(const AnalysisView& view) {
    const AnalysisRequest& r = model_.request();
    for (size_t i = 0; i < w_->optFilter.size(); ++i)
        w_->optFilter[i]->setEnabled(view.optFilter[i]);
    w_->optFilter[static_cast<size_t>(r.optFilter)]->setChecked(true);
    QStringList names;
    std::vector<BoundPicker> parts;
    if (view.dbcPartsShown)
        parts = model_.edit().parts();
    for (const BoundPicker& part : parts)
        names << part.text;
    w_->dbcParts->setChoices(names);
    w_->dbcParts->showChoice(placeOf(parts, r.dbcParts.value));
    w_->dbcParts->setVisible(view.dbcPartsShown);
    w_->dbcParts->setEnabled(view.dbcPartsEnabled);
    w_->txtFilter->setChoices(model_.edit().variableChoices());
    w_->txtFilter->setEnabled(view.txtFilterEnabled);
    if (w_->txtFilter->text() != r.txtFilter)
        w_->txtFilter->setText(r.txtFilter);
    showFilterCheck();
}

/// Says at once what the run would refuse, and marks it.
void frmAuswertung::showFilterCheck() {
    QString words;
    int start = 0, length = 0;
    if (model_.request().optFilter == FilterKind::FilterUser) {
        const FilterResult result = model_.checkFilter(w_->txtFilter->text());
        switch (result.failure) {
        case FilterResult::Failure::IllegalCharacter:
            words = TranslateText(u"Unerlaubtes Zeichen:"_s) + u' ' + result.culprit;
            break;
        case FilterResult::Failure::UnknownVariable:
        case FilterResult::Failure::Ended:
            words = result.culprit + u' ' + TranslateText(u"nicht gefunden"_s);
            break;
        case FilterResult::Failure::None:
            if (!result.lost.isEmpty())
                words =
                    TranslateText(u"Ein Name am Ende zählt nur, wenn ein Leerzeichen folgt:"_s) + u' ' + result.lost;
            break;
        }
        if (result.failure != FilterResult::Failure::None) {
            start = static_cast<int>(result.position);
            length = static_cast<int>(result.culprit.size());
        }
    }
    w_->txtFilter->markSpot(start, length);
    w_->lblFilterCheck->setText(words);
    w_->lblFilterCheck->setVisible(!words.isEmpty());
}

void frmAuswertung::showTable(const AnalysisView& view) {
    w_->lblLabel->setText(model_.result().lblLabel);
    w_->cbValues->setVisible(view.cbValuesShown);
    w_->cbValues->setCurrentIndex(model_.request().cbValues);
    const std::optional<TableFacts>& facts = model_.result().facts;
    // A table that was never ready is not shown as one.
    const ResultTable empty;
    w_->mfgGrid->updateTable(facts ? model_.result().mfgGrid : empty);
    showFacts();
    const bool marks = facts && model_.marksCanBeSet();
    w_->mfgGrid->setMarks(marks ? markColumn : -1,
                          marks && model_.result().mfgGrid.Tag == TableKind::Crosstab ? markRow : -1);
    for (QPushButton* button : {w_->cmdSetMissing, w_->cmdCopyTable, w_->cmdSaveTableAs})
        button->setEnabled(facts.has_value());
    w_->cmdSetMissing->setEnabled(marks && model_.result().mfgGrid.Tag != TableKind::Crosstab);
    showTableState();
}

/// A comparison of many entries has a line for each: the table needs the room more, above all with large type.
void frmAuswertung::showFacts() {
    const QStringList lines = whatItStandsOn();
    const int room = height() / 5, width = w_->lblFacts->parentWidget()->contentsRect().width();
    const auto first = [&](qsizetype most) {
        if (lines.size() <= most)
            return lines.join(u'\n');
        const QString rest =
            u"... "_s + QString::number(lines.size() - most + 1) + u' ' + TranslateText(u"weitere Einträge"_s);
        return (lines.first(most - 1) << rest).join(u'\n');
    };
    qsizetype most = 4;
    w_->lblFacts->setText(first(most));
    while (most > 2 && lines.size() > 1 && w_->lblFacts->heightForWidth(width) > room)
        w_->lblFacts->setText(first(--most));
    w_->lblFacts->setToolTip(lines.size() > most ? Qt::convertFromPlainText(lines.join(u'\n')) : QString());
}

void frmAuswertung::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!showing_ && !AnalysisModel::running())
        showFacts();
}

void frmAuswertung::showTableState() {
    QString words = stateText(model_.tableState());
    if (words.isEmpty() && model_.facts().outcome == RunOutcome::Cancelled)
        words = TranslateText(u"Die Berechnung wurde abgebrochen."_s);
    w_->lblState->setText(words);
    w_->cmdStop->hide();
    w_->cmdComputeAnew->show();
    w_->fraState->setVisible(!words.isEmpty());
}

/// What a reader of the screen says for controls that have no caption of their own.
void frmAuswertung::nameForReaders() {
    w_->dbcStudy_1->setAccessibleName(TranslateText(u"Studiennummer"_s));
    w_->dbcStudy->setAccessibleName(TranslateText(u"Titel der Studie"_s));
    w_->dbcVariable_1->setAccessibleName(TranslateText(u"Name der Variable"_s));
    w_->dbcVariable->setAccessibleName(TranslateText(u"Label der Variable"_s));
    w_->dbcVariableUni->setAccessibleName(TranslateText(u"Variable suchen"_s));
    w_->dbcVariable_2->setAccessibleName(TranslateText(u"Name der zweiten Variable"_s));
    w_->dbcVariable2->setAccessibleName(TranslateText(u"Label der zweiten Variable"_s));
    w_->dbcVariable2Uni->setAccessibleName(TranslateText(u"Zweite Variable suchen"_s));
    w_->Option3[3]->setAccessibleName(TranslateText(u"eigene Gewichtungsvariable"_s));
    w_->dbcVarGewicht_1->setAccessibleName(TranslateText(u"Name der Gewichtungsvariable"_s));
    w_->dbcVarGewicht->setAccessibleName(TranslateText(u"Label der Gewichtungsvariable"_s));
    w_->dbcVarGewicht_1Uni->setAccessibleName(TranslateText(u"Gewichtungsvariable suchen"_s));
    w_->dbcParts->setAccessibleName(TranslateText(u"Datensatz-Teil"_s));
    w_->txtFilter->setAccessibleName(TranslateText(u"Filterbedingung"_s));
    w_->lst_TrendVars->setAccessibleName(TranslateText(u"Aufgenommene Variablen"_s));
    w_->lst_SavedTrends->setAccessibleName(TranslateText(u"Gespeicherte Vergleiche"_s));
    w_->cbValuesInstruct->setAccessibleName(TranslateText(u"Werte der Tabelle"_s));
    w_->cbValues->setAccessibleName(TranslateText(u"Werte der Tabelle"_s));
    w_->mfgGrid->setAccessibleName(TranslateText(u"Ergebnistabelle"_s));
    for (ChoicePicker* picker : {w_->dbcVariableUni, w_->dbcVariable2Uni, w_->dbcVarGewicht_1Uni})
        picker->setPrompt(TranslateText(u"Name oder Label eintippen"_s));
    w_->txtFilter->setPlaceholderText(TranslateText(u"z.B. V7=1 AND V8>2"_s));
}
