#include "printing/rawRequest.h"

#include "config/Options.h"
#include "printing/paperNames.h"
#include "printing/reportRequest.h"

#include <algorithm>

using namespace Qt::StringLiterals;

ReportRequest rawRequest(const Options& options, const std::vector<ui::Printer>& printers, int language) {
    const auto printer = std::ranges::find(printers, true, &ui::Printer::isDefault);
    const bool known = printer != printers.end();
    ReportRequest request;
    request.PageNumberLocation = pageNumberLocation(options.PrintPageNumberPosition);
    request.DateLocation = dateLocation(options.PrintDatePosition);
    request.TableFontName = u"Arial"_s;
    request.Orientation = known && printer->landscape ? 2 : 1;
    request.PaperSize = static_cast<qint16>(known && printer->paper > 0 ? printer->paper : Paper::byLocale());
    request.TableZoom = request.GraphZoom = options.ZoomFactor / 100.0;
    request.LANGUAGE = static_cast<qint16>(language);
    return request;
}
