#pragma once

#include "Respondent.h"

#include <functional>
#include <limits>
#include <string>
#include <variant>
#include <vector>

class Random;

/// Nothing (system-missing), a number or a text.
using Answer = std::variant<std::monostate, double, std::string>;

struct Code {
    double value;
    const char* label;
};

/// Codes that count as missing: at most three values, or a range with at most one value.
struct MissingCodes {
    std::vector<double> values = {};
    bool hasRange = false;
    double low = 0.0;
    double high = 0.0;
};

constexpr double lowest = -std::numeric_limits<double>::infinity();
constexpr double highest = std::numeric_limits<double>::infinity();

enum class Level { Nominal, Ordinal, Metric };

/// One variable of the questionnaire: what a survey file says of it, in which waves it was asked, and how a
/// respondent answers.
struct Question {
    unsigned waves; ///< bits 1 << Wave
    const char* name;
    const char* label;
    const char* format;
    Level level;
    std::vector<Code> codes;
    MissingCodes missing;
    std::function<Answer(const Respondent&, Random&)> answer;

    bool askedIn(Wave wave) const { return (waves & (1U << static_cast<unsigned>(wave))) != 0; }
    /// Characters of a text variable, 0 for a number.
    int textLength() const { return format[0] == 'A' ? std::stoi(format + 1) : 0; }
};

constexpr unsigned inPretest = 1U << 0;
constexpr unsigned in2014 = 1U << 1;
constexpr unsigned in2018 = 1U << 2;
constexpr unsigned in2022 = 1U << 3;
constexpr unsigned inWaves = in2014 | in2018 | in2022;
constexpr unsigned inAll = inWaves | inPretest;

/// The questionnaire's chapters, in the order in which they are asked.
std::vector<Question> personQuestions();
std::vector<Question> householdQuestions();
std::vector<Question> attitudeQuestions();
std::vector<Question> livingQuestions();

/// An answer on a scale of whole numbers: `middle` for an attitude of 0, `slope` points for each unit of it.
double onScale(double attitude, int low, int high, double middle, double slope, Random& random);
