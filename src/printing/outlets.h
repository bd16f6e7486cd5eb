#pragma once

#include "printing/ReportLayout.h"

#include <QString>
#include <functional>

class QPainter;
class QPagedPaintDevice;

/// Paints a page. The painter's unit is a twip, its origin the page's upper left corner.
void paintPage(QPainter& painter, const ReportPage& page);

/// Hears how many pages are written, of the last one again and again while a file is finished; false ends the writing.
/// Called between pages, where it may turn events.
using PageProgress = std::function<bool(int done, int total)>;

/// Saves all pages of a complete layout as PDF: the file appears whole or not at all.
/// @return the reason of a failure, in words; empty on success, and where the progress has ended it (no file then)
QString savePdf(const ReportLayout& layout, const QString& path, const PageProgress& progress = {});

/// Prints pages of a complete layout on a device whose page layout is set here to the report's.
/// @param first page from 0 @param count pages at most
/// @return the reason of a failure, in words; empty on success, and where the progress has ended it
QString printPages(const ReportLayout& layout, QPagedPaintDevice& device, int first, int count,
                   const PageProgress& progress = {});
