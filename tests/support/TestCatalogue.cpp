#include "support/TestCatalogue.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "catalogue/mdDataBase.h"
#include "catalogue/schema.h"
#include "config/Options.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

dao::Workspace& workspace() {
    return dao::DBEngine::instance().Workspaces(0);
}

void set(dao::Appender& appender, int column, const dao::Value& value) {
    switch (value.kind()) {
    case dao::Value::Kind::Null:
        return appender.setNull(column);
    case dao::Value::Kind::Integer:
    case dao::Value::Kind::Double:
        return appender.setNumber(column, value.toDouble());
    default:
        return appender.setText(column, value.toText());
    }
}

void appendRow(dao::Database& database, const QString& table, const std::vector<std::pair<QString, dao::Value>>& row) {
    QStringList fields;
    for (const auto& cell : row)
        fields << cell.first;
    const auto appender = database.openAppender(table, fields);
    for (size_t i = 0; i < row.size(); ++i)
        set(*appender, static_cast<int>(i), row[i].second);
    appender->appendRow();
}

dao::FieldDefinition field(const QString& name, int type = dao::dbDouble) {
    return dao::TableDef::CreateField(name, type);
}

} // namespace

TestCatalogue::TestCatalogue(const QString& folder, const QString& name)
    : path_(folder + u'/' + name), dataFolder_(folder + u"/data"_s) {
    gViews.clear();
    gCatalogueOptions = CatalogueOptions();
    gOptions = Options();
    QDir().mkpath(dataFolder_);
    const dao::DatabasePtr database = workspace().CreateDatabase(path_);
    workspace().BeginTrans();
    schema::createCatalogueTables(*database, {u"Study"_s}, {u"Category"_s, u"Trend"_s});
    workspace().CommitTrans();
    database->Close();
}

TestCatalogue::~TestCatalogue() {
    if (gDatabase.State() == 1)
        mdDataBase::CloseDataBase();
}

QString TestCatalogue::caseFile(const QString& study) const {
    return dataFolder_ + u'/' + study + u".mdb"_s;
}

void TestCatalogue::append(const QString& table, const Cells& start, Row more) {
    Cells cells = start;
    for (const auto& cell : more) {
        const QString name = QString::fromLatin1(cell.first);
        std::erase_if(cells, [&](const auto& given) { return given.first == name; });
        cells.emplace_back(name, cell.second);
    }
    const dao::DatabasePtr database = filling_ ? filling_ : workspace().OpenDatabase(path_);
    appendRow(*database, table, cells);
    if (!filling_)
        database->Close();
}

void TestCatalogue::add(const QString& table, Row row) {
    append(table, {}, row);
}

void TestCatalogue::addStudy(const QString& number, const QString& title, Row more) {
    append(u"tkey_Study"_s, {{u"id_StudyNo"_s, number}, {u"dt_StudyTitle"_s, title}}, more);
}

void TestCatalogue::addVariable(const QString& study, const QString& name, const QString& table, Row more) {
    append(u"tkey_Variable"_s,
           {{u"fi_StudyNo"_s, study},
            {u"id_VarName"_s, name},
            {u"dt_TableName"_s, table},
            {u"dt_FieldName"_s, name},
            {u"dt_Position"_s, ++position_}},
           more);
}

void TestCatalogue::addValue(const QString& study, const QString& variable, const QString& code, const QString& label) {
    add(u"tkey_Value"_s, {{"fi_StudyNo", study}, {"fi_VarName", variable}, {"dt_Value", code}, {"dt_Label", label}});
}

void TestCatalogue::addOption(const QString& name, const dao::Value& value) {
    add(u"tsys_Options"_s, {{"dt_OptionName", name}, {"dt_OptionValue", value}});
}

void TestCatalogue::addCategory(const QString& view, int id, int parent, int order, const QString& name, Row more) {
    append(schema::entryTableName(view),
           {{u"id"_s, id}, {u"fid"_s, parent}, {u"Order"_s, order}, {u"dt_IndicatorName"_s, name}}, more);
}

void TestCatalogue::addAssignment(const QString& view, int category, const QString& study, const QString& variable) {
    add(schema::assignmentTableName(view), {{"fid", category}, {"fi_StudyNo", study}, {"fi_VariableNo", variable}});
}

void TestCatalogue::addCases(const QString& study, const QString& table,
                             const std::vector<dao::FieldDefinition>& fields,
                             const std::vector<std::vector<dao::Value>>& rows) {
    const QString file = caseFile(study);
    const dao::DatabasePtr database =
        QFile::exists(file) ? workspace().OpenDatabase(file) : workspace().CreateDatabase(file);
    const schema::Table definition = schema::cases(table, fields);
    workspace().BeginTrans();
    schema::create(*database, definition);
    const auto appender = database->openAppender(table, definition.fieldNames());
    int number = 0;
    for (const std::vector<dao::Value>& row : rows) {
        appender->setNumber(0, ++number);
        for (size_t i = 0; i < row.size(); ++i)
            set(*appender, static_cast<int>(i) + 1, row[i]);
        appender->appendRow();
    }
    workspace().CommitTrans();
    database->Close();
}

void TestCatalogue::execute(const QString& statement) {
    const dao::DatabasePtr database = workspace().OpenDatabase(path_);
    database->Execute(statement);
    database->Close();
}

qint16 TestCatalogue::open() {
    gOptions.DataPath = dataFolder_;
    return mdDataBase::OpenQXDatabase(path_);
}

void TestCatalogue::together(const std::function<void()>& adds) {
    filling_ = workspace().OpenDatabase(path_);
    workspace().BeginTrans();
    adds();
    workspace().CommitTrans();
    filling_->Close();
    filling_.reset();
}

void TestCatalogue::fill() {
    const std::pair<QString, QString> options[] = {
        {u"NumberOfFrmExplorers"_s, u"3"_s},
        {u"OpenFrmExplorerAtStart"_s, u"1"_s},
        {u"ShowVarGroupInfo"_s, u"1"_s},
        {u"VarGroupInfoName"_s, u"Welle"_s},
        {u"VarGroupInfoNameEnglish"_s, u"Wave"_s},
        {u"RemoveTableLinksOnExitDB"_s, u"1"_s},
        {u"DefaultEnglishContents"_s, u"0"_s},
        {u"frmExplorer1Name"_s, u"Studien"_s},
        {u"frmExplorer1NameEnglish"_s, u"Studies"_s},
        {u"frmExplorer1Table"_s, u"Study"_s},
        {u"frmExplorer1Type"_s, u"1"_s},
        {u"frmExplorer2Name"_s, u"Kategorien"_s},
        {u"frmExplorer2NameEnglish"_s, u"Categories"_s},
        {u"frmExplorer2Table"_s, u"Category"_s},
        {u"frmExplorer3Name"_s, u"Trends"_s},
        {u"frmExplorer3NameEnglish"_s, u"Trends"_s},
        {u"frmExplorer3Table"_s, u"Trend"_s},
        {u"frmExplorer3CompAnalysis"_s, u"1"_s},
    };
    together([&] {
        for (const auto& [name, value] : options)
            addOption(name, value);
        addStudies();
        addVariables();
        addTrees();
    });
    addCaseTables();
}

void TestCatalogue::addStudies() {
    addStudy(u"G001"_s, u"Gruppe"_s,
             {{"dt_EnStudyTitle", u"Group"_s}, {"fid", u"0"_s}, {"Order", 1}, {"dt_IsGroup", true}});
    addStudy(u"QX1919"_s, u"Erhebung 1919"_s,
             {{"dt_EnStudyTitle", u"Survey 1919"_s},
              {"fid", u"G001"_s},
              {"Order", 1},
              {"dt_Year", u"1919"_s},
              {"dt_WeightRE", u"V3"_s},
              {"dt_StudyDescription", u"Beschreibung"_s}});
    addStudy(u"QX2020"_s, u"Erhebung 2020"_s,
             {{"dt_EnStudyTitle", u"Survey 2020"_s}, {"fid", u"0"_s}, {"Order", 2}, {"dt_Year", u"2020"_s}});
    add(u"tkey_VarGroups"_s,
        {{"id_VarGroup", 1}, {"dt_VarGroupName", u"Welle 1"_s}, {"dt_VarGroupNameEn", u"Wave 1"_s}});
    add(u"tkey_VarGroups"_s,
        {{"id_VarGroup", 2}, {"dt_VarGroupName", u"Welle 2"_s}, {"dt_VarGroupNameEn", u"Wave 2"_s}});
    add(u"tkey_Parts"_s, {{"id_Part", 1},
                          {"fi_StudyNo", u"QX1919"_s},
                          {"dt_PartNo", u"1"_s},
                          {"dt_PartName", u"Teil A"_s},
                          {"dt_EnPartName", u"Part A"_s},
                          {"dt_SelectionVariable", u"SE"_s},
                          {"dt_SelectionCriteria", u"1"_s},
                          {"dt_SeparateAnalysisOnly", true}});
}

void TestCatalogue::addVariables() {
    const QString one = u"QX1919_1"_s;
    const QString two = u"QX1919_2"_s;
    addVariable(u"QX1919"_s, u"V3"_s, one, {{"dt_VarLabel", u"Gewicht"_s}, {"dt_EnVarLabel", u"Weight"_s}});
    addVariable(u"QX1919"_s, u"V5"_s, one,
                {{"dt_VarLabel", u"Zufriedenheit"_s},
                 {"dt_EnVarLabel", u"Satisfaction"_s},
                 {"dt_Missing", u"9"_s},
                 {"dt_VarGroup", 1},
                 {"dt_QuestionText", u"Wie zufrieden sind Sie?"_s}});
    addVariable(u"QX1919"_s, u"V6"_s, two, {{"dt_VarLabel", u"Vertrauen"_s}, {"dt_EnVarLabel", u"Trust"_s}});
    addVariable(u"QX1919"_s, u"V7"_s, one,
                {{"dt_VarLabel", u"Geschlecht"_s}, {"dt_EnVarLabel", u"Sex"_s}, {"dt_VarGroup", 2}});
    addVariable(u"QX1919"_s, u"V8"_s, one, {{"dt_VarLabel", u"Beruf"_s}, {"dt_EnVarLabel", u"Occupation"_s}});
    addVariable(u"QX1919"_s, u"V9"_s, two, {{"dt_VarLabel", u"Alter"_s}, {"dt_EnVarLabel", u"Age"_s}});
    addVariable(u"QX2020"_s, u"V5"_s, u"QX2020_1"_s,
                {{"dt_VarLabel", u"Zufriedenheit"_s}, {"dt_EnVarLabel", u"Satisfaction"_s}, {"dt_Missing", u"9"_s}});
    addVariable(u"QX2020"_s, u"V7"_s, u"QX2020_1"_s, {{"dt_VarLabel", u"Geschlecht"_s}, {"dt_EnVarLabel", u"Sex"_s}});
    for (const QString& study : {u"QX1919"_s, u"QX2020"_s}) {
        addValue(study, u"V5"_s, u"1"_s, u"zufrieden"_s);
        addValue(study, u"V5"_s, u"2"_s, u"unzufrieden"_s);
        addValue(study, u"V5"_s, u"9"_s, u"keine Angabe"_s);
        addValue(study, u"V7"_s, u"1"_s, u"männlich"_s);
        addValue(study, u"V7"_s, u"2"_s, u"weiblich"_s);
    }
}

void TestCatalogue::addTrees() {
    addCategory(u"Category"_s, 1, 0, 2, u"Einstellungen"_s, {{"dt_EnIndicatorName", u"Attitudes"_s}});
    addCategory(u"Category"_s, 2, 0, 1, u"Demographie"_s,
                {{"dt_EnIndicatorName", u"Demography"_s}, {"dt_IndicatorDescription", u"Person und Haushalt"_s}});
    addCategory(u"Category"_s, 3, 1, 1, u"Vertrauen"_s, {{"dt_EnIndicatorName", u"Trust"_s}});
    addAssignment(u"Category"_s, 1, u"QX2020"_s, u"V5"_s);
    addAssignment(u"Category"_s, 1, u"QX1919"_s, u"V5"_s);
    addAssignment(u"Category"_s, 2, u"QX1919"_s, u"V7"_s);
    addAssignment(u"Category"_s, 3, u"QX1919"_s, u"V6"_s);
    addCategory(u"Trend"_s, 1, 0, 1, u"Zufriedenheit"_s, {{"dt_EnIndicatorName", u"Satisfaction"_s}});
    addAssignment(u"Trend"_s, 1, u"QX1919"_s, u"V5"_s);
    addAssignment(u"Trend"_s, 1, u"QX2020"_s, u"V5"_s);
}

void TestCatalogue::addCaseTables() {
    const dao::Value none;
    addCases(u"QX1919"_s, u"QX1919_1"_s, {field(u"V3"_s), field(u"V5"_s), field(u"V7"_s), field(u"V8"_s, dao::dbText)},
             {{0.5, 1, 1, u"Lehrer"_s},
              {1.5, 1, 2, u"Bäcker"_s},
              {1.2, 2, 1, u"Lehrer"_s},
              {0.8, 2, 2, QString(u""_s)},
              {1.0, 9, 1, u"Arzt"_s},
              {1.0, none, 2, none}});
    addCases(u"QX1919"_s, u"QX1919_2"_s, {field(u"V6"_s), field(u"V9"_s)},
             {{1, 31}, {2, 42}, {3, 53}, {1, 64}, {2, 75}, {none, 26}});
    addCases(u"QX2020"_s, u"QX2020_1"_s, {field(u"V5"_s), field(u"V7"_s)}, {{1, 1}, {2, 2}, {2, 1}});
}
