#include "analysis/frmAuswertungState.h"

#include "analysis/AnalysisModel.h"
#include "app/globals.h"
#include "widgets/FlowLayout.h"
#include "widgets/Form.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmAuswertungState::frmAuswertungState(const QString& page, QWidget* parent) : QFrame(parent) {
    setFrameShape(QFrame::StyledPanel);
    lblState_ = withOwnText(new QLabel(this), u"lbl"_s + page + u"State"_s);
    lblState_->setTextFormat(Qt::PlainText);
    lblState_->setWordWrap(true);
    lblState_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cmdComputeAnew_ = new QPushButton(u"&Jetzt neu berechnen"_s, this);
    cmdComputeAnew_->setObjectName(u"cmd"_s + page + u"ComputeAnew"_s);
    cmdStop_ = new QPushButton(u"Abbrechen (Esc)"_s, this);
    cmdStop_->setObjectName(u"cmd"_s + page + u"Stop"_s);
    auto* rows = new QVBoxLayout(this);
    const int narrow = rows->contentsMargins().left() / 2;
    rows->setContentsMargins(2 * narrow, narrow, narrow, narrow);
    auto* row = new FlowLayout;
    rows->addLayout(row);
    row->add(lblState_, 1);
    row->add(cmdComputeAnew_);
    row->add(cmdStop_);
}

void frmAuswertungState::showRunning() {
    lblState_->setText(TranslateText(u"Die Tabelle wird berechnet..."_s));
    cmdComputeAnew_->hide();
    cmdStop_->show();
    show();
}

void frmAuswertungState::showState(const AnalysisModel& model, const QString& more) {
    QString words = more.isEmpty() ? stateText(model.tableState()) : more;
    if (words.isEmpty() && model.facts().outcome == RunOutcome::Cancelled)
        words = TranslateText(u"Die Berechnung wurde abgebrochen."_s);
    lblState_->setText(words);
    cmdStop_->hide();
    cmdComputeAnew_->show();
    setVisible(!words.isEmpty());
}
