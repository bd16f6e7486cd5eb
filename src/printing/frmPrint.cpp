#include "printing/frmPrint.h"

#include "app/globals.h"
#include "config/Options.h"
#include "config/frmOptions.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "printing/PrinterCTL.h"
#include "printing/paperNames.h"
#include "widgets/Desktop.h"
#include "widgets/ElidedLabel.h"
#include "widgets/radioGroup.h"
#include "widgets/toolTips.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int longestName = 60; ///< characters of a name in a caption

QString nameOf(PrintChoice choice) {
    return arrayName(u"opt1"_s, static_cast<int>(choice));
}

ElidedLabel* selectionLabel(const QString& name, const QString& text) {
    auto* label = withOwnText(new ElidedLabel(nullptr), name);
    label->setText(text);
    label->setToolTip(plainToolTip(text));
    label->setVisible(!text.isEmpty());
    return label;
}

} // namespace

void frmPrint::showPrint(QWidget* parent, const PrintSource& source, For purpose) {
    std::vector<ui::Printer> printers;
    if (purpose == For::Printing) {
        const ui::WaitPointer wait; // a print server may be far away
        printers = ui::asker().printers();
    }
    if (purpose == For::Printing && printers.empty()) {
        ui::asker().messageBox({TranslateText(u"Kein Drucker vorhanden!"_s)});
        desktop().mention(TranslateText(u"Ohne Drucker: Ansicht, Vorschau und PDF."_s));
        return;
    }
    std::optional<frmPrint> window;
    {
        const BusyScope building;
        window.emplace(source, PrinterChoice(std::move(printers)), purpose, parent);
    }
    const bool wanted = window->exec() == QDialog::Accepted;
    window.reset();
    if (PrinterCTL* control = desktop().PrinterCTL1(); wanted && control)
        control->Preview();
}

frmPrint::frmPrint(const PrintSource& source, PrinterChoice printers, For purpose, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmPrint"_s), source_(source), choices_(source), printers_(std::move(printers)),
      purpose_(purpose) {
    setWindowTitle(u"Drucken"_s);
    build();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    showPrinter();
    QRadioButton* first = radio(choices_.chosen());
    (first ? first : radio(PrintChoice::Names))->setFocus();
}

frmPrint::~frmPrint() = default;

void frmPrint::build() {
    auto* column = new QVBoxLayout(this);
    column->addWidget(buildChoices());
    column->addWidget(buildLanguages());
    column->addWidget(printerLine_ = buildPrinterLine());
    auto* hint =
        new QLabel(u"Der Bericht erscheint in der Vorschau. Dort wird er gedruckt oder als PDF gespeichert."_s);
    hint->setObjectName(u"lblHint"_s);
    column->addWidget(hint);
    column->addStretch();
    auto* row = new QHBoxLayout;
    const auto button = [&](const QString& name, const QString& text, void (frmPrint::*click)()) {
        auto* push = new QPushButton(text);
        push->setObjectName(name);
        row->addWidget(push);
        connect(push, &QPushButton::clicked, this, [this, click] {
            GestureScope::startAnew();
            trapped([&] { (this->*click)(); });
        });
        return push;
    };
    button(u"cmd_ShowOptions"_s, u"O&ptionen"_s, &frmPrint::cmd_ShowOptions_Click)->setAutoDefault(false);
    row->addStretch();
    button(u"cmd_OK"_s, u"OK"_s, &frmPrint::cmd_OK_Click)->setDefault(true);
    button(u"cmd_Cancel"_s, u"Abbrechen"_s, &frmPrint::cmd_Cancel_Click);
    column->addLayout(row);
    addHiddenFields();
}

QWidget* frmPrint::buildChoices() {
    auto* frame = new QGroupBox(u"Berichte "_s);
    frame->setObjectName(u"fraReport"_s);
    auto* grid = new QGridLayout(frame);
    grid->setColumnStretch(0, 1);
    const std::pair<PrintChoice, std::vector<ElidedLabel*>> rows[] = {
        {PrintChoice::Variable,
         {selectionLabel(u"variable"_s, choices_.variable), selectionLabel(u"studie"_s, choices_.studie)}},
        {PrintChoice::NodeVariables,
         {selectionLabel(u"kategorie"_s, choices_.kategorie), selectionLabel(u"studie_2"_s, choices_.studie_2)}},
        {PrintChoice::Description, {selectionLabel(u"kategorie_2"_s, choices_.kategorie_2)}},
        {PrintChoice::Names, {selectionLabel(u"trend"_s, {})}}};
    QList<QRadioButton*> group;
    for (const auto& [choice, labels] : rows) {
        group << addChoice(*grid, choice);
        auto* beside = new QHBoxLayout;
        for (ElidedLabel* label : labels)
            beside->addWidget(label);
        grid->addLayout(beside, grid->rowCount() - 1, 1);
        // What stands beside a choice is heard with it.
        QStringList said;
        for (const ElidedLabel* label : labels)
            if (!label->text().isEmpty())
                said << label->text();
        group.back()->setAccessibleDescription(said.join(u", "_s));
    }
    stopAtChosen(group);
    return frame;
}

QRadioButton* frmPrint::addChoice(QGridLayout& grid, PrintChoice choice) {
    auto* button = withOwnText(new QRadioButton, nameOf(choice));
    button->setEnabled(choices_.isEnabled(choice));
    button->setChecked(choices_.chosen() == choice);
    connect(button, &QRadioButton::toggled, this, [this, choice](bool on) {
        if (on)
            choices_.choose(choice);
    });
    grid.addWidget(button, grid.rowCount(), 0);
    return button;
}

QWidget* frmPrint::buildLanguages() {
    auto* frame = new QGroupBox(u"Inhalte"_s);
    frame->setObjectName(u"fraLanguage"_s);
    auto* row = new QHBoxLayout(frame);
    const auto box = [&](int number, const QString& text, bool on) {
        auto* check = new QCheckBox(text);
        check->setObjectName(arrayName(u"chkLanguage"_s, number));
        check->setChecked(on);
        row->addWidget(check);
        return check;
    };
    original_ = box(0, u"&Originalsprache"_s, !gOptions.EnglishLanguage);
    english_ = box(1, u"&Englische Sprache"_s, gOptions.EnglishLanguage);
    row->addStretch();
    return frame;
}

QWidget* frmPrint::buildPrinterLine() {
    auto* line = withOwnText(new QWidget, u"fraPrinter"_s);
    auto* grid = new QGridLayout(line);
    grid->setContentsMargins({});
    auto* label = new QLabel(u"A&usdruck auf"_s);
    label->setObjectName(u"lblPrinter"_s);
    cmbPrinter_ = withOwnText(new QComboBox, u"cmbPrinter"_s);
    cmbPrinter_->setProperty("Tag", u"user_defined"_s);
    cmbPrinter_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbPrinter_->setMinimumContentsLength(30);
    cmbPrinter_->addItems(printers_.names());
    cmbPrinter_->setCurrentIndex(printers_.current());
    label->setBuddy(cmbPrinter_);
    printername_ = withOwnText(new QLabel, u"printername"_s);
    printername_->setTextFormat(Qt::PlainText);
    printername_->setWordWrap(true);
    grid->addWidget(label, 0, 0);
    grid->addWidget(cmbPrinter_, 0, 1);
    grid->addWidget(printername_, 1, 1);
    grid->setColumnStretch(1, 1);
    connect(cmbPrinter_, &QComboBox::currentTextChanged, this, [this](const QString& name) {
        printers_.choose(name);
        showPrinter();
    });
    line->setVisible(purpose_ == For::Printing && PrintChoices::listsPrinters(choices_.P()));
    return line;
}

/// The selection as other parts read it; of trends there are none.
void frmPrint::addHiddenFields() {
    const std::pair<QString, QString> fields[] = {{u"stno"_s, choices_.stno},
                                                  {u"varno"_s, choices_.varno},
                                                  {u"Cat_id"_s, choices_.Cat_id},
                                                  {u"trn_id"_s, QString()}};
    for (const auto& [name, text] : fields) {
        auto* field = withOwnText(new QLineEdit(text, this), name);
        field->setFocusPolicy(Qt::NoFocus);
        field->hide();
    }
}

QRadioButton* frmPrint::radio(PrintChoice choice) const {
    return findChild<QRadioButton*>(nameOf(choice));
}

void frmPrint::showPrinter() {
    const QString text = printers_.printername(TranslateText(u"auf"_s));
    printername_->setText(text);
    cmbPrinter_->setAccessibleDescription(text);
}

void frmPrint::refreshTitles() {
    if (purpose_ == For::Viewing)
        setWindowTitle(TranslateText(u"Vorschau und PDF"_s));
    for (const PrintChoice choice : PrintChoices::shown)
        radio(choice)->setText(choices_.caption(choice, longestName));
    cmbPrinter_->setPlaceholderText(TranslateText(u"Kein Drucker gewählt"_s));
}

/// Who asks for no printer gets the paper that is usual in the country.
int frmPrint::paper() const {
    return purpose_ == For::Viewing ? Paper::byLocale() : printers_.paper();
}

void frmPrint::cmd_ShowOptions_Click() {
    frmOptions::showOptions(this, &Options::Landscape);
    activateWindow(); // the options leave the keyboard to the main window
}

void frmPrint::cmd_OK_Click() {
    if (!choices_.isReport()) {
        ui::asker().messageBox({TranslateText(u"Bitte wählen Sie das Drucken-Icon im Formular!"_s)});
        return;
    }
    if (PrinterCTL* control = desktop().PrinterCTL1()) {
        control->Reset();
        // The options as they are now: they may have been changed from here.
        static_cast<ReportRequest&>(*control) = reportRequest(
            source_, {choices_.chosen(), original_->isChecked(), english_->isChecked(), paper()}, gOptions);
        control->Printer = printers_.names().value(printers_.current());
    }
    accept();
}
