#include "analysis/frmNewCalculation.h"

#include "analysis/AnalysisModel.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "widgets/Desktop.h"
#include "widgets/okCancelRow.h"
#include "widgets/radioGroup.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

using namespace Qt::StringLiterals;

namespace {

QRadioButton* choiceButton(const QString& name, int index, const QString& text, QWidget* parent) {
    auto* button = new QRadioButton(text, parent);
    button->setObjectName(arrayName(name, index));
    return button;
}

QLineEdit* numberLine(QGridLayout& grid, int row, const QString& name, const QString& text, QWidget* parent) {
    auto* line = new QLineEdit(parent);
    line->setObjectName(name);
    auto* label = new QLabel(text, parent);
    label->setObjectName(u"lbl"_s + name);
    label->setBuddy(line);
    grid.addWidget(label, row, 0);
    grid.addWidget(line, row, 1);
    return line;
}

} // namespace

frmNewCalculation::frmNewCalculation(const QString& sMissing, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmNewCalculation"_s) {
    setWindowTitle(u"Missing Values"_s);
    build();
    mdLanguage::SetCtrlProps(*this);
    // A definition that cannot be read leaves the boxes empty, after the words of its failure.
    MissingChoice now{QString()};
    trapped([&] { now = MissingChoice(sMissing); });
    showChoice(now);
    EinzelWert_->setFocus();
}

frmNewCalculation::~frmNewCalculation() = default;

void frmNewCalculation::build() {
    auto* heading = new QLabel(u"Möchten Sie ..."_s, this);
    heading->setObjectName(u"lblHeading"_s);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    Option1_ = {choiceButton(u"Option1"_s, 0, u"eine Berechnung &ohne Missing Values?"_s, this),
                choiceButton(u"Option1"_s, 1, u"eine Berechnung &mit folgenden Einstellungen:"_s, this)};
    auto* column = new QVBoxLayout(this);
    column->addWidget(heading);
    column->addWidget(Option1_[0]);
    column->addWidget(Option1_[1]);
    column->addWidget(fraSettings_ = buildSettings());
    column->addStretch();
    column->addLayout(okCancelRow(this));
    stopAtChosen(Option1_);
    connect(Option1_[1], &QRadioButton::toggled, fraSettings_, &QWidget::setEnabled);
}

QGroupBox* frmNewCalculation::buildSettings() {
    auto* frame = new QGroupBox(u"Einstellungen"_s, this);
    frame->setObjectName(u"fraSettings"_s);
    auto* grid = new QGridLayout(frame);
    Option2_ = {
        choiceButton(u"Option2"_s, 0, u"&einzelne Missing-Werte (1, 2 oder 3)"_s, frame),
        choiceButton(u"Option2"_s, 1, u"Missing-&Bereich von ... bis ... und optional ein einzelner Wert"_s, frame)};
    stopAtChosen(Option2_);
    grid->addWidget(Option2_[0], 0, 0, 1, 2);
    grid->addWidget(Option2_[1], 1, 0, 1, 2);
    EinzelWert_ = numberLine(*grid, 2, u"EinzelWert"_s, u"&1. Wert, einzelner Wert:"_s, frame);
    Rangevon_ = numberLine(*grid, 3, u"Rangevon"_s, u"&2. Wert, von:"_s, frame);
    Rangebis_ = numberLine(*grid, 4, u"Rangebis"_s, u"&3. Wert, bis:"_s, frame);
    grid->setColumnStretch(1, 1);
    return frame;
}

void frmNewCalculation::showChoice(const MissingChoice& choice) {
    Option1_[static_cast<size_t>(choice.Option1)]->setChecked(true);
    if (choice.Option2)
        Option2_[static_cast<size_t>(*choice.Option2)]->setChecked(true);
    EinzelWert_->setText(choice.EinzelWert);
    Rangevon_->setText(choice.Rangevon);
    Rangebis_->setText(choice.Rangebis);
    fraSettings_->setEnabled(Option1_[1]->isChecked());
}

MissingChoice frmNewCalculation::choice() const {
    MissingChoice choice{QString()};
    choice.Option1 = Option1_[0]->isChecked() ? MissingChoice::Calculation::WithoutMissing
                                              : MissingChoice::Calculation::WithSettings;
    choice.Option2.reset();
    if (Option2_[0]->isChecked())
        choice.Option2 = MissingChoice::Shape::Values;
    if (Option2_[1]->isChecked())
        choice.Option2 = MissingChoice::Shape::Range;
    choice.EinzelWert = EinzelWert_->text();
    choice.Rangevon = Rangevon_->text();
    choice.Rangebis = Rangebis_->text();
    return choice;
}

void frmNewCalculation::cmdOK_Click() {
    trapped([&] {
        QString fault;
        answer_ = choice().cmdOK(fault);
        if (!answer_)
            ui::asker().messageBox({.text = fault, .icon = ui::Icon::Exclamation});
    });
    if (answer_)
        cmdCancel_Click();
}

void frmNewCalculation::cmdCancel_Click() {
    done(QDialog::Rejected);
    focusMainWindow();
}
