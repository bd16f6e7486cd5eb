#include "platform/dao/Error.h"
#include "platform/dao/Value.h"
#include "platform/system/NumberFormat.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Qt::StringLiterals;
using dao::Value;

namespace {

constexpr double largest = std::numeric_limits<double>::max();

int errorOf(auto action) {
    try {
        action();
    } catch (const dao::Error& error) {
        return error.number();
    }
    return 0;
}

} // namespace

TEST(Value, NumbersBecomeTextInFifteenSignificantDigits) {
    const std::pair<double, QString> cases[] = {
        {0, u"0"_s},
        {-0.0, u"0"_s},
        {5, u"5"_s},
        {-1.5, u"-1,5"_s},
        {0.1 + 0.2, u"0,3"_s},
        {1.0 / 3, u"0,333333333333333"_s},
        {2.50, u"2,5"_s},
        {123456789012345, u"123456789012345"_s},
        {999999999999999.9, u"1E+15"_s},
        {1e15, u"1E+15"_s},
        {0.0001, u"0,0001"_s},
        {0.00001, u"1E-05"_s},
        {-1.5e-7, u"-1,5E-07"_s},
        {1.79769313486231e308, u"1,79769313486231E+308"_s},
        {largest, u"1,79769313486232E+308"_s},
    };
    for (const auto& [number, text] : cases) {
        EXPECT_EQ(dao::numberToText(number, u','), text);
    }
    EXPECT_EQ(dao::numberToText(8.765, u'.'), u"8.765"_s);
    NumberFormat::setDecimalSeparator(u',');
    EXPECT_EQ(Value(qint64{1'000'000'000'000'000}).toText(), Value(1e15).toText());
}

TEST(Value, OnlyATextThatIsWhollyANumberIsOne) {
    const std::pair<QString, double> numbers[] = {
        {u"8,765"_s, 8.765},
        {u"8.765"_s, 8.765},
        {u" -1,5 "_s, -1.5},
        {u"+3"_s, 3},
        {u",5"_s, 0.5},
        {u"5,"_s, 5},
        {u"1e3"_s, 1000},
        {u"1E-05"_s, 0.00001},
        {u"1E+400"_s, largest},
        {u"-1e400"_s, -largest},
        {u"1e-400"_s, 0},
        {u"0,000e999"_s, 0},
        {u"1,79769313486232E+308"_s, largest},
        {u"-1.79769313486232E+308"_s, -largest},
        {QString(400, u'9'), largest},
        {u"0,"_s + QString(400, u'0') + u'1', 0},
    };
    for (const auto& [text, number] : numbers) {
        EXPECT_EQ(dao::textToNumber(text), number) << text.toStdString();
    }
    for (const QString& text : {u""_s, u" "_s, u"abc"_s, u"1.234,5"_s, u"1 000"_s, u"12a"_s, u"0x10"_s, u"inf"_s,
                                u"nan"_s, u"1e"_s, u"."_s, u"--1"_s, u"- 1"_s, u"١"_s, u"1'000"_s}) {
        EXPECT_FALSE(dao::textToNumber(text).has_value()) << text.toStdString();
    }
}

TEST(Value, TheLeadingNumberStopsAtWhatBelongsToNone) {
    struct {
        QString text;
        double point, either;
    } const cases[] = {
        {u"12,5"_s, 12, 12.5},
        {u"12.5 kg"_s, 12.5, 12.5},
        {u" 1 2 3x"_s, 123, 123},
        {u"-4e2z"_s, -400, -400},
        {u"7e"_s, 7, 7},
        {u"x7"_s, 0, 0},
        {u""_s, 0, 0},
        {u"3.1.4"_s, 3.1, 3.1},
    };
    for (const auto& [text, point, either] : cases) {
        EXPECT_EQ(dao::leadingNumber(text, false), point) << text.toStdString();
        EXPECT_EQ(dao::leadingNumber(text, true), either) << text.toStdString();
    }
}

TEST(Value, TextsCompareWithoutRegardToCaseInEveryScript) {
    const std::pair<QString, QString> equal[] = {
        {u"QX1"_s, u"qx1"_s},       {u"ÄÖÜ"_s, u"äöü"_s}, {u"ΣΑΣ"_s, u"σας"_s},
        {u"ДАННЫЕ"_s, u"данные"_s}, {u"𐐀x"_s, u"𐐨X"_s},
    };
    for (const auto& [a, b] : equal) {
        EXPECT_EQ(dao::compareTexts(a, b), 0) << a.toStdString();
        EXPECT_TRUE(dao::matchesPattern(a, b)) << a.toStdString();
    }
    const std::pair<QString, QString> less[] = {
        {u"a"_s, u"ä"_s},   {u"a"_s, u"a "_s}, {u""_s, u" "_s},
        {u"Ab"_s, u"aC"_s}, {u"ss"_s, u"ß"_s}, {u"\uFF5E"_s, u"𐐀"_s},
    };
    for (const auto& [a, b] : less) {
        EXPECT_LT(dao::compareTexts(a, b), 0) << a.toStdString() << "<" << b.toStdString();
        EXPECT_GT(dao::compareTexts(b, a), 0) << a.toStdString() << "<" << b.toStdString();
    }
}

TEST(Value, ATextComparesWithANumberByTheNumberThatItSpells) {
    struct {
        Value a, b;
        int order;
    } const cases[] = {
        {Value(), Value(), 0},
        {Value(), Value(u""_s), -1},
        {Value(8.5), Value(u"8,5"_s), 0},
        {Value(u" 8.50 "_s), Value(8.5), 0},
        {Value(10), Value(u"9"_s), 1},
        {Value(u"10"_s), Value(u"9"_s), -1},
        {Value(largest), Value(u"abc"_s), -1},
        {Value(0), Value(u""_s), -1},
        {Value(2), Value(2.0), 0},
        {Value(qint64{9007199254740993}), Value(9007199254740992.0), 1},
        {Value(std::numeric_limits<qint64>::max()), Value(9223372036854775808.0), -1},
        {Value(-3), Value(-2.5), -1},
        {Value(u"x"_s), Value(QByteArray("x")), -1},
    };
    for (const auto& [a, b, order] : cases) {
        EXPECT_EQ(dao::compareValues(a, b), order) << a.toText().toStdString() << " / " << b.toText().toStdString();
        EXPECT_EQ(dao::compareValues(b, a), -order) << b.toText().toStdString() << " / " << a.toText().toStdString();
    }
}

TEST(Value, PatternsKnowTheFourSigns) {
    struct {
        QString text, pattern;
        bool matches;
    } const cases[] = {
        {u"QX1919_1"_s, u"qx*_#"_s, true},
        {u"QX1919_x"_s, u"qx*_#"_s, false},
        {u"abc"_s, u"a?c"_s, true},
        {u"ac"_s, u"a?c"_s, false},
        {u"Bär"_s, u"b[ä-ü]r"_s, true},
        {u"b-r"_s, u"b[-x]r"_s, true},
        {u"b5r"_s, u"b[!0-4a]r"_s, true},
        {u"bAr"_s, u"b[!0-4a]r"_s, false},
        {u"a*b"_s, u"a[*]b"_s, true},
        {u"axb"_s, u"a[*]b"_s, false},
        {u""_s, u"*"_s, true},
        {u""_s, u"?"_s, false},
        {u"aab"_s, u"*ab"_s, true},
        {u"a%b_"_s, u"a%b_"_s, true},
        {u"axb"_s, u"a%b"_s, false},
        {u"😀!"_s, u"?!"_s, true},
        {QString(5000, u'a'), u"*a*a*a*a*a*b"_s, false},
    };
    for (const auto& [text, pattern, matches] : cases) {
        EXPECT_EQ(dao::matchesPattern(text, pattern), matches) << pattern.toStdString();
    }
    EXPECT_EQ(errorOf([] { dao::matchesPattern(u"a"_s, u"[a"_s); }), 93);
    EXPECT_EQ(errorOf([] { dao::matchesPattern(u"a"_s, u"[z-a]"_s); }), 93);
}

TEST(Value, ConversionsRoundHalfToEvenAndRefuseWhatIsNoNumber) {
    EXPECT_EQ(Value(2.5).toInteger(), 2);
    EXPECT_EQ(Value(u"3,5"_s).toInteger(), 4);
    EXPECT_EQ(Value(-2.5).toInteger(), -2);
    EXPECT_EQ(Value(true), Value(-1));
    EXPECT_TRUE(Value(0.1).toBoolean());
    EXPECT_EQ(Value().toText(), u""_s);
    EXPECT_FALSE(Value() == Value(u""_s));
    EXPECT_EQ(errorOf([] { (void)Value().toDouble(); }), 94);
    EXPECT_EQ(errorOf([] { (void)Value(u"12 kg"_s).toDouble(); }), 13);
    EXPECT_EQ(errorOf([] { (void)Value(1e19).toInteger(); }), 6);
}
