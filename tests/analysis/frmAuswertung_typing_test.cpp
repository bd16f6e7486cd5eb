#include "analysis/AnalysisWindow.h"

#include "catalogue/CDaoDatabase.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QStackedWidget>

/// What is typed in the window when something else is done: keys go where the focus is, as they come from a keyboard.
class AnalysisTyping : public AnalysisWindow {
protected:
    void into(const QString& field) { the<QWidget>(field)->setFocus(); }
    void keys(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    void key(Qt::Key pressed, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), pressed, modifiers);
        settle();
    }
    const AnalysisRequest& request() { return window->model().request(); }
    QAbstractItemView* popup(const QString& picker) { return the<ChoicePicker>(picker)->completer()->popup(); }
    /// Tab, page and model are at one.
    void expectTab(int tab) {
        auto* tabs = the<QTabWidget>(u"SSTab"_s);
        EXPECT_EQ(tabs->tabBar()->currentIndex(), tab);
        EXPECT_EQ(tabs->findChild<QStackedWidget*>()->currentIndex(), tab);
        EXPECT_EQ(window->model().tab(), tab);
    }
    void openWith(const QString& variable) {
        open();
        chooseStudy(u"SV2018"_s);
        type(u"dbcVariableUni"_s, variable);
    }
};

TEST_F(AnalysisTyping, AFilterThatIsRefusedWhileTheTabChangesLeavesTabAndPageAtOne) {
    openWith(u"LZUFR"_s);
    goTo(1);
    goTo(0);
    press(u"optFilter(2)"_s);
    into(u"txtFilter"_s);
    keys(u"GESCHL=1 AND BAR=2"_s);
    key(Qt::Key_T, Qt::AltModifier);
    EXPECT_EQ(asker.texts(), QStringList{u"BAR nicht gefunden"_s});
    expectTab(0);
    goTo(1);
    EXPECT_EQ(asker.texts().size(), 2);
    expectTab(0);
    into(u"txtFilter"_s);
    the<FilterLine>(u"txtFilter"_s)->selectAll();
    keys(u"GESCHL=1"_s);
    key(Qt::Key_T, Qt::AltModifier);
    expectTab(1);
    EXPECT_EQ(row(0).section(u'|', 0, 0), u"Wert");
    EXPECT_TRUE(window->model().result().lblLabel.contains(u"GESCHL=1"_s));
    goTo(0);
    expectTab(0);
}

TEST_F(AnalysisTyping, AnEntryFollowsItsFilterBeforeTheTableIsMade) {
    openWith(u"LZUFR"_s);
    press(u"Option5"_s);
    press(u"cmd_AddTrend"_s);
    the<EntryList>(u"lst_TrendVars"_s)->setCurrentRow(0);
    settle();
    press(u"optFilter(2)"_s);
    into(u"txtFilter"_s);
    keys(u"GESCHL=1"_s);
    asker.answer(ui::Answer::Yes, [this] { EXPECT_FALSE(window->model().running()); });
    key(Qt::Key_T, Qt::AltModifier);
    EXPECT_EQ(asker.texts(),
              QStringList{u"Möchten Sie den ausgewählten Eintrag in der Vergleichsauswertung ändern?"_s});
    expectTab(1);
    EXPECT_EQ(request().lst_TrendVars[0].at(ComparisonEntry::Filter), u"GESCHL=1");
}

TEST_F(AnalysisTyping, AnotherEntryIsSelectedAfterTheOneBeforeHasFollowedItsFilter) {
    openWith(u"LZUFR"_s);
    press(u"Option5"_s);
    press(u"cmd_AddTrend"_s);
    press(u"cmd_AddTrend"_s);
    auto* entries = the<EntryList>(u"lst_TrendVars"_s);
    entries->setCurrentRow(0);
    settle();
    press(u"optFilter(2)"_s);
    into(u"txtFilter"_s);
    keys(u"GESCHL=2"_s);
    asker.answer(ui::Answer::Yes);
    QTest::mouseClick(entries->viewport(), Qt::LeftButton, {}, entries->visualItemRect(entries->item(1)).center());
    settle();
    EXPECT_EQ(asker.texts().size(), 1);
    EXPECT_EQ(request().lst_TrendVars[0].at(ComparisonEntry::Filter), u"GESCHL=2");
    EXPECT_EQ(request().lst_TrendVars[1].at(ComparisonEntry::Filter), QString());
    EXPECT_TRUE(entries->item(0)->text().contains(u"GESCHL=2"_s));
    EXPECT_FALSE(entries->item(0)->isSelected());
    EXPECT_TRUE(entries->item(1)->isSelected());
}

/// Whatever way leads out of the field: what can mean one choice only is that choice, and no list stays open.
TEST_F(AnalysisTyping, ANameIsTakenHoweverItsFieldIsLeft) {
    struct Way {
        QString typed;
        std::function<void()> leaves;
        QString chosen;
        int tab = 0;
    };
    QWidget other;
    other.resize(50, 50);
    const auto click = [this](const QString& name) { press(name); };
    const auto altT = [this] { key(Qt::Key_T, Qt::AltModifier); };
    const std::vector<Way> ways{
        {u"GESCHL"_s, altT, u"GESCHL"_s, 1},
        {u"lzufr"_s, altT, u"LZUFR"_s, 1},
        {u"geschl: geschlecht"_s, [this] { key(Qt::Key_Tab); }, u"GESCHL"_s},
        {u"LZUFR"_s, [this] { key(Qt::Key_Backtab); }, u"LZUFR"_s},
        {u"Geschlecht"_s, [&] { click(u"Option2"_s); }, u"GESCHL"_s},
        {u"LZUFR"_s, [this] { goTo(1); }, u"LZUFR"_s, 1},
        {u"GESCHL"_s,
         [&] {
             other.show();
             other.activateWindow();
             settle();
             other.hide();
             window->activateWindow();
             settle();
         },
         u"GESCHL"_s},
    };
    openWith(u"FAMST"_s);
    for (const Way& way : ways) {
        SCOPED_TRACE(qPrintable(way.typed));
        auto* picker = the<ChoicePicker>(u"dbcVariableUni"_s);
        into(u"dbcVariableUni"_s);
        keys(way.typed);
        settle();
        EXPECT_TRUE(popup(u"dbcVariableUni"_s)->isVisible());
        way.leaves();
        EXPECT_FALSE(popup(u"dbcVariableUni"_s)->isVisible());
        EXPECT_EQ(request().dbcVariable.value, way.chosen);
        EXPECT_TRUE(picker->currentText().startsWith(way.chosen + u':'));
        expectTab(way.tab);
        if (way.tab == 1) {
            EXPECT_EQ(window->model().result().facts->request.dbcVariable.value, way.chosen);
            goTo(0);
        }
        press(u"Option1"_s);
    }
    EXPECT_TRUE(asker.boxes.empty()) << asker.lastText().toStdString();
}

TEST_F(AnalysisTyping, WhatIsNoChoiceStaysMarkedAndStopsTheRun) {
    struct Case {
        QString picker, typed, words;
    };
    const std::vector<Case> cases{
        {u"dbcVariableUni"_s, u"LZUFRX"_s, u"Variable suchen: \"LZUFRX\" ist nicht in der Liste."_s},
        {u"dbcVariableUni"_s, u"GEW"_s, u"Variable suchen: \"GEW\" passt auf mehrere Einträge der Liste."_s},
        {u"dbcVariable2Uni"_s, u"zufri nicht"_s, u"Zweite Variable suchen: \"zufri nicht\" ist nicht in der Liste."_s},
        {u"dbcVarGewicht_1Uni"_s, u"XX"_s, u"Gewichtungsvariable suchen: \"XX\" ist nicht in der Liste."_s},
    };
    openWith(u"FAMST"_s);
    press(u"Option2"_s);
    type(u"dbcVariable2Uni"_s, u"GESCHL"_s);
    press(u"Option3(3)"_s);
    type(u"dbcVarGewicht_1Uni"_s, u"GEWREP"_s);
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.words));
        auto* picker = the<ChoicePicker>(c.picker);
        const QString before = picker->currentText();
        into(c.picker);
        keys(c.typed);
        key(Qt::Key_T, Qt::AltModifier);
        EXPECT_EQ(asker.lastText(), c.words);
        expectTab(0);
        EXPECT_FALSE(window->model().result().facts);
        EXPECT_EQ(QApplication::focusWidget(), picker);
        EXPECT_EQ(picker->lineEdit()->text(), c.typed);
        EXPECT_TRUE(c.words.endsWith(picker->accessibleDescription()));
        EXPECT_FALSE(picker->accessibleDescription().isEmpty());
        EXPECT_EQ(picker->lineEdit()->actions().size(), 1) << "the sign";
        // Other gestures leave it as it is.
        press(u"chkVaridexCreation"_s);
        EXPECT_EQ(picker->lineEdit()->text(), c.typed);
        into(c.picker);
        key(Qt::Key_Escape);
        EXPECT_EQ(picker->lineEdit()->text(), before);
        EXPECT_TRUE(picker->lineEdit()->actions().isEmpty());
        EXPECT_EQ(picker->accessibleDescription(), QString());
    }
    EXPECT_EQ(asker.boxes.size(), cases.size());
    // What can't be used any more stops nothing.
    into(u"dbcVarGewicht_1Uni"_s);
    keys(u"XX"_s);
    press(u"Option3(0)"_s);
    into(u"dbcVariable2Uni"_s);
    keys(u"YY"_s);
    press(u"Option1"_s);
    key(Qt::Key_T, Qt::AltModifier);
    expectTab(1);
    EXPECT_EQ(asker.boxes.size(), cases.size());
}
