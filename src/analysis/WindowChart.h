#pragma once

#include "analysis/request/AnalysisRequest.h"
#include "charts/BuildChart.h"
#include "charts/LabelTable.h"
#include "charts/chartFile.h"

#include <array>
#include <map>
#include <optional>

struct TableResult;

/// The chart of an analysis window with what its user has changed in it: title, labels, styles, scale.
///
/// What was changed belongs to a table and a view of it and finds its items by their values: it stays while table and
/// view are the same, comes back with the view, and is laid on the new chart after a calculation with other marks.
/// Nothing of this asks the user but for the first value. A batch has one of its own.
class WindowChart {
public:
    /// What becomes of the question for the first value where an axis has too many.
    enum class FirstValue {
        Asked,
        One ///< counts as answered with 1
    };
    /// How a table stands to a chart.
    enum class State { NoTable, Descriptives, Incomplete, NoValues, Drawn };

    /// Going to the chart, and a batch: builds it, unless it is there already.
    void turnTo(const TableResult& result, int view, const Options& options, FirstValue first = FirstValue::Asked);
    /// What else leaves another chart: other values, options, a new calculation. Nothing for a table that is no longer
    /// valid, unless it shows other values now: a chart never stands under the name of values that it hasn't.
    void build(const TableResult& result, int view, const Options& options);
    /// Asks anew for the first value of an axis that has too many; without an answer all stays as it is.
    void chooseFirst(const TableResult& result, int view, const Options& options);

    /// With what was changed; empty where nothing is drawn.
    const ChartModel& model() const { return model_; }
    State state() const { return state_; }
    /// Why nothing is drawn, in the language in force; empty where there is a chart.
    QString reason() const;
    /// True if items are left out because there are too many.
    bool isPart() const;

    /// What can be changed, as it stands.
    LabelTable labelTable() const { return labelTableOf(model_); }
    /// The same without what was changed.
    LabelTable ownLabelTable() const { return labelTableOf(automatic_); }
    /// Takes what was changed in it, by the values of its items; what is missing is the table's.
    void take(const LabelTable& changed);

    /// Size and resolution of its picture, as the user wants them, and what the last file was.
    struct Picture {
        QSizeF millimetres = defaultChartSize;
        int dpi = standardPictureDpi;
        QString ending = QStringLiteral("png"), folder{};
    };
    Picture picture;

private:
    /// By what an item is found again: its value, and which it is of those that look alike, as they were made.
    struct ItemKey {
        QString code;
        bool null = false; ///< system-missing
        int nth = 0;
        bool operator<(const ItemKey& other) const;
    };
    /// Each by itself: a colour is kept while the chart is in black and white, a symbol with any colour, and a pattern
    /// while the chart is of lines.
    struct ItemEdit {
        std::optional<QString> label;
        std::optional<bool> pattern;
        std::optional<int> number, symbol;
        std::optional<std::optional<QRgb>> color;
    };
    static std::optional<int> ItemEdit::*numberOf(const ChartModel& chart) {
        return chart.chartType == ChartType::Lines ? &ItemEdit::symbol : &ItemEdit::number;
    }
    struct Edits {
        std::optional<QString> title;
        std::map<ItemKey, ItemEdit> items;
        ValueScale scale;
    };
    /// What the chart was built from.
    struct Source {
        ResultTable table;
        QString caption;
        int view = 0;
        Options options;
        qint16 language = 0;
        std::vector<int> places; ///< for each row, in a comparison column, of data the place that it was made at
    };
    using Build = ChartModel (*)(const ChartSource&, const StartPrompt&);

    State state_ = State::NoTable;
    std::optional<Source> source_;
    AnalysisRequest request_;      ///< whose chart was changed
    QString caption_;              ///< of its table
    std::array<Edits, 4> edits_;   ///< by view; of a frequency those of counts and of percentages
    ChartModel automatic_, model_; ///< as built; with what was changed

    void forgetOthers(const TableResult& result, const Options& options);
    void drawWith(Build makeChart, const TableResult& result, int view, const Options& options,
                  const StartPrompt& prompt);
    bool isDrawn(const TableResult& result, int view, const Options& options) const;
    Edits& edits();
    ItemKey keyOf(int place) const;
    LabelTable changedLabels();
};
