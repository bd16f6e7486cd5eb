#include "printing/frmPrintJob.h"

#include "app/globals.h"
#include "language/mdLanguage.h"
#include "printing/paperNames.h"
#include "printing/printJob.h"
#include "widgets/gestures.h"
#include "widgets/okCancelRow.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QSpinBox>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostPages = 99999, mostCopies = 999;

} // namespace

frmPrintJob::frmPrintJob(const ui::PrintJob& proposal, int pages, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmPrintJob"_s), proposal_(proposal), pages_(pages),
      printers_(ui::asker().printers()) {
    setWindowTitle(u"Bericht drucken"_s);
    build();
    mdLanguage::SetCtrlProps(*this);
    listPrinters();
    refreshTitles();
    for (QSpinBox* field : {txtFirst_, txtCount_, txtNumber_, txtCopies_})
        connect(field, &QSpinBox::valueChanged, this, [this] { showState(); });
    connect(chkColor_, &QCheckBox::clicked, this, [this](bool color) { proposal_.color = color; });
    connect(cmbPrinter_, &QComboBox::currentIndexChanged, this, [this] { showState(); });
    cmbPrinter_->setFocus();
}

frmPrintJob::~frmPrintJob() = default;

std::optional<ui::PrintJob> frmPrintJob::ask(const ui::PrintJob& proposal, int pages) {
    frmPrintJob window(proposal, pages, QApplication::activeWindow());
    if (window.exec() != QDialog::Accepted)
        return std::nullopt;
    return window.job();
}

void frmPrintJob::build() {
    auto* fields = new QGridLayout;
    cmbPrinter_ = withOwnText(new QComboBox(this), u"cmbPrinter"_s);
    cmbPrinter_->setProperty("Tag", u"user_defined"_s);
    cmbPrinter_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cmbPrinter_->setMinimumContentsLength(28);
    auto* lblPrinter = new QLabel(u"&Drucker:"_s, this);
    lblPrinter->setObjectName(u"lblPrinter"_s);
    lblPrinter->setBuddy(cmbPrinter_);
    fields->addWidget(lblPrinter, 0, 0);
    fields->addWidget(cmbPrinter_, 0, 1, 1, 2);
    txtFirst_ = number(*fields, u"First"_s, u"&Von Seite:"_s, proposal_.firstPage);
    txtCount_ = number(*fields, u"Count"_s, u"Anzahl der &Seiten:"_s, proposal_.pageCount);
    txtNumber_ =
        number(*fields, u"Number"_s, u"&Nummer auf der ersten Seite des Berichts:"_s, proposal_.firstPageNumber);
    txtCopies_ = number(*fields, u"Copies"_s, u"&Exemplare:"_s, proposal_.copies);
    txtCopies_->setMaximum(mostCopies);
    chkColor_ = new QCheckBox(u"In &Farbe"_s, this);
    chkColor_->setObjectName(u"chkColor"_s);
    fields->addWidget(chkColor_, fields->rowCount(), 1, 1, 2);
    fields->setColumnStretch(2, 1);
    lblTold_ = note(u"lblTold"_s);
    lblPaper_ = note(u"lblPaper"_s);
    auto* column = new QVBoxLayout(this);
    column->addLayout(fields);
    column->addSpacing(fontMetrics().height() / 2);
    column->addWidget(lblTold_);
    column->addWidget(lblPaper_);
    column->addStretch();
    column->addLayout(okCancelRow(this));
}

QSpinBox* frmPrintJob::number(QGridLayout& fields, const QString& name, const QString& caption, int value) {
    auto* field = withOwnText(new QSpinBox(this), u"txt"_s + name);
    field->setRange(1, mostPages);
    field->setValue(value);
    auto* label = new QLabel(caption, this);
    label->setObjectName(u"lbl"_s + name);
    label->setBuddy(field);
    const int row = fields.rowCount();
    fields.addWidget(label, row, 0);
    fields.addWidget(field, row, 1);
    return field;
}

QLabel* frmPrintJob::note(const QString& name) {
    auto* made = withOwnText(new QLabel(this), name);
    made->setTextFormat(Qt::PlainText);
    made->setWordWrap(true);
    return made;
}

/// The printer that is proposed, else the system's; without either the user has to choose one.
void frmPrintJob::listPrinters() {
    int chosen = printers_.size() == 1 ? 0 : -1;
    for (int i = 0; i < static_cast<int>(printers_.size()); ++i) {
        const ui::Printer& printer = printers_[static_cast<size_t>(i)];
        cmbPrinter_->addItem(printer.place.isEmpty() || printer.place == printer.name
                                 ? printer.name
                                 : printer.name + u" ("_s + printer.place + u')');
        if (printer.name == proposal_.printer || (proposal_.printer.isEmpty() && printer.isDefault))
            chosen = i;
    }
    cmbPrinter_->setCurrentIndex(chosen);
}

void frmPrintJob::refreshTitles() {
    for (const auto& [field, label] : {std::pair<QWidget*, const char*>{cmbPrinter_, "lblPrinter"},
                                       {txtFirst_, "lblFirst"},
                                       {txtCount_, "lblCount"},
                                       {txtNumber_, "lblNumber"},
                                       {txtCopies_, "lblCopies"}})
        field->setAccessibleName(findChild<QLabel*>(QString::fromLatin1(label))->text().remove(u'&').remove(u':'));
    showState();
}

ui::PrintJob frmPrintJob::job() const {
    ui::PrintJob job = proposal_;
    const int chosen = cmbPrinter_->currentIndex();
    job.printer = chosen < 0 ? QString() : printers_[static_cast<size_t>(chosen)].name;
    job.firstPage = txtFirst_->value();
    job.pageCount = txtCount_->value();
    job.firstPageNumber = txtNumber_->value();
    job.copies = txtCopies_->value();
    job.color = chkColor_->isChecked();
    return job;
}

/// The pages are laid out already: another paper in the printer is said, not followed.
QString frmPrintJob::paperNote() const {
    const int chosen = cmbPrinter_->currentIndex();
    const int paper = chosen < 0 ? 0 : printers_[static_cast<size_t>(chosen)].paper;
    if (paper == 0 || proposal_.paper == 0 || paper == proposal_.paper)
        return {};
    return TranslateText(u"Der Bericht ist für das Papier %1 gesetzt, der Drucker hat %2."_s)
        .arg(Paper::name(proposal_.paper), Paper::name(paper));
}

void frmPrintJob::showState() {
    const int chosen = cmbPrinter_->currentIndex();
    const bool hasColor = chosen >= 0 && printers_[static_cast<size_t>(chosen)].color;
    chkColor_->setEnabled(hasColor);
    chkColor_->setChecked(hasColor && proposal_.color);
    lblTold_->setText(printJob::tell(job(), pages_).words);
    lblPaper_->setText(paperNote());
}

void frmPrintJob::cmdOK_Click() {
    onGesture([this] {
        const printJob::Answer answer = printJob::tell(job(), pages_);
        if (cmbPrinter_->currentIndex() < 0) {
            ui::asker().messageBox({.text = TranslateText(u"Bitte einen Drucker wählen."_s)});
            cmbPrinter_->setFocus();
        } else if (answer.fault) {
            ui::asker().messageBox({.text = answer.words, .icon = ui::Icon::Exclamation});
            txtFirst_->setFocus();
            txtFirst_->selectAll();
        } else {
            accept();
        }
    });
}
