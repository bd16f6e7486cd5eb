#include "analysis/result/handMarks.h"

#include "app/globals.h"
#include "platform/dao/Value.h"
#include "tables/missing.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

QString named(const QString& words, const ValueMarks& marks, bool missing) {
    QStringList values;
    for (const ValueMark& mark : marks)
        if (mark.missing == missing)
            values << mark.text();
    return values.isEmpty() ? QString() : TranslateText(words) + u' ' + values.join(u"; "_s);
}

} // namespace

QString ValueMark::text() const {
    const QString systemMissing = u"SYSMIS"_s;
    if (!value.isEmpty())
        return value;
    if (label.isEmpty())
        return null ? systemMissing : u"\"\""_s;
    // In a comparison the label goes on with the head of the column that has brought it.
    return null && label.startsWith(systemMissing) ? systemMissing : label;
}

ValueMarks handMarks(const AxisMarks& marks, const std::function<std::optional<QString>(int place)>& definitionOf) {
    ValueMarks differing;
    QHash<QString, MissingDefinition> read;
    int place = 0;
    for (const AxisMarks::Value& value : marks.values()) {
        const std::optional<QString> text = definitionOf(place++);
        if (!text)
            continue;
        auto definition = read.find(*text);
        if (definition == read.end())
            definition = read.insert(*text, definitionOrNone(*text));
        const dao::Value shown(value.value);
        const bool byDefinition = value.null || (shown.isNumeric() && definition->contains(shown.toDouble()));
        if (byDefinition != value.missing())
            differing.push_back({value.value, value.label, value.null, value.missing()});
    }
    return differing;
}

QString missingWords(const QString& definition, const ValueMarks& byHand, const ValueMarks& byEarlier) {
    QStringList others{named(u"von Hand gesetzt:"_s, byHand, true), named(u"von Hand gültig:"_s, byHand, false),
                       named(u"nach einem früheren Eintrag ausgeschlossen:"_s, byEarlier, true),
                       named(u"nach einem früheren Eintrag gültig:"_s, byEarlier, false)};
    others.removeAll(QString());
    if (definition.isEmpty())
        return others.isEmpty() ? TranslateText(u"ohne Definition"_s) : others.join(u", "_s);
    return others.isEmpty() ? definition : definition + u" ("_s + others.join(u", "_s) + u')';
}
