#include "explorer/PictureView.h"

#include <algorithm>
#include <cmath>

namespace {

/// So much of a picture stays in view, of a smaller one all of it.
constexpr double keptInView = 48;

double placeInView(double corner, double length, double room) {
    const double kept = std::min({keptInView, length, room});
    return std::clamp(corner, kept - length, room - kept);
}

} // namespace

int PictureView::slider() const {
    return static_cast<int>(std::lround(zoom_ * 1000));
}

QRectF PictureView::target() const {
    const QSizeF size = picture * static_cast<double>(zoom_);
    return {QPointF(placeInView(panX_, size.width(), room.width()), placeInView(panY_, size.height(), room.height())),
            size};
}

/// Without a surface of any size there is nothing to stay in view of.
void PictureView::moveTo(const QPointF& corner) {
    panX_ = static_cast<float>(corner.x());
    panY_ = static_cast<float>(corner.y());
    if (picture.isEmpty() || room.isEmpty())
        return;
    const QPointF kept = target().topLeft();
    panX_ = static_cast<float>(kept.x());
    panY_ = static_cast<float>(kept.y());
}

void PictureView::setSlider(int value) {
    zoom_ = static_cast<float>(std::clamp(value, least, most)) / 1000.0F;
}

void PictureView::zoomAbout(const QPointF& point, double factor) {
    const QPointF corner = target().topLeft();
    const auto before = static_cast<double>(zoom_);
    zoom_ = static_cast<float>(std::clamp(before * factor, least / 1000.0, most / 1000.0));
    moveTo(point - (point - corner) * (static_cast<double>(zoom_) / before));
    if (dragging_)
        press(point);
}

void PictureView::panBy(const QPointF& distance) {
    moveTo(target().topLeft() + distance);
}

void PictureView::fit() {
    if (picture.isEmpty() || room.isEmpty())
        return;
    const double whole = std::min(room.width() / picture.width(), room.height() / picture.height());
    // Rounded down to what the slider can show: rounded up it would lose its edge.
    setSlider(static_cast<int>(std::floor(whole * 1000)));
    const QSizeF rest = (room - picture * static_cast<double>(zoom_)) / 2;
    moveTo({rest.width(), rest.height()});
}

void PictureView::reset() {
    zoom_ = first / 1000.0F;
    panX_ = panY_ = 0;
}

void PictureView::press(const QPointF& mouse) {
    dragging_ = true;
    dragStart_ = mouse - target().topLeft();
}

bool PictureView::drag(const QPointF& mouse) {
    if (dragging_)
        moveTo(mouse - dragStart_);
    return dragging_;
}
