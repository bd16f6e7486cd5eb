#pragma once

#include "analysis/AnalysisModel.h"
#include "widgets/Form.h"

class frmExplorer;

/// The analysis window: the request, the table, the chart.
class frmAuswertung : public QWidget, public Form {
public:
    /// Opens a window; what is selected in an explorer is chosen in it.
    /// @param explorer null without one in front
    static frmAuswertung* openFrom(const frmExplorer* explorer);

    frmAuswertung();
    ~frmAuswertung() override;

    AnalysisModel& model() { return model_; }
    /// Copies what the tab in front shows: the table, or the selected text.
    void copy();

    void optionsApplied() override;
    void refreshTitles() override;

private:
    AnalysisModel model_;
};
