#include "search/QuickSearch.h"

#include "app/globals.h"
#include "explorer/ExplorerModel.h"
#include "support/KeptTexts.h"
#include "support/PrintQt.h"
#include "support/ScriptedAsker.h"
#include "support/TestCatalogue.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using QuickSearch::In;

namespace {

/// Notes what the window is told to bring into view.
class NotingHost : public ListviewHost {
public:
    QStringList told;

    void nodeRevealed(const CatalogueNode& node) override { told << node.Key; }
    void rowRevealed(int row) override { told << QString::number(row); }
    void focusTree() override { told << u"tree"_s; }
    void focusList() override { told << u"list"_s; }
};

class Quick : public testing::Test {
protected:
    TestHome home;
    ScriptedAsker asker;
    TestCatalogue catalogue{home.path()};
    NotingHost host;
    ExplorerModel model{&host};

    void SetUp() override {
        QuickSearch::setText({});
        catalogue.fill();
        ASSERT_EQ(catalogue.open(), 1);
    }

    /// What a search brings into view, or what it says.
    QString next(In in, const std::vector<int>& selected = {}) {
        host.told.clear();
        asker.boxes.clear();
        QuickSearch::mnuWeitersuchen_Click(model, in, selected);
        return (host.told + asker.texts()).join(u' ');
    }
};

TEST_F(Quick, GoesThroughTheTreeFromWhatIsSelectedAndEndsAtTheLastMatch) {
    model.open(1); // Gruppe, Erhebung 2020, then the group's Erhebung 1919
    EXPECT_EQ(next(In::Tree), QString()) << "without a text nothing happens";
    asker.input(u"ERHEB"_s);
    QuickSearch::mnuSuchen_Click(model, In::Tree, {});
    EXPECT_EQ(asker.prompts.back().prompt, u"Suchtext: "_s);
    EXPECT_EQ(asker.prompts.back().title, u"Suchen in Studien"_s);
    EXPECT_EQ(asker.prompts.back().proposal, QString());
    EXPECT_EQ(model.state.selectedKey, u"AQX2020"_s) << "by parent, as the nodes were added";
    EXPECT_EQ(model.list.rows.size(), 2u);
    EXPECT_EQ(next(In::Tree), u"AQX1919"_s);
    EXPECT_EQ(next(In::Tree), u"tree Keine weiteren Elemente mit ERHEB gefunden!"_s);
    EXPECT_EQ(asker.boxes.back().icon, ui::Icon::Exclamation);
    EXPECT_EQ(model.state.selectedKey, u"AQX1919"_s) << "it does not begin again";
    // The root is where it begins and never a match; a cancelled prompt empties the text.
    model.open(1);
    QuickSearch::setText(u"studien"_s);
    EXPECT_EQ(next(In::Tree), u"tree Keine weiteren Elemente mit studien gefunden!"_s);
    EXPECT_EQ(model.selectedNode(), nullptr);
    asker.noInput();
    QuickSearch::mnuSuchen_Click(model, In::Tree, {});
    EXPECT_EQ(asker.prompts.back().proposal, u"studien"_s);
    EXPECT_EQ(QuickSearch::text(), QString());
}

TEST_F(Quick, GoesThroughTheRowsInViewBehindTheLastSelectedOne) {
    gLanguage = 1;
    model.open(1);
    ASSERT_TRUE(model.select(u"AQX1919"_s)); // V3 V5 V6 V7 V8 V9
    asker.input(u"v"_s);
    QuickSearch::mnuSuchen_Click(model, In::List, {0});
    EXPECT_EQ(asker.prompts.back().title, u"In Variablen suchen"_s);
    EXPECT_EQ(model.list.selectedRow, 1);
    const struct {
        const char* text;
        std::vector<int> selected;
        const char* told;
    } table[] = {
        {"v", {}, "0"},
        {"v", {0, 3}, "4"},   // behind the last of several
        {"1919", {2}, "3"},   // the study, and the year
        {"weLLE 1", {}, "1"}, // the group's original name
        {"satis", {}, "1"},   // a label of the other language
        {"satis", {1}, "list Keine weiteren Elemente mit satis gefunden!"},
        {"Wie zufrieden", {}, "list Keine weiteren Elemente mit Wie zufrieden gefunden!"}, // a question text is none
    };
    for (const auto& [text, selected, told] : table) {
        QuickSearch::setText(QString::fromLatin1(text));
        EXPECT_EQ(next(In::List, selected), QString::fromLatin1(told)) << text;
    }
    // Sorted the other way round, and narrowed: the order and the rows are those in view.
    model.list.headerClicked(0);
    model.list.headerClicked(0);
    QuickSearch::setText(u"v"_s);
    EXPECT_EQ(next(In::List, {0}), u"1"_s);
    EXPECT_EQ(model.list.rows[1].Text, u"V8"_s);
    model.setFilter(u"trust"_s);
    ASSERT_EQ(model.list.shown.size(), 1u);
    EXPECT_EQ(next(In::List), QString::number(model.list.shown[0]));
    EXPECT_EQ(next(In::List, {model.list.shown[0]}), u"list Keine weiteren Elemente mit v gefunden!"_s);
    EXPECT_EQ(model.list.selectedRow, model.list.shown[0]) << "what is selected stays so";
    // A list of four columns beside the name has no fifth text, which matches nothing.
    gCatalogueOptions.ShowVarGroupInfo = false;
    model.open(1);
    ASSERT_TRUE(model.select(u"AQX1919"_s));
    QuickSearch::setText(u"welle"_s);
    EXPECT_EQ(next(In::List), u"list Keine weiteren Elemente mit welle gefunden!"_s);
}

} // namespace
