#include "analysis/frmAuswertung.h"

#include "analysis/frmAuswertungCases.h"
#include "analysis/frmAuswertungChart.h"
#include "analysis/frmAuswertungComparison.h"
#include "analysis/frmAuswertungInstructions.h"
#include "analysis/frmAuswertungRequest.h"
#include "analysis/frmAuswertungTable.h"
#include "analysis/frmAuswertungValues.h"
#include "analysis/frmNewCalculation.h"
#include "analysis/request/preselection.h"
#include "analysis/request/windowTitle.h"
#include "analysis/result/provenance.h"
#include "analysis/result/saveTable.h"
#include "app/globals.h"
#include "config/Options.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "platform/ui/Asker.h"
#include "tables/tableText.h"
#include "widgets/Desktop.h"
#include "widgets/FilterLine.h"
#include "widgets/FlowLayout.h"
#include "widgets/Icons.h"
#include "widgets/PageArea.h"
#include "widgets/RunGuard.h"
#include "widgets/textFields.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Of gWindowSerials.
constexpr size_t analysisSerial = 3;
constexpr int tableTab = 1, chartTab = 2;

/// @param last takes what room is left
QWidget* columnOf(std::initializer_list<QWidget*> groups, QWidget* last = nullptr) {
    auto* column = new QWidget;
    auto* rows = new QVBoxLayout(column);
    rows->setContentsMargins(0, 0, 0, 0);
    for (QWidget* group : groups)
        rows->addWidget(group);
    if (last)
        rows->addWidget(last, 1);
    else
        rows->addStretch();
    return column;
}

} // namespace

frmAuswertung* frmAuswertung::openFrom(const frmExplorer* explorer) {
    auto* window = new frmAuswertung;
    window->Tag = QString::number(++gWindowSerials[analysisSerial]);
    window->showTitle();
    trapped([&] { window->model_.pictures().start(); });
    if (explorer)
        trapped([&] { window->preselect(*explorer); });
    window->showParts(&frmAuswertungPart::show);
    desktop().adopt(*window);
    return window;
}

frmAuswertung::frmAuswertung() : Form(*this, u"frmAuswertung"_s) {
    setWindowTitle(u"Auswertung"_s);
    setWindowIcon(Icons::get(u"analysis"_s));
    build();
    setHooks();
    model_.open();
    comparison().RefreshSavedComparisons();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
}

frmAuswertung::~frmAuswertung() {
    // The focus is to leave the controls while what hears of it is still there; what was being typed counts no more.
    cases_->forgetFilter();
    hide();
}

void frmAuswertung::build() {
    request_ = std::make_unique<frmAuswertungRequest>(*this);
    cases_ = std::make_unique<frmAuswertungCases>(*this);
    instructions_ = std::make_unique<frmAuswertungInstructions>(*this);
    comparison_ = std::make_unique<frmAuswertungComparison>(*this);
    values_ = std::make_unique<frmAuswertungValues>(*this, *cases_, *request_);
    table_ = std::make_unique<frmAuswertungTable>(*this);
    chart_ = std::make_unique<frmAuswertungChart>(*this);
    auto* tabs = new QTabWidget(this);
    tabs->setObjectName(u"SSTab"_s);
    tabs->setDocumentMode(true);
    tabs->addTab(buildRequest(), u"Anfra&ge"_s);
    tabs->addTab(table_->page(), u"&Tabelle"_s);
    tabs->addTab(chart_->page(), u"Grafik"_s);
    // Ctrl+Tab is the frame's, for its windows.
    const std::pair<QKeySequence, int> keys[] = {{Qt::CTRL | Qt::Key_PageDown, 1}, {Qt::CTRL | Qt::Key_PageUp, -1}};
    for (const auto& [key, step] : keys)
        connect(new QShortcut(key, this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut), &QShortcut::activated, this,
                [tabs, step = step] { tabs->setCurrentIndex(std::clamp(tabs->currentIndex() + step, 0, chartTab)); });
    connect(tabs, &QTabWidget::currentChanged, this, [this](int tab) { changeTab(tab); });
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    SSTab_ = tabs;
    setTabOrder(cases_->filterLine(), values_->list());
    resize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 44);
}

QWidget* frmAuswertung::buildRequest() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    // Studies and variables on the left, what is done with them on the right; below each other in a narrow window.
    auto* columns = new FlowLayout;
    column->addLayout(columns, 3);
    columns->add(
        columnOf({request_->study(), request_->variable(), request_->variable2(), cases_->filter()}, values_->values()),
        3);
    columns->add(columnOf({request_->mode(), cases_->weight(), instructions_->instructions()}), 2);
    // Below both, so that nothing above gives way when it comes.
    column->addWidget(comparison_->comparison(), 1);
    // The button stays in view, however low the window is.
    auto* whole = new QWidget;
    auto* rows = new QVBoxLayout(whole);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->addWidget(new PageArea(page), 1);
    cmdCompute_ = new QPushButton(u"Berechnen"_s, whole);
    cmdCompute_->setObjectName(u"cmdCompute"_s);
    cmdCompute_->setDefault(true);
    connect(cmdCompute_, &QPushButton::clicked, this, [this] { compute(); });
    auto* button = new QHBoxLayout;
    button->setContentsMargins(page->layout()->contentsMargins());
    button->addStretch();
    button->addWidget(cmdCompute_);
    rows->addLayout(button);
    return whole;
}

/// As a person does who turns to the table.
void frmAuswertung::compute() {
    SSTab_->setCurrentIndex(tableTab);
}

/// Enter computes from every field that has no use for it; a button that has the focus is meant itself.
void frmAuswertung::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter || SSTab_->currentIndex() != 0) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (auto* button = qobject_cast<QPushButton*>(focusWidget()))
        button->click();
    else
        compute();
}

void frmAuswertung::setHooks() {
    RunHooks hooks;
    hooks.textWidth = [this](const QString& text) { return table_->textWidth(text); };
    hooks.askMissing = [this](const QString& sMissing) {
        frmNewCalculation dialog(sMissing, this);
        dialog.exec();
        return dialog.answer();
    };
    hooks.begins = [this] {
        table_->showRunning();
        chart_->showRunning();
    };
    instructions_->textWidth = hooks.textWidth;
    model_.setHooks(std::move(hooks));
}

/// The rows that are selected; in a view for comparisons also all that the selected entry of the tree holds.
void frmAuswertung::preselect(const frmExplorer& explorer) {
    const ExplorerModel& shown = explorer.model();
    const bool trend = gViews.at(explorer.viewNumber(), ViewTable::CompAnalysis) == u"1";
    const bool ofTree = trend && explorer.place() == frmExplorer::Place::Tree;
    const bool ofList = explorer.place() == frmExplorer::Place::List;
    std::vector<SelectedVariable> selection;
    const auto add = [&](const VariableRow& row) { selection.push_back({row.cell(1), row.Text}); };
    if (ofTree && !shown.searchesView())
        std::ranges::for_each(shown.list.rows, add);
    else if (ofList)
        for (const int row : explorer.selectedRows())
            add(shown.list.rows.at(static_cast<size_t>(row)));
    if (!trend)
        return preselectVariables(model_.edit(), selection);
    if (ofList || ofTree)
        preselectComparison(model_.edit(), comparison(), selection);
    if (const CatalogueNode* node = shown.selectedNode(); ofTree && node)
        model_.edit().change(RequestPart::Entries,
                             [&](AnalysisRequest& r) { r.txtTitle = comparisonTitle(node->Text); });
}

void frmAuswertung::alignCaptions() {
    giveSameWidth(request_->captions() + cases_->captions());
    cases_->alignWeights();
}

/// After what is asked for. The number of the window distinguishes it from others that ask for the same.
void frmAuswertung::showTitle() {
    const QString name = requestName(model_.request());
    const bool isTaken = std::ranges::any_of(open(), [&](const Form* form) {
        const auto* other = dynamic_cast<const frmAuswertung*>(form);
        return other && other != this && requestName(other->model_.request()) == name &&
               other->Tag.toInt() < Tag.toInt();
    });
    QString title = TranslateText(u"Auswertung"_s) + (Tag.isEmpty() ? QString() : u' ' + Tag);
    if (!name.isEmpty())
        title = isTaken ? name + u" ("_s + Tag + u')' : name;
    // Twice what the window system would take for a mark of its own.
    setWindowTitle(title.replace(u"[*]"_s, u"[*][*]"_s));
}

void frmAuswertung::refreshTitles() {
    showTitle();
    for (frmAuswertungPart* part : parts())
        part->nameForReaders();
    alignCaptions();
    showParts(&frmAuswertungPart::showAll);
}

void frmAuswertung::optionsApplied() {
    model_.optionsApplied();
    showParts(&frmAuswertungPart::showAll);
}

void frmAuswertung::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && SSTab_ && !showing_ && gBusy == 0) {
        alignCaptions();
        showParts(&frmAuswertungPart::showAll);
    }
}

void frmAuswertung::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (showing_ || AnalysisModel::running())
        return;
    table_->showFacts();
    chart_->fitExplanation();
}

void frmAuswertung::closeEvent(QCloseEvent* event) {
    if (RunGuard::closeAfterRun(*this))
        event->ignore();
    else
        event->accept();
}

std::array<frmAuswertungPart*, 7> frmAuswertung::parts() const {
    return {request_.get(), cases_.get(), instructions_.get(), comparison_.get(),
            values_.get(),  table_.get(), chart_.get()};
}

void frmAuswertung::showParts(void (frmAuswertungPart::*what)()) {
    if (showing_)
        return;
    const QScopedValueRollback<bool> showing(showing_, true);
    // In the middle of its own change, in which a field loses the focus, the tab bar would get out of step with the
    // page; what follows the change shows the tab.
    if (SSTab_->currentIndex() == shownTab_) {
        shownTab_ = model_.tab();
        SSTab_->setCurrentIndex(shownTab_);
    }
    for (frmAuswertungPart* part : parts())
        (part->*what)();
    showTitle();
    if (showsChart() != chartInView_) {
        chartInView_ = !chartInView_;
        desktop().panelsChanged();
    }
}

void frmAuswertung::act(const std::function<void()>& step) {
    if (showing_ || gBusy > 0)
        return;
    if (finishing_) {
        // A choice that was typed: the gesture that it is taken for shows it.
        trapped(step);
        return;
    }
    const GestureScope gesture;
    finishTyping();
    trapped(step);
    showParts(&frmAuswertungPart::show);
}

/// What was typed counts before anything else is done.
void frmAuswertung::finishTyping() {
    if (finishing_)
        return;
    const QScopedValueRollback<bool> finishing(finishing_, true);
    for (frmAuswertungPart* part : parts())
        part->finishTyping();
}

/// A table must not be of another choice than the one that can be read in the window.
bool frmAuswertung::isTypedOut() {
    for (const frmAuswertungPart* part : parts())
        if (const auto objection = part->objection()) {
            model_.changeTab(0);
            showParts(&frmAuswertungPart::show);
            objection->field->setFocus();
            ui::asker().messageBox({.text = objection->words, .icon = ui::Icon::Exclamation});
            return false;
        }
    return true;
}

void frmAuswertung::run(const std::function<void()>& step) {
    runGuarded(
        step, [this] { model_.stop(); }, {table_->cmdStop(), chart_->cmdStop(), SSTab_->tabBar()},
        [this] {
            // Weight and filter in view are those of the entry that was counted last: they are none of the selected
            // one's.
            const RunOutcome outcome = model_.facts().outcome;
            if (model_.request().mode == AnalysisMode::Comparison && outcome != RunOutcome::NotRun &&
                outcome != RunOutcome::Reused)
                comparison_->selectNone();
            resultChanged();
        });
}

void frmAuswertung::runBatch(const std::function<void()>& step) {
    runGuarded(
        step, [this] { instructions_->stop(); }, {instructions_->cmdStopBatch()}, [this] { model_.changeTab(0); });
}

/// @param stop, controls what RunGuard lets through meanwhile
/// @param after what follows before the window shows what came of it
void frmAuswertung::runGuarded(const std::function<void()>& step, const std::function<void()>& stop,
                               const std::vector<QWidget*>& controls, const std::function<void()>& after) {
    if (showing_ || finishing_ || gBusy > 0 || AnalysisModel::running())
        return;
    const GestureScope gesture;
    finishTyping();
    if (!isTypedOut())
        return;
    {
        const RunGuard::Scope guard(stop, controls);
        const BusyScope busy;
        trapped(step);
    }
    after();
    showParts(&frmAuswertungPart::show);
}

void frmAuswertung::resultChanged() {
    table_->resultChanged();
    chart_->resultChanged();
}

void frmAuswertung::changeTab(int tab) {
    if (showing_)
        return;
    shownTab_ = tab;
    if (AnalysisModel::running()) {
        // Its own run is stopped by this, and the window goes there; another one's is let alone.
        model_.changeTab(tab);
        return;
    }
    if (tab == 0)
        act([this] {
            model_.changeTab(0);
            resultChanged(); // what stands on their tabs only goes with them
        });
    else
        run([this, tab] { model_.changeTab(tab); });
    if (tab != model_.tab())
        showParts(&frmAuswertungPart::show);
}

void frmAuswertung::copy() {
    if (gBusy > 0)
        return;
    trapped([this] {
        const QString text = selectedText(focusWidget());
        if (model_.tab() == chartTab && text.isEmpty())
            return copyChart();
        if (model_.tab() != tableTab) {
            if (!text.isEmpty())
                ui::asker().setClipboard(text, QString());
            return;
        }
        if (!model_.result().hasTable())
            return;
        const TableResult& result = model_.result();
        ui::asker().setClipboard(result.lblLabel + u"\r\n"_s + clipText(result.mfgGrid),
                                 htmlTable(result.lblLabel, result.mfgGrid, provenanceLines(result)));
        tellOfCopy(u"Tabelle in Zwischenablage kopiert."_s);
    });
}

void frmAuswertung::showPosition() {
    act([this] {
        if (model_.showPosition())
            resultChanged();
    });
}

void frmAuswertung::order(TableLines lines) {
    act([this, lines] {
        if (model_.order(lines))
            resultChanged();
    });
}

void frmAuswertung::copyChart() {
    trapped([this] {
        if (gBusy == 0 && chart_->copy())
            tellOfCopy(u"Grafik in die Zwischenablage kopiert."_s);
    });
}

bool frmAuswertung::showsChart() const {
    return model_.tab() == chartTab && model_.chart().state() == WindowChart::State::Drawn &&
           !model_.stored().shownGraph();
}

void frmAuswertung::showChartOptions() {
    chart_->showOptions();
}

void frmAuswertung::copyCommand() {
    if (gBusy > 0 || !model_.result().facts)
        return;
    trapped([this] {
        const std::optional<QString> command = model_.command();
        if (!command) {
            ui::asker().messageBox(
                {.text = TranslateText(
                     u"Diese Tabelle gibt kein Befehl wieder: mehrere Werte sehen gleich aus und sind verschieden markiert, oder ein Eintrag des Vergleichs ist nicht mehr so im Katalog."_s),
                 .icon = ui::Icon::Exclamation});
            return;
        }
        ui::asker().setClipboard(*command, QString());
        tellOfCopy(model_.result().made
                       ? u"Befehl in Zwischenablage kopiert. Er gibt die Tabelle in ihrer eigenen Reihenfolge wieder."_s
                       : u"Befehl in Zwischenablage kopiert."_s);
    });
}

/// Says it unless the user has had enough of it.
void frmAuswertung::tellOfCopy(const QString& text) {
    if (!gOptions.TellOfCopies) {
        desktop().mention(TranslateText(text));
        return;
    }
    bool never = false;
    ui::asker().messageBox({.text = TranslateText(text),
                            .icon = ui::Icon::Information,
                            .check = TranslateText(u"Diese Meldung nicht mehr zeigen"_s),
                            .checked = &never});
    if (!never)
        return;
    gOptions.TellOfCopies = false;
    OptionToRegistry(&Options::TellOfCopies);
}

void frmAuswertung::saveTableAs() {
    if (gBusy > 0 || !model_.result().hasTable())
        return;
    trapped([this] {
        const std::optional<QString> path =
            ui::asker().chooseFile({.title = TranslateText(u"Tabelle speichern"_s),
                                    .filter = TranslateText(u"CSV-Dateien (*.csv)|*.csv|HTML-Seiten (*.html)|*.html"_s),
                                    .extension = u"csv"_s,
                                    .folder = QString(),
                                    .name = tableFileName(model_.result()) + u".csv"_s,
                                    .save = true});
        if (!path)
            return;
        const QString reason =
            saveTable(*path, model_.result().lblLabel, model_.result().mfgGrid, provenanceLines(model_.result()));
        if (!reason.isEmpty())
            ui::asker().messageBox({.text = TranslateText(u"Die Tabelle konnte nicht gespeichert werden:"_s) +
                                            u"\r\n"_s + *path + u"\r\n"_s + reason,
                                    .icon = ui::Icon::Exclamation});
    });
}
