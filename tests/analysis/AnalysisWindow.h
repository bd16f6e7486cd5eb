#pragma once

#include "analysis/frmAuswertung.h"
#include "app/globals.h"
#include "config/Options.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "tables/tableText.h"
#include "widgets/ChoicePicker.h"
#include "widgets/EntryList.h"
#include "widgets/FilterLine.h"
#include "widgets/ResultTableView.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

/// An analysis window on the sample archive, and a person's gestures in it.
class AnalysisWindow : public WindowTest {
protected:
    frmAuswertung* window = nullptr;

    void open() {
        openSampleArchive();
        window = frmAuswertung::openFrom(nullptr);
        window->setAttribute(Qt::WA_DeleteOnClose, false);
        window->activateWindow();
        settle();
    }
    ~AnalysisWindow() override { delete window; }

    template<class Widget>
    Widget* the(const QString& name) {
        auto* found = window->findChild<Widget*>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    /// Chooses as a person does who types and presses Enter.
    void type(const QString& picker, const QString& text) {
        auto* list = the<ChoicePicker>(picker);
        list->setFocus();
        list->lineEdit()->selectAll();
        QTest::keyClicks(list, text);
        QTest::keyClick(list, Qt::Key_Enter);
        settle();
    }
    void chooseStudy(const QString& number) {
        auto* picker = the<ChoicePicker>(u"dbcStudy_1"_s);
        picker->setFocus();
        QTest::keyClick(picker, Qt::Key_Home);
        for (int i = 0; i < picker->count() && picker->currentText() != number; ++i)
            QTest::keyClick(picker, Qt::Key_Down);
        ASSERT_EQ(window->model().request().dbcStudy.value, number);
    }
    void press(const QString& button) {
        QTest::mouseClick(the<QAbstractButton>(button), Qt::LeftButton, {},
                          QPoint(8, the<QAbstractButton>(button)->height() / 2));
        settle();
    }
    /// Does something in the modal dialog that comes next.
    template<class Steps>
    void inDialog(Steps&& steps) {
        QTimer::singleShot(0, window, [steps, this] {
            auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr) << "no dialog";
            steps(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        });
    }
    void goTo(int tab) {
        QTabBar* bar = the<QTabWidget>(u"SSTab"_s)->tabBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center());
        settle();
    }
    void click(const QString& button) {
        QTest::mouseClick(the<QPushButton>(button), Qt::LeftButton);
        settle();
    }
    /// What the grid paints, as a reader of rows would write it down.
    QString row(int number) {
        const ResultTable& table = the<ResultTableView>(u"mfgGrid"_s)->table();
        return number < table.Rows() ? tableRows(table)[static_cast<size_t>(number)].join(u'|') : QString();
    }
    void selectCell(int tableRow, int tableColumn) {
        auto* grid = the<ResultTableView>(u"mfgGrid"_s);
        grid->setCurrentIndex(grid->model()->index(tableRow - 1, tableColumn - 1));
        grid->setFocus();
    }
    QString state() {
        return the<QLabel>(u"lblState"_s)->isVisibleTo(window) ? the<QLabel>(u"lblState"_s)->text() : QString();
    }
    void openTable(const QString& variable = u"GESCHL"_s) {
        open();
        chooseStudy(u"SV2014"_s);
        type(u"dbcVariableUni"_s, variable);
        goTo(1);
    }
};
