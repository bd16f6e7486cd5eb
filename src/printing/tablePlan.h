#pragma once

#include "printing/PageSetup.h"
#include "tables/ResultTable.h"

#include <QFont>
#include <vector>

/// The fonts of a table at the size in which it is measured; what is drawn is a multiple of it.
struct TableType {
    /// Points of the type that widths and heights were kept for.
    static constexpr double keptFor = 8.25;

    double points = 0;
    QFont regular, bold;

    static TableType of(const PageSetup& setup);
    double em() const { return regular.pixelSize(); }
    /// Left and right of what stands in a column.
    double padding() const { return 0.6 * em(); }
};

/// How a table is brought onto a page: what of it is shown, how large, and in which columns. Lengths in twips at the
/// size of its type, to be multiplied by `scale`.
struct TablePlan {
    struct Column {
        int index = 0;        ///< in the table
        double left = 0;      ///< of its text
        double width = 0;     ///< for its text
        bool figures = false; ///< nothing but figures below its heads
        bool decimal = false; ///< numbers with decimals: their separators stand one below the other
        double fraction = 0;  ///< width of the widest from its separator on
    };
    /// Columns that stand beside each other; fixed ones first.
    struct Part {
        std::vector<Column> columns;
        double width = 0;
    };
    double scale = 1;
    std::vector<int> heads, body; ///< rows that are shown
    std::vector<Part> parts;      ///< more than one where even the smallest type leaves the table too wide

    /// The rules in their order: a size of type by the zoom, from 6 points on; columns as wide as their texts, or as
    /// they were kept, if wider; where that is too wide, texts wrap; then the type gets smaller, down to 6 points; then
    /// the columns are parted, the fixed ones repeated. Rows and columns of no height or width are left out, and so are
    /// those that say nothing: of the marks where nothing is marked, a crosstab's sums without a figure, fixed columns
    /// and last rows without a text.
    /// @param table with texts that can be printed @param width that is there, in twips
    static TablePlan of(const ResultTable& table, const TableType& type, double width, double zoom);
};

/// True for the row that marks the columns of a crosstab.
bool isRowOfMarks(const ResultTable& table, int row);
/// True for a row or column of data that is marked as missing; of a stored table too, which has no shape.
bool isMissingRow(const ResultTable& table, int row);
bool isMissingColumn(const ResultTable& table, int column);
