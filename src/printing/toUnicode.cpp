#include "printing/toUnicode.h"

#include <QMap>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr int entriesOfSection = 100; // as many as the format allows

bool isForm(char32_t c) {
    const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
    return within(0x2E80, 0x2FDF) || within(0xF900, 0xFDFF) || within(0xFE70, 0xFEFE);
}

bool isRightToLeft(QChar c) {
    return c.direction() == QChar::DirR || c.direction() == QChar::DirAL;
}

QString charactersOf(const QByteArray& hexadecimal) {
    const QByteArray bytes = QByteArray::fromHex(hexadecimal);
    QString text;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        text += QChar(static_cast<char16_t>(static_cast<uchar>(bytes[i]) << 8 | static_cast<uchar>(bytes[i + 1])));
    return text;
}

QByteArray codeOf(const QString& text) {
    QByteArray code;
    for (const QChar c : text)
        code += QByteArray::number(c.unicode(), 16).rightJustified(4, '0');
    return '<' + code + '>';
}

QByteArray glyphCode(uint glyph) {
    return codeOf(QString(QChar(glyph)));
}

/// Characters of each glyph; those that no character leads to are not in it.
QMap<uint, QString> readTable(const QByteArray& table) {
    static const QRegularExpression range(
        u"<([0-9A-Fa-f]+)>\\s*<([0-9A-Fa-f]+)>\\s*(?:<([0-9A-Fa-f]+)>|\\[([^\\]]*)\\])"_s);
    static const QRegularExpression one(u"<([0-9A-Fa-f]+)>"_s);
    QMap<uint, QString> characters;
    const qsizetype begin = table.indexOf("beginbfrange"), end = table.lastIndexOf("endbfrange");
    const QString ranges = QString::fromLatin1(table.mid(begin, begin < 0 ? 0 : end - begin));
    for (auto found = range.globalMatch(ranges); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        const uint first = match.captured(1).toUInt(nullptr, 16), last = match.captured(2).toUInt(nullptr, 16);
        uint glyph = first;
        if (match.capturedLength(4) > 0) {
            for (auto each = one.globalMatch(match.captured(4)); each.hasNext() && glyph <= last; ++glyph)
                characters[glyph] = charactersOf(each.next().captured(1).toLatin1());
            continue;
        }
        QString text = charactersOf(match.captured(3).toLatin1());
        for (; glyph <= last && !text.isEmpty(); ++glyph) {
            characters[glyph] = text;
            text.back() = QChar(text.back().unicode() + 1);
        }
    }
    characters.removeIf([](const std::pair<const uint&, QString&>& entry) { return entry.second == QString(QChar()); });
    return characters;
}

/// Glyphs are numbered as they are first drawn.
void addRare(QMap<uint, QString>& characters, uint glyphsOfFont, const std::vector<char32_t>& rare) {
    std::vector<uint> unnamed;
    for (uint glyph = 1; glyph < glyphsOfFont; ++glyph)
        if (!characters.contains(glyph))
            unnamed.push_back(glyph);
    if (unnamed.size() == rare.size())
        for (size_t i = 0; i < rare.size(); ++i)
            characters[unnamed[i]] = QString::fromUcs4(&rare[i], 1);
}

QByteArray section(const QMap<uint, QString>& characters) {
    QByteArray text;
    int left = static_cast<int>(characters.size()), room = 0;
    for (auto entry = characters.begin(); entry != characters.end(); ++entry, --left, --room) {
        if (room == 0) {
            room = std::min(left, entriesOfSection);
            text += (text.isEmpty() ? "" : "endbfchar\n") + QByteArray::number(room) + " beginbfchar\n";
        }
        text += glyphCode(entry.key()) + ' ' + codeOf(entry.value()) + '\n';
    }
    return text + "endbfchar\n";
}

} // namespace

QString plainLetters(const QString& text) {
    QString plain;
    for (const char32_t c : text.toUcs4()) {
        const QString one = QString::fromUcs4(&c, 1);
        // A mark that stands alone is spaced out.
        plain += isForm(c) ? one.normalized(QString::NormalizationForm_KC).remove(u' ') : one;
    }
    return plain;
}

PlainFont plainFont(const QByteArray& table, int glyphsOfFont, const std::vector<char32_t>& rare) {
    QMap<uint, QString> characters = readTable(table);
    addRare(characters, static_cast<uint>(glyphsOfFont), rare);
    if (characters.isEmpty() || !table.contains("endbfrange"))
        return {table, {}};
    QMap<QString, uint> glyphs; // of single letters
    for (auto entry = characters.begin(); entry != characters.end(); ++entry) {
        // Qt names the first character that leads to a glyph; the space's is often the tabulator's too.
        const QString plain = *entry == u'\t' ? u" "_s : plainLetters(*entry);
        if (plain.size() == 1)
            glyphs.insert(plain, entry.key());
        if (plain.size() == 1 || !isRightToLeft(plain.front()))
            *entry = plain;
    }
    PlainFont font;
    for (auto entry = characters.begin(); entry != characters.end(); ++entry) {
        const QString plain = plainLetters(*entry);
        // Without a glyph for the second letter it keeps its own sign, which some readers know.
        if (plain.size() != 2 || plain == *entry || !glyphs.contains(plain.last(1)))
            continue;
        font.splits[glyphCode(entry.key())] = glyphCode(glyphs[plain.last(1)]);
        *entry = plain.first(1);
    }
    // Qt says how many sections there are in front of the first.
    const qsizetype begin = table.lastIndexOf('\n', table.indexOf("beginbfrange")) + 1;
    const qsizetype end = table.lastIndexOf("endbfrange") + qsizetype(sizeof("endbfrange"));
    font.table = table.left(begin) + section(characters) + table.mid(end);
    return font;
}

QByteArray withSplits(const QByteArray& content, const QMap<QByteArray, QMap<QByteArray, QByteArray>>& splits) {
    QByteArray result;
    QMap<QByteArray, QByteArray> ofFont;
    for (const QByteArray& line : content.split('\n')) {
        if (!result.isEmpty())
            result += '\n';
        result += line;
        if (const qsizetype end = line.indexOf(' '); line.startsWith('/') && line.contains(" Tf "))
            ofFont = splits.value(line.mid(1, end - 1));
        if (ofFont.isEmpty() || !line.endsWith(" Tj"))
            continue;
        const QByteArray second = ofFont.value(line.mid(line.lastIndexOf('<')).chopped(3).toLower());
        // Narrow, out of sight and a hair to the left, where what is read next lies.
        if (!second.isEmpty())
            result += " 3 Tr 5 Tz -2 0 Td " + second + " Tj 2 0 Td 100 Tz 0 Tr";
    }
    return result;
}
