#pragma once

#include <QString>

/// A text as a list shows it in one line: a line break in it is a blank.
inline QString inOneLine(QString text) {
    text.replace(QLatin1String("\r\n"), QLatin1String(" "));
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator)
            c = QLatin1Char(' ');
    return text;
}
