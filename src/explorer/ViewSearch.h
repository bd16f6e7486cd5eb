#pragma once

#include "explorer/CatalogueTree.h"
#include "explorer/ExplorerState.h"
#include "explorer/QuickFilter.h"
#include "explorer/VariableList.h"

#include <QByteArray>
#include <vector>

/// All variables of a view, to be found by words wherever they stand. They are read once, entry by entry in the order
/// of the tree, and kept as short as that allows; rows are made of those that are found.
class ViewSearch {
public:
    /// More rows than anyone reads are not made; the words can be made more.
    static constexpr int mostRows = 5000;

    /// Reads the variables of every node. Of a variable that stands in several categories the first counts. A failure
    /// is reported; after one, or when the user stops the reading, nothing is kept.
    /// @param list its columns are those of the rows
    void read(const CatalogueTree& tree, const ExplorerState& state, const VariableList& list);
    void clear();
    bool isRead() const { return read_; }
    int size() const { return static_cast<int>(ends_.size()); }

    /// Adds a row for each variable that has every word, the first `mostRows` of them; none without a word. A row's
    /// Position is its place in the view.
    /// @return how many have
    int find(const QString& words, std::vector<VariableRow>& rows) const;
    /// Key of the node in which a row was found; empty if there is none. @param position of the row
    QString nodeOf(int position) const;

private:
    struct Stretch {
        int end;      ///< one beyond the last row of the node
        QString node; ///< its key
    };

    QuickFilter texts_;
    QByteArray cells_;            ///< of the rows, one behind the other
    std::vector<qsizetype> ends_; ///< of each row's cells
    std::vector<Stretch> stretches_;
    bool read_ = false;

    enum class Outcome { Whole, Stopped, Failed };
    Outcome readAll(const CatalogueTree& tree, const ExplorerState& state, const VariableList& list);
    VariableRow rowAt(int position) const;
};
