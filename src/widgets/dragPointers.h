#pragma once

#include "explorer/Dragging.h"

#include <QCursor>

class QWidget;

/// The pointer while something is dragged: an arrow with what it is, and a mark for copy, move or no. It is to be read
/// on any ground. @param widget whose screen and letters give the size
QCursor dragPointer(DragView::Pointer pointer, bool variables, const QWidget& widget);
