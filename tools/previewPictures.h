#pragma once

#include "PictureWalk.h"

/// The walk through the preview of a study's codebook, and the dialog for a printout.
class PreviewWalk : public PictureWalk {
public:
    using PictureWalk::PictureWalk;

    void preview();
    void printJob();
};
