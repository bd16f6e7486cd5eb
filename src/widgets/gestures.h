#pragma once

#include "diagnostics/errors.h"

/// The steps of a window's event handler: under the standard error box, and not at all while windows are being refilled.
template<class Steps>
void onGesture(Steps&& steps) {
    if (gBusy == 0)
        trapped(steps);
}
