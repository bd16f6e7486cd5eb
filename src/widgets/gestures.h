#pragma once

#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"

/// The steps of a window's event handler: under the standard error box, and not at all while windows are being
/// refilled.
template<class Steps>
void onGesture(Steps&& steps) {
    if (gBusy > 0)
        return;
    const GestureScope gesture;
    trapped(steps);
}
