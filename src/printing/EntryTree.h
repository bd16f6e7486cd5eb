#pragma once

#include "printing/ReportCatalogue.h"
#include "printing/ReportLanguages.h"

#include <vector>

/// The entries of a view in the order of their siblings, as a report goes through them: also those of a damaged
/// catalogue, each once.
class EntryTree {
public:
    struct Entry {
        QString key, parent;
        BothTexts name = {};
        QString year = {};    ///< of a study
        bool isGroup = false; ///< of a study view
        bool operator==(const Entry&) const = default;
    };
    /// An entry as it is met on the way down.
    struct Step {
        int entry = 0; ///< into entries()
        int depth = 0; ///< 0 directly below the start
    };

    EntryTree() = default;
    explicit EntryTree(std::vector<Entry> entries);
    /// @param table suffix of the view's tables @throws dao::Error
    static EntryTree read(ReportCatalogue& catalogue, const QString& table, bool study);

    const std::vector<Entry>& entries() const { return entries_; }
    const Entry& entry(int index) const { return entries_[static_cast<size_t>(index)]; }
    /// Place of the entry with a key, compared as the engine does; -1 if there is none.
    int find(const QString& key) const;
    /// What stands below an entry, or below the root for -1, each before what stands below it. An entry below itself
    /// is met once, and what is deeper than any real tree not at all.
    /// @param levels that are followed; 0: all
    std::vector<Step> below(int entry, int levels = 0) const;
    /// The entries that no way from the root leads to.
    std::vector<int> unreached() const;

private:
    std::vector<Entry> entries_;
    QHash<QString, int> byKey_;
    QHash<QString, std::vector<int>> children_; ///< by the parent's key
};
