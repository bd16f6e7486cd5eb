#include "platform/dao/Aggregates.h"

#include "platform/dao/CompensatedSum.h"
#include "platform/dao/GuardedFunction.h"
#include "platform/dao/SqliteValue.h"

#include <cmath>

namespace dao {

namespace {

constexpr int overflow = 6;

/// What an aggregate remembers between the rows of a group, all zero before the first; null when there is no memory.
template<typename Memory>
Memory* memoryOf(sqlite3_context* context) {
    auto* memory = static_cast<Memory*>(sqlite3_aggregate_context(context, sizeof(Memory)));
    if (memory == nullptr) {
        sqlite3_result_error_nomem(context);
    }
    return memory;
}

/// A number column takes any text: SQLite would add the digits that it begins with.
void refuseText(sqlite3_context* context, sqlite3_value* value) {
    guarded(context, [&] {
        raiseEngineError(3464, sqlite3_value_type(value) == SQLITE_TEXT ? valueOf(value).toText() : QString());
    });
}

/// What a sum has seen of its rows.
struct Sum {
    CompensatedSum total;
    qint64 whole; ///< the same, exactly, while all are whole and it fits
    qint64 count;
    bool broken; ///< `whole` holds no longer
};

void addToSum(sqlite3_context* context, int, sqlite3_value** values) {
    const int type = sqlite3_value_type(values[0]);
    auto* sum = type == SQLITE_NULL ? nullptr : memoryOf<Sum>(context);
    if (sum == nullptr) {
        return;
    }
    if (type == SQLITE_INTEGER) {
        const qint64 number = sqlite3_value_int64(values[0]);
        sum->broken = sum->broken || __builtin_add_overflow(sum->whole, number, &sum->whole);
        sum->total.add(static_cast<double>(number));
    } else if (type == SQLITE_FLOAT) {
        sum->broken = true;
        sum->total.add(sqlite3_value_double(values[0]));
    } else {
        refuseText(context, values[0]);
    }
    // Here and not at the end: SQLite asks for the end of a sum also when it clears away one that nobody wants.
    if (!std::isfinite(sum->total.value())) {
        guarded(context, [] { raiseRuntimeError(overflow); });
    }
    ++sum->count;
}

void endSum(sqlite3_context* context) {
    const auto* const sum = static_cast<const Sum*>(sqlite3_aggregate_context(context, 0));
    if (sum == nullptr) {
        sqlite3_result_null(context);
    } else if (sum->broken) {
        sqlite3_result_double(context, sum->total.value());
    } else {
        sqlite3_result_int64(context, sum->whole);
    }
}

void endAverage(sqlite3_context* context) {
    const auto* const sum = static_cast<const Sum*>(sqlite3_aggregate_context(context, 0));
    if (sum == nullptr) {
        sqlite3_result_null(context);
    } else {
        sqlite3_result_double(context, sum->total.value() / static_cast<double>(sum->count));
    }
}

/// Mean and sum of squared distances from it, updated value by value (B. P. Welford, Technometrics 4, 1962, 419-420):
/// no difference of large squares as in the sum of squares less the square of the sum.
struct Spread {
    double mean;
    double squares;
    qint64 count;
};

void addToSpread(sqlite3_context* context, int, sqlite3_value** values) {
    const int type = sqlite3_value_type(values[0]);
    auto* spread = type == SQLITE_NULL ? nullptr : memoryOf<Spread>(context);
    if (spread == nullptr) {
        return;
    }
    if (type != SQLITE_INTEGER && type != SQLITE_FLOAT) {
        refuseText(context, values[0]);
        return;
    }
    const double number = sqlite3_value_double(values[0]);
    const double distance = number - spread->mean;
    ++spread->count;
    spread->mean += distance / static_cast<double>(spread->count);
    spread->squares += distance * (number - spread->mean);
    if (!std::isfinite(spread->squares)) {
        guarded(context, [] { raiseRuntimeError(overflow); });
    }
}

/// @param Less  one for a sample's variance, which takes one value more than it divides by
template<int Less, bool Root>
void endSpread(sqlite3_context* context) {
    const auto* const spread = static_cast<const Spread*>(sqlite3_aggregate_context(context, 0));
    if (spread == nullptr || spread->count <= Less) {
        sqlite3_result_null(context);
        return;
    }
    const double variance = spread->squares / static_cast<double>(spread->count - Less);
    sqlite3_result_double(context, Root ? std::sqrt(variance) : variance);
}

struct AggregateFunction {
    const char* name;
    void (*step)(sqlite3_context*, int, sqlite3_value**);
    void (*end)(sqlite3_context*);
};

constexpr AggregateFunction aggregates[] = {
    {"vx_sum", addToSum, endSum},
    {"vx_avg", addToSum, endAverage},
    {"vx_var", addToSpread, endSpread<1, false>},
    {"vx_varp", addToSpread, endSpread<0, false>},
    {"vx_stdev", addToSpread, endSpread<1, true>},
    {"vx_stdevp", addToSpread, endSpread<0, true>},
};

} // namespace

int registerAggregates(sqlite3* connection) {
    int result = SQLITE_OK;
    for (const AggregateFunction& aggregate : aggregates) {
        if (result == SQLITE_OK) {
            result = sqlite3_create_function(connection, aggregate.name, 1, functionFlags, nullptr, nullptr,
                                             aggregate.step, aggregate.end);
        }
    }
    return result;
}

} // namespace dao
