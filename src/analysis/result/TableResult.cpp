#include "analysis/result/TableResult.h"

#include "app/globals.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

Marks TableResult::marksInForce() const {
    if (!facts || !facts->complete)
        return marks;
    Marks now = Marks::of(marked());
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
    return Marks::of(result.marked()).sameValues(result.marks) ? TableState::Current : TableState::OtherMarks;
}
