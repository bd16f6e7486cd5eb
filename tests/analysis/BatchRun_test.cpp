#include "analysis/BatchRun.h"

#include "analysis/AnalysisModel.h"
#include "analysis/Instructions.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "platform/dao/Stranger.h"
#include "support/FailingFiles.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"
#include "tables/StoredTable.h"

#include <QElapsedTimer>
#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Batch : public testing::Test {
protected:
    Batch() : catalogue_(home_.path(u"archive"_s)) {
        catalogue_.fill();
        const QString table = u"QX1919_1"_s;
        catalogue_.addVariable(u"QX1919"_s, u"GONE"_s, u"QX1919_9"_s);
        catalogue_.addVariable(u"QX1919"_s, u"NONE"_s, table, {{"dt_FieldName", u"V7"_s}});
        catalogue_.addVariable(u"QX1919"_s, u"BARE"_s, table, {{"dt_FieldName", u"V7"_s}});
        for (const QString& variable : {u"V3"_s, u"V5"_s, u"V6"_s, u"V7"_s, u"V8"_s, u"V9"_s, u"GONE"_s, u"NONE"_s})
            keep(variable, old, oldLayout);
        EXPECT_EQ(catalogue_.open(), 1);
    }

    static inline const QString old = u"\"old\";Freq;;;1;1;\"x\";;"_s, oldLayout = u"1;1;700;300;0;0;"_s;
    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    QStringList progress_;

    void instruct(const QString& variable, const QString& text) {
        catalogue_.execute(u"UPDATE tkey_Variable SET dt_Instruction = \"%1\" WHERE fi_StudyNo = 'QX1919' AND "
                           u"id_VarName = '%2'"_s.arg(text, variable));
    }
    void keep(const QString& variable, const QString& table, const QString& layout) {
        catalogue_.execute(u"UPDATE tkey_Variable SET dt_Table = '%1', dt_TableLayout = '%2' WHERE fi_StudyNo = "
                           u"'QX1919' AND id_VarName = '%3'"_s.arg(table, layout, variable));
    }
    static QString kept(const QString& variable, const QString& field = u"dt_Table"_s) {
        return variableRow(u"QX1919"_s, variable, {field})->text(field);
    }
    BatchRequest request() {
        return {.study = u"QX1919"_s, .progress = [this](const QString& text, int done, int total) {
                    progress_ << text + (total > 0 ? u" %1/%2"_s.arg(done).arg(total) : QString());
                }};
    }
    /// The values and counts of a kept frequency table; of another one its title and kind.
    static QString counts(const QString& variable) {
        const std::optional<StoredTable> stored = readStoredTable(kept(variable), kept(variable, u"dt_TableLayout"_s));
        if (!stored)
            return u"damaged"_s;
        if (stored->kind != TableKind::Frequency || stored->table.Cols() < 4)
            return stored->title + u'|' + storedKind(stored->kind);
        QStringList rows;
        for (int row = 1; row < stored->table.Rows() && !stored->table.Cell(0, row).isEmpty(); ++row)
            rows << stored->table.Cell(0, row) + u':' + stored->table.Cell(3, row);
        return rows.join(u' ') + (stored->weight.isEmpty() ? QString() : u" by "_s + stored->weight);
    }
    static QStringList names(const std::vector<BatchReport::Named>& all) {
        QStringList list;
        for (const BatchReport::Named& one : all)
            list << one.variable + u'|' + one.words;
        return list;
    }
};

} // namespace

TEST_F(Batch, EachVariableGetsItsTableKeepsItsOldOneOrLosesItAndIsNamed) {
    instruct(u"V3"_s, u"Xtab;V3;noFilter;;noWeight;;A;FlipXtab=False;"_s);
    instruct(u"V5"_s, u"Freq;;FilterUser;V7=1;noWeight;;A;FlipXtab=False;"_s);
    instruct(u"V6"_s, u"Xtab;V7;noFilter;;noWeight;;S;FlipXtab=True;"_s);
    instruct(u"V7"_s, u"Freq;;noFilter;;WeightRE;V3;A;"_s);
    instruct(u"V8"_s, u"Freq;;FilterUser;V7=;noWeight;;A;"_s);
    instruct(u"V9"_s, u"Xtab;V99;noFilter;;noWeight;;A;"_s);
    instruct(u"GONE"_s, u"Freq;;noFilter;;noWeight;;A;"_s);
    BatchRun batch(request());
    ASSERT_EQ(batch.obstacle(), QString());
    const BatchReport report = batch.run();

    EXPECT_EQ(report.done, (QStringList{u"V5"_s, u"V6"_s, u"V7"_s}));
    EXPECT_EQ(report.deleted, QStringList{u"NONE"_s}) << "BARE had no table";
    EXPECT_EQ(report.notReached, QStringList());
    const QStringList failed = names(report.failed);
    ASSERT_EQ(failed.size(), 4);
    EXPECT_EQ(failed[0], u"V3|Doppelte Variablen"_s);
    EXPECT_TRUE(failed[1].startsWith(u"V8|Hinter = fehlt ein Wert."_s)) << failed[1].toStdString();
    EXPECT_EQ(failed[2], u"V9|Zweite Variable nicht gefunden: V99"_s);
    EXPECT_TRUE(failed[3].startsWith(u"GONE|"_s) && failed[3].contains(u"QX1919_9"_s)) << failed[3].toStdString();
    // Cases 1, 3, 5 have V7 = 1; their values of V5 are 1, 2, 9.
    EXPECT_EQ(counts(u"V5"_s), u"1:1 2:1 9:1"_s);
    // Weights 0,5 + 1,2 + 1,0 and 1,5 + 0,8 + 1,0; this instruction doesn't take the exchange of the one before.
    EXPECT_EQ(counts(u"V7"_s), u"1:3 2:3 by V3"_s);
    const std::optional<StoredTable> crosstab = readStoredTable(kept(u"V6"_s), {});
    ASSERT_TRUE(crosstab);
    EXPECT_EQ(crosstab->kind, TableKind::Crosstab);
    EXPECT_EQ(crosstab->values, 1);
    EXPECT_EQ(crosstab->table.Cell(0, 3), u"1"_s);
    EXPECT_EQ(crosstab->table.Cell(1, 3), u"männlich"_s) << "in creation mode the second variable has the rows";
    for (const QString& variable : {u"V3"_s, u"V8"_s, u"V9"_s, u"GONE"_s}) {
        EXPECT_EQ(kept(variable), old);
        EXPECT_EQ(kept(variable, u"dt_TableLayout"_s), oldLayout);
    }
    for (const QString& field : {u"dt_Table"_s, u"dt_TableLayout"_s})
        EXPECT_TRUE(variableRow(u"QX1919"_s, u"NONE"_s, {field})->value(field).isNull());
    EXPECT_EQ(asker_.boxes.size(), 0U) << asker_.lastText().toStdString();
    EXPECT_EQ(progress_.mid(0, 2), (QStringList{u"Tabelle erzeugen für: V3 0/9"_s, u"Tabelle erzeugen für: V5 1/9"_s}));
    EXPECT_EQ(progress_.last(), QString());
    EXPECT_EQ(asker_.pointer(), ui::Pointer::Default);
    EXPECT_FALSE(AnalysisModel::running());
}

TEST_F(Batch, WhatIsSaidOfATableIsARemark) {
    instruct(u"V5"_s, u"Freq;;noFilter;;WeightUser;V6;A;"_s);
    gOptions.AskMissing = true;
    instruct(u"V9"_s, u"Desc32;V6;noFilter;;noWeight;;A;"_s);
    const BatchReport report = BatchRun(request()).run();
    EXPECT_EQ(report.done, (QStringList{u"V5"_s, u"V9"_s}));
    const QStringList remarks = names(report.remarks);
    ASSERT_EQ(remarks.size(), 2);
    EXPECT_EQ(remarks[0], u"V5|Warnung: unbekannte Anzahl fehlender Werte in Gewichtungsvariable."_s);
    // One case has V6 = 3: it has no standard deviation.
    EXPECT_TRUE(remarks[1].contains(u"ist nicht zu berechnen"_s)) << remarks[1].toStdString();
    EXPECT_EQ(counts(u"V9"_s), u"QX1919, V9: Alter nach V6: Vertrauen|Desc"_s);
    EXPECT_EQ(asker_.boxes.size(), 0U);
}

TEST_F(Batch, TheReportIsShortAndItsDetailsAreWhole) {
    BatchReport report;
    for (int i = 1; i <= 12; ++i)
        report.failed.push_back({u"V%1"_s.arg(i), QString(5000, u'x')});
    EXPECT_LT(report.summary(10).size(), 2500);
    EXPECT_TRUE(report.summary(10).endsWith(u"und weitere: 2"_s));
    EXPECT_TRUE(report.text().contains(u"V12: "_s + QString(5000, u'x')));
}

TEST_F(Batch, TheLayoutOfTheTableBeforeIsLaidOnTheViewThatIsKept) {
    for (const QString& variable : {u"V5"_s, u"V6"_s})
        instruct(variable, u"Xtab;V7;noFilter;;noWeight;;S;"_s);
    for (const bool preserve : {false, true}) {
        keep(u"V5"_s, old, u"3;2;1111;2222;3333;444;555;0;9;0;0;0;0;1;1;1;"_s);
        keep(u"V6"_s, QString(), u"1;1;1111;444;0;1;"_s);
        BatchRequest wish = request();
        wish.preserveLayout = preserve;
        EXPECT_EQ(BatchRun(wish).run().done, (QStringList{u"V5"_s, u"V6"_s}));
        const auto stored = readStoredTable(kept(u"V5"_s), kept(u"V5"_s, u"dt_TableLayout"_s));
        ASSERT_TRUE(stored);
        EXPECT_EQ(stored->table.ColWidth(1) == 2222, preserve);
        EXPECT_EQ(stored->table.RowHeight(1) == 555, preserve);
        EXPECT_EQ(stored->table.CellAlignment(0, 1) == 9, preserve);
        // A layout without a table is none.
        EXPECT_NE(readStoredTable(kept(u"V6"_s), kept(u"V6"_s, u"dt_TableLayout"_s))->table.ColWidth(0), 1111);
    }
}

TEST_F(Batch, TheFirstStopEndsItAfterTheVariableTheSecondAtOnce) {
    for (const QString& variable : {u"V3"_s, u"V5"_s, u"V6"_s})
        instruct(variable, u"Freq;;noFilter;;noWeight;;A;"_s);
    for (const bool twice : {false, true}) {
        keep(u"V5"_s, old, oldLayout);
        keep(u"V6"_s, old, oldLayout);
        std::unique_ptr<BatchRun> batch;
        BatchRequest wish = request();
        wish.progress = [&](const QString& text, int, int) {
            if (text.endsWith(u"V5"_s))
                batch->stop();
            if (text.endsWith(u"V5"_s) && twice)
                batch->stop();
        };
        batch = std::make_unique<BatchRun>(wish);
        const BatchReport report = batch->run();
        EXPECT_EQ(report.done, twice ? QStringList{u"V3"_s} : (QStringList{u"V3"_s, u"V5"_s}));
        EXPECT_EQ(names(report.failed), twice ? QStringList{u"V5|Der Lauf wurde angehalten."_s} : QStringList());
        EXPECT_EQ(report.notReached,
                  (QStringList{u"V6"_s, u"V7"_s, u"V8"_s, u"V9"_s, u"GONE"_s, u"NONE"_s, u"BARE"_s}));
        EXPECT_EQ(kept(u"V5"_s) == old, twice);
        EXPECT_EQ(kept(u"V6"_s), old);
    }
}

TEST_F(Batch, WhatIsStoredMeanwhileByAnotherIsNotDeletedForWantOfAnInstruction) {
    BatchRequest wish = request();
    wish.progress = [this](const QString& text, int, int) {
        if (text.endsWith(u"V5"_s))
            instruct(u"V6"_s, u"Freq;;FilterUser;V7=;noWeight;;A;"_s);
    };
    const BatchReport report = BatchRun(wish).run();
    EXPECT_TRUE(report.deleted.contains(u"V5"_s) && !report.deleted.contains(u"V6"_s));
    EXPECT_EQ(kept(u"V6"_s), old);
}

TEST_F(Batch, AFileThatAnotherOneHasLockedForAMomentIsWaitedFor) {
    for (const QString& variable : {u"V3"_s, u"V5"_s, u"V6"_s})
        instruct(variable, u"Freq;;noFilter;;noWeight;;A;"_s);
    instruct(u"V7"_s, u"Freq;;FilterUser"_s);
    dao::DBEngine::instance().setLockWait(50);
    Stranger other(catalogue_.path());
    other.run("BEGIN IMMEDIATE");
    QElapsedTimer locked;
    locked.start();
    asker_.onEventTurn = [&] {
        if (locked.elapsed() > 500) {
            other.run("ROLLBACK");
            asker_.onEventTurn = {};
        }
    };
    const BatchReport report = BatchRun(request()).run();
    EXPECT_EQ(report.done, (QStringList{u"V3"_s, u"V5"_s, u"V6"_s}));
    EXPECT_EQ(names(report.failed), QStringList{u"V7|Der Filter ist leer."_s}) << "all cases are not what was asked";
    EXPECT_EQ(report.ended, QString());
}

TEST_F(Batch, WhatWouldFailForAllIsSaidBeforeAndNobodyIsAsked) {
    RequestEditor editor;
    editor.open();
    editor.StudyClick(u"QX1919"_s);
    Instructions commands(editor);
    const auto refused = [&](const QString& words) {
        asker_.boxes.clear();
        EXPECT_FALSE(commands.cmdInstructionRunTableForAll(estimatedTextWidth, {}));
        ASSERT_EQ(asker_.boxes.size(), 1U);
        EXPECT_TRUE(asker_.lastText().contains(words)) << asker_.lastText().toStdString();
    };
    QFile::rename(catalogue_.caseFile(u"QX1919"_s), catalogue_.caseFile(u"away"_s));
    asker_.answer(ui::Answer::Cancel);
    EXPECT_FALSE(commands.cmdInstructionRunTableForAll(estimatedTextWidth, {})) << "nothing would be counted";
    EXPECT_EQ(
        asker_.lastText(),
        u"Möchten Sie für alle Variablen dieser Studie die gespeicherten Anweisungen ausführen und die Tabelle speichern?"_s);
    instruct(u"V5"_s, u"Freq;;noFilter;;noWeight;;A;"_s);
    refused(u"QX1919.mdb' nicht gefunden."_s);
    QFile::rename(catalogue_.caseFile(u"away"_s), catalogue_.caseFile(u"QX1919"_s));
    ASSERT_EQ(mdDataBase::OpenQXDatabase(catalogue_.path(), true), 1);
    refused(u"schreibgeschützt"_s);
    EXPECT_EQ(kept(u"V5"_s), old);
}

TEST_F(Batch, TheReportNamesAllAndTheFirstVariableIsChosenAgain) {
    instruct(u"V5"_s, u"Freq;;FilterUser;V7=;noWeight;;A;"_s);
    instruct(u"V6"_s, u"Freq;;noFilter;;noWeight;;A;"_s);
    RequestEditor editor;
    editor.open();
    editor.StudyClick(u"QX1919"_s);
    editor.chooseVariable(u"V7"_s);
    editor.chooseFilterText(u"V7=2"_s);
    asker_.answer(ui::Answer::Ok);
    EXPECT_TRUE(Instructions(editor).cmdInstructionRunTableForAll(estimatedTextWidth, {}));
    const QString expected = u"QX1919, Tabellen gespeichert: 1\nFehlgeschlagen (Gespeichertes bleibt): 1\n"
                             u"  V5: Hinter = fehlt ein Wert.\nTabellen gelöscht: 6"_s;
    EXPECT_EQ(asker_.lastText(), expected);
    EXPECT_TRUE(asker_.boxes.back().details.contains(u"Tabellen gelöscht: V3, V7, V8, V9, GONE, NONE"_s));
    EXPECT_EQ(editor.request().dbcVariable.value, u"V3"_s);
    EXPECT_EQ(editor.request().txtFilter, u"V7=2"_s) << "what the user has typed is none of the batch's";
}

TEST_F(Batch, AWritingThatFailsLeavesEachPairWholeAndTheReportTrue) {
    const QStringList variables{u"V3"_s, u"V5"_s, u"V6"_s, u"V7"_s, u"V8"_s};
    for (const QString& variable : variables)
        instruct(variable, u"Freq;;noFilter;;noWeight;;A;"_s);
    mdDataBase::CloseDataBase();
    const FailingFiles files;
    int mended = 0, lost = 0;
    for (const bool forGood : {false, true}) {
        bool failed = true;
        for (int victim = 0; failed; victim += forGood ? 6 : 3) {
            ASSERT_LT(victim, 200);
            for (const QString& variable : variables + QStringList{u"NONE"_s})
                keep(variable, old, oldLayout);
            ASSERT_EQ(catalogue_.open(), 1);
            auto batch = std::make_unique<BatchRun>(request());
            FailingFiles::fail(victim, forGood);
            const BatchReport report = batch->run();
            batch.reset();
            failed = FailingFiles::mend();
            mended += failed && report.failed.empty();
            lost += !report.failed.empty();
            const QStringList notDone = names(report.failed);
            for (const QString& variable : variables) {
                const bool done = report.done.contains(variable);
                const bool named = std::ranges::any_of(
                    report.failed, [&](const auto& one) { return one.variable == variable && !one.words.isEmpty(); });
                EXPECT_TRUE(done != (named || report.notReached.contains(variable))) << victim;
                EXPECT_EQ(kept(variable) == old, !done) << victim << notDone.join(u' ').toStdString();
                EXPECT_EQ(kept(variable, u"dt_TableLayout"_s) == oldLayout, !done) << victim;
            }
            EXPECT_EQ(kept(u"NONE"_s).isEmpty(), report.deleted.contains(u"NONE"_s));
            EXPECT_EQ(report.ended.isEmpty(), report.failed.empty());
            mdDataBase::CloseDataBase();
        }
    }
    EXPECT_GT(mended, 0) << "what fails once is tried again";
    EXPECT_GT(lost, 0);
    EXPECT_EQ(asker_.boxes.size(), 0U) << asker_.lastText().toStdString();
}
