#pragma once

#include "analysis/frmAuswertungPart.h"

#include <array>

class QCheckBox;
class QPushButton;

/// What is computed, on the first page of the analysis window: study, variables, kind of table, statistics.
class frmAuswertungRequest : public frmAuswertungPart {
public:
    explicit frmAuswertungRequest(frmAuswertung& window);

    QWidget* study() const { return fraStudy_; }
    QWidget* variable() const { return first_.frame; }
    QWidget* variable2() const { return second_.frame; }
    QWidget* mode() const { return fraMode_; }
    /// Those that stand below each other at the left of the page.
    const QList<QWidget*>& captions() const { return captions_; }

    void nameForReaders() override;
    void finishTyping() override;
    std::optional<Objection> objection() const override;

protected:
    bool concerns(RequestPart part) const override;
    void showChanges(const Changes& changes) override;

private:
    /// The pickers of one variable, which all show the same.
    struct VariableGroup {
        QGroupBox* frame;
        ChoicePicker *name, *label, *search;
        QLabel* whole; ///< its label, where the picker has no room for it
    };

    QGroupBox *fraStudy_, *fraMode_;
    ChoicePicker *dbcStudy_, *dbcStudy_1_;
    VariableGroup first_, second_;
    std::array<QRadioButton*, 4> modes_; ///< by AnalysisMode
    QPushButton* cmdDescriptives_;
    QCheckBox *chkDescGroup_, *chkFlipXtab_, *chkVaridexCreation_;
    QList<QWidget*> captions_;
    std::vector<BoundPicker> studies_; ///< as the pickers list them

    QGroupBox* buildStudy();
    VariableGroup buildVariable(const QString& number);
    QGroupBox* buildMode();
    void connectPickers();
    void connectMode();
    void changeMode(bool AnalysisRequest::*choice, bool on);

    void showLists();
    void showVariable(const VariableGroup& group, const QString& name, const QString& whole);
    void showMode();
    void showLongLabels();
};
