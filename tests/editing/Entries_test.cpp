#include "editing/Entries.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/History.h"
#include "support/FailingFiles.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Entries : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    ExplorerModel model;

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
        gOptions.EditStudiesMode = true;
    }

    /// Rows of a statement, cells parted by "|" and rows by ";"; Null is "-".
    static QString rows(const QString& statement) {
        QStringList lines;
        for (const auto found = gDatabase.CurrentDatabase()->OpenRecordset(statement, dao::dbOpenSnapshot);
             !found->Eof(); found->MoveNext()) {
            QStringList cells;
            for (int i = 0; i < static_cast<int>(found->Fields().size()); ++i)
                cells << (found->value(i).isNull() ? u"-"_s : found->value(i).toText());
            lines << cells.join(u'|');
        }
        return lines.join(u';');
    }
    static QString categories() {
        return rows(
            u"SELECT id, fid, [Order], dt_IndicatorName, dt_IndicatorDescription FROM tkey_Category ORDER BY id"_s);
    }
    static QString studies() {
        return rows(u"SELECT id_StudyNo, fid, [Order], dt_IsGroup, dt_StudyTitle, dt_StudyDescription FROM tkey_Study "
                    "ORDER BY id_StudyNo"_s);
    }
    void open(const QString& key) {
        model.open(key.front().unicode() - u'@');
        ASSERT_TRUE(model.select(key));
    }
};

struct Question {
    std::function<void(ScriptedAsker&, bool cancel)> answer;
    bool ends = true; ///< its Cancel is the operation's
};

/// An operation on a node, and the answers that carry it out.
struct Operation {
    const char* name;
    QString node;
    std::function<bool(ExplorerModel&)> run;
    std::vector<Question> questions;
    QString statement, rows; ///< what it gives afterwards
    QString selected;        ///< node that the window shows then
};

Question input(const QString& text) {
    return {[text](ScriptedAsker& asker, bool cancel) { cancel ? asker.noInput() : asker.input(text); }};
}

const QString nasty = QStringLiteral("'x' \"y\" <b>&amp;</b> *?#[a-z] 100% ß漢😀\r\nzwei");

std::vector<Operation> operations() {
    const Question order{[](ScriptedAsker& asker, bool cancel) {
        asker.order(cancel ? std::nullopt : std::optional(std::vector{1, 0}));
    }};
    const Question confirm{
        [](ScriptedAsker& asker, bool cancel) { asker.answer(cancel ? ui::Answer::Cancel : ui::Answer::Ok); }};
    const Question described{
        [](ScriptedAsker& asker, bool cancel) { asker.edited(cancel ? std::nullopt : std::optional(nasty)); }};
    const Question text{described.answer, false};
    const auto kind = [](ui::Answer answer) {
        return Question{[answer](ScriptedAsker& asker, bool) { asker.answer(answer); }, false};
    };
    const auto rows = [](ExplorerModel& model) { return deleteRows(model, {0}); };
    const Question name = input(nasty), yes = kind(ui::Answer::Yes), no = kind(ui::Answer::No);
    const QString category =
        u"SELECT fid, [Order], dt_IndicatorName, dt_IndicatorDescription FROM tkey_Category WHERE id = "_s;
    const QString study =
        u"SELECT fid, [Order], dt_IsGroup, dt_StudyTitle, dt_StudyDescription FROM tkey_Study WHERE id_StudyNo = "_s;
    const QString trend = u"SELECT fid, [Order], dt_IndicatorName FROM tkey_Trend WHERE id = "_s;
    const QString assigned = u"SELECT fid, fi_StudyNo FROM trel_VariableCategory ORDER BY id"_s;
    const QString variables =
        u"SELECT fi_StudyNo, id_VarName FROM tkey_Variable WHERE dt_Position > 4 ORDER BY dt_Position"_s;
    const QString first =
        u"SELECT id_VarName FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' AND dt_Position < 4 ORDER BY dt_Position"_s;
    const QString ordered = u"SELECT id, [Order] FROM tkey_Category WHERE fid = 0 ORDER BY id"_s;
    const QString places = u"SELECT id_StudyNo, [Order] FROM tkey_Study WHERE fid = '0' ORDER BY id_StudyNo"_s;
    const QString both = u'|' + nasty + u'|' + nasty, number = u"Neu1"_s, made = study + u"'Neu1'"_s;
    return {
        {"new", u"B2"_s, newEntry, {name, text}, category + u'4', u"2|1"_s + both, u"B4"_s},
        {"new at the top", u"C0"_s, newEntry, {name, text}, trend + u'2', u"0|2|"_s + nasty, u"C2"_s},
        {"new group", u"A0"_s, newEntry, {name, input(u" Neu1 "_s), no, text}, made, u"0|3|-1"_s + both, u"ANeu1"_s},
        {"new study", u"AG001"_s, newEntry, {name, input(number), yes, text}, made, u"G001|2|0"_s + both, u"ANeu1"_s},
        {"rename", u"B1"_s, renameEntry, {name, text}, category + u'1', u"0|2"_s + both, u"B1"_s},
        {"rename study",
         u"AQX2020"_s,
         renameEntry,
         {name, no, text},
         study + u"'QX2020'"_s,
         u"0|2|-1"_s + both,
         u"AQX2020"_s},
        {"describe", u"B2"_s, editDescription, {described}, category + u'2', u"0|1|Demographie|"_s + nasty, u"B2"_s},
        {"describe group",
         u"AG001"_s,
         editDescription,
         {described},
         study + u"'G001'"_s,
         u"0|1|-1|Gruppe|"_s + nasty,
         u"AG001"_s},
        {"delete", u"B1"_s, deleteEntry, {confirm}, assigned, u"2|QX1919"_s, u"B2"_s},
        {"delete group", u"AG001"_s, deleteEntry, {confirm}, variables, u"QX2020|V5;QX2020|V7"_s, u"AQX2020"_s},
        {"delete assignment", u"B1"_s, rows, {confirm}, assigned, u"1|QX2020;2|QX1919;3|QX1919"_s, u"B1"_s},
        {"delete variable", u"AQX1919"_s, rows, {confirm}, first, u"V5;V6"_s, u"AQX1919"_s},
        {"order", u"B1"_s, showPosition, {order}, ordered, u"1|1;2|2"_s, u"B1"_s},
        {"order studies", u"AQX2020"_s, showPosition, {order}, places, u"G001|2;QX2020|1"_s, u"AQX2020"_s},
    };
}

/// Everything that an operation may write.
QString allRows(QString (*rows)(const QString&)) {
    QString all;
    for (const QString& statement :
         {u"SELECT * FROM tkey_Study ORDER BY id_StudyNo"_s, u"SELECT * FROM tkey_Category ORDER BY id"_s,
          u"SELECT * FROM tkey_Trend ORDER BY id"_s, u"SELECT * FROM trel_VariableCategory ORDER BY id"_s,
          u"SELECT * FROM tkey_Variable ORDER BY fi_StudyNo, id_VarName"_s,
          u"SELECT * FROM tkey_Value ORDER BY fi_StudyNo, fi_VarName, dt_Value"_s, u"SELECT * FROM tkey_Parts"_s})
        all += rows(statement) + u"\n"_s;
    return all;
}

/// Whatever the tree of a window should show now.
QString shown(const CatalogueTree& tree) {
    QString text;
    std::function<void(const CatalogueNode&)> walk = [&](const CatalogueNode& node) {
        text += node.Key + u'=' + node.Text + u' ' + QString::number(node.Image) + u'(';
        for (const CatalogueNode* child : node.Children)
            walk(*child);
        text += u')';
    };
    walk(*tree.root());
    return text;
}

TEST_F(Entries, AreAsBeforeWhereAQuestionIsCancelledAndAsAfterwardsAnywhereElse) {
    for (const Operation& operation : operations()) {
        SCOPED_TRACE(operation.name);
        const QString before = allRows(rows);
        ExplorerModel other;
        open(operation.node);
        other.open(model.state.ltreetype);
        for (size_t cancelled = 0; cancelled < operation.questions.size(); ++cancelled) {
            if (!operation.questions[cancelled].ends)
                continue;
            for (size_t i = 0; i <= cancelled; ++i)
                operation.questions[i].answer(asker, i == cancelled);
            EXPECT_FALSE(operation.run(model)) << cancelled;
            EXPECT_EQ(allRows(rows), before) << cancelled;
        }
        EXPECT_FALSE(history().canUndo());
        for (const Question& question : operation.questions)
            question.answer(asker, false);
        EXPECT_TRUE(operation.run(model));
        const QString after = allRows(rows);
        EXPECT_EQ(rows(operation.statement), operation.rows);
        EXPECT_EQ(model.state.selectedKey, operation.selected);
        CatalogueTree fresh;
        Update_TreeView(fresh, model.state.ltreetype, false);
        EXPECT_EQ(shown(model.tree), shown(fresh));
        EXPECT_EQ(shown(other.tree), shown(fresh));
        EXPECT_FALSE(history().undoName().contains(u'\n'));
        EXPECT_TRUE(history().undo());
        EXPECT_EQ(allRows(rows), before);
        EXPECT_TRUE(history().redo());
        EXPECT_EQ(allRows(rows), after);
        EXPECT_TRUE(history().undo());
        Update_TreeView(fresh, model.state.ltreetype, false);
        EXPECT_EQ(shown(other.tree), shown(fresh));
        history().clear();
    }
}

TEST_F(Entries, TouchTheColumnsOfTheWindowsLanguageOnly) {
    gOptions.EnglishLanguage = true;
    open(u"B2"_s);
    ExplorerModel german;
    gOptions.EnglishLanguage = false;
    german.open(2);
    const QString columns = u"SELECT dt_IndicatorName, dt_EnIndicatorName, dt_IndicatorDescription, "
                            "dt_EnIndicatorDescription FROM tkey_Category WHERE id = "_s;
    asker.input(u"Household"_s).edited(std::nullopt);
    EXPECT_TRUE(newEntry(model));
    EXPECT_EQ(rows(columns + u'4'), u"-|Household|-| "_s);
    EXPECT_EQ(model.tree.find(u"B4"_s)->Text, u"Household"_s);
    EXPECT_EQ(german.tree.find(u"B4"_s)->Text, QString());
    model.select(u"B2"_s);
    asker.input(u"People"_s).edited(QString());
    EXPECT_TRUE(renameEntry(model));
    EXPECT_EQ(rows(columns + u'2'), u"Demographie|People|Person und Haushalt|-"_s) << "nothing was typed";
    model.select(u"B3"_s);
    asker.input(u"Trust"_s).edited(u"text"_s);
    EXPECT_TRUE(renameEntry(model));
    asker.edited(QString());
    EXPECT_TRUE(editDescription(model));
    EXPECT_EQ(rows(columns + u'3'), u"Vertrauen|Trust|-| "_s);
    EXPECT_EQ(german.tree.find(u"B2"_s)->Text, u"Demographie"_s);
    asker.input(u"Trust"_s).edited(std::nullopt);
    EXPECT_FALSE(renameEntry(model));
}

TEST_F(Entries, WhatWasTypedComesBackWhereItCouldNotBeWritten) {
    open(u"B3"_s);
    // another program renames the entry, then deletes it
    asker.edited(u"getippt"_s,
                 [this] { catalogue.execute(u"UPDATE tkey_Category SET dt_IndicatorName = 'X' WHERE id = 3"_s); });
    asker.edited(u"getippt"_s);
    EXPECT_TRUE(editDescription(model));
    EXPECT_EQ(asker.editors.back().second, u"getippt"_s);
    EXPECT_TRUE(asker.lastText().contains(u"anderen Programm"_s));
    EXPECT_TRUE(categories().endsWith(u"3|1|1|X|getippt"_s)) << qPrintable(categories());
    asker.edited(u"mehr"_s, [this] { catalogue.execute(u"DELETE FROM tkey_Category WHERE id = 3"_s); });
    asker.edited(u"mehr"_s).edited(std::nullopt);
    EXPECT_FALSE(editDescription(model));
    EXPECT_EQ(asker.lastText(), u"Nicht gefunden!"_s);
    EXPECT_EQ(asker.editors.back().second, u"mehr"_s);
    EXPECT_FALSE(model.tree.find(u"B3"_s)) << "the window shows what is";
}

TEST_F(Entries, AnswerTheDiskWithWhatWasTyped) {
    const FailingFiles files;
    gDatabase.CloseDatabase();
    ASSERT_EQ(catalogue.open(), 1);
    open(u"B2"_s);
    const QString before = allRows(rows);
    asker.input(u"Neu"_s).edited(u"getippt"_s, [] { FailingFiles::fail(0, true); });
    asker.edited(u"getippt"_s, [] { EXPECT_TRUE(FailingFiles::mend()); });
    EXPECT_TRUE(newEntry(model));
    EXPECT_EQ(asker.editors.back().second, u"getippt"_s);
    EXPECT_EQ(asker.boxes.size(), 1);
    EXPECT_TRUE(categories().endsWith(u"4|2|1|Neu|getippt"_s)) << qPrintable(categories());
    asker.answer(ui::Answer::Ok, [] { FailingFiles::fail(0, true); });
    EXPECT_FALSE(deleteEntry(model));
    FailingFiles::mend();
    EXPECT_TRUE(history().undo());
    EXPECT_EQ(allRows(rows), before);
}

TEST_F(Entries, RefuseANumberBeforeAnythingIsWritten) {
    catalogue.execute(u"INSERT INTO tkey_Variable (fi_StudyNo, id_VarName) VALUES ('LEFT1', 'V1')"_s);
    const struct {
        QString number, words;
    } refused[] = {{u"qx1919"_s, u"Die Studiennummer ist bereits vergeben."_s},
                   {u"G001"_s, u"Die Studiennummer ist bereits vergeben."_s},
                   {u"1919"_s, u"Studiennummer '1919'"_s},
                   {u"Q'1"_s, u"Studiennummer 'Q'1'"_s},
                   {u"left1"_s, u"Unter dieser Studiennummer stehen noch Variablen"_s}};
    open(u"A0"_s);
    asker.input(u"Neu"_s);
    for (const auto& one : refused)
        asker.input(one.number).answer(ui::Answer::Yes).edited(u"Text"_s);
    asker.noInput();
    const QString before = studies();
    EXPECT_FALSE(newEntry(model));
    EXPECT_EQ(studies(), before);
    for (size_t i = 0; i < std::size(refused); ++i) {
        EXPECT_TRUE(asker.boxes[2 * i].mustAnswer);
        EXPECT_TRUE(asker.boxes[2 * i + 1].text.startsWith(refused[i].words))
            << qPrintable(asker.boxes[2 * i + 1].text);
        EXPECT_EQ(asker.editors[i].second, i == 0 ? QString() : u"Text"_s);
        EXPECT_EQ(asker.prompts[i + 1].proposal, u"G001"_s);
    }
}

TEST_F(Entries, AreOrderedByTitleInAStudyView) {
    for (const auto& [number, order] : {std::pair(u"QX3000"_s, 3), std::pair(u"QX4000"_s, 4)})
        catalogue.addStudy(number, u"Erhebung 2020"_s, {{"fid", u"0"_s}, {"Order", order}});
    catalogue.addStudy(u"QX5000"_s, QString(), {{"fid", u"0"_s}});
    open(u"AQX3000"_s);
    // without Order first: QX5000, then G001, and three of one title
    asker.order(std::vector{3, 1, 2, 0, 4});
    EXPECT_TRUE(showPosition(model));
    EXPECT_EQ(asker.orders.back().lines.join(u'|'), u"QX5000|Gruppe|Erhebung 2020|Erhebung 2020|Erhebung 2020"_s);
    EXPECT_EQ(asker.orders.back().current, 3);
    EXPECT_EQ(rows(u"SELECT id_StudyNo, [Order] FROM tkey_Study WHERE fid = '0' ORDER BY id_StudyNo"_s),
              u"G001|2;QX2020|1;QX3000|1;QX4000|1;QX5000|4"_s);
    EXPECT_EQ(model.state.selectedKey, u"AQX3000"_s);
    // Those that a window of the other language shows without a text yet are no studies of one title.
    ExplorerModel other;
    gOptions.EnglishLanguage = true;
    other.open(1);
    gOptions.EnglishLanguage = false;
    asker.input(u"Eins"_s).input(u"N1"_s).answer(ui::Answer::Yes).edited({});
    asker.input(u"Zwei"_s).input(u"N2"_s).answer(ui::Answer::Yes).edited({});
    open(u"AG001"_s);
    EXPECT_TRUE(newEntry(model));
    EXPECT_TRUE(model.select(u"AG001"_s, true) && newEntry(model));
    asker.order(std::vector{0, 2, 1});
    EXPECT_TRUE(other.select(u"AN1"_s, true) && showPosition(other));
    EXPECT_EQ(asker.orders.back().lines.join(u'|'), u"Survey 1919|N1|N2"_s);
    EXPECT_EQ(rows(u"SELECT id_StudyNo, [Order] FROM tkey_Study WHERE fid = 'G001' ORDER BY id_StudyNo"_s),
              u"N1|3;N2|2;QX1919|1"_s);
}

TEST_F(Entries, SayWhyTheyStayAsTheyAre) {
    const QString before = allRows(rows);
    const auto expect = [&](const QString& node, bool (*operation)(ExplorerModel&), const QString& words) {
        open(node);
        EXPECT_FALSE(operation(model));
        EXPECT_TRUE(asker.lastText().startsWith(words)) << qPrintable(asker.lastText());
        EXPECT_EQ(allRows(rows), before);
    };
    expect(u"B0"_s, deleteEntry, u"Oberster Eintrag kann nicht gelöscht werden"_s);
    asker.input(u"Alle"_s).input(QString());
    expect(u"B0"_s, renameEntry, u"Nicht gefunden!"_s);
    expect(u"B0"_s, renameEntry, u"Kategorien nicht umbenannt!"_s);
    open(u"B0"_s);
    EXPECT_FALSE(showPosition(model));
    gOptions.EditStudiesMode = false;
    expect(u"AQX2020"_s, deleteEntry, u"Studien und deren Variablen können nicht gelöscht werden"_s);
    for (const auto operation : {newEntry, renameEntry, editDescription, showPosition})
        expect(u"AQX2020"_s, operation, u"Studien lassen sich nur ändern"_s);
    gDatabase.CloseDatabase();
    gDatabase.setDatabase(catalogue.path());
    gDatabase.OpenQXDatabase(true);
    for (const auto operation : {newEntry, renameEntry, editDescription, deleteEntry, showPosition})
        expect(u"B1"_s, operation, u"Die Datenbank ist schreibgeschützt."_s);
}

TEST_F(Entries, GoWithAllThatCanBeReachedAlsoWhereEntriesStandBelowThemselves) {
    catalogue.together([&] {
        catalogue.addCategory(u"Category"_s, 10, 3, 1, u"tief"_s);
        catalogue.addCategory(u"Category"_s, 11, 12, 1, u"Kreis"_s);
        catalogue.addCategory(u"Category"_s, 12, 11, 1, u"Kreis"_s);
        catalogue.addAssignment(u"Category"_s, 10, u"S#[1"_s, u"V*"_s);
        catalogue.addAssignment(u"Category"_s, 10, u"QX1919"_s, u"V5"_s);
    });
    open(u"B10"_s);
    EXPECT_EQ(model.list.rows.size(), 1) << "the list's join finds no variable of the other";
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteRows(model, {0}));
    EXPECT_EQ(rows(u"SELECT fi_StudyNo FROM trel_VariableCategory WHERE fid = 10"_s), u"S#[1"_s);
    model.select(u"B1"_s);
    // Stop takes all back.
    ui::Progress::patience = 0;
    struct Stop : ui::ProgressView {
        bool show(const QString& text, int, int) override { return !text.contains(u"tief"_s); }
    };
    asker.onProgress = [](bool) { return std::make_unique<Stop>(); };
    asker.answer(ui::Answer::Ok);
    const QString before = allRows(rows);
    EXPECT_FALSE(deleteEntry(model));
    EXPECT_EQ(allRows(rows), before);
    ui::Progress::patience = 1000;
    asker.onProgress = {};
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteEntry(model));
    EXPECT_EQ(rows(u"SELECT id FROM tkey_Category ORDER BY id"_s), u"2;11;12"_s);
    EXPECT_EQ(rows(u"SELECT fid FROM trel_VariableCategory"_s), u"2"_s);
    EXPECT_EQ(model.state.selectedKey, u"B2"_s);
}

TEST_F(Entries, RowsThatTheFilterFoundGoWhereTheyWereFound) {
    ExplorerModel category;
    category.open(2);
    category.select(u"B1"_s);
    open(u"B0"_s);
    model.setFilter(u"V6"_s);
    ASSERT_EQ(model.list.rows.size(), 1);
    asker.answer(ui::Answer::Ok);
    EXPECT_TRUE(deleteRows(model, {0}));
    EXPECT_EQ(rows(u"SELECT fid, fi_VariableNo FROM trel_VariableCategory ORDER BY id"_s), u"1|V5;1|V5;2|V7"_s);
    EXPECT_EQ(model.list.rows.size(), 0);
    // A variable of a study goes from the lists of categories too, its assignment stays.
    open(u"AQX2020"_s);
    asker.answer(ui::Answer::Ok);
    EXPECT_EQ(category.list.rows.size(), 2);
    EXPECT_TRUE(deleteRows(model, {0}));
    EXPECT_EQ(category.list.rows.size(), 1);
    EXPECT_EQ(rows(u"SELECT fid FROM trel_VariableCategory WHERE fi_StudyNo = 'QX2020'"_s), u"1"_s);
    EXPECT_TRUE(history().undo());
    EXPECT_EQ(category.list.rows.size(), 2);
}

} // namespace
