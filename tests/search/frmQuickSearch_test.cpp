#include "app/MainWindow.h"
#include "explorer/frmExplorer.h"
#include "search/QuickSearch.h"
#include "widgets/VariableListView.h"

#include <QLineEdit>
#include <QTest>
#include <QTreeView>

TEST_F(MainWindow, QuickSearchGoesOnWhereTheKeyboardIs) {
    QuickSearch::setText({});
    openWithArchive();
    frmExplorer* shown = nullptr;
    for (Form* form : Form::open())
        if (auto* one = dynamic_cast<frmExplorer*>(form))
            shown = one;
    ASSERT_TRUE(shown);
    frmExplorer& explorer = *shown;
    auto* tree = explorer.findChild<QTreeView*>(u"tvTreeView"_s);
    auto* list = static_cast<VariableListView*>(explorer.findChild<QTableView*>(u"lvListView"_s));
    const auto search = [&](QWidget* from, const QString& text) {
        from->setFocus();
        settle();
        asker.input(text);
        action(u"mnuSuchen"_s)->trigger();
        settle();
    };

    // In the tree: the way to the entry opens, and its variables are listed.
    tree->collapseAll();
    search(tree, u"2022"_s);
    const CatalogueNode* study = explorer.model().selectedNode();
    ASSERT_TRUE(study);
    EXPECT_TRUE(study->Text.contains(u"2022"_s));
    EXPECT_EQ(tree->currentIndex().data().toString(), study->Text);
    EXPECT_TRUE(tree->viewport()->rect().contains(tree->visualRect(tree->currentIndex()).center()));
    ASSERT_FALSE(explorer.model().list.rows.empty());

    // In the list, from its filter too: the row alone is selected, in view and in panel A; F3 goes on.
    list->selectPlaces({0, 1, 2}, 2);
    search(explorer.findChild<QLineEdit*>(u"txtQuickFilter"_s), u"wirt"_s);
    EXPECT_EQ(asker.prompts.back().proposal, u"2022"_s);
    ASSERT_EQ(explorer.selectedRows().size(), 1u);
    const int first = explorer.selectedRows().front();
    EXPECT_GT(first, 2);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_TRUE(list->viewport()->rect().contains(list->visualRect(list->currentIndex()).center()));
    EXPECT_EQ(explorer.model().panelA.variable(), explorer.model().list.rows[static_cast<size_t>(first)].Text);
    EXPECT_TRUE(explorer.model().assignmentsShown());
    action(u"mnuWeitersuchen"_s)->trigger();
    ASSERT_EQ(explorer.selectedRows().size(), 1u);
    EXPECT_GT(explorer.selectedRows().front(), first);
    EXPECT_EQ(explorer.model().selectedNode(), study) << "the tree's selection is left alone";

    // Several are selected and nothing is found: they stay so.
    list->selectPlaces({4, 6}, 6);
    search(list, u"gibt es nicht"_s);
    EXPECT_EQ(asker.lastText(), u"Keine weiteren Elemente mit gibt es nicht gefunden!"_s);
    EXPECT_EQ(explorer.selectedRows(), (std::vector{4, 6}));
    EXPECT_TRUE(list->hasFocus());
}
