#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

/// Where a picture lies on the surface that shows it and how large it is there, and what gestures do to both. Lengths
/// are in the surface's own (logical) pixels; the picture is as large as it has pixels where the zoom is 1.
class PictureView {
public:
    /// What the slider can be set to, in thousandths of the picture's size, and what it begins with.
    static constexpr int least = 50, most = 4000, first = 500;

    QSizeF picture, room; ///< sizes of the picture and of the surface

    float zoom() const { return zoom_; }
    float panX() const { return panX_; }
    float panY() const { return panY_; }
    /// The zoom as the slider shows it.
    int slider() const;
    /// Place and size of the picture. Wherever another picture or a larger surface has left the offsets, a piece of the
    /// picture is in view.
    QRectF target() const;

    /// The corner stays where it is.
    void setSlider(int value);
    /// Zooms by a factor; what lies under the point stays there.
    void zoomAbout(const QPointF& point, double factor);
    void panBy(const QPointF& distance);
    /// As large as the surface allows, in its middle.
    void fit();
    /// As at the start.
    void reset();

    void press(const QPointF& mouse);
    /// @return false unless a button was pressed on the picture
    bool drag(const QPointF& mouse);
    void release() { dragging_ = false; }
    bool isDragging() const { return dragging_; }

private:
    float zoom_ = first / 1000.0F;
    float panX_ = 0, panY_ = 0;
    QPointF dragStart_; ///< the mouse less the offsets
    bool dragging_ = false;

    void moveTo(const QPointF& corner);
};
