#include "app/frmProcess.h"

#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/system/ApplicationInfo.h"
#include "widgets/Icons.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

frmProcess::frmProcess(std::function<void()> stop, QWidget* parent)
    : QDialog(parent), Form(*this, u"frmProcess"_s), lblStatus(new QLabel(this)), pgbProgress(new QProgressBar(this)),
      stop_(std::move(stop)), cmdStop_(new QPushButton(Icons::get(u"stop"_s), u"&Anhalten"_s, this)) {
    setWindowTitle(ApplicationInfo::title);
    lblStatus->setObjectName(u"lblStatus"_s);
    lblStatus->setProperty("CtrlTyp", QString());
    lblStatus->setTextFormat(Qt::PlainText);
    lblStatus->setWordWrap(true);
    pgbProgress->setObjectName(u"pgbProgress"_s);
    pgbProgress->setRange(0, 0);
    cmdStop_->setObjectName(u"cmdStop"_s);
    cmdStop_->setToolTip(u"Den Vorgang anhalten"_s);
    cmdStop_->setVisible(static_cast<bool>(stop_));
    connect(cmdStop_, &QPushButton::clicked, this, [this] { reject(); });
    const int unit = fontMetrics().height();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdStop_);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(unit * 3 / 2, unit * 3 / 2, unit * 3 / 2, unit);
    all->setSpacing(unit);
    all->addWidget(lblStatus);
    all->addWidget(pgbProgress);
    all->addLayout(buttons);
    mdLanguage::SetCtrlProps(*this);
    pgbProgress->setAccessibleName(windowTitle());
    resize(fontMetrics().averageCharWidth() * 60, sizeHint().height());
}

frmProcess::~frmProcess() = default;

void frmProcess::setProgress(int done, int total) {
    pgbProgress->setRange(0, total);
    pgbProgress->setValue(done);
}

void frmProcess::reject() {
    if (!stop_)
        return;
    cmdStop_->setEnabled(false);
    trapped(stop_);
}

void frmProcess::keyPressEvent(QKeyEvent* event) {
    event->accept();
}
