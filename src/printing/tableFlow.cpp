#include "printing/flows.h"
#include "printing/look.h"
#include "printing/setRow.h"
#include "printing/tablePlan.h"
#include "printing/typeWidths.h"
#include "printing/words.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double cellAir = 0.14;          ///< above and below the text of a cell, in ems of its type
constexpr double tallRow = 480;           ///< from that height on a row was made higher on purpose, in twips
constexpr double mostForHeads = 0.3;      ///< that heads may take where they are repeated, and that a kept height is
constexpr double partingRow = 0.5;        ///< height of a row without a text, in ems
constexpr int fewRows = 5, someRows = 16; ///< stay together; do so if they are low
const QColor rowRule(0xd4, 0xd4, 0xd4);
constexpr double rowRuleWidth = 4;

/// The cells as they can be printed.
ResultTable printableTable(const ResultTable& table) {
    ResultTable made = table;
    for (int row = 0; row < table.Rows(); ++row)
        for (int column = 0; column < table.Cols(); ++column) {
            const QString& cell = table.Cell(column, row);
            if (QString text = printable(column == 0 ? table.shownCell(column, row) : cell).trimmed(); text != cell)
                made.setCell(column, row, text);
        }
    return made;
}

class TableFlow : public Flowable {
public:
    TableFlow(const TableBlock& block, double room, const PageSetup& setup);

    int rows() const override { return partCount() * (1 + bodyCount()) + static_cast<int>(below_.size()); }
    double height(int row) const override;
    bool mayEndAfter(int row) const override;
    double headHeight(int row) const override;
    double spaceBefore() const override { return look::blockSpace(setup_); }
    double width() const override { return width_; }
    void place(ReportPage& page, int row, const QPointF& at) const override { built(row).place(page, at); }
    void placeHead(ReportPage& page, int row, const QPointF& at) const override;
    double piece(int row, double from, double room) const override { return built(row).piece(from, room); }
    void placePiece(ReportPage& page, int row, double from, double pieceHeight, const QPointF& at) const override {
        built(row).placePiece(page, from, pieceHeight, at);
    }

private:
    struct Place {
        int part = 0;
        int body = -1;  ///< row below the heads; -1 the heads
        int below = -1; ///< what stands below the table
    };

    PageSetup setup_;
    TableType type_;
    TypeWidths &regular_, &bold_;
    ResultTable table_;
    TablePlan plan_;
    QString title_;
    double width_ = 0, titleWidth_ = 0;
    std::vector<SetText> below_;
    std::vector<double> partHeights_; ///< of the heads of each part without title
    mutable std::vector<double> heights_;
    mutable int builtRow_ = -1;
    mutable SetRow built_;

    int bodyCount() const { return static_cast<int>(plan_.body.size()); }
    /// A table without columns has one place for its title all the same.
    int partCount() const { return std::max(1, static_cast<int>(plan_.parts.size())); }
    Place placeOf(int row) const;
    const SetRow& built(int row) const;
    SetRow build(const Place& place) const;
    SetRow buildHeads(int part, bool again) const;
    SetRow buildBody(const Place& place) const;
    double partWidth(int part) const {
        return plan_.parts.empty() ? 0 : plan_.parts[static_cast<size_t>(part)].width * plan_.scale;
    }

    double air() const { return cellAir * type_.em() * plan_.scale; }
    static double cellHeight(const QString& text, TypeWidths& type, double inner);
    double lineOfCells(int part, int row, TypeWidths& type) const;
    double addCell(SetRow& into, const TablePlan::Column& column, int row, TypeWidths& type, double top,
                   const QColor& color, double room = 0) const;
    Qt::Alignment alignment(const TablePlan::Column& column, int row) const;
    Qt::Alignment downwards(const TablePlan::Column& column, int row) const;
    double leastHeight(int row) const;
    bool partsRows(int row) const;
    bool staysTogether(int part) const;
    void addRule(SetRow& into, int part, double y, double ruleWidth, const QColor& color) const;
    void setBelow(const QStringList& notes, double room);
};

TableFlow::TableFlow(const TableBlock& block, double room, const PageSetup& setup)
    : setup_(setup), type_(TableType::of(setup)), regular_(TypeWidths::in(type_.regular)),
      bold_(TypeWidths::in(type_.bold)), table_(printableTable(block.table)),
      plan_(TablePlan::of(table_, type_, room, setup.tableZoom)), title_(printable(block.title).trimmed()) {
    for (int part = 0; part < static_cast<int>(plan_.parts.size()); ++part)
        width_ = std::max(width_, partWidth(part));
    // A title is not broken more often than it must, however narrow the table, and its lines are no longer than others.
    const double beside = std::min(room, std::clamp(width_, 26 * look::em(setup), look::measure(setup)));
    titleWidth_ = beside;
    setBelow(block.notes, beside);
    if (!title_.isEmpty() || !below_.empty())
        width_ = std::max(width_, beside);
    width_ = std::min(width_, room);
    for (int part = 0; part < partCount(); ++part) {
        double heads = 0;
        for (const int row : plan_.heads)
            heads += lineOfCells(part, row, bold_);
        partHeights_.push_back(plan_.parts.empty() ? 0 : heads);
    }
    heights_.assign(static_cast<size_t>(rows()), -1);
}

void TableFlow::setBelow(const QStringList& notes, double room) {
    const QFont font = reportFont(setup_.fontFamily, look::noteSize(setup_));
    QStringList lines;
    if (table_.Rows() == 0 || table_.Cols() == 0)
        lines << reportWord(u"Die Tabelle ist leer."_s, setup_.language);
    else if (plan_.parts.empty() || plan_.heads.size() + plan_.body.size() == 0)
        lines << reportWord(u"Alle Zeilen oder Spalten der Tabelle sind ausgeblendet."_s, setup_.language);
    else if (plan_.body.empty())
        lines << reportWord(u"Die Tabelle hat keine Zeilen."_s, setup_.language);
    for (const QString& line : lines + notes)
        for (SetText& text : setStretches(printable(line), font, room))
            below_.push_back(std::move(text));
}

TableFlow::Place TableFlow::placeOf(int row) const {
    const int rowsOfPart = 1 + bodyCount(), ofParts = partCount() * rowsOfPart;
    if (row >= ofParts)
        return {.part = partCount() - 1, .body = -1, .below = row - ofParts};
    return {.part = row / rowsOfPart, .body = row % rowsOfPart - 1, .below = -1};
}

// ---- cells

/// Columns without a word of the table's own: figures to the right, the heads above them too.
Qt::Alignment TableFlow::alignment(const TablePlan::Column& column, int row) const {
    int kept = table_.CellAlignment(column.index, row);
    if (kept == 0)
        kept = table_.ColAlignment(column.index);
    if (kept >= 1 && kept <= 8) {
        constexpr Qt::AlignmentFlag across[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
        return across[kept / 3];
    }
    const bool head = column.figures && (row < table_.FixedRows || isRowOfMarks(table_, row));
    return head || figureOf(table_.Cell(column.index, row)) != Figure::None ? Qt::AlignRight : Qt::AlignLeft;
}

/// In a row of the usual height all cells begin on its first line, and all heads end on its last.
Qt::Alignment TableFlow::downwards(const TablePlan::Column& column, int row) const {
    int kept = table_.CellAlignment(column.index, row);
    if (kept == 0)
        kept = table_.ColAlignment(column.index);
    if (table_.RowHeight(row) < tallRow || kept < 1 || kept > 8)
        return row < table_.FixedRows ? Qt::AlignBottom : Qt::AlignTop;
    constexpr Qt::AlignmentFlag down[] = {Qt::AlignTop, Qt::AlignVCenter, Qt::AlignBottom};
    return down[kept % 3];
}

/// In units of the type.
double TableFlow::cellHeight(const QString& text, TypeWidths& type, double inner) {
    const double step = listSpacing * type.font().pixelSize();
    if (text.isEmpty())
        return step;
    const TextExtent extent = type.of(text);
    return extent.plain && extent.width <= inner ? step : heightOf(setStretches(text, type.font(), inner));
}

/// A row without a text parts those above it from those below.
bool TableFlow::partsRows(int row) const {
    for (int column = 0; column < table_.Cols(); ++column)
        if (!table_.Cell(column, row).isEmpty())
            return false;
    return row >= table_.FixedRows && table_.RowHeight(row) < tallRow;
}

double TableFlow::leastHeight(int row) const {
    if (table_.RowHeight(row) < tallRow)
        return 0;
    return std::min(table_.RowHeight(row) * type_.points / TableType::keptFor * plan_.scale,
                    mostForHeads * setup_.textArea().height());
}

/// Height of a row of cells.
double TableFlow::lineOfCells(int part, int row, TypeWidths& type) const {
    if (plan_.parts.empty())
        return 0;
    if (partsRows(row))
        return partingRow * type_.em() * plan_.scale;
    double highest = listSpacing * type_.em();
    for (const TablePlan::Column& column : plan_.parts[static_cast<size_t>(part)].columns)
        highest = std::max(highest, cellHeight(table_.Cell(column.index, row), type, column.width));
    return std::max(highest * plan_.scale + 2 * air(), leastHeight(row));
}

/// @param room height that the cell has
double TableFlow::addCell(SetRow& into, const TablePlan::Column& column, int row, TypeWidths& type, double top,
                          const QColor& color, double room) const {
    const QString& text = table_.Cell(column.index, row);
    if (text.isEmpty())
        return 0;
    const double scale = plan_.scale;
    const Qt::Alignment across = alignment(column, row), down = downwards(column, row);
    const TextExtent extent = type.of(text);
    const bool line = extent.plain && extent.width <= column.width;
    const std::vector<SetText> set = line ? std::vector<SetText>{setText(text, type.font(), 0)}
                                          : setStretches(text, type.font(), column.width, across);
    double x = column.left;
    if (line && across != Qt::AlignLeft) {
        const double free = column.width - set.front().width;
        const bool atSeparator = column.decimal && across == Qt::AlignRight && row >= table_.FixedRows &&
                                 !isRowOfMarks(table_, row) && figureOf(text) == Figure::Number;
        if (atSeparator)
            x += column.width - column.fraction -
                 set.front().layout->lineAt(0).cursorToX(static_cast<int>(separatorIn(text)));
        else
            x += across == Qt::AlignHCenter ? free / 2 : free;
    }
    const double free = std::max(0.0, room - 2 * air() - heightOf(set) * scale);
    const double y = top + air() + (down == Qt::AlignVCenter ? free / 2 : down == Qt::AlignBottom ? free : 0);
    return into.add(set, {x * scale, y}, scale, color);
}

void TableFlow::addRule(SetRow& into, int part, double y, double ruleWidth, const QColor& color) const {
    into.rules.push_back({QLineF(0, y, partWidth(part), y), ruleWidth, color});
}

// ---- rows

/// Title and heads of a part. @param again above a row that begins a page
SetRow TableFlow::buildHeads(int part, bool again) const {
    SetRow row;
    const QFont titleFont = reportFont(setup_.fontFamily, look::captionSize(setup_), true);
    const double em = titleFont.pixelSize();
    const bool continued = again || part > 0;
    double y = part > 0 && !again ? 1.5 * em : 0;
    if (continued) {
        // One line of it is enough to know the table by.
        const QFont wordFont = reportFont(setup_.fontFamily, look::captionSize(setup_), false, true);
        const QString word = reportWord(u"(Fortsetzung)"_s, setup_.language);
        const double gap = title_.isEmpty() ? 0 : 0.4 * em;
        const SetText end = setText(word, wordFont, 0);
        const SetText start = setLine(title_, titleFont, std::max(em, width_ - end.width - gap));
        if (!title_.isEmpty())
            row.texts.push_back({start, {0, y}, 1, Qt::black});
        row.texts.push_back({end, {title_.isEmpty() ? 0 : start.width + gap, y}, 1, look::quietColor});
        y += end.height() + 0.25 * em;
    } else if (!title_.isEmpty()) {
        y += row.add(setStretches(title_, titleFont, titleWidth_), {0, y}) + 0.25 * em;
    }
    const bool heads = !again || partHeights_[static_cast<size_t>(part)] <= mostForHeads * setup_.textArea().height();
    if (plan_.parts.empty() || !heads) {
        row.height = y;
        return row;
    }
    addRule(row, part, y, look::firmLine, Qt::black);
    for (const int head : plan_.heads) {
        const double high = lineOfCells(part, head, bold_);
        for (const TablePlan::Column& column : plan_.parts[static_cast<size_t>(part)].columns)
            addCell(row, column, head, bold_, y, Qt::black, high);
        y += high;
    }
    if (!plan_.heads.empty())
        addRule(row, part, y, look::hairline, Qt::black);
    row.height = y;
    return row;
}

SetRow TableFlow::buildBody(const Place& place) const {
    SetRow row;
    const int index = plan_.body[static_cast<size_t>(place.body)];
    const bool missing = isMissingRow(table_, index);
    row.height = lineOfCells(place.part, index, regular_);
    const double scale = plan_.scale;
    if (missing)
        row.boxes.push_back({QRectF(0, 0, partWidth(place.part), row.height), look::shade});
    for (const TablePlan::Column& column : plan_.parts[static_cast<size_t>(place.part)].columns) {
        const bool missingColumn = isMissingColumn(table_, column.index);
        if (missingColumn && !missing)
            row.boxes.push_back({QRectF((column.left - type_.padding()) * scale, 0,
                                        (column.width + 2 * type_.padding()) * scale, row.height),
                                 look::shade});
        const bool apart = missing || missingColumn;
        addCell(row, column, index, regular_, 0, apart ? look::quietColor : QColor(Qt::black), row.height);
    }
    const bool last = place.body + 1 == bodyCount();
    if (last || !partsRows(index))
        addRule(row, place.part, row.height, last ? look::firmLine : rowRuleWidth, last ? QColor(Qt::black) : rowRule);
    return row;
}

SetRow TableFlow::build(const Place& place) const {
    if (place.below >= 0) {
        SetRow row;
        const double gap = place.below == 0 ? 0.25 * look::em(setup_) : 0;
        row.height = gap + row.add({below_[static_cast<size_t>(place.below)]}, {0, gap}, 1, look::quietColor);
        return row;
    }
    return place.body < 0 ? buildHeads(place.part, false) : buildBody(place);
}

const SetRow& TableFlow::built(int row) const {
    if (builtRow_ != row) {
        built_ = build(placeOf(row));
        builtRow_ = row;
    }
    return built_;
}

double TableFlow::height(int row) const {
    double& known = heights_[static_cast<size_t>(row)];
    if (known < 0) {
        const Place place = placeOf(row);
        known = place.body >= 0 ? lineOfCells(place.part, plan_.body[static_cast<size_t>(place.body)], regular_)
                                : built(row).height;
    }
    return known;
}

bool TableFlow::mayEndAfter(int row) const {
    const Place place = placeOf(row);
    const int count = bodyCount();
    if (place.below >= 0) // notes are few, or somebody's novel
        return below_.size() > 6 || place.below + 1 == static_cast<int>(below_.size());
    if (place.body < 0)
        return false;
    const bool last = place.body + 1 == count;
    if (last && place.part + 1 == partCount())
        return below_.empty();
    if (last)
        return true;
    if (height(row) > setup_.textArea().height() / 5)
        return true;
    return place.body > 0 && place.body + 2 != count && !staysTogether(place.part);
}

/// A small part of a page, or a few rows: two halves of it would be harder to read than a shorter page.
bool TableFlow::staysTogether(int part) const {
    const int count = bodyCount();
    if (count <= fewRows || count > someRows)
        return count <= fewRows;
    double all = 0;
    for (int body = 0; body < count; ++body)
        all += height(part * (1 + count) + 1 + body);
    return all < setup_.textArea().height() / 4;
}

double TableFlow::headHeight(int row) const {
    const Place place = placeOf(row);
    return place.body < 0 ? 0 : buildHeads(place.part, true).height;
}

void TableFlow::placeHead(ReportPage& page, int row, const QPointF& at) const {
    if (const Place place = placeOf(row); place.body >= 0)
        buildHeads(place.part, true).place(page, at);
}

} // namespace

std::unique_ptr<Flowable> tableFlow(const TableBlock& block, double width, const PageSetup& setup) {
    return std::make_unique<TableFlow>(block, width, setup);
}
