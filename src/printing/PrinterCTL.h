#pragma once

#include "printing/ReportRequest.h"

#include <functional>

/// The report writer as the windows know it: they set the fields, then have it show or print the report. The main
/// window owns the one that is used.
class PrinterCTL : public ReportRequest {
public:
    /// Forgets what was set.
    void Reset() { static_cast<ReportRequest&>(*this) = ReportRequest(); }
    /// Shows the report.
    void Preview();
    /// Asks what to print it on, and prints it without showing it.
    void PrintReport();

    /// Name of the printer that was chosen last; empty: the system's. It stays when a request is forgotten.
    QString Printer;

    /// Carry out the two commands; the windowed program sets them.
    std::function<void(const ReportRequest&)> show, print;
};
