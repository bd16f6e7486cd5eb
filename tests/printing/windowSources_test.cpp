#include "app/globals.h"
#include "config/Options.h"
#include "editing/DescriptionModel.h"
#include "explorer/ExplorerModel.h"
#include "printing/windowSources.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <QDir>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class WindowSources : public testing::Test {
protected:
    const TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};

    void SetUp() override {
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
    }

    /// The selection of an explorer after a node and perhaps words in its filter were given and rows selected.
    static QString selection(int view, const QString& key, const QString& words, const std::vector<int>& places) {
        ExplorerModel model;
        model.open(view);
        EXPECT_TRUE(key.isEmpty() || model.select(key));
        model.setFilter(words);
        std::vector<int> rows;
        for (const int place : places)
            rows.push_back(model.list.shown.at(static_cast<size_t>(place)));
        const PrintSource source = sourceOf(model, rows);
        return u"%1 %2 | %3 %4 | %5 %6"_s.arg(source.study, source.variable, source.nodeId, source.nodeText,
                                              source.rowNodeId, source.rowNodeText);
    }
};

} // namespace

TEST_F(WindowSources, AnExplorerTellsItsRowItsNodeAndWhereTheFilterFoundTheRow) {
    EXPECT_EQ(selection(1, {}, {}, {}), u"  |   |  "_s) << "nothing was chosen yet";
    EXPECT_EQ(selection(1, u"A0"_s, {}, {}), u"  |   |  "_s) << "the root is no entry";
    EXPECT_EQ(selection(1, u"AG001"_s, {}, {}), u"  | G001 Gruppe |  "_s);
    EXPECT_EQ(selection(1, u"AQX2020"_s, {}, {1, 0}), u"QX2020 V7 | QX2020 Erhebung 2020 | QX2020 Erhebung 2020"_s)
        << "the row that was given first";
    EXPECT_EQ(selection(1, u"AG001"_s, u"satisf"_s, {1}), u"QX2020 V5 | G001 Gruppe | QX2020 Erhebung 2020"_s);
    EXPECT_EQ(selection(1, u"A0"_s, u"satisf"_s, {0}), u"QX1919 V5 |   | QX1919 Erhebung 1919"_s);
    EXPECT_EQ(selection(2, u"B0"_s, u"v6"_s, {0}), u"QX1919 V6 |   | 3 Vertrauen"_s);
    gOptions.EnglishLanguage = true;
    EXPECT_EQ(selection(2, u"B1"_s, {}, {}), u"  | 1 Attitudes |  "_s) << "in the language of the window";
    gOptions = {};
}

TEST_F(WindowSources, EachTellsTheCatalogueItsViewAndTheLanguageOfTheWords) {
    ExplorerModel model;
    model.open(3);
    gLanguage = 1;
    const PrintSource trends = sourceOf(model, {});
    EXPECT_EQ(trends.database, QDir(home.path()).absoluteFilePath(u"catalogue.mdb"_s));
    EXPECT_EQ(trends.language, 2);
    EXPECT_EQ(trends.view, 3);
    EXPECT_FALSE(trends.isStudy);
    EXPECT_EQ(trends.sourceTable, u"Trend"_s);
    EXPECT_EQ(trends.viewName, gViews.at(3, ViewTable::NameEnglish));
    gLanguage = 0;
    DescriptionModel studies(1), catalogues(0);
    studies.FillDescriptionForm(DescriptionModel::Move::First);
    catalogues.FillDescriptionForm(DescriptionModel::Move::First);
    const PrintSource study = sourceOf(studies), whole = sourceOf(catalogues);
    EXPECT_TRUE(study.isStudy && study.view == 1 && study.sourceTable == u"Study");
    EXPECT_EQ(study.nodeId + u' ' + study.nodeText, u"QX1919 Erhebung 1919"_s);
    EXPECT_TRUE(whole.view == 0 && whole.nodeId.isEmpty() && whole.sourceTable.isEmpty());
    const PrintSource table = sourceOfAnalysis(u"QX1919"_s, u"V5"_s, true);
    EXPECT_TRUE(table.window == PrintSource::Window::Analysis && table.tablePage && table.view == 0);
}
