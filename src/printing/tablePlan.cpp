#include "printing/tablePlan.h"

#include "printing/fonts.h"
#include "printing/look.h"
#include "printing/typeWidths.h"
#include "printing/words.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace {

constexpr double largestPoints = 36;
/// In ems: no line of a cell is longer as long as the table wraps at all; a text keeps that much before the type gets
/// smaller, and so does the head of a column of figures; a word that is longer is broken.
constexpr double widestText = 34, comfortableText = 14, comfortableHead = 4.5, longestWord = 12, shortHead = 9,
                 leastColumn = 3;

/// So many texts of a column are shaped to find its width.
constexpr int mostShaped = 300;

bool hasMarks(const ResultTable& table) {
    return table.Tag == TableKind::Frequency || table.Tag == TableKind::Crosstab || table.Tag == TableKind::Comparison;
}

/// True where a row or column of marks has its word and nothing else.
bool isIdle(const ResultTable& table, bool column) {
    const bool crosstab = table.Tag == TableKind::Crosstab;
    const int place = column ? markColumn : markRow, head = crosstab ? (column ? markRow : markColumn) : 0;
    if (!hasMarks(table) || (!column && !crosstab) || place >= (column ? table.Cols() : table.Rows()))
        return false;
    const int count = column ? table.Rows() : table.Cols();
    const auto cell = [&](int i) { return (column ? table.Cell(place, i) : table.Cell(i, place)).trimmed(); };
    if (head >= count || cell(head) != u"Missing"_s)
        return false;
    for (int i = 0; i < count; ++i)
        if (i != head && !cell(i).isEmpty())
            return false;
    return true;
}

bool isBlank(const ResultTable& table, int firstColumn, int lastColumn, int firstRow, int lastRow) {
    for (int row = firstRow; row <= lastRow; ++row)
        for (int column = firstColumn; column <= lastColumn; ++column)
            if (!table.Cell(column, row).trimmed().isEmpty())
                return false;
    return true;
}

/// The head of a sum, in whichever language a table was kept: "Summe", "N Valid sum".
bool namesASum(const QString& head) {
    const QStringList words = head.simplified().split(u' ');
    return std::ranges::any_of(std::array{1, 2}, [&](int language) {
        return words.last().compare(reportWord(u"Summe"_s, language), Qt::CaseInsensitive) == 0;
    });
}

/// A sum that a view of percentages has not: its word, and nothing below it. A category without cases is none.
bool isEmptySum(const ResultTable& table, int column, int fixedRows) {
    return table.Tag == TableKind::Crosstab && column > markColumn && fixedRows > 0 && table.Rows() > fixedRows &&
           namesASum(table.Cell(column, 0)) && isBlank(table, column, column, 1, table.Rows() - 1);
}

/// What a column's cells need. Lengths without padding.
struct Needs {
    int index = 0;
    bool fixed = false;
    double figure = 0;  ///< below this figures break
    double least = 0;   ///< below this figures and words break
    double comfort = 0; ///< as long as the type can get smaller
    double natural = 0; ///< where nothing wraps but long texts
    double wanted = 0;  ///< as it was kept
    bool figures = false, decimal = false;
    double fraction = 0;
};

class Measuring {
public:
    Measuring(const ResultTable& table, const TableType& type, const TablePlan& plan)
        : table_(table), plan_(plan), em_(type.em()), padding_(type.padding()), points_(type.points),
          regular_(TypeWidths::in(type.regular)), bold_(TypeWidths::in(type.bold)) {}

    Needs of(int column) {
        Needs needs{.index = column};
        double text = 0, word = 0, figure = 0;
        measureBody(column, needs, text, word, figure);
        double head = 0, headWord = 0;
        for (const int row : plan_.heads) {
            const TextExtent extent = bold_.of(table_.Cell(column, row));
            // What one line is too short for stands in up to three.
            const double wish =
                extent.width <= shortHead * em_ ? extent.width : std::max(shortHead * em_, extent.width / 3);
            head = std::max({head, std::min(wish, extent.width), extent.word});
            if (figureOf(table_.Cell(column, row)) == Figure::None)
                headWord = std::max(headWord, extent.word);
            else
                figure = std::max(figure, extent.width);
        }
        needs.figure = figure;
        needs.least = std::max({figure, std::min(word, longestWord * em_), std::min(headWord, longestWord * em_)});
        needs.natural = std::max({needs.least, std::min(text, widestText * em_), std::min(head, widestText * em_)});
        const double comfortable = (needs.figures ? comfortableHead : comfortableText) * em_;
        needs.comfort = std::max(needs.least, std::min(needs.natural, comfortable));
        needs.wanted = needs.natural;
        if (table_.hasGivenWidth(column)) {
            const double kept = table_.ColWidth(column) * points_ / TableType::keptFor - 2 * padding_;
            needs.wanted = std::max(needs.natural, std::min(kept, widestText * em_));
        }
        return needs;
    }

private:
    const ResultTable& table_;
    const TablePlan& plan_;
    double em_, padding_, points_;
    TypeWidths& regular_;
    TypeWidths& bold_;

    void measureBody(int column, Needs& needs, double& text, double& word, double& figure) {
        bool figures = true, numbers = true, any = false;
        double whole = 0;
        int shaped = 0;
        qsizetype longest = 0;
        for (const int row : plan_.body) {
            const QString& cell = table_.Cell(column, row);
            if (cell.isEmpty())
                continue;
            // Of thousands of texts that must be shaped the longest ones tell enough: a wider one wraps.
            if (!TypeWidths::isSimple(cell)) {
                if (++shaped > mostShaped && cell.size() <= longest) {
                    figures = numbers = false;
                    continue;
                }
                longest = std::max(longest, cell.size());
            }
            const TextExtent extent = regular_.of(cell);
            const Figure kind = figureOf(cell);
            if (isRowOfMarks(table_, row)) {
                word = std::max(word, extent.word);
                figure = std::max(figure, kind == Figure::None ? 0 : extent.width);
                continue;
            }
            any = true;
            figures = figures && kind != Figure::None;
            numbers = numbers && kind == Figure::Number;
            if (kind == Figure::None) {
                text = std::max(text, extent.width);
                word = std::max(word, extent.word);
                continue;
            }
            figure = std::max(figure, extent.width);
            const qsizetype separator = separatorIn(cell);
            if (kind == Figure::Number && separator < cell.size()) {
                const double fraction = regular_.of(QStringView(cell).mid(separator)).width;
                needs.fraction = std::max(needs.fraction, fraction);
                whole = std::max(whole, extent.width - fraction);
            } else
                whole = std::max(whole, extent.width);
        }
        needs.figures = any && figures;
        needs.decimal = any && numbers && needs.fraction > 0;
        if (needs.decimal)
            figure = std::max(figure, whole + needs.fraction);
    }
};

/// Lets lengths grow by equal amounts, each up to what it wants, as far as there is room.
void grow(std::vector<double>& lengths, const std::vector<double>& wanted, double room) {
    std::vector<size_t> order(lengths.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::ranges::sort(order, {}, [&](size_t i) { return wanted[i] - lengths[i]; });
    room -= std::accumulate(lengths.begin(), lengths.end(), 0.0);
    double asking = static_cast<double>(order.size());
    for (const size_t i : order) {
        const double more = std::clamp(wanted[i] - lengths[i], 0.0, std::max(0.0, room / asking--));
        lengths[i] += more;
        room -= more;
    }
}

std::vector<double> lengthsOf(const std::vector<Needs>& needs, double Needs::*length) {
    std::vector<double> lengths;
    for (const Needs& column : needs)
        lengths.push_back(column.*length);
    return lengths;
}

/// Widths in a room that has at least the first of two stages.
std::vector<double> between(const std::vector<Needs>& needs, double Needs::*from, double Needs::*to, double room) {
    std::vector<double> widths = lengthsOf(needs, from);
    grow(widths, lengthsOf(needs, to), room);
    return widths;
}

double sum(const std::vector<Needs>& needs, double Needs::*length, double padding) {
    double total = 2 * padding * static_cast<double>(needs.size());
    for (const Needs& column : needs)
        total += column.*length;
    return total;
}

class Parting {
public:
    Parting(std::vector<Needs> needs, double room, double padding)
        : needs_(std::move(needs)), room_(room), padding_(padding) {}

    /// All columns beside each other.
    std::vector<TablePlan::Part> whole() const {
        const double room = room_ - 2 * padding_ * static_cast<double>(needs_.size());
        const auto fits = [&](double Needs::*length) { return sum(needs_, length, padding_) <= room_; };
        const std::vector<double> widths =
            fits(&Needs::natural)   ? between(needs_, &Needs::natural, &Needs::wanted, room)
            : fits(&Needs::comfort) ? between(needs_, &Needs::comfort, &Needs::natural, room)
                                    : between(needs_, &Needs::least, &Needs::comfort, room);
        return {part(needs_, widths)};
    }

    /// As many columns beside each other as there is room for, and at least one, beside the fixed ones.
    std::vector<TablePlan::Part> parted(double leastWidth) const {
        std::vector<Needs> fixed, others;
        for (const Needs& column : needs_)
            (column.fixed ? fixed : others).push_back(column);
        // Their texts may be broken, their figures not; some are too many to be repeated beside anything else.
        const auto leastOf = [leastWidth](const Needs& column) { return std::max(leastWidth, column.figure); };
        double leastFixed = 2 * padding_ * static_cast<double>(fixed.size()), widest = 0;
        for (const Needs& column : fixed)
            leastFixed += leastOf(column);
        for (const Needs& column : others)
            widest = std::max(widest, leastOf(column) + 2 * padding_);
        if (others.empty() || leastFixed > std::max(room_ / 2, room_ - widest)) {
            others = needs_;
            fixed.clear();
        }
        std::vector<double> fixedWidths = lengthsOf(fixed, &Needs::comfort);
        double taken = sum(fixed, &Needs::comfort, padding_);
        if (const double most = std::max(leastFixed, std::min(room_ / 2, room_ - widest)); taken > most) {
            const double room = most - 2 * padding_ * static_cast<double>(fixed.size());
            std::vector<double> narrow;
            for (const Needs& column : fixed)
                narrow.push_back(leastOf(column));
            grow(narrow, fixedWidths, room);
            fixedWidths = narrow;
            taken = std::accumulate(narrow.begin(), narrow.end(), 2 * padding_ * static_cast<double>(fixed.size()));
        }
        std::vector<TablePlan::Part> parts;
        for (size_t next = 0; next < others.size();) {
            std::vector<Needs> columns = fixed;
            std::vector<double> widths = fixedWidths;
            double left = room_ - taken;
            do {
                const double width = std::min(others[next].comfort, std::max(leastWidth, room_ - taken - 2 * padding_));
                columns.push_back(others[next++]);
                widths.push_back(width);
                left -= width + 2 * padding_;
            } while (next < others.size() && others[next].comfort + 2 * padding_ <= left);
            parts.push_back(part(columns, widths));
        }
        return parts;
    }

private:
    std::vector<Needs> needs_;
    double room_, padding_;

    TablePlan::Part part(const std::vector<Needs>& needs, const std::vector<double>& widths) const {
        TablePlan::Part part;
        for (size_t i = 0; i < needs.size(); ++i) {
            const Needs& column = needs[i];
            part.columns.push_back({.index = column.index,
                                    .left = part.width + padding_,
                                    .width = widths[i],
                                    .figures = column.figures,
                                    .decimal = column.decimal,
                                    .fraction = column.fraction});
            part.width += widths[i] + 2 * padding_;
        }
        return part;
    }
};

} // namespace

TableType TableType::of(const PageSetup& setup) {
    TableType type;
    type.points = look::captionSize(setup);
    const auto font = [&](bool bold) {
        QFont made = reportFont(setup.tableFamily, type.points, bold);
        made.setKerning(false); // figures stand one below the other
        return made;
    };
    type.regular = font(false);
    type.bold = font(true);
    return type;
}

TablePlan TablePlan::of(const ResultTable& table, const TableType& type, double width, double zoom) {
    TablePlan plan;
    const int fixedRows = std::clamp(table.FixedRows, 0, table.Rows());
    const int fixedColumns = table.FixedCols < table.Cols() ? std::max(0, table.FixedCols) : 0;
    const bool idleRow = isIdle(table, false), idleColumn = isIdle(table, true);
    int rows = table.Rows();
    while (rows > fixedRows + 1 && isBlank(table, 0, table.Cols() - 1, rows - 1, rows - 1))
        --rows;
    for (int row = 0; row < rows; ++row)
        if (table.RowHeight(row) != 0 && !(idleRow && row == markRow))
            (row < fixedRows ? plan.heads : plan.body).push_back(row);
    std::vector<Needs> needs;
    Measuring measuring(table, type, plan);
    for (int column = 0; column < table.Cols(); ++column) {
        const bool fixed = column < fixedColumns;
        if (table.ColWidth(column) == 0 || (idleColumn && column == markColumn) ||
            (fixed && isBlank(table, column, column, 0, table.Rows() - 1)) || isEmptySum(table, column, fixedRows))
            continue;
        needs.push_back(measuring.of(column));
        needs.back().fixed = fixed;
    }
    if (needs.empty())
        return {};
    const double smallest = look::smallestPoints / type.points;
    const double asked = std::isfinite(zoom) && zoom > 0 ? zoom : 1;
    plan.scale = std::clamp(asked, smallest, std::max(smallest, largestPoints / type.points));
    width = std::max(width, 1.0);
    const double padding = type.padding(), comfort = sum(needs, &Needs::comfort, padding);
    if (comfort * plan.scale > width)
        plan.scale = std::clamp(width / comfort, smallest, plan.scale);
    const Parting parting(needs, width / plan.scale, padding);
    const bool whole = sum(needs, &Needs::least, padding) * plan.scale <= width * (1 + 1e-9);
    plan.parts = whole ? parting.whole() : parting.parted(leastColumn * type.em());
    return plan;
}

bool isRowOfMarks(const ResultTable& table, int row) {
    return table.Tag == TableKind::Crosstab && row == markRow && row >= table.FixedRows;
}

bool isMissingRow(const ResultTable& table, int row) {
    return hasMarks(table) && row >= table.FixedRows && table.Cols() > markColumn &&
           isMark(table.Cell(markColumn, row));
}

bool isMissingColumn(const ResultTable& table, int column) {
    return table.Tag == TableKind::Crosstab && column >= table.FixedCols && table.Rows() > markRow &&
           isMark(table.Cell(column, markRow));
}
