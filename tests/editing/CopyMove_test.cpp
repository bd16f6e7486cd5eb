#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "config/Options.h"
#include "editing/CopyCommands.h"
#include "editing/Drop.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QFile>
#include <gtest/gtest.h>
#include <utility>

using namespace Qt::StringLiterals;
using ui::Answer;

namespace {

/// The standing example, with windows on its studies, categories and trends.
class CopyMove : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ExplorerModel studies, categories, trends;

    void SetUp() override { catalogue.fill(); }
    void open() {
        ASSERT_EQ(catalogue.open(), 1);
        gOptions.EditStudiesMode = true;
        studies.open(1);
        categories.open(2);
        trends.open(3);
    }

    /// Rows as texts, cells with blanks between them, Null as "-".
    static QStringList rows(const QString& statement) {
        QStringList all;
        for (const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenRecordset(statement); !rows->Eof();
             rows->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < static_cast<int>(rows->Fields().size()); ++i)
                cells << (rows->value(i).isNull() ? u"-"_s : rows->value(i).toText());
            all << cells.join(u' ');
        }
        return all;
    }
    static QStringList assigned(const QString& view) {
        return rows(u"SELECT fid, fi_StudyNo, fi_VariableNo FROM trel_Variable"_s + view + u" ORDER BY id"_s);
    }
    static QStringList entries(const QString& view) {
        return rows(u"SELECT id, fid, [Order], dt_IndicatorName FROM tkey_"_s + view + u" ORDER BY id"_s);
    }
    static QStringList studyRows() {
        return rows(
            u"SELECT id_StudyNo, fid, [Order], dt_IsGroup, dt_StudyTitle FROM tkey_Study ORDER BY id_StudyNo"_s);
    }
    /// Tables that an edit can reach, for whole or nothing.
    static QStringList everything() {
        QStringList all =
            assigned(u"Category"_s) + assigned(u"Trend"_s) + entries(u"Category"_s) + entries(u"Trend"_s) + studyRows();
        return all + rows(u"SELECT fi_StudyNo, id_VarName FROM tkey_Variable ORDER BY fi_StudyNo, id_VarName"_s);
    }

    static std::vector<int> allRows(const ExplorerModel& model) {
        std::vector<int> all;
        for (size_t i = 0; i < model.list.rows.size(); ++i)
            all.push_back(static_cast<int>(i));
        return all;
    }
    /// Drops all rows that a window lists of an entry on a node.
    static bool dropRows(ExplorerModel& from, const QString& key, ExplorerModel& to, const QString& target,
                         TransferMode mode) {
        from.select(key, true);
        return drop(*DropSource::rows(from, allRows(from)), DropTarget::in(to, target, false), mode);
    }
    static bool dropEntry(ExplorerModel& from, const QString& key, ExplorerModel& to, const QString& target,
                          TransferMode mode) {
        return drop(*DropSource::entry(from.tree, key, from.state.bELTree), DropTarget::in(to, target, false), mode);
    }
};

constexpr TransferMode copying = TransferMode::Copy, moving = TransferMode::Move;

TEST_F(CopyMove, VariablesGoRowByRowAndADuplicateThatIsMovedLeavesItsEntry) {
    catalogue.add(u"trel_VariableCategory"_s,
                  {{"fid", 2}, {"fi_StudyNo", u"QX1919"_s}, {"fi_VariableNo", u"V5"_s}, {"dt_QuestionNo", u"12"_s}});
    open();
    // Category 2 has V7 and V5, category 1 has V5 of both studies.
    const QStringList before = assigned(u"Category"_s);
    asker.answer(Answer::Ok).answer(Answer::Yes);
    EXPECT_TRUE(dropRows(categories, u"B2"_s, categories, u"B1"_s, copying));
    EXPECT_EQ(assigned(u"Category"_s), before + QStringList{u"1 QX1919 V7"_s});
    EXPECT_EQ(
        asker.texts(),
        (QStringList{u"Möchten Sie die ausgewählten Variablen aus 'Demographie' in 'Einstellungen' kopieren?"_s,
                     u"Variable V5 aus Studie QX1919 ist bereits in Einstellungen Kategorie vorhanden und wird "
                     "übersprungen!\r\nMöchten Sie für jede weitere doppelte Variable diese Meldung bekommen?"_s}));
    asker.boxes.clear();
    // Both are there by now; after the first "no" nobody is asked again, and both leave all the same.
    asker.answer(Answer::Ok).answer(Answer::No);
    EXPECT_TRUE(dropRows(categories, u"B2"_s, categories, u"B1"_s, moving));
    EXPECT_EQ(asker.boxes.size(), 2u);
    EXPECT_EQ(assigned(u"Category"_s),
              (QStringList{u"1 QX2020 V5"_s, u"1 QX1919 V5"_s, u"3 QX1919 V6"_s, u"1 QX1919 V7"_s}));
}

TEST_F(CopyMove, BetweenViewsEachEntryKeepsToItsOwnTables) {
    catalogue.execute(u"UPDATE trel_VariableCategory SET dt_QuestionNo = '7a', dt_PrintSelect = 'x' WHERE fid = 3"_s);
    open();
    asker.answer(Answer::Ok);
    EXPECT_TRUE(dropRows(categories, u"B3"_s, trends, u"C1"_s, moving));
    EXPECT_EQ(rows(u"SELECT fid, fi_StudyNo, fi_VariableNo, dt_QuestionNo, dt_PrintSelect FROM trel_VariableTrend "
                   "ORDER BY id"_s)
                  .back(),
              u"1 QX1919 V6 7a x"_s);
    EXPECT_FALSE(assigned(u"Category"_s).contains(u"3 QX1919 V6"_s));
    // Category 1 and trend 1 have the same number and are two.
    asker.answer(Answer::Ok).answer(Answer::No);
    EXPECT_TRUE(dropRows(categories, u"B1"_s, trends, u"C1"_s, moving));
    EXPECT_FALSE(assigned(u"Category"_s).contains(u"1 QX1919 V5"_s));
    EXPECT_EQ(assigned(u"Trend"_s), (QStringList{u"1 QX1919 V5"_s, u"1 QX2020 V5"_s, u"1 QX1919 V6"_s}));
}

TEST_F(CopyMove, FromAStudyVariablesAreCopiedWhateverIsWanted) {
    open();
    asker.answer(Answer::Ok);
    EXPECT_TRUE(dropRows(studies, u"AQX2020"_s, categories, u"B3"_s, moving));
    EXPECT_EQ(asker.lastText(),
              u"Möchten Sie die ausgewählten Variablen aus 'Erhebung 2020' in 'Vertrauen' kopieren?"_s);
    EXPECT_EQ(MoveOrCopyMode, u"Copy"_s);
    EXPECT_EQ(assigned(u"Category"_s).mid(3), (QStringList{u"3 QX1919 V6"_s, u"3 QX2020 V5"_s, u"3 QX2020 V7"_s}));
    EXPECT_EQ(rows(u"SELECT fi_StudyNo FROM tkey_Variable WHERE fi_StudyNo = 'QX2020'"_s).size(), 2);
}

TEST_F(CopyMove, AStudyNumberIsLookedForAsAPatternAmongAssignments) {
    for (const QString& study : {u"S1"_s, u"S#"_s, u"S*"_s})
        for (const int view : {1, 2})
            catalogue.addVariable(study, u"W"_s + QString::number(view), u"t"_s);
    catalogue.addAssignment(u"Category"_s, 3, u"S1"_s, u"W1"_s);
    catalogue.addAssignment(u"Category"_s, 3, u"S*"_s, u"W1"_s);
    catalogue.addAssignment(u"Category"_s, 3, u"S#"_s, u"W2"_s);
    catalogue.addAssignment(u"Category"_s, 2, u"s1"_s, u"w1"_s);
    open();
    // The engine's own search says which row it is.
    const dao::RecordsetPtr told =
        gDatabase.CurrentDatabase()->OpenRecordset(u"SELECT * FROM trel_VariableCategory WHERE fid = 3 ;"_s);
    told->FindFirst(u"fi_VariableNo = 'w1' AND fi_StudyNo like 'S*'"_s);
    ASSERT_FALSE(told->NoMatch());
    const QString first = told->text(u"fi_StudyNo"_s), other = first == u"S1" ? u"S*"_s : u"S1"_s;
    told->FindFirst(u"fi_VariableNo = 'W2' AND fi_StudyNo like 'S#'"_s);
    ASSERT_TRUE(told->NoMatch());
    DropSource source = *DropSource::entry(categories.tree, u"B3"_s, false);
    source.isList = true;
    source.variables = {{u"B3"_s, u"w1"_s, u"S*"_s}, {u"B3"_s, u"W2"_s, u"S#"_s}};
    asker.answer(Answer::Ok);
    EXPECT_TRUE(drop(source, DropTarget::in(categories, u"B1"_s, false), moving));
    EXPECT_EQ(asker.lastText(), u"Variable W2 nicht gefunden! "_s);
    EXPECT_EQ(assigned(u"Category"_s).filter(u"W"_s, Qt::CaseInsensitive),
              (QStringList{u"3 %1 W1"_s.arg(other), u"3 S# W2"_s, u"2 s1 w1"_s, u"1 %1 W1"_s.arg(first)}));
    // What is like the pattern in the target counts as there, be it in other letters.
    source.variables = {{u"B3"_s, u"W1"_s, other}};
    asker.answer(Answer::Ok).answer(Answer::Yes);
    EXPECT_TRUE(drop(source, DropTarget::in(categories, u"B2"_s, false), moving));
    EXPECT_FALSE(assigned(u"Category"_s).contains(u"3 %1 W1"_s.arg(other)));
    EXPECT_EQ(assigned(u"Category"_s).filter(u"w1"_s, Qt::CaseInsensitive).size(), 2);
}

TEST_F(CopyMove, AnEntryGoesBehindItsNewSiblingsWithAllBelowIt) {
    open();
    asker.answer(Answer::Ok);
    EXPECT_TRUE(dropEntry(categories, u"B1"_s, categories, u"B2"_s, moving));
    EXPECT_EQ(asker.lastText(),
              u"Möchten Sie die ausgewählten Variablen aus 'Einstellungen' in 'Demographie' verschieben?"_s);
    EXPECT_EQ(entries(u"Category"_s),
              (QStringList{u"1 2 1 Einstellungen"_s, u"2 0 1 Demographie"_s, u"3 1 1 Vertrauen"_s}));
    EXPECT_EQ(assigned(u"Category"_s).size(), 4);
    EXPECT_EQ(categories.tree.find(u"B3"_s)->Parent->Parent->Key, u"B2"_s);
    // A copy onto its own parent is not a copy of the copy.
    asker.answer(Answer::Ok);
    EXPECT_TRUE(dropEntry(categories, u"B1"_s, categories, u"B2"_s, copying));
    EXPECT_EQ(entries(u"Category"_s).mid(3), (QStringList{u"4 2 2 Einstellungen"_s, u"5 4 1 Vertrauen"_s}));
    EXPECT_EQ(assigned(u"Category"_s).mid(4), (QStringList{u"4 QX1919 V5"_s, u"4 QX2020 V5"_s, u"5 QX1919 V6"_s}));
    EXPECT_EQ(categories.state.selectedKey, u"B2"_s);
}

TEST_F(CopyMove, ASubtreeThatMovesToAnotherViewGetsNewKeysThereAndIsGoneHere) {
    open();
    SourceNode.set(u"B1"_s, false);
    asker.answer(Answer::Ok);
    EXPECT_TRUE(dropEntry(categories, u"B1"_s, trends, u"C1"_s, moving));
    EXPECT_EQ(entries(u"Category"_s), QStringList{u"2 0 1 Demographie"_s});
    EXPECT_EQ(assigned(u"Category"_s), QStringList{u"2 QX1919 V7"_s});
    EXPECT_EQ(entries(u"Trend"_s),
              (QStringList{u"1 0 1 Zufriedenheit"_s, u"2 1 1 Einstellungen"_s, u"3 2 1 Vertrauen"_s}));
    EXPECT_EQ(assigned(u"Trend"_s).mid(2), (QStringList{u"2 QX1919 V5"_s, u"2 QX2020 V5"_s, u"3 QX1919 V6"_s}));
    EXPECT_EQ(SourceNode.key(), u"C2"_s);
    EXPECT_FALSE(categories.tree.find(u"B3"_s));
    EXPECT_EQ(trends.tree.find(u"C3"_s)->Parent->Text, u"Einstellungen"_s);
}

TEST_F(CopyMove, AStudyIsCopiedWithTheListedColumnsAndAGroupStaysAGroup) {
    catalogue.execute(u"UPDATE tkey_Variable SET dt_Table = 'kept', dt_VarGroup = 2 WHERE id_VarName = 'V5'"_s);
    open();
    asker.answer(Answer::Ok).input(u"G002"_s).input(u"NEU"_s);
    EXPECT_TRUE(dropEntry(studies, u"AG001"_s, studies, u"A0"_s, copying));
    ASSERT_EQ(asker.prompts.size(), 2u);
    EXPECT_EQ(asker.prompts[1].prompt, u"Bitte geben Sie eine neue Studiennummer für Erhebung 1919"_s);
    EXPECT_EQ(asker.prompts[1].title, u"Studie kopieren"_s);
    EXPECT_EQ(asker.prompts[1].proposal, u"QX1919"_s);
    EXPECT_EQ(studyRows(),
              (QStringList{u"G001 0 1 -1 Gruppe"_s, u"G002 0 3 -1 Gruppe"_s, u"NEU G002 1 0 Erhebung 1919"_s,
                           u"QX1919 G001 1 0 Erhebung 1919"_s, u"QX2020 0 2 0 Erhebung 2020"_s}));
    EXPECT_EQ(rows(u"SELECT dt_EnStudyTitle, dt_Year, dt_WeightRE, dt_WeightHH, dt_StudyDescription FROM tkey_Study "
                   "WHERE id_StudyNo = 'NEU'"_s),
              QStringList{u"Survey 1919 1919 V3 - Beschreibung"_s});
    EXPECT_EQ(rows(u"SELECT dt_Year FROM tkey_Study WHERE id_StudyNo = 'G002'"_s), QStringList{u"-"_s});
    EXPECT_EQ(rows(u"SELECT id_VarName, dt_VarLabel, dt_EnVarLabel, dt_QuestionText, dt_TableName, dt_FieldName, "
                   "dt_Position, dt_Format, dt_Missing, dt_VarGroup, dt_Table FROM tkey_Variable WHERE fi_StudyNo = "
                   "'NEU' AND id_VarName = 'V5'"_s),
              QStringList{u"V5 Zufriedenheit - Wie zufrieden sind Sie? QX1919_1 V5 2 - 9 - -"_s});
    EXPECT_EQ(rows(u"SELECT id_VarName FROM tkey_Variable WHERE fi_StudyNo = 'NEU'"_s).size(), 6);
    EXPECT_TRUE(studies.tree.find(u"ANEU"_s));
}

TEST_F(CopyMove, ANumberThatCannotBeTakenLeavesEverythingAsItWas) {
    catalogue.addVariable(u"LEFT"_s, u"V1"_s, u"t"_s);
    open();
    const QStringList before = everything();
    const QString taken = u"Die Studiennummer ist bereits vergeben."_s;
    const struct {
        QStringList answers;
        QString said;
    } cases[] = {
        {{u"QX2020"_s}, taken},
        {{u"qx2020"_s}, taken},
        {{u"G002"_s, u"g002"_s}, taken},
        {{u"G002"_s, u"left"_s},
         u"Unter dieser Studiennummer stehen noch Variablen einer Studie, die es nicht mehr gibt."_s},
        {{u"QX_1"_s}, u"Studiennummer 'QX_1': nur Buchstaben (ohne Umlaute) und Ziffern, am Anfang ein Buchstabe"_s},
        {{u"G002"_s, QString()}, QString()}};
    for (const auto& [answers, said] : cases) {
        asker.boxes.clear();
        asker.answer(Answer::Ok);
        for (const QString& answer : answers)
            answer.isEmpty() ? asker.noInput() : asker.input(answer);
        EXPECT_FALSE(dropEntry(studies, u"AG001"_s, studies, u"A0"_s, copying));
        EXPECT_EQ(asker.boxes.size(), said.isEmpty() ? 1u : 2u);
        EXPECT_TRUE(said.isEmpty() || asker.lastText() == said) << qPrintable(asker.lastText());
        EXPECT_EQ(everything(), before);
    }
    asker.answer(Answer::Cancel);
    EXPECT_FALSE(dropEntry(studies, u"AG001"_s, studies, u"A0"_s, copying));
    EXPECT_EQ(everything(), before);
}

/// A progress window whose user has seen enough at a certain step.
class Stopping : public ui::ProgressView {
public:
    Stopping(int after, QStringList& labels) : after_(after), labels_(labels) {}
    bool show(const QString& text, int, int) override {
        labels_ << text;
        return --after_ > 0;
    }

private:
    int after_;
    QStringList& labels_;
};

TEST_F(CopyMove, WhateverStepItIsStoppedAtNothingIsWritten) {
    open();
    const QStringList before = everything();
    const int patience = std::exchange(ui::Progress::patience, 0);
    QStringList labels;
    for (int after = 1; after <= 3; ++after) {
        labels.clear();
        asker.onProgress = [&](bool) { return std::make_unique<Stopping>(after, labels); };
        asker.answer(Answer::Ok);
        EXPECT_FALSE(dropEntry(categories, u"B1"_s, trends, u"C1"_s, moving));
        EXPECT_EQ(everything(), before);
        EXPECT_TRUE(categories.tree.find(u"B3"_s));
        EXPECT_FALSE(trends.tree.find(u"C2"_s));
        EXPECT_EQ(labels, (QStringList{u" 'Einstellungen' verschieben..."_s, u" 'Vertrauen' verschieben..."_s,
                                       u"Ansicht aktualisieren..."_s})
                              .first(after));
        labels.clear();
        asker.answer(Answer::Ok);
        EXPECT_FALSE(dropRows(categories, u"B1"_s, categories, u"B2"_s, copying));
        EXPECT_EQ(everything(), before);
        EXPECT_EQ(labels.front(), u"Variable 'V5' aus Studie 'QX1919' kopieren..."_s);
    }
    ui::Progress::patience = patience;
}

TEST_F(CopyMove, WhatAnotherProgramHasChangedMeanwhileIsNotWritten) {
    open();
    const QString kept = catalogue.path() + u".kept"_s;
    ASSERT_TRUE(QFile::copy(catalogue.path(), kept));
    const QString changed = u"Der Eintrag wurde inzwischen von einem anderen Programm geändert. Es wurde nichts "
                            "geschrieben."_s;
    const struct {
        QString statement;
        bool isEntry;
    } cases[] = {
        {u"UPDATE tkey_Category SET dt_IndicatorName = 'x' WHERE id = 2"_s, true},
        {u"UPDATE tkey_Category SET fid = 2 WHERE id = 3"_s, true},
        {u"DELETE FROM tkey_Category WHERE id = 2"_s, true},
        {u"UPDATE tkey_Category SET fid = 3 WHERE id = 2"_s, true},
        {u"DELETE FROM trel_VariableCategory WHERE fid = 1"_s, false},
        {u"INSERT INTO trel_VariableCategory (fid, fi_StudyNo, fi_VariableNo) VALUES (2, 'QX2020', 'V5')"_s, false},
        {u"UPDATE trel_VariableCategory SET dt_QuestionNo = '8' WHERE fid = 1"_s, false}};
    for (const auto& [statement, isEntry] : cases) {
        asker.boxes.clear();
        QStringList meanwhile;
        asker.answer(Answer::Ok, [&] {
            gDatabase.CurrentDatabase()->Execute(statement);
            meanwhile = everything();
        });
        EXPECT_FALSE(isEntry ? dropEntry(categories, u"B1"_s, categories, u"B2"_s, moving)
                             : dropRows(categories, u"B1"_s, categories, u"B2"_s, moving));
        EXPECT_EQ(asker.lastText(), changed) << qPrintable(statement);
        EXPECT_EQ(everything(), meanwhile);
        // As it was, for the next.
        mdDataBase::CloseDataBase();
        QFile::remove(catalogue.path());
        ASSERT_TRUE(QFile::copy(kept, catalogue.path()));
        open();
    }
    // What the user is asked about has had another name for some time.
    gDatabase.CurrentDatabase()->Execute(u"UPDATE tkey_Category SET dt_IndicatorName = 'x' WHERE id = 1"_s);
    asker.answer(Answer::Ok);
    EXPECT_FALSE(dropEntry(categories, u"B1"_s, categories, u"B2"_s, moving));
    EXPECT_EQ(asker.lastText(), changed);
    EXPECT_EQ(categories.tree.find(u"B1"_s)->Text, u"x"_s);
    // What is to be copied has gone.
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM tkey_Category WHERE id = 1"_s);
    asker.answer(Answer::Ok);
    EXPECT_FALSE(dropEntry(categories, u"B1"_s, categories, u"B2"_s, copying));
    EXPECT_TRUE(asker.texts().contains(u"Kann nicht kopiert werden! (B1)"_s)) << qPrintable(asker.lastText());
}

} // namespace
