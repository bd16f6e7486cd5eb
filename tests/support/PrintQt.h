#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

/// Lets a failing comparison show texts as people read them.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& texts, std::ostream* out) {
    PrintTo(texts.join(QStringLiteral(" | ")), out);
}
