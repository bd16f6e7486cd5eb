#pragma once

#include "tables/Crosstab.h"

#include <QHash>
#include <vector>

/// The percentages of a crosstab, from its table of absolute values.
class CrosstabPercent {
public:
    enum class Of { Column, Row, Total };

    /// @param absolute the finished table of absolute values, with its sums and valid sums
    CrosstabPercent(const ResultTable& absolute, const CrosstabInput& input);

    /// Sizes and fills a table of percentages, without taking any row or column away. A division by zero
    /// is reported, or shows the standard error box; Ignore leaves its cell empty. @return false for Abort
    bool fill(ResultTable& table, Of of);
    /// True when no value of either axis is marked as missing.
    bool nothingMarked() const;

private:
    const ResultTable& absolute_;
    const CrosstabInput& in_;
    const CrosstabOptions& options_;
    int cols_, rows_;             ///< of the absolute table
    std::vector<double> numbers_; ///< its cells, row by row
    QHash<double, QString> formatted_;

    double number(int column, int row) const {
        return numbers_[static_cast<size_t>(row) * static_cast<size_t>(cols_) + static_cast<size_t>(column)];
    }
    bool filled(int column, int row) const { return !absolute_.Cell(column, row).isEmpty(); }
    bool columnMarked(int column) const { return absolute_.Cell(column, 2) == QLatin1Char('X'); }
    bool rowMarked(int row) const { return absolute_.Cell(2, row) == QLatin1Char('X'); }

    void writeFrame(ResultTable& table) const;
    bool compute(QString& text, Of of, int column, int row);
    QString percent(Of of, int column, int row);
    QString percentOfAll(Of of, int column, int row);
    QString percentOfValid(Of of, int column, int row);
    QString quotient(int column, int row, double base);
    QString withSignAndSeparator(QString text) const;
    QString withN(const QString& percent, int column, int row) const;
    void writeN(ResultTable& table, int column, int row) const;
};
