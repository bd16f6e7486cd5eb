#include "ImportFixture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// What an independent reader found in the file, and some facts that its makers tell.
struct RealFile {
    const char16_t* path;
    int cases, variables;
    const char16_t* weight = u"";
    std::vector<std::pair<QString, QString>> missing; ///< variable, definition
    std::vector<std::pair<QString, QString>> labels;  ///< "variable|code", label
    std::vector<std::pair<QString, QString>> variableLabels;
};

const std::vector<RealFile>& realFiles() {
    static const std::vector<std::pair<QString, QString>> gssMissing = {{u"marital"_s, u"3"_s},
                                                                        {u"childs"_s, u"lowest thru 0"_s},
                                                                        {u"age"_s, u"85 thru highest;18"_s},
                                                                        {u"polviews"_s, u"4;7"_s},
                                                                        {u"attend"_s, u"0;7;8"_s},
                                                                        {u"sei"_s, u"90 thru highest"_s},
                                                                        {u"pasei"_s, u"lowest thru 20;40"_s},
                                                                        {u"educate"_s, u"0 thru 8"_s}};
    static const std::vector<RealFile> files = {
        {u"bes_w25_extract.sav", 5000, 65, u"", {}, {}, {}},
        {u"exam_de.sav", 20, 4, u"", {}, {}, {}},
        {u"gss1996_subset.sav", 2903, 20, u"", {}, {{u"marital|1"_s, u"married"_s}}, {}},
        {u"gss1996_weighted_missing.sav",
         2903,
         21,
         u"wtx",
         gssMissing,
         {{u"childs|8"_s, u"eight or more"_s}},
         {{u"wtx"_s, u"Gewicht (künstlich, nicht ganzzahlig; auch 0, negativ, sysmis)"_s}}},
        {u"gss1996_weighted_missing.zsav", 2903, 21, u"wtx", gssMissing, {}, {}},
        // Its writer put the highest number in place of 85 and 90.
        {u"gss1996_weighted_missing.por",
         2903,
         21,
         u"WTX",
         {{u"MARITAL"_s, u"3"_s}, {u"AGE"_s, u""_s}, {u"SEI"_s, u""_s}, {u"PASEI"_s, u"lowest thru 20;40"_s}},
         {{u"CHILDS|8"_s, u"eight or more"_s}},
         {}},
        {u"gss_studentware.sav", 1473, 22, u"", {}, {}, {}},
        {u"hoffman_gss.dta", 2903, 20, u"", {}, {{u"marital|1"_s, u"married"_s}}, {}},
        {u"hoffman_religion.sav", 626, 10, u"", {}, {}, {}},
        {u"hoffman_workdata.dta", 27279, 14, u"", {}, {}, {}},
        {u"nlsy_delinq.sav", 612, 12, u"", {}, {}, {}},
        {u"nlsy_workdata.sav", 27279, 14, u"", {}, {}, {}},
        {u"panem_pss_de.sav",
         5000,
         14,
         u"",
         {{u"edu"_s, u""_s}},
         {{u"edu|1"_s, u"ES-ISCED I"_s}, {u"trstprl|0"_s, u"vertraue überhaupt nicht"_s}},
         {{u"edu"_s, u"Höchster Bildungsabschluss"_s}}},
        {u"edge_haven/datetime-d.dta", 1, 1, u"", {}, {}, {}},
        {u"edge_haven/datetime.sav", 2, 3, u"", {}, {}, {}},
        {u"edge_haven/iris.dta", 150, 5, u"", {}, {}, {}},
        {u"edge_haven/iris.sav", 150, 5, u"", {}, {{u"Species|2"_s, u"versicolor"_s}}, {}},
        {u"edge_haven/labelled-num-na.sav", 2, 1, u"", {{u"VAR00002"_s, u"9"_s}}, {}, {}},
        {u"edge_haven/labelled-num.sav", 1, 1, u"", {}, {}, {}},
        {u"edge_haven/labelled-str.sav", 2, 1, u"", {}, {{u"gender|F"_s, u"Female"_s}}, {}},
        {u"edge_haven/notes.dta", 5, 4, u"", {}, {}, {}},
        {u"edge_haven/tagged-na-double.dta", 8, 1, u"", {{u"x"_s, u"-26 thru -1"_s}}, {{u"x|-26"_s, u".zebra"_s}}, {}},
        {u"edge_haven/tagged-na-int.dta", 8, 1, u"", {{u"x"_s, u"-26 thru -1"_s}}, {{u"x|-1"_s, u"apple"_s}}, {}},
        {u"edge_haven/types.dta", 2, 8, u"", {}, {}, {}},
        {u"edge_haven/umlauts.sav", 4, 1, u"", {}, {{u"var1|2"_s, u"the ü umlaut"_s}}, {}},
        {u"edge_haven/variable-label.sav", 1, 1, u"", {}, {}, {{u"sex"_s, u"Gender"_s}}},
        {u"edge_pyreadstat/hebrews.sav", 99, 1, u"", {}, {}, {}},
        {u"edge_pyreadstat/missing_char.sav", 2, 1, u"", {{u"mychar"_s, u""_s}}, {}, {}},
        {u"edge_pyreadstat/missing_test.dta",
         1,
         9,
         u"",
         {{u"var2"_s, u"-26 thru -1"_s}, {u"var8"_s, u""_s}},
         {{u"var1|-1"_s, u"missing"_s}},
         {}},
        {u"edge_pyreadstat/missing_test.sav", 2, 1, u"", {{u"var1"_s, u"1"_s}}, {}, {}},
        {u"edge_pyreadstat/ordered_category.sav", 4, 1, u"", {}, {}, {}},
        {u"edge_pyreadstat/sample.dta", 5, 7, u"", {}, {{u"myord|3"_s, u"high"_s}}, {}},
        {u"edge_pyreadstat/sample.por", 5, 7, u"", {}, {{u"MYORD|3"_s, u"high"_s}}, {}},
        {u"edge_pyreadstat/sample.sav", 5, 7, u"", {}, {{u"myord|3"_s, u"high"_s}}, {}},
        {u"edge_pyreadstat/sample.zsav", 5, 7, u"", {}, {{u"myord|3"_s, u"high"_s}}, {}},
        {u"edge_pyreadstat/sample_large.sav", 485, 7, u"", {}, {}, {}},
        {u"edge_pyreadstat/sample_missing.sav",
         7,
         7,
         u"",
         {{u"mynum"_s, u"2000 thru 3000;-1"_s}, {u"myord"_s, u"-1;-2;-3"_s}},
         {},
         {}},
        {u"edge_pyreadstat/simple_alltypes.sav",
         6,
         12,
         u"",
         {{u"x"_s, u"7;8;99"_s}, {u"z"_s, u"-999 thru 0;999"_s}},
         {{u"ca_subvar_2|c"_s, u"c"_s}},
         {}},
        {u"edge_pyreadstat/tegulu.sav", 1, 2, u"", {}, {}, {}},
        {u"edge_pyreadstat/test_width.sav", 5, 4, u"", {}, {}, {}}};
    return files;
}

} // namespace

class ImportRealFiles : public ImportFixture {
protected:
    QDir real{QDir::cleanPath(QStringLiteral(VARIDEX_SOURCE_ROOT) + u"/../shared/data/sav"_s)};

    void SetUp() override {
        if (!real.exists())
            GTEST_SKIP() << "no real survey files beside the source";
    }

    QString one(const QString& statement) {
        const QStringList found = rows(catalogue, statement);
        return found.size() == 1 ? found.front() : u"%1 rows"_s.arg(found.size());
    }
};

TEST_F(ImportRealFiles, EveryFileComesInWithItsCasesWeightLabelsAndMissingCodes) {
    QStringList listed;
    int number = 0;
    for (const RealFile& file : realFiles()) {
        const QString path = QString::fromUtf16(file.path);
        listed << path;
        const QString study = u"QX%1"_s.arg(++number);
        const QString failure = outcome(request(real.filePath(path), study));
        if (file.cases < 0) {
            EXPECT_TRUE(failure.contains(path)) << failure.toStdString();
            continue;
        }
        ASSERT_EQ(failure, QString()) << path.toStdString();
        EXPECT_EQ(report.cases, file.cases) << path.toStdString();
        EXPECT_EQ(report.variables, file.variables) << path.toStdString();
        EXPECT_EQ(one(u"SELECT dt_WeightRE FROM tkey_Study WHERE id_StudyNo = '%1'"_s.arg(study)),
                  file.weight[0] ? QString::fromUtf16(file.weight) : u"NULL"_s);
        const QString variable = u"SELECT %3 FROM tkey_Variable WHERE fi_StudyNo = '%1' AND id_VarName = '%2'"_s;
        for (const auto& [name, definition] : file.missing)
            EXPECT_EQ(one(variable.arg(study, name, u"dt_Missing"_s)), definition.isEmpty() ? u"NULL"_s : definition)
                << path.toStdString() << ' ' << name.toStdString();
        for (const auto& [name, label] : file.variableLabels)
            EXPECT_EQ(one(variable.arg(study, name, u"dt_VarLabel"_s)), label) << path.toStdString();
        for (const auto& [code, label] : file.labels)
            EXPECT_EQ(
                one(u"SELECT dt_Label FROM tkey_Value WHERE fi_StudyNo = '%1' AND fi_VarName = '%2' AND dt_Value = '%3'"_s
                        .arg(study, code.section(u'|', 0, 0), code.section(u'|', 1))),
                label)
                << path.toStdString();
    }
    for (const QString& folder : {u""_s, u"edge_haven/"_s, u"edge_pyreadstat/"_s})
        for (const QString& name : QDir(real.filePath(folder)).entryList(QDir::Files))
            EXPECT_TRUE(listed.contains(folder + name)) << name.toStdString();
}

// The four files hold the same table, each counting time in its own way.
TEST_F(ImportRealFiles, TheSameTableComesOutOfEveryKindOfFile) {
    for (const QString& kind : {u"sav"_s, u"zsav"_s, u"por"_s}) {
        ASSERT_EQ(outcome(request(real.filePath(u"edge_pyreadstat/sample."_s + kind), kind)), QString());
        EXPECT_EQ(
            rows(home.path(kind + u".mdb"_s),
                 u"SELECT mychar, mynum, mydate, dtime, mylabl, myord, mytime FROM %1_1"_s.arg(kind)),
            (QStringList{u"a|1,1|2018-05-06|2018-05-06T10:10:10|1|1|10:10:10"_s,
                         u"b|1,2|1880-05-06|1880-05-06T10:10:10|2|2|23:10:10"_s,
                         u"c|-1000,3|1960-01-01|1960-01-01T00:00:00|1|3|00:00:00"_s,
                         u"d|-1,4|1583-01-01|1583-01-01T00:00:00|2|1|16:10:10"_s, u"e|1000,3|NULL|NULL|1|1|NULL"_s}))
            << kind.toStdString();
    }
    ASSERT_EQ(outcome(request(real.filePath(u"edge_pyreadstat/sample.dta"_s), u"dta"_s)), QString());
    EXPECT_EQ(
        rows(home.path(u"dta.mdb"_s), u"SELECT mychar, mynum, mydate, dtime, mylabl, myord FROM dta_1"_s).value(1),
        u"b|1,2|1880-05-06|1880-05-06T10:10:10|2|2"_s);
}

TEST_F(ImportRealFiles, LongTextsAndResponseSetsAreAccountedFor) {
    ASSERT_EQ(outcome(request(real.filePath(u"edge_pyreadstat/tegulu.sav"_s), u"T1"_s)), QString());
    const QString text = rows(home.path(u"T1.mdb"_s), u"SELECT Q16br9oe_Q24br9oe FROM T1_1"_s).value(0);
    // The file itself breaks off within the character that follows.
    EXPECT_EQ(text, u"నేను గతంలో వాడిన బ"_s);
    ASSERT_EQ(outcome(request(real.filePath(u"edge_pyreadstat/simple_alltypes.sav"_s), u"T2"_s)), QString());
    EXPECT_TRUE(hasFact({u"Mehrfachantworten"_s, u"$"_s})) << report.facts.join(u'\n').toStdString();
    ASSERT_EQ(outcome(request(real.filePath(u"edge_pyreadstat/sample.sav"_s), u"T3"_s)), QString());
    EXPECT_TRUE(rows(catalogue, u"SELECT dt_StudyDescription FROM tkey_Study WHERE id_StudyNo = 'T3'"_s)
                    .value(0)
                    .startsWith(u"some test text as notes"_s));
}
