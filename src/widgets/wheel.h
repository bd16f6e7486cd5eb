#pragma once

#include <QWheelEvent>
#include <cmath>

inline constexpr double wheelStep = 120; ///< of one notch

/// By which factor a turn of the wheel zooms.
inline double zoomOfWheel(const QWheelEvent& event) {
    constexpr double zoomOfNotch = 1.2;
    return std::pow(zoomOfNotch, event.angleDelta().y() / wheelStep);
}
