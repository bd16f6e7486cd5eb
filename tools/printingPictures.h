#pragma once

#include "PictureWalk.h"

/// The walk through the dialog that reports are asked for in.
class PrintingWalk : public PictureWalk {
public:
    using PictureWalk::PictureWalk;

    /// With a variable selected, with nothing, and without a printer; of the catalogue's description.
    void dialogs();
};
