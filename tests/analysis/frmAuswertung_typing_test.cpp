#include "analysis/AnalysisWindow.h"

#include "catalogue/CDaoDatabase.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QGroupBox>
#include <QStackedWidget>
#include <QTableView>

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
    QString valuesShown();
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
    // An entry is none of the choice before; and who looks something up elsewhere comes back to half a word.
    press(u"Option5"_s);
    into(u"dbcVariableUni"_s);
    keys(u"GEW"_s);
    QWidget other;
    other.show();
    other.activateWindow();
    settle();
    EXPECT_TRUE(the<ChoicePicker>(u"dbcVariableUni"_s)->lineEdit()->actions().isEmpty());
    window->activateWindow();
    settle();
    into(u"cmd_AddTrend"_s);
    press(u"cmd_AddTrend"_s);
    EXPECT_TRUE(request().lst_TrendVars.isEmpty());
    EXPECT_EQ(asker.boxes.size(), cases.size() + 1);
    asker.boxes.pop_back();
    key(Qt::Key_Escape);
    press(u"Option2"_s);
    press(u"Option3(3)"_s);
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

/// The values in the list, "*" behind the missing ones.
QString AnalysisTyping::valuesShown() {
    const QAbstractItemModel* model = the<QTableView>(u"lvValues(0)"_s)->model();
    QStringList codes;
    for (int row = 0; row < model->rowCount(); ++row)
        codes << model->index(row, 0).data().toString() +
                     (model->index(row, 2).data().toString().isEmpty() ? u""_s : u"*"_s);
    return codes.join(u' ');
}

TEST_F(AnalysisTyping, InALowWindowWhatHelpsWithTheFilterComesIntoViewWithItsLine) {
    openWith(u"GESCHL"_s);
    window->resize(window->width(), window->fontMetrics().height() * 25);
    settle();
    const auto isSeen = [this](const QString& name) { return !the<QWidget>(name)->visibleRegion().isEmpty(); };
    ASSERT_FALSE(isSeen(u"lvValues(0)"_s));
    key(Qt::Key_Z, Qt::AltModifier);
    for (const QString& name : {u"txtFilter"_s, u"lblFilterCheck"_s, u"lvValues(0)"_s})
        EXPECT_TRUE(isSeen(name)) << name.toStdString();
}

TEST_F(AnalysisTyping, ValuesOfWhatIsChosenOrTypedStandBesideItAndAClickPutsThemIntoTheFilter) {
    openWith(u"GESCHL"_s);
    auto* table = the<QTableView>(u"lvValues(0)"_s);
    const auto click = [&](int at) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                          table->visualRect(table->model()->index(at, 1)).center());
        settle();
    };
    EXPECT_EQ(valuesShown(), u"1 2 3 9*");
    EXPECT_EQ(the<QGroupBox>(u"fraValues"_s)->title(), u"Werte: GESCHL");
    click(0);
    EXPECT_EQ(request().txtFilter, QString()) << "there is no filter to put it in";
    type(u"dbcVariableUni"_s, u"LZUFR:"_s);
    EXPECT_EQ(valuesShown(), u"0 10 98* 99*");
    press(u"Option2"_s);
    into(u"dbcVariable2Uni"_s);
    type(u"dbcVariable2Uni"_s, u"GESCHL"_s);
    EXPECT_EQ(valuesShown(), u"1 2 3 9*");

    press(u"optFilter(2)"_s);
    auto* line = the<FilterLine>(u"txtFilter"_s);
    into(u"txtFilter"_s);
    EXPECT_EQ(valuesShown(), u"0 10 98* 99*") << "of the first variable, where nothing is typed";
    click(1);
    EXPECT_EQ(line->text(), u"LZUFR=10");
    EXPECT_EQ(QApplication::focusWidget(), line);
    keys(u" and geschl"_s);
    EXPECT_EQ(valuesShown(), u"1 2 3 9*");
    click(1);
    EXPECT_EQ(line->text(), u"LZUFR=10 and geschl=2");
    click(0);
    EXPECT_EQ(line->text(), u"LZUFR=10 and geschl=1");
    line->setCursorPosition(3);
    EXPECT_EQ(valuesShown(), u"0 10 98* 99*");
    line->setCursorPosition(7);
    click(0);
    EXPECT_EQ(line->text(), u"LZUFR=0 and geschl=1");
    EXPECT_EQ(request().txtFilter, line->text());
    line->selectAll();
    keys(u"LZUFR in (0,"_s);
    click(1);
    keys(u")"_s);
    EXPECT_EQ(line->text(), u"LZUFR in (0,10)");
    // Another study has other values.
    chooseStudy(u"SV2014"_s);
    EXPECT_EQ(valuesShown(), QString());
}

TEST_F(AnalysisTyping, EnterComputesFromEveryFieldAndAButtonDoes) {
    openWith(u"GESCHL"_s);
    auto* button = the<QPushButton>(u"cmdCompute"_s);
    EXPECT_TRUE(button->isVisible());
    EXPECT_TRUE(button->isDefault());
    press(u"cmdCompute"_s);
    expectTab(1);
    goTo(0);
    press(u"optFilter(2)"_s);
    struct Field {
        QString name, typed;
        int enters = 1;
    };
    for (const auto& [name, typed, enters] : std::vector<Field>{{u"txtFilter"_s, u"GESCHL=1"_s},
                                                                {u"dbcVariable_1"_s, {}},
                                                                {u"Option1"_s, {}},
                                                                {u"dbcVariableUni"_s, {}},
                                                                // The first takes the choice.
                                                                {u"dbcVariableUni"_s, u"LZUFR"_s, 2},
                                                                {u"cmdCompute"_s, {}}}) {
        SCOPED_TRACE(qPrintable(name + u' ' + typed));
        goTo(0);
        into(name);
        if (!typed.isEmpty())
            keys(typed);
        for (int i = 1; i <= enters; ++i) {
            expectTab(0);
            key(Qt::Key_Return);
        }
        expectTab(1);
    }
    EXPECT_EQ(request().dbcVariable.value, u"LZUFR");
    EXPECT_TRUE(window->model().result().lblLabel.contains(u"GESCHL=1"_s));
    // A button that has the focus is meant itself.
    goTo(0);
    press(u"Option5"_s);
    into(u"cmd_AddTrend"_s);
    key(Qt::Key_Return);
    expectTab(0);
    EXPECT_EQ(request().lst_TrendVars.size(), 1);
    into(u"txtTitle"_s);
    keys(u"T"_s);
    key(Qt::Key_Enter);
    expectTab(1);
}

TEST_F(AnalysisTyping, AFilterTextComesBackWithItsKind) {
    openWith(u"GESCHL"_s);
    press(u"optFilter(2)"_s);
    into(u"txtFilter"_s);
    keys(u"GESCHL=1"_s);
    for (const QString& other : {u"optFilter(0)"_s, u"optFilter(1)"_s}) {
        press(other);
        EXPECT_NE(the<FilterLine>(u"txtFilter"_s)->text(), u"GESCHL=1");
        goTo(1);
        goTo(0);
        press(u"optFilter(2)"_s);
        EXPECT_EQ(the<FilterLine>(u"txtFilter"_s)->text(), u"GESCHL=1");
    }
    // A choice that is made again, and a study that is, too.
    press(u"optFilter(0)"_s);
    press(u"optFilter(0)"_s);
    chooseStudy(u"SV2018"_s);
    press(u"optFilter(2)"_s);
    EXPECT_EQ(the<FilterLine>(u"txtFilter"_s)->text(), u"GESCHL=1");
}
