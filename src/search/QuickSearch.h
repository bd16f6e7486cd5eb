#pragma once

#include <QString>
#include <vector>

class ExplorerModel;

/// The search within what an explorer shows. It has one text, which is that of every window and lives as long as the
/// program; it goes on from what is selected and ends at the last match.
namespace QuickSearch {

/// Where the keyboard is: the line of the quick filter counts as the list, whatever is neither as the tree.
enum class In { Tree, List };

const QString& text();
void setText(const QString& text);

/// Asks for the text, then goes to the next match. A cancelled prompt empties the text.
/// @param selectedRows of the list, as indexes into its rows, in the order in which they are shown
void mnuSuchen_Click(ExplorerModel& model, In in, const std::vector<int>& selectedRows);
/// Goes to the next match, in the list among the rows that the quick filter leaves in view. Without one the user is
/// told, and what is selected stays so.
void mnuWeitersuchen_Click(ExplorerModel& model, In in, const std::vector<int>& selectedRows);

} // namespace QuickSearch
