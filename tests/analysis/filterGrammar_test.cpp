#include "analysis/request/filterTokens.h"
#include "analysis/request/filterWords.h"
#include "analysis/run/userFilter.h"
#include "app/globals.h"
#include "platform/dao/Error.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

FilterSurroundings surroundings() {
    FilterSurroundings around;
    around.joinedAlready << u"A_1"_s;
    around.find = [](const QString& word, bool&) -> std::optional<VariablePlace> {
        if (word == "V7"_L1 || word == "V8"_L1 || word == "cntry"_L1 || word == "A-B_1"_L1)
            return VariablePlace{u"A_1"_s, word};
        if (word == "be1.1b"_L1)
            return VariablePlace{u"A_1"_s, u"be1_1b"_s};
        if (word == "V9"_L1 || word == u"Größe" || word == "In"_L1)
            return VariablePlace{u"A_2"_s, word};
        if (word == "two words"_L1)
            return VariablePlace{u"A_3"_s, word};
        return std::nullopt;
    };
    around.attach = [](const QString&) { return true; };
    return around;
}

struct Row {
    QString text, statement, words = {}, marked = {}, joined = {};
};

void expectRows(const std::vector<Row>& rows, const FilterSurroundings& around) {
    for (const Row& row : rows) {
        SCOPED_TRACE(qPrintable(row.text));
        const FilterResult result = readFilter(row.text, around);
        EXPECT_EQ(result.objection(), row.words);
        EXPECT_EQ(dao::errorList().Count(), 0) << "nobody asked the engine";
        if (row.words.isEmpty()) {
            EXPECT_EQ(result.failure, FilterResult::Failure::None);
            EXPECT_EQ(result.filterSql, row.statement);
            EXPECT_EQ(result.joins.tables.join(u','), row.joined);
        } else {
            EXPECT_EQ(row.text.mid(result.position, result.length), row.marked);
        }
    }
}

class FilterGrammar : public testing::Test {
protected:
    FilterGrammar() { gLanguage = 0; }
    ~FilterGrammar() override { gLanguage = 0; }
};

} // namespace

/// What the run's pass takes and the engine can read is what it always was, to the letter.
TEST_F(FilterGrammar, LeavesWhatThePassTakesAsItIs) {
    expectRows(
        {
            {u"V7=1"_s, u"A_1.V7=1"_s},
            {u"V7 = 1"_s, u"A_1.V7 = 1"_s},
            {u"(V7=1) OR (V8>2)"_s, u"(A_1.V7=1) OR (A_1.V8>2)"_s},
            {u"V7=1 or V8=2"_s, u"A_1.V7=1 or A_1.V8=2"_s},
            {u"V9<3 AND NOT V7=2"_s, u"A_2.V9<3 AND NOT A_1.V7=2"_s, {}, {}, u"A_2"_s},
            {u"V7=1.5"_s, u"A_1.V7=1.5"_s},
            {u"V7=-1.5e3"_s, u"A_1.V7=-1.5e3"_s},
            {u"V7=-0,25 AND V8=1"_s, u"A_1.V7=-0,25 AND A_1.V8=1"_s},
            {u"V7=.5 and  V8 <>3 "_s, u"A_1.V7=.5 and  A_1.V8 <>3 "_s},
            {u"cntry='DE'"_s, u"A_1.cntry='DE'"_s},
            {u"cntry=\"DE\" AND V7>1"_s, u"A_1.cntry=\"DE\" AND A_1.V7>1"_s},
            {u"cntry=DE"_s, u"A_1.cntry=DE"_s},
            {u"V7=V8 AND V8=1"_s, u"A_1.V7=V8 AND A_1.V8=1"_s},
            {u"V7 = V8 "_s, u"A_1.V7 = A_1.V8 "_s},
            {u"V7=[V8]"_s, u"A_1.V7=[V8]"_s},
            {u"1=1"_s, u"1=1"_s},
            {u"A-B_1=1"_s, u"A_1.A-B_1=1"_s},
            {u"V7=2*3"_s, u"A_1.V7=2*3"_s},
            {u"V7=#2020-01-01#"_s, u"A_1.V7=#2020-01-01#"_s},
            {u"((V7=1))"_s, u"((A_1.V7=1))"_s},
            {u"(V7)=1"_s, u"(A_1.V7)=1"_s},
            {u"V7>=1 garbage"_s, u"A_1.V7>=1 "_s},
            {u"V7=1 OR"_s, u"A_1.V7=1 "_s},
            // The text of the second comparison is part of the first one's, as it always was.
            {u"cntry='A V7=B'"_s, u"A_1.cntry='A A_1.V7=B'"_s},
        },
        surroundings());
    EXPECT_EQ(readFilter(u"V7>=1 garbage"_s, surroundings()).notice(),
              u"Ein Name am Ende zählt nur, wenn ein Leerzeichen folgt: garbage");
    EXPECT_EQ(readFilter(u"V7=1 OR"_s, surroundings()).notice(), u"Hinter OR fehlt eine Bedingung.");
    // Statistics have nothing behind the condition, so that its end may be one.
    FilterSurroundings ungrouped = surroundings();
    ungrouped.grouped = false;
    expectRows({{u"V7=1;"_s, u"A_1.V7=1;"_s}}, ungrouped);
    expectRows({{u"V7=1;"_s, {}, u"Unerlaubtes Zeichen: ;"_s, u";"_s}}, surroundings());
}

TEST_F(FilterGrammar, ReadsNamesInBracketsTextsListsAndNumbersThatThePassRefuses) {
    const QString deep = QString(40, u'(') + u"[be1.1b]=1"_s + QString(40, u')');
    expectRows(
        {
            {u"[be1.1b]=1"_s, u"A_1.be1_1b=1"_s},
            {u"[ be1.1b ] = 1"_s, u"A_1.be1_1b = 1"_s},
            {u"[two words]=1 AND V9>2"_s, u"A_3.[two words]=1 AND A_2.V9>2"_s, {}, {}, u"A_3,A_2"_s},
            {u"[Größe]>180"_s, u"A_2.Größe>180"_s, {}, {}, u"A_2"_s},
            {u"[be1.1b]=1 or [V8]=2"_s, u"(A_1.be1_1b=1 or A_1.V8=2)"_s},
            {u"([be1.1b]=1 or V8=2) and not V7=3"_s, u"(A_1.be1_1b=1 or A_1.V8=2) and not A_1.V7=3"_s},
            {u"cntry = 'DE'"_s, u"A_1.cntry = 'DE'"_s},
            {u"cntry = \"O'Hara\""_s, u"A_1.cntry = 'O''Hara'"_s},
            {u"cntry = 'O''Hara'"_s, u"A_1.cntry = 'O''Hara'"_s},
            {u"cntry = \"a\"\"b\""_s, u"A_1.cntry = 'a\"b'"_s},
            {u"cntry='A OR B'"_s, u"A_1.cntry='A OR B'"_s},
            {u"cntry <> 'x) OR 1=1 --'"_s, u"A_1.cntry <> 'x) OR 1=1 --'"_s},
            {u"'DE'=cntry"_s, u"'DE'=A_1.cntry"_s},
            {u"V7 IN (1,2,3)"_s, u"A_1.V7 IN (1,2,3)"_s},
            {u"V7 in(1, -2.5)"_s, u"A_1.V7 in(1, -2.5)"_s},
            {u"cntry NOT IN ('DE','AT')\tAND V7>1"_s, u"A_1.cntry NOT IN ('DE','AT') AND A_1.V7>1"_s},
            {u"[In] IN (1)"_s, u"A_2.In IN (1)"_s, {}, {}, u"A_2"_s},
            {u"V7>=1.5"_s, u"A_1.V7>=1.5"_s},
            {u"V7>=-1"_s, u"A_1.V7>=-1"_s},
            {u"V7 = 1,5"_s, u"A_1.V7 = 1.5"_s},
            {u"V7 <> -0,25 AND V8=1"_s, u"A_1.V7 <> -0.25 AND A_1.V8=1"_s},
            {u"V7 = V8"_s, u"A_1.V7 = A_1.V8"_s},
            {u"V7 = [be1.1b]"_s, u"A_1.V7 = A_1.be1_1b"_s},
            {deep, QString(40, u'(') + u"A_1.be1_1b=1"_s + QString(40, u')')},
        },
        surroundings());
}

/// A name behind a comparison runs today if the engine has a column of that name; else it is a variable.
TEST_F(FilterGrammar, AsksTheEngineForTheMeaningOfANameBehindAComparison) {
    FilterSurroundings knows = surroundings(), knowsNot = surroundings();
    knows.knowsNames = [](const FilterResult&) { return true; };
    knowsNot.knowsNames = [](const FilterResult& condition) { return !condition.filterSql.contains(u'['); };
    expectRows({{u"V7=[be1.1b]"_s, u"A_1.V7=[be1.1b]"_s}}, knows);
    expectRows({{u"V7=[be1.1b]"_s, u"A_1.V7=A_1.be1_1b"_s},
                {u"V7=[none]"_s, {}, u"none nicht gefunden"_s, u"[none]"_s},
                {u"V7=1"_s, u"A_1.V7=1"_s}},
               knowsNot);
    // V9 is a column of a table that the pass does not join; DE is a text without its quotes.
    knowsNot.knowsNames = [](const FilterResult&) { return false; };
    expectRows({{u"V7=V9"_s, u"A_1.V7=A_2.V9"_s, {}, {}, u"A_2"_s},
                {u"cntry=DE"_s, u"A_1.cntry=DE"_s},
                {u"V7=1"_s, u"A_1.V7=1"_s}},
               knowsNot);
    expectRows({{u"V7=V8"_s, u"A_1.V7=V8"_s}}, knows);
}

TEST_F(FilterGrammar, SaysInPlainWordsWhatKeepsATextFromBeingACondition) {
    const QString deep = QString(60, u'(') + u"[V7]=1"_s + QString(60, u')');
    const QString tooMuch = u"Der Filter ist zu lang oder zu tief verschachtelt."_s;
    const std::vector<Row> rows{
        {u" "_s, {}, u"Der Filter ist leer."_s, {}},
        {u"(V7=1 AND V8=2"_s, {}, u"Eine Klammer ist nicht geschlossen."_s, u"("_s},
        {u"V7=1 AND ("_s, {}, u"Eine Klammer ist nicht geschlossen."_s, u"("_s},
        {u"V7 IN (1,2"_s, {}, u"Eine Klammer ist nicht geschlossen."_s, u"("_s},
        {u"V7=1)"_s, {}, u"Eine Klammer wird geschlossen, die nicht geöffnet ist."_s, u")"_s},
        {u"V7=1 AND ()"_s, {}, u"Zwischen den Klammern fehlt eine Bedingung."_s, u"("_s},
        {u"cntry='DE"_s, {}, u"Ein Anführungszeichen ist nicht geschlossen."_s, u"'DE"_s},
        {u"V7=1 OR [be1.1b=1"_s, {}, u"Eine eckige Klammer ist nicht geschlossen."_s, u"[be1.1b=1"_s},
        {u"[ ]=1"_s, {}, u"Zwischen den eckigen Klammern fehlt ein Name."_s, u"[ ]"_s},
        {u"V7="_s, {}, u"Hinter = fehlt ein Wert."_s, u"="_s},
        {u"V7 >= AND V8=1"_s, {}, u"Hinter >= fehlt ein Wert."_s, u">="_s},
        {u"V7=1 OR "_s, {}, u"Hinter OR fehlt eine Bedingung."_s, u"OR"_s},
        {u"V7=1 and not "_s, {}, u"Hinter not fehlt eine Bedingung."_s, u"not"_s},
        {u"AND V7=1"_s, {}, u"Vor AND fehlt eine Bedingung."_s, u"AND"_s},
        {u"V7=1 AND OR V8=2"_s, {}, u"Zwischen AND und OR fehlt eine Bedingung."_s, u"OR"_s},
        {u"V7= =1"_s, {}, u"Zwischen = und = fehlt ein Wert."_s, u"="_s},
        {u"V7==1"_s, {}, u"Ein Vergleichszeichen == gibt es nicht."_s, u"=="_s},
        {u"V7=>1"_s, {}, u"Ein Vergleichszeichen => gibt es nicht."_s, u"=>"_s},
        {u"V7=1 AND V8"_s, {}, u"Hinter V8 fehlt ein Vergleich."_s, u"V8"_s},
        {u"[be1.1b] AND V8=1"_s, {}, u"Hinter [be1.1b] fehlt ein Vergleich."_s, u"[be1.1b]"_s},
        {u"=1"_s, {}, u"Vor = fehlt eine Variable."_s, u"="_s},
        {u"V7=1 V8=2"_s, {}, u"Vor V8 fehlt AND oder OR."_s, u"V8"_s},
        {u"[V7]=1=2"_s, {}, u"Vor = fehlt AND oder OR."_s, u"="_s},
        {u"(V7=1)(V8=2)"_s, {}, u"Vor ( fehlt AND oder OR."_s, u"("_s},
        {u"V7 IN 1"_s, {}, u"Hinter IN fehlt eine Liste in Klammern."_s, u"IN"_s},
        {u"V7 IN ()"_s, {}, u"Die Liste der Werte ist leer."_s, u"("_s},
        {u"V7 IN (1,,2)"_s, {}, u"In einer Liste stehen nur Werte mit Kommas dazwischen, nicht ,."_s, u","_s},
        {u"V7 IN (1, V8)"_s, {}, u"In einer Liste stehen nur Werte mit Kommas dazwischen, nicht V8."_s, u"V8"_s},
        {u"V7 IN (1 2)"_s, {}, u"In einer Liste stehen nur Werte mit Kommas dazwischen, nicht 2."_s, u"2"_s},
        {deep, {}, tooMuch, u"("_s},
        {u"V7 IN (1"_s + u",1"_s.repeated(6000) + u')', {}, tooMuch, {}},
        // What the pass has words for it says itself.
        {u"V7=1 XOR V8=2"_s, {}, u"XOR nicht gefunden"_s, u"XOR"_s},
        {u"V7=1 AND V8=1 ö"_s, {}, u"Unerlaubtes Zeichen: ö"_s, u"ö"_s},
        {u"V7=1 AND 😀"_s, {}, u"Unerlaubtes Zeichen: 😀"_s, u"😀"_s},
        {u"V7!=1"_s, {}, u"Unerlaubtes Zeichen: !"_s, u"!"_s},
        {u"[BAR]=1"_s, {}, u"BAR nicht gefunden"_s, u"[BAR]"_s},
        {u"be1.1b=1"_s, {}, u"Unerlaubtes Zeichen: .\nDer Name gehört in eckige Klammern: [be1.1b]"_s, u"."_s},
        {u"V7=1 OR Größe>2"_s, {}, u"Unerlaubtes Zeichen: ö\nDer Name gehört in eckige Klammern: [Größe]"_s, u"ö"_s},
    };
    expectRows(rows, surroundings());
}

TEST(FilterTexts, AreWrittenSoThatTheyAreReadAsMeant) {
    const std::vector<std::pair<QString, QString>> names{
        {u"V7"_s, u"V7"_s},         {u"_x"_s, u"_x"_s},     {u"be1.1b"_s, u"[be1.1b]"_s},
        {u"and"_s, u"[and]"_s},     {u"IN"_s, u"[IN]"_s},   {u"1a"_s, u"[1a]"_s},
        {u"Größe"_s, u"[Größe]"_s}, {u"a b"_s, u"[a b]"_s}, {u"-1"_s, u"[-1]"_s},
    };
    for (const auto& [name, written] : names)
        EXPECT_EQ(filterName(name), written);
    EXPECT_EQ(filterValue(u"-1.5"_s), u"-1.5");
    EXPECT_EQ(filterValue(u"01"_s), u"'01'");
    EXPECT_EQ(filterValue(u"1,5"_s), u"'1,5'");
    EXPECT_EQ(filterValue(u"O'Hara"_s), u"'O''Hara'");

    /// "|" is where the cursor stands; the value that a click replaces stands in braces.
    struct Case {
        QString text, variable, value;
    };
    const std::vector<Case> cases{
        {u"|"_s, {}, {}},
        {u"V7|"_s, u"V7"_s, {}},
        {u"V7 |"_s, u"V7"_s, {}},
        {u"V7=|"_s, u"V7"_s, u"V7={}"_s},
        {u"V7=1|"_s, u"V7"_s, u"V7={1}"_s},
        {u"V7=1| AND V8=2"_s, u"V7"_s, u"V7={1} AND V8=2"_s},
        {u"V7=1 AND V8| = 2"_s, u"V8"_s, {}},
        {u"V7=1 AND V8 = |2"_s, u"V8"_s, u"V7=1 AND V8 = {}2"_s},
        {u"[be1.1b]=|"_s, u"be1.1b"_s, u"[be1.1b]={}"_s},
        {u"[be1.1b]|"_s, u"be1.1b"_s, {}},
        {u"cntry='D|E'"_s, u"cntry"_s, u"cntry={'DE'}"_s},
        {u"cntry='D|"_s, u"cntry"_s, u"cntry={'D}"_s},
        {u"V7 IN (|"_s, u"V7"_s, u"V7 IN ({}"_s},
        {u"V7 NOT IN (1, 2,|)"_s, u"V7"_s, u"V7 NOT IN (1, 2,{})"_s},
        {u"V7=1 AND |"_s, u"V7"_s, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.text));
        const qsizetype cursor = c.text.indexOf(u'|');
        const QString text = QString(c.text).remove(u'|');
        const FilterPlace place = filterPlace(text, cursor);
        EXPECT_EQ(place.variable, c.variable);
        QString shown;
        if (place.value >= 0)
            shown = QString(text).insert(place.value + place.valueLength, u'}').insert(place.value, u'{');
        EXPECT_EQ(shown, c.value);
    }
}
