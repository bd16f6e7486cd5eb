#pragma once

#include "editing/EditBasis.h"
#include "editing/EditRun.h"

#include <memory>
#include <vector>

namespace dao {
class Database;
}

/// What the last drag, or the last copy to the clipboard, was about: "Move" or "Copy".
extern QString MoveOrCopyMode;
/// What the clipboard's copy is of: "Kategorie"; empty without one.
extern QString ClipboardKind;
/// True at the beginning of a batch; off once the user wants to hear no more of duplicates.
extern bool ShowDuplicateMessage;

/// An entry that is remembered while the catalogue is edited. It is held by its key, so that it never leads to another,
/// and forgotten with the catalogue.
class RememberedEntry {
public:
    void set(const QString& key, bool english);
    void clear() { *this = RememberedEntry(); }
    /// Key of its node; empty without one.
    QString key() const;
    /// Whether its window shows the English contents.
    bool english() const { return english_; }

private:
    QString key_;
    bool english_ = false;
    std::weak_ptr<dao::Database> catalogue_;
};
/// The entry on which the mouse went down last, or that was copied last.
extern RememberedEntry SourceNode;
/// The entry that the clipboard holds: the mouse may go down on another since.
extern RememberedEntry ClipboardNode;

enum class TransferMode { Copy, Move };

/// An entry as a window shows it when the user is asked about it.
struct ShownEntry {
    QString key; ///< of its node
    QString text;
    bool english = false;
};

/// Whether two keys of nodes are those of one entry: views may share a table.
bool isSameEntry(const QString& key, const QString& other);

/// One row of a list on its way.
struct MovedVariable {
    QString entry; ///< key of the node in whose list it stands
    QString name, study;
};

/// Copies or moves variables to a category, from other categories or from studies. From a study it is always a copy,
/// and nothing is deleted. To be made before the user is asked whether it is wanted: what it reads then has to be so
/// still when it is written.
class VariableTransfer {
public:
    /// @param listed rows of the list that they come from, over which the progress goes @param basis what else the
    /// user's answers rest on @throws dao::Error if the catalogue cannot be read
    VariableTransfer(std::vector<MovedVariable> variables, int listed, const ShownEntry& target, TransferMode mode,
                     EditBasis basis);
    ~VariableTransfer();
    VariableTransfer(const VariableTransfer&) = delete;
    VariableTransfer& operator=(const VariableTransfer&) = delete;

    /// Asks about duplicates, tells what is gone, then writes all of it or nothing. A variable that is to be moved to
    /// where the target has it already leaves its entry all the same.
    EditOutcome run();

private:
    struct Rest;
    std::unique_ptr<Rest> rest_;
};

/// Copies or moves an entry with all that stands below it. To be made before the user is asked whether it is wanted.
class EntryTransfer {
public:
    /// @param basis what else the user's answers rest on @throws dao::Error if the catalogue cannot be read
    EntryTransfer(const ShownEntry& source, const ShownEntry& target, TransferMode mode, EditBasis basis);
    ~EntryTransfer();
    EntryTransfer(const EntryTransfer&) = delete;
    EntryTransfer& operator=(const EntryTransfer&) = delete;

    /// Asks for the numbers of copied studies, then writes all of it or nothing.
    EditOutcome run();
    /// Key of the node that the entry has where it is now; empty if nothing was written.
    QString newKey() const;

private:
    struct Rest;
    std::unique_ptr<Rest> rest_;
};
