#include "app/frmAbout.h"
#include "app/frmProcess.h"
#include "app/frmSplash.h"
#include "app/frmStatus.h"
#include "app/globals.h"
#include "app/start.h"
#include "config/OptionsModel.h"
#include "language/mdLanguage.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "widgets/Form.h"
#include "widgets/RunGuard.h"

#include <QCheckBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The windows beside the frame: start, wait, progress, about.
class SmallWindows : public WindowTest {
protected:
    ~SmallWindows() override { mdLanguage::showStartWindow = nullptr; }
};

} // namespace

TEST_F(SmallWindows, TheStartWindowIgnoresKeysAndItsButtonsChooseTheLanguage) {
    frmSplash splash;
    splash.show();
    settle();
    for (const int key : {Qt::Key_Escape, Qt::Key_Return, Qt::Key_F4})
        QTest::keyClick(&splash, static_cast<Qt::Key>(key));
    EXPECT_TRUE(splash.isVisible());
    EXPECT_EQ(gLanguage, 0);
    QStringList order;
    for (QWidget* widget = splash.focusWidget(); widget && order.size() < 3; widget = widget->nextInFocusChain())
        if (widget->focusPolicy() & Qt::TabFocus)
            order << widget->objectName();
    EXPECT_EQ(order, (QStringList{u"cmdLanguage(0)"_s, u"cmdLanguage(1)"_s, u"chkSys"_s}))
        << "Enter takes the language in force";
    auto* again = splash.findChild<QCheckBox*>(u"chkSys"_s);
    EXPECT_FALSE(again->isChecked()) << "it has come by itself";
    EXPECT_TRUE(again->text().contains(u"beim Start"_s) && again->text().contains(u"at start"_s));
    auto* english = splash.findChild<QPushButton*>(u"cmdLanguage(1)"_s);
    EXPECT_EQ(english->toolTip(), u"Sprachauswahl: Englisch"_s);
    english->setFocus();
    QTest::keyClick(english, Qt::Key_Space);
    EXPECT_FALSE(splash.isVisible());
    EXPECT_EQ(gLanguage, 1);
    EXPECT_EQ(mdLanguage::GetFormStatus(), 0);
    const auto waiting = [] {
        return std::ranges::any_of(Form::open(), [](const Form* form) { return form->windowName() == u"frmStatus"_s; });
    };
    EXPECT_TRUE(waiting());
    static int shown = 0;
    shown = 0;
    mdLanguage::showStartWindow = [] { ++shown; };
    Main::StartServices();
    EXPECT_EQ(shown, 0) << "the next start asks no more";
    OptionsModel options;
    options.setValue(u"chkbSys"_s, u"1"_s);
    ASSERT_TRUE(options.apply());
    Main::StartServices();
    EXPECT_EQ(shown, 1) << "unless it was asked for";
    EXPECT_TRUE(frmSplash().findChild<QCheckBox*>(u"chkSys"_s)->isChecked()) << "and then stays so";
    EXPECT_EQ(gLanguage, 1);
    frmStatus::unload();
    EXPECT_FALSE(waiting());
}

TEST_F(SmallWindows, TheProgressWindowStopsOnlyByItsButtonAndTheAboutBoxNamesVersions) {
    int stops = 0;
    frmProcess progress([&] { ++stops; });
    progress.show();
    QTest::keyClick(&progress, Qt::Key_Escape);
    QTest::keyClick(&progress, Qt::Key_Return);
    EXPECT_EQ(stops, 0);
    EXPECT_TRUE(progress.isVisible());
    auto* stop = progress.findChild<QPushButton*>(u"cmdStop"_s);
    QTest::keyClick(stop, Qt::Key_Space);
    EXPECT_EQ(stops, 1);
    frmProcess endless;
    endless.show();
    EXPECT_FALSE(endless.close()) << "what cannot be stopped cannot be closed";
    EXPECT_FALSE(endless.findChild<QPushButton*>(u"cmdStop"_s)->isVisible());

    frmAbout about;
    about.show();
    QTest::mouseClick(about.findChild<QPushButton*>(u"cmdSysInfo"_s), Qt::LeftButton);
    QTest::mouseClick(about.findChild<QPushButton*>(u"cmdCopy"_s), Qt::LeftButton);
    EXPECT_TRUE(asker.clipboardText.contains(u"Qt "_s + QString::fromLatin1(qVersion())));
    EXPECT_TRUE(asker.clipboardText.startsWith(u"Varidex 3.6.0\nQt"_s));
    QTest::keyClick(&about, Qt::Key_Escape);
    EXPECT_FALSE(about.isVisible());
}

TEST_F(SmallWindows, WhatIsToBeClosedWhileProgressShowsEndsTheStepFirst) {
    const auto child = std::make_unique<QWidget>();
    child->show();
    for (const bool mayStop : {true, false}) {
        auto view = frmProcess::open(mayStop);
        ASSERT_TRUE(view);
        EXPECT_FALSE(frmProcess::open(true)) << "one at a time";
        EXPECT_TRUE(view->show(u"SV2018"_s, 1, 4));
        auto* window = dynamic_cast<frmProcess*>(Form::open().back());
        ASSERT_TRUE(window && window->isVisible() && window->isModal());
        EXPECT_EQ(window->pgbProgress->value(), 1);
        EXPECT_EQ(gBusy, 1);
        EXPECT_TRUE(RunGuard::closeAfterRun(*child));
        EXPECT_EQ(view->show(u"SV2022"_s, 2, 4), !mayStop);
        EXPECT_TRUE(child->isVisible());
        view.reset();
        EXPECT_EQ(gBusy, 0);
        settle();
        EXPECT_FALSE(child->isVisible());
        child->show();
    }
    auto view = frmProcess::open(true);
    view->show(u"SV2018"_s, 0, 0);
    QTest::keyClick(Form::open().back()->widget().findChild<QPushButton*>(u"cmdStop"_s), Qt::Key_Return);
    EXPECT_FALSE(view->show(u"SV2018"_s, 0, 0));
}
