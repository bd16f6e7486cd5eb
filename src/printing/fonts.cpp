#include "printing/fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGlyphRun>
#include <QHash>
#include <QRawFont>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>

using namespace Qt::StringLiterals;

namespace {

/// A width that comes from the text itself holds the text.
constexpr double widthTolerance = 0.5;

bool isFixed(const QString& family) {
    // Asking for a family goes through all that are installed.
    static std::map<QString, bool> known;
    const auto [found, isNew] = known.try_emplace(family, false);
    if (isNew) {
        static const QStringList marks = {u"courier"_s, u"mono"_s,     u"consol"_s,
                                          u"fixed"_s,   u"terminal"_s, u"typewriter"_s};
        found->second =
            std::ranges::any_of(marks, [&](const QString& mark) { return family.contains(mark, Qt::CaseInsensitive); });
        if (!found->second)
            found->second = QFontDatabase::hasFamily(family) && QFontDatabase::isFixedPitch(family);
    }
    return found->second;
}

/// A font as it is asked for. One that is asked for again is the same, so that it is looked for once.
struct FontKey {
    QString family;
    int twips = 0;
    bool bold = false, italic = false;
    bool operator==(const FontKey&) const = default;
};

size_t qHash(const FontKey& key, size_t seed = 0) {
    return qHashMulti(seed, key.family, key.twips, key.bold, key.italic);
}

QFont madeFont(const FontKey& key) {
    QFont font;
    const bool fixed = isFixed(key.family);
    // Families that are as wide as those that everybody names; the last ones are there in any case.
    static const QStringList fixedOnes = {u"Courier New"_s, u"Liberation Mono"_s, u"Cousine"_s, u"DejaVu Sans Mono"_s};
    static const QStringList others = {u"Arial"_s, u"Liberation Sans"_s, u"Helvetica"_s, u"Arimo"_s};
    font.setFamilies(QStringList(key.family) + (fixed ? fixedOnes : others));
    font.setStyleHint(fixed ? QFont::Monospace : QFont::SansSerif);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setPixelSize(key.twips);
    font.setBold(key.bold);
    font.setItalic(key.italic);
    return font;
}

/// Whether some font has a picture for a character.
bool isShown(char32_t character) {
    static std::unordered_map<char32_t, bool> known;
    const auto found = known.find(character);
    if (found != known.end())
        return found->second;
    QTextLayout layout(QString::fromUcs4(&character, 1), reportFont(u"Arial"_s, 10));
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    bool shown = false;
    for (const QGlyphRun& run : layout.glyphRuns()) {
        const QList<quint32> glyphs = run.glyphIndexes();
        // Where no font can shape a script the run has an engine of empty boxes, which has no tables.
        shown = run.rawFont().isValid() && !run.rawFont().fontTable("head").isEmpty() && !glyphs.isEmpty() &&
                !glyphs.contains(0u);
        if (!shown)
            break;
    }
    return known[character] = shown;
}

/// Embeddings, overrides and isolates: what begins in one text would go on in the next one of the line.
bool turnsDirection(char32_t character) {
    return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

/// Other forms of the character in front of it, which a font has or has not.
bool choosesForm(char32_t character) {
    return (character >= 0xFE00 && character <= 0xFE0F) || (character >= 0xE0100 && character <= 0xE01EF) ||
           (character >= 0x180B && character <= 0x180D) || character == 0x034F;
}

/// What a character is printed as; itself in most cases.
QString printed(char32_t character) {
    using enum QChar::Category;
    if (turnsDirection(character) || choosesForm(character) || character == 0xFEFF)
        return {};
    switch (QChar::category(character)) {
    case Separator_Space:
        return isShown(character) ? QString::fromUcs4(&character, 1) : u" "_s;
    case Other_Format: // joiners, soft hyphens: they are seen by what they do
        if (character < 0xE0000)
            return QString::fromUcs4(&character, 1);
        return {};
    case Other_Control:
    case Other_Surrogate:
    case Other_NotAssigned:
        break;
    default:
        if (character != QChar::ObjectReplacementCharacter && isShown(character))
            return QString::fromUcs4(&character, 1);
    }
    return u"[U+"_s + QString::number(static_cast<uint>(character), 16).toUpper().rightJustified(4, u'0') + u']';
}

bool isPlain(QChar sign) {
    return (sign >= u' ' && sign < u'\x7f') || sign == u'\n' || sign == u'\t';
}

} // namespace

QFont reportFont(const QString& family, double points, bool bold, bool italic) {
    static QHash<FontKey, QFont> known;
    const FontKey key{family, std::max(1, static_cast<int>(std::lround(points * 20))), bold, italic};
    const auto found = known.constFind(key);
    return found != known.cend() ? *found : *known.insert(key, madeFont(key));
}

QString printable(const QString& text) {
    if (std::ranges::all_of(text, isPlain))
        return text;
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar sign = text[i];
        if (isPlain(sign) || sign == QChar::LineSeparator)
            result += sign;
        else if (sign == u'\r' || sign == QChar::ParagraphSeparator || sign == u'\v' || sign == u'\f') {
            if (sign != u'\r' || i + 1 == text.size() || text[i + 1] != u'\n')
                result += u'\n';
        } else if (sign.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            result += printed(QChar::surrogateToUcs4(sign, text[i + 1]));
            ++i;
        } else
            result += printed(sign.unicode());
    }
    return result;
}

QString printableLine(const QString& text) {
    return printable(text).simplified();
}

void SetText::place(ReportPage& page, const QPointF& at, int first, int count, const QColor& color,
                    double scale) const {
    const QPointF origin = at - QPointF(0, tops[static_cast<size_t>(first)] * scale);
    for (int line = first; line < first + count; ++line)
        page.pieces.emplace_back(ReportPage::Line{layout, line, origin, scale, color});
}

SetText setText(QString text, const QFont& font, double width, Qt::Alignment alignment, double spacing,
                const QList<QTextLayout::FormatRange>& formats) {
    SetText result;
    text.replace(u'\n', QChar::LineSeparator);
    const auto layout = std::make_shared<QTextLayout>(text, font);
    // Without this every line that is painted would have the whole text shaped again.
    layout->setCacheEnabled(true);
    QTextOption option(alignment);
    option.setWrapMode(width > 0 ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::NoWrap);
    option.setTabStopDistance(4 * font.pixelSize());
    option.setTextDirection(text.isRightToLeft() ? Qt::RightToLeft : Qt::LeftToRight);
    layout->setTextOption(option);
    if (!formats.isEmpty())
        layout->setFormats(formats);
    const double step = spacing * font.pixelSize();
    double top = 0;
    layout->beginLayout();
    for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
        line.setLineWidth(width > 0 ? width + widthTolerance : 1e7);
        const double height = std::max(step, line.ascent() + line.descent());
        line.setPosition({0, top + (height - line.ascent() - line.descent()) / 2});
        result.tops.push_back(top);
        result.width = std::max(result.width, line.naturalTextWidth());
        top += height;
    }
    layout->endLayout();
    if (result.tops.empty()) // an empty text takes a line all the same
        top = step;
    result.tops.push_back(top);
    result.layout = layout;
    return result;
}

SetText setLine(const QString& text, const QFont& font, double width, Qt::Alignment alignment) {
    QString line = text;
    line.replace(u'\n', u' ').replace(QChar::LineSeparator, u' ');
    if (textWidth(line, font) > width) {
        QTextBoundaryFinder letters(QTextBoundaryFinder::Grapheme, line);
        std::vector<qsizetype> ends;
        while (letters.toNextBoundary() > 0 && ends.size() < 1000)
            ends.push_back(letters.position());
        const auto tooLong = std::ranges::partition_point(
            ends, [&](qsizetype end) { return textWidth(line.left(end) + u'…', font) <= width; });
        QString start = tooLong == ends.begin() ? QString() : line.left(*(tooLong - 1));
        while (!start.isEmpty() && start.back().isSpace())
            start.chop(1);
        line = start + u'…';
    }
    SetText result = setText(line, font, 0);
    if (alignment & (Qt::AlignRight | Qt::AlignHCenter))
        result = setText(line, font, std::max(width, result.width), alignment);
    return result;
}

double textWidth(const QString& text, const QFont& font) {
    return QFontMetricsF(font).horizontalAdvance(text);
}
