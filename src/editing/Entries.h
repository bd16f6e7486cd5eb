#pragma once

#include "explorer/ExplorerModel.h"

#include <vector>

/// The operations on the entries of the view that a model shows, on its selected node or rows. Each asks all its
/// questions through ui::asker(), writes one edit, and leaves every open explorer up to date and the model at the entry
/// that it was about. Where the view cannot be changed the operation says why. Failures are reported.
/// @return true if something was written

/// Makes an entry below the selected node.
bool newEntry(ExplorerModel& model);
/// Gives the selected node another name, and a description, in the language of the model's contents.
bool renameEntry(ExplorerModel& model);
/// Gives the selected node another description.
bool editDescription(ExplorerModel& model);
/// Deletes the selected node with all that stands below it: of a study its variables too, of a category its
/// assignments.
bool deleteEntry(ExplorerModel& model);
/// Deletes rows of the model's list: in a study view the variables themselves, in a category view their assignments.
/// @param rows indices into `list.rows`
bool deleteRows(ExplorerModel& model, const std::vector<int>& rows);
/// Puts the siblings of the selected node into another order.
bool showPosition(ExplorerModel& model);
