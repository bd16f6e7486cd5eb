#include "analysis/BatchReport.h"

#include "app/globals.h"

using namespace Qt::StringLiterals;

namespace {

QString counted(const QString& what, qsizetype count) {
    return TranslateText(what) + u' ' + QString::number(count);
}

/// What is said of each group of a table can be more than a screen has room for.
constexpr qsizetype mostLetters = 200;

QString shortened(const QString& words) {
    return words.size() > mostLetters ? words.left(mostLetters).trimmed() + u" …"_s : words;
}

/// An indented line for each, its words in one line; shortened where not the whole is asked for.
QStringList namedLines(const std::vector<BatchReport::Named>& all, qsizetype most, bool whole) {
    QStringList lines;
    for (const BatchReport::Named& one : all) {
        if (lines.size() == most) {
            lines << u"  "_s + counted(u"und weitere:"_s, static_cast<qsizetype>(all.size()) - most);
            break;
        }
        const QString words = one.words.simplified();
        lines << u"  "_s + one.variable + u": "_s + (whole ? words : shortened(words));
    }
    return lines;
}

} // namespace

QString BatchReport::summary(int mostNames) const {
    return outcomes(mostNames, false);
}

QString BatchReport::outcomes(qsizetype mostNames, bool whole) const {
    const bool tables = kind == BatchKind::Tables;
    QStringList lines;
    if (!ended.isEmpty())
        lines << TranslateText(u"Der Lauf wurde abgebrochen:"_s) + u' ' + ended.simplified();
    lines << study + u", "_s + counted(tables ? u"Tabellen gespeichert:"_s : u"Grafiken gespeichert:"_s, done.size());
    if (!failed.empty())
        lines << counted(u"Fehlgeschlagen (Gespeichertes bleibt):"_s, static_cast<qsizetype>(failed.size()))
              << namedLines(failed, mostNames, whole);
    if (!deleted.isEmpty())
        lines << counted(tables ? u"Tabellen gelöscht:"_s : u"Grafiken gelöscht:"_s, deleted.size());
    if (!withoutChart.isEmpty())
        lines << counted(u"Tabellen ohne Grafik:"_s, withoutChart.size());
    if (!notReached.isEmpty())
        lines << counted(u"Nicht erreicht:"_s, notReached.size());
    if (!remarks.empty())
        lines << counted(u"Mit Hinweis gespeichert:"_s, static_cast<qsizetype>(remarks.size()))
              << namedLines(remarks, mostNames, whole);
    return lines.join(u'\n');
}

QString BatchReport::text() const {
    QStringList lines{outcomes(static_cast<qsizetype>(failed.size() + remarks.size()), true)};
    const auto listUnder = [&lines](const QString& heading, const QStringList& names) {
        if (!names.isEmpty())
            lines << QString() << TranslateText(heading) + u' ' + names.join(u", "_s);
    };
    const bool tables = kind == BatchKind::Tables;
    listUnder(tables ? u"Tabellen gespeichert:"_s : u"Grafiken gespeichert:"_s, done);
    listUnder(tables ? u"Tabellen gelöscht:"_s : u"Grafiken gelöscht:"_s, deleted);
    listUnder(u"Tabellen ohne Grafik:"_s, withoutChart);
    listUnder(u"Nicht erreicht:"_s, notReached);
    return lines.join(u'\n');
}
