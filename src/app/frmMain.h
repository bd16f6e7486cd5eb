#pragma once

#include "app/MainMenu.h"
#include "app/RecentFiles.h"
#include "app/ToolbarModel.h"
#include "printing/PrinterCTL.h"
#include "widgets/Desktop.h"
#include "widgets/Form.h"

#include <QHash>
#include <QMainWindow>
#include <functional>
#include <memory>

class ChildArea;
class DragFollower;
class History;
class QLabel;
class QMenu;
class QToolBar;
class QStackedWidget;
class frmExplorer;
class frmStartPage;
struct PrintSource;

/// The frame window: menus, toolbar, status bar, and the area of the child windows, for which it is the desktop.
///
/// What can be used when stands in MainMenu; the window applies it and hands commands on.
class frmMain : public QMainWindow, public Form, public Desktop {
public:
    frmMain();
    ~frmMain() override;

    /// Texts, toolbar, recent files, place, the last catalogue: all that opening the program means. The window is not
    /// shown yet.
    void load();

    void DrawViewMenu();
    void mnu1VarWindow_Click() { showPanels(QStringLiteral("mnu1VarWindow")); }
    void mnu2VarWindow_Click() { showPanels(QStringLiteral("mnu2VarWindow")); }
    void mnuAuswertungsansicht_Click();
    void mnuOptions_Click() { applyState(); }
    void mnuViewExplorers_Click(int view);
    void mnuViewDescriptions_Click(int index);
    void mnuViewOptions_Click();
    void mnuHelpContents_Click();
    void mnuFilePrint_Click() { print(true); }
    /// The same without asking for a printer.
    void mnuFilePreview_Click() { print(false); }
    void ChangeFont();

    /// Runs a command by the control name of its entry or the key of its button. While something runs that it would
    /// disturb, it is refused; a key without a command does nothing.
    void perform(const QString& name);
    ChildArea& area() { return *area_; }

    void adopt(Form& child) override;
    void activate(Form& child) override;
    void arrangeBeside(const std::vector<Form*>& kept) override;
    Form* activeForm() const override;
    void panelsChanged() override { applyState(); }
    QAction* command(const QString& name) override;
    void mention(const QString& text) override;
    void showProgress(const QString& text) override;
    PrinterCTL* PrinterCTL1() override { return &printerCTL1_; }

    void optionsApplied() override;
    void refreshTitles() override { applyState(); }

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    QMenu* createPopupMenu() override { return nullptr; }

private:
    std::unique_ptr<DragFollower> gesture_; ///< what is dragged between explorers
    ChildArea* area_;
    frmStartPage* startPage_ = nullptr; ///< made when it is first to be seen

    QStackedWidget* centre_; ///< the start page while no catalogue is open, else the windows
    QToolBar* tbToolBar_;
    QLabel* panel1_;
    QLabel* clock_;
    PrinterCTL printerCTL1_;
    ToolbarModel toolbar_;
    RecentFiles recent_;
    QStringList recentFiles_;
    QHash<QString, QAction*> actions_; ///< entries and buttons by name and key
    QHash<QString, QMenu*> menus_;
    QHash<QString, std::function<void()>> commands_;
    bool stateOpen_ = false;
    bool pressedV_ = false, pressedVV_ = false; ///< the panel buttons while no explorer is in front
    bool stopped_ = false;
    QPoint inFrame_; ///< the window's corner within its frame, as it was last seen
    QString helpFile_;
    /// The pages in the language of the program, if they are there, else the file that was assigned.
    QString helpFile() const;

    void buildMenus();
    void buildStatusBar();
    void connectCommands();
    void addWindowCommands();
    void addEditingCommands();
    void addSearchCommands();
    void addDocumentCommands();
    void addPrintingCommands();
    void InitializeForm();
    void placeWindow();
    void buildToolbar();
    void addButton(const ToolbarButton& button);
    void InitFileMenu();
    bool SaveRcFile(const QString& file);
    void listWindows();

    void OpenDefDB();
    void OpenDB();
    bool closeCurrentDatabase();
    bool refuses(const QString& file);
    void showStartPage();
    void importSurvey(const QString& file);
    bool closeForImport(const QString& catalogue, QString& closed);
    void openSample();
    void openFile(const QString& file);
    void afterOpening(qint16 state);
    void mnFileClose_Click();
    void InitFormState(int state);
    void showState(int state);
    QString panelText() const;
    void CloseForms() { unloadChildWindows(); }
    void switchLanguage(qint16 language);
    void flipContents();
    void flipShowCards();
    void showPanels(const QString& command);
    void leave();

    frmExplorer* activeExplorer() const;
    MainState state() const;
    void stateOfExplorer(MainState& now, const frmExplorer& explorer) const;
    void applyState();
    void onExplorer(const std::function<void(frmExplorer&)>& operation);
    static void deleteSelected(frmExplorer& explorer);
    static void transferSelected(frmExplorer& explorer, bool move);
    void addTransferCommands();
    PrintSource printSource() const;
    void print(bool withPrinter);
    void showHistory();
    void takeStep(const QString& entry, bool (History::*step)());
    void enable(const QString& name, QAction& action, const MainState& now);
    void setChecked(const QString& name, bool checked);
};
