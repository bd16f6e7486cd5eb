#include "editing/frmEdit.h"

#include "editing/frmPosition.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "widgets/QtAsker.h"

#include <QApplication>
#include <QClipboard>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

class EditWindows : public WindowTest {
protected:
    template<class Window>
    static Window& shown(Window& window) {
        window.QDialog::show();
        window.activateWindow();
        settle();
        return window;
    }
    /// Does something in the modal window that a step opens.
    template<class Step>
    static void meanwhile(const std::function<void(QWidget&)>& act, Step&& step) {
        QTimer::singleShot(0, qApp, [&] { act(*QApplication::activeModalWidget()); });
        step();
    }
    static QStringList linesOf(const frmPosition& window) {
        QStringList lines;
        for (const int place : window.places())
            lines << QString::number(place);
        return lines;
    }
};

TEST_F(EditWindows, ATextKeepsWhatNobodyTouches) {
    const QString nbsp = QString(QChar::Nbsp);
    const struct {
        QString before;
        int line;      ///< whose beginning the cursor goes to
        QString typed; ///< "\r" for Enter
        QString after;
    } cases[] = {
        {u"a\r\nb\nc"_s, 0, QString(), u"a\r\nb\nc"_s},
        {u"a\r\nb\nc"_s, 2, u"x"_s, u"a\r\nb\nxc"_s},
        {u"a\r\nb\nc"_s, 0, u"x"_s, u"xa\r\nb\nc"_s},
        {u"a\nb"_s, 1, u"x\r"_s, u"a\nx\nb"_s},
        {u"a\r\nb"_s, 1, u"x\r"_s, u"a\r\nx\r\nb"_s},
        {u"ab"_s, 0, u"x\r"_s, u"x\r\nab"_s},
        {u"1"_s + nbsp + u"%\r\n<b>fett</b> 'x' \"y\""_s, 1, u"ß漢"_s,
         u"1"_s + nbsp + u"%\r\nß漢<b>fett</b> 'x' \"y\""_s},
    };
    for (const auto& [before, line, typed, after] : cases) {
        frmEdit window(u"Text"_s, before, before, nullptr);
        auto& text = *shown(window).findChild<QPlainTextEdit*>();
        EXPECT_TRUE(text.hasFocus());
        for (int i = 0; i < line; ++i)
            QTest::keyClick(&text, Qt::Key_Down);
        QTest::keyClick(&text, Qt::Key_Home);
        for (const QChar c : typed)
            c == u'\r' ? QTest::keyClick(&text, Qt::Key_Return)
                       : QTest::sendKeyEvent(QTest::Click, &text, Qt::Key_unknown, QString(c), {});
        EXPECT_EQ(window.text(), after);
        QTest::keyClick(&text, Qt::Key_Return, Qt::ControlModifier);
        EXPECT_EQ(window.result(), int(QDialog::Accepted));
    }
    const QString lengthy = QString(u"Zeile\r\n"_s).repeated(10000);
    EXPECT_EQ(frmEdit(u"Text"_s, lengthy, QString(), nullptr).text(), lengthy);
}

TEST_F(EditWindows, WhatWasTypedIsNotLostByEscape) {
    frmEdit window(u"Text"_s, u"alt"_s, u"alt"_s, nullptr);
    auto& text = *shown(window).findChild<QPlainTextEdit*>();
    auto* rich = new QMimeData;
    rich->setHtml(u"<b>fett</b>"_s);
    rich->setText(u"fett"_s);
    QApplication::clipboard()->setMimeData(rich);
    text.paste();
    EXPECT_EQ(window.text(), u"fettalt"_s);
    asker.answer(ui::Answer::No).answer(ui::Answer::No).answer(ui::Answer::Yes);
    QTest::keyClick(&text, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    window.close();
    EXPECT_TRUE(window.isVisible());
    window.findChild<QPushButton*>(u"cmdCancel"_s)->click();
    EXPECT_FALSE(window.isVisible());
    frmEdit untouched(u"Text"_s, u"alt"_s, u"alt"_s, nullptr);
    QTest::keyClick(shown(untouched).findChild<QPlainTextEdit*>(), Qt::Key_Escape);
    EXPECT_FALSE(untouched.isVisible());
    // After a failed write it comes back with what was typed, which is stored nowhere.
    asker.answer(ui::Answer::No);
    frmEdit again(u"Text"_s, u"neu"_s, u"alt"_s, nullptr);
    QTest::keyClick(shown(again).findChild<QPlainTextEdit*>(), Qt::Key_Escape);
    EXPECT_TRUE(again.isVisible());
}

TEST_F(EditWindows, LinesMoveByButtonsAndKeys) {
    frmPosition window({.lines = {u"a"_s, u"b\nb"_s, u"c"_s, u"d"_s}, .current = 1}, nullptr);
    auto& list = *shown(window).findChild<QListWidget*>();
    auto* up = window.findChild<QPushButton*>(u"cmdUp"_s);
    EXPECT_EQ(list.currentItem()->text(), u"b b"_s);
    const auto expect = [&](const char* order, int current) {
        EXPECT_EQ(linesOf(window).join(QString()), QString::fromLatin1(order));
        EXPECT_EQ(list.currentRow(), current);
    };
    QTest::mouseClick(window.findChild<QPushButton*>(u"cmdDown"_s), Qt::LeftButton);
    expect("0213", 2);
    QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
    expect("0231", 3);
    QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
    expect("0231", 3);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(list.item(3)).center());
    EXPECT_TRUE(window.isVisible());
    frmPosition::repeatTime = 20;
    QTest::mousePress(up, Qt::LeftButton);
    expect("0213", 2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return list.currentRow() == 0; }));
    QTest::mouseRelease(up, Qt::LeftButton);
    expect("1023", 0);
    QTest::keyClick(&list, Qt::Key_Down, Qt::AltModifier);
    QTest::qWait(50);
    expect("0123", 1);
    frmPosition::repeatTime = 1728;
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(window.result(), int(QDialog::Accepted));
}

TEST_F(EditWindows, AQuestionThatMustBeAnsweredIsClosedByItsButtonsAlone) {
    QtAsker dialogs;
    ui::Answer answer = ui::Answer::Cancel;
    meanwhile(
        [](QWidget& box) {
            QTest::keyClick(&box, Qt::Key_Escape);
            box.close();
            EXPECT_TRUE(box.isVisible());
            auto& window = dynamic_cast<QMessageBox&>(box);
            EXPECT_EQ(window.defaultButton(), window.button(QMessageBox::No));
            QTest::mouseClick(window.button(QMessageBox::Yes), Qt::LeftButton);
        },
        [&] {
            answer = dialogs.messageBox({.text = u"Studie?"_s,
                                         .buttons = ui::Buttons::YesNo,
                                         .defaultButton = ui::Answer::No,
                                         .mustAnswer = true});
        });
    EXPECT_EQ(answer, ui::Answer::Yes);
}

TEST_F(EditWindows, ANameThatIsLeftAsItIsComesBackWhole) {
    QtAsker dialogs;
    for (const QString& name : {QString(70000, u'n'), u"zwei\nZeilen"_s, u"<b>x</b> 'y' \"z\""_s}) {
        std::optional<QString> answer;
        meanwhile([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); },
                  [&] { answer = dialogs.inputBox(u"<b>Name</b>:"_s, QString(), name); });
        EXPECT_TRUE(answer && *answer == name) << qPrintable(answer.value_or(QString()).left(40));
    }
}

} // namespace
