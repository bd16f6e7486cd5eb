#include "analysis/AnalysisModel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "support/AsNobody.h"
#include "support/FullDisk.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

constexpr auto Yes = ui::Answer::Yes, No = ui::Answer::No;

class Comparisons : public testing::Test {
protected:
    Comparisons() : catalogue_(home_.path(u"archive"_s)) { catalogue_.fill(); }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;
    ComparisonList& list_ = model_.comparison();

    void open() {
        ASSERT_EQ(catalogue_.open(), 1);
        gOptions.CumulatedPercent = false;
        gOptions.HeaderValAddVar = gOptions.HeaderGroup = false;
        model_.open();
        model_.edit().chooseMode(AnalysisMode::Comparison);
    }

    /// QX1919 unweighted and QX2020.
    void addTwo() {
        ASSERT_TRUE(list_.addVariable(u"QX1919"_s, u"V5"_s));
        ASSERT_TRUE(list_.addVariable(u"QX2020"_s, u"V5"_s));
    }

    QStringList texts() const {
        QStringList all;
        for (const ComparisonEntry& entry : list_.entries())
            all << entry.text;
        return all;
    }
};

} // namespace

TEST_F(Comparisons, EntriesSayWhatTheyAreAndTheRunCountsEachFromItsOwnStudy) {
    open();
    EXPECT_FALSE(list_.cmd_AddTrend());
    EXPECT_EQ(asker_.lastText(), u"Keine Variable ausgewählt"_s);
    gOptions.ComparisonWeight = 1; // QX2020 has no weight
    addTwo();
    model_.edit().StudyClick(u"QX1919"_s);
    model_.edit().chooseVariable(u"V5"_s);
    model_.edit().chooseFilterText(u"V7=1"_s);
    ASSERT_TRUE(list_.cmd_AddTrend());
    ASSERT_TRUE(model_.edit().choosePart(u"1"_s));
    ASSERT_TRUE(list_.cmd_AddTrend());
    EXPECT_EQ(texts(),
              (QStringList{u"QX1919, V5: Zufriedenheit (gewichtet nach V3)"_s, u"QX2020, V5: Zufriedenheit"_s,
                           u"QX1919, V5: Zufriedenheit (ausgewählte Fälle: V7=1)"_s,
                           u"QX1919, V5: Zufriedenheit (Fälle aus "_s + model_.request().dbcParts.text + u")"_s}));
}

TEST_F(Comparisons, TheSelectedEntryFollowsTheWindowOnlyWhenTheUserChanges) {
    open();
    addTwo();
    list_.select({1});
    EXPECT_EQ(model_.request().dbcStudy.value, u"QX2020"_s);
    list_.select({0});
    EXPECT_EQ(model_.request().dbcStudy.value, u"QX1919"_s);
    EXPECT_TRUE(asker_.boxes.empty()); // taking an entry back is no change of it
    asker_.answer(No);
    model_.edit().chooseWeight(WeightKind::WeightRE);
    EXPECT_EQ(asker_.lastText(), u"Möchten Sie den ausgewählten Eintrag in der Vergleichsauswertung ändern?"_s);
    EXPECT_EQ(list_.entries()[0].at(ComparisonEntry::Weight), QString());
    list_.ApplyComparisonEntryChange(false);
    EXPECT_EQ(list_.entries()[0].at(ComparisonEntry::Weight), u"V3"_s);
    EXPECT_EQ(list_.entries()[0].at(ComparisonEntry::WeightInfo), u"RE"_s);
    const size_t before = asker_.boxes.size();
    model_.edit().chooseWeight(WeightKind::WeightRE); // nothing differs
    list_.select({});
    model_.edit().chooseFilterText(u"V7=2"_s); // nothing is selected
    EXPECT_EQ(asker_.boxes.size(), before);

    // Taking the weighted entry back sets its weight in the window.
    model_.edit().chooseWeight(WeightKind::noWeight);
    list_.select({0, 1});
    EXPECT_EQ(model_.request().Option3, WeightKind::WeightRE);
    asker_.answer(No).answer(Yes);
    list_.cmd_DeleteFromTrend();
    EXPECT_EQ(list_.entries().size(), 2);
    list_.cmd_DeleteFromTrend();
    EXPECT_TRUE(list_.entries().isEmpty());
    EXPECT_FALSE(list_.deleteEnabled());
    EXPECT_FALSE(model_.view().cmd_SaveTrend);
}

TEST_F(Comparisons, AnEntryNeedsAVariableAndTheWeightThatIsAskedFor) {
    open();
    EXPECT_FALSE(list_.cmd_AddTrend());
    EXPECT_EQ(asker_.lastText(), u"Keine Variable ausgewählt"_s);
    model_.edit().StudyClick(u"QX1919"_s);
    model_.edit().chooseVariable(u"V5"_s);
    model_.edit().chooseUserWeight();
    EXPECT_FALSE(list_.cmd_AddTrend());
    EXPECT_EQ(asker_.lastText(), u"Gewichtungsvariable auswählen"_s);
    EXPECT_TRUE(list_.entries().isEmpty());
    model_.edit().chooseWeight(WeightKind::WeightUser, u"V3"_s);
    EXPECT_TRUE(list_.cmd_AddTrend());
    EXPECT_EQ(list_.entries()[0].at(ComparisonEntry::Weight), u"V3"_s);
}

TEST_F(Comparisons, ARunCountsEachEntryAndTellsWhatHasGone) {
    open();
    addTwo();
    list_.setTitle(u"Zufriedenheit"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.result().lblLabel, u"Vergleichsauswertung: Zufriedenheit"_s);
    // QX2020 has one 1 and two 2; the header names study, variable and year.
    EXPECT_EQ(model_.result().mfgGrid.Cell(4, 0), u"QX2020, V5, 2020"_s);
    int row = 0;
    for (int r = 1; r < model_.result().mfgGrid.Rows() - 3; ++r)
        if (model_.result().mfgGrid.Cell(0, r) == u"2"_s)
            row = r;
    EXPECT_EQ(model_.result().mfgGrid.Cell(4, row), u"2"_s);
    EXPECT_EQ(model_.result().mfgGrid2.Cell(4, row), u"66,7"_s);
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);

    catalogue_.execute(u"DELETE FROM tkey_Variable WHERE fi_StudyNo = 'QX2020' AND id_VarName = 'V5'"_s);
    model_.computeAnew();
    EXPECT_EQ(model_.facts().outcome, RunOutcome::Computed);
    EXPECT_EQ(asker_.lastText(), u"QX2020, V5 nicht gefunden"_s);
    EXPECT_EQ(model_.result().mfgGrid.Cell(4, row), u"2"_s);
    catalogue_.execute(u"DELETE FROM tkey_Study WHERE id_StudyNo = 'QX2020'"_s);
    model_.computeAnew();
    EXPECT_EQ(model_.facts().outcome, RunOutcome::Refused);
    EXPECT_EQ(asker_.lastText(), u"QX2020 nicht gefunden"_s);
}

TEST_F(Comparisons, APartWithoutANameStaysAPart) {
    catalogue_.execute(u"UPDATE tkey_Study SET dt_query = 'SELECT QX1919_1.dt_CaseID AS ID, QX1919_1.V7 AS SE "
                       u"FROM QX1919_1;' WHERE id_StudyNo = 'QX1919'"_s);
    catalogue_.addVariable(u"QX1919"_s, u"SE"_s, u"QX1919_1"_s);
    catalogue_.execute(u"UPDATE tkey_Parts SET dt_PartName = Null, dt_EnPartName = Null"_s);
    open();
    model_.edit().StudyClick(u"QX1919"_s);
    model_.edit().chooseVariable(u"V5"_s);
    ASSERT_TRUE(model_.edit().choosePart(u"1"_s));
    ASSERT_TRUE(list_.cmd_AddTrend());
    ASSERT_TRUE(list_.addVariable(u"QX2020"_s, u"V5"_s));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    // V7 = 1 in cases 1, 3 and 5 of QX1919.
    EXPECT_EQ(model_.result().mfgGrid.Cell(3, model_.result().mfgGrid.Rows() - 3), u"3"_s);
    EXPECT_EQ(model_.result().mfgGrid.Cell(3, 0), u"QX1919, V5, 1919 (F. 1)"_s);
    // The study of the window has parts again after the run of an entry with a filter of its own.
    model_.edit().StudyClick(u"QX1919"_s);
    model_.edit().chooseVariable(u"V5"_s);
    model_.edit().chooseFilterText(u"V7=2"_s);
    ASSERT_TRUE(list_.cmd_AddTrend());
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    model_.edit().chooseMode(AnalysisMode::Frequency);
    ASSERT_TRUE(model_.edit().chooseFilter(FilterKind::FilterParts));
    EXPECT_EQ(model_.request().dbcParts.value, u"1"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.result().mfgGrid.Cell(3, model_.result().mfgGrid.Rows() - 3), u"3"_s);
}

TEST_F(Comparisons, AreStoredWholeLoadedBackAndDeleted) {
    open();
    gOptions.ComparisonWeight = 1;
    addTwo();
    model_.edit().StudyClick(u"QX1919"_s);
    model_.edit().chooseVariable(u"V5"_s);
    ASSERT_TRUE(model_.edit().choosePart(u"1"_s));
    ASSERT_TRUE(list_.cmd_AddTrend());
    const QStringList before = texts();
    const QList<ComparisonEntry> entries = list_.entries();
    list_.setTitle(u"O'Hara\nzweite Zeile"_s);

    asker_.answer(Yes).input(u"Zufriedenheit"_s);
    EXPECT_TRUE(list_.cmd_SaveTrend());
    asker_.answer(Yes).input(u"zufriedenheit"_s).input(u"O'Hara"_s);
    EXPECT_TRUE(list_.cmd_SaveTrend());
    EXPECT_TRUE(asker_.texts().contains(u"Name bereits vorhanden."_s));
    ASSERT_EQ(list_.lst_SavedTrends().size(), 2);
    EXPECT_EQ(list_.lst_SavedTrends()[1].name, u"O'Hara"_s);

    asker_.answer(Yes).answer(Yes);
    list_.cmd_ClearTrend();
    EXPECT_TRUE(model_.request().txtTitle.isEmpty());
    ASSERT_TRUE(list_.cmd_LoadTrend(1));
    EXPECT_EQ(model_.request().txtTitle, u"O'Hara\r\nzweite Zeile"_s);
    EXPECT_EQ(texts(), before); // the part's name is looked up again
    for (int i = 0; i < entries.size(); ++i)
        for (int column = 1; column < ComparisonEntry::columns; ++column)
            EXPECT_EQ(list_.entries()[i].column[column], entries[i].column[column]) << i << ' ' << column;

    asker_.answer(Yes);
    EXPECT_TRUE(list_.cmd_DelSavedTrend(0));
    EXPECT_EQ(list_.lst_SavedTrends().size(), 1);
    const auto count = [](const QString& table) {
        return gDatabase.CurrentDatabase()->OpenRecordset(u"SELECT Count(*) FROM "_s + table)->value(0).toInteger();
    };
    EXPECT_EQ(count(u"tsys_VariableComparison"_s), 3);
    EXPECT_EQ(count(u"tsys_Comparison"_s), 1);
}

TEST_F(Comparisons, ASaveThatFailsLeavesNothing) {
    catalogue_.addVariable(u"QX1919"_s, u"LONGNAME9"_s, u"QX1919_1"_s, {{"dt_FieldName", u"V5"_s}});
    open();
    addTwo();
    ASSERT_TRUE(list_.addVariable(u"QX1919"_s, u"LONGNAME9"_s));
    asker_.answer(Yes).input(u"zu lang"_s);
    EXPECT_FALSE(list_.cmd_SaveTrend());
    EXPECT_TRUE(asker_.lastText().contains(u"fi_VariableNo"_s) || asker_.lastText().contains(u"3163"_s))
        << asker_.lastText().toStdString();
    EXPECT_FALSE(gDatabase.TableExist(u"tsys_Comparison"_s));
    EXPECT_TRUE(list_.lst_SavedTrends().isEmpty());
    // Without the name that is too long it can be stored all the same.
    list_.select({2});
    asker_.answer(Yes).answer(Yes).input(u"kurz"_s);
    list_.cmd_DeleteFromTrend();
    EXPECT_TRUE(list_.cmd_SaveTrend());
}

TEST_F(Comparisons, AFullDiskAndACatalogueThatMayNotBeWrittenAreToldAndKeepNoHalf) {
    open();
    addTwo();
    const auto stored = [](const QString& table) -> qint64 {
        if (!gDatabase.TableExist(table))
            return -1;
        return gDatabase.CurrentDatabase()->OpenRecordset(u"SELECT Count(*) FROM "_s + table)->value(0).toInteger();
    };
    const auto storedAtAll = [&] {
        return std::pair(stored(u"tsys_Comparison"_s), stored(u"tsys_VariableComparison"_s));
    };
    const auto failsToSave = [&](const QString& words) {
        asker_.answer(Yes).input(u"Zufriedenheit"_s);
        EXPECT_FALSE(list_.cmd_SaveTrend());
        EXPECT_TRUE(asker_.lastText().contains(words)) << asker_.lastText().toStdString();
        EXPECT_EQ(asker_.boxes.back().icon, ui::Icon::Critical);
    };
    // Without the two tables and with them; noticed when the save is committed, and in the middle of it.
    for (const bool tables : {false, true}) {
        if (tables) {
            list_.setTitle(u"erster"_s);
            ASSERT_TRUE(list_.save(u"erster"_s));
        }
        const auto before = storedAtAll();
        EXPECT_EQ(before, tables ? std::pair(qint64{1}, qint64{2}) : std::pair(qint64{-1}, qint64{-1}));
        for (const int megabytes : {1, 8}) {
            list_.setTitle(QString(megabytes << 20, u'x'));
            const FullDisk full(QFileInfo(catalogue_.path()).size());
            failsToSave(u"Not enough space on disk."_s);
            EXPECT_EQ(storedAtAll(), before);
        }
        list_.setTitle(u"zweiter"_s);
        EXPECT_EQ(list_.entries().size(), 2) << "nothing is lost in the window";
        ASSERT_EQ(mdDataBase::OpenQXDatabase(catalogue_.path()), 1);
        EXPECT_EQ(storedAtAll(), before);
    }
    mdDataBase::CloseDataBase();
    constexpr auto everyone =
        QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    for (const QString& place : {catalogue_.path(), QFileInfo(catalogue_.path()).path(), home_.path()})
        QFile::setPermissions(place, everyone);
    {
        const AsNobody nobody;
        ASSERT_EQ(mdDataBase::OpenQXDatabase(catalogue_.path()), 1);
        failsToSave(u"read-only"_s);
        EXPECT_EQ(list_.lst_SavedTrends().size(), 1);
    }
    for (const QString& place : {home_.path(), QFileInfo(catalogue_.path()).path(), catalogue_.path()})
        QFile::setPermissions(place, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ASSERT_EQ(mdDataBase::OpenQXDatabase(catalogue_.path()), 1);
    EXPECT_EQ(storedAtAll(), std::pair(qint64{1}, qint64{2}));
    EXPECT_TRUE(list_.save(u"zweiter"_s)) << "what could not be saved is still there to be saved";
}
