#include "VdxRunner.h"

#include "platform/dao/DBEngine.h"
#include "support/PrintQt.h"
#include "tables/StoredTable.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <random>

using namespace Qt::StringLiterals;

namespace {

constexpr int manyVariables = 120;

class RunInstructions : public VdxArchive {
protected:
    void change(const QStringList& statements) {
        const dao::DatabasePtr catalogue = dao::DBEngine::instance().OpenDatabase(catalogue_);
        dao::DBEngine::instance().Workspaces(0).BeginTrans();
        for (const QString& statement : statements)
            catalogue->Execute(statement);
        dao::DBEngine::instance().Workspaces(0).CommitTrans();
        catalogue->Close();
    }
    static QString instruct(const QString& variable, const QString& text) {
        return u"UPDATE tkey_Variable SET dt_Instruction = \"%1\" WHERE fi_StudyNo = 'QX1919' AND id_VarName = '%2'"_s
            .arg(text, variable);
    }
    /// Each variable of the study with two of its fields.
    std::vector<QStringList> kept(const QString& field, const QString& second) {
        const dao::DatabasePtr catalogue = dao::DBEngine::instance().OpenDatabase(catalogue_);
        std::vector<QStringList> rows;
        const dao::RecordsetPtr all = catalogue->OpenRecordset(
            u"SELECT id_VarName, %1, %2 FROM tkey_Variable WHERE fi_StudyNo = 'QX1919' ORDER BY dt_Position"_s.arg(
                field, second));
        for (; !all->Eof(); all->MoveNext())
            rows.push_back({all->text(u"id_VarName"_s), all->text(field), all->text(second)});
        catalogue->Close();
        return rows;
    }
    QStringList arguments(const QStringList& more) const {
        return QStringList{u"run-instructions"_s, catalogue_, u"QX1919"_s, u"--data"_s, data_} + more +
               QStringList{u"--language"_s, u"de"_s, u"--format"_s, u"csv"_s, u"--decimal"_s, u"comma"_s};
    }
};

} // namespace

TEST_F(RunInstructions, TablesAreKeptWithTheirVariablesAndEachIsNamed) {
    change({instruct(u"V5"_s, u"Freq;;noFilter;;noWeight;;A;"_s),
            instruct(u"V6"_s, u"Xtab;V6;noFilter;;noWeight;;A;"_s),
            u"UPDATE tkey_Variable SET dt_Table = '\"x\";Freq;;;1;1;\"x\";;' WHERE id_VarName IN ('V6', 'V7')"_s});
    const VdxResult result = runVdx(arguments({u"--tables"_s, u"--progress"_s}));
    EXPECT_EQ(result.status, 1) << "one has failed";
    EXPECT_EQ(result.out, u"variable;kind;outcome;words\r\nV5;table;stored;\r\nV6;table;failed;Doppelte Variablen\r\n"
                          u"V7;table;deleted;\r\n"_s);
    EXPECT_TRUE(result.err.contains(u"V6: Doppelte Variablen"_s));
    EXPECT_TRUE(result.err.contains(u"progress 0"_s) && result.err.contains(u"progress 100"_s));
    for (const QStringList& row : kept(u"dt_Table"_s, u"dt_TableLayout"_s)) {
        if (row[0] == u"V5"_s)
            EXPECT_EQ(readStoredTable(row[1], row[2])->title, u"QX1919, V5: Zufriedenheit (N=4)"_s);
        else
            EXPECT_EQ(row[1].isEmpty(), row[0] != u"V6"_s) << row[0].toStdString();
    }
    change({instruct(u"V6"_s, QString())});
    EXPECT_EQ(runVdx(arguments({u"--tables"_s})).status, 0) << "what is deleted has not failed";
    const dao::DatabasePtr catalogue = dao::DBEngine::instance().OpenDatabase(catalogue_);
    EXPECT_FALSE(catalogue->QueryDefs().contains(u"q"_s)) << "what a run needs for itself is not kept";
    catalogue->Close();
}

TEST_F(RunInstructions, AGraphOfPercentagesHasTheTitleOfItsView) {
    change({instruct(u"V5"_s, u"Xtab;V7;noFilter;;noWeight;;S;"_s),
            instruct(u"V6"_s, u"Xtab;V7;noFilter;;noWeight;;A;"_s)});
    QProcess process; // with the flag typed in its other form
    process.start(QStringLiteral(VARIDEX_BINARIES) + u"/vdx"_s, arguments({u"--graphs=true"_s}));
    ASSERT_TRUE(process.waitForFinished(60'000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    QStringList titles;
    for (const QStringList& row : kept(u"dt_Graph"_s, u"dt_GraphLayout"_s))
        titles << row[2].section(u'"', 1, 1);
    titles.removeAll(QString());
    ASSERT_EQ(titles.size(), 2);
    EXPECT_EQ(titles[0], u"QX1919, V5: Zufriedenheit nach V7: Geschlecht"_s);
    EXPECT_TRUE(titles[1].contains(u" (N="_s)) << titles[1].toStdString();
}

TEST_F(RunInstructions, WhatCannotBeDoneForAnyIsSaidOnceAndChangesNothing) {
    change({instruct(u"V5"_s, u"Freq;;noFilter;;noWeight;;A;"_s)});
    EXPECT_EQ(runVdx(arguments({})).status, 2);
    EXPECT_TRUE(runVdx(arguments({})).err.contains(u"--tables oder --graphs"_s));
    QStringList other = arguments({u"--tables"_s});
    other[2] = u"QX1"_s;
    EXPECT_EQ(runVdx(other).status, 1);
    EXPECT_TRUE(runVdx(other).err.contains(u"QX1 nicht gefunden"_s));
    QFile::rename(data_ + u"/QX1919.mdb"_s, data_ + u"/away.mdb"_s);
    const VdxResult result = runVdx(arguments({u"--tables"_s, u"--graphs"_s}));
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err.count(u"nicht gefunden"_s), 1) << result.err.toStdString();
    EXPECT_TRUE(runVdx({u"run-instructions"_s, u"--help"_s}).out.contains(u"WRITES TO THE CATALOGUE"_s));
}

TEST_F(RunInstructions, AKillAtAnyMomentLeavesEachPairWhole) {
    QStringList statements;
    for (int i = 0; i < manyVariables; ++i)
        statements << u"INSERT INTO tkey_Variable (fi_StudyNo, id_VarName, dt_Position, dt_TableName, dt_FieldName, "
                      u"dt_Instruction) VALUES ('QX1919', 'W%1', %2, 'QX1919_1', 'V5', "
                      u"'Xtab;V7;noFilter;;WeightRE;V3;A;')"_s.arg(i)
                          .arg(100 + i);
    change(statements);
    const QString program = QStringLiteral(VARIDEX_BINARIES) + u"/vdx"_s;
    const auto start = [&](QProcess& process, const QString& kind) {
        process.start(program, arguments({kind}));
        return process.waitForStarted();
    };
    std::mt19937 random(20'260'301);
    int killed = 0;
    for (const bool graphs : {false, true}) {
        const QString kind = graphs ? u"--graphs"_s : u"--tables"_s;
        QElapsedTimer timer;
        timer.start();
        QProcess whole;
        ASSERT_TRUE(start(whole, kind) && whole.waitForFinished(60'000));
        EXPECT_EQ(whole.exitCode(), 0) << whole.readAllStandardError().toStdString();
        const int length = static_cast<int>(timer.elapsed());
        for (int round = 0; round < 6; ++round) {
            change({u"UPDATE tkey_Variable SET dt_Table = Null, dt_TableLayout = Null, dt_Graph = Null, "
                    u"dt_GraphLayout = Null"_s});
            QProcess process;
            ASSERT_TRUE(start(process, kind));
            if (!process.waitForFinished(std::uniform_int_distribution(length / 4, length)(random))) {
                process.kill();
                process.waitForFinished();
                ++killed;
            }
            for (const QStringList& row :
                 graphs ? kept(u"dt_Graph"_s, u"dt_GraphLayout"_s) : kept(u"dt_Table"_s, u"dt_TableLayout"_s)) {
                ASSERT_EQ(row[1].isEmpty(), row[2].isEmpty()) << row[0].toStdString();
                if (row[1].isEmpty())
                    continue;
                if (graphs)
                    EXPECT_TRUE(row[1].startsWith(u"\u00ff\u00d8"_s) && row[1].endsWith(u"\u00ff\u00d9"_s)) << "a JPEG";
                else
                    EXPECT_TRUE(readStoredTable(row[1], row[2])) << row[0].toStdString();
            }
        }
    }
    EXPECT_GT(killed, 0);
}
