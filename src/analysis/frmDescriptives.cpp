#include "analysis/frmDescriptives.h"

#include "analysis/request/RequestEditor.h"
#include "app/globals.h"
#include "config/Options.h"
#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "widgets/Desktop.h"
#include "widgets/okCancelRow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

constexpr int mostDigits = 15;
constexpr int rowsInColumn = static_cast<int>(statisticCount + 1) / 2;

} // namespace

frmDescriptives::frmDescriptives(RequestEditor* editor, QWidget* owner)
    : QDialog(owner), Form(*this, u"frmDescriptives"_s), editor_(editor), owner_(owner) {
    setWindowTitle(u"Deskriptive Statistiken auswählen"_s);
    build();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    showChoice(editor_ ? DescriptivesChoice::of(editor_->request(), gOptions) : DescriptivesChoice::defaults(gOptions));
    chkDescriptives_[0]->setFocus();
}

frmDescriptives::~frmDescriptives() = default;

/// Two columns of statistics, each with its digits.
void frmDescriptives::build() {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(fontMetrics().averageCharWidth() * 2);
    grid->setVerticalSpacing(fontMetrics().height() / 3);
    for (int column = 0; column < 2; ++column) {
        auto* heading = new QLabel(u"Nachkommastellen"_s, this);
        heading->setObjectName(arrayName(u"lblDigits"_s, column));
        grid->addWidget(heading, 0, column * 3 + 1);
    }
    grid->setColumnMinimumWidth(2, fontMetrics().averageCharWidth() * 3);
    for (int i = 0; i < static_cast<int>(statisticCount); ++i) {
        auto* box = new QCheckBox(DescriptivesChoice::captions()[static_cast<size_t>(i)], this);
        box->setObjectName(arrayName(u"chkDescriptives"_s, i));
        auto* digits = new QComboBox(this);
        digits->setObjectName(arrayName(u"cmbDigits"_s, i));
        digits->setProperty("CtrlTyp", QString());
        for (int n = 0; n <= mostDigits; ++n)
            digits->addItem(QString::number(n));
        const int row = 1 + i % rowsInColumn, column = i / rowsInColumn * 3;
        grid->addWidget(box, row, column);
        grid->addWidget(digits, row, column + 1);
        chkDescriptives_[static_cast<size_t>(i)] = box;
        cmbDigits_[static_cast<size_t>(i)] = digits;
    }
    auto* column = new QVBoxLayout(this);
    column->setSpacing(fontMetrics().height());
    column->addLayout(grid);
    column->addStretch();
    column->addLayout(okCancelRow(this));
}

void frmDescriptives::refreshTitles() {
    const QString title = TranslateText(u"Deskriptive Statistiken auswählen"_s);
    setWindowTitle(editor_ && owner_ ? title + u" - "_s + owner_->windowTitle() : title);
    for (size_t i = 0; i < statisticCount; ++i)
        cmbDigits_[i]->setAccessibleName(TranslateText(u"Nachkommastellen"_s) + u": "_s +
                                         chkDescriptives_[i]->text().remove(u'&'));
}

void frmDescriptives::showChoice(const DescriptivesChoice& choice) {
    for (size_t i = 0; i < statisticCount; ++i) {
        chkDescriptives_[i]->setChecked(choice.chkDescriptives[i]);
        // A text that is no item becomes one, so that what nobody touches stays.
        if (cmbDigits_[i]->findText(choice.cmbDigits[i]) < 0)
            cmbDigits_[i]->addItem(choice.cmbDigits[i]);
        cmbDigits_[i]->setCurrentText(choice.cmbDigits[i]);
    }
}

DescriptivesChoice frmDescriptives::choice() const {
    DescriptivesChoice choice;
    for (size_t i = 0; i < statisticCount; ++i) {
        choice.chkDescriptives[i] = chkDescriptives_[i]->isChecked();
        choice.cmbDigits[i] = cmbDigits_[i]->currentText();
    }
    return choice;
}

void frmDescriptives::cmdOK_Click() {
    trapped([this] {
        if (editor_)
            choice().applyTo(*editor_);
        else
            choice().applyTo(gOptions);
    });
    cmdCancel_Click();
}

void frmDescriptives::cmdCancel_Click() {
    done(QDialog::Rejected);
    focusMainWindow();
}
