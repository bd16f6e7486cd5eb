#pragma once

#include "explorer/CatalogueTree.h"
#include "platform/dao/Database.h"

#include <QString>
#include <functional>
#include <vector>

/// A category that a variable is assigned to.
struct Assignment {
    QString key; ///< of the category's node: letter of the view, then its id
    QString text;
    int icon = 0;
};

/// Lists the categories of a variable in every category view of a catalogue. Failures are reported.
/// @param english names of the categories in English
void Fill(std::vector<Assignment>& list, const dao::DatabasePtr& catalogue, const QString& study,
          const QString& variable, bool english);

/// The statement for the categories that variables of a study have in a view, in the order of their siblings:
/// fi_VariableNo, dt_IndicatorName, dt_EnIndicatorName.
/// @param table suffix of the view's tables
QString categoriesStatement(const QString& table, const QString& study, const QStringList& variables);

/// Where a double-click on an assignment leads.
struct Jump {
    enum class To {
        Nowhere,     ///< "Zuordnung nicht gefunden"
        NodeHere,    ///< the node is in the tree of the window itself
        OtherWindow, ///< a window of the view is open
        NewWindow    ///< a window of the view is to be opened
    };
    To to = To::Nowhere;
    int view = 0;
};

/// @param key       of the assignment
/// @param ownView   view of the window in which it was clicked
/// @param isViewOpen answers whether a window of a view is open
Jump jumpOf(const QString& key, int ownView, const CatalogueTree& ownTree, const std::function<bool(int)>& isViewOpen);
