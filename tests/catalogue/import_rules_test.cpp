#include "catalogue/SurveyReader.h"
#include "catalogue/TaggedCodes.h"
#include "catalogue/importNames.h"
#include "catalogue/importTexts.h"
#include "catalogue/surveyDates.h"

#include <cmath>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(ImportRules, StudyNumbersAreLettersAndDigitsThatNoStatementTripsOver) {
    for (const QString& good : {u"QX1"_s, u"a"_s, u"Wave2018"_s, u"G001"_s})
        EXPECT_TRUE(studyNumberFault(good).isEmpty()) << good.toStdString();
    for (const QString& bad : {u""_s, u"1QX"_s, u"QX_1"_s, u"QX 1"_s, u"QX-1"_s, u"ÄQ1"_s, u"QX1'"_s, u"QX1\n"_s,
                               u"AFROM1"_s, u"Rejoin"_s, QString(60, u'A')})
        EXPECT_TRUE(studyNumberFault(bad).contains(bad)) << bad.toStdString();
    EXPECT_FALSE(studyNumberFault(u""_s).isEmpty());
}

TEST(ImportRules, NamesBecomeUniqueVariablesAndPlainFields) {
    struct Case {
        QString original, name, field;
    };
    const std::vector<Case> cases = {
        {u"V1"_s, u"V1"_s, u"V1"_s},
        {u"größe"_s, u"größe"_s, u"V2_"_s}, // V2 is the name of another variable
        {u"V2"_s, u"V2"_s, u"V2"_s},
        {u"abc"_s, u"abc"_s, u"abc"_s},
        {u"ABC"_s, u"ABC_3"_s, u"ABC_3"_s}, // ABC_2 comes later in the file
        {u"abc_2"_s, u"abc_2"_s, u"abc_2"_s},
        {u"order"_s, u"order"_s, u"V7"_s},
        {u"Not"_s, u"Not"_s, u"V8"_s},
        {u"dt_caseid"_s, u"dt_caseid"_s, u"V9"_s},
        {u"somewhere"_s, u"somewhere"_s, u"V10"_s}, // runs look for WHERE in the statement
        {u"a.b"_s, u"a.b"_s, u"V11"_s},
        {u"_x"_s, u"_x"_s, u"V12"_s},
        {u"it's [1]"_s, u"it_s__1_"_s, u"it_s__1_"_s},
        {u"  "_s, u"V14"_s, u"V14"_s},
        {QString(51, u'n'), QString(51, u'n'), u"V15"_s},
        {u"id"_s, u"id"_s, u"id"_s},
    };
    QStringList originals;
    for (const Case& c : cases)
        originals << c.original;
    const std::vector<VariableNames> names = variableNames(originals);
    ASSERT_EQ(names.size(), cases.size());
    for (size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(names[i].name, cases[i].name) << cases[i].original.toStdString();
        EXPECT_EQ(names[i].field, cases[i].field) << cases[i].original.toStdString();
    }
}

TEST(ImportRules, FiltersNameWordsOfPlainLettersWithoutBrackets) {
    for (const QString& good : {u"V7"_s, u"_x"_s, u"age-2"_s})
        EXPECT_TRUE(isFilterWord(good)) << good.toStdString();
    for (const QString& bad : {u"größe"_s, u"7V"_s, u"a.b"_s, u"or"_s, u"Not"_s})
        EXPECT_FALSE(isFilterWord(bad)) << bad.toStdString();
}

TEST(ImportRules, MissingCodesTakeOneOfFiveShapes) {
    const double infinity = INFINITY;
    struct Case {
        std::vector<MissingRange> missing;
        QString definition;
    };
    for (const Case& c : std::vector<Case>{{{{9, 9}}, u"9"_s},
                                           {{{8, 8}, {9, 9}}, u"8;9"_s},
                                           {{{7, 7}, {-1.5, -1.5}, {9, 9}}, u"7;-1,5;9"_s},
                                           {{{90, 99}}, u"90 thru 99"_s},
                                           {{{-infinity, -1}}, u"lowest thru -1"_s},
                                           {{{90, infinity}}, u"90 thru highest"_s},
                                           {{{0, 0}, {90.25, 99}}, u"90,25 thru 99;0"_s},
                                           {{{-infinity, 20}, {40, 40}}, u"lowest thru 20;40"_s},
                                           {{{1e20, 1e20}}, u"1E+20"_s},
                                           {{{6, 6}, {7, 7}, {8, 8}, {9, 9}}, QString()},
                                           {{{1, 2}, {8, 9}}, QString()},
                                           {{{1, 2}, {8, 8}, {9, 9}}, QString()},
                                           {{}, QString()}})
        EXPECT_EQ(missingDefinition(c.missing), c.definition);
    EXPECT_TRUE(definitionIsExact({{-1.5, -1.5}, {90, infinity}}));
    EXPECT_FALSE(definitionIsExact({{1.0 / 3, 1.0 / 3}}));
    EXPECT_EQ(codeText(-1.5), u"-1.5"_s);
    EXPECT_EQ(codeText(9), u"9"_s);
}

// The numbers are 31 March 2018 as the two programs count it: 21,274 days after 1 January 1960, and 159,049
// days after 14 October 1582.
TEST(ImportRules, DatesAndTimesBecomeIsoText) {
    struct Case {
        const char16_t* format;
        bool stata;
        double value;
        const char* iso;
    };
    const double spssDay = 159'049.0 * 86'400, noon = 43'200;
    const double clock = 21'274.0 * 86'400'000 + 43'200'000;
    for (const Case& c : std::initializer_list<Case>{
             {u"DATE11", false, spssDay, "2018-03-31"},
             {u"EDATE10", false, spssDay + noon, "2018-03-31T12:00:00"},
             {u"QYR8", false, spssDay, "2018-03-31"},
             {u"DATETIME20", false, spssDay + noon + 0.25, "2018-03-31T12:00:00.25"},
             {u"YMDHMS19", false, spssDay, "2018-03-31T00:00:00"},
             {u"DATE11", false, -86'400, "1582-10-13"},
             {u"TIME8", false, 43'870.09, "12:11:10.09"},
             {u"DTIME12", false, 90'061, "25:01:01"},
             {u"TIME8", false, -61, "-00:01:01"},
             {u"%td", true, 21'274, "2018-03-31"},
             {u"%d", true, -1, "1959-12-31"},
             {u"%-tdD_m_Y", true, 21'274, "2018-03-31"},
             {u"%tc", true, clock, "2018-03-31T12:00:00"},
             {u"%tC", true, clock + 27'000, "2018-03-31T12:00:00"},
             {u"%tC", true, 20'820.0 * 86'400'000 + 26'000, "2016-12-31T23:59:59"}, // the inserted second
             {u"%tw", true, 58 * 52 + 12, "2018-03-26"},
             {u"%tm", true, 58 * 12 + 2, "2018-03-01"},
             {u"%tq", true, -1, "1959-10-01"},
             {u"%th", true, 58 * 2 + 1, "2018-07-01"},
             {u"%td", true, 1e9, nullptr},
             {u"%tm", true, 1.5, nullptr},
             {u"DATE11", false, 1e300, nullptr}}) {
        const TimeFormat format = timeFormat(QString::fromUtf16(c.format), c.stata);
        EXPECT_TRUE(format.isTime()) << QString::fromUtf16(c.format).toStdString();
        EXPECT_EQ(isoText(c.value, format), c.iso ? std::optional(QByteArray(c.iso)) : std::nullopt)
            << QString::fromUtf16(c.format).toStdString() << ' ' << c.value;
    }
    for (const QString& format : {u"F8.2"_s, u"WKDAY9"_s, u"MONTH3"_s, u"DOT8"_s})
        EXPECT_FALSE(timeFormat(format, false).isTime()) << format.toStdString();
    for (const QString& format : {u"%9.0g"_s, u"%ty"_s, u"%tbcal"_s, u"%10s"_s})
        EXPECT_FALSE(timeFormat(format, true).isTime()) << format.toStdString();
}

TEST(ImportRules, LettersMoveBelowEveryValueOfTheVariable) {
    SurveyFile file;
    file.stata = true;
    file.variables.resize(2);
    file.variables[0].labelSet = 0;
    file.labelSets.resize(1);
    SurveyLabel refused;
    refused.number = -9;
    file.labelSets[0].push_back(refused);
    TaggedCodes codes(file);
    codes.sawLetter(0, 'a');
    codes.sawLetter(1, 'b');
    codes.sawNumber(1, -27);
    EXPECT_TRUE(codes.settle()); // a label's code counts as a value
    EXPECT_EQ(codes.code(0, 'a'), -1001);
    EXPECT_EQ(codes.code(1, 'z'), -26);
    codes.sawNumber(1, -1.5); // between two codes, and yet within their range
    codes.sawNumber(1, -1026);
    EXPECT_TRUE(codes.settle());
    EXPECT_EQ(codes.range(1).low, -2026);
    EXPECT_EQ(codes.range(1).high, -2001);
    EXPECT_FALSE(codes.settle());
}
