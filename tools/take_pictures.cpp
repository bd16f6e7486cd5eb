#include "PictureWalk.h"
#include "editingPictures.h"
#include "previewPictures.h"
#include "printingPictures.h"

#include "analysis/frmDescriptives.h"
#include "analysis/frmNewCalculation.h"
#include "app/RecentFiles.h"
#include "app/VdxProcess.h"
#include "app/frmAbout.h"
#include "app/frmImport.h"
#include "app/frmMain.h"
#include "app/frmProcess.h"
#include "app/frmSplash.h"
#include "app/frmStatus.h"
#include "app/globals.h"
#include "app/start.h"
#include "config/CProfile.h"
#include "config/Options.h"
#include "config/frmOptions.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "platform/system/NumberFormat.h"
#include "platform/system/Paths.h"
#include "search/frmFind.h"
#include "widgets/ProgramStyle.h"
#include "widgets/QtAsker.h"
#include "widgets/StandardTexts.h"

#include <CLI/CLI.hpp>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QDialog>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFont>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPalette>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>
#include <functional>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

void useDarkPalette() {
    QPalette dark(QColor(53, 55, 59));
    dark.setColor(QPalette::Base, QColor(35, 37, 40));
    dark.setColor(QPalette::AlternateBase, QColor(43, 45, 49));
    dark.setColor(QPalette::Highlight, QColor(61, 123, 190));
    dark.setColor(QPalette::Link, QColor(120, 175, 235));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(140, 143, 148));
    // As it is done for the colours that come from the desktop.
    QApplication::style()->polish(dark);
    QApplication::setPalette(dark);
}

/// A screen as it is usual today; the platform's own is smaller than the main window.
QByteArray screenOf(const QTemporaryDir& folder) {
    QFile file(folder.filePath(u"screen.json"_s));
    if (!file.open(QIODevice::WriteOnly))
        return "offscreen";
    file.write(R"({"screens":[{"name":"screen","x":0,"y":0,"width":1920,"height":1080,"logicalDpi":96,"dpr":1}]})");
    return "offscreen:configfile=" + QFile::encodeName(file.fileName());
}

/// A person's settings and catalogue, made for this run only.
void prepareHome(const Wanted& wanted, const QTemporaryDir& folder) {
    qputenv("VARIDEX_HOME", QFile::encodeName(folder.path()));
    qputenv("VARIDEX_CONFIG", QFile::encodeName(folder.path()));
    const QString program = QCoreApplication::applicationDirPath();
    QFile::copy(program + u"/../bin/Vx.mdb"_s, folder.filePath(u"Vx.mdb"_s));
    const QFileInfo catalogue(QString::fromLocal8Bit(wanted.catalogue));
    QFile::copy(catalogue.filePath(), folder.filePath(catalogue.fileName()));
    // Show cards lie below their catalogue's folder, and no link leads there.
    QDir(folder.path()).mkdir(u"karten"_s);
    for (const QFileInfo& card : QDir(catalogue.absolutePath() + u"/karten"_s).entryInfoList(QDir::Files))
        QFile::copy(card.filePath(), folder.filePath(u"karten/"_s + card.fileName()));
    const QString data = QFileInfo(QString::fromLocal8Bit(wanted.data)).absoluteFilePath();
    QDir::setCurrent(folder.path());
    const std::pair<QString, QString> settings[] = {
        // The pictures show no path of the machine that they are taken on.
        {u"DatabasePath"_s, u"."_s},
        {u"DatabaseName"_s, catalogue.fileName()},
        {u"DataPath"_s, Paths::native(data)},
    };
    for (const auto& [key, value] : settings)
        CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, key, value);
    mdLanguage::SaveSysSettings(wanted.language == "en" ? 1 : 0, 0);
}

/// Nobody sits at the walk: what a box would say is a fault of it.
class WalkAsker : public QtAsker {
public:
    ui::Answer messageBox(const ui::Box& box) override {
        std::fprintf(stderr, "An unexpected box: %s\n", qUtf8Printable(box.text));
        failed = true;
        return ui::safeAnswer(box.buttons);
    }
    bool failed = false;
};

/// Takes the pictures of one run of the program.
class Walk : public PictureWalk {
public:
    using PictureWalk::PictureWalk;

    void startWindow() {
        frmSplash window;
        window.show();
        take(window, u"start"_s);
    }

    /// The main window with one child in it at a time.
    void mainWindow() {
        frmMain window;
        window.load();
        window.show();
        window.resize(1280, 800);
        window.panelsChanged();
        frmExplorer& first = study(window);
        pages(window, first);
        category(window);
        take(window, u"category"_s);
        jump();
        take(window, u"jump"_s);
        desktop().activate(first);
        selectVariable(first, u"LZUFR"_s);
        request(window);
        crosstab(window, first);
        statistics(window, first);
        comparison(window);
        desktop().activate(first);
        search(window, first);
        find(window, first);
    }

    /// The ways to a catalogue where none is open: the start page and the import.
    void ways(const QString& survey) {
        for (const QString& key : {u"DatabaseName"_s, u"DatabasePath"_s})
            CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, key, QString());
        RecentFiles recent;
        recent.RegistryPath = SettingsKeys::user;
        recent.SetRecentFiles(u"/srv/archiv/umfragen/haushalte.mdb"_s);
        recent.SetRecentFiles(u"./solvarden.mdb"_s);
        frmMain window;
        window.load();
        window.show();
        window.resize(1280, 800);
        take(window, u"ways"_s);
        QFile::copy(survey, u"./solvarden2022.sav"_s);
        frmImport dialog(u"./solvarden2022.sav"_s, u"./solvarden.mdb"_s, nullptr);
        dialog.show();
        take(dialog, u"import"_s);
        auto& study = in<QLineEdit>(dialog, u"txtStudy"_s);
        study.clear();
        for (const QChar c : u"SV2022"_s)
            press(study, 0, QString(c));
        take(dialog, u"import2"_s);
        press(study, 0, u"B"_s);
        in<QPushButton>(dialog, u"cmdImport"_s).click();
        auto& open = in<QPushButton>(dialog, u"cmdOpen"_s);
        waitUntil([&] { return open.isVisible(); }, 30000);
        take(dialog, u"import3"_s);
    }

    void options() {
        frmOptions dialog;
        dialog.show();
        auto* tabs = dialog.findChild<QTabWidget*>(u"tbsOptions"_s);
        for (int i = 0; i < tabs->count(); ++i) {
            tabs->setCurrentIndex(i);
            take(dialog, u"options"_s + (i == 0 ? QString() : QString::number(i + 1)));
        }
        tabs->setCurrentIndex(0);
        in<QLineEdit>(dialog, u"txtDataPath"_s).setText(u"/srv/archiv/date"_s);
        take(dialog, u"options-fault"_s);
    }

    /// The dialogs and boxes that come up on the way.
    void dialogs() {
        modal(u"descriptives"_s, [&] { frmDescriptives(nullptr, nullptr).exec(); });
        modal(u"missing"_s, [&] { frmNewCalculation(u"98, 99"_s, nullptr).exec(); });
        modal(u"about"_s, [] { frmAbout::showInfo(nullptr); });
        frmAbout about;
        about.show();
        about.findChild<QPushButton*>(u"cmdSysInfo"_s)->click();
        take(about, u"about2"_s);
        frmProcess progress([] {});
        progress.lblStatus->setText(u"SV2018: Leben in Solvarden 2018"_s);
        progress.setProgress(3, 7);
        progress.show();
        take(progress, u"progress"_s);
        frmStatus wait;
        wait.setAttribute(Qt::WA_DeleteOnClose, false);
        wait.show();
        take(wait, u"wait"_s);
        QtAsker asker;
        modal(u"question"_s, [&] {
            asker.messageBox({.text = TranslateText(
                                  u"Möchten Sie die ursprünglichen Missing Value Definitionen wiederherstellen?"_s),
                              .icon = ui::Icon::Question,
                              .buttons = ui::Buttons::YesNo});
        });
        modal(u"error"_s, [&] {
            asker.messageBox({.text = u"3024\r\nC:\\Daten\\SV2018.mdb\r\n[frmAuswertung.CreateSQL]"_s,
                              .title = TranslateText(u"Fehler"_s),
                              .icon = ui::Icon::Critical,
                              .buttons = ui::Buttons::AbortRetryIgnore});
        });
        modal(u"input"_s,
              [&] { asker.inputBox(TranslateText(u"Bitte einen Namen eingeben:"_s), QString(), QString()); });
        modal(u"folder"_s, [&] { asker.chooseFolder(u"Datenpfadauswahl"_s, u"."_s); });
    }

private:
    /// A study with a variable of it selected and both panels filled.
    frmExplorer& study(frmMain& window) {
        frmExplorer& first = explorer();
        for (const CatalogueNode& node : first.model().tree.nodes())
            if (node.id() == u"SV2018")
                first.showNode(node.Key);
        first.setPanels(2);
        selectVariable(first, u"WIRTSOL"_s);
        press(in<QAbstractItemView>(first, u"lvListView"_s), Qt::Key_Return);
        selectVariable(first, u"LZUFR"_s);
        take(window, u"main"_s);
        return first;
    }

    /// What the archive keeps with a variable: cards beside their questions, a table, a chart, a card that got lost.
    void pages(frmMain& window, frmExplorer& first) {
        const auto turn = [&](const QString& tabs, int page) {
            in<QTabBar>(first, tabs).setCurrentIndex(page);
            settle();
        };
        for (const CatalogueNode& node : first.model().tree.nodes())
            if (node.id() == u"SV2022")
                first.showNode(node.Key);
        selectVariable(first, u"GESUND"_s);
        press(in<QAbstractItemView>(first, u"lvListView"_s), Qt::Key_Return);
        selectVariable(first, u"LZUFR"_s);
        // A catalogue whose instructions nobody has run has no results to show.
        const bool stored = first.model().pagesB.isEnabled(PanelPages::Table);
        if (stored)
            turn(u"tabShowCard2"_s, PanelPages::Table);
        take(window, u"pages"_s);
        first.setPanels(1);
        take(window, u"pages-card"_s);
        if (stored) {
            turn(u"tabShowCard"_s, PanelPages::Graph);
            in<QToolButton>(first, u"cmdFit"_s).click();
            take(window, u"pages-chart"_s);
            selectVariable(first, u"GESUND"_s);
            turn(u"tabShowCard"_s, PanelPages::Table);
            take(window, u"pages-table"_s);
            selectVariable(first, u"LZUFR"_s);
            turn(u"tabShowCard"_s, PanelPages::ShowCard);
        }
        selectVariable(first, u"WOHNZ"_s);
        take(window, u"pages-lost"_s);
        for (const CatalogueNode& node : first.model().tree.nodes())
            if (node.id() == u"SV2018")
                first.showNode(node.Key);
        first.setPanels(2);
        selectVariable(first, u"LZUFR"_s);
    }

    /// A variable of several studies, found from an entry that lists none.
    void search(frmMain& window, frmExplorer& study) {
        study.showNode(study.model().tree.root()->Key);
        take(window, u"group"_s);
        in<QLineEdit>(study, u"txtQuickFilter"_s).setText(u"zufried"_s);
        selectVariable(study, u"LZUFR"_s);
        take(window, u"search"_s);
        press(in<QAbstractItemView>(study, u"lvListView"_s), Qt::Key_Menu);
        QWidget* menu = QApplication::activePopupWidget();
        if (!menu)
            throw std::runtime_error("no menu opened");
        take(*menu, u"menu"_s);
        menu->close();
    }

    /// The extended search with its hits, and where one of them leads. The other windows come back as they were.
    void find(frmMain& window, frmExplorer& study) {
        frmFind::showFind();
        Form& found = *desktop().activeForm();
        take(window, u"find-empty"_s);
        in<QComboBox>(found, u"txtFind"_s).setEditText(u"zufrieden"_s);
        in<QComboBox>(found, u"txtFind2"_s).setEditText(u"arbeit"_s);
        in<QComboBox>(found, u"cmbAndOr"_s).setCurrentIndex(1);
        in<QPushButton>(found, u"cmd_Find"_s).click();
        waitUntil([&] { return in<QPushButton>(found, u"cmd_Find"_s).isEnabled(); }, 5000);
        take(window, u"find"_s);
        auto& hits = in<QAbstractItemView>(found, u"lstHits"_s);
        hits.setCurrentIndex(hits.model()->index(hits.model()->rowCount() - 1, 0));
        press(hits, Qt::Key_Return);
        take(window, u"find-hit"_s);
        in<QPushButton>(found, u"cmd_Close"_s).click();
        settle();
        desktop().activate(study);
        study.widget().parentWidget()->showMaximized();
        settle();
    }

    /// Opens an analysis of what is selected in the explorer in front.
    static Form& analysis(frmMain& window) {
        window.perform(u"A"_s);
        settle();
        Form* opened = desktop().activeForm();
        if (!opened || opened->windowName() != u"frmAuswertung")
            throw std::runtime_error("no analysis opened");
        return *opened;
    }

    void takeTable(frmMain& window, Form& opened, const QString& name) {
        in<QTabWidget>(opened, u"SSTab"_s).setCurrentIndex(1);
        take(window, name);
    }

    void takeChart(frmMain& window, Form& opened, const QString& name) {
        in<QTabWidget>(opened, u"SSTab"_s).setCurrentIndex(2);
        take(window, name);
        modal(name + u"-options"_s, [&] { in<QPushButton>(opened, u"cmd_ShowOptions"_s).click(); });
    }

    /// The analysis of the selected variable: its request with a weight and a filter, then the table.
    void request(frmMain& window) {
        Form& opened = analysis(window);
        in<QRadioButton>(opened, u"Option3(1)"_s).click();
        in<QRadioButton>(opened, u"optFilter(2)"_s).click();
        auto& filter = in<QLineEdit>(opened, u"txtFilter"_s);
        filter.setFocus();
        for (const QChar c : u"ALTERJ>29"_s)
            press(filter, 0, QString(c));
        press(filter, Qt::Key_Escape);
        take(window, u"request"_s);
        typingFaults(window, opened);
        filter.setText(QString());
        for (const QChar c : u"ALTERJ>29"_s)
            press(filter, 0, QString(c));
        press(filter, Qt::Key_Escape);
        takeTable(window, opened, u"table"_s);
        QtAsker asker;
        ui::Asker* walk = ui::setAsker(&asker);
        modal(u"copied"_s, [&] { in<QPushButton>(opened, u"cmdCopyTable"_s).click(); });
        takeChart(window, opened, u"chart"_s);
        gOptions.MaxItems = 5;
        modal(u"chart-first"_s, [&] { opened.optionsApplied(), in<QPushButton>(opened, u"cmdFirstValue"_s).click(); });
        take(window, u"chart-part"_s);
        gOptions.MaxItems = Options().MaxItems;
        modal(u"chart-size"_s, [&] { in<QPushButton>(opened, u"cmdSaveChartAs"_s).click(); });
        ui::setAsker(walk);
    }

    /// What is said of a filter that is not finished and of a name that is none.
    void typingFaults(frmMain& window, Form& opened) {
        auto& filter = in<QLineEdit>(opened, u"txtFilter"_s);
        filter.setText(QString());
        for (const QChar c : u"(ALTERJ>29 AND GESUND<3"_s)
            press(filter, 0, QString(c));
        press(filter, Qt::Key_Escape);
        waitUntil([] { return false; }, 500); // it is looked at after a pause
        take(window, u"filter-fault"_s);
        auto& search = in<QComboBox>(opened, u"dbcVariableUni"_s);
        search.setFocus();
        search.lineEdit()->selectAll();
        for (const QChar c : u"LZX"_s)
            press(search, 0, QString(c));
        press(search, Qt::Key_Return);
        take(window, u"name-fault"_s);
        press(search, Qt::Key_Escape);
        filter.setFocus();
    }

    /// Two variables of a study crossed, in counts and in percentages of the columns.
    void crosstab(frmMain& window, frmExplorer& study) {
        desktop().activate(study);
        selectVariable(study, u"GESUND"_s);
        auto& list = in<QAbstractItemView>(study, u"lvListView"_s);
        const QModelIndexList second = list.model()->match(list.model()->index(0, 0), Qt::DisplayRole, u"WOHNZ"_s);
        if (!second.isEmpty())
            list.selectionModel()->select(second.first(), QItemSelectionModel::Select | QItemSelectionModel::Rows);
        Form& opened = analysis(window);
        in<QRadioButton>(opened, u"Option3(1)"_s).click();
        takeTable(window, opened, u"crosstab"_s);
        press(in<QComboBox>(opened, u"cbValues"_s), Qt::Key_Down);
        take(window, u"crosstab2"_s);
        takeChart(window, opened, u"chart-crosstab"_s);
        in<QTabWidget>(opened, u"SSTab"_s).setCurrentIndex(0);
        in<QCheckBox>(opened, u"chkVaridexCreation"_s).click();
        take(window, u"request-creation"_s);
    }

    /// All statistics of a variable.
    void statistics(frmMain& window, frmExplorer& study) {
        desktop().activate(study);
        selectVariable(study, u"MIETE"_s);
        Form& opened = analysis(window);
        gOptions.AskMissing = false; // nobody answers here
        in<QRadioButton>(opened, u"Option4(3)"_s).click();
        takeTable(window, opened, u"statistics"_s);
        in<QTabWidget>(opened, u"SSTab"_s).setCurrentIndex(2);
        take(window, u"chart-none"_s);
    }

    /// The entry of a trend view, compared over its studies.
    void comparison(frmMain& window) {
        for (int view = 2; view <= gViews.lastRow(); ++view) {
            if (gViews.at(view, ViewTable::CompAnalysis) != u"1")
                continue;
            window.perform(u"EXPL"_s + QString::number(view));
            settle();
            frmExplorer& trends = explorer();
            trends.showNode(std::next(trends.model().tree.nodes().begin())->Key);
            in<QAbstractItemView>(trends, u"tvTreeView"_s).setFocus();
            settle();
            Form& opened = analysis(window);
            take(window, u"entries"_s);
            takeTable(window, opened, u"comparison"_s);
            takeChart(window, opened, u"chart-comparison"_s);
            return;
        }
        throw std::runtime_error("no trend view");
    }

    /// A view of categories, at a variable that stands in several places.
    void category(frmMain& window) {
        for (int view = 2; view <= gViews.lastRow(); ++view) {
            if (gViews.at(view, ViewTable::CompAnalysis) == u"1")
                continue;
            window.perform(u"EXPL"_s + QString::number(view));
            settle();
            explorer().setPanels(1);
            if (showPlaces(explorer()))
                return;
        }
        throw std::runtime_error("no variable with several places");
    }

    static bool showPlaces(frmExplorer& window) {
        for (const CatalogueNode& node : window.model().tree.nodes()) {
            window.showNode(node.Key);
            settle();
            if (selectVariable(window, u"LZUFR"_s) && window.model().DBList1.size() > 1)
                return true;
        }
        return false;
    }

    /// From there to another of its places.
    void jump() {
        auto& places = in<QListWidget>(explorer(), u"DBList1"_s);
        places.setFocus();
        places.setCurrentRow(places.count() - 1);
        press(places, Qt::Key_Return);
        explorer().setPanels(1);
    }
};

} // namespace

/// take_pictures CATALOGUE DATA FOLDER: walks through the program on a catalogue, without a screen, and leaves pictures
/// of its windows. Settings are made for the run; nobody's own are read or written.
int main(int count, char** arguments) {
    Wanted wanted;
    CLI::App line("Pictures of the program's windows");
    line.add_option("catalogue", wanted.catalogue)->required();
    line.add_option("data", wanted.data, "folder of the case data files")->required();
    line.add_option("folder", wanted.folder, "where the pictures go")->required();
    line.add_option("--language", wanted.language)->check(CLI::IsMember({"de", "en"}));
    line.add_flag("--dark", wanted.dark);
    line.add_option("--scale", wanted.scale)->check(CLI::Range(0.5, 4.0));
    line.add_option("--font-size", wanted.fontSize)->check(CLI::Range(6, 48));
    CLI11_PARSE(line, count, arguments);

    const QTemporaryDir home(QDir::tempPath() + u"/varidex-XXXXXX"_s);
    qputenv("QT_SCALE_FACTOR", QByteArray::number(wanted.scale));
    qputenv("QT_QPA_PLATFORM", screenOf(home));
    QApplication application(count, arguments);
    QApplication::setStyle(new ProgramStyle(u"Fusion"_s));
    if (wanted.dark)
        useDarkPalette();
    if (wanted.fontSize > 0) {
        QFont font = QApplication::font();
        font.setPointSize(wanted.fontSize);
        QApplication::setFont(font);
    }
    WalkAsker asker;
    ui::setAsker(&asker);
    gUnloadWindows = unloadChildWindows;
    const QString folder = QFileInfo(QString::fromLocal8Bit(wanted.folder)).absoluteFilePath();
    const QString samples = QFileInfo(QString::fromLocal8Bit(wanted.data)).absoluteFilePath();
    if (!home.isValid() || !QDir().mkpath(folder))
        return 1;
    prepareHome(wanted, home);
    NumberFormat::setDecimalSeparator(wanted.language == "en" ? u'.' : u',');
    Main::StartServices();
    StandardTexts::followLanguage();
    bool failed = false;
    try {
        Walk walk(wanted, folder);
        walk.startWindow();
        walk.options();
        walk.dialogs();
        walk.mainWindow();
        EditingWalk editing(wanted, folder);
        editing.documents();
        editing.entries();
        editing.menus();
        editing.targets();
        PrintingWalk(wanted, folder).dialogs();
        PreviewWalk previews(wanted, folder);
        previews.preview();
        previews.printJob();
        VdxProcess::programInTests = QCoreApplication::applicationDirPath() + u"/../bin/vdx"_s;
        walk.ways(samples + u"/daten/SV2022.sav"_s);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        failed = true;
    }
    ui::setAsker(nullptr);
    return failed || asker.failed ? 1 : 0;
}
