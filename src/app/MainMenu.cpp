#include "app/MainMenu.h"

#include <QSet>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Entries = std::vector<MenuEntry>;

void addFileMenu(Entries& all) {
    const QString menu = u"mnFile"_s;
    all.push_back({{}, menu, u"&Datei"_s});
    all.push_back({menu, u"mnFileOpen"_s, u"&Datenbank öffnen..."_s, u"Ctrl+O"_s, u"open"_s});
    all.push_back({menu, u"mnFileClose"_s, u"Datenbank &schließen"_s, u"Ctrl+Shift+W"_s, u"close"_s});
    all.push_back({menu, u"mnuFileImport"_s, u"&Umfragedatei importieren..."_s, {}, u"import"_s});
    for (int i = 1; i <= MainMenu::recentFiles; ++i)
        all.push_back({menu, u"mnuFileMRU(%1)"_s.arg(i), {}, {}, u"catalogue"_s, false, i == 1});
    all.push_back({menu, u"mnuFileExit"_s, u"&Beenden"_s, u"Ctrl+Q"_s, u"exit"_s, false, true});
}

void addViewMenu(Entries& all) {
    const QString menu = u"mnuView"_s;
    all.push_back({{}, menu, u"&Ansicht"_s});
    all.push_back({menu, u"mnuDBBeschreibung"_s, u"&Datenbankbeschreibung"_s, {}, u"catalogue-description"_s});
    // Not Alt: that belongs to the captions, here and in the windows.
    for (int i = 1; i <= MainMenu::views; ++i)
        all.push_back({menu, u"mnuViewExplorers(%1)"_s.arg(i), {}, u"Ctrl+%1"_s.arg(i), {}, false, i == 1});
    for (int i = 1; i <= MainMenu::views; ++i)
        all.push_back({menu,
                       u"mnuViewDescriptions(%1)"_s.arg(i),
                       {},
                       u"Ctrl+Shift+%1"_s.arg(i),
                       u"description"_s,
                       false,
                       i == 1});
    all.push_back({menu, u"mnuAuswertungsansicht"_s, u"&Auswertung"_s, u"Ctrl+Shift+A"_s, u"analysis"_s, false, true});
    all.push_back({menu, u"mnuFragebogenansicht"_s, u"&Fragebogen"_s, {}, u"questionnaire"_s});
    all.push_back({menu, u"mnuSPSSAnsicht"_s, u"&SPSS Datensatz"_s, {}, u"dataset"_s});
    all.push_back({menu, u"mnuFilePrint"_s, u"&Drucken..."_s, u"Ctrl+P"_s, u"print"_s, false, true});
    all.push_back({menu, u"mnuFilePreview"_s, u"Vorschau und &PDF..."_s, u"Ctrl+Shift+P"_s, u"preview"_s});
    all.push_back({menu, u"mnuFileClose"_s, u"Fenster ausb&lenden"_s, u"Ctrl+W"_s, {}, false, true});
}

void addEditMenu(Entries& all) {
    const QString menu = u"mnuEdit"_s;
    all.push_back({{}, menu, u"&Bearbeiten"_s});
    all.push_back({menu, u"mnuEditUndo"_s, u"Rü&ckgängig"_s, u"Ctrl+Z"_s, u"undo"_s});
    all.push_back({menu, u"mnuEditRedo"_s, u"Wieder&herstellen"_s, u"Ctrl+Shift+Z"_s, u"redo"_s});
    all.push_back({menu, u"mnuEditCut"_s, u"&Ausschneiden"_s, u"Ctrl+X"_s, u"cut"_s, false, true});
    all.push_back({menu, u"mnuEditCopy"_s, u"&Kopieren"_s, u"Ctrl+C"_s, u"copy"_s});
    all.push_back({menu, u"mnuEditPaste"_s, u"&Einfügen"_s, u"Ctrl+V"_s, u"paste"_s});
    all.push_back({menu, u"mnuLöschen"_s, u"&Löschen"_s, u"Del"_s, u"delete"_s});
    all.push_back({menu, u"mnuSuchen"_s, u"&Suchen"_s, {}, u"search"_s, false, true});
    all.push_back({menu, u"mnuWeitersuchen"_s, u"&Weitersuchen"_s, u"F3"_s, u"search-next"_s});
    all.push_back({menu, u"mnuErweiterteSuche"_s, u"E&rweiterte Suche"_s, u"Ctrl+Shift+S"_s, u"search-extended"_s});
    all.push_back({menu, u"mnuNeueKategorie"_s, u"&Neuen Eintrag"_s, u"Ctrl+N"_s, u"new"_s, false, true});
    all.push_back({menu, u"mnuKategorieUmbenennen"_s, u"Eintrag &umbenennen"_s, u"F2"_s, u"rename"_s});
    all.push_back(
        {menu, u"mnuBeschreibungBearbeiten"_s, u"&Beschreibung bearbeiten"_s, u"Shift+F2"_s, u"description"_s});
    all.push_back({menu, u"mnuEditShowPosition"_s, u"&Position einstellen"_s});
    all.push_back({menu, u"mnuEditCopyTo"_s, u"K&opieren nach..."_s, {}, {}, false, true});
    all.push_back({menu, u"mnuEditMoveTo"_s, u"Versch&ieben nach..."_s});
    for (const auto& [name, caption] : {std::pair{u"mnuEditCopyHere"_s, u"&Hierher kopieren"_s},
                                        std::pair{u"mnuEditMoveHere"_s, u"Hierher vers&chieben"_s}}) {
        all.push_back({menu, name, caption});
        all.back().contextOnly = true;
    }
}

void addOptionsMenu(Entries& all) {
    const QString menu = u"mnuOptions"_s, languages = u"mnLanguage"_s;
    all.push_back({{}, menu, u"&Optionen"_s});
    all.push_back({menu, u"mnu1VarWindow"_s, u"&Variablenfenster"_s, u"F7"_s, {}, true});
    all.push_back({menu, u"mnu2VarWindow"_s, u"&Doppeltes Variablenfenster"_s, u"F8"_s, {}, true});
    all.push_back({menu, u"mnuVVEL"_s, u"Variablenfenster &englisch"_s, u"F9"_s, {}, true});
    all.push_back({menu, u"mnuShowCards"_s, u"ShowCards &anzeigen"_s, u"F11"_s, u"showcard"_s, true});
    all.push_back({menu, u"mnuEnglishLanguage"_s, u"Englische &Inhalte"_s, u"F12"_s, {}, true, true});
    all.push_back({menu, u"mnuChangeFont"_s, u"Schrift &wechseln"_s, u"Ctrl+Shift+K"_s, u"font"_s});
    all.push_back({menu, languages, u"&Sprache"_s, {}, u"language"_s});
    all.push_back({languages, u"mnLngG"_s, u"&Deutsch"_s, {}, u"502"_s});
    all.push_back({languages, u"mnLngE"_s, u"&Englisch"_s, {}, u"503"_s});
    all.push_back({menu, u"mnuViewToolBar"_s, u"S&ymbolleiste"_s, {}, {}, true, true});
    all.push_back({menu, u"mnuViewStatusBar"_s, u"S&tatusleiste"_s, {}, {}, true});
    all.push_back({menu, u"mnuViewGraphicOptions"_s, u"&Grafikoptionen..."_s, {}, u"chart"_s, false, true});
    all.push_back({menu, u"mnuViewOptions"_s, u"&Optionen..."_s, u"Ctrl+,"_s, u"options"_s});
}

void addWindowAndHelpMenus(Entries& all) {
    const QString menu = u"mnuWindow"_s, help = u"mnuHelp"_s;
    all.push_back({{}, menu, u"&Fenster"_s});
    all.push_back({menu, u"mnuWindowCascade"_s, u"Ü&berlappend"_s, {}, u"cascade"_s});
    all.push_back({menu, u"mnuWindowTileVertical"_s, u"&Nebeneinander"_s, {}, u"tile-vertical"_s});
    all.push_back({menu, u"mnuWindowTileHorizontal"_s, u"&Untereinander"_s, {}, u"tile-horizontal"_s});
    all.push_back({menu, u"mnuWindowArrangeIcons"_s, u"&Symbole anordnen"_s, {}, u"arrange"_s});
    all.push_back({menu, u"mnuWindowNext"_s, u"Nä&chstes Fenster"_s, u"Ctrl+F6"_s, {}, false, true});
    all.push_back({menu, u"mnuWindowPrevious"_s, u"&Vorheriges Fenster"_s, u"Ctrl+Shift+F6"_s});
    all.push_back({{}, help, u"&Hilfe"_s});
    all.push_back({help, u"mnuHelpContents"_s, u"&Inhalt"_s, u"F1"_s, u"help"_s});
    all.push_back({help, u"mnuHelpAbout"_s, u"In&fo über Varidex..."_s, {}, u"about"_s});
}

QString menuOf(const QString& name) {
    const auto found = std::ranges::find(MainMenu::entries(), name, &MenuEntry::name);
    return found == MainMenu::entries().end() ? QString() : found->menu;
}

bool isToolbarKey(const QString& name) {
    return !name.startsWith(u"mn");
}

/// Entries whose use depends on what may be changed where the keyboard is.
bool isEditing(const QString& name) {
    static const QSet<QString> all = {u"mnuEditCut"_s,
                                      u"mnuEditCopy"_s,
                                      u"mnuEditPaste"_s,
                                      u"mnuLöschen"_s,
                                      u"mnuNeueKategorie"_s,
                                      u"mnuKategorieUmbenennen"_s,
                                      u"mnuBeschreibungBearbeiten"_s,
                                      u"mnuEditShowPosition"_s,
                                      u"mnuEditCopyTo"_s,
                                      u"mnuEditMoveTo"_s,
                                      u"mnuEditCopyHere"_s,
                                      u"mnuEditMoveHere"_s};
    return all.contains(name);
}

/// Whether what is selected in the active explorer may be changed at all: its entries, and what its list shows of them.
/// Variables go from a study to a category without a change of the study.
bool mayChange(const QString& name, const MainState& state) {
    const bool fromStudy = name == u"mnuEditCopyTo" && state.focus == MainState::Focus::List;
    return !state.readOnly && (!state.studies || state.editStudies || fromStudy);
}

/// Whether an editing entry has something to work on where the keyboard is in an explorer.
bool hasSubject(const QString& name, const MainState& state) {
    using Focus = MainState::Focus;
    const bool tree = state.focus == Focus::Tree, list = state.focus == Focus::List;
    if (name == u"mnuKategorieUmbenennen" || name == u"mnuBeschreibungBearbeiten" || name == u"mnuEditShowPosition")
        return tree;
    if (name == u"mnuLöschen" || name == u"mnuEditCopyTo")
        return tree || list;
    if (name == u"mnuEditMoveTo") // from a study's list it would be a copy
        return tree || (list && !state.studies);
    if (name == u"mnuEditCopyHere" || name == u"mnuEditMoveHere")
        return (tree || list) && state.whyNotHere.isEmpty();
    return true;
}

bool enabledForEditing(const QString& name, const MainState& state) {
    using Active = MainState::Active;
    if (state.active == Active::Explorer) {
        // A text that can be selected can be copied.
        const bool text = name == u"mnuEditCopy" && state.focus == MainState::Focus::Text;
        return text || (mayChange(name, state) && hasSubject(name, state));
    }
    if (state.active == Active::Analysis)
        return name == u"mnuEditCopy" || (name == u"mnuEditShowPosition" && state.tableOrder);
    return false;
}

bool enabledInIdleMenu(const QString& name, const MainState& state) {
    using Active = MainState::Active;
    const bool known = state.active == Active::Explorer || state.active == Active::Analysis;
    if (name == u"mnFileClose" || name == u"mnuView" || name == u"mnuEdit" || name == u"mnuWindow")
        return state.catalogueOpen;
    if (name == u"mnuFileClose")
        return state.active != Active::None;
    // Where the folder of the cases is not set, the command leads to it.
    if (name == u"mnuAuswertungsansicht")
        return known;
    if (name == u"mnuFilePrint" && state.active == Active::Preview)
        return true;
    if (name == u"mnuFilePrint" || name == u"mnuFilePreview")
        return known || state.active == Active::Document;
    if (isEditing(name))
        return enabledForEditing(name, state);
    if (name == u"mnuSuchen" || name == u"mnuWeitersuchen")
        return state.active == Active::Explorer;
    if (name == u"mnuEditUndo" || name == u"mnuEditRedo")
        return name == u"mnuEditUndo" ? state.canUndo : state.canRedo;
    if (name == u"mnuViewGraphicOptions")
        return state.active == Active::Analysis && state.chart;
    if (name == u"mnuVVEL" || name == u"mnuChangeFont")
        return state.active == Active::Explorer || (state.active == Active::Document && name == u"mnuChangeFont");
    if (name == u"mnLngG")
        return state.language != 0;
    if (name == u"mnLngE")
        return state.language == 0;
    return true;
}

} // namespace

const std::vector<MenuEntry>& MainMenu::entries() {
    static const Entries all = [] {
        Entries list;
        addFileMenu(list);
        addViewMenu(list);
        addEditMenu(list);
        addOptionsMenu(list);
        addWindowAndHelpMenus(list);
        return list;
    }();
    return all;
}

bool MainMenu::isMenu(const QString& name) {
    return std::ranges::any_of(entries(), [&](const MenuEntry& entry) { return entry.menu == name; });
}

bool MainMenu::enabled(const QString& name, const MainState& state) {
    if (isToolbarKey(name)) {
        static const QSet<QString> always = {u"ODB"_s, u"O"_s, u"H"_s};
        return !state.busy && (state.catalogueOpen || always.contains(name));
    }
    const QString menu = menuOf(name);
    // Whoever waits for a run may look at another window or leave the program, which ends the run first.
    const bool whileBusy =
        menu.isEmpty() || menu == u"mnuWindow" || name == u"mnuFileExit" || name.startsWith(u"mnuWindow");
    if (state.busy && !whileBusy)
        return false;
    if (!menu.isEmpty() && !enabled(menu, state))
        return false;
    return enabledInIdleMenu(name, state);
}

QString MainMenu::reasonOff(const QString& name, const MainState& state) {
    const bool explorer = state.catalogueOpen && !state.busy && state.active == MainState::Active::Explorer;
    if (!explorer || !isEditing(name) || enabled(name, state))
        return {};
    if (mayChange(name, state))
        return name.endsWith(u"Here") ? state.whyNotHere : QString();
    return state.readOnly ? u"Die Datenbank ist schreibgeschützt."_s
                          : u"Studien lassen sich nur ändern, wenn die Option EditStudiesMode gesetzt ist."_s;
}

bool MainMenu::checked(const QString& name, const MainState& state) {
    if (name == u"mnu1VarWindow" || name == u"V")
        return state.panels == 1;
    if (name == u"mnu2VarWindow" || name == u"VV")
        return state.panels == 2;
    if (name == u"mnuVVEL")
        return state.panelEnglish;
    return (name == u"mnuEnglishLanguage" || name == u"EL") && state.englishContents;
}

int MainMenu::panelsAfter(const QString& name, int panels) {
    const int wanted = name == u"mnu2VarWindow" ? 2 : 1;
    return panels == wanted ? 0 : wanted;
}

QString MainMenu::historyCaption(const QString& caption, const QString& step) {
    constexpr int longest = 60;
    QString shown = step.simplified();
    if (shown.size() > longest) {
        shown.truncate(longest - 1);
        // No half of a character.
        shown.chop(shown.back().isHighSurrogate() ? 1 : 0);
        shown += u'…';
    }
    return step.isEmpty() ? caption : caption + u": "_s + shown.replace(u'&', u"&&"_s);
}
