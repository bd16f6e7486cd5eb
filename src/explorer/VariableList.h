#pragma once

#include "explorer/CatalogueTree.h"
#include "explorer/ExplorerState.h"
#include "platform/dao/Recordset.h"

#include <QString>
#include <vector>

struct ListColumn {
    QString Key; ///< VN, SN, WE, SY, VL, EL; a window may add ST, QT, EQ
    int Width;   ///< twips
    QString Heading;
    /// Who has set the width; without anybody the list makes it fit its texts.
    enum class By { Nobody, Option, User } widthBy = By::Nobody;
};

/// One variable: its name, and a text for each further column of the list.
struct VariableRow {
    static constexpr int smallIcon = 24;

    QString Text;
    std::vector<QString> SubItems;
    int Position = 0; ///< place in the statement's order

    /// Text of a column, 0 being the name; sub-item 1 is the study number.
    const QString& cell(int column) const;
};

/// The variables of the selected entry: columns, rows and how the user has sorted them.
class VariableList {
public:
    std::vector<ListColumn> columns;
    std::vector<VariableRow> rows;
    QString Tag;          ///< key of the node whose variables are shown
    int selectedRow = -1; ///< -1 without a row
    /// Rows in view, as indexes into rows, in their order: all of them, or those that a filter leaves.
    std::vector<int> shown;
    /// What the rows were read from; it stays open, so that more of a variable is read without another query.
    dao::RecordsetPtr recordset;

    int sortKey = 0; ///< column
    bool descending = false;
    bool sorted = false;

    /// Makes the columns anew; the first label column is that of the contents' language.
    void makeColumns(bool english);
    /// Place of a column, -1 if there is none.
    int columnOf(const QString& key) const;

    /// Ascending at first, reversed by a second click; in the first column a third click brings back the
    /// statement's order.
    void headerClicked(int column);
    /// Orders the rows by what is set, equal ones as they stand in the statement; unsorted is the statement's
    /// order.
    void sort();
    /// Keeps in view the rows that match, by their Position; nothing brings all back. A row that is selected
    /// and goes out of view is unselected.
    void filterBy(std::vector<bool> matching);
    /// Place of a row among those in view, -1 if it is out of view.
    int placeOf(int row) const;

private:
    std::vector<bool> matching_;

    void findShown();
};

/// Makes rows of a list's columns from the records of a recordset, its fields looked up once.
class RowReader {
public:
    RowReader(const VariableList& list, const dao::Recordset& recordset, bool english);
    VariableRow current(int position) const;

private:
    const dao::Recordset& recordset_;
    int name_;
    std::vector<int> places_; ///< of each further column's field; -1 where there is none
};

/// What the window does while its list is being filled; without a window there is nothing to do.
class ListviewHost {
public:
    virtual ~ListviewHost() = default;
    /// Title, mark in the tree and tag of the list changed.
    virtual void nodeShown(const CatalogueNode&) {}
    /// The rows, their order, the selected one and perhaps the width of the first column are new; the node is to be
    /// marked again.
    virtual void listFilled() {}
    virtual void clearPanelA() {}
    virtual void itemClick() {}
    virtual void clearAssignmentList() {}
    /// Tree, list and panels change in place until changed(): where one stands in them is where one stands afterwards.
    virtual void changing() {}
    virtual void changed() {}
    /// The node is to be in view and selected, with the keyboard on the tree.
    virtual void nodeRevealed(const CatalogueNode&) {}
    /// The node is to be in view, and nothing else is to change.
    virtual void nodeBroughtIntoView(const CatalogueNode&) {}
    /// The row alone is to be selected, in view and in panel A, with the keyboard on the list.
    virtual void rowRevealed(int /*row*/) {}
    virtual void focusTree() {}
    virtual void focusList() {}
};

/// Fills the list with the variables of a node and remembers the node in the state. Without `force` a node
/// that is shown already changes nothing. Failures are reported.
void Update_Listview(const CatalogueNode& node, bool force, ExplorerState& state, VariableList& list,
                     ListviewHost& host, int view);

/// The statement that lists the variables of a node, with or without the table of variable groups.
QString studyVariablesStatement(const QString& table, const QString& id, bool varGroups);
QString categoryVariablesStatement(const QString& table, const QString& studyTable, const QString& id, bool varGroups);
/// Either, by the kind of view.
QString nodeVariablesStatement(bool study, int view, const QString& id, bool varGroups);
/// The same variables with no more of each than a search needs.
QString searchedVariablesStatement(bool study, int view, const QString& id, bool varGroups);
