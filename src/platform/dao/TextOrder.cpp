#include "platform/dao/TextOrder.h"

#include "platform/dao/Error.h"
#include "platform/dao/Value.h"

#include <QVarLengthArray>
#include <cstring>

namespace dao {

namespace {

int order(char32_t a, char32_t b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

using CodePoints = QVarLengthArray<char32_t, 128>;

CodePoints foldedPoints(QStringView text) {
    CodePoints points;
    points.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        points.append(foldCase(takeCodePoint(text, at)));
    }
    return points;
}

/// Whether `c` stands in the list that begins behind "[" at `at`; moves `at` behind the "]".
bool matchesList(const CodePoints& pattern, qsizetype& at, char32_t c) {
    constexpr int invalidPattern = 93;
    bool negated = false;
    if (at < pattern.size() && pattern[at] == U'!') {
        negated = true;
        ++at;
    }
    const qsizetype first = at;
    qsizetype end = at;
    while (end < pattern.size() && pattern[end] != U']') {
        ++end;
    }
    if (end == pattern.size()) {
        raiseRuntimeError(invalidPattern);
    }
    bool found = false;
    for (at = first; at < end; ++at) {
        if (at + 2 < end && pattern[at + 1] == U'-') {
            if (pattern[at] > pattern[at + 2]) {
                raiseRuntimeError(invalidPattern);
            }
            found = found || (c >= pattern[at] && c <= pattern[at + 2]);
            at += 2;
        } else {
            found = found || c == pattern[at];
        }
    }
    at = end + 1;
    return found != negated;
}

/// Whether one code point matches the single place of the pattern at `at`; moves `at` behind the place.
bool matchesPlace(const CodePoints& pattern, qsizetype& at, char32_t c) {
    const char32_t p = pattern[at++];
    switch (p) {
    case U'?':
        return true;
    case U'#':
        return c >= U'0' && c <= U'9';
    case U'[':
        return matchesList(pattern, at, c);
    default:
        return c == p;
    }
}

} // namespace

int compareTexts(QStringView a, QStringView b) {
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (a[i] == b[j] && !a[i].isSurrogate()) {
            ++i;
            ++j;
            continue;
        }
        if (const int difference = order(foldCase(takeCodePoint(a, i)), foldCase(takeCodePoint(b, j)))) {
            return difference;
        }
    }
    return (i < a.size()) - (j < b.size());
}

int compareUtf8(const char* a, int aBytes, const char* b, int bBytes) {
    auto* i = reinterpret_cast<const unsigned char*>(a);
    auto* j = reinterpret_cast<const unsigned char*>(b);
    const unsigned char* const iEnd = i + aBytes;
    const unsigned char* const jEnd = j + bBytes;
    while (i < iEnd && j < jEnd) {
        if (*i == *j && *i < 0x80) {
            ++i;
            ++j;
            continue;
        }
        if (const int difference = order(foldCase(takeUtf8(i, iEnd)), foldCase(takeUtf8(j, jEnd)))) {
            return difference;
        }
    }
    return (i < iEnd) - (j < jEnd);
}

QString foldedText(QStringView text) {
    QString folded;
    folded.reserve(text.size());
    for (qsizetype at = 0; at < text.size();) {
        const char32_t c = foldCase(takeCodePoint(text, at));
        if (QChar::requiresSurrogates(c)) {
            folded += QChar(QChar::highSurrogate(c));
            folded += QChar(QChar::lowSurrogate(c));
        } else {
            folded += QChar(static_cast<char16_t>(c));
        }
    }
    return folded;
}

bool matchesPattern(QStringView text, QStringView pattern) {
    const CodePoints t = foldedPoints(text);
    const CodePoints p = foldedPoints(pattern);
    qsizetype at = 0;
    qsizetype place = 0;
    qsizetype afterStar = -1; // place behind the last "*": only that one ever needs to take more
    qsizetype starAt = 0;
    while (true) {
        if (place < p.size() && p[place] == U'*') {
            afterStar = ++place;
            starAt = at;
            continue;
        }
        if (at == t.size()) {
            break;
        }
        qsizetype next = place;
        if (place < p.size() && matchesPlace(p, next, t[at])) {
            place = next;
            ++at;
        } else if (afterStar >= 0) {
            place = afterStar;
            at = ++starAt;
        } else {
            return false;
        }
    }
    return place == p.size();
}

} // namespace dao
