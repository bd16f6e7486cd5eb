#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

/// Makes the system database from the rows that are kept as text files.
///
/// A text file has one row a line, fields separated by a tab, UTF-8, a line break within a text as the two
/// characters "\n". Everything here returns what is wrong, one line a fault; nothing when all is well.

struct TextRow {
    QString german, english;
    QString origin; ///< file and line, for messages
};

struct ControlRow {
    QString formName, ctrlTyp, ctrlName, property;
    std::optional<int> index;
    QString german, english;
};

struct SystemRows {
    std::vector<TextRow> texts;
    std::vector<ControlRow> controls;
};

/// Reads rows "German, English".
QStringList readTextRows(const QString& file, SystemRows& rows);
/// Reads rows "FormName, CtrlTyp, CtrlName, Property, Index, German, English"; an empty index is Null.
QStringList readControlRows(const QString& file, SystemRows& rows);

/// Merges texts that the search takes for the same; two that differ in their English are a fault.
QStringList mergeTexts(std::vector<TextRow>& texts);

/// Makes the file, in place of one that is there, whole or not at all. Language is German, the start window
/// shows.
QStringList makeSystemDatabase(const QString& path, SystemRows rows);
