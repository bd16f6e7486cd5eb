#include "vdx/TypedMarks.h"

#include "app/globals.h"
#include "platform/dao/Value.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The value that is meant, nothing for system-missing. Double quotes take it as it stands.
std::optional<QString> meant(const QString& typed) {
    if (typed.size() >= 2 && typed.startsWith(u'"') && typed.endsWith(u'"'))
        return typed.mid(1, typed.size() - 2).replace(u"\"\""_s, u"\""_s);
    if (typed.compare(u"SYSMIS"_s, Qt::CaseInsensitive) == 0)
        return std::nullopt;
    return typed;
}

void setMarks(AxisMarks& marks, const std::vector<std::string>& values, const QString& mark) {
    for (const std::string& value : values) {
        const std::optional<QString> shown = meant(QString::fromStdString(value));
        const std::vector<AxisMarks::Value*> there = marks.having(shown);
        for (AxisMarks::Value* one : there)
            one->mark = mark;
        if (there.empty())
            marks.add({.value = shown.value_or(QString()), .label = {}, .null = !shown, .mark = mark});
    }
}

void declareValues(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                   const std::string& words, const std::string& form) {
    command.add_option(name, values, words)->type_name(form)->expected(1)->take_all()->allow_extra_args(false);
}

/// VALUE=PERCENT, parted at the last sign.
std::pair<std::optional<QString>, QString> cumulatedFrom(const QString& typed) {
    const qsizetype equals = typed.lastIndexOf(u'=');
    const QString percent = typed.mid(equals + 1);
    if (equals <= 0 || !(percent.isEmpty() || dao::Value(percent).isNumeric()))
        throw UsageError{
            said(u"--cumulated %1: erwartet wird WERT=PROZENT"_s, u"--cumulated %1: expected is VALUE=PERCENT"_s)
                .arg(typed)};
    return {meant(typed.left(equals)), percent};
}

} // namespace

void TypedMarks::declare(CLI::App& command, const std::string& suffix) {
    suffix_ = suffix;
    const std::string of = suffix.empty() ? "" : " of the second variable";
    declareValues(command, "--mark" + suffix, mark_,
                  "a value" + of + " that counts as missing besides those of the definition; may be repeated", "VALUE");
    declareValues(command, "--unmark" + suffix, unmark_,
                  "a value" + of + " that counts as valid whatever the definition says; may be repeated", "VALUE");
}

void TypedMarks::declareCumulated(CLI::App& command) {
    declareValues(command, "--cumulated", cumulated_,
                  "the cumulated percent that the row of a marked value keeps from a table before; may be repeated",
                  "VALUE=PERCENT");
}

void TypedMarks::applyTo(AxisMarks& marks) const {
    for (const std::string& value : mark_)
        if (std::ranges::find(unmark_, value) != unmark_.end())
            throw UsageError{said(u"%1 kann nicht zugleich fehlen und gültig sein (--mark%2, --unmark%2)"_s,
                                  u"%1 cannot be missing and valid at once (--mark%2, --unmark%2)"_s)
                                 .arg(QString::fromStdString(value), QString::fromStdString(suffix_))};
    setMarks(marks, mark_, u"X"_s);
    setMarks(marks, unmark_, u" "_s);
    for (const std::string& typed : cumulated_) {
        const auto [shown, percent] = cumulatedFrom(QString::fromStdString(typed));
        for (AxisMarks::Value* one : marks.having(shown))
            one->cumulated = percent.isEmpty() ? std::nullopt : std::optional(dao::Value(percent).toDouble());
    }
}

bool TypedMarks::standIn(Session& session, const AxisMarks& marks) const {
    bool all = true;
    const auto look = [&](const std::vector<std::string>& values, const QString& name, bool missing) {
        for (const std::string& value : values) {
            const QString typed = QString::fromStdString(value);
            AxisMarks table = marks;
            const std::vector<AxisMarks::Value*> there = table.having(meant(typed));
            if (!there.empty() && std::ranges::all_of(there, [&](auto* one) { return one->missing() == missing; }))
                continue;
            session.say(
                said(u"--%1 %2: Die Tabelle hat keinen solchen Wert."_s, u"--%1 %2: the table has no such value."_s)
                    .arg(name + QString::fromStdString(suffix_), typed));
            all = false;
        }
    };
    look(mark_, u"mark"_s, true);
    look(unmark_, u"unmark"_s, false);
    return all;
}
