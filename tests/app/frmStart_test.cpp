#include "app/MainWindow.h"
#include "app/RecentFiles.h"
#include "app/VdxProcess.h"
#include "app/frmImport.h"
#include "app/frmProcess.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "explorer/frmExplorer.h"

#include <QApplication>
#include <QCheckBox>
#include <QCommandLinkButton>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace {

/// The frame without a catalogue, and what leads from there to one.
class StartPage : public MainWindow {
protected:
    StartPage() { VdxProcess::programInTests = QStringLiteral(VARIDEX_BINARIES "/vdx"); }
    ~StartPage() override { VdxProcess::programInTests.clear(); }

    const QString survey = QStringLiteral(VARIDEX_SAMPLES "/daten/SV2018.sav");

    bool isShown() const {
        const auto* page = main->findChild<QWidget*>(u"startPage"_s);
        return page && page->isVisible();
    }
    QCommandLinkButton* way(const QString& name) const { return main->findChild<QCommandLinkButton*>(name); }
    /// In place of vdx, a program that does what the lines say.
    void useScript(const QByteArray& lines) {
        QFile script(home.path(u"vdx"_s));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\n" + lines);
        script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        VdxProcess::programInTests = script.fileName();
    }
    /// Does something in the dialog that comes up next, as soon as it is there.
    template<class Dialog, class Step>
    void then(Step&& step) {
        auto* watch = new QTimer(main.get());
        QObject::connect(watch, &QTimer::timeout, main.get(), [watch, step] {
            auto* dialog = dynamic_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog || !dialog->isVisible())
                return;
            watch->deleteLater();
            watch->stop();
            step(*dialog);
        });
        watch->start(5);
    }
    template<class Widget>
    static Widget* in(QWidget& dialog, const QString& name) {
        auto* found = dialog.findChild<Widget*>(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return found;
    }
    static QString stateOf(QWidget& dialog) { return in<QLabel>(dialog, u"lblState"_s)->text(); }
    /// Types file and catalogue, and imports. @return what the dialog says at the end
    static QString import(frmImport& dialog, const QString& file, const QString& catalogue) {
        const std::pair<QString, QString> typed[] = {{u"txtFile"_s, file}, {u"txtCatalogue"_s, catalogue}};
        for (const auto& [name, text] : typed) {
            in<QLineEdit>(dialog, name)->selectAll();
            QTest::keyClicks(in<QLineEdit>(dialog, name), text);
        }
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !in<QPushButton>(dialog, u"cmdStop"_s)->isVisible(); }, 20000));
        return stateOf(dialog);
    }
    QStringList leftIn(const QString& folder) const {
        return QDir(home.path(folder)).entryList(QDir::Files | QDir::Hidden);
    }
};

} // namespace

TEST_F(StartPage, StandsWhereNoCatalogueIsOpenAndLeadsToTheLastOnes) {
    const QString path = openSampleArchive();
    mdDataBase::CloseDataBase();
    RecentFiles recent;
    recent.RegistryPath = SettingsKeys::user;
    recent.SetRecentFiles(path);
    recent.SetRecentFiles(home.path(u"gone.mdb"_s));
    open();
    ASSERT_TRUE(isShown());
    EXPECT_EQ(way(u"cmdStartRecent(1)"_s)->description(), home.path() + u" (nicht mehr da)"_s);
    EXPECT_EQ(way(u"cmdStartRecent(2)"_s)->text(), u"&2  solvarden.mdb"_s);
    EXPECT_EQ(way(u"cmdStartRecent(2)"_s)->description(), home.path());
    EXPECT_EQ(main->focusWidget(), way(u"cmdStartRecent(2)"_s)) << "the last that is there";
    for (const QString& language : {u"mnLngE"_s, u"mnLngG"_s}) {
        action(language)->trigger();
        settle();
        QStringList letters;
        for (const QMenu* menu : {main->findChild<QMenu*>(u"mnFile"_s), main->findChild<QMenu*>(u"mnuOptions"_s),
                                  main->findChild<QMenu*>(u"mnuHelp"_s)})
            letters << QKeySequence::mnemonic(menu->title()).toString();
        for (const auto* button : main->findChildren<QCommandLinkButton*>())
            letters << QKeySequence::mnemonic(button->text()).toString();
        EXPECT_EQ(letters.removeDuplicates(), 0) << qPrintable(letters.join(u' '));
        EXPECT_EQ(letters.size(), 8);
    }
    EXPECT_EQ(way(u"cmdStartOpen"_s)->text(), u"Da&tenbank öffnen..."_s) << "in the language of the program";

    QTest::keyClick(way(u"cmdStartRecent(1)"_s), Qt::Key_Return);
    settle();
    EXPECT_TRUE(asker.lastText().contains(u"kann nicht gefunden werden"_s));
    QTest::keyClick(way(u"cmdStartRecent(2)"_s), Qt::Key_Return);
    settle();
    EXPECT_EQ(gDatabase.State(), 1);
    EXPECT_FALSE(isShown());
    asker.answer(ui::Answer::Yes);
    action(u"mnFileClose"_s)->trigger();
    EXPECT_TRUE(isShown());
    VdxProcess::programInTests = home.path(u"nowhere"_s);
    action(u"mnLngE"_s)->trigger();
    EXPECT_FALSE(way(u"cmdStartImport"_s)->isEnabled()) << "without vdx there is nothing to import with";
}

TEST_F(StartPage, TheSampleArchiveIsBuiltOnceAndOpenedWithItsCases) {
    open();
    QTest::keyClick(way(u"cmdStartSample"_s), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([] { return gDatabase.State() == 1; }, 60000));
    settle();
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    const QString catalogue = gDatabase.Database();
    EXPECT_TRUE(catalogue.startsWith(home.path()));
    EXPECT_EQ(gOptions.DataPath, Paths::folderOf(catalogue));
    const auto studies =
        gDatabase.CurrentDatabase()->OpenRecordset(u"SELECT Count(*) FROM tkey_Study WHERE dt_IsGroup = 0"_s);
    EXPECT_EQ(studies->value(0).toInteger(), 3);
    asker.answer(ui::Answer::Yes);
    action(u"mnFileClose"_s)->trigger();
    VdxProcess::programInTests = home.path(u"nowhere"_s);
    action(u"mnLngE"_s)->trigger();
    QTest::keyClick(way(u"cmdStartSample"_s), Qt::Key_Return);
    settle();
    EXPECT_EQ(gDatabase.Database(), catalogue) << "the one that is there";
}

TEST_F(StartPage, ABuildThatIsStoppedOrCrashesIsToldAndNothingOpens) {
    open();
    const std::pair<QByteArray, QString> cases[] = {
        {"echo progress 7 >&2\nexec sleep 60\n", u"Der Vorgang wurde angehalten"_s},
        {"kill -SEGV $$\n", u"ist abgestürzt"_s},
        {"echo 'So geht es nicht' >&2\nexit 1\n", u"So geht es nicht"_s}};
    for (const auto& [script, words] : cases) {
        useScript(script);
        if (script.startsWith("echo progress"))
            then<frmProcess>([](frmProcess& window) {
                EXPECT_TRUE(QTest::qWaitFor([&] { return window.pgbProgress->value() == 7; }, 5000));
                window.reject();
            });
        main->perform(u"sample"_s);
        EXPECT_TRUE(asker.lastText().contains(words)) << qPrintable(asker.lastText());
        EXPECT_EQ(gDatabase.State(), 0);
        EXPECT_TRUE(isShown());
    }
}

TEST_F(StartPage, ASurveyFileBecomesACatalogueAndItsFactsAreShown) {
    open();
    const QString catalogue = home.path(u"neu.mdb"_s);
    then<frmImport>([&](frmImport& dialog) {
        EXPECT_FALSE(in<QPushButton>(dialog, u"cmdImport"_s)->isEnabled());
        in<QCheckBox>(dialog, u"chkEncode"_s)->setChecked(true);
        EXPECT_EQ(import(dialog, survey, catalogue), u"Die Studie SV2018 ist im Katalog."_s);
        const QString facts = in<QPlainTextEdit>(dialog, u"txtFacts"_s)->toPlainText();
        EXPECT_TRUE(facts.contains(u"Fälle: 1200"_s)) << qPrintable(facts);
        // A second one into the same catalogue, under a number that is free.
        EXPECT_EQ(import(dialog, survey, catalogue), u"Die Studie SV2018x2 ist im Katalog."_s);
        in<QPushButton>(dialog, u"cmdOpen"_s)->click();
    });
    QTest::keyClick(way(u"cmdStartImport"_s), Qt::Key_Return);
    ASSERT_TRUE(QTest::qWaitFor([] { return gDatabase.State() == 1; }, 20000));
    settle();
    EXPECT_EQ(gDatabase.Database(), catalogue);
    EXPECT_EQ(gDatabase.CurrentDatabase()->OpenRecordset(u"tkey_Study"_s)->RecordCount(), 2);
    EXPECT_EQ(gOptions.DataPath, home.path()) << "where the program has put the cases";
    EXPECT_EQ(main->windowTitle(), u"neu.mdb - Varidex"_s);
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(StartPage, AnImportThatFailsIsStoppedOrCrashesSaysSoAndLeavesNothing) {
    open();
    QDir(home.path()).mkdir(u"da"_s);
    QFile broken(home.path(u"kaputt.sav"_s));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("$FL2@(#) SPSS DATA FILE, cut off");
    broken.close();
    const struct {
        QByteArray script;
        QString file, words;
        bool stop = false;
    } cases[] = {{{}, broken.fileName(), u"abgeschnitten oder nicht lesbar"_s},
                 {"kill -ABRT $$\n", survey, u"ist abgestürzt"_s},
                 {"exit 3\n", survey, u"endete ohne ein Wort (3)"_s},
                 {"exec sleep 60\n", survey, u"angehalten"_s, true}};
    for (const auto& c : cases) {
        if (!c.script.isEmpty())
            useScript(c.script);
        then<frmImport>([&](frmImport& dialog) {
            if (c.stop) {
                // Escape asks first, and keeps what runs unless it is told otherwise.
                asker.answer(ui::Answer::No).answer(ui::Answer::Yes);
                QTimer::singleShot(300, &dialog, [&dialog] {
                    dialog.reject();
                    EXPECT_TRUE(in<QPushButton>(dialog, u"cmdStop"_s)->isVisible());
                    dialog.reject();
                });
            }
            const QString state = import(dialog, c.file, home.path(u"da/neu.mdb"_s));
            EXPECT_TRUE(state.contains(c.words)) << qPrintable(state);
            EXPECT_FALSE(in<QPushButton>(dialog, u"cmdOpen"_s)->isVisible());
            dialog.reject();
        });
        main->perform(u"mnuFileImport"_s);
        EXPECT_EQ(leftIn(u"da"_s), QStringList());
        EXPECT_EQ(gDatabase.State(), 0);
    }
}

TEST_F(StartPage, ACatalogueThatIsOpenIsClosedForAnImportAndOpenedAgain) {
    const QString path = openWithArchive();
    EXPECT_FALSE(isShown());
    const auto importInto = [&](ui::Answer answer) {
        then<frmImport>([&, answer](frmImport& dialog) {
            EXPECT_EQ(in<QLineEdit>(dialog, u"txtCatalogue"_s)->text(), path);
            asker.answer(answer);
            const QString state = import(dialog, survey, path);
            EXPECT_EQ(asker.boxes.back().defaultButton, ui::Answer::No);
            EXPECT_EQ(gDatabase.State(), answer == ui::Answer::No ? 1 : 0);
            EXPECT_EQ(state.isEmpty(), answer == ui::Answer::No) << qPrintable(state);
            dialog.reject();
        });
        main->perform(u"mnuFileImport"_s);
        settle();
        EXPECT_EQ(gDatabase.Database(), path);
    };
    importInto(ui::Answer::No);
    EXPECT_TRUE(main->activeForm()) << "its windows stay";
    importInto(ui::Answer::Yes);
    EXPECT_EQ(gDatabase.CurrentDatabase()
                  ->OpenRecordset(u"SELECT * FROM tkey_Study WHERE id_StudyNo = 'SV2018x2'"_s)
                  ->RecordCount(),
              1);
    // A survey file that is opened as a catalogue leads here, too.
    asker.answer(ui::Answer::Yes).answer(ui::Answer::Yes).file(survey);
    then<frmImport>([&](frmImport& dialog) {
        EXPECT_EQ(in<QLineEdit>(dialog, u"txtFile"_s)->text(), survey);
        dialog.reject();
    });
    press(u"ODB"_s);
    EXPECT_TRUE(asker.lastText().contains(u"Wollen Sie sie importieren?"_s)) << qPrintable(asker.lastText());
    EXPECT_TRUE(isShown());
}
