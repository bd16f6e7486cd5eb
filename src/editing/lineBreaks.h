#pragma once

#include <QString>

/// Texts of several lines on their way through an editor, which knows one kind of line break.

/// The text with "\n" for every line break: CR LF, CR, LF, and the separators of lines and paragraphs.
QString withPlainBreaks(const QString& text);

/// What was edited, with the line breaks that the text had before: those of the lines before and behind the change stay
/// as they were, new ones are like the first, or CR LF where there was none.
/// @param edited has "\n" for every line break
QString withBreaksOf(const QString& before, const QString& edited);
