#include "printing/PreviewModel.h"

#include "config/Options.h"
#include "platform/ui/Asker.h"
#include "printing/HandmadeReport.h"
#include "printing/printJob.h"

#include <gtest/gtest.h>

#include "app/globals.h"

using namespace Qt::StringLiterals;

namespace {

/// An open preview in a room of 800 by 600 pixels at 96 to the inch, its pages laid out unless they are to come.
std::unique_ptr<PreviewModel> preview(const HandmadeReport::Script& script, int percent = 100, bool all = true) {
    auto model = std::make_unique<PreviewModel>(HandmadeReport::run(script), percent);
    EXPECT_EQ(model->open(), QString());
    model->setRoom({800, 600}, 96);
    while (all && model->goOn(50))
        ;
    return model;
}

/// Page of an entry, from 0.
int pageOf(const PreviewModel& model, int entry) {
    return model.run().layout().pageOf(entry);
}

} // namespace

TEST(PreviewModel, BeginsWithAZoomThatOneCanWorkWithAndKeepsToItsLimits) {
    for (const auto& [percent, zoom] : {std::pair{100, 1.0}, {0, 1.0}, {-5, 1.0}, {1, 0.1}, {75, 0.75}, {100000, 5.0}})
        EXPECT_DOUBLE_EQ(preview({}, percent)->zoom(), zoom) << percent;
    const auto model = preview({}, 120);
    for (const double next : {1.25, 1.5}) {
        model->zoomIn();
        EXPECT_DOUBLE_EQ(model->zoom(), next);
    }
    for (const double next : {1.25, 1.1, 1.0}) {
        model->zoomOut();
        EXPECT_DOUBLE_EQ(model->zoom(), next);
    }
    model->resetZoom();
    EXPECT_DOUBLE_EQ(model->zoom(), 1.2);
    for (int i = 0; i < 30; ++i)
        model->zoomIn();
    EXPECT_TRUE(model->zoom() == PreviewModel::mostZoom && !model->canZoomIn() && model->canZoomOut());
    for (int i = 0; i < 30; ++i)
        model->zoomOut();
    EXPECT_TRUE(model->zoom() == PreviewModel::leastZoom && model->canZoomIn() && !model->canZoomOut());
}

TEST(PreviewModel, FitsPagesIntoItsRoomAlsoWhenThatChanges) {
    using Fit = PreviewModel::Fit;
    const auto model = preview({});
    // 210 by 297 mm at 96 to the inch.
    EXPECT_EQ(model->pageRect(0).size(), QSizeF(794, 1123));
    for (const QSizeF room : {QSizeF(800, 600), QSizeF(500, 900)}) {
        model->setRoom(room, 96);
        model->setTwoPages(false);
        model->setFit(Fit::Width);
        EXPECT_NEAR(model->pageRect(0).width(), room.width() - 2 * PreviewModel::gap, 1);
        EXPECT_LE(model->contentSize().width(), room.width() + 1);
        model->setTwoPages(true);
        EXPECT_NEAR(model->pageRect(1).right(), room.width() - PreviewModel::gap, 2);
        EXPECT_EQ(model->pageRect(1).top(), model->pageRect(0).top());
        EXPECT_EQ(model->pageRect(2).left(), model->pageRect(0).left());
        model->setFit(Fit::Page);
        EXPECT_LE(model->pageRect(0).bottom(), room.height());
        EXPECT_LE(model->pageRect(1).right(), room.width());
        const int page = model->currentPage();
        model->nextPage();
        EXPECT_EQ(model->currentPage(), page + 2) << "pairs are turned together";
        model->previousPage();
    }
    model->setZoom(1);
    EXPECT_EQ(model->fit(), Fit::None);
    model->setRoom({800, 600}, 192);
    EXPECT_EQ(model->pageRect(0).width(), 2 * 794 - 1) << "1587.4 dots at twice the density";
}

TEST(PreviewModel, KeepsTheSpotWhereItZooms) {
    const auto model = preview({});
    model->goToPage(2);
    model->scrollTo(model->at() + QPointF(0, 300));
    const QPointF place(400, 250);
    const auto spot = [&] {
        const QRectF page = model->pageRect(2);
        const QPointF at = model->at() + place - page.topLeft();
        return QPointF(at.x() / page.width(), at.y() / page.height());
    };
    const QPointF before = spot();
    model->zoomAbout(place, 2.5);
    EXPECT_NEAR(spot().x(), before.x(), 0.002);
    EXPECT_NEAR(spot().y(), before.y(), 0.002);
}

TEST(PreviewModel, GoesToAPageThatIsStillToComeOnceItIsThere) {
    const auto model = preview({.variables = 9}, 100, false);
    model->showFirst(1000);
    ASSERT_GE(model->pageCount(), 1);
    ASSERT_LT(model->pageCount(), 9);
    EXPECT_EQ(model->state(), PreviewModel::State::Going);
    EXPECT_FALSE(model->isWaiting());
    const QString status = model->status();
    model->goToPage(6);
    EXPECT_TRUE(model->isWaiting());
    EXPECT_EQ(model->currentPage(), 0) << "what is there stays in view";
    EXPECT_NE(model->status(), status);
    while (model->goOn(50))
        ;
    EXPECT_EQ(model->currentPage(), 6);
    EXPECT_EQ(model->at().y(), model->pageRect(6).top() - PreviewModel::gap);
    EXPECT_EQ(model->state(), PreviewModel::State::Complete);
    EXPECT_TRUE(!model->isWaiting() && model->status().isEmpty());
    model->goToPage(5000);
    EXPECT_EQ(model->currentPage(), 8);
    EXPECT_FALSE(model->hasNext());
}

TEST(PreviewModel, CanBeHaltedAndSaysWhatKeptItFromTheEnd) {
    auto model = preview({.variables = 9}, 100, false);
    model->showFirst(1000);
    model->halt();
    EXPECT_EQ(model->state(), PreviewModel::State::Halted);
    EXPECT_TRUE(model->status().contains(QString::number(model->pageCount())));
    model->goToPage(8);
    EXPECT_FALSE(model->isWaiting()) << "nothing more comes";
    model->resume();
    while (model->goOn(50))
        ;
    EXPECT_EQ(model->state(), PreviewModel::State::Complete);

    model = preview({.variables = 9, .failsAfter = 4}, 100, false);
    model->goToPage(8);
    while (model->goOn(50))
        ;
    EXPECT_EQ(model->state(), PreviewModel::State::Failed);
    EXPECT_TRUE(model->status().contains(u"Die Datenbank ist fort."_s)) << qPrintable(model->status());
    EXPECT_FALSE(model->isWaiting());
    EXPECT_EQ(model->currentPage(), std::max(0, model->pageCount() - 1));
    EXPECT_EQ(PreviewModel(HandmadeReport::run({.why = u"nichts da"_s}), 100).open(), u"nichts da"_s);
}

TEST(PreviewModel, FindsAVariableByNameBeforeLabelAndComesBack) {
    // V1 to V12, "V3" also in the label of the last one.
    const auto model = preview({.variables = 12, .label = u"Über V3"_s});
    struct Case {
        QString text;
        int matches, found;
    };
    for (const Case& sought : {Case{u"v3"_s, 2, 2},
                               {u" V12 "_s, 1, 11},
                               {u"v1"_s, 4, 0},
                               {u"Label 7"_s, 1, 6},
                               {u"über"_s, 1, 11},
                               {u"nirgends"_s, 0, -1},
                               {u""_s, 0, -1}}) {
        model->find(sought.text);
        EXPECT_EQ(model->matches(), sought.matches) << qPrintable(sought.text);
        EXPECT_EQ(model->found(), sought.found) << qPrintable(sought.text);
        if (sought.found >= 0) {
            EXPECT_EQ(model->currentPage(), pageOf(*model, sought.found)) << qPrintable(sought.text);
        }
    }
    model->goToPage(1);
    model->find(u"v1"_s);
    QList<int> walk;
    for (const bool back : {false, false, false, false, true}) {
        model->findNext(back);
        walk << model->found();
    }
    EXPECT_EQ(walk, (QList<int>{9, 10, 11, 0, 11}));
    model->back();
    EXPECT_EQ(model->currentPage(), 1) << "where the search began";
    EXPECT_FALSE(preview({})->canGoBack());
}

TEST(PreviewModel, FollowsALinkOfTheContentsAndComesBack) {
    const auto model = preview({.variables = 12}); // contents stand in front from ten on
    ASSERT_GT(model->run().layout().frontPages(), 0);
    const ReportPage contents = model->run().layout().page(0);
    ASSERT_FALSE(contents.links.empty());
    const ReportPage::Link link = contents.links.back();
    const QPointF place = model->pageRect(0).topLeft() + link.rect.center() * model->dotsPerTwip();
    model->scrollTo({0, place.y() - 300});
    const int before = model->currentPage();
    EXPECT_EQ(model->linkAt(place - model->at()), link.entry);
    EXPECT_FALSE(model->linkAt(QPointF(1, 1)));
    model->goToEntry(link.entry);
    EXPECT_EQ(model->currentPage(), pageOf(*model, link.entry));
    model->back();
    EXPECT_EQ(model->currentPage(), before);
}

TEST(PreviewModel, PaintsAPageOnceForASizeAndNoneBeyondWhatThePicturesMayTake) {
    const auto model = preview({});
    const ReportLayout& layout = model->run().layout();
    const QImage first = model->pictures().picture(layout, 0, {794, 1123});
    EXPECT_EQ(first.size(), QSize(794, 1123));
    EXPECT_EQ(first.pixelColor(2, 2), QColor(Qt::white)) << "paper, whatever the palette";
    EXPECT_EQ(model->pictures().picture(layout, 0, {794, 1123}).cacheKey(), first.cacheKey());
    EXPECT_NE(model->pictures().picture(layout, 0, {1588, 2246}).cacheKey(), first.cacheKey());
    EXPECT_TRUE(model->pictures().picture(layout, 0, {7940, 11230}).isNull());
    EXPECT_EQ(model->pictures().picture(layout, 1, {794, 1123}).size(), first.size());
}

TEST(PrintJob, ProposesWhatTheOptionsSayAndTellsWhatComesOfIt) {
    const Options before = gOptions;
    struct Case {
        int start, count, pages;
        bool fault;
        QString words;
    };
    for (const Case& job : {Case{1, 99999, 12, false, u"Gedruckt werden 12 Seiten, von Seite 1 bis Seite 12."_s},
                            {3, 4, 12, false, u"Gedruckt werden 4 Seiten, von Seite 3 bis Seite 6."_s},
                            {11, 99999, 12, false, u"Gedruckt werden 2 Seiten, von Seite 11 bis Seite 12."_s},
                            {12, 3, 12, false, u"Gedruckt wird Seite 12."_s},
                            {13, 1, 12, true, u"Der Bericht hat nur 12 Seiten; eine Seite 13 gibt es nicht."_s},
                            {2, 1, 1, true, u"Der Bericht hat nur eine Seite; eine Seite 2 gibt es nicht."_s},
                            {0, 0, 2, false, u"Gedruckt werden 2 Seiten, von Seite 1 bis Seite 2."_s},
                            {-7, -1, 1, false, u"Gedruckt wird Seite 1."_s}}) {
        gOptions.PrintStartPage = job.start;
        gOptions.PrintPageCount = job.count;
        gOptions.PrintStartPageNumber = -3;
        const ui::PrintJob proposal = printJob::proposed(u"Titel"_s, job.pages);
        EXPECT_EQ(printJob::tell(proposal, job.pages).words, job.words);
        EXPECT_EQ(printJob::tell(proposal, job.pages).fault, job.fault) << qPrintable(job.words);
        EXPECT_EQ(proposal.firstPageNumber, 1);
    }
    EXPECT_TRUE(printJob::tell({.firstPage = 1, .pageCount = 0}, 3).fault);
    gOptions = before;
}
