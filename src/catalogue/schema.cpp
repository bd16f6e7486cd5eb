#include "catalogue/schema.h"

#include <initializer_list>

using namespace Qt::StringLiterals;

namespace schema {

namespace {

struct F {
    const char16_t* name;
    int type;
    int size = 0;
};

constexpr int counter = -1;

dao::FieldDefinition makeField(const F& f) {
    dao::FieldDefinition field;
    field.Name = QString::fromUtf16(f.name);
    field.Type = f.type == counter ? dao::dbLong : f.type;
    field.Size = f.size;
    field.Attributes = f.type == counter ? dao::dbAutoIncrField : 0;
    field.Required = f.type == dao::dbBoolean;
    return field;
}

Table makeTable(const QString& name, std::initializer_list<F> fields, const QStringList& primaryKey,
                std::vector<dao::TableDef::Index> indexes = {}) {
    Table table{name, {}, primaryKey, std::move(indexes)};
    table.fields.reserve(fields.size());
    for (const F& field : fields)
        table.fields.push_back(makeField(field));
    return table;
}

/// An index of this table; its name is made unique in the file by the table's name.
dao::TableDef::Index index(const QString& table, const QStringList& fields) {
    return {u"ix_"_s + table + u'_' + fields.join(u'_'), fields, false};
}

} // namespace

QStringList Table::fieldNames() const {
    QStringList names;
    for (const dao::FieldDefinition& field : fields)
        names << field.Name;
    return names;
}

QString entryTableName(const QString& suffix) {
    return u"tkey_"_s + suffix;
}

QString assignmentTableName(const QString& suffix) {
    return u"trel_Variable"_s + suffix;
}

Table studyEntries(const QString& suffix) {
    const QString name = entryTableName(suffix);
    return makeTable(name,
                     {{u"id_StudyNo", dao::dbText},
                      {u"fid", dao::dbText},
                      {u"Order", dao::dbLong},
                      {u"dt_IsGroup", dao::dbBoolean},
                      {u"dt_StudyTitle", dao::dbText},
                      {u"dt_EnStudyTitle", dao::dbText},
                      {u"dt_StudyDescription", dao::dbMemo},
                      {u"dt_EnStudyDescription", dao::dbMemo},
                      {u"dt_Year", dao::dbText},
                      {u"dt_WeightHH", dao::dbText},
                      {u"dt_WeightRE", dao::dbText},
                      {u"dt_query", dao::dbText}},
                     {u"id_StudyNo"_s}, {index(name, {u"fid"_s, u"Order"_s})});
}

Table categoryEntries(const QString& suffix) {
    const QString name = entryTableName(suffix);
    return makeTable(name,
                     {{u"id", counter},
                      {u"fid", dao::dbLong},
                      {u"Order", dao::dbLong},
                      {u"dt_IndicatorName", dao::dbText},
                      {u"dt_EnIndicatorName", dao::dbText},
                      {u"dt_IndicatorDescription", dao::dbMemo},
                      {u"dt_EnIndicatorDescription", dao::dbMemo}},
                     {u"id"_s}, {index(name, {u"fid"_s, u"Order"_s})});
}

Table assignments(const QString& suffix) {
    const QString name = assignmentTableName(suffix);
    return makeTable(name,
                     {{u"id", counter},
                      {u"fid", dao::dbLong},
                      {u"fi_StudyNo", dao::dbText},
                      {u"fi_VariableNo", dao::dbText},
                      {u"dt_QuestionNo", dao::dbText},
                      {u"dt_PrintSelect", dao::dbText}},
                     {u"id"_s},
                     {index(name, {u"fid"_s, u"fi_StudyNo"_s, u"fi_VariableNo"_s}),
                      index(name, {u"fi_StudyNo"_s, u"fi_VariableNo"_s})});
}

Table variables() {
    const QString name = u"tkey_Variable"_s;
    return makeTable(name,
                     {{u"fi_StudyNo", dao::dbText},
                      {u"id_VarName", dao::dbText},
                      {u"dt_Position", dao::dbLong},
                      {u"dt_VarLabel", dao::dbText},
                      {u"dt_EnVarLabel", dao::dbText},
                      {u"dt_QuestionText", dao::dbMemo},
                      {u"dt_EnQuestionText", dao::dbMemo},
                      {u"dt_VarGroup", dao::dbLong},
                      {u"dt_TableName", dao::dbText},
                      {u"dt_FieldName", dao::dbText},
                      {u"dt_Format", dao::dbText},
                      {u"dt_Missing", dao::dbText},
                      {u"dt_FileNameShowCard", dao::dbText},
                      {u"dt_FileNameEnShowCard", dao::dbText},
                      {u"dt_Instruction", dao::dbMemo},
                      // What is long stands last: the file reaches a field only through those in front of it.
                      {u"dt_TableLayout", dao::dbMemo},
                      {u"dt_Table", dao::dbMemo},
                      {u"dt_GraphLayout", dao::dbMemo},
                      {u"dt_Graph", dao::dbMemo}},
                     {u"fi_StudyNo"_s, u"id_VarName"_s}, {index(name, {u"fi_StudyNo"_s, u"dt_Position"_s})});
}

Table values() {
    return makeTable(u"tkey_Value"_s,
                     {{u"fi_StudyNo", dao::dbText},
                      {u"fi_VarName", dao::dbText},
                      {u"dt_Value", dao::dbText},
                      {u"dt_Label", dao::dbText}},
                     {u"fi_StudyNo"_s, u"fi_VarName"_s, u"dt_Value"_s});
}

Table varGroups() {
    return makeTable(
        u"tkey_VarGroups"_s,
        {{u"id_VarGroup", dao::dbLong}, {u"dt_VarGroupName", dao::dbText}, {u"dt_VarGroupNameEn", dao::dbText}},
        {u"id_VarGroup"_s});
}

Table parts() {
    const QString name = u"tkey_Parts"_s;
    return makeTable(name,
                     {{u"id_Part", counter},
                      {u"fi_StudyNo", dao::dbText},
                      {u"dt_PartNo", dao::dbText},
                      {u"dt_PartName", dao::dbText},
                      {u"dt_EnPartName", dao::dbText},
                      {u"dt_SelectionVariable", dao::dbText},
                      {u"dt_SelectionCriteria", dao::dbText},
                      {u"dt_SeparateAnalysisOnly", dao::dbBoolean}},
                     {u"id_Part"_s}, {index(name, {u"fi_StudyNo"_s})});
}

Table database() {
    // The counter is there because a table whose rows are edited needs a key; its one row has none of its
    // own.
    return makeTable(u"tkey_Database"_s,
                     {{u"dt_DatabaseTitle", dao::dbText},
                      {u"dt_EnDatabaseTitle", dao::dbText},
                      {u"dt_DatabaseDescription", dao::dbMemo},
                      {u"dt_EnDatabaseDescription", dao::dbMemo},
                      {u"id", counter}},
                     {u"id"_s});
}

Table options() {
    return makeTable(u"tsys_Options"_s, {{u"dt_OptionName", dao::dbText}, {u"dt_OptionValue", dao::dbText}},
                     {u"dt_OptionName"_s});
}

Table comparisons() {
    return makeTable(u"tsys_Comparison"_s,
                     {{u"ID", counter},
                      {u"dt_CompName", dao::dbText, 255},
                      {u"dt_CompNameEn", dao::dbText, 255},
                      {u"dt_CompDesc", dao::dbMemo},
                      {u"dt_CompDescEn", dao::dbMemo},
                      {u"dt_order", dao::dbLong}},
                     {u"ID"_s});
}

Table comparisonVariables() {
    const QString name = u"tsys_VariableComparison"_s;
    return makeTable(name,
                     {{u"ID", counter},
                      {u"fi_StudyNo", dao::dbText, 50},
                      {u"fi_VariableNo", dao::dbText, 8},
                      {u"fid", dao::dbLong},
                      {u"dt_Table", dao::dbText, 50},
                      {u"dt_Field", dao::dbText, 50},
                      {u"dt_Missing", dao::dbText, 50},
                      {u"dt_Year", dao::dbText, 50},
                      {u"dt_VarGroup", dao::dbText, 50},
                      {u"dt_Weight", dao::dbText, 255},
                      {u"dt_Filter", dao::dbText, 255},
                      {u"dt_order", dao::dbLong},
                      {u"dt_WeightInfo", dao::dbText, 255},
                      {u"dt_FilterInfo", dao::dbText, 255},
                      {u"dt_VarLabel", dao::dbText, 255}},
                     {u"ID"_s}, {index(name, {u"fid"_s, u"dt_order"_s})});
}

Table cases(const QString& name, const std::vector<dao::FieldDefinition>& fields) {
    Table table = makeTable(name, {{u"dt_CaseID", dao::dbLong}}, {u"dt_CaseID"_s});
    table.fields.insert(table.fields.end(), fields.begin(), fields.end());
    return table;
}

dao::TableDefPtr definition(dao::Database& database, const Table& table) {
    dao::TableDefPtr result = database.CreateTableDef(table.name);
    result->Fields = table.fields;
    result->PrimaryKey = table.primaryKey;
    result->Indexes = table.indexes;
    return result;
}

void create(dao::Database& database, const Table& table) {
    database.TableDefs().Append(definition(database, table));
}

bool ensure(dao::Database& database, const Table& table) {
    if (database.TableDefs().contains(table.name))
        return false;
    create(database, table);
    return true;
}

void createStudyView(dao::Database& database, const QString& suffix) {
    ensure(database, studyEntries(suffix));
}

void createCategoryView(dao::Database& database, const QString& suffix) {
    ensure(database, categoryEntries(suffix));
    ensure(database, assignments(suffix));
}

void createCatalogueTables(dao::Database& database, const QStringList& studyViews, const QStringList& categoryViews) {
    for (const Table& table : {variables(), values(), varGroups(), parts(), schema::database(), options()})
        ensure(database, table);
    for (const QString& suffix : studyViews)
        createStudyView(database, suffix);
    for (const QString& suffix : categoryViews)
        createCategoryView(database, suffix);
}

} // namespace schema
