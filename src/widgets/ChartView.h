#pragma once

#include "charts/ChartLayout.h"

#include <QImage>
#include <QPixmap>
#include <QWidget>
#include <functional>

/// Shows a chart, or a picture that was kept of one, on a white page as large as the widget has room for: the layout of
/// the page is the one that files have, whatever the window's size, font and colours. What lies under the pointer says
/// what it is; the arrow keys walk over the points and say the same.
class ChartView : public QWidget {
public:
    ChartView(const QString& name, QWidget* parent);

    void showChart(const ChartModel& model, const QSizeF& millimetres, ChartParts parts);
    /// A picture in its own size (twips), smaller where the room is. A size of less than an inch is none.
    void showPicture(const QImage& picture, const QSizeF& twips);
    void clear();

    const ChartLayout& shownLayout() const { return layout_; }
    /// Where the page lies in the widget.
    QRectF page() const;

    /// A double click, Enter or the blank: the place that is meant, -1 for none.
    std::function<void(int series, int category)> onChosen;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    ChartModel model_;
    ChartLayout layout_;
    QImage picture_;
    QSizeF original_; ///< of the picture, in twips
    QPixmap painted_; ///< the page as it was painted last
    int point_ = -1;  ///< of the layout's hits, that the keys have come to

    void forget();
    bool isShown() const { return !picture_.isNull() || !layout_.size.isEmpty(); }
    QSizeF pageSize() const;
    QPointF onPage(const QPointF& place) const;
    QPolygonF inWidget(const QPolygonF& area) const;
    bool isPoint(int hit) const;
    void step(int series, int category);
    void goTo(int hit);
    void describe();
    void choose(const ChartHit* hit);
};
