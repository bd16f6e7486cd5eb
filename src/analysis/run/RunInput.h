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

/// Asks whether a filter is to be run without its end, which counts for nothing.
bool askOfLostEnd(const QString& lost);

/// What a run may ask of those who started it. Every one may be left out.
struct RunHooks {
    /// Nothing speaks against the request any more: it is about to be run.
    std::function<void()> begins;
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
    /// Whether a filter of which the end counts for nothing is run all the same; without it the user is asked.
    std::function<bool(const QString& lost)> acceptsLost = askOfLostEnd;
};

/// All that a run depends on.
struct RunInput {
    AnalysisRequest request;
    Options options;
    dao::DatabasePtr catalogue;
    QString studies; ///< the statement that lists the studies
    FileStamp stamp; ///< how the catalogue's file lay when the fields of the request were read
    RunHooks hooks;
};
