#include "analysis/request/comparisonEntries.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/StudyRows.h"
#include "catalogue/schema.h"
#include "diagnostics/errors.h"
#include "platform/dao/TextOrder.h"
#include "platform/dao/Transaction.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype groupSize = 50;

/// Where the columns of an entry are stored, in the order of the table.
const std::pair<ComparisonEntry::Column, QString> storedColumns[] = {
    {ComparisonEntry::Study, u"fi_StudyNo"_s},         {ComparisonEntry::Variable, u"fi_VariableNo"_s},
    {ComparisonEntry::Table, u"dt_Table"_s},           {ComparisonEntry::Field, u"dt_Field"_s},
    {ComparisonEntry::Missing, u"dt_Missing"_s},       {ComparisonEntry::Year, u"dt_Year"_s},
    {ComparisonEntry::Group, u"dt_VarGroup"_s},        {ComparisonEntry::Weight, u"dt_Weight"_s},
    {ComparisonEntry::Filter, u"dt_Filter"_s},         {ComparisonEntry::WeightInfo, u"dt_WeightInfo"_s},
    {ComparisonEntry::FilterInfo, u"dt_FilterInfo"_s}, {ComparisonEntry::VarLabel, u"dt_VarLabel"_s},
};

dao::Database& catalogue() {
    return *gDatabase.CurrentDatabase();
}

dao::Value textOrNull(const QString& text) {
    return text.isEmpty() ? dao::Value() : dao::Value(text);
}

qint32 nextOrder() {
    const dao::RecordsetPtr last =
        catalogue().OpenRecordset(u"Select Max(dt_order) as Maximum from tsys_Comparison"_s, dao::dbOpenSnapshot);
    const dao::Value maximum = last->value(0);
    return (maximum.isNull() ? 0 : static_cast<qint32>(maximum.toInteger())) + 1;
}

dao::Value addComparison(const QString& name, const QString& title) {
    const qint32 order = nextOrder();
    const dao::RecordsetPtr rows = catalogue().OpenRecordset(u"tsys_Comparison"_s, dao::dbOpenDynaset);
    rows->AddNew();
    rows->setValue(u"dt_CompName"_s, name);
    rows->setValue(u"dt_CompDesc"_s, QString(title).replace(u"\r\n"_s, u"\n"_s).replace(u"\n"_s, u"\r\n"_s));
    rows->setValue(u"dt_order"_s, order);
    rows->Update();
    rows->setBookmark(rows->LastModified());
    return rows->value(u"ID"_s);
}

/// The name of a part in the study that it belongs to; empty if the study has none of that number.
QString partNameOf(const QString& study, const QString& id, bool english) {
    bool isNumber = false;
    id.toLongLong(&isNumber);
    if (!isNumber || !gDatabase.TableExist(u"tkey_Parts"_s))
        return {};
    const dao::RecordsetPtr parts = catalogue().OpenRecordset(u"tkey_Parts"_s, dao::dbOpenSnapshot);
    parts->FindFirst(u"id_Part = "_s + id + u" AND fi_StudyNo = "_s + quoted(study));
    return parts->NoMatch() ? QString() : partName(*parts, english);
}

dao::RecordsetPtr entriesOf(const QString& id) {
    return catalogue().OpenRecordset(
        u"select * from tsys_VariableComparison where fid = "_s + id + u" order by dt_order;"_s, dao::dbOpenDynaset);
}

} // namespace

QString partName(dao::Recordset& part, bool english) {
    QString wanted = part.text(u"dt_PartName"_s), other = part.text(u"dt_EnPartName"_s);
    if (english)
        wanted.swap(other);
    return !wanted.isEmpty() ? wanted : !other.isEmpty() ? other : part.text(u"id_Part"_s);
}

QString entryText(const ComparisonEntry& entry) {
    // The label is the choice of the variable's picker, which begins with its name.
    const QString &variable = entry.at(ComparisonEntry::Variable), &label = entry.at(ComparisonEntry::VarLabel);
    const bool named = dao::compareTexts(nameOfChoice(label), variable) == 0;
    QString text = entry.at(ComparisonEntry::Study) + u", "_s + (named ? QString() : variable + u": "_s) + label;
    if (!entry.at(ComparisonEntry::Weight).isEmpty())
        text += u" ("_s + TranslateText(u"gewichtet nach"_s) + u' ' + entry.at(ComparisonEntry::Weight) + u')';
    const QString& filter = entry.at(ComparisonEntry::Filter);
    if (entry.at(ComparisonEntry::FilterInfo) == "user"_L1)
        text += u' ' + TranslateText(u"(ausgewählte Fälle:"_s) + u' ' + filter + u')';
    else if (!filter.isEmpty())
        text += u' ' + TranslateText(u"(Fälle aus"_s) + u' ' + entry.at(ComparisonEntry::PartText) + u')';
    return text;
}

bool comparisonNamed(const QString& name) {
    bool taken = false;
    if (gDatabase.TableExist(u"tsys_Comparison"_s))
        attempt([&] {
            const dao::RecordsetPtr rows = catalogue().OpenRecordset(u"tsys_Comparison"_s, dao::dbOpenSnapshot);
            rows->FindFirst(u"dt_CompName = "_s + quoted(name));
            taken = !rows->NoMatch();
        });
    return taken;
}

void storeComparison(const QString& name, const QString& title, const QList<ComparisonEntry>& entries) {
    dao::Transaction transaction;
    schema::ensure(catalogue(), schema::comparisons());
    schema::ensure(catalogue(), schema::comparisonVariables());
    const dao::Value id = addComparison(name, title);
    const dao::RecordsetPtr rows = catalogue().OpenRecordset(u"tsys_VariableComparison"_s, dao::dbOpenDynaset);
    qint32 order = 0;
    for (const ComparisonEntry& entry : entries) {
        rows->AddNew();
        for (const auto& [column, field] : storedColumns)
            rows->setValue(field, textOrNull(column == ComparisonEntry::Group ? entry.at(column).left(groupSize)
                                                                              : entry.at(column)));
        rows->setValue(u"fid"_s, id);
        rows->setValue(u"dt_order"_s, ++order);
        rows->Update();
    }
    rows->Close();
    transaction.commit();
}

std::optional<StoredComparison> readComparison(const QString& id, bool english) {
    const dao::RecordsetPtr comparisons = catalogue().OpenRecordset(u"tsys_Comparison"_s, dao::dbOpenSnapshot);
    comparisons->FindFirst(u"ID = "_s + id);
    if (comparisons->NoMatch())
        return std::nullopt;
    StoredComparison stored;
    stored.title = comparisons->text(u"dt_CompDesc"_s);
    const dao::RecordsetPtr rows = entriesOf(id);
    for (; !rows->Eof(); rows->MoveNext()) {
        ComparisonEntry entry;
        entry.key = u"ID"_s + rows->text(u"ID"_s);
        for (const auto& [column, field] : storedColumns)
            entry.column[column] = rows->text(field);
        const QString kind = entry.at(ComparisonEntry::FilterInfo);
        if (!kind.isEmpty() && kind != "user"_L1) {
            entry.column[ComparisonEntry::PartText] = partNameOf(entry.at(ComparisonEntry::Study), kind, english);
            if (entry.at(ComparisonEntry::PartText).isEmpty())
                entry.column[ComparisonEntry::PartText] = entry.at(ComparisonEntry::Filter);
        }
        entry.text = entryText(entry);
        stored.entries.append(entry);
    }
    return stored;
}

bool deleteComparison(const QString& id) {
    dao::Transaction transaction;
    const dao::RecordsetPtr comparisons = catalogue().OpenRecordset(u"tsys_Comparison"_s, dao::dbOpenDynaset);
    comparisons->FindFirst(u"ID = "_s + id);
    if (comparisons->NoMatch())
        return false;
    for (const dao::RecordsetPtr rows = entriesOf(id); !rows->Eof(); rows->MoveNext())
        rows->Delete();
    comparisons->Delete();
    transaction.commit();
    return true;
}
