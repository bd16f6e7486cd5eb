#pragma once

#include "catalogue/SurveyFile.h"

#include <bitset>
#include <memory>
#include <vector>

/// Finds numbers for the lettered missing values .a to .z: -1 to -26, lower by a thousand until no value of
/// the variable lies in their range.
class TaggedCodes {
public:
    explicit TaggedCodes(const SurveyFile& file);

    /// To be given every number, and every letter, that occurs.
    void sawNumber(int variable, double value) {
        if (value < 0)
            occupy(variable, value);
    }
    /// @param letter 'a' to 'z'
    void sawLetter(int variable, char letter) {
        used_[static_cast<size_t>(variable)].set(static_cast<size_t>(letter - 'a'));
    }

    bool used(int variable) const { return used_[static_cast<size_t>(variable)].any(); }
    /// The code of a letter as things stand.
    double code(int variable, char letter) const {
        return -1.0 - (letter - 'a') - 1000.0 * shifts_[static_cast<size_t>(variable)];
    }
    /// The range of all letters, for the definition of missing values.
    MissingRange range(int variable) const { return {code(variable, 'z'), code(variable, 'a')}; }
    /// The codes of the letters that occur, from the lowest.
    std::vector<MissingRange> singleCodes(int variable) const;
    /// Moves the codes that meet a value seen since. True if some moved, so that cases written by now must be
    /// written again.
    /// @throws ImportError if there is no room
    bool settle();

private:
    static constexpr int maxShift = 10'000;
    std::vector<int> shifts_;
    std::vector<std::bitset<26>> used_; ///< letters that occur or have a label
    std::vector<std::unique_ptr<std::bitset<maxShift>>> occupied_;
    std::vector<QString> names_;

    void occupy(int variable, double value);
};
