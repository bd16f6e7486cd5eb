#include "analysis/AnalysisWindow.h"

#include "analysis/request/variableFields.h"
#include "app/MainWindow.h"
#include "tables/StoredTable.h"

#include <QGroupBox>

namespace {

constexpr auto Ok = ui::Answer::Ok;
const QString study = u"SV2014"_s;

class InstructionsInWindow : public AnalysisWindow {
protected:
    void openCreation() {
        open();
        chooseStudy(study);
        type(u"dbcVariableUni"_s, u"GESCHL"_s);
        press(u"chkVaridexCreation"_s);
    }
    static QString kept(const QString& variable, const QString& field = u"dt_Instruction"_s) {
        return variableRow(study, variable, {field})->text(field);
    }
    QPushButton* button(const QString& name) { return the<QPushButton>(u"cmdInstruction"_s + name); }
    void clickButton(const QString& name) { click(u"cmdInstruction"_s + name); }
};

/// Instructions for the first variables of the study, of which the others then have none.
void instruct(int variables) {
    const std::vector<KeptInstruction> all = readInstructions(study);
    writeToAllVariables(study, u"dt_Instruction"_s, {});
    std::vector<VariableFields> rows;
    for (int i = 0; i < variables; ++i)
        rows.push_back({all[static_cast<size_t>(i)].variable,
                        {{u"dt_Instruction"_s, u"Freq;;noFilter;;noWeight;;A;FlipXtab=False;"_s}}});
    writeVariableFields(study, rows);
}

} // namespace

TEST_F(InstructionsInWindow, AreInViewInCreationModeAndTheirButtonsFollowWhatIsKept) {
    open();
    chooseStudy(study);
    auto* frame = the<QGroupBox>(u"fraInstruction"_s);
    EXPECT_FALSE(frame->isVisible());
    press(u"chkVaridexCreation"_s);
    EXPECT_TRUE(frame->isVisible());
    clickButton(u"Save"_s);
    EXPECT_EQ(asker.lastText(), u"Fehler");
    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    EXPECT_FALSE(button(u"Load"_s)->isEnabled() || button(u"Delete"_s)->isEnabled());

    press(u"Option2"_s);
    type(u"dbcVariable2Uni"_s, u"FAMST"_s);
    auto* values = the<QComboBox>(u"cbValuesInstruct"_s);
    values->setFocus();
    QTest::keyClick(values, Qt::Key_Down);
    press(u"chkFlipXtab"_s);
    clickButton(u"Save"_s);
    EXPECT_EQ(kept(u"GESCHL"_s), u"Xtab;FAMST;noFilter;;noWeight;;S;FlipXtab=True;");
    EXPECT_TRUE(button(u"Load"_s)->isEnabled() && button(u"Delete"_s)->isEnabled());
    type(u"dbcVariableUni"_s, u"ORTGR"_s);
    EXPECT_FALSE(button(u"Load"_s)->isEnabled());

    type(u"dbcVariableUni"_s, u"GESCHL"_s);
    press(u"Option1"_s);
    press(u"chkFlipXtab"_s);
    QTest::keyClick(values, Qt::Key_Up);
    clickButton(u"Load"_s);
    EXPECT_TRUE(the<QRadioButton>(u"Option2"_s)->isChecked());
    EXPECT_EQ(the<ChoicePicker>(u"dbcVariable_2"_s)->currentText(), u"FAMST");
    EXPECT_EQ(values->currentIndex(), 1);
    EXPECT_TRUE(the<QCheckBox>(u"chkFlipXtab"_s)->isChecked());
    asker.answer(Ok);
    clickButton(u"Delete"_s);
    EXPECT_EQ(kept(u"GESCHL"_s), QString());
    EXPECT_FALSE(button(u"Load"_s)->isEnabled());
    press(u"chkVaridexCreation"_s);
    EXPECT_FALSE(frame->isVisible());
}

TEST_F(InstructionsInWindow, ARunForAllCanBeStoppedByItsButtonByEscapeAndByClosing) {
    openCreation();
    const struct {
        const char* how;
        std::function<void()> stop;
    } ways[] = {
        {"button", [this] { QTest::mouseClick(the<QPushButton>(u"cmdStopBatch"_s), Qt::LeftButton); }},
        {"Escape", [this] { QTest::keyClick(window, Qt::Key_Escape); }},
        {"closing", [this] { window->close(); }},
    };
    for (const auto& way : ways) {
        instruct(4);
        writeToAllVariables(study, u"dt_Table"_s, {});
        asker.boxes.clear();
        int turns = 0;
        const QStringList names = window->model().edit().variableChoices();
        asker.answer(Ok);
        asker.onEventTurn = [&] {
            // In the second variable's turn.
            const QString shown = the<QLabel>(u"lblBatch"_s)->text();
            if (!shown.startsWith(u"Tabelle erzeugen für: "_s + names[1].section(u':', 0, 0)) || ++turns > 1)
                return;
            EXPECT_TRUE(the<QPushButton>(u"cmdStopBatch"_s)->isVisible());
            QTest::mouseClick(button(u"SaveForAll"_s), Qt::LeftButton);
            way.stop();
            EXPECT_TRUE(window->isVisible()) << "closing waits";
        };
        clickButton(u"RunTableForAll"_s);
        asker.onEventTurn = {};
        EXPECT_EQ(turns > 0, true);
        ASSERT_EQ(asker.boxes.size(), 2U) << way.how << ' ' << asker.lastText().toStdString();
        EXPECT_TRUE(asker.lastText().contains(u"Tabellen gespeichert: 2\n"_s)) << asker.lastText().toStdString();
        EXPECT_TRUE(asker.lastText().contains(u"Nicht erreicht: "_s));
        EXPECT_FALSE(the<QPushButton>(u"cmdStopBatch"_s)->isVisible());
        const auto stored = readStoredTable(kept(names[1].section(u':', 0, 0), u"dt_Table"_s), {});
        ASSERT_TRUE(stored);
        EXPECT_TRUE(stored->title.startsWith(study + u", "_s + names[1].section(u':', 0, 0))) << "its own, whole";
        EXPECT_EQ(window->model().request().dbcVariable.value, names[0].section(u':', 0, 0));
    }
    EXPECT_FALSE(window->isVisible()) << "closed in the end";
}

class InstructionsInFrame : public MainWindow {};

TEST_F(InstructionsInFrame, TheStatusBarSaysWhichVariableIsWorkedOnAndThenTheCatalogueAgain) {
    openWithArchive();
    const QString catalogue = panel();
    auto* window = frmAuswertung::openFrom(nullptr);
    settle();
    window->model().edit().StudyClick(study);
    window->model().edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.bCreationMode = true; });
    window->act([] {});
    instruct(4);
    const std::vector<KeptInstruction> all = readInstructions(study);
    // Statistics have no chart.
    std::vector<VariableFields> statistics;
    for (const size_t i : {2U, 3U})
        statistics.push_back({all[i].variable, {{u"dt_Instruction"_s, u"Desc;;noFilter;;noWeight;;A;"_s}}});
    statistics[0].values.push_back({u"dt_Graph"_s, u"old"_s});
    writeVariableFields(study, statistics);
    QStringList seen;
    asker.answer(Ok);
    asker.onEventTurn = [&] {
        if (seen.isEmpty() || seen.last() != panel())
            seen << panel();
        EXPECT_FALSE(enabled(u"mnFileClose"_s)) << "the catalogue stays open";
    };
    auto* run = window->findChild<QPushButton*>(u"cmdInstructionRunGraphForAll"_s);
    QTest::mouseClick(run, Qt::LeftButton);
    asker.onEventTurn = {};
    settle();
    const QString first = window->model().edit().variables()[0].name,
                  second = window->model().edit().variables()[1].name;
    ASSERT_GE(seen.size(), 2);
    EXPECT_EQ(seen[0], u"Grafik erzeugen für: "_s + first);
    EXPECT_EQ(seen[1], u"Grafik erzeugen für: "_s + second);
    EXPECT_EQ(panel(), catalogue);
    EXPECT_EQ(asker.lastText(), study + u", Grafiken gespeichert: 2\nGrafiken gelöscht: 1\nTabellen ohne Grafik: 1"_s);
    EXPECT_TRUE(variableRow(study, all[2].variable, {u"dt_Graph"_s})->value(u"dt_Graph"_s).isNull());
    const auto row = variableRow(study, first, {u"dt_Graph"_s, u"dt_GraphLayout"_s});
    EXPECT_TRUE(row->text(u"dt_Graph"_s).startsWith(u"\u00ff\u00d8"_s));
    EXPECT_TRUE(row->text(u"dt_GraphLayout"_s).startsWith(u"\""_s + study + u", "_s + first));
}
