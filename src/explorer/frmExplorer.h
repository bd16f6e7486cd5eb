#pragma once

#include "explorer/ExplorerModel.h"
#include "widgets/Form.h"

#include <vector>

/// The browsing window: the tree of a view, the variables of the selected entry, and up to two panels with one variable each.
class frmExplorer : public QWidget, public Form {
public:
    /// Creates and shows a window of a view of the open catalogue.
    static frmExplorer* OpenExplorerView(int view);

    explicit frmExplorer(int view);
    ~frmExplorer() override;

    ExplorerModel& model() { return model_; }
    const ExplorerModel& model() const { return model_; }
    int viewNumber() const override { return model_.state.ltreetype; }

    /// Where the keyboard was last in this window: what a command that reads the selection goes by.
    enum class Place { Tree, List, Elsewhere };
    Place place() const { return place_; }
    /// The selected rows in the order of the list, as indexes into model().list.rows.
    std::vector<int> selectedRows() const;

    /// Shows 0, 1 or 2 panels.
    void setPanels(int lVarWindow);
    /// Inverts the contents language of panel A.
    void switchPanelLanguage();
    /// Lays the window out anew from the places of its splitters and the options.
    void Form_Resize();
    /// Exchanges the fixed font and the proportional one in question texts, lists and names.
    void ChangeFont();

    void optionsApplied() override { Form_Resize(); }
    void refreshTitles() override;

private:
    ExplorerModel model_;
    Place place_ = Place::Tree;
};
