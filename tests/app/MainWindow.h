#pragma once

#include "app/frmMain.h"
#include "app/globals.h"
#include "config/CProfile.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"

#include <QLabel>
#include <QMdiSubWindow>
#include <QMenu>
#include <QTest>
#include <QToolBar>
#include <memory>

using namespace Qt::StringLiterals;

/// A child window of no kind that the frame knows.
class MainChild : public QWidget, public Form {
public:
    explicit MainChild(const QString& title) : Form(*this, u"frmSample"_s) { setWindowTitle(title); }
};

/// The frame window with the sample archive or without a catalogue, and a person's gestures in it.
class MainWindow : public WindowTest {
protected:
    std::unique_ptr<frmMain> main;

    MainWindow() { gUnloadWindows = unloadChildWindows; }
    ~MainWindow() override {
        gUnloadWindows = nullptr;
        mdLanguage::showStartWindow = nullptr;
        gBusy = 0;
    }

    void open() {
        main.reset();
        main = std::make_unique<frmMain>();
        main->load();
        main->show();
        settle();
    }
    /// Opens the window with the sample archive in it.
    QString openWithArchive() {
        const QString path = openSampleArchive();
        mdDataBaseIsStored(path);
        open();
        return path;
    }
    static void mdDataBaseIsStored(const QString& path) {
        store(u"DatabasePath"_s, Paths::folderOf(path));
        store(u"DatabaseName"_s, Paths::fileOf(path));
    }
    static void store(const QString& name, const QString& text) {
        CProfile().SetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, name, text);
    }
    QAction* action(const QString& name) const {
        auto* found = main->findChild<QAction*>(name);
        EXPECT_TRUE(found) << qPrintable(name);
        return found;
    }
    bool enabled(const QString& name) const { return action(name)->isEnabled(); }
    bool menuEnabled(const QString& name) const { return main->findChild<QMenu*>(name)->isEnabled(); }
    QString panel() const { return main->findChild<QLabel*>(u"panel1"_s)->text(); }
    /// A click of the mouse on a button of the toolbar.
    void press(const QString& key) {
        auto* bar = main->findChild<QToolBar*>(u"tbToolBar"_s);
        QTest::mouseClick(bar->widgetForAction(action(key)), Qt::LeftButton);
        settle();
    }
    MainChild* addChild(const QString& title) {
        auto* child = new MainChild(title);
        main->adopt(*child);
        settle();
        return child;
    }
    static QMdiSubWindow* frameOf(QWidget* child) { return qobject_cast<QMdiSubWindow*>(child->parentWidget()); }
    QStringList windowList() {
        Q_EMIT main->findChild<QMenu*>(u"mnuWindow"_s)->aboutToShow();
        QStringList titles;
        for (const QAction* entry : main->findChild<QMenu*>(u"mnuWindow"_s)->actions())
            if (entry->objectName().startsWith(u"mnuWindowList("))
                titles << entry->text() + (entry->isChecked() ? u" *"_s : QString());
        return titles;
    }
};
