#include "StatementFile.h"

#include <QFile>
#include <stdexcept>

using namespace Qt::StringLiterals;

std::vector<NumberedLine> readLines(const QString& fileName) {
    QFile file(QStringLiteral(VARIDEX_TEST_DATA "/") + fileName);
    if (!file.open(QFile::ReadOnly | QFile::Text))
        throw std::runtime_error("no file " + file.fileName().toStdString());
    std::vector<NumberedLine> lines;
    int number = 0;
    for (const QString& text : QString::fromUtf8(file.readAll()).split(u'\n')) {
        ++number;
        if (!text.trimmed().isEmpty() && !text.startsWith(u'#'))
            lines.push_back({text, number});
    }
    return lines;
}

std::vector<StatementLine> readStatementFile() {
    std::vector<StatementLine> statements;
    QString section, argument, source;
    for (const auto& [text, number] : readLines(u"statements.txt"_s)) {
        const QString note = text.mid(2);
        if (text.startsWith(u"= ") && !statements.empty()) {
            statements.back().rows = note.toInt();
        } else if (text.startsWith(u": ") && !statements.empty()) {
            statements.back().columns = note;
        } else if (text.startsWith(u"> ") && !statements.empty()) {
            statements.back().values.append(note);
        } else if (text.startsWith(u'[') && text.endsWith(u']')) {
            const QString heading = text.mid(1, text.size() - 2);
            section = heading.section(u' ', 0, 0);
            argument = heading.section(u' ', 1);
            source = section == u"error" ? argument.section(u' ', 1) : QString();
            if (section == u"error")
                argument = argument.section(u' ', 0, 0);
        } else {
            statements.push_back({section, argument, source, text, number, {}, {}, {}});
        }
    }
    return statements;
}
