#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <cstdio>
#include <vector>

class ResultTable;

/// Writes tables to standard output as text for a terminal, csv (RFC 4180, UTF-8) or json (one object a line).
class TablePrinter {
public:
    enum class Format { Text, Csv, Json };

    /// @param plain the cells alone in text and csv: nothing about them below
    TablePrinter(Format format, std::FILE* out, bool plain = false) : format_(format), plain_(plain), out_(out) {}

    Format format() const { return format_; }
    /// A result table with its title, and what it says of itself: as lines below it in text, as comment lines with the
    /// title behind the cells in csv, as "facts" in json.
    void print(const QString& title, const ResultTable& table, const QStringList& lines = {},
               const QJsonObject& facts = {});
    /// Plain sentences: as they are in text, one cell a row in csv, an object with "fact" a line in json.
    void printLines(const QStringList& lines);
    /// A plain list: a header and rows of as many cells. @param rightAligned columns that hold numbers, in text
    void print(const QStringList& header, const std::vector<QStringList>& rows, const QList<int>& rightAligned = {});
    /// True when everything reached the output; a full disk or a closed pipe shows here at the latest.
    bool finish();

private:
    Format format_;
    bool plain_;
    std::FILE* out_;
    bool first_ = true;
    bool failed_ = false;

    void write(const QString& text);
    void writeCsv(const std::vector<QStringList>& rows);
    void writeAligned(const std::vector<QStringList>& rows, int headerRows, const QList<int>& rightAligned);
};

/// A text that stays on its line on a terminal and gives it no commands: blanks in place of control characters.
QString oneLine(QString text);
/// The same for a text that may have several lines.
QString cleanLines(const QString& text);

/// Columns that a text takes on a terminal: combining marks none, wide characters two.
int terminalWidth(const QString& text);
