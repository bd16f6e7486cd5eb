#include "Questions.h"

#include "Random.h"

#include <algorithm>
#include <cmath>

double onScale(double attitude, int low, int high, double middle, double slope, Random& random) {
    const double answer = middle + slope * (attitude + 0.6 * random.normal());
    return std::clamp(std::round(answer), low * 1.0, high * 1.0);
}

namespace {

const std::vector<Code> economy{{1, "sehr gut"},      {2, "gut"},        {3, "teils, teils"}, {4, "schlecht"},
                                {5, "sehr schlecht"}, {8, "weiß nicht"}, {9, "keine Angabe"}};
const std::vector<Code> trustCodes{{1, "überhaupt kein Vertrauen"},
                                   {7, "großes Vertrauen"},
                                   {97, "verweigert"},
                                   {98, "weiß nicht"},
                                   {99, "keine Angabe"}};
const std::vector<Code> agreement{{1, "stimme voll zu"},       {2, "stimme eher zu"},      {3, "teils, teils"},
                                  {4, "stimme eher nicht zu"}, {5, "stimme gar nicht zu"}, {8, "weiß nicht"},
                                  {9, "keine Angabe"}};

Question trustIn(unsigned waves, const char* name, const char* label, double middle, double perWave) {
    return {waves,
            name,
            label,
            "F2.0",
            Level::Ordinal,
            trustCodes,
            {{}, true, 97, 99},
            [middle, perWave](const Respondent& p, Random& r) {
                if (r.chance(0.025))
                    return Answer(97.0 + r.pick({0.2, 0.6, 0.2}));
                return Answer(onScale(p.trust, 1, 7, middle + perWave * p.elapsed(), 1.2, r));
            }};
}

Question economicView(const char* name, const char* label, double middle, double perWave, double own) {
    return {inWaves, name, label, "F1.0", Level::Ordinal, economy, {{8, 9}}, [=](const Respondent& p, Random& r) {
                if (r.chance(0.02))
                    return Answer(r.chance(0.7) ? 8.0 : 9.0);
                return Answer(onScale(-own * p.contentment - (1.0 - own) * p.trust, 1, 5,
                                      middle + perWave * p.elapsed(), 0.75, r));
            }};
}

/// The two wordings of the ballot: the same measure, once called a levy and once a contribution.
Question levy(const char* name, const char* label, int part, double middle) {
    return {in2018,
            name,
            label,
            "F1.0",
            Level::Ordinal,
            agreement,
            {{8, 9}},
            [part, middle](const Respondent& p, Random& r) -> Answer {
                if ((p.number % 2 == 1 ? 1 : 2) != part)
                    return {};
                if (r.chance(0.05))
                    return r.chance(0.8) ? 8.0 : 9.0;
                return onScale(-p.environment, 1, 5, middle, 0.9, r);
            }};
}

Answer vote(const Respondent& person, Random& random) {
    if (random.chance(0.17))
        return 97.0 + random.pick({0.45, 0.45, 0.1});
    if (random.chance(std::clamp(0.16 - 0.06 * person.trust, 0.02, 0.5)))
        return 7.0;
    const double left = person.left;
    return 1.0 + random.pick({std::max(0.05, 0.3 - 0.14 * left), std::max(0.05, 0.26 + 0.1 * left),
                              std::max(0.03, 0.1 + 0.09 * person.environment),
                              std::max(0.03, 0.1 + 0.03 * (person.education - 3)),
                              std::max(0.02, 0.09 - 0.08 * person.trust + 0.03 * person.elapsed()), 0.04});
}

/// Marks as given at school, in thirds of a step as far as the scale has them.
Answer mark(const Respondent& person, Random& random) {
    if (random.chance(0.06))
        return 9.9;
    const double steps =
        std::clamp(std::round((3.1 - 0.7 * person.trust + 0.5 * random.normal()) * 2.0) / 2.0, 1.0, 6.0);
    return steps;
}

// clang-format off
std::vector<Question> politicsQuestions() {
    return {
        {inWaves, "POLINT", "Interesse an Politik", "F1.0", Level::Ordinal,
         {{1, "sehr stark"}, {2, "stark"}, {3, "mittel"}, {4, "wenig"}, {5, "überhaupt nicht"}, {9, "keine Angabe"}},
         {{9}},
         [](auto& p, auto& r) {
             const double interest = 0.35 * (p.education - 3.0) + 0.012 * (p.age - 45);
             return Answer(r.chance(0.005) ? 9.0 : onScale(-interest, 1, 5, 2.9, 1.2, r));
         }},
        {inWaves, "LIRE", "Links-Rechts-Selbsteinstufung", "F2.0", Level::Ordinal,
         {{1, "links"}, {10, "rechts"}, {97, "verweigert"}, {98, "weiß nicht"}, {99, "keine Angabe"}},
         {{97, 98, 99}},
         [](auto& p, auto& r) {
             if (r.chance(0.09))
                 return Answer(97.0 + r.pick({0.4, 0.5, 0.1}));
             return Answer(onScale(-p.left, 1, 10, 5.4, 1.7, r));
         }},
        {inWaves, "WAHLABS", "Wahlabsicht bei der nächsten Landtagswahl", "F2.0", Level::Nominal,
         {{1, "Bürgerbund"}, {2, "Arbeiterunion"}, {3, "Grüne Küste"}, {4, "Liberale Liste"}, {5, "Heimatpartei"},
          {6, "andere Partei"}, {7, "würde nicht wählen"}, {97, "verweigert"}, {98, "weiß noch nicht"}, {99, "keine Angabe"}},
         {{97, 98, 99}}, vote},
        {inWaves, "NOTEVERW", "Note für die Gemeindeverwaltung", "F3.1", Level::Metric,
         {{1.0, "sehr gut"}, {1.5, "sehr gut bis gut"}, {2.0, "gut"}, {2.5, "gut bis befriedigend"}, {3.0, "befriedigend"},
          {3.5, "befriedigend bis ausreichend"}, {4.0, "ausreichend"}, {4.5, "ausreichend bis mangelhaft"}, {5.0, "mangelhaft"},
          {5.5, "mangelhaft bis ungenügend"}, {6.0, "ungenügend"}, {9.9, "kein Kontakt zur Verwaltung"}},
         {{9.9}}, mark},
        levy("UMLAGE1", "Zustimmung zu einer Klimaabgabe (Fassung A)", 1, 3.3),
        levy("UMLAGE2", "Zustimmung zu einem Klimabeitrag (Fassung B)", 2, 2.8),
    };
}
// clang-format on

} // namespace

// clang-format off
std::vector<Question> attitudeQuestions() {
    std::vector<Question> all{
        {inAll, "LZUFR", "Allgemeine Lebenszufriedenheit", "F2.0", Level::Ordinal,
         {{0, "ganz und gar unzufrieden"}, {10, "ganz und gar zufrieden"}, {98, "weiß nicht"}, {99, "keine Angabe"}},
         {{98, 99}},
         [](auto& p, auto& r) {
             if (r.chance(0.008))
                 return Answer(r.chance(0.5) ? 98.0 : 99.0);
             return Answer(onScale(p.contentment, 0, 10, 7.1 - 0.12 * p.elapsed(), 1.35, r));
         }},
        {inWaves, "GESUND", "Gesundheitszustand", "F1.0", Level::Ordinal,
         {{1, "sehr gut"}, {2, "gut"}, {3, "zufriedenstellend"}, {4, "weniger gut"}, {5, "schlecht"}, {9, "keine Angabe"}},
         {{9}},
         [](auto& p, auto& r) { return Answer(r.chance(0.005) ? 9.0 : onScale(-p.health, 1, 5, 2.5, 0.8, r)); }},
        economicView("WIRTSOL", "Wirtschaftliche Lage in Solvarden", 2.6, 0.35, 0.3),
        economicView("WIRTEIG", "Eigene wirtschaftliche Lage", 2.4, 0.15, 1.0),
        trustIn(inAll, "VGERICHT", "Vertrauen: Gerichte", 5.0, 0.0),
        trustIn(inWaves, "VPOLIZEI", "Vertrauen: Polizei", 5.3, 0.1),
        trustIn(inAll, "VPARL", "Vertrauen: Landtag", 4.2, -0.15),
        trustIn(inWaves, "VMEDIEN", "Vertrauen: Zeitungen und Rundfunk", 4.0, -0.1),
    };
    const std::vector<Question> politics = politicsQuestions();
    all.insert(all.end(), politics.begin(), politics.end());
    return all;
}
// clang-format on
