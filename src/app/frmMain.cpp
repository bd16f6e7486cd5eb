#include "app/frmMain.h"
#include "analysis/frmAuswertung.h"

#include "analysis/AnalysisModel.h"
#include "app/frmStatus.h"
#include "app/globals.h"
#include "app/start.h"
#include "app/windowPlace.h"
#include "catalogue/CDaoDatabase.h"
#include "config/CProfile.h"
#include "config/Options.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "editing/Gesture.h"
#include "editing/History.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"
#include "widgets/ChildArea.h"
#include "widgets/ElidedLabel.h"
#include "widgets/Icons.h"
#include "widgets/RunGuard.h"
#include "widgets/textFields.h"
#include "widgets/toolTips.h"
#include "widgets/twips.h"

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTime>
#include <QTimer>
#include <QToolBar>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Texts of this object are made at run time and stand in no table.
void madeAtRunTime(QObject* object) {
    object->setProperty("CtrlTyp", QString());
}

/// A text in which "&" is a letter and no mnemonic.
QString asCaption(QString text) {
    return text.replace(u'&', u"&&"_s);
}

} // namespace

frmMain::frmMain()
    : Form(*this, u"frmMain"_s), gesture_(new Gesture(QApplication::startDragDistance())), area_(new ChildArea(this)),
      centre_(new QStackedWidget(this)), tbToolBar_(new QToolBar(this)) {
    setWindowTitle(ApplicationInfo::title);
    centre_->addWidget(area_);
    setCentralWidget(centre_);
    area_->onActivated = [this] {
        applyState();
        // Another window may have stored or deleted what the explorer shows.
        if (frmExplorer* explorer = activeExplorer())
            explorer->refreshPages();
    };
    tbToolBar_->setObjectName(u"tbToolBar"_s);
    tbToolBar_->setMovable(false);
    const int icon = std::max(tbToolBar_->iconSize().height(), fontMetrics().height() * 5 / 4);
    tbToolBar_->setIconSize(QSize(icon, icon));
    addToolBar(tbToolBar_);
    recent_.RegistryPath = SettingsKeys::user;
    buildMenus();
    buildStatusBar();
    connectCommands();
    setDesktop(this);
    dragFollower() = gesture_.get();
    keepKeysOfTextFields();
    connect(qApp, &QApplication::focusChanged, this, [this] { applyState(); });
}

frmMain::~frmMain() {
    disconnect(qApp, nullptr, this, nullptr);
    history().onChange = nullptr;
    area_->onActivated = nullptr;
    if (&desktop() == this)
        setDesktop(nullptr);
    if (dragFollower() == gesture_.get())
        dragFollower() = nullptr;
    delete area_;
}

void frmMain::buildMenus() {
    for (const MenuEntry& entry : MainMenu::entries()) {
        QMenu* parent = menus_.value(entry.menu);
        if (MainMenu::isMenu(entry.name)) {
            QMenu* menu = parent ? parent->addMenu(entry.caption) : menuBar()->addMenu(entry.caption);
            menu->setObjectName(entry.name);
            menu->setToolTipsVisible(true);
            menu->setIcon(Icons::get(entry.icon));
            connect(menu, &QMenu::aboutToShow, this, [this, name = entry.name] {
                applyState();
                if (name == u"mnuWindow")
                    listWindows();
            });
            menus_[entry.name] = menu;
            continue;
        }
        if (entry.separatorBefore)
            parent->addSeparator();
        auto* action = new QAction(Icons::get(entry.icon), entry.caption, parent);
        if (!entry.contextOnly)
            parent->addAction(action);
        action->setObjectName(entry.name);
        if (!entry.shortcut.isEmpty())
            action->setShortcuts(QKeySequence::listFromString(entry.shortcut));
        action->setCheckable(entry.checkable);
        if (entry.caption.isEmpty()) {
            madeAtRunTime(action);
            action->setVisible(false);
        } else if (entry.name == u"mnuEditUndo" || entry.name == u"mnuEditRedo") {
            madeAtRunTime(action); // it has the name of a step
        }
        connect(action, &QAction::triggered, this, [this, name = entry.name] { perform(name); });
        actions_[entry.name] = action;
    }
    menus_[u"mnuWindow"_s]->addSeparator();
}

void frmMain::mention(const QString& text) {
    constexpr int milliseconds = 5000;
    statusBar()->showMessage(text, milliseconds);
    QAccessibleEvent said(statusBar(), QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}

void frmMain::buildStatusBar() {
    statusBar()->setObjectName(u"sbStatusbar"_s);
    panel1_ = new ElidedLabel(this);
    panel1_->setObjectName(u"panel1"_s);
    panel1_->setTextFormat(Qt::PlainText);
    madeAtRunTime(panel1_);
    // A long path must not widen the window.
    panel1_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->setContentsMargins(fontMetrics().averageCharWidth(), 0, 0, 0);
    statusBar()->addWidget(panel1_, 1);
    clock_ = new QLabel(this);
    clock_->setObjectName(u"clock"_s);
    madeAtRunTime(clock_);
    statusBar()->addPermanentWidget(clock_);
    const auto tell = [this] { clock_->setText(QTime::currentTime().toString(u"HH:mm"_s)); };
    auto* minute = new QTimer(this);
    connect(minute, &QTimer::timeout, this, tell);
    minute->start(5000);
    tell();
}

void frmMain::load() {
    const GestureScope gesture;
    const bool goOn = Main::openingStep([this] { mdLanguage::SetCtrlProps(*this); }) &&
                      Main::openingStep([this] { InitializeForm(); });
    applyState();
    // Not before it is known that no catalogue opens: else it is not even made.
    showStartPage();
    if (goOn)
        ui::asker().setPointer(ui::Pointer::Default);
}

void frmMain::InitializeForm() {
    const ProcedureScope scope(u"[frmMain.InitializeForm]"_s);
    setWindowIcon(Icons::get(u"varidex"_s));
    buildToolbar();
    InitFileMenu();
    panel1_->setText(u"Version: %1.%2.%3"_s.arg(ApplicationInfo::majorVersion)
                         .arg(ApplicationInfo::minorVersion)
                         .arg(ApplicationInfo::revision));
    setChecked(u"mnuViewToolBar"_s, true);
    setChecked(u"mnuViewStatusBar"_s, true);
    placeWindow();
    showState(0);
    helpFile_ = Paths::join(Paths::applicationFolder(), u"Varidex.chm"_s);
    OpenDefDB();
}

void frmMain::placeWindow() {
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens << screen->availableGeometry();
    const QRect first = screens.value(0);
    const Main::WindowPlace stored =
        Main::StoredPlace(pixelsToTwips(*this, first.width()), pixelsToTwips(*this, first.height()));
    const QRect place = placeOnScreens(QRect(twipsToPixels(*this, stored.left), twipsToPixels(*this, stored.top),
                                             twipsToPixels(*this, stored.width), twipsToPixels(*this, stored.height)),
                                       screens);
    move(place.topLeft());
    resize(place.size());
    if (stored.maximised)
        setWindowState(windowState() | Qt::WindowMaximized);
}

void frmMain::buildToolbar() {
    for (QAction* action : tbToolBar_->actions()) {
        actions_.remove(action->objectName());
        // The button may be the one whose click brought this about.
        action->setObjectName(QString());
        tbToolBar_->removeAction(action);
        action->deleteLater();
    }
    toolbar_.build();
    for (const ToolbarButton& button : toolbar_.buttons())
        addButton(button);
    DrawViewMenu();
    applyState();
}

void frmMain::addButton(const ToolbarButton& button) {
    if (button.isSeparator()) {
        tbToolBar_->addSeparator();
        return;
    }
    const QString ofView =
        Icons::ofView(gViews.at(button.view, ViewTable::Type), gViews.at(button.view, ViewTable::CompAnalysis));
    // Views are distinguished by their number, which is that of their shortcut too.
    const QIcon icon = button.view ? Icons::withNumber(button.icon.isEmpty() ? ofView : button.icon, button.view)
                                   : Icons::get(button.icon);
    QAction* action = tbToolBar_->addAction(icon, QString());
    action->setObjectName(button.key);
    action->setCheckable(button.check);
    action->setChecked(button.pressed);
    action->setProperty("ownToolTip", button.tooltip);
    madeAtRunTime(action);
    if (QWidget* widget = tbToolBar_->widgetForAction(action))
        widget->setAccessibleName(button.tooltip);
    connect(action, &QAction::triggered, this, [this, key = button.key] { perform(key); });
    actions_[button.key] = action;
}

void frmMain::DrawViewMenu() {
    const int name = gLanguage == 0 ? ViewTable::Name : ViewTable::NameEnglish;
    const int description = gLanguage == 0 ? ViewTable::DescName : ViewTable::DescNameEnglish;
    for (int view = 1; view <= MainMenu::views; ++view) {
        const bool exists = view <= gCatalogueOptions.NumberOfFrmExplorers;
        QAction* explorer = actions_[arrayName(u"mnuViewExplorers"_s, view)];
        QAction* described = actions_[arrayName(u"mnuViewDescriptions"_s, view)];
        explorer->setVisible(exists);
        described->setVisible(exists && !gViews.at(view, ViewTable::DescName).isEmpty());
        if (!exists)
            continue;
        explorer->setText(asCaption(gViews.at(view, name)));
        explorer->setIcon(
            Icons::get(Icons::ofView(gViews.at(view, ViewTable::Type), gViews.at(view, ViewTable::CompAnalysis))));
        described->setText(asCaption(gViews.at(view, description)));
    }
}

void frmMain::InitFileMenu() {
    recentFiles_ = recent_.GetRecentFiles();
    for (int i = 1; i <= MainMenu::recentFiles; ++i) {
        QAction* entry = actions_[arrayName(u"mnuFileMRU"_s, i)];
        const QString file = Paths::native(recentFiles_.value(i - 1));
        entry->setVisible(!file.isEmpty());
        entry->setText(
            u'&' + QString::number(i) + u' ' +
            asCaption(fontMetrics().elidedText(file, Qt::ElideMiddle, 60 * fontMetrics().averageCharWidth())));
        entry->setProperty("ownToolTip", file);
    }
}

bool frmMain::SaveRcFile(const QString& file) {
    const bool stored = recent_.SetRecentFiles(file);
    InitFileMenu();
    return stored;
}

void frmMain::InitFormState(int state) {
    showState(state);
    showStartPage();
    ui::asker().setPointer(ui::Pointer::Default);
}

void frmMain::showState(int state) {
    stateOpen_ = state == 1;
    setWindowTitle(stateOpen_ ? Paths::fileOf(gDatabase.Database()) + u" - "_s + ApplicationInfo::title
                              : ApplicationInfo::title);
    showProgress({});
    area_->setHint(TranslateText(u"Öffnen Sie eine Sicht mit dem Menü Ansicht."_s));
    applyState();
}

QString frmMain::panelText() const {
    return stateOpen_ ? TranslateText(u"Aktuelle Datenbank:"_s) + u' ' + gDatabase.Database()
                      : TranslateText(u"Keine Datenbankdateiauswahl"_s);
}

void frmMain::showProgress(const QString& text) {
    panel1_->setText(text.isEmpty() ? panelText() : text);
    panel1_->setToolTip(plainToolTip(panel1_->text()));
}

frmExplorer* frmMain::activeExplorer() const {
    return dynamic_cast<frmExplorer*>(activeForm());
}

void frmMain::setChecked(const QString& name, bool checked) {
    if (QAction* action = actions_.value(name))
        action->setChecked(checked);
}

void frmMain::applyState() {
    MainState now = state();
    // What is shown as out of use stays so for a while: a run. A window that is being made tells no one when it is
    // done, and the keys typed meanwhile are for what it has made.
    now.busy = AnalysisModel::running() || RunGuard::running();
    for (auto menu = menus_.cbegin(); menu != menus_.cend(); ++menu)
        menu.value()->setEnabled(MainMenu::enabled(menu.key(), now));
    for (auto action = actions_.cbegin(); action != actions_.cend(); ++action)
        enable(action.key(), *action.value(), now);
    showHistory();
    for (const QString& name : {u"mnu1VarWindow"_s, u"mnu2VarWindow"_s, u"mnuVVEL"_s, u"mnuEnglishLanguage"_s, u"EL"_s})
        setChecked(name, MainMenu::checked(name, now));
    if (now.active == MainState::Active::Explorer) {
        pressedV_ = MainMenu::checked(u"V"_s, now);
        pressedVV_ = MainMenu::checked(u"VV"_s, now);
    }
    setChecked(u"V"_s, pressedV_);
    setChecked(u"VV"_s, pressedVV_);
    for (const QString& name : {u"mnuShowCards"_s, u"SCON"_s})
        setChecked(name, gOptions.ShowCards);
    setChecked(u"mnuViewToolBar"_s, !tbToolBar_->isHidden());
    setChecked(u"mnuViewStatusBar"_s, !statusBar()->isHidden());
}

/// What cannot be used says why, where one would ask.
void frmMain::enable(const QString& name, QAction& action, const MainState& now) {
    action.setEnabled(MainMenu::enabled(name, now));
    const QString off = MainMenu::reasonOff(name, now);
    const QString reason = off.isEmpty() ? QString() : TranslateText(off);
    QStringList tips = {action.property("ownToolTip").toString(), reason};
    tips.removeAll(QString());
    action.setToolTip(asToolTip(tips.join(u'\n')));
    action.setStatusTip(reason);
}

void frmMain::adopt(Form& child) {
    // A window takes its size from an area that is in view.
    centre_->setCurrentWidget(area_);
    area_->adopt(child.widget());
    applyState();
}

void frmMain::activate(Form& child) {
    area_->activate(child.widget());
}

void frmMain::arrangeBeside(const std::vector<Form*>& kept) {
    QList<QWidget*> windows;
    for (const Form* form : kept)
        windows << &form->widget();
    area_->arrangeBeside(windows);
}

Form* frmMain::activeForm() const {
    const QWidget* window = area_->current();
    for (Form* form : Form::open())
        if (window && &form->widget() == window)
            return form;
    return nullptr;
}

QAction* frmMain::command(const QString& name) {
    applyState();
    return actions_.value(name);
}

void frmMain::optionsApplied() {
    applyState();
}

void frmMain::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        frmStatus::unload();
}

/// A place is stored with the frame that the window system draws; of a maximised window that frame is not to be seen.
void frmMain::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (isVisible() && !isMaximized() && !isMinimized() && !isFullScreen())
        inFrame_ = geometry().topLeft() - pos();
}

void frmMain::moveEvent(QMoveEvent* event) {
    QMainWindow::moveEvent(event);
    if (isVisible() && !isMaximized() && !isMinimized() && !isFullScreen())
        inFrame_ = geometry().topLeft() - pos();
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (stopped_)
        return;
    if (RunGuard::closeAfterRun(*this) || gBusy > 0) {
        event->ignore();
        return;
    }
    stopped_ = true;
    const GestureScope gesture;
    std::optional<Main::WindowPlace> place;
    if (!isMinimized()) {
        // Of a maximised window, the place that it goes back to.
        const QRect now = isMaximized() ? normalGeometry().translated(-inFrame_) : QRect(pos(), size());
        place = {pixelsToTwips(*this, now.x()), pixelsToTwips(*this, now.y()), pixelsToTwips(*this, now.width()),
                 pixelsToTwips(*this, now.height()), isMaximized()};
    }
    Main::Stop(place);
    CloseForms();
    event->accept();
}
