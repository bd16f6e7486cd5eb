#include "analysis/run/statements.h"

#include "catalogue/StudyRows.h"

using namespace Qt::StringLiterals;

namespace {

QString column(const QString& table, const QString& field) {
    return table + u'.' + field;
}

bool groupsByTwo(const CountFacts& facts) {
    return facts.mode == AnalysisMode::Crosstab || (facts.mode == AnalysisMode::Descriptives && facts.chkDescGroup);
}

bool hasWhere(const CountFacts& facts) {
    return facts.part || facts.userFilter;
}

QString selectList(const CountFacts& facts) {
    const QString first = column(facts.table, facts.field);
    const QString second = column(facts.table2, facts.field2);
    const QString cases = u" Count(q.ID) AS Count"_s;
    const QString weights = u" Sum(q.W2) AS Count"_s;
    switch (facts.mode) {
    case AnalysisMode::Frequency:
    case AnalysisMode::Comparison:
        return u"SELECT "_s + first + u" AS [Value],"_s + (facts.weightVariable.isEmpty() ? cases : weights);
    case AnalysisMode::Descriptives: {
        QString text = u"SELECT q.*, "_s + first + u" AS VAR "_s;
        if (facts.chkDescGroup && !facts.table2.isEmpty() && !facts.field2.isEmpty())
            text += u", "_s + second + u" AS VAR2 "_s;
        return text;
    }
    case AnalysisMode::Crosstab: {
        const QString a = first + u" AS ["_s + facts.variable + u"]"_s;
        const QString b = second + u" AS ["_s + facts.variable2 + u"]"_s;
        return u"SELECT "_s + (facts.flip ? b + u", "_s + a : a + u", "_s + b) + u","_s +
               (facts.weight == WeightKind::noWeight ? cases : weights);
    }
    }
    return {};
}

QString groupAndOrder(const CountFacts& facts) {
    if (facts.mode == AnalysisMode::Descriptives)
        return {};
    QString columns = column(facts.table, facts.field);
    if (facts.mode == AnalysisMode::Crosstab)
        columns += u", "_s + column(facts.table2, facts.field2);
    return u" GROUP BY "_s + columns + u" ORDER BY "_s + columns + u";"_s;
}

} // namespace

void ExtraJoins::add(const QString& table, const QString& join) {
    parens += u'(';
    text += join;
    tables << table;
}

QString defaultCaseQuery(const QString& study) {
    return u"SELECT "_s + study + u"_1.dt_CaseID AS ID FROM "_s + study + u"_1;"_s;
}

std::optional<WeightedQuery> addWeight(const QString& text, const QString& weightTable, const QString& weightField) {
    const qsizetype from = text.indexOf(u"FROM"_s, 0, Qt::CaseInsensitive);
    if (from < 0)
        return std::nullopt;
    const QString weight = column(weightTable, weightField);
    const QString select = text.left(from) + u", "_s + weight + u" AS W2 FROM "_s;
    QString query;
    if (text.contains(weightTable)) {
        query = select + text.left(text.indexOf(u';')).mid(from + 4).trimmed();
    } else {
        QString source = text.mid(from + 4).trimmed();
        source = source.left(source.indexOf(u';'));
        query = select + weightTable + u" INNER JOIN "_s + source + u" ON "_s + weightTable + u".dt_CaseID = "_s +
                source + u".dt_CaseID"_s;
    }
    return WeightedQuery{query + u" WHERE ("_s + weight + u" Is Not Null)"_s,
                         query + u" WHERE ("_s + weight + u" Is Null)"_s};
}

QString tableBehind(const QString& text, const QString& keyword) {
    const qsizetype at = text.indexOf(keyword, 0, Qt::CaseInsensitive);
    if (at < 0)
        return {};
    const qsizetype start = at + 5;
    qsizetype end = start;
    while (end < text.size() && text[end] != u';' && text[end] != u' ' && text[end] != u',')
        ++end;
    return text.mid(start, end - start);
}

QString countStatementBase(const CountFacts& facts) {
    ExtraJoins joins = facts.joins;
    if (groupsByTwo(facts) && !facts.table2.isEmpty() && facts.table2.compare(facts.table, Qt::CaseInsensitive) != 0 &&
        !joins.contains(facts.table2))
        joins.add(facts.table2, u"INNER JOIN "_s + facts.table2 + u" ON q.ID = "_s + facts.table2 + u".dt_CaseID)"_s);
    QString sql = selectList(facts) + u" FROM "_s + joins.parens + u"(q INNER JOIN "_s + facts.table +
                  u" ON q.ID = "_s + facts.table + u".dt_CaseID)"_s + joins.text;
    if (facts.part)
        sql += u" WHERE q.SE="_s + facts.partCriteria;
    if (facts.userFilter)
        sql += u" WHERE "_s + facts.filterSql;
    return sql;
}

/// Only a crosstab that has a WHERE takes it; the statistics and the other tables leave missing values out
/// themselves.
bool takesMissingCondition(const CountFacts& facts) {
    return facts.mode == AnalysisMode::Crosstab && !facts.IncludeNinXTabPercent && hasWhere(facts);
}

CountStatement countStatement(const CountFacts& facts) {
    CountStatement statement;
    statement.sqlNoMissing = countStatementBase(facts);
    statement.sql = statement.sqlNoMissing;
    if (!facts.missingCondition.isEmpty() && takesMissingCondition(facts))
        statement.sql += u" AND ("_s + facts.missingCondition + u") "_s;
    statement.sql += groupAndOrder(facts);
    return statement;
}

QString labelStatement(AnalysisMode mode, const QString& study, const QString& variable, const QString& variable2) {
    if (mode == AnalysisMode::Crosstab)
        return u"SELECT * FROM tkey_Value WHERE ([fi_StudyNo] like "_s + quoted(study) + u" AND ([fi_VarName] = "_s +
               quoted(variable) + u" OR [fi_VarName] = "_s + quoted(variable2) + u")) ORDER BY dt_Value ASC;"_s;
    return u"SELECT * FROM tkey_Value WHERE fi_StudyNo = "_s + quoted(study) + u" AND fi_VarName = "_s +
           quoted(variable) + u" ORDER BY dt_Value ASC;"_s;
}

QString comparisonKey(const QList<ComparisonEntry>& entries) {
    QString key = u"TREND"_s;
    for (const ComparisonEntry& entry : entries)
        key += entry.at(ComparisonEntry::Study) + entry.at(ComparisonEntry::Variable) +
               entry.at(ComparisonEntry::Weight) + entry.at(ComparisonEntry::Filter);
    return key;
}
