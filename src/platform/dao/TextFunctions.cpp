#include "platform/dao/Error.h"
#include "platform/dao/FunctionBodies.h"
#include "platform/dao/GuardedFunction.h"
#include "platform/dao/TextOrder.h"

#include <QList>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace dao::bodies {

namespace {

constexpr int invalidArgument = 5;
constexpr qint64 longestText = 10'000'000;

/// Code points, so that no count or cut ever falls into the middle of one.
using Points = std::u32string;

Points pointsOf(const Value& value) {
    return value.toText().toStdU32String();
}

Value textOf(const Points& points) {
    return Value(QString::fromStdU32String(points));
}

qint64 countOf(const Value& value, qint64 lowest) {
    const qint64 count = value.toInteger();
    if (count < lowest) {
        raiseRuntimeError(invalidArgument);
    }
    return count;
}

bool anyNull(const Arguments& a) {
    return std::any_of(a.begin(), a.end(), [](const Value& value) { return value.isNull(); });
}

Value trimmed(const Arguments& a, bool atLeft, bool atRight) {
    if (a[0].isNull()) {
        return {};
    }
    const QString whole = a[0].toText();
    QStringView view = whole;
    while (atLeft && view.startsWith(u' ')) {
        view = view.sliced(1);
    }
    while (atRight && view.endsWith(u' ')) {
        view.chop(1);
    }
    return Value(view.toString());
}

template<typename Mapping>
Value mapped(const Arguments& a, Mapping mapping) {
    if (a[0].isNull()) {
        return {};
    }
    Points points = pointsOf(a[0]);
    std::transform(points.begin(), points.end(), points.begin(), mapping);
    return textOf(points);
}

/// A search may have to compare each place of the text with the whole of what is sought. @throws Error 3035 for what
/// would take more than seconds
void requireShortSearch(qsizetype text, qsizetype sought) {
    constexpr double mostComparisons = 1e9;
    const double comparisons = static_cast<double>(text) * static_cast<double>(sought);
    if (comparisons > mostComparisons) {
        raiseEngineError(3035);
    }
    functionWork += static_cast<qint64>(comparisons / 16); // most fail at the first character
}

Points folded(Points points) {
    std::transform(points.begin(), points.end(), points.begin(), foldCase);
    return points;
}

} // namespace

Value like(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const QString whole = a[0].toText();
    const QString pattern = a[1].toText();
    requireShortSearch(whole.size(), pattern.size());
    return Value(matchesPattern(whole, pattern) ? 1 : 0);
}

Value condition(const Arguments& a) {
    return a[0].isNull() ? Value() : Value(a[0].toBoolean() ? 1 : 0);
}

Value key(const Arguments& a) {
    if (a[0].kind() != Value::Kind::Text) {
        return a[0];
    }
    const QString whole = a[0].toText();
    const std::optional<double> number = textToNumber(whole);
    return number ? Value(*number) : Value(foldedText(whole));
}

Value text(const Arguments& a) {
    return a[0].isNull() ? Value() : Value(a[0].toText());
}

Value fitting(const Arguments& a) {
    const Value whole = text(a);
    const QString characters = whole.toText();
    const qint64 size = a[1].toInteger();
    if (characters.size() > size && characters.toUcs4().size() > size) {
        raiseEngineError(3163, a[2].toText());
    }
    return whole;
}

Value concat(const Arguments& a) {
    QString whole;
    bool allNull = true;
    for (const Value& part : a) {
        allNull = allNull && part.isNull();
        whole += part.toText();
        if (whole.size() > longestText) {
            raiseRuntimeError(invalidArgument);
        }
    }
    return allNull ? Value() : Value(whole);
}

Value nz(const Arguments& a) {
    return !a[0].isNull() ? a[0] : a.size() > 1 ? a[1] : Value(u""_s);
}

Value str(const Arguments& a) {
    if (a[0].isNull()) {
        return {};
    }
    const double number = a[0].toDouble();
    const QString digits = numberToText(number, u'.');
    return Value(number < 0 ? digits : u' ' + digits);
}

Value trim(const Arguments& a) {
    return trimmed(a, true, true);
}

Value trimLeft(const Arguments& a) {
    return trimmed(a, true, false);
}

Value trimRight(const Arguments& a) {
    return trimmed(a, false, true);
}

Value upper(const Arguments& a) {
    return mapped(a, [](char32_t c) { return QChar::toUpper(c); });
}

Value lower(const Arguments& a) {
    return mapped(a, [](char32_t c) { return QChar::toLower(c); });
}

Value length(const Arguments& a) {
    return a[0].isNull() ? Value() : Value(static_cast<qint64>(pointsOf(a[0]).size()));
}

Value character(const Arguments& a) {
    if (a[0].isNull()) {
        return {};
    }
    const qint64 code = countOf(a[0], 0);
    if (code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) {
        raiseRuntimeError(invalidArgument);
    }
    return textOf(Points(1, static_cast<char32_t>(code)));
}

Value codePoint(const Arguments& a) {
    if (a[0].isNull()) {
        return {};
    }
    const Points points = pointsOf(a[0]);
    if (points.empty()) {
        raiseRuntimeError(invalidArgument);
    }
    return Value(static_cast<qint64>(points.front()));
}

Value space(const Arguments& a) {
    if (a[0].isNull()) {
        return {};
    }
    const qint64 count = countOf(a[0], 0);
    if (count > longestText) {
        raiseRuntimeError(invalidArgument);
    }
    return Value(QString(count, u' '));
}

Value left(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    return textOf(pointsOf(a[0]).substr(0, static_cast<size_t>(countOf(a[1], 0))));
}

Value right(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const Points points = pointsOf(a[0]);
    const auto count = static_cast<size_t>(countOf(a[1], 0));
    return textOf(count >= points.size() ? points : points.substr(points.size() - count));
}

Value mid(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const Points points = pointsOf(a[0]);
    const auto start = static_cast<size_t>(countOf(a[1], 1) - 1);
    const size_t count = a.size() > 2 ? static_cast<size_t>(countOf(a[2], 0)) : Points::npos;
    return start >= points.size() ? Value(u""_s) : textOf(points.substr(start, count));
}

Value inStr(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const bool hasStart = a.size() > 2;
    const auto from = static_cast<size_t>(hasStart ? countOf(a[0], 1) - 1 : 0);
    const Points whole = folded(pointsOf(a[hasStart ? 1 : 0]));
    if (from >= whole.size()) {
        return Value(0);
    }
    const Points part = folded(pointsOf(a[hasStart ? 2 : 1]));
    requireShortSearch(static_cast<qsizetype>(whole.size()), static_cast<qsizetype>(part.size()));
    const size_t found = whole.find(part, from);
    return Value(found == Points::npos ? qint64{0} : static_cast<qint64>(found) + 1);
}

Value replace(const Arguments& a) {
    if (anyNull(a)) {
        return {};
    }
    const Points whole = pointsOf(a[0]);
    const Points sought = folded(whole);
    const Points part = folded(pointsOf(a[1]));
    const Points by = pointsOf(a[2]);
    if (part.empty()) {
        return a[0];
    }
    requireShortSearch(static_cast<qsizetype>(whole.size()), static_cast<qsizetype>(part.size()));
    Points result;
    size_t from = 0;
    for (size_t found; (found = sought.find(part, from)) != Points::npos; from = found + part.size()) {
        result += whole.substr(from, found - from) + by;
        if (result.size() > static_cast<size_t>(longestText)) {
            raiseRuntimeError(invalidArgument);
        }
    }
    return textOf(result + whole.substr(from));
}

} // namespace dao::bodies
