#include "printing/paperNames.h"
#include "widgets/QtAsker.h"

#include <QPrinter>
#include <QPrinterInfo>
#include <algorithm>

std::vector<ui::Printer> QtAsker::printers() const {
    const QString byDefault = QPrinterInfo::defaultPrinterName().toUpper();
    std::vector<ui::Printer> printers;
    for (const QPrinterInfo& info : QPrinterInfo::availablePrinters()) {
        const QPrinter set(info, QPrinter::HighResolution);
        ui::Printer printer;
        printer.name = info.printerName();
        printer.place = info.location().isEmpty() ? info.printerName() : info.location();
        printer.paper = Paper::code(info.defaultPageSize());
        printer.color = info.defaultColorMode() == QPrinter::Color;
        printer.landscape = set.pageLayout().orientation() == QPageLayout::Landscape;
        printer.isDefault = printer.name.toUpper() == byDefault;
        printers.push_back(std::move(printer));
    }
    return printers;
}

std::shared_ptr<QPagedPaintDevice> QtAsker::openPrinter(const ui::PrintJob& job) {
    const QPrinterInfo info = QPrinterInfo::printerInfo(job.printer);
    if (info.isNull())
        return nullptr;
    auto printer = std::make_shared<QPrinter>(info, QPrinter::HighResolution);
    // A printer that has gone meanwhile leaves one that writes a file, and calls itself valid.
    if (printer->outputFormat() != QPrinter::NativeFormat || printer->printerName() != job.printer)
        return nullptr;
    printer->setDocName(job.title);
    printer->setCopyCount(std::max(1, job.copies));
    printer->setColorMode(job.color ? QPrinter::Color : QPrinter::GrayScale);
    printer->setFullPage(true); // the report has margins of its own
    return printer;
}
