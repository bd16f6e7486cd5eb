#pragma once

#include "analysis/request/AnalysisRequest.h"
#include "analysis/request/MissingChoice.h"
#include "analysis/run/runTrap.h"
#include "catalogue/fileStamp.h"
#include "config/Options.h"
#include "platform/dao/Database.h"
#include "tables/TableBuilder.h"

#include <functional>
#include <optional>

/// What a run may ask of those who started it. Every one may be left out.
struct RunHooks {
    /// True once the run is to end.
    std::function<bool()> cancelled;
    /// Each statement as it is handed over: "q" or "counts", and its text.
    std::function<void(const QString& name, const QString& statement)> onStatement;
    /// Opens the missing-value dialog of Descriptives on a definition. @return nothing after Cancel
    std::function<std::optional<MissingAnswer>(const QString& sMissing)> askMissing;
    /// Hears of a statistic or percentage that cannot be computed, in place of the standard error box; see
    /// FrequencyInput, CrosstabInput and DescriptivesInput.
    std::function<void(const QString& place, const dao::Error& error)> onStatisticFailure;
    /// Width of a table text in twips; an estimate by its length until a window sets a true one.
    TextWidth textWidth = estimatedTextWidth;
    RunClock clock = RunClock::system();
    /// A filter of which something counts for nothing is refused; else the user is asked.
    bool refuseLostFilter = false;
};

/// All that a run depends on.
struct RunInput {
    AnalysisRequest request;
    Options options;
    dao::DatabasePtr catalogue;
    QString studies; ///< the statement that lists the studies
    /// How the catalogue's file lay when the fields of the request were read.
    FileStamp stamp;
    RunHooks hooks;
};
