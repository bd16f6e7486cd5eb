#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "widgets/Form.h"
#include "widgets/QtAsker.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

template<class Widget>
Widget* named(QWidget& parent, const QString& name, const QString& text) {
    auto* widget = new Widget(text, &parent);
    widget->setObjectName(name);
    return widget;
}

/// What a place shows, as "type name(index) property=text".
QStringList lines(const Form& form) {
    QStringList all;
    for (const ControlText& place : form.controls())
        all << place.type + u' ' + place.name +
                   (place.index ? u'(' + QString::number(*place.index) + u')' : QString()) + u' ' + place.property +
                   u'=' + place.text;
    all.sort();
    return all;
}

} // namespace

TEST_F(WindowTest, AFormKnowsEachPlaceThatShowsAText) {
    QWidget window, inner;
    Form form(window, u"frmSample"_s);
    Form other(inner, u"frmOther"_s);
    inner.setParent(&window);
    named<QPushButton>(inner, u"cmdOther"_s, u"elsewhere"_s);
    named<QPushButton>(window, u"cmdOK"_s, u"Ja"_s)->setToolTip(u"Tipp"_s);
    named<QRadioButton>(window, u"Option3(2)"_s, u"Haushalt"_s);
    auto* tabs = new QTabWidget(&window);
    tabs->setObjectName(u"SSTab"_s);
    tabs->addTab(new QWidget, u"eins"_s);
    tabs->addTab(new QWidget, u"zwei"_s);
    auto* fonts = new QComboBox(&window);
    fonts->setObjectName(u"cmbFont"_s);
    fonts->setProperty("Tag", u"user_defined"_s);
    fonts->addItem(u"Arial"_s);

    EXPECT_EQ(lines(form), (QStringList{u"ComboBox cmbFont(0) Caption=Arial"_s, u"CommandButton cmdOK Caption=Ja"_s,
                                        u"CommandButton cmdOK ToolTipText=Tipp"_s, u"Form frmSample Caption="_s,
                                        u"OptionButton Option3(2) Caption=Haushalt"_s, u"SSTab SSTab(0) Caption=eins"_s,
                                        u"SSTab SSTab(1) Caption=zwei"_s}));
    for (const ControlText& place : form.controls())
        form.setControlText(place, u"neu"_s);
    for (const QString& line : lines(form))
        EXPECT_TRUE(line.endsWith(u"=neu"_s)) << line.toStdString();
    inner.setParent(nullptr);
}

TEST_F(WindowTest, ABoxAnswersWithTheButtonPressedAndEscapeChangesNothing) {
    QtAsker dialogs;
    const auto press = [](int key) {
        QTimer::singleShot(50, [key] {
            QWidget* box = QApplication::activeModalWidget();
            ASSERT_NE(box, nullptr);
            QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
            QApplication::sendEvent(box, &event);
        });
    };
    press(Qt::Key_Escape);
    EXPECT_EQ(dialogs.messageBox({.text = u"Schließen?"_s, .buttons = ui::Buttons::YesNo}), ui::Answer::No);
    for (const auto byDefault : {std::optional<ui::Answer>(), std::optional(ui::Answer::No)}) {
        press(Qt::Key_Return);
        const ui::Answer pressed =
            dialogs.messageBox({.text = u"Leeren?"_s, .buttons = ui::Buttons::YesNo, .defaultButton = byDefault});
        EXPECT_EQ(pressed, byDefault.value_or(ui::Answer::Yes));
    }
    press(Qt::Key_Escape);
    EXPECT_EQ(dialogs.messageBox({.text = u"3044"_s, .buttons = ui::Buttons::AbortRetryIgnore}), ui::Answer::Abort);

    for (const int language : {0, 1}) {
        setLanguage(language);
        QTimer::singleShot(50, [language] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            QAbstractButton* retry = box->button(QMessageBox::Retry);
            EXPECT_EQ(retry->text(), language == 0 ? u"&Wiederholen"_s : u"&Retry"_s);
            retry->click();
        });
        EXPECT_EQ(dialogs.messageBox({.text = u"x"_s, .buttons = ui::Buttons::RetryCancel}), ui::Answer::Retry);
    }
}
