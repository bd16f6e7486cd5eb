#include "app/globals.h"
#include "catalogue/mdDataBase.h"
#include "catalogue/schema.h"
#include "config/Options.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

using Rows = std::vector<std::pair<QString, dao::Value>>;

/// What stands in `tsys_Options`, and the views (name, table, type, comparison) and numbers that follow.
struct OptionCase {
    const char* rule;
    Rows rows;
    QStringList views;
    int count, start;
};

QStringList views() {
    QStringList all;
    for (int i = 1; i <= gViews.lastRow(); ++i)
        all << gViews.at(i, ViewTable::Name) + u'|' + gViews.at(i, ViewTable::Table) + u'|' +
                   gViews.at(i, ViewTable::Type) + u'|' + gViews.at(i, ViewTable::CompAnalysis);
    return all;
}

Rows view(int number, const QString& name, const QString& table, Rows more = {}) {
    const QString prefix = u"frmExplorer%1"_s.arg(number);
    Rows rows{{prefix + u"Name"_s, name}, {prefix + u"Table"_s, table}};
    for (auto& [suffix, value] : more)
        rows.emplace_back(prefix + suffix, value);
    return rows;
}

Rows operator+(Rows a, const Rows& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const dao::Value null;
const Rows three{{u"NumberOfFrmExplorers"_s, u"3"_s}};
const Rows one{{u"NumberOfFrmExplorers"_s, u"1"_s}};

const OptionCase optionCases[] = {
    {"views in order, start view kept",
     three + Rows{{u"OpenFrmExplorerAtStart"_s, u"2"_s}} + view(1, u"Studien"_s, u"Study"_s, {{u"Type"_s, u"1"_s}}) +
         view(2, u"Themen"_s, u"Topic"_s) + view(3, u"Trends"_s, u"Trend"_s, {{u"CompAnalysis"_s, u"1"_s}}),
     {u"Studien|Study|1|"_s, u"Themen|Topic||"_s, u"Trends|Trend||1"_s},
     3,
     2},
    {"a start view above the count is view 1",
     one + Rows{{u"OpenFrmExplorerAtStart"_s, u"5"_s}} + view(1, u"Studien"_s, u"Study"_s),
     {u"Studien|Study||"_s},
     1,
     1},
    {"a view with no name or no table is left out and the next moves up",
     three + view(1, u"Studien"_s, u"Study"_s) + view(2, u"Themen"_s, QString()) + view(3, u"Trends"_s, u"Trend"_s),
     {u"Studien|Study||"_s, u"Trends|Trend||"_s},
     2,
     0},
    {"only \"1\" is a flag; a Null name is none",
     three + view(1, u"Studien"_s, u"Study"_s, {{u"Type"_s, u"2"_s}, {u"CompAnalysis"_s, null}}) +
         Rows{{u"frmExplorer2Name"_s, null}, {u"frmExplorer2Table"_s, u"Topic"_s}},
     {u"Studien|Study||"_s},
     1,
     0},
    {"numbers 0, above the count and no number at all are dropped, unknown suffixes too",
     one + view(0, u"Null"_s, u"Zero"_s) + view(2, u"Zwei"_s, u"Two"_s) +
         Rows{{u"frmExplorerXName"_s, u"X"_s}, {u"frmExplorer1Colour"_s, u"red"_s}} + view(1, u"Studien"_s, u"Study"_s),
     {u"Studien|Study||"_s},
     1,
     0},
    {"no more than nine views",
     Rows{{u"NumberOfFrmExplorers"_s, u"12"_s}} + view(9, u"Neun"_s, u"Study"_s),
     {u"Neun|Study||"_s},
     1,
     0},
    {"no fewer than one",
     Rows{{u"NumberOfFrmExplorers"_s, u"0"_s}} + view(1, u"Studien"_s, u"Study"_s),
     {u"Studien|Study||"_s},
     1,
     0},
    {"a Null count is one",
     Rows{{u"NumberOfFrmExplorers"_s, null}} + view(1, u"Studien"_s, u"Study"_s),
     {u"Studien|Study||"_s},
     1,
     0},
};

TEST(CatalogueOptions, ViewsFollowFromTheRows) {
    for (const OptionCase& c : optionCases) {
        SCOPED_TRACE(c.rule);
        TestHome home;
        ScriptedAsker asker;
        TestCatalogue catalogue(home.path());
        catalogue.together([&] {
            for (const auto& [name, value] : c.rows)
                catalogue.addOption(name, value);
        });
        ASSERT_EQ(catalogue.open(), 1);
        EXPECT_EQ(views(), c.views) << qPrintable(views().join(u", "_s));
        EXPECT_EQ(gCatalogueOptions.NumberOfFrmExplorers, c.count);
        EXPECT_EQ(gCatalogueOptions.OpenFrmExplorerAtStart, c.start);
        EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    }
}

TEST(CatalogueOptions, WhatARowDoesNotSayStaysAsTheCatalogueBeforeLeftIt) {
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue(home.path());
    catalogue.addOption(u"NumberOfFrmExplorers"_s, u"1"_s);
    catalogue.addOption(u"DefaultEnglishContents"_s, null);
    catalogue.addOption(u"VarGroupInfoName"_s, null);
    catalogue.addOption(u"ShowVarGroupInfo"_s, u" 2"_s);
    gOptions.EnglishLanguage = true;
    gCatalogueOptions.VarGroupInfoName = u"Welle"_s;
    gCatalogueOptions.VaridexCreationMode = true;
    gCatalogueOptions.RemoveTableLinksOnExitDB = true;
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_FALSE(gOptions.EnglishLanguage) << "a Null turns English contents off";
    EXPECT_EQ(gCatalogueOptions.VarGroupInfoName, u"Welle"_s);
    EXPECT_TRUE(gCatalogueOptions.ShowVarGroupInfo);
    EXPECT_FALSE(gCatalogueOptions.VaridexCreationMode);
    EXPECT_TRUE(gCatalogueOptions.RemoveTableLinksOnExitDB);

    catalogue.execute(u"DELETE FROM tsys_Options WHERE dt_OptionName = 'DefaultEnglishContents';"_s);
    gOptions.EnglishLanguage = true;
    ASSERT_EQ(catalogue.open(), 1);
    EXPECT_TRUE(gOptions.EnglishLanguage) << "no row leaves the user's setting";
}

TEST(Schema, TheComparisonTablesHaveExactlyTheirFields) {
    TestHome home;
    TestCatalogue catalogue(home.path());
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(catalogue.path());
    EXPECT_FALSE(database->TableDefs().contains(u"tsys_Comparison"_s));
    const auto fields = [&](const schema::Table& table) {
        EXPECT_TRUE(schema::ensure(*database, table));
        EXPECT_FALSE(schema::ensure(*database, table));
        QStringList all;
        for (const dao::ColumnInfo& column : database->TableDefs().Item(table.name)->columns())
            all << u"%1 %2 %3%4"_s.arg(column.name)
                       .arg(column.type)
                       .arg(column.size)
                       .arg(column.attributes & dao::dbAutoIncrField ? u" counter"_s : QString());
        return all.join(u'\n');
    };
    EXPECT_EQ(fields(schema::comparisons()).toStdString(), "ID 4 0 counter\ndt_CompName 10 255\ndt_CompNameEn 10 255\n"
                                                           "dt_CompDesc 12 0\ndt_CompDescEn 12 0\ndt_order 4 0");
    EXPECT_EQ(fields(schema::comparisonVariables()).toStdString(),
              "ID 4 0 counter\nfi_StudyNo 10 50\nfi_VariableNo 10 8\nfid 4 0\ndt_Table 10 50\ndt_Field 10 50\n"
              "dt_Missing 10 50\ndt_Year 10 50\ndt_VarGroup 10 50\ndt_Weight 10 255\ndt_Filter 10 255\ndt_order 4 "
              "0\n"
              "dt_WeightInfo 10 255\ndt_FilterInfo 10 255\ndt_VarLabel 10 255");
    database->Close();
}

} // namespace
