#include "VdxRunner.h"
#include "support/SurveyFileMaker.h"

using namespace Qt::StringLiterals;

// DE twice, UA, FR without a label, 99 declared missing twice, and a blank: as texts all seven count as valid.
TEST(Encode, MissingCodesOfTextsAreMissingInTheFrequencyTable) {
    const VdxHome home;
    SurveyFileMaker maker;
    readstat_variable_t* country = maker.text("CNTRY", 2, "Country");
    maker.label(country, {{"UA", "Ukraine"}, {"DE", "Germany"}});
    readstat_variable_add_missing_string_value(country, "99");
    maker.write(home.path(u"a.sav"_s), {{"UA"}, {"99"}, {"DE"}, {"FR"}, {"99"}, {"DE"}, {""}});
    const QStringList import{u"import"_s, home.path(u"cat.mdb"_s), home.path(u"a.sav"_s), u"--study"_s,
                             u"A"_s,      u"--replace"_s};
    const auto table = [&] {
        const VdxResult run = runVdx({u"frequency"_s, home.path(u"cat.mdb"_s), u"A"_s, u"CNTRY"_s, u"--format"_s,
                                      u"csv"_s, u"--decimal"_s, u"point"_s, u"--language"_s, u"en"_s});
        EXPECT_EQ(run.status, 0) << run.err.toStdString();
        QStringList lines = run.out.split(u"\r\n"_s);
        return lines.filter(QRegularExpression(u"^\\w*,.*,\\d+,"_s));
    };
    ASSERT_EQ(runVdx(import).status, 0);
    EXPECT_EQ(table().last(), u",Valid cases,,7,,,"_s);
    EXPECT_EQ(table().filter(u",X,"_s), QStringList());
    for (const QString& option : {u"--encode"_s, u"--encode=CNTRY"_s}) {
        ASSERT_EQ(runVdx(QStringList(import) << option).status, 0);
        EXPECT_EQ(table(),
                  (QStringList{u",SYSMIS,X,1,14.3, ,"_s, u"1,99,X,2,28.6, ,"_s, u"2,DE Germany,,2,28.6,50.0,50.0"_s,
                               u"3,FR,,1,14.3,25.0,75.0"_s, u"4,UA Ukraine,,1,14.3,25.0,100.0"_s,
                               u",Sum,,7,100.0,100.0,"_s, u",Valid cases,,4,,,"_s}));
    }
    // Behind a blank it is no name of a variable.
    EXPECT_EQ(runVdx(QStringList(import) << u"--encode"_s << u"CNTRY"_s).status, 2);
}

TEST(ImportProgress, IsToldInLinesOfWholePercentOnlyWhereItIsAskedFor) {
    const VdxHome home;
    SurveyFileMaker maker;
    maker.text("A", 2, "a");
    maker.write(home.path(u"a.sav"_s), {{"x"}, {"y"}});
    const QStringList import{u"import"_s, home.path(u"cat.mdb"_s), home.path(u"a.sav"_s), u"--study"_s,
                             u"A"_s,      u"--replace"_s};
    const VdxResult silent = runVdx(import), told = runVdx(QStringList(import) << u"--progress"_s);
    EXPECT_EQ(silent.err, QString());
    EXPECT_EQ(told.out, silent.out);
    const QStringList lines = told.err.split(u'\n', Qt::SkipEmptyParts);
    EXPECT_FALSE(lines.isEmpty());
    for (const QString& line : lines)
        EXPECT_TRUE(QRegularExpression(u"^progress (\\d\\d?|100)$"_s).match(line).hasMatch()) << line.toStdString();
}
