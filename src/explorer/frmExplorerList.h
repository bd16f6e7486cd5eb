#pragma once

#include "explorer/ExplorerModel.h"

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

class ElidedLabel;
class QLabel;
class QLineEdit;
class VariableListView;

/// The right side of the explorer: the variables of the selected entry, in the order that the user wants and narrowed
/// by the quick filter. What is selected stays so through both.
class frmExplorerList : public QWidget {
public:
    /// @param model not owned
    explicit frmExplorerList(ExplorerModel& model);

    std::function<void()> onSelected;    ///< the user has selected other rows
    std::function<void()> onChosenAgain; ///< or has chosen what is selected already
    std::function<void()> onOpened;

    VariableListView* view() const { return lvListView_; }
    QLineEdit* filter() const { return txtQuickFilter_; }
    /// The name of the entry whose variables are listed.
    void setTitle(const QString& title);
    /// Shows the model's list, which is another one.
    void fill();
    /// Until changed() the list may be read anew: what is selected in it and in view stays so.
    void changing();
    void changed();
    void focusFilter();
    /// The selected rows in the order of the list, as indexes into the model's rows.
    std::vector<int> selectedRows() const;
    /// The row that counts: the first selected one in list order, else the current one; -1 without one.
    int rowToShow() const;
    /// Texts in the language in force.
    void refreshTitles();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ExplorerModel& model_;
    ElidedLabel* lblTitle1_;
    QLabel* lblRowCount_;
    QLineEdit* txtQuickFilter_;
    VariableListView* lvListView_;
    std::optional<ListStanding> standing_; ///< until the change under way has ended
    QString standingIn_;                   ///< key of the node whose rows they are
    int across_ = 0;

    void build();
    void connectControls();
    void headerChosen(int column);
    void filterChanged();
    void orderChanged(const std::vector<int>& selectedPositions, int currentPosition);
    void standAgain();
    void showRowCount();
    void showHints();
    std::vector<int> selectedPositions() const;
    int currentPosition() const;
};
