#pragma once

#include "analysis/request/AnalysisRequest.h"
#include "platform/dao/Recordset.h"

/// Recordsets of the catalogue that the pickers of an analysis stand on.

/// The rows of a statement in the open catalogue, nothing after a failure, which is reported.
dao::RecordsetPtr queryRows(const QString& statement);

bool hasRows(const dao::RecordsetPtr& recordset);

/// Goes to the first row that satisfies a condition; a failure is reported and counts as no match.
bool findRow(const dao::RecordsetPtr& recordset, const QString& criteria);

/// Key and text of every row of a recordset, which stands at its first row then.
std::vector<BoundPicker> rowList(const dao::RecordsetPtr& recordset, const QString& key, const QString& text);

bool isWholeNumber(const QString& text);
