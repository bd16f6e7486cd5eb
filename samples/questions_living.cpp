#include "Questions.h"

#include "Random.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

Answer volunteerHours(const Respondent& person, Random& random) {
    if (random.chance(0.66 - 0.04 * person.education))
        return 0.0;
    return random.chance(0.03) ? 99.0 : std::clamp(std::round((5.0 + 4.0 * random.normal()) * 2.0) / 2.0, 0.5, 40.0);
}

Answer internetUse(const Respondent& person, Random& random) {
    const double young = (48.0 - person.age) / 14.0 + 0.3 * (person.education - 3.0) + 0.9 * person.elapsed();
    return onScale(-young, 1, 5, 2.5, 0.8, random);
}

/// What the interviewer wrote down, in the respondent's own words.
Answer greatestProblem(const Respondent& person, Random& random) {
    static const std::array<const char*, 7> problems{"Die Preise, vor allem für Strom und Heizung",
                                                     "Zu wenige Ärzte auf dem Land",
                                                     "Bezahlbare Wohnungen in Sollund",
                                                     "Das Klima und die Stürme an der Küste",
                                                     "Die Fähren fahren zu selten",
                                                     "Der Streit im Landtag",
                                                     "Dass die Jungen wegziehen"};
    if (random.chance(0.22))
        return std::string();
    const double green = std::max(0.0, person.environment);
    return std::string(problems[static_cast<std::size_t>(
        random.pick({0.3, person.townSize < 3 ? 0.2 : 0.05, person.region == 5 ? 0.3 : 0.05, 0.08 + 0.1 * green,
                     person.region == 1 ? 0.15 : 0.03, std::max(0.03, 0.1 - 0.06 * person.trust),
                     person.age > 60 ? 0.14 : 0.04}))]);
}

// clang-format off
std::vector<Question> environmentQuestions() {
    return {
        {inWaves, "KLIMA", "Sorge um den Klimawandel", "F1.0", Level::Ordinal,
         {{1, "keine Sorgen"}, {2, "einige Sorgen"}, {3, "große Sorgen"}, {4, "sehr große Sorgen"},
          {8, "weiß nicht"}, {9, "keine Angabe"}},
         {{8, 9}},
         [](auto& p, auto& r) {
             if (r.chance(0.015))
                 return Answer(r.chance(0.7) ? 8.0 : 9.0);
             return Answer(onScale(p.environment, 1, 4, 2.3, 0.75, r));
         }},
        {inWaves, "UMWGELD", "Zahlungsbereitschaft für Umweltschutz, Kronen im Jahr", "F6.0", Level::Metric,
         {{0, "nichts"}, {9998, "weiß nicht"}, {9999, "keine Angabe"}}, {{}, true, 9998, highest},
         [](auto& p, auto& r) {
             if (r.chance(0.08))
                 return Answer(r.chance(0.75) ? 9998.0 : 9999.0);
             const double sum = 120.0 + 150.0 * p.environment + 0.02 * p.income + 90.0 * r.normal();
             return Answer(std::max(0.0, std::round(sum / 25.0) * 25.0));
         }},
    };
}
// clang-format on

// clang-format off
std::vector<Question> mediaQuestions() {
    return {
        {inWaves, "INTERNET", "Nutzung des Internets", "F1.0", Level::Ordinal,
         {{1, "mehrmals am Tag"}, {2, "täglich"}, {3, "wöchentlich"}, {4, "seltener"}, {5, "nie"}},
         {}, internetUse},
        {in2014, "ZEITUNG", "Zeitungslektüre, Tage in der Woche", "F1.0", Level::Metric, {{9, "keine Angabe"}},
         {{9}},
         [](auto& p, auto& r) { return Answer(r.chance(0.01) ? 9.0 : onScale((p.age - 45) / 15.0, 0, 7, 3.8, 1.7, r)); }},
        {in2014, "FERNSEH", "Fernsehen, Stunden am Tag", "F4.1", Level::Metric,
         {{-9, "keine Angabe"}}, {{}, true, lowest, -9},
         [](auto& p, auto& r) {
             if (r.chance(0.015))
                 return Answer(-9.0);
             return Answer(std::max(0.0, std::round((2.1 + 0.02 * (p.age - 45) + 1.1 * r.normal()) * 2.0) / 2.0));
         }},
        {in2022, "HOMEOFF", "Tage im Homeoffice in der Woche", "F1.0", Level::Metric, {{9, "keine Angabe"}},
         {{9}},
         [](auto& p, auto& r) -> Answer {
             if (!p.works())
                 return {};
             return r.chance(0.01) ? 9.0 : onScale(p.education - 3.0, 0, 5, 0.8, 0.9, r);
         }},
    };
}
// clang-format on

} // namespace

// clang-format off
std::vector<Question> livingQuestions() {
    std::vector<Question> all = environmentQuestions();
    const std::vector<Question> media = mediaQuestions();
    all.insert(all.end(), media.begin(), media.end());
    const std::vector<Question> rest{
        {in2014, "VEREIN", "Mitgliedschaft in einem Verein", "F1.0", Level::Nominal,
         {{1, "ja"}, {2, "nein"}, {9, "keine Angabe"}}, {{9}},
         [](auto& p, auto& r) { return Answer(r.chance(0.01) ? 9.0 : r.chance(0.36 + 0.04 * p.education) ? 1.0 : 2.0); }},
        {inWaves, "EHRSTD", "Ehrenamtliche Arbeit, Stunden im Monat", "F4.1", Level::Metric,
         {{0, "keine"}, {99, "keine Angabe"}},
         {{}, true, 90, highest}, volunteerHours},
        {in2022, "PROBLEM", "Wichtigstes Problem im Land (Nennung)", "A80", Level::Nominal, {}, {}, greatestProblem},
        {inPretest, "VERSTAND", "Verständlichkeit der Fragen (Urteil des Interviewers)", "F1.0", Level::Ordinal,
         {{1, "gut"}, {2, "mit Rückfragen"}, {3, "schlecht"}, {8, "nicht zu beurteilen"}, {9, "keine Angabe"}},
         {{8, 9}},
         [](auto& p, auto& r) { return Answer(r.chance(0.04) ? 8.0 : onScale(3.0 - p.education, 1, 3, 1.4, 0.35, r)); }},
    };
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
}
// clang-format on
