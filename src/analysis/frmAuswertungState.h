#pragma once

#include <QFrame>

class AnalysisModel;
class QLabel;
class QPushButton;

/// The strip below a result: how it stands to what is asked for now, with the button that computes it anew, and while
/// it is in the making the one that stops that.
class frmAuswertungState : public QFrame {
public:
    /// @param page what the names of its controls have before them: empty for the table, "Chart"
    frmAuswertungState(const QString& page, QWidget* parent);

    QPushButton* cmdComputeAnew() const { return cmdComputeAnew_; }
    QPushButton* cmdStop() const { return cmdStop_; }
    void showRunning();
    /// @param more what is said in its place of a result that is not the window's own
    void showState(const AnalysisModel& model, const QString& more = QString());

private:
    QLabel* lblState_;
    QPushButton *cmdComputeAnew_, *cmdStop_;
};
