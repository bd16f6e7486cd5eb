#pragma once

#include "platform/ui/Progress.h"
#include "widgets/Form.h"

#include <QDialog>
#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

/// The progress window: what is being done, how far it is, and a button to stop where that is possible. A key pressed
/// on the window itself does nothing.
class frmProcess : public QDialog, public Form {
public:
    /// @param stop called when the user wants to stop, by the button or the window's frame; without one the user
    ///        cannot close the window
    explicit frmProcess(std::function<void()> stop = {}, QWidget* parent = nullptr);
    ~frmProcess() override;

    /// Shows the window over all others for as long as the view lives; nothing else takes input meanwhile, and what is
    /// to be closed stops the step and closes when it has ended. @return null while another step is guarded already
    static std::unique_ptr<ui::ProgressView> open(bool mayStop);

    QLabel* lblStatus;
    QProgressBar* pgbProgress;

    /// @param total 0 if the length is not known
    void setProgress(int done, int total);

    void reject() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    std::function<void()> stop_;
    QPushButton* cmdStop_;
};
