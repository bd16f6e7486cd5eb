#pragma once

#include "explorer/CatalogueChange.h"
#include "platform/dao/ChangeSet.h"

#include <QSet>
#include <map>

/// Finds in rows that were written what open explorers have to take over: entries that are there, gone, elsewhere or
/// otherwise named, and whose variables are others.
class ChangedEntries {
public:
    void add(const dao::ChangedRow& row);
    /// What another program has written meanwhile may hang on an entry that is gone now, or an entry may have come back
    /// to where nothing leads any more: no tree would show either. Reads the catalogue as changes() does.
    /// @throws dao::Error 3197 such a row, and others
    void requireWhole() const;
    /// Reads texts and places from the catalogue, which must hold the rows by now. @throws dao::Error
    CatalogueChanges changes() const;

private:
    struct Entry {
        dao::ChangedRow::Kind kind = dao::ChangedRow::Kind::Changed;
        QString id, parentBefore;
        EntryText original, english; ///< of an added one
        bool moved = false, renamed = false, ordered = false;
    };
    struct OfView {
        std::vector<Entry> entries;
        QSet<QString> assigned; ///< ids of entries whose assignments are others; an empty one for any
    };
    std::map<int, OfView> views_;
    bool variables_ = false; ///< of studies, or what lists show of studies

    static Entry entryOf(const dao::ChangedRow& row, bool study);
    static void addEntries(CatalogueChanges& changes, int view, const std::vector<Entry>& entries);
    void addRows(CatalogueChanges& changes) const;
};
