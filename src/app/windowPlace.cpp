#include "app/windowPlace.h"

#include <algorithm>

namespace {

constexpr int leastWidth = 320, leastHeight = 240;
/// What must be seen of the title to take hold of a window.
constexpr int gripWidth = 120, gripHeight = 20;

qint64 distance(const QRect& a, const QRect& b) {
    const QPoint between = a.center() - b.center();
    return qint64(between.x()) * between.x() + qint64(between.y()) * between.y();
}

bool canBeGrasped(const QRect& window, const QRect& screen) {
    const QRect title(window.left(), window.top(), window.width(), gripHeight);
    const QRect seen = title & screen;
    return seen.width() >= std::min(gripWidth, window.width()) && seen.height() >= gripHeight / 2;
}

} // namespace

QRect placeOnScreens(const QRect& wanted, const QList<QRect>& screens) {
    // Beyond this no screen reaches, and differences of coordinates stay within an int.
    constexpr int far = 1 << 20;
    QRect window(std::clamp(wanted.x(), -far, far), std::clamp(wanted.y(), -far, far),
                 std::clamp(wanted.width(), leastWidth, far), std::clamp(wanted.height(), leastHeight, far));
    if (screens.isEmpty())
        return window;
    const QRect screen = *std::ranges::min_element(
        screens, [&](const QRect& a, const QRect& b) { return distance(a, window) < distance(b, window); });
    const bool fits = std::ranges::any_of(screens, [&](const QRect& s) { return canBeGrasped(window, s); });
    if (fits) {
        QRect all;
        for (const QRect& one : screens)
            all |= one;
        window.setSize(window.size().boundedTo(all.size()));
        return window;
    }
    window.setSize(window.size().boundedTo(screen.size()));
    window.moveLeft(std::clamp(window.left(), screen.left(), screen.right() + 1 - window.width()));
    window.moveTop(std::clamp(window.top(), screen.top(), screen.bottom() + 1 - window.height()));
    return window;
}
