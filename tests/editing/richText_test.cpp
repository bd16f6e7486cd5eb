#include "editing/richText.h"

#include "support/PrintQt.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The runs as one text: bold within <b>, italic within <i>; nothing for a text that is no document.
QString read(const QString& document) {
    const std::optional<std::vector<TextRun>> runs = readRtf(document);
    if (!runs)
        return u"(none)"_s;
    QString text;
    for (const TextRun& run : *runs) {
        text += (run.bold ? u"<b>"_s : QString()) + (run.italic ? u"<i>"_s : QString()) + run.text +
                (run.italic ? u"</i>"_s : QString()) + (run.bold ? u"</b>"_s : QString());
    }
    return text;
}

TEST(RichText, ADocumentIsItsParagraphsAndWhatIsBoldOrItalicInThem) {
    const std::pair<QString, QString> cases[] = {
        {uR"({\rtf1\ansi One\par Two\par})"_s, u"One\nTwo"_s},
        {u"{\\rtf1 One\r\ntwo\\\nthree\\line four\\tab five}"_s, u"Onetwo\nthree\u2028four\tfive"_s},
        {uR"({\rtf1 a{\b b\i c\b0 d}e\plain f})"_s, u"a<b>b</b><b><i>c</i></b><i>d</i>ef"_s},
        {uR"({\rtf1\b bold\plain  plain\b1 x\b0\i0 y})"_s, u"<b>bold</b> plain<b>x</b>y"_s},
        {uR"({\rtf1\deff0{\fonttbl{\f0\fnil Arial;}{\f1 Times;}}{\colortbl;\red0\green0\blue255;}{\stylesheet{\s0 Normal;}}{\info{\title T}{\author A}}{\*\generator Riched20;}\f0\fs20 Text\par})"_s,
         u"Text"_s},
        {uR"({\rtf1 x{\pict\wmetafile8 0102ff}y{\*\unknown{\b deep} z}w{\header top}v})"_s, u"xywv"_s},
        {uR"({\rtf1{\field{\*\fldinst HYPERLINK "http://x"}{\fldrslt here}}})"_s, u"here"_s},
        {uR"({\rtf1 \{a\}\\b\~c\_d\-e \emdash\ldblquote q\rdblquote})"_s,
         u"{a}\\b\u00a0c\u2011de \u2014\u201cq\u201d"_s},
        {uR"({\rtf1 seen{\v hidden}seen})"_s, u"seenseen"_s},
        {uR"({\rtf1 ab{\bin4 }}}}cd})"_s, u"abcd"_s},
        {u"{\\rtf1 Größe 日本\\par}\r\n"_s + QChar(0), u"Größe 日本"_s},
        {uR"({\rtf1})"_s, QString()},
    };
    for (const auto& [document, text] : cases)
        EXPECT_EQ(read(document), text) << qPrintable(document);
}

TEST(RichText, CharactersByCodeAreThoseOfTheDocumentsCodePage) {
    const std::pair<QString, QString> cases[] = {
        {uR"({\rtf1\ansi Gr\'f6\'dfe \'80 \'93q\'94})"_s, u"Größe € “q”"_s},
        {uR"({\rtf1\ansi\ansicpg1251 \'cc\'e8\'f0})"_s, u"Мир"_s},
        {uR"({\rtf1\ansi\ansicpg1250 \'b9\'9c})"_s, u"ąś"_s},
        {uR"({\rtf1\ansi\ansicpg932 \'93\'fa\'96\'7b})"_s, u"日本"_s},
        {uR"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fcharset0 A;}{\f1\fnil\fcharset204{\*\falt B}C;}}\'fc{\f1 \'cc\b\'e8\plain\'fc}\'fc\f1\'f0})"_s,
         u"üМ<b>и</b>üüр"_s},
        {uR"({\rtf1\deff3{\fonttbl\f3\fcharset238 A;\f4 B;}\'e8\f4\'e8\fcharset204\plain\'e8})"_s, u"čèč"_s},
        {uR"({\rtf1\mac \'8a})"_s, u"ä"_s},
        {uR"({\rtf1\pc \'84})"_s, u"ä"_s},
        {uR"({\rtf1\ansi\ansicpg99999 \'e4})"_s, u"ä"_s},
        {uR"({\rtf1 \'zz\'e})"_s, u"zze"_s},
        // The replacement behind a character is passed over: a letter, a code, as many as \uc says, none beyond its
        // group.
        {uR"({\rtf1 \u1052?\u1080\'3f\u1088 ?})"_s, u"Мир"_s},
        {uR"({\rtf1\uc2 \u8364EU!{\uc0\u228 b}\u228xyz})"_s, u"€!äbäz"_s},
        {uR"({\rtf1 {\u228}x \u-10179?\u-8704?})"_s, u"äx \U0001F600"_s},
        {uR"({\rtf1 a\u-10179?b\u0?c\u99999?d})"_s, u"a\uFFFDbcd"_s},
    };
    for (const auto& [document, text] : cases)
        EXPECT_EQ(read(document), text) << qPrintable(document);
}

TEST(RichText, WhatIsNoWholeDocumentStaysAsItStands) {
    const QString nested = u"{\\rtf1 "_s + QString(300, u'{') + u"x"_s + QString(301, u'}');
    const QString plain[] = {u"Text"_s,
                             u" {\\rtf1 x}"_s,
                             uR"({\rtfx y})"_s,
                             uR"({\rtf1\ansi)"_s,
                             u"{\\rtf"_s,
                             nested,
                             uR"({\rtf1 x} and more text)"_s,
                             u"<b>bold</b>"_s};
    for (const QString& text : plain) {
        EXPECT_EQ(read(text), u"(none)"_s) << qPrintable(text.left(40));
        EXPECT_EQ(textRuns(text), std::vector<TextRun>{TextRun{text}});
    }
    // One that is broken off is read as far as it goes.
    EXPECT_EQ(read(uR"({\rtf1{\b One\par Tw)"_s), u"<b>One\nTw</b>"_s);
    EXPECT_EQ(read(u"{\\rtf1 x\\"_s), u"x"_s);
    EXPECT_EQ(read(uR"({\rtf1 x\u99999999999999999999 y\bin99999999999 z})"_s), u"x"_s);
}

TEST(RichText, NoDamageStopsTheReading) {
    // Every cut and every changed character of a document that has it all.
    const QString whole = uR"({\rtf1\ansicpg932{\fonttbl\f0 A;}\uc2\u228xy\b\'93\'fa\bin3 }}}{\*\x y}\par\~\'c4})"_s;
    for (qsizetype i = 0; i <= whole.size(); ++i) {
        readRtf(whole.left(i));
        for (const QChar c : u"{}\\'*u9-"_s) {
            QString changed = whole;
            if (i < whole.size())
                changed[i] = c;
            readRtf(changed);
        }
    }
    const QString many = u"{\\rtf1 "_s + QString(u"{\\b\\'e4\\u228?}"_s).repeated(200'000) + u'}';
    EXPECT_EQ(readRtf(many)->front().text.size(), 400'000);
    // A paragraph of nothing but changes would be laid out for minutes.
    const std::vector<TextRun> runs = *readRtf(u"{\\rtf1 "_s + u"{\\b x}y"_s.repeated(100'000) + u"\\par\\b z}"_s);
    EXPECT_LT(runs.size(), 3'000u);
    EXPECT_EQ(runs.back(), (TextRun{u"z"_s, true}));
}

} // namespace
