#include "tables/CrosstabAxis.h"

#include "catalogue/StudyRows.h"
#include "diagnostics/errors.h"
#include "platform/dao/TextOrder.h"
#include "tables/labels.h"

using namespace Qt::StringLiterals;

namespace {

const QString sysmis = u"SYSMIS"_s;

QString withoutBlanks(const QString& text) {
    qsizetype from = 0, to = text.size();
    while (from < to && text[from] == u' ')
        ++from;
    while (to > from && text[to - 1] == u' ')
        --to;
    return from == 0 && to == text.size() ? text : text.mid(from, to - from);
}

/// What the axis shows of a value; nothing for system-missing.
std::optional<QString> shownOnAxis(const dao::Value& value) {
    return value.isNull() ? std::nullopt : std::optional(withoutBlanks(value.toText()));
}

/// Equal for values that the engine takes for one: with two variables it hands a value over in whichever spelling
/// came first beside each value of the other.
QString keyOf(const dao::Value& value) {
    return AxisMarks::keyOf(shownOnAxis(value));
}

bool isNumber(const dao::Value& value) {
    return value.kind() == dao::Value::Kind::Integer || value.kind() == dao::Value::Kind::Double;
}

} // namespace

CrosstabAxis::CrosstabAxis(dao::Recordset& counts, dao::Recordset& labels, const Rules& rules)
    : counts_(counts), labels_(labels), rules_(rules),
      ofVariable_(u" AND fi_Varname = "_s + quoted(counts.Fields()[static_cast<size_t>(rules.field)].Name)),
      definition_(rules.missing.value_or(QString())) {}

bool CrosstabAxis::isMissing(const dao::Value& value) const {
    return value.isNull() || (value.isNumeric() && definition_.contains(value.toDouble()));
}

/// Values that are missing by definition stay out unless they are asked for, or a hand has made them valid.
bool CrosstabAxis::isTaken(const dao::Value& value, bool labelled) const {
    if (rules_.IncludeMissingXTab || (rules_.takesUnlabelled && !labelled) || !isMissing(value))
        return true;
    const AxisMarks::Value* byHand = rules_.marks ? rules_.marks->find(shownOnAxis(value)) : nullptr;
    return byHand && !byHand->missing();
}

bool CrosstabAxis::takeRecord() {
    const dao::Value value = counts_.value(rules_.field);
    // A number that was met before needs no text.
    if (isNumber(value) && positionsOfNumbers_.contains(value.toDouble()))
        return true;
    const QString key = keyOf(value);
    if (!ids_.contains(key) && !leftOut_.contains(key)) {
        std::optional<QString> label;
        if (trapped([&] { label = labelOf(labels_, value, ofVariable_); }) == Trap::Aborted)
            return false;
        if (isTaken(value, label.has_value()))
            add(value, key, label);
        else
            leftOut_.insert(key);
    }
    if (isNumber(value))
        positionsOfNumbers_.insert(value.toDouble(), -1);
    return true;
}

void CrosstabAxis::add(const dao::Value& value, const QString& key, const std::optional<QString>& label) {
    const AxisMarks::Value* byHand = rules_.marks ? rules_.marks->find(shownOnAxis(value)) : nullptr;
    Entry entry{.value = withoutBlanks(value.toText()),
                .label = rules_.noLabels ? QString() : label.value_or(QString()),
                .mark = byHand             ? byHand->mark
                        : isMissing(value) ? u"X"_s
                                           : QString(),
                .null = value.isNull()};
    if (value.isNull() && !label)
        entry.label = sysmis;
    ids_.insert(key, static_cast<int>(entries_.size()));
    entries_.push_back({entry, dao::leadingNumber(entry.value, true)});
    insertSorted(value);
}

/// Puts the newest entry in front of those at the end that it is below. What is numeric is compared by number
/// with whatever number stands there, other texts as texts: no strict order where both occur, so the way of
/// inserting decides.
void CrosstabAxis::insertSorted(const dao::Value& value) {
    const int id = static_cast<int>(entries_.size()) - 1;
    const bool numeric = value.isNull() || value.isNumeric();
    const double number = numeric && !value.isNull() ? value.toDouble() : 0;
    const auto below = [&](int other) {
        return numeric ? number < entries_[static_cast<size_t>(other)].leading
                       : dao::compareTexts(entry(id).value, entry(other).value) < 0;
    };
    auto place = order_.end();
    while (place != order_.begin() && below(*(place - 1)))
        --place;
    order_.insert(place, id);
}

void CrosstabAxis::finish() {
    positions_.resize(order_.size());
    for (size_t position = 0; position < order_.size(); ++position)
        positions_[static_cast<size_t>(order_[position])] = static_cast<int>(position);
    positionsOfNumbers_.clear();
}

int CrosstabAxis::positionOfRecord() {
    const dao::Value value = counts_.value(rules_.field);
    if (isNumber(value))
        if (const auto known = positionsOfNumbers_.constFind(value.toDouble()); known != positionsOfNumbers_.constEnd())
            return *known;
    const int id = ids_.value(keyOf(value), -1);
    const int position = id < 0 ? -1 : positions_[static_cast<size_t>(id)];
    if (isNumber(value))
        positionsOfNumbers_.insert(value.toDouble(), position);
    return position;
}
