#include "analysis/frmAuswertung.h"
#include "app/frmAbout.h"
#include "app/frmMain.h"
#include "app/globals.h"
#include "app/start.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "config/frmOptions.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "editing/frmDocument.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"
#include "widgets/ChildArea.h"
#include "widgets/StandardTexts.h"

#include <QMenu>
#include <QScopeGuard>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

using namespace Qt::StringLiterals;

void frmMain::connectCommands() {
    commands_[u"mnFileOpen"_s] = [this] { OpenDB(); };
    commands_[u"mnFileClose"_s] = [this] { mnFileClose_Click(); };
    for (int i = 1; i <= MainMenu::recentFiles; ++i)
        commands_[arrayName(u"mnuFileMRU"_s, i)] = [this, i] {
            const QString file = recentFiles_.value(i - 1);
            if (!file.isEmpty() && !refuses(file) && closeCurrentDatabase())
                openFile(file);
        };
    commands_[u"mnuFileImport"_s] = [this] { importSurvey({}); };
    commands_[u"sample"_s] = [this] { openSample(); };
    commands_[u"mnuFileExit"_s] = [this] { leave(); };
    for (int view = 1; view <= MainMenu::views; ++view)
        commands_[arrayName(u"mnuViewExplorers"_s, view)] = [this, view] { mnuViewExplorers_Click(view); };
    commands_[u"mnuAuswertungsansicht"_s] = [this] { mnuAuswertungsansicht_Click(); };
    commands_[u"mnuViewGraphicOptions"_s] = [this] {
        if (auto* analysis = dynamic_cast<frmAuswertung*>(activeForm()))
            analysis->showChartOptions();
    };
    commands_[u"mnu1VarWindow"_s] = [this] { mnu1VarWindow_Click(); };
    commands_[u"mnu2VarWindow"_s] = [this] { mnu2VarWindow_Click(); };
    commands_[u"mnuVVEL"_s] = [this] {
        if (frmExplorer* explorer = activeExplorer())
            explorer->switchPanelLanguage();
    };
    commands_[u"mnuEnglishLanguage"_s] = [this] { flipContents(); };
    commands_[u"mnuShowCards"_s] = [this] { flipShowCards(); };
    commands_[u"mnuChangeFont"_s] = [this] { ChangeFont(); };
    // Keys that a toolbar may send without having a button here.
    commands_[u"FO"_s] = commands_[u"mnuChangeFont"_s];
    commands_[u"VVEL"_s] = commands_[u"mnuVVEL"_s];
    commands_[u"mnLngG"_s] = [this] { switchLanguage(0); };
    commands_[u"mnLngE"_s] = [this] { switchLanguage(1); };
    addWindowCommands();
    addEditingCommands();
    addSearchCommands();
    addDocumentCommands();
    addPrintingCommands();
}

void frmMain::addWindowCommands() {
    commands_[u"mnuViewToolBar"_s] = [this] { tbToolBar_->setVisible(tbToolBar_->isHidden()); };
    commands_[u"mnuViewStatusBar"_s] = [this] { statusBar()->setVisible(statusBar()->isHidden()); };
    commands_[u"mnuViewOptions"_s] = [this] { mnuViewOptions_Click(); };
    commands_[u"mnuFileClose"_s] = [this] { area_->hideCurrent(); };
    commands_[u"mnuWindowCascade"_s] = [this] { area_->cascade(); };
    commands_[u"mnuWindowTileVertical"_s] = [this] { area_->tileVertically(); };
    commands_[u"mnuWindowTileHorizontal"_s] = [this] { area_->tileHorizontally(); };
    commands_[u"mnuWindowArrangeIcons"_s] = [this] { area_->arrangeIcons(); };
    commands_[u"mnuWindowNext"_s] = [this] { area_->activateNext(false); };
    commands_[u"mnuWindowPrevious"_s] = [this] { area_->activateNext(true); };
    commands_[u"mnuHelpContents"_s] = [this] { mnuHelpContents_Click(); };
    commands_[u"mnuHelpAbout"_s] = [this] { frmAbout::showInfo(this); };
}

void frmMain::perform(const QString& name) {
    const int button = toolbar_.index(name);
    const QString command = button > 0 ? toolbar_.buttons()[static_cast<size_t>(button) - 1].command : name;
    const MainState now = state();
    const GestureScope gesture;
    if (!now.busy || MainMenu::enabled(command, now))
        if (const auto found = commands_.constFind(command); found != commands_.constEnd())
            trapped(*found);
    // Also after a refusal: a check mark that the click has set goes back.
    applyState();
}

void frmMain::OpenDefDB() {
    const auto whenDone = qScopeGuard(Main::reopened);
    const qint16 opened = Main::OpenDefDB();
    if (gOptions.DatabaseName.isEmpty() || gOptions.DatabasePath.isEmpty())
        return;
    buildToolbar();
    afterOpening(opened);
}

/// The view that the catalogue wants to see at first, and the state of the window.
void frmMain::afterOpening(qint16 opened) {
    if (opened != 1) {
        InitFormState(0);
        return;
    }
    // A view that fails to open leaves the catalogue open all the same.
    if (gCatalogueOptions.OpenFrmExplorerAtStart > 0)
        Main::openingStep([] { frmExplorer::OpenExplorerView(gCatalogueOptions.OpenFrmExplorerAtStart); });
    InitFormState(1);
}

/// Asks, and closes what is open. @return false if the user wants to keep it
bool frmMain::closeCurrentDatabase() {
    if (gDatabase.State() == 1) {
        const QString question = TranslateText(u"Wollen Sie die aktuelle Datenbank schließen ?"_s);
        if (ui::asker().messageBox({question, ApplicationInfo::title, ui::Icon::Question, ui::Buttons::YesNo,
                                    ui::Answer::No}) != ui::Answer::Yes)
            return false;
    }
    CloseForms();
    mdDataBase::CloseDataBase();
    return true;
}

void frmMain::OpenDB() {
    // The next catalogue is looked for where the one before was.
    const QStringList files = {gDatabase.State() == 1 ? gDatabase.Database() : QString(), recentFiles_.value(0),
                               Paths::join(gOptions.DatabasePath, gOptions.DatabaseName)};
    const auto known =
        std::ranges::find_if(files, [](const QString& file) { return !Paths::folderOf(file).isEmpty(); });
    if (!closeCurrentDatabase())
        return;
    const QString kind = TranslateText(u"VDX/KLOR-Datenbank Dateien"_s);
    ui::FileChoice choice;
    choice.title = TranslateText(u"Datenbankdatei auswählen"_s);
    choice.filter = kind + u" (*.mdb)|*.mdb|"_s + kind + u" (*.klor)|*.klor"_s;
    choice.extension = u"mdb"_s;
    choice.folder = known == files.end() ? QString() : Paths::folderOf(*known);
    const std::optional<QString> file = ui::asker().chooseFile(choice);
    if (file && !file->isEmpty() && !refuses(*file))
        openFile(*file);
    else
        InitFormState(gDatabase.State());
}

void frmMain::openFile(const QString& file) {
    // What the file before could not do says nothing of this one.
    GestureScope::startAnew();
    const qint16 opened = mdDataBase::OpenQXDatabase(file);
    buildToolbar();
    afterOpening(opened);
    if (opened != 1)
        return;
    if (SaveRcFile(file))
        Main::rememberCatalogue(file);
}

void frmMain::mnFileClose_Click() {
    if (closeCurrentDatabase())
        InitFormState(0);
}

void frmMain::leave() {
    if (!state().busy)
        mdDataBase::CloseDataBase();
    InitFormState(gDatabase.State());
    close();
}

void frmMain::switchLanguage(qint16 language) {
    mdLanguage::SetLanguage(language);
    StandardTexts::followLanguage();
    {
        const BusyScope busy;
        mdLanguage::RefreshForms({Form::open().begin(), Form::open().end()}, Form::isOpen);
    }
    buildToolbar();
    InitFormState(gDatabase.State());
}

void frmMain::flipContents() {
    gOptions.EnglishLanguage = !gOptions.EnglishLanguage;
}

void frmMain::flipShowCards() {
    gOptions.ShowCards = !gOptions.ShowCards;
    for (Form* form : Form::open())
        if (auto* explorer = dynamic_cast<frmExplorer*>(form))
            explorer->Form_Resize();
}

void frmMain::showPanels(const QString& command) {
    bool& pressed = command == u"mnu1VarWindow" ? pressedV_ : pressedVV_;
    pressed = !pressed;
    if (frmExplorer* explorer = activeExplorer())
        explorer->setPanels(MainMenu::panelsAfter(command, explorer->model().state.lVarWindow));
    applyState();
}

void frmMain::mnuViewExplorers_Click(int view) {
    if (view >= 1 && view <= gCatalogueOptions.NumberOfFrmExplorers)
        frmExplorer::OpenExplorerView(view);
}

void frmMain::mnuAuswertungsansicht_Click() {
    if (gOptions.DataPath.isEmpty()) {
        ui::asker().messageBox({TranslateText(u"Geben Sie in den Optionen den Pfad der Daten an."_s),
                                {},
                                ui::Icon::Information,
                                ui::Buttons::Ok});
        // An import puts the cases beside the catalogue, so that its folder is the likeliest.
        frmOptions::showOptionsAt(this, &Options::DataPath, Paths::native(Paths::folderOf(gDatabase.Database())));
        applyState();
        if (gOptions.DataPath.isEmpty())
            return;
    }
    const BusyScope busy;
    frmAuswertung::openFrom(activeExplorer());
}

void frmMain::mnuViewOptions_Click() {
    frmOptions::showOptions(this);
}

void frmMain::ChangeFont() {
    if (frmExplorer* explorer = activeExplorer())
        explorer->ChangeFont();
    else if (auto* document = dynamic_cast<frmDocument*>(activeForm()))
        document->ChangeFont();
}

QString frmMain::helpFile() const {
    const QString pages = Paths::join(Paths::applicationFolder(), said(u"Varidex-de.html"_s, u"Varidex-en.html"_s));
    return Paths::exists(pages) ? pages : helpFile_;
}

void frmMain::mnuHelpContents_Click() {
    const QString file = helpFile();
    if (file.isEmpty()) {
        ui::asker().messageBox(
            {TranslateText(
                 u"Hilfeinhalt konnte nicht angezeigt werden. Dieser Anwendung ist keine Hilfedatei zugeordnet."_s),
             {},
             ui::Icon::Information,
             ui::Buttons::Ok});
        return;
    }
    const bool there = Paths::exists(file);
    if (there && ui::asker().openFile(Paths::onDisk(file)))
        return;
    ui::Box box{TranslateText(u"Hilfeinhalt konnte nicht angezeigt werden. Datei nicht gefunden."_s) + u" ("_s + file +
                u')'};
    if (there)
        box.details = TranslateText(u"Kein Programm ist dafür eingerichtet, die Datei zu öffnen:"_s) + u' ' + file;
    ui::asker().messageBox(box);
}

void frmMain::listWindows() {
    QMenu* menu = menus_[u"mnuWindow"_s];
    for (QAction* action : menu->actions())
        if (action->objectName().startsWith(u"mnuWindowList("))
            delete action;
    int number = 0;
    for (Form* form : Form::open()) {
        if (form == this || !form->widget().parentWidget() || !form->widget().parentWidget()->inherits("QMdiSubWindow"))
            continue;
        ++number;
        const QString hidden =
            ChildArea::isHiddenChild(form->widget()) ? u" ("_s + TranslateText(u"ausgeblendet"_s) + u')' : QString();
        QAction* action = menu->addAction((number <= 9 ? u'&' + QString::number(number) + u' ' : QString()) +
                                          form->widget().windowTitle().replace(u'&', u"&&"_s) + hidden);
        action->setObjectName(arrayName(u"mnuWindowList"_s, number));
        action->setProperty("CtrlTyp", QString());
        action->setCheckable(true);
        action->setChecked(form == activeForm());
        QObject::connect(action, &QAction::triggered, &form->widget(), [this, form] { activate(*form); });
    }
}
