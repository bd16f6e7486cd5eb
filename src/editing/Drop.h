#pragma once

#include "editing/CopyMove.h"
#include "explorer/ExplorerModel.h"

#include <optional>

/// What is to be copied or moved: an entry, or rows of a list.
struct DropSource {
    QString key; ///< of the entry, or of the one whose variables are listed
    bool isList = false;
    bool english = false;
    QString text;                         ///< of the entry, or the title above the list
    std::vector<MovedVariable> variables; ///< of a list
    int listed = 0;                       ///< rows that the list shows, selected or not

    /// @return nothing if the tree has no such node
    static std::optional<DropSource> entry(const CatalogueTree& tree, const QString& key, bool english);
    /// @param rows indexes into the list's rows @return nothing before an entry's variables are listed
    static std::optional<DropSource> rows(const ExplorerModel& model, const std::vector<int>& rows);
};

/// Where it is to go: a node of a tree, or the list of one.
struct DropTarget {
    const CatalogueTree* tree = nullptr;
    QString key; ///< of the node
    bool isList = false;
    bool english = false;
    ExplorerModel* window = nullptr; ///< that shows it, if one does

    static DropTarget in(ExplorerModel& model, const QString& key, bool isList);
};

/// Why something cannot be dropped somewhere.
struct Refusal {
    bool refused = false;
    QString text = QString(); ///< in the user's language; empty where nothing is said
};
Refusal refusalOf(const DropSource& source, const DropTarget& target);

/// Copies or moves after the user has said yes; a refusal is told. Windows show it then, the one it went to at its
/// entry. @return true if something was written
bool drop(const DropSource& source, const DropTarget& target, TransferMode mode);
