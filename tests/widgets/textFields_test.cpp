#include "widgets/textFields.h"

#include "support/PrintQt.h"
#include "support/WindowTest.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

/// A window with every kind of field, and a menu that has the keys of text.
class TextFields : public WindowTest {
protected:
    QMainWindow window;
    QVBoxLayout* column;
    QStringList fired;

    TextFields() {
        keepKeysOfTextFields();
        auto* page = new QWidget;
        column = new QVBoxLayout(page);
        window.setCentralWidget(page);
        for (const QString& keys : {u"Ctrl+Z"_s, u"Ctrl+Shift+Z"_s, u"Ctrl+X"_s, u"Ctrl+C"_s, u"Ctrl+V"_s, u"Del"_s}) {
            QAction* entry = window.menuBar()->addMenu(u"Menu"_s)->addAction(keys);
            entry->setShortcut(QKeySequence(keys));
            QObject::connect(entry, &QAction::triggered, &window, [this, keys] { fired << keys; });
        }
    }
    /// The keys that a widget with the keyboard leaves to the menu.
    QStringList leftBy(QWidget* field) {
        fired.clear();
        field->setFocus();
        settle();
        QWidget* focus = QApplication::focusWidget();
        EXPECT_TRUE(focus == field || field->isAncestorOf(focus)) << field->metaObject()->className();
        for (const auto& [key, modifiers] : {std::pair{Qt::Key_Z, Qt::ControlModifier | Qt::NoModifier},
                                             {Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier},
                                             {Qt::Key_X, Qt::ControlModifier},
                                             {Qt::Key_C, Qt::ControlModifier},
                                             {Qt::Key_V, Qt::ControlModifier},
                                             {Qt::Key_Delete, Qt::NoModifier}})
            QTest::keyClick(focus, key, modifiers);
        return fired;
    }
    template<class Field>
    Field* add(Field* field) {
        column->addWidget(field);
        return field;
    }
};

} // namespace

TEST_F(TextFields, KeepTheKeysOfTextFromTheMenuEvenWhereTheyAreOnlyRead) {
    auto* line = add(new QLineEdit(u"abc"_s));
    auto* readLine = add(new QLineEdit(u"abc"_s));
    readLine->setReadOnly(true);
    auto* spin = add(new QSpinBox);
    auto* combo = add(new QComboBox);
    combo->setEditable(true);
    combo->addItem(u"abc"_s);
    auto* plain = add(new QPlainTextEdit(u"abc"_s));
    auto* readPlain = add(new QPlainTextEdit(u"abc"_s));
    readPlain->setReadOnly(true);
    auto* rich = add(new QTextEdit(u"abc"_s));
    auto* readRich = add(new QTextEdit(u"abc"_s));
    readRich->setReadOnly(true);
    auto* label = add(new QLabel(u"abc"_s));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setFocusPolicy(Qt::StrongFocus);
    auto* list = add(new QListWidget);
    list->addItem(u"abc"_s);
    list->item(0)->setFlags(list->item(0)->flags() | Qt::ItemIsEditable);
    auto* button = add(new QPushButton(u"abc"_s));
    auto* choice = add(new QComboBox);
    choice->addItem(u"abc"_s);
    window.show();
    window.activateWindow();
    settle();
    for (QWidget* field : QList<QWidget*>{line, readLine, spin, combo, plain, readPlain, rich, readRich, label}) {
        EXPECT_EQ(leftBy(field), QStringList()) << field->metaObject()->className();
        EXPECT_TRUE(isTextField(field)) << field->metaObject()->className();
    }
    list->editItem(list->item(0));
    settle();
    EXPECT_EQ(leftBy(list->findChild<QLineEdit*>()), QStringList()) << "an editor in a list";
    for (QWidget* other : QList<QWidget*>{list, button, choice}) {
        EXPECT_EQ(leftBy(other).size(), 6) << other->metaObject()->className();
        EXPECT_FALSE(isTextField(other)) << other->metaObject()->className();
    }
    line->setText(u"abc"_s);
    line->setFocus();
    line->home(false);
    QTest::keyClick(line, Qt::Key_Delete);
    EXPECT_EQ(line->text(), u"bc"_s);
    QTest::keyClick(line, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(line->text(), u"abc"_s);
    for (QWidget* field : QList<QWidget*>{line, combo, plain, rich}) {
        field->setFocus();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        EXPECT_TRUE(selectedText(field).endsWith(u"bc"_s)) << field->metaObject()->className();
    }
}
