// What of a study's own statement of its cases can be weighted, and whose tables are found.

#include "app/globals.h"
#include "catalogue/QueryCheck.h"
#include "support/PrintQt.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Case {
    const char16_t* query;
    const char16_t* warning; ///< start of the only warning; empty: none
};

} // namespace

TEST(QueryWarnings, TellWhatTheTextualRulesCannotTake) {
    const TestHome home;
    const QStringList tables{u"QX1_1"_s, u"QX1_2"_s};
    for (const Case& one : {
             Case{u"SELECT QX1_1.dt_CaseID AS ID, QX1_1.V5 AS SE FROM QX1_1;", u""},
             Case{u"select QX1_2.dt_CaseID as ID from QX1_2", u""},
             Case{u"SELECT 1 AS ID", u"kein FROM"},
             Case{u"SELECT dt_CaseID AS ID FROM QX1_1 WHERE V5 = 1;", u"WHERE: ein Gewicht"},
             Case{u"SELECT dt_CaseID AS ID FROM QX1_1 ORDER BY dt_CaseID;", u"ORDER: ein Gewicht"},
             Case{u"SELECT QX1_1.dt_CaseID AS ID FROM QX1_1, QX1_2;", u"mehr als eine Tabelle"},
             Case{u"SELECT QX1_1.dt_CaseID AS ID FROM QX1_1 INNER JOIN QX1_2 ON QX1_1.dt_CaseID = "
                  u"QX1_2.dt_CaseID;",
                  u"mehr als eine Tabelle"},
             Case{u"SELECT dt_CaseID AS ID FROM [QX1_1];", u"Klammern"},
             Case{u"SELECT dt_CaseID AS ID FROM (QX1_1);", u"Klammern"},
             // The search for the table starts five characters behind the start of FROM.
             Case{u"SELECT dt_CaseID AS ID FROM  QX1_1;", u"hinter dem ersten FROM und einem Leerzeichen"},
             Case{u"SELECT dt_CaseID AS ID FROM\r\nQX1_1;", u"hinter dem ersten FROM und einem Leerzeichen"},
             // The first FROM need not be the word.
             Case{u"SELECT FROMAGE AS SE, dt_CaseID AS ID FROM QX1_1;", u"hinter dem ersten FROM"},
             // Names are looked for with their case.
             Case{u"SELECT dt_CaseID AS ID FROM qx1_1;", u"hinter dem ersten FROM"},
             Case{u"SELECT a.dt_CaseID AS ID FROM QX1_1 AS a;", u"hinter der Tabelle 'QX1_1' steht noch etwas"},
         }) {
        const QStringList warnings = archive::queryWarnings(QString::fromUtf16(one.query), tables);
        const QString expected = QString::fromUtf16(one.warning);
        if (expected.isEmpty())
            EXPECT_EQ(warnings, QStringList()) << QString::fromUtf16(one.query).toStdString();
        else
            EXPECT_TRUE(warnings.size() == 1 && warnings[0].startsWith(expected))
                << QString::fromUtf16(one.query).toStdString() << ": " << warnings.join(u" | ").toStdString();
    }
}

// "QX1_1" is part of "QX1_10": a weight in the first table would be taken from the tenth.
TEST(QueryWarnings, KnowTablesWhoseNameHoldsAnother) {
    const TestHome home;
    QStringList tables;
    for (int i = 1; i <= 10; ++i)
        tables << u"QX1_%1"_s.arg(i);
    EXPECT_EQ(archive::queryWarnings(u"SELECT QX1_10.dt_CaseID AS ID FROM QX1_10;"_s, tables).size(), 1);
    EXPECT_EQ(archive::queryWarnings(u"SELECT QX1_1.dt_CaseID AS ID FROM QX1_1;"_s, tables), QStringList());
}
