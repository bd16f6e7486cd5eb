#include "search/frmFind.h"

#include "app/MainWindow.h"
#include "catalogue/CDaoDatabase.h"
#include "config/Options.h"
#include "editing/frmDocument.h"
#include "explorer/frmExplorer.h"
#include "search/SearchTerms.h"
#include "widgets/ChildArea.h"
#include "widgets/HitListView.h"
#include "widgets/VariableListView.h"
#include "widgets/termMarks.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTextBlock>
#include <QTextEdit>
#include <QTextLayout>
#include <QTreeView>

namespace {

/// The extended search in the frame with the sample archive.
class frmFindTest : public MainWindow {
protected:
    frmFind* window = nullptr;
    HitListView* hits = nullptr;

    void SetUp() override {
        openWithArchive();
        show();
    }
    void show() {
        frmFind::showFind();
        window = dynamic_cast<frmFind*>(desktop().activeForm());
        ASSERT_NE(window, nullptr);
        hits = window->findChild<HitListView*>(u"lstHits"_s);
        settle();
    }

    template<class Widget>
    Widget* find(const QString& name) const {
        return window->findChild<Widget*>(name);
    }
    void type(const QString& field, const QString& text) {
        auto* line = find<QComboBox>(field)->lineEdit();
        line->setFocus();
        line->selectAll();
        QTest::keyClicks(line, text);
    }
    void only(std::initializer_list<int> boxes) {
        for (int i = 0; i < SearchRequest::boxes; ++i)
            find<QCheckBox>(arrayName(u"chkSearch"_s, i))->setChecked(std::ranges::find(boxes, i) != boxes.end());
    }
    void wait() {
        for (QDeadlineTimer end(10000); window->search().isRunning() && !end.hasExpired();)
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        settle();
    }
    void search(const QString& term) {
        type(u"txtFind"_s, term);
        QTest::keyClick(find<QComboBox>(u"txtFind"_s)->lineEdit(), Qt::Key_Return);
        wait();
    }
    QString status() const { return find<QLabel>(u"sbStatus"_s)->text(); }
    /// Opens the first hit that has the words.
    void openHit(const QString& words) {
        for (int row = 0; row < hits->model()->rowCount(); ++row)
            if (hits->model()->index(row, 0).data().toString().contains(words)) {
                hits->setFocus();
                hits->goTo(row);
                QTest::keyClick(hits, Qt::Key_Return);
                settle();
                return;
            }
        FAIL() << words.toStdString();
    }
    static frmExplorer* explorer() { return dynamic_cast<frmExplorer*>(desktop().activeForm()); }
    static QString variable() { return explorer()->model().panelA.variable(); }
    static QString study() { return explorer()->model().panelA.study(); }
    static QStringList markedIn(const QTextDocument& document) {
        QStringList marked;
        for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
            for (const QTextLayout::FormatRange& range : block.layout()->formats())
                marked << block.text().mid(range.start, range.length);
        return marked;
    }
};

TEST_F(frmFindTest, OpensOnceWithEveryBoxSetForTheViewsOfTheCatalogue) {
    EXPECT_TRUE(find<QCheckBox>(u"chkSearch(0)"_s)->isChecked());
    EXPECT_TRUE(find<QCheckBox>(u"chkSearch(4)"_s)->isVisible());
    EXPECT_FALSE(find<QCheckBox>(u"chkSearch(5)"_s)->isVisible());
    EXPECT_FALSE(find<QCheckBox>(u"chkSearch(11)"_s)->isVisible()); // of a view without descriptions
    EXPECT_EQ(find<QComboBox>(u"cmbAndOr"_s)->currentIndex(), -1);
    EXPECT_EQ(find<QComboBox>(u"cmbLanguage"_s)->currentIndex(), 0);
    EXPECT_FALSE(find<QPushButton>(u"cmd_Stop"_s)->isEnabled());
    frmExplorer::OpenExplorerView(2);
    frmFind::showFind();
    EXPECT_EQ(desktop().activeForm(), window);
    gOptions.EnglishLanguage = true;
    find<QPushButton>(u"cmd_Close"_s)->click();
    settle();
    show();
    EXPECT_EQ(find<QComboBox>(u"cmbLanguage"_s)->currentIndex(), 1);
}

TEST_F(frmFindTest, AsksForATermAndAJoin) {
    type(u"txtFind2"_s, u"zwei"_s);
    QTest::mouseClick(find<QPushButton>(u"cmd_Find"_s), Qt::LeftButton);
    EXPECT_EQ(asker.lastText(), u"Bitte einen Suchbegriff eingeben"_s);
    EXPECT_TRUE(find<QComboBox>(u"txtFind"_s)->hasFocus() || find<QComboBox>(u"txtFind"_s)->lineEdit()->hasFocus());
    type(u"txtFind"_s, u"eins"_s);
    QTest::mouseClick(find<QPushButton>(u"cmd_Find"_s), Qt::LeftButton);
    EXPECT_EQ(asker.lastText(), u"Bitte eine Verknüpfung (und bzw. oder) eingeben"_s);
    EXPECT_TRUE(find<QComboBox>(u"cmbAndOr"_s)->hasFocus());
    EXPECT_FALSE(window->search().isRunning());
}

TEST_F(frmFindTest, ListsHitsThatEnterOpensWithTheTermsMarked) {
    only({0, 18, 19, 20});
    search(u"ZUFRIED"_s);
    EXPECT_EQ(status(), u"0 in Studien , 7 in Variablen "_s);
    frmExplorer* before = nullptr; // the catalogue's first window
    for (Form* form : Form::open())
        before = before ? before : dynamic_cast<frmExplorer*>(form);
    ASSERT_NE(before, nullptr);
    main->perform(u"EXPL2"_s); // another window, which makes room
    frmExplorer* other = explorer();
    desktop().activate(*window);
    openHit(u"SV2018, LZUFR"_s);
    EXPECT_EQ(explorer(), before);
    EXPECT_EQ(study() + u' ' + variable(), u"SV2018 LZUFR"_s);
    EXPECT_EQ(before->model().state.lVarWindow, 1);
    const QTextDocument& text = *before->questionText()->document();
    EXPECT_EQ(markedIn(text), QStringList(text.toPlainText().count(u"zufried"_s), u"zufried"_s));
    EXPECT_EQ(before->questionText()->textCursor().selectedText(), u"zufried"_s);
    EXPECT_TRUE(before->findChild<VariableListView*>(u"lvListView"_s)->hasFocus());
    EXPECT_TRUE(other->parentWidget()->isMinimized());
    EXPECT_FALSE(window->parentWidget()->isMinimized());
    EXPECT_FALSE(window->parentWidget()->geometry().intersects(before->parentWidget()->geometry()));
    EXPECT_EQ(window->parentWidget()->y(), before->parentWidget()->y());
}

TEST_F(frmFindTest, KeepsTheHitInSightThatWindowsAreArrangedFor) {
    gOptions.SortByPosition = true;
    search(u"e"_s);
    frmExplorer::OpenExplorerView(2)->parentWidget()->showMaximized();
    desktop().activate(*window);
    const int last = hits->model()->rowCount() - 1;
    hits->goTo(last);
    QTest::keyClick(hits, Qt::Key_Return);
    settle();
    const QRect row = hits->visualRect(hits->model()->index(last, 0));
    ASSERT_LT(hits->viewport()->height(), last * row.height());
    EXPECT_TRUE(hits->viewport()->rect().contains(row.center())) << row.top() << ' ' << hits->viewport()->height();
}

TEST_F(frmFindTest, GoesToTheNextHitAlsoFromTheExplorer) {
    gOptions.SortByPosition = false;
    only({18});
    search(u"LZUFR"_s);
    ASSERT_EQ(hits->model()->rowCount(), 4);
    QTest::keyClick(hits, Qt::Key_F4); // none was looked at yet
    settle();
    EXPECT_EQ(study(), u"SV2014"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4);
    settle();
    EXPECT_EQ(study(), u"SV2018"_s);
    EXPECT_EQ(hits->currentRow(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4, Qt::ShiftModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4, Qt::ShiftModifier); // there is none before
    settle();
    EXPECT_EQ(study(), u"SV2014"_s);
    // Also from one that was away.
    gOptions.SortByPosition = true;
    explorer()->parentWidget()->showMinimized();
    settle();
    desktop().activate(*window);
    openHit(u"SV2014"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4);
    settle();
    EXPECT_EQ(study(), u"SV2018"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_F4, Qt::ShiftModifier);
    settle();
    // A window that hits don't lead to keeps its own key.
    auto* plain = new MainChild(u"sample"_s);
    auto* field = new QLineEdit(plain);
    main->adopt(*plain);
    field->setFocus();
    settle();
    QTest::keyClick(field, Qt::Key_F4);
    EXPECT_EQ(hits->currentRow(), 0);
}

TEST_F(frmFindTest, EmptiesAQuickFilterThatHidesTheHitAndFollowsTheLanguageInPanelAAlone) {
    gOptions.SortByPosition = false;
    only({18});
    search(u"LZUFR"_s);
    openHit(u"SV2018"_s);
    auto* filter = explorer()->findChild<QLineEdit*>(u"txtQuickFilter"_s);
    filter->setText(u"GESCHL"_s);
    settle();
    desktop().activate(*window);
    find<QComboBox>(u"cmbLanguage"_s)->setCurrentIndex(1);
    openHit(u"SV2018"_s);
    EXPECT_EQ(variable(), u"LZUFR"_s);
    EXPECT_EQ(filter->text(), QString());
    EXPECT_TRUE(explorer()->model().state.bVarWindowForEnglishLanguage);
    EXPECT_FALSE(explorer()->model().state.bELTree);
}

TEST_F(frmFindTest, LeadsToDescriptionsWithTheTermsMarked) {
    only({9, 10});
    search(u"die"_s);
    ASSERT_GT(hits->model()->rowCount(), 0);
    QTest::keyClick(hits, Qt::Key_Return);
    settle();
    auto* document = dynamic_cast<frmDocument*>(desktop().activeForm());
    ASSERT_NE(document, nullptr);
    EXPECT_FALSE(markedIn(*document->textEdit()->document()).isEmpty());
    EXPECT_EQ(document->textEdit()->textCursor().selectedText().toLower(), u"die"_s);
    EXPECT_TRUE(document->textEdit()->hasFocus());
}

TEST_F(frmFindTest, SaysWhereAHitHasGone) {
    gOptions.SortByPosition = false;
    only({1, 10, 18});
    search(u"arbeit"_s);
    const int rows = hits->model()->rowCount();
    ASSERT_GT(rows, 0);
    gDatabase.CurrentDatabase()->Execute(u"DELETE FROM tkey_Topic;"_s);
    hits->goTo(0);
    QTest::keyClick(hits, Qt::Key_Return);
    EXPECT_EQ(asker.lastText(), u"Element nicht gefunden"_s);
    EXPECT_EQ(hits->model()->rowCount(), rows);
}

TEST_F(frmFindTest, KeepsItsRowThroughSorting) {
    only({18});
    search(u"ZUFR"_s);
    ASSERT_GE(hits->model()->rowCount(), 4);
    hits->goTo(1);
    const QString current = hits->currentIndex().siblingAtColumn(0).data().toString();
    const auto texts = [&] {
        QStringList all;
        for (int row = 0; row < hits->model()->rowCount(); ++row)
            all << hits->model()->index(row, 0).data().toString();
        return all;
    };
    const QStringList found = texts();
    for (const int key : {Qt::Key_1, Qt::Key_1, Qt::Key_2, Qt::Key_3}) {
        QTest::keyClick(hits, static_cast<Qt::Key>(key), Qt::AltModifier);
        EXPECT_EQ(hits->currentIndex().siblingAtColumn(0).data().toString(), current);
    }
    QTest::keyClick(hits, Qt::Key_1, Qt::AltModifier);
    QTest::keyClick(hits, Qt::Key_1, Qt::AltModifier);
    QStringList backwards = found;
    backwards.sort();
    std::ranges::reverse(backwards);
    EXPECT_EQ(texts(), backwards);
    QTest::keyClick(hits, Qt::Key_1, Qt::AltModifier);
    EXPECT_EQ(texts(), found);
}

TEST_F(frmFindTest, IsClosedOrItsCatalogueIsInTheMiddleOfASearch) {
    type(u"txtFind"_s, u"e"_s);
    QTest::mouseClick(find<QPushButton>(u"cmd_Find"_s), Qt::LeftButton);
    EXPECT_TRUE(window->search().isRunning());
    EXPECT_FALSE(find<QPushButton>(u"cmd_Find"_s)->isEnabled());
    find<QPushButton>(u"cmd_Close"_s)->click();
    settle();
    EXPECT_FALSE(dynamic_cast<frmFind*>(desktop().activeForm()));
    show();
    type(u"txtFind"_s, u"e"_s);
    QTest::mouseClick(find<QPushButton>(u"cmd_Find"_s), Qt::LeftButton);
    QCoreApplication::processEvents();
    asker.answer(ui::Answer::Yes);
    main->perform(u"mnFileClose"_s);
    settle();
    EXPECT_EQ(gDatabase.State(), 0);
    EXPECT_TRUE(Form::open().size() == 1);
}

TEST_F(frmFindTest, StopsByKeyAndWaitsForARefillingAndForADialog) {
    type(u"txtFind"_s, u"e"_s);
    QTest::mouseClick(find<QPushButton>(u"cmd_Find"_s), Qt::LeftButton);
    {
        const BusyScope busy;
        settle();
        EXPECT_EQ(hits->model()->rowCount(), 0);
    }
    EXPECT_TRUE(find<QPushButton>(u"cmd_Stop"_s)->hasFocus());
    QTest::keyClick(find<QPushButton>(u"cmd_Stop"_s), Qt::Key_Escape);
    wait();
    EXPECT_EQ(status(), u"(abgebrochen)"_s);
    EXPECT_TRUE(find<QPushButton>(u"cmd_Find"_s)->isEnabled());
}

TEST_F(frmFindTest, LetsOnlyStopAndClosingThroughWhileAStatementRuns) {
    gDatabase.CurrentDatabase()->Execute(
        u"UPDATE tkey_Variable SET dt_QuestionText = '%1'"_s.arg(QString(100'000, u'q')));
    only({20});
    const QString slow = u"q?"_s.repeated(20) + u'x';
    const QPointer<QWidget> alive = window;
    int turns = 0;
    asker.onEventTurn = [&] {
        EXPECT_TRUE(RunGuard::running());
        if (++turns > 1)
            return;
        QTest::keyClick(find<QComboBox>(u"txtFind"_s)->lineEdit(), Qt::Key_X);
        EXPECT_EQ(find<QComboBox>(u"txtFind"_s)->currentText(), slow);
        QTest::mouseClick(find<QPushButton>(u"cmd_Close"_s), Qt::LeftButton);
        EXPECT_TRUE(alive) << "closed under its own statement";
    };
    type(u"txtFind"_s, slow);
    QTest::keyClick(find<QComboBox>(u"txtFind"_s)->lineEdit(), Qt::Key_Return);
    for (QDeadlineTimer end(10000); alive && !end.hasExpired();)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    settle();
    EXPECT_GE(turns, 1);
    EXPECT_FALSE(alive);
    EXPECT_FALSE(RunGuard::running());
    EXPECT_EQ(gBusy, 0);
}

TEST_F(frmFindTest, OffersTheLastTermsAgain) {
    search(u"  Ärger & 100 % "_s);
    search(u"LZUFR"_s);
    find<QPushButton>(u"cmd_Close"_s)->click();
    settle();
    show();
    auto* terms = find<QComboBox>(u"txtFind"_s);
    EXPECT_EQ(terms->itemText(0), u"LZUFR"_s);
    EXPECT_EQ(terms->itemText(1), u"  Ärger & 100 % "_s);
    EXPECT_EQ(terms->currentText(), QString());
    for (int i = 0; i < 2 * SearchTerms::most; ++i)
        SearchTerms::remember(QString::number(i));
    EXPECT_EQ(SearchTerms::stored().size(), SearchTerms::most);
    SearchTerms::remember(QString(500, u'x'));
    EXPECT_EQ(SearchTerms::stored().first(), QString::number(2 * SearchTerms::most - 1));
}

TEST_F(frmFindTest, SpeaksEnglish) {
    only({0});
    search(u"solvarden"_s);
    main->perform(u"mnLngE"_s);
    settle();
    EXPECT_EQ(window->windowTitle(), u"Extended search"_s);
    EXPECT_EQ(find<QPushButton>(u"cmd_Find"_s)->text(), u"Fi&nd"_s);
    EXPECT_EQ(find<QComboBox>(u"cmbAndOr"_s)->itemText(1), u"or"_s);
    EXPECT_EQ(find<QComboBox>(u"cmbAndOr"_s)->currentIndex(), -1);
    EXPECT_EQ(find<QLabel>(u"lblView(1)"_s)->text(), u"Studies"_s);
    EXPECT_EQ(hits->model()->headerData(1, Qt::Horizontal).toString(), u"Place in the catalogue"_s);
}

TEST(TermMarks, CanBeReadOnDarkAndGoWithTheText) {
    QPlainTextEdit edit;
    edit.setPlainText(u"Maß für Maß\nmass"_s);
    markTerms(edit, {u"fehlt"_s, u"maß"_s});
    const auto formats = [&](int block) { return edit.document()->findBlockByNumber(block).layout()->formats(); };
    ASSERT_EQ(formats(0).size(), 2);
    EXPECT_EQ(formats(0)[1].start, 8);
    EXPECT_EQ(formats(0)[0].format.fontWeight(), static_cast<int>(QFont::Bold));
    EXPECT_EQ(formats(0)[0].format.foreground().color(), QColor(Qt::blue));
    EXPECT_TRUE(formats(1).isEmpty());
    EXPECT_EQ(edit.textCursor().selectedText(), u"Maß"_s);
    QPalette dark = edit.palette();
    dark.setColor(QPalette::Base, QColor(30, 30, 30));
    edit.setPalette(dark);
    const QColor onDark = formats(0)[0].format.foreground().color();
    EXPECT_GT(onDark.lightness(), 150);
    EXPECT_GT(onDark.blue(), onDark.red());
    edit.setPlainText(u"Maß"_s);
    EXPECT_TRUE(formats(0).isEmpty());
    edit.setPalette(QPalette());
    EXPECT_TRUE(formats(0).isEmpty());
}

} // namespace
