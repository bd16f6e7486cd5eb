#pragma once

#include <QHeaderView>
#include <vector>

class ResultTableModel;

/// Room for a cell's text beside its margins.
int cellMargin(const QWidget& widget);

/// Shows the fixed rows of a table as lines of the heading above, the fixed columns as columns of the heading at the
/// left.
class FixedCells : public QHeaderView {
public:
    FixedCells(Qt::Orientation orientation, const ResultTableModel& model, QWidget* parent);

    std::vector<int> widths;  ///< of the fixed columns, for the heading at the left
    std::vector<int> heights; ///< of the fixed rows, for the heading above

    /// Gives each fixed row the height that its texts take in the widths of the columns.
    /// @param corner widths of the fixed columns, whose heads stand in the corner
    void fitHeights(const std::vector<int>& corner);

    QSize sizeHint() const override;

protected:
    void paintSection(QPainter* painter, const QRect& rect, int section) const override;

private:
    const ResultTableModel& model_;
};

/// The cells that are fixed both ways.
class CornerCells : public QWidget {
public:
    CornerCells(const ResultTableModel& model, const FixedCells& top, const FixedCells& left, QWidget* parent)
        : QWidget(parent), model_(model), top_(top), left_(left) {}

protected:
    void paintEvent(QPaintEvent*) override;

private:
    const ResultTableModel& model_;
    const FixedCells& top_;
    const FixedCells& left_;
};
