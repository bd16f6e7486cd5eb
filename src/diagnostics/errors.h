#pragma once

#include "app/globals.h"
#include "diagnostics/CErrHandler.h"
#include "platform/dao/Error.h"

#include <QString>
#include <exception>

/// The two ways in which a failure is dealt with; there is no third.

/// Puts a label on the procedure stack for as long as the scope lives.
class ProcedureScope {
public:
    explicit ProcedureScope(const QString& label) { gErrHandler.Push(label); }
    ~ProcedureScope() { gErrHandler.Pop(); }
    ProcedureScope(const ProcedureScope&) = delete;
    ProcedureScope& operator=(const ProcedureScope&) = delete;
};

/// Description, line break and source of every entry of the engine's error list, nothing between entries.
QString lastDbErrorText();

/// Hands an error to gErrHandler: HandleDBError when the engine's list has entries, HandleError otherwise. What the
/// gesture under way has reported already is only written (see GestureScope).
void reportError(const dao::Error& error);
/// Hands an error to HandleError whatever the engine's list holds; opening and closing of a catalogue report so.
void reportProgramError(const dao::Error& error);

/// Any failure as the handlers know it. What comes from the standard library is a run-time error of the language: 7 out
/// of memory, 75 no way to a file, 51 whatever else; the engine's list, which then belongs to an earlier operation, is
/// emptied.
dao::Error asError(const std::exception& failure);

/// Runs a step; a failure is reported and the caller goes on at its next statement.
/// @return false after a failure
template<class Step>
bool attempt(Step&& step, void (*report)(const dao::Error&) = reportError) {
    try {
        step();
        return true;
    } catch (const std::exception& failure) {
        report(asError(failure));
        return false;
    }
}

enum class Trap { Done, Ignored, Aborted };

/// Shows the standard error box (number, line break, description; Abort, Retry, Ignore). For a file that the
/// gesture under way has reported, the answer given then holds: Ignore where it was ignored, Abort otherwise.
/// @return true to retry; otherwise see `outcome`
bool standardErrorBox(const dao::Error& error, Trap& outcome);

/// Runs a step under the standard error box: Retry runs it again, Ignore goes on, Abort sets the default pointer and
/// tells the caller to leave.
template<class Step>
Trap trapped(Step&& step) {
    for (;;) {
        try {
            step();
            return Trap::Done;
        } catch (const std::exception& failure) {
            Trap outcome = Trap::Aborted;
            if (!standardErrorBox(asError(failure), outcome))
                return outcome;
        }
    }
}

/// Procedure, number and description of an error, a line each.
QString procedureErrorText(const dao::Error& error, const QString& procedure);
/// The box of the language glue procedures ("Fehler bei: " ...).
void ReportProcedureError(const dao::Error& error, const QString& procedure);
