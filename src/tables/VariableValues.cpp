#include "tables/VariableValues.h"

#include "catalogue/StudyRows.h"
#include "platform/system/NumberFormat.h"
#include "tables/missing.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// Numbers come first, in their order. What is no number keeps its place behind them.
double placeOf(const DocumentedValue& value) {
    return dao::textToNumber(value.code).value_or(std::numeric_limits<double>::infinity());
}

void readVariable(VariableValues& found, dao::Database& catalogue, const QString& study, const QString& variable) {
    const QString table = u"tkey_Variable"_s;
    QStringList fields;
    for (const QString& field : {u"dt_Missing"_s, u"dt_Format"_s})
        if (hasColumns(catalogue, table, {field}))
            fields << field;
    if (fields.isEmpty())
        return;
    const dao::RecordsetPtr row =
        catalogue.OpenRecordset(u"SELECT %1 FROM %2 WHERE fi_StudyNo = %3 AND id_VarName = %4;"_s.arg(
            fields.join(u", "_s), table, quoted(study), quoted(variable)));
    if (row->Eof())
        return;
    if (row->hasField(u"dt_Missing"_s))
        found.missing = row->text(u"dt_Missing"_s);
    if (row->hasField(u"dt_Format"_s))
        found.format = row->text(u"dt_Format"_s);
}

void readLabels(VariableValues& found, dao::Database& catalogue, const QString& study, const QString& variable) {
    const QString table = u"tkey_Value"_s;
    if (!hasColumns(catalogue, table, {u"fi_StudyNo"_s, u"fi_VarName"_s, u"dt_Value"_s, u"dt_Label"_s}))
        return;
    const dao::RecordsetPtr rows = catalogue.OpenRecordset(
        u"SELECT TOP %1 dt_Value, dt_Label FROM %2 WHERE fi_StudyNo = %3 AND fi_VarName = %4 ORDER BY dt_Value ASC;"_s
            .arg(VariableValues::most + 1)
            .arg(table, quoted(study), quoted(variable)));
    for (; !rows->Eof(); rows->MoveNext()) {
        found.cut = found.values.size() == static_cast<size_t>(VariableValues::most);
        if (found.cut)
            return;
        found.values.push_back({rows->value(0).toText(), rows->value(1).toText()});
    }
}

/// The values that a definition names one by one.
std::vector<double> singleValues(const MissingDefinition& definition) {
    std::vector<double> numbers = definition.numbers();
    if (definition.isRange())
        numbers.erase(numbers.begin(), numbers.begin() + 2);
    // The extremes stand for no value that there is.
    std::erase_if(numbers, [](double number) { return std::abs(number) > 1e308; });
    return numbers;
}

/// Marks what falls under the definition, and adds what it names and no label does.
void applyDefinition(VariableValues& found) {
    const std::optional<MissingDefinition> definition = MissingDefinition::readable(found.missing);
    found.missingIsClear = definition.has_value();
    if (!definition)
        return;
    std::vector<double> unlabelled = singleValues(*definition);
    for (DocumentedValue& value : found.values)
        if (const std::optional<double> number = dao::textToNumber(value.code)) {
            value.missing = definition->contains(*number);
            std::erase(unlabelled, *number);
        }
    std::ranges::sort(unlabelled);
    unlabelled.erase(std::unique(unlabelled.begin(), unlabelled.end()), unlabelled.end());
    for (const double number : unlabelled)
        found.values.push_back({NumberFormat::plain(number), QString(), true});
}

void arrange(VariableValues& found) {
    applyDefinition(found);
    std::ranges::stable_sort(found.values, {}, placeOf);
}

} // namespace

VariableValues VariableValues::of(dao::Database& catalogue, const QString& study, const QString& variable) {
    VariableValues found;
    readVariable(found, catalogue, study, variable);
    readLabels(found, catalogue, study, variable);
    arrange(found);
    return found;
}

VariableValues VariableValues::from(std::vector<DocumentedValue> labelled, const QString& missing) {
    VariableValues found;
    found.values = std::move(labelled);
    found.missing = missing;
    arrange(found);
    return found;
}
