#include "app/globals.h"
#include "language/CText.h"
#include "printing/words.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(ReportWords, FollowTheReportAndNotTheWindows) {
    gLanguage = 1;
    EXPECT_EQ(reportWord(u"Fragetext"_s, 1), u"Fragetext"_s);
    gLanguage = 0;
}
