#include "ChartMaker.h"
#include "charts/paintChart.h"
#include "support/ScriptedAsker.h"
#include "support/TestHome.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;
using namespace charts;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(path);
    return file.readAll();
}

ChartModel sample() {
    ChartModel model = crosstab({u"راضٍ (a) & <b>"_s, u"非常满意"_s, u"\u0007Ton"_s}, {u"ja & nein"_s, u"\"x\""_s});
    model.caption = u"A & B <i>\u0003 \"Titel\""_s;
    model.styles = {{true, 5, {}}, {true, 13, {}}};
    return model;
}

} // namespace

TEST(ChartFile, AStoredPlotIsAJpegOf192DpiInWholeTwips) {
    const QByteArray jpeg = plotJpeg(sample());
    const QImage image = QImage::fromData(jpeg, "JPEG");
    EXPECT_EQ(chartTwips({180, 110}), QSize(10205, 6236)); // 180 mm / 25.4 * 1440 = 10204.7; 110 mm: 6236.2
    EXPECT_EQ(image.size(), QSize(1361, 831));             // 10205 / 7.5 = 1360.7; 6236 / 7.5 = 831.5
    // JFIF: unit 1 is the inch, then both densities.
    EXPECT_EQ(jpeg.mid(13, 5), QByteArray::fromHex("0100c000c0"));
    EXPECT_EQ(plotJpeg(sample(), {180, 110}, 130), jpeg);
    EXPECT_EQ(plotJpeg(sample(), {180, 110}, -1), plotJpeg(sample(), {180, 110}, 0));
    EXPECT_LT(plotJpeg(sample(), {180, 110}, 0).size(), jpeg.size() / 2);
    EXPECT_TRUE(plotJpeg(sample(), {1e7, 1e7}).isEmpty());
}

TEST(ChartFile, AStoredPlotHasNoTitle) {
    ChartModel model = sample();
    const QByteArray with = plotJpeg(model);
    model.caption.clear();
    EXPECT_EQ(plotJpeg(model), with);
}

TEST(ChartFile, AnSvgIsWellFormedAndAsLargeAsAskedWhateverTheLabelsHold) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"chart.svg"_s);
    ASSERT_EQ(saveChart(sample(), path, {120, 80}), QString());
    const QByteArray svg = contentOf(path);
    QXmlStreamReader reader(svg);
    QStringList texts;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && reader.name() == u"svg"_s) {
            EXPECT_EQ(reader.attributes().value(u"width"_s), u"120mm"_s);
            EXPECT_EQ(reader.attributes().value(u"height"_s), u"80mm"_s);
        }
        EXPECT_NE(reader.name(), u"image"_s) << "a picture in a drawing";
        EXPECT_NE(reader.name(), u"pattern"_s) << "programs draw these differently";
        if (reader.isStartElement() && reader.name() == u"text"_s)
            texts << reader.readElementText().trimmed();
    }
    EXPECT_FALSE(reader.hasError()) << qPrintable(reader.errorString());
    EXPECT_TRUE(texts.contains(u"ja & nein"_s)) << "text stays text";
    QSvgRenderer renderer(svg);
    EXPECT_TRUE(renderer.isValid());
}

TEST(ChartFile, PicturesAndPagesHaveTheirSize) {
    const QTemporaryDir folder;
    for (const QString& name : {u"a.png"_s, u"a.jpg"_s, u"a.JPEG"_s}) {
        ASSERT_EQ(saveChart(sample(), folder.filePath(name), {254, 127}, 100), QString());
        const QImage image(folder.filePath(name));
        EXPECT_EQ(image.size(), QSize(1000, 500)) << qPrintable(name);
        EXPECT_NEAR(image.dotsPerMeterX() * 0.0254, 100, 0.1) << qPrintable(name);
        EXPECT_EQ(image.pixel(2, 495) | 0xff000000, 0xffffffff) << "white paper";
    }
    ASSERT_EQ(saveChart(sample(), folder.filePath(u"a.pdf"_s), {180, 110}, 100), QString());
    const QByteArray pdf = contentOf(folder.filePath(u"a.pdf"_s));
    const QRegularExpression boxes(u"/MediaBox \\[0 (\\S+) (\\S+) (\\S+)\\]"_s);
    const auto box = boxes.match(QString::fromLatin1(pdf));
    EXPECT_NEAR(box.captured(2).toDouble(), 180 / 25.4 * 72, 0.002);
    EXPECT_NEAR(box.captured(3).toDouble() - box.captured(1).toDouble(), 110 / 25.4 * 72, 0.002);
    const qsizetype table = pdf.mid(pdf.lastIndexOf("startxref") + 9).trimmed().split('\n').first().toLongLong();
    EXPECT_EQ(pdf.mid(table, 4), "xref") << "positions in the file hold";
    EXPECT_TRUE(pdf.contains("/FontFile")) << "the font goes with it";
}

TEST(ChartFile, WhatCannotBeSavedIsRefusedInWordsAndLeavesWhatIsThere) {
    const QTemporaryDir folder;
    const QString kept = folder.filePath(u"kept.png"_s);
    QFile file(kept);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("old");
    file.close();
    const struct {
        QString name;
        QSizeF size;
        int dpi;
        QString words;
    } cases[] = {{kept, {39, 100}, 300, u"Breite und Höhe"_s},
                 {kept, {100, 2001}, 300, u"Breite und Höhe"_s},
                 {kept, {std::nan(""), 100}, 300, u"Breite"_s},
                 {kept, {180, 110}, 35, u"Auflösung"_s},
                 {kept, {180, 110}, 2401, u"Auflösung"_s},
                 {kept, {1000, 1000}, 2400, u"Millionen Bildpunkte"_s},
                 {folder.filePath(u"a.gif"_s), {180, 110}, 300, u".svg, .png, .jpg oder .pdf"_s},
                 {folder.filePath(u"none/a.png"_s), {180, 110}, 96, u""_s}};
    for (const auto& [name, size, dpi, words] : cases) {
        const QString said = saveChart(sample(), name, size, dpi);
        EXPECT_FALSE(said.isEmpty()) << qPrintable(name);
        EXPECT_TRUE(said.contains(words)) << qPrintable(said);
    }
    EXPECT_EQ(contentOf(kept), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList(u"kept.png"_s)) << "nothing half-written is left";
    EXPECT_EQ(saveChart(sample(), kept, {40, 40}, 36), QString());
    EXPECT_FALSE(QImage(kept).isNull());
}
