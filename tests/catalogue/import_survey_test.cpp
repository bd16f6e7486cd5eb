#include "ImportFixture.h"
#include "catalogue/schema.h"

#include <QDir>
#include <QFile>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

using Cell = SurveyFileMaker::Cell;
using Letter = SurveyFileMaker::Letter;
constexpr std::monostate sysmis;

/// Two cases with one variable of each kind.
void writeMixedFile(const QString& path) {
    SurveyFileMaker maker;
    maker.fileLabel("Erste Welle");
    maker.note("Feldzeit: März 2018");
    readstat_variable_t* v1 = maker.number("V1", "Zufriedenheit", "F8.2");
    maker.label(v1, {{1.0, "gut"}, {-1.5, "weiß nicht"}});
    readstat_variable_add_missing_double_range(v1, -HUGE_VAL, -1);
    readstat_variable_add_missing_double_value(v1, 9.5);
    readstat_variable_t* code = maker.text("ORDER", 4, "Kürzel");
    maker.label(code, {{"ab", "erster"}, {"AB", "noch einer"}, {" ", "keiner"}});
    readstat_variable_add_missing_string_value(code, "zz");
    maker.text("LONGTEXTVARIABLE", 300);
    maker.number("INTERVIEW", "Datum", "DATE11");
    maker.weight(maker.number("W"));
    const double day = 159'049.0 * 86'400; // 31 March 2018
    maker.write(path, {{1.0, "ab ", "ein  Text  ", day, 0.75}, {-1.5, "    ", "", sysmis, 1.25}});
}

} // namespace

class ImportSurvey : public ImportFixture {};

TEST_F(ImportSurvey, MakesACatalogueWithOneStudyViewAndItsCases) {
    const QString file = home.path(u"wave.sav"_s);
    writeMixedFile(file);
    ImportRequest wish = request(file, u"QX1"_s);
    wish.settings.year = u"2018"_s;
    wish.settings.titleEnglish = u"First wave"_s;
    ASSERT_EQ(outcome(wish), QString());

    EXPECT_EQ(rows(catalogue, u"SELECT id_StudyNo, fid, [Order], dt_IsGroup, dt_StudyTitle, dt_EnStudyTitle, "
                              "dt_StudyDescription, dt_Year, dt_WeightRE, dt_WeightHH, dt_query FROM tkey_Study"_s),
              QStringList{u"QX1|0|1|0|Erste Welle|First wave|Feldzeit: März 2018|2018|W|NULL|NULL"_s});
    EXPECT_EQ(
        rows(catalogue, u"SELECT id_VarName, dt_Position, dt_VarLabel, dt_TableName, dt_FieldName, "
                        u"dt_Format, dt_Missing FROM "
                        "tkey_Variable WHERE fi_StudyNo = 'QX1' ORDER BY dt_Position"_s),
        (QStringList{u"V1|1|Zufriedenheit|QX1_1|V1|F8.2|lowest thru -1;9,5"_s, u"ORDER|2|Kürzel|QX1_1|V2|A4|NULL"_s,
                     u"LONGTEXTVARIABLE|3|NULL|QX1_1|LONGTEXTVARIABLE|A300|NULL"_s,
                     u"INTERVIEW|4|Datum|QX1_1|INTERVIEW|DATE11|NULL"_s, u"W|5|NULL|QX1_1|W|F8.2|NULL"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT fi_VarName, dt_Value, dt_Label FROM tkey_Value ORDER BY fi_VarName, dt_Value"_s),
              (QStringList{u"ORDER|ab|erster"_s, u"V1|-1.5|weiß nicht"_s, u"V1|1|gut"_s}));
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT * FROM QX1_1 ORDER BY dt_CaseID"_s),
              (QStringList{u"1|1|ab|ein  Text|2018-03-31|0,75"_s, u"2|-1,5|||NULL|1,25"_s}));

    const dao::DatabasePtr cases = dao::DBEngine::instance().OpenDatabase(home.path(u"QX1.mdb"_s));
    std::vector<int> types;
    for (const dao::ColumnInfo& column : cases->TableDefs().Item(u"QX1_1"_s)->columns())
        types.push_back(column.type);
    cases->Close();
    EXPECT_EQ(types,
              (std::vector<int>{dao::dbLong, dao::dbDouble, dao::dbText, dao::dbMemo, dao::dbText, dao::dbDouble}));

    QStringList options = rows(catalogue, u"SELECT dt_OptionName, dt_OptionValue FROM tsys_Options"_s);
    for (const QString& option : {u"NumberOfFrmExplorers|1"_s, u"OpenFrmExplorerAtStart|1"_s,
                                  u"frmExplorer1Table|Study"_s, u"frmExplorer1Type|1"_s})
        EXPECT_TRUE(options.contains(option)) << option.toStdString();

    EXPECT_EQ(report.cases, 2);
    EXPECT_EQ(report.variables, 5);
    EXPECT_EQ(report.labels, 3);
    EXPECT_TRUE(hasFact({u"ORDER → V2"_s}));
    EXPECT_TRUE(hasFact({u"8 Zeichen"_s, u"LONGTEXTVARIABLE"_s, u"INTERVIEW"_s}));
    EXPECT_TRUE(hasFact({u"Text"_s, u"ORDER"_s})) << "text codes declared missing";
    EXPECT_TRUE(hasFact({u"leeren Codes"_s, u"ORDER 'keiner'"_s}));
    EXPECT_TRUE(hasFact({u"ORDER AB 'noch einer'"_s}));
    EXPECT_EQ(folder().keys(), (QStringList{u"QX1.mdb"_s, u"my.mdb"_s, u"wave.sav"_s}));
}

TEST_F(ImportSurvey, GivesStatasLettersNumbersThatNoValueHas) {
    const QString file = home.path(u"wave.dta"_s);
    SurveyFileMaker maker;
    readstat_variable_t* v1 = maker.number("v1");
    maker.label(v1, {{Letter{'a'}, "refused"}, {1.0, "yes"}});
    maker.number("V1");
    maker.number("day", nullptr, "%td");
    maker.write(file, {{Letter{'a'}, Letter{'b'}, 21'274.0}, {1.0, sysmis, sysmis}, {-2.0, 5.0, -1.0}});
    ASSERT_EQ(outcome(request(file, u"QX1"_s)), QString());
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT * FROM QX1_1 ORDER BY dt_CaseID"_s),
              (QStringList{u"1|-1001|-2|2018-03-31"_s, u"2|1|NULL|NULL"_s, u"3|-2|5|1959-12-31"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT id_VarName, dt_FieldName, dt_Missing FROM tkey_Variable ORDER BY dt_Position"_s),
              (QStringList{u"v1|v1|-1026 thru -1001"_s, u"V1_2|V1_2|-26 thru -1"_s, u"day|day|NULL"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT dt_Value, dt_Label FROM tkey_Value ORDER BY dt_Value"_s),
              (QStringList{u"-1001|refused"_s, u"1|yes"_s}));
    EXPECT_TRUE(hasFact({u"V1 → V1_2"_s}));
}

// 4.3 and 100000.7 as the nearest numbers of single precision are 4.300000190734863 and 100000.703125 (IEEE 754);
// 2.5 and 7 have no remainder.
TEST_F(ImportSurvey, NamesVariablesOfSinglePrecisionThatAFilterMeetsByARange) {
    const QString file = home.path(u"wave.dta"_s);
    SurveyFileMaker maker;
    maker.single("length");
    maker.single("income");
    maker.single("half");
    maker.number("exact");
    maker.write(file, {{7.0, 100'000.7, 2.5, 4.3}, {4.3, 7.0, 7.0, 0.1}});
    ASSERT_EQ(outcome(request(file, u"QX1"_s)), QString());
    EXPECT_TRUE(hasFact({u"length>4,29 AND length<4,31"_s, u"(2): length, income"_s}));
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT * FROM QX1_1 WHERE length>4.29 AND length<4.31"_s),
              QStringList{u"2|4,30000019073486|7|7|0,1"_s});
}

// 1234567890123457 and its neighbours look alike with 15 digits, so its label would stand for all of them.
TEST_F(ImportSurvey, LeavesOutLabelsOfCodesThatFifteenDigitsDoNotTell) {
    const QString file = home.path(u"wave.sav"_s);
    SurveyFileMaker maker;
    maker.label(maker.number("BIG"), {{1'234'567'890'123'457.0, "one"}, {123'456'789'012'345.0, "other"}});
    maker.write(file, {{1'234'567'890'123'456.0}});
    ASSERT_EQ(outcome(request(file, u"QX1"_s)), QString());
    EXPECT_EQ(rows(catalogue, u"SELECT dt_Value, dt_Label FROM tkey_Value"_s), QStringList{u"123456789012345|other"_s});
    EXPECT_TRUE(hasFact({u"mehr als 15 Ziffern (1): BIG 1.23456789012346E+15 'one'"_s}));
}

TEST_F(ImportSurvey, KeepsTheMissingCodesOfDatesAsCodes) {
    const QString spss = home.path(u"dates.sav"_s), stata = home.path(u"dates.dta"_s);
    SurveyFileMaker maker;
    readstat_variable_t* day = maker.number("DAY", nullptr, "DATE11");
    maker.label(day, {{99.0, "unbekannt"}});
    readstat_variable_add_missing_double_value(day, 98);
    readstat_variable_add_missing_double_value(day, 99);
    readstat_variable_t* range = maker.number("RANGED", nullptr, "DATE11");
    readstat_variable_add_missing_double_range(range, 90, 99);
    const double spssDay = 159'049.0 * 86'400; // 31 March 2018
    maker.write(spss, {{spssDay, spssDay}, {99.0, 95.0}});
    SurveyFileMaker letters;
    letters.number("day", nullptr, "%td");
    letters.write(stata, {{21'274.0}, {Letter{'c'}}, {Letter{'a'}}, {sysmis}});
    ASSERT_EQ(outcome(request(spss, u"QX1"_s)), QString());
    EXPECT_TRUE(hasFact({u"gültige Codes"_s, u"RANGED"_s}));
    ASSERT_EQ(outcome(request(stata, u"QX2"_s)), QString());
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT DAY, RANGED FROM QX1_1 ORDER BY dt_CaseID"_s),
              (QStringList{u"2018-03-31|2018-03-31"_s, u"99|95"_s}));
    EXPECT_EQ(rows(home.path(u"QX2.mdb"_s), u"SELECT day FROM QX2_1 ORDER BY dt_CaseID"_s),
              (QStringList{u"2018-03-31"_s, u"-3"_s, u"-1"_s, u"NULL"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT id_VarName, dt_Missing FROM tkey_Variable ORDER BY fi_StudyNo, dt_Position"_s),
              (QStringList{u"DAY|98;99"_s, u"RANGED|NULL"_s, u"day|-3;-1"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT dt_Value FROM tkey_Value"_s), QStringList{u"99"_s});
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT DAY FROM QX1_1 WHERE (DAY <> 98 AND DAY <> 99)"_s),
              QStringList{u"2018-03-31"_s})
        << "what an analysis asks for";
}

TEST_F(ImportSurvey, SharesManyVariablesAmongTablesOf254) {
    const QString file = home.path(u"wide.sav"_s);
    SurveyFileMaker maker;
    std::vector<QByteArray> names;
    for (int i = 1; i <= 600; ++i)
        maker.number(names.emplace_back("V" + QByteArray::number(i)).constData());
    maker.write(file, 3, [](int row) {
        SurveyFileMaker::Row cells;
        for (int i = 1; i <= 600; ++i)
            cells.emplace_back(1000.0 * row + i);
        return cells;
    });
    ImportRequest wish = request(file, u"QX1"_s);
    wish.settings.furtherTables = {{{u"v600"_s, u"V1"_s}, true}};
    ASSERT_EQ(outcome(wish), QString());
    EXPECT_EQ(report.tables, 4);
    EXPECT_EQ(rows(home.path(u"QX1-2.mdb"_s), u"SELECT dt_CaseID, V600, V1 FROM QX1_2"_s),
              (QStringList{u"1|600|1"_s, u"2|1600|1001"_s, u"3|2600|2001"_s}));
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s),
                   u"SELECT QX1_1.dt_CaseID, V2, V255, V256, V509, V510, V599 FROM (QX1_1 INNER JOIN QX1_3 ON "
                   "QX1_1.dt_CaseID = QX1_3.dt_CaseID) INNER JOIN QX1_4 ON QX1_1.dt_CaseID = QX1_4.dt_CaseID"_s),
              (QStringList{u"1|2|255|256|509|510|599"_s, u"2|1002|1255|1256|1509|1510|1599"_s,
                           u"3|2002|2255|2256|2509|2510|2599"_s}));
    EXPECT_EQ(
        rows(catalogue,
             u"SELECT dt_TableName, Count(*) AS N FROM tkey_Variable GROUP BY dt_TableName ORDER BY dt_TableName"_s),
        (QStringList{u"QX1_1|254"_s, u"QX1_2|2"_s, u"QX1_3|254"_s, u"QX1_4|90"_s}));
}

TEST_F(ImportSurvey, ReplacesAStudyAndKeepsWhatTheFileDoesNotTell) {
    const auto write = [&](const QString& path, bool second) {
        SurveyFileMaker maker;
        readstat_variable_t* v1 = maker.number("V1", second ? "neu" : "alt");
        maker.label(v1, {{1.0, second ? "JA" : "ja"}, {second ? 3.0 : 2.0, "nein"}});
        maker.number(second ? "V3" : "V2");
        maker.write(path, {{second ? 7.0 : 1.0, 2.0}});
    };
    const QString first = home.path(u"first.sav"_s), second = home.path(u"second.sav"_s);
    write(first, false);
    write(second, true);
    ImportRequest wish = request(first, u"QX1"_s);
    wish.settings.weightHh = u"v2"_s;
    wish.settings.title = u"Titel"_s;
    ASSERT_EQ(outcome(wish), QString());
    const QString kept =
        u"dt_EnVarLabel, dt_VarGroup, dt_FileNameShowCard, dt_Instruction, dt_Table, dt_EnQuestionText"_s;
    execute(catalogue, u"UPDATE tkey_Variable SET dt_EnVarLabel = 'English', dt_VarGroup = 3, dt_FileNameShowCard = "
                       u"'c.png', "
                       "dt_Instruction = 'Freq;', dt_Table = 'T', dt_EnQuestionText = 'Q?' WHERE id_VarName = 'V1'"_s);
    {
        const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(catalogue);
        schema::createCategoryView(*database, u"Category"_s);
        database->Close();
    }
    execute(catalogue, u"INSERT INTO tkey_Category (id, fid, dt_IndicatorName) VALUES (4, 0, 'Politik')"_s);
    execute(catalogue,
            u"INSERT INTO trel_VariableCategory (id, fid, fi_StudyNo, fi_VariableNo) VALUES (1, 4, 'QX1', 'V1')"_s);
    execute(catalogue,
            u"INSERT INTO trel_VariableCategory (id, fid, fi_StudyNo, fi_VariableNo) VALUES (2, 4, 'QX1', 'V2')"_s);

    EXPECT_TRUE(outcome(request(second, u"qx1"_s)).contains(u"QX1"_s));
    ImportRequest again = request(second, u"qx1"_s);
    again.settings.replace = true;
    ASSERT_EQ(outcome(again), QString());
    EXPECT_EQ(
        rows(catalogue, u"SELECT id_VarName, dt_VarLabel, %1 FROM tkey_Variable ORDER BY dt_Position"_s.arg(kept)),
        (QStringList{u"V1|neu|English|3|c.png|Freq;|T|Q?"_s, u"V3|NULL|NULL|NULL|NULL|NULL|NULL|NULL"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT dt_Value, dt_Label FROM tkey_Value ORDER BY dt_Value"_s),
              (QStringList{u"1|JA"_s, u"3|nein"_s}));
    EXPECT_EQ(rows(catalogue, u"SELECT id_StudyNo, [Order], dt_StudyTitle, dt_WeightHH FROM tkey_Study"_s),
              QStringList{u"QX1|1|Titel|NULL"_s});
    EXPECT_EQ(rows(home.path(u"QX1.mdb"_s), u"SELECT * FROM QX1_1"_s), QStringList{u"1|7|2"_s});
    EXPECT_TRUE(hasFact({u"V2"_s, u"'Politik'"_s})) << report.facts.join(u'\n').toStdString();
    EXPECT_FALSE(hasFact({u"V1: "_s, u"'Politik'"_s}));
    EXPECT_TRUE(hasFact({u"Gewicht V2"_s}));
    EXPECT_TRUE(hasFact({u"Daten von vorher zeigen (1): V1"_s})) << report.facts.join(u'\n').toStdString();
}

// "größe" has a field named after its first position; the next file brings "V2" along and puts it elsewhere.
TEST_F(ImportSurvey, AReplacedStudyLetsNothingReadAnotherVariablesColumn) {
    const QString first = home.path(u"first.sav"_s), second = home.path(u"second.sav"_s);
    SurveyFileMaker before, after;
    for (const char* name : {"A", "größe", "gewählt", "B"})
        before.number(name);
    before.write(first, {{1.0, 2.0, 3.0, 4.0}});
    for (const char* name : {"V2", "gewählt"})
        after.number(name);
    readstat_variable_add_missing_double_value(after.number("größe"), 9);
    after.write(second, {{5.0, 3.0, 2.0}});
    ASSERT_EQ(outcome(request(first, u"QX1"_s)), QString());
    {
        const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(catalogue);
        schema::create(*database, schema::comparisonVariables());
        schema::create(*database, schema::assignments(u"Lost"_s)); // its view is gone
        schema::create(*database, schema::assignments(u"Study"_s));
        schema::createStudyView(*database, u"Second"_s);
        database->Close();
    }
    for (const QString& variable : {u"größe"_s, u"A"_s})
        execute(catalogue, u"INSERT INTO tsys_VariableComparison (fi_StudyNo, fi_VariableNo, fid, dt_Table, "
                           u"dt_Field) VALUES ('QX1', '%1', 7, 'QX1_1', 'V2')"_s.arg(variable));
    // Of B's filter only a text of the user's counts: a part's is for the eye.
    for (const auto& [variable, filter, kind] :
         {std::tuple(u"größe"_s, u"(a=1 AND B>2)"_s, u"user"_s), {u"V2"_s, u"B = 1"_s, u"2"_s}})
        execute(catalogue,
                u"INSERT INTO tsys_VariableComparison (fi_StudyNo, fi_VariableNo, fid, dt_Weight, "
                u"dt_Filter, dt_FilterInfo) VALUES ('QX1', '%1', 8, 'B', '%2', '%3')"_s.arg(variable, filter, kind));
    for (const QString& table : {u"trel_VariableLost"_s, u"trel_VariableStudy"_s})
        execute(catalogue, u"INSERT INTO %1 (fid, fi_StudyNo, fi_VariableNo) VALUES (4, 'QX1', 'B')"_s.arg(table));
    // The study stands in the second of two study views.
    for (const auto& [name, value] : {std::pair(u"frmExplorer2Table"_s, u"Second"_s), {u"frmExplorer2Type"_s, u"1"_s}})
        execute(catalogue,
                u"INSERT INTO tsys_Options (dt_OptionName, dt_OptionValue) VALUES ('%1', '%2')"_s.arg(name, value));
    execute(catalogue, u"INSERT INTO tkey_Second (id_StudyNo, fid, dt_IsGroup, dt_query) VALUES ('QX1', '0', 0, "
                       u"'SELECT dt_CaseID AS ID, V2 AS SE, B FROM QX1_1')"_s);
    execute(catalogue, u"DELETE FROM tkey_Study"_s);

    EXPECT_TRUE(outcome(request(second, u"QX1"_s)).contains(u"--replace"_s));
    ImportRequest wish = request(second, u"QX1"_s);
    wish.settings.replace = true;
    ASSERT_EQ(outcome(wish), QString());
    EXPECT_EQ(rows(catalogue, u"SELECT id_VarName, dt_FieldName FROM tkey_Variable ORDER BY dt_Position"_s),
              (QStringList{u"V2|V2"_s, u"gewählt|V3"_s, u"größe|V3_"_s}));
    EXPECT_EQ(
        rows(catalogue,
             u"SELECT fi_VariableNo, dt_Field, dt_Missing FROM tsys_VariableComparison WHERE fid = 7 ORDER BY ID"_s),
        (QStringList{u"größe|V3_|9"_s, u"A|NULL|NULL"_s}));
    EXPECT_TRUE(hasFact({u"dt_query"_s, u"QX1_1.V2"_s, u"größe"_s, u"QX1_1.V3_"_s}));
    EXPECT_TRUE(hasFact({u"dt_query"_s, u"QX1_1.B"_s}));
    EXPECT_TRUE(hasFact({u"B: "_s, u"trel_VariableLost 4"_s}));
    const auto facts = [&](const QString& words) { return report.facts.filter(words).size(); };
    EXPECT_EQ(facts(u"A: Vergleichsauswertung 7"_s), 1);
    EXPECT_EQ(facts(u"B: Gewicht in Vergleichsauswertung 8"_s), 2);
    EXPECT_EQ(facts(u"A: Filter '(a=1 AND B>2)' in Vergleichsauswertung 8"_s), 1);
    EXPECT_EQ(facts(u"B: Filter"_s), 1);
    EXPECT_EQ(rows(catalogue, u"SELECT id_StudyNo FROM tkey_Second"_s), QStringList{u"QX1"_s});
    EXPECT_EQ(rows(catalogue, u"SELECT id_StudyNo FROM tkey_Study"_s), QStringList());
}

TEST_F(ImportSurvey, RefusesWithAReasonAndLeavesEverythingAsItWas) {
    const QString good = home.path(u"good.sav"_s), cut = home.path(u"cut.sav"_s);
    writeMixedFile(good);
    ASSERT_EQ(outcome(request(good, u"QX1"_s)), QString());
    SurveyFileMaker maker;
    maker.number("V1");
    maker.write(cut, 5000, [](int i) { return SurveyFileMaker::Row{i + 0.5}; });
    truncateTo(cut, 30'000);
    QFile noDatabase(home.path(u"text.mdb"_s));
    ASSERT_TRUE(noDatabase.open(QIODevice::WriteOnly));
    noDatabase.write(QByteArray(5000, 'x'));
    noDatabase.close();
    QFile foreign(home.path(u"QX9-1.mdb"_s));
    ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
    foreign.write("somebody's");
    foreign.close();

    struct Case {
        QString words;
        std::function<void(ImportRequest&)> change;
    };
    const QString other = home.path(u"other"_s);
    QDir().mkpath(other);
    const auto before = folder();
    for (const Case& c : std::vector<Case>{
             {u"Q-2"_s, [](auto& r) { r.settings.study = u"Q-2"_s; }},
             {u"--replace"_s, [](auto& r) { r.settings.study = u"qx1"_s; }},
             {u"G7"_s, [](auto& r) { r.settings.group = u"G7"_s; }},
             {u"QX1"_s, [](auto& r) { r.settings.group = u"QX1"_s; }}, // no group
             {u"NONE"_s, [](auto& r) { r.settings.weightRe = u"NONE"_s; }},
             {u"ORDER"_s, [](auto& r) { r.settings.weightHh = u"ORDER"_s; }},
             {u"INTERVIEW"_s, [](auto& r) { r.settings.weightHh = u"INTERVIEW"_s; }},
             {u"nowhere"_s, [](auto& r) { r.settings.dataFolder = u"nowhere"_s; }},
             {u"cut.sav"_s, [&](auto& r) { r.file = cut; }},
             {u"gone.sav"_s, [&](auto& r) { r.file = home.path(u"gone.sav"_s); }},
             {u"QX9-1.mdb"_s, [](auto& r) { r.settings.study = u"QX9"_s; }},
             {u"Katalog selbst"_s, [](auto& r) { r.settings.study = u"MY"_s; }},
             {u"Katalog selbst"_s,
              [&](auto& r) { r.settings.study = u"NEW"_s, r.catalogue = home.path(u"new.mdb"_s); }},
             // Analyses would go on counting the file beside the catalogue.
             {u"QX1.mdb), die Auswertungen"_s,
              [&](auto& r) { r.settings.study = u"QX1"_s, r.settings.replace = true, r.settings.dataFolder = other; }},
             {u"QX9-1.mdb), die Auswertungen"_s,
              [&](auto& r) { r.settings.study = u"QX9"_s, r.settings.dataFolder = other; }},
             {u"3343"_s, [&](auto& r) { r.catalogue = home.path(u"text.mdb"_s); }},
             {u"QX1.mdb"_s, [&](auto& r) { r.catalogue = home.path(u"QX1.mdb"_s); }},
             {u"abgebrochen"_s, [](auto& r) { r.settings.progress = [](double) { return false; }; }},
             // The same with a catalogue that is not there yet.
             {u"cut.sav"_s, [&](auto& r) { r.file = cut, r.catalogue = home.path(u"new.mdb"_s); }},
             {u"NONE"_s, [&](auto& r) { r.settings.weightRe = u"NONE"_s, r.catalogue = home.path(u"new.mdb"_s); }}}) {
        ImportRequest wish = request(good, u"QX2"_s);
        c.change(wish);
        const QString words = outcome(wish);
        EXPECT_TRUE(words.contains(c.words)) << c.words.toStdString() << ": " << words.toStdString();
        EXPECT_TRUE(folder() == before) << words.toStdString() << folder().keys().join(u' ').toStdString();
    }
    EXPECT_EQ(QDir(other).entryList(QDir::Files), QStringList());
    ImportRequest elsewhere = request(good, u"QX2"_s);
    elsewhere.settings.dataFolder = other;
    EXPECT_EQ(outcome(elsewhere), QString());
    EXPECT_TRUE(hasFact({u"--data"_s, other}));
}
