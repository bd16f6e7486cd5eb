#pragma once

#include "explorer/CatalogueChange.h"

#include <QStringList>
#include <functional>

/// An edit of the catalogue whose questions have all been answered.
struct PlannedEdit {
    QString name;       ///< as the history calls it: "Löschen "…""
    QStringList tables; ///< that are written
    /// Reads again what the answers rest on; false if another program has changed it. Runs inside the transaction,
    /// before the first write.
    std::function<bool()> stillSo;
    /// Writes, asking the user nothing. Failures are thrown; false stops the edit and takes back what was written.
    /// What changed is added to `changes`, for the windows.
    std::function<bool(CatalogueChanges& changes)> write;
};

enum class EditOutcome {
    Done,
    Stopped, ///< by write(), which has told why or was told by the user
    Changed, ///< by another program; the user was told, and the windows have been refreshed
    Failed   ///< and reported
};

/// Carries out an edit in one transaction, begun as a writer: all of it is written or nothing. After it every open
/// explorer shows the catalogue as it is now, and the history can take the edit back.
EditOutcome perform(const PlannedEdit& edit);
