#include "analysis/AnalysisWindow.h"

using namespace Qt::StringLiterals;

/// How the analysis window answers the keyboard beyond its lists, and how it fits where it stands.
class AnalysisLook : public AnalysisWindow {
protected:
    QString focused() { return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString(); }
    void pressFocused(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        settle();
    }
    /// Goes on by the Tab key to the group that a button belongs to.
    void tabTo(const QString& array) {
        for (int i = 0; i < 40 && !focused().startsWith(array); ++i)
            pressFocused(Qt::Key_Tab);
    }
};

TEST_F(AnalysisLook, TabStopsAtTheChosenButtonOfAGroupAndArrowKeysChooseFromThere) {
    open();
    chooseStudy(u"SV2018"_s);
    // Choices that were made by other means than the buttons.
    AnalysisModel& model = window->model();
    model.edit().chooseMode(AnalysisMode::Descriptives);
    model.edit().chooseWeight(WeightKind::WeightHH, {});
    model.edit().chooseFilter(FilterKind::FilterUser);
    window->optionsApplied();
    tabTo(u"Option4"_s);
    EXPECT_EQ(focused(), u"Option4(3)");
    pressFocused(Qt::Key_Up);
    EXPECT_EQ(focused(), u"Option2");
    EXPECT_EQ(model.request().mode, AnalysisMode::Crosstab);
    tabTo(u"Option3"_s);
    EXPECT_EQ(focused(), u"Option3(2)");
    pressFocused(Qt::Key_Down);
    EXPECT_EQ(model.request().Option3, WeightKind::WeightUser);
    tabTo(u"optFilter"_s);
    EXPECT_EQ(focused(), u"optFilter(2)");
    pressFocused(Qt::Key_Up);
    pressFocused(Qt::Key_Up);
    EXPECT_EQ(focused(), u"optFilter(0)");
    EXPECT_EQ(model.request().optFilter, FilterKind::noFilter);
    EXPECT_TRUE(asker.boxes.empty());

    // An entry of a comparison is asked about once for each change, and the next key goes on from there.
    press(u"Option5"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    click(u"cmd_AddTrend"_s);
    auto* entries = the<EntryList>(u"lst_TrendVars"_s);
    QTest::mouseClick(entries->viewport(), Qt::LeftButton, {}, entries->visualItemRect(entries->item(0)).center());
    the<QRadioButton>(u"Option3(0)"_s)->setFocus();
    asker.answer(ui::Answer::No).answer(ui::Answer::Yes);
    pressFocused(Qt::Key_Down);
    pressFocused(Qt::Key_Down);
    EXPECT_EQ(focused(), u"Option3(2)");
    EXPECT_EQ(asker.boxes.size(), 2U);
    EXPECT_EQ(model.request().lst_TrendVars[0].at(ComparisonEntry::WeightInfo), u"HH");
}

TEST_F(AnalysisLook, TheCaptionOfTheFourthWeightChoosesItAndItsLetterGoesToThePicker) {
    open();
    chooseStudy(u"SV2018"_s);
    auto* caption = the<QLabel>(u"lblWeightUser"_s);
    auto* own = the<QRadioButton>(u"Option3(3)"_s);
    for (const bool byKey : {true, false}) {
        press(u"Option3(0)"_s);
        the<ChoicePicker>(u"dbcStudy_1"_s)->setFocus();
        if (byKey)
            pressFocused(Qt::Key_W, Qt::AltModifier);
        else
            QTest::mouseClick(caption, Qt::LeftButton);
        settle();
        EXPECT_TRUE(own->isChecked()) << byKey;
        EXPECT_EQ(window->model().request().Option3, WeightKind::WeightUser) << byKey;
        EXPECT_EQ(the<ChoicePicker>(u"dbcVarGewicht_1Uni"_s)->hasFocus(), byKey);
    }
}

TEST_F(AnalysisLook, AThirdOfAScreenIsWideEnoughForEveryButtonAndField) {
    openTable();
    window->resize(1280 / 3, 600);
    for (const int tab : {1, 2, 0}) {
        goTo(tab);
        if (tab == 0)
            press(u"Option5"_s);
        EXPECT_LE(window->minimumSizeHint().width(), 1280 / 3);
        for (const auto* button : window->findChildren<QAbstractButton*>())
            if (button->isVisible() && !button->text().isEmpty()) {
                EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
                const QRect place(button->mapTo(window, QPoint()), button->size());
                EXPECT_GE(window->width(), place.right()) << button->text().toStdString();
            }
    }
    // A label that its picker has no room for stands below it in full, and only then.
    goTo(0);
    press(u"Option1"_s);
    EXPECT_FALSE(the<QLabel>(u"lblVariable"_s)->isVisibleTo(window));
    type(u"dbcVariableUni"_s, u"LZUFR"_s);
    EXPECT_TRUE(the<QLabel>(u"lblVariable"_s)->isVisibleTo(window));
    window->resize(1280, 600);
    settle();
    EXPECT_FALSE(the<QLabel>(u"lblVariable"_s)->isVisibleTo(window));
}
