#include "analysis/run/statements.h"

#include "analysis/run/userFilter.h"

#include <array>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

CountFacts factsOf(AnalysisMode mode) {
    CountFacts facts;
    facts.mode = mode;
    facts.table = u"QX1919_1"_s;
    facts.field = u"V5"_s;
    facts.variable = u"V5"_s;
    return facts;
}

CountFacts crosstab() {
    CountFacts facts = factsOf(AnalysisMode::Crosstab);
    facts.table2 = u"QX1919_2"_s;
    facts.field2 = u"V6"_s;
    facts.variable2 = u"V6"_s;
    return facts;
}

const QString joined = u"(q INNER JOIN QX1919_1 ON q.ID = QX1919_1.dt_CaseID)"_s;
const QString second = u"INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID)"_s;
const QString grouped = u" GROUP BY QX1919_1.V5 ORDER BY QX1919_1.V5;"_s;
const QString groupedByTwo = u" GROUP BY QX1919_1.V5, QX1919_2.V6 ORDER BY QX1919_1.V5, QX1919_2.V6;"_s;
const QString twoColumns = u"SELECT QX1919_1.V5 AS [V5], QX1919_2.V6 AS [V6], Count(q.ID) AS Count FROM "_s;

void expectSql(const CountFacts& facts, const QString& text) {
    EXPECT_EQ(countStatement(facts).sql.toStdString(), text.toStdString());
}

} // namespace

TEST(CountStatements, ReadAsTheModesHaveThem) {
    const CountFacts frequency = factsOf(AnalysisMode::Frequency);
    const QString values = u"SELECT QX1919_1.V5 AS [Value], Count(q.ID) AS Count FROM "_s;
    expectSql(frequency, u"SELECT QX1919_1.V5 AS [Value], Count(q.ID) AS Count FROM (q INNER JOIN QX1919_1 ON q.ID = "
                         "QX1919_1.dt_CaseID) GROUP BY QX1919_1.V5 ORDER BY QX1919_1.V5;"_s);
    expectSql(factsOf(AnalysisMode::Comparison), values + joined + grouped);
    CountFacts facts = frequency;
    facts.weightVariable = u"V3"_s;
    expectSql(facts, u"SELECT QX1919_1.V5 AS [Value], Sum(q.W2) AS Count FROM "_s + joined + grouped);
    facts = frequency;
    facts.userFilter = true;
    facts.filterSql = u"QX1919_1.V7=1"_s;
    expectSql(facts, values + joined + u" WHERE QX1919_1.V7=1"_s + grouped);
    facts.joins.add(u"QX1919_2"_s, u" INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID) "_s);
    expectSql(facts, values + u"("_s + joined +
                         u" INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID)  WHERE QX1919_1.V7=1"_s + grouped);
    facts = frequency;
    facts.part = true;
    facts.partCriteria = u"1"_s;
    facts.missingCondition = u"QX1919_1.V5 <> 9"_s;
    expectSql(facts, values + joined + u" WHERE q.SE=1"_s + grouped);
    facts = factsOf(AnalysisMode::Descriptives);
    facts.missingCondition = u"QX1919_1.V5 <> 9"_s;
    expectSql(facts, u"SELECT q.*, QX1919_1.V5 AS VAR  FROM (q INNER JOIN QX1919_1 ON q.ID = QX1919_1.dt_CaseID)"_s);
}

TEST(CountStatements, OfTwoVariablesJoinTheSecondTableOnce) {
    CountFacts facts = crosstab();
    expectSql(facts, u"SELECT QX1919_1.V5 AS [V5], QX1919_2.V6 AS [V6], Count(q.ID) AS Count FROM ((q INNER JOIN "
                     "QX1919_1 ON q.ID = QX1919_1.dt_CaseID)INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID) "
                     "GROUP BY QX1919_1.V5, QX1919_2.V6 ORDER BY QX1919_1.V5, QX1919_2.V6;"_s);
    facts.flip = true;
    facts.weight = WeightKind::WeightUser;
    expectSql(facts, u"SELECT QX1919_2.V6 AS [V6], QX1919_1.V5 AS [V5], Sum(q.W2) AS Count FROM ("_s + joined + second +
                         groupedByTwo);
    // The filter has brought the second table in; a table whose name only starts like it is another one.
    facts = crosstab();
    facts.userFilter = true;
    facts.filterSql = u"F"_s;
    facts.joins.add(u"QX1919_2"_s, u" INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID) "_s);
    expectSql(facts, twoColumns + u"("_s + joined + u" INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID)  WHERE F"_s +
                         groupedByTwo);
    facts.joins = {};
    facts.joins.add(u"QX1919_20"_s, u" INNER JOIN QX1919_20 ON q.ID = QX1919_20.dt_CaseID) "_s);
    expectSql(facts, twoColumns + u"(("_s + joined + u" INNER JOIN QX1919_20 ON q.ID = QX1919_20.dt_CaseID) "_s +
                         second + u" WHERE F"_s + groupedByTwo);
    // Missing values are taken out only in a crosstab that has a condition already, whose OR is not
    // bracketed.
    facts = crosstab();
    facts.missingCondition = u"QX1919_1.V5 < 8 OR QX1919_1.V5 > 9"_s;
    expectSql(facts, twoColumns + u"("_s + joined + second + groupedByTwo);
    facts.userFilter = true;
    facts.filterSql = u"A OR B"_s;
    expectSql(facts, twoColumns + u"("_s + joined + second +
                         u" WHERE A OR B AND (QX1919_1.V5 < 8 OR QX1919_1.V5 > 9) "_s + groupedByTwo);
    facts.IncludeNinXTabPercent = true;
    expectSql(facts, twoColumns + u"("_s + joined + second + u" WHERE A OR B"_s + groupedByTwo);
    facts = crosstab();
    facts.mode = AnalysisMode::Descriptives;
    facts.chkDescGroup = true;
    expectSql(facts, u"SELECT q.*, QX1919_1.V5 AS VAR , QX1919_2.V6 AS VAR2  FROM ("_s + joined + second);
}

TEST(CountStatements, TakeTheirCasesAndWeightFromTheStudysQuery) {
    EXPECT_EQ(defaultCaseQuery(u"QX1919"_s), u"SELECT QX1919_1.dt_CaseID AS ID FROM QX1919_1;"_s);
    struct Case {
        QString text, table, query;
    };
    const std::vector<Case> cases{
        {u"SELECT QX1919_1.dt_CaseID AS ID FROM QX1919_1;"_s, u"QX1919_1"_s,
         u"SELECT QX1919_1.dt_CaseID AS ID , QX1919_1.V3 AS W2 FROM QX1919_1"_s},
        {u"select QX1919_1.dt_CaseID AS ID from QX1919_1 ;"_s, u"QX1919_2"_s,
         u"select QX1919_1.dt_CaseID AS ID , QX1919_2.V3 AS W2 FROM QX1919_2 INNER JOIN QX1919_1  ON "
         u"QX1919_2.dt_CaseID = "
         "QX1919_1 .dt_CaseID"_s},
        // Found in the text as it stands, with regard to case, and also as part of a longer name.
        {u"SELECT qx1919_2.dt_CaseID AS ID FROM qx1919_2"_s, u"QX1919_2"_s,
         u"SELECT qx1919_2.dt_CaseID AS ID , QX1919_2.V3 AS W2 FROM QX1919_2 INNER JOIN qx1919_2 ON "
         u"QX1919_2.dt_CaseID = "
         "qx1919_2.dt_CaseID"_s},
        {u"SELECT QX1919_20.dt_CaseID AS ID FROM QX1919_20;"_s, u"QX1919_2"_s,
         u"SELECT QX1919_20.dt_CaseID AS ID , QX1919_2.V3 AS W2 FROM QX1919_20"_s},
    };
    for (const Case& c : cases) {
        const std::optional<WeightedQuery> weighted = addWeight(c.text, c.table, u"V3"_s);
        ASSERT_TRUE(weighted);
        EXPECT_EQ(weighted->qSql.toStdString(),
                  (c.query + u" WHERE ("_s + c.table + u".V3 Is Not Null)"_s).toStdString());
        EXPECT_EQ(weighted->nullSql.toStdString(),
                  (c.query + u" WHERE ("_s + c.table + u".V3 Is Null)"_s).toStdString());
    }
    EXPECT_FALSE(addWeight(u"QX1919_1"_s, u"QX1919_1"_s, u"V3"_s));

    const std::vector<std::array<QString, 3>> scans{
        {u"SELECT QX1919_1.dt_CaseID AS ID FROM QX1919_1;"_s, u"QX1919_1"_s, u""_s},
        {u"SELECT A_1.dt_CaseID AS ID from A_1 Inner Join A_2 ON 1"_s, u"A_1"_s, u"A_2"_s},
        {u"SELECT q.ID FROM (q INNER JOIN A_2,B"_s, u"(q"_s, u"A_2"_s},
        {u"SELECT 1"_s, u""_s, u""_s},
    };
    for (const auto& [text, from, join] : scans) {
        EXPECT_EQ(tableBehind(text, u"FROM"_s), from);
        EXPECT_EQ(tableBehind(text, u"JOIN"_s), join);
    }
}

TEST(CountStatements, AskForTheLabelsOfTheirVariables) {
    EXPECT_EQ(labelStatement(AnalysisMode::Frequency, u"QX1919"_s, u"V5"_s, u"V6"_s),
              u"SELECT * FROM tkey_Value WHERE fi_StudyNo = 'QX1919' AND fi_VarName = 'V5' ORDER BY dt_Value ASC;"_s);
    EXPECT_EQ(labelStatement(AnalysisMode::Crosstab, u"QX1919"_s, u"V5"_s, u"V6"_s),
              u"SELECT * FROM tkey_Value WHERE ([fi_StudyNo] like 'QX1919' AND ([fi_VarName] = 'V5' OR "
              u"[fi_VarName] = 'V6')) "
              "ORDER BY dt_Value ASC;"_s);
    ComparisonEntry entry;
    for (int column = 1; column < ComparisonEntry::columns; ++column)
        entry.column[column] = QString::number(column) + u';';
    EXPECT_EQ(comparisonKey({entry, entry}), u"TREND1;2;8;9;1;2;8;9;"_s);
}

namespace {

FilterResult translate(const QString& text, const QStringList& joinedAlready, QStringList* attached = nullptr) {
    FilterSurroundings around;
    around.joinedAlready = joinedAlready;
    around.find = [](const QString& word, bool&) -> std::optional<VariablePlace> {
        if (word == "V7"_L1 || word == "V8"_L1 || word == "A-B_1"_L1)
            return VariablePlace{u"QX1919_1"_s, word};
        if (word == "V9"_L1)
            return VariablePlace{u"QX1919_2"_s, word};
        if (word == "v9b"_L1)
            return VariablePlace{u"qx1919_2"_s, word};
        if (word == "V10"_L1)
            return VariablePlace{u"QX1919_20"_s, word};
        return std::nullopt;
    };
    around.attach = [attached](const QString& table) {
        if (attached)
            *attached << table;
        return true;
    };
    return translateFilter(text, around);
}

} // namespace

TEST(UserFilter, CopiesCharactersAndReplacesVariables) {
    using Failure = FilterResult::Failure;
    struct Case {
        QString text, filterSql, joinedTables;
        Failure failure = Failure::None;
        QString culprit = {};
    };
    const std::vector<Case> cases{
        {u""_s, u""_s, u""_s},
        {u"V7=1"_s, u"QX1919_1.V7=1"_s, u""_s},
        {u"V7 = 1"_s, u"QX1919_1.V7 = 1"_s, u""_s},
        {u"(V7=1) OR (V8>2)"_s, u"(QX1919_1.V7=1) OR (QX1919_1.V8>2)"_s, u""_s},
        {u"V9<3 AND NOT V7=2"_s, u"QX1919_2.V9<3 AND NOT QX1919_1.V7=2"_s, u"QX1919_2"_s},
        {u"V10=1 and V9=1 or V9>3"_s, u"QX1919_20.V10=1 and QX1919_2.V9=1 or QX1919_2.V9>3"_s, u"QX1919_20,QX1919_2"_s},
        // The engine takes no notice of case in a table's name: a second join of the same table would be an error.
        {u"V9=1 AND v9b=1"_s, u"QX1919_2.V9=1 AND qx1919_2.v9b=1"_s, u"QX1919_2"_s},
        // Behind a variable's delimiter everything is taken as it is, up to the next delimiter.
        {u"V7=1.5 OR V8='x;y'"_s, u"QX1919_1.V7=1.5 OR QX1919_1.V8='x;y'"_s, u""_s},
        {u"A-B_1=1"_s, u"QX1919_1.A-B_1=1"_s, u""_s},
        // A word that no delimiter ends is lost.
        {u"V7 = V8"_s, u"QX1919_1.V7 = "_s, u""_s},
        {u"V7 = V8 "_s, u"QX1919_1.V7 = QX1919_1.V8 "_s, u""_s},
        {u"V7 = 1.5"_s, u"QX1919_1.V7 = 1"_s, u""_s, Failure::IllegalCharacter, u"."_s},
        {u"V7=1;"_s, u"QX1919_1.V7=1;"_s, u""_s},
        {u"(V7=1);"_s, u"(QX1919_1.V7=1)"_s, u""_s, Failure::IllegalCharacter, u";"_s},
        {u"'V7'=1"_s, u""_s, u""_s, Failure::IllegalCharacter, u"'"_s},
        {u"Größe=1"_s, u""_s, u""_s, Failure::IllegalCharacter, u"ö"_s},
        {u"V7=1 AND 😀"_s, u"QX1919_1.V7=1 AND "_s, u""_s, Failure::IllegalCharacter, u"😀"_s},
        {u"V7=1 XOR V8=2"_s, u"QX1919_1.V7=1 "_s, u""_s, Failure::UnknownVariable, u"XOR"_s},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.text));
        QStringList attached;
        const FilterResult result = translate(c.text, {u"QX1919_1"_s}, &attached);
        EXPECT_EQ(result.filterSql.toStdString(), c.filterSql.toStdString());
        EXPECT_EQ(attached.join(u','), c.joinedTables);
        EXPECT_EQ(result.joins.parens, QString(attached.size(), u'('));
        EXPECT_EQ(result.failure, c.failure);
        EXPECT_EQ(result.culprit, c.culprit);
    }
    EXPECT_EQ(translate(u"V9<3"_s, {u"QX1919_1"_s}).joins.text,
              u" INNER JOIN QX1919_2 ON q.ID = QX1919_2.dt_CaseID) "_s);
    EXPECT_EQ(translate(u"V9<3"_s, {u"QX1919_1"_s, u"QX1919_2"_s}).joins.text, u""_s) << "the second variable's table";
}
