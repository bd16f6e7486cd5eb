#pragma once

#include "explorer/ExplorerModel.h"

#include <vector>

/// Copying and moving without the mouse, with the refusals and questions of a drag. Failures are reported.
/// @return true if something was written

/// Has the user choose an entry of any view, and copies or moves the selected node below it.
bool copyTo(ExplorerModel& model);
bool moveTo(ExplorerModel& model);
/// The same for rows of the list. @param rows indexes into `list.rows`
bool copyTo(ExplorerModel& model, const std::vector<int>& rows);
bool moveTo(ExplorerModel& model, const std::vector<int>& rows);

/// Puts the selected node on the clipboard, to be copied or moved by one of the next two. A list has no clipboard.
void rememberSource(const ExplorerModel& model);
/// Why the clipboard's entry cannot be brought to the selected node; empty if it can.
QString whyNotHere(const ExplorerModel& model);
bool copyHere(ExplorerModel& model);
bool moveHere(ExplorerModel& model);
