#include "printing/ReportPages.h"
#include "printing/outlets.h"

#include "app/globals.h"

#include <QPagedPaintDevice>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

/// The report's paper, which its name and its format may say differently: landscape is wide.
QPageLayout layoutOf(const PageSetup& setup) {
    const bool wide = setup.page.width() > setup.page.height();
    const QSizeF points = (wide ? setup.page.transposed() : setup.page) / twipsPerPoint;
    QPageLayout layout(QPageSize(points, QPageSize::Point), wide ? QPageLayout::Landscape : QPageLayout::Portrait,
                       setup.margins / twipsPerPoint, QPageLayout::Point);
    // The report has its margins in itself, whatever the device leaves free.
    layout.setMode(QPageLayout::FullPageMode);
    return layout;
}

/// From twips to the device's units. A device that has another paper gets the page fitted onto it, never enlarged.
QTransform transformOf(const PageSetup& setup, const QPagedPaintDevice& device) {
    const double across = device.logicalDpiX() / 1440.0, down = device.logicalDpiY() / 1440.0;
    const QSizeF paper = device.pageLayout().fullRect(QPageLayout::Point).size() * twipsPerPoint;
    // Whole points are as exact as devices are.
    const auto share = [](double has, double wants) { return has >= wants - twipsPerPoint ? 1 : has / wants; };
    const double fit = std::min(share(paper.width(), setup.page.width()), share(paper.height(), setup.page.height()));
    return QTransform::fromScale(across * fit, down * fit);
}

} // namespace

Outcome paintPages(const ReportPages& report, QPagedPaintDevice& device, int first, int count,
                   const std::function<bool(int, int)>& goOn) {
    if (first < 0 || first >= report.count)
        return {false, TranslateText(u"Eine Seite %1 gibt es nicht: Der Bericht hat %2 Seiten."_s)
                           .arg(first + 1)
                           .arg(report.count)};
    if (count < 1)
        return {false, TranslateText(u"Es ist keine Seite zu drucken."_s)};
    const QString gone = TranslateText(u"Der Drucker nimmt nichts mehr an. Der Ausdruck ist unvollständig."_s);
    const int pages = std::min(count, report.count - first);
    device.setPageLayout(layoutOf(report.setup));
    QPainter painter;
    if (!painter.begin(&device))
        return {false, TranslateText(u"Der Drucker ist nicht bereit."_s)};
    for (int i = 0; i < pages; ++i) {
        if (i > 0 && !device.newPage())
            return {false, gone};
        painter.save();
        painter.setTransform(transformOf(report.setup, device), true);
        paintPage(painter, report.page(first + i));
        painter.restore();
        if (!goOn(i + 1, pages))
            return {};
    }
    return painter.end() ? Outcome{true} : Outcome{false, gone};
}

QString printPages(const ReportLayout& layout, QPagedPaintDevice& device, int first, int count,
                   const PageProgress& progress) {
    return paintPages(
               ReportPages::of(layout), device, first, count, progress ? progress : [](int, int) { return true; })
        .fault;
}
