#include "platform/dao/Value.h"

#include <QVarLengthArray>
#include <charconv>
#include <cmath>
#include <limits>

namespace dao {

namespace {

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

/// The characters of a number with a point, ready for std::from_chars, and where it ended in the text.
struct Spelling {
    QVarLengthArray<char, 64> characters;
    qsizetype end = 0;
    bool hasDigits = false;
};

/// Reads sign, digits, one separator and exponent as far as they go.
Spelling readSpelling(QStringView text, bool commaToo, bool skipBlanks) {
    Spelling result;
    qsizetype at = 0;
    const auto pass = [&] {
        while (skipBlanks && at < text.size() && isBlank(text[at])) {
            ++at;
        }
        return at < text.size();
    };
    const auto takeDigits = [&] {
        bool any = false;
        while (pass() && isDigit(text[at])) {
            result.characters.append(static_cast<char>(text[at++].unicode()));
            any = true;
        }
        return any;
    };
    if (pass() && (text[at] == u'-' || text[at] == u'+')) {
        if (text[at] == u'-') {
            result.characters.append('-');
        }
        ++at;
    }
    result.hasDigits = takeDigits();
    if (pass() && (text[at] == u'.' || (commaToo && text[at] == u','))) {
        ++at;
        result.characters.append('.');
        result.hasDigits = takeDigits() || result.hasDigits;
    }
    result.end = at;
    if (!result.hasDigits || !pass() || (text[at] != u'e' && text[at] != u'E')) {
        return result;
    }
    const qsizetype mantissa = result.characters.size();
    ++at;
    result.characters.append('e');
    if (pass() && (text[at] == u'-' || text[at] == u'+')) {
        result.characters.append(static_cast<char>(text[at++].unicode()));
    }
    if (takeDigits()) {
        result.end = at;
    } else {
        result.characters.resize(mantissa);
    }
    return result;
}

/// Whether a number that no double can hold is too large rather than too small.
bool isTooLarge(const Spelling& spelling) {
    const auto& c = spelling.characters;
    long long wholeDigits = 0;
    long long zerosBehindPoint = 0;
    bool point = false;
    bool significant = false;
    qsizetype at = 0;
    for (; at < c.size() && c[at] != 'e'; ++at) {
        if (c[at] == '.') {
            point = true;
        } else if (c[at] != '-') {
            significant = significant || c[at] != '0';
            wholeDigits += !point && significant;
            zerosBehindPoint += point && !significant;
        }
    }
    if (at == c.size()) {
        return wholeDigits > 0;
    }
    const bool negative = at + 1 < c.size() && c[at + 1] == '-';
    long long exponent = 0;
    for (qsizetype i = at + 1; i < c.size(); ++i) {
        if (c[i] >= '0' && c[i] <= '9') {
            exponent = std::min(exponent * 10 + (c[i] - '0'), 1'000'000'000LL);
        }
    }
    return wholeDigits - zerosBehindPoint + (negative ? -exponent : exponent) > 0;
}

double numberOf(const Spelling& spelling) {
    const char* const first = spelling.characters.constData();
    const char* const last = first + spelling.characters.size();
    double number = 0;
    if (std::from_chars(first, last, number).ec == std::errc::result_out_of_range) {
        const double size = isTooLarge(spelling) ? std::numeric_limits<double>::max() : 0.0;
        number = *first == '-' ? -size : size;
    }
    return number;
}

} // namespace

QString numberToText(double number, QChar decimalSeparator) {
    if (number == 0) {
        return QStringLiteral("0"); // also for -0
    }
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::general, 15);
    QString text = QString::fromLatin1(buffer, result.ptr - buffer);
    if (!std::isfinite(number)) {
        return text;
    }
    text.replace(u'.', decimalSeparator);
    text.replace(u'e', u'E');
    return text;
}

std::optional<double> textToNumber(QStringView text) {
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    const Spelling spelling = readSpelling(text, true, false);
    if (!spelling.hasDigits || spelling.end != text.size()) {
        return std::nullopt;
    }
    return numberOf(spelling);
}

double leadingNumber(QStringView text, bool commaToo) {
    // The language passes over blanks anywhere inside the number.
    const Spelling spelling = readSpelling(text, commaToo, true);
    return spelling.hasDigits ? numberOf(spelling) : 0;
}

} // namespace dao
