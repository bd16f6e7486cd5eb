#include "platform/system/NumberFormat.h"

#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(NumberFormat, FixedRoundsHalfAwayFromZeroOnTheDigitsThatPeopleSee) {
    struct Case {
        double number;
        int decimals;
        QString text;
    };
    const Case cases[] = {
        {2.675, 2, u"2,68"_s}, // stored as 2.67499999999999982
        {1.005, 2, u"1,01"_s}, // stored as 1.00499999999999989
        {0.5, 0, u"1"_s},
        {2.5, 0, u"3"_s},
        {-2.5, 0, u"-3"_s},
        {0.125, 2, u"0,13"_s},
        {-0.004, 2, u"0,00"_s},
        {-0.0, 1, u"0,0"_s},
        {0.05, 1, u"0,1"_s},
        {0.04, 1, u"0,0"_s},
        {0.0049, 2, u"0,00"_s},
        {0.0003, 2, u"0,00"_s},
        {9.995, 2, u"10,00"_s},
        {99.95, 1, u"100,0"_s},
        {1234567.5, 0, u"1234568"_s},
        {33.3333333333333, 1, u"33,3"_s},
        {7, 2, u"7,00"_s},
        {1e20, 1, u"100000000000000000000,0"_s},
        {0.00012, 4, u"0,0001"_s},
        {1e-10, 2, u"0,00"_s},
        {0.1 + 0.2, 15, u"0,300000000000000"_s},
    };
    NumberFormat::setDecimalSeparator(u',');
    for (const Case& c : cases)
        EXPECT_EQ(NumberFormat::fixed(c.number, c.decimals), c.text) << c.number << " in " << c.decimals;
}

TEST(NumberFormat, PlainFormHasFifteenDigitsAndNoIdleZeros) {
    struct Case {
        double number;
        QString text;
    };
    const Case cases[] = {
        {0, u"0"_s},
        {-0.0, u"0"_s},
        {0.1 + 0.2, u"0,3"_s},
        {1.0 / 3, u"0,333333333333333"_s},
        {-8.5, u"-8,5"_s},
        {120, u"120"_s},
        {999999999999999, u"999999999999999"_s},
        {1e15, u"1E+15"_s},
        {1234567890123456, u"1,23456789012346E+15"_s},
        {123456789012345.5, u"123456789012346"_s},
        {123456789012344.5, u"123456789012345"_s}, // the middle: away from zero
        {999999999999999.5, u"1E+15"_s},
        {0.0001, u"0,0001"_s},
        {0.00001, u"1E-05"_s},
        {1.5e-7, u"1,5E-07"_s},
        {DBL_MAX, u"1,79769313486232E+308"_s},
        {5e-324, u"4,94065645841247E-324"_s},
    };
    NumberFormat::setDecimalSeparator(u',');
    for (const Case& c : cases)
        EXPECT_EQ(NumberFormat::plain(c.number), c.text);
    NumberFormat::setDecimalSeparator(u'.');
    EXPECT_EQ(NumberFormat::fixed(1.25, 1) + NumberFormat::plain(1.25), u"1.31.25"_s);
    EXPECT_EQ(NumberFormat::digits(1.25, u','), u"1,25"_s) << "a separator given counts once";
    NumberFormat::setDecimalSeparator(u',');
}
