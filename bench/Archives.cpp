#include "Archives.h"

#include "catalogue/schema.h"
#include "platform/dao/DBEngine.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <readstat.h>

using namespace Qt::StringLiterals;

namespace {

using dao::FieldDefinition;

FieldDefinition number(const QString& name) {
    return dao::TableDef::CreateField(name, dao::dbDouble);
}

using Options = std::vector<std::pair<QString, QString>>;

const Options studyView = {{u"frmExplorer1Name"_s, u"Studien"_s},
                           {u"frmExplorer1Table"_s, u"Study"_s},
                           {u"frmExplorer1Type"_s, u"1"_s},
                           {u"frmExplorer1NameEnglish"_s, u"Studies"_s}};
const Options categoryView = {{u"OpenFrmExplorerAtStart"_s, u"1"_s},
                              {u"frmExplorer2Name"_s, u"Themen"_s},
                              {u"frmExplorer2Table"_s, u"Topic"_s},
                              {u"frmExplorer2NameEnglish"_s, u"Topics"_s}};

/// @param topics with the category view
void addOptions(dao::Database& catalogue, bool topics = false) {
    const auto options = catalogue.openAppender(u"tsys_Options"_s, {u"dt_OptionName"_s, u"dt_OptionValue"_s});
    Options values = studyView;
    values.emplace_back(u"NumberOfFrmExplorers"_s, topics ? u"2"_s : u"1"_s);
    if (topics)
        values.insert(values.end(), categoryView.begin(), categoryView.end());
    for (const auto& [key, value] : values) {
        options->setText(0, key);
        options->setText(1, value);
        options->appendRow();
    }
}

std::unique_ptr<dao::Appender> studyAppender(dao::Database& catalogue) {
    return catalogue.openAppender(u"tkey_Study"_s,
                                  {u"id_StudyNo"_s, u"fid"_s, u"Order"_s, u"dt_IsGroup"_s, u"dt_StudyTitle"_s,
                                   u"dt_EnStudyTitle"_s, u"dt_Year"_s, u"dt_WeightRE"_s});
}

void addStudy(dao::Appender& studies, const QString& study, int order, const QString& weight) {
    studies.setText(0, study);
    studies.setText(1, u"0"_s);
    studies.setNumber(2, order);
    studies.setNumber(3, 0);
    studies.setText(4, u"Erhebung "_s + study);
    studies.setText(5, u"Survey "_s + study);
    studies.setText(6, QString::number(1950 + order % 70));
    if (!weight.isEmpty())
        studies.setText(7, weight);
    studies.appendRow();
}

std::unique_ptr<dao::Appender> variableAppender(dao::Database& catalogue) {
    return catalogue.openAppender(u"tkey_Variable"_s,
                                  {u"fi_StudyNo"_s, u"id_VarName"_s, u"dt_Position"_s, u"dt_VarLabel"_s,
                                   u"dt_EnVarLabel"_s, u"dt_QuestionText"_s, u"dt_EnQuestionText"_s, u"dt_TableName"_s,
                                   u"dt_FieldName"_s, u"dt_Missing"_s});
}

/// @param inTopic its question texts are as long as those of interviews mostly are: 200 characters
void addVariable(dao::Appender& variables, const QString& study, const QString& name, int position,
                 const QString& table, bool inTopic = false) {
    constexpr int longText = 200;
    const auto asked = [inTopic](const QString& text) { return inTopic ? text.repeated(3).left(longText) : text; };
    variables.setText(0, study);
    variables.setText(1, name);
    variables.setNumber(2, position);
    variables.setText(3, u"Zufriedenheit mit dem Bereich Nummer %1"_s.arg(position));
    variables.setText(4, u"Satisfaction with area number %1"_s.arg(position));
    variables.setText(
        5, asked(u"Wie zufrieden sind Sie, alles in allem, mit dem Bereich Nummer %1 Ihres Lebens?"_s.arg(position)));
    variables.setText(
        6, asked(u"All things considered, how satisfied are you with area number %1 of your life?"_s.arg(position)));
    variables.setText(7, table);
    variables.setText(8, name);
    variables.setText(9, u"8;9"_s);
    variables.appendRow();
}

void addTopics(dao::Database& catalogue) {
    const auto topics =
        catalogue.openAppender(u"tkey_Topic"_s, {u"fid"_s, u"Order"_s, u"dt_IndicatorName"_s, u"dt_EnIndicatorName"_s});
    int order = 0;
    for (const auto& [german, english] :
         {std::pair(u"Zufriedenheit"_s, u"Satisfaction"_s), std::pair(u"Erstes"_s, u"First"_s)}) {
        topics->setNumber(0, 0);
        topics->setNumber(1, ++order);
        topics->setText(2, german);
        topics->setText(3, english);
        topics->appendRow();
    }
}

void addAssignment(dao::Appender& assignments, int topic, const QString& study, const QString& variable) {
    assignments.setNumber(0, topic);
    assignments.setText(1, study);
    assignments.setText(2, variable);
    assignments.appendRow();
}

void fillCaseTable(dao::Companion& file, const schema::Table& table, dao::Database& catalogue, int cases,
                   const std::vector<int>& valuesEach, std::mt19937& random) {
    file.createTable(*schema::definition(catalogue, table));
    const auto rows = file.openAppender(table.name, table.fieldNames());
    for (int c = 1; c <= cases; ++c) {
        rows->setNumber(0, c);
        for (size_t f = 0; f < valuesEach.size(); ++f) {
            const auto draw = static_cast<int>(random() >> 1);
            if (valuesEach[f] == 0) // a weight
                rows->setNumber(static_cast<int>(f) + 1, 0.5 + draw % 1000 / 1000.0);
            else if (draw % 50 != 0)
                rows->setNumber(static_cast<int>(f) + 1, draw / 50 % valuesEach[f] + 1);
        }
        rows->appendRow();
    }
}

} // namespace

QString Archives::makeCases(const QString& folder, int cases) {
    const QString path = folder + u"/cases.mdb"_s;
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    const dao::DatabasePtr catalogue = workspace.CreateDatabase(path);
    const auto file = catalogue->openCompanion(folder + u"/B1.mdb"_s);
    workspace.BeginTrans();
    schema::createCatalogueTables(*catalogue);
    addOptions(*catalogue);
    addStudy(*studyAppender(*catalogue), u"B1"_s, 1, u"W"_s);
    const auto variables = variableAppender(*catalogue);
    const std::pair<QString, QString> names[] = {
        {u"W"_s, u"B1_1"_s}, {u"V5"_s, u"B1_1"_s}, {u"V6"_s, u"B1_1"_s}, {u"V9"_s, u"B1_2"_s}};
    int position = 0;
    for (const auto& [name, table] : names)
        addVariable(*variables, u"B1"_s, name, ++position, table);
    std::mt19937 random(20180331);
    fillCaseTable(*file, schema::cases(u"B1_1"_s, {number(u"W"_s), number(u"V5"_s), number(u"V6"_s)}), *catalogue,
                  cases, {0, 8, 40}, random);
    fillCaseTable(*file, schema::cases(u"B1_2"_s, {number(u"V9"_s)}), *catalogue, cases, {10}, random);
    workspace.CommitTrans();
    file->close();
    catalogue->Close();
    return path;
}

QString Archives::makeInstructions(const QString& folder, int variables, int cases) {
    const QString path = folder + u"/instructions.mdb"_s, study = u"B1"_s, table = u"B1_1"_s;
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    const dao::DatabasePtr catalogue = workspace.CreateDatabase(path);
    const auto file = catalogue->openCompanion(folder + u"/B1.mdb"_s);
    workspace.BeginTrans();
    schema::createCatalogueTables(*catalogue);
    addOptions(*catalogue);
    addStudy(*studyAppender(*catalogue), study, 1, u"W"_s);
    std::vector<FieldDefinition> fields{number(u"W"_s)};
    std::vector<int> valuesEach{0};
    {
        const auto rows = variableAppender(*catalogue);
        for (int v = 1; v <= variables; ++v) {
            const QString name = u"V%1"_s.arg(v);
            addVariable(*rows, study, name, v, table);
            fields.push_back(number(name));
            valuesEach.push_back(8);
        }
    }
    catalogue->Execute(u"UPDATE tkey_Variable SET dt_Instruction = 'Freq;;noFilter;;WeightRE;W;A;'"_s);
    // The weight stands last and has no instruction, but the batch would not count it among those that are done.
    addVariable(*variableAppender(*catalogue), study, u"W"_s, variables + 1, table);
    std::mt19937 random(20180331);
    fillCaseTable(*file, schema::cases(table, fields), *catalogue, cases, valuesEach, random);
    workspace.CommitTrans();
    file->close();
    catalogue->Close();
    return path;
}

QString Archives::makeWaves(const QString& folder, int studies, int cases) {
    const QString path = folder + u"/waves.mdb"_s;
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    const dao::DatabasePtr catalogue = workspace.CreateDatabase(path);
    workspace.BeginTrans();
    schema::createCatalogueTables(*catalogue);
    addOptions(*catalogue);
    workspace.CommitTrans();
    std::mt19937 random(20180331);
    for (int i = 1; i <= studies; ++i) {
        const QString study = u"S%1"_s.arg(i, 2, 10, QLatin1Char('0'));
        const auto file = catalogue->openCompanion(folder + u'/' + study + u".mdb"_s);
        workspace.BeginTrans();
        addStudy(*studyAppender(*catalogue), study, i, u"W"_s);
        {
            const auto variables = variableAppender(*catalogue);
            addVariable(*variables, study, u"W"_s, 1, study + u"_1"_s);
            addVariable(*variables, study, u"V5"_s, 2, study + u"_1"_s);
        }
        fillCaseTable(*file, schema::cases(study + u"_1"_s, {number(u"W"_s), number(u"V5"_s)}), *catalogue, cases,
                      {0, 8}, random);
        workspace.CommitTrans();
        file->close();
    }
    catalogue->Close();
    return path;
}

QString Archives::makeCatalogue(const QString& folder, int studies, int variablesEach) {
    const QString path = folder + u"/large.mdb"_s;
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    const dao::DatabasePtr catalogue = workspace.CreateDatabase(path);
    workspace.BeginTrans();
    schema::createCatalogueTables(*catalogue, {u"Study"_s}, {u"Topic"_s});
    addOptions(*catalogue, true);
    addTopics(*catalogue);
    const auto studyRows = studyAppender(*catalogue);
    const auto variableRows = variableAppender(*catalogue);
    const auto assignmentRows =
        catalogue->openAppender(u"trel_VariableTopic"_s, {u"fid"_s, u"fi_StudyNo"_s, u"fi_VariableNo"_s});
    for (int s = 1; s <= studies; ++s) {
        const QString study = u"S%1"_s.arg(s, 4, 10, QLatin1Char('0'));
        addStudy(*studyRows, study, s, {});
        for (int v = 1; v <= variablesEach; ++v) {
            const QString name = u"V%1"_s.arg(v);
            const bool inTopic = v % 10 == 0;
            addVariable(*variableRows, study, name, v, study + u"_1"_s, inTopic);
            if (inTopic)
                addAssignment(*assignmentRows, 1, study, name);
        }
    }
    addAssignment(*assignmentRows, 2, u"S0001"_s, u"V1"_s);
    workspace.CommitTrans();
    catalogue->Close();
    return path;
}

QString Archives::makeSurveyFile(const QString& folder, int cases, int variables, bool compressed) {
    const QString path = folder + u"/survey%1.sav"_s.arg(cases);
    std::FILE* file = std::fopen(path.toUtf8().constData(), "wb");
    readstat_writer_t* writer = readstat_writer_init();
    readstat_writer_set_compression(writer, compressed ? READSTAT_COMPRESS_ROWS : READSTAT_COMPRESS_NONE);
    readstat_set_data_writer(writer, [](const void* data, size_t length, void* to) {
        return static_cast<ssize_t>(std::fwrite(data, 1, length, static_cast<std::FILE*>(to)));
    });
    std::vector<readstat_variable_t*> columns;
    for (int v = 0; v < variables; ++v) {
        const bool text = v == variables - 1;
        readstat_variable_t* column =
            readstat_add_variable(writer, ("V" + std::to_string(v + 1)).c_str(),
                                  text ? READSTAT_TYPE_STRING : READSTAT_TYPE_DOUBLE, text ? 12 : 0);
        readstat_variable_set_label(column, "Satisfaction with an area of life");
        if (!text)
            readstat_variable_add_missing_double_value(column, 9);
        columns.push_back(column);
    }
    readstat_begin_writing_sav(writer, file, cases);
    std::mt19937 random(7);
    for (int c = 0; c < cases; ++c) {
        readstat_begin_row(writer);
        for (int v = 0; v < variables; ++v) {
            const auto draw = static_cast<int>(random() >> 1);
            if (v == variables - 1)
                readstat_insert_string_value(writer, columns[static_cast<size_t>(v)], draw % 2 ? "Nord" : "Süd");
            else
                readstat_insert_double_value(writer, columns[static_cast<size_t>(v)],
                                             v % 4 ? draw % 10 : draw % 10000 / 7.0);
        }
        readstat_end_row(writer);
    }
    readstat_end_writing(writer);
    readstat_writer_free(writer);
    std::fclose(file);
    return path;
}
