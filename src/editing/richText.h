#pragma once

#include <QString>
#include <optional>
#include <vector>

/// A stretch of text in one style. A line feed ends a paragraph, U+2028 a line within one.
struct TextRun {
    QString text;
    bool bold = false, italic = false;
    bool operator==(const TextRun&) const = default;
};

/// The text of a document in the Rich Text Format with its paragraphs and what is bold or italic in it; pictures,
/// fonts, notes on the document and instructions of fields are left out. Characters given by their code are those of
/// the code page that the document, or its table of fonts, names. Takes time by the length of the document, whatever it
/// holds.
/// @return nothing if it is none: it does not begin "{\rtf", its groups go deeper than any real document's, text
/// follows
///         behind it, or it is broken off before its first text
std::optional<std::vector<TextRun>> readRtf(const QString& document);

/// A description as it is shown: a document in the Rich Text Format by its text, anything else as it stands.
std::vector<TextRun> textRuns(const QString& description);
