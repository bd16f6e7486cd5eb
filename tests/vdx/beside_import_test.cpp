#include "VdxRunner.h"

#include "support/PrintQt.h"
#include "support/SurveyFileMaker.h"

#include <QProcess>

using namespace Qt::StringLiterals;

namespace {

/// A survey of one question in two editions: codes, labels and missing value all differ.
void writeEdition(const QString& path, bool second) {
    SurveyFileMaker maker;
    readstat_variable_t* answer = maker.number("V1", second ? "Second" : "First");
    if (second)
        maker.label(answer, {{1.0, "second yes"}, {2.0, "second no"}, {8.0, "second missing"}});
    else
        maker.label(answer, {{1.0, "first yes"}, {2.0, "first no"}, {9.0, "first missing"}});
    readstat_variable_add_missing_double_value(answer, second ? 8 : 9);
    maker.write(path, 3000, [second](int i) {
        return SurveyFileMaker::Row{second ? (i % 3 == 0 ? 8.0 : 2.0) : (i % 2 == 0 ? 9.0 : 1.0)};
    });
}

} // namespace

/// While another program replaces the study again and again, every table is of one edition: never its labels and
/// missing values over the other's counts. A table that can't be had of one state is refused in words.
TEST(BesideAnImport, ATableIsOfOneEditionOfItsStudy) {
    const VdxHome home;
    const QString catalogue = home.path(u"c.mdb"_s);
    const QString editions[] = {home.path(u"first.sav"_s), home.path(u"second.sav"_s)};
    const QStringList table{u"frequency"_s,  catalogue, u"QX1"_s,      u"V1"_s,
                            u"--language"_s, u"en"_s,   u"--format"_s, u"csv"_s};
    QStringList whole;
    for (const bool second : {false, true}) {
        writeEdition(editions[second], second);
        ASSERT_EQ(runVdx({u"import"_s, catalogue, editions[second], u"--study"_s, u"QX1"_s, u"--replace"_s}).status, 0);
        const VdxResult alone = runVdx(table);
        ASSERT_EQ(alone.status, 0) << alone.err.toStdString();
        whole << alone.out;
    }
    ASSERT_TRUE(whole[0].contains(u",9,first missing,X,1500"_s) || whole[0].contains(u"9,first missing,X,1500"_s))
        << whole[0].toStdString();
    ASSERT_NE(whole[0], whole[1]);
    QProcess writer;
    writer.start(
        u"/bin/sh"_s,
        {u"-c"_s,
         u"for i in $(seq 30); do for f in \"$1\" \"$2\"; do \"$0\" import \"$3\" \"$f\" --study QX1 --replace; "
         "done; done"_s,
         QStringLiteral(VARIDEX_BINARIES "/vdx"), editions[0], editions[1], catalogue});
    ASSERT_TRUE(writer.waitForStarted());
    int tables = 0, refused = 0;
    while (writer.state() != QProcess::NotRunning || tables == 0) {
        const VdxResult beside = runVdx(table);
        ++(beside.status == 0 ? tables : refused);
        if (beside.status == 0)
            EXPECT_TRUE(whole.contains(beside.out)) << beside.out.toStdString();
        else
            EXPECT_FALSE(beside.err.isEmpty());
        writer.waitForFinished(1);
        ASSERT_LT(tables + refused, 5000);
    }
    EXPECT_EQ(writer.exitCode(), 0) << writer.readAllStandardError().toStdString();
    EXPECT_GT(tables, 3);
    RecordProperty("tables", tables);
    RecordProperty("refused", refused);
}
