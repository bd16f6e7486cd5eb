#pragma once

#include "charts/GraphicOptions.h"
#include "widgets/Form.h"

#include <QDialog>
#include <QSizeF>
#include <array>

class ChartView;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;

/// The options of one chart: its title, the text and look of each item, its axis, with a preview. Cancel changes
/// nothing.
class frmGraphicOptions : public QDialog, public Form {
public:
    /// @param own what the chart has without changes @param millimetres its size @param marks true if items can be
    /// marked as missing
    frmGraphicOptions(const ChartModel& chart, const LabelTable& own, const QSizeF& millimetres, bool marks,
                      QWidget* parent);
    ~frmGraphicOptions() override;

    /// Shows one of the items.
    void choose(int item);

    void cmdOK_Click();
    void cmdCancel_Click();

    /// What OK has taken; nothing after Cancel.
    const std::optional<LabelTable>& answer() const { return answer_; }
    /// True if other items are to be missing than the chart has.
    bool marksChanged() const;

    void refreshTitles() override;
    void reject() override { cmdCancel_Click(); }

private:
    GraphicOptions options_;
    std::vector<LabelItem> before_;
    LabelTable own_;
    QSizeF millimetres_;
    std::optional<LabelTable> answer_;
    bool showing_ = false; ///< the controls are being set

    QLineEdit *Titel_, *Minimum_, *Maximum_, *Division_;
    QComboBox *cmbSerie_, *cmbSerie2_, *cmbPattern_;
    QLabel* lblPattern_;
    QPushButton *cmdChangeLabel_, *cmd_Color_;
    QCheckBox *missing_, *autocolor_, *chkFromToAuto_, *chkForAll_;
    std::array<QRadioButton*, 2> PatternOrColor_{}; ///< colour, pattern
    std::array<QSpinBox*, 3> color_{};              ///< red, green, blue
    ChartView* BspChart1_;

    void build();
    QGroupBox* buildItem();
    QGroupBox* buildLook();
    QGroupBox* buildAxis();
    void connectItem();
    void connectAxis();
    template<class Step>
    void change(Step&& step);
    void fillLists();
    void showItem();
    void paleCaptions();
    void showPreview();
    QRgb shownColor() const;
};
