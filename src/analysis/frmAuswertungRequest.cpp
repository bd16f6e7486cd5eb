#include "analysis/frmAuswertungRequest.h"

#include "analysis/frmAuswertung.h"
#include "analysis/frmDescriptives.h"
#include "app/globals.h"
#include "widgets/ChoicePicker.h"
#include "widgets/radioGroup.h"

#include <QCheckBox>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmAuswertungRequest::frmAuswertungRequest(frmAuswertung& window) : frmAuswertungPart(window) {
    fraStudy_ = buildStudy();
    first_ = buildVariable(QString());
    second_ = buildVariable(u"2"_s);
    fraMode_ = buildMode();
    connectPickers();
    connectMode();
}

QGroupBox* frmAuswertungRequest::buildStudy() {
    auto* frame = control<QGroupBox>(u"fraStudy"_s, u"Studie"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    dbcStudy_1_ = picker(u"dbcStudy_1"_s, frame);
    dbcStudy_ = picker(u"dbcStudy"_s, frame);
    QLabel* label = caption(u"lblStudyNo"_s, u"Nu&mmer und Titel:"_s, dbcStudy_1_, frame);
    addRow(rows, {{label, 0}, {besideEachOther(dbcStudy_1_, dbcStudy_), 1}});
    captions_ << label;
    return frame;
}

/// @param number what the names of the second variable's controls have more
frmAuswertungRequest::VariableGroup frmAuswertungRequest::buildVariable(const QString& number) {
    const bool second = !number.isEmpty();
    VariableGroup group{};
    group.frame = control<QGroupBox>(u"fraVariable"_s + number, second ? u"Zweite Variable"_s : u"Variable"_s, nullptr);
    auto* rows = new QVBoxLayout(group.frame);
    group.search = searchPicker(u"dbcVariable"_s + number + u"Uni"_s, group.frame);
    group.name = picker(second ? u"dbcVariable_2"_s : u"dbcVariable_1"_s, group.frame);
    group.label = picker(u"dbcVariable"_s + number, group.frame);
    group.whole = factLabel(u"lblVariable"_s + number, group.frame);
    group.label->onResized = [this] { showLongLabels(); };
    QLabel* searchCaption =
        caption(u"lblVarSearch"_s + number, second ? u"Such&en:"_s : u"S&uchen:"_s, group.search, group.frame);
    QLabel* nameCaption = caption(u"lblVarName"_s + number, second ? u"Name und &Label:"_s : u"&Name und Label:"_s,
                                  group.name, group.frame);
    addRow(rows, {{searchCaption, 0}, {group.search, 1}});
    addRow(rows, {{nameCaption, 0}, {besideEachOther(group.name, group.label), 1}});
    rows->addWidget(group.whole);
    captions_ << searchCaption << nameCaption;
    return group;
}

QGroupBox* frmAuswertungRequest::buildMode() {
    auto* frame = control<QGroupBox>(u"fraMode"_s, u"Auswertung"_s, nullptr);
    auto* rows = new QVBoxLayout(frame);
    auto* frequency = control<QRadioButton>(u"Option1"_s, u"H&äufigkeit"_s, frame);
    auto* crosstab = control<QRadioButton>(u"Option2"_s, u"&Kreuztabelle"_s, frame);
    chkFlipXtab_ = control<QCheckBox>(u"chkFlipXtab"_s, u"Kreuztabelle drehen"_s, frame);
    auto* descriptives = control<QRadioButton>(arrayName(u"Option4"_s, 3), u"Deskriptive Statistik"_s, frame);
    chkDescGroup_ = control<QCheckBox>(u"chkDescGroup"_s, u"mit Gru&ppierung"_s, frame);
    cmdDescriptives_ = control<QPushButton>(u"cmdDescriptives"_s, u"&Statistiken..."_s, frame);
    auto* comparison = control<QRadioButton>(u"Option5"_s, u"&Vergleich"_s, frame);
    chkVaridexCreation_ = control<QCheckBox>(u"chkVaridexCreation"_s, u"Varide&x Creation Mode"_s, frame);
    rows->addWidget(frequency);
    addRow(rows, {{crosstab, 0}, {chkFlipXtab_, 0}}, textIndent(*crosstab));
    addRow(rows, {{descriptives, 0}, {chkDescGroup_, 0}, {cmdDescriptives_, 0}}, textIndent(*descriptives));
    rows->addWidget(comparison);
    rows->addWidget(chkVaridexCreation_);
    modes_ = {frequency, crosstab, descriptives, comparison};
    return frame;
}

void frmAuswertungRequest::connectPickers() {
    const auto chooseStudy = [this](int index) {
        act([&] { model_.edit().StudyClick(studies_.at(static_cast<size_t>(index)).value); });
    };
    dbcStudy_->onChosen = dbcStudy_1_->onChosen = chooseStudy;
    const auto nameAt = [this](int index) { return model_.edit().variables().at(static_cast<size_t>(index)).name; };
    for (ChoicePicker* first : {first_.name, first_.label, first_.search})
        first->onChosen = [this, nameAt](int index) { act([&] { model_.edit().chooseVariable(nameAt(index)); }); };
    for (ChoicePicker* second : {second_.name, second_.label, second_.search})
        second->onChosen = [this, nameAt](int index) { act([&] { model_.edit().chooseVariable2(nameAt(index)); }); };
}

void frmAuswertungRequest::connectMode() {
    for (size_t i = 0; i < modes_.size(); ++i)
        connect(modes_[i], &QRadioButton::clicked, this, [this, mode = static_cast<AnalysisMode>(i)] {
            act([&] {
                model_.edit().chooseMode(mode);
                if (mode == AnalysisMode::Comparison)
                    model_.comparison().RefreshSavedComparisons();
            });
        });
    stopAtChosen(modes_);
    const std::pair<QCheckBox*, bool AnalysisRequest::*> choices[] = {
        {chkDescGroup_, &AnalysisRequest::chkDescGroup},
        {chkFlipXtab_, &AnalysisRequest::chkFlipXtab},
        {chkVaridexCreation_, &AnalysisRequest::bCreationMode}};
    for (const auto& [box, choice] : choices)
        connect(box, &QCheckBox::clicked, this, [this, of = choice](bool on) { changeMode(of, on); });
    connect(cmdDescriptives_, &QPushButton::clicked, this,
            [this] { act([this] { frmDescriptives(&model_.edit(), &window_).exec(); }); });
}

void frmAuswertungRequest::changeMode(bool AnalysisRequest::*choice, bool on) {
    act([&] { model_.edit().change(RequestPart::Mode, [&](AnalysisRequest& request) { request.*choice = on; }); });
}

void frmAuswertungRequest::finishTyping() {
    first_.search->finish();
    second_.search->finish();
}

std::optional<frmAuswertungPart::Objection> frmAuswertungRequest::objection() const {
    return objectionOf({first_.search, second_.search});
}

bool frmAuswertungRequest::concerns(RequestPart part) const {
    return part == RequestPart::Study || part == RequestPart::Variables || part == RequestPart::Mode;
}

void frmAuswertungRequest::showChanges(const Changes& changes) {
    if (changes.has(RequestPart::Study))
        showLists();
    const AnalysisRequest& r = model_.request();
    const int study = placeOf(studies_, r.dbcStudy.value);
    dbcStudy_1_->showChoice(study);
    dbcStudy_->showChoice(study);
    showVariable(first_, r.dbcVariable.value, r.dbcVariableUni);
    showVariable(second_, r.dbcVariable2.value, r.dbcVariable2Uni);
    showLongLabels();
    showMode();
}

void frmAuswertungRequest::showLists() {
    studies_ = model_.edit().studies();
    QStringList numbers, titles, names, labels;
    for (const BoundPicker& study : studies_) {
        numbers << study.value;
        titles << study.text;
    }
    for (const StudyVariable& variable : model_.edit().variables()) {
        names << variable.name;
        labels << variable.label;
    }
    dbcStudy_1_->setChoices(numbers);
    dbcStudy_->setChoices(titles);
    for (const VariableGroup& group : {first_, second_}) {
        group.name->setChoices(names);
        group.label->setChoices(labels);
        group.search->setChoices(model_.edit().variableChoices());
    }
}

void frmAuswertungRequest::showVariable(const VariableGroup& group, const QString& name, const QString& whole) {
    const int place = placeOf(model_.edit().variables(), name);
    for (ChoicePicker* picker : {group.name, group.label, group.search})
        picker->showChoice(place);
    group.whole->setText(whole);
}

/// A label that its picker has no room for stands below it in full.
void frmAuswertungRequest::showLongLabels() {
    for (const VariableGroup& group : {first_, second_})
        group.whole->setVisible(!group.whole->text().isEmpty() && !group.label->showsWhole());
}

void frmAuswertungRequest::showMode() {
    const AnalysisRequest& r = model_.request();
    const AnalysisView view = model_.view();
    modes_[static_cast<size_t>(r.mode)]->setChecked(true);
    second_.frame->setVisible(view.secondVariable);
    if (!view.secondVariable)
        second_.search->restore();
    cmdDescriptives_->setVisible(view.cmdDescriptives);
    chkDescGroup_->setVisible(view.cmdDescriptives);
    chkDescGroup_->setChecked(r.chkDescGroup);
    chkFlipXtab_->setVisible(r.mode == AnalysisMode::Crosstab && view.chkVaridexCreation);
    chkFlipXtab_->setChecked(r.chkFlipXtab);
    chkFlipXtab_->setEnabled(r.bCreationMode);
    chkFlipXtab_->setToolTip(r.bCreationMode ? QString() : TranslateText(u"Nur im Varidex Creation Mode."_s));
    chkVaridexCreation_->setVisible(view.chkVaridexCreation);
    chkVaridexCreation_->setChecked(r.bCreationMode);
}

void frmAuswertungRequest::nameForReaders() {
    dbcStudy_1_->setAccessibleName(TranslateText(u"Studiennummer"_s));
    dbcStudy_->setAccessibleName(TranslateText(u"Titel der Studie"_s));
    first_.name->setAccessibleName(TranslateText(u"Name der Variable"_s));
    first_.label->setAccessibleName(TranslateText(u"Label der Variable"_s));
    first_.search->setAccessibleName(TranslateText(u"Variable suchen"_s));
    second_.name->setAccessibleName(TranslateText(u"Name der zweiten Variable"_s));
    second_.label->setAccessibleName(TranslateText(u"Label der zweiten Variable"_s));
    second_.search->setAccessibleName(TranslateText(u"Zweite Variable suchen"_s));
    for (const VariableGroup& group : {first_, second_})
        group.search->setPrompt(TranslateText(u"Name oder Label eintippen"_s));
}
