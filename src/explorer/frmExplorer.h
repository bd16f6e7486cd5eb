#pragma once

#include "explorer/ExplorerLayout.h"
#include "explorer/ExplorerModel.h"
#include "widgets/Form.h"

#include <QTimer>
#include <vector>

class ExplorerPages;
class ExplorerPanel;
class QAction;
class QPlainTextEdit;
class QSplitter;
class frmExplorerList;
class frmExplorerTree;

/// The browsing window: the tree of a view, the variables of the selected entry, and up to two panels with one variable
/// each.
class frmExplorer : public QWidget, public Form, private ListviewHost {
public:
    /// Creates and shows a window of a view of the open catalogue.
    static frmExplorer* OpenExplorerView(int view);

    explicit frmExplorer(int view);
    ~frmExplorer() override;

    ExplorerModel& model() { return model_; }
    const ExplorerModel& model() const { return model_; }
    int viewNumber() const override { return model_.state.ltreetype; }

    /// Where the keyboard was last in this window: what a command that reads the selection goes by. The line of the
    /// quick filter counts as the list.
    enum class Place { Tree, List, Elsewhere };
    Place place() const { return place_; }
    /// The selected rows in the order of the list, as indexes into model().list.rows; rows out of view are never among
    /// them.
    std::vector<int> selectedRows() const;

    /// Selects a node, scrolled into view, gives the tree the focus and lists the node's variables.
    /// @return false if the tree has no node of that key
    bool showNode(const QString& key);

    /// Shows a variable of the selected node in panel A, in a language of the contents, and gives the list the focus.
    /// The quick filter is emptied where it hides the row; a panel is opened where none is.
    /// @return false if the node has no such variable
    bool showVariable(const QString& study, const QString& variable, bool english);
    /// The text of panel A.
    QPlainTextEdit* questionText() const;

    /// Shows 0, 1 or 2 panels.
    void setPanels(int lVarWindow);
    /// Inverts the contents language of panel A.
    void switchPanelLanguage();
    /// Lays the window out anew from the places of its splitters and the options.
    void Form_Resize();
    /// Shows show card, stored table and stored graph anew where the catalogue has others meanwhile.
    void refreshPages();
    /// Whether panel A shows its text in the fixed font.
    bool showsFixedFont() const;
    /// Exchanges the fixed font and the proportional one in question texts, lists and names.
    void ChangeFont();

    void optionsApplied() override;
    void refreshTitles() override;
    std::vector<ControlText> controls() const override;
    void setControlText(const ControlText& control, const QString& text) override;
    QSize sizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    ExplorerModel model_{this};
    ExplorerLayout layout_;
    QString layoutBefore_;
    QString fixedFont_, propFont_;
    Place place_ = Place::Tree;
    int panelsAtFirst_ = 0; ///< that come with the first variable the user chooses; 0 once there is nothing to wait for
    QTimer openPanels_;
    bool rowShown_ = false; ///< panel A and its assignments show the present selection

    frmExplorerTree* tree_;
    frmExplorerList* list_;
    ExplorerPanel *panelA_, *panelB_;
    ExplorerPages *pagesA_, *pagesB_;
    QAction* toFilter_;
    QSplitter *imgSplitter_, *imgSplitter2_, *imgSplitter3_, *imgSplitter4_, *imgSplitter5_;

    void buildControls();
    void connectControls();
    void addShortcuts();
    void addContextMenus();
    void openView(int view);
    void numberWindow();

    // What the model tells while it fills the list.
    void nodeShown(const CatalogueNode& node) override;
    void listFilled() override;
    void clearPanelA() override;
    void itemClick() override { lvListView_ItemClick(false); }
    void clearAssignmentList() override;
    void changing() override;
    void changed() override;
    void nodeRevealed(const CatalogueNode& node) override;
    void nodeBroughtIntoView(const CatalogueNode& node) override;
    void rowRevealed(int row) override;
    void focusTree() override;
    void focusList() override;

    void lvListView_ItemClick(bool assignments);
    void lvListView_DblClick();

    void switchChosen(bool panelB, const QString& key);
    void moveA(ExplorerModel::Step step);
    void showSwitches();
    void layOut();
    void placePages();
    void sharePlaces();
    void roomChanged();
    void catchUpPages();
    void pageTurned(bool panelB, int page);
    void panelsChosen();
    void openPanelsSoon();
    void openPanelsNow();
    void showA();
    void showB();
    void MyDBList_DblClick(const QString& key);
};
