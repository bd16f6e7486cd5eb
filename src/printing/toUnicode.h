#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <vector>

/// A text as it is typed: ligatures, positional forms of Arabic letters and radicals taken for ideographs become the
/// letters that they stand for. Full-width forms and all else stay.
QString plainLetters(const QString& text);

/// What a font's glyphs stand for, as plain letters.
struct PlainFont {
    QByteArray table; ///< from glyphs to characters, as a PDF has it
    /// Ligatures of two letters that are read from right to left: the table has the first for the ligature, and here
    /// is a glyph that has the second. Readers turn such text round glyph by glyph, so one glyph can't have both.
    QMap<QByteArray, QByteArray> splits;
};
/// @param table as Qt writes it; the same where it can't be read
/// @param glyphs number of the font's glyphs, 0 where it is not known
/// @param rare characters beyond the first 65,536, which Qt leaves out of the table, in the order in which they were
/// first drawn with the font; left out where others are missing as well
PlainFont plainFont(const QByteArray& table, int glyphs = 0, const std::vector<char32_t>& rare = {});

/// Puts the second letter of each ligature behind it, out of sight.
/// @param content of a page, as Qt writes it @param splits by name of font
QByteArray withSplits(const QByteArray& content, const QMap<QByteArray, QMap<QByteArray, QByteArray>>& splits);
