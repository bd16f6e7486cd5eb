#pragma once

#include "analysis/request/AnalysisRequest.h"
#include "analysis/result/handMarks.h"
#include "tables/ResultTable.h"
#include "tables/TableOrigin.h"

#include <vector>

/// What the table that is shown was made from, as it stood when it was made.
struct TableFacts {
    /// The cases of one round; a comparison has one for each entry.
    struct Round {
        QString study, variable, weight;
        QString filter;    ///< the user's filter as it was typed, without an end that counted for nothing
        QString part;      ///< name and condition of a part of the data set; empty for none
        QString dtMissing; ///< definition of the (first) variable
        StatedCases cases;
        /// Of a comparison: where its rows are marked otherwise than the entry's own definition has it, since the first
        /// entry that brings a value decides.
        ValueMarks byEarlier{};
    };

    AnalysisRequest request;
    TableOrigin origin;
    std::vector<Round> rounds;
    /// Where the marks of the table are not those of the definitions; on the axes as the table has them.
    ValueMarks handRows{}, handColumns{};
    bool complete = false; ///< false: cut short
};

/// How a table stands to what the window asks for now.
enum class TableState {
    None,     ///< there is no table
    Stored,   ///< it was stored once, not made now
    Current,  ///< it shows what is asked for
    CutShort, ///< it was stopped or holds too many values
    Stopped,  ///< the last run was stopped: what is shown is older
    OtherRequest,
    OtherOptions,
    OtherMarks
};

/// Statistics, digits and what else bears on a table of them beside the cases; empty in other modes.
QString statisticsKey(const AnalysisRequest& request, const Options& options);
/// True if two lists of entries give the same comparison.
bool sameEntries(const QList<ComparisonEntry>& a, const QList<ComparisonEntry>& b);
/// True if two requests ask for the same table, statistics aside. @param options that they are asked under
bool asksTheSame(const AnalysisRequest& a, const AnalysisRequest& b, const Options& options);
using OptionList = std::vector<bool Options::*>;
/// The options that bear on the cells of a mode's table.
OptionList optionsOf(AnalysisMode mode);
/// Those of them that are not as a fresh program has them.
std::vector<const OptionDescriptor*> differingOptions(AnalysisMode mode, const Options& options);
/// True if two sets of options give a request of a mode the same table, statistics aside.
bool showsTheSame(AnalysisMode mode, const Options& a, const Options& b);
/// What the numbers stand on: study, filter, weight, N, missing values, a short phrase each, in the language in force.
/// A comparison has a line for each entry.
QStringList standsOn(const TableFacts& facts);
/// True for a table of that variable; a comparison is of each of its entries.
bool isOf(const TableFacts& facts, const QString& study, const QString& variable);
/// Notes where the marks of a table that is ready differ from its definitions. @param marked the table with the marks
void noteMarks(TableFacts& facts, const ResultTable& marked);
/// A sentence for a table that does not show what is asked for; empty for one that does.
QString stateText(TableState state);
