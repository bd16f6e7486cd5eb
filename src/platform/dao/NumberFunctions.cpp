#include "platform/dao/Error.h"
#include "platform/dao/FunctionBodies.h"

#include <cmath>
#include <limits>

namespace dao::bodies {

namespace {

constexpr int invalidArgument = 5;
constexpr int overflow = 6;
constexpr int divisionByZero = 11;

bool anyNull(const Arguments& a) {
    for (const Value& value : a) {
        if (value.isNull()) {
            return true;
        }
    }
    return false;
}

Value checked(double number) {
    if (!std::isfinite(number)) {
        raiseRuntimeError(overflow);
    }
    return Value(number);
}

bool bothWhole(const Arguments& a) {
    return a[0].kind() == Value::Kind::Integer && a[1].kind() == Value::Kind::Integer;
}

/// A double operation of one number; Null stays Null.
template<typename Operation>
Value ofNumber(const Arguments& a, Operation operation) {
    return a[0].isNull() ? Value() : checked(operation(a[0].toDouble()));
}

Value ofRange(const Arguments& a, qint64 lowest, qint64 highest) {
    if (a[0].isNull()) {
        return {};
    }
    const qint64 whole = a[0].toInteger();
    if (whole < lowest || whole > highest) {
        raiseRuntimeError(overflow);
    }
    return Value(whole);
}

Value wholeOrDouble(const Value& original, double number) {
    return original.kind() == Value::Kind::Integer ? original : Value(number);
}

} // namespace

Value add(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    if (a[0].kind() == Value::Kind::Text && a[1].kind() == Value::Kind::Text) {
        return Value(a[0].toText() + a[1].toText());
    }
    qint64 sum = 0;
    if (bothWhole(a) && !__builtin_add_overflow(a[0].toInteger(), a[1].toInteger(), &sum)) {
        return Value(sum);
    }
    return checked(a[0].toDouble() + a[1].toDouble());
}

Value subtract(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    qint64 difference = 0;
    if (bothWhole(a) && !__builtin_sub_overflow(a[0].toInteger(), a[1].toInteger(), &difference)) {
        return Value(difference);
    }
    return checked(a[0].toDouble() - a[1].toDouble());
}

Value multiply(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    qint64 product = 0;
    if (bothWhole(a) && !__builtin_mul_overflow(a[0].toInteger(), a[1].toInteger(), &product)) {
        return Value(product);
    }
    return checked(a[0].toDouble() * a[1].toDouble());
}

Value divide(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const double dividend = a[0].toDouble();
    const double divisor = a[1].toDouble();
    if (divisor == 0) {
        raiseRuntimeError(divisionByZero);
    }
    return checked(dividend / divisor);
}

Value divideWhole(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const qint64 dividend = a[0].toInteger();
    const qint64 divisor = a[1].toInteger();
    if (divisor == 0) {
        raiseRuntimeError(divisionByZero);
    }
    if (divisor == -1) {
        return negate({Value(dividend)}); // the smallest whole number has no opposite
    }
    return Value(dividend / divisor);
}

Value modulo(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const qint64 dividend = a[0].toInteger();
    const qint64 divisor = a[1].toInteger();
    if (divisor == 0) {
        raiseRuntimeError(divisionByZero);
    }
    return Value(divisor == -1 ? qint64{0} : dividend % divisor);
}

Value power(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const double base = a[0].toDouble();
    const double exponent = a[1].toDouble();
    if ((base < 0 && exponent != std::trunc(exponent)) || (base == 0 && exponent < 0)) {
        raiseRuntimeError(invalidArgument);
    }
    return checked(std::pow(base, exponent));
}

Value negate(const Arguments& a) {
    return subtract({Value(0), a[0]});
}

Value val(const Arguments& a) {
    if (a[0].kind() == Value::Kind::Text) {
        return Value(leadingNumber(a[0].toText(), false));
    }
    return a[0];
}

Value toDouble(const Arguments& a) {
    return ofNumber(a, [](double number) { return number; });
}

Value toLong(const Arguments& a) {
    return ofRange(a, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
}

Value toInteger(const Arguments& a) {
    return ofRange(a, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
}

Value toBoolean(const Arguments& a) {
    return a[0].isNull() ? Value() : Value(a[0].toBoolean());
}

Value floorOf(const Arguments& a) {
    return a[0].isNull() ? Value() : wholeOrDouble(a[0], std::floor(a[0].toDouble()));
}

Value truncated(const Arguments& a) {
    return a[0].isNull() ? Value() : wholeOrDouble(a[0], std::trunc(a[0].toDouble()));
}

Value absolute(const Arguments& a) {
    return a[0].isNull() || a[0].toDouble() >= 0 ? multiply({a[0], Value(1)}) : negate(a);
}

Value sign(const Arguments& a) {
    if (a[0].isNull()) {
        return {};
    }
    const double number = a[0].toDouble();
    return Value((number > 0) - (number < 0));
}

Value squareRoot(const Arguments& a) {
    if (!a[0].isNull() && a[0].toDouble() < 0) {
        raiseRuntimeError(invalidArgument);
    }
    return ofNumber(a, [](double number) { return std::sqrt(number); });
}

Value exponential(const Arguments& a) {
    return ofNumber(a, [](double number) { return std::exp(number); });
}

Value logarithm(const Arguments& a) {
    if (!a[0].isNull() && a[0].toDouble() <= 0) {
        raiseRuntimeError(invalidArgument);
    }
    return ofNumber(a, [](double number) { return std::log(number); });
}

Value rounded(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const qint64 decimals = a.size() > 1 ? a[1].toInteger() : 0;
    if (decimals < 0 || decimals > 22) {
        raiseRuntimeError(invalidArgument);
    }
    const double scale = std::pow(10.0, static_cast<double>(decimals));
    const double scaled = a[0].toDouble() * scale;
    return std::isfinite(scaled) ? Value(std::nearbyint(scaled) / scale) : a[0];
}

Value isNumeric(const Arguments& a) {
    return Value(a[0].isNumeric());
}

} // namespace dao::bodies
