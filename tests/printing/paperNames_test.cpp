#include "printing/paperNames.h"
#include "support/PrintQt.h"

#include <QLocale>
#include <QSizeF>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Papers, EachCodeHasItsNameItsSizeAndAWayBack) {
    struct Case {
        int code;
        QString name;
        QSizeF inches;
    };
    const double mm = 1 / 25.4;
    for (const Case& c : {Case{1, u"Letter"_s, {8.5, 11}},
                          {3, u"Tabloid"_s, {11, 17}},
                          {5, u"Legal"_s, {8.5, 14}},
                          {6, u"Statement"_s, {5.5, 8.5}},
                          {8, u"A3"_s, {297 * mm, 420 * mm}},
                          {9, u"A4"_s, {210 * mm, 297 * mm}},
                          {11, u"A5"_s, {148 * mm, 210 * mm}},
                          {14, u"Folio"_s, {8.5, 13}},
                          {16, u"10x14"_s, {10, 14}},
                          {27, u"EnvDL"_s, {110 * mm, 220 * mm}},
                          {37, u"EnvMonarch"_s, {3.875, 7.5}},
                          {41, u"FanfoldLglGerman"_s, {8.5, 13}}}) {
        EXPECT_EQ(Paper::name(c.code), c.name);
        EXPECT_EQ(Paper::code(c.name.toUpper()), c.code);
        const QSizeF inches = Paper::size(c.code).size(QPageSize::Inch);
        EXPECT_NEAR(inches.width(), c.inches.width(), 0.03) << c.code;
        EXPECT_NEAR(inches.height(), c.inches.height(), 0.03) << c.code;
    }
    for (int code = 1; code <= 41; ++code) {
        const int back = Paper::code(Paper::size(code));
        EXPECT_EQ(Paper::size(back).sizePoints(), Paper::size(code).sizePoints()) << code;
    }
    for (const int code : {1, 5, 9, 11, 14, 27})
        EXPECT_EQ(Paper::code(Paper::size(code)), code);
}

TEST(Papers, WhatIsNoneHasNoSizeAndSaysSo) {
    for (const int code : {-1, 0, 42, 256, 70000}) {
        EXPECT_EQ(Paper::name(code), u"(Default Paper Size)"_s) << code;
        EXPECT_FALSE(Paper::size(code).isValid()) << code;
    }
    EXPECT_EQ(Paper::code(u"A17"_s), 0);
    EXPECT_EQ(Paper::code(QPageSize()), 0);
    EXPECT_EQ(Paper::code(QPageSize(QPageSize::A2)), 0);
    EXPECT_EQ(Paper::code(QPageSize(QSizeF(100, 150), QPageSize::Millimeter)), 0);
    EXPECT_EQ(Paper::byLocale(QLocale(QLocale::German, QLocale::Germany)), 9);
    EXPECT_EQ(Paper::byLocale(QLocale(QLocale::English, QLocale::UnitedKingdom)), 9);
    EXPECT_EQ(Paper::byLocale(QLocale(QLocale::English, QLocale::UnitedStates)), 1);
    EXPECT_EQ(Paper::byLocale(QLocale(QLocale::French, QLocale::Canada)), 1);
    EXPECT_EQ(Paper::byLocale(QLocale::c()), 9);
}
