#pragma once

#include <vector>

class Random;

enum class Wave { Pretest2013 = 0, Wave2014 = 1, Wave2018 = 2, Wave2022 = 3 };

/// One interviewed person: who they are, and the attitudes behind their answers (mean 0, standard deviation
/// about 1). Answers to different questions hang together because they are drawn around the same attitudes.
struct Respondent {
    Wave wave = Wave::Wave2014;
    int number = 0;         ///< 1 to n
    int region = 1;         ///< 1 to 5
    int municipality = 101; ///< region * 100 + running number
    int townSize = 1;       ///< 1 village to 5 large town
    int sex = 1;            ///< 1 male, 2 female, 3 diverse
    int age = 18;           ///< years
    int education = 1;      ///< 1 none to 5 university
    int marital = 1;
    int household = 1;   ///< persons, the respondent included
    int adults = 1;      ///< of them 18 or older
    int children = 0;    ///< of them under 14
    int employment = 1;  ///< 1 full time to 7 other
    double income = 0.0; ///< net income of the household, crowns a month
    int owner = 0;       ///< 1 lives in an own home
    double contentment = 0.0;
    double health = 0.0;
    double trust = 0.0;
    double environment = 0.0;
    double left = 0.0;

    bool works() const { return employment <= 2; }
    /// Waves since the first one; the pretest counts as the first.
    double elapsed() const { return wave == Wave::Pretest2013 ? 0.0 : static_cast<int>(wave) - 1.0; }
};

/// A sample of the adult population, the same for the same wave at every call.
std::vector<Respondent> drawSample(Wave wave, int cases);

/// Weights of a sample whose mean is 1.
struct Weights {
    std::vector<double> representative; ///< puts region, sex and age group right
    std::vector<double> household;      ///< from persons to households
};
Weights weightsOf(const std::vector<Respondent>& sample);
