#pragma once

#include "diagnostics/errors.h"
#include "editing/EditBasis.h"
#include "editing/EditRun.h"
#include "editing/ViewEntries.h"
#include "explorer/ExplorerModel.h"
#include "platform/ui/Asker.h"

#include <optional>

/// What the operations on entries share.
namespace entryEdit {

/// An entry as its row has it, in the language of the contents.
struct Content {
    QString name, description;
    bool group = false;
};
/// Nothing if there is no such entry.
std::optional<Content> contentOf(const ViewTables& tables, const QString& key);

/// Runs an operation on the selected node; without one there is nothing to do. A failure is reported.
template<class Operation>
bool onSelected(ExplorerModel& model, const QString& label, Operation&& operation) {
    const ProcedureScope scope(label);
    const ui::WaitPointer wait;
    bool written = false;
    const CatalogueNode* node = model.selectedNode();
    if (node)
        attempt([&] { written = operation(*node, ViewTables(model.state.ltreetype, model.state.bELTree)); });
    return written;
}

/// Says why the view's entries cannot be changed. @return false if they can
bool isRefused(int view);

/// What is stored of a description: an empty one is a blank.
QString storedDescription(const QString& text);

/// Whether a tree that was read before shows an entry as it is now; else the user is told, and the windows are read
/// anew.
bool isAsShown(const CatalogueNode& node, const ViewTables& tables);
/// Another program has changed what is shown: says so, and has the windows read anew.
void tellChanged();
void tellNotFound();

/// Goes to an entry: its variables are listed anew and the tree has the focus.
void goTo(ExplorerModel& model, const QString& nodeKey);

} // namespace entryEdit
