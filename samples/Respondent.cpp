#include "Respondent.h"

#include "Random.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::uint32_t seed = 20140917;

// Who answers is not who lives there: the country has fewer people in the capital's survey district and more
// young ones than the sample. The weights put that right.
constexpr std::array<double, 5> populationByRegion{0.17, 0.12, 0.21, 0.22, 0.28};
constexpr std::array<int, 5> municipalitiesByRegion{5, 4, 5, 6, 4};
constexpr std::array<double, 4> populationByAge{0.21, 0.32, 0.28, 0.19};

int ageGroup(int age) {
    return age < 30 ? 0 : age < 50 ? 1 : age < 66 ? 2 : 3;
}

void drawHome(Respondent& person, Random& random) {
    person.region = 1 + random.pick({0.19, 0.15, 0.22, 0.22, 0.22});
    const int towns = municipalitiesByRegion[static_cast<std::size_t>(person.region - 1)];
    // The first municipality of a region is its largest.
    const int town = random.chance(0.4) ? 1 : random.whole(1, towns);
    person.municipality = person.region * 100 + town;
    person.townSize = person.region == 5 ? (town == 1 ? 5 : random.whole(3, 4))
                      : town == 1        ? random.whole(3, 4)
                                         : random.whole(1, 2);
}

void drawPerson(Respondent& person, Random& random) {
    person.sex = person.wave == Wave::Wave2022 && random.chance(0.006) ? 3 : random.chance(0.53) ? 2 : 1;
    const int group = random.pick({0.15, 0.29, 0.32, 0.24});
    constexpr std::array<int, 5> bounds{18, 30, 50, 66, 92};
    person.age = random.whole(bounds[static_cast<std::size_t>(group)], bounds[static_cast<std::size_t>(group + 1)] - 1);
    if (group == 3 && random.chance(0.4))
        person.age -= random.whole(0, std::min(15, person.age - 66));
    const bool young = person.age < 45;
    person.education =
        1 + (young ? random.pick({0.03, 0.17, 0.34, 0.22, 0.24}) : random.pick({0.05, 0.38, 0.31, 0.11, 0.15}));
    if (person.age < 21)
        person.education = std::min(person.education, 4);
}

void drawFamily(Respondent& person, Random& random) {
    const int age = person.age;
    if (age < 27)
        person.marital = random.chance(0.9) ? 1 : 2;
    else if (age < 66)
        person.marital = 1 + random.pick({0.27, 0.57, 0.14, 0.02});
    else
        person.marital = 1 + random.pick({0.06, 0.56, 0.11, 0.27});
    const bool couple = person.marital == 2 || (person.marital == 1 && random.chance(0.35));
    person.adults = couple ? 2 : 1;
    if (age < 24 && random.chance(0.55))
        person.adults = random.whole(2, 4);
    else if (age > 44 && age < 62 && random.chance(0.25))
        person.adults += 1;
    person.children = age > 24 && age < 50 && couple    ? random.pick({0.36, 0.27, 0.28, 0.09})
                      : age < 50 && random.chance(0.06) ? 1
                                                        : 0;
    person.household = person.adults + person.children;
}

void drawWork(Respondent& person, Random& random) {
    const int age = person.age;
    if (age < 24)
        person.employment =
            std::array{1, 2, 3, 4, 7}[static_cast<std::size_t>(random.pick({0.3, 0.1, 0.08, 0.5, 0.02}))];
    else if (age < 63)
        person.employment = std::array{1, 2, 3, 5, 6, 7}[static_cast<std::size_t>(
            person.sex == 2 ? random.pick({0.44, 0.31, 0.06, 0.02, 0.14, 0.03})
                            : random.pick({0.78, 0.06, 0.08, 0.04, 0.01, 0.03}))];
    else
        person.employment = random.chance(age < 66 ? 0.45 : 0.95) ? 5 : random.chance(0.5) ? 1 : 2;
    double income = 1350.0 + 420.0 * person.education + (person.works() ? 900.0 : 0.0) + 520.0 * (person.adults - 1);
    income *= 1.0 + 0.07 * person.elapsed() + (person.region == 5 ? 0.08 : 0.0);
    income *= std::max(0.35, 1.0 + 0.32 * random.normal());
    person.income = std::round(income / 10.0) * 10.0;
    person.owner =
        random.chance(std::clamp(
            0.08 + 0.011 * (age - 20) + (person.marital == 2 ? 0.18 : 0.0) - 0.07 * (person.townSize - 1), 0.03, 0.85))
            ? 1
            : 0;
}

void drawAttitudes(Respondent& person, Random& random) {
    const double prosperity = (person.income / (600.0 * std::sqrt(person.household)) - 4.5) / 2.0;
    const double schooling = person.education - 3.0;
    person.health = 0.55 - 0.024 * (person.age - 45) + 0.12 * schooling + 0.75 * random.normal();
    person.contentment = 0.3 * prosperity + 0.35 * person.health + (person.employment == 3 ? -0.9 : 0.0) +
                         (person.marital == 2 ? 0.15 : 0.0) + 0.75 * random.normal();
    person.trust = 0.2 * schooling + 0.3 * person.contentment - 0.22 * person.elapsed() + 0.8 * random.normal();
    person.environment = 0.18 * schooling + 0.008 * (50 - person.age) + 0.3 * person.elapsed() +
                         (person.townSize > 3 ? 0.15 : 0.0) + 0.85 * random.normal();
    person.left = 0.35 * person.environment + (person.owner == 1 ? -0.2 : 0.1) + 0.85 * random.normal();
}

void scaleToMeanOne(std::vector<double>& weights) {
    double sum = 0.0;
    for (const double weight : weights)
        sum += weight;
    const double mean = sum / static_cast<double>(weights.size());
    // Four decimals, as weights are delivered.
    for (double& weight : weights)
        weight = std::round(weight / mean * 10000.0) / 10000.0;
}

} // namespace

std::vector<Respondent> drawSample(Wave wave, int cases) {
    Random random(seed + static_cast<std::uint32_t>(wave), "sample");
    std::vector<Respondent> sample;
    sample.reserve(static_cast<std::size_t>(cases));
    for (int number = 1; number <= cases; ++number) {
        Respondent person;
        person.wave = wave;
        person.number = number;
        drawHome(person, random);
        drawPerson(person, random);
        drawFamily(person, random);
        drawWork(person, random);
        drawAttitudes(person, random);
        sample.push_back(person);
    }
    return sample;
}

Weights weightsOf(const std::vector<Respondent>& sample) {
    std::array<double, 5> byRegion{};
    std::array<double, 4> byAge{};
    for (const Respondent& person : sample) {
        byRegion[static_cast<std::size_t>(person.region - 1)] += 1.0;
        byAge[static_cast<std::size_t>(ageGroup(person.age))] += 1.0;
    }
    const double cases = static_cast<double>(sample.size());
    Weights weights;
    for (const Respondent& person : sample) {
        const auto region = static_cast<std::size_t>(person.region - 1);
        const auto group = static_cast<std::size_t>(ageGroup(person.age));
        const double weight =
            populationByRegion[region] / (byRegion[region] / cases) * populationByAge[group] / (byAge[group] / cases);
        weights.representative.push_back(weight);
        // One adult of a household is asked, so a large one is reached less often for each of its members.
        weights.household.push_back(weight / person.adults);
    }
    scaleToMeanOne(weights.representative);
    scaleToMeanOne(weights.household);
    return weights;
}
