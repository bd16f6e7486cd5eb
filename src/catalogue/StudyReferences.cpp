#include "catalogue/StudyReferences.h"

#include "catalogue/StudyRows.h"
#include "catalogue/importTexts.h"
#include "catalogue/schema.h"

#include <QRegularExpression>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString comparisonTable = u"tsys_VariableComparison"_s;

/// True if a user's filter has the name as a word of its own.
bool filterNames(const QString& filter, const QString& name) {
    const QRegularExpression word(u"(?<![\\w-])%1(?![\\w-])"_s.arg(QRegularExpression::escape(name)),
                                  QRegularExpression::CaseInsensitiveOption |
                                      QRegularExpression::UseUnicodePropertiesOption);
    return filter.contains(word);
}

} // namespace

const VariableEntry* entryOf(const std::vector<VariableEntry>& variables, const QString& name) {
    for (const VariableEntry& variable : variables)
        if (variable.name.compare(name, Qt::CaseInsensitive) == 0)
            return &variable;
    return nullptr;
}

QStringList StudyReferences::updateComparisons(const std::vector<VariableEntry>& variables) {
    constexpr int longestMissing = 50;
    QStringList facts;
    if (!hasColumns(catalogue_, comparisonTable,
                    {u"fi_StudyNo"_s, u"fi_VariableNo"_s, u"fid"_s, u"dt_Table"_s, u"dt_Field"_s}))
        return facts;
    for (const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, comparisonTable, u"fi_StudyNo"_s, study_); !rows->Eof();
         rows->MoveNext()) {
        const VariableEntry* variable = entryOf(variables, rows->text(u"fi_VariableNo"_s));
        if (!variable) {
            // The field of a variable that went may be another one's now, whose numbers nobody asked for.
            const bool taken = std::any_of(variables.begin(), variables.end(), [&](const VariableEntry& other) {
                return other.table.compare(rows->text(u"dt_Table"_s), Qt::CaseInsensitive) == 0 &&
                       other.field.compare(rows->text(u"dt_Field"_s), Qt::CaseInsensitive) == 0;
            });
            if (taken) {
                rows->Edit();
                setFields(*rows, {{u"dt_Field"_s, dao::Value()}});
                rows->Update();
            }
            continue;
        }
        EntryFields entry{{u"dt_Table"_s, variable->table}, {u"dt_Field"_s, variable->field}};
        if (variable->missing.size() <= longestMissing)
            entry.emplace_back(u"dt_Missing"_s, orNull(variable->missing));
        else
            facts << said(u"Vergleichsauswertung %1: Die Missing-Definition von %2 ist zu lang, die alte bleibt"_s,
                          u"Comparison %1: The missing definition of %2 is too long, the old one stays"_s)
                         .arg(rows->text(u"fid"_s), variable->name);
        rows->Edit();
        setFields(*rows, entry);
        rows->Update();
    }
    return facts;
}

QStringList StudyReferences::movedInQuery(const QString& query, const std::vector<Place>& before,
                                          const std::vector<VariableEntry>& variables) {
    QStringList facts;
    for (const Place& place : before) {
        const QRegularExpression word(u"(?<!\\w)%1(?!\\w)"_s.arg(QRegularExpression::escape(place.field)),
                                      QRegularExpression::CaseInsensitiveOption |
                                          QRegularExpression::UseUnicodePropertiesOption);
        if (place.field.isEmpty() || !query.contains(word))
            continue;
        const VariableEntry* now = entryOf(variables, place.name);
        const QString old = place.table + u'.' + place.field;
        if (!now)
            facts << said(u"Die Abfrage der Studie (dt_query) nennt %1, das Feld der Variable %2, die es "
                          u"nicht mehr "
                          u"gibt"_s,
                          u"The study's query (dt_query) names %1, the field of variable %2, which is gone"_s)
                         .arg(old, place.name);
        else if (old.compare(now->table + u'.' + now->field, Qt::CaseInsensitive) != 0)
            facts << said(u"Die Abfrage der Studie (dt_query) nennt %1; Variable %2 liegt jetzt in %3"_s,
                          u"The study's query (dt_query) names %1; variable %2 now lies in %3"_s)
                         .arg(old, place.name, now->table + u'.' + now->field);
    }
    return facts;
}

QStringList StudyReferences::toVanished(const QStringList& vanished) const {
    return inCategories(vanished) + inComparisons(vanished) + inParts(vanished);
}

QStringList StudyReferences::onCodesOf(const QStringList& variables) const {
    return inComparisons(variables) + inParts(variables);
}

QStringList StudyReferences::inCategories(const QStringList& vanished) const {
    QStringList found;
    const QString prefix = u"trel_Variable"_s;
    for (int i = 0; i < catalogue_.TableDefs().Count(); ++i) {
        const QString table = catalogue_.TableDefs().Item(i)->Name();
        if (!table.startsWith(prefix, Qt::CaseInsensitive) ||
            !hasColumns(catalogue_, table, {u"fi_StudyNo"_s, u"fi_VariableNo"_s, u"fid"_s}))
            continue;
        const QString entries = schema::entryTableName(table.mid(prefix.size()));
        // Its view may be gone, or be one of studies.
        const bool named = hasColumns(catalogue_, entries, {u"id"_s, u"dt_IndicatorName"_s});
        const auto place = [&](const QString& id) {
            if (!named)
                return u"%1 %2"_s.arg(table, id);
            const dao::RecordsetPtr entry =
                catalogue_.OpenRecordset(u"SELECT dt_IndicatorName FROM %1 WHERE id = %2;"_s.arg(entries, id));
            return u"%1 '%2'"_s.arg(entries, entry->Eof() ? id : entry->value(0).toText());
        };
        for (const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, table, u"fi_StudyNo"_s, study_); !rows->Eof();
             rows->MoveNext())
            if (const QString name = rows->text(u"fi_VariableNo"_s); vanished.contains(name, Qt::CaseInsensitive))
                found << name + u": "_s + place(rows->value(u"fid"_s).toText());
    }
    return found;
}

QStringList StudyReferences::inComparisons(const QStringList& vanished) const {
    QStringList found;
    if (!hasColumns(catalogue_, comparisonTable, {u"fi_StudyNo"_s, u"fi_VariableNo"_s, u"fid"_s}))
        return found;
    for (const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, comparisonTable, u"fi_StudyNo"_s, study_); !rows->Eof();
         rows->MoveNext()) {
        const QString comparison = rows->value(u"fid"_s).toText();
        const auto present = [&](const QString& field) {
            return rows->hasField(field) ? rows->text(field) : QString();
        };
        if (const QString name = rows->text(u"fi_VariableNo"_s); vanished.contains(name, Qt::CaseInsensitive))
            found << name + u": "_s + said(u"Vergleichsauswertung %1"_s, u"comparison %1"_s).arg(comparison);
        if (const QString weight = present(u"dt_Weight"_s); vanished.contains(weight, Qt::CaseInsensitive))
            found << weight + u": "_s +
                         said(u"Gewicht in Vergleichsauswertung %1"_s, u"weight in comparison %1"_s).arg(comparison);
        // The text of a part's filter is for the eye only.
        const bool users = present(u"dt_FilterInfo"_s) == u"user"_s;
        const QString filter = users ? present(u"dt_Filter"_s) : QString();
        for (const QString& name : vanished)
            if (filterNames(filter, name))
                found << name + u": "_s +
                             said(u"Filter '%2' in Vergleichsauswertung %1"_s, u"filter '%2' in comparison %1"_s)
                                 .arg(comparison, filter);
    }
    return found;
}

QStringList StudyReferences::inParts(const QStringList& vanished) const {
    QStringList found;
    const QString table = u"tkey_Parts"_s;
    if (!hasColumns(catalogue_, table, {u"fi_StudyNo"_s, u"dt_SelectionVariable"_s, u"dt_PartName"_s}))
        return found;
    for (const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, table, u"fi_StudyNo"_s, study_); !rows->Eof();
         rows->MoveNext())
        if (const QString name = rows->text(u"dt_SelectionVariable"_s); vanished.contains(name, Qt::CaseInsensitive))
            found << name + u": "_s +
                         said(u"Auswahlvariable des Teils '%1'"_s, u"selection variable of part '%1'"_s)
                             .arg(rows->text(u"dt_PartName"_s));
    return found;
}
