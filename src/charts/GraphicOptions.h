#pragma once

#include "charts/LabelTable.h"

#include <QStringList>
#include <functional>

/// The chart options as the dialog works with them, without widgets: what is chosen and typed, what can be chosen, and
/// what OK hands over. The chart that it is made of stays as it is.
class GraphicOptions {
public:
    static constexpr int patternCount = 14, mostDivisions = 50;

    /// @param shownScale the axis as it is drawn now @param marks true if items can be marked as missing
    GraphicOptions(const ChartModel& chart, const ValueScale& shownScale, bool marks);

    /// True if items have a symbol in place of a pattern.
    bool lines() const { return chart_.chartType == ChartType::Lines; }
    bool marksOffered() const { return marks_; }
    /// The names that cmbPattern has: those of the patterns, number 1 first, or those of the symbols from 0 on.
    QStringList styleNames() const;
    /// What cmbPattern says of an item that has a colour.
    static QString noPattern();

    const LabelTable& labels() const { return labels_; }
    /// The chart with what is chosen.
    ChartModel preview() const;

    QString Titel;

    /// Back to what the chart has by itself; what is missing stays. @param own of the chart without changes
    void reset(const LabelTable& own);

    // ---- the item that is chosen; -1 where there is none
    int item() const { return item_; }
    void choose(int item);
    const LabelItem& current() const { return labels_.items[static_cast<size_t>(item_)]; }
    /// Pattern, symbol and colour are chosen for every item at once.
    bool chkForAll = false;
    /// Place in styleNames(); -1 for an item with a colour.
    int style() const;
    void chooseStyle(int place);
    /// Pattern or colour; nothing for lines, which have both.
    void setPatternOrColor(bool pattern);
    void setColor(QRgb color);
    /// @param shown the colour that the chart gives the item by itself, which stays when that is switched off
    void setAutocolor(bool automatic, QRgb shown);
    void setMissing(bool missing);
    /// Asks for another label; an empty answer changes nothing.
    void changeLabel();

    // ---- the axis, as it is typed
    bool chkFromToAuto = true;
    QString Minimum, Maximum, Division;
    /// After other ends: as many parts as give steps of 1, 2 or 5, near to how many there were. Only as long as the
    /// user hasn't typed a number of parts, and where such steps begin and end at the ends.
    void divideAnew();

    /// What OK hands over. @param fault words for what cannot be taken; nothing is returned then
    std::optional<LabelTable> cmdOK(QString& fault) const;

private:
    ChartModel chart_;
    LabelTable labels_;
    int item_ = -1;
    bool marks_;
    int partsAtFirst_;
    QString ownDivision_; ///< what Division has by itself; empty: it is the user's

    LabelItem& edited() { return labels_.items[static_cast<size_t>(item_)]; }
    void changeStyle(const std::function<void(ItemStyle& style, int item)>& change);
    int ownPattern(int item) const;
    std::optional<ValueScale> scale(QString& fault) const;
};
