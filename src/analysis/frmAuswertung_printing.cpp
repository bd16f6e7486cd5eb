#include "analysis/frmAuswertung.h"
#include "analysis/keptBoxes.h"
#include "analysis/printedResult.h"
#include "app/globals.h"
#include "config/Options.h"
#include "diagnostics/GestureScope.h"
#include "diagnostics/errors.h"
#include "platform/ui/Asker.h"
#include "printing/PrinterCTL.h"
#include "printing/rawRequest.h"
#include "widgets/Desktop.h"

void frmAuswertung::cmdPreview(Printed what) {
    handToReport(what, &PrinterCTL::Preview);
}

void frmAuswertung::cmdPrint(Printed what) {
    handToReport(what, &PrinterCTL::PrintReport);
}

/// What is in view is handed over as a text, and only that text decides: neither the other one nor the catalogue can
/// keep it from being printed.
void frmAuswertung::handToReport(Printed what, void (PrinterCTL::*outlet)()) {
    if (gBusy > 0 || AnalysisModel::running())
        return;
    const GestureScope gesture;
    trapped([&] {
        const PrintedResult printed =
            what == Printed::Table ? printedTable(model_) : printedGraph(model_, gOptions.GraphColor);
        if (printed.raw.isEmpty())
            return tellFailure(printed.reason);
        PrinterCTL* report = desktop().PrinterCTL1();
        if (!report)
            return;
        report->Reset();
        ReportRequest& request = *report;
        request = rawRequest(gOptions, ui::asker().printers(), gLanguage + 1);
        (what == Printed::Table ? request.TableRawString : request.GraphRawString) = printed.raw;
        request.RawNotes = printed.notes;
        (report->*outlet)();
    });
}
