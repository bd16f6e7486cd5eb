#pragma once

#include "analysis/DescriptivesChoice.h"
#include "widgets/Form.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QComboBox;

/// The choice of statistics and their digits, for one analysis window or for the options.
class frmDescriptives : public QDialog, public Form {
public:
    /// @param model of the window that the choice is for, which is the owner then; null: the options
    frmDescriptives(AnalysisModel* model, QWidget* owner);
    ~frmDescriptives() override;

    void cmdOK_Click();
    void cmdCancel_Click();

    void refreshTitles() override;
    void reject() override { cmdCancel_Click(); }

private:
    AnalysisModel* model_;
    const QWidget* owner_;
    std::array<QCheckBox*, statisticCount> chkDescriptives_{};
    std::array<QComboBox*, statisticCount> cmbDigits_{};

    void build();
    void showChoice(const DescriptivesChoice& choice);
    DescriptivesChoice choice() const;
};
