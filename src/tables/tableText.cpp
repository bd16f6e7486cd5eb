#include "tables/tableText.h"

#include "app/globals.h"
#include "platform/system/NumberFormat.h"

#include <algorithm>

using namespace Qt::StringLiterals;

std::vector<QStringList> tableRows(const ResultTable& table) {
    std::vector<QStringList> rows;
    rows.reserve(static_cast<size_t>(table.Rows()));
    for (int r = 0; r < table.Rows(); ++r) {
        QStringList cells;
        for (int c = 0; c < table.Cols(); ++c)
            cells << table.Cell(c, r);
        rows.push_back(cells);
    }
    return rows;
}

bool isFigure(const QString& text) {
    QString cell = text;
    cell.remove(u'%').remove(u'(').remove(u')').replace(u',', u'.');
    const QStringList parts = cell.split(u' ', Qt::SkipEmptyParts);
    return !parts.isEmpty() && std::all_of(parts.begin(), parts.end(), [](const QString& part) {
        bool number = false;
        part.toDouble(&number);
        return number;
    });
}

QString tagText(TableKind kind) {
    switch (kind) {
    case TableKind::None:
        break;
    case TableKind::Frequency:
        return u"Frequency"_s;
    case TableKind::Crosstab:
        return u"Crosstab"_s;
    case TableKind::Descriptives:
        return u"Descriptives"_s;
    case TableKind::Comparison:
        return u"Trend"_s;
    }
    return {};
}

QChar csvSeparator() {
    return NumberFormat::decimalSeparator() == u',' ? u';' : u',';
}

QString csvCell(const QString& text, CsvReader reader) {
    static const QString formulaSigns = u"=+-@\t\r"_s, quotedSigns = u"\"\n\r#"_s;
    QString cell = text;
    if (reader == CsvReader::Spreadsheet && !cell.isEmpty() && formulaSigns.contains(cell[0]) && !isFigure(cell))
        cell.prepend(u'\'');
    const bool quoted =
        cell.contains(csvSeparator()) || std::ranges::any_of(cell, [](QChar c) { return quotedSigns.contains(c); });
    return quoted ? u'"' + cell.replace(u'"', u"\"\""_s) + u'"' : cell;
}

QString csvText(const std::vector<QStringList>& rows, CsvReader reader) {
    QString text;
    for (const QStringList& row : rows) {
        QStringList cells;
        for (const QString& cell : row)
            cells << csvCell(cell, reader);
        text += cells.join(csvSeparator()) + u"\r\n"_s;
    }
    return text;
}

QString csvComments(const QStringList& lines) {
    QString text;
    for (const QString& line : lines)
        text += u"# "_s + line.simplified() + u"\r\n"_s;
    return text;
}

QString clipText(const ResultTable& table) {
    QStringList lines;
    for (const QStringList& row : tableRows(table))
        lines << row.join(u'\t');
    return lines.join(u'\r');
}

QString htmlTable(const QString& title, const ResultTable& table, const QStringList& notes) {
    QString html = u"<table border=\"1\" cellspacing=\"0\" cellpadding=\"3\">\n<caption>"_s + title.toHtmlEscaped() +
                   u"</caption>\n"_s;
    for (int r = 0; r < table.Rows(); ++r) {
        html += u"<tr>"_s;
        for (int c = 0; c < table.Cols(); ++c) {
            const QString text = table.shownCell(c, r);
            const bool right = table.CellAlignment(c, r) == ResultTable::RightTop || (r > 0 && c > 0 && isFigure(text));
            const QString tag = r < table.FixedRows || c < table.FixedCols ? u"th"_s : u"td"_s;
            html += u'<' + tag + u" align=\""_s + (right ? u"right"_s : u"left"_s) + u"\">"_s + text.toHtmlEscaped() +
                    u"</"_s + tag + u'>';
        }
        html += u"</tr>\n"_s;
    }
    html += u"</table>\n"_s;
    for (const QString& note : notes)
        html += u"<p><small>"_s + note.toHtmlEscaped() + u"</small></p>\n"_s;
    return html;
}

QString htmlPage(const QString& title, const ResultTable& table, const QStringList& notes) {
    return u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>"_s + title.toHtmlEscaped() +
           u"</title>\n</head>\n<body>\n"_s + htmlTable(title, table, notes) + u"</body>\n</html>\n"_s;
}

namespace {

QString joined(QStringList words) {
    words.removeAll(QString());
    return words.join(u' ');
}

} // namespace

QString percentWords(const ResultTable& table) {
    QString words;
    switch (table.percentOf) {
    case PercentOf::None:
        return {};
    case PercentOf::Columns:
        words = TranslateText(u"Spaltenprozente"_s);
        break;
    case PercentOf::Rows:
        words = TranslateText(u"Zeilenprozente"_s);
        break;
    case PercentOf::All:
        words = TranslateText(u"Gesamtprozente"_s);
        break;
    }
    words[0] = words[0].toUpper();
    return words;
}

QString percentBaseText(const ResultTable& table) {
    if (table.percentOf == PercentOf::None)
        return {};
    QStringList numbers;
    const size_t first = static_cast<size_t>(table.shape.columns.first);
    const bool heads = table.shortHeads.size() == first + table.bases.size();
    for (size_t i = 0; i < table.bases.size(); ++i) {
        const PercentBase& base = table.bases[i];
        numbers << joined({base.value, heads ? table.shortHeads[first + i] : base.label}) + u" = "_s + base.n;
    }
    const QString of = TranslateText(table.percentOfValid ? u"N (gültige Fälle):"_s : u"N (alle Fälle der Tabelle):"_s);
    return percentWords(table) + u", "_s + of + u' ' + numbers.join(u"; "_s);
}

QString groupsText(const ResultTable& table) {
    QStringList groups;
    for (const RowGroup& group : table.groups)
        if (!group.label.isEmpty() || group.missing)
            groups << table.shownCell(0, group.row);
    return groups.isEmpty() ? QString() : TranslateText(u"Gruppen:"_s) + u' ' + groups.join(u"; "_s);
}
