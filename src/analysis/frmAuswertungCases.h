#pragma once

#include "analysis/frmAuswertungPart.h"

#include <QTimer>
#include <array>

class FilterLine;
struct FilterResult;

/// Which cases count, and with what weight, on the first page of the analysis window.
class frmAuswertungCases : public frmAuswertungPart {
public:
    explicit frmAuswertungCases(frmAuswertung& window);

    QWidget* weight() const { return fraWeight_; }
    QWidget* filter() const { return fraFilter_; }
    /// Those that stand below each other at the left of the page.
    const QList<QWidget*>& captions() const { return captions_; }
    FilterLine* filterLine() const { return txtFilter_; }
    /// Compares a variable with a value where the filter's cursor stands.
    void putIntoFilter(const QString& variable, const QString& value);
    /// Font or texts are others.
    void alignWeights();
    /// The text of the filter counts for the selected entry of a comparison once its editing is over, whichever way.
    void finishTyping() override;
    std::optional<Objection> objection() const override;
    /// What is being typed counts no more.
    void forgetFilter() { filterTyped_ = false; }

    void nameForReaders() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

protected:
    bool concerns(RequestPart part) const override;
    void showChanges(const Changes& changes) override;

private:
    QGroupBox *fraWeight_, *fraFilter_;
    std::array<QRadioButton*, 4> Option3_;
    QLabel *dt_WeightRE_, *dt_WeightHH_, *lblWeightUser_;
    ChoicePicker *dbcVarGewicht_, *dbcVarGewicht_1_, *dbcVarGewicht_1Uni_;
    std::array<QRadioButton*, 3> optFilter_;
    ChoicePicker* dbcParts_;
    FilterLine* txtFilter_;
    QLabel* lblFilterCheck_;
    QList<QWidget*> captions_;
    std::vector<BoundPicker> parts_; ///< as the picker lists them
    bool filterTyped_ = false;       ///< the filter was edited and has not counted yet
    QTimer checkSoon_;               ///< the filter is checked a moment after the last key

    QRadioButton* ownWeight() const { return Option3_[static_cast<size_t>(WeightKind::WeightUser)]; }
    QRadioButton* ownFilter() const { return optFilter_[static_cast<size_t>(FilterKind::FilterUser)]; }

    QGroupBox* buildWeight();
    QGroupBox* buildFilter();
    void connectWeight();
    void connectFilter();

    void showLists();
    void showWeight();
    void showFilter();
    void checkFilter();
    void showFilterCheck(const FilterResult& result);
};
