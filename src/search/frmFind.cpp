#include "search/frmFind.h"

#include "app/globals.h"
#include "config/Options.h"
#include "diagnostics/GestureScope.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "search/SearchTerms.h"
#include "widgets/Desktop.h"
#include "widgets/HitListView.h"
#include "widgets/gestures.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace {

constexpr int turnMilliseconds = 20;
/// While another run, a refilling or a dialog has its way, the search waits so long and looks again.
constexpr int waitMilliseconds = 40;

frmFind* openWindow() {
    for (Form* form : Form::open())
        if (auto* window = dynamic_cast<frmFind*>(form))
            return window;
    return nullptr;
}

} // namespace

void frmFind::showFind() {
    if (frmFind* window = openWindow()) {
        desktop().activate(*window);
        window->txtFind_->setFocus();
        return;
    }
    frmFind* window = nullptr;
    {
        const BusyScope busy;
        window = new frmFind;
        desktop().adopt(*window);
    }
    window->followKeys();
    desktop().panelsChanged();
}

frmFind::frmFind() : Form(*this, u"frmFind"_s) {
    const BusyScope busy;
    setWindowTitle(u"Erweiterte Suche"_s);
    build();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
    connectControls();
    for (QCheckBox* box : chkSearch_)
        box->setChecked(true);
    cmbAndOr_->setCurrentIndex(-1);
    cmbLanguage_->setCurrentIndex(gOptions.EnglishLanguage ? 1 : 0);
    slice_.setSingleShot(true);
    search_.onStatement = [this] { turn(); };
    offerTerms();
    showState();
    txtFind_->setFocus();
}

frmFind::~frmFind() {
    delete nextHit_;
    delete previousHit_;
    slice_.stop();
    search_.abandon();
}

// ---- searching

SearchRequest frmFind::request() const {
    SearchRequest request;
    request.sFind = txtFind_->currentText();
    request.sFind2 = txtFind2_->currentText();
    request.join = static_cast<SearchRequest::Join>(cmbAndOr_->currentIndex());
    request.english = cmbLanguage_->currentIndex() > 0;
    for (size_t i = 0; i < chkSearch_.size(); ++i)
        request.chkSearch[i] = chkSearch_[i]->isChecked();
    return request;
}

void frmFind::cmd_Find_Click() {
    if (search_.isRunning())
        return;
    const SearchRequest wanted = request();
    if (const SearchFault fault = faultOf(wanted); fault != SearchFault::None) {
        ui::asker().messageBox({.text = faultText(fault)});
        (fault == SearchFault::NoTerm ? txtFind_ : cmbAndOr_)->setFocus();
        return;
    }
    for (const QString& term : {wanted.sFind2, wanted.sFind})
        SearchTerms::remember(term);
    offerTerms();
    search_.begin(wanted);
    led_ = false;
    hits_->begin(search_.hits(), wanted.terms());
    list_->horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    // The button goes off with the search; the keyboard is where it can be ended.
    const bool pressed = cmd_Find_->hasFocus();
    showState();
    if (pressed)
        cmd_Stop_->setFocus();
    slice_.start(0);
}

void frmFind::cmd_Stop_Click() {
    search_.stop();
}

void frmFind::cmd_Close_Click() {
    QWidget* frame = parentWidget();
    (frame && frame->inherits("QMdiSubWindow") ? frame : this)->close();
}

/// One slice; the next one comes when the event loop has had its turn.
void frmFind::work() {
    // A statement would take from a drag or a menu the release that ends it.
    const bool held = QApplication::mouseButtons() != Qt::NoButton || QApplication::activePopupWidget();
    if (gBusy > 0 || QApplication::activeModalWidget() || (held && search_.isAtStatement())) {
        slice_.start(waitMilliseconds);
        return;
    }
    {
        const GestureScope gesture;
        sinceTurn_.start();
        search_.goOn();
        guard_.reset();
    }
    hits_->grow();
    if (search_.isRunning()) {
        slice_.start(0);
    } else {
        hits_->settle();
        const bool stopHeld = cmd_Stop_->hasFocus();
        cmd_Find_->setEnabled(true);
        if (stopHeld && search_.hits().size() > 0)
            list_->setFocus();
        else if (stopHeld)
            txtFind_->setFocus();
    }
    if (list_->currentRow() < 0 && hits_->rowCount() > 0)
        list_->goTo(0);
    showState();
}

/// A turn in the middle of a statement. Short ones need no guard, so that menus don't flicker.
void frmFind::turn() {
    if (sinceTurn_.elapsed() < turnMilliseconds)
        return;
    if (!guard_)
        guard_.emplace([this] { search_.stop(); }, std::vector<QWidget*>{cmd_Stop_, cmd_Close_});
    ui::asker().eventTurn();
    sinceTurn_.start();
}

void frmFind::showState() {
    const bool running = search_.isRunning();
    cmd_Find_->setEnabled(!running);
    cmd_Stop_->setEnabled(running);
    if (running)
        setCursor(Qt::BusyCursor);
    else
        unsetCursor();
    const QString text =
        running && search_.status().isEmpty() ? TranslateText(u"Die Suche läuft …"_s) : search_.status();
    if (status_->text() != text) {
        status_->setText(text);
        status_->setToolTip(text);
        QAccessibleEvent said(status_, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&said);
    }
    const int hits = search_.hits().size();
    count_->setText(search_.state() == ExtendedSearch::State::Idle
                        ? QString()
                        : said(u"%1 Treffer"_s, hits == 1 ? u"%1 hit"_s : u"%1 hits"_s).arg(hits));
    const bool none = search_.state() == ExtendedSearch::State::Done && hits == 0;
    list_->setHint(none      ? TranslateText(u"Nichts gefunden."_s)
                   : running ? QString()
                             : TranslateText(u"Die Treffer stehen hier. Enter führt zu einem, F4 zum nächsten."_s));
}

/// The last terms, without touching what is being typed.
void frmFind::offerTerms() {
    const QStringList terms = SearchTerms::stored();
    for (QComboBox* field : {txtFind_, txtFind2_}) {
        const QString typed = field->currentText();
        const QSignalBlocker quiet(field);
        field->clear();
        field->addItems(terms);
        field->setCurrentIndex(-1);
        field->setEditText(typed);
    }
}

// ---- keys and closing

void frmFind::closeEvent(QCloseEvent* event) {
    if (RunGuard::closeAfterRun(*this)) {
        event->ignore();
        return;
    }
    search_.abandon();
    event->accept();
}

void frmFind::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && search_.isRunning())
        cmd_Stop_Click();
    else
        QWidget::keyPressEvent(event);
}

/// Enter in a term searches.
bool frmFind::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            onGesture([this] { cmd_Find_Click(); });
            return true;
        }
        if (key == Qt::Key_Escape && search_.isRunning()) {
            cmd_Stop_Click();
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
