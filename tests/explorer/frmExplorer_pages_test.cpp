#include "explorer/frmExplorer.h"

#include "app/frmMain.h"
#include "app/globals.h"
#include "catalogue/CDaoDatabase.h"
#include "charts/StoredGraph.h"
#include "config/Options.h"
#include "language/mdLanguage.h"
#include "platform/system/Paths.h"
#include "support/PrintQt.h"
#include "support/WindowTest.h"
#include "widgets/ElidedLabel.h"
#include "widgets/FactsStrip.h"
#include "widgets/PictureSurface.h"
#include "widgets/ResultTableView.h"
#include "widgets/VariableListView.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTabBar>
#include <QTest>
#include <QToolButton>
#include <QWheelEvent>

using namespace Qt::StringLiterals;

namespace {

/// A picture whose every pixel tells where it is.
QImage mapOfItself(int width, int height) {
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, x / 256 * 16 + y / 256));
    return image;
}

/// An explorer of a study whose first variables have, in this order: both cards and all else, an English card alone,
/// nothing.
class frmExplorerPages : public WindowTest {
protected:
    frmExplorer* window = nullptr;
    QTabBar* tabs = nullptr;
    PictureSurface* picture = nullptr;
    QSlider* slider = nullptr;

    void SetUp() override {
        openSampleArchive();
        QDir(home.path()).mkdir(u"karten"_s);
        mapOfItself(1000, 600).save(home.path(u"karten/de.png"_s));
        mapOfItself(300, 200).save(home.path(u"karten/en.png"_s));
        QBuffer graph;
        graph.open(QIODevice::WriteOnly);
        mapOfItself(80, 60).save(&graph, "PNG");
        set(0, {{u"dt_FileNameShowCard"_s, u"karten\\de.png"_s},
                {u"dt_FileNameEnShowCard"_s, u"karten\\en.png"_s},
                {u"dt_Table"_s,
                 u"\"Titel\";Xtab;A;;3;3;\"\";\"\";\"1\";\"\";\"\";\"ja\";\"X\";\"zufriedenstellend\";\"12\";;"_s},
                {u"dt_TableLayout"_s, u"3;3;1440;2880;300;240;240;240;0;0;0;0;0;0;0;0;1;1;1;1;"_s},
                {u"dt_Graph"_s, memoOf(graph.data())},
                {u"dt_GraphLayout"_s, u"\"Grafik\";100;80;\"1 = ja\r\n2 = nein\";"_s}});
        set(1, {{u"dt_FileNameShowCard"_s, dao::Value()}, {u"dt_FileNameEnShowCard"_s, u"karten\\en.png"_s}});
        window = frmExplorer::OpenExplorerView(1);
        window->resize(1200, 800);
        tabs = find<QTabBar>(u"tabShowCard"_s);
        picture = static_cast<PictureSurface*>(find<QWidget>(u"picShowCard"_s));
        slider = find<QSlider>(u"sldShowCard"_s);
        for (const CatalogueNode& node : window->model().tree.nodes())
            if (node.id() == u"SV2018")
                window->showNode(node.Key);
        window->setPanels(2);
        window->activateWindow();
        settle();
        choose(0);
    }
    ~frmExplorerPages() override { delete window; }

    static void set(int place, const std::vector<std::pair<QString, dao::Value>>& fields) {
        const dao::RecordsetPtr rows = gDatabase.CurrentDatabase()->OpenRecordset(
            u"SELECT * FROM tkey_Variable WHERE fi_StudyNo = 'SV2018' ORDER BY dt_Position;"_s);
        rows->Move(place);
        rows->Edit();
        for (const auto& [name, value] : fields)
            rows->setValue(name, value);
        rows->Update();
    }

    template<class Widget>
    Widget* find(const QString& name) {
        return window->findChild<Widget*>(name);
    }

    void choose(int row, bool inB = false) {
        auto* list = find<QAbstractItemView>(u"lvListView"_s);
        const QModelIndex index = list->model()->index(row, 0);
        list->scrollTo(index);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(index).center());
        if (inB)
            QTest::keyClick(list, Qt::Key_Return);
        settle();
    }

    void chooseTab(int page, const QString& suffix = {}) {
        auto* bar = find<QTabBar>(u"tabShowCard"_s + suffix);
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(page).center());
        settle();
    }

    void wheel(const QPoint& at, int delta, Qt::KeyboardModifiers keys) {
        QWheelEvent event(at, picture->mapToGlobal(at), {}, {0, delta}, Qt::NoButton, keys, Qt::NoScrollPhase, false);
        QApplication::sendEvent(picture, &event);
    }

    /// What part of the picture a point of the surface shows, as it is painted.
    QPoint shownAt(const QPoint& point) {
        const QRgb pixel = picture->grab().toImage().pixel(point);
        return {qRed(pixel) + qBlue(pixel) / 16 * 256, qGreen(pixel) + qBlue(pixel) % 16 * 256};
    }
    static bool isNear(const QPoint& a, const QPoint& b) { return (a - b).manhattanLength() <= 4; }

    PictureView& view() { return window->model().pagesA.view; }
    QPoint middle() const { return picture->rect().center(); }
};

} // namespace

TEST_F(frmExplorerPages, MouseAndSliderMoveAndZoomWhatIsPainted) {
    ASSERT_TRUE(picture->isVisible() && slider->isVisible());
    EXPECT_EQ(slider->minimum(), 50);
    EXPECT_EQ(slider->maximum(), 4000);
    EXPECT_EQ(slider->value(), 500);
    const QPoint from(100, 60), to(70, 90);
    const QPoint held = shownAt(from);
    EXPECT_TRUE(isNear(held, {200, 120})) << "half its size, from the corner";
    QTest::mousePress(picture, Qt::LeftButton, {}, from);
    EXPECT_EQ(picture->cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseMove(picture, (from + to) / 2);
    QTest::mouseMove(picture, to);
    EXPECT_TRUE(isNear(shownAt(to), held));
    QTest::mouseRelease(picture, Qt::LeftButton, {}, to);
    EXPECT_EQ(picture->cursor().shape(), Qt::ArrowCursor);
    QTest::mouseMove(picture, from);
    EXPECT_TRUE(isNear(shownAt(to), held)) << "let go";

    const QPoint pointer(120, 80);
    const QPoint under = shownAt(pointer);
    for (int notch = 0; notch < 3; ++notch)
        wheel(pointer, 120, Qt::ControlModifier);
    EXPECT_TRUE(isNear(shownAt(pointer), under));
    EXPECT_GT(slider->value(), 800);
    const float panned = view().panY();
    wheel(pointer, -120, {});
    EXPECT_LT(view().panY(), panned) << "without Ctrl it scrolls";
    slider->setValue(1000);
    EXPECT_EQ(view().zoom(), 1.0F);
    QTest::mouseDClick(picture, Qt::LeftButton, {}, pointer);
    EXPECT_EQ(slider->value(), 500);
    EXPECT_TRUE(isNear(shownAt(from), held));
}

TEST_F(frmExplorerPages, KeysMoveZoomFitAndReset) {
    picture->setFocus();
    const QPointF start = view().target().topLeft();
    QTest::keyClick(picture, Qt::Key_Plus);
    EXPECT_EQ(slider->value(), 625);
    QTest::keyClick(picture, Qt::Key_Minus);
    EXPECT_EQ(slider->value(), 500);
    EXPECT_LT((view().target().topLeft() - start).manhattanLength(), 0.01) << "about the middle, there and back";
    QTest::keyClick(picture, Qt::Key_Right);
    EXPECT_LT(view().panX(), start.x()) << "what lies at the right comes into view";
    QTest::keyClick(picture, Qt::Key_Left);
    QTest::keyClick(picture, Qt::Key_PageDown);
    EXPECT_LT(view().panY(), start.y());
    QTest::keyClick(picture, Qt::Key_F);
    EXPECT_TRUE(QRectF(QPointF(-0.5, -0.5), view().room + QSizeF(1, 1)).contains(view().target()));
    QTest::keyClick(picture, Qt::Key_0);
    EXPECT_EQ(slider->value(), 500);
    EXPECT_EQ(view().target().topLeft(), QPointF(0, 0));
    find<QToolButton>(u"cmdFit"_s)->click();
    EXPECT_EQ(slider->value(), view().slider());
    EXPECT_NE(slider->value(), 500);
    QImage copied;
    asker.onPicture = [&](const QImage& image, const QByteArray&) { copied = image; };
    QTest::keyClick(picture, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied.size(), QSize(1000, 600));
}

TEST_F(frmExplorerPages, ThePageInViewStaysThoughItHasNothingAndOnlyFullOnesCanBeChosen) {
    picture->setFocus();
    chooseTab(PanelPages::Table);
    auto* table = static_cast<ResultTableView*>(find<QWidget>(u"mfgTable"_s));
    ASSERT_TRUE(table->isVisible());
    EXPECT_TRUE(table->hasFocus()) << "the keys stay where they were";
    EXPECT_GT(table->height(), window->findChild<QWidget*>(u"txtQuestion"_s)->height()) << "it has the whole page";
    EXPECT_FALSE(picture->isVisible() || slider->isVisible());
    EXPECT_EQ(find<QLabel>(u"lblTableTitle"_s)->text(), u"Titel"_s);
    EXPECT_EQ(find<ElidedLabel>(u"lblTableValues"_s)->text(), u"absolute Werte"_s);
    EXPECT_EQ(table->model()->rowCount(), 1) << "two rows of heads";
    EXPECT_GE(table->columnWidth(0), table->fontMetrics().horizontalAdvance(u"zufriedenstellend"_s));
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_TRUE(asker.clipboardText.startsWith(u"Titel\r\nabsolute Werte\r\n"_s)) << qPrintable(asker.clipboardText);
    EXPECT_TRUE(asker.clipboardText.contains(u"12"_s));

    choose(2);
    EXPECT_EQ(tabs->currentIndex(), PanelPages::Table);
    for (int page = 0; page < 3; ++page)
        EXPECT_FALSE(tabs->isTabEnabled(page));
    EXPECT_FALSE(table->isVisible());
    chooseTab(PanelPages::Graph);
    EXPECT_EQ(tabs->currentIndex(), PanelPages::Table) << "it can't be chosen";
    choose(0);
    EXPECT_TRUE(table->isVisible());
    EXPECT_TRUE(find<QAbstractItemView>(u"lvListView"_s)->hasFocus()) << "who walks the list isn't taken to the page";

    tabs->setFocus();
    QTest::keyClick(tabs, Qt::Key_Right);
    settle();
    EXPECT_EQ(window->model().pagesA.Tag(), u"Graph"_s);
    auto* explanation = find<QPlainTextEdit>(u"lblGraphExplain"_s);
    EXPECT_EQ(explanation->toPlainText(), u"1 = ja\n2 = nein"_s);
    EXPECT_TRUE(explanation->isVisible() && picture->isVisible() && slider->isVisible());
    EXPECT_LE(explanation->geometry().right(), picture->geometry().left()) << "beside it";
    setLanguage(1);
    mdLanguage::RefreshForms({window});
    EXPECT_EQ(tabs->tabText(0), u"Show card"_s);
    EXPECT_EQ(explanation->accessibleName(), u"Explanation of the chart"_s);
}

TEST_F(frmExplorerPages, EachPanelHasItsOwnPagesInItsOwnLanguage) {
    choose(0, true);
    slider->setValue(800);
    EXPECT_EQ(find<QSlider>(u"sldShowCard2"_s)->value(), 500);
    auto& pagesB = window->model().pagesB;
    EXPECT_EQ(pagesB.picSC().size(), QSize(1000, 600));
    const auto press = [&](const QString& strip, const QString& key) {
        QTest::mouseClick(find<FactsStrip>(strip)->cell(key), Qt::LeftButton);
        settle();
    };
    press(u"sbStatusBarV_B"_s, u"english"_s);
    EXPECT_EQ(pagesB.picSC().size(), QSize(300, 200));
    press(u"sbStatusBarV_B"_s, u"next"_s);
    EXPECT_EQ(pagesB.picSC().size(), QSize(300, 200));
    press(u"sbStatusBarV_B"_s, u"english"_s);
    EXPECT_TRUE(pagesB.picSC().isNull()) << "no card in the original language";
    EXPECT_EQ(window->model().pagesA.picSC().size(), QSize(1000, 600));
    press(u"sbStatusBarV"_s, u"english"_s);
    EXPECT_EQ(window->model().pagesA.picSC().size(), QSize(300, 200));
    EXPECT_EQ(slider->value(), 800) << "the zoom stays";
    // Another entry shows its first variable without the pages, until the user chooses it.
    for (const CatalogueNode& node : window->model().tree.nodes())
        if (node.id() == u"SV2022")
            window->showNode(node.Key);
    settle();
    EXPECT_TRUE(window->model().pagesA.picSC().isNull());
    EXPECT_FALSE(slider->isVisible());
}

TEST_F(frmExplorerPages, TheButtonTakesThePagesOutOfTheLayoutAndBringsThemBack) {
    frmMain main;
    main.load();
    EXPECT_TRUE(main.command(u"SCON"_s)->isChecked());
    main.perform(u"SCON"_s);
    EXPECT_FALSE(main.command(u"SCON"_s)->isChecked() || gOptions.ShowCards);
    EXPECT_FALSE(main.command(u"mnuShowCards"_s)->isChecked());
    EXPECT_FALSE(tabs->isVisible() || picture->isVisible());
    choose(1);
    choose(0);
    EXPECT_TRUE(window->model().pagesA.picSC().isNull()) << "out of sight nothing is read";
    main.perform(u"SCON"_s);
    EXPECT_TRUE(tabs->isVisible() && picture->isVisible());
    EXPECT_EQ(window->model().pagesA.picSC().size(), QSize(1000, 600));
    // A panel that is closed and opened again shows what it showed.
    window->setPanels(0);
    window->setPanels(2);
    EXPECT_EQ(window->model().pagesA.picSC().size(), QSize(1000, 600));
    // A narrow window has no room for the pages.
    window->resize(500, 700);
    settle();
    EXPECT_FALSE(tabs->isVisible());
    window->resize(1300, 700);
    settle();
    EXPECT_TRUE(tabs->isVisible() && slider->isVisible());
}

TEST_F(frmExplorerPages, AMissingCardIsSaidInItsPlaceAndGesturesDoNothing) {
    QFile::remove(home.path(u"karten/de.png"_s));
    choose(1);
    choose(0);
    EXPECT_TRUE(asker.boxes.empty());
    EXPECT_TRUE(picture->isVisible());
    EXPECT_FALSE(slider->isVisible());
    EXPECT_TRUE(picture->accessibleDescription().contains(u"de.png"_s));
    EXPECT_TRUE(tabs->isTabEnabled(0));
    QTest::mousePress(picture, Qt::LeftButton, {}, middle());
    QTest::mouseMove(picture, middle() + QPoint(20, 20));
    QTest::mouseRelease(picture, Qt::LeftButton, {}, middle());
    wheel(middle(), 120, Qt::ControlModifier);
    QTest::keyClick(picture, Qt::Key_F);
    EXPECT_EQ(view().slider(), 500);
    EXPECT_EQ(view().panX(), 0);
}

TEST_F(frmExplorerPages, WhoComesBackToTheWindowSeesWhatWasStoredMeanwhile) {
    frmMain main;
    main.load();
    main.show();
    main.adopt(*window);
    frmExplorer::OpenExplorerView(2);
    settle();
    ASSERT_NE(main.activeForm(), window);
    set(0, {{u"dt_FileNameShowCard"_s, u"karten\\en.png"_s}, {u"dt_Table"_s, dao::Value()}});
    main.activate(*window);
    settle();
    EXPECT_EQ(window->model().pagesA.picSC().size(), QSize(300, 200));
    EXPECT_FALSE(tabs->isTabEnabled(PanelPages::Table));
    window = nullptr; // the frame's own now
}
