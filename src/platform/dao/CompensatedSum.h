#pragma once

namespace dao {

/// A sum that carries along what each addition rounds off, so that a million terms lose no more than one (A. Neumaier,
/// ZAMM 54, 1974, 39-51; what is lost taken by D. Knuth's two-sum, which needs no branch). All its bytes 0 are a sum of
/// nothing. Beyond the range of numbers it is infinite.
class CompensatedSum {
public:
    void add(double term) {
        const double sum = sum_ + term;
        const double taken = sum - sum_;
        lost_ += (sum_ - (sum - taken)) + (term - taken);
        sum_ = sum;
    }
    double value() const { return sum_ - sum_ == 0 ? sum_ + lost_ : sum_; }

private:
    double sum_ = 0, lost_ = 0;
};

} // namespace dao
