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

QByteArray section(const QMap<uint, QString>& characters) {
    QByteArray text;
    int left = static_cast<int>(characters.size()), room = 0;
    for (auto entry = characters.begin(); entry != characters.end(); ++entry, --left, --room) {
        if (room == 0) {
            room = std::min(left, entriesOfSection);
            text += (text.isEmpty() ? "" : "endbfchar\n") + QByteArray::number(room) + " beginbfchar\n";
        }
        text += codeOf(QString(QChar(entry.key()))) + ' ' + codeOf(entry.value()) + '\n';
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

QByteArray plainToUnicode(const QByteArray& table) {
    QMap<uint, QString> characters = readTable(table);
    if (characters.isEmpty())
        return table;
    for (QString& text : characters) {
        // Qt names the first character that leads to a glyph; the space's is often the tabulator's too.
        if (text == u'\t')
            text = u' ';
        const QString plain = plainLetters(text);
        // Readers turn right-to-left text round glyph by glyph: a ligature of two letters would come out reversed, and
        // as the one sign that it has they know it.
        if (plain.size() == 1 || !isRightToLeft(plain.front()))
            text = plain;
    }
    // Qt says how many sections there are in front of the first, where it has written the line.
    qsizetype begin = table.lastIndexOf('\n', table.indexOf("beginbfrange")) + 1;
    const qsizetype end = table.lastIndexOf("endbfrange") + qsizetype(sizeof("endbfrange"));
    return table.left(begin) + section(characters) + table.mid(end);
}
