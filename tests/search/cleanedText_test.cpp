#include "search/cleanedText.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(CleanedText, IsOneLineWithSingleBlanksButForThoseBehindABreak) {
    const std::pair<QString, QString> cases[] = {
        {u""_s, u""_s},           {u"a   b "_s, u"a b "_s},    {u"a\r\nb"_s, u"a b"_s},
        {u"a\rb"_s, u"ab"_s},     {u"a \r\n b"_s, u"a   b"_s}, {u"a\n  b"_s, u"a  b"_s},
        {u"a\n\nb"_s, u"a  b"_s}, {u"a\t b"_s, u"a\t b"_s},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(cleanedText(text), expected) << text.toStdString();
}

} // namespace
