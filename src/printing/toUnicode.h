#pragma once

#include <QByteArray>
#include <QString>

/// A text as it is typed: ligatures, positional forms of Arabic letters and radicals taken for ideographs become the
/// letters that they stand for. Full-width forms and all else stay.
QString plainLetters(const QString& text);

/// The table from a font's glyphs to characters, as Qt writes it, with characters that can be searched and copied.
/// Unchanged where it can't be read.
QByteArray plainToUnicode(const QByteArray& table);
