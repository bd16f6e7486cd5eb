#pragma once

#include "analysis/StoredResults.h"

#include <QWidget>
#include <functional>

class QPushButton;
class frmAuswertung;

/// The buttons below a result that keep it with its variable, show what is kept, and delete that; in creation mode
/// only.
class frmAuswertungStored : public QWidget {
public:
    enum class Kind { Table, Graph };

    /// @param changed called after each command, before the window shows what came of it
    frmAuswertungStored(frmAuswertung& window, Kind kind, std::function<void()> changed, QWidget* parent);

    /// Shows what can be done now.
    void showOffered();

private:
    using Command = bool (StoredResults::*)();

    frmAuswertung& window_;
    Kind kind_;
    std::function<void()> changed_;
    QPushButton *save_, *load_, *delete_;

    void carryOutBy(QPushButton& button, Command command, const QString& done);
};
