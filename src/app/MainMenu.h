#pragma once

#include <QString>
#include <vector>

/// What the main window's entries and buttons depend on.
struct MainState {
    enum class Active { None, Explorer, Analysis, Other };

    bool catalogueOpen = false;
    bool busy = false; ///< a run or a refilling goes on: commands are refused
    Active active = Active::None;
    int panels = 0;     ///< of the active explorer
    bool chart = false; ///< the active analysis shows one
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
/// Whether an entry that shows a state is checked.
bool checked(const QString& name, const MainState& state);

/// Number of panels after one of the two panel commands ("mnu1VarWindow", "mnu2VarWindow") on an explorer.
int panelsAfter(const QString& name, int panels);

} // namespace MainMenu
