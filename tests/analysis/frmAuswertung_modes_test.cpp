#include "analysis/AnalysisWindow.h"

#include "catalogue/CDaoDatabase.h"
#include "explorer/frmExplorer.h"
#include "language/mdLanguage.h"
#include "widgets/VariableListView.h"

#include <QGroupBox>
#include <QHeaderView>
#include <QInputMethodEvent>
#include <QKeySequence>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QTreeView>
#include <utility>

/// Crosstab, statistics and comparison through the window.
class AnalysisModes : public AnalysisWindow {
protected:
    void openMode(const QString& button, const QString& variable = u"GESCHL"_s) {
        open();
        chooseStudy(u"SV2018"_s);
        type(u"dbcVariableUni"_s, variable);
        press(button);
    }
    void openCrosstab() {
        openMode(u"Option2"_s);
        type(u"dbcVariable2Uni"_s, u"LZUFR:"_s);
        goTo(1);
    }
    AnalysisModel& model() { return window->model(); }
    TableState tableIs() { return model().tableState(); }
    QString cell(int column, int row) { return the<ResultTableView>(u"mfgGrid"_s)->table().Cell(column, row); }
    void selectMark(int tableRow, int tableColumn) {
        auto* grid = the<ResultTableView>(u"mfgGrid"_s);
        const ResultTable& table = grid->table();
        grid->setCurrentIndex(grid->model()->index(tableRow - table.FixedRows, tableColumn - table.FixedCols));
        QTest::keyClick(grid, Qt::Key_Space);
    }
    QStringList listed(const QString& list) {
        QStringList texts;
        for (int i = 0; i < the<EntryList>(list)->count(); ++i)
            texts << the<EntryList>(list)->item(i)->text();
        return texts;
    }
    void key(const QString& list, Qt::Key pressed) {
        QTest::keyClick(the<EntryList>(list), pressed);
        settle();
    }
    QString enabledTrendButtons() {
        QString names;
        for (const auto& [name, letter] : {std::pair{u"cmd_ClearTrend"_s, u'c'},
                                           {u"cmd_SaveTrend"_s, u's'},
                                           {u"cmd_DeleteFromTrend"_s, u'd'},
                                           {u"cmd_LoadTrend"_s, u'l'},
                                           {u"cmd_DelSavedTrend"_s, u'x'}})
            if (the<QPushButton>(name)->isEnabled())
                names += letter;
        return names;
    }
};

TEST_F(AnalysisModes, ShowWhatBelongsToThemAndRefuseWhatIsIncomplete) {
    openMode(u"Option2"_s);
    const auto shown = [this] {
        QString names;
        for (const auto& [name, letter] : {std::pair{u"fraVariable2"_s, u'2'},
                                           {u"fraComparison"_s, u'C'},
                                           {u"cmdDescriptives"_s, u'D'},
                                           {u"chkDescGroup"_s, u'G'},
                                           {u"chkFlipXtab"_s, u'F'}})
            if (the<QWidget>(name)->isVisibleTo(window))
                names += letter;
        return names;
    };
    EXPECT_EQ(shown(), u"2F");
    goTo(1);
    type(u"dbcVariable2Uni"_s, u"GESCHL"_s);
    goTo(1);
    press(u"Option4(3)"_s);
    EXPECT_EQ(shown(), u"DG");
    press(u"chkDescGroup"_s);
    EXPECT_EQ(shown(), u"2DG");
    press(u"Option5"_s);
    EXPECT_EQ(shown(), u"C");
    goTo(1);
    press(u"Option1"_s);
    EXPECT_EQ(shown(), QString());
    EXPECT_TRUE(model().request().dbcVariable2.isEmpty());
    // A weight that was not picked weights nothing, so there is no table that says so.
    press(u"Option3(3)"_s);
    goTo(1);
    EXPECT_EQ(asker.texts(), (QStringList{u"Bitte eine zweite Variable auswählen"_s, u"Doppelte Variablen"_s,
                                          u"Bitte eine Variable auswählen"_s, u"Gewichtungsvariable auswählen"_s}));
    EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 0);
    // Flipping needs creation mode, which the catalogue offers and nobody is in unasked.
    press(u"Option2"_s);
    EXPECT_EQ(shown(), u"2F");
    EXPECT_FALSE(the<QCheckBox>(u"chkVaridexCreation"_s)->isChecked());
    EXPECT_FALSE(the<QCheckBox>(u"chkFlipXtab"_s)->isEnabled());
    press(u"Option3(0)"_s);
    type(u"dbcVariable2Uni"_s, u"LZUFR:"_s);
    goTo(1);
    const QString rows = cell(0, 1), columns = cell(1, 0);
    EXPECT_EQ(rows + columns, u"GESCHLLZUFR");
    goTo(0);
    press(u"chkVaridexCreation"_s);
    press(u"chkFlipXtab"_s);
    goTo(1);
    EXPECT_EQ(cell(0, 1) + cell(1, 0), columns + rows);
    goTo(0);
    press(u"chkVaridexCreation"_s);
    goTo(1);
    EXPECT_EQ(cell(0, 1) + cell(1, 0), rows + columns) << "out of creation mode the choice counts no more";
}

TEST_F(AnalysisModes, ACrosstabIsMarkedInItsMarkColumnAndRowOfTheAbsoluteViewOnly) {
    gOptions.IncludeMissingXTab = true;
    openCrosstab();
    ASSERT_EQ(tableIs(), TableState::Current);
    const QString before = clipText(model().result().mfgGrid);
    selectMark(3, 2);
    selectMark(2, 3);
    EXPECT_EQ(cell(2, 3) + cell(3, 2), u"XX");
    EXPECT_EQ(tableIs(), TableState::OtherMarks);
    auto* values = the<QComboBox>(u"cbValues"_s);
    const auto show = [&](int view) {
        values->setFocus();
        QTest::keyClick(values, Qt::Key_Home);
        for (int i = 0; i < view; ++i)
            QTest::keyClick(values, Qt::Key_Down);
        settle();
    };
    // Another view neither counts as other marks nor loses these.
    show(1);
    EXPECT_EQ(tableIs(), TableState::OtherMarks);
    const QString percents = clipText(model().result().mfgGrid);
    selectMark(3, 2);
    EXPECT_EQ(clipText(model().result().mfgGrid), percents) << "percentages take no marks";
    click(u"cmdComputeAnew"_s);
    EXPECT_EQ(tableIs(), TableState::Current);
    EXPECT_EQ(values->currentIndex(), 1) << "who looks at percentages goes on to";
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().contains(u"\nSpaltenprozente, N (gültige Fälle): "_s));
    show(0);
    EXPECT_EQ(cell(2, 3) + cell(3, 2), u"XX");
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().contains(u"GESCHL: 9 (von Hand gesetzt: 1)"_s))
        << the<QLabel>(u"lblFacts"_s)->text().toStdString();
    show(2);
    EXPECT_EQ(tableIs(), TableState::Current);
    show(0);
    // A heading, and that of the mark row, only ask.
    auto* grid = the<ResultTableView>(u"mfgGrid"_s);
    asker.answer(ui::Answer::No).answer(ui::Answer::Yes).answer(ui::Answer::Yes);
    QHeaderView* left = grid->verticalHeader();
    QTest::mouseClick(left->viewport(), Qt::LeftButton, {}, QPoint(9, left->sectionViewportPosition(0) + 9));
    EXPECT_EQ(cell(2, 3) + cell(3, 2), u"XX");
    QHeaderView* top = grid->horizontalHeader();
    QTest::mouseClick(top->viewport(), Qt::LeftButton, {}, QPoint(top->sectionViewportPosition(0) + 9, 9));
    settle();
    EXPECT_EQ(clipText(model().result().mfgGrid), before) << "the definitions of the catalogue are back";
    EXPECT_EQ(asker.boxes.size(), 3U);
}

TEST_F(AnalysisModes, NoTableOfAnotherRequestOrOtherOptionsPassesAsCurrent) {
    openCrosstab();
    const auto follows = [&](auto&& change, TableState state, const char* what) {
        model().changeTab(1);
        model().computeAnew();
        ASSERT_EQ(tableIs(), TableState::Current) << what;
        change();
        EXPECT_EQ(tableIs(), state) << what;
    };
    const auto asksElse = [&](RequestPart part, const std::function<void(AnalysisRequest&)>& step, const char* what) {
        follows([&] { model().edit().change(part, step); }, TableState::OtherRequest, what);
    };
    const auto option = [&](bool Options::*o, const char* what) {
        follows([&] { gOptions.*o = !(gOptions.*o); }, TableState::OtherOptions, what);
    };
    option(&Options::IncludeMissingXTab, "IncludeMissingXTab");
    option(&Options::IncludeNinXTab, "IncludeNinXTab");
    option(&Options::ShowValidSums, "ShowValidSums");
    option(&Options::ShowPercentSign, "ShowPercentSign");
    option(&Options::NoRowLabels, "NoRowLabels");
    follows([&] { model().edit().chooseVariable2(u"OST"_s), model().edit().chooseVariable2(u"KLIMA"_s); },
            TableState::OtherRequest, "second");
    asksElse(
        RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = r.bCreationMode = true; }, "flip");
    asksElse(
        RequestPart::Mode, [](AnalysisRequest& r) { r.chkFlipXtab = false; }, "flip back");
    model().edit().chooseMode(AnalysisMode::Descriptives);
    gOptions.AskMissing = false;
    asksElse(
        RequestPart::Mode, [](AnalysisRequest& r) { r.chkDescGroup = true; }, "group");
    asksElse(
        RequestPart::Statistics, [](AnalysisRequest& r) { r.dtDesc = u"4"_s, r.dtDescDigits = u"1;1;"_s; },
        "statistics");
    asksElse(
        RequestPart::Statistics, [](AnalysisRequest& r) { r.dtDescDigits = u"1;3;"_s; }, "digits");
    asksElse(
        RequestPart::Statistics, [](AnalysisRequest& r) { r.dtDesc.clear(); }, "statistics of the options");
    follows([&] { gOptions.Descriptives = 4; }, TableState::OtherOptions, "default statistics");
    asksElse(
        RequestPart::Missing, [](AnalysisRequest& r) { r.sMissing = u"1"_s; }, "sMissing");
    option(&Options::IncludeMissingDesc, "IncludeMissingDesc");
    model().edit().chooseMode(AnalysisMode::Comparison);
    window->comparison().addVariable(u"SV2014"_s, u"LZUFR"_s);
    option(&Options::HeaderYear, "HeaderYear");
    option(&Options::HeaderValFirst, "HeaderValFirst");
    asksElse(
        RequestPart::Entries, [](AnalysisRequest& r) { r.txtTitle = u"T"_s; }, "title");
    asksElse(
        RequestPart::Entries, [](AnalysisRequest& r) { r.lst_TrendVars[0].column[ComparisonEntry::Missing] = u"1"_s; },
        "an entry's definition");
    follows([&] { window->comparison().addVariable(u"SV2018"_s, u"LZUFR"_s); }, TableState::OtherRequest, "entry");
}

TEST_F(AnalysisModes, AComparisonIsComposedChangedStoredAndLoadedByKeysAlone) {
    openMode(u"Option5"_s, u"LZUFR:"_s);
    EXPECT_EQ(enabledTrendButtons(), QString());
    key(u"lst_TrendVars"_s, Qt::Key_Insert);
    chooseStudy(u"SV2022"_s);
    type(u"dbcVariableUni"_s, u"LZUFR:"_s);
    key(u"lst_TrendVars"_s, Qt::Key_Insert);
    const QStringList two = listed(u"lst_TrendVars"_s);
    ASSERT_EQ(two.size(), 2);
    EXPECT_EQ(enabledTrendButtons(), u"cs");

    // Selecting takes an entry back; a weight chosen then asks, and a filter when its typing is over.
    auto* list = the<EntryList>(u"lst_TrendVars"_s);
    list->setFocus();
    list->setCurrentRow(0);
    settle();
    EXPECT_EQ(model().request().dbcStudy.value, u"SV2018");
    EXPECT_EQ(enabledTrendButtons(), u"csd");
    asker.answer(ui::Answer::Yes);
    press(u"Option3(1)"_s);
    EXPECT_EQ(listed(u"lst_TrendVars"_s)[0], two[0] + u" (gewichtet nach "_s + model().request().dt_WeightRE + u')');
    press(u"optFilter(2)"_s);
    auto* filter = the<FilterLine>(u"txtFilter"_s);
    filter->setFocus();
    QTest::keyClicks(filter, u"GESCHL=1"_s);
    EXPECT_EQ(asker.boxes.size(), 1U) << "the text is not finished";
    asker.answer(ui::Answer::Yes);
    list->setFocus();
    settle();
    EXPECT_TRUE(listed(u"lst_TrendVars"_s)[0].endsWith(u"(ausgewählte Fälle: GESCHL=1)"_s));
    EXPECT_EQ(listed(u"lst_TrendVars"_s)[1], two[1]);

    // Taking an entry back sets weight and filter without a question.
    const size_t boxes = asker.boxes.size();
    list->setCurrentRow(1);
    settle();
    list->setCurrentRow(0);
    settle();
    EXPECT_EQ(filter->text(), u"GESCHL=1");
    EXPECT_EQ(asker.boxes.size(), boxes);

    the<QLineEdit>(u"txtTitle"_s)->setFocus();
    QTest::keyClicks(the<QLineEdit>(u"txtTitle"_s), u"Zufriedenheit"_s);
    asker.answer(ui::Answer::Yes).input(u"Zufrieden"_s);
    key(u"lst_SavedTrends"_s, Qt::Key_Insert);
    EXPECT_EQ(listed(u"lst_SavedTrends"_s), QStringList{u"Zufrieden"_s});
    EXPECT_EQ(enabledTrendButtons(), u"csdlx");
    const QStringList kept = listed(u"lst_TrendVars"_s);
    list->selectAll();
    asker.answer(ui::Answer::Yes);
    key(u"lst_TrendVars"_s, Qt::Key_Delete);
    EXPECT_EQ(listed(u"lst_TrendVars"_s), QStringList());
    EXPECT_EQ(enabledTrendButtons(), u"lx");
    asker.answer(ui::Answer::Yes);
    key(u"lst_SavedTrends"_s, Qt::Key_Enter);
    EXPECT_EQ(listed(u"lst_TrendVars"_s), kept);
    EXPECT_EQ(the<QLineEdit>(u"txtTitle"_s)->text(), u"Zufriedenheit");
    goTo(1);
    EXPECT_EQ(model().result().lblLabel, u"Vergleichsauswertung: Zufriedenheit");
    EXPECT_EQ(model().result().mfgGrid.Cols(), 5);
    // The refused views jump back; marks are set in column 2 as in a frequency table.
    auto* values = the<QComboBox>(u"cbValues"_s);
    values->setFocus();
    QTest::keyClick(values, Qt::Key_End);
    EXPECT_EQ(asker.lastText(), u"In Vergleichsauswertung nicht erlaubt");
    EXPECT_EQ(values->currentIndex(), 0);
    selectMark(1, 2);
    click(u"cmdComputeAnew"_s);
    EXPECT_EQ(cell(2, 1), u"X");
    EXPECT_EQ(tableIs(), TableState::Current);
    goTo(0);
    EXPECT_TRUE(list->selectedItems().isEmpty())
        << "the window shows the last entry's filter, which is not the selected one's";
    asker.answer(ui::Answer::Yes);
    key(u"lst_SavedTrends"_s, Qt::Key_Delete);
    asker.answer(ui::Answer::Yes);
    click(u"cmd_ClearTrend"_s);
    EXPECT_EQ(enabledTrendButtons(), QString());
}

TEST_F(AnalysisModes, ATrendGivesAComparisonOverItsWavesInTwoGestures) {
    openSampleArchive();
    gOptions.ComparisonWeight = 1; // SV2014 has no weight
    gOptions.HeaderGroup = false;
    int trends = 0;
    for (int view = 1; view <= gViews.lastRow(); ++view)
        if (gViews.at(view, ViewTable::CompAnalysis) == u"1")
            trends = view;
    frmExplorer* explorer = frmExplorer::OpenExplorerView(trends);
    settle();
    for (const CatalogueNode& node : explorer->model().tree.nodes())
        if (node.Text == u"Lebenszufriedenheit") {
            explorer->showNode(node.Key);
            break;
        }
    settle();
    {
        const BusyScope busy; // as long as the command lasts
        window = frmAuswertung::openFrom(explorer);
    }
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    EXPECT_EQ(the<QGroupBox>(u"fraValues"_s)->title(), u"Werte: LZUFR");
    EXPECT_EQ(model().request().mode, AnalysisMode::Comparison);
    EXPECT_EQ(model().request().txtTitle, u"Lebenszufriedenheit (gewichtet)");
    EXPECT_EQ(listed(u"lst_TrendVars"_s).size(), 3);
    goTo(1);
    EXPECT_EQ(
        row(0),
        u"Wert|Ausprägung|Missing|SV2014, LZUFR, 2014|SV2018, LZUFR, 2018 (G. GEWREP)|SV2022, LZUFR, 2022 (G. GEWREP)");

    // Of the list's rows, the selected ones.
    explorer->activateWindow();
    settle();
    auto* rows = explorer->findChild<VariableListView*>(u"lvListView"_s);
    rows->setFocus();
    rows->selectAll();
    settle();
    frmAuswertung* other = frmAuswertung::openFrom(explorer);
    EXPECT_EQ(other->model().request().lst_TrendVars.size(), 3);
    EXPECT_EQ(other->model().request().txtTitle, QString());
    delete other;
    explorer->activateWindow();
    rows->setFocus();
    rows->clearSelection();
    settle();
    other = frmAuswertung::openFrom(explorer);
    EXPECT_EQ(other->model().request().mode, AnalysisMode::Comparison) << "with nothing selected";
    EXPECT_TRUE(other->model().request().lst_TrendVars.isEmpty());
    delete other;
    delete explorer;

    // In a view of studies the first two make a crosstab.
    explorer = frmExplorer::OpenExplorerView(1);
    for (const CatalogueNode& node : explorer->model().tree.nodes())
        if (node.id() == u"SV2018")
            explorer->showNode(node.Key);
    explorer->activateWindow();
    settle();
    rows = explorer->findChild<VariableListView*>(u"lvListView"_s);
    rows->setFocus();
    rows->selectAll();
    settle();
    other = frmAuswertung::openFrom(explorer);
    const AnalysisRequest& request = other->model().request();
    EXPECT_EQ(request.mode, AnalysisMode::Crosstab);
    EXPECT_EQ(request.dbcVariable.value, explorer->model().list.rows[0].Text);
    EXPECT_EQ(request.dbcVariable2.value, explorer->model().list.rows[1].Text);
    delete other;
    delete explorer;
}

TEST_F(AnalysisModes, TheDialogOfStatisticsChoosesForItsWindow) {
    openMode(u"Option4(3)"_s, u"LZUFR:"_s);
    gOptions.AskMissing = false;
    goTo(1);
    EXPECT_EQ(row(1).section(u'|', 1, 1), u"Count");
    goTo(0);
    inDialog([this](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle(), u"Deskriptive Statistiken auswählen - "_s + window->windowTitle());
        const auto switchTo = [this](int language) {
            setLanguage(language);
            mdLanguage::RefreshForms({Form::open().begin(), Form::open().end()});
        };
        switchTo(1);
        EXPECT_EQ(dialog.windowTitle(), u"Select Descriptives - "_s + window->windowTitle());
        EXPECT_TRUE(window->windowTitle().endsWith(u" - Descriptives"_s));
        switchTo(0);
        for (int i = 0; i < 14; ++i)
            dialog.findChild<QCheckBox*>(arrayName(u"chkDescriptives"_s, i))->setChecked(i == 2);
        QTest::keyClick(dialog.findChild<QComboBox*>(u"cmbDigits(2)"_s), Qt::Key_Home);
        QTest::keyClick(&dialog, Qt::Key_Enter);
    });
    click(u"cmdDescriptives"_s);
    EXPECT_EQ(model().request().dtDesc, u"8");
    goTo(1);
    EXPECT_EQ(row(1), u"|Maximum|10");
    EXPECT_EQ(row(2), QString());
    // Another variable starts with the options' statistics.
    goTo(0);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    EXPECT_EQ(model().request().dtDesc, QString());
    EXPECT_EQ(gOptions.Descriptives, 126);
}

TEST_F(AnalysisModes, TheDialogOfMissingValuesTakesEveryShapeAndCancelLetsTheRunGoOn) {
    openMode(u"Option4(3)"_s, u"LZUFR:"_s);
    const QString own = model().request().dtMissing;
    inDialog([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    goTo(1);
    EXPECT_EQ(tableIs(), TableState::Current);
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().endsWith(u"Missing-Definition: "_s + own));
    const QString whole = row(2);

    // A failed check leaves the dialog open and writes nothing.
    asker.answer(ui::Answer::Yes).answer(ui::Answer::Yes);
    inDialog([this](QDialog& dialog) {
        auto* value = dialog.findChild<QLineEdit*>(u"EinzelWert"_s);
        value->setText(u"abc"_s);
        QTest::keyClick(&dialog, Qt::Key_Enter);
        EXPECT_EQ(asker.lastText(), u"Bitte einen gültigen Wert eingeben! 1");
        EXPECT_TRUE(dialog.isVisible());
        dialog.findChild<QRadioButton*>(u"Option2(1)"_s)->setChecked(true);
        value->setText(u"99"_s);
        dialog.findChild<QLineEdit*>(u"Rangevon"_s)->setText(u"0"_s);
        dialog.findChild<QLineEdit*>(u"Rangebis"_s)->setText(u"4"_s);
        QTest::keyClick(&dialog, Qt::Key_Enter);
    });
    click(u"cmdCalculate"_s);
    EXPECT_NE(row(2), whole);
    EXPECT_EQ(row(2), u"|Minimum|5,00");
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().endsWith(u"Missing-Definition: 0 thru 4, 99"_s))
        << the<QLabel>(u"lblFacts"_s)->text().toStdString();
    // Going to and fro keeps the table, and what is said of it.
    goTo(0);
    goTo(1);
    EXPECT_EQ(row(2), u"|Minimum|5,00");
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().endsWith(u"Missing-Definition: 0 thru 4, 99"_s));
    EXPECT_EQ(tableIs(), TableState::Current);
}

TEST_F(AnalysisModes, AnOpenWindowKeepsTheLanguageOfItsContents) {
    openMode(u"Option1"_s, u"UMLAGE1"_s);
    press(u"optFilter(1)"_s);
    gOptions.EnglishLanguage = true;
    window->refreshTitles();
    const auto shown = [this](const QString& picker) { return the<ChoicePicker>(picker)->currentText(); };
    chooseStudy(u"SV2022"_s);
    chooseStudy(u"SV2018"_s);
    EXPECT_EQ(shown(u"dbcStudy"_s), u"Leben in Solvarden 2018");
    type(u"dbcVariableUni"_s, u"UMLAGE1"_s);
    EXPECT_EQ(the<QLabel>(u"lblVariable"_s)->text(), u"UMLAGE1: Zustimmung zu einer Klimaabgabe (Fassung A)");
    press(u"optFilter(1)"_s);
    EXPECT_EQ(shown(u"dbcParts"_s), u"Fassung A");
    goTo(1);
    EXPECT_TRUE(
        model().result().lblLabel.startsWith(u"SV2018, UMLAGE1: Zustimmung zu einer Klimaabgabe (Fassung A)"_s) &&
        model().result().lblLabel.endsWith(u"(Fälle aus Fassung A)"_s))
        << model().result().lblLabel.toStdString();
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().startsWith(u"Studie: SV2018, Leben in Solvarden 2018"_s));
    goTo(0);
    press(u"Option5"_s);
    click(u"cmd_AddTrend"_s);
    asker.answer(ui::Answer::Yes).input(u"Umlage"_s).answer(ui::Answer::Yes);
    key(u"lst_SavedTrends"_s, Qt::Key_Insert);
    const QStringList entries = listed(u"lst_TrendVars"_s);
    EXPECT_TRUE(entries[0].endsWith(u"Klimaabgabe (Fassung A) (Fälle aus Fassung A)"_s)) << entries[0].toStdString();
    key(u"lst_SavedTrends"_s, Qt::Key_Return);
    EXPECT_EQ(listed(u"lst_TrendVars"_s), entries);

    frmAuswertung* later = frmAuswertung::openFrom(nullptr);
    later->model().edit().StudyClick(u"SV2018"_s);
    EXPECT_EQ(later->model().request().dbcStudy.text, u"Living in Solvarden 2018");
    delete later;
}

TEST_F(AnalysisModes, NoTwoControlsInViewShareAMnemonic) {
    openMode(u"Option1"_s);
    const auto mnemonics = [this] {
        QMap<QString, QStringList> owners;
        for (const auto* widget : window->findChildren<QWidget*>()) {
            QString text = widget->property("text").toString();
            if (const auto* bar = qobject_cast<const QTabBar*>(widget))
                for (int i = 0; i < bar->count(); ++i)
                    owners[QKeySequence::mnemonic(bar->tabText(i)).toString()] << bar->tabText(i);
            if (widget->isVisibleTo(window) && !qobject_cast<const QLineEdit*>(widget))
                owners[QKeySequence::mnemonic(text).toString()] << text;
        }
        owners.remove(QString());
        return owners;
    };
    for (const int language : {0, 1}) {
        setLanguage(language);
        mdLanguage::RefreshForms({Form::open().begin(), Form::open().end()});
        for (const QString& mode : {u"Option1"_s, u"Option2"_s, u"Option4(3)"_s, u"Option5"_s}) {
            goTo(0);
            press(mode);
            if (mode.startsWith(u"Option4"_s) && !model().request().chkDescGroup)
                press(u"chkDescGroup"_s);
            const auto owners = mnemonics();
            EXPECT_GT(owners.size(), 10);
            for (auto owner = owners.begin(); owner != owners.end(); ++owner)
                EXPECT_EQ(owner.value().size(), 1)
                    << mode.toStdString() << ' ' << owner.value().join(u" | "_s).toStdString();
        }
        press(u"Option1"_s);
        goTo(1);
        const auto owners = mnemonics();
        for (auto owner = owners.begin(); owner != owners.end(); ++owner)
            EXPECT_EQ(owner.value().size(), 1) << owner.value().join(u" | "_s).toStdString();
    }
}

TEST_F(AnalysisModes, PartsAndWeightsOfTheWindowCountAndDeleteTakesThePartAway) {
    openMode(u"Option1"_s);
    goTo(1);
    const QString all = model().result().facts->rounds[0].cases.all.value_or(QString());
    goTo(0);
    press(u"optFilter(1)"_s);
    auto* parts = the<ChoicePicker>(u"dbcParts"_s);
    ASSERT_TRUE(parts->isEnabled());
    EXPECT_EQ(the<FilterLine>(u"txtFilter"_s)->text(), window->model().request().txtFilter);
    EXPECT_FALSE(the<FilterLine>(u"txtFilter"_s)->isEnabled());
    goTo(1);
    const QString facts = the<QLabel>(u"lblFacts"_s)->text();
    EXPECT_TRUE(facts.contains(u"Filter: "_s + parts->currentText() + u" ("_s)) << facts.toStdString();
    EXPECT_LT(model().result().facts->rounds[0].cases.all->toInt(), all.toInt());
    goTo(0);
    parts->setFocus();
    QTest::keyClick(parts, Qt::Key_A);
    EXPECT_TRUE(the<QRadioButton>(u"optFilter(1)"_s)->isChecked()) << "other keys are refused";
    QTest::keyClick(parts, Qt::Key_Delete);
    EXPECT_TRUE(the<QRadioButton>(u"optFilter(0)"_s)->isChecked());

    press(u"Option3(3)"_s);
    type(u"dbcVarGewicht_1Uni"_s, u"GEWREP"_s);
    goTo(1);
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().contains(u"Gewicht: GEWREP"_s));
    const QString own = clipText(model().result().mfgGrid);
    goTo(0);
    press(u"Option3(1)"_s);
    EXPECT_FALSE(the<ChoicePicker>(u"dbcVarGewicht_1Uni"_s)->isEnabled());
    goTo(1);
    EXPECT_EQ(clipText(model().result().mfgGrid), own) << "the same variable, however it is chosen";
}

TEST_F(AnalysisModes, TextsOfAnyScriptShowInPickersTitleAndTable) {
    openSampleArchive();
    const QString label = u"مستوى الرضا"_s, value = u"ערך <b>ראשון</b>"_s;
    gDatabase.CurrentDatabase()->Execute(u"UPDATE tkey_Variable SET dt_VarLabel = '"_s + label +
                                         u"' WHERE fi_StudyNo = 'SV2018' AND id_VarName = 'GESCHL'"_s);
    gDatabase.CurrentDatabase()->Execute(
        u"UPDATE tkey_Value SET dt_Label = '"_s + value +
        u"' WHERE fi_StudyNo = 'SV2018' AND fi_VarName = 'GESCHL' AND dt_Value = '1'"_s);
    window = frmAuswertung::openFrom(nullptr);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    window->activateWindow();
    settle();
    chooseStudy(u"SV2018"_s);
    auto* picker = the<ChoicePicker>(u"dbcVariableUni"_s);
    picker->setFocus();
    QInputMethodEvent typed;
    typed.setCommitString(u"الرضا"_s);
    QCoreApplication::sendEvent(picker->lineEdit(), &typed);
    QTest::keyClick(picker, Qt::Key_Enter);
    settle();
    EXPECT_EQ(model().request().dbcVariable.value, u"GESCHL");
    goTo(1);
    EXPECT_TRUE(the<QLabel>(u"lblLabel"_s)->text().contains(label));
    EXPECT_EQ(cell(1, 1), value);
    const QModelIndex index = the<ResultTableView>(u"mfgGrid"_s)->model()->index(0, 0);
    EXPECT_TRUE(index.data(Qt::ToolTipRole).toString().contains(u"&lt;b&gt;"_s)) << "a label is no markup";
}

TEST_F(AnalysisModes, AChildWindowThatIsClosedDuringItsRunGoesOnceTheRunHasEnded) {
    openMode(u"Option2"_s);
    type(u"dbcVariable2Uni"_s, u"LZUFR:"_s);
    QMdiArea area;
    QMdiSubWindow* frame = area.addSubWindow(window);
    area.show();
    frame->show();
    settle();
    const QPointer<frmAuswertung> alive(window);
    bool stillThere = false, done = false;
    asker.onEventTurn = [&] {
        if (std::exchange(done, true))
            return;
        frame->close();
        stillThere = window->isVisible() && AnalysisModel::running();
    };
    goTo(1);
    EXPECT_TRUE(stillThere);
    EXPECT_FALSE(AnalysisModel::running());
    EXPECT_FALSE(alive) << "its frame took it along";
    if (!alive)
        window = nullptr;
}
