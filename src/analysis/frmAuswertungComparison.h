#pragma once

#include "analysis/frmAuswertungPart.h"

class ComparisonList;
class EntryList;
class QLineEdit;
class QPushButton;

/// The comparison on the first page of the analysis window: its entries, its title, the comparisons that the catalogue
/// keeps.
class frmAuswertungComparison : public frmAuswertungPart {
public:
    explicit frmAuswertungComparison(frmAuswertung& window);

    QWidget* comparison() const { return fraComparison_; }
    /// Selects no entry.
    void selectNone();

    void nameForReaders() override;

protected:
    bool concerns(RequestPart part) const override;
    void showChanges(const Changes& changes) override;

private:
    ComparisonList& list_;
    QGroupBox* fraComparison_;
    QLineEdit* txtTitle_;
    EntryList *lst_TrendVars_, *lst_SavedTrends_;
    QPushButton *cmd_AddTrend_, *cmd_DeleteFromTrend_, *cmd_ClearTrend_;
    QPushButton *cmd_LoadTrend_, *cmd_SaveTrend_, *cmd_DelSavedTrend_;

    QGroupBox* build();
    void connectEntries();
    void connectSaved();
    void onClick(QPushButton* button, const Step& step);
    void selectEntries();
};
