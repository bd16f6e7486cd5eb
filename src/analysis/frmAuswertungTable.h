#pragma once

#include "analysis/frmAuswertungPart.h"

class QPushButton;
class ResultTableView;
class frmAuswertungStored;
class frmAuswertungState;
enum class ClickEffect;

/// The page of the analysis window with the table that a run has made, what it stands on, and how it stands to what is
/// asked for now.
class frmAuswertungTable : public frmAuswertungPart {
public:
    explicit frmAuswertungTable(frmAuswertung& window);

    QWidget* page() const { return page_; }
    /// The one control that counts while numbers are in the making.
    QPushButton* cmdStop() const;
    /// Width of a text in the table, in twips.
    int textWidth(const QString& text) const;
    /// While the numbers are in the making, those of before don't pass for them.
    void showRunning();
    /// A run or a click has left another result.
    void resultChanged() { touch(); }
    /// The window has another size.
    void showFacts();

    void nameForReaders() override;

protected:
    bool concerns(RequestPart) const override { return true; }
    void showChanges(const Changes& changes) override;

private:
    QWidget* page_;
    QLabel *lblLabel_, *lblFacts_;
    QComboBox* cbValues_;
    ResultTableView* mfgGrid_;
    frmAuswertungStored* stored_;
    frmAuswertungState* state_;
    QPushButton *cmdCalculate_, *cmdSetMissing_, *cmdCopyTable_, *cmdCopyCommand_, *cmdSaveTableAs_, *cmdPreview_,
        *cmdPrint_;

    QWidget* build();
    QWidget* buildCommands();
    void connectControls();
    void addContextMenu();
    void mark(const std::function<ClickEffect()>& click);

    bool shortenBases(const QStringList& base, int room, int width);
    void showTable();
};
