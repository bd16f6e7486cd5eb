#include "analysis/AnalysisModel.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TableText.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <algorithm>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// Where a number could be another one than it seems: data that are written while they are read, cases and values that
/// occur twice, a filter of which an end is lost.
class TrueNumbers : public testing::Test {
protected:
    TrueNumbers() : catalogue_(home_.path(u"archive"_s)) { catalogue_.fill(); }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;

    void open(const QString& study = u"QX1919"_s, const QString& variable = u"V5"_s) {
        ASSERT_EQ(catalogue_.open(), 1);
        gOptions.CumulatedPercent = gOptions.SeparateValidCases = gOptions.HeaderValAddVar = false;
        model_.open();
        ASSERT_TRUE(model_.edit().StudyClick(study));
        ASSERT_TRUE(model_.edit().chooseVariable(variable));
    }
    /// Value, label, mark and count of each row behind the header.
    QString cells(int column = 3) const {
        QStringList rows;
        const ResultTable& table = model_.result().mfgGrid;
        for (int row = 1; row < table.Rows(); ++row)
            rows << table.Cell(0, row) + table.Cell(1, row) + table.Cell(2, row) + u':' + table.Cell(column, row);
        return rows.join(u' ');
    }
    /// Does something each time that a count statement is about to be run.
    void beforeEachCount(const std::function<void()>& step) {
        RunHooks hooks;
        hooks.onStatement = [step](const QString& name, const QString&) {
            if (name == "counts"_L1)
                step();
        };
        model_.setHooks(hooks);
    }
};

} // namespace

TEST_F(TrueNumbers, ATableIsOfOneStateOfTheCatalogueAndItsCaseFiles) {
    open();
    // Another program replaces labels and definition while the cases are being counted.
    int writes = 0;
    beforeEachCount([&] {
        if (++writes == 1) {
            catalogue_.execute(u"UPDATE tkey_Variable SET dt_Missing = '2' WHERE id_VarName = 'V5'"_s);
            catalogue_.execute(u"UPDATE tkey_Value SET dt_Label = 'neu' WHERE fi_VarName = 'V5' AND dt_Value = '1'"_s);
        }
    });
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"SYSMISX:1 1neu:2 2unzufriedenX:2 9keine Angabe:1 Summe:6 Gültige Fälle:3"_s);
    EXPECT_EQ(writes, 2);
    EXPECT_TRUE(asker_.boxes.empty());
    // It is not written any more, so nothing is computed twice.
    beforeEachCount([&] { ++writes; });
    model_.computeAnew();
    EXPECT_EQ(writes, 3);
    // Somebody goes on writing: no table rather than one of two states.
    beforeEachCount([&] {
        ++writes;
        catalogue_.execute(u"UPDATE tkey_Study SET dt_Year = '%1' WHERE id_StudyNo = 'QX1919'"_s.arg(writes));
    });
    model_.computeAnew();
    EXPECT_EQ(writes, 6) << "three tries";
    EXPECT_EQ(model_.facts().outcome, RunOutcome::Refused);
    EXPECT_EQ(model_.tableState(), TableState::None);
    EXPECT_TRUE(asker_.lastText().contains(u"werden gerade geschrieben"_s)) << asker_.lastText().toStdString();
    beforeEachCount([] {});
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);

    // A study that was replaced since may have its variables elsewhere, or not at all.
    catalogue_.execute(u"UPDATE tkey_Variable SET dt_FieldName = 'V7' WHERE id_VarName = 'V5'"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(cells().startsWith(u"1neu:3 2unzufriedenX:3"_s)) << cells().toStdString();
    catalogue_.execute(u"DELETE FROM tkey_Variable WHERE id_VarName = 'V5'"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused);
    EXPECT_EQ(asker_.lastText(), u"Bitte eine Variable auswählen"_s);
}

TEST_F(TrueNumbers, MarksAndAnswersHoldThroughTheRoundsOfOneRun) {
    open();
    model_.changeTab(1);
    model_.mfgGrid_Click({2, 2, 2, 2}); // 1
    int writes = 0;
    QString label = u"neu"_s;
    const auto writeOnce = [&] {
        if (++writes == 1)
            catalogue_.execute(
                u"UPDATE tkey_Value SET dt_Label = '%1' WHERE fi_VarName = 'V5' AND dt_Value = '1'"_s.arg(label));
    };
    beforeEachCount(writeOnce);
    asker_.answer(ui::Answer::Yes).answer(ui::Answer::No);
    model_.cmdCalculate();
    EXPECT_EQ(writes, 2);
    EXPECT_EQ(cells(), u"SYSMISX:1 1neuX:2 2unzufrieden:2 9keine AngabeX:1 Summe:6 Gültige Fälle:2"_s);
    EXPECT_EQ(model_.result().marks.by, Marks::By::Hand);
    // The dialog of the statistics and the question about a filter come once.
    model_.edit().chooseMode(AnalysisMode::Descriptives);
    model_.edit().chooseFilterText(u"V7>0 x"_s);
    RunHooks hooks = model_.hooks();
    int dialogs = 0, questions = 0;
    hooks.askMissing = [&](const QString&) {
        ++dialogs;
        return std::optional(MissingAnswer{u"2"_s, true});
    };
    hooks.acceptsLost = [&](const QString&) {
        ++questions;
        return true;
    };
    model_.setHooks(hooks);
    writes = 0;
    label = u"noch einmal neu"_s;
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(writes, 2);
    EXPECT_EQ(dialogs, 1);
    EXPECT_EQ(questions, 1);
    EXPECT_EQ(model_.result().facts->request.sMissing, u"2"_s);
}

TEST_F(TrueNumbers, APartAndAWeightAreThoseThatTheCatalogueHasNow) {
    catalogue_.execute(u"UPDATE tkey_Study SET dt_query = 'SELECT QX1919_1.dt_CaseID AS ID, QX1919_1.V7 AS SE "
                       u"FROM QX1919_1;' WHERE id_StudyNo = 'QX1919'"_s);
    catalogue_.addVariable(u"QX1919"_s, u"SE"_s, u"QX1919_1"_s);
    open();
    ASSERT_TRUE(model_.edit().choosePart(u"1"_s));
    catalogue_.execute(u"UPDATE tkey_Parts SET dt_SelectionCriteria = '2' WHERE id_Part = 1"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(model_.facts().counts.last().contains(u"q.SE=2"_s));
    catalogue_.execute(u"DELETE FROM tkey_Parts"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused) << "all cases are no part";
    EXPECT_EQ(asker_.lastText(), u"Datensatz-Teil nicht gefunden"_s);
    model_.edit().chooseFilter(FilterKind::noFilter);
    ASSERT_TRUE(model_.edit().chooseWeight(WeightKind::WeightRE));
    catalogue_.execute(u"UPDATE tkey_Study SET dt_WeightRE = 'V7' WHERE id_StudyNo = 'QX1919'"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(model_.result().lblLabel.endsWith(u"(gewichtet nach V7)"_s));
    catalogue_.execute(u"UPDATE tkey_Study SET dt_WeightRE = Null WHERE id_StudyNo = 'QX1919'"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused) << "unweighted counts are no weighted ones";
    EXPECT_EQ(asker_.lastText(), u"Gewichtungsvariable auswählen"_s);
}

TEST_F(TrueNumbers, ACaseFileThatWasWrittenSinceIsCountedAnew) {
    open();
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);
    const auto write = [this](const QString& study, const QString& statement) {
        const dao::DatabasePtr file = dao::DBEngine::instance().Workspaces(0).OpenDatabase(catalogue_.caseFile(study));
        file->Execute(statement);
        file->Close();
    };
    write(u"QX1919"_s, u"UPDATE QX1919_1 SET V5 = 2 WHERE V5 = 1"_s);
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Computed);
    EXPECT_TRUE(cells().contains(u"2unzufrieden:4"_s)) << cells().toStdString();
    // While it is counted, too: the catalogue stays as it is.
    int counts = 0;
    RunHooks hooks;
    hooks.onStatement = [&](const QString& name, const QString&) {
        if (name == "q"_L1)
            return;
        ++counts;
    };
    asker_.onEventTurn = [&, written = false]() mutable {
        if (counts == 1 && !std::exchange(written, true))
            write(u"QX1919"_s, u"UPDATE QX1919_1 SET V5 = 1 WHERE V5 = 9"_s);
    };
    model_.setHooks(hooks);
    model_.computeAnew();
    asker_.onEventTurn = nullptr;
    EXPECT_EQ(counts, 2);
    EXPECT_EQ(cells(), u"SYSMISX:1 1zufrieden:1 2unzufrieden:4 Summe:6 Gültige Fälle:5"_s);
    // And that of any entry of a comparison.
    model_.edit().chooseMode(AnalysisMode::Comparison);
    model_.comparison().addVariable(u"QX1919"_s, u"V5"_s);
    model_.comparison().addVariable(u"QX2020"_s, u"V5"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused);
    write(u"QX2020"_s, u"UPDATE QX2020_1 SET V5 = 1"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(cells(4).contains(u"1zufrieden:3"_s)) << cells(4).toStdString();
}

TEST_F(TrueNumbers, CasesThatOccurTwiceAreReported) {
    open();
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(model_.result().notes().isEmpty());
    {
        // A file of another maker: nothing keeps a case from coming twice.
        const dao::DatabasePtr file =
            dao::DBEngine::instance().Workspaces(0).OpenDatabase(catalogue_.caseFile(u"QX1919"_s));
        file->TableDefs().Delete(u"QX1919_2"_s);
        const dao::TableDefPtr table = file->CreateTableDef(u"QX1919_2"_s);
        for (const QString& name : {u"dt_CaseID"_s, u"V6"_s, u"V9"_s})
            table->Fields.push_back(dao::TableDef::CreateField(name, dao::dbDouble));
        file->TableDefs().Append(table);
        for (const int id : {1, 2, 2, 3})
            file->Execute(u"INSERT INTO QX1919_2 (dt_CaseID, V6, V9) VALUES (%1, 1, 1)"_s.arg(id));
        file->Close();
    }
    const QStringList note(u"Fälle kommen in der Tabelle QX1919_2 mehrfach vor und zählen mehrfach."_s);
    model_.edit().chooseVariable(u"V6"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"1:4 Summe:4 Gültige Fälle:4"_s) << "three cases";
    EXPECT_EQ(model_.result().notes(), note);
    model_.edit().chooseVariable(u"V5"_s);
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    model_.edit().chooseVariable2(u"V6"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    model_.chooseValues(2);
    EXPECT_EQ(model_.result().notes(), note) << "in every view";
    model_.edit().chooseMode(AnalysisMode::Comparison);
    model_.comparison().addVariable(u"QX1919"_s, u"V6"_s);
    model_.comparison().addVariable(u"QX2020"_s, u"V5"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.result().notes(), note) << "of whichever entry";
    // A filter joins the table as well.
    model_.edit().chooseMode(AnalysisMode::Frequency);
    model_.edit().StudyClick(u"QX1919"_s);
    model_.edit().chooseVariable(u"V5"_s);
    model_.edit().chooseFilterText(u"V9=1"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.result().notes(), note);
    model_.edit().chooseFilter(FilterKind::noFilter);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(model_.result().notes().isEmpty());
}

/// A study's own selection may stand on a table that knows cases by another name.
TEST_F(TrueNumbers, ATableWithoutTheUsualKeyEndsNoRun) {
    catalogue_.addCases(u"QX1919"_s, u"QX1919_S"_s, {dao::TableDef::CreateField(u"CaseNo"_s, dao::dbDouble)},
                        {{1.0}, {3.0}});
    catalogue_.execute(u"UPDATE tkey_Study SET dt_query = 'SELECT QX1919_S.CaseNo AS ID FROM QX1919_S;' "
                       "WHERE id_StudyNo = 'QX1919'"_s);
    open();
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed) << asker_.lastText().toStdString();
    EXPECT_EQ(cells(), u"1zufrieden:1 2unzufrieden:1 Summe:2 Gültige Fälle:2"_s);
    EXPECT_TRUE(asker_.boxes.empty());
}

TEST_F(TrueNumbers, ValuesThatLookAlikeAndCombinationsBeyondTheLimitAreReported) {
    catalogue_.addStudy(u"N1"_s, u"Nahe Werte"_s);
    for (const QString& name : {u"A"_s, u"B"_s, u"C"_s})
        catalogue_.addVariable(u"N1"_s, name, u"N1_1"_s);
    std::vector<std::vector<dao::Value>> cases{{1.0, 0.0, 0.0}, {1.0 + 1e-15, 0.0, 0.0}, {2.0, 0.0, 0.0}};
    for (int i = 1; i <= 25001; ++i)
        cases.push_back({2.0, double(i % 160), double(i / 160)});
    std::vector<dao::FieldDefinition> fields;
    for (const QString& name : {u"A"_s, u"B"_s, u"C"_s})
        fields.push_back(dao::TableDef::CreateField(name, dao::dbDouble));
    catalogue_.addCases(u"N1"_s, u"N1_1"_s, fields, cases);
    open(u"N1"_s, u"A"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(cells().startsWith(u"1:1 1:1 2:25002 "_s)) << cells().toStdString();
    EXPECT_EQ(model_.result().notes(),
              QStringList(u"Mehrere Werte sehen in der Tabelle gleich aus, sind in den Daten aber verschieden."_s));
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    model_.edit().chooseVariable(u"B"_s);
    model_.edit().chooseVariable2(u"C"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.result().notes(), QStringList(u"Mehr als 25000 Kombinationen: Werte, die erst danach vorkommen, "
                                                   "fehlen in der Tabelle und in N."_s));
    EXPECT_TRUE(asker_.boxes.empty()) << "no box is wanted for it";
    model_.edit().chooseFilterText(u"B<100"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(model_.result().notes().isEmpty());
}

/// What a run itself stores in the catalogue, its query and its links, is nobody else's writing.
TEST_F(TrueNumbers, WhatARunStoresMakesTheNextOneReadNothingAnew) {
    open();
    std::vector<RequestPart> heard;
    model_.edit().listen([&](RequestPart part) { heard.push_back(part); });
    for (const QString& variable : {u"V5"_s, u"V6"_s, u"V7"_s}) {
        model_.edit().chooseVariable(variable);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    }
    EXPECT_EQ(std::ranges::count(heard, RequestPart::Study), 0);
    catalogue_.execute(u"UPDATE tkey_Study SET dt_Year = '1920' WHERE id_StudyNo = 'QX1919'"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused);
    EXPECT_EQ(std::ranges::count(heard, RequestPart::Study), 1);
    EXPECT_EQ(model_.request().dtYear, u"1920"_s);
}

/// The one's missing answers are not the other's empty texts, whichever comes first.
TEST_F(TrueNumbers, AnEmptyTextAndAMissingAnswerOfTwoEntriesAreTwoRows) {
    catalogue_.addStudy(u"ET"_s, u"Leere Texte"_s);
    for (const QString& name : {u"T"_s, u"U"_s})
        catalogue_.addVariable(u"ET"_s, name, u"ET_1"_s);
    catalogue_.addCases(u"ET"_s, u"ET_1"_s, {{u"T"_s, dao::dbText}, {u"U"_s, dao::dbText}},
                        {{u""_s, dao::Value()}, {u""_s, dao::Value()}, {u"a"_s, u"a"_s}, {u"b"_s, u"b"_s}});
    open(u"ET"_s, u"T"_s);
    const auto validCases = [&](const QStringList& order) {
        model_.edit().chooseMode(AnalysisMode::Comparison);
        model_.edit().change(RequestPart::Entries, [](AnalysisRequest& r) { r.lst_TrendVars.clear(); });
        for (const QString& variable : order)
            model_.comparison().addVariable(u"ET"_s, variable);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
        const ResultTable& table = model_.result().mfgGrid;
        return table.Cell(3, table.shape.validRow) + u' ' + table.Cell(4, table.shape.validRow);
    };
    EXPECT_EQ(validCases({u"T"_s, u"U"_s}), u"4 2"_s);
    EXPECT_EQ(cells(), u":2 a:1 b:1 SYSMISX: Summe:4 Gültige Fälle:4 :"_s);
    EXPECT_EQ(cells(4), u": a:1 b:1 SYSMISX:2 Summe:4 Gültige Fälle:2 :"_s);
    EXPECT_EQ(validCases({u"U"_s, u"T"_s}), u"2 4"_s);
    EXPECT_EQ(cells(4), u"SYSMISX: :2 a:1 b:1 Summe:4 Gültige Fälle:4 :"_s);
}

TEST_F(TrueNumbers, AFilterOfWhichAnEndIsLostRunsOnlyIfTheUserSaysSo) {
    open();
    for (const QString& filter : {u"V7=1 garbage"_s, u"V5>=1e2"_s, u"V5>=8O"_s, u"V5>=18-90"_s}) {
        SCOPED_TRACE(filter.toStdString());
        model_.edit().chooseFilterText(filter);
        asker_.answer(ui::Answer::No);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused);
        EXPECT_TRUE(asker_.lastText().startsWith(u"Das Ende des Filters zählt nicht: "_s));
        EXPECT_EQ(model_.tab(), 0);
        EXPECT_TRUE(model_.facts().counts.isEmpty());
    }
    model_.edit().chooseFilterText(u"V7=1 garbage"_s);
    asker_.answer(ui::Answer::Yes);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(cells().endsWith(u"Summe:3 Gültige Fälle:2"_s));
    // In a comparison the entry's filter is asked about, and half a comparison is none.
    model_.edit().chooseMode(AnalysisMode::Comparison);
    model_.comparison().addVariable(u"QX2020"_s, u"V5"_s);
    model_.edit().chooseFilterText(u"V7=1 x"_s);
    ASSERT_TRUE(model_.comparison().cmd_AddTrend());
    asker_.answer(ui::Answer::No);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused);
    EXPECT_EQ(model_.tableState(), TableState::None);
    RunHooks hooks;
    hooks.acceptsLost = [](const QString&) { return false; };
    model_.setHooks(hooks);
    const size_t boxes = asker_.boxes.size();
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused);
    EXPECT_EQ(asker_.boxes.size(), boxes) << "who started the run has answered";
}

/// A failure in the middle of a run leaves no half of a result behind.
TEST_F(TrueNumbers, AFailureThatNoStepExpectedLeavesNothingThatPassesForATable) {
    open();
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    catalogue_.execute(u"UPDATE tkey_Variable SET dt_Missing = 'x' WHERE id_VarName = 'V5'"_s);
    gErrorTrapping = false;
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    model_.edit().chooseVariable2(u"V7"_s);
    model_.edit().chooseFilterText(u"V7>0"_s);
    asker_.answer(ui::Answer::Retry).answer(ui::Answer::Abort);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Refused);
    gErrorTrapping = true;
    EXPECT_EQ(asker_.lastText(), u"13\r\nType mismatch"_s);
    EXPECT_EQ(model_.tab(), 0);
    EXPECT_EQ(model_.tableState(), TableState::None);
    EXPECT_EQ(model_.mfgGrid_Click({1, 1, 2, 2}), ClickEffect::None);
    model_.chooseValues(1);
    catalogue_.execute(u"UPDATE tkey_Variable SET dt_Missing = '9' WHERE id_VarName = 'V5'"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.tableState(), TableState::Current);
}
