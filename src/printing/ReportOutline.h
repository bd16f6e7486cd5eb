#pragma once

#include "printing/Block.h"

#include <QString>
#include <vector>

/// One entry of a report: what the contents, the index, the bookmarks and the running heads know of it. Its blocks are
/// read apart.
struct ReportEntry {
    enum class Kind {
        Chapter,  ///< a study, a group of variables, a category: its blocks are its heading and what is said of it
        Variable, ///< a variable
        Text      ///< anything else: a description, names, a table, a graph
    };
    Kind kind = Kind::Text;
    int level = 0;        ///< depth in contents and bookmarks; a variable stands one below its chapter
    QString name;         ///< of a variable, for index and running heads; of a study's chapter its number; empty else
    QString title;        ///< a chapter's heading or a variable's label; empty: not in contents and bookmarks
    bool newPage = false; ///< begins a page
    bool operator==(const ReportEntry&) const = default;
};

/// What is in a report and in which order, known before any of it is laid out.
struct ReportOutline {
    QString title;            ///< of the document
    std::vector<Block> cover; ///< empty: there is no cover
    std::vector<ReportEntry> entries;

    /// Number of entries that are variables.
    int variables() const;
};

/// Where the blocks of a report's entries come from. Blocks of an entry stay the same however often they are read.
class BlockSource {
public:
    virtual ~BlockSource() = default;
    /// Entries from the first on whose blocks can be had by now.
    virtual int ready() const = 0;
    /// @param entry from 0, below ready()
    virtual std::vector<Block> blocks(int entry) const = 0;
};
