#include "platform/dao/GuardedFunction.h"

#include "platform/dao/Connection.h"
#include "platform/dao/Functions.h"

#include <optional>

namespace dao {

namespace {

thread_local std::optional<Error> keptError;

}

void keepFunctionError(sqlite3_context* context, const Error& error) {
    keptError = error;
    sqlite3_result_error(context, error.what(), -1);
}

void lookUpFromWork(sqlite3_context* context) {
    functionWork = 0;
    if (Connection::endsLongFunction(sqlite3_context_db_handle(context))) {
        sqlite3_result_null(context);
        sqlite3_result_error_code(context, SQLITE_INTERRUPT);
    }
}

void raiseFunctionError() {
    if (keptError) {
        const Error error = *keptError;
        keptError.reset();
        throw error;
    }
}

} // namespace dao
