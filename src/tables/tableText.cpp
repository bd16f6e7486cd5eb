#include "tables/tableText.h"

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

QString csvCell(const QString& text) {
    if (!text.contains(u'"') && !text.contains(u',') && !text.contains(u'\n') && !text.contains(u'\r'))
        return text;
    QString quoted = text;
    return u'"' + quoted.replace(u'"', u"\"\""_s) + u'"';
}

QString csvText(const std::vector<QStringList>& rows) {
    QString text;
    for (const QStringList& row : rows) {
        QStringList cells;
        for (const QString& cell : row)
            cells << csvCell(cell);
        text += cells.join(u',') + u"\r\n"_s;
    }
    return text;
}

QString clipText(const ResultTable& table) {
    QStringList lines;
    for (const QStringList& row : tableRows(table))
        lines << row.join(u'\t');
    return lines.join(u'\r');
}

QString htmlTable(const QString& title, const ResultTable& table) {
    QString html = u"<table border=\"1\" cellspacing=\"0\" cellpadding=\"3\">\n<caption>"_s + title.toHtmlEscaped() +
                   u"</caption>\n"_s;
    for (int r = 0; r < table.Rows(); ++r) {
        html += u"<tr>"_s;
        for (int c = 0; c < table.Cols(); ++c) {
            const QString& text = table.Cell(c, r);
            const bool right = table.CellAlignment(c, r) == ResultTable::RightTop || (r > 0 && c > 0 && isFigure(text));
            const QString tag = r < table.FixedRows || c < table.FixedCols ? u"th"_s : u"td"_s;
            html += u'<' + tag + u" align=\""_s + (right ? u"right"_s : u"left"_s) + u"\">"_s + text.toHtmlEscaped() +
                    u"</"_s + tag + u'>';
        }
        html += u"</tr>\n"_s;
    }
    return html + u"</table>\n"_s;
}

QString htmlPage(const QString& title, const ResultTable& table, const QStringList& notes) {
    QString page = u"<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>"_s + title.toHtmlEscaped() +
                   u"</title>\n</head>\n<body>\n"_s + htmlTable(title, table);
    for (const QString& note : notes)
        page += u"<p><small>"_s + note.toHtmlEscaped() + u"</small></p>\n"_s;
    return page + u"</body>\n</html>\n"_s;
}
