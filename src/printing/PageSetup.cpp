#include "printing/PageSetup.h"

#include "printing/ReportRequest.h"
#include "printing/paperNames.h"

#include <QPageSize>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// What must be left of a page in millimetres, whatever the margins: paper may be as small as a card.
constexpr double leastRoom = 50;
/// Margins where nobody has given any: printers don't reach the edge.
constexpr double usualMargin = 15;

QSizeF paperOf(qint16 code) {
    QPageSize paper = Paper::size(code);
    if (!paper.isValid())
        paper = Paper::size(Paper::byLocale());
    return paper.size(QPageSize::Millimeter) * twipsPerMillimetre;
}

/// Two margins as they leave some room between them.
void fit(double& first, double& second, double side) {
    first = std::max(first, 0.0);
    second = std::max(second, 0.0);
    const double most = std::max(side - leastRoom * twipsPerMillimetre, side / 10);
    if (first + second > most) {
        const double scale = most / (first + second);
        first *= scale;
        second *= scale;
    }
}

double zoom(double asked, double usual) {
    return std::isfinite(asked) && asked > 0 ? std::clamp(asked, 0.01, 100.0) : usual;
}

int place(qint16 code, int usual) {
    return code >= 1 && code <= 7 ? code : usual;
}

} // namespace

QRectF PageSetup::textArea() const {
    return QRectF(QPointF(), page).marginsRemoved(margins);
}

PageSetup PageSetup::of(const ReportRequest& request) {
    PageSetup setup;
    setup.page = paperOf(request.PaperSize);
    if ((request.Orientation == 2) != (setup.page.width() > setup.page.height()))
        setup.page.transpose();
    double left = request.MarginLeft, top = request.MarginTop, right = request.MarginRight,
           bottom = request.MarginBottom;
    if (left == 0 && top == 0 && right == 0 && bottom == 0)
        left = top = right = bottom = usualMargin;
    left *= twipsPerMillimetre;
    top *= twipsPerMillimetre;
    right *= twipsPerMillimetre;
    bottom *= twipsPerMillimetre;
    fit(left, right, setup.page.width());
    fit(top, bottom, setup.page.height());
    setup.margins = QMarginsF(left, top, right, bottom);
    setup.fontFamily = u"Arial"_s;
    setup.tableFamily = request.TableFontName.isEmpty() ? setup.fontFamily : request.TableFontName;
    setup.fontSize = request.ReportFontSize < 6 || request.ReportFontSize > 12 ? 10 : request.ReportFontSize;
    setup.pageNumberPlace = place(request.PageNumberLocation, 6);
    setup.datePlace = place(request.DateLocation, 4);
    setup.language = request.LANGUAGE == 2 ? 2 : 1;
    setup.tableZoom = zoom(request.TableZoom, 1);
    setup.graphZoom = zoom(request.GraphZoom, 1);
    setup.picZoom = zoom(request.PicZoom, 0.6);
    setup.date = QDate::currentDate();
    return setup;
}
