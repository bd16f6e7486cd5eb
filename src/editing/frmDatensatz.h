#pragma once

#include "editing/frmDocumentPicker.h"

/// Opens the statistical data set of a study.
class frmDatensatz : public frmDocumentPicker {
public:
    explicit frmDatensatz(QWidget* parent = nullptr)
        : frmDocumentPicker(QStringLiteral("frmDatensatz"), DocumentList::Kind::DataSets, parent) {}

    /// Shows the picker modally. @param active explorer in front, whose study is looked for in the list; null without
    /// one
    static void showPicker(QWidget* parent, const frmExplorer* active) { frmDatensatz(parent).run(active); }
};
