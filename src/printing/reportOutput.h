#pragma once

#include "printing/ReportRun.h"

/// What leads a report out of the program, with all that is asked and said of it on the way. The words returned can be
/// mentioned to the user; they are empty where nothing came of it, which has been said then.
namespace reportOutput {

/// Lays a report out to its end, which the user may stop. @return whether all pages are there
bool finish(ReportRun& run);

/// Asks what to print on what, and prints it. @param printer that is proposed; empty: the system's
QString print(ReportRun& run, const QString& printer);
/// The same of a report that nobody has seen.
QString print(const ReportRequest& request, const QString& printer);

/// Asks for a file, and saves the report as PDF.
QString save(ReportRun& run);

} // namespace reportOutput
