#pragma once

#include "analysis/request/DescriptivesChoice.h"
#include "widgets/Form.h"

#include <QDialog>
#include <array>

class QCheckBox;
class QComboBox;
class RequestEditor;

/// The choice of statistics and their digits, for one analysis window or for the options.
class frmDescriptives : public QDialog, public Form {
public:
    /// @param editor of the request that the choice is for, whose window is the owner then; null: the options
    frmDescriptives(RequestEditor* editor, QWidget* owner);
    ~frmDescriptives() override;

    void cmdOK_Click();
    void cmdCancel_Click();

    void refreshTitles() override;
    void reject() override { cmdCancel_Click(); }

private:
    RequestEditor* editor_;
    const QWidget* owner_;
    std::array<QCheckBox*, statisticCount> chkDescriptives_{};
    std::array<QComboBox*, statisticCount> cmbDigits_{};

    void build();
    void showChoice(const DescriptivesChoice& choice);
    DescriptivesChoice choice() const;
};
