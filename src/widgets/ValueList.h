#pragma once

#include "tables/VariableValues.h"

#include <QAbstractTableModel>
#include <QTableView>
#include <functional>

class ElidedLabel;

/// The rows of a ValueList: code, label, and a word for what counts as missing.
class ValueListModel : public QAbstractTableModel {
public:
    enum Column { Code, Label, Missing, columns };

    using QAbstractTableModel::QAbstractTableModel;

    const std::vector<DocumentedValue>& values() const { return values_; }
    void setValues(const std::vector<DocumentedValue>& values);
    /// A row as text: what it has, apart from each other.
    QString rowText(int row, const QString& parting) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    std::vector<DocumentedValue> values_;
};

/// The table of a ValueList: codes as wide as they are, labels in the room that is left.
class ValueTable : public QTableView {
public:
    ValueTable(ValueListModel& model, QWidget* parent);

    std::function<void(int row)> chosen; ///< a click, Enter or Space
    void fitColumns();
    void setHint(const QString& hint);
    QString facts; ///< copied along when all rows are

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    ValueListModel& model_;
    QString hint_;

    void spanLabels();
    void copySelected() const;
};

/// What the catalogue says about the values of one variable: a list of codes with label and missing mark, below it the
/// missing definition and the format. Rows can be copied; a row that is clicked or entered is told.
class ValueList : public QWidget {
public:
    /// @param suffix of the control names "lvValues" and "lblValues"
    explicit ValueList(const QString& suffix, QWidget* parent = nullptr);

    /// A value was clicked, or chosen by Enter or Space. Without a listener the rows are only read.
    std::function<void(const QString& code)> onChosen;

    void show(const VariableValues& values);
    /// Shows no variable.
    void clear();
    /// Texts in the language in force.
    void refreshTexts();
    QTableView* table() const { return table_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    ValueListModel model_;
    ValueTable* table_;
    ElidedLabel* facts_;
    VariableValues values_;
    bool empty_ = true; ///< no variable is shown

    QString factsText() const;
    void showFacts();
};
