#pragma once

#include <QString>
#include <vector>

/// What the main window's entries and buttons depend on.
struct MainState {
    enum class Active { None, Explorer, Analysis, Document, Preview, Other };
    /// Where the keyboard is in the active window; a text field of an explorer is neither its tree nor its list.
    enum class Focus { Tree, List, Text, Elsewhere };

    bool catalogueOpen = false;
    bool readOnly = false; ///< nothing can be written to the catalogue
    bool busy = false;     ///< a run or a refilling goes on: commands are refused
    Active active = Active::None;
    Focus focus = Focus::Elsewhere;
    bool studies = false;           ///< the active explorer shows a study view
    bool editStudies = false;       ///< the option EditStudiesMode
    QString whyNotHere = QString(); ///< why nothing that was copied can be put below the selected entry, to be told
    int panels = 0;                 ///< of the active explorer
    bool chart = false;             ///< the active analysis shows one
    bool tableOrder = false;        ///< the active analysis has columns or rows that can change places
    bool canUndo = false, canRedo = false;
    bool panelEnglish = false;
    bool englishContents = false;
    qint16 language = 0;
};

/// One entry of the menu, in the order in which they stand.
struct MenuEntry {
    QString menu;                 ///< name of the menu that it stands in; empty for the menu bar
    QString name;                 ///< control name, "name(i)" in an array
    QString caption;              ///< as designed; empty where it is made at run time
    QString shortcut = QString(); ///< several are separated by ";"
    QString icon = QString();
    bool checkable = false;
    bool separatorBefore = false;
    bool contextOnly = false; ///< it stands in context menus and not in its menu, whose rules it follows
};

/// The main window's menu as data, and the one place that says which entry and button can be used and which is checked.
/// Arrays run from 1: `mnuFileMRU` to 4, `mnuViewExplorers` and `mnuViewDescriptions` to 9.
namespace MainMenu {

constexpr int recentFiles = 4;
constexpr int views = 9;

/// Menus and their entries. A menu stands before its entries.
const std::vector<MenuEntry>& entries();
bool isMenu(const QString& name);

/// Whether an entry, a menu or a toolbar button (by its key) can be used. A shortcut of an entry in a disabled menu is
/// off too.
bool enabled(const QString& name, const MainState& state);
/// What a user can be told of an entry that cannot be used and of which one would expect it; empty else. A key of the
/// text table.
QString reasonOff(const QString& name, const MainState& state);
/// Whether an entry that shows a state is checked.
bool checked(const QString& name, const MainState& state);

/// Number of panels after one of the two panel commands ("mnu1VarWindow", "mnu2VarWindow") on an explorer.
int panelsAfter(const QString& name, int panels);

/// Caption of an entry of the history: the command and the step that it is about, which may be of any length.
/// @param caption with its mnemonic @param step empty without one
QString historyCaption(const QString& caption, const QString& step);

} // namespace MainMenu
