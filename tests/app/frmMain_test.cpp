#include "app/MainWindow.h"

#include "app/start.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "config/frmOptions.h"
#include "explorer/frmExplorer.h"

#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenuBar>
#include <QRadioButton>
#include <QTabBar>
#include <QToolButton>
#include <algorithm>

TEST_F(MainWindow, StandsWithoutACatalogueWhateverTheOptionsSay) {
    for (const QString& name : {QString(), u"weg.mdb"_s}) {
        store(u"DatabasePath"_s, name.isEmpty() ? QString() : home.path(u"nirgends"_s));
        store(u"DatabaseName"_s, name);
        open();
        EXPECT_EQ(panel(), u"Keine Datenbankdateiauswahl"_s);
        EXPECT_FALSE(menuEnabled(u"mnuView"_s) || menuEnabled(u"mnuEdit"_s) || menuEnabled(u"mnuWindow"_s));
        EXPECT_TRUE(menuEnabled(u"mnuOptions"_s) && enabled(u"ODB"_s) && enabled(u"O"_s));
        EXPECT_FALSE(enabled(u"A"_s) || enabled(u"V"_s) || enabled(u"EL"_s) || enabled(u"mnFileClose"_s));
        EXPECT_TRUE(asker.boxes.empty());
    }
}

TEST_F(MainWindow, StandsWithAMissingOrDamagedSystemDatabaseAfterItsBoxes) {
    const QString file = Paths::join(Paths::applicationFolder(), u"Vx.mdb"_s);
    QFile::remove(file);
    Main::StartServices();
    open();
    ASSERT_GE(asker.boxes.size(), 2u);
    EXPECT_EQ(asker.boxes[0].text, u"Die Datenbankdatei "_s + file + u"\r\nkonnte nicht gefunden werden!"_s);
    EXPECT_EQ(asker.boxes[0].title, u"CTextObject"_s);
    EXPECT_EQ(asker.boxes[1].title, u"SysObject"_s);
    EXPECT_TRUE(main->isVisible() && enabled(u"ODB"_s));

    QFile damaged(file);
    ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
    damaged.write("no database");
    damaged.close();
    asker.boxes.clear();
    Main::StartServices();
    open();
    EXPECT_FALSE(asker.boxes.empty());
    EXPECT_EQ(panel(), u"Keine Datenbankdateiauswahl"_s);
    EXPECT_EQ(action(u"mnFileOpen"_s)->text(), u"&Datenbank öffnen..."_s);
}

TEST_F(MainWindow, OpensTheStoredCatalogueWithItsViewsAndTheExplorerItWants) {
    const QString path = openWithArchive();
    EXPECT_EQ(panel(), u"Aktuelle Datenbank: "_s + path);
    const int views = gCatalogueOptions.NumberOfFrmExplorers;
    for (int view = 1; view <= 9; ++view) {
        QAction* entry = action(arrayName(u"mnuViewExplorers"_s, view));
        EXPECT_EQ(entry->isVisible(), view <= views);
        if (view > views)
            continue;
        EXPECT_EQ(entry->text(), gViews.at(view, ViewTable::Name));
        EXPECT_EQ(action(u"EXPL"_s + QString::number(view))->toolTip(), gViews.at(view, ViewTable::Name));
        EXPECT_EQ(action(arrayName(u"mnuViewDescriptions"_s, view))->isVisible(),
                  !gViews.at(view, ViewTable::DescName).isEmpty());
    }
    const int atStart = gCatalogueOptions.OpenFrmExplorerAtStart;
    EXPECT_EQ(main->activeForm() ? main->activeForm()->viewNumber() : 0, atStart);
    press(u"EXPL1"_s);
    ASSERT_TRUE(main->activeForm());
    EXPECT_EQ(main->activeForm()->viewNumber(), 1);
    EXPECT_TRUE(enabled(u"mnuAuswertungsansicht"_s));
    EXPECT_TRUE(enabled(u"SCON"_s) && action(u"SCON"_s)->isChecked());
    EXPECT_EQ(main->windowTitle(), u"solvarden.mdb - Varidex"_s) << "a maximised child leaves the title alone";
}

TEST_F(MainWindow, NoKeyOfTheFrameIsAKeyOfTheAnalysisInItToo) {
    openWithArchive();
    press(u"EXPL1"_s);
    press(u"A"_s);
    QWidget* analysis = main->findChild<QWidget*>(u"SSTab"_s)->parentWidget();
    for (const QString& language : {u"mnLngE"_s, u"mnLngG"_s}) {
        action(language)->trigger();
        settle();
        QMap<QString, QString> frame;
        for (const QAction* entry : main->findChildren<QAction*>())
            frame[entry->shortcut().toString()] += entry->objectName() + u' ';
        for (const QAction* menu : main->menuBar()->actions())
            frame[QKeySequence::mnemonic(menu->text()).toString()] += menu->text() + u' ';
        for (const auto* button : main->findChild<QToolBar*>(u"tbToolBar"_s)->findChildren<QToolButton*>())
            frame[button->shortcut().toString()] += button->text() + u' ';
        EXPECT_GT(frame.size(), 25);
        QSet<QString> own;
        for (const auto* control : analysis->findChildren<QWidget*>()) {
            own << QKeySequence::mnemonic(control->property("text").toString()).toString();
            if (const auto* tabs = qobject_cast<const QTabBar*>(control))
                for (int i = 0; i < tabs->count(); ++i)
                    own << QKeySequence::mnemonic(tabs->tabText(i)).toString();
        }
        own.remove(QString());
        EXPECT_GT(own.size(), 15);
        for (const QString& key : own)
            EXPECT_FALSE(frame.contains(key)) << qPrintable(key + u' ' + frame[key]);
    }
    main->activateWindow();
    analysis->findChild<QWidget*>(u"dbcStudy_1"_s)->setFocus();
    settle();
    const auto chooses = [&](Qt::Key key, const QString& mode) {
        QTest::keyClick(analysis, key, Qt::AltModifier);
        return QTest::qWaitFor([&] { return analysis->findChild<QRadioButton*>(mode)->isChecked(); }, 1000);
    };
    EXPECT_TRUE(chooses(Qt::Key_K, u"Option2"_s) && chooses(Qt::Key_V, u"Option5"_s));
    QTest::keyClick(analysis, Qt::Key_2, Qt::ControlModifier);
    settle();
    ASSERT_TRUE(main->activeForm());
    EXPECT_EQ(main->activeForm()->viewNumber(), 2);
}

TEST_F(MainWindow, AsksBeforeItClosesACatalogueAndRemembersWhatWasOpened) {
    const QString path = openWithArchive();
    MainChild* child = addChild(u"bleibt"_s);
    asker.answer(ui::Answer::No);
    press(u"ODB"_s);
    EXPECT_EQ(asker.lastText(), u"Wollen Sie die aktuelle Datenbank schließen ?"_s);
    EXPECT_EQ(asker.boxes.back().title, u"Varidex"_s);
    EXPECT_EQ(asker.boxes.back().defaultButton, ui::Answer::No) << "Enter keeps the windows";
    EXPECT_EQ(gDatabase.State(), 1);
    EXPECT_EQ(main->activeForm(), child);

    asker.answer(ui::Answer::Yes).file(path);
    press(u"ODB"_s);
    EXPECT_EQ(gDatabase.State(), 1);
    EXPECT_EQ(std::ranges::count(Form::open(), u"frmSample"_s, [](const Form* form) { return form->windowName(); }), 0);
    EXPECT_TRUE(action(u"mnuFileMRU(1)"_s)->isVisible());
    EXPECT_FALSE(action(u"mnuFileMRU(2)"_s)->isVisible());

    const QString cases = Paths::join(gOptions.DataPath, u"SV2018.mdb"_s);
    RecentFiles{.RegistryPath = SettingsKeys::user}.SetRecentFiles(home.path(u"gone.mdb"_s));
    main->load();
    action(u"mnuFileMRU(1)"_s)->trigger();
    EXPECT_TRUE(asker.lastText().contains(u"kann nicht gefunden"_s)) << "nothing is closed for it";
    EXPECT_EQ(gDatabase.Database(), path);
    RecentFiles{.RegistryPath = SettingsKeys::user}.RemoveRecentFile(home.path(u"gone.mdb"_s));
    RecentFiles{.RegistryPath = SettingsKeys::user}.SetRecentFiles(cases);
    main->load();
    action(u"mnuFileMRU(1)"_s)->trigger();
    EXPECT_TRUE(asker.lastText().contains(u"ist eine Falldatei"_s)) << "refused before anything is closed";
    EXPECT_EQ(gDatabase.Database(), path);
    EXPECT_EQ(RecentFiles{.RegistryPath = SettingsKeys::user}.GetRecentFiles(), QStringList{path});
    asker.answer(ui::Answer::Yes).file(cases);
    press(u"ODB"_s);
    EXPECT_EQ(panel(), u"Keine Datenbankdateiauswahl"_s);
    RecentFiles{.RegistryPath = SettingsKeys::user}.SetRecentFiles(path);
    main->load();
    asker.answer(ui::Answer::Yes).file(path);
    press(u"ODB"_s);

    asker.answer(ui::Answer::Yes).file(QString());
    action(u"mnFileOpen"_s)->trigger();
    EXPECT_EQ(gDatabase.State(), 0) << "by then the old one is gone";
    EXPECT_EQ(panel(), u"Keine Datenbankdateiauswahl"_s);
    EXPECT_EQ(main->windowTitle(), u"Varidex"_s);

    action(u"mnuFileMRU(1)"_s)->trigger();
    EXPECT_EQ(panel(), u"Aktuelle Datenbank: "_s + path);
    asker.answer(ui::Answer::Yes);
    action(u"mnFileClose"_s)->trigger();
    EXPECT_EQ(Form::open().size(), 1u);
    QFile::remove(path);
    action(u"mnuFileMRU(1)"_s)->trigger();
    EXPECT_EQ(asker.lastText(), u"Die Datenbankdatei: \r\n"_s + path + u"\r\nkann nicht gefunden werden."_s);
    EXPECT_EQ(panel(), u"Keine Datenbankdateiauswahl"_s);
}

TEST_F(MainWindow, SwitchesItsLanguageAtOnceAndKeepsTheStateOfTheCatalogue) {
    const QString path = openWithArchive();
    action(u"mnLngE"_s)->trigger();
    EXPECT_EQ(gLanguage, 1);
    EXPECT_EQ(panel(), u"Current Database: "_s + path);
    EXPECT_EQ(main->findChild<QMenu*>(u"mnFile"_s)->title(), u"&File"_s);
    EXPECT_EQ(action(u"A"_s)->toolTip(), u"Analysis"_s);
    EXPECT_EQ(action(u"mnuViewExplorers(1)"_s)->text(), gViews.at(1, ViewTable::NameEnglish));
    EXPECT_TRUE(enabled(u"mnLngG"_s) && !enabled(u"mnLngE"_s));
    action(u"mnLngG"_s)->trigger();
    EXPECT_EQ(action(u"A"_s)->toolTip(), u"Auswertung"_s);
    EXPECT_TRUE(enabled(u"mnLngE"_s) && !enabled(u"mnLngG"_s));
}

TEST_F(MainWindow, GivesEachEntryOfAMenuItsOwnMnemonicAndEachCommandItsOwnShortcut) {
    openWithArchive();
    for (const int language : {0, 1}) {
        action(language == 0 ? u"mnLngG"_s : u"mnLngE"_s)->trigger();
        for (const QMenu* menu : main->findChildren<QMenu*>()) {
            QString taken;
            for (const QAction* entry : menu->actions()) {
                const QString text = entry->menu() ? entry->menu()->title() : entry->text();
                const qsizetype mark = QString(text).replace(u"&&"_s, u"__"_s).indexOf(u'&');
                if (entry->isSeparator() || !entry->isVisible() || menu->objectName().isEmpty())
                    continue;
                EXPECT_TRUE(mark >= 0 || !entry->shortcut().isEmpty()) << qPrintable(text);
                const QChar letter = mark < 0 ? QChar() : text.at(mark + 1).toLower();
                // Print and the description of the catalogue were given the same letter.
                EXPECT_TRUE(letter.isNull() || !taken.contains(letter) || text == u"&Drucken...")
                    << qPrintable(text) << " in " << qPrintable(menu->title());
                taken += letter;
            }
        }
    }
    QStringList shortcuts;
    for (const QAction* entry : main->findChildren<QAction*>())
        for (const QKeySequence& keys :
             entry->objectName().startsWith(u"mn") ? entry->shortcuts() : QList<QKeySequence>())
            shortcuts << keys.toString();
    EXPECT_EQ(shortcuts.removeDuplicates(), 0);
}

TEST_F(MainWindow, ThePanelButtonsWorkOnTheActiveExplorerAndElsewhereOnlyChangeTheirState) {
    openWithArchive();
    asker.answer(ui::Answer::Yes);
    action(u"mnFileClose"_s)->trigger();
    action(u"mnu1VarWindow"_s)->trigger();
    EXPECT_TRUE(action(u"V"_s)->isChecked());
    EXPECT_FALSE(action(u"mnu1VarWindow"_s)->isChecked());

    openWithArchive();
    press(u"EXPL1"_s);
    auto* explorer = dynamic_cast<frmExplorer*>(main->activeForm());
    ASSERT_TRUE(explorer);
    press(u"VV"_s);
    EXPECT_EQ(explorer->model().state.lVarWindow, 2);
    EXPECT_TRUE(action(u"VV"_s)->isChecked() && action(u"mnu2VarWindow"_s)->isChecked() &&
                !action(u"V"_s)->isChecked());
    press(u"EXPL1"_s);
    EXPECT_FALSE(action(u"VV"_s)->isChecked()) << "the buttons follow the explorer in front";
    main->activate(*explorer);
    EXPECT_TRUE(action(u"VV"_s)->isChecked());
    action(u"mnu2VarWindow"_s)->trigger();
    EXPECT_EQ(explorer->model().state.lVarWindow, 0);

    const bool english = gOptions.EnglishLanguage, tree = explorer->model().state.bELTree;
    press(u"EL"_s);
    EXPECT_EQ(gOptions.EnglishLanguage, !english);
    EXPECT_EQ(action(u"EL"_s)->isChecked(), !english);
    EXPECT_EQ(explorer->model().state.bELTree, tree) << "open windows keep their language";
}

TEST_F(MainWindow, RefusesCommandsAndItsOwnEndWhileSomethingRuns) {
    openWithArchive();
    press(u"EXPL1"_s);
    const size_t windows = Form::open().size();
    gBusy = 1;
    press(u"EXPL1"_s);
    press(u"ODB"_s);
    press(u"EL"_s);
    EXPECT_EQ(action(u"EL"_s)->isChecked(), gOptions.EnglishLanguage);
    EXPECT_EQ(Form::open().size(), windows);
    EXPECT_FALSE(main->close());
    EXPECT_TRUE(asker.boxes.empty());
    EXPECT_EQ(gDatabase.State(), 1);
    gBusy = 0;
    main->panelsChanged();
    EXPECT_TRUE(enabled(u"EXPL1"_s));
}

TEST_F(MainWindow, SettingsThatCannotBeStoredAtTheEndAreToldOnce) {
    openWithArchive();
    press(u"EXPL1"_s);
    main->activeForm()->widget().findChild<QHeaderView*>()->resizeSection(1, 150);
    QFile::remove(home.path(u"config/user.ini"_s));
    QDir().mkpath(home.path(u"config/user.ini"_s)); // a folder in the file's place
    EXPECT_TRUE(main->close());
    EXPECT_EQ(asker.boxes.size(), 1u);
}

TEST_F(MainWindow, KeepsItsPlaceAndNeedsADataPathForAnAnalysis) {
    openWithArchive();
    main->setGeometry(30, 40, 700, 420);
    settle();
    const QRect place(main->pos(), main->size());
    main->close();
    open();
    EXPECT_EQ(QRect(main->pos(), main->size()), place);
    main->showMaximized();
    settle();
    main->close();
    open();
    EXPECT_TRUE(main->isMaximized());
    EXPECT_EQ(main->normalGeometry().size(), place.size());
}

TEST_F(MainWindow, WithoutAFolderOfTheCasesAnAnalysisLeadsToItsFieldAndOpensOnceItIsSet) {
    const QString path = openWithArchive();
    gOptions.DataPath.clear();
    const auto analyse = [&](Qt::Key end) {
        QString proposed;
        QTimer::singleShot(0, main.get(), [&, end] {
            auto* dialog = dynamic_cast<frmOptions*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            auto* field = dialog->findChild<QLineEdit*>(u"txtDataPath"_s);
            EXPECT_TRUE(dialog->focusWidget() == field && field->isVisible());
            proposed = field->text();
            QTest::keyClick(field, end);
        });
        press(u"A"_s);
        EXPECT_EQ(asker.lastText(), u"Geben Sie in den Optionen den Pfad der Daten an."_s);
        EXPECT_EQ(proposed, Paths::folderOf(path));
    };
    analyse(Qt::Key_Escape);
    EXPECT_EQ(gOptions.DataPath, QString()) << "a proposal holds once it is applied";
    EXPECT_FALSE(main->findChild<QWidget*>(u"SSTab"_s));
    analyse(Qt::Key_Return);
    EXPECT_EQ(gOptions.DataPath, Paths::folderOf(path));
    EXPECT_TRUE(main->findChild<QWidget*>(u"SSTab"_s));
}
