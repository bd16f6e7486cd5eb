#include "analysis/WindowChart.h"

#include "analysis/result/TableResult.h"
#include "app/globals.h"

#include <algorithm>
#include <numeric>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

WindowChart::State stateOf(const TableResult& result) {
    using State = WindowChart::State;
    if (!result.facts || result.mfgGrid.Tag == TableKind::None)
        return State::NoTable;
    if (result.mfgGrid.Tag == TableKind::Descriptives)
        return State::Descriptives;
    return result.facts->complete ? State::Drawn : State::Incomplete;
}

bool sameCells(const ResultTable& a, const ResultTable& b) {
    if (a.Tag != b.Tag || a.Rows() != b.Rows() || a.Cols() != b.Cols() || a.shape != b.shape)
        return false;
    for (int row = 0; row < a.Rows(); ++row)
        for (int column = 0; column < a.Cols(); ++column)
            if (a.Cell(column, row) != b.Cell(column, row))
                return false;
    return true;
}

/// Under options that draw the same; where the items begin is asked for.
bool drawsTheSame(const Options& a, const Options& b) {
    const auto drawn = [](const Options& o) {
        return std::tuple(o.IncludeMissing, o.MaxItems, o.TakeAbsolutValues, o.GraphColor, o.TrendGraphLine);
    };
    return drawn(a) == drawn(b);
}

/// Whatever order the user has put them in. A view of a crosstab may lack rows: they count as they stand.
std::vector<int> placesAsMade(const TableResult& result) {
    const bool columns = result.mfgGrid.Tag == TableKind::Comparison;
    if (result.mfgGrid.Tag != TableKind::Crosstab)
        return result.placesAsMade(columns ? TableLines::Columns : TableLines::Rows);
    std::vector<int> places(static_cast<size_t>(result.mfgGrid.shape.rows.count()));
    std::iota(places.begin(), places.end(), 0);
    return places;
}

/// "(N=...)" in the title of a result; empty without it.
QString statedN(const QString& title) {
    const qsizetype begin = title.lastIndexOf(TranslateText(u"(N="_s));
    const qsizetype end = begin < 0 ? -1 : title.indexOf(u')', begin);
    return end < 0 ? QString() : title.mid(begin, end + 1 - begin);
}

} // namespace

bool WindowChart::ItemKey::operator<(const ItemKey& other) const {
    return std::tie(code, null, nth) < std::tie(other.code, other.null, other.nth);
}

QString WindowChart::reason() const {
    switch (state_) {
    case State::NoTable:
        return TranslateText(u"Es gibt keine Tabelle, die gezeichnet werden könnte."_s);
    case State::Descriptives:
        return TranslateText(u"Für deskriptive Statistiken gibt es keine Grafik."_s);
    case State::Incomplete:
        return TranslateText(u"Die Tabelle ist unvollständig und wird nicht gezeichnet."_s);
    case State::NoValues:
        return TranslateText(u"Die Tabelle hat keine Werte, die gezeichnet werden könnten."_s);
    case State::Drawn:
        break;
    }
    return {};
}

bool WindowChart::isPart() const {
    const auto part = [](const ItemsShown& items) { return items.shown < items.of; };
    return state_ == State::Drawn && (part(model_.rowsShown) || part(model_.columnsShown));
}

bool WindowChart::isDrawn(const TableResult& result, int view, const Options& options) const {
    return source_ && state_ == State::Drawn && stateOf(result) == State::Drawn && source_->view == view &&
           source_->caption == result.lblLabel && source_->language == gLanguage &&
           drawsTheSame(source_->options, options) && sameCells(source_->table, result.mfgGrid);
}

void WindowChart::turnTo(const TableResult& result, int view, const Options& options, FirstValue first) {
    if (!isDrawn(result, view, options))
        drawWith(&BuildChartForTab, result, view, options,
                 first == FirstValue::Asked ? StartPrompt(askForStart) : StartPrompt());
}

void WindowChart::chooseFirst(const TableResult& result, int view, const Options& options) {
    const WindowChart before = *this;
    bool answered = true;
    drawWith(&BuildChartForTab, result, view, options, [&answered](const QString& question) {
        const QString answer = answered ? askForStart(question) : QString();
        answered = !answer.isEmpty();
        return answer;
    });
    if (!answered)
        *this = before;
}

void WindowChart::build(const TableResult& result, int view, const Options& options) {
    const bool otherValues = source_ && source_->view != view;
    if (!result.computation.ResultCacheKey.isEmpty() || stateOf(result) != State::Drawn || otherValues)
        drawWith(&BuildChart, result, view, options, askForStart);
}

/// What was changed is another table's, or has another number of cases in its title.
void WindowChart::forgetOthers(const TableResult& result, const Options& options) {
    if (!asksTheSame(request_, result.facts->request, options))
        edits_ = {};
    const QString before = statedN(caption_), now = statedN(result.lblLabel);
    for (Edits& changes : edits_)
        if (changes.title && !before.isEmpty())
            changes.title->replace(before, now);
    request_ = result.facts->request;
    caption_ = result.lblLabel;
}

void WindowChart::drawWith(Build makeChart, const TableResult& result, int view, const Options& options,
                           const StartPrompt& prompt) {
    state_ = stateOf(result);
    model_ = automatic_ = {};
    if (state_ != State::Drawn) {
        source_.reset();
        return;
    }
    forgetOthers(result, options);
    source_ = Source{result.mfgGrid, result.lblLabel, view, options, gLanguage, placesAsMade(result)};
    model_ = automatic_ = makeChart({source_->table, source_->caption, view, result.facts->origin, options}, prompt);
    if (automatic_.isEmpty())
        state_ = State::NoValues;
    else
        layOn(changedLabels(), model_);
}

WindowChart::Edits& WindowChart::edits() {
    // An axis that was set for percentages would cut counts off.
    const bool frequency = automatic_.kind == TableKind::Frequency;
    return edits_[static_cast<size_t>(frequency ? automatic_.percent : source_->view)];
}

/// What the chart has by itself, with what was changed in it.
LabelTable WindowChart::changedLabels() {
    LabelTable labels = labelTableOf(automatic_);
    const Edits& changes = edits();
    labels.Titel = changes.title.value_or(labels.Titel);
    labels.scale = changes.scale;
    for (LabelItem& item : labels.items)
        if (const auto found = changes.items.find(keyOf(item.place)); found != changes.items.end()) {
            const ItemEdit& edit = found->second;
            item.label = edit.label.value_or(item.label);
            item.style = {edit.pattern.value_or(item.style.pattern),
                          (edit.*numberOf(automatic_)).value_or(item.style.number),
                          edit.color.value_or(item.style.color)};
        }
    return labels;
}

/// An item that is not in view keeps what was changed in it.
void WindowChart::take(const LabelTable& changed) {
    if (state_ != State::Drawn)
        return;
    const LabelTable own = labelTableOf(automatic_), shown = labelTableOf(model_);
    Edits& changes = edits();
    changes.title = changed.Titel == own.Titel ? std::nullopt : std::optional(changed.Titel);
    changes.scale = changed.scale;
    for (size_t i = 0; i < std::min(own.items.size(), changed.items.size()); ++i) {
        const LabelItem &now = changed.items[i], &before = shown.items[i], &byItself = own.items[i];
        ItemEdit& edit = changes.items[keyOf(byItself.place)];
        // What is as it was may be more than is seen: a pattern, where black and white has one anyway.
        const auto note = [](auto& field, const auto& chosen, const auto& was, const auto& automatic) {
            if (chosen == was)
                return;
            field.reset();
            if (chosen != automatic)
                field = chosen;
        };
        note(edit.label, now.label, before.label, byItself.label);
        note(edit.pattern, now.style.pattern, before.style.pattern, byItself.style.pattern);
        note(edit.*numberOf(automatic_), now.style.number, before.style.number, byItself.style.number);
        note(edit.color, now.style.color, before.style.color, byItself.style.color);
    }
    model_ = automatic_;
    layOn(changedLabels(), model_);
}

WindowChart::ItemKey WindowChart::keyOf(int place) const {
    const ResultTable& table = source_->table;
    const bool columns = table.Tag == TableKind::Comparison;
    const Span& data = columns ? table.shape.columns : table.shape.rows;
    const int null = columns ? table.shape.nullColumn : table.shape.nullRow;
    const auto codeAt = [&](int i) { return columns ? table.Cell(i, 0) : table.Cell(0, i); };
    ItemKey key{codeAt(place), place == null, 0};
    const std::vector<int>& places = source_->places;
    const auto madeAt = [&](int i) { return places[static_cast<size_t>(i - data.first)]; };
    for (int i = data.first; i <= data.last; ++i)
        key.nth += madeAt(i) < madeAt(place) && codeAt(i) == key.code && (i == null) == key.null;
    return key;
}
