#pragma once

#include <QString>
#include <functional>

class AnalysisModel;

/// Runs of the program over the made-up study "B1" (see Archives::makeCases).
namespace CaseRuns {

/// Chooses mode, variables, weight and filter of a run, once the study is chosen.
using Choose = std::function<void(AnalysisModel&)>;

/// Opens the archive of so many cases in a folder, made at its first use.
void open(const QString& folder, int cases);
/// Seconds that a whole run in a model of its own takes. Ends the program if it computes nothing.
double time(const Choose& choose);
/// Measures a run over the open archive against its own statements, stepped bare on the same files.
void compareWithStatements(const QString& name, double limit, const QString& folder, int cases, const Choose& choose);
/// Measures a run over the open archive against reading its cases bare and whatever else the cases need.
/// @param start what the statement that reads the cases starts with, as the engine is given it
/// @param more seconds that the rest takes
void compareWithReading(const QString& name, double limit, const QString& folder, int cases, const Choose& choose,
                        const QString& start, const std::function<double()>& more);
/// Prints the processor time a case over archives from 1e4 to 1e6 cases (1e7 with `large`) and notes how it grows.
void growth(const QString& name, const QString& folder, bool large, const Choose& choose);

} // namespace CaseRuns

/// True if a program was called with "--large".
bool wantsLarge(int argc, char** argv);
