#pragma once

#include "charts/BuildChart.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"
#include "support/TestRecordsets.h"
#include "tables/Comparison.h"
#include "tables/Crosstab.h"
#include "tables/Frequency.h"

#include <array>
#include <gtest/gtest.h>

/// Tables as the builders make them, and the charts of them.
class ChartTables : public testing::Test {
protected:
    using Rows = TestRecordsets::Rows;
    const dao::Value null{};

    TestHome home_;
    ScriptedAsker asker_;
    TestRecordsets recordsets_{home_.path(QStringLiteral("t.mdb"))};
    ResultTable table_;                ///< of a frequency or comparison
    std::array<ResultTable, 5> views_; ///< by the view; the last is the table as it was built
    TableOrigin origin_;
    Options options_;       ///< of the chart
    QStringList questions_; ///< that the charts have asked
    QStringList answers_;   ///< to them, in order; none left: an empty one

    ChartTables() { options_.StartItem = 0; }

    void buildFrequency(const Rows& counts, const QString& missing = {}, const Rows& labels = {}) {
        const dao::RecordsetPtr c = recordsets_.make(QStringLiteral("c"), twoFields, counts);
        const dao::RecordsetPtr l = recordsets_.make(QStringLiteral("l"), labelFields, labels);
        ASSERT_EQ(BuildFrequencyTable(table_, {.counts = *c,
                                               .labels = *l,
                                               .dtMissing = missing,
                                               .AutoColWidth = false,
                                               .cancelled = {},
                                               .onFailure = {}}),
                  BuildOutcome::Complete);
    }

    /// An entry of a comparison that has its column already, see setUpComparison().
    void addEntry(int entry, const QString& header, const Rows& counts, const QString& missing = {}) {
        table_.setCell(entry + 2, 0, header);
        const dao::RecordsetPtr c = recordsets_.make(QStringLiteral("c"), twoFields, counts);
        const dao::RecordsetPtr l = recordsets_.make(QStringLiteral("l"), labelFields, {});
        ASSERT_EQ(BuildComparisonColumn(table_, views_[1], views_[0],
                                        {.counts = *c,
                                         .labels = *l,
                                         .dtMissing = missing,
                                         .column = entry + 2,
                                         .HeaderValAddVar = false,
                                         .AutoColWidth = false,
                                         .cancelled = {}}),
                  BuildOutcome::Complete);
    }
    void setUpComparison(int entries) {
        table_ = ResultTable();
        table_.setRows(4);
        table_.setCols(entries + 3);
    }

    void keepCrosstabRows(const Rows& counts, const Rows& labels) {
        crosstabCounts_ = recordsets_.make(QStringLiteral("x"),
                                           {{QStringLiteral("A"), dao::dbDouble},
                                            {QStringLiteral("B"), dao::dbDouble},
                                            {QStringLiteral("N"), dao::dbDouble}},
                                           counts);
        crosstabLabels_ = recordsets_.make(QStringLiteral("y"),
                                           {{QStringLiteral("fi_VarName"), dao::dbText},
                                            {QStringLiteral("dt_Value"), dao::dbText},
                                            {QStringLiteral("dt_Label"), dao::dbText}},
                                           labels);
    }
    /// From the rows that are kept, under the options of the origin.
    void buildCrosstab(const QString& rowMissing = {}, const QString& columnMissing = {}) {
        const Options& o = origin_.options;
        const CrosstabInput input{.counts = *crosstabCounts_,
                                  .labels = *crosstabLabels_,
                                  .rowMissing = rowMissing,
                                  .columnMissing = columnMissing,
                                  .options = {o.IncludeMissingXTab, o.IncludeMissingInPercentXTab, o.IncludeNinXTab,
                                              o.IncludeNinXTabPercent, o.IncludeNinXTabPercentNFirst, o.NoColumnLabels,
                                              o.NoRowLabels, o.ShowValidSums, o.ShowPercentSign, o.CommaInPercent,
                                              false},
                                  .cancelled = {},
                                  .onFailure = {}};
        ASSERT_EQ(BuildCrosstabTable({views_[4], views_[1], views_[2], views_[3], views_[0]}, input),
                  BuildOutcome::Complete);
    }

    ChartModel chartOf(const ResultTable& table, int view = 0) { return BuildChart(source(table, view), prompt()); }
    ChartModel tabChartOf(const ResultTable& table, int view = 0) {
        return BuildChartForTab(source(table, view), prompt());
    }

    /// The texts of all points, a series a text: "1 2 . 4", "." for an empty one.
    static QStringList pointsOf(const ChartModel& chart) {
        QStringList series;
        for (const std::vector<ChartPoint>& values : chart.values) {
            QStringList points;
            for (const ChartPoint& point : values)
                points << (point.value ? point.text : QStringLiteral("."));
            series << points.join(QLatin1Char(' '));
        }
        return series;
    }
    /// Level 1 and level 2 of the items: "ja=1 nein=2".
    static QString itemsOf(const std::vector<ChartItem>& items) {
        QStringList texts;
        for (const ChartItem& item : items)
            texts << item.level1 + QLatin1Char('=') + item.level2;
        return texts.join(QLatin1Char('|'));
    }

private:
    const TestRecordsets::Fields twoFields{{QStringLiteral("Value"), dao::dbDouble},
                                           {QStringLiteral("Count"), dao::dbDouble}};
    const TestRecordsets::Fields labelFields{{QStringLiteral("dt_Value"), dao::dbText},
                                             {QStringLiteral("dt_Label"), dao::dbText}};
    dao::RecordsetPtr crosstabCounts_, crosstabLabels_;

    ChartSource source(const ResultTable& table, int view) {
        return {
            .table = table, .caption = QStringLiteral("Titel"), .view = view, .origin = origin_, .options = options_};
    }
    StartPrompt prompt() {
        return [this](const QString& question) {
            questions_ << question;
            return answers_.isEmpty() ? QString() : answers_.takeFirst();
        };
    }
};
