#include "analysis/result/TableResult.h"

#include "app/globals.h"
#include "tables/Frequency.h"

#include <algorithm>
#include <array>
#include <numeric>

using namespace Qt::StringLiterals;

QStringList TableResult::orderable(TableLines lines) const {
    return facts && facts->complete ? headsOf(mfgGrid, lines) : QStringList();
}

std::vector<int> TableResult::placesAsMade(TableLines lines) const {
    if (made)
        return lines == TableLines::Rows ? made->rows : made->columns;
    std::vector<int> places(static_cast<size_t>(headsOf(marked(), lines).size()));
    std::iota(places.begin(), places.end(), 0);
    return places;
}

void TableResult::order(TableLines lines, const std::vector<int>& order) {
    const QStringList heads = headsOf(mfgGrid, lines), ofMarked = headsOf(marked(), lines);
    auto now = std::make_shared<Made>();
    if (made)
        *now = *made;
    else
        *now = {{mfgGrid, mfgGrid2, mfgGrid3, mfgGrid4, mfgGrid5},
                facts->origin.cases,
                placesAsMade(TableLines::Rows),
                placesAsMade(TableLines::Columns)};
    std::vector<int>& places = lines == TableLines::Rows ? now->rows : now->columns;
    if (!places.empty()) {
        const std::vector<int> before = places, change = orderLike(heads, order, ofMarked);
        std::ranges::transform(change, places.begin(), [&](int place) { return before[static_cast<size_t>(place)]; });
    }
    // Notes and lines below a comparison speak of its first entry, which need not stand first any more.
    const bool entries = mfgGrid.Tag == TableKind::Comparison && !isInOrder(now->columns);
    const bool byHand = !isInOrder(now->rows) || !isInOrder(now->columns);
    const QString first = entries ? headsOf(now->tables[0], TableLines::Columns).value(0) : QString();
    for (ResultTable* table : tables()) {
        orderLines(*table, lines, orderLike(heads, order, headsOf(*table, lines)));
        if (table->Tag == TableKind::Frequency && lines == TableLines::Rows)
            cumulateAnew(*table, facts->origin.options.CommaInPercent);
        table->noteOrder(byHand, first);
    }
    if (facts->origin.cases.size() == mfgGrid.shape.cases.size())
        facts->origin.cases = mfgGrid.shape.cases;
    made = byHand ? std::move(now) : nullptr;
}

ResultTable TableResult::markedAsMade() const {
    if (!made)
        return marked();
    const bool crosstab = mfgGrid.Tag == TableKind::Crosstab;
    ResultTable then = made->tables[crosstab ? 4 : 0];
    if (mfgGrid.Tag == TableKind::Descriptives)
        return then;
    const TableShape& shape = marked().shape;
    for (int i = 0; i < shape.rows.count(); ++i)
        then.setCell(markColumn, shape.rows.first + made->rows[static_cast<size_t>(i)],
                     marked().Cell(markColumn, shape.rows.first + i));
    for (int i = 0; crosstab && i < shape.columns.count(); ++i)
        then.setCell(shape.columns.first + made->columns[static_cast<size_t>(i)], markRow,
                     marked().Cell(shape.columns.first + i, markRow));
    return then;
}

TableResult TableResult::asMade() const {
    TableResult result = *this;
    if (!made)
        return result;
    for (size_t i = 0; i < made->tables.size(); ++i)
        *result.tables()[i] = made->tables[i];
    (mfgGrid.Tag == TableKind::Crosstab ? result.mfgGrid5 : result.mfgGrid) = markedAsMade();
    if (result.facts)
        result.facts->origin.cases = made->cases;
    result.made.reset();
    return result;
}

Marks TableResult::shownMarks() const {
    return made ? Marks::of(markedAsMade()) : Marks::of(marked());
}

Marks TableResult::marksInForce() const {
    if (!facts || !facts->complete)
        return marks;
    Marks now = shownMarks();
    now.subject = marks.subject;
    now.by = marks.by == Marks::By::Hand || !now.sameValues(marks) ? Marks::By::Hand : Marks::By::Definition;
    return now;
}

bool TableResult::marksCanBeSet(int cbValues) const {
    if (!facts || !facts->complete)
        return false;
    if (mfgGrid.Tag == TableKind::Crosstab)
        return cbValues == 0;
    return mfgGrid.Tag == TableKind::Frequency || mfgGrid.Tag == TableKind::Comparison;
}

ClickEffect TableResult::click(const GridSelection& selection, int cbValues) {
    if (!marksCanBeSet(cbValues))
        return ClickEffect::None;
    const ClickEffect effect = clickTable(mfgGrid, selection);
    if (effect == ClickEffect::Marked && mfgGrid.Tag == TableKind::Crosstab)
        clickTable(mfgGrid5, selection); // for when the views are changed
    return effect;
}

void TableResult::showView(int view) {
    const ResultTable& source = *std::array{&mfgGrid5, &mfgGrid2, &mfgGrid3, &mfgGrid4}[static_cast<size_t>(view)];
    if (mfgGrid.Tag == TableKind::Crosstab) {
        mfgGrid = source;
        return;
    }
    // A comparison's views share their first columns with the table shown.
    mfgGrid.percentOf = source.percentOf;
    mfgGrid.bases = source.bases;
    for (int row = 1; row < std::min(mfgGrid.Rows(), source.Rows()); ++row)
        for (int column = 3; column < std::min(mfgGrid.Cols(), source.Cols()); ++column)
            mfgGrid.setCell(column, row, source.Cell(column, row));
}

void TableResult::clear() {
    mfgGrid.Clear();
    computation.ResultCacheKey.clear();
    lblLabel.clear();
    facts.reset();
    stored.reset();
    marks = {};
    made.reset();
}

QStringList TableResult::notes() const {
    QStringList sentences;
    for (const TableNote& note : mfgGrid.notes)
        sentences << note.text();
    return sentences;
}

ResultPlace placeOf(const dao::DatabasePtr& catalogue, const Options& options) {
    return {catalogue ? catalogue->Name() : QString(), options.DataPath, gLanguage};
}

TableState tableState(const TableResult& result, const AnalysisRequest& request, const Options& options,
                      const ResultPlace& place) {
    if (result.stored)
        return TableState::Stored;
    if (!result.facts)
        return TableState::None;
    const TableFacts& facts = *result.facts;
    if (!facts.complete)
        return TableState::CutShort;
    if (result.stopped)
        return TableState::Stopped;
    if (!asksTheSame(facts.request, request, options))
        return TableState::OtherRequest;
    if (result.computation.statistics != statisticsKey(request, options)) {
        const bool chosen =
            facts.request.dtDesc != request.dtDesc || facts.request.dtDescDigits != request.dtDescDigits;
        return chosen ? TableState::OtherRequest : TableState::OtherOptions;
    }
    if (!showsTheSame(request.mode, facts.origin.options, options) || result.computation.place != place)
        return TableState::OtherOptions;
    return result.shownMarks().sameValues(result.marks) ? TableState::Current : TableState::OtherMarks;
}
