#include "catalogue/QueryCheck.h"

#include "catalogue/importTexts.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace archive {

namespace {

bool hasWord(const QString& text, const QString& word) {
    return text.contains(QRegularExpression(u"\\b%1\\b"_s.arg(word), QRegularExpression::CaseInsensitiveOption));
}

/// The word that the search for tables finds: from five characters behind the FROM's start to the next ";",
/// blank or ",".
QString wordBehindFrom(const QString& query, qsizetype from) {
    const QString rest = query.mid(from + 5);
    static const QRegularExpression end(u"[; ,]"_s);
    const qsizetype length = rest.indexOf(end);
    return length < 0 ? rest : rest.left(length);
}

} // namespace

QStringList queryWarnings(const QString& query, const QStringList& caseTables) {
    QStringList warnings;
    const qsizetype from = query.indexOf(u"FROM"_s, 0, Qt::CaseInsensitive);
    if (from < 0)
        return {said(u"kein FROM: gewichtet meldet die Auswertung 'Fehler in Abfrage'"_s,
                     u"no FROM: a weighted analysis reports 'Error in query'"_s)};
    if (query.contains(QRegularExpression(u"[()\\[\\]]"_s)))
        warnings << said(u"Klammern: die Tabellen werden nicht gefunden, ein Gewicht lässt sich nicht anfügen"_s,
                         u"brackets: the tables are not found, a weight cannot be added"_s);
    for (const QString& clause : {u"WHERE"_s, u"GROUP"_s, u"HAVING"_s, u"ORDER"_s, u"UNION"_s})
        if (hasWord(query, clause))
            warnings
                << said(u"%1: ein Gewicht lässt sich nicht anfügen"_s, u"%1: a weight cannot be added"_s).arg(clause);
    QString behind = query.mid(from + 4);
    behind.truncate(behind.indexOf(u';') < 0 ? behind.size() : behind.indexOf(u';'));
    const QString table = wordBehindFrom(query, from);
    if (!caseTables.contains(table)) {
        if (warnings.isEmpty())
            warnings
                << said(u"hinter dem ersten FROM und einem Leerzeichen steht keine Tabelle der Studie, sondern '%1'"_s,
                        u"behind the first FROM and one blank stands no table of the study but '%1'"_s)
                       .arg(table);
        return warnings;
    }
    if (hasWord(behind, u"JOIN"_s) || behind.contains(u',')) {
        warnings << said(u"mehr als eine Tabelle: ein Gewicht lässt sich nicht anfügen"_s,
                         u"more than one table: a weight cannot be added"_s);
        return warnings;
    }
    if (warnings.isEmpty() && behind.trimmed() != table)
        warnings << said(u"hinter der Tabelle '%1' steht noch etwas: ein Gewicht lässt sich nicht anfügen"_s,
                         u"something stands behind the table '%1': a weight cannot be added"_s)
                        .arg(table);
    for (const QString& other : caseTables)
        if (other != table && query.contains(other))
            warnings << said(u"der Text enthält den Namen der Tabelle '%1': ein Gewicht aus ihr wird falsch angefügt"_s,
                             u"the text holds the name of the table '%1': a weight in that table is added wrongly"_s)
                            .arg(other);
    return warnings;
}

} // namespace archive
