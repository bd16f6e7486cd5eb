#include "analysis/AnalysisWindow.h"

#include "catalogue/CDaoDatabase.h"

#include <QAbstractItemModel>
#include <QHash>
#include <QMenu>
#include <QSignalSpy>
#include <memory>

/// What of the window follows a gesture, and what stays as it is.
class AnalysisGestures : public AnalysisWindow {
protected:
    const QStringList variablePickers{u"dbcVariable_1"_s,   u"dbcVariable"_s,   u"dbcVariableUni"_s,
                                      u"dbcVariable_2"_s,   u"dbcVariable2"_s,  u"dbcVariable2Uni"_s,
                                      u"dbcVarGewicht_1"_s, u"dbcVarGewicht"_s, u"dbcVarGewicht_1Uni"_s};

    /// The pickers whose lists are filled by these gestures.
    template<class Gestures>
    QStringList filledBy(Gestures&& gestures) {
        std::vector<std::unique_ptr<QSignalSpy>> spies;
        for (const QString& picker : variablePickers)
            spies.push_back(
                std::make_unique<QSignalSpy>(the<ChoicePicker>(picker)->model(), &QAbstractItemModel::rowsInserted));
        gestures();
        QStringList filled;
        for (qsizetype i = 0; i < variablePickers.size(); ++i)
            if (!spies[static_cast<size_t>(i)]->isEmpty())
                filled << variablePickers[i];
        return filled;
    }
};

TEST_F(AnalysisGestures, ListsOfVariablesAreFilledForAnotherStudyAndByNoOtherGesture) {
    open();
    EXPECT_EQ(filledBy([this] { chooseStudy(u"SV2014"_s); }), variablePickers);
    EXPECT_EQ(filledBy([this] { chooseStudy(u"SV2018"_s); }), variablePickers);
    EXPECT_EQ(filledBy([this] {
                  type(u"dbcVariableUni"_s, u"GESCHL"_s);
                  press(u"Option3(1)"_s);
                  press(u"Option3(3)"_s);
                  type(u"dbcVarGewicht_1Uni"_s, u"GEWREP"_s);
                  press(u"optFilter(1)"_s);
                  press(u"optFilter(2)"_s);
                  for (const QString& mode : {u"Option2"_s, u"Option4(3)"_s, u"Option5"_s, u"Option1"_s})
                      press(mode);
                  goTo(1);
                  goTo(0);
              }),
              QStringList());
    EXPECT_EQ(the<ChoicePicker>(u"dbcVarGewicht_1"_s)->currentText(), u"GEWREP");
    EXPECT_TRUE(asker.boxes.empty()) << asker.lastText().toStdString();
}

TEST_F(AnalysisGestures, TheTablesMenuPressesTheButtonsOfTheTableAndARightClickSelectsNothing) {
    openTable();
    auto* grid = the<ResultTableView>(u"mfgGrid"_s);
    selectCell(1, 2);
    QTest::mouseClick(grid->viewport(), Qt::RightButton, {}, grid->visualRect(grid->model()->index(2, 3)).center());
    EXPECT_EQ(grid->currentIndex(), grid->model()->index(0, 1));
    QTest::keyClick(grid, Qt::Key_F10, Qt::ShiftModifier);
    auto* menu = grid->findChild<QMenu*>(u"mnuContext"_s);
    ASSERT_TRUE(menu);
    QHash<QString, QAction*> entries;
    for (QAction* entry : menu->actions())
        entries[entry->text().remove(u'&')] = entry;
    EXPECT_TRUE(entries.contains(u"Tabelle kopieren"_s));
    EXPECT_FALSE(entries.contains(u"Jetzt neu berechnen"_s)) << "out of sight: there is nothing to compute anew";
    ASSERT_TRUE(entries.contains(u"Missing setzen/löschen"_s));
    const QString before = row(1);
    entries[u"Missing setzen/löschen"_s]->trigger();
    EXPECT_NE(row(1), before);
    menu->close();
}

TEST_F(AnalysisGestures, AVariableThatARunDoesNotFindAnyMoreIsInNoPickerEither) {
    open();
    chooseStudy(u"SV2018"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    gDatabase.CurrentDatabase()->Execute(
        u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'SV2018' AND id_VarName = 'GESCHL'"_s);
    goTo(1);
    EXPECT_EQ(asker.texts(), QStringList{u"Bitte eine Variable auswählen"_s});
    for (const QString& picker : variablePickers) {
        EXPECT_GT(the<ChoicePicker>(picker)->count(), 0) << picker.toStdString();
        EXPECT_EQ(the<ChoicePicker>(picker)->findText(u"GESCHL"_s, Qt::MatchStartsWith), -1) << picker.toStdString();
        EXPECT_EQ(the<ChoicePicker>(picker)->currentText(), QString()) << picker.toStdString();
    }
    type(u"dbcVariableUni"_s, u"LZUFR:"_s);
    EXPECT_EQ(window->model().request().dbcVariable.value, u"LZUFR") << "the rows below have moved up";
}

TEST_F(AnalysisGestures, AFilterWhoseEndCountsForNothingIsComputedOnlyWhenThePersonAgrees) {
    open();
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    press(u"optFilter(2)"_s);
    QTest::keyClicks(the<FilterLine>(u"txtFilter"_s), u"GESCHL=1 garbage"_s);
    const QString question = u"Das Ende des Filters zählt nicht: garbage\r\nTrotzdem rechnen?"_s;
    asker.answer(ui::Answer::No);
    goTo(1);
    EXPECT_EQ(asker.texts(), QStringList{question});
    EXPECT_EQ(asker.boxes.back().buttons, ui::Buttons::YesNo);
    EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 0);
    EXPECT_FALSE(window->model().result().facts);
    EXPECT_EQ(the<ResultTableView>(u"mfgGrid"_s)->table().Rows(), 0);
    EXPECT_FALSE(the<QPushButton>(u"cmdSaveTableAs"_s)->isEnabled());
    asker.answer(ui::Answer::Yes);
    goTo(1);
    EXPECT_EQ(asker.texts(), QStringList(2, question));
    EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 1);
    EXPECT_EQ(row(1).section(u'|', 1, 1), u"männlich");
    EXPECT_EQ(row(2).section(u'|', 1, 1), u"Summe") << "what stands before the end counts";
}
