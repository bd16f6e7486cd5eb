#pragma once

#include "editing/frmDocumentPicker.h"

/// Opens the questionnaire of a study, or of a part of it.
class frmFragebogen : public frmDocumentPicker {
public:
    explicit frmFragebogen(QWidget* parent = nullptr)
        : frmDocumentPicker(QStringLiteral("frmFragebogen"), DocumentList::Kind::Questionnaires, parent) {}

    /// Shows the picker modally. @param active explorer in front, whose study is looked for in the list; null without
    /// one
    static void showPicker(QWidget* parent, const frmExplorer* active) { frmFragebogen(parent).run(active); }
};
