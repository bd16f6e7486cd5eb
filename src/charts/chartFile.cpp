#include "charts/chartFile.h"

#include "app/globals.h"
#include "charts/chartType.h"
#include "charts/paintChart.h"
#include "platform/system/wholeFile.h"
#include "platform/ui/Asker.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double perInch = 25.4;
constexpr double leastSide = 40, mostSide = 2000;
constexpr int leastDpi = 36, mostDpi = 2400;
constexpr double mostPixels = 100e6;
constexpr int twipsPerInch = 1440;

QImage paintedImage(const ChartLayout& layout, const QSize& pixels, int dpi) {
    QImage image(pixels, QImage::Format_RGB32);
    if (image.isNull())
        return image;
    image.fill(Qt::white);
    const int perMetre = qRound(dpi * 1000 / perInch);
    image.setDotsPerMeterX(perMetre);
    image.setDotsPerMeterY(perMetre);
    QPainter painter(&image);
    painter.scale(pixels.width() / layout.size.width(), pixels.height() / layout.size.height());
    paintChart(painter, layout);
    return image;
}

QSize pixelsOf(const QSizeF& millimetres, double dpi) {
    return (millimetres * (dpi / perInch)).toSize();
}

QByteArray encoded(const QImage& image, const char* format, int quality) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, format);
    writer.setQuality(quality);
    return !image.isNull() && writer.write(image) ? bytes : QByteArray();
}

/// Qt rounds a page to whole points, and draws from its upper edge: the page gets its own size within the same bytes,
/// since a PDF is full of their positions.
QByteArray withExactPage(QByteArray pdf, const QSizeF& millimetres) {
    const QSizeF points = millimetres * (72 / perInch);
    const QString height = QString::number(qRound(points.height()));
    const QByteArray rounded =
        QStringLiteral("/MediaBox [0 0 %1.000000 %2.000000]").arg(qRound(points.width())).arg(height).toLatin1();
    const double below = height.toInt() - points.height();
    const QByteArray exact = QStringLiteral("/MediaBox [0 %1 %2 %3]")
                                 .arg(below, 0, 'f', 3)
                                 .arg(points.width(), 0, 'f', 3)
                                 .arg(height)
                                 .toLatin1();
    return pdf.count(rounded) == 1 && exact.size() <= rounded.size()
               ? pdf.replace(rounded, exact.leftJustified(rounded.size()))
               : pdf;
}

QByteArray pdf(const ChartModel& model, const ChartLayout& layout) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    if (!buffer.open(QIODevice::WriteOnly))
        return {};
    QPdfWriter writer(&buffer);
    writer.setResolution(1200);
    writer.setPageSize(QPageSize(layout.size, QPageSize::Millimeter, {}, QPageSize::ExactMatch));
    writer.setPageMargins({});
    writer.setTitle(shownText(model.caption));
    QPainter painter;
    if (!painter.begin(&writer))
        return {};
    painter.scale(1200 / perInch, 1200 / perInch);
    paintChart(painter, layout);
    painter.end();
    return withExactPage(bytes, layout.size);
}

ChartLayout plotLayout(const ChartModel& model, const QSizeF& millimetres) {
    return layOut(model, QSizeF(chartTwips(millimetres)) * (perInch / twipsPerInch), ChartParts::Plot);
}

QByteArray plotJpeg(const ChartLayout& layout, const QSizeF& millimetres, int quality, int dpi = storedPlotDpi) {
    if (!jpegSupported()) {
        ui::asker().messageBox({TranslateText(u"Konnte keinen passenden Encoder ermitteln."_s), u"Encoder Error"_s});
        return {};
    }
    const QSize pixels = (QSizeF(chartTwips(millimetres)) * dpi / twipsPerInch).toSize();
    return encoded(paintedImage(layout, pixels, dpi), "jpeg", std::clamp(quality, 0, 100));
}

} // namespace

bool jpegSupported() {
    return QImageReader::supportedImageFormats().contains("jpeg") &&
           QImageWriter::supportedImageFormats().contains("jpeg");
}

QSize chartTwips(const QSizeF& millimetres) {
    return pixelsOf(millimetres, twipsPerInch);
}

QByteArray plotJpeg(const ChartModel& model, const QSizeF& millimetres, int quality) {
    return plotJpeg(plotLayout(model, millimetres), millimetres, quality);
}

StoredGraph storedGraphOf(const ChartModel& model, const QSizeF& millimetres, int dpi) {
    const ChartLayout layout = plotLayout(model, millimetres);
    const QSize twips = chartTwips(millimetres);
    return {model.caption, static_cast<float>(twips.width()), static_cast<float>(twips.height()), layout.explanation,
            plotJpeg(layout, millimetres, 100, dpi)};
}

QImage chartImage(const ChartLayout& layout, int dpi) {
    return paintedImage(layout, pixelsOf(layout.size, dpi), dpi);
}

QByteArray chartSvg(const ChartModel& model, const ChartLayout& layout) {
    constexpr int unitsPerMillimetre = 100;
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(qRound(perInch * unitsPerMillimetre));
    const QSize size = (layout.size * unitsPerMillimetre).toSize();
    generator.setSize(size);
    generator.setViewBox(QRect(QPoint(), size));
    generator.setTitle(shownText(model.caption).toHtmlEscaped()); // Qt writes it as it is
    QPainter painter;
    if (!painter.begin(&generator))
        return {};
    painter.scale(unitsPerMillimetre, unitsPerMillimetre);
    paintChart(painter, layout);
    painter.end();
    // Readers without the font are told what comes closest, as Qt is by chartFont().
    return bytes.replace("font-family=\"Arial\"", "font-family=\"Arial, 'Liberation Sans', Helvetica, sans-serif\"");
}

QString chartSizeFault(const QSizeF& size, int dpi) {
    const auto bad = [](double side) { return !(side >= leastSide && side <= mostSide); };
    if (bad(size.width()) || bad(size.height()))
        return TranslateText(u"Breite und Höhe müssen zwischen %1 und %2 mm liegen."_s).arg(leastSide).arg(mostSide);
    if (dpi < leastDpi || dpi > mostDpi)
        return TranslateText(u"Die Auflösung muss zwischen %1 und %2 dpi liegen."_s).arg(leastDpi).arg(mostDpi);
    const double pixels = size.width() / perInch * dpi * (size.height() / perInch * dpi);
    if (pixels > mostPixels)
        return TranslateText(u"Das Bild hätte %1 Millionen Bildpunkte; höchstens 100 sind möglich."_s)
            .arg(qRound(pixels / 1e6));
    return {};
}

QString saveChart(const ChartModel& model, const QString& path, const QSizeF& millimetres, int dpi) {
    const QString ending = QFileInfo(path).suffix().toLower();
    const bool jpeg = ending == u"jpg"_s || ending == u"jpeg"_s, drawing = ending == u"svg"_s || ending == u"pdf"_s;
    if (!jpeg && !drawing && ending != u"png"_s)
        return TranslateText(u"Der Name der Datei muss auf .svg, .png, .jpg oder .pdf enden."_s);
    if (const QString fault = chartSizeFault(millimetres, drawing ? leastDpi : dpi); !fault.isEmpty())
        return fault;
    if (jpeg && !jpegSupported())
        return TranslateText(u"Konnte keinen passenden Encoder ermitteln."_s);
    const ChartLayout layout = layOut(model, millimetres, ChartParts::Whole);
    const QByteArray bytes = ending == u"svg"_s ? chartSvg(model, layout)
                             : ending == u"pdf"_s
                                 ? pdf(model, layout)
                                 : encoded(chartImage(layout, dpi), jpeg ? "jpeg" : "png", jpeg ? 100 : -1);
    if (bytes.isEmpty())
        return TranslateText(u"Das Bild konnte nicht erzeugt werden."_s);
    return saveBytes(path, bytes);
}
