#include "analysis/AnalysisModel.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Analysis : public testing::Test {
protected:
    Analysis() : catalogue_(home_.path(u"archive"_s)) { catalogue_.fill(); }

    TestHome home_;
    ScriptedAsker asker_;
    TestCatalogue catalogue_;
    AnalysisModel model_;
    qint64 now_ = 0;

    void open(const QString& study = u"QX1919"_s, const QString& variable = u"V5"_s) {
        ASSERT_EQ(catalogue_.open(), 1);
        gOptions.CumulatedPercent = gOptions.SeparateValidCases = false;
        setHook([this](RunHooks& hooks) { hooks.clock = {[this] { return now_; }, [this] { now_ += 5000; }}; });
        model_.open();
        ASSERT_TRUE(model_.edit().StudyClick(study));
        ASSERT_TRUE(model_.edit().chooseVariable(variable));
    }

    template<class Step>
    void setHook(Step&& step) {
        RunHooks hooks = model_.hooks();
        step(hooks);
        model_.setHooks(hooks);
    }

    /// Value, mark and count of each row behind the header.
    QString cells() const {
        QStringList rows;
        for (int row = 1; row < model_.result().mfgGrid.Rows(); ++row)
            rows << model_.result().mfgGrid.Cell(0, row) + model_.result().mfgGrid.Cell(2, row) + u':' +
                        model_.result().mfgGrid.Cell(3, row);
        return rows.join(u' ');
    }

    void expectEnded(const QString& words) {
        EXPECT_EQ(asker_.lastText(), words);
        EXPECT_EQ(model_.facts().outcome, RunOutcome::Refused);
        EXPECT_EQ(model_.tab(), 0);
        EXPECT_EQ(asker_.pointer(), ui::Pointer::Default);
    }
};

const QString defaultQ = u"SELECT QX1919_1.dt_CaseID AS ID FROM QX1919_1;"_s;

} // namespace

TEST_F(Analysis, OffersWhatTheStudyHas) {
    open();
    EXPECT_EQ(model_.edit().variableChoices().size(), 6);
    EXPECT_EQ(model_.edit().variableChoices()[1], u"V5: Zufriedenheit"_s);
    const AnalysisRequest& r = model_.request();
    EXPECT_EQ(r.dtTable + u'.' + r.dtField, u"QX1919_1.V5"_s);
    EXPECT_EQ((QStringList{r.dtMissing, r.sMissing, r.dtYear, r.dtVarGroup, r.dbcVariableUni}),
              (QStringList{u"9"_s, u"9"_s, u"1919"_s, u"Welle 1"_s, u"V5: Zufriedenheit"_s}));
    EXPECT_TRUE(model_.view().Option3[1]);
    EXPECT_FALSE(model_.view().Option3[2]);
    EXPECT_TRUE(model_.edit().chooseWeight(WeightKind::WeightRE));
    EXPECT_FALSE(model_.edit().chooseWeight(WeightKind::WeightHH));
    EXPECT_FALSE(model_.edit().chooseWeight(WeightKind::WeightUser, u"V99"_s));
    EXPECT_EQ(r.Option3, WeightKind::WeightRE) << "a choice that isn't offered changes nothing";
    EXPECT_FALSE(model_.edit().chooseVariable(u"V99"_s));

    // A repeated click keeps the variable, another study doesn't.
    EXPECT_TRUE(model_.edit().StudyClick(u"QX1919"_s));
    EXPECT_EQ(r.dbcVariable.value, u"V5"_s);
    EXPECT_EQ(r.Option3, WeightKind::noWeight);
    model_.edit().chooseFilterText(u"V7=1"_s);
    EXPECT_TRUE(model_.edit().StudyClick(u"QX2020"_s));
    EXPECT_EQ(r.optFilter, FilterKind::noFilter) << "the filter was another study's";
    EXPECT_EQ(r.txtFilter, u""_s);
    EXPECT_TRUE(r.dbcVariable.isEmpty() && r.dtTable.isEmpty() && r.dtMissing.isEmpty());
    EXPECT_FALSE(model_.view().Option3[1] || model_.view().optFilter[1] || model_.view().dbcPartsShown);
    EXPECT_FALSE(model_.edit().chooseWeight(WeightKind::WeightRE) ||
                 model_.edit().chooseFilter(FilterKind::FilterParts));
    EXPECT_FALSE(model_.edit().StudyClick(u"G001"_s)) << "a group has no data";
    model_.changeTab(1);
    expectEnded(u"Bitte eine Variable auswählen"_s);
}

TEST_F(Analysis, KeepsTheUsersFilterTextBesideTheParts) {
    catalogue_.addVariable(u"QX1919"_s, u"SE"_s, u"QX1919_1"_s);
    open();
    model_.edit().chooseFilterText(u"V7=1"_s);
    EXPECT_TRUE(model_.view().txtFilterEnabled);
    EXPECT_TRUE(model_.edit().choosePart(u"1"_s));
    EXPECT_EQ(model_.request().txtFilter, u"SE = 1"_s);
    EXPECT_FALSE(model_.edit().choosePart(u"7"_s) || model_.edit().choosePart(u"x"_s));
    EXPECT_FALSE(model_.edit().dbcParts_KeyDown(65));
    EXPECT_TRUE(model_.edit().dbcParts_KeyDown(46));
    EXPECT_EQ(model_.request().optFilter, FilterKind::noFilter);
    EXPECT_EQ(model_.request().txtFilter, u""_s);
    EXPECT_TRUE(model_.edit().chooseFilter(FilterKind::FilterUser));
    EXPECT_EQ(model_.request().txtFilter, u"V7=1"_s);
}

TEST_F(Analysis, CountsTheCasesOfAVariable) {
    open();
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.facts().q, QStringList(defaultQ));
    EXPECT_EQ(model_.facts().counts,
              QStringList(u"SELECT QX1919_1.V5 AS [Value], Count(q.ID) AS Count FROM (q INNER JOIN QX1919_1 ON q.ID = "
                          "QX1919_1.dt_CaseID) GROUP BY QX1919_1.V5 ORDER BY QX1919_1.V5;"_s));
    EXPECT_EQ(cells(), u"X:1 1:2 2:2 9X:1 :6 :4"_s);
    EXPECT_EQ(model_.result().mfgGrid.Cell(1, 2), u"zufrieden"_s);
    EXPECT_EQ(model_.result().mfgGrid.Tag, TableKind::Frequency);
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V5: Zufriedenheit (N=4)"_s);
    EXPECT_TRUE(gOptions.DataOnCD);
    EXPECT_TRUE(asker_.boxes.empty());
}

TEST_F(Analysis, NeverShowsOldNumbersUnderANewRequest) {
    open();
    model_.changeTab(1);
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);
    EXPECT_TRUE(model_.facts().counts.isEmpty());
    // Standard and user weight share the count statement; only the text of q tells them apart.
    EXPECT_TRUE(model_.edit().chooseWeight(WeightKind::WeightRE));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    const QString statement = model_.facts().counts.first();
    EXPECT_EQ(model_.facts().q.first(),
              u"SELECT QX1919_1.dt_CaseID AS ID , QX1919_1.V3 AS W2 FROM QX1919_1 WHERE (QX1919_1.V3 Is Not Null)"_s);
    EXPECT_EQ(cells(), u"X:1 1:2 2:2 9X:1 :6 :4"_s);
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V5: Zufriedenheit (N=4) (gewichtet nach V3)"_s);
    EXPECT_TRUE(model_.edit().chooseWeight(WeightKind::WeightUser, u"V3"_s));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(model_.edit().chooseWeight(WeightKind::WeightUser, u"V7"_s));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.facts().counts.first(), statement);
    // By V7: 1 counts 1 + 2, 2 counts 1 + 2, 9 counts 1, system-missing 2.
    EXPECT_EQ(cells(), u"X:2 1:3 2:3 9X:1 :9 :6"_s);
    model_.edit().overrideMissing(u"1"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"X:2 1X:3 2:3 9:1 :9 :4"_s);
}

TEST_F(Analysis, FiltersOverSeveralTables) {
    open();
    model_.edit().chooseFilterText(u"V9<50 AND V7=1"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.facts().counts.first(),
              u"SELECT QX1919_1.V5 AS [Value], Count(q.ID) AS Count FROM ((q INNER JOIN QX1919_1 ON q.ID = "
              u"QX1919_1.dt_CaseID) "
              "INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID)  WHERE QX1919_2.V9<50 AND QX1919_1.V7=1 GROUP BY "
              "QX1919_1.V5 ORDER BY QX1919_1.V5;"_s);
    EXPECT_EQ(cells(), u"1:1 :1 :1"_s);
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V5: Zufriedenheit (N=1) (ausgewählte Fälle: V9<50 AND V7=1)"_s);
    for (const auto& [text, words] : std::vector<std::pair<QString, QString>>{
             {u"(V7=1);"_s, u"Unerlaubtes Zeichen: ;"_s}, {u"V77=1"_s, u"V77 nicht gefunden"_s}}) {
        model_.edit().chooseFilterText(text);
        model_.changeTab(1);
        expectEnded(words);
        EXPECT_EQ(cells(), u"1:1 :1 :1"_s) << "the tables stay as they were";
    }
    model_.edit().chooseFilterText(u"V7= =1"_s);
    model_.changeTab(1);
    expectEnded(u"Zwischen = und = fehlt ein Wert."_s);
    EXPECT_TRUE(model_.facts().q.isEmpty()) << "refused before anything is asked of the engine";
    EXPECT_EQ(cells(), u"1:1 :1 :1"_s);
}

/// By hand: V5 of the cases 1 to 6 is 1, 1, 2, 2, 9 and none, V7 1 and 2 by turns, V8 a text, V9 in another table.
TEST_F(Analysis, FiltersByNamesInBracketsTextsAndLists) {
    catalogue_.addVariable(u"QX1919"_s, u"V9.a"_s, u"QX1919_2"_s, {{"dt_FieldName", u"V9"_s}});
    catalogue_.addVariable(u"QX1919"_s, u"V5.a"_s, u"QX1919_1"_s, {{"dt_FieldName", u"V5"_s}});
    open();
    const std::vector<std::pair<QString, QString>> filters{
        {u"[V9.a]<50"_s, u"X:1 1:2 :3 :2"_s},                        // 1, 2, 6
        {u"V8 = 'Lehrer'"_s, u"1:1 2:1 :2 :2"_s},                    // 1, 3
        {u"V8 IN ('Arzt', 'Bäcker')"_s, u"1:1 9X:1 :2 :1"_s},        // 2, 5
        {u"V9 NOT IN (31,42,75)"_s, u"X:1 2:2 :3 :2"_s},             // 3, 4, 6
        {u"V7=[V5.a]"_s, u"1:1 2:1 :2 :2"_s},                        // 1, 4
        {u"[V9.a]>=60 OR V7 IN (2)"_s, u"X:1 1:1 2:1 9X:1 :4 :2"_s}, // 2, 4, 5, 6
    };
    for (const auto& [text, table] : filters) {
        model_.edit().chooseFilterText(text);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed) << text.toStdString();
        EXPECT_EQ(cells(), table) << text.toStdString();
    }
    EXPECT_TRUE(asker_.boxes.empty()) << asker_.lastText().toStdString();
}

TEST_F(Analysis, SaysInPlainWordsWhatTheEngineHasAgainstAFilter) {
    open();
    const QString head = u"Der Filter kann nicht berechnet werden: "_s;
    struct Case {
        QString filter, words, details;
    };
    for (const auto& [filter, words, details] : std::vector<Case>{
             {u"V8=Lehrer"_s, u"\nLehrer ist kein Name einer Variable. Texte stehen in Anführungszeichen."_s,
              u"3061: Ein Name ist unbekannt: \"Lehrer\""_s},
             {u"V8 AND V7=1"_s, u"\nEin Text steht, wo eine Bedingung oder Zahl gebraucht wird."_s,
              u"3464: Die Datentypen einer Bedingung passen nicht zueinander: "_s},
         }) {
        model_.edit().chooseFilterText(filter);
        model_.changeTab(1);
        expectEnded(head + filter + words);
        EXPECT_TRUE(asker_.boxes.back().details.startsWith(details)) << asker_.boxes.back().details.toStdString();
    }
    EXPECT_FALSE(model_.result().facts);
    // What can be computed and counts nothing tells why.
    for (const auto& [filter, note] : std::vector<std::pair<QString, QStringList>>{
             {u"V8=1"_s,
              {u"Gezählt wurde kein Fall: V8 hat Texte und wird im Filter mit einer Zahl verglichen. Texte "
               "stehen in Anführungszeichen."_s}},
             {u"V7 IN ('x')"_s, {u"V7 hat Zahlen: mit einem Text im Filter stimmt keine überein."_s}},
             {u"V7='7'"_s, {}},
             {u"V7 = 'x' OR V7=1"_s, {u"V7 hat Zahlen: mit einem Text im Filter stimmt keine überein."_s}},
             {u"V8=1 OR V7=1"_s, {}}}) {
        model_.edit().chooseFilterText(filter);
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
        EXPECT_EQ(model_.result().notes(), note);
    }
    // What has nothing to do with the filter is not put down to it.
    catalogue_.execute(u"UPDATE tkey_Variable SET dt_FieldName = 'V77' WHERE id_VarName = 'V5'"_s);
    model_.edit().chooseFilterText(u"V7=1"_s);
    model_.changeTab(1);
    EXPECT_TRUE(asker_.lastText().contains(u"Prozedur"_s)) << asker_.lastText().toStdString();
    EXPECT_EQ(model_.tab(), 0);
}

TEST_F(Analysis, TakesTheMissingValuesThatTheUserSets) {
    open();
    model_.edit().overrideMissing(u"1;2"_s);
    model_.changeTab(1);
    EXPECT_EQ(cells(), u"X:1 1X:2 2X:2 9:1 :6 :1"_s);
    model_.edit().overrideMissing(u""_s);
    model_.changeTab(1);
    EXPECT_EQ(cells(), u"X:1 1:2 2:2 9:1 :6 :5"_s);
    model_.edit().overrideMissing(std::nullopt);
    model_.changeTab(1);
    EXPECT_EQ(model_.mfgGrid_Click({2, 2, 2, 2}), ClickEffect::Marked);
    asker_.answer(ui::Answer::Yes).answer(ui::Answer::No);
    model_.cmdCalculate();
    EXPECT_EQ(cells(), u"X:1 1X:2 2:2 9X:1 :6 :2"_s);
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V5: Zufriedenheit (N=2)"_s);
    asker_.answer(ui::Answer::Yes).answer(ui::Answer::Yes);
    model_.cmdCalculate();
    EXPECT_EQ(cells(), u"X:1 1:2 2:2 9X:1 :6 :4"_s);
}

TEST_F(Analysis, SaysWhyARunHasEnded) {
    catalogue_.execute(u"UPDATE tkey_Study SET dt_WeightHH = 'V99' WHERE id_StudyNo = 'QX1919'"_s);
    catalogue_.addVariable(u"QX1919"_s, u"NOWHERE"_s, u"QX1919_9"_s);
    catalogue_.addVariable(u"QX1919"_s, u"NOFIELD"_s, u"QX1919_1"_s);
    catalogue_.addStudy(u"QX3"_s, u"Ohne Daten"_s);
    catalogue_.addVariable(u"QX3"_s, u"V1"_s, u"QX3_1"_s);
    catalogue_.execute(u"UPDATE tkey_Study SET dt_query = 'QX2020_1' WHERE id_StudyNo = 'QX2020'"_s);
    open();
    EXPECT_TRUE(model_.edit().chooseWeight(WeightKind::WeightHH));
    model_.changeTab(1);
    expectEnded(u"V99nicht gefunden"_s);
    model_.edit().chooseWeight(WeightKind::noWeight);
    for (const QString& variable : {u"NOWHERE"_s, u"NOFIELD"_s}) {
        model_.edit().chooseVariable(variable);
        model_.changeTab(1);
        EXPECT_TRUE(asker_.lastText().startsWith(u"Folgender Fehler"_s));
        EXPECT_EQ(model_.tab(), 0);
    }
    model_.edit().StudyClick(u"QX3"_s);
    model_.edit().chooseVariable(u"V1"_s);
    model_.changeTab(1);
    expectEnded(u"'"_s + catalogue_.dataFolder() + u"/QX3.mdb' nicht gefunden."_s);
    model_.edit().StudyClick(u"QX2020"_s);
    model_.edit().chooseVariable(u"V5"_s);
    model_.edit().chooseWeight(WeightKind::WeightUser, u"V7"_s);
    model_.changeTab(1);
    expectEnded(u"Fehler in Abfrage"_s);
}

TEST_F(Analysis, WeighsCasesAndWarnsOfThoseWithoutWeight) {
    const QStringList weights{u"ONE"_s, u"W"_s, u"TWICE"_s, u"NEGATIVE"_s, u"NONE"_s};
    std::vector<dao::FieldDefinition> fields;
    for (const QString& name : QStringList{u"V1"_s} + weights) {
        catalogue_.addVariable(u"QX4"_s, name, u"QX4_1"_s);
        fields.push_back(dao::TableDef::CreateField(name, dao::dbDouble));
    }
    const dao::Value null;
    catalogue_.addCases(u"QX4"_s, u"QX4_1"_s, fields,
                        {{1, 1, 2, 4, 3, null}, {1, 1, null, null, 2, null}, {2, 1, 1, 2, -5, null}});
    catalogue_.addStudy(u"QX4"_s, u"Lücken"_s);
    open(u"QX4"_s, u"V1"_s);
    const auto columns = [&](const QString& weight, int first) {
        model_.edit().chooseWeight(weight.isEmpty() ? WeightKind::noWeight : WeightKind::WeightUser, weight);
        model_.changeTab(1);
        QStringList texts;
        for (int row = 0; row < model_.result().mfgGrid.Rows(); ++row)
            for (int column = first; column < model_.result().mfgGrid.Cols(); ++column)
                texts << model_.result().mfgGrid.Cell(column, row);
        return texts;
    };
    EXPECT_EQ(columns(u"ONE"_s, 0), columns(QString(), 0)) << "weight 1 for all cases is no weight";
    EXPECT_TRUE(asker_.boxes.empty());
    const QStringList once = columns(u"W"_s, 4);
    EXPECT_EQ(columns(u"TWICE"_s, 4), once) << "doubled weights leave the percentages alone";
    EXPECT_EQ(cells(), u"1:4 2:2 :6 :6"_s);
    EXPECT_EQ(asker_.texts(), QStringList(2, u"Warnung: unbekannte Anzahl fehlender Werte in Gewichtungsvariable."_s));
    columns(u"NONE"_s, 0);
    EXPECT_EQ(cells(), u":"_s) << "no case has a weight: no rows, no sums";
    asker_.answer(ui::Answer::Abort);
    columns(u"NEGATIVE"_s, 0);
    EXPECT_TRUE(asker_.lastText().startsWith(u"11\r\n"_s)) << "5 and -5 leave nothing to divide by";
    EXPECT_EQ(model_.facts().outcome, RunOutcome::Refused);
}

TEST_F(Analysis, EndsQuietlyWhenTheUserTurnsAway) {
    open();
    model_.changeTab(1);
    EXPECT_TRUE(model_.edit().chooseVariable(u"V7"_s));
    RunOutcome nested = RunOutcome::Computed;
    asker_.onEventTurn = [&] { nested = model_.changeTab(1); };
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Cancelled);
    EXPECT_EQ(model_.tableState(), TableState::Stopped) << "what is shown is older";
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V5: Zufriedenheit (N=4)"_s);
    EXPECT_EQ(cells(), u"X:1 1:2 2:2 9X:1 :6 :4"_s);
    EXPECT_EQ(nested, RunOutcome::NotRun) << "no run starts inside a run";
    EXPECT_TRUE(asker_.boxes.empty());
    EXPECT_FALSE(AnalysisModel::running());
    asker_.onEventTurn = nullptr;
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"1:3 2:3 :6 :6"_s);
    model_.open();
    EXPECT_EQ(model_.tableState(), TableState::None);
    EXPECT_EQ(model_.result().lblLabel, u""_s);
}

TEST_F(Analysis, FindsTheFileOfATableAnewAtEachRun) {
    open();
    model_.changeTab(1);
    const auto linkOf = [](const QString& table) {
        return gDatabase.CurrentDatabase()->TableDefs().Item(table)->Connect();
    };
    EXPECT_EQ(linkOf(u"QX1919_1"_s), u";DATABASE="_s + catalogue_.caseFile(u"QX1919"_s));
    // A file of the table's own comes first; where the data folder hasn't the study, the catalogue's folder
    // has.
    QFile::copy(catalogue_.caseFile(u"QX1919"_s), catalogue_.caseFile(u"QX1919-2"_s));
    model_.edit().chooseVariable(u"V6"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(linkOf(u"QX1919_2"_s), u";DATABASE="_s + catalogue_.caseFile(u"QX1919-2"_s));
    const QString beside = home_.path(u"archive/QX1919.mdb"_s);
    ASSERT_TRUE(QFile::copy(catalogue_.caseFile(u"QX1919"_s), beside));
    gOptions.DataPath = home_.path(u"nowhere"_s);
    model_.edit().chooseVariable(u"V5"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(linkOf(u"QX1919_1"_s), u";DATABASE="_s + beside);
    EXPECT_EQ(cells(), u"X:1 1:2 2:2 9X:1 :6 :4"_s);
    // Another folder and another language are another table, for all that the statement is the same.
    for (const QString& path : {QString(), catalogue_.dataFolder()}) {
        gOptions.DataPath = path;
        EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
        EXPECT_EQ(linkOf(u"QX1919_1"_s),
                  u";DATABASE="_s + (path.isEmpty() ? beside : catalogue_.caseFile(u"QX1919"_s)));
    }
    gLanguage = 1;
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.changeTab(2), RunOutcome::Reused);
}

TEST_F(Analysis, ChecksAndPreparesEveryMode) {
    open();
    int begun = 0;
    setHook([&](RunHooks& hooks) { hooks.begins = [&] { ++begun; }; });
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(begun, 1);
    model_.edit().chooseMode(AnalysisMode::Crosstab);
    EXPECT_TRUE(model_.view().secondVariable);
    model_.changeTab(1);
    expectEnded(u"Bitte eine zweite Variable auswählen"_s);
    EXPECT_EQ(model_.tableState(), TableState::None);
    model_.edit().chooseVariable2(u"V5"_s);
    model_.changeTab(1);
    expectEnded(u"Doppelte Variablen"_s);
    EXPECT_EQ(begun, 1) << "what is refused begins nothing";
    model_.edit().chooseVariable2(u"V6"_s);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_TRUE(model_.result().lblLabel.startsWith(u"QX1919, V5: Zufriedenheit nach V6: Vertrauen"_s));
    EXPECT_TRUE(model_.view().cbValuesShown);
    model_.edit().chooseUserWeight();
    model_.changeTab(1);
    expectEnded(u"Gewichtungsvariable auswählen"_s);
    model_.edit().chooseWeight(WeightKind::noWeight);

    model_.edit().chooseMode(AnalysisMode::Descriptives);
    QStringList asked;
    setHook([&](RunHooks& hooks) {
        hooks.askMissing = [&](const QString& sMissing) {
            asked << sMissing;
            return std::optional<MissingAnswer>();
        };
    });
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(asked, QStringList(u"9"_s));
    const QString cases =
        u"SELECT q.*, QX1919_1.V5 AS VAR  FROM (q INNER JOIN QX1919_1 ON q.ID = QX1919_1.dt_CaseID)"_s;
    for (const QString& name : {u"stat"_s, u"stat2"_s})
        EXPECT_EQ(gDatabase.CurrentDatabase()->QueryDefs().Item(name)->SQL(), cases);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused);
    EXPECT_FALSE(model_.view().cbValuesShown);
}

TEST_F(Analysis, RunsAComparisonEntryByEntry) {
    open();
    model_.edit().chooseMode(AnalysisMode::Comparison);
    EXPECT_TRUE(model_.view().comparison);
    model_.changeTab(1);
    expectEnded(u"Bitte eine Variable auswählen"_s);
    const auto entry = [](const QStringList& values) {
        ComparisonEntry e;
        for (int i = 0; i < values.size(); ++i)
            e.column[i + 1] = values[i];
        return e;
    };
    const auto change = [this](const std::function<void(AnalysisRequest&)>& step) {
        model_.edit().change(RequestPart::Entries, step);
    };
    change([&](AnalysisRequest& r) {
        r.lst_TrendVars = {entry({u"QX1919"_s, u"V5"_s, u"QX1919_1"_s, u"V5"_s, u"9"_s, u"1919"_s, u"Welle 1"_s,
                                  u"V3"_s, u"V9<50"_s, u"RE"_s, u"user"_s}),
                           entry({u"QX2020"_s, u"V7"_s, u"QX2020_1"_s, u"V7"_s, u""_s, u"2020"_s})};
        r.txtTitle = u"Trend"_s;
    });
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    // With a weight of V3 V9 < 50 leaves the cases 1, 2 and 6: 0.5, 1.5 and 1, of which 1 is system-missing.
    const std::vector<TableFacts::Round>& rounds = model_.result().facts->rounds;
    EXPECT_EQ(rounds[0].cases, (StatedCases{u"3"_s, u"2"_s}));
    EXPECT_EQ(rounds[1].cases, (StatedCases{u"3"_s, u"3"_s}));
    const ResultTable& table = model_.result().mfgGrid;
    EXPECT_EQ(table.Cell(3, 0), u"QX1919, V5, 1919, Welle 1 (G. V3) (F. V9<50)"_s);
    EXPECT_EQ(table.Cell(4, 0), u"QX2020, V7, 2020, "_s);
    EXPECT_EQ(model_.result().facts->rounds[0].dtMissing + u'|' + model_.result().facts->rounds[1].dtMissing, u"9|"_s);
    EXPECT_EQ(model_.facts().counts.last(), u"SELECT QX2020_1.V7 AS [Value], Count(q.ID) AS Count FROM (q "
                                            u"INNER JOIN QX2020_1 ON q.ID = QX2020_1.dt_CaseID) "
                                            "GROUP BY QX2020_1.V7 ORDER BY QX2020_1.V7;"_s)
        << "nothing of the first entry's filter is left";
    EXPECT_EQ(model_.result().lblLabel, u"Vergleichsauswertung: Trend"_s);
    EXPECT_EQ(model_.request().optFilter, FilterKind::noFilter);
    EXPECT_EQ(model_.request().dtMissing + model_.request().dtYear, u"91919"_s)
        << "the variable of the window is still V5 of QX1919";
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused);
    change([](AnalysisRequest& r) { r.txtTitle = u"Anderer Titel"_s; });
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused);
    EXPECT_EQ(model_.result().lblLabel, u"Vergleichsauswertung: Anderer Titel"_s);
    // What was counted in a file that lies elsewhere now, or beside a table's own, is counted anew: here that of
    // the second entry, and that of the first one's filter.
    ASSERT_TRUE(QFile::rename(catalogue_.caseFile(u"QX2020"_s), home_.path(u"archive/QX2020.mdb"_s)));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused);
    ASSERT_TRUE(QFile::copy(catalogue_.caseFile(u"QX1919"_s), catalogue_.caseFile(u"QX1919-2"_s)));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Reused);

    // An entry that fails takes the columns before it along: half a comparison is none.
    change([](AnalysisRequest& r) { r.lst_TrendVars[1].column[ComparisonEntry::Weight] = u"V99"_s; });
    model_.changeTab(1);
    expectEnded(u"V99nicht gefunden"_s);
    EXPECT_EQ(model_.facts().counts.size(), 1);
    EXPECT_EQ(table.Cell(3, 0) + model_.result().lblLabel, u""_s);
    EXPECT_EQ(model_.tableState(), TableState::None);
    change([](AnalysisRequest& r) { r.lst_TrendVars[0].column[ComparisonEntry::FilterInfo] = u"1 1"_s; });
    model_.changeTab(1);
    EXPECT_EQ(model_.facts().outcome, RunOutcome::Refused);
    EXPECT_TRUE(model_.facts().q.isEmpty()) << "no run over all cases where the part can't be read";
}

TEST_F(Analysis, CountsAPartOfTheDataSet) {
    catalogue_.execute(u"UPDATE tkey_Study SET dt_query = 'SELECT QX1919_1.dt_CaseID AS ID, QX1919_1.V7 AS SE "
                       u"FROM QX1919_1;' WHERE id_StudyNo = 'QX1919'"_s);
    catalogue_.addVariable(u"QX1919"_s, u"SE"_s, u"QX1919_1"_s);
    open();
    ASSERT_TRUE(model_.edit().choosePart(u"1"_s));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    // V7 = 1 in cases 1, 3 and 5: V5 is 1, 2, 9 there, V9 is 31, 53, 75.
    EXPECT_EQ(cells(), u"1:1 2:1 9X:1 :3 :2"_s);
    EXPECT_EQ(model_.result().lblLabel, u"QX1919, V5: Zufriedenheit (N=2) (Fälle aus Teil A)"_s);
    ASSERT_TRUE(model_.edit().chooseWeight(WeightKind::WeightUser, u"V9"_s));
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"1:31 2:53 9X:75 :159 :84"_s);
}

TEST_F(Analysis, ShowsNoTableTwiceThatWasCutShort) {
    catalogue_.addStudy(u"QX5"_s, u"Viele Werte"_s);
    catalogue_.addVariable(u"QX5"_s, u"V1"_s, u"QX5_1"_s);
    std::vector<std::vector<dao::Value>> cases;
    for (int i = 1; i <= 25001; ++i)
        cases.push_back({i});
    catalogue_.addCases(u"QX5"_s, u"QX5_1"_s, {dao::TableDef::CreateField(u"V1"_s, dao::dbDouble)}, cases);
    open(u"QX5"_s, u"V1"_s);
    for (const int tab : {1, 2}) {
        EXPECT_EQ(model_.changeTab(tab), RunOutcome::Truncated) << tab;
        EXPECT_EQ(model_.tableState(), TableState::CutShort);
        EXPECT_FALSE(model_.result().lblLabel.contains(u"(N="_s));
    }
    EXPECT_EQ(asker_.texts(), QStringList(2, u"25000 Zeilen erreicht, Abbruch"_s));
}

/// The user's Stop reaches a statement that the engine is still counting, not only the table that is made of it.
TEST_F(Analysis, GivesTheUserItsTurnWhileAStatementRuns) {
    catalogue_.addStudy(u"QX6"_s, u"Viele Fälle"_s);
    catalogue_.addVariable(u"QX6"_s, u"V1"_s, u"QX6_1"_s);
    std::vector<std::vector<dao::Value>> cases;
    for (int i = 1; i <= 20000; ++i)
        cases.push_back({i % 5});
    catalogue_.addCases(u"QX6"_s, u"QX6_1"_s, {dao::TableDef::CreateField(u"V1"_s, dao::dbDouble)}, cases);
    open(u"QX6"_s, u"V1"_s);
    bool counting = false;
    setHook([&](RunHooks& hooks) {
        hooks.onStatement = [&](const QString& name, const QString&) { counting = name == "counts"_L1; };
    });
    asker_.onEventTurn = [&] {
        if (counting)
            model_.stop();
    };
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Cancelled);
    EXPECT_EQ(model_.tableState(), TableState::None) << "no table was begun";
    EXPECT_TRUE(asker_.boxes.empty());
    asker_.onEventTurn = nullptr;
    EXPECT_EQ(model_.changeTab(1), RunOutcome::Computed);
    EXPECT_EQ(cells(), u"0:4000 1:4000 2:4000 3:4000 4:4000 :20000 :20000"_s);
}

TEST_F(Analysis, WhoListensHearsWhatAChangeIsAboutUntilItForgets) {
    open();
    std::vector<RequestPart> heard, heardByOther;
    const int listener = model_.edit().listen([&](RequestPart part) { heard.push_back(part); });
    model_.edit().listen([&](RequestPart part) { heardByOther.push_back(part); });
    model_.edit().chooseWeight(WeightKind::WeightRE);
    model_.edit().chooseVariable(u"V7"_s);
    model_.edit().chooseMode(AnalysisMode::Descriptives);
    model_.edit().choosePart(u"1"_s);
    model_.edit().chooseFilter(FilterKind::noFilter);
    EXPECT_EQ(heard, (std::vector{RequestPart::Weight, RequestPart::Variables, RequestPart::Mode, RequestPart::Filter,
                                  RequestPart::Filter}));
    model_.edit().forget(listener);
    model_.edit().StudyClick(u"QX2020"_s);
    EXPECT_EQ(heard.size(), 5u);
    EXPECT_EQ(heardByOther.back(), RequestPart::Study);
    EXPECT_FALSE(model_.edit().chooseWeight(WeightKind::WeightHH));
    EXPECT_EQ(heardByOther.size(), 6u) << "what is refused changes nothing";
}

TEST_F(Analysis, LogsTheStatementThatTheTrapGaveUp) {
    open();
    setHook([](RunHooks& hooks) {
        hooks.onStatement = [](const QString& name, const QString&) {
            if (name == "counts"_L1)
                gDatabase.CurrentDatabase()->TableDefs().Delete(u"QX1919_1"_s);
        };
    });
    model_.changeTab(1);
    EXPECT_EQ(now_, 15000) << "the name was tried again first";
    QFile log(home_.path(u"home/Sql.log"_s));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_EQ(log.readAll().count(model_.facts().counts.first().toUtf8()), 1);
}
