#pragma once

#include "explorer/CatalogueChange.h"

#include <QStringList>
#include <functional>

/// An edit of the catalogue whose questions have all been answered.
struct PlannedEdit {
    QString name;       ///< as the history calls it; see editName()
    QStringList tables; ///< all that are written
    /// Reads again what the answers rest on (see EditBasis); false if another program has changed it. Runs inside the
    /// transaction, before the first write.
    std::function<bool()> stillSo;
    /// Writes, asking the user nothing. Failures are thrown; false stops the edit and takes back what was written.
    /// What changed is added to `changes`, for the windows.
    std::function<bool(CatalogueChanges& changes)> write;
};

enum class EditOutcome {
    Done,
    Stopped, ///< by the user, or by write(), which has told why
    Changed, ///< by another program; the user was told, and the windows have been refreshed
    Failed   ///< and reported
};

/// Carries out an edit in one transaction, begun as a writer: all of it is written or nothing. After it every open
/// explorer shows the catalogue as it is now, and the history can take the edit back. An edit that can't be taken back,
/// since a table has no key, is begun only if the user wants it so; the history then ends with it.
EditOutcome perform(const PlannedEdit& edit);

/// Why nothing in the open catalogue can be edited, in words; empty if it can.
QString whyNotEditable();
/// Tells why nothing can be edited. @return true if it can
bool mayEdit();

/// Has every open explorer read anew what it shows, after another program has written.
void refreshExplorers();
