#pragma once

#include "tables/Marks.h"
#include "tables/TableShape.h"

#include <QString>
#include <vector>

/// A sentence on a table's numbers that belongs below it.
struct TableNote {
    QString sentence; ///< in German, as the texts are kept; "%1" stands for what it is about
    QString about;

    /// Several values look alike and differ in the data.
    static TableNote ofLookAlikes();

    /// In the language in force.
    QString text() const;
    bool operator==(const TableNote&) const = default;
};

/// What the percentages of a table are of.
enum class PercentOf { None, Columns, Rows, All };

/// A number of cases that is 100 percent in a table of percentages.
struct PercentBase {
    QString value, label; ///< of the column or row that it is for; of the whole table its word alone
    QString n;
    bool operator==(const PercentBase&) const = default;
};

/// What is to be read beside the value of a row that stands for a group of cases.
struct RowGroup {
    int row = 0;
    QString label;
    bool missing = false;
    bool operator==(const RowGroup&) const = default;
};

/// A rectangular table of text cells, addressed (column, row) from 0. All numbers in it are text, and later
/// steps read the text back. Widths and heights are in twips (1/1440 inch).
class ResultTable {
public:
    /// Alignments that the builders set. 0 of a cell is the column's own. There are 1 to 8: left, in the middle, right,
    /// of each at the top, in the middle, at the bottom; 0 and 9 of a column: figures right, texts left.
    enum Alignment { LeftCenter = 1, RightTop = 6 };

    TableKind Tag = TableKind::None;
    TableShape shape;
    Marks::By markedBy = Marks::By::Definition; ///< who says what is missing in it
    std::vector<TableNote> notes;
    PercentOf percentOf = PercentOf::None;
    bool percentOfValid = true; ///< the percentages are of the valid cases, else of all
    std::vector<PercentBase> bases;
    std::vector<RowGroup> groups;
    /// Heads of columns without what all of them say, by column; empty where the cells are as short.
    std::vector<QString> shortHeads;
    int FixedRows = 0;
    int FixedCols = 0;

    int Rows() const { return rows_; }
    int Cols() const { return cols_; }
    /// Cells that remain keep their text.
    void setRows(int rows);
    void setCols(int cols);
    /// Empties the cells, alignments included, and what is said of them; the size stays.
    void Clear();

    const QString& Cell(int column, int row) const { return cells_[index(column, row)].text; }
    void setCell(int column, int row, const QString& text) { cells_[index(column, row)].text = text; }
    /// The cell as people are to read it: the value of a group with its label.
    QString shownCell(int column, int row) const;
    int CellAlignment(int column, int row) const { return cells_[index(column, row)].alignment; }
    void setCellAlignment(int column, int row, int alignment) { cells_[index(column, row)].alignment = alignment; }
    int ColWidth(int column) const { return widths_[static_cast<size_t>(column)]; }
    void setColWidth(int column, int twips) { widths_[static_cast<size_t>(column)] = twips; }
    /// A width that somebody has given a column, or that was kept with the table: it is shown as it is, but for figures
    /// that would be cut.
    void giveColWidth(int column, int twips) {
        setColWidth(column, twips);
        givenWidths_[static_cast<size_t>(column)] = true;
    }
    bool hasGivenWidth(int column) const { return givenWidths_[static_cast<size_t>(column)]; }
    int RowHeight(int row) const { return heights_[static_cast<size_t>(row)]; }
    void setRowHeight(int row, int twips) { heights_[static_cast<size_t>(row)] = twips; }
    int ColAlignment(int column) const { return colAlignments_[static_cast<size_t>(column)]; }
    void setColAlignment(int column, int alignment) { colAlignments_[static_cast<size_t>(column)] = alignment; }

    /// Rearranges rows: row `first + i` becomes what row `first + order[i]` was. Heights stay.
    void orderRows(int first, const std::vector<int>& order);
    /// The same for rows or columns with their sizes.
    void moveRows(int first, const std::vector<int>& order);
    void moveCols(int first, const std::vector<int>& order);
    /// Takes a column or row out, with its width or height; the shape follows, groups and short heads don't.
    void removeCol(int column);
    void removeRow(int row);
    /// Adds a note once.
    void addNote(const TableNote& note);
    /// Notes that the user has put rows or columns into another order, or that they stand as they were made.
    /// @param first head of the entry that a comparison was begun with; empty while it stands first
    void noteOrder(bool byHand, const QString& first);
    /// Exchanges comma and point in every cell from a row and column on.
    void exchangeSeparators(int firstColumn, int firstRow);

private:
    struct CellContent {
        QString text;
        int alignment = 0;
    };
    int rows_ = 0;
    int cols_ = 0;
    std::vector<CellContent> cells_; // row by row
    std::vector<int> widths_, heights_, colAlignments_;
    std::vector<bool> givenWidths_;

    size_t index(int column, int row) const;
};

/// Shifts the later columns one to the left; nothing for an index beyond the last.
void DeleteColumn(ResultTable& table, int column);
/// Shifts the later rows one up; nothing for an index beyond the last.
void DeleteRow(ResultTable& table, int row);

/// A text with comma and point exchanged.
QString exchangedSeparators(QString text);
