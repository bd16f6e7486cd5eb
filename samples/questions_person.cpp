#include "Questions.h"

#include "Random.h"

#include <QDate>
#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// SPSS counts seconds from the first day of the Gregorian calendar.
double spssDate(const QDate& date) {
    return static_cast<double>(QDate(1582, 10, 14).daysTo(date)) * 86400.0;
}

Answer interviewDate(const Respondent& person, Random& random) {
    constexpr std::array<std::array<int, 2>, 4> starts{{{2013, 10}, {2014, 3}, {2018, 4}, {2022, 3}}};
    const auto start = starts[static_cast<std::size_t>(person.wave)];
    QDate date = QDate(start[0], start[1], 3).addDays(random.whole(0, person.wave == Wave::Pretest2013 ? 20 : 87));
    if (date.dayOfWeek() == 7)
        date = date.addDays(1);
    return spssDate(date);
}

int yearOf(Wave wave) {
    return std::array{2013, 2014, 2018, 2022}[static_cast<std::size_t>(wave)];
}

const std::vector<Code> municipalities{{101, "Nordhavn"},  {102, "Skerring"},   {103, "Ostvik"},     {104, "Lammsund"},
                                       {105, "Grauholm"},  {201, "Hochtal"},    {202, "Birkfell"},   {203, "Steinmark"},
                                       {204, "Oberlauen"}, {301, "Fjordingen"}, {302, "Talvik"},     {303, "Seebrunn"},
                                       {304, "Wiesenau"},  {305, "Lachsbrück"}, {401, "Süderau"},    {402, "Kornfelde"},
                                       {403, "Mühlgard"},  {404, "Rapsdorf"},   {405, "Weidenlund"}, {406, "Altmoor"},
                                       {501, "Sollund"},   {502, "Westhafen"},  {503, "Domhof"},     {504, "Neustadt"}};

Answer occupation(const Respondent& person, Random& random) {
    static const std::array<std::array<const char*, 5>, 5> names{
        {{"Reinigungskraft", "Lagerhelfer", "Küchenhilfe", "Erntehelfer", "Produktionshelfer"},
         {"Maurer", "Kraftfahrerin", "Fischer", "Verkäuferin", "Altenpfleger"},
         {"Krankenschwester", "Industriekauffrau", "Elektriker", "Bürokauffrau", "Polizist"},
         {"Techniker", "Bankkaufmann", "Schiffsführer", "Steuerfachwirtin", "Erzieherin"},
         {"Lehrerin", "Ärztin", "Ingenieur", "Juristin", "Softwareentwickler"}}};
    if (!person.works())
        return std::string();
    if (random.chance(0.04))
        return std::string("keine Angabe");
    const int step = std::clamp(person.education + random.pick({0.15, 0.7, 0.15}) - 1, 1, 5);
    return std::string(names[static_cast<std::size_t>(step - 1)][static_cast<std::size_t>(random.whole(0, 4))]);
}

Answer workingHours(const Respondent& person, Random& random) {
    if (!person.works())
        return {};
    if (random.chance(0.04))
        return random.chance(0.7) ? -2.0 : -1.0;
    const double hours = person.employment == 1 ? 39.5 + 4.5 * random.normal() : 21.0 + 6.0 * random.normal();
    return std::clamp(std::round(hours * 2.0) / 2.0, 4.0, 80.0);
}

// clang-format off
std::vector<Question> interviewQuestions() {
    return {
        {inAll, "FALLNR", "Fallnummer", "F6.0", Level::Metric, {}, {},
         [](auto& p, auto&) { return Answer(p.number * 1.0); }},
        {inAll, "INTDAT", "Datum des Interviews", "DATE11", Level::Metric, {}, {}, interviewDate},
        {in2018, "FBTEIL", "Fragebogenfassung", "F1.0", Level::Nominal, {{1, "Fassung A"}, {2, "Fassung B"}},
         {},
         [](auto& p, auto&) { return Answer(p.number % 2 == 1 ? 1.0 : 2.0); }},
        {inPretest, "DAUER", "Dauer des Interviews in Minuten", "F5.1", Level::Metric, {}, {{999.9}},
         [](auto& p, auto& r) {
             const double minutes = 38.5 + 0.12 * (p.age - 45) + 7.0 * r.normal();
             return Answer(r.chance(0.05) ? 999.9 : std::max(18.0, std::round(minutes * 10.0) / 10.0));
         }},
        {inAll, "REGION", "Landesteil", "F1.0", Level::Nominal,
         {{1, "Nordküste"}, {2, "Hochland"}, {3, "Fjordtal"}, {4, "Südebene"}, {5, "Hauptstadtbezirk Sollund"}},
         {},
         [](auto& p, auto&) { return Answer(p.region * 1.0); }},
        {inWaves, "GEMEINDE", "Wohngemeinde", "F3.0", Level::Nominal, municipalities, {},
         [](auto& p, auto&) { return Answer(p.municipality * 1.0); }},
        {inWaves, "ORTGR", "Größe des Wohnorts", "F1.0", Level::Ordinal,
         {{1, "unter 2.000 Einwohner"}, {2, "2.000 bis unter 5.000"}, {3, "5.000 bis unter 20.000"},
          {4, "20.000 bis unter 100.000"}, {5, "100.000 und mehr"}}, {},
         [](auto& p, auto&) { return Answer(p.townSize * 1.0); }},
    };
}
// clang-format on

} // namespace

// clang-format off
std::vector<Question> personQuestions() {
    std::vector<Question> all = interviewQuestions();
    const std::vector<Question> person{
        {inAll, "GESCHL", "Geschlecht", "F1.0", Level::Nominal,
         {{1, "männlich"}, {2, "weiblich"}, {3, "divers"}, {9, "keine Angabe"}}, {{9}},
         [](auto& p, auto& r) { return Answer(r.chance(0.004) ? 9.0 : p.sex * 1.0); }},
        {inAll, "ALTERJ", "Alter in Jahren", "F3.0", Level::Metric, {{999, "keine Angabe"}}, {{999}},
         [](auto& p, auto& r) { return Answer(r.chance(0.008) ? 999.0 : p.age * 1.0); }},
        {inWaves, "GEBJAHR", "Geburtsjahr", "F4.0", Level::Metric, {{9999, "keine Angabe"}}, {{9999}},
         [](auto& p, auto& r) { return Answer(r.chance(0.02) ? 9999.0 : yearOf(p.wave) * 1.0 - p.age); }},
        {inWaves, "FAMST", "Familienstand", "F1.0", Level::Nominal,
         {{1, "ledig"}, {2, "verheiratet"}, {3, "geschieden"}, {4, "verwitwet"}, {9, "keine Angabe"}}, {{9}},
         [](auto& p, auto& r) { return Answer(r.chance(0.006) ? 9.0 : p.marital * 1.0); }},
        {inAll, "BILD", "Höchster Bildungsabschluss", "F1.0", Level::Ordinal,
         {{1, "kein Abschluss"}, {2, "Grundschule"}, {3, "Mittelschule"}, {4, "Oberschule"}, {5, "Hochschule"},
          {8, "anderer Abschluss"}, {9, "keine Angabe"}}, {{8, 9}},
         [](auto& p, auto& r) { return Answer(r.chance(0.015) ? (r.chance(0.6) ? 8.0 : 9.0) : p.education * 1.0); }},
        {inWaves, "ERWERB", "Erwerbsstatus", "F1.0", Level::Nominal,
         {{1, "Vollzeit erwerbstätig"}, {2, "Teilzeit erwerbstätig"}, {3, "arbeitslos"}, {4, "in Ausbildung"},
          {5, "im Ruhestand"}, {6, "Hausfrau, Hausmann"}, {7, "sonstiges"}}, {},
         [](auto& p, auto&) { return Answer(p.employment * 1.0); }},
        {inWaves, "STUNDEN", "Arbeitsstunden in der Woche", "F5.1", Level::Metric,
         {{-2, "weiß nicht"}, {-1, "keine Angabe"}}, {{}, true, lowest, -1}, workingHours},
        {inWaves, "BERUF", "Berufliche Tätigkeit (Nennung)", "A40", Level::Nominal, {}, {}, occupation},
    };
    all.insert(all.end(), person.begin(), person.end());
    return all;
}
// clang-format on
