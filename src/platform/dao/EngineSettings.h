#pragma once

#include <QString>
#include <functional>

namespace dao {

/// What DBEngine's setters keep for every connection of the process.
struct EngineSettings {
    bool definitionsInMemory = false;
    int lockWait = 2000;        ///< milliseconds
    size_t mostResultBytes = 0; ///< of one recordset in memory; more is error 3035
    std::function<bool()> progress;
    std::function<void(const QString& jet, const QString& sqlite)> trace;
};

EngineSettings& engineSettings();

} // namespace dao
