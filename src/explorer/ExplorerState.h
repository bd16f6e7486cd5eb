#pragma once

#include <QString>

/// What an explorer window knows of itself and lets others read: its view, its languages and what is
/// selected.
struct ExplorerState {
    qint16 ltreetype = 0;   ///< number of the view, 1 to 9
    bool bIsStudy = false;  ///< the view is a study view
    bool bELTree = false;   ///< tree and list show English contents
    QString sel_id;         ///< id of the node whose variables the list shows; empty before the first
    QString selectedKey;    ///< key of the node that is marked in the tree
    QString selectionTitle; ///< second title above the list: the text of that node
    qint32 lVarWindow = 0;  ///< panels in view: 0 none, 1 panel A, 2 panels A and B
    bool bOpenSecondVarWindow = false;
    bool bVarWindowForEnglishLanguage = false; ///< panel A shows English contents
    bool bELVV = false;                        ///< panel B shows English contents
    bool bShowAssignList = true;
    bool bShowAssignListB = true;
    bool bBoundVarWindow = false;
    bool bBoundTwinVarWindow = false;
    QString Tag; ///< number of the window among those of its view
};
