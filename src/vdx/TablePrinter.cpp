#include "vdx/TablePrinter.h"

#include "tables/ResultTable.h"
#include "tables/tableText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Scripts whose characters fill two places on a terminal (East Asian Width W and F, Unicode Standard Annex 11).
bool isWide(char32_t c) {
    struct Range {
        char32_t first, last;
    };
    static constexpr Range wide[] = {{0x1100, 0x115F},  {0x2E80, 0x303E}, {0x3041, 0x33FF}, {0x3400, 0x4DBF},
                                     {0x4E00, 0x9FFF},  {0xA000, 0xA4CF}, {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},
                                     {0xFE30, 0xFE6F},  {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF},
                                     {0x20000, 0x3FFFD}};
    return std::any_of(std::begin(wide), std::end(wide), [c](Range r) { return c >= r.first && c <= r.last; });
}

/// Marks that let text after them run the other way (the Unicode property Bidi_Control).
bool turnsDirection(QChar c) {
    return c == u'\u061C' || c == u'\u200E' || c == u'\u200F' || (c >= u'\u202A' && c <= u'\u202E') ||
           (c >= u'\u2066' && c <= u'\u2069');
}

QJsonArray jsonRows(const std::vector<QStringList>& rows) {
    QJsonArray all;
    for (const QStringList& row : rows)
        all.append(QJsonArray::fromStringList(row));
    return all;
}

QString jsonLine(const QJsonObject& object) {
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + u'\n';
}

/// Columns of a result table that hold figures: those whose filled cells below the header are all numbers, but for
/// marks.
QList<int> figureColumns(const std::vector<QStringList>& rows, int headerRows) {
    QList<int> columns;
    if (rows.empty())
        return columns;
    for (int c = 0; c < rows[0].size(); ++c) {
        bool any = false;
        bool all = true;
        for (size_t r = static_cast<size_t>(headerRows); r < rows.size() && all; ++r) {
            const QString cell = rows[r].at(c).trimmed();
            if (cell.isEmpty() || cell == "X"_L1)
                continue;
            any = true;
            all = isFigure(cell);
        }
        if (any && all)
            columns << c;
    }
    return columns;
}

/// The cells as people are to read them.
std::vector<QStringList> shownRows(const ResultTable& table) {
    std::vector<QStringList> rows = tableRows(table);
    for (const RowGroup& group : table.groups)
        rows[static_cast<size_t>(group.row)][0] = table.shownCell(0, group.row);
    return rows;
}

} // namespace

QString oneLine(QString text) {
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator ||
            turnsDirection(c))
            c = u' ';
    return text;
}

QString cleanLines(const QString& text) {
    QStringList lines = text.split(u'\n');
    for (QString& line : lines)
        line = oneLine(line);
    return lines.join(u'\n');
}

int terminalWidth(const QString& text) {
    int width = 0;
    for (char32_t c : text.toUcs4()) {
        const QChar::Category category = QChar::category(c);
        if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || category == QChar::Other_Format)
            continue;
        width += isWide(c) ? 2 : 1;
    }
    return width;
}

void TablePrinter::print(const QString& title, const ResultTable& table, const QStringList& lines,
                         const QJsonObject& facts) {
    const std::vector<QStringList> rows = tableRows(table);
    switch (format_) {
    case Format::Json: {
        QJsonObject object{{u"title"_s, title},
                           {u"tag"_s, tagText(table.Tag)},
                           {u"fixedRows"_s, table.FixedRows},
                           {u"fixedColumns"_s, table.FixedCols},
                           {u"columns"_s, table.Cols()},
                           {u"rows"_s, table.Rows()},
                           {u"cells"_s, jsonRows(rows)}};
        if (!facts.isEmpty())
            object.insert(u"facts"_s, facts);
        write(jsonLine(object));
        break;
    }
    case Format::Csv:
        writeCsv(rows);
        if (!plain_)
            write(csvComments(QStringList{title} + lines));
        break;
    case Format::Text: {
        if (!first_)
            write(u"\n"_s);
        write(oneLine(title) + u"\n\n"_s);
        const std::vector<QStringList> shown = shownRows(table);
        writeAligned(shown, table.FixedRows, figureColumns(shown, table.FixedRows));
        if (plain_ || lines.isEmpty())
            break;
        write(u"\n"_s);
        for (const QString& line : lines)
            write(oneLine(line) + u'\n');
        break;
    }
    }
    first_ = false;
}

void TablePrinter::print(const QStringList& header, const std::vector<QStringList>& rows,
                         const QList<int>& rightAligned) {
    std::vector<QStringList> all{header};
    all.insert(all.end(), rows.begin(), rows.end());
    switch (format_) {
    case Format::Json:
        for (const QStringList& row : rows) {
            QJsonObject object;
            for (qsizetype c = 0; c < header.size(); ++c)
                object.insert(header[c], row[c]);
            write(jsonLine(object));
        }
        break;
    case Format::Csv:
        writeCsv(all);
        break;
    case Format::Text:
        writeAligned(all, 1, rightAligned);
        break;
    }
    first_ = false;
}

void TablePrinter::writeCsv(const std::vector<QStringList>& rows) {
    if (!first_)
        write(u"\r\n"_s);
    write(csvText(rows));
}

void TablePrinter::writeAligned(const std::vector<QStringList>& rows, int headerRows, const QList<int>& rightAligned) {
    std::vector<int> widths;
    for (const QStringList& row : rows) {
        widths.resize(std::max(widths.size(), static_cast<size_t>(row.size())));
        for (qsizetype c = 0; c < row.size(); ++c)
            widths[static_cast<size_t>(c)] = std::max(widths[static_cast<size_t>(c)], terminalWidth(oneLine(row[c])));
    }
    int number = 0;
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype c = 0; c < row.size(); ++c) {
            const QString cell = oneLine(row[c]);
            const QString filler(widths[static_cast<size_t>(c)] - terminalWidth(cell), u' ');
            line += (c ? u"  "_s : QString()) + (rightAligned.contains(c) ? filler + cell : cell + filler);
        }
        while (line.endsWith(u' '))
            line.chop(1);
        write(line + u'\n');
        if (++number == headerRows) {
            int total = 0;
            for (int width : widths)
                total += width + 2;
            write(QString(std::max(0, total - 2), u'-') + u'\n');
        }
    }
}

void TablePrinter::write(const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    if (std::fwrite(utf8.constData(), 1, static_cast<size_t>(utf8.size()), out_) != static_cast<size_t>(utf8.size()))
        failed_ = true;
}

bool TablePrinter::finish() {
    if (std::fflush(out_) != 0)
        failed_ = true;
    return !failed_;
}

void TablePrinter::printLines(const QStringList& lines) {
    for (const QString& line : lines) {
        if (format_ == Format::Csv)
            write(csvCell(line) + u"\r\n"_s);
        else if (format_ == Format::Json)
            write(jsonLine({{u"fact"_s, line}}));
        else
            write(oneLine(line) + u'\n');
    }
}
