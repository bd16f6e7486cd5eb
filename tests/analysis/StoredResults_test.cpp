#include "analysis/StoredResults.h"

#include "analysis/AnalysisModel.h"
#include "analysis/request/variableFields.h"
#include "analysis/result/provenance.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/FullDisk.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TableText.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QFileInfo>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using ui::Answer;

namespace {

/// A window's model in creation mode, without a window.
class StoredResultsTest : public testing::Test {
protected:
    StoredResultsTest() : catalogue_(home_.path(u"archive"_s)) {
        catalogue_.fill();
        EXPECT_EQ(catalogue_.open(), 1);
        gOptions.AskMissing = false;
        model_.open();
        model_.edit().StudyClick(u"QX1919"_s);
        model_.edit().chooseVariable(u"V5"_s);
        model_.edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.bCreationMode = true; });
    }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;
    StoredResults& stored_ = model_.stored();

    void choose(AnalysisMode mode) {
        model_.edit().chooseMode(mode);
        if (mode == AnalysisMode::Crosstab)
            model_.edit().chooseVariable2(u"V6"_s);
        if (mode == AnalysisMode::Comparison) {
            model_.comparison().addVariable(u"QX2020"_s, u"V5"_s);
            model_.comparison().addVariable(u"QX1919"_s, u"V5"_s);
        }
    }
    static QString kept(const QString& field = u"dt_Table"_s, const QString& variable = u"V5"_s) {
        const dao::Value value = variableRow(u"QX1919"_s, variable, {field})->value(field);
        return value.isNull() ? u"Null"_s : value.toText();
    }
    static void keep(const QString& table, const QString& layout = QString(), const QString& variable = u"V5"_s) {
        writeVariableFields(u"QX1919"_s, {{variable, {{u"dt_Table"_s, table}, {u"dt_TableLayout"_s, layout}}}});
    }
    /// Tries to save; nothing is written and the box says why.
    void expectRefused(const QString& words) {
        const QString before = kept();
        EXPECT_FALSE(stored_.cmdTableSave()) << words.toStdString();
        EXPECT_EQ(asker_.lastText(), u"Fehler"_s);
        EXPECT_EQ(asker_.boxes.back().title, QString());
        EXPECT_EQ(asker_.boxes.back().details, words);
        EXPECT_EQ(kept(), before);
    }
};

const QString smallTable = u"\"small\";Xtab;S;N;2;1;\"a\";\"270 (12,5%)\";V3;"_s;

} // namespace

TEST_F(StoredResultsTest, TheTableOfEachModeComesBackWithItsViewAndItsSizes) {
    gOptions.IncludeNinXTabPercent = true;
    gOptions.IncludeNinXTabPercentNFirst = false;
    const struct {
        AnalysisMode mode;
        QString head;
    } cases[] = {{AnalysisMode::Frequency, u"Freq;;;"_s},
                 {AnalysisMode::Crosstab, u"Xtab;Z;N;"_s},
                 {AnalysisMode::Descriptives, u"Desc;;;"_s},
                 {AnalysisMode::Comparison, u"Freq;;;"_s}};
    for (const auto& [mode, head] : cases) {
        choose(mode);
        ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed) << head.toStdString();
        model_.setColWidth(1, 1234);
        if (mode == AnalysisMode::Crosstab)
            model_.chooseValues(2);
        model_.setRowHeight(1, 777);
        const ResultTable made = model_.result().mfgGrid;
        const QString title = model_.result().lblLabel;
        if (kept() != u"Null"_s)
            asker_.answer(Answer::Ok);
        ASSERT_TRUE(stored_.cmdTableSave()) << head.toStdString();
        EXPECT_TRUE(kept().startsWith(u'"' + title + u"\";"_s + head)) << kept().left(200).toStdString();

        ASSERT_TRUE(stored_.cmdTableLoad());
        const TableResult& shown = model_.result();
        EXPECT_EQ(linesOf(shown.mfgGrid), linesOf(made));
        EXPECT_EQ(BuildTableLayoutString(shown.mfgGrid), BuildTableLayoutString(made));
        EXPECT_EQ(shown.mfgGrid.ColWidth(1), 1234);
        EXPECT_EQ(shown.mfgGrid.RowHeight(1), 777);
        EXPECT_EQ(shown.lblLabel, title.section(u'"', 0, 0));
        EXPECT_EQ(model_.view().cbValuesShown, mode == AnalysisMode::Crosstab);
        EXPECT_TRUE(mode != AnalysisMode::Crosstab || model_.request().cbValues == 2);
    }
}

TEST_F(StoredResultsTest, AStoredTableSaysSoTakesNoClicksAndIsComputedAnewByTheNextRun) {
    choose(AnalysisMode::Crosstab);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    keep(smallTable);
    ASSERT_TRUE(stored_.cmdTableLoad());
    EXPECT_EQ(model_.tableState(), TableState::Stored);
    EXPECT_EQ(linesBelow(model_.result()),
              QStringList{u"Gespeicherte Tabelle, nicht neu gerechnet · Studie: QX1919 · "_s +
                          model_.request().dbcVariableUni + u" · Gewicht: V3"_s});
    EXPECT_TRUE(model_.result().computation.ResultCacheKey.isEmpty());
    model_.chooseValues(0); // what stands behind it are no views of it
    EXPECT_FALSE(model_.view().cbValuesEnabled);
    EXPECT_EQ(linesOf(model_.result().mfgGrid), QStringList{u"a|270 (12,5%)"_s});
    EXPECT_EQ(model_.mfgGrid_Click({0, 0, 2, 2}), ClickEffect::None);
    EXPECT_FALSE(model_.marksCanBeSet());
    EXPECT_EQ(model_.command(), std::nullopt);

    model_.setColWidth(0, 3000);
    asker_.answer(Answer::Ok);
    EXPECT_TRUE(stored_.cmdTableSave());
    EXPECT_EQ(kept(), smallTable) << "the text is the one that was read";
    EXPECT_TRUE(kept(u"dt_TableLayout"_s).startsWith(u"2;1;3000;"_s));

    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.tableState(), TableState::Current);
}

TEST_F(StoredResultsTest, OnlyACompleteTableOfTheChosenVariableIsKept) {
    expectRefused(u"Es gibt keine Tabelle."_s);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    model_.edit().chooseVariable(u"V7"_s);
    expectRefused(u"Die Anfrage wurde seit der Berechnung geändert."_s);
    model_.edit().chooseVariable(u"V5"_s);
    model_.mfgGrid_Click({1, 1, markColumn, markColumn});
    expectRefused(u"Die Missing-Werte wurden seit der Berechnung geändert."_s);
    model_.computeAnew();
    EXPECT_TRUE(stored_.cmdTableSave()) << "with the marks that it was made with";

    keep(smallTable);
    ASSERT_TRUE(stored_.cmdTableLoad());
    model_.edit().chooseVariable(u"V7"_s);
    expectRefused(u"Was gezeigt wird, ist nicht von der gewählten Variablen."_s);
    // A comparison is of its entries.
    choose(AnalysisMode::Comparison);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    model_.edit().chooseVariable(u"V7"_s);
    expectRefused(u"Was gezeigt wird, ist nicht von der gewählten Variablen."_s);
    EXPECT_EQ(kept(u"dt_Table"_s, u"V7"_s), u"Null"_s);
}

TEST_F(StoredResultsTest, AVariableThatHasGoneMeanwhileIsAFailureInWords) {
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM tkey_Variable WHERE id_VarName = 'V5'"_s);
    EXPECT_FALSE(stored_.cmdTableSave());
    ASSERT_FALSE(asker_.boxes.empty());
    EXPECT_EQ(asker_.boxes.front().text, u"Fehler"_s);
    EXPECT_EQ(asker_.boxes.front().details, u"Variable nicht gefunden"_s);
}

TEST_F(StoredResultsTest, WhatIsKeptIsLostOnlyByOkAndDeletedFieldsAreNull) {
    EXPECT_FALSE(stored_.table().load || stored_.table().remove || stored_.table().save);
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(stored_.table().save);
    ASSERT_TRUE(stored_.cmdTableSave());
    EXPECT_TRUE(asker_.boxes.empty());
    EXPECT_TRUE(stored_.table().load && stored_.table().remove);
    keep(smallTable, u"1;1;2;"_s);
    asker_.answer(Answer::Cancel).answer(Answer::Cancel).answer(Answer::Ok);
    EXPECT_FALSE(stored_.cmdTableSave());
    EXPECT_EQ(asker_.lastText(), u"Möchten Sie die gespeicherte Tabelle überschreiben?"_s);
    EXPECT_FALSE(stored_.cmdTableDelete());
    EXPECT_EQ(kept(), smallTable);
    EXPECT_TRUE(stored_.cmdTableDelete());
    EXPECT_EQ(asker_.lastText(), u"Möchten Sie die gespeicherte Tabelle löschen?"_s);
    EXPECT_EQ(kept() + kept(u"dt_TableLayout"_s), u"NullNull"_s);
    EXPECT_FALSE(stored_.table().load || stored_.table().remove);
    EXPECT_FALSE(stored_.cmdTableDelete());
    EXPECT_EQ(asker_.lastText(), u"Fehler"_s);
    EXPECT_FALSE(stored_.cmdTableLoad());
    EXPECT_FALSE(stored_.cmdGraphDelete() || stored_.cmdGraphLoad() || stored_.cmdGraphSave());
    model_.edit().change(RequestPart::Mode, [](AnalysisRequest& r) { r.bCreationMode = false; });
    EXPECT_FALSE(stored_.table().save) << "in creation mode only";
}

TEST_F(StoredResultsTest, ADamagedTableLeavesTheOneInView) {
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    const QStringList before = linesOf(model_.result().mfgGrid);
    for (const QString& damaged : {u"Fehler"_s, smallTable.chopped(1), u"\"t\";Freq;;;99999;99999;\"\";;"_s}) {
        keep(damaged);
        EXPECT_FALSE(stored_.cmdTableLoad());
        EXPECT_EQ(asker_.lastText(), u"Fehler"_s);
        EXPECT_EQ(linesOf(model_.result().mfgGrid), before);
        EXPECT_EQ(model_.tableState(), TableState::Current);
    }
}

TEST_F(StoredResultsTest, WhicheverWriteFailsTextAndLayoutStayThoseOfOneTable) {
    ASSERT_EQ(model_.changeTab(1), RunOutcome::Computed);
    const QString file = gDatabase.CurrentDatabase()->Name();
    const QString old(60'000, u'x'), oldLayout(60'000, u'1');
    keep(old, oldLayout);
    int failed = 0, written = 0;
    // Old and new content take pages of their own, and the journal grows beside the file.
    for (qint64 room = 0; room < 300'000 && written == 0; room += 8192) {
        keep(old, oldLayout);
        bool saved = false;
        {
            const FullDisk full(std::max<qint64>(512, room));
            asker_.answer(Answer::Ok);
            saved = stored_.cmdTableSave();
        }
        const bool isOld = kept() == old && kept(u"dt_TableLayout"_s) == oldLayout;
        const bool isNew =
            kept() != old && kept(u"dt_TableLayout"_s) == BuildTableLayoutString(model_.result().mfgGrid);
        EXPECT_EQ(saved, isNew) << room;
        EXPECT_TRUE(isOld || isNew) << room;
        ++(saved ? written : failed);
    }
    EXPECT_GT(failed, 0);
    EXPECT_EQ(written, 1) << QFileInfo(file).size();
}
