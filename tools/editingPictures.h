#pragma once

#include "PictureWalk.h"

/// The walk through the windows that the catalogue's entries and documents are seen and edited in.
class EditingWalk : public PictureWalk {
public:
    using PictureWalk::PictureWalk;

    /// Descriptions of a view and of the catalogue, words looked for in them, and the pickers of documents.
    void documents();
    /// The questions for an entry, the editor of its description, and the order of lines.
    void entries();
    /// What the menus offer for an entry and for the variables of one, and for a study that stays as it is.
    void menus();
    /// The choice of where an entry is to go, and the pointers of a drag.
    void targets();

private:
    void takePopup(const QString& name);
    void dragPointers();
};
