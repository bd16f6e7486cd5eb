#include "explorer/Dragging.h"

DragFollower*& dragFollower() {
    static DragFollower* follower = nullptr;
    return follower;
}
