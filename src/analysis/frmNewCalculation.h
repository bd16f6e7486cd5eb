#pragma once

#include "analysis/request/MissingChoice.h"
#include "widgets/Form.h"

#include <QDialog>
#include <array>

class QGroupBox;
class QLineEdit;
class QRadioButton;

/// Asks for the missing values of a calculation that is about to begin. Cancel lets it go on with those that it has.
class frmNewCalculation : public QDialog, public Form {
public:
    /// @param sMissing the definition that it opens with
    frmNewCalculation(const QString& sMissing, QWidget* parent);
    ~frmNewCalculation() override;

    void cmdOK_Click();
    void cmdCancel_Click();

    /// What OK has taken; nothing after Cancel.
    const std::optional<MissingAnswer>& answer() const { return answer_; }

    void reject() override { cmdCancel_Click(); }

private:
    std::optional<MissingAnswer> answer_;
    std::array<QRadioButton*, 2> Option1_{}, Option2_{};
    QLineEdit *EinzelWert_, *Rangevon_, *Rangebis_;
    QGroupBox* fraSettings_;

    void build();
    QGroupBox* buildSettings();
    void showChoice(const MissingChoice& choice);
    MissingChoice choice() const;
};
