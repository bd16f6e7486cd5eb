#pragma once

#include "analysis/request/RequestEditor.h"
#include "analysis/run/CreateSQL.h"
#include "analysis/run/userFilter.h"

/// Runs the request of an editor on the open catalogue: its fields are read anew, it is checked, its mode's table is
/// made. A check that fails shows its message and makes no table. Where catalogue or case files were written while
/// they were read, fields are read and tables made again. Afterwards the editor has the request as the run left it.
/// @param before what is shown; see CreateSQL()
TableResult runRequest(RequestEditor& editor, const Options& options, const RunHooks& hooks, TableResult before);

/// What a run of the request would say to a filter text, as far as study and grammar tell: asks no engine and attaches
/// nothing.
FilterResult checkFilter(const RequestEditor& editor, const QString& text);
