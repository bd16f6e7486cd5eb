#include "printing/ReportSelection.h"

QString selectedKey(const ReportRequest& request) {
    if (request.Studies.size() < 2)
        return {};
    const QString inner = request.Studies.sliced(1).chopped(1);
    switch (request.ReportType) {
    case ReportKind::Category:
    case ReportKind::CategoryDescription:
    case ReportKind::CategoryNames:
        return inner.section(u' ', 0, 0);
    case ReportKind::StudyNames:
        return inner.endsWith(u' ') ? inner.chopped(1) : inner;
    default:
        return inner;
    }
}
