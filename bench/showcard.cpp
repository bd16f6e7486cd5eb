// A show card of ten megapixels, as JPEG and as PNG: its first paint against decoding the file alone, and what a frame
// takes while it is moved and zoomed, on a surface of 1,200 x 900. Without a screen.

#include "Frame.h"
#include "Ratios.h"

#include "charts/pictures.h"
#include "explorer/PictureView.h"
#include "explorer/ScaledPicture.h"
#include "widgets/PictureSurface.h"

#include <QApplication>
#include <QFile>
#include <QImageReader>
#include <QPainter>
#include <QRandomGenerator>
#include <algorithm>
#include <benchmark/benchmark.h>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize tenMegapixels(3872, 2592);
constexpr QSize surfaceSize(1200, 900);

/// A scanned card: lines of text on paper that is not quite white.
QImage scannedCard() {
    QImage card(tenMegapixels, QImage::Format_RGB32);
    card.fill(QColor(0xff, 0xfd, 0xf4));
    QRandomGenerator random(7);
    for (int y = 0; y < card.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(card.scanLine(y));
        for (int x = 0; x < card.width(); ++x)
            line[x] -= random.bounded(6) * 0x010101u;
    }
    QPainter painter(&card);
    QFont font(u"DejaVu Sans"_s);
    font.setPixelSize(110);
    painter.setFont(font);
    for (int i = 0; i < 11; ++i)
        painter.drawText(200, 300 + 200 * i, u"%1  ganz und gar zufrieden oder unzufrieden"_s.arg(i));
    return card;
}

struct Shown {
    PictureView view;
    PictureSurface surface{view, nullptr};
    QImage screen{surfaceSize, QImage::Format_RGB32};
    ScaledPicture picture;

    Shown() { surface.resize(surfaceSize); }
    double frame() {
        return seconds([this] { surface.render(&screen, {}, {}, QWidget::DrawChildren); });
    }
    double load(const QString& file) {
        return seconds([&] {
            picture = ScaledPicture(readPictureFile(file).image);
            surface.show(&picture);
            frame();
        });
    }
};

double median(std::vector<double> times) {
    std::ranges::nth_element(times, times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2));
    return times[times.size() / 2];
}

QString folder;

QString cardFile(const char* format) {
    const QString file = folder + u"/card."_s + QString::fromLatin1(format);
    if (!QFile::exists(file) && !scannedCard().save(file, format))
        qFatal("%s cannot be written", qPrintable(file));
    return file;
}

void benchShowCard(benchmark::State& state) {
    for (auto _ : state) {
        for (const char* format : {"jpg", "png"}) {
            const QString file = cardFile(format);
            const QString name = QString::fromLatin1(format).toUpper();
            Shown shown;
            Ratios::measure(
                u"first paint of a %1 card, and decoding it"_s.arg(name), 9, 1.3, [&] { return shown.load(file); },
                [&] { return seconds([&] { benchmark::DoNotOptimize(QImageReader(file).read()); }); });
        }
        Shown shown;
        shown.load(cardFile("jpg"));
        std::vector<double> moved, zoomed;
        for (const int slider : {500, 700, 1000, 300, 2000}) {
            shown.view.setSlider(slider);
            shown.frame(); // copies of the picture are made once
            for (int i = 0; i < 20; ++i) {
                shown.view.panBy({i % 2 ? -7.0 : 11.0, i % 2 ? 5.0 : -3.0});
                moved.push_back(shown.frame());
            }
        }
        shown.view.reset();
        for (int round = 0; round < 2; ++round)
            for (int i = 0; i < 60; ++i) {
                shown.view.zoomAbout({600, 450}, i < 30 ? 1.07 : 1 / 1.07);
                zoomed.push_back(shown.frame());
            }
        Ratios::note(u"frame while moving a card, ms"_s, median(moved) * 1000, 16);
        Ratios::note(u"slowest frame while moving, ms"_s, *std::ranges::max_element(moved) * 1000, 16);
        Ratios::note(u"frame while zooming a card, ms"_s, median(zoomed) * 1000, 16);
        Ratios::note(u"slowest frame while zooming, ms"_s, *std::ranges::max_element(zoomed) * 1000, 16);
    }
}
} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    return runBenchmarks(argc, argv, [](const QString& place) {
        folder = place;
        benchmark::RegisterBenchmark("showcard", benchShowCard)->Iterations(1)->Unit(benchmark::kMillisecond);
    });
}
