#pragma once

#include "printing/PreviewModel.h"

#include <QAbstractScrollArea>
#include <functional>

/// The pages of a preview on their ground, as white as the paper, and the gestures that lead through them.
class PreviewArea : public QAbstractScrollArea {
public:
    /// @param model not owned
    PreviewArea(PreviewModel& model, QWidget* parent);

    /// A gesture has led to another place or size.
    std::function<void()> onChanged;
    /// Shows what the model has become.
    void follow();
    /// The link that the mouse is on, in words for a tooltip; empty for none.
    std::function<QString(int entry)> tellLink;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    PreviewModel& model_;
    bool following_ = false;
    std::optional<QPoint> dragged_; ///< where the mouse was when the pages were moved last
    std::optional<int> pressed_;    ///< entry of the link that the button went down on

    void change(const std::function<void()>& step);
    bool goByKey(int key, bool control);
    bool zoomByKey(int key);
    void paintSheet(QPainter& painter, int page, const QRectF& rect, const QRect& exposed);
    void markFound(QPainter& painter, int page, const QRectF& rect);
};
