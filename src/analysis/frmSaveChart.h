#pragma once

#include "analysis/WindowChart.h"
#include "widgets/Form.h"

#include <QDialog>

class QDoubleSpinBox;
class QSpinBox;

/// Asks for the size and resolution of a chart that is to be saved.
class frmSaveChart : public QDialog, public Form {
public:
    /// @param picture that it opens with
    frmSaveChart(const WindowChart::Picture& picture, QWidget* parent);
    ~frmSaveChart() override;

    void cmdOK_Click();
    void cmdCancel_Click();

    /// What OK has taken; nothing after Cancel.
    const std::optional<WindowChart::Picture>& answer() const { return answer_; }

    void reject() override { cmdCancel_Click(); }

private:
    WindowChart::Picture picture_;
    std::optional<WindowChart::Picture> answer_;
    QDoubleSpinBox *txtWidth_, *txtHeight_;
    QSpinBox* txtDpi_;

    void build();
};
