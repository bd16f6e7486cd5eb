#include "analysis/frmAuswertung.h"

#include "analysis/frmAuswertung_widgets.h"
#include "analysis/frmDescriptives.h"
#include "analysis/frmNewCalculation.h"
#include "analysis/request/preselection.h"
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
#include "widgets/Icons.h"
#include "widgets/RunGuard.h"
#include "widgets/notBuilt.h"
#include "widgets/radioGroup.h"

#include <QCloseEvent>
#include <QPlainTextEdit>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Of gWindowSerials.
constexpr size_t analysisSerial = 3;

QString selectedText(const QWidget* widget) {
    // An editable list has the focus in place of its line.
    if (const auto* list = qobject_cast<const QComboBox*>(widget))
        return selectedText(list->lineEdit());
    if (const auto* line = qobject_cast<const QLineEdit*>(widget))
        return line->selectedText();
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->selectedText();
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(widget))
        return text->textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n');
    return {};
}

} // namespace

frmAuswertung* frmAuswertung::openFrom(const frmExplorer* explorer) {
    auto* window = new frmAuswertung;
    window->Tag = QString::number(++gWindowSerials[analysisSerial]);
    window->refreshTitles();
    if (explorer)
        trapped([&] { window->preselect(*explorer); });
    window->showModel();
    desktop().adopt(*window);
    return window;
}

frmAuswertung::frmAuswertung() : Form(*this, u"frmAuswertung"_s), w_(std::make_unique<Widgets>()) {
    setWindowTitle(u"Auswertung"_s);
    setWindowIcon(Icons::get(u"analysis"_s));
    build();
    RunHooks hooks;
    hooks.textWidth = [this](const QString& text) { return w_->mfgGrid->textWidth(text); };
    hooks.askMissing = [this](const QString& sMissing) {
        frmNewCalculation dialog(sMissing, this);
        dialog.exec();
        return dialog.answer();
    };
    model_.setHooks(std::move(hooks));
    model_.onRun([this] { showRunning(); });
    model_.open();
    comparison().RefreshSavedComparisons();
    connectRequest();
    connectComparison();
    connectTable();
    mdLanguage::SetCtrlProps(*this);
    refreshTitles();
}

frmAuswertung::~frmAuswertung() {
    // The focus is to leave the controls while what hears of it is still there; what was being typed counts no more.
    filterTyped_ = false;
    hide();
}

/// The rows that are selected; in a view for comparisons also all that the selected entry of the tree holds.
void frmAuswertung::preselect(const frmExplorer& explorer) {
    const ExplorerModel& shown = explorer.model();
    const bool trend = gViews.at(explorer.viewNumber(), ViewTable::CompAnalysis) == u"1";
    const bool ofTree = trend && explorer.place() == frmExplorer::Place::Tree;
    const bool ofList = explorer.place() == frmExplorer::Place::List;
    std::vector<SelectedVariable> selection;
    const auto add = [&](const VariableRow& row) { selection.push_back({row.cell(1), row.Text}); };
    if (ofTree)
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

void frmAuswertung::refreshTitles() {
    setWindowTitle(Tag.isEmpty() ? TranslateText(u"Auswertung"_s) : TranslateText(u"Auswertung"_s) + u' ' + Tag);
    nameForReaders();
    alignCaptions();
    showModel();
}

void frmAuswertung::optionsApplied() {
    model_.optionsApplied();
    showModel();
}

void frmAuswertung::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange && w_ && w_->SSTab && !showing_ && gBusy == 0) {
        alignCaptions();
        showModel();
    }
}

void frmAuswertung::closeEvent(QCloseEvent* event) {
    if (RunGuard::closeAfterRun(*this))
        event->ignore();
    else
        event->accept();
}

/// A gesture that changes the request: the model decides, the window shows what came of it.
void frmAuswertung::act(const std::function<void()>& step) {
    if (showing_ || gBusy > 0)
        return;
    const GestureScope gesture;
    finishFilter();
    trapped(step);
    showModel();
}

/// The text that was typed counts for the selected entry of a comparison once its editing is over, whichever way.
void frmAuswertung::finishFilter() {
    if (std::exchange(filterTyped_, false) && model_.request().optFilter == FilterKind::FilterUser)
        trapped([this] { comparison().ApplyComparisonEntryChange(true); });
}

/// A gesture that may compute. Nothing else may happen meanwhile but what stops it.
void frmAuswertung::run(const std::function<void()>& step) {
    if (showing_ || gBusy > 0 || AnalysisModel::running())
        return;
    const GestureScope gesture;
    finishFilter();
    {
        const RunGuard::Scope guard([this] { model_.stop(); }, {w_->cmdStop, w_->SSTab->tabBar()});
        const BusyScope busy;
        trapped(step);
    }
    // Weight and filter in view are those of the entry that was counted last: they are none of the selected one's.
    const RunOutcome outcome = model_.facts().outcome;
    if (model_.request().mode == AnalysisMode::Comparison && outcome != RunOutcome::NotRun &&
        outcome != RunOutcome::Reused)
        comparison().select({});
    showModel();
}

/// While the numbers are in the making, those of before don't pass for them.
void frmAuswertung::showRunning() {
    w_->lblState->setText(TranslateText(u"Die Tabelle wird berechnet..."_s));
    w_->cmdComputeAnew->hide();
    w_->cmdStop->show();
    w_->fraState->show();
    w_->mfgGrid->updateTable({});
    w_->lblLabel->clear();
    w_->lblFacts->clear();
}

void frmAuswertung::changeTab(int tab) {
    if (showing_)
        return;
    if (AnalysisModel::running()) {
        // Its own run is stopped by this, and the window goes there; another one's is let alone.
        model_.changeTab(tab);
        return;
    }
    if (tab == 0)
        act([this] { model_.changeTab(0); });
    else
        run([this, tab] { model_.changeTab(tab); });
    if (tab != model_.tab())
        showModel();
}

void frmAuswertung::chooseStudy(int index) {
    act([&] {
        const std::vector<BoundPicker> studies = model_.edit().studies();
        if (index >= 0 && index < static_cast<int>(studies.size()))
            model_.edit().StudyClick(studies[static_cast<size_t>(index)].value);
    });
}

void frmAuswertung::connectRequest() {
    connect(w_->SSTab, &QTabWidget::currentChanged, this, [this](int tab) { changeTab(tab); });
    for (ChoicePicker* study : {w_->dbcStudy, w_->dbcStudy_1})
        study->onChosen = [this](int index) { chooseStudy(index); };
    const auto nameAt = [this](int index) { return model_.edit().variables().at(static_cast<size_t>(index)).name; };
    for (ChoicePicker* first : {w_->dbcVariable, w_->dbcVariable_1, w_->dbcVariableUni})
        first->onChosen = [this, nameAt](int index) { act([&] { model_.edit().chooseVariable(nameAt(index)); }); };
    for (ChoicePicker* second : {w_->dbcVariable2, w_->dbcVariable_2, w_->dbcVariable2Uni})
        second->onChosen = [this, nameAt](int index) { act([&] { model_.edit().chooseVariable2(nameAt(index)); }); };
    for (ChoicePicker* weight : {w_->dbcVarGewicht, w_->dbcVarGewicht_1, w_->dbcVarGewicht_1Uni})
        weight->onChosen = [this, nameAt](int index) {
            act([&] { model_.edit().chooseWeight(WeightKind::WeightUser, nameAt(index)); });
        };
    connectChoices();
    connectFilter();
}

void frmAuswertung::connectChoices() {
    const auto mode = [this](QRadioButton* button, AnalysisMode chosen) {
        connect(button, &QRadioButton::clicked, this, [=, this] {
            act([&] {
                model_.edit().chooseMode(chosen);
                if (chosen == AnalysisMode::Comparison)
                    comparison().RefreshSavedComparisons();
            });
        });
    };
    mode(w_->Option1, AnalysisMode::Frequency);
    mode(w_->Option2, AnalysisMode::Crosstab);
    mode(w_->Option4, AnalysisMode::Descriptives);
    mode(w_->Option5, AnalysisMode::Comparison);
    for (int i = 0; i < 4; ++i)
        connect(w_->Option3[static_cast<size_t>(i)], &QRadioButton::clicked, this, [this, i] {
            act([&] {
                if (i == static_cast<int>(WeightKind::WeightUser))
                    model_.edit().chooseUserWeight();
                else
                    model_.edit().chooseWeight(static_cast<WeightKind>(i));
            });
        });
    stopAtChosen(std::array{w_->Option1, w_->Option2, w_->Option4, w_->Option5});
    stopAtChosen(w_->Option3);
    stopAtChosen(w_->optFilter);
    w_->lblWeightUser->installEventFilter(this);
    w_->optFilter[static_cast<size_t>(FilterKind::FilterUser)]->installEventFilter(this);
    const auto check = [this](QCheckBox* box, auto&& take) {
        connect(box, &QCheckBox::clicked, this, [=, this](bool on) { act([&] { take(on); }); });
    };
    check(w_->chkDescGroup, [this](bool on) { changeMode([on](AnalysisRequest& r) { r.chkDescGroup = on; }); });
    check(w_->chkFlipXtab, [this](bool on) { changeMode([on](AnalysisRequest& r) { r.chkFlipXtab = on; }); });
    check(w_->chkVaridexCreation, [this](bool on) { changeMode([on](AnalysisRequest& r) { r.bCreationMode = on; }); });
    connect(w_->cmdDescriptives, &QPushButton::clicked, this, [this] { cmdDescriptives_Click(); });
}

/// The caption of the fourth weight stands for the button beside it, and its letter goes on to the picker. Who chooses
/// a filter of his own by letter or click goes on to its line; arrow keys stay in the group.
bool frmAuswertung::eventFilter(QObject* watched, QEvent* event) {
    const bool released = event->type() == QEvent::MouseButtonRelease, byLetter = event->type() == QEvent::Shortcut;
    QRadioButton* ownFilter = w_->optFilter[static_cast<size_t>(FilterKind::FilterUser)];
    if (watched == w_->lblWeightUser && (released || byLetter)) {
        w_->Option3[static_cast<size_t>(WeightKind::WeightUser)]->click();
        if (byLetter)
            w_->dbcVarGewicht_1Uni->setFocus(Qt::ShortcutFocusReason);
        return true;
    }
    if (watched == ownFilter && byLetter) {
        ownFilter->click();
        w_->txtFilter->setFocus();
        return true;
    }
    if (watched == ownFilter && released && ownFilter->isDown())
        QMetaObject::invokeMethod(
            w_->txtFilter, [this] { w_->txtFilter->setFocus(); }, Qt::QueuedConnection);
    return QWidget::eventFilter(watched, event);
}

void frmAuswertung::connectFilter() {
    for (int i = 0; i < 3; ++i)
        connect(w_->optFilter[static_cast<size_t>(i)], &QRadioButton::clicked, this, [this, i] {
            act([&] {
                if (model_.edit().chooseFilter(static_cast<FilterKind>(i)) &&
                    i == static_cast<int>(FilterKind::FilterParts))
                    comparison().ApplyComparisonEntryChange(true);
            });
        });
    w_->dbcParts->onChosen = [this](int index) {
        act([&] {
            if (model_.edit().choosePart(model_.edit().parts().at(static_cast<size_t>(index)).value))
                comparison().ApplyComparisonEntryChange(true);
        });
    };
    w_->dbcParts->onKey = [this](int key) {
        bool taken = false;
        // The platform's Delete is the key with code 46.
        act([&] { taken = key == Qt::Key_Delete && model_.edit().dbcParts_KeyDown(46); });
        return taken;
    };
    connect(w_->txtFilter, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (showing_ || gBusy > 0)
            return;
        filterTyped_ = true;
        trapped([&] { model_.edit().typeFilterText(text); });
        showFilterCheck();
    });
    connect(w_->txtFilter, &QLineEdit::editingFinished, this, [this] {
        if (filterTyped_)
            act([] {});
    });
}

void frmAuswertung::changeMode(const std::function<void(AnalysisRequest&)>& step) {
    model_.edit().change(RequestPart::Mode, step);
}

/// What stands below the table, on the screen and in a file.
QStringList frmAuswertung::whatItStandsOn() const {
    const TableResult& result = model_.result();
    return result.facts ? standsOn(*result.facts, result.marks) + result.notes() : QStringList();
}

void frmAuswertung::cmdDescriptives_Click() {
    act([this] { frmDescriptives(&model_.edit(), this).exec(); });
}

void frmAuswertung::connectTable() {
    w_->mfgGrid->onMark = [this](const GridSelection& selection) {
        ClickEffect effect = ClickEffect::None;
        run([&] { effect = model_.mfgGrid_Click(selection); });
        marked(effect);
    };
    w_->mfgGrid->onHeader = [this] { run([this] { model_.headerClick(); }); };
    connect(w_->cbValues, &QComboBox::activated, this, [this](int view) { act([&] { model_.chooseValues(view); }); });
    connect(w_->cmdSetMissing, &QPushButton::clicked, this, [this] {
        ClickEffect effect = ClickEffect::None;
        run([&] { effect = model_.cmdSetMissing(w_->mfgGrid->selection()); });
        marked(effect);
    });
    connect(w_->cmdCalculate, &QPushButton::clicked, this, [this] { run([this] { model_.cmdCalculate(); }); });
    connect(w_->cmdComputeAnew, &QPushButton::clicked, this, [this] { run([this] { model_.computeAnew(); }); });
    connect(w_->cmdStop, &QPushButton::clicked, this, [this] { model_.stop(); });
    connect(w_->cmdCopyTable, &QPushButton::clicked, this, [this] { copy(); });
    connect(w_->cmdSaveTableAs, &QPushButton::clicked, this, [this] { saveTableAs(); });
}

/// The user goes on marking where the hand was.
void frmAuswertung::marked(ClickEffect effect) {
    if (effect == ClickEffect::Marked)
        w_->mfgGrid->setFocus();
}

void frmAuswertung::copy() {
    if (gBusy > 0)
        return;
    trapped([this] {
        if (model_.tab() != 1) {
            const QString text = selectedText(focusWidget());
            if (!text.isEmpty())
                ui::asker().setClipboard(text, QString());
            return;
        }
        if (!model_.result().facts)
            return;
        const ResultTable& table = model_.result().mfgGrid;
        ui::asker().setClipboard(model_.result().lblLabel + u"\r\n"_s + clipText(table),
                                 htmlTable(model_.result().lblLabel, table));
        ui::asker().messageBox(
            {.text = TranslateText(u"Tabelle in Zwischenablage kopiert."_s), .icon = ui::Icon::Information});
    });
}

void frmAuswertung::saveTableAs() {
    if (gBusy > 0 || !model_.result().facts)
        return;
    trapped([this] {
        const std::optional<QString> path =
            ui::asker().chooseFile({.title = TranslateText(u"Tabelle speichern"_s),
                                    .filter = TranslateText(u"CSV-Dateien (*.csv)|*.csv|HTML-Seiten (*.html)|*.html"_s),
                                    .extension = u"csv"_s,
                                    .folder = QString(),
                                    .name = tableFileName(model_.result().facts->request) + u".csv"_s,
                                    .save = true});
        if (!path)
            return;
        const QString reason = saveTable(*path, model_.result().lblLabel, model_.result().mfgGrid, whatItStandsOn());
        if (!reason.isEmpty())
            ui::asker().messageBox({.text = TranslateText(u"Die Tabelle konnte nicht gespeichert werden:"_s) +
                                            u"\r\n"_s + *path + u"\r\n"_s + reason,
                                    .icon = ui::Icon::Exclamation});
    });
}
