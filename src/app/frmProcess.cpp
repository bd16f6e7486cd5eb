#include "app/frmProcess.h"

#include "diagnostics/errors.h"
#include "language/mdLanguage.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/ui/Asker.h"
#include "widgets/Icons.h"
#include "widgets/RunGuard.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

class OpenProgress : public ui::ProgressView {
public:
    explicit OpenProgress(bool mayStop)
        : guard_([this, mayStop] { stopped_ = mayStop; }, {}),
          window_(mayStop ? std::function<void()>([this] { stopped_ = true; }) : nullptr,
                  QApplication::activeWindow()) {
        window_.setWindowModality(Qt::ApplicationModal);
    }

    bool show(const QString& text, int done, int total) override {
        window_.lblStatus->setText(text);
        window_.setProgress(done, total);
        window_.show();
        ui::asker().eventTurn();
        return !stopped_;
    }

private:
    bool stopped_ = false;
    RunGuard::Scope guard_;
    frmProcess window_;
};

} // namespace

std::unique_ptr<ui::ProgressView> frmProcess::open(bool mayStop) {
    return RunGuard::running() ? nullptr : std::make_unique<OpenProgress>(mayStop);
}

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
