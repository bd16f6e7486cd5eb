#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// A chart as it is kept with its variable: the picture of the plot alone, and what stands beside it.
struct StoredGraph {
    QString title;               ///< of one that was read what stands in front of its first quote
    float width = 0, height = 0; ///< in twips
    QString explanation;         ///< pairs of code and label that the plot had no room for; empty for none
    QByteArray jpeg;

    bool operator==(const StoredGraph&) const = default;
};

/// What a graph is stored as beside its picture: title, width, height, explanation. Numbers in the process's decimal
/// separator, 7 significant digits.
QString BuildGraphString(const StoredGraph& graph);

/// What stands beside a stored picture, without its bytes; numbers with either separator. Where the text is damaged
/// what could be read in front of the damage. @param whole false then
StoredGraph readGraphLayout(const QString& layout, bool* whole = nullptr);
/// A graph from both of its fields; nothing where one of them is damaged. Whether the bytes are a picture is seen when
/// it is read (see readPicture()).
std::optional<StoredGraph> readStoredGraph(const QString& memo, const QString& layout);

/// Bytes as the string that a memo field holds, one character for each.
QString memoOf(const QByteArray& bytes);
/// The bytes of such a string; also of one that took bytes 80 to 9F for those of Windows-1252. Nothing where a
/// character is no byte.
std::optional<QByteArray> bytesOf(const QString& memo);
