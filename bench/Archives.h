#pragma once

#include <QString>

/// Large archives for measuring, made up from a seed in a temporary folder.
namespace Archives {

/// One study "B1" with two case tables in one file: B1_1 (W weight, V5 with 8 values, V6 with 40) and B1_2 (V9 with
/// 10).
QString makeCases(const QString& folder, int cases);

/// Studies S01, S02, ... with W (weight) and V5 (8 values), each in a case file of its own.
QString makeWaves(const QString& folder, int studies, int cases);

/// A catalogue of studies S0001, ... with as many variables each, labels and question texts; a view of the studies,
/// which is the one to open at the start, and one of topics: the first has every tenth variable (V10, V20, ...), with
/// longer texts, the second a single one.
QString makeCatalogue(const QString& folder, int studies, int variablesEach);

/// The catalogue of one study S0001 as a codebook shows it: each variable with ten values, of which two are missing, a
/// stored frequency table and, if asked for, a stored graph of its own.
QString makeCodebook(const QString& folder, int variables, bool graphs);

/// One study "B1" of so many variables V1, V2, ... with 8 values, in one case table, and a weight W; each V has an
/// instruction for a weighted frequency.
QString makeInstructions(const QString& folder, int variables, int cases);

/// An SPSS file with whole and decimal numbers, labels, missing values and a text variable.
/// @param compressed by rows, as most such files are
QString makeSurveyFile(const QString& folder, int cases, int variables, bool compressed = false);

} // namespace Archives
