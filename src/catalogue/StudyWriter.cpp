#include "catalogue/StudyWriter.h"

#include "catalogue/StudyRows.h"
#include "catalogue/importTexts.h"
#include "catalogue/schema.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

const QString variableTable = u"tkey_Variable"_s;
const QString valueTable = u"tkey_Value"_s;

EntryFields fieldsOf(const QString& study, const VariableEntry& variable) {
    return {{u"fi_StudyNo"_s, study},
            {u"id_VarName"_s, variable.name},
            {u"dt_Position"_s, variable.position},
            {u"dt_VarLabel"_s, orNull(variable.label)},
            {u"dt_TableName"_s, variable.table},
            {u"dt_FieldName"_s, variable.field},
            {u"dt_Format"_s, orNull(variable.format)},
            {u"dt_Missing"_s, orNull(variable.missing)}};
}

EntryFields fieldsOf(const QString& study, const LabelEntry& label) {
    return {{u"fi_StudyNo"_s, study},
            {u"fi_VarName"_s, label.variable},
            {u"dt_Value"_s, label.code},
            {u"dt_Label"_s, orNull(label.label)}};
}

/// A format that a text has in an SPSS file (A12; ADATE10 is a date) or a Stata file (%12s).
bool isTextFormat(const QString& format) {
    static const QRegularExpression ofText(u"\\A(A(HEX)?\\d+|%.*s)\\z"_s);
    return ofText.match(format).hasMatch();
}

QString key(const QString& variable, const QString& code) {
    return (variable + u'\n' + code).toCaseFolded();
}

/// True if a label of the same number, from another file, names the same code. A code without a label may be the
/// beginning of another one: "New" of "New York".
bool isOfSameCode(const LabelEntry& label, const QString& other) {
    return other == label.text || other == label.label ||
           (label.label != label.text && other.startsWith(label.text + u' '));
}

/// Appends the entries that no row stood for yet.
template<class Item>
void appendNew(dao::Database& catalogue, const QString& table, const QString& study, const std::vector<Item>& items,
               const std::vector<bool>& written) {
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

} // namespace

StudyWriter::StudyWriter(dao::Database& catalogue, const QString& studyTable, const QString& study)
    : catalogue_(catalogue), studyTable_(studyTable), study_(study) {
    if (!catalogue.TableDefs().contains(studyTable))
        return;
    const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, studyTable, u"id_StudyNo"_s, study_);
    exists_ = !rows->Eof();
    if (exists_) {
        study_ = rows->text(u"id_StudyNo"_s);
        isGroup_ = rows->value(u"dt_IsGroup"_s).isNull() ? false : rows->value(u"dt_IsGroup"_s).toBoolean();
        query_ = rows->hasField(u"dt_query"_s) ? rows->text(u"dt_query"_s) : QString();
    }
    if (!exists_ || !hasColumns(catalogue, variableTable, {u"fi_StudyNo"_s, u"dt_TableName"_s, u"dt_FieldName"_s}))
        return;
    for (const dao::RecordsetPtr fields = rowsOfStudy(catalogue_, variableTable, u"fi_StudyNo"_s, study_);
         !fields->Eof(); fields->MoveNext())
        before_.push_back(
            {fields->text(u"id_VarName"_s), fields->text(u"dt_TableName"_s), fields->text(u"dt_FieldName"_s)});
}

QHash<QString, QString> StudyWriter::fieldsBefore() const {
    QHash<QString, QString> fields;
    for (const StudyReferences::Place& place : before_)
        fields.insert(place.name.toCaseFolded(), place.field);
    return fields;
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

QString StudyWriter::weightFor(const std::optional<QString>& wish, const QString& fromFile, const QString& present,
                               const std::vector<VariableEntry>& variables, const SurveyFile& file,
                               QStringList& facts) const {
    if (wish)
        return *wish;
    if (!fromFile.isEmpty())
        return fromFile;
    const VariableEntry* variable = entryOf(variables, present);
    if (present.isEmpty() || (variable && isNumeric(file, variable->position - 1)))
        return present;
    facts << (variable ? said(u"Gewicht %1 ist keine Zahlenvariable mehr, die Studie verliert es"_s,
                              u"Weight %1 is no longer a numeric variable, the study loses it"_s)
                       : said(u"Gewicht %1 gibt es nicht mehr, die Studie verliert es"_s,
                              u"Weight %1 is gone, the study loses it"_s))
                 .arg(present);
    return {};
}

QStringList StudyWriter::writeStudy(const SurveyFile& file, const ImportSettings& settings, const QString& fileWeight,
                                    const std::vector<VariableEntry>& variables, const std::vector<CaseTable>& tables) {
    QStringList facts;
    const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, studyTable_, u"id_StudyNo"_s, study_);
    const auto present = [&](const QString& field) {
        return exists_ && rows->hasField(field) ? rows->text(field) : QString();
    };

    const QString titleBefore = present(u"dt_StudyTitle"_s);
    const QString title = settings.title           ? *settings.title
                          : !titleBefore.isEmpty() ? titleBefore
                          : !file.label.isEmpty()  ? file.label
                                                   : study_;
    if (!file.label.isEmpty() && file.label != title)
        facts << said(u"Nicht übernommen: Bezeichnung der Datei '%1'"_s, u"Not taken over: the file's label '%1'"_s)
                     .arg(file.label);

    const QString notes = file.notes.join(u"\r\n"_s).trimmed();
    const QString descriptionBefore = present(u"dt_StudyDescription"_s);
    if (!notes.isEmpty() && !descriptionBefore.isEmpty() && notes != descriptionBefore)
        facts << said(u"Nicht übernommen: Anmerkungen der Datei (die Studie hat schon eine Beschreibung)"_s,
                      u"Not taken over: the file's notes (the study has a description already)"_s);

    const QString weightRe =
        weightFor(settings.weightRe, fileWeight, present(u"dt_WeightRE"_s), variables, file, facts);
    const QString weightHh = weightFor(settings.weightHh, {}, present(u"dt_WeightHH"_s), variables, file, facts);
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
    EntryFields entry{{u"id_StudyNo"_s, study_},
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
    for (const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, variableTable, u"fi_StudyNo"_s, study_); !rows->Eof();
         rows->MoveNext()) {
        const QString name = rows->text(u"id_VarName"_s);
        const auto found = byName.constFind(name.toCaseFolded());
        if (found == byName.constEnd()) {
            vanished_ << name;
            rows->Delete();
            continue;
        }
        const QString formatBefore = rows->text(u"dt_Format"_s);
        if (!formatBefore.isEmpty() && isTextFormat(formatBefore) != isTextFormat(variables[*found].format))
            changedKind_ << name;
        for (const QString& result : {u"dt_Table"_s, u"dt_Graph"_s})
            if (rows->hasField(result) && !rows->value(result).isNull() && !resultsBefore_.contains(name))
                resultsBefore_ << name;
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
    for (const dao::RecordsetPtr rows = rowsOfStudy(catalogue_, valueTable, u"fi_StudyNo"_s, study_); !rows->Eof();
         rows->MoveNext()) {
        const auto found = byCode.constFind(key(rows->text(u"fi_VarName"_s), rows->text(u"dt_Value"_s)));
        if (found == byCode.constEnd() || written[*found]) {
            rows->Delete();
            continue;
        }
        noteOtherCode(labels[*found], rows->text(u"dt_Label"_s));
        rows->Edit();
        setFields(*rows, fieldsOf(study_, labels[*found]));
        rows->Update();
        written[*found] = true;
    }
    // Without a label of number 1 its numbers were the file's own.
    for (size_t i = 0; i < labels.size(); ++i)
        if (!written[i] && !labels[i].text.isEmpty() && labels[i].code == u"1" &&
            std::any_of(before_.begin(), before_.end(), [&](const StudyReferences::Place& place) {
                return place.name.compare(labels[i].variable, Qt::CaseInsensitive) == 0;
            }))
            noteRenumbered(labels[i].variable);
}

void StudyWriter::noteOtherCode(const LabelEntry& label, const QString& labelBefore) {
    if (!label.text.isEmpty() && !isOfSameCode(label, labelBefore))
        noteRenumbered(label.variable);
}

void StudyWriter::noteRenumbered(const QString& variable) {
    if (!changedKind_.contains(variable, Qt::CaseInsensitive) && !renumbered_.contains(variable))
        renumbered_ << variable;
}

/// Encoded variables whose numbers stand for other codes in other studies, with these studies: comparisons put equal
/// numbers side by side, under the label of the first.
QStringList StudyWriter::otherwiseElsewhere(const std::vector<LabelEntry>& labels) const {
    constexpr qsizetype mostStudies = 3;
    QHash<QString, const LabelEntry*> byCode;
    QStringList variables;
    for (const LabelEntry& label : labels)
        if (!label.text.isEmpty()) {
            byCode.insert(key(label.variable, label.code), &label);
            if (variables.isEmpty() || variables.back() != label.variable)
                variables << label.variable;
        }
    QStringList found;
    for (const QString& variable : std::as_const(variables)) {
        QStringList studies;
        for (const dao::RecordsetPtr rows = catalogue_.OpenRecordset(
                 u"SELECT fi_StudyNo, dt_Value, dt_Label FROM %1 WHERE fi_VarName = %2 AND fi_StudyNo <> %3;"_s.arg(
                     valueTable, quoted(variable), quoted(study_)),
                 dao::dbOpenSnapshot);
             !rows->Eof(); rows->MoveNext()) {
            const LabelEntry* label = byCode.value(key(variable, rows->text(u"dt_Value"_s)));
            const QString study = rows->text(u"fi_StudyNo"_s);
            if (label && !studies.contains(study) && !isOfSameCode(*label, rows->text(u"dt_Label"_s)))
                studies << study;
        }
        if (studies.size() > mostStudies)
            studies = studies.first(mostStudies) << u"…"_s;
        if (!studies.isEmpty())
            found << u"%1 (%2)"_s.arg(variable, studies.join(u", "_s));
    }
    return found;
}

QStringList StudyWriter::changedCodes(const QStringList& elsewhere) const {
    QStringList facts;
    const auto tell = [&facts](const QStringList& variables, const QString& german, const QString& english) {
        if (!variables.isEmpty())
            facts << said(german, english).arg(variables.size()) + u": "_s + variables.join(u", "_s);
    };
    tell(changedKind_, u"Waren Text und sind jetzt Zahlen oder umgekehrt; Filter und Abfragen sind zu prüfen (%1)"_s,
         u"Were text and are numbers now or the other way round; filters and queries need a look (%1)"_s);
    tell(renumbered_, u"Zahlen, die jetzt für andere Codes stehen; Filter und Abfragen sind zu prüfen (%1)"_s,
         u"Numbers that stand for other codes now; filters and queries need a look (%1)"_s);
    for (const QString& place : StudyReferences(catalogue_, study_).onCodesOf(changedKind_ + renumbered_))
        facts << said(u"Steht auf solchen Codes: %1"_s, u"Stands on such codes: %1"_s).arg(place);
    tell(resultsBefore_, u"Gespeicherte Tabellen und Grafiken, die noch die Daten von vorher zeigen (%1)"_s,
         u"Stored tables and charts that still show the data from before (%1)"_s);
    tell(
        elsewhere,
        u"Zahlen, die in anderen Studien für andere Codes stehen; ein Vergleich stellt gleiche Zahlen nebeneinander (%1)"_s,
        u"Numbers that stand for other codes in other studies; a comparison puts equal numbers side by side (%1)"_s);
    return facts;
}

QStringList StudyWriter::writeContent(const StudyContent& content) {
    std::vector<bool> variables(content.variables.size()), labels(content.labels.size());
    // Also for a study that is new: rows that an older one of its number left would be taken for its own.
    updateVariables(content.variables, variables);
    updateLabels(content.labels, labels);
    appendNew(catalogue_, variableTable, study_, content.variables, variables);
    appendNew(catalogue_, valueTable, study_, content.labels, labels);
    return changedCodes(otherwiseElsewhere(content.labels)) +
           StudyReferences(catalogue_, study_).updateComparisons(content.variables) +
           StudyReferences::movedInQuery(query_, before_, content.variables);
}

QString studyTableOf(dao::Database& catalogue, const QString& study) {
    const QString standard = schema::entryTableName(u"Study"_s);
    if (!catalogue.TableDefs().contains(u"tsys_Options"_s))
        return standard;
    QStringList tables;
    QHash<QString, QString> options;
    for (const dao::RecordsetPtr rows = catalogue.OpenRecordset(u"tsys_Options"_s, dao::dbOpenTable); !rows->Eof();
         rows->MoveNext())
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
