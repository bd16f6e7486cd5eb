#pragma once

#include <QList>
#include <QRect>

/// A stored place as the window takes it: unchanged if enough of its upper edge lies on a screen to take hold of it,
/// else moved onto the nearest of the screens; never larger than that screen and never too small to use.
/// @param screens usable parts of the screens, the main one first
QRect placeOnScreens(const QRect& wanted, const QList<QRect>& screens);
