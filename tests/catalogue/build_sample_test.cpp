// The sample archive: it builds, and everything that it is there to show is in it.

#include "catalogue/ArchiveBuilder.h"
#include "platform/dao/DBEngine.h"
#include "support/PrintQt.h"
#include "support/TestHome.h"

#include <QDir>
#include <QFileInfo>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString sampleFolder() {
    return QDir::cleanPath(QStringLiteral(VARIDEX_BINARIES) + u"/../samples"_s);
}

/// The sample archive, built once for all tests here.
class SampleArchive : public testing::Test {
protected:
    static void SetUpTestSuite() {
        home_ = new TestHome;
        report_ = new BuildReport(
            buildArchive({home_->path(u"solvarden.mdb"_s), sampleFolder() + u"/archive.json"_s, false, {}}));
        catalogue_ = new dao::DatabasePtr(dao::DBEngine::instance().OpenDatabase(home_->path(u"solvarden.mdb"_s)));
    }
    static void TearDownTestSuite() {
        if (catalogue_)
            (*catalogue_)->Close();
        delete catalogue_;
        delete report_;
        delete home_;
    }

    static dao::RecordsetPtr rows(const QString& statement) {
        return (*catalogue_)->OpenRecordset(statement, dao::dbOpenSnapshot);
    }
    /// First column of every row, separated by blanks.
    static QString column(const QString& statement) {
        QStringList values;
        for (const dao::RecordsetPtr all = rows(statement); !all->Eof(); all->MoveNext())
            values << all->value(0).toText();
        return values.join(u' ');
    }
    static QString missing(const QString& study, const QString& variable) {
        return column(u"SELECT dt_Missing FROM tkey_Variable WHERE fi_StudyNo = '%1' AND id_VarName = '%2'"_s.arg(
            study, variable));
    }
    /// A case table of the sample, reached as an analysis reaches it.
    static void link(const QString& table, const QString& file) {
        const dao::TableDefPtr link = (*catalogue_)->CreateTableDef(table);
        link->setSourceTableName(table);
        link->setConnect(u";DATABASE="_s + home_->path(file));
        (*catalogue_)->TableDefs().Append(link);
    }

    static inline TestHome* home_ = nullptr;
    static inline BuildReport* report_ = nullptr;
    static inline dao::DatabasePtr* catalogue_ = nullptr;
};

} // namespace

TEST_F(SampleArchive, HasItsStudiesGroupsAndViews) {
    EXPECT_EQ(report_->studies, 4);
    EXPECT_EQ(report_->cases, 3 * 1200 + 150);
    EXPECT_EQ(column(u"SELECT id_StudyNo FROM tkey_Study ORDER BY [fid], [order] ASC;"_s),
              u"G001 SV2014 G002 SV2018 SV2022"_s);
    EXPECT_EQ(column(u"SELECT fid FROM tkey_Study ORDER BY [fid], [order] ASC;"_s), u"0 G001 G001 G002 G002"_s);
    EXPECT_EQ(column(u"SELECT id_StudyNo FROM tkey_Study WHERE dt_IsGroup = 0 ORDER BY id_StudyNo;"_s),
              u"SV2014 SV2018 SV2022"_s);
    EXPECT_EQ(column(u"SELECT id_StudyNo FROM tkey_Pilot"_s), u"SVP2013"_s);
    EXPECT_EQ(column(u"SELECT dt_Year FROM tkey_Study WHERE dt_IsGroup = 0 ORDER BY id_StudyNo"_s),
              u"2014 2018 2022"_s);
    // One wave without weights, two with both.
    EXPECT_EQ(
        column(
            u"SELECT id_StudyNo FROM tkey_Study WHERE dt_WeightRE = 'GEWREP' AND dt_WeightHH = 'GEWHH' ORDER BY id_StudyNo"_s),
        u"SV2018 SV2022"_s);
    EXPECT_EQ(
        column(
            u"SELECT id_StudyNo FROM tkey_Study WHERE dt_IsGroup = 0 AND dt_WeightRE Is Null AND dt_WeightHH Is Null"_s),
        u"SV2014"_s);
    EXPECT_EQ(column(u"SELECT dt_OptionValue FROM tsys_Options WHERE dt_OptionName = 'NumberOfFrmExplorers'"_s),
              u"5"_s);
    EXPECT_EQ(
        column(u"SELECT dt_OptionName FROM tsys_Options WHERE dt_OptionValue = '1' AND dt_OptionName LIKE '*Type'"_s),
        u"frmExplorer1Type frmExplorer5Type"_s);
    EXPECT_EQ(
        column(
            u"SELECT dt_OptionName FROM tsys_Options WHERE dt_OptionName LIKE 'frmExplorer4*' AND dt_OptionValue = '1'"_s),
        u"frmExplorer4CompAnalysis"_s);
    EXPECT_EQ(column(u"SELECT dt_EnDatabaseTitle FROM tkey_Database"_s), u"Living in Solvarden"_s);
}

TEST_F(SampleArchive, HasMissingDefinitionsOfEveryShape) {
    EXPECT_EQ(missing(u"SV2014"_s, u"FAMST"_s), u"9"_s);
    EXPECT_EQ(missing(u"SV2014"_s, u"NOTEVERW"_s), u"9,9"_s);
    EXPECT_EQ(missing(u"SV2014"_s, u"LZUFR"_s), u"98;99"_s);
    EXPECT_EQ(missing(u"SV2014"_s, u"WAHLABS"_s), u"97;98;99"_s);
    EXPECT_EQ(missing(u"SV2014"_s, u"VPARL"_s), u"97 thru 99"_s);
    EXPECT_EQ(missing(u"SV2014"_s, u"STUNDEN"_s), u"lowest thru -1"_s);
    EXPECT_EQ(missing(u"SV2014"_s, u"UMWGELD"_s), u"9998 thru highest"_s);
    EXPECT_EQ(missing(u"SV2014"_s, u"EINK"_s), u"99998 thru 99999;-1"_s);
    EXPECT_EQ(
        column(
            u"SELECT dt_Label FROM tkey_Value WHERE fi_StudyNo = 'SV2014' AND fi_VarName = 'NOTEVERW' AND dt_Value = '2.5'"_s),
        u"gut bis befriedigend"_s);
}

// Counted by another statistics program from the survey files.
TEST_F(SampleArchive, HoldsTheAnswersOfTheSurveyFiles) {
    link(u"SV2014_1"_s, u"SV2014.mdb"_s);
    link(u"SV2022_1"_s, u"SV2022.mdb"_s);
    link(u"SV2022_2"_s, u"SV2022-2.mdb"_s);
    EXPECT_EQ(column(u"SELECT Count(dt_CaseID) AS N FROM SV2014_1 GROUP BY LZUFR ORDER BY LZUFR;"_s),
              u"1 2 25 92 213 312 291 165 90 7 2"_s);
    EXPECT_EQ(column(u"SELECT Count(dt_CaseID) AS N FROM SV2022_2 GROUP BY KLIMA ORDER BY KLIMA;"_s),
              u"57 336 534 253 12 8"_s);
    // System-missing comes first: people who don't work.
    EXPECT_EQ(column(u"SELECT Count(dt_CaseID) AS N FROM SV2022_2 GROUP BY HOMEOFF ORDER BY HOMEOFF;"_s),
              u"516 268 193 133 78 4 8"_s);
    const dao::RecordsetPtr weighted = rows(u"SELECT SV2022_2.KLIMA, Sum(SV2022_1.GEWREP) AS N FROM SV2022_1 "
                                            u"INNER JOIN SV2022_2 ON SV2022_1.dt_CaseID = SV2022_2.dt_CaseID "
                                            "GROUP BY SV2022_2.KLIMA ORDER BY SV2022_2.KLIMA;"_s);
    for (const double sum : {52.7188, 324.4443, 543.5779, 261.0752, 10.6871, 7.5113}) {
        EXPECT_NEAR(weighted->value(1).toDouble(), sum, 0.00005);
        weighted->MoveNext();
    }
}

TEST_F(SampleArchive, KeepsTheSecondTableOfAWaveInItsOwnFile) {
    QStringList files = QDir(home_->path()).entryList({u"*.mdb"_s}, QDir::Files);
    files.sort();
    EXPECT_EQ(files.join(u' '), u"SV2014.mdb SV2018.mdb SV2022-2.mdb SV2022.mdb SVP2013.mdb solvarden.mdb"_s);
    EXPECT_EQ(column(u"SELECT id_VarName FROM tkey_Variable WHERE dt_TableName = 'SV2018_2'"_s), QString());
}

TEST_F(SampleArchive, SuppliesTheSelectionOfItsParts) {
    EXPECT_EQ(
        column(
            u"select dt_PartNo from [tkey_Parts] where [fi_StudyNo] = 'SV2018' AND [dt_SeparateAnalysisOnly] = -1 ORDER BY  dt_SelectionVariable,Val([dt_SelectionCriteria]);"_s),
        u"A B"_s);
    link(u"SV2018_1"_s, u"SV2018.mdb"_s);
    (*catalogue_)->CreateQueryDef(u"q"_s, column(u"SELECT dt_query FROM tkey_Study WHERE id_StudyNo = 'SV2018'"_s));
    EXPECT_EQ(
        column(
            u"SELECT Count(q.ID) AS N FROM (q INNER JOIN SV2018_1 ON q.ID = SV2018_1.dt_CaseID) WHERE q.SE=1 AND SV2018_1.UMLAGE1 < 8"_s),
        u"571"_s);
    (*catalogue_)->QueryDefs().Delete(u"q"_s);
}

TEST_F(SampleArchive, AssignsVariablesByPattern) {
    const auto assigned = [](const QString& view, const QString& category) {
        const QString id = column(u"SELECT id FROM tkey_%1 WHERE dt_IndicatorName = '%2'"_s.arg(view, category));
        QStringList all;
        for (const dao::RecordsetPtr found =
                 rows(u"SELECT * FROM trel_Variable%1 WHERE fid = %2 ORDER BY id"_s.arg(view, id));
             !found->Eof(); found->MoveNext())
            all << found->text(u"fi_StudyNo"_s) + u':' + found->text(u"fi_VariableNo"_s);
        return all.join(u' ');
    };
    EXPECT_EQ(assigned(u"Trend"_s, u"Lebenszufriedenheit"_s), u"SV2014:LZUFR SV2018:LZUFR SV2022:LZUFR"_s);
    EXPECT_EQ(assigned(u"Topic"_s, u"Lebenszufriedenheit"_s),
              u"SV2014:LZUFR SV2018:LZUFR SV2022:LZUFR SVP2013:LZUFR SV2014:GESUND SV2018:GESUND SV2022:GESUND"_s);
    EXPECT_EQ(
        assigned(u"Topic"_s, u"Umwelt"_s),
        u"SV2014:KLIMA SV2018:KLIMA SV2022:KLIMA SV2014:UMWGELD SV2018:UMWGELD SV2022:UMWGELD SV2018:UMLAGE1 SV2018:UMLAGE2"_s);
    EXPECT_EQ(assigned(u"Method"_s, u"Gewichte"_s), u"SV2018:GEWREP SV2018:GEWHH SV2022:GEWREP SV2022:GEWHH"_s);
    // Bildung lies in Person, which lies in Person und Haushalt.
    EXPECT_EQ(
        column(
            u"SELECT T1.dt_IndicatorName FROM (tkey_Topic AS T1 INNER JOIN tkey_Topic AS T2 ON T2.fid = T1.id) INNER JOIN tkey_Topic AS T3 ON T3.fid = T2.id WHERE T3.dt_IndicatorName = 'Bildung'"_s),
        u"Person und Haushalt"_s);
}

TEST_F(SampleArchive, HasTextsOfTheVariableAndOfTheStudy) {
    const dao::RecordsetPtr row = rows(
        u"SELECT * FROM tkey_Variable LEFT JOIN tkey_VarGroups ON tkey_Variable.dt_VarGroup = tkey_VarGroups.id_VarGroup WHERE fi_StudyNo = 'SV2022' AND id_VarName = 'GESCHL'"_s);
    EXPECT_EQ(row->text(u"dt_VarLabel"_s), u"Geschlecht"_s);
    EXPECT_EQ(row->text(u"dt_EnVarLabel"_s), u"Sex"_s);
    EXPECT_EQ(row->text(u"dt_EnQuestionText"_s), u"How do you describe yourself: as male, female or diverse?"_s);
    EXPECT_EQ(row->text(u"dt_VarGroupNameEn"_s), u"Person"_s);
    EXPECT_EQ(
        column(u"SELECT dt_EnQuestionText FROM tkey_Variable WHERE fi_StudyNo = 'SV2018' AND id_VarName = 'GESCHL'"_s),
        u"What is your sex?"_s);
    // A variable that no question stands behind has Null, not an empty text.
    EXPECT_EQ(
        column(
            u"SELECT id_VarName FROM tkey_Variable WHERE fi_StudyNo = 'SV2018' AND dt_QuestionText Is Null ORDER BY dt_Position"_s),
        u"FALLNR INTDAT FBTEIL REGION GEMEINDE ORTGR GEWREP GEWHH"_s);
    EXPECT_EQ(
        column(
            u"SELECT dt_FileNameEnShowCard FROM tkey_Variable WHERE fi_StudyNo = 'SV2014' AND id_VarName = 'LZUFR'"_s),
        u"karten\\satisfaction.png"_s);
    EXPECT_TRUE(QFileInfo::exists(home_->path(u"karten/satisfaction.png"_s)));
}

// One show card is missing on purpose; anything else that the report complains of is a fault in the sample.
TEST_F(SampleArchive, WarnsOfTheLostShowCardAndNothingElse) {
    ASSERT_EQ(report_->warnings.size(), 1) << report_->warnings.join(u'\n').toStdString();
    EXPECT_TRUE(
        report_->warnings[0].endsWith(u"(variables.WOHNZ.showCard): das Bild 'karten/wohnen.png' ist nicht da"_s));
    for (const QString& fact : report_->facts)
        EXPECT_FALSE(fact.contains(u"geändert"_s) || fact.contains(u"8 Zeichen"_s)) << fact.toStdString();
}

TEST_F(SampleArchive, HasInstructionsForSomeVariablesOfTheLastWave) {
    EXPECT_EQ(column(u"SELECT fi_StudyNo FROM tkey_Variable WHERE dt_Instruction Is Not Null GROUP BY fi_StudyNo"_s),
              u"SV2022"_s);
    EXPECT_EQ(
        column(u"SELECT dt_Instruction FROM tkey_Variable WHERE fi_StudyNo = 'SV2022' AND id_VarName = 'ALTERJ'"_s),
        u"Desc126;GESCHL;noFilter;;WeightRE;GEWREP;A;FlipXtab=False;"_s);
}
