#pragma once

#include "Questions.h"
#include "Respondent.h"

#include <QString>

/// A survey as it goes out: the questions asked, the people who answered, and whether weights belong to it.
struct Survey {
    QString study; ///< study number, stem of the file
    QString fileLabel;
    QString notes; ///< field work and sampling, lines separated by "\n"
    Wave wave = Wave::Wave2014;
    int cases = 0;
    bool weighted = false;
};

/// The questions of a survey, its weights included, in the order of the file.
std::vector<Question> questionsOf(const Survey& survey);

/// Writes an SPSS system file, whole or not at all.
/// @throws std::runtime_error with the file's name
void writeSurvey(const Survey& survey, const QString& path);
