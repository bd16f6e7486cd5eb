#include "diagnostics/engineWords.h"

#include "app/globals.h"

using namespace Qt::StringLiterals;

namespace {

struct Words {
    int number;
    QStringView german; ///< "%1" is what it is about
};

constexpr Words known[] = {
    {6, u"Überlauf"},
    {11, u"Division durch null"},
    {13, u"Typen unverträglich"},
    {3061, u"Ein Name ist unbekannt: \"%1\""},
    {3070, u"Ein Name ist weder als Feld noch als Ausdruck bekannt: \"%1\""},
    {3075, u"Syntaxfehler im Ausdruck: %1"},
    {3077, u"Syntaxfehler im Ausdruck: %1"},
    {3078, u"Eine Tabelle oder Abfrage ist nicht zu finden: \"%1\""},
    {3079, u"Ein Feldname steht für Felder mehrerer Tabellen: \"%1\""},
    {3085, u"Eine Funktion ist unbekannt: \"%1\""},
    {3360, u"Die Abfrage ist zu umfangreich: \"%1\""},
    {3464, u"Die Datentypen einer Bedingung passen nicht zueinander: %1"},
};

} // namespace

QString engineWords(const dao::Error& error) {
    QString words;
    for (const Words& one : known)
        if (one.number == error.number())
            words = one.german.toString();
    if (words.contains("%1"_L1))
        words = error.detail().isEmpty() ? QString() : words.arg(error.detail());
    return QString::number(error.number()) + u": "_s +
           (words.isEmpty() ? error.description() : said(words, error.description()));
}
