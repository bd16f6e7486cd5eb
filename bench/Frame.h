#pragma once

#include <QString>
#include <functional>

/// The frame of every program here: default options, a temporary folder, the benchmarks that `prepare` registers, the
/// ratios. Makes the application object unless there is one.
/// @param prepare gets the folder
int runBenchmarks(int argc, char** argv, const std::function<void(const QString& folder)>& prepare);
