#pragma once

#include "analysis/frmAuswertungPart.h"

class ValueList;
class frmAuswertungCases;
class frmAuswertungRequest;

/// What the values of a variable mean, on the first page of the analysis window: of the variable that is chosen, or
/// while a filter is typed of the one under its cursor. A value that is clicked goes into the filter.
class frmAuswertungValues : public frmAuswertungPart {
public:
    frmAuswertungValues(frmAuswertung& window, frmAuswertungCases& cases, const frmAuswertungRequest& request);
    ~frmAuswertungValues() override;

    QWidget* values() const { return fraValues_; }
    /// What of it has the keyboard.
    QWidget* list() const;

    void nameForReaders() override;

protected:
    bool concerns(RequestPart part) const override;
    void showChanges(const Changes& changes) override;

private:
    /// What the user is at.
    enum class Subject { First, Second, Filter };

    frmAuswertungCases& cases_;
    const frmAuswertungRequest& request_;
    QGroupBox* fraValues_;
    ValueList* list_;
    Subject subject_ = Subject::First;
    BoundPicker shown_; ///< study and variable whose values stand in the list

    void follow(const QWidget* focused);
    void bringIntoView();
    QString variable() const;
    void showValues(bool anew);
};
