#pragma once

#include "analysis/Instructions.h"
#include "analysis/frmAuswertungPart.h"

class QCheckBox;
class QPushButton;

/// What an editor of the catalogue keeps with variables, on the first page of the analysis window: the instruction of
/// the variable that is chosen, and those of the whole study with what they make. In view in creation mode.
class frmAuswertungInstructions : public frmAuswertungPart {
public:
    explicit frmAuswertungInstructions(frmAuswertung& window);

    QWidget* instructions() const { return fraInstruction_; }
    /// Ends the run over all variables; it can be used while one goes on.
    QPushButton* cmdStopBatch() const { return cmdStopBatch_; }
    void stop();
    /// Width of a text in the grid of the tables, in twips.
    TextWidth textWidth = estimatedTextWidth;

    void nameForReaders() override;

protected:
    bool concerns(RequestPart part) const override;
    void showChanges(const Changes& changes) override;

private:
    using Command = bool (Instructions::*)();

    Instructions commands_;
    QGroupBox* fraInstruction_;
    QLabel *lblBatch_, *lblValuesInstruct_;
    QComboBox* cbValuesInstruct_;
    QCheckBox* chkPreserveLayout_;
    QPushButton *save_, *load_, *delete_, *saveForAll_, *deleteForAll_, *runTables_, *runGraphs_, *cmdStopBatch_;

    void build();
    void connectAll();
    /// @param done what is said in passing if the command did something
    void onClick(QPushButton* button, Command command, const QString& done);
    void runForAll(bool (Instructions::*command)(const TextWidth&, const Instructions::Progress&));
    void showProgress(const QString& text, int done, int total);
    void showStop();
};
