#pragma once

#include "explorer/VariableList.h"

#include <QAbstractTableModel>
#include <QIcon>
#include <QTableView>
#include <functional>

/// The rows in view of a list of variables for a table view.
class VariableListModel : public QAbstractTableModel {
public:
    /// @param list not owned
    explicit VariableListModel(const VariableList& list, QObject* parent = nullptr);

    /// Rows or columns are others, or in another order.
    void listChanged();
    void headingsChanged();

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const VariableList& list_;
    QIcon icon_;
};

/// The list of variables: whole rows, sorted by a click on a heading or Ctrl and the column's number, found by typing
/// the start of what stands in the column that they are sorted by.
class VariableListView : public QTableView {
public:
    /// @param list not owned
    explicit VariableListView(VariableList& list, QWidget* parent = nullptr);

    std::function<void()> opened;      ///< Enter
    std::function<void()> chosenAgain; ///< Space, on rows that are selected already
    std::function<void(int column)> headerChosen;

    /// The list's rows are others: shows them from the top, none selected.
    void listChanged();
    void headingsChanged() { model_.headingsChanged(); }
    /// Gives the columns their widths and the heading its mark of the sorting.
    void showColumns();
    /// The same after measuring the texts of the rows, as wide as which a column gets whose width nobody has set.
    /// Without rows the columns stay as they were.
    void fitColumns();
    /// What is written where the rows would be as long as there are none.
    void setHint(const QString& hint);

    /// Selected rows by their place among those in view, in order.
    std::vector<int> selectedPlaces() const;
    /// The first of them, -1 if none is selected; quick with any number.
    int firstSelectedPlace() const;
    int currentPlace() const { return currentIndex().row(); }
    void selectOnly(int place);
    /// Selects several and makes one of them the current one (-1: the first).
    void selectPlaces(const std::vector<int>& places, int current);

    void keyboardSearch(const QString& start) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    VariableList& list_;
    VariableListModel model_;
    QString hint_;
    bool settingWidths_ = false;
    struct Need {
        int width = 0;
        bool empty = false; ///< no row has a text there
    };
    std::vector<Need> needs_; ///< of each column; none before the first rows

    /// Widths are meant for small letters; larger ones take as many more.
    double fontScale() const;
    Need needOf(int column) const;
    int widthOf(int column) const;
    void setWidths();
    /// Width that the icon takes beside what a column's own width is for.
    int iconRoom(int column) const;
};
