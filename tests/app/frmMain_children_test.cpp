#include "app/MainWindow.h"

#include "analysis/frmAuswertung.h"
#include "catalogue/CDaoDatabase.h"
#include "explorer/frmExplorer.h"
#include "widgets/ChildArea.h"
#include "widgets/RunGuard.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QTabWidget>
#include <QTimer>
#include <vector>

TEST_F(MainWindow, HiddenWindowsAreListedAndComeBackAndAMaximisedOneLeavesTheNextMaximised) {
    openWithArchive();
    unloadChildWindows();
    std::vector<MainChild*> children;
    for (const QString& title : {u"eins"_s, u"zwei"_s, u"drei & mehr"_s})
        children.push_back(addChild(title));
    EXPECT_TRUE(frameOf(children[2])->isMaximized());
    QTest::keyClick(main.get(), Qt::Key_W, Qt::ControlModifier);
    settle();
    EXPECT_EQ(windowList(), (QStringList{u"&1 eins"_s, u"&2 zwei *"_s, u"&3 drei && mehr (ausgeblendet)"_s}));
    EXPECT_TRUE(frameOf(children[1])->isMaximized());

    QTest::keyClick(main.get(), Qt::Key_F6, Qt::ControlModifier);
    EXPECT_EQ(main->activeForm(), children[0]);
    main->findChild<QAction*>(u"mnuWindowList(3)"_s)->trigger();
    settle();
    EXPECT_EQ(main->activeForm(), children[2]);
    EXPECT_TRUE(children[2]->isVisible());

    frameOf(children[2])->showMaximized();
    frameOf(children[2])->close();
    settle();
    ASSERT_TRUE(main->activeForm());
    EXPECT_TRUE(frameOf(&main->activeForm()->widget())->isMaximized());
    EXPECT_EQ(main->windowTitle(), u"solvarden.mdb - Varidex"_s);
    action(u"mnuFileClose"_s)->trigger();
    action(u"mnuFileClose"_s)->trigger();
    EXPECT_FALSE(main->activeForm());
    EXPECT_FALSE(enabled(u"mnuFileClose"_s));
    EXPECT_EQ(windowList().size(), 2);
}

TEST_F(MainWindow, TilesInTheOrderOfOpeningWhateverWasInFrontLast) {
    openWithArchive();
    unloadChildWindows();
    std::vector<MainChild*> children;
    for (const QString& title : {u"eins"_s, u"zwei"_s, u"drei"_s})
        children.push_back(addChild(title));
    main->activate(*children[1]);
    action(u"mnuWindowTileVertical"_s)->trigger();
    EXPECT_LT(frameOf(children[0])->x(), frameOf(children[1])->x());
    EXPECT_LT(frameOf(children[1])->x(), frameOf(children[2])->x());
    EXPECT_EQ(frameOf(children[0])->y(), frameOf(children[2])->y());
    main->activate(*children[2]);
    action(u"mnuWindowTileHorizontal"_s)->trigger();
    EXPECT_LT(frameOf(children[0])->y(), frameOf(children[1])->y());
    EXPECT_LT(frameOf(children[1])->y(), frameOf(children[2])->y());
    EXPECT_EQ(main->activeForm(), children[2]);
    action(u"mnuWindowCascade"_s)->trigger();
    EXPECT_LT(frameOf(children[0])->x(), frameOf(children[2])->x());
}

TEST_F(MainWindow, ClosesItsChildrenAndItselfInAnyOrder) {
    for (const int order : {0, 1, 2, 3}) {
        openWithArchive();
        MainChild* first = addChild(u"eins"_s);
        addChild(u"zwei"_s);
        if (order == 0) {
            while (Form* form = main->activeForm())
                delete form->widget().parentWidget();
        } else if (order == 1) {
            main->area().closeAllSubWindows();
        } else if (order == 2) {
            frameOf(first)->close();
            mdLanguage::SetLanguage(0);
        }
        settle();
        EXPECT_TRUE(main->close());
        settle();
        EXPECT_EQ(gDatabase.State(), 0);
        EXPECT_EQ(Form::open().size(), 1u) << order;
        main.reset();
    }
    open();
    addChild(u"eins"_s);
    main.reset();
    EXPECT_TRUE(Form::open().empty());
}

TEST_F(MainWindow, NothingGoesAwayInAnEventTurnWhileAWindowIsBuiltOrRefilled) {
    openWithArchive();
    press(u"EXPL1"_s);
    for (const QString& command : {u"mnuAuswertungsansicht"_s, u"mnLngE"_s, u"mnLngG"_s, u"mnuViewOptions"_s,
                                   u"mnuHelpAbout"_s, u"mnuViewExplorers(2)"_s}) {
        int turns = 0;
        const size_t boxes = asker.boxes.size();
        asker.onEventTurn = [&] {
            ++turns;
            main->perform(u"mnFileClose"_s);
            frameOf(&main->activeForm()->widget())->close();
        };
        QTimer::singleShot(0, [&] {
            asker.onEventTurn = nullptr;
            if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
                dialog->reject();
        });
        action(command)->trigger();
        settle();
        EXPECT_GT(turns, 0) << qPrintable(command);
        EXPECT_EQ(gDatabase.State(), 1) << qPrintable(command);
        EXPECT_EQ(asker.boxes.size(), boxes) << qPrintable(command);
        EXPECT_TRUE(enabled(u"EXPL1"_s)) << qPrintable(command);
    }
    EXPECT_EQ(Form::open().size(), 1u + 4u) << "two at first, an analysis and another explorer";
}

TEST_F(MainWindow, AChildThatIsClosedDuringARunStopsItAndGoesAfterIt) {
    openWithArchive();
    unloadChildWindows();
    press(u"EXPL1"_s);
    const QPointer<QMdiSubWindow> frame = frameOf(&main->activeForm()->widget());
    int stops = 0;
    {
        const RunGuard::Scope run([&] { ++stops; }, {});
        EXPECT_FALSE(enabled(u"EXPL1"_s)) << "the frame shows what it refuses";
        EXPECT_TRUE(enabled(u"mnuFileExit"_s));
        frame->close();
        settle();
        EXPECT_EQ(stops, 1);
        EXPECT_TRUE(frame);
        auto* windows = main->findChild<QMenu*>(u"mnuWindow"_s);
        windows->popup(QPoint());
        QTest::keyClick(windows, Qt::Key_Escape);
        EXPECT_FALSE(windows->isVisible()) << "menus work";
        EXPECT_EQ(stops, 1);
    }
    settle();
    EXPECT_FALSE(frame);
    EXPECT_TRUE(enabled(u"EXPL1"_s));
}

TEST_F(MainWindow, AChildComesBackWithItsFocusAndANewOneStaysWithinTheArea) {
    openWithArchive();
    unloadChildWindows();
    press(u"EXPL1"_s);
    auto* explorer = dynamic_cast<frmExplorer*>(main->activeForm());
    ASSERT_TRUE(explorer);
    explorer->showNode(explorer->model().tree.nodes().back().Key);
    auto* list = explorer->findChild<QWidget*>(u"lvListView"_s);
    list->setFocus();
    settle();
    for (int i = 0; i < 2; ++i)
        press(u"EXPL1"_s);
    for (const Qt::KeyboardModifiers back : {Qt::KeyboardModifiers(Qt::ShiftModifier), Qt::KeyboardModifiers()}) {
        main->activate(*explorer);
        EXPECT_TRUE(list->hasFocus());
        QTest::keyClick(main.get(), Qt::Key_F6, Qt::ControlModifier | back);
        settle();
        EXPECT_NE(main->activeForm(), explorer);
    }
    main->activate(*explorer);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_EQ(explorer->place(), frmExplorer::Place::List);

    action(u"mnuWindowTileVertical"_s)->trigger();
    press(u"EXPL2"_s);
    const QRect area = main->area().viewport()->rect();
    EXPECT_TRUE(area.contains(frameOf(&main->activeForm()->widget())->geometry()));
    const QPointer<QMdiSubWindow> front = frameOf(&main->activeForm()->widget());
    QTest::keyClick(main.get(), Qt::Key_F4, Qt::ControlModifier);
    settle();
    EXPECT_FALSE(front) << "closed, where Ctrl+W hides";
}

TEST_F(MainWindow, AnExplorerHasTheKeyboardInItsTreeAndTabFollowsTheEye) {
    openWithArchive();
    main->activateWindow();
    settle();
    auto& explorer = dynamic_cast<frmExplorer&>(main->activeForm()->widget());
    explorer.setPanels(2);
    const auto focus = [] { return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : u"-"_s; };
    QStringList order;
    for (int i = 0; i < 7; ++i) {
        if (!focus().isEmpty())
            order << focus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order.join(u' '), u"tvTreeView txtQuickFilter lvListView txtQuestion lvValues DBList1"_s);
    // A jump to another window leads to the node there.
    explorer.showNode(u"ASV2018"_s);
    auto* list = explorer.findChild<QAbstractItemView*>(u"lvListView"_s);
    list->setFocus();
    list->setCurrentIndex(list->model()->match(list->model()->index(0, 0), Qt::DisplayRole, u"LZUFR"_s).value(0));
    auto* places = explorer.findChild<QListWidget*>(u"DBList1"_s);
    places->setFocus();
    QTest::keyClick(places, Qt::Key_End);
    QTest::keyClick(places, Qt::Key_Return);
    EXPECT_NE(main->activeForm(), &explorer);
    EXPECT_EQ(focus(), u"tvTreeView");
    EXPECT_TRUE(main->activeForm()->widget().isAncestorOf(QApplication::focusWidget()));
    EXPECT_TRUE(enabled(u"V"_s) && enabled(u"mnu1VarWindow"_s)) << "the next key may need them";
    settle();
    EXPECT_EQ(focus(), u"tvTreeView");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(focus(), u"txtQuickFilter");
    // So does one that is opened in front of it.
    for (const QString& key : {u"EXPL3"_s, u"EXPL1"_s}) {
        press(key);
        EXPECT_EQ(focus(), u"tvTreeView") << qPrintable(key);
        EXPECT_TRUE(main->activeForm()->widget().isAncestorOf(QApplication::focusWidget()));
    }
    // After the options it is back where it was.
    main->activate(explorer);
    list->setFocus();
    QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    main->perform(u"O"_s);
    EXPECT_EQ(focus(), u"lvListView");
}

TEST_F(MainWindow, AWindowThatComesWhileTheOneInFrontFillsTheAreaFillsItToo) {
    openWithArchive();
    QWidget* first = &main->activeForm()->widget();
    for (const QString& key : {u"EXPL2"_s, u"EXPL3"_s}) {
        press(key);
        const QMdiSubWindow* front = frameOf(&main->activeForm()->widget());
        ASSERT_NE(front->widget(), first);
        EXPECT_EQ(front->geometry(), main->area().viewport()->rect()) << qPrintable(key);
    }
    main->activate(*Form::open()[1]);
    settle();
    EXPECT_EQ(frameOf(first)->geometry(), main->area().viewport()->rect());
    // Icons are seen on the title bars of both kinds.
    for (const QMdiSubWindow* frame : main->area().subWindowList())
        EXPECT_EQ(frame->windowIcon().cacheKey() == frame->widget()->windowIcon().cacheKey(),
                  frame->widget() != &main->activeForm()->widget());
    frameOf(first)->showNormal();
    press(u"EXPL3"_s);
    EXPECT_FALSE(frameOf(&main->activeForm()->widget())->isMaximized());
}

TEST_F(MainWindow, AContextMenuOffersTheMenusOwnEntriesWhereTheKeyboardIs) {
    openWithArchive();
    main->activateWindow();
    settle();
    auto& explorer = dynamic_cast<frmExplorer&>(main->activeForm()->widget());
    explorer.showNode(u"ASV2018"_s);
    auto* list = explorer.findChild<QAbstractItemView*>(u"lvListView"_s);
    auto* tree = explorer.findChild<QAbstractItemView*>(u"tvTreeView"_s);
    const auto menuOf = [](QAbstractItemView* view) { return view->findChild<QMenu*>(u"mnuContext"_s); };
    const auto closed = [&](QAbstractItemView* view) {
        menuOf(view)->close();
        settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return menuOf(view) == nullptr;
    };
    list->setFocus();
    list->setCurrentIndex(list->model()->index(5, 0));
    for (const auto& [key, modifiers] :
         {std::pair<Qt::Key, Qt::KeyboardModifiers>{Qt::Key_Menu, Qt::NoModifier}, {Qt::Key_F10, Qt::ShiftModifier}}) {
        QTest::keyClick(list, key, modifiers);
        ASSERT_TRUE(menuOf(list)) << key;
        const QRect row = list->visualRect(list->currentIndex());
        EXPECT_EQ(menuOf(list)->pos().y(), list->viewport()->mapToGlobal(row.bottomLeft()).y());
        for (const QString& name : {u"mnuAuswertungsansicht"_s, u"mnu1VarWindow"_s, u"mnuVVEL"_s})
            EXPECT_TRUE(menuOf(list)->actions().contains(action(name))) << qPrintable(name);
        EXPECT_FALSE(menuOf(list)->actions().contains(action(u"mnuEditCut"_s))) << "it does nothing";
        EXPECT_TRUE(closed(list));
    }
    QContextMenuEvent right(QContextMenuEvent::Mouse, {5, 5}, tree->viewport()->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(tree->viewport(), &right);
    ASSERT_TRUE(menuOf(tree));
    EXPECT_EQ(menuOf(tree)->actions().first(), action(u"mnuAuswertungsansicht"_s));
    EXPECT_TRUE(closed(tree));

    QTest::keyClick(tree, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(explorer.findChild<QLineEdit*>(u"txtQuickFilter"_s)->hasFocus());
}

TEST_F(MainWindow, TheOptionsOfTheChartAreThereWhileOneIsInView) {
    openWithArchive();
    press(u"A"_s);
    auto* analysis = dynamic_cast<frmAuswertung*>(main->activeForm());
    ASSERT_TRUE(analysis);
    const QString options = u"mnuViewGraphicOptions"_s;
    EXPECT_FALSE(enabled(options));
    analysis->act([&] {
        analysis->model().edit().StudyClick(u"SV2014"_s);
        analysis->model().edit().chooseVariable(u"GESCHL"_s);
    });
    auto* tabs = analysis->findChild<QTabWidget*>(u"SSTab"_s);
    for (const int tab : {1, 2, 0}) {
        tabs->setCurrentIndex(tab);
        settle();
        EXPECT_EQ(enabled(options), tab == 2) << tab;
        Q_EMIT main->findChild<QMenu*>(u"mnuEdit"_s)->aboutToShow();
        EXPECT_EQ(enabled(u"mnuEditShowPosition"_s), tab == 1) << "rows of the table in front";
        if (tab != 2)
            continue;
        QTimer::singleShot(0, analysis, [] {
            QWidget* dialog = QApplication::activeModalWidget();
            ASSERT_TRUE(dialog && dialog->inherits("QDialog"));
            EXPECT_EQ(dialog->windowTitle(), u"Diagramm-Optionen"_s);
            dialog->close();
        });
        action(options)->trigger();
        settle();
    }
}
