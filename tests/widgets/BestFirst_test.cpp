#include "widgets/BestFirst.h"

#include "support/PrintQt.h"

#include <QStringListModel>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

/// The variable whose name was typed stands before those whose names begin so, however they stand in the study.
TEST(BestFirst, BringsTheNameItselfBeforeNamesThatBeginSoAndTheseBeforeTheRest) {
    QStringListModel choices(
        {u"V50: Alter"_s, u"XV5: anders"_s, u"V51: wie V5"_s, u"V5: Zufriedenheit"_s, u"A: leer"_s, u"v5x: klein"_s});
    BestFirst search(&choices, nullptr);
    const auto order = [&](const QString& typed) {
        search.fit(typed);
        QString names;
        for (int row = 0; row < search.rowCount(); ++row)
            names += search.index(row, 0).data().toString().section(u':', 0, 0) + u' ';
        return names;
    };
    EXPECT_EQ(order(u"V5"_s), u"V5 V50 V51 v5x XV5 A "_s);
    EXPECT_EQ(order(u"v50"_s), u"V50 XV5 V51 V5 A v5x "_s);
    EXPECT_EQ(order(u"zufr"_s), u"V5 V50 XV5 V51 A v5x "_s) << "in a label, then as they stand";
    EXPECT_EQ(BestFirst::misfit(u"V5"_s, u"v5"_s), 0) << "a list of names alone";
    EXPECT_EQ(BestFirst::misfit(u"V50: V5"_s, u"V5"_s), 1);
    EXPECT_EQ(BestFirst::misfit(u"V50: Alter"_s, u"V6"_s), BestFirst::noMatch);
}
