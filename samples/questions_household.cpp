#include "Questions.h"

#include "Random.h"

#include <algorithm>
#include <cmath>

namespace {

Answer income(const Respondent& person, Random& random) {
    // Who earns much says so less often; some put themselves into a class instead.
    const double refusal = 0.09 + (person.income > 6500.0 ? 0.08 : 0.0);
    if (random.chance(refusal))
        return random.chance(0.7) ? 99999.0 : 99998.0;
    if (random.chance(0.06))
        return -1.0;
    return person.income;
}

Answer housingCosts(const Respondent& person, Random& random) {
    if (person.owner == 1 && random.chance(0.45))
        return {};
    if (random.chance(0.05))
        return 9999.0;
    const double share = person.owner == 1 ? 0.16 : 0.25 + 0.015 * person.townSize + 0.015 * person.elapsed();
    return std::round(person.income * share * std::max(0.4, 1.0 + 0.22 * random.normal()) * 2.0) / 2.0;
}

Answer wayToWork(const Respondent& person, Random& random) {
    if (!person.works())
        return {};
    if (person.wave == Wave::Wave2022 && person.education > 3 && random.chance(0.12))
        return 6.0;
    const double town = person.townSize > 3 ? 1.0 : 0.0;
    const double green = std::max(0.0, person.environment);
    const double car = 0.62 - 0.25 * town - 0.1 * green;
    return 1.0 + random.pick({std::max(0.1, car), 0.12 + 0.22 * town, 0.1 + 0.08 * green, 0.12, 0.03});
}

Answer minutesToWork(const Respondent& person, Random& random) {
    if (!person.works())
        return {};
    if (random.chance(0.03))
        return static_cast<double>(random.whole(997, 999));
    const double minutes = 22.0 + (person.townSize < 3 ? 7.0 : 0.0) + 13.0 * random.normal();
    return std::clamp(std::round(minutes / 5.0) * 5.0, 0.0, 120.0);
}

// clang-format off
std::vector<Question> homeQuestions() {
    return {
        {inWaves, "WOHNEIG", "Wohnverhältnis", "F1.0", Level::Nominal,
         {{1, "Eigentum"}, {2, "zur Miete"}, {3, "mietfrei"}, {9, "keine Angabe"}}, {{9}},
         [](auto& p, auto& r) {
             if (r.chance(0.007))
                 return Answer(9.0);
             return Answer(p.owner == 1 ? 1.0 : r.chance(0.05) ? 3.0 : 2.0);
         }},
        {inWaves, "MIETE", "Monatliche Wohnkosten in Kronen", "F7.1", Level::Metric, {{9999, "keine Angabe"}},
         {{}, true, 9990, highest}, housingCosts},
        {inWaves, "WOHNZ", "Zufriedenheit mit der Wohnung", "F2.0", Level::Ordinal,
         {{0, "ganz und gar unzufrieden"}, {10, "ganz und gar zufrieden"}, {98, "weiß nicht"}, {99, "keine Angabe"}},
         {{98, 99}},
         [](auto& p, auto& r) {
             if (r.chance(0.012))
                 return Answer(r.chance(0.5) ? 98.0 : 99.0);
             return Answer(onScale(p.contentment + 0.8 * p.owner, 0, 10, 7.2, 1.1, r));
         }},
        {inWaves, "VERKEHR", "Verkehrsmittel auf dem Weg zur Arbeit", "F1.0", Level::Nominal,
         {{1, "Auto"}, {2, "Bus und Bahn"}, {3, "Fahrrad"}, {4, "zu Fuß"}, {5, "Fähre"}, {6, "arbeite zu Hause"}},
         {}, wayToWork},
        {inWaves, "WEGZEIT", "Minuten bis zur Arbeit", "F3.0", Level::Metric,
         {{997, "verweigert"}, {998, "weiß nicht"}, {999, "keine Angabe"}},
         {{}, true, 997, 999}, minutesToWork},
        {in2022, "WAERMEP", "Heizung im Haus", "F1.0", Level::Nominal,
         {{1, "Öl"}, {2, "Gas"}, {3, "Strom"}, {4, "Wärmepumpe"}, {5, "Fernwärme"},
          {8, "weiß nicht"}, {9, "keine Angabe"}}, {{8, 9}},
         [](auto& p, auto& r) {
             if (r.chance(0.05))
                 return Answer(r.chance(0.8) ? 8.0 : 9.0);
             const double town = p.townSize > 3 ? 1.0 : 0.0;
             return Answer(1.0 + r.pick({0.24 - 0.15 * town, 0.22, 0.2, 0.12 + 0.1 * p.owner, 0.05 + 0.35 * town}));
         }},
        {in2022, "ENERGIE", "Sorge um die Energiekosten", "F1.0", Level::Ordinal,
         {{1, "keine Sorgen"}, {2, "einige Sorgen"}, {3, "große Sorgen"}, {4, "sehr große Sorgen"}, {9, "keine Angabe"}},
         {{9}},
         [](auto& p, auto& r) {
             return Answer(r.chance(0.01) ? 9.0 : onScale(-p.contentment, 1, 4, 2.7, 0.6, r));
         }},
    };
}
// clang-format on

} // namespace

// clang-format off
std::vector<Question> householdQuestions() {
    std::vector<Question> all{
        {inWaves, "HHGR", "Personen im Haushalt", "F2.0", Level::Metric, {}, {},
         [](auto& p, auto&) { return Answer(p.household * 1.0); }},
        {inWaves, "KINDER", "Kinder unter 14 Jahren im Haushalt", "F2.0", Level::Metric, {}, {},
         [](auto& p, auto&) { return Answer(p.children * 1.0); }},
        {inWaves, "EINK", "Haushaltsnettoeinkommen im Monat in Kronen", "F8.0", Level::Metric,
         {{-1, "nur Einkommensklasse genannt"}, {99998, "weiß nicht"}, {99999, "verweigert"}},
         {{-1}, true, 99998, 99999}, income},
    };
    const std::vector<Question> home = homeQuestions();
    all.insert(all.end(), home.begin(), home.end());
    return all;
}
// clang-format on
