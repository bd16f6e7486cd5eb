#include "platform/dao/Functions.h"

#include "platform/dao/Aggregates.h"
#include "platform/dao/FunctionBodies.h"
#include "platform/dao/GuardedFunction.h"
#include "platform/dao/SqliteValue.h"
#include "platform/dao/TextOrder.h"

namespace dao {

namespace {

using Body = Value (*)(const Arguments&);

void runBody(sqlite3_context* context, int count, sqlite3_value** values) {
    guarded(context, [&] {
        Arguments arguments;
        for (int i = 0; i < count; ++i) {
            arguments.append(valueOf(values[i]));
        }
        const auto* body = static_cast<const Body*>(sqlite3_user_data(context));
        setResult(context, (*body)(arguments));
    });
}

int compare(sqlite3_value* a, sqlite3_value* b) {
    if (sqlite3_value_type(a) == SQLITE_TEXT && sqlite3_value_type(b) == SQLITE_TEXT) {
        const auto* left = reinterpret_cast<const char*>(sqlite3_value_text(a));
        const auto* right = reinterpret_cast<const char*>(sqlite3_value_text(b));
        return compareUtf8(left, sqlite3_value_bytes(a), right, sqlite3_value_bytes(b));
    }
    return compareValues(valueOf(a), valueOf(b));
}

enum Relation : int { Less = 1, Equal = 2, Greater = 4 };

/// A comparison operator; its user data are the relations that satisfy it.
void runComparison(sqlite3_context* context, int, sqlite3_value** values) {
    if (sqlite3_value_type(values[0]) == SQLITE_NULL || sqlite3_value_type(values[1]) == SQLITE_NULL) {
        sqlite3_result_null(context);
        return;
    }
    guarded(context, [&] {
        const int order = compare(values[0], values[1]);
        const bool sameKind = sqlite3_value_type(values[0]) == sqlite3_value_type(values[1]);
        const int relation = !sameKind && !haveOrder(valueOf(values[0]), valueOf(values[1])) ? Less | Greater
                             : order < 0                                                     ? Less
                             : order > 0                                                     ? Greater
                                                                                             : Equal;
        const int satisfying = *static_cast<const int*>(sqlite3_user_data(context));
        sqlite3_result_int(context, (satisfying & relation) == relation);
    });
}

/// The first argument holds the signs between the values that follow it.
void runCalculation(sqlite3_context* context, int count, sqlite3_value** values) {
    guarded(context, [&] {
        const auto* sign = reinterpret_cast<const char*>(sqlite3_value_text(values[0]));
        Value result = valueOf(values[1]);
        for (int i = 2; i < count; ++i, ++sign) {
            const Body body = *sign == '+' ? bodies::add : *sign == '-' ? bodies::subtract : bodies::multiply;
            result = body({result, valueOf(values[i])});
        }
        setResult(context, result);
    });
}

int collate(void*, int aBytes, const void* a, int bBytes, const void* b) {
    return compareUtf8(static_cast<const char*>(a), aBytes, static_cast<const char*>(b), bBytes);
}

struct Comparison {
    const char* name;
    int relations;
};

constexpr Comparison comparisons[] = {
    {"vx_eq", Equal},        {"vx_ne", Less | Greater}, {"vx_lt", Less},
    {"vx_le", Less | Equal}, {"vx_gt", Greater},        {"vx_ge", Greater | Equal},
};

struct Function {
    const char* name;
    int fewest;
    int most;
    Body body;
};

constexpr int anyNumber = -1;

constexpr Function functions[] = {
    {"vx_like", 2, 2, bodies::like},
    {"vx_bool", 1, 1, bodies::condition},
    {"vx_key", 1, 1, bodies::key},
    {"vx_text", 1, 1, bodies::text},
    {"vx_fit", 3, 3, bodies::fitting},
    {"vx_concat", anyNumber, anyNumber, bodies::concat},
    {"vx_div", 2, 2, bodies::divide},
    {"vx_idiv", 2, 2, bodies::divideWhole},
    {"vx_mod", 2, 2, bodies::modulo},
    {"vx_pow", 2, 2, bodies::power},
    {"vx_neg", 1, 1, bodies::negate},
    {"vx_val", 1, 1, bodies::val},
    {"vx_cdbl", 1, 1, bodies::toDouble},
    {"vx_clng", 1, 1, bodies::toLong},
    {"vx_cint", 1, 1, bodies::toInteger},
    {"vx_cbool", 1, 1, bodies::toBoolean},
    {"vx_int", 1, 1, bodies::floorOf},
    {"vx_fix", 1, 1, bodies::truncated},
    {"vx_abs", 1, 1, bodies::absolute},
    {"vx_sgn", 1, 1, bodies::sign},
    {"vx_sqr", 1, 1, bodies::squareRoot},
    {"vx_exp", 1, 1, bodies::exponential},
    {"vx_log", 1, 1, bodies::logarithm},
    {"vx_round", 1, 2, bodies::rounded},
    {"vx_isnumeric", 1, 1, bodies::isNumeric},
    {"vx_nz", 1, 2, bodies::nz},
    {"vx_cstr", 1, 1, bodies::text},
    {"vx_str", 1, 1, bodies::str},
    {"vx_trim", 1, 1, bodies::trim},
    {"vx_ltrim", 1, 1, bodies::trimLeft},
    {"vx_rtrim", 1, 1, bodies::trimRight},
    {"vx_ucase", 1, 1, bodies::upper},
    {"vx_lcase", 1, 1, bodies::lower},
    {"vx_len", 1, 1, bodies::length},
    {"vx_chr", 1, 1, bodies::character},
    {"vx_asc", 1, 1, bodies::codePoint},
    {"vx_space", 1, 1, bodies::space},
    {"vx_left", 2, 2, bodies::left},
    {"vx_right", 2, 2, bodies::right},
    {"vx_mid", 2, 3, bodies::mid},
    {"vx_instr", 2, 3, bodies::inStr},
    {"vx_replace", 3, 3, bodies::replace},
};

} // namespace

void registerFunctions(sqlite3* connection) {
    int result = sqlite3_create_collation(connection, textCollation, SQLITE_UTF8, nullptr, collate);
    const auto add = [&](const char* name, int arguments, const void* data, auto* function) {
        if (result == SQLITE_OK) {
            result = sqlite3_create_function(connection, name, arguments, functionFlags, const_cast<void*>(data),
                                             function, nullptr, nullptr);
        }
    };
    for (const Comparison& comparison : comparisons) {
        add(comparison.name, 2, &comparison.relations, runComparison);
    }
    for (const Function& function : functions) {
        for (int arguments = function.fewest; arguments <= function.most; ++arguments) {
            add(function.name, arguments, &function.body, runBody);
        }
    }
    add("vx_calc", anyNumber, nullptr, runCalculation);
    if (result == SQLITE_OK) {
        result = registerAggregates(connection);
    }
    if (result != SQLITE_OK) {
        throw std::bad_alloc();
    }
}

} // namespace dao
