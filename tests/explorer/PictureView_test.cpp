#include "explorer/PictureView.h"

#include "explorer/ScaledPicture.h"
#include "support/PrintQt.h"

#include <QPainter>
#include <cmath>
#include <gtest/gtest.h>

namespace {

class View : public testing::Test {
protected:
    PictureView view;

    View() {
        view.picture = {1000, 400};
        view.room = {600, 300};
    }

    /// What a point of the surface shows: pixels of the picture.
    QPointF shownAt(const QPointF& point) const { return (point - view.target().topLeft()) / view.zoom(); }
};

TEST_F(View, TheSliderIsTheZoomInThousandthsAndKeepsTheCorner) {
    EXPECT_EQ(view.slider(), 500);
    EXPECT_EQ(view.target(), QRectF(0, 0, 500, 200));
    view.panBy({20, 30});
    for (const auto& [value, zoom] : {std::pair{50, 0.05F}, {4000, 4.0F}, {1, 0.05F}, {9999, 4.0F}, {500, 0.5F}}) {
        view.setSlider(value);
        EXPECT_EQ(view.zoom(), zoom) << value;
        EXPECT_EQ(view.panX(), 20);
        EXPECT_EQ(view.panY(), 30);
    }
}

TEST_F(View, APictureIsDraggedByThePointThatWasTakenHoldOf) {
    EXPECT_FALSE(view.drag({50, 50})) << "no button was pressed";
    view.press({100, 100});
    EXPECT_TRUE(view.drag({130, 80}));
    EXPECT_TRUE(view.drag({150, 90}));
    EXPECT_EQ(view.target().topLeft(), QPointF(50, -10)) << "mouse less the drag's start, not the sum of the moves";
    view.release();
    EXPECT_FALSE(view.drag({0, 0}));
    view.press({0, 0});
    view.drag({10, 0});
    EXPECT_EQ(view.panX(), 60) << "a second drag begins where the first one ended";
    view.zoomAbout({10, 0}, 2);
    const QPointF held = shownAt({10, 0});
    view.drag({15, 5});
    EXPECT_LT((shownAt({15, 5}) - held).manhattanLength(), 0.01) << "zoomed meanwhile";
    view.reset();
    EXPECT_EQ(view.slider(), 500);
    EXPECT_EQ(view.target().topLeft(), QPointF(0, 0));
}

TEST_F(View, ZoomingLeavesWhatIsUnderThePointer) {
    const QPointF pointer(300, 120);
    const QPointF before = shownAt(pointer);
    for (const double factor : {1.2, 1.2, 3.0, 0.5, 0.9}) {
        view.zoomAbout(pointer, factor);
        EXPECT_NEAR(shownAt(pointer).x(), before.x(), 0.01);
        EXPECT_NEAR(shownAt(pointer).y(), before.y(), 0.01);
    }
    for (int i = 0; i < 50; ++i)
        view.zoomAbout(pointer, 1.2);
    EXPECT_EQ(view.slider(), 4000);
    const QRectF most = view.target();
    view.zoomAbout(pointer, 1.2);
    EXPECT_EQ(view.target(), most) << "at the end nothing moves";
}

TEST_F(View, APieceOfThePictureIsAlwaysInView) {
    view.setSlider(4000);
    view.panBy({-100000, -100000});
    const QRectF window(QPointF(-0.01, -0.01), view.room + QSizeF(0.02, 0.02));
    EXPECT_GE((view.target() & window).width(), 40);
    // The offsets of a large picture would leave a smaller one out of view.
    const float kept = view.panX();
    view.picture = {60, 50};
    view.setSlider(500);
    EXPECT_TRUE(window.contains(view.target()));
    EXPECT_EQ(view.panX(), kept) << "the large one finds them again";
    view.picture = {10, 4};
    view.setSlider(50);
    view.panBy({100000, 0});
    EXPECT_TRUE(window.contains(view.target()));
}

TEST_F(View, FittingShowsAllOfItInTheMiddle) {
    for (const QSizeF& picture : {QSizeF(1000, 400), QSizeF(400, 3000), QSizeF(1999, 333), QSizeF(60000, 5)}) {
        view.picture = picture;
        view.fit();
        const QRectF target = view.target();
        if (view.slider() > 50) {
            EXPECT_LE(target.width(), 600.01);
            EXPECT_LE(target.height(), 300.01);
            EXPECT_NEAR(target.center().x(), 300, 0.01);
            EXPECT_NEAR(target.center().y(), 150, 0.01);
            EXPECT_TRUE(target.width() > 590 || target.height() > 290) << "and no smaller than need be";
        }
    }
    view.picture = {};
    view.fit();
    EXPECT_TRUE(std::isfinite(view.zoom()));
}

/// Darkest grey of a row of pixels.
int darkest(const QImage& image, int row) {
    int found = 255;
    for (int x = 0; x < image.width(); ++x)
        found = std::min(found, qGray(image.pixel(x, row)));
    return found;
}

TEST(ScaledPicture, AThinLineIsSeenInAnySize) {
    QImage lines(4000, 64, QImage::Format_RGB32);
    lines.fill(Qt::white);
    for (int y = 0; y < lines.height(); ++y)
        lines.setPixel(1237, y, qRgb(0, 0, 0));
    const ScaledPicture picture(lines);
    for (const double scale : {0.05, 0.07, 0.1, 0.13, 0.2, 0.3, 0.45, 0.5, 1.0}) {
        QImage surface(qRound(4000 * scale), 8, QImage::Format_RGB32);
        surface.fill(Qt::white);
        QPainter painter(&surface);
        picture.paint(painter, QRectF(0, 0, 4000 * scale, 64 * scale));
        painter.end();
        // Its share of what a pixel shows, of which smoothing spreads most to the neighbours.
        EXPECT_LE(darkest(surface, 1), 255 - 255 * scale * 0.2) << scale;
    }
}

TEST(ScaledPicture, WhatIsTransparentLiesOnWhiteAndTheCornerOnAWholePixel) {
    QImage half(10, 10, QImage::Format_ARGB32);
    half.fill(Qt::transparent);
    half.setPixel(0, 0, qRgba(0, 0, 0, 255));
    const ScaledPicture picture(half);
    for (const double ratio : {1.0, 2.0}) {
        QImage surface(40, 40, QImage::Format_RGB32);
        surface.setDevicePixelRatio(ratio);
        surface.fill(Qt::red);
        QPainter painter(&surface);
        picture.paint(painter, QRectF(3.3 / ratio, 3.3 / ratio, 10 / ratio, 10 / ratio));
        painter.end();
        EXPECT_EQ(surface.pixel(3, 3), qRgb(0, 0, 0)) << "one pixel of the picture is one of the screen";
        EXPECT_EQ(surface.pixel(8, 8), qRgb(255, 255, 255));
        EXPECT_EQ(surface.pixel(2, 2), qRgb(255, 0, 0));
    }
    EXPECT_TRUE(ScaledPicture(QImage()).isNull());
}

} // namespace
