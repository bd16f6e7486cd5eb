#include "analysis/frmAuswertungValues.h"

#include "analysis/frmAuswertung.h"
#include "analysis/frmAuswertungCases.h"
#include "analysis/frmAuswertungRequest.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "diagnostics/errors.h"
#include "widgets/FilterLine.h"
#include "widgets/ValueList.h"

#include <QApplication>
#include <QScrollArea>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int leastLines = 3;

} // namespace

frmAuswertungValues::frmAuswertungValues(frmAuswertung& window, frmAuswertungCases& cases,
                                         const frmAuswertungRequest& request)
    : frmAuswertungPart(window), cases_(cases), request_(request),
      fraValues_(withOwnText(new QGroupBox, u"fraValues"_s)) {
    list_ = new ValueList(u"(0)"_s, fraValues_);
    list_->setMinimumHeight(fraValues_->fontMetrics().height() * leastLines);
    // As high as there is room, and never what makes the page scroll.
    list_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
    auto* rows = new QVBoxLayout(fraValues_);
    rows->addWidget(list_);
    connect(cases_.filterLine(), &QLineEdit::cursorPositionChanged, this, [this] { showValues(false); });
    connect(cases_.filterLine(), &QLineEdit::textChanged, this, [this] { showValues(false); });
    connect(cases_.filterLine(), &QLineEdit::textEdited, this, [this] { bringIntoView(); });
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget*, const QWidget* now) { follow(now); });
}

frmAuswertungValues::~frmAuswertungValues() {
    // The focus wanders once more while the window goes.
    disconnect(qApp, nullptr, this, nullptr);
}

QWidget* frmAuswertungValues::list() const {
    return list_->table();
}

/// Who goes on to the list still speaks of what it shows.
void frmAuswertungValues::follow(const QWidget* focused) {
    if (!focused || !window_.isAncestorOf(focused) || list_->isAncestorOf(focused) || AnalysisModel::running())
        return;
    const Subject before = subject_;
    subject_ = focused == cases_.filterLine()                ? Subject::Filter
               : request_.variable2()->isAncestorOf(focused) ? Subject::Second
                                                             : Subject::First;
    if (subject_ != before)
        showValues(false);
    // What is clicked at must not move away beneath the mouse.
    if (subject_ == Subject::Filter && QGuiApplication::mouseButtons() == Qt::NoButton)
        bringIntoView();
}

/// In a low window the list, and what is said of a filter, would lie below the line that one types in.
void frmAuswertungValues::bringIntoView() {
    for (QWidget* around = fraValues_; around; around = around->parentWidget())
        if (auto* page = qobject_cast<QScrollArea*>(around)) {
            page->ensureWidgetVisible(fraValues_, 0, 0);
            page->ensureWidgetVisible(cases_.filterLine(), 0, 0);
        }
}

/// Of a study's variables, so that a filter's word that is none shows nothing.
QString frmAuswertungValues::variable() const {
    const AnalysisRequest& r = model_.request();
    if (subject_ == Subject::Second && !r.dbcVariable2.isEmpty())
        return r.dbcVariable2.value;
    if (subject_ != Subject::Filter || r.optFilter != FilterKind::FilterUser)
        return r.dbcVariable.value;
    const QString typed = cases_.filterLine()->variableAtCursor();
    for (const StudyVariable& known : model_.edit().variables())
        if (dao::compareTexts(known.name, typed) == 0)
            return known.name;
    return r.dbcVariable.value;
}

/// @param anew the catalogue may say something else than before
void frmAuswertungValues::showValues(bool anew) {
    if (AnalysisModel::running())
        return;
    const BoundPicker wanted{model_.request().dbcStudy.value, variable()};
    const bool same = wanted.value == shown_.value && wanted.text == shown_.text;
    if (same && !anew)
        return;
    shown_ = wanted;
    const QString title = TranslateText(u"Werte"_s);
    fraValues_->setTitle(wanted.text.isEmpty() ? title : title + u": "_s + wanted.text);
    const dao::DatabasePtr catalogue = gDatabase.CurrentDatabase();
    if (wanted.text.isEmpty() || !catalogue) {
        list_->clear();
        return;
    }
    trapped([&] { list_->show(VariableValues::of(*catalogue, wanted.value, wanted.text)); });
}

bool frmAuswertungValues::concerns(RequestPart part) const {
    return part == RequestPart::Study || part == RequestPart::Variables || part == RequestPart::Filter;
}

void frmAuswertungValues::showChanges(const Changes& changes) {
    const bool own = model_.request().optFilter == FilterKind::FilterUser;
    list_->onChosen = [this](const QString& code) { cases_.putIntoFilter(shown_.text, code); };
    if (!own)
        list_->onChosen = nullptr;
    showValues(changes.has(RequestPart::Study));
}

void frmAuswertungValues::nameForReaders() {
    list_->refreshTexts();
    shown_ = {};
    showValues(true);
}
