#include "analysis/AnalysisModel.h"
#include "analysis/frmAuswertung.h"
#include "app/frmMain.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/CopyCommands.h"
#include "editing/Entries.h"
#include "editing/History.h"
#include "editing/frmDatensatz.h"
#include "editing/frmDocument.h"
#include "editing/frmFragebogen.h"
#include "explorer/frmExplorer.h"
#include "platform/ui/Asker.h"
#include "printing/frmPreview.h"
#include "search/QuickSearch.h"
#include "search/frmFind.h"
#include "widgets/textFields.h"

#include <QAction>
#include <QKeyEvent>
#include <QRegularExpression>
#include <algorithm>

// What the menus do to the catalogue and find in it, and on what of the active window that depends.

using namespace Qt::StringLiterals;

MainState frmMain::state() const {
    MainState now;
    now.catalogueOpen = stateOpen_;
    const dao::DatabasePtr catalogue = gDatabase.CurrentDatabase();
    now.readOnly = stateOpen_ && catalogue && catalogue->readOnly();
    now.editStudies = gOptions.EditStudiesMode;
    now.canUndo = history().canUndo();
    now.canRedo = history().canRedo();
    now.busy = gBusy > 0 || AnalysisModel::running();
    now.englishContents = gOptions.EnglishLanguage;
    now.language = gLanguage;
    const Form* form = activeForm();
    if (const frmExplorer* explorer = activeExplorer()) {
        stateOfExplorer(now, *explorer);
    } else if (const auto* analysis = dynamic_cast<const frmAuswertung*>(form)) {
        now.active = MainState::Active::Analysis;
        now.chart = analysis->showsChart();
        now.tableOrder = analysis->canOrder();
    } else if (form) {
        now.active = dynamic_cast<const frmDocument*>(form)  ? MainState::Active::Document
                     : dynamic_cast<const frmPreview*>(form) ? MainState::Active::Preview
                                                             : MainState::Active::Other;
    }
    return now;
}

void frmMain::stateOfExplorer(MainState& now, const frmExplorer& explorer) const {
    using Place = frmExplorer::Place;
    using Focus = MainState::Focus;
    now.active = MainState::Active::Explorer;
    now.panels = explorer.model().state.lVarWindow;
    now.panelEnglish = explorer.model().state.bVarWindowForEnglishLanguage;
    now.studies = explorer.model().state.bIsStudy;
    now.whyNotHere = whyNotHere(explorer.model());
    if (isTextField(explorer.focusWidget()))
        now.focus = Focus::Text;
    else if (explorer.place() != Place::Elsewhere)
        now.focus = explorer.place() == Place::Tree ? Focus::Tree : Focus::List;
}

/// A step of the history may change what no window has in view, so what was done is said.
void frmMain::takeStep(const QString& entry, bool (History::*step)()) {
    QString done = actions_[entry]->text();
    done.replace(QRegularExpression(u"&(.)"_s), u"\\1"_s); // its mnemonic, and "&&" for "&"
    if ((history().*step)())
        mention(done);
}

/// The entries of the history name the step that they take back or do again.
void frmMain::showHistory() {
    for (const auto& [name, step] :
         {std::pair{u"mnuEditUndo"_s, history().undoName()}, std::pair{u"mnuEditRedo"_s, history().redoName()}}) {
        const auto entry = std::ranges::find(MainMenu::entries(), name, &MenuEntry::name);
        actions_[name]->setText(MainMenu::historyCaption(TranslateText(entry->caption), step));
    }
}

/// An operation on what is selected in the explorer in front, if one is.
void frmMain::onExplorer(const std::function<void(frmExplorer&)>& operation) {
    if (frmExplorer* explorer = activeExplorer())
        operation(*explorer);
}

void frmMain::addEditingCommands() {
    history().onChange = [this] { applyState(); };
    commands_[u"mnuEditUndo"_s] = [this] { takeStep(u"mnuEditUndo"_s, &History::undo); };
    commands_[u"mnuEditRedo"_s] = [this] { takeStep(u"mnuEditRedo"_s, &History::redo); };
    const std::pair<QString, bool (*)(ExplorerModel&)> onEntry[] = {{u"mnuNeueKategorie"_s, newEntry},
                                                                    {u"mnuKategorieUmbenennen"_s, renameEntry},
                                                                    {u"mnuBeschreibungBearbeiten"_s, editDescription}};
    for (const auto& [name, operation] : onEntry)
        commands_[name] = [this, operation = operation] {
            onExplorer([&](frmExplorer& explorer) { operation(explorer.model()); });
        };
    commands_[u"mnuEditShowPosition"_s] = [this] {
        if (auto* analysis = dynamic_cast<frmAuswertung*>(activeForm()))
            analysis->showPosition();
        else
            onExplorer([](frmExplorer& explorer) { showPosition(explorer.model()); });
    };
    commands_[u"mnuLöschen"_s] = [this] { onExplorer(deleteSelected); };
    const auto nothing = [] {};
    commands_[u"mnuEditCut"_s] = nothing;
    commands_[u"mnuEditPaste"_s] = nothing;
    addTransferCommands();
    commands_[u"mnuEditCopy"_s] = [this] {
        if (auto* analysis = dynamic_cast<frmAuswertung*>(activeForm()))
            analysis->copy();
        else if (state().focus == MainState::Focus::Tree)
            onExplorer([](frmExplorer& explorer) { rememberSource(explorer.model()); });
        else if (const QString text = selectedText(activeForm() ? activeForm()->widget().focusWidget() : nullptr);
                 !text.isEmpty())
            ui::asker().setClipboard(text, QString());
    };
}

/// What is deleted goes by where the keyboard is.
void frmMain::deleteSelected(frmExplorer& explorer) {
    if (explorer.place() == frmExplorer::Place::Tree)
        deleteEntry(explorer.model());
    else if (explorer.place() == frmExplorer::Place::List)
        deleteRows(explorer.model(), explorer.selectedRows());
}

/// The entry or the rows, by where the keyboard is, go to one that is chosen from a tree.
void frmMain::transferSelected(frmExplorer& explorer, bool move) {
    if (explorer.place() == frmExplorer::Place::Tree)
        move ? moveTo(explorer.model()) : copyTo(explorer.model());
    else if (const std::vector<int> rows = explorer.selectedRows(); explorer.place() == frmExplorer::Place::List)
        move ? moveTo(explorer.model(), rows) : copyTo(explorer.model(), rows);
}

void frmMain::addTransferCommands() {
    commands_[u"mnuEditCopyTo"_s] = [this] {
        onExplorer([](frmExplorer& explorer) { transferSelected(explorer, false); });
    };
    commands_[u"mnuEditMoveTo"_s] = [this] {
        onExplorer([](frmExplorer& explorer) { transferSelected(explorer, true); });
    };
    commands_[u"mnuEditCopyHere"_s] = [this] { onExplorer([](frmExplorer& explorer) { copyHere(explorer.model()); }); };
    commands_[u"mnuEditMoveHere"_s] = [this] { onExplorer([](frmExplorer& explorer) { moveHere(explorer.model()); }); };
}

void frmMain::addSearchCommands() {
    commands_[u"mnuErweiterteSuche"_s] = [] { frmFind::showFind(); };
    const std::pair<QString, decltype(&QuickSearch::mnuSuchen_Click)> quick[] = {
        {u"mnuSuchen"_s, QuickSearch::mnuSuchen_Click}, {u"mnuWeitersuchen"_s, QuickSearch::mnuWeitersuchen_Click}};
    for (const auto& [name, search] : quick)
        commands_[name] = [this, search = search] {
            onExplorer([&](frmExplorer& explorer) {
                const bool list = explorer.place() == frmExplorer::Place::List;
                search(explorer.model(), list ? QuickSearch::In::List : QuickSearch::In::Tree, explorer.selectedRows());
            });
        };
}

void frmMain::addDocumentCommands() {
    commands_[u"mnuDBBeschreibung"_s] = [this] { mnuViewDescriptions_Click(0); };
    commands_[u"mnuFragebogenansicht"_s] = [this] { frmFragebogen::showPicker(this, activeExplorer()); };
    commands_[u"mnuSPSSAnsicht"_s] = [this] { frmDatensatz::showPicker(this, activeExplorer()); };
    for (int view = 1; view <= MainMenu::views; ++view)
        commands_[arrayName(u"mnuViewDescriptions"_s, view)] = [this, view] { mnuViewDescriptions_Click(view); };
}

/// @param index 0 for the description of the catalogue
void frmMain::mnuViewDescriptions_Click(int index) {
    if (index >= 0 && index <= gCatalogueOptions.NumberOfFrmExplorers)
        frmDocument::openView(index);
}

/// The shortcut of an entry that is off comes here as a plain key. The one that deletes gets its answer even so; others
/// are told what they miss.
void frmMain::keyPressEvent(QKeyEvent* event) {
    using Focus = MainState::Focus;
    const QKeySequence keys(event->keyCombination());
    const MainState now = state();
    const auto off = std::ranges::find_if(MainMenu::entries(), [&](const MenuEntry& entry) {
        const QAction* action = actions_.value(entry.name);
        return action && !action->isEnabled() && action->shortcuts().contains(keys);
    });
    if (off == MainMenu::entries().end() || now.focus == Focus::Text)
        return QMainWindow::keyPressEvent(event);
    const QString reason = MainMenu::reasonOff(off->name, now);
    if (off->name == u"mnuLöschen" && now.studies && !now.readOnly && now.focus != Focus::Elsewhere)
        perform(off->name);
    else if (!reason.isEmpty())
        mention(TranslateText(reason));
}
