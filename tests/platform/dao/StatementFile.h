#pragma once

#include <QStringList>
#include <optional>
#include <vector>

/// One line of statements.txt with what is noted about it.
struct StatementLine {
    QString section;  ///< select, execute, criteria, error, unread or query
    QString argument; ///< the error's number, the source of a condition, the name of a stored query
    QString source;   ///< of a condition that must fail: the table that it is searched in
    QString text;
    int line = 0;
    std::optional<int> rows;
    QString columns;
    QStringList values;

    bool isCriteria() const { return section == u"criteria" || (section == u"error" && !source.isEmpty()); }
    /// A table or query by name alone is opened, but not parsed.
    bool isBareName() const { return !isCriteria() && !text.contains(u' '); }
    std::string where() const { return "statements.txt:" + std::to_string(line) + " " + text.toStdString(); }
};

/// All lines, in order.
std::vector<StatementLine> readStatementFile();

/// Lines of a file beside the tests, without comments and empty lines; `number` counts all lines.
struct NumberedLine {
    QString text;
    int number;
};
std::vector<NumberedLine> readLines(const QString& fileName);
