#include "editing/frmTreeChoice.h"

#include "support/PrintQt.h"
#include "support/WindowTest.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

class TreeChoice : public WindowTest {
protected:
    ui::TreeChoice choice{.title = u"Kopieren nach"_s,
                          .entries = {{.text = u"Kategorien"_s},
                                      {.text = u"Einstellungen"_s, .parent = 0, .selectable = false, .why = u"darum"_s},
                                      {.text = u"Vertrauen in andere"_s, .parent = 1},
                                      {.text = u"Vertrauen"_s, .parent = 0}},
                          .current = 3};
};

TEST_F(TreeChoice, IsFoundByTypingAndSaysWhyAnEntryCannotBeChosen) {
    frmTreeChoice window(choice, nullptr);
    window.show();
    auto* find = window.findChild<QLineEdit*>(u"txtFind"_s);
    auto* why = window.findChild<QLabel*>(u"lblWhy"_s);
    auto* ok = window.findChild<QPushButton*>(u"cmdOK"_s);
    EXPECT_EQ(window.chosen(), 3);
    EXPECT_EQ(window.windowTitle(), choice.title);
    QTest::keyClicks(find, u"IN A"_s);
    EXPECT_EQ(window.chosen(), 2);
    QTest::keyClick(find, Qt::Key_Up);
    EXPECT_EQ(window.chosen(), std::nullopt);
    EXPECT_EQ(why->text(), u"darum"_s);
    EXPECT_FALSE(ok->isEnabled());
    QTest::keyClick(find, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    find->setText(u"einstellungen"_s);
    EXPECT_EQ(why->text(), u"darum"_s);
    find->setText(u"nirgends"_s);
    EXPECT_EQ(why->text(), u"Kein Eintrag hat diesen Text."_s);
    EXPECT_EQ(window.chosen(), std::nullopt);
    find->setText(u"vertrauen"_s);
    QTest::keyClick(find, Qt::Key_Down);
    QTest::keyClick(find, Qt::Key_Return);
    EXPECT_EQ(window.result(), QDialog::Accepted);
    EXPECT_EQ(window.chosen(), 3);
}

} // namespace
