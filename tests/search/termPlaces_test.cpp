#include "search/termPlaces.h"

#include "platform/dao/Value.h"
#include "support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The text with brackets around every place.
QString marked(QString text, const QStringList& terms) {
    const std::vector<TermPlace> places = termPlaces(text, terms);
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        text.insert(place->start + place->length, u'}').insert(place->start, u'{');
    return text;
}

TEST(TermPlaces, AreWhereLikeFindsATerm) {
    const struct {
        QString text;
        QStringList terms;
        QString expected;
    } cases[] = {
        {u"Die Arbeit, arbeiten"_s, {u"ARBEIT"_s}, u"Die {Arbeit}, {arbeit}en"_s},
        {u"aaaa"_s, {u"aa"_s}, u"{aa}{aa}"_s},
        // Upper-cased, everything behind a sharp s would lie one further.
        {u"Straße und Maß: Zufriedenheit"_s, {u"zufrieden"_s}, u"Straße und Maß: {Zufrieden}heit"_s},
        {u"STRASSE Straße"_s, {u"straße"_s}, u"STRASSE {Straße}"_s},
        {u"ĞÜL İ ÄÖ äö"_s, {u"äÖ"_s}, u"ĞÜL İ {ÄÖ} {äö}"_s},
        {u"Σας σΑΣ"_s, {u"σας"_s}, u"{Σας} {σΑΣ}"_s},
        {u"\U0001F600 a \U00010400"_s, {u"\U00010428"_s}, u"\U0001F600 a {\U00010400}"_s},
        {u"V1 V22 Vx"_s, {u"v#"_s}, u"{V1} {V2}2 Vx"_s},
        {u"Mayer Meier Mueller"_s, {u"m[ae][yi]er"_s}, u"{Mayer} {Meier} Mueller"_s},
        {u"Bar \U0001F600r"_s, {u"?r"_s}, u"B{ar} {\U0001F600r}"_s},
        {u"Wozu, warum, wozu"_s, {u"wo*wa*um"_s}, u"{Wo}zu, {wa}r{um}, wozu"_s},
        {u"5 * 4"_s, {u"[*]"_s}, u"5 {*} 4"_s},
        {u"O'Neill"_s, {u"o''n"_s}, u"{O'N}eill"_s},
        {u"eins und zwei"_s, {u"zwei"_s, u"eins"_s}, u"{eins} und {zwei}"_s},
        {u"Arbeitszeit"_s, {u"arbeits"_s, u"szeit"_s}, u"{Arbeitszeit}"_s},
        {u"a [b"_s, {u"[b"_s}, u"a [b"_s},
        {u"abc"_s, {u"*"_s}, u"abc"_s},
        {u"abc"_s, {u"**c"_s}, u"ab{c}"_s},
    };
    for (const auto& one : cases) {
        EXPECT_EQ(marked(one.text, one.terms), one.expected);
        // What has a mark is what the engine finds.
        for (const QString& term : one.terms) {
            if (term == u"[b" || term == u"*")
                continue; // refused, and nothing in particular
            const QString pattern = u'*' + QString(term).replace(u"''"_s, u"'"_s) + u'*';
            EXPECT_EQ(!termPlaces(one.text, term).empty(), dao::matchesPattern(one.text, pattern))
                << term.toStdString();
        }
    }
}

TEST(TermContext, KeepsWholeWordsAroundTheFirstPlaceOfTheFirstTerm) {
    const QString text = u"Wie zufrieden sind Sie alles in allem mit Ihrer Arbeit und mit der Zeit, die Sie haben?"_s;
    const TermContext context = termContext(text, {u"arbeit"_s, u"wie"_s, u"die"_s}, 16, 30);
    EXPECT_EQ(context.text, u"… allem mit Ihrer Arbeit und mit der Zeit, die …"_s);
    ASSERT_EQ(context.places.size(), 2u);
    EXPECT_EQ(context.text.mid(context.places[0].start, context.places[0].length), u"Arbeit"_s);
    EXPECT_EQ(context.text.mid(context.places[1].start, context.places[1].length), u"die"_s);
    EXPECT_EQ(termContext(text, {u"fehlt"_s}, 10, 12).text, u"Wie …"_s);
    // A text without blanks is cut all the same.
    EXPECT_LT(termContext(QString(10000, u'x') + u"arbeit"_s + QString(10000, u'x'), {u"arbeit"_s}, 20, 40).text.size(),
              80);
}

} // namespace
