#pragma once

#include <cstdint>
#include <initializer_list>
#include <random>
#include <string_view>

/// Random numbers that are the same on every system: the standard fixes the generator, but not what its
/// distributions make of it, so these are our own.
class Random {
public:
    Random(std::uint32_t seed, std::string_view name) {
        // FNV-1a: each name gets a stream of its own, so that a new question leaves the answers to the others
        // alone.
        std::uint32_t hash = 2166136261U;
        for (const char c : name)
            hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
        engine_.seed(seed ^ hash);
    }

    /// Evenly from 0 up to, but not including, 1.
    double uniform() { return static_cast<double>(engine_()) / 4294967296.0; }

    /// A whole number from `low` to `high`, both included.
    int whole(int low, int high) { return low + static_cast<int>(uniform() * (high - low + 1)); }

    bool chance(double probability) { return uniform() < probability; }

    /// About normal, mean 0 and standard deviation 1 (the sum of twelve even numbers; no mathematics library
    /// whose last digit differs).
    double normal() {
        double sum = -6.0;
        for (int i = 0; i < 12; ++i)
            sum += uniform();
        return sum;
    }

    /// Position of one weight, chosen in proportion to it.
    int pick(std::initializer_list<double> weights) {
        double total = 0.0;
        for (const double weight : weights)
            total += weight;
        double rest = uniform() * total;
        int position = 0;
        for (const double weight : weights) {
            rest -= weight;
            if (rest < 0.0)
                return position;
            ++position;
        }
        return position - 1;
    }

private:
    std::mt19937 engine_;
};
