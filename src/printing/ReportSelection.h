#pragma once

#include "printing/ReportRequest.h"

/// Key of the entry that a request is about, from its field `Studies`: a study's number, or the id of a category, which
/// ends at the first blank since the name behind it may hold anything. Empty for the whole view.
QString selectedKey(const ReportRequest& request);
