#pragma once

#include "analysis/AnalysisRequest.h"
#include "analysis/tableClick.h"
#include "analysis/titles.h"
#include "config/Options.h"
#include "tables/ResultTable.h"

#include <optional>

/// What the table that is shown was made from, as it stood when it was made.
struct TableFacts {
    /// The cases of one round; a comparison has one for each entry.
    struct Round {
        QString study, variable, weight;
        QString filterSql; ///< the user's filter as the engine was given it
        QString part;      ///< name and condition of a part of the data set; empty for none
        QString dtMissing; ///< definition of the (first) variable
        StatedCases cases;
    };

    AnalysisRequest request;
    Options options;
    std::vector<Round> rounds;
    bool flip = false;        ///< rows and columns were exchanged
    QString statistics;       ///< statisticsKey() of the run
    bool marksByHand = false; ///< the user's marks said what is missing, not the definition
    std::vector<bool> marks;  ///< rows and columns marked when the table was ready
    QStringList markedRows, markedColumns;
    MarkArea area;
    bool complete = false; ///< false: cut short
};

/// How a table stands to what the window asks for now.
enum class TableState {
    None,     ///< there is no table
    Current,  ///< it shows what is asked for
    CutShort, ///< it was stopped or holds too many values
    Stopped,  ///< the last run was stopped: what is shown is older
    OtherRequest,
    OtherOptions,
    OtherMarks
};

/// Statistics, digits and what else bears on a table of them beside the cases; empty in other modes.
QString statisticsKey(const AnalysisRequest& request);
/// True if two lists of entries give the same comparison.
bool sameEntries(const QList<ComparisonEntry>& a, const QList<ComparisonEntry>& b);
/// True if two requests ask for the same table, statistics aside.
bool asksTheSame(const AnalysisRequest& a, const AnalysisRequest& b);
/// True if two sets of options give a request of a mode the same table, statistics aside.
bool showsTheSame(AnalysisMode mode, const Options& a, const Options& b);
/// True if marks set under one set of options fit the table that another gives: its rows and columns are the same.
bool keepsMarks(AnalysisMode mode, const Options& a, const Options& b);
/// What the numbers stand on: study, filter, weight, N, missing values, a short phrase each, in the language in force.
/// A comparison has a line for each entry.
QStringList standsOn(const TableFacts& facts);
/// A sentence for a table that does not show what is asked for; empty for one that does.
QString stateText(TableState state);
