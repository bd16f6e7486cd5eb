#include "tables/mdStats.h"

#include "platform/dao/Error.h"
#include "platform/system/NumberFormat.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace mdStats {

namespace {

constexpr int invalidCall = 5;
constexpr int overflow = 6;
constexpr int divisionByZero = 11;

double finite(double number) {
    if (!std::isfinite(number))
        dao::raiseRuntimeError(overflow);
    return number;
}

double quotient(double numerator, double denominator) {
    if (denominator == 0)
        dao::raiseRuntimeError(divisionByZero);
    return finite(numerator / denominator);
}

/// A power with a fractional exponent, which is undefined for a negative base.
double power(double base, double exponent) {
    if (base < 0)
        dao::raiseRuntimeError(invalidCall);
    return finite(std::pow(base, exponent));
}

bool isEmpty(const dao::Recordset& recordset) {
    return recordset.Bof() && recordset.Eof();
}

/// One statistic of a recordset.
template<class Statistic>
double of(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText,
          Statistic&& statistic) {
    if (isEmpty(recordset))
        return 0;
    const MissingDefinition definition(missingText);
    Cases cases = collect(recordset, field, weightField, definition);
    return statistic(cases);
}

} // namespace

// ---- reading

bool Cases::readWeight(const dao::Value& weight, double& w, std::optional<dao::Error>& failure) const {
    w = 1;
    if (!weighted_)
        return true;
    try {
        w = weight.toDouble();
        return true;
    } catch (const dao::Error& error) {
        if (!failure)
            failure = error;
        return false;
    }
}

void Cases::reserve(int cases) {
    if (weighted_)
        cases_.reserve(static_cast<size_t>(cases));
    else
        values_.reserve(static_cast<size_t>(cases));
}

void Cases::add(const dao::Value& value, const dao::Value& weight) {
    ++rows_;
    double w = 0;
    const bool hasWeight = readWeight(weight, w, unweighableInAll_);
    if (weighted_ && hasWeight)
        allWeights_.add(w);
    if (value.isNull())
        return;
    double x = 0;
    try {
        x = value.toDouble();
    } catch (const dao::Error& error) {
        if (!unreadable_)
            unreadable_ = error;
        return;
    }
    if (definition_->contains(x))
        return;
    if (!hasWeight && !unweighable_)
        readWeight(weight, w, unweighable_);
    const bool first = size() == 0;
    minimum_ = first ? x : std::min(minimum_, x);
    maximum_ = first ? x : std::max(maximum_, x);
    products_.add(w * x);
    if (weighted_) {
        weights_.add(w);
        cases_.push_back({x, w});
    } else {
        values_.push_back(x);
    }
}

Cases collect(dao::Recordset& recordset, const QString& field, const QString& weightField,
              const MissingDefinition& definition) {
    const bool weighted = !weightField.isEmpty();
    const int valueColumn = recordset.indexOf(field);
    const int weightColumn = weighted ? recordset.indexOf(weightField) : -1;
    Cases cases(weighted, definition);
    if (isEmpty(recordset))
        return cases;
    const dao::Value none;
    cases.reserve(recordset.RecordCount());
    for (recordset.MoveFirst(); !recordset.Eof(); recordset.MoveNext())
        cases.add(recordset.value(valueColumn), weighted ? recordset.value(weightColumn) : none);
    return cases;
}

void Cases::requireValues() const {
    if (unreadable_)
        throw *unreadable_;
}

void Cases::requireWeights() const {
    requireValues();
    if (unweighable_)
        throw *unweighable_;
}

// ---- sums and moments

double Cases::count() const {
    if (!weighted_)
        return static_cast<double>(rows_);
    if (unweighableInAll_)
        throw *unweighableInAll_;
    return finite(allWeights_.value());
}

double Cases::validN() const {
    requireWeights();
    return weighted_ ? finite(weights_.value()) : static_cast<double>(values_.size());
}

double Cases::sum() const {
    requireWeights();
    return finite(products_.value());
}

/// The mean of equal values is that value: a quotient that misses it by a rounding error would leave deviations, from
/// which skewness and kurtosis would compute a shape.
double Cases::mean() const {
    const double n = validN();
    if (n <= 0)
        return 0;
    return minimum_ == maximum_ ? minimum() : quotient(sum(), n);
}

double Cases::minimum() const {
    requireValues();
    return finite(minimum_);
}

double Cases::maximum() const {
    requireValues();
    return finite(maximum_);
}

/// All sums of powers in one pass, kept for the statistics that follow.
const Cases::Moments& Cases::momentsAround(double mean) const {
    requireWeights();
    if (moments_ && moments_->mean == mean)
        return *moments_;
    CompensatedSum weighted2, plain2, plain3, plain4;
    const auto take = [&](double x) {
        const double d = x - mean;
        plain2.add(d * d);
        plain3.add(d * d * d);
        plain4.add(d * d * d * d);
        return d;
    };
    for (const Case& one : cases_) {
        const double d = take(one.x);
        weighted2.add(one.w * d * d);
    }
    for (const double x : values_)
        take(x);
    moments_ =
        Moments{mean, weighted_ ? weighted2.value() : plain2.value(), plain2.value(), plain3.value(), plain4.value()};
    return *moments_;
}

double Cases::stdDev(double mean) const {
    const double variance = quotient(momentsAround(mean).weighted2, validN() - 1);
    if (variance < 0)
        dao::raiseRuntimeError(invalidCall);
    return std::sqrt(variance);
}

double Cases::skewness(double mean) const {
    const double n = validN();
    if (n == 0)
        return 0;
    const Moments& m = momentsAround(mean);
    const double denominator = power(finite(m.plain2 / n), 1.5);
    return denominator == 0 ? 0 : finite(finite(m.plain3 / n) / denominator);
}

double Cases::kurtosis(double mean) const {
    const double n = validN();
    if (n == 0)
        return 0;
    const Moments& m = momentsAround(mean);
    const double square = finite(m.plain2 / n);
    const double denominator = finite(square * square);
    return denominator == 0 ? 0 : finite(finite(m.plain4 / n) / denominator);
}

// ---- walks in the order of values

/// Equal values stay in the order of the rows: with weights it decides at which of them a walk ends.
void Cases::sort() {
    if (sorted_)
        return;
    sorted_ = true;
    std::sort(values_.begin(), values_.end());
    std::stable_sort(cases_.begin(), cases_.end(), [](const Case& a, const Case& b) { return a.x < b.x; });
}

/// The case at which the sum of weights reaches a target, at least the first; the last where none does.
size_t Cases::reach(double target, double& cumulated) const {
    CompensatedSum sum;
    size_t i = 0;
    for (;; ++i) {
        sum.add(at(i).w);
        cumulated = sum.value();
        if (cumulated >= target || i + 1 == size())
            return i;
    }
}

double Cases::median() {
    const double half = validN() / 2;
    if (size() == 0)
        return 0;
    sort();
    const double target = std::floor(half);
    double cumulated = 0;
    const size_t here = reach(target, cumulated);
    const size_t next = std::min(here + 1, size() - 1);
    if (half == target)
        return finite(at(here).x / 2 + at(next).x / 2);
    return finite(at(cumulated == target ? next : here).x);
}

double Cases::percentile(double position) {
    if (size() == 0)
        return 0;
    sort();
    const double target = std::floor(position);
    double cumulated = 0;
    const size_t here = reach(target, cumulated);
    const double a = at(here).x;
    const double b = at(std::min(here + 1, size() - 1)).x;
    return finite(a + (b - a) * (position - target));
}

double Cases::percentile25() {
    return percentile((validN() + 1) / 4);
}

double Cases::percentile75() {
    return percentile((validN() + 1) * 3 / 4);
}

std::optional<double> Cases::mode() {
    requireWeights();
    if (size() == 0)
        return std::nullopt;
    sort();
    size_t best = 0, most = 0;
    for (size_t start = 0; start < size();) {
        size_t end = start + 1;
        while (end < size() && at(end).x == at(start).x)
            ++end;
        if (end - start > most) {
            most = end - start;
            best = start;
        }
        start = end;
    }
    return finite(at(best).x);
}

// ---- one statistic of a recordset

double Sum(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText) {
    return of(recordset, field, weightField, missingText, [](Cases& cases) { return cases.sum(); });
}

double Mean(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText) {
    return of(recordset, field, weightField, missingText, [](Cases& cases) { return cases.mean(); });
}

double StdDev(double mean, dao::Recordset& recordset, const QString& field, const QString& weightField,
              const QString& missingText) {
    return of(recordset, field, weightField, missingText, [mean](Cases& cases) { return cases.stdDev(mean); });
}

double Skewness(double mean, dao::Recordset& recordset, const QString& field, const QString& weightField,
                const QString& missingText) {
    return of(recordset, field, weightField, missingText, [mean](Cases& cases) { return cases.skewness(mean); });
}

double Kurtosis(double mean, dao::Recordset& recordset, const QString& field, const QString& weightField,
                const QString& missingText) {
    return of(recordset, field, weightField, missingText, [mean](Cases& cases) { return cases.kurtosis(mean); });
}

double Minimum(dao::Recordset& recordset, const QString& field, const QString& missingText) {
    return of(recordset, field, {}, missingText, [](Cases& cases) { return cases.minimum(); });
}

double Maximum(dao::Recordset& recordset, const QString& field, const QString& missingText) {
    return of(recordset, field, {}, missingText, [](Cases& cases) { return cases.maximum(); });
}

double ValidN(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText) {
    return of(recordset, field, weightField, missingText, [](Cases& cases) { return cases.validN(); });
}

double Count(dao::Recordset& recordset, const QString& field, const QString& weightField) {
    return of(recordset, field, weightField, {}, [](Cases& cases) { return cases.count(); });
}

double Median(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText) {
    return of(recordset, field, weightField, missingText, [](Cases& cases) { return cases.median(); });
}

double Percentile25(dao::Recordset& recordset, const QString& field, const QString& weightField,
                    const QString& missingText) {
    return of(recordset, field, weightField, missingText, [](Cases& cases) { return cases.percentile25(); });
}

double Percentile75(dao::Recordset& recordset, const QString& field, const QString& weightField,
                    const QString& missingText) {
    return of(recordset, field, weightField, missingText, [](Cases& cases) { return cases.percentile75(); });
}

void Mode(dao::Value& result, const QString& field, const QString& weightField, bool several,
          const QString& missingText, const Query& query) {
    const QString counted = weightField.isEmpty() ? field : weightField;
    const dao::RecordsetPtr values =
        query(u"SELECT COUNT("_s + counted + u") AS COUNT, "_s + field + u" FROM stat GROUP BY "_s + field +
              u" ORDER BY COUNT("_s + counted + u") DESC, "_s + field + u" ASC;"_s);
    if (isEmpty(*values))
        return;
    const MissingDefinition definition(missingText);
    std::optional<double> most;
    for (values->MoveFirst(); !values->Eof(); values->MoveNext()) {
        const dao::Value value = values->value(1);
        if (value.isNull() || definition.contains(value.toDouble()))
            continue;
        const double count = values->value(0).toDouble();
        if (most && (!several || count != *most))
            return;
        result = most ? dao::Value(result.toText() + u"; "_s + value.toText()) : value;
        most = count;
    }
}

QString FormatStat(double value, int digits) {
    constexpr int mostDigits = 15;
    if (digits < 0)
        dao::raiseRuntimeError(invalidCall);
    return NumberFormat::fixed(finite(value), std::min(digits, mostDigits));
}

} // namespace mdStats
