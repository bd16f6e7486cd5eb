#pragma once

#include "analysis/result/tableClick.h"
#include "tables/ResultTable.h"

#include <QTableView>
#include <functional>
#include <vector>

class ResultTableModel;

/// Shows a result table; its fixed rows and columns stay in view as headings while the rest scrolls. It holds a copy of
/// the table: what is being computed doesn't show through. Rows and columns that are marked as missing are set apart.
/// Texts that would push the figures out of view are shortened; a tooltip has them in full.
class ResultTableView : public QTableView {
public:
    ResultTableView(const QString& name, QWidget* parent);

    /// A selection along this column or this row is reported when the mouse lets go or Space is pressed; -1: none.
    void setMarks(int column, int row) {
        markColumn_ = column;
        markRow_ = row;
    }
    std::function<void(const GridSelection&)> onMark;
    /// A click on the heading of a column, or on that of the row of marks.
    std::function<void()> onHeader;

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
    void focusInEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void updateGeometries() override;

private:
    ResultTableModel* model_;
    QWidget* corner_ = nullptr;
    int markColumn_ = -1, markRow_ = -1;
    bool pressedInMarks_ = false;
    std::vector<int> fixedWidths_; ///< of the fixed columns, as the table has them

    bool hasShapeOf(const ResultTable& table) const;
    void layOut();
    void narrowFixedColumns();
    int widthOf(int column) const;
    int pixels(int twips) const;
    void reportMark();
};
