#include "analysis/AnalysisWindow.h"
#include "config/CProfile.h"
#include "widgets/Desktop.h"

#include "platform/dao/DBEngine.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <utility>

using namespace Qt::StringLiterals;

TEST_F(AnalysisWindow, TypingInASearchedPickerNarrowsOverNameAndLabelAndFreeTextIsNoChoice) {
    open();
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"schlecht"_s);
    EXPECT_EQ(window->model().request().dbcVariable.value, u"GESCHL");
    EXPECT_EQ(the<ChoicePicker>(u"dbcVariable"_s)->currentText(), u"Geschlecht");
    EXPECT_EQ(the<QLabel>(u"lblVariable"_s)->text(), u"GESCHL: Geschlecht");
    for (const Qt::Key leave : {Qt::Key_Tab, Qt::Key_Enter, Qt::Key_Escape}) {
        auto* list = the<ChoicePicker>(u"dbcVariableUni"_s);
        list->setFocus();
        list->lineEdit()->selectAll();
        QTest::keyClicks(list, u"gibt es nicht"_s);
        QTest::keyClick(list, leave);
        settle();
        EXPECT_EQ(list->currentText(), leave == Qt::Key_Escape ? u"GESCHL: Geschlecht" : u"gibt es nicht") << leave;
        EXPECT_EQ(window->model().request().dbcVariable.value, u"GESCHL") << leave;
    }
    type(u"dbcVariableUni"_s, u"gibt es nicht"_s);
    // Another study, another list: nothing of the old one is left.
    chooseStudy(u"SV2018"_s);
    EXPECT_EQ(the<ChoicePicker>(u"dbcVariableUni"_s)->currentText(), QString());
    EXPECT_TRUE(window->model().request().dbcVariable.isEmpty());
}

TEST_F(AnalysisWindow, ASearchTakesTheNameThatWasTypedBeforeWordsOfOtherLabelsAndOffersItFirst) {
    open();
    chooseStudy(u"SV2018"_s);
    // An earlier variable's label speaks of a "Klimaabgabe".
    auto* list = the<ChoicePicker>(u"dbcVariableUni"_s);
    list->setFocus();
    QTest::keyClicks(list, u"klima"_s);
    EXPECT_EQ(list->lineEdit()->completer()->popup()->model()->index(0, 0).data().toString(),
              u"KLIMA: Sorge um den Klimawandel");
    QTest::keyClick(list, Qt::Key_Enter);
    EXPECT_EQ(window->model().request().dbcVariable.value, u"KLIMA");
    type(u"dbcVariableUni"_s, u"umlage2"_s);
    EXPECT_EQ(window->model().request().dbcVariable.value, u"UMLAGE2");
    type(u"dbcVariableUni"_s, u"UML"_s);
    EXPECT_EQ(window->model().request().dbcVariable.value, u"UMLAGE1") << "the beginning of names";
    type(u"dbcVariableUni"_s, u"klimabeitrag (fassung b"_s);
    EXPECT_EQ(window->model().request().dbcVariable.value, u"UMLAGE2") << "anywhere in the text";
}

TEST_F(AnalysisWindow, TheFirstKeyOfAnotherSearchReplacesWhatIsShown) {
    open();
    chooseStudy(u"SV2018"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    auto* list = the<ChoicePicker>(u"dbcVariableUni"_s);
    const auto search = [&](const QString& text) {
        QTest::keyClicks(list, text);
        EXPECT_EQ(list->currentText(), text);
        QTest::keyClick(list, Qt::Key_Enter);
        settle();
        return window->model().request().dbcVariable.value;
    };
    EXPECT_EQ(search(u"FAMST"_s), u"FAMST") << "the focus has not moved";
    goTo(1);
    goTo(0);
    QTest::keyClick(window, Qt::Key_U, Qt::AltModifier);
    EXPECT_EQ(search(u"MIETE"_s), u"MIETE") << "by its mnemonic";
    the<ChoicePicker>(u"dbcVariable_1"_s)->setFocus();
    for (const QString& name : {u"LZUFR"_s, u"KLIMA"_s}) {
        QTest::mouseClick(list->lineEdit(), Qt::LeftButton, {}, QPoint(30, list->lineEdit()->height() / 2));
        settle();
        EXPECT_EQ(search(name), name) << "by a click";
    }
}

TEST_F(AnalysisWindow, WithoutAStudyNothingIsComputed) {
    open();
    EXPECT_TRUE(the<QRadioButton>(u"Option1"_s)->isChecked());
    for (const int tab : {1, 2}) {
        goTo(tab);
        EXPECT_EQ(asker.lastText(), u"Bitte eine Variable auswählen") << tab;
        EXPECT_EQ(the<QTabWidget>(u"SSTab"_s)->currentIndex(), 0) << tab;
    }
    EXPECT_EQ(asker.texts().size(), 2);
}

TEST_F(AnalysisWindow, TheTableTabShowsTheTableAndWhatItStandsOn) {
    openTable();
    EXPECT_EQ(row(0), u"Wert|Ausprägung|Missing|Anzahl|Prozent|Gült.Prozent|Kumul.Prozent");
    EXPECT_EQ(row(1).section(u'|', 0, 2), u"1|männlich|");
    EXPECT_EQ(the<QLabel>(u"lblLabel"_s)->text(), window->model().result().lblLabel);
    EXPECT_EQ(state(), QString());
    const QString facts = the<QLabel>(u"lblFacts"_s)->text();
    EXPECT_TRUE(
        facts.startsWith(u"Studie: SV2014, Leben in Solvarden 2014 · Filter: keiner · Gewicht: keines · N = "_s))
        << facts.toStdString();
    EXPECT_TRUE(facts.endsWith(u" · Missing-Definition: 9"_s)) << facts.toStdString();
    // The grid holds every cell of the model's table.
    EXPECT_EQ(clipText(the<ResultTableView>(u"mfgGrid"_s)->table()), clipText(window->model().result().mfgGrid));
}

TEST_F(AnalysisWindow, WhatIsToBeKnownOfTheNumbersStandsBelowTheTableAndInItsPage) {
    open();
    const QString file = home.path(u"SV2014.mdb"_s);
    QFile::copy(gOptions.DataPath + u"/SV2014.mdb"_s, file);
    gOptions.DataPath = home.path(QString());
    {
        // A file of another maker: nothing keeps a case from coming twice.
        const dao::DatabasePtr cases = dao::DBEngine::instance().Workspaces(0).OpenDatabase(file);
        cases->TableDefs().Delete(u"SV2014_1"_s);
        const dao::TableDefPtr table = cases->CreateTableDef(u"SV2014_1"_s);
        for (const QString& name : {u"dt_CaseID"_s, u"GESCHL"_s})
            table->Fields.push_back(dao::TableDef::CreateField(name, dao::dbDouble));
        cases->TableDefs().Append(table);
        for (const int id : {1, 2, 2})
            cases->Execute(u"INSERT INTO SV2014_1 (dt_CaseID, GESCHL) VALUES (%1, 1)"_s.arg(id));
        cases->Close();
    }
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    goTo(1);
    const QString note = u"Fälle kommen in der Tabelle SV2014_1 mehrfach vor und zählen mehrfach."_s;
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().startsWith(note + u'\n'))
        << the<QLabel>(u"lblFacts"_s)->text().toStdString();
    asker.file(home.path(u"t.html"_s));
    click(u"cmdSaveTableAs"_s);
    QFile page(home.path(u"t.html"_s));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(page.readAll()).contains(note));
}

TEST_F(AnalysisWindow, ARunThatItsChecksRefuseBeginsNothing) {
    open();
    gOptions.DataOnCD = false;
    chooseStudy(u"SV2014"_s);
    goTo(1);
    EXPECT_EQ(asker.lastText(), u"Bitte eine Variable auswählen"_s);
    EXPECT_FALSE(gOptions.DataOnCD);
    // The picker of views goes with its tab, and comes back with a table that has views.
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    press(u"Option2"_s);
    type(u"dbcVariable2Uni"_s, u"BERUF"_s);
    goTo(1);
    auto* views = the<QComboBox>(u"cbValues"_s);
    EXPECT_TRUE(gOptions.DataOnCD);
    ASSERT_EQ(window->model().facts().outcome, RunOutcome::Computed);
    EXPECT_TRUE(views->isVisibleTo(window));
    goTo(0);
    EXPECT_TRUE(views->isHidden());
}

TEST_F(AnalysisWindow, TheFilterLineOffersNamesAndMarksWhatTheRunWouldRefuse) {
    open();
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    auto* line = the<FilterLine>(u"txtFilter"_s);
    EXPECT_FALSE(line->isEnabled());
    QTest::mouseClick(the<QRadioButton>(u"optFilter(2)"_s), Qt::LeftButton, {}, QPoint(8, 8));
    ASSERT_TRUE(line->isEnabled());
    line->setFocus();
    QTest::keyClicks(line, u"GESCHL=1 AND GIBTSNICHT=2"_s);
    auto* check = the<QLabel>(u"lblFilterCheck"_s);
    EXPECT_EQ(check->text(), u" ") << "not while keys follow each other";
    const int top = the<QGroupBox>(u"fraValues"_s)->y();
    const auto says = [&](const QString& words) {
        const bool said = QTest::qWaitFor([&] { return check->text().trimmed() == words; });
        return said && the<QGroupBox>(u"fraValues"_s)->y() == top; // nothing moves for the words
    };
    EXPECT_TRUE(says(u"GIBTSNICHT nicht gefunden"_s));
    EXPECT_EQ(line->accessibleDescription(), check->text());
    line->clear();
    QTest::keyClicks(line, u"GESCHL = ;"_s);
    EXPECT_TRUE(says(u"Unerlaubtes Zeichen: ;"_s));
    line->clear();
    QTest::keyClicks(line, u"(GESCHL=1 OR "_s);
    EXPECT_TRUE(says(u"Hinter OR fehlt eine Bedingung."_s));
    QTest::keyClicks(line, u"GESCHL=2"_s);
    line->clearFocus();
    EXPECT_EQ(check->text(), u"Eine Klammer ist nicht geschlossen.") << "at once when it is left";
    goTo(1);
    EXPECT_EQ(asker.texts(), QStringList{u"Eine Klammer ist nicht geschlossen."_s});
    asker.boxes.clear();
    line->setFocus();
    line->clear();
    QTest::keyClicks(line, u"GESCHL=1"_s);
    EXPECT_TRUE(says(QString()));
    EXPECT_EQ(line->accessibleDescription(), QString());
    goTo(1);
    EXPECT_EQ(row(2).section(u'|', 1, 1), u"Summe") << "only men are left";
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().contains(u"Filter: GESCHL=1 · "_s));
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(AnalysisWindow, TheListOfNamesInTheFilterLineGoesOnceANameStandsThere) {
    open();
    chooseStudy(u"SV2018"_s);
    auto* line = the<FilterLine>(u"txtFilter"_s);
    press(u"optFilter(2)"_s);
    EXPECT_TRUE(line->hasFocus()) << "a click on the choice leads to its line";
    press(u"optFilter(0)"_s);
    QTest::keyClick(window, Qt::Key_Z, Qt::AltModifier);
    EXPECT_TRUE(line->hasFocus()) << "and so does its letter";
    auto* list = line->findChild<QCompleter*>()->popup();
    QTest::keyClicks(line, u"kli"_s);
    ASSERT_TRUE(list->isVisible());
    EXPECT_GT(list->model()->rowCount(), 1) << "labels that hold it too";
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Enter);
    EXPECT_EQ(line->text(), u"KLIMA");
    EXPECT_FALSE(list->isVisible());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !the<QLabel>(u"lblFilterCheck"_s)->text().trimmed().isEmpty(); }))
        << "what the list would cover";
    for (const QString& text : {u"=1 and"_s, u" not"_s, u" umlage1"_s}) {
        QTest::keyClicks(line, text);
        EXPECT_FALSE(list->isVisible()) << text.toStdString();
    }
}

TEST_F(AnalysisWindow, MarksAreSetBySpaceAndClickAndTheLineOffersToComputeAnew) {
    openTable();
    const auto placeOfCells = [this] {
        auto* cells = the<ResultTableView>(u"mfgGrid"_s)->viewport();
        return QRect(cells->mapTo(window, QPoint()), cells->size());
    };
    const QString before = row(1);
    const QRect place = placeOfCells();
    selectCell(1, 2);
    QTest::keyClick(the<ResultTableView>(u"mfgGrid"_s), Qt::Key_Space);
    EXPECT_EQ(row(1).section(u'|', 2, 2), u"X");
    EXPECT_EQ(state(), u"Die Missing-Werte wurden seit der Berechnung geändert.");
    settle();
    EXPECT_EQ(placeOfCells(), place) << "a second click would mark another row";
    click(u"cmdComputeAnew"_s);
    EXPECT_EQ(state(), QString());
    EXPECT_EQ(row(1).section(u'|', 5, 5), u" ") << "a missing value has no valid percent";
    EXPECT_TRUE(the<QLabel>(u"lblFacts"_s)->text().endsWith(u"Missing-Definition: 9 (von Hand gesetzt: 1)"_s))
        << the<QLabel>(u"lblFacts"_s)->text().toStdString();

    // One click in the column takes the mark back; another column does nothing.
    auto* grid = the<ResultTableView>(u"mfgGrid"_s);
    const auto clickCell = [&](int column) {
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {},
                          grid->visualRect(grid->model()->index(0, column - 1)).center());
    };
    clickCell(3);
    EXPECT_EQ(row(1).section(u'|', 2, 2), u"X");
    clickCell(2);
    EXPECT_EQ(row(1).section(u'|', 2, 2), u" ");
    click(u"cmdComputeAnew"_s);
    EXPECT_EQ(row(1).section(u'|', 3), before.section(u'|', 3));
    EXPECT_TRUE(asker.boxes.empty());
}

TEST_F(AnalysisWindow, AClickOnAHeadingOnlyAsksAndTheOriginalDefinitionComesBack) {
    openTable();
    selectCell(1, 2);
    click(u"cmdSetMissing"_s);
    const QString marked = row(1);
    const auto clickHeading = [&] {
        QHeaderView* head = the<ResultTableView>(u"mfgGrid"_s)->horizontalHeader();
        QTest::mouseClick(head->viewport(), Qt::LeftButton, {},
                          QPoint(head->sectionViewportPosition(1) + head->sectionSize(1) / 2, head->height() / 2));
        settle();
    };
    asker.answer(ui::Answer::No);
    clickHeading();
    EXPECT_EQ(row(1), marked) << "the question was answered with No";
    asker.answer(ui::Answer::Yes).answer(ui::Answer::Yes);
    clickHeading();
    EXPECT_EQ(row(1).section(u'|', 2, 2), QString());
    EXPECT_EQ(asker.texts(),
              (QStringList{u"Möchten Sie die Tabelle neuberechnen?"_s, u"Möchten Sie die Tabelle neuberechnen?"_s,
                           u"Möchten Sie die ursprünglichen Missing Value Definitionen wiederherstellen?"_s}));
    EXPECT_EQ(asker.boxes.back().defaultButton, ui::Answer::No) << "Enter keeps the marks";
}

TEST_F(AnalysisWindow, OptionsThatChangeTheTableAreNoticedAndMarksByHandOutliveThem) {
    openTable();
    selectCell(1, 2);
    click(u"cmdSetMissing"_s);
    gOptions.SeparateValidCases = !gOptions.SeparateValidCases;
    window->optionsApplied();
    EXPECT_EQ(state(), u"Die Optionen wurden seit der Berechnung geändert.");
    const int rows = window->model().result().mfgGrid.Rows();
    click(u"cmdComputeAnew"_s);
    EXPECT_EQ(window->model().result().mfgGrid.Rows(), rows - 1);
    EXPECT_EQ(row(1).section(u'|', 2, 2), u"X");
    EXPECT_EQ(state(), QString());
}

TEST_F(AnalysisWindow, CopyPutsTextAndHtmlOnTheClipboardAndSaveWritesTheKindThatTheNameSays) {
    openTable();
    window->copy();
    EXPECT_EQ(asker.lastText(), u"Tabelle in Zwischenablage kopiert.");
    const QStringList lines = asker.clipboardText.split(u'\r');
    EXPECT_EQ(lines[0], window->model().result().lblLabel);
    EXPECT_EQ(lines[1], u"\nWert\tAusprägung\tMissing\tAnzahl\tProzent\tGült.Prozent\tKumul.Prozent");
    EXPECT_EQ(lines.size(), window->model().result().mfgGrid.Rows() + 1);
    EXPECT_TRUE(asker.clipboardHtml.contains(u"<td align=\"left\">männlich</td>"_s));
    EXPECT_TRUE(asker.clipboardHtml.contains(u"Missing-Definition: 9</small>"_s)) << "what it stands on goes with it";
    click(u"cmdCopyCommand"_s);
    EXPECT_TRUE(asker.clipboardText.startsWith(u"vdx frequency "_s) &&
                asker.clipboardText.contains(u" SV2014 GESCHL --missing=9 "_s))
        << asker.clipboardText.toStdString();
    // The box goes for good from within itself.
    EXPECT_EQ(asker.boxes.size(), 2u);
    asker.checks = true;
    window->copy();
    struct : Desktop {
        QStringList mentioned;
        void mention(const QString& text) override { mentioned << text; }
    } frame;
    setDesktop(&frame);
    window->copy();
    click(u"cmdCopyCommand"_s);
    setDesktop(nullptr);
    EXPECT_EQ(asker.boxes.size(), 3u);
    EXPECT_EQ(frame.mentioned,
              (QStringList{u"Tabelle in Zwischenablage kopiert."_s, u"Befehl in Zwischenablage kopiert."_s}));
    EXPECT_EQ(storedSetting(u"TellOfCopies"_s, u"1"_s).toString(), u"0");

    const auto saved = [&](const QString& name) {
        asker.file(home.path(name));
        click(u"cmdSaveTableAs"_s);
        QFile file(home.path(name));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"no file"_s;
    };
    const QString csv = saved(u"t.csv"_s);
    EXPECT_TRUE(csv.startsWith(u"Wert;Ausprägung;Missing;Anzahl;"_s)) << "where numbers have a comma";
    EXPECT_TRUE(csv.contains(u"\r\n# SV2014, GESCHL: "_s) && csv.endsWith(u"Missing-Definition: 9\r\n"_s));
    const QString page = saved(u"t.html"_s);
    EXPECT_TRUE(page.startsWith(u"<!DOCTYPE html>"_s) && page.contains(u"Missing-Definition: 9"_s));
    EXPECT_EQ(saved(u"not/there/t.csv"_s), u"no file");
    EXPECT_TRUE(asker.lastText().startsWith(u"Die Tabelle konnte nicht gespeichert werden:"_s));

    // The name that is offered is that of the table, whatever is asked for meanwhile.
    goTo(0);
    type(u"dbcVariableUni"_s, u"LZUFR"_s);
    asker.file(home.path(u"t2.csv"_s));
    window->saveTableAs();
    EXPECT_EQ(asker.lastChoice.name, u"SV2014-GESCHL.csv");
    type(u"dbcVariableUni"_s, u"GESCHL"_s);

    auto* line = the<ChoicePicker>(u"dbcVariableUni"_s)->lineEdit();
    line->setFocus();
    line->setSelection(0, 3);
    window->copy();
    EXPECT_EQ(asker.clipboardText, u"GES");
}

TEST_F(AnalysisWindow, ARunIsStoppedByItsButtonOrEscapeAndOtherInputIsSwallowed) {
    open();
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    AnalysisModel second;
    QPushButton other;
    int pressed = 0;
    QObject::connect(&other, &QPushButton::clicked, [&] { ++pressed; });
    other.show();
    for (const bool byKey : {false, true}) {
        bool done = false;
        asker.onEventTurn = [&] {
            if (std::exchange(done, true))
                return;
            EXPECT_TRUE(AnalysisModel::running());
            EXPECT_GT(gBusy, 0);
            QTest::mouseClick(&other, Qt::LeftButton);
            QTest::keyClick(&other, Qt::Key_Space);
            EXPECT_EQ(second.changeTab(1), RunOutcome::NotRun) << "another run is refused";
            if (byKey)
                QTest::keyClick(window, Qt::Key_Escape);
            else
                QTest::mouseClick(the<QPushButton>(u"cmdStop"_s), Qt::LeftButton);
        };
        goTo(1);
        EXPECT_EQ(window->model().facts().outcome, RunOutcome::Cancelled);
        EXPECT_EQ(state(), u"Die Berechnung wurde abgebrochen.");
        window->copy();
        EXPECT_EQ(gBusy, 0);
        asker.onEventTurn = nullptr;
        goTo(0);
    }
    EXPECT_EQ(pressed, 0);
    EXPECT_TRUE(asker.boxes.empty() && asker.clipboardText.isNull()) << "there was no table to copy";
    goTo(1);
    EXPECT_EQ(state(), QString());
    EXPECT_EQ(row(1).section(u'|', 1, 1), u"männlich");
}

TEST_F(AnalysisWindow, ClosingDuringARunStopsItFirst) {
    open();
    chooseStudy(u"SV2014"_s);
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    bool openDuringRun = false, done = false;
    asker.onEventTurn = [&] {
        if (std::exchange(done, true))
            return;
        window->close();
        openDuringRun = window->isVisible() && AnalysisModel::running();
    };
    goTo(1);
    EXPECT_TRUE(openDuringRun);
    EXPECT_EQ(window->model().facts().outcome, RunOutcome::Cancelled);
    EXPECT_FALSE(window->isVisible());
}
