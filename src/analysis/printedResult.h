#pragma once

#include <QStringList>

class AnalysisModel;

/// What the analysis window hands to a report: its table or its chart in the form in which they are stored. Whatever is
/// shown can be printed, in every mode, and no catalogue is read for it.
struct PrintedResult {
    QString raw = QString();           ///< both texts with the mark between them; empty where they can't be made
    QStringList notes = QStringList(); ///< what the numbers stand on, in the language in force
    QString reason = QString();        ///< why there is nothing to print, in the language in force
};

/// The table that is shown, in the view that is shown.
PrintedResult printedTable(const AnalysisModel& model);
/// The chart that is shown. @param color false: one that was stored in colours is printed in grey
PrintedResult printedGraph(const AnalysisModel& model, bool color);
