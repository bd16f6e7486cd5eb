#pragma once

#include "analysis/request/AnalysisRequest.h"

#include <optional>

/// The statements of a run as text, made from plain facts. What they ask is defined by these texts; nothing
/// here runs them.

/// Case tables that a statement joins beside the first: the joins and the brackets opened for them.
struct ExtraJoins {
    QString parens;
    QString text;
    QStringList tables;

    /// True if a table is joined already; whole names are compared.
    bool contains(const QString& table) const { return tables.contains(table, Qt::CaseInsensitive); }
    void add(const QString& table, const QString& join);
};

/// The cases of a study without a selection of its own.
QString defaultCaseQuery(const QString& study);

/// The cases of an analysis with their weight as W2.
struct WeightedQuery {
    QString qSql;    ///< cases that have a weight
    QString nullSql; ///< the cases that have none
};
/// Adds the weight to a text that selects cases. A text that names the weight's table already is not joined
/// to it again.
/// @return nothing for a text without "FROM"
std::optional<WeightedQuery> addWeight(const QString& text, const QString& weightTable, const QString& weightField);

/// The word behind the first "FROM" or "JOIN" of a text: what stands up to the next ";", blank or ",". Empty
/// without that keyword.
QString tableBehind(const QString& text, const QString& keyword);

/// What the count statement of one round depends on.
struct CountFacts {
    AnalysisMode mode = AnalysisMode::Frequency;
    QString table, field, variable;
    QString table2, field2, variable2;
    QString weightVariable;
    WeightKind weight = WeightKind::noWeight;
    bool chkDescGroup = false;
    bool flip = false;       ///< chkFlipXtab in creation mode
    QString partCriteria;    ///< with `part`
    bool part = false;       ///< a part of the data set is chosen
    bool userFilter = false; ///< with `filterSql`
    QString filterSql;
    ExtraJoins joins;         ///< of the filter
    QString missingCondition; ///< MissingToSql of the first variable, empty without a definition
    bool IncludeNinXTabPercent = false;
};

struct CountStatement {
    QString sql;
    QString sqlNoMissing; ///< before the condition for missing values
};
/// SELECT, joins and WHERE: all that stands in front of the condition for missing values.
QString countStatementBase(const CountFacts& facts);
/// The whole statement of a round.
CountStatement countStatement(const CountFacts& facts);
/// True where the condition for missing values belongs into the statement at all, given a definition.
bool takesMissingCondition(const CountFacts& facts);

/// The statement for the labels of a round.
QString labelStatement(AnalysisMode mode, const QString& study, const QString& variable, const QString& variable2);

/// Text of the request that a comparison's tables show.
QString comparisonKey(const QList<ComparisonEntry>& entries);
