#pragma once

#include <QChar>
#include <QString>
#include <QStringView>

/// The one order of texts, for QString as well as for the UTF-8 that SQLite hands over.
namespace dao {

/// The code point that stands for both cases of a letter (Unicode's simple folding).
inline char32_t foldCase(char32_t c) {
    if (c < 0x80) {
        return c >= U'A' && c <= U'Z' ? c + 32 : c;
    }
    return QChar::toCaseFolded(c);
}

/// Takes the code point at `at` and moves behind it; a lone surrogate is taken as it is.
inline char32_t takeCodePoint(QStringView text, qsizetype& at) {
    const char16_t c = text[at++].unicode();
    if (QChar::isHighSurrogate(c) && at < text.size() && text[at].isLowSurrogate()) {
        return QChar::surrogateToUcs4(c, text[at++].unicode());
    }
    return c;
}

/// The same for UTF-8. Bytes that are no UTF-8 are each taken as one code point beyond Unicode, so that damaged
/// text still has one order.
inline char32_t takeUtf8(const unsigned char*& at, const unsigned char* end) {
    const unsigned char lead = *at++;
    if (lead < 0x80) {
        return lead;
    }
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || end - at < more) {
        return 0x110000u + lead;
    }
    char32_t c = lead & (0x3Fu >> more);
    for (int i = 0; i < more; ++i) {
        if ((at[i] & 0xC0) != 0x80) {
            return 0x110000u + lead;
        }
        c = (c << 6) | (at[i] & 0x3Fu);
    }
    at += more;
    return c;
}

/// Order of two UTF-8 texts as compareTexts() has it.
int compareUtf8(const char* a, int aBytes, const char* b, int bBytes);

/// The text with every code point folded: equal for exactly those texts that compareTexts() finds equal.
QString foldedText(QStringView text);

} // namespace dao
