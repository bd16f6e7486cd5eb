#include "tables/Comparison.h"

#include "app/globals.h"
#include "diagnostics/errors.h"
#include "platform/dao/CompensatedSum.h"
#include "platform/dao/TextOrder.h"
#include "platform/system/NumberFormat.h"
#include "tables/labels.h"
#include "tables/missing.h"

#include <QHash>
#include <QSet>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

enum ComparisonColumn { ValueColumn, LabelColumn, MarkColumn, FirstEntry };
constexpr int comparisonRowHeight = 228;
constexpr int scanLimit = 25000;
const QString systemMissing = u"SYSMIS"_s;

class ColumnBuilder {
public:
    ColumnBuilder(ResultTable& table, ResultTable& percent, ResultTable& absolute, const ComparisonInput& input)
        : table_(table), percent_(percent), absolute_(absolute), in_(input) {}

    BuildOutcome build();

private:
    static constexpr size_t none = SIZE_MAX;

    /// A row of the table while the column is made: its cells, and the order that its value gives it.
    struct Row {
        std::vector<QString> cells;
        double count = 0;
        bool counted = false; ///< this entry brought the value
    };

    ResultTable& table_;
    ResultTable& percent_;
    ResultTable& absolute_;
    const ComparisonInput& in_;
    std::optional<MissingDefinition> definition_;
    std::vector<Row> rows_;
    /// Rows of values, by their place in the order of arrival. Each entry has its own spelling of a text, and the
    /// engine takes no notice of case: the keys are folded.
    QHash<QString, size_t> byValue_;
    QSet<QString> looks_;       ///< texts of the rows without the blanks around them
    size_t nullRow_ = none;     ///< the row of system-missing; its value cell is empty as that of an empty text is
    std::vector<size_t> order_; ///< rows as the table shows them
    std::vector<QString> sums_, valid_; ///< the two rows below the values
    dao::CompensatedSum total_, validTotal_;
    bool warned_ = false;

    void read();
    void add(const dao::Value& value, double count);
    size_t newRow(const dao::Value& value, const QString& text);
    void noteLook(const QString& text);
    void noteOtherLabel(const std::vector<QString>& row, const dao::Value& value);
    QString labelOfNewRow(const dao::Value& value) const;
    bool comesBefore(const dao::Value& value, const QString& text, const QString& other) const;
    void place(size_t row, const dao::Value& value, const QString& text);
    void write();
    void noteShape(int dataRows);
    void writePercent();
    void setWidths();
};

/// Takes the rows of the entries before this one from the table; what an earlier run left in this column goes.
void ColumnBuilder::read() {
    if (table_.Cols() <= in_.column)
        table_.setCols(in_.column + 1);
    table_.Tag = TableKind::Comparison;
    table_.markedBy = in_.marks ? Marks::By::Hand : Marks::By::Definition;
    const int columns = table_.Cols();
    const TableShape& shape = table_.shape;
    const auto take = [&](int row) {
        std::vector<QString> cells(static_cast<size_t>(columns));
        for (int column = 0; row >= 0 && column < columns; ++column)
            if (column != in_.column)
                cells[static_cast<size_t>(column)] = table_.Cell(column, row);
        return cells;
    };
    for (int row = shape.rows.first; row <= shape.rows.last; ++row) {
        rows_.push_back({take(row)});
        order_.push_back(rows_.size() - 1);
        const QString value = dao::foldedText(rows_.back().cells[ValueColumn]);
        if (row == shape.nullRow)
            nullRow_ = rows_.size() - 1;
        else if (!byValue_.contains(value))
            byValue_.insert(value, rows_.size() - 1);
        if (row != shape.nullRow)
            looks_.insert(value.trimmed());
    }
    sums_ = take(shape.sumRow);
    valid_ = take(shape.validRow);
    if (in_.dtMissing)
        definition_.emplace(*in_.dtMissing);
}

void ColumnBuilder::add(const dao::Value& value, double count) {
    const QString text = value.toText();
    size_t row = value.isNull() ? nullRow_ : byValue_.value(dao::foldedText(text), none);
    if (row == none) {
        if (rows_.size() + 3 >= scanLimit && !std::exchange(warned_, true))
            showTableWarning(u"25000 Zeilen erreicht, Abbruch"_s);
        row = newRow(value, text);
    } else {
        noteOtherLabel(rows_[row].cells, value);
    }
    total_.add(count);
    if (!isMark(rows_[row].cells[MarkColumn]))
        validTotal_.add(count);
    rows_[row].count += count;
    rows_[row].counted = true;
}

/// Blanks around a text can't be seen.
void ColumnBuilder::noteLook(const QString& text) {
    const QString look = dao::foldedText(text).trimmed();
    if (looks_.contains(look))
        table_.addNote(TableNote::ofLookAlikes());
    looks_.insert(look);
}

/// A row is one value, whatever an entry means by it: a reader who sees one label takes it for that of all. One line
/// names all such values.
void ColumnBuilder::noteOtherLabel(const std::vector<QString>& row, const dao::Value& value) {
    constexpr qsizetype named = 8;
    const QString shown = dao::foldedText(row[LabelColumn].simplified());
    if (value.isNull() || shown.isEmpty() || (in_.HeaderValAddVar && shown.startsWith(u'(')))
        return;
    const QString own = dao::foldedText(labelOf(in_.labels, value).value_or(QString()).simplified());
    if (own.isEmpty() || shown == own || (in_.HeaderValAddVar && shown.startsWith(own + u" ("_s)))
        return;
    const QString sentence = u"Nicht in allen Einträgen dasselbe Label; gezeigt wird das des ersten: %1"_s;
    const QString text = value.toText(), more = u"..."_s;
    const auto note = std::ranges::find(table_.notes, sentence, &TableNote::sentence);
    if (note == table_.notes.end()) {
        table_.notes.push_back({sentence, text});
        return;
    }
    QStringList values = note->about.split(u"; "_s);
    if (values.last() != more && !values.contains(text))
        note->about = (values << (values.size() < named ? text : more)).join(u"; "_s);
}

QString ColumnBuilder::labelOfNewRow(const dao::Value& value) const {
    const QString unlabelled = value.isNull() ? systemMissing : QString();
    if (!in_.HeaderValFirst)
        return unlabelled;
    QString label = labelOf(in_.labels, value).value_or(unlabelled);
    if (in_.HeaderValAddVar) {
        const QString& header = table_.Cell(in_.column, 0);
        label += u" ("_s + header.left(header.indexOf(u'(')).trimmed() + u')';
    }
    return label;
}

size_t ColumnBuilder::newRow(const dao::Value& value, const QString& text) {
    Row row{std::vector<QString>(static_cast<size_t>(table_.Cols()))};
    const bool missing =
        value.isNull() || (definition_ && value.isNumeric() && definition_->contains(value.toDouble()));
    row.cells[ValueColumn] = text;
    row.cells[LabelColumn] = labelOfNewRow(value);
    const AxisMarks::Value* byHand =
        in_.marks ? in_.marks->rows.find(value.isNull() ? std::nullopt : std::optional(text)) : nullptr;
    row.cells[MarkColumn] = byHand ? byHand->mark : missing ? u"X"_s : QString();
    if (!value.isNull())
        noteLook(text);
    rows_.push_back(row);
    const size_t added = rows_.size() - 1;
    if (value.isNull())
        nullRow_ = added;
    else
        byValue_.insert(dao::foldedText(text), added);
    place(added, value, text);
    return added;
}

/// A number is compared with the number at the start of the other cell, a text with its text; system-missing counts as
/// 0.
bool ColumnBuilder::comesBefore(const dao::Value& value, const QString& text, const QString& other) const {
    if (value.isNull() || value.isNumeric())
        return (value.isNull() ? 0.0 : value.toDouble()) < dao::leadingNumber(other, true);
    return dao::compareTexts(text, other) < 0;
}

/// Goes up from the end past every row that the value comes before.
void ColumnBuilder::place(size_t row, const dao::Value& value, const QString& text) {
    auto at = order_.end();
    while (at != order_.begin() && comesBefore(value, text, rows_[*(at - 1)].cells[ValueColumn]))
        --at;
    order_.insert(at, row);
}

void ColumnBuilder::write() {
    const int dataRows = static_cast<int>(order_.size());
    table_.setRows(dataRows + 4);
    const auto put = [this](int row, const std::vector<QString>& cells) {
        for (int column = 0; column < table_.Cols(); ++column)
            table_.setCell(column, row, cells[static_cast<size_t>(column)]);
        table_.setCellAlignment(LabelColumn, row, ResultTable::LeftCenter);
        table_.setCellAlignment(MarkColumn, row, ResultTable::RightTop);
        table_.setRowHeight(row, comparisonRowHeight);
    };
    const size_t column = static_cast<size_t>(in_.column);
    for (int row = 1; row <= dataRows; ++row) {
        Row& data = rows_[order_[static_cast<size_t>(row) - 1]];
        if (data.counted)
            data.cells[column] = NumberFormat::fixed(data.count, 0);
        put(row, data.cells);
    }
    sums_[LabelColumn] = TranslateText(u"Summe"_s);
    sums_[column] = NumberFormat::fixed(total_.value(), 0);
    valid_[LabelColumn] = TranslateText(u"Gültige Fälle"_s);
    valid_[column] = NumberFormat::fixed(validTotal_.value(), 0);
    put(dataRows + 1, sums_);
    put(dataRows + 2, valid_);
    put(dataRows + 3, std::vector<QString>(static_cast<size_t>(table_.Cols())));
    noteShape(dataRows);
}

void ColumnBuilder::noteShape(int dataRows) {
    TableShape& shape = table_.shape;
    shape.rows = {1, dataRows};
    shape.columns = {FirstEntry, table_.Cols() - 1};
    shape.sumRow = dataRows + 1;
    shape.validRow = dataRows + 2;
    const auto null = std::ranges::find(order_, nullRow_);
    shape.nullRow = null == order_.end() ? -1 : 1 + static_cast<int>(null - order_.begin());
    shape.cases.resize(static_cast<size_t>(shape.columns.count()));
    shape.cases[static_cast<size_t>(in_.column - FirstEntry)] = {table_.Cell(in_.column, shape.sumRow),
                                                                 table_.Cell(in_.column, shape.validRow)};
}

/// Valid percent of every entry, on the counts as displayed.
void ColumnBuilder::writePercent() {
    percent_ = table_;
    percent_.percentOf = PercentOf::Columns;
    const int validRow = table_.shape.validRow;
    for (int column = FirstEntry; column < table_.Cols(); ++column) {
        if (const QString& n = table_.Cell(column, validRow); !n.isEmpty())
            percent_.bases.push_back({QString(), table_.Cell(column, 0), n});
        const double base = dao::leadingNumber(table_.Cell(column, validRow), true);
        for (int row = 1; row < table_.Rows(); ++row) {
            const QString& cell = table_.Cell(column, row);
            const bool shown =
                base != 0 && !cell.isEmpty() && !isMark(table_.Cell(MarkColumn, row)) && row != table_.shape.sumRow;
            percent_.setCell(column, row,
                             shown ? NumberFormat::fixed(dao::leadingNumber(cell, true) * 100.0 / base, 1) : QString());
        }
    }
    if (!in_.CommaInPercent)
        percent_.exchangeSeparators(FirstEntry, 1);
}

void ColumnBuilder::setWidths() {
    if (!in_.AutoColWidth)
        return;
    ColumnWidths widths(true, in_.textWidth);
    const int sumRow = table_.shape.sumRow;
    for (const int column : {+ValueColumn, +LabelColumn, +MarkColumn, in_.column}) {
        for (int row = 0; row < table_.Rows(); ++row)
            if (!table_.Cell(column, row).isEmpty())
                widths.note(column, table_.Cell(column, row), row == 0 || row == sumRow);
        table_.setColWidth(column, widths.width(column));
    }
}

BuildOutcome ColumnBuilder::build() {
    read();
    const bool empty = in_.counts.Bof() && in_.counts.Eof();
    if (!empty)
        in_.counts.MoveFirst();
    for (; !empty && !in_.counts.Eof(); in_.counts.MoveNext()) {
        const dao::Value count = in_.counts.value(1);
        add(in_.counts.value(0), count.isNull() ? 0.0 : count.toDouble());
    }
    write();
    for (int row = 1; row < table_.Rows() - 1; ++row)
        if (in_.cancelled && in_.cancelled())
            return BuildOutcome::Cancelled;
    setWidths();
    writePercent();
    absolute_ = table_;
    return BuildOutcome::Complete;
}

} // namespace

BuildOutcome BuildComparisonColumn(ResultTable& table, ResultTable& percent, ResultTable& absolute,
                                   const ComparisonInput& input) {
    BuildOutcome outcome = BuildOutcome::Aborted;
    const Trap end = trapped([&] { outcome = ColumnBuilder(table, percent, absolute, input).build(); });
    return end == Trap::Done ? outcome : BuildOutcome::Aborted;
}
