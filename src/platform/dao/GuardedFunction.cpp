#include "platform/dao/GuardedFunction.h"

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

void raiseFunctionError() {
    if (keptError) {
        const Error error = *keptError;
        keptError.reset();
        throw error;
    }
}

} // namespace dao
