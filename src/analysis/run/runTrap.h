#pragma once

#include "platform/dao/Error.h"

#include <QtGlobal>
#include <functional>

/// Time and pauses of a run, from outside so that a test need not wait.
struct RunClock {
    std::function<qint64()> milliseconds;
    std::function<void()> pause;

    /// The machine's clock; a pause is one event turn and a short sleep.
    static RunClock system();
};

enum class StepEnd { Done, Ended, Cancelled };

/// Runs one engine statement of a run under the run's error trap. A missing disc asks, and OK runs the same
/// statement again; a name that the engine doesn't see yet (3078) is tried again for up to 15 seconds; every
/// other failure goes to the general handler. A statement that the user cancelled ends without a word.
/// @param dataOnCD option DataOnCD: decides what is said of a file that can't be reached
/// @return Ended after a failure whose message has been shown
StepEnd runEngineStep(const std::function<void()>& step, const RunClock& clock, const std::function<bool()>& cancelled,
                      bool dataOnCD);

/// True for the failures that the run's trap answers itself, before any report.
bool isRunTrapCase(const dao::Error& error, bool dataOnCD);
