#pragma once

#include "platform/dao/Error.h"

#include <new>
#include <sqlite3.h>

namespace dao {

/// Flags with which every function and aggregate of ours is registered. Only our own statements may call them: a
/// stranger's file has no use for them in its views and triggers.
inline constexpr int functionFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_DIRECTONLY;

/// Keeps the error until raiseFunctionError() and ends the statement.
void keepFunctionError(sqlite3_context* context, const Error& error);

/// Counts the characters that functions have gone through.
inline thread_local long long functionWork = 0;

/// Lets whoever waits for the statement end it. To be called when functionWork has become some milliseconds.
void lookUpFromWork(sqlite3_context* context);

/// Runs the step of a function; no exception may pass through SQLite.
template<typename Step>
void guarded(sqlite3_context* context, Step step) {
    constexpr long long someMilliseconds = 500'000;
    try {
        step();
        if (functionWork >= someMilliseconds) {
            lookUpFromWork(context);
        }
    } catch (const Error& error) {
        keepFunctionError(context, error);
    } catch (const std::bad_alloc&) {
        sqlite3_result_error_nomem(context);
    }
}

} // namespace dao
