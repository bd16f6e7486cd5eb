#pragma once

#include "platform/dao/CompensatedSum.h"
#include "platform/dao/Error.h"
#include "platform/dao/Recordset.h"
#include "tables/missing.h"

#include <functional>
#include <optional>
#include <vector>

/// Statistics over the cases of a recordset.
///
/// A case counts when its value is not Null and no missing value; Count alone takes every row. The weight of
/// a case is 1 without a weight field. W is the sum of the weights of the cases that count, x a value, w its
/// weight, m the mean.
///
/// Errors of every operation: 13 for a value or weight that is no number, 94 for a weight that is Null, 11
/// for a division by zero, 5 for a root of a negative number, 6 for a result that no double holds. No result
/// is infinite or undefined.
namespace mdStats {

using dao::CompensatedSum;

/// The cases of one block, read once: all statistics come from here. 8 bytes a case, 16 with weights.
class Cases {
public:
    /// @param definition what is missing; lives as long as cases are added
    Cases(bool weighted, const MissingDefinition& definition) : weighted_(weighted), definition_(&definition) {}

    /// Room for so many cases.
    void reserve(int cases);
    /// Adds a row. What it holds that is no number is kept and raised by the statistics that need it.
    /// @param weight not read without weights
    void add(const dao::Value& value, const dao::Value& weight);
    bool anyRow() const { return rows_ > 0; }

    double count() const;               ///< sum of w over all rows
    double validN() const;              ///< W
    double sum() const;                 ///< Σ w·x
    double mean() const;                ///< Σ w·x / W; 0 for W <= 0
    double minimum() const;             ///< 0 without a case
    double maximum() const;             ///< 0 without a case
    double stdDev(double mean) const;   ///< sqrt(Σ w·(x - m)² / (W - 1))
    double skewness(double mean) const; ///< (S3 / W) / (S2 / W)^1.5 with plain sums S2, S3; 0 for W = 0
    double kurtosis(double mean) const; ///< (S4 / W) / (S2 / W)² with plain sums S2, S4; 0 for W = 0
    double median();                    ///< by the walk of Median(); 0 without a case
    double percentile25();              ///< by the walk of Percentile25()
    double percentile75();
    /// The value of most cases, the smallest of several; nothing without a case.
    std::optional<double> mode();

private:
    struct Case {
        double x, w;
    };
    struct Moments {
        double mean, weighted2, plain2, plain3, plain4;
    };

    bool weighted_;
    const MissingDefinition* definition_;
    std::vector<double> values_; ///< without weights
    std::vector<Case> cases_;    ///< with weights
    bool sorted_ = false;
    qint64 rows_ = 0;
    CompensatedSum allWeights_, weights_, products_;
    double minimum_ = 0, maximum_ = 0;
    mutable std::optional<Moments> moments_;
    std::optional<dao::Error> unreadable_;       ///< the first value that is no number
    std::optional<dao::Error> unweighable_;      ///< the first weight of a case that is none
    std::optional<dao::Error> unweighableInAll_; ///< the first weight of any row

    size_t size() const { return weighted_ ? cases_.size() : values_.size(); }
    Case at(size_t i) const { return weighted_ ? cases_[i] : Case{values_[i], 1.0}; }
    bool readWeight(const dao::Value& weight, double& w, std::optional<dao::Error>& failure) const;
    void requireValues() const;
    void requireWeights() const;
    const Moments& momentsAround(double mean) const;
    void sort();
    size_t reach(double target, double& cumulated) const;
    double percentile(double position);
};

/// Reads the rows of a recordset from its first. @param weightField empty for no weight
Cases collect(dao::Recordset& recordset, const QString& field, const QString& weightField,
              const MissingDefinition& definition);

// ---- One statistic of a recordset. All of them return 0 for a recordset without rows.

double Sum(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText);
double Mean(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText);
double StdDev(double mean, dao::Recordset& recordset, const QString& field, const QString& weightField,
              const QString& missingText);
/// The weights enter W only, not the sums of powers.
double Skewness(double mean, dao::Recordset& recordset, const QString& field, const QString& weightField,
                const QString& missingText);
/// As Skewness; 3 is not subtracted.
double Kurtosis(double mean, dao::Recordset& recordset, const QString& field, const QString& weightField,
                const QString& missingText);
double Minimum(dao::Recordset& recordset, const QString& field, const QString& missingText);
double Maximum(dao::Recordset& recordset, const QString& field, const QString& missingText);
double ValidN(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText);
double Count(dao::Recordset& recordset, const QString& field, const QString& weightField);
/// In the order of values, t = W / 2 rounded down: the case at which the sum of weights reaches t. With W / 2
/// whole the mean of its value and the next one's; else its value if the sum exceeds t, the next one's if it
/// equals t. At the end the last value stands for the next one.
double Median(dao::Recordset& recordset, const QString& field, const QString& weightField, const QString& missingText);
/// With p = (W + 1) / 4 and t = p rounded down: a is the value of the case at which the sum of weights
/// reaches t, b the next one's; a + (b - a)·(p - t).
double Percentile25(dao::Recordset& recordset, const QString& field, const QString& weightField,
                    const QString& missingText);
/// With p = (W + 1)·3 / 4.
double Percentile75(dao::Recordset& recordset, const QString& field, const QString& weightField,
                    const QString& missingText);

/// Runs a statement on the database that holds the stored query `stat`.
using Query = std::function<dao::RecordsetPtr(const QString& statement)>;
/// The most frequent value of `stat` by number of rows (with a weight: of rows that have one), the smallest
/// of several.
/// @param result stays as it is where there is none
/// @param several true: all values of that frequency as text, separated by "; "
void Mode(dao::Value& result, const QString& field, const QString& weightField, bool several,
          const QString& missingText, const Query& query);

/// A number with fixed decimals in the process's format. @param digits 0 to 15. @throws dao::Error 5 below 0
QString FormatStat(double value, int digits);

} // namespace mdStats
