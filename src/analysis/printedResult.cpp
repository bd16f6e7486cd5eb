#include "analysis/printedResult.h"

#include "analysis/AnalysisModel.h"
#include "analysis/result/provenance.h"
#include "analysis/result/storedForm.h"
#include "app/globals.h"
#include "charts/chartFile.h"

#include <QBuffer>
#include <QImageWriter>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString behindTable = u"<TableEnd>"_s, behindGraph = u"<GraphEnd>"_s;

PrintedResult refused(const QString& reason) {
    return {.reason = TranslateText(reason)};
}

QByteArray greyJpeg(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(100);
    return writer.write(picture.convertToFormat(QImage::Format_Grayscale8)) ? bytes : QByteArray();
}

/// Sharp on paper; a chart of metres, which a page makes small, needs no more pixels for that.
int dpiOf(const QSizeF& millimetres) {
    constexpr double mostPixels = 4000, perInch = 25.4;
    const double longest = std::max({millimetres.width(), millimetres.height(), 1.0});
    return std::min(standardPictureDpi, static_cast<int>(mostPixels * perInch / longest));
}

PrintedResult printedStored(const StoredResults::Shown& shown, bool color) {
    const QString picture = color ? shown.content : memoOf(greyJpeg(shown.picture));
    if (picture.isEmpty())
        return refused(u"Das Bild konnte nicht erzeugt werden."_s);
    return {.raw = shown.layout + behindGraph + picture,
            .notes = {TranslateText(u"Das ist die gespeicherte Grafik; sie wurde nicht neu gezeichnet."_s),
                      TranslateText(u"Studie:"_s) + u' ' + shown.study + u" · "_s + shown.variable}};
}

} // namespace

PrintedResult printedTable(const AnalysisModel& model) {
    const TableResult& result = model.result();
    if (!result.hasTable())
        return refused(u"Es gibt keine Tabelle."_s);
    const QString text =
        result.stored ? result.stored->text : BuildTableString(storedTableOf(result, model.request().cbValues));
    const QString layout = BuildTableLayoutString(result.mfgGrid);
    if (text.startsWith(storedFailure) || layout.startsWith(storedFailure))
        return refused(
            u"Die Tabelle hat keine Zelle, oder der Name ihrer Gewichtsvariablen lässt sich nicht ablegen."_s);
    return {.raw = text + behindTable + layout, .notes = provenanceLines(result)};
}

PrintedResult printedGraph(const AnalysisModel& model, bool color) {
    if (!model.pictures().started())
        return refused(u"Bilder können hier nicht gelesen werden."_s);
    if (const auto& shown = model.stored().shownGraph())
        return printedStored(*shown, color);
    const WindowChart& chart = model.chart();
    if (chart.state() != WindowChart::State::Drawn)
        return {.reason = chart.reason()};
    const QSizeF size = chart.picture.millimetres;
    const StoredGraph graph = storedGraphOf(chart.model(), size, dpiOf(size));
    if (graph.jpeg.isEmpty())
        return refused(u"Das Bild konnte nicht erzeugt werden."_s);
    return {.raw = BuildGraphString(graph) + behindGraph + memoOf(graph.jpeg),
            .notes = provenanceLines(model.result())};
}
