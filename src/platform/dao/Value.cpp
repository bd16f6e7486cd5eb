#include "platform/dao/Value.h"

#include "platform/dao/Error.h"
#include "platform/system/NumberFormat.h"

#include <cmath>
#include <cstring>

namespace dao {

namespace {

constexpr int overflow = 6;
constexpr int typeMismatch = 13;
constexpr int useOfNull = 94;

template<typename T>
int order(T a, T b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

/// Exact, also where the whole number has more digits than a double can hold.
int compareWholeWithDouble(qint64 whole, double number) {
    constexpr double limit = 9223372036854775808.0;
    if (number >= limit) {
        return -1;
    }
    if (number < -limit) {
        return 1;
    }
    const auto truncated = static_cast<qint64>(number);
    if (whole != truncated) {
        return order(whole, truncated);
    }
    return order(0.0, number - static_cast<double>(truncated));
}

int compareNumbers(const Value& a, const Value& b) {
    const bool aWhole = a.kind() == Value::Kind::Integer;
    const bool bWhole = b.kind() == Value::Kind::Integer;
    if (aWhole && bWhole) {
        return order(a.toInteger(), b.toInteger());
    }
    if (aWhole) {
        return compareWholeWithDouble(a.toInteger(), b.toDouble());
    }
    if (bWhole) {
        return -compareWholeWithDouble(b.toInteger(), a.toDouble());
    }
    return order(a.toDouble(), b.toDouble());
}

bool isNumber(const Value& value) {
    return value.kind() == Value::Kind::Integer || value.kind() == Value::Kind::Double;
}

/// Number against text; a text that spells no number is above every number.
int compareNumberWithText(const Value& number, const Value& text) {
    const std::optional<double> spelled = textToNumber(text.toText());
    return spelled ? compareNumbers(number, Value(*spelled)) : -1;
}

int compareBytes(const QByteArray& a, const QByteArray& b) {
    const auto common = static_cast<size_t>(std::min(a.size(), b.size()));
    const int difference = common == 0 ? 0 : std::memcmp(a.constData(), b.constData(), common);
    return difference != 0 ? difference : order(a.size(), b.size());
}

} // namespace

bool Value::isNumeric() const {
    switch (kind()) {
    case Kind::Integer:
    case Kind::Double:
        return true;
    case Kind::Text:
        return textToNumber(std::get<QString>(content_)).has_value();
    default:
        return false;
    }
}

QString Value::toText() const {
    constexpr qint64 firstWithExponent = 1'000'000'000'000'000;
    switch (kind()) {
    case Kind::Null:
        return {};
    case Kind::Integer: {
        const qint64 whole = std::get<qint64>(content_);
        if (whole > -firstWithExponent && whole < firstWithExponent) {
            return QString::number(whole);
        }
        // Whole doubles are stored as integers: both must read alike.
        return numberToText(static_cast<double>(whole), NumberFormat::decimalSeparator());
    }
    case Kind::Double:
        return numberToText(std::get<double>(content_), NumberFormat::decimalSeparator());
    case Kind::Text:
        return std::get<QString>(content_);
    case Kind::Bytes:
        return QString::fromLatin1(std::get<QByteArray>(content_));
    }
    return {};
}

double Value::toDouble() const {
    switch (kind()) {
    case Kind::Null:
        raiseRuntimeError(useOfNull);
    case Kind::Integer:
        return static_cast<double>(std::get<qint64>(content_));
    case Kind::Double:
        return std::get<double>(content_);
    case Kind::Text:
        if (const auto number = textToNumber(std::get<QString>(content_))) {
            return *number;
        }
        break;
    case Kind::Bytes:
        break;
    }
    raiseRuntimeError(typeMismatch);
}

qint64 Value::toInteger() const {
    if (kind() == Kind::Integer) {
        return std::get<qint64>(content_);
    }
    const double number = std::nearbyint(toDouble()); // the default rounding mode is half to even
    if (!(number >= -9223372036854775808.0 && number < 9223372036854775808.0)) {
        raiseRuntimeError(overflow);
    }
    return static_cast<qint64>(number);
}

bool Value::toBoolean() const {
    return toDouble() != 0;
}

QByteArray Value::toBytes() const {
    if (kind() == Kind::Bytes) {
        return std::get<QByteArray>(content_);
    }
    return toText().toUtf8();
}

int compareValues(const Value& a, const Value& b) {
    if (a.isNull() || b.isNull()) {
        return (b.isNull() ? 1 : 0) - (a.isNull() ? 1 : 0);
    }
    const bool aBytes = a.kind() == Value::Kind::Bytes;
    const bool bBytes = b.kind() == Value::Kind::Bytes;
    if (aBytes || bBytes) {
        return aBytes && bBytes ? compareBytes(a.toBytes(), b.toBytes()) : aBytes ? 1 : -1;
    }
    if (isNumber(a)) {
        return isNumber(b) ? compareNumbers(a, b) : compareNumberWithText(a, b);
    }
    return isNumber(b) ? -compareNumberWithText(b, a) : compareTexts(a.toText(), b.toText());
}

bool haveOrder(const Value& a, const Value& b) {
    return isNumber(a) ? b.isNumeric() : !isNumber(b) || a.isNumeric();
}

} // namespace dao
