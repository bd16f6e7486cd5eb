#pragma once

#include "tables/ResultTable.h"

#include <QAbstractTableModel>
#include <QBrush>
#include <QFont>
#include <vector>

/// The cells of a result table beside its fixed rows and columns, which are its headings.
class ResultTableModel : public QAbstractTableModel {
public:
    using QAbstractTableModel::QAbstractTableModel;

    ResultTable table;
    QFont markedFont;
    QBrush markedBrush;
    /// The column of the marks, and their row, have none yet and little room.
    bool narrowMarks = false, lowMarks = false;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// The lines of a heading, as people are to read them; its tooltip has the cells in full.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// What a fixed cell shows: shorter where the whole stands in the tooltip.
    QString headText(int column, int row) const;
    /// True for a cell of a row or column that is marked as missing.
    bool isMarked(int column, int row) const;

    void replace(const ResultTable& other);
    /// Takes a table of the same size.
    void update(const ResultTable& other);

private:
    bool isMarkPlace(int column, int row) const;
    std::vector<bool> rows_, columns_; ///< marked

    void take(const ResultTable& other);
};

/// Where the text of a cell stands.
Qt::Alignment alignmentOf(const ResultTable& table, int column, int row);
