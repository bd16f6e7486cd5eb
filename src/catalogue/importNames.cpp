#include "catalogue/importNames.h"

#include "catalogue/importTexts.h"

#include <QRegularExpression>
#include <QSet>

using namespace Qt::StringLiterals;

namespace {

/// Longest name that the fields of a stored comparison hold.
constexpr int maxFieldLength = 50;

/// Words that mean something in a statement where a name stands.
const QSet<QString>& reservedWords() {
    static const QSet<QString> words = [] {
        const QString grammar =
            u"ADD ALL ALTER AND ANY AS ASC BETWEEN BY COLUMN CONSTRAINT CREATE DELETE DESC DISTINCT "
            u"DISTINCTROW "
            "DROP EQV EXISTS FALSE FROM FULL GROUP HAVING IMP IN INDEX INNER INSERT INTO IS JOIN KEY LEFT "
            "LIKE "
            "MOD NOT NULL ON OR ORDER OUTER PARAMETERS PERCENT PIVOT PRIMARY PROCEDURE RIGHT SELECT SET SOME "
            "TABLE TOP TRANSFORM TRUE UNION UNIQUE UPDATE VALUE VALUES WHERE WITH XOR"_s;
        const QString functions =
            u"AVG CDBL COUNT FIRST IIF LAST LEN MAX MID MIN NZ STDEV STDEVP SUM TRIM UCASE VAL VAR VARP"_s;
        const QStringList all = grammar.split(u' ') + functions.split(u' ');
        return QSet<QString>(all.begin(), all.end());
    }();
    return words;
}

/// Runs look for these words in the text of a statement, also inside a name.
QString wordThatCutsStatements(const QString& name) {
    for (const QString& word : {u"FROM"_s, u"JOIN"_s, u"WHERE"_s})
        if (name.contains(word, Qt::CaseInsensitive))
            return word;
    return {};
}

bool isPlainIdentifier(const QString& name) {
    static const QRegularExpression plain(u"\\A[A-Za-z][A-Za-z0-9_]*\\z"_s);
    return name.size() <= maxFieldLength && plain.match(name).hasMatch() && !reservedWords().contains(name.toUpper()) &&
           wordThatCutsStatements(name).isEmpty() && name.compare(u"dt_CaseID"_s, Qt::CaseInsensitive) != 0;
}

/// Quotes, brackets and separators would end the texts in which names stand.
QString withoutCutters(const QString& original) {
    QString name = original.trimmed();
    for (QChar& c : name)
        if (!c.isLetterOrNumber() && !c.isMark() && !c.isSurrogate() && !u"_.$#@-"_s.contains(c))
            c = u'_';
    return name;
}

QString folded(const QString& name) {
    return name.toCaseFolded();
}

} // namespace

QString studyNumberFault(const QString& number) {
    static const QRegularExpression allowed(u"\\A[A-Za-z][A-Za-z0-9]*\\z"_s);
    if (!allowed.match(number).hasMatch())
        return said(u"Studiennummer '%1': nur Buchstaben (ohne Umlaute) und Ziffern, am Anfang ein Buchstabe"_s,
                    u"Study number '%1': only letters (A to Z) and digits, a letter first"_s)
            .arg(number);
    // "_1" and more follow in the table names, which must fit where field names fit.
    if (number.size() > maxFieldLength - 6)
        return said(u"Studiennummer '%1': höchstens %2 Zeichen"_s, u"Study number '%1': at most %2 characters"_s)
            .arg(number)
            .arg(maxFieldLength - 6);
    if (const QString word = wordThatCutsStatements(number); !word.isEmpty())
        return said(u"Studiennummer '%1': '%2' darf nicht darin vorkommen, die Abfragen suchen nach diesem Wort"_s,
                    u"Study number '%1': '%2' must not be part of it, the queries look for that word"_s)
            .arg(number, word);
    return {};
}

std::vector<VariableNames> variableNames(const QStringList& originals, const QHash<QString, QString>& fieldsBefore) {
    std::vector<VariableNames> all;
    QSet<QString> wanted, taken;
    for (const QString& original : originals) {
        all.push_back({original, withoutCutters(original), {}});
        wanted.insert(folded(all.back().name));
    }
    for (size_t i = 0; i < all.size(); ++i) {
        QString& name = all[i].name;
        if (name.isEmpty())
            name = u'V' + QString::number(i + 1);
        const QString base = name;
        // A suffix must meet neither a name given before nor one that a later variable brings along.
        for (int n = 2; taken.contains(folded(name)) || (name != base && wanted.contains(folded(name))); ++n)
            name = base + u'_' + QString::number(n);
        taken.insert(folded(name));
    }
    QSet<QString> fields;
    for (VariableNames& names : all)
        if (isPlainIdentifier(names.name)) {
            names.field = names.name;
            fields.insert(folded(names.field));
        }
    // Stored queries and comparisons know a variable by its field.
    for (VariableNames& names : all) {
        const QString before = fieldsBefore.value(folded(names.name));
        if (!names.field.isEmpty() || !isPlainIdentifier(before) || fields.contains(folded(before)))
            continue;
        names.field = before;
        fields.insert(folded(before));
    }
    for (size_t i = 0; i < all.size(); ++i) {
        QString& field = all[i].field;
        if (!field.isEmpty())
            continue;
        field = u'V' + QString::number(i + 1);
        while (fields.contains(folded(field)))
            field += u'_';
        fields.insert(folded(field));
    }
    return all;
}

std::optional<size_t> positionOf(const std::vector<VariableNames>& names, const QString& wanted) {
    for (size_t i = 0; i < names.size(); ++i)
        if (names[i].original.compare(wanted, Qt::CaseInsensitive) == 0 ||
            names[i].name.compare(wanted, Qt::CaseInsensitive) == 0)
            return i;
    return std::nullopt;
}

bool isFilterWord(const QString& name) {
    static const QRegularExpression word(u"\\A[A-Za-z_-][A-Za-z0-9_-]*\\z"_s);
    const QString upper = name.toUpper();
    return word.match(name).hasMatch() && upper != u"AND"_s && upper != u"OR"_s && upper != u"NOT"_s;
}
