#pragma once

#include "analysis/AnalysisRequest.h"
#include "config/Options.h"
#include "tables/ResultTable.h"

#include <optional>

/// What the table that is shown was made from, as it stood when it was made.
struct TableFacts {
    AnalysisRequest request;
    Options options;
    QString filterSql;            ///< the user's filter as the engine was given it
    bool part = false;            ///< a part of the data set
    bool marksByHand = false;     ///< the user's marks said what is missing, not the definition
    std::vector<bool> marks;      ///< rows marked when the table was ready
    bool complete = false;        ///< false: cut short
};

/// How a table stands to what the window asks for now.
enum class TableState {
    None,       ///< there is no table
    Current,    ///< it shows what is asked for
    CutShort,   ///< it was stopped or holds too many values
    Stopped,    ///< the last run was stopped: what is shown is older
    OtherRequest,
    OtherOptions,
    OtherMarks
};

/// True if two requests ask for the same table.
bool asksTheSame(const AnalysisRequest& a, const AnalysisRequest& b);
/// True if two sets of options give a request the same table.
bool showsTheSame(const Options& a, const Options& b);
/// What the numbers stand on: study, filter, weight, N, missing values, a short phrase each, in the language in force.
QStringList standsOn(const TableFacts& facts, const ResultTable& table);
/// A sentence for a table that does not show what is asked for; empty for one that does.
QString stateText(TableState state);
