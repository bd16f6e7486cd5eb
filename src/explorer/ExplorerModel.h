#pragma once

#include "explorer/AssignmentList.h"
#include "explorer/CatalogueChange.h"
#include "explorer/CatalogueTree.h"
#include "explorer/ExplorerState.h"
#include "explorer/ListStanding.h"
#include "explorer/PanelPages.h"
#include "explorer/QuickFilter.h"
#include "explorer/VariableList.h"
#include "explorer/VariablePanel.h"
#include "explorer/ViewSearch.h"

#include <optional>

/// One view of the open catalogue as an explorer shows it, without the window: its state, its tree, its list and its
/// two panels.
class ExplorerModel : private ListviewHost {
public:
    using Step = VariablePanel::Step;

    ExplorerState state;
    CatalogueTree tree;
    VariableList list;
    VariablePanel panelA{VariablePanel::Place::A}, panelB{VariablePanel::Place::B};
    std::vector<Assignment> DBList1, DBList1_B;
    PanelPages pagesA{VariablePanel::Place::A}, pagesB{VariablePanel::Place::B};

    /// @param host the window that shows this model; not owned
    explicit ExplorerModel(ListviewHost* host = nullptr);
    ~ExplorerModel() override;
    ExplorerModel(const ExplorerModel&) = delete;
    ExplorerModel& operator=(const ExplorerModel&) = delete;

    /// The models that live, in the order of their making.
    static const std::vector<ExplorerModel*>& open();
    /// Takes over changes of the catalogue that were written, as far as they concern what is shown here: the tree in
    /// place where that gives what reading it anew would, list and panels where their rows may be others. What is
    /// expanded and selected, and where one stands in tree and list, stays so, by key. Where the selected node has
    /// gone, the next of its siblings is selected, else the one before, else the parent.
    void take(const CatalogueChanges& changes);
    /// Reads the tree anew; else as take().
    void rebuild();
    /// Reads the rows of the list and the result sets of the panels anew; else as take().
    void refreshPanels();
    /// Selects a node after an edit: in view, with the keyboard on the tree, its variables read anew.
    /// @return false if the tree has no node of that key
    bool reveal(const QString& key);
    /// Scrolls a node into view. @return false if the tree has no node of that key
    bool bringIntoView(const QString& key);
    /// Selects a row of the list alone, in view, with the keyboard on the list, and shows its variable.
    /// @param row index into the rows @return false if it is none of those in view
    bool revealRow(int row);
    /// Puts the keyboard on the tree or the list.
    void focusTree() override { host_->focusTree(); }
    void focusList() override { host_->focusList(); }
    /// Entries of the view that no way leads to, as of the last reading of the tree.
    const std::vector<UnreachedEntry>& unreached() const { return unreached_; }

    /// Begins with a view, in the contents' language that is in force, and builds its tree.
    void open(int view);
    /// The node that a row of the list is of: the selected one, or where the filter found it in the view.
    const CatalogueNode* nodeOf(const VariableRow& row) const;
    /// Shows the variables of a node. @return false if the tree has no node of that key
    bool select(const QString& key, bool force = false);
    /// Node whose variables are shown; null before the first.
    const CatalogueNode* selectedNode() const { return tree.find(state.selectedKey); }

    /// Fills panel A for a row of the list and, if wanted, its assignments and pages; another variable's go else.
    /// @return false if nothing could be shown
    bool showRow(int row, bool assignments);
    /// Fills panel B and its assignments for a row of the list; opens panel A's place if no panel is in view.
    bool showRowInB(int row);
    /// Moves panel B within its own result set. @return false without a record
    bool moveB(Step step);
    /// Fills the assignments and the pages of a panel with those of the variable that it shows, if it shows one.
    void fillA();
    void fillB();
    /// Inverts the contents' language of panel B and what it shows. @return false if it shows nothing
    bool switchLanguageB();
    /// Whether fillA() has filled what panel A shows beside the variable itself.
    bool assignmentsShown() const { return assignmentsShown_; }
    /// Place among the rows in view where a step of panel A leads, -1 if it leads nowhere.
    /// @param current place of the list's current row, -1 without one
    int stepInList(Step step, int current) const;

    const QString& filter() const { return filter_; }
    /// Narrows the list to the variables with these words in name, labels or question texts; empty shows all. An entry
    /// without variables of its own lists those of the whole view that have the words.
    void setFilter(const QString& words);
    /// Gets the texts for the filter ready, which the first setFilter() would do otherwise.
    void prepareFilter();
    /// True while there is nothing in the list to be narrowed, so that the filter searches the view: the rows are none
    /// of the selected node's.
    bool searchesView() const { return !ownRows_; }
    /// Numbers of variables that the filter found and that it went through.
    int found() const;
    int searched() const;

private:
    ListviewHost none_;
    ListviewHost* host_;
    QuickFilter texts_;
    ViewSearch search_;
    bool ownRows_ = false; ///< the selected node has variables
    int found_ = 0;        ///< in the view
    QString filter_;
    QString filteredId_;
    std::vector<UnreachedEntry> unreached_;
    bool assignmentsShown_ = false;        ///< of the variable in panel A
    int changing_ = 0;                     ///< changes in place under way
    std::optional<ListStanding> standing_; ///< in the list, while its rows are read anew

    /// What is still to be done once all changes were taken over.
    struct Pending {
        bool tree = false, left = false, rows = false, panels = false, assignments = false, title = false;
    };
    class Change;
    void apply(const CatalogueChange& change, Pending& pending);
    bool changesInPlace() const;
    bool readsInPlace(const CatalogueNode& parent, const CatalogueNode* top) const;
    bool insert(const CatalogueChange& change);
    bool rename(const CatalogueChange& change, Pending& pending);
    bool move(const CatalogueChange& change);
    bool remove(const QString& key, Pending& pending);
    void standAt(const QString& key, Pending& pending);
    void finish(Pending pending);
    void readTree(Pending& pending);
    void readUnreached();
    void refreshList();
    void refreshA();
    void refreshB();
    void refreshAssignments();
    void refreshTitles();

    void searchView();
    void nodeShown(const CatalogueNode& node) override { host_->nodeShown(node); }
    void listFilled() override;
    void clearPanelA() override;
    void itemClick() override;
    void clearAssignmentList() override;
};
