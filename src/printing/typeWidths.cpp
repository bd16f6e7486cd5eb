#include "printing/typeWidths.h"

#include "tables/tableText.h"

#include <QFontMetricsF>
#include <algorithm>
#include <deque>

using namespace Qt::StringLiterals;

namespace {

/// Letters and signs that are neither joined, stacked nor turned round by what stands beside them.
bool standsAlone(char16_t sign) {
    if (sign < 0x20 || sign == 0x7F || sign == 0xAD || (sign >= 0x80 && sign < 0xA0))
        return false;
    if (sign < 0x300)
        return true;
    if (sign >= 0x370 && sign < 0x530)
        return sign < 0x483 || sign > 0x489;
    return (sign >= 0x1E00 && sign < 0x1F00) || (sign >= 0x2010 && sign <= 0x2027) ||
           (sign >= 0x2030 && sign <= 0x205E) || (sign >= 0x20A0 && sign <= 0x20BF) ||
           (sign >= 0x2190 && sign <= 0x22FF);
}

/// Scripts whose signs are as wide alone as in a text, but higher than a line of ours.
bool isIdeograph(char16_t sign) {
    return (sign >= 0x3000 && sign < 0xA000 && (sign < 0x3099 || sign > 0x309A)) || (sign >= 0xAC00 && sign < 0xD7A4) ||
           (sign >= 0xFF01 && sign <= 0xFF60);
}

bool endsWord(char16_t sign) {
    return sign == u' ' || sign == u'-' || sign == u'/' || sign == u'\u2013';
}

} // namespace

double TypeWidths::letter(char16_t sign) {
    double& known = sign < known_.size() ? known_[sign] : others_.try_emplace(sign, -1.0).first->second;
    if (known < 0)
        known = QFontMetricsF(font_).horizontalAdvance(QChar(sign));
    return known;
}

bool TypeWidths::isSimple(QStringView text) {
    return std::ranges::all_of(text, [](QChar c) { return standsAlone(c.unicode()) || isIdeograph(c.unicode()); });
}

TextExtent TypeWidths::of(QStringView text) {
    TextExtent extent{.width = 0, .word = 0, .plain = true};
    double word = 0;
    for (const QChar c : text) {
        const char16_t sign = c.unicode();
        const bool ideograph = isIdeograph(sign);
        if (!ideograph && !standsAlone(sign)) {
            // What only shaping can tell; a line feed begins another line.
            extent = {};
            for (const QStringView line : text.split(u'\n')) {
                extent.width = std::max(extent.width, QFontMetricsF(font_).horizontalAdvance(line.toString()));
                for (const QStringView piece : line.split(u' '))
                    extent.word = std::max(extent.word, QFontMetricsF(font_).horizontalAdvance(piece.toString()));
            }
            return extent;
        }
        const double width = letter(sign);
        extent.width += width;
        extent.plain = extent.plain && !ideograph;
        word = ideograph ? width : word + width;
        extent.word = std::max(extent.word, sign == u' ' ? word - width : word);
        if (endsWord(sign))
            word = 0;
    }
    return extent;
}

TypeWidths& TypeWidths::in(const QFont& font) {
    static std::deque<std::pair<QFont, TypeWidths>> widths; // few: reports know six sizes in two families
    const auto known = std::ranges::find(widths, font, &std::pair<QFont, TypeWidths>::first);
    return known == widths.end() ? widths.emplace_back(font, TypeWidths(font)).second : known->second;
}

Figure figureOf(const QString& text) {
    const QStringView trimmed = QStringView(text).trimmed();
    int digits = 0, separators = 0;
    bool simple = !trimmed.isEmpty();
    for (qsizetype i = 0; i < trimmed.size(); ++i) {
        const char16_t sign = trimmed[i].unicode();
        if (sign >= u'0' && sign <= u'9')
            ++digits;
        else if (sign == u'.' || sign == u',')
            ++separators;
        else if (!((sign == u'-' || sign == u'+') && i == 0)) {
            simple = false;
            if (!QStringView(u" ()%+-eE\u00A0").contains(trimmed[i]))
                return Figure::None;
        }
    }
    if (digits == 0)
        return Figure::None;
    if (simple && separators <= 1)
        return Figure::Number;
    return isFigure(text) ? Figure::Mixed : Figure::None;
}

qsizetype separatorIn(const QString& number) {
    const auto found = std::ranges::find_if(number, [](QChar c) { return c == u'.' || c == u','; });
    return found - number.begin();
}
