#include "tables/StoredTable.h"

#include "tables/storedText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView viewLetters = u"ASZG";
constexpr int shortestCell = 3;   ///< characters of an empty one, quotes and ";"
constexpr int shortestNumber = 2; ///< characters of a number with its ";"
constexpr int mostTwips = 100'000;
constexpr int lastAlignment = 9;

/// True where that many fields can stand in what is left.
bool canHold(const StoredFields& fields, qint64 count, int shortest) {
    return count <= fields.left() / shortest;
}

/// The cells, column by column; the size is believed only where the text is long enough for it.
bool readCells(StoredFields& fields, ResultTable& table) {
    const std::optional<int> columns = fields.number();
    const std::optional<int> rows = columns ? fields.number() : std::nullopt;
    if (!rows || *columns < 1 || *rows < 1 || !canHold(fields, qint64{*columns} * *rows, shortestCell))
        return false;
    table.setRows(*rows);
    table.setCols(*columns);
    for (int column = 0; column < *columns; ++column)
        for (int row = 0; row < *rows; ++row) {
            const std::optional<QString> cell = fields.quoted();
            if (!cell)
                return false;
            table.setCell(column, row, *cell);
        }
    return true;
}

std::optional<TableKind> kindNamed(const QString& word) {
    for (const TableKind kind : {TableKind::Frequency, TableKind::Crosstab, TableKind::Descriptives})
        if (word == storedKind(kind))
            return kind;
    return std::nullopt;
}

} // namespace

QString storedKind(TableKind kind) {
    return kind == TableKind::Crosstab ? u"Xtab"_s : kind == TableKind::Descriptives ? u"Desc"_s : u"Freq"_s;
}

QString storedViewWords(const StoredTable& stored) {
    static const QString words[] = {u"absolute Werte"_s, u"Spaltenprozente"_s, u"Zeilenprozente"_s,
                                    u"Gesamtprozente"_s};
    return stored.kind == TableKind::Crosstab ? words[std::clamp(stored.values, 0, 3)] : QString();
}

void fixHeads(StoredTable& stored) {
    if (stored.kind != TableKind::Crosstab)
        return;
    stored.table.FixedRows = std::min(2, stored.table.Rows());
    stored.table.FixedCols = std::min(2, stored.table.Cols());
}

QString BuildTableString(const StoredTable& stored) {
    const ResultTable& table = stored.table;
    // The last field has no quotes: a name that would end it early can't be kept.
    if (table.Cols() < 1 || table.Rows() < 1 || stored.weight.contains(u';') || stored.weight.startsWith(u'"'))
        return storedFailure;
    const bool crosstab = stored.kind == TableKind::Crosstab;
    QString text = quotedField(stored.title) + storedKind(stored.kind) + u';';
    if (crosstab)
        text += viewLetters[std::clamp(stored.values, 0, 3)];
    text += u';' + (crosstab ? stored.nFlag : QString()) + u';';
    text += numberField(table.Cols()) + numberField(table.Rows());
    for (int column = 0; column < table.Cols(); ++column)
        for (int row = 0; row < table.Rows(); ++row)
            text += quotedField(table.Cell(column, row));
    return text + stored.weight + u';';
}

QString BuildTableLayoutString(const ResultTable& table) {
    QString text = numberField(table.Cols()) + numberField(table.Rows());
    for (int column = 0; column < table.Cols(); ++column)
        text += numberField(table.ColWidth(column));
    for (int row = 0; row < table.Rows(); ++row)
        text += numberField(table.RowHeight(row));
    for (int column = 0; column < table.Cols(); ++column)
        for (int row = 0; row < table.Rows(); ++row)
            text += numberField(table.CellAlignment(column, row));
    for (int column = 0; column < table.Cols(); ++column)
        text += numberField(table.ColAlignment(column));
    return text;
}

std::optional<StoredTable> readStoredTable(const QString& text, const QString& layout) {
    StoredFields fields(text);
    StoredTable stored;
    const std::optional<QString> title = fields.quoted();
    const std::optional<QString> word = title ? fields.plain() : std::nullopt;
    const std::optional<TableKind> kind = word ? kindNamed(*word) : std::nullopt;
    const std::optional<QString> values = kind ? fields.plain() : std::nullopt;
    const std::optional<QString> nFlag = values ? fields.plain() : std::nullopt;
    if (!nFlag || !readCells(fields, stored.table))
        return std::nullopt;
    // A size that is too small would leave cells behind; what is shown then were the values of other cells.
    const std::optional<QString> weight = fields.plain();
    if (!weight || weight->startsWith(u'"') || fields.left() > 0)
        return std::nullopt;
    stored.title = title->section(u'"', 0, 0);
    stored.kind = *kind;
    if (*kind == TableKind::Crosstab && values->size() == 1)
        stored.values = static_cast<int>(std::max<qsizetype>(viewLetters.indexOf(values->front()), 0));
    stored.nFlag = *nFlag;
    stored.weight = *weight;
    stored.table.Tag = *kind;
    stored.table.FixedRows = stored.table.FixedCols = 1;
    if (!layout.isEmpty())
        layLayoutOn(stored.table, layout);
    return stored;
}

bool layLayoutOn(ResultTable& table, const QString& layout) {
    StoredFields fields(layout);
    const std::optional<int> columns = fields.number();
    const std::optional<int> rows = columns ? fields.number() : std::nullopt;
    if (!rows || *columns < 0 || *rows < 0)
        return false;
    const qint64 numbers = qint64{*columns} * *rows + 2 * qint64{*columns} + *rows;
    if (!canHold(fields, numbers, shortestNumber))
        return false;
    const auto each = [&fields](int count, const auto& set) {
        for (int i = 0; i < count; ++i) {
            const std::optional<int> number = fields.number();
            if (!number)
                return false;
            set(i, *number);
        }
        return true;
    };
    const auto isAlignment = [](int number) { return number >= 0 && number <= lastAlignment; };
    // A negative size is that which a column or row has by itself.
    const bool sizes = each(*columns,
                            [&](int column, int twips) {
                                if (column < table.Cols() && twips >= 0)
                                    table.giveColWidth(column, std::min(twips, mostTwips));
                            }) &&
                       each(*rows, [&](int row, int twips) {
                           if (row < table.Rows() && twips >= 0)
                               table.setRowHeight(row, std::min(twips, mostTwips));
                       });
    if (!sizes)
        return false;
    for (int column = 0; column < *columns; ++column)
        if (!each(*rows, [&](int row, int alignment) {
                if (column < table.Cols() && row < table.Rows() && alignment != 0 && isAlignment(alignment))
                    table.setCellAlignment(column, row, alignment);
            }))
            return false;
    const bool whole = each(*columns, [&](int column, int alignment) {
        if (column < table.Cols() && isAlignment(alignment))
            table.setColAlignment(column, alignment);
    });
    return whole && *columns == table.Cols() && *rows == table.Rows() && fields.left() == 0;
}
