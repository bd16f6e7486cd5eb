#pragma once

#include "editing/richText.h"
#include "tables/ResultTable.h"

#include <QByteArray>
#include <QSizeF>
#include <QStringList>
#include <utility>
#include <variant>
#include <vector>

/// A text that wraps: a heading, a paragraph, a line of a list of names.
struct TextBlock {
    enum class Style {
        Chapter,  ///< heading of a chapter, by level; -1 the title on the cover
        Entry,    ///< heading of a variable: its name, then its label
        Caption,  ///< heading of a part within an entry
        Body,     ///< running text
        Question, ///< a question text
        Name,     ///< a line of names, indented by level
        Note,     ///< small: sources, notes on numbers
        Fault     ///< why something that belongs here is missing
    };
    Style style = Style::Body;
    int level = 0;
    QString name = QString(); ///< of an entry: stands in front, as does the id of a line of names
    std::vector<TextRun> runs;
    QString mark = QString(); ///< language of the text where several stand one below the other; empty else
    bool operator==(const TextBlock&) const = default;
};

/// What is said of an entry in pairs of a word and its answer.
struct FactsBlock {
    std::vector<std::pair<QString, QString>> facts;
    bool operator==(const FactsBlock&) const = default;
};

/// The values of a variable: valid ones first, the missing ones below them.
struct ValuesBlock {
    struct Row {
        QString code, label;
        bool missing = false;
        bool operator==(const Row&) const = default;
    };
    QString title;
    std::vector<Row> rows;
    bool operator==(const ValuesBlock&) const = default;
};

/// A table with its title above and its notes below.
struct TableBlock {
    QString title;
    ResultTable table;
    QStringList notes;
};

/// A picture as a stranger made it, still encoded.
struct PictureBlock {
    enum class Kind { Graph, ShowCard };
    Kind kind = Kind::Graph;
    QString title;
    QByteArray bytes;
    QSizeF size;         ///< in twips as it was kept; empty: that of its pixels at 96 to the inch
    QString explanation; ///< stands below
    QString fault;       ///< why there is none; said in its place
    bool operator==(const PictureBlock&) const = default;
};

using Block = std::variant<TextBlock, FactsBlock, ValuesBlock, TableBlock, PictureBlock>;
