#include "explorer/frmExplorer.h"

#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "language/mdLanguage.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "widgets/ElidedLabel.h"
#include "widgets/FactsStrip.h"
#include "widgets/VariableListView.h"

#include <QApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QTest>
#include <QToolButton>
#include <QTreeView>

using namespace Qt::StringLiterals;

namespace {

/// An explorer on the sample archive: three studies of 42 variables each and category views.
class frmExplorerTest : public WindowTest {
protected:
    frmExplorer* window = nullptr;
    QTreeView* tree = nullptr;
    VariableListView* list = nullptr;
    QLineEdit* filter = nullptr;

    void SetUp() override { openSampleArchive(); }

    void open(int view) { use(frmExplorer::OpenExplorerView(view)); }

    void use(frmExplorer* explorer) {
        window = explorer;
        window->resize(window->sizeHint());
        tree = find<QTreeView>(u"tvTreeView"_s);
        list = find<VariableListView>(u"lvListView"_s);
        filter = find<QLineEdit>(u"txtQuickFilter"_s);
        window->activateWindow();
        settle();
    }

    template<class Widget>
    Widget* find(const QString& name) {
        return window->findChild<Widget*>(name);
    }

    static QPoint middleOf(const QAbstractItemView& view, const QModelIndex& index) {
        return view.visualRect(index).center();
    }

    /// Clicks on the node of that name, opening the way to it.
    void clickNode(const QString& name) {
        tree->expandAll();
        const QModelIndexList found = tree->model()->match(tree->model()->index(0, 0), Qt::DisplayRole, name, 1,
                                                           Qt::MatchExactly | Qt::MatchRecursive);
        ASSERT_EQ(found.size(), 1) << name.toStdString();
        tree->scrollTo(found[0]);
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, {}, middleOf(*tree, found[0]));
    }

    void clickRow(int row, Qt::KeyboardModifiers keys = {}) {
        list->scrollTo(list->model()->index(row, 0));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, keys, middleOf(*list, list->model()->index(row, 0)));
    }

    void clickHeading(int column) {
        QHeaderView* header = list->horizontalHeader();
        QTest::mouseClick(
            header->viewport(), Qt::LeftButton, {},
            {header->sectionViewportPosition(column) + header->sectionSize(column) / 2, header->height() / 2});
    }

    QString name(int row) const { return list->model()->index(row, 0).data().toString(); }

    QStringList selectedNames() const {
        QStringList names;
        for (const int row : window->selectedRows())
            names << window->model().list.rows[static_cast<size_t>(row)].Text;
        return names;
    }

    QString fact(const QString& key, const QString& suffix = {}) {
        return find<FactsStrip>(u"sbStatusBarV"_s + suffix)->text(key);
    }

    void press(const QString& key, const QString& suffix = {}) {
        QTest::mouseClick(find<FactsStrip>(u"sbStatusBarV"_s + suffix)->cell(key), Qt::LeftButton);
    }

    QStringList assignments(const QString& suffix = {}) {
        QStringList texts;
        const auto* box = find<QListWidget>(u"DBList1"_s + suffix);
        for (int i = 0; i < box->count(); ++i)
            texts << box->item(i)->text();
        return texts;
    }
};

} // namespace

TEST_F(frmExplorerTest, WindowsOfAViewAreNumberedUpwardsAndTitledInBothLanguages) {
    open(1);
    const std::unique_ptr<frmExplorer> first(window);
    EXPECT_EQ(window->windowTitle(), u"Studien 1"_s);
    EXPECT_EQ(find<QLabel>(u"lblTitle(0)"_s)->text(), u"Alle Studien (Originalsprache)"_s);
    EXPECT_TRUE(find<ElidedLabel>(u"lblTitle(1)"_s)->text().isEmpty());
    EXPECT_EQ(list->model()->headerData(3, Qt::Horizontal).toString(), u"Jahr"_s);

    gOptions.EnglishLanguage = true;
    std::unique_ptr<frmExplorer> second(frmExplorer::OpenExplorerView(1)), third(frmExplorer::OpenExplorerView(1));
    second.reset();
    std::unique_ptr<frmExplorer> fourth(frmExplorer::OpenExplorerView(1)), other(frmExplorer::OpenExplorerView(2));
    EXPECT_EQ(fourth->Tag, u"4"_s) << "a gap is not filled";
    EXPECT_EQ(other->Tag, u"1"_s);
    fourth.reset();
    third.reset();
    std::unique_ptr<frmExplorer> again(frmExplorer::OpenExplorerView(1));
    EXPECT_EQ(again->Tag, u"2"_s) << "but that of the highest is";

    setLanguage(1);
    mdLanguage::RefreshForms({first.get(), again.get()});
    EXPECT_EQ(first->windowTitle(), u"Studies 1"_s);
    EXPECT_EQ(find<QLabel>(u"lblTitle(0)"_s)->text(), u"All Studies (Original Language)"_s)
        << "open windows keep their contents";
    EXPECT_EQ(again->findChild<QLabel*>(u"lblTitle(0)"_s)->text(), u"All Studies (English)"_s);
    EXPECT_EQ(tree->model()->index(0, 0).data().toString(), u"Studies"_s);
    EXPECT_EQ(list->model()->headerData(1, Qt::Horizontal).toString(), u"Study"_s);
    EXPECT_EQ(list->model()->headerData(2, Qt::Horizontal).toString(), u"Block"_s);
    EXPECT_EQ(list->model()->headerData(3, Qt::Horizontal).toString(), u"Jahr"_s) << "stays German after a switch";
    EXPECT_EQ(find<FactsStrip>(u"sbStatusBarV"_s)->toolTipOf(u"back"_s), u"Previous variable (Alt+Up)"_s);
    std::unique_ptr<frmExplorer> fresh(frmExplorer::OpenExplorerView(1));
    const auto* headings = fresh->findChild<QTableView*>(u"lvListView"_s)->model();
    EXPECT_EQ(headings->headerData(3, Qt::Horizontal).toString(), u"Year"_s);
    EXPECT_EQ(headings->headerData(4, Qt::Horizontal).toString(), u"Label (English)"_s);
}

TEST_F(frmExplorerTest, AfterANodeTheAssignmentListStaysEmptyUntilARowIsClicked) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    EXPECT_EQ(window->place(), frmExplorer::Place::Tree);
    EXPECT_EQ(list->model()->rowCount(), 42);
    EXPECT_EQ(selectedNames(), QStringList(u"FALLNR"_s));
    EXPECT_EQ(fact(u"Position"_s), u"1 von 42"_s);
    EXPECT_EQ(fact(u"Label"_s), u"Fallnummer"_s);
    clickNode(u"Leben in Solvarden"_s);
    EXPECT_TRUE(fact(u"Variable"_s).isEmpty()) << "a group has no variables";
    clickNode(u"Leben in Solvarden 2018"_s);
    clickRow(2);
    EXPECT_EQ(fact(u"Variable"_s), u"FBTEIL"_s);
    EXPECT_FALSE(assignments().isEmpty());
    clickNode(u"Leben in Solvarden 2018"_s);
    EXPECT_EQ(selectedNames(), QStringList(u"FBTEIL"_s)) << "the node that is shown is not read again";
    clickNode(u"Leben in Solvarden 2014"_s);
    EXPECT_TRUE(assignments().isEmpty());

    open(2);
    clickNode(u"Vertrauen"_s);
    EXPECT_EQ(selectedNames(), QStringList(u"VGERICHT"_s));
    EXPECT_TRUE(assignments().isEmpty());
    clickRow(0);
    EXPECT_TRUE(assignments().contains(u"Vertrauen in die Gerichte"_s)) << "a click on what is selected already counts";
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
    gViews.set(2, ViewTable::Table, u"Nix"_s);
    open(2);
    EXPECT_EQ(asker.boxes.size(), 1u) << "a table that is missing is told of once";
    EXPECT_FALSE(find<QLabel>(u"lblUnreached"_s)->isVisible());
}

TEST_F(frmExplorerTest, TheFirstSelectedRowInListOrderIsShownAndStepsGoOnFromTheCurrentOne) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    window->setPanels(1);
    clickRow(6);
    clickRow(3, Qt::ControlModifier);
    clickRow(8, Qt::ControlModifier);
    EXPECT_EQ(fact(u"Variable"_s), u"REGION"_s);
    EXPECT_EQ(selectedNames(), (QStringList{u"REGION"_s, u"GESCHL"_s, u"GEBJAHR"_s}));
    press(u"next"_s);
    EXPECT_EQ(selectedNames(), QStringList(u"FAMST"_s)) << "the others are unselected";
    EXPECT_EQ(fact(u"Position"_s), u"10 von 42"_s);

    // Panel A walks the rows as they are sorted: by name, downwards.
    clickHeading(0);
    clickHeading(0);
    QTest::keyClick(list, Qt::Key_Home, Qt::AltModifier);
    const QString last = name(0);
    EXPECT_EQ(fact(u"Variable"_s), last);
    press(u"back"_s);
    EXPECT_EQ(fact(u"Variable"_s), last) << "nothing happens at the first row";
    press(u"next"_s);
    EXPECT_EQ(selectedNames(), QStringList(name(1)));
    EXPECT_LT(name(1), last);
    press(u"last"_s);
    EXPECT_EQ(selectedNames(), QStringList(name(41)));
    press(u"next"_s);
    EXPECT_EQ(fact(u"Variable"_s), name(41));
}

TEST_F(frmExplorerTest, TheThirdClickOnTheFirstHeadingBringsBackTheStatementsOrder) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    clickRow(2);
    clickHeading(0);
    EXPECT_EQ(name(0), u"ALTERJ"_s);
    EXPECT_EQ(selectedNames(), QStringList(u"FBTEIL"_s)) << "the selection goes with its row";
    clickHeading(0);
    EXPECT_GT(name(0), name(1));
    clickHeading(0);
    EXPECT_EQ(name(0), u"FALLNR"_s);
    // The keyboard does the same; a second column only turns around.
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(list, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(name(0), u"FALLNR"_s);
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(list, Qt::Key_5, Qt::ControlModifier);
    EXPECT_EQ(name(0), u"LZUFR"_s) << "Allgemeine Lebenszufriedenheit";
}

TEST_F(frmExplorerTest, ADoubleClickFillsPanelBAndLeavesItOutOfSight) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    auto* questionA = find<QPlainTextEdit>(u"txtQuestion"_s);
    auto* questionB = find<QPlainTextEdit>(u"txtQuestion_B"_s);
    EXPECT_FALSE(questionA->isVisible());
    clickRow(10);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(window->model().state.lVarWindow, 1);
    EXPECT_TRUE(questionA->isVisible());
    EXPECT_FALSE(questionB->isVisible());
    EXPECT_EQ(fact(u"Variable"_s, u"_B"_s), u"BILD"_s);
    EXPECT_FALSE(assignments(u"_B"_s).isEmpty());
    window->setPanels(2);
    EXPECT_TRUE(questionB->isVisible());

    // Panel B walks its own result set; neither list nor panel A follows, nor do they take it along.
    clickHeading(0);
    press(u"next"_s, u"_B"_s);
    EXPECT_EQ(fact(u"Position"_s, u"_B"_s), u"12 von 42"_s);
    EXPECT_EQ(fact(u"Variable"_s, u"_B"_s), u"ERWERB"_s);
    EXPECT_EQ(selectedNames(), QStringList(u"BILD"_s));
    press(u"last"_s, u"_B"_s);
    press(u"next"_s, u"_B"_s);
    EXPECT_EQ(fact(u"Position"_s, u"_B"_s), u"42 von 42"_s);
    press(u"first"_s, u"_B"_s);
    press(u"back"_s, u"_B"_s);
    EXPECT_EQ(fact(u"Position"_s, u"_B"_s), u"1 von 42"_s);
    EXPECT_EQ(fact(u"Variable"_s), u"BILD"_s);
    clickNode(u"Leben in Solvarden 2014"_s);
    EXPECT_EQ(fact(u"Studie"_s, u"_B"_s), u"SV2018"_s);
    EXPECT_EQ(find<ElidedLabel>(u"fidName_B"_s)->text(), u"Leben in Solvarden 2018"_s);
    EXPECT_EQ(find<ElidedLabel>(u"fidName"_s)->text(), u"Leben in Solvarden 2014"_s);
}

TEST_F(frmExplorerTest, SwitchesOfThePanelsWorkApart) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    clickRow(6);
    window->setPanels(2);
    QTest::keyClick(list, Qt::Key_Return);
    auto* questionA = find<QPlainTextEdit>(u"txtQuestion"_s);
    auto* questionB = find<QPlainTextEdit>(u"txtQuestion_B"_s);
    const QString german = questionA->toPlainText();
    EXPECT_EQ(fact(u"Label"_s), u"Geschlecht"_s);
    press(u"english"_s);
    EXPECT_TRUE(find<FactsStrip>(u"sbStatusBarV"_s)->isOn(u"english"_s));
    EXPECT_EQ(fact(u"Label"_s), u"Sex"_s);
    EXPECT_EQ(find<FactsStrip>(u"sbStatusBarV"_s)->toolTipOf(u"Label"_s), u"Label Geschlecht"_s)
        << "the tip keeps the original";
    EXPECT_EQ(fact(u"Label"_s, u"_B"_s), u"Geschlecht"_s);
    EXPECT_NE(questionA->toPlainText(), german);
    window->switchPanelLanguage();
    EXPECT_EQ(questionA->toPlainText(), german);

    questionB->setFocus();
    QTest::keyClick(questionB, Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(questionB->font().family(), gOptions.FixedFont) << "the panel with the keyboard";
    EXPECT_EQ(questionA->font().family(), gOptions.PropFont);
    press(u"fixed"_s, u"_B"_s);
    EXPECT_EQ(questionB->font().family(), gOptions.PropFont);
    press(u"list"_s, u"_B"_s);
    EXPECT_FALSE(find<QListWidget>(u"DBList1_B"_s)->isVisible());
    EXPECT_TRUE(find<QListWidget>(u"DBList1"_s)->isVisible());
    window->ChangeFont();
    EXPECT_EQ(questionA->font().family(), u"Courier New"_s);
    EXPECT_EQ(list->font().family(), u"Courier New"_s);
    window->ChangeFont();
    EXPECT_EQ(find<QListWidget>(u"DBList1"_s)->font().family(), u"MS Sans Serif"_s);
}

TEST_F(frmExplorerTest, TheTabKeyFollowsTheEyeThroughAPanelWithTheStripAsOneStop) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    window->setPanels(1);
    for (const bool top : {true, false}) {
        gOptions.AlignSBVTop = top;
        window->optionsApplied();
        auto* strip = find<FactsStrip>(u"sbStatusBarV"_s);
        strip->cell(u"english"_s)->setFocus();
        QTest::keyClick(strip->cell(u"english"_s), Qt::Key_Right);
        EXPECT_TRUE(strip->cell(u"fixed"_s)->hasFocus());
        QTest::keyClick(strip->cell(u"fixed"_s), Qt::Key_Left);
        QTest::keyClick(strip->cell(u"english"_s), Qt::Key_Tab);
        auto* first = find<QWidget>(u"lvValues"_s); // this variable has no question
        auto* box = find<QWidget>(u"DBList1"_s);
        EXPECT_TRUE((top ? first : box)->hasFocus()) << top;
        QTest::keyClick(window->focusWidget(), Qt::Key_Backtab);
        EXPECT_TRUE(strip->cell(u"english"_s)->hasFocus()) << top;
    }
}

TEST_F(frmExplorerTest, AnAssignmentLeadsToItsCategoryWhereverItIsShown) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    window->setPanels(1);
    filter->setText(u"VPARL"_s);
    clickRow(0);
    auto* box = find<QListWidget>(u"DBList1"_s);
    const QList<QListWidgetItem*> trust = box->findItems(u"Vertrauen"_s, Qt::MatchExactly);
    ASSERT_EQ(trust.size(), 1);
    box->setCurrentItem(trust[0]);
    QTest::keyClick(box, Qt::Key_Return);
    ASSERT_EQ(Form::open().size(), 2u) << "no window of the view was open";
    auto* topics = dynamic_cast<frmExplorer*>(Form::open()[1]);
    EXPECT_EQ(topics->viewNumber(), 2);
    EXPECT_EQ(topics->model().selectedNode()->Text, u"Vertrauen"_s);
    EXPECT_GT(topics->model().list.rows.size(), 4u);

    topics->showNode(u"B1"_s);
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_EQ(Form::open().size(), 2u);
    EXPECT_EQ(topics->model().selectedNode()->Text, u"Vertrauen"_s);

    // Within its own view a window stays where it is.
    use(topics);
    clickRow(0);
    window->setPanels(1);
    auto* own = find<QListWidget>(u"DBList1"_s);
    topics->showNode(u"B1"_s);
    own->addItem(u"fort"_s);
    own->setCurrentRow(own->count() - 1);
    own->currentItem()->setData(Qt::UserRole, u"B999"_s);
    QTest::keyClick(own, Qt::Key_Return);
    EXPECT_EQ(asker.lastText(), u"Zuordnung nicht gefunden"_s);
    own->currentItem()->setData(Qt::UserRole, u"B14"_s);
    QTest::keyClick(own, Qt::Key_Return);
    EXPECT_EQ(topics->model().selectedNode()->Key, u"B14"_s);
    EXPECT_EQ(Form::open().size(), 2u);
}

TEST_F(frmExplorerTest, TheQuickFilterHidesRowsFromEverySelectionAndStep) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    clickRow(5);
    QTest::keyClick(list, Qt::Key_K, Qt::ControlModifier);
    ASSERT_TRUE(filter->hasFocus());
    EXPECT_EQ(window->place(), frmExplorer::Place::List);
    QTest::keyClicks(filter, u"WOHN gRÖß"_s);
    ASSERT_EQ(list->model()->rowCount(), 1);
    EXPECT_EQ(selectedNames(), QStringList(u"ORTGR"_s)) << "what is still in view stays selected";
    const QString german = fact(u"Label"_s);
    filter->setText(u"zzz"_s);
    press(u"english"_s);
    EXPECT_NE(fact(u"Label"_s), german) << "also for a row that is filtered away";
    press(u"english"_s);
    filter->setText(u"trust"_s);
    ASSERT_EQ(list->model()->rowCount(), 4) << "English labels are searched too";
    EXPECT_TRUE(selectedNames().isEmpty());
    QTest::keyClick(filter, Qt::Key_Down);
    EXPECT_TRUE(list->hasFocus());
    EXPECT_EQ(selectedNames(), QStringList(name(0)));
    press(u"last"_s);
    EXPECT_EQ(fact(u"Variable"_s), name(3));
    QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selectedNames().size(), 4);
    filter->setFocus();
    QTest::keyClick(filter, Qt::Key_Escape);
    EXPECT_EQ(list->model()->rowCount(), 42);
    EXPECT_EQ(selectedNames().size(), 4);
    filter->setText(u"trust"_s);
    clickNode(u"Leben in Solvarden 2014"_s);
    EXPECT_TRUE(filter->text().isEmpty());
    EXPECT_EQ(list->model()->rowCount(), 40);
}

TEST_F(frmExplorerTest, AVariableIsFoundAcrossStudiesFromAnEntryThatListsNothing) {
    open(1);
    clickNode(u"Leben in Solvarden"_s);
    EXPECT_EQ(list->accessibleDescription(),
              u"Dieser Eintrag hat keine eigenen Variablen. Der Schnellfilter sucht in der ganzen Sicht."_s);
    filter->setFocus();
    QTest::keyClicks(filter, u"lzufr"_s);
    QStringList studies;
    for (int row = 0; row < list->model()->rowCount(); ++row)
        studies << list->model()->index(row, 1).data().toString();
    EXPECT_EQ(studies, (QStringList{u"SV2014"_s, u"SV2018"_s, u"SV2022"_s}));
    EXPECT_EQ(find<QLabel>(u"lblRowCount"_s)->text(), u"3 von 125 Variablen"_s);
    EXPECT_GE(list->columnWidth(1), list->fontMetrics().horizontalAdvance(u"SV2014"_s));
    QTest::keyClick(filter, Qt::Key_Down);
    clickRow(1);
    EXPECT_EQ(fact(u"Studie"_s), u"SV2018"_s);
    EXPECT_EQ(fact(u"Position"_s), u"23 von 42"_s);
    press(u"next"_s);
    EXPECT_EQ(fact(u"Studie"_s), u"SV2022"_s);
    QTest::keyClick(list, Qt::Key_Return);
    EXPECT_EQ(fact(u"Studie"_s, u"_B"_s), u"SV2022"_s);
    filter->clear();
    EXPECT_EQ(list->model()->rowCount(), 0);
    EXPECT_TRUE(window->selectedRows().empty());
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}

TEST_F(frmExplorerTest, ThePanelOpensWithTheFirstVariableChosenAndKeepsItsRowInView) {
    open(1);
    window->resize(window->width(), window->fontMetrics().height() * 26);
    settle();
    auto* question = find<QPlainTextEdit>(u"txtQuestion"_s);
    clickNode(u"Leben in Solvarden 2018"_s);
    const QModelIndex lowest = list->indexAt({5, list->viewport()->height() - 12});
    const auto wait = [] { QTest::qWait(QApplication::doubleClickInterval() + 50); };
    wait();
    EXPECT_FALSE(question->isVisible()) << "the row that a list begins with is nobody's choice";
    clickRow(lowest.row());
    EXPECT_FALSE(question->isVisible()) << "nothing moves under a pointer that may click again";
    wait();
    EXPECT_TRUE(question->isVisible());
    EXPECT_TRUE(list->viewport()->rect().contains(list->visualRect(list->model()->index(lowest.row(), 0)).center()));
    window->setPanels(0);
    clickRow(0);
    wait();
    EXPECT_FALSE(question->isVisible()) << "closed by the user";
    std::unique_ptr<frmExplorer> first(window);
    open(2);
    window->showNode(u"B14"_s);
    clickRow(0);
    wait();
    EXPECT_EQ(window->model().state.lVarWindow, 0) << "in other windows too";
    window->setPanels(2);
    open(1);
    EXPECT_EQ(window->model().state.lVarWindow, 0);
    clickNode(u"Leben in Solvarden 2018"_s);
    QTest::keyClick(list, Qt::Key_Down);
    wait();
    EXPECT_EQ(window->model().state.lVarWindow, 2) << "as it was left";
}

TEST_F(frmExplorerTest, ValuesStandBesideTheQuestionAndAreCopied) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    window->setPanels(1);
    auto* values = find<QTableView>(u"lvValues"_s);
    const auto cell = [&](int row, int column) { return values->model()->index(row, column).data().toString(); };
    filter->setText(u"lzufr"_s);
    clickRow(0);
    ASSERT_EQ(values->model()->rowCount(), 4);
    EXPECT_EQ(cell(1, 0), u"10"_s);
    EXPECT_EQ(cell(2, 1), u"weiß nicht"_s);
    EXPECT_EQ(cell(1, 2), QString());
    EXPECT_EQ(cell(2, 2), u"Missing"_s);
    const auto labelWidth = [&](int row) { return values->visualRect(values->model()->index(row, 1)).width(); };
    EXPECT_EQ(labelWidth(1), labelWidth(2) + values->columnWidth(2)) << "no mark leaves its room to the label";
    EXPECT_EQ(find<ElidedLabel>(u"lblValues"_s)->text(), u"Missing-Definition: 98;99 · Format: F2.0"_s);
    QTest::keyClick(values, Qt::Key_Down);
    QTest::keyClick(values, Qt::Key_End);
    QTest::keyClick(values, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(asker.clipboardText, u"99\tkeine Angabe\tMissing"_s);
    QTest::keyClick(values, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(values, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(asker.clipboardText.count(u"\r\n"_s), 4) << "with what stands below";
    EXPECT_TRUE(find<QPlainTextEdit>(u"txtQuestion"_s)->isVisible());
    filter->setText(u"fallnr"_s);
    clickRow(0);
    EXPECT_EQ(values->model()->rowCount(), 0);
    EXPECT_FALSE(find<QPlainTextEdit>(u"txtQuestion"_s)->isVisible()) << "no question leaves the room to the values";
    clickNode(u"Leben in Solvarden"_s);
    EXPECT_TRUE(find<ElidedLabel>(u"lblValues"_s)->text().isEmpty());
}

TEST_F(frmExplorerTest, AColumnIsAsWideAsItsTextsAndNarrowWithoutAny) {
    gDatabase.CurrentDatabase()->Execute(u"UPDATE tkey_Variable SET dt_EnVarLabel = Null;"_s);
    gOptions.AutomaticVariableColumnWidth = false;
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    const int letter = list->fontMetrics().averageCharWidth();
    const QString longest = u"Haushaltsnettoeinkommen im Monat in Kronen"_s;
    EXPECT_GE(list->columnWidth(4), list->fontMetrics().horizontalAdvance(longest));
    EXPECT_LE(list->columnWidth(5), 6 * letter) << "empty in every row";
    EXPECT_LT(list->columnWidth(3), 10 * letter) << "the year";
    list->horizontalHeader()->resizeSection(3, 200);
    clickNode(u"Leben in Solvarden 2014"_s);
    EXPECT_NEAR(list->columnWidth(3), 200, 1) << "what a user has set stays";
    gDatabase.CurrentDatabase()->Execute(u"UPDATE tkey_Variable SET dt_EnVarLabel = dt_VarLabel;"_s);
    clickNode(u"Leben in Solvarden 2018"_s);
    EXPECT_GE(list->columnWidth(5), list->fontMetrics().horizontalAdvance(longest));
}

TEST_F(frmExplorerTest, TypingFindsTheRowAndHandlersLeaveWhileWindowsAreRefilled) {
    open(1);
    clickNode(u"Leben in Solvarden 2018"_s);
    list->setFocus();
    QTest::keyClicks(list, u"gebj"_s);
    EXPECT_EQ(selectedNames(), QStringList(u"GEBJAHR"_s));
    EXPECT_EQ(fact(u"Variable"_s), u"GEBJAHR"_s);
    {
        const BusyScope busy;
        clickRow(0);
        EXPECT_EQ(fact(u"Variable"_s), u"GEBJAHR"_s);
    }
    clickRow(1);
    EXPECT_EQ(fact(u"Variable"_s), u"INTDAT"_s);
    QTest::keyClick(list, Qt::Key_End);
    EXPECT_EQ(selectedNames(), QStringList(name(41)));
    QTest::keyClick(list, Qt::Key_Home, Qt::ShiftModifier);
    EXPECT_EQ(selectedNames().size(), 42);
    QTest::keyClick(list, Qt::Key_Down);
    QTest::keyClick(list, Qt::Key_Home);
    EXPECT_EQ(selectedNames(), QStringList(name(0)));
}

TEST_F(frmExplorerTest, NothingOfTheEntryBeforeStandsAboveABlankPanel) {
    open(2);
    window->setPanels(1);
    window->showNode(u"B14"_s);
    clickRow(0);
    auto* title = find<ElidedLabel>(u"fidName"_s);
    auto* places = find<QListWidget>(u"DBList1"_s);
    EXPECT_EQ(title->text(), u"Vertrauen"_s);
    EXPECT_EQ(places->item(0)->toolTip(), Qt::convertFromPlainText(u"Themen"_s));
    setLanguage(1);
    window->refreshTitles();
    EXPECT_EQ(places->item(0)->toolTip(), Qt::convertFromPlainText(u"Topics"_s));
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM trel_VariableTopic WHERE fid = 13;"_s);
    window->showNode(u"B13"_s);
    EXPECT_TRUE(fact(u"Variable"_s).isEmpty());
    EXPECT_TRUE(title->text().isEmpty());
}

TEST_F(frmExplorerTest, ColumnsSortingAndSplittersOutliveTheWindow) {
    open(1);
    list->horizontalHeader()->resizeSection(1, 150);
    list->horizontalHeader()->resizeSection(5, 700);
    clickHeading(4);
    delete window;
    open(1);
    EXPECT_NEAR(list->columnWidth(1), 150, 1);
    EXPECT_NEAR(list->columnWidth(5), 700, 2) << "the last one too";
    clickNode(u"Leben in Solvarden 2018"_s);
    EXPECT_EQ(name(0), u"LZUFR"_s) << "sorted by label";
    std::unique_ptr<frmExplorer> topics(frmExplorer::OpenExplorerView(2));
    EXPECT_LT(topics->findChild<QTableView*>(u"lvListView"_s)->columnWidth(1), 120) << "category views have their own";
}

TEST_F(frmExplorerTest, EntriesThatNoWayLeadsToAreNamedAboveTheTree) {
    open(2);
    EXPECT_FALSE(find<QLabel>(u"lblUnreached"_s)->isVisible());
    gDatabase.CurrentDatabase()->Execute(u"UPDATE tkey_Topic SET fid = 14 WHERE id = 13;"_s);
    open(2);
    EXPECT_TRUE(find<QLabel>(u"lblUnreached"_s)->isVisible());
    EXPECT_EQ(find<QLabel>(u"lblUnreached"_s)->text(),
              u"Einträge, zu denen kein Weg führt: 2\nVertrauen (14), Politik (13)"_s);
    EXPECT_FALSE(window->showNode(u"B14"_s));
    EXPECT_TRUE(asker.boxes.empty()) << qPrintable(asker.lastText());
}
