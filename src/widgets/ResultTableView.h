#pragma once

#include "analysis/tableClick.h"
#include "tables/ResultTable.h"

#include <QTableView>
#include <functional>

class ResultTableModel;

/// Shows a result table; its fixed rows and columns stay in view as headings while the rest scrolls. It holds a copy of
/// the table: what is being computed doesn't show through.
class ResultTableView : public QTableView {
public:
    ResultTableView(const QString& name, QWidget* parent);

    /// A selection that begins and ends in this column is reported when the mouse lets go or Space is pressed; -1: none.
    void setMarkColumn(int column) { markColumn_ = column; }
    std::function<void(const GridSelection&)> onMark;
    /// A click on the heading of a column, by its number in the table.
    std::function<void(int column)> onHeader;

    /// Takes a table; columns get the widths that it names. While it has the shape and headings of the one before,
    /// selection, place and widths stay.
    void updateTable(const ResultTable& table);
    const ResultTable& table() const;
    /// What is selected, in cells of the table; -1 in all fields without a selection.
    GridSelection selection() const;
    /// Width of a text in the view's font, in twips.
    int textWidth(const QString& text) const;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void updateGeometries() override;

private:
    ResultTableModel* model_;
    QWidget* corner_ = nullptr;
    int markColumn_ = -1;
    bool pressedInMarks_ = false;

    bool hasShapeOf(const ResultTable& table) const;
    void layOut();
    int pixels(int twips) const;
    void reportMark();
};
