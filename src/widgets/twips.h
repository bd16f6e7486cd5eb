#pragma once

#include <QWidget>

/// Lengths of options and columns are in twips, 1440 to the inch.
inline int twipsToPixels(const QWidget& widget, int twips) {
    return qRound(twips * widget.logicalDpiX() / 1440.0);
}
inline int pixelsToTwips(const QWidget& widget, int pixels) {
    return qRound(pixels * 1440.0 / widget.logicalDpiX());
}
