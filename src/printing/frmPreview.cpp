#include "printing/frmPreview.h"

#include "app/globals.h"
#include "config/Options.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "printing/PrinterCTL.h"
#include "printing/reportOutput.h"
#include "widgets/Desktop.h"
#include "widgets/EntryFindBar.h"
#include "widgets/Icons.h"
#include "widgets/PreviewArea.h"
#include "widgets/RunGuard.h"
#include "widgets/gestures.h"
#include "widgets/oneLine.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QSpinBox>
#include <QToolButton>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int workMilliseconds = 10;
/// While a run, a refilling or a dialog has its way, the pages wait so long and look again.
constexpr int lookAgain = 40;
/// Between two pictures of how far it is.
constexpr int showMilliseconds = 100;
/// How long the window may wait for its first page.
constexpr int patience = 250;

QString printerName() {
    const PrinterCTL* report = desktop().PrinterCTL1();
    return report ? report->Printer : QString();
}

} // namespace

void frmPreview::Preview(const ReportRequest& request) {
    openReport(std::make_unique<ReportRun>(request));
}

frmPreview* frmPreview::openReport(std::unique_ptr<ReportRun> run) {
    auto model = std::make_unique<PreviewModel>(std::move(run), gOptions.ZoomFactor);
    QString why;
    {
        const ui::WaitPointer wait;
        why = model->open();
        if (why.isEmpty())
            model->showFirst(patience);
    }
    if (!why.isEmpty()) {
        ui::asker().messageBox({.text = why, .icon = ui::Icon::Exclamation});
        return nullptr;
    }
    frmPreview* window = nullptr;
    {
        const BusyScope busy;
        window = new frmPreview(std::move(model));
        desktop().adopt(*window);
    }
    window->area_->setFocus();
    desktop().panelsChanged();
    return window;
}

void frmPreview::PrintReport(const ReportRequest& request) {
    const QString done = reportOutput::print(request, printerName());
    if (!done.isEmpty())
        desktop().mention(done);
}

frmPreview::frmPreview(std::unique_ptr<PreviewModel> model) : Form(*this, u"frmPreview"_s), model_(std::move(model)) {
    const BusyScope busy;
    build();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    connectControls();
    setWindowIcon(Icons::get(u"print"_s));
    slice_.setSingleShot(true);
    sinceShown_.start();
    showState();
    area_->setFocus();
    slice_.start(0);
}

frmPreview::~frmPreview() = default;

// ---- the pages as they come

/// One slice; the next one comes when the event loop has had its turn.
void frmPreview::work() {
    // Another's statement or question must not meet one of ours half way.
    if (gBusy > 0 || QApplication::activeModalWidget()) {
        slice_.start(lookAgain);
        return;
    }
    const int shown = model_->inView().second;
    const bool more = model_->goOn(workMilliseconds) && model_->state() == PreviewModel::State::Going;
    if (!more || model_->inView().second != shown || sinceShown_.elapsed() > showMilliseconds) {
        showState();
        sinceShown_.start();
    }
    if (more)
        slice_.start(0);
}

void frmPreview::cmdStop_Click() {
    if (model_->state() == PreviewModel::State::Going) {
        model_->halt();
    } else if (model_->state() == PreviewModel::State::Halted) {
        model_->resume();
        slice_.start(0);
    }
    showState();
}

/// What a gesture does to what is in view; a refused one leaves the controls as the model has them.
void frmPreview::change(const std::function<void()>& steps) {
    onGesture(steps);
    showState();
}

void frmPreview::carryOut(const std::function<QString(ReportRun&)>& output) {
    onGesture([&] {
        const QString done = output(model_->run());
        if (!done.isEmpty())
            desktop().mention(done);
    });
    // It may have laid out the rest, and with other numbers on the pages.
    model_->pictures().clear();
    if (model_->state() != PreviewModel::State::Halted)
        slice_.start(0);
    showState();
}

void frmPreview::cmdPrint_Click() {
    carryOut([](ReportRun& run) { return reportOutput::print(run, printerName()); });
}

void frmPreview::cmdSave_Click() {
    carryOut(reportOutput::save);
}

void frmPreview::askForPage() {
    txtPage_->setFocus();
    txtPage_->selectAll();
}

void frmPreview::askForEntry() {
    find_->open();
}

// ---- what the window shows

void frmPreview::showState() {
    const PreviewModel::State state = model_->state();
    const int pages = model_->pageCount();
    const bool all = state == PreviewModel::State::Complete;
    area_->follow();
    const auto show = [](QSpinBox& field, int most, int value) {
        const QSignalBlocker quiet(field);
        field.setMaximum(most);
        if (!field.hasFocus() || field.value() != value)
            field.setValue(value);
    };
    constexpr int mostPages = 99999;
    show(*txtPage_, all ? std::max(1, pages) : mostPages, model_->currentPage() + 1);
    show(*txtZoom_, qRound(PreviewModel::mostZoom * 100), qRound(model_->zoom() * 100));
    const QString count = TranslateText(u"von"_s) + u' ' + QString::number(pages) + (all ? QString() : u" …"_s);
    lblCount_->setText(count);
    cmdPrevious_->setEnabled(model_->hasPrevious());
    cmdNext_->setEnabled(model_->hasNext());
    cmdBack_->setEnabled(model_->canGoBack());
    cmdZoomIn_->setEnabled(model_->canZoomIn());
    cmdZoomOut_->setEnabled(model_->canZoomOut());
    cmdWidth_->setChecked(model_->fit() == PreviewModel::Fit::Width);
    cmdWhole_->setChecked(model_->fit() == PreviewModel::Fit::Page);
    cmdTwo_->setChecked(model_->twoPages());
    for (QToolButton* output : {cmdPrint_, cmdSave_})
        output->setEnabled(state != PreviewModel::State::Failed);
    pgbPages_->setValue(static_cast<int>(std::floor(model_->run().done() * pgbPages_->maximum())));
    area_->setAccessibleName(TranslateText(u"Seite"_s) + u' ' + QString::number(model_->currentPage() + 1) + u' ' +
                             count);
    showStop(state);
}

/// The foot of the window is there as long as there is something to say.
void frmPreview::showStop(PreviewModel::State state) {
    const bool going = state == PreviewModel::State::Going, halted = state == PreviewModel::State::Halted;
    const bool pressed = cmdStop_->hasFocus();
    pgbPages_->setVisible(going || halted);
    cmdStop_->setVisible(going || halted);
    cmdStop_->setIcon(Icons::get(going ? u"stop"_s : u"resume"_s));
    const QString what = going ? TranslateText(u"Das Setzen der Seiten anhalten (Esc)"_s)
                               : TranslateText(u"Die übrigen Seiten setzen"_s);
    cmdStop_->setToolTip(what);
    cmdStop_->setAccessibleName(what);
    if (pressed && !cmdStop_->isVisible())
        area_->setFocus();
    const QString text = model_->status();
    lblState_->parentWidget()->setVisible(!text.isEmpty());
    if (lblState_->text() == text)
        return;
    lblState_->setText(text);
    lblState_->setToolTip(text);
    QAccessibleEvent said(lblState_, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&said);
}

void frmPreview::refreshTitles() {
    const QString title = inOneLine(model_->run().layout().outline().title);
    setWindowTitle(title.isEmpty() ? TranslateText(u"Vorschau"_s) : TranslateText(u"Vorschau"_s) + u": "_s + title);
    nameControls();
    find_->refreshTexts();
    showState();
}

QSize frmPreview::sizeHint() const {
    return area_->sizeHint() + QSize(0, fontMetrics().height() * 3);
}

// ---- keys and closing

void frmPreview::closeEvent(QCloseEvent* event) {
    if (RunGuard::closeAfterRun(*this)) {
        event->ignore();
        return;
    }
    slice_.stop();
    event->accept();
}

/// What was begun to be typed is forgotten.
void frmPreview::leaveFields() {
    for (QSpinBox* field : {txtPage_, txtZoom_})
        field->setValue(field->value());
    area_->setFocus();
}

void frmPreview::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && model_->state() == PreviewModel::State::Going)
        onGesture([this] { cmdStop_Click(); });
    else if (event->key() == Qt::Key_Escape)
        leaveFields();
    else if (event->key() == Qt::Key_F3)
        change([&] { model_->findNext(event->modifiers().testFlag(Qt::ShiftModifier)); });
    else
        QWidget::keyPressEvent(event);
}
