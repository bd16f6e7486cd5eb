#include "catalogue/StudyWriter.h"

#include "catalogue/importTexts.h"
#include "catalogue/schema.h"
#include "platform/system/Paths.h"

#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString variableTable = u"tkey_Variable"_s;
const QString valueTable = u"tkey_Value"_s;

/// What is absent is Null, never empty text.
dao::Value orNull(const QString& text) {
    return text.isEmpty() ? dao::Value() : dao::Value(text);
}

/// The fields of an entry; an older catalogue may lack some of them.
using Entry = std::vector<std::pair<QString, dao::Value>>;

void setFields(dao::Recordset& rows, const Entry& entry) {
    for (const auto& [name, value] : entry)
        if (rows.hasField(name))
            rows.setValue(name, value);
}

Entry fieldsOf(const QString& study, const VariableEntry& variable) {
    return {{u"fi_StudyNo"_s, study},
            {u"id_VarName"_s, variable.name},
            {u"dt_Position"_s, variable.position},
            {u"dt_VarLabel"_s, orNull(variable.label)},
            {u"dt_TableName"_s, variable.table},
            {u"dt_FieldName"_s, variable.field},
            {u"dt_Format"_s, orNull(variable.format)},
            {u"dt_Missing"_s, orNull(variable.missing)}};
}

Entry fieldsOf(const QString& study, const LabelEntry& label) {
    return {{u"fi_StudyNo"_s, study},
            {u"fi_VarName"_s, label.variable},
            {u"dt_Value"_s, label.code},
            {u"dt_Label"_s, orNull(label.label)}};
}

QString key(const QString& variable, const QString& code) {
    return (variable + u'\n' + code).toCaseFolded();
}

/// Appends the entries that no row stood for yet.
template<class Item>
void appendNew(dao::Database& catalogue, const QString& table, const QString& study,
               const std::vector<Item>& items, const std::vector<bool>& written) {
    if (items.empty())
        return;
    QSet<QString> present;
    for (const dao::ColumnInfo& column : catalogue.TableDefs().Item(table)->columns())
        present.insert(column.name.toCaseFolded());
    QStringList columns;
    for (const auto& [name, value] : fieldsOf(study, items.front()))
        if (present.contains(name.toCaseFolded()))
            columns << name;
    const std::unique_ptr<dao::Appender> appender = catalogue.openAppender(table, columns);
    for (size_t i = 0; i < items.size(); ++i) {
        if (written[i])
            continue;
        int column = 0;
        for (const auto& [name, value] : fieldsOf(study, items[i])) {
            if (!present.contains(name.toCaseFolded()))
                continue;
            if (value.isNull())
                appender->setNull(column);
            else if (value.kind() == dao::Value::Kind::Text)
                appender->setText(column, value.toText());
            else
                appender->setNumber(column, value.toDouble());
            ++column;
        }
        appender->appendRow();
    }
}

QString quoted(const QString& text) {
    return u'\'' + QString(text).replace(u"'"_s, u"''"_s) + u'\'';
}

/// The variable of that name, null if there is none.
const VariableEntry* entryOf(const std::vector<VariableEntry>& variables, const QString& name) {
    for (const VariableEntry& variable : variables)
        if (variable.name.compare(name, Qt::CaseInsensitive) == 0)
            return &variable;
    return nullptr;
}

} // namespace

StudyWriter::StudyWriter(dao::Database& catalogue, const QString& studyTable, const QString& study)
    : catalogue_(catalogue), studyTable_(studyTable), study_(study) {
    if (!catalogue.TableDefs().contains(studyTable))
        return;
    const dao::RecordsetPtr rows = open(studyTable, u"id_StudyNo"_s);
    exists_ = !rows->Eof();
    if (exists_) {
        study_ = rows->text(u"id_StudyNo"_s);
        isGroup_ = rows->value(u"dt_IsGroup"_s).isNull() ? false : rows->value(u"dt_IsGroup"_s).toBoolean();
        query_ = rows->hasField(u"dt_query"_s) ? rows->text(u"dt_query"_s) : QString();
    }
    if (!exists_ || !hasColumns(variableTable, {u"fi_StudyNo"_s, u"dt_TableName"_s, u"dt_FieldName"_s}))
        return;
    for (const dao::RecordsetPtr fields = open(variableTable, u"fi_StudyNo"_s); !fields->Eof();
         fields->MoveNext())
        before_.push_back({fields->text(u"id_VarName"_s), fields->text(u"dt_TableName"_s),
                           fields->text(u"dt_FieldName"_s)});
}

QHash<QString, QString> StudyWriter::fieldsBefore() const {
    QHash<QString, QString> fields;
    for (const Place& place : before_)
        fields.insert(place.name.toCaseFolded(), place.field);
    return fields;
}

bool StudyWriter::hasColumns(const QString& table, const QStringList& columns) const {
    if (!catalogue_.TableDefs().contains(table))
        return false;
    const auto present = catalogue_.TableDefs().Item(table)->columns();
    return std::all_of(columns.begin(), columns.end(), [&](const QString& wanted) {
        return std::any_of(present.begin(), present.end(), [&](const dao::ColumnInfo& column) {
            return column.name.compare(wanted, Qt::CaseInsensitive) == 0;
        });
    });
}

dao::RecordsetPtr StudyWriter::open(const QString& table, const QString& studyField) const {
    return catalogue_.OpenRecordset(
        u"SELECT * FROM %1 WHERE %2 = %3;"_s.arg(table, studyField, quoted(study_)));
}

bool StudyWriter::groupExists(const QString& number) const {
    if (!catalogue_.TableDefs().contains(studyTable_))
        return false;
    return !catalogue_
                .OpenRecordset(u"SELECT id_StudyNo FROM %1 WHERE id_StudyNo = %2 AND dt_IsGroup <> 0;"_s.arg(
                    studyTable_, quoted(number)))
                ->Eof();
}

int StudyWriter::nextOrder(const QString& group) const {
    const dao::RecordsetPtr rows = catalogue_.OpenRecordset(
        u"SELECT Max([Order]) AS Maximum FROM %1 WHERE fid = %2;"_s.arg(studyTable_, quoted(group)),
        dao::dbOpenSnapshot);
    return rows->Eof() || rows->value(0).isNull() ? 1 : static_cast<int>(rows->value(0).toInteger()) + 1;
}

QString StudyWriter::weightFor(const std::optional<QString>& wish, const QString& fromFile,
                               const QString& present, const std::vector<VariableEntry>& variables,
                               QStringList& facts) const {
    if (wish)
        return *wish;
    if (!fromFile.isEmpty())
        return fromFile;
    if (present.isEmpty() || entryOf(variables, present))
        return present;
    facts << said(u"Gewicht %1 gibt es nicht mehr, die Studie verliert es"_s,
                  u"Weight %1 is gone, the study loses it"_s)
                 .arg(present);
    return {};
}

QStringList StudyWriter::writeStudy(const SurveyFile& file, const ImportSettings& settings,
                                    const QString& fileWeight, const std::vector<VariableEntry>& variables,
                                    const std::vector<CaseTable>& tables) {
    QStringList facts;
    const dao::RecordsetPtr rows = open(studyTable_, u"id_StudyNo"_s);
    const auto present = [&](const QString& field) {
        return exists_ && rows->hasField(field) ? rows->text(field) : QString();
    };

    const QString titleBefore = present(u"dt_StudyTitle"_s);
    const QString title = settings.title           ? *settings.title
                          : !titleBefore.isEmpty() ? titleBefore
                          : !file.label.isEmpty()  ? file.label
                                                   : study_;
    if (!file.label.isEmpty() && file.label != title)
        facts << said(u"Nicht übernommen: Bezeichnung der Datei '%1'"_s,
                      u"Not taken over: the file's label '%1'"_s)
                     .arg(file.label);

    const QString notes = file.notes.join(u"\r\n"_s).trimmed();
    const QString descriptionBefore = present(u"dt_StudyDescription"_s);
    if (!notes.isEmpty() && !descriptionBefore.isEmpty() && notes != descriptionBefore)
        facts << said(u"Nicht übernommen: Anmerkungen der Datei (die Studie hat schon eine Beschreibung)"_s,
                      u"Not taken over: the file's notes (the study has a description already)"_s);

    const QString weightRe =
        weightFor(settings.weightRe, fileWeight, present(u"dt_WeightRE"_s), variables, facts);
    const QString weightHh = weightFor(settings.weightHh, {}, present(u"dt_WeightHH"_s), variables, facts);
    for (const auto& [label, weight] :
         {std::pair(said(u"Repräsentativgewicht"_s, u"Representative weight"_s), weightRe),
          std::pair(said(u"Haushaltsgewicht"_s, u"Household weight"_s), weightHh)})
        if (!weight.isEmpty())
            facts << label + u": "_s + weight;
    if (!fileWeight.isEmpty() && weightRe.compare(fileWeight, Qt::CaseInsensitive) != 0 &&
        weightHh.compare(fileWeight, Qt::CaseInsensitive) != 0)
        facts << said(u"Nicht übernommen: Gewicht der Datei %1"_s, u"Not taken over: the file's weight %1"_s)
                     .arg(fileWeight);

    static const QRegularExpression tableName(u"\\b([A-Za-z0-9]+_\\d+)\\b"_s);
    for (auto match = tableName.globalMatch(query_); match.hasNext();) {
        const QString name = match.next().captured(1);
        const bool own = name.startsWith(study_ + u'_', Qt::CaseInsensitive);
        if (own && std::none_of(tables.begin(), tables.end(), [&](const CaseTable& table) {
                return table.name.compare(name, Qt::CaseInsensitive) == 0;
            }))
            facts << said(u"Die Abfrage der Studie (dt_query) nennt die Tabelle %1, die es nicht mehr gibt"_s,
                          u"The study's query (dt_query) names table %1, which is gone"_s)
                         .arg(name);
    }

    const QString groupBefore = present(u"fid"_s);
    const QString group = settings.group          ? (settings.group->isEmpty() ? u"0"_s : *settings.group)
                          : groupBefore.isEmpty() ? u"0"_s
                                                  : groupBefore;
    Entry entry{{u"id_StudyNo"_s, study_},
                {u"fid"_s, group},
                {u"dt_IsGroup"_s, false},
                {u"dt_StudyTitle"_s, orNull(title)},
                {u"dt_WeightRE"_s, orNull(weightRe)},
                {u"dt_WeightHH"_s, orNull(weightHh)}};
    if (!exists_ || group.compare(groupBefore, Qt::CaseInsensitive) != 0)
        entry.emplace_back(u"Order"_s, nextOrder(group));
    if (descriptionBefore.isEmpty())
        entry.emplace_back(u"dt_StudyDescription"_s, orNull(notes));
    if (settings.titleEnglish)
        entry.emplace_back(u"dt_EnStudyTitle"_s, orNull(*settings.titleEnglish));
    if (settings.year)
        entry.emplace_back(u"dt_Year"_s, orNull(*settings.year));
    if (exists_)
        rows->Edit();
    else
        rows->AddNew();
    setFields(*rows, entry);
    rows->Update();
    return facts;
}

void StudyWriter::updateVariables(const std::vector<VariableEntry>& variables, std::vector<bool>& written) {
    QHash<QString, size_t> byName;
    for (size_t i = 0; i < variables.size(); ++i)
        byName.insert(variables[i].name.toCaseFolded(), i);
    for (const dao::RecordsetPtr rows = open(variableTable, u"fi_StudyNo"_s); !rows->Eof();
         rows->MoveNext()) {
        const QString name = rows->text(u"id_VarName"_s);
        const auto found = byName.constFind(name.toCaseFolded());
        if (found == byName.constEnd()) {
            vanished_ << name;
            rows->Delete();
            continue;
        }
        rows->Edit();
        setFields(*rows, fieldsOf(study_, variables[*found]));
        rows->Update();
        written[*found] = true;
    }
}

void StudyWriter::updateLabels(const std::vector<LabelEntry>& labels, std::vector<bool>& written) {
    QHash<QString, size_t> byCode;
    for (size_t i = 0; i < labels.size(); ++i)
        byCode.insert(key(labels[i].variable, labels[i].code), i);
    for (const dao::RecordsetPtr rows = open(valueTable, u"fi_StudyNo"_s); !rows->Eof(); rows->MoveNext()) {
        const auto found = byCode.constFind(key(rows->text(u"fi_VarName"_s), rows->text(u"dt_Value"_s)));
        if (found == byCode.constEnd() || written[*found]) {
            rows->Delete();
            continue;
        }
        rows->Edit();
        setFields(*rows, fieldsOf(study_, labels[*found]));
        rows->Update();
        written[*found] = true;
    }
}

QStringList StudyWriter::updateComparisons(const std::vector<VariableEntry>& variables) {
    const QString table = u"tsys_VariableComparison"_s;
    constexpr int longestMissing = 50;
    QStringList facts;
    if (!hasColumns(table, {u"fi_StudyNo"_s, u"fi_VariableNo"_s, u"fid"_s, u"dt_Table"_s, u"dt_Field"_s}))
        return facts;
    for (const dao::RecordsetPtr rows = open(table, u"fi_StudyNo"_s); !rows->Eof(); rows->MoveNext()) {
        const VariableEntry* variable = entryOf(variables, rows->text(u"fi_VariableNo"_s));
        if (!variable) {
            // The field of a variable that went may be another one's now, whose numbers nobody asked for.
            const bool taken =
                std::any_of(variables.begin(), variables.end(), [&](const VariableEntry& other) {
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
        Entry entry{{u"dt_Table"_s, variable->table}, {u"dt_Field"_s, variable->field}};
        if (variable->missing.size() <= longestMissing)
            entry.emplace_back(u"dt_Missing"_s, orNull(variable->missing));
        else
            facts
                << said(
                       u"Vergleichsauswertung %1: Die Missing-Definition von %2 ist zu lang, die alte bleibt"_s,
                       u"Comparison %1: The missing definition of %2 is too long, the old one stays"_s)
                       .arg(rows->text(u"fid"_s), variable->name);
        rows->Edit();
        setFields(*rows, entry);
        rows->Update();
    }
    return facts;
}

QStringList StudyWriter::movedInQuery(const std::vector<VariableEntry>& variables) const {
    QStringList facts;
    for (const Place& place : before_) {
        const QRegularExpression word(u"(?<!\\w)%1(?!\\w)"_s.arg(QRegularExpression::escape(place.field)),
                                      QRegularExpression::CaseInsensitiveOption |
                                          QRegularExpression::UseUnicodePropertiesOption);
        if (place.field.isEmpty() || !query_.contains(word))
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

QStringList StudyWriter::writeContent(const StudyContent& content) {
    std::vector<bool> variables(content.variables.size()), labels(content.labels.size());
    // Also for a study that is new: rows that an older one of its number left would be taken for its own.
    updateVariables(content.variables, variables);
    updateLabels(content.labels, labels);
    appendNew(catalogue_, variableTable, study_, content.variables, variables);
    appendNew(catalogue_, valueTable, study_, content.labels, labels);
    return updateComparisons(content.variables) + movedInQuery(content.variables);
}

QStringList StudyWriter::pointersToVanished() const {
    QStringList found;
    const auto gone = [&](const QString& name) { return vanished_.contains(name, Qt::CaseInsensitive); };
    const auto collect = [&](const QString& table, const QString& field, const auto& place) {
        for (const dao::RecordsetPtr rows = open(table, u"fi_StudyNo"_s); !rows->Eof(); rows->MoveNext())
            if (gone(rows->text(field)))
                found << rows->text(field) + u": "_s + place(*rows);
    };
    const QString prefix = u"trel_Variable"_s;
    for (int i = 0; i < catalogue_.TableDefs().Count(); ++i) {
        const QString table = catalogue_.TableDefs().Item(i)->Name();
        if (!table.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        const QString entries = schema::entryTableName(table.mid(prefix.size()));
        if (!hasColumns(table, {u"fi_StudyNo"_s, u"fi_VariableNo"_s, u"fid"_s}))
            continue;
        // Its view may be gone, or be one of studies.
        const bool named = hasColumns(entries, {u"id"_s, u"dt_IndicatorName"_s});
        collect(table, u"fi_VariableNo"_s, [&](const dao::Recordset& row) {
            if (!named)
                return u"%1 %2"_s.arg(table, row.value(u"fid"_s).toText());
            const dao::RecordsetPtr entry =
                catalogue_.OpenRecordset(u"SELECT dt_IndicatorName FROM %1 WHERE id = %2;"_s.arg(
                    entries, row.value(u"fid"_s).toText()));
            return u"%1 '%2'"_s.arg(entries,
                                    entry->Eof() ? row.value(u"fid"_s).toText() : entry->value(0).toText());
        });
    }
    if (const QString table = u"tsys_VariableComparison"_s;
        hasColumns(table, {u"fi_StudyNo"_s, u"fi_VariableNo"_s, u"fid"_s}))
        collect(table, u"fi_VariableNo"_s, [](const dao::Recordset& row) {
            return said(u"Vergleichsauswertung %1"_s, u"comparison %1"_s).arg(row.value(u"fid"_s).toText());
        });
    if (const QString table = u"tkey_Parts"_s;
        hasColumns(table, {u"fi_StudyNo"_s, u"dt_SelectionVariable"_s, u"dt_PartName"_s}))
        collect(table, u"dt_SelectionVariable"_s, [](const dao::Recordset& row) {
            return said(u"Auswahlvariable des Teils '%1'"_s, u"selection variable of part '%1'"_s)
                .arg(row.value(u"dt_PartName"_s).toText());
        });
    return found;
}

QString studyTableOf(dao::Database& catalogue, const QString& study) {
    const QString standard = schema::entryTableName(u"Study"_s);
    if (!catalogue.TableDefs().contains(u"tsys_Options"_s))
        return standard;
    QStringList tables;
    QHash<QString, QString> options;
    for (const dao::RecordsetPtr rows = catalogue.OpenRecordset(u"tsys_Options"_s, dao::dbOpenTable);
         !rows->Eof(); rows->MoveNext())
        options.insert(rows->text(u"dt_OptionName"_s).toLower(), rows->text(u"dt_OptionValue"_s));
    for (int view = 1; view <= 9; ++view) {
        const QString suffix = options.value(u"frmexplorer%1table"_s.arg(view));
        if (options.value(u"frmexplorer%1type"_s.arg(view)) == u"1"_s && !suffix.isEmpty())
            tables << schema::entryTableName(suffix);
    }
    for (const QString& table : std::as_const(tables))
        if (StudyWriter(catalogue, table, study).exists())
            return table;
    return tables.isEmpty() ? standard : tables.front();
}

void makeCatalogue(dao::Database& catalogue) {
    schema::createCatalogueTables(catalogue);
    const std::unique_ptr<dao::Appender> options =
        catalogue.openAppender(u"tsys_Options"_s, {u"dt_OptionName"_s, u"dt_OptionValue"_s});
    for (const auto& [name, value] : {std::pair(u"NumberOfFrmExplorers"_s, u"1"_s),
                                      {u"OpenFrmExplorerAtStart"_s, u"1"_s},
                                      {u"RemoveTableLinksOnExitDB"_s, u"1"_s},
                                      {u"frmExplorer1Name"_s, u"Studien"_s},
                                      {u"frmExplorer1NameEnglish"_s, u"Studies"_s},
                                      {u"frmExplorer1Table"_s, u"Study"_s},
                                      {u"frmExplorer1Type"_s, u"1"_s},
                                      {u"frmExplorer1DescName"_s, u"Studienbeschreibungen"_s},
                                      {u"frmExplorer1DescNameEnglish"_s, u"Study Descriptions"_s}}) {
        options->setText(0, name);
        options->setText(1, value);
        options->appendRow();
    }
    const std::unique_ptr<dao::Appender> database =
        catalogue.openAppender(u"tkey_Database"_s, {u"dt_DatabaseTitle"_s});
    database->setText(0, QFileInfo(catalogue.Name()).completeBaseName());
    database->appendRow();
}
