#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "explorer/frmExplorer.h"
#include "support/PrintQt.h"
#include "support/SameTree.h"
#include "support/WindowTest.h"
#include "widgets/ElidedLabel.h"
#include "widgets/VariableListView.h"

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QTreeView>

using namespace Qt::StringLiterals;
using Kind = CatalogueChange::Kind;

namespace {

/// What a user sees of an explorer, by keys and names.
struct Seen {
    QStringList expanded, selectedRows;
    QString selectedNode, topNode, currentRow, topRow, filter, panelA;
    bool operator==(const Seen&) const = default;
};

void PrintTo(const Seen& seen, std::ostream* out) {
    *out << qPrintable(u"expanded %1\nnode %2, top %3\nrows %4, current %5, top %6\nfilter %7, panel %8"_s.arg(
        seen.expanded.join(u' '), seen.selectedNode, seen.topNode, seen.selectedRows.join(u' '), seen.currentRow,
        seen.topRow, seen.filter, seen.panelA));
}

/// Four explorers: two of the topics, one of them in English, one of the studies, and one of the topics that is out of
/// sight.
class frmExplorerChanges : public WindowTest {
protected:
    std::vector<std::unique_ptr<frmExplorer>> windows;
    std::vector<std::unique_ptr<QAbstractItemModelTester>> testers;

    void SetUp() override {
        openSampleArchive();
        for (int id = 1001; id <= 1040; ++id)
            add(id, 0, id);
        for (int id = 1041; id <= 1045; ++id)
            add(id, 1030, id);
        execute(u"INSERT INTO trel_Variable"_s + table() +
                u" (fid, fi_StudyNo, fi_VariableNo) SELECT 1030, fi_StudyNo, id_VarName FROM tkey_Variable"_s);
        for (const bool english : {false, true, false, false}) {
            gOptions.EnglishLanguage = english;
            windows.emplace_back(frmExplorer::OpenExplorerView(windows.size() == 2 ? 1 : 2));
            windows.back()->resize(windows.back()->sizeHint());
        }
        gOptions.EnglishLanguage = false;
        windows[3]->hide();
        settle();
        for (const auto& window : windows)
            for (QAbstractItemModel* model : {tree(*window).model(), list(*window).model()})
                testers.push_back(std::make_unique<QAbstractItemModelTester>(
                    model, QAbstractItemModelTester::FailureReportingMode::Fatal));
    }

    static QString table() { return gViews.at(2, ViewTable::Table); }
    static void execute(const QString& statement) { gDatabase.CurrentDatabase()->Execute(statement); }
    static void add(int id, int parent, int order) {
        execute(u"INSERT INTO tkey_%1 (id, fid, [Order], dt_IndicatorName, dt_EnIndicatorName) VALUES (%2, %3, %4, "
                "'Thema %2', 'Topic %2')"_s.arg(table())
                    .arg(id)
                    .arg(parent)
                    .arg(order));
    }

    static QTreeView& tree(const frmExplorer& window) { return *window.findChild<QTreeView*>(u"tvTreeView"_s); }
    static VariableListView& list(const frmExplorer& window) {
        return *static_cast<VariableListView*>(window.findChild<QTableView*>(u"lvListView"_s));
    }
    static QLineEdit& filter(const frmExplorer& window) { return *window.findChild<QLineEdit*>(u"txtQuickFilter"_s); }
    static QModelIndex indexOf(const frmExplorer& window, const QString& name) {
        const QModelIndexList found = tree(window).model()->match(tree(window).model()->index(0, 0), Qt::DisplayRole,
                                                                  name, 1, Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? QModelIndex() : found.first();
    }

    static Seen seen(const frmExplorer& window) {
        const ExplorerModel& model = window.model();
        Seen now;
        QTreeView& view = tree(window);
        const auto name = [](const QModelIndex& index) { return index.data().toString(); };
        for (const CatalogueNode* node = model.tree.root(); node; node = nextWithin(*model.tree.root(), *node)) {
            if (node->Children.empty())
                continue;
            const QString text = node->Text;
            const QModelIndex index = node->Parent ? indexOf(window, text) : view.model()->index(0, 0);
            EXPECT_EQ(view.isExpanded(index), node->Expanded) << qPrintable(text);
            if (view.isExpanded(index))
                now.expanded << text;
        }
        const QModelIndexList selected = view.selectionModel()->selectedIndexes();
        now.selectedNode = selected.isEmpty() ? QString() : name(selected.first());
        EXPECT_EQ(now.selectedNode, model.selectedNode() ? model.selectedNode()->Text : QString());
        now.topNode = name(view.indexAt({0, 0}));
        const auto row = [&](int place) {
            return place < 0 ? QString()
                             : name(list(window).model()->index(place, 1)) + u'/' +
                                   name(list(window).model()->index(place, 0));
        };
        for (const int place : list(window).selectedPlaces())
            now.selectedRows << row(place);
        now.currentRow = row(list(window).currentPlace());
        now.topRow = row(list(window).rowAt(0));
        now.filter = filter(window).text();
        now.panelA = model.panelA.study() + u'/' + model.panelA.variable();
        return now;
    }

    /// Puts each topic window at a place of its own: deep in tree and list, or narrowed by the filter.
    void standSomewhere() {
        for (const size_t i : {0u, 1u, 3u}) {
            frmExplorer& window = *windows[i];
            const QString word = i == 1 ? u"Topic "_s : u"Thema "_s;
            ASSERT_TRUE(window.showNode(u"B1030"_s));
            tree(window).expand(indexOf(window, word + u"1030"_s));
            if (i == 1)
                filter(window).setText(u"a"_s);
            const int rows = static_cast<int>(window.model().list.shown.size());
            ASSERT_GT(rows, 60);
            list(window).selectPlaces({rows - 42, rows - 40, rows - 39}, rows - 39);
            list(window).scrollTo(list(window).model()->index(rows - 50, 0), QAbstractItemView::PositionAtTop);
            tree(window).scrollTo(indexOf(window, word + u"1012"_s), QAbstractItemView::PositionAtTop);
        }
        settle();
    }

    void expectFresh() {
        for (const auto& window : windows)
            EXPECT_TRUE(sameAsFresh(window->model(), EmptyTexts::MayBe));
    }
};

} // namespace

TEST_F(frmExplorerChanges, EveryWindowStaysWhereItsUserIs) {
    standSomewhere();
    for (const size_t i : {0u, 1u, 3u}) {
        ASSERT_EQ(seen(*windows[i]).selectedRows.size(), 3);
        ASSERT_TRUE(seen(*windows[i]).topNode.endsWith(u"1012"_s)) << i;
        ASSERT_FALSE(seen(*windows[i]).topRow.isEmpty());
    }
    const QString entries = u"tkey_"_s + table();
    const EntryText text{u"Neu"_s, false};
    const struct {
        const char* name;
        std::function<void()> write;
        CatalogueChange change;
    } table[] = {
        {"added above",
         [] { add(2001, 0, 0); },
         {.kind = Kind::Added,
          .view = 2,
          .key = u"B2001"_s,
          .parentKey = u"B0"_s,
          .place = 0,
          .original = text,
          .english = EntryText{u"Topic 2001"_s, false}}},
        {"renamed above",
         [&] { execute(u"UPDATE "_s + entries + u" SET dt_IndicatorName = 'Neu' WHERE id = 1003"_s); },
         {.kind = Kind::Renamed, .view = 2, .key = u"B1003"_s, .original = text}},
        {"moved from above to below",
         [&] { execute(u"UPDATE "_s + entries + u" SET [Order] = 9999 WHERE id = 1005"_s); },
         {.kind = Kind::Moved, .view = 2, .key = u"B1005"_s, .parentKey = u"B0"_s}},
        {"removed above",
         [&] { execute(u"DELETE FROM "_s + entries + u" WHERE id = 1006"_s); },
         {.kind = Kind::Removed, .view = 2, .key = u"B1006"_s}},
        {"the selected one moved with what is below it",
         [&] { execute(u"UPDATE "_s + entries + u" SET [Order] = 10000 WHERE id = 1030"_s); },
         {.kind = Kind::Moved, .view = 2, .key = u"B1030"_s, .parentKey = u"B0"_s}},
        {"ordered",
         [&] { execute(u"UPDATE "_s + entries + u" SET [Order] = 1007 WHERE id = 1008"_s); },
         {.kind = Kind::Ordered, .view = 2}},
        {"rows of the node", [] {}, {.kind = Kind::Rows, .view = 2, .key = u"B1030"_s}},
        {"rows of any", [] {}, {.kind = Kind::Rows, .view = 1}},
    };
    std::vector<Seen> before;
    for (const auto& window : windows)
        before.push_back(seen(*window));
    for (const auto& [name, write, change] : table) {
        SCOPED_TRACE(name);
        write();
        announce({change});
        settle();
        for (size_t i = 0; i < windows.size(); ++i) {
            SCOPED_TRACE(i);
            // The parent of a new or moved one is opened; here it is open already.
            EXPECT_EQ(seen(*windows[i]), before[i]);
        }
        EXPECT_EQ(gBusy, 0);
    }
    EXPECT_TRUE(sameAsFresh(windows[1]->model()));
    EXPECT_TRUE(sameAsFresh(windows[2]->model()));
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(frmExplorerChanges, RowsThatGoTakeOnlyThemselvesOutOfTheSelection) {
    standSomewhere();
    Seen before = seen(*windows[0]);
    const QStringList gone = before.selectedRows.first().split(u'/');
    execute(u"DELETE FROM trel_Variable%1 WHERE fi_StudyNo = '%2' AND fi_VariableNo = '%3'"_s.arg(table(), gone[0],
                                                                                                  gone[1]));
    announce({{.kind = Kind::Rows, .view = 2, .key = u"B1030"_s}});
    settle();
    const Seen after = seen(*windows[0]);
    EXPECT_EQ(after.selectedRows, before.selectedRows.mid(1));
    EXPECT_EQ(after.currentRow, before.currentRow);
    EXPECT_EQ(after.topRow, before.topRow);
    EXPECT_EQ(after.panelA, after.selectedRows.first());
    // All of them: the one behind them is next.
    const QStringList next = list(*windows[0])
                                 .model()
                                 ->index(list(*windows[0]).selectedPlaces().back() + 1, 0)
                                 .data()
                                 .toString()
                                 .split(u'/');
    for (const QString& row : after.selectedRows)
        execute(u"DELETE FROM trel_Variable%1 WHERE fi_StudyNo = '%2' AND fi_VariableNo = '%3'"_s.arg(
            table(), row.section(u'/', 0, 0), row.section(u'/', 1)));
    announce({{.kind = Kind::Rows, .view = 2, .key = u"B1030"_s}});
    settle();
    ASSERT_EQ(seen(*windows[0]).selectedRows.size(), 1);
    EXPECT_EQ(seen(*windows[0]).topRow, before.topRow);
    EXPECT_EQ(seen(*windows[0]).panelA, seen(*windows[0]).selectedRows.first());
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(frmExplorerChanges, TheSelectionLeavesWhatGoesInEveryWindow) {
    standSomewhere();
    ASSERT_TRUE(windows[3]->showNode(u"B1043"_s));
    execute(u"DELETE FROM tkey_%1 WHERE id = 1030 OR fid = 1030"_s.arg(table()));
    announce({{.kind = Kind::Removed, .view = 2, .key = u"B1030"_s}});
    settle();
    for (const size_t i : {0u, 1u, 3u}) {
        SCOPED_TRACE(i);
        const Seen now = seen(*windows[i]);
        EXPECT_TRUE(now.selectedNode.endsWith(u"1031"_s)) << qPrintable(now.selectedNode);
        EXPECT_TRUE(now.selectedRows.isEmpty());
        EXPECT_EQ(windows[i]->findChild<ElidedLabel*>(u"lblTitle(1)"_s)->text(), now.selectedNode);
        EXPECT_EQ(now.panelA, u"/"_s);
        EXPECT_EQ(now.filter, QString());
    }
    expectFresh();
}

TEST_F(frmExplorerChanges, AnEditedEntryComesIntoViewWithTheKeyboardOnTheTree) {
    frmExplorer& window = *windows[0];
    window.activateWindow();
    list(window).setFocus();
    tree(window).collapseAll();
    add(2001, 1035, 1);
    announce({{.kind = Kind::Added,
               .view = 2,
               .key = u"B2001"_s,
               .parentKey = u"B1035"_s,
               .original = EntryText{u"Thema 2001"_s, false}}});
    ASSERT_TRUE(window.model().reveal(u"B2001"_s));
    settle();
    const QModelIndex index = indexOf(window, u"Thema 2001"_s);
    EXPECT_TRUE(tree(window).viewport()->rect().contains(tree(window).visualRect(index).center()));
    EXPECT_EQ(tree(window).currentIndex(), index);
    EXPECT_EQ(window.place(), frmExplorer::Place::Tree);
    EXPECT_TRUE(tree(window).hasFocus());
    ASSERT_FALSE(window.model().reveal(u"B4711"_s));
    // Elsewhere its parent is open, and nothing else has moved.
    EXPECT_EQ(seen(*windows[1]).topNode, tree(*windows[1]).model()->index(0, 0).data().toString());
    EXPECT_TRUE(tree(*windows[1]).isExpanded(indexOf(*windows[1], u"Topic 1035"_s)));
    EXPECT_EQ(indexOf(*windows[1], u"Topic 1035"_s).model()->index(0, 0, indexOf(*windows[1], u"Topic 1035"_s)).data(),
              QString());
}

TEST_F(frmExplorerChanges, EntriesThatNoWayLeadsToFollow) {
    const auto label = [&] { return windows[0]->findChild<QLabel*>(u"lblUnreached"_s); };
    EXPECT_TRUE(label()->isHidden());
    execute(u"UPDATE tkey_%1 SET fid = 1044 WHERE id = 1030"_s.arg(table()));
    announce({{.kind = Kind::Moved, .view = 2, .key = u"B1030"_s, .parentKey = u"B1044"_s}});
    EXPECT_FALSE(label()->isHidden());
    EXPECT_TRUE(label()->text().contains(u" 6\n"_s)) << qPrintable(label()->text());
    execute(u"UPDATE tkey_%1 SET fid = 0 WHERE id = 1030"_s.arg(table()));
    announce({{.kind = Kind::Moved, .view = 2, .key = u"B1030"_s, .parentKey = u"B0"_s}});
    EXPECT_TRUE(label()->isHidden());
    expectFresh();
}

TEST_F(frmExplorerChanges, AReadingOfTheTreeUnderAPointerOrKeyFiresNothing) {
    frmExplorer& window = *windows[0];
    int told = 0;
    const QMetaObject::Connection listening =
        QObject::connect(tree(window).selectionModel(), &QItemSelectionModel::selectionChanged, &window, [&] {
            ++told;
            EXPECT_GT(gBusy, 0);
        });
    ASSERT_TRUE(window.showNode(u"B1030"_s));
    told = 0;
    window.model().rebuild();
    EXPECT_GT(told, 0);
    EXPECT_EQ(seen(window).selectedNode, u"Thema 1030"_s);
    QObject::disconnect(listening);
    // Down goes on from the node that was selected before.
    tree(window).setFocus();
    QTest::keyClick(&tree(window), Qt::Key_Down);
    EXPECT_EQ(window.model().state.selectedKey, u"B1031"_s);
}
