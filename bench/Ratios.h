#pragma once

#include <QString>
#include <functional>
#include <vector>

/// Measured pairs: what the program takes over what the bare libraries take for the same work, in turn, in one process.
/// Times of two runs of a program on a shared machine say little; the ratio within a run says what the program adds.
class Ratios {
public:
    /// Runs both in turn `rounds` times after one uncounted round and keeps the median of each and of the ratio of each
    /// pair.
    /// @param ours seconds that our way took @param bare seconds that the bare way took
    static void measure(const QString& name, int rounds, double limit, const std::function<double()>& ours,
                        const std::function<double()>& bare);
    /// A figure that is no pair of times, such as memory.
    static void note(const QString& name, double ratio, double limit);

    /// Prints all rows and appends them to "ratios.csv" beside the programs.
    static void report();
};

/// Seconds that an action takes.
double seconds(const std::function<void()>& action);
