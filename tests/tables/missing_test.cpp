#include "tables/missing.h"

#include "app/globals.h"
#include "platform/dao/Error.h"
#include "platform/system/NumberFormat.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Case {
    QString definition;
    std::vector<double> missing, valid;
    QString comma; ///< the condition under a decimal comma
    QString point; ///< and under a point
};

const std::vector<Case> cases{
    {u""_s, {}, {0, 9, -1}, u""_s, u""_s},
    {u"9"_s, {9}, {8, 90, 0}, u"F <> 9"_s, u"F <> 9"_s},
    {u" -9 "_s, {-9}, {9}, u"F <> -9"_s, u"F <> -9"_s},
    {u"8,5"_s, {8.5}, {8, 85}, u"F <> 8,5"_s, u"F <> 8.5"_s},
    {u"8.5;9"_s, {8.5, 9}, {8, 85}, u"F <> 8,5 AND F <> 9"_s, u"F <> 8.5 AND F <> 9"_s},
    {u"8;9"_s, {8, 9}, {7, 8.5}, u"F <> 8 AND F <> 9"_s, u"F <> 8 AND F <> 9"_s},
    {u"1, 2"_s, {1, 2}, {1.2, 12}, u"F <> 1 AND F <> 2"_s, u"F <> 1 AND F <> 2"_s},
    {u"7;8;9"_s, {7, 8, 9}, {6}, u"F <> 7 AND F <> 8 AND F <> 9"_s, u"F <> 7 AND F <> 8 AND F <> 9"_s},
    {u"7, 8, 9"_s, {7, 8, 9}, {6}, u"F <> 7 AND F <> 8 AND F <> 9"_s, u"F <> 7 AND F <> 8 AND F <> 9"_s},
    {u"90 thru 99"_s, {90, 94.5, 99}, {89.9, 99.1}, u"F < 90 OR F > 99"_s, u"F < 90 OR F > 99"_s},
    {u"99 thru 90"_s, {90, 94.5, 99}, {89.9, 99.1}, u"F < 90 OR F > 99"_s, u"F < 90 OR F > 99"_s},
    {u"-1,5 thru -1,2"_s, {-1.5, -1.3, -1.2}, {-1.1, -1.6}, u"F < -1,5 OR F > -1,2"_s, u"F < -1.5 OR F > -1.2"_s},
    {u"90 thru 99;0"_s, {90, 99, 0}, {1, 89}, u"(F < 90 OR F > 99) AND F <> 0"_s, u"(F < 90 OR F > 99) AND F <> 0"_s},
    {u"1 thru 5, 9"_s, {1, 5, 9}, {6}, u"(F < 1 OR F > 5) AND F <> 9"_s, u"(F < 1 OR F > 5) AND F <> 9"_s},
    {u"90 thru hIgHeSt"_s,
     {90, 1e300},
     {89},
     u"F < 90 OR F > CDbl('1,79769313486231E+308')"_s,
     u"F < 90 OR F > 1.79769313486231E+308"_s},
    {u"lowest thru -1"_s,
     {-1, -1e300},
     {0},
     u"F < CDbl('-1,79769313486231E308') OR F > -1"_s,
     u"F < -1.79769313486231E+308 OR F > -1"_s},
    {u"-1 thru 1,79769313486232E+308;-5"_s,
     {-1, 1e300, -5},
     {-2},
     u"(F < -1 OR F > CDbl('1,79769313486231E+308')) AND F <> -5"_s,
     u"(F < -1 OR F > 1.79769313486231E+308) AND F <> -5"_s},
};

} // namespace

TEST(MissingDefinitions, MeanTheSameUnderBothLocalesAsTestAndAsCondition) {
    const TestHome home;
    for (const QChar separator : {u',', u'.'}) {
        NumberFormat::setDecimalSeparator(separator);
        for (const Case& c : cases) {
            SCOPED_TRACE(qPrintable(c.definition + u" under "_s + separator));
            for (const double value : c.missing)
                EXPECT_TRUE(IsMissing(value, c.definition)) << value;
            for (const double value : c.valid)
                EXPECT_FALSE(IsMissing(value, c.definition)) << value;
            EXPECT_EQ(MissingToSql(u"F"_s, c.definition), separator == u',' ? c.comma : c.point);
        }
    }
    EXPECT_TRUE(IsMissing(u"8,5"_s, u"8,5"_s)) << "a text that is a number compares as one";
}

TEST(MissingDefinitions, ThatDontReadRaiseTheLanguagesErrors) {
    const TestHome home;
    gErrorTrapping = false;
    const std::vector<std::pair<QString, int>> broken{
        {u"x"_s, 13},       {u"90 THRU 99"_s, 13},
        {u"1;2;3;4"_s, 13}, {u"highest thru highest"_s, 13},
        {u"8;"_s, 13},      {u"0;90 thru 99"_s, 13} /* the range comes first */,
        {u"1 , 2"_s, 5} /* blanks make it three values, but there is one separator */};
    for (const auto& [definition, number] : broken) {
        try {
            IsMissing(1, definition);
            ADD_FAILURE() << qPrintable(definition);
        } catch (const dao::Error& error) {
            EXPECT_EQ(error.number(), number) << qPrintable(definition);
        }
    }
}

TEST(MissingDefinitions, AskWhatToDoWithAPieceThatDoesntRead) {
    const TestHome home;
    ScriptedAsker asker;
    asker.answer(ui::Answer::Ignore);
    EXPECT_TRUE(IsMissing(0, u"8;x"_s)) << "ignored, the piece counts as 0";
    asker.answer(ui::Answer::Retry).answer(ui::Answer::Abort);
    EXPECT_FALSE(IsMissing(8, u"8;x"_s)) << "aborted, nothing is missing";
    asker.answer(ui::Answer::Abort);
    EXPECT_EQ(MissingToSql(u"F"_s, u"8;x"_s), u""_s);
    ASSERT_EQ(asker.boxes.size(), 4u);
    EXPECT_TRUE(asker.boxes[0].text.startsWith(u"13\r\n"_s));
    EXPECT_EQ(asker.boxes[0].title, u"Fehler"_s);
}

TEST(MissingDefinitions, AreSaidInWordsWithTheNumbersOfTheLocale) {
    const TestHome home;
    const struct {
        QString definition, words;
    } examples[] = {
        {QString(), QString()},
        {u"9"_s, u"9"_s},
        {u"8;9"_s, u"8 und 9"_s},
        {u"7, 8, 9.5"_s, u"7, 8 und 9,5"_s},
        {u"9;9"_s, u"9"_s},
        {u"90 thru 99"_s, u"90 bis 99"_s},
        {u"99 thru 90;0"_s, u"90 bis 99 sowie 0"_s},
        {u"90 thru 99, 95"_s, u"90 bis 99"_s},
        {u"9 thru 9;0"_s, u"9 sowie 0"_s},
        {u"97 thru highest"_s, u"ab 97"_s},
        {u"lowest thru -1;99"_s, u"bis -1 sowie 99"_s},
        {u"LOWEST thru Highest"_s, u"alle Werte"_s},
        {u"highest"_s, u"größter Wert"_s},
        {u"8;1,79769313486232E+308"_s, u"8 und größter Wert"_s},
    };
    const auto german = [](const QString& text, int) { return text; };
    for (const auto& one : examples)
        EXPECT_EQ(MissingDefinition(one.definition).inWords(german, 1), one.words) << one.definition.toStdString();
}
