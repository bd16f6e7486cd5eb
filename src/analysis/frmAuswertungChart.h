#pragma once

#include "analysis/StoredResults.h"
#include "analysis/WindowChart.h"
#include "analysis/frmAuswertungPart.h"

class ChartView;
class QPlainTextEdit;
class QPushButton;
class frmAuswertungState;
class frmAuswertungStored;

/// The page of the analysis window with the chart of its table: the picture as files have it, its title and its
/// explanation beside it, and what can be done with it.
class frmAuswertungChart : public frmAuswertungPart {
public:
    explicit frmAuswertungChart(frmAuswertung& window);

    QWidget* page() const { return page_; }
    QPushButton* cmdStop() const;
    /// While the numbers are in the making, the chart of those before doesn't pass for theirs.
    void showRunning();
    /// A run or a click has left another result.
    void resultChanged() { touch(); }

    /// Opens the options of the chart. @param item that is chosen at first
    void showOptions(int item = 0);
    /// True if there is a chart in view, the window's own or one that was stored.
    bool hasPicture() const;
    /// Copies the chart. @return false if there is nothing to copy
    bool copy();
    /// Asks for size, resolution and file, and writes the chart to it.
    void saveAs();

    /// The window has another size.
    void fitExplanation();

    void nameForReaders() override;

protected:
    bool concerns(RequestPart) const override { return true; }
    void showChanges(const Changes& changes) override;

private:
    QWidget* page_;
    QLabel *UniLabel1_, *lblNoChart_;
    QComboBox* cbChartValues_;
    QPlainTextEdit* txtExplain_;
    ChartView* picChart_;
    frmAuswertungState* state_;
    frmAuswertungStored* stored_;
    QPushButton *cmd_ShowOptions_, *cmdFirstValue_, *cmdCopyChart_, *cmdSaveChartAs_, *cmdPreview_, *cmdPrint_;

    QWidget* build();
    QWidget* buildPicture();
    QWidget* buildCommands();
    void connectControls();
    void showChart();
    void showStoredGraph(const StoredResults::Shown& shown);
    void showExplanation(const QString& text);
    void saveStored(const StoredResults::Shown& shown);
    const WindowChart& chart() const;
};
