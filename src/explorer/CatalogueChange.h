#pragma once

#include <QString>
#include <optional>
#include <vector>

/// What a tree shows of an entry in one language of the contents.
struct EntryText {
    QString name;
    bool described = false; ///< has a description other than one blank
};

/// A change of one view's entries that stands in the catalogue already, as every open explorer of the view takes it
/// over. Keys are those of nodes, with the view's letter.
struct CatalogueChange {
    enum class Kind {
        Added,   ///< an entry without anything below it
        Renamed, ///< name or description, in one language or both
        Moved,   ///< an entry with all that stands below it
        Removed, ///< an entry with all that stood below it
        Ordered, ///< siblings, or so much that the trees are to be read anew
        Rows     ///< the variables of an entry; without a key those of any
    };

    Kind kind = Kind::Rows;
    int view = 0;
    QString key = QString();
    QString parentKey = QString(); ///< Added, Moved: the parent from now on
    int place = -1;                ///< Added, Moved: among the siblings as they are then, from 0; -1 behind the last
    /// Added: without a text for its language a window shows the entry with an empty one. Renamed: a language without
    /// a text has not changed.
    std::optional<EntryText> original = std::nullopt, english = std::nullopt;
};
using CatalogueChanges = std::vector<CatalogueChange>;

/// Tells every open explorer model of changes that were written, in their order.
void announce(const CatalogueChanges& changes);
