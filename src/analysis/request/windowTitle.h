#pragma once

#include "analysis/request/AnalysisRequest.h"

/// What the window of a request is called after what is asked for: study, variables and mode ("SV2018 LZUFR -
/// Häufigkeiten"), of a comparison its title. Empty as long as nothing is asked for.
QString requestName(const AnalysisRequest& request);
