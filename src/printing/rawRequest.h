#pragma once

#include "platform/ui/Asker.h"
#include "printing/ReportRequest.h"

struct Options;

/// The request for a table or a chart that a window hands over. Which of the two strings and which notes it has is the
/// caller's to add; margins, fonts' sizes and all that is said of a catalogue stay unset.
/// @param printers of the system: paper and orientation are those of the default one; without one they are those that
/// are usual in the place, upright
/// @param language of the words: 1 German, 2 English
ReportRequest rawRequest(const Options& options, const std::vector<ui::Printer>& printers, int language);
