#pragma once

#include "platform/ui/Asker.h"
#include "widgets/Form.h"

#include <QDialog>

class QAbstractButton;
class QListWidget;
class QTimer;

/// Lines to be put into another order. A button that is held down goes on moving the current line.
class frmPosition : public QDialog, public Form {
public:
    /// Time between two steps of a button that is held down, in milliseconds.
    static int repeatTime;

    frmPosition(const ui::LineOrder& order, QWidget* parent);
    ~frmPosition() override;

    /// Shows the window until it is closed. @return places of the lines in their new order; nothing on Cancel
    static std::optional<std::vector<int>> ask(const ui::LineOrder& order);

    void cmdUp_Click();
    void cmdDown_Click();
    void cmd_OK_Click();
    void cmd_Cancel_Click();
    std::vector<int> places() const;

    void refreshTitles() override;

private:
    QListWidget* lstPosition_;
    QTimer* repeat_;

    void build(const ui::LineOrder& order);
    QAbstractButton* moveButton(const QString& name, const QString& text, int key, void (frmPosition::*step)());
    void moveTo(int row);
};
