#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/Gesture.h"
#include "explorer/frmExplorer.h"
#include "support/PrintQt.h"
#include "support/TestCatalogue.h"
#include "support/WindowTest.h"
#include "widgets/VariableListView.h"

#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;
using ui::Answer;

namespace {

/// Windows on the standard example, and the mouse over them.
class Drag : public WindowTest {
protected:
    TestCatalogue catalogue{home.path()};
    Gesture gesture{QApplication::startDragDistance()};
    frmExplorer *studies = nullptr, *categories = nullptr, *trends = nullptr;

    Drag() {
        catalogue.fill();
        EXPECT_EQ(catalogue.open(), 1);
        dragFollower() = &gesture;
        gOptions.EditStudiesMode = true;
        int top = 0; // beside each other they would reach beyond the screen
        for (auto [window, view] : {std::pair{&studies, 1}, {&categories, 2}, {&trends, 3}}) {
            *window = frmExplorer::OpenExplorerView(view);
            (*window)->setGeometry(0, top, 780, 250);
            top += 265;
            tree(*window)->expandAll();
        }
        settle();
    }
    ~Drag() override {
        for (frmExplorer* window : {studies, categories, trends})
            delete window;
        dragFollower() = nullptr;
        EXPECT_FALSE(QApplication::overrideCursor());
    }

    static QTreeView* tree(frmExplorer* window) { return window->findChild<QTreeView*>(u"tvTreeView"_s); }
    static VariableListView* list(frmExplorer* window) { return window->findChild<VariableListView*>(u"lvListView"_s); }
    static QModelIndex node(frmExplorer* window, const QString& text) {
        const QAbstractItemModel& model = *tree(window)->model();
        return model.match(model.index(0, 0), Qt::DisplayRole, text, 1, Qt::MatchExactly | Qt::MatchRecursive).value(0);
    }
    static QPoint onScreen(const QAbstractItemView& view, const QModelIndex& index) {
        return view.viewport()->mapToGlobal(view.visualRect(index).center());
    }
    QPoint of(frmExplorer* window, const QString& text) { return onScreen(*tree(window), node(window, text)); }
    QPoint row(frmExplorer* window, int place) {
        return onScreen(*list(window), list(window)->model()->index(place, 0));
    }

    static void send(QAbstractItemView* view, QEvent::Type type, const QPoint& where, Qt::MouseButton button,
                     Qt::MouseButtons held, Qt::KeyboardModifiers keys = {}) {
        QMouseEvent event(type, view->viewport()->mapFromGlobal(QPointF(where)), QPointF(where), button, held, keys);
        QApplication::sendEvent(view->viewport(), &event);
    }
    /// The mouse goes down in a view, and on in steps, as its window hears of it.
    static void begin(QAbstractItemView* view, const QPoint& from, const QPoint& to, Qt::MouseButton button) {
        send(view, QEvent::MouseButtonPress, from, button, button);
        for (const QPoint& where : {from + QPoint(1, 1), (from + to) / 2, to})
            send(view, QEvent::MouseMove, where, Qt::NoButton, button);
    }
    static void end(QAbstractItemView* view, const QPoint& where, Qt::MouseButton button) {
        send(view, QEvent::MouseButtonRelease, where, button, Qt::NoButton);
        settle();
    }
    static void drag(QAbstractItemView* view, const QPoint& from, const QPoint& to, Qt::MouseButton button) {
        begin(view, from, to, button);
        end(view, to, button);
    }
    static qint64 rowsOf(const QString& table, const QString& where) {
        return gDatabase.CurrentDatabase()
            ->OpenRecordset(u"SELECT Count(*) FROM "_s + table + u" WHERE "_s + where)
            ->value(0)
            .toInteger();
    }
};

TEST_F(Drag, TheRightButtonMovesAnEntryAndAClickOfItOpensTheMenu) {
    asker.answer(Answer::Ok);
    drag(tree(categories), of(categories, u"Einstellungen"_s), of(categories, u"Demographie"_s), Qt::RightButton);
    EXPECT_EQ(asker.lastText(),
              u"Möchten Sie die ausgewählten Variablen aus 'Einstellungen' in 'Demographie' verschieben?"_s);
    EXPECT_EQ(rowsOf(u"tkey_Category"_s, u"id = 1 AND fid = 2"_s), 1);
    EXPECT_EQ(SourceNode.key(), u"B1"_s);
    EXPECT_FALSE(categories->findChild<QMenu*>(u"mnuContext"_s));
    // As pressed, the menu is still to come; where the mouse has not moved it opens with the release.
    const QPoint where = of(categories, u"Demographie"_s);
    send(tree(categories), QEvent::MouseButtonPress, where, Qt::RightButton, Qt::RightButton);
    QContextMenuEvent asX11Has(QContextMenuEvent::Mouse, tree(categories)->viewport()->mapFromGlobal(where), where);
    QApplication::sendEvent(tree(categories)->viewport(), &asX11Has);
    EXPECT_FALSE(categories->findChild<QMenu*>(u"mnuContext"_s));
    end(tree(categories), where, Qt::RightButton);
    ASSERT_TRUE(categories->findChild<QMenu*>(u"mnuContext"_s));
    categories->findChild<QMenu*>(u"mnuContext"_s)->close();
}

TEST_F(Drag, SelectedRowsStaySelectedWhileTheyAreDraggedToAnotherWindow) {
    categories->showNode(u"B1"_s);
    list(categories)->selectAll();
    ASSERT_EQ(categories->selectedRows().size(), 2u);
    const QPoint from = row(categories, 1), to = of(trends, u"Trends"_s);
    begin(list(categories), from, to, Qt::LeftButton);
    EXPECT_TRUE(gesture.isDragging());
    EXPECT_EQ(categories->selectedRows().size(), 2u);
    ASSERT_TRUE(QApplication::overrideCursor());
    EXPECT_TRUE(tree(trends)->viewport()->findChild<QWidget*>(u"dropMark"_s));
    asker.answer(Answer::Ok);
    end(list(categories), to, Qt::LeftButton);
    EXPECT_EQ(rowsOf(u"trel_VariableTrend"_s, u"fid = 0"_s), 2);
    EXPECT_EQ(categories->selectedRows().size(), 2u);
    EXPECT_FALSE(tree(trends)->viewport()->findChild<QWidget*>(u"dropMark"_s));
}

TEST_F(Drag, WithShiftTheMouseDrawsASelectionOverTheRows) {
    categories->showNode(u"B1"_s);
    drag(list(categories), row(categories, 0), row(categories, 0), Qt::LeftButton);
    const std::pair<QEvent::Type, int> steps[] = {
        {QEvent::MouseButtonPress, 0}, {QEvent::MouseMove, 1}, {QEvent::MouseButtonRelease, 1}};
    for (const auto& [type, place] : steps)
        send(list(categories), type, row(categories, place), Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
    EXPECT_FALSE(gesture.isDragging());
    EXPECT_EQ(categories->selectedRows().size(), 2u);
}

TEST_F(Drag, WhatIsCancelledDropsNothing) {
    const QPoint from = of(categories, u"Einstellungen"_s), to = of(categories, u"Demographie"_s);
    const std::function<void()> ways[] = {
        [&] { QTest::keyClick(tree(categories), Qt::Key_Escape); },
        [&] {
            QEvent lost(QEvent::WindowDeactivate);
            QApplication::sendEvent(categories->window(), &lost);
        },
        [&] { send(tree(categories), QEvent::MouseMove, to, Qt::NoButton, Qt::NoButton); },
        [&] { send(tree(categories), QEvent::MouseButtonPress, to, Qt::LeftButton, Qt::LeftButton | Qt::RightButton); },
    };
    for (const auto& cancel : ways) {
        begin(tree(categories), from, to, Qt::RightButton);
        ASSERT_TRUE(gesture.isDragging());
        cancel();
        EXPECT_FALSE(gesture.isDragging());
        EXPECT_FALSE(QApplication::overrideCursor());
        end(tree(categories), to, Qt::RightButton);
        EXPECT_FALSE(categories->findChild<QMenu*>(u"mnuContext"_s));
    }
    // Beside trees and lists nothing is dropped, and a window that closes takes its drag along.
    drag(tree(categories), from, categories->mapToGlobal(QPoint(2, 2)), Qt::LeftButton);
    begin(tree(trends), of(trends, u"Zufriedenheit"_s), to, Qt::LeftButton);
    delete std::exchange(trends, nullptr);
    EXPECT_FALSE(gesture.isDragging());
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(Drag, AClosedNodeOpensUnderAMouseThatRests) {
    tree(categories)->collapse(node(categories, u"Einstellungen"_s));
    const QPoint from = of(categories, u"Demographie"_s), to = of(categories, u"Einstellungen"_s);
    begin(tree(categories), from, to, Qt::LeftButton);
    QTest::qWait(300);
    EXPECT_FALSE(tree(categories)->isExpanded(node(categories, u"Einstellungen"_s)));
    EXPECT_TRUE(QTest::qWaitFor([&] { return tree(categories)->isExpanded(node(categories, u"Einstellungen"_s)); }));
    QTest::keyClick(tree(categories), Qt::Key_Escape);
    end(tree(categories), to, Qt::LeftButton);
}

} // namespace
