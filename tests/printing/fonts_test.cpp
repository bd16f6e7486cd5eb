#include "printing/IndexPages.h"
#include "printing/fonts.h"

#include <QFontInfo>
#include <QGlyphRun>
#include <QRawFont>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(PrintedText, ShowsEveryCharacterOrItsCode) {
    struct Case {
        QString text, printed;
    };
    const Case cases[] = {
        {u"plain – text, ß"_s, u"plain – text, ß"_s},
        {u"a\r\nb\rc\u2029d"_s, u"a\nb\nc\nd"_s},
        {u"a"_s + QChar(0) + QChar(7) + u'b', u"a[U+0000][U+0007]b"_s},
        {u"x\U0010FFFD"_s, u"x[U+10FFFD]"_s},
        {u"half "_s + QChar(0xD83D) + u" pair"_s, u"half [U+D83D] pair"_s},
        {u"age\u202Egnorw\u202C 12"_s, u"agegnorw 12"_s},
        {u"\uFEFFmark\u2066s\u2069"_s, u"marks"_s},
        {u"\u2764\uFE0E"_s, u"\u2764"_s},
        {u"a\uFFFCb"_s, u"a[U+FFFC]b"_s},
    };
    for (const Case& one : cases)
        EXPECT_EQ(printable(one.text), one.printed) << one.printed.toStdString();
    EXPECT_EQ(printableLine(u" a\r\n  b\t c"_s), u"a b c"_s);
}

TEST(PrintedText, BreaksAnywhereOnlyWhereAWordIsTooWide) {
    const QFont font = reportFont(u"Arial"_s, 11);
    const SetText words = setText(u"one two three four five six"_s, font, 1200);
    for (int line = 0; line + 1 < words.lines(); ++line) {
        const QTextLine set = words.layout->lineAt(line);
        EXPECT_EQ(words.layout->text()[set.textStart() + set.textLength() - 1], u' ');
    }
    EXPECT_GT(words.lines(), 1);
    for (const QString& text : {u"W"_s.repeated(300), u"one two three "_s.repeated(50)})
        EXPECT_LE(setText(text, font, 1500).width, 1501);
    EXPECT_LE(setLine(u"W"_s.repeated(300), font, 1500).width, 1500);
    EXPECT_EQ(setText({}, font, 1500).lines(), 1);
    for (const SetText& line : {setText(u"שלום."_s, font, 0), setLine(u"שלום."_s, font, 3000)}) {
        const QTextLine set = line.layout->lineAt(0);
        EXPECT_NEAR(set.naturalTextRect().left(), 0, 1) << "left whatever its direction";
        EXPECT_LT(set.cursorToX(5), set.cursorToX(0)) << "and read to the left, the full stop last";
    }
    // A family that nobody has is set like the usual one.
    EXPECT_EQ(textWidth(u"Häufigkeit"_s, reportFont(u"MS Sans Serif"_s, 11)), textWidth(u"Häufigkeit"_s, font));
    EXPECT_EQ(textWidth(u"iiii"_s, reportFont(u"Courier New"_s, 11)),
              textWidth(u"WWWW"_s, reportFont(u"Courier New"_s, 11)));
}

TEST(IndexOfNames, IsSortedAsPeopleLookForNames) {
    const QStringList sorted = {u"age"_s,  u"AGE2"_s, u"age10"_s, u"income"_s, u"V1"_s,
                                u"v01a"_s, u"V2"_s,   u"v2_1"_s,  u"V10"_s,    u"Ä"_s};
    for (qsizetype i = 0; i < sorted.size(); ++i)
        for (qsizetype j = 0; j < sorted.size(); ++j)
            EXPECT_EQ(namesInOrder(sorted[i], sorted[j]), i < j)
                << sorted[i].toStdString() << ' ' << sorted[j].toStdString();
}

TEST(PrintedText, NeverVanishesWhereNoFontHasItsScript) {
    // Which scripts a machine has no font for differs: each is either there as it is, or there as codes.
    for (const QString& text : {u"राष्ट्र"_s, u"ไทย"_s, u"ትግርኛ"_s, u"မြန်မာ"_s, u"ខ្មែរ"_s}) {
        const QString shown = printable(text);
        EXPECT_TRUE(shown == text || shown.contains(u"[U+"_s)) << shown.toStdString();
        const SetText set = setText(shown, reportFont(u"Arial"_s, 11), 0);
        for (const QGlyphRun& run : set.layout->glyphRuns())
            EXPECT_FALSE(run.rawFont().fontTable("head").isEmpty()) << text.toStdString();
    }
}
