#include "app/frmStatus.h"

#include "app/globals.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
QPointer<frmStatus> waiting;
} // namespace

frmStatus::frmStatus() : Form(*this, u"frmStatus"_s), lblInfo(new QLabel(this)) {
    lblInfo->setObjectName(u"lblInfo"_s);
    lblInfo->setProperty("CtrlTyp", QString());
    auto* layout = new QVBoxLayout(this);
    const int unit = fontMetrics().height();
    layout->setContentsMargins(unit * 2, unit * 3 / 2, unit * 2, unit * 3 / 2);
    layout->addWidget(lblInfo, 0, Qt::AlignCenter);
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setAttribute(Qt::WA_DeleteOnClose);
    setCursor(Qt::WaitCursor);
    refreshTitles();
    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

frmStatus::~frmStatus() = default;

void frmStatus::refreshTitles() {
    setWindowTitle(u"Varidex"_s);
    lblInfo->setText(TranslateText(u"Bitte einen Moment Geduld..."_s));
}

/// It goes when what it stands for is done.
void frmStatus::keyPressEvent(QKeyEvent* event) {
    event->accept();
}

void frmStatus::showWait() {
    if (!waiting)
        waiting = new frmStatus;
    waiting->show();
    // The steps that it stands for give no event turn by themselves.
    waiting->repaint();
}

void frmStatus::unload() {
    delete waiting.data();
}
