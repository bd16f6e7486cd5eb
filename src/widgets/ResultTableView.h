#pragma once

#include "analysis/result/tableClick.h"
#include "tables/ResultTable.h"

#include <QTableView>
#include <functional>
#include <vector>

class ResultTableModel;
struct IdleSections;

/// Shows a result table; its fixed rows and columns stay in view as headings while the rest scrolls. It holds a copy of
/// the table: what is being computed doesn't show through. Rows and columns that are marked as missing are set apart.
/// Texts that would push the figures out of view are shortened; a tooltip has them in full. Headings take up to three
/// lines, and free room goes to what would be cut. What is empty by the way the table is made takes no room.
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
    /// The user has given a column or row of the table another size, in twips.
    std::function<void(int column, int twips)> onColumnWidth;
    std::function<void(int row, int twips)> onRowHeight;

    /// A view that only shows what others have stored: the widths that a table brings are the least that its columns
    /// get, since they may have been meant for another font. No word of a heading is broken.
    void takeWidthsAsLeast() { widthsAreLeast_ = true; }

    /// Takes a table; what can be marked in it has been said. While it has the shape and headings of the one before,
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
    bool layingOut_ = false;
    bool widthsAreLeast_ = false;
    int laidOutMarks_ = -1; ///< the column of marks that the table was laid out for
    QFont laidOutFont_;
    /// The width that a column has at the least, that in which nothing in it is cut, and that in which its heading
    /// stands in a line.
    struct Wants {
        int least = 0, whole = 0, line = 0;
    };
    std::vector<Wants> columns_;

    bool hasShapeOf(const ResultTable& table) const;
    void columnDragged(int column, int size);
    void rowDragged(int row, int size);
    void measure(const IdleSections& idle);
    void measureRow(int row, bool low);
    void layOut();
    void shareRoom();
    void narrowFixedColumns(int room);
    Wants wantsOf(int column) const;
    int widestText(int column, const QString& longest) const;
    int givenWidth(int column, const QString& longest, int needed) const;
    int pixels(int twips) const;
    void reportMark();
};
