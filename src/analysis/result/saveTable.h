#pragma once

#include "analysis/request/AnalysisRequest.h"
#include "analysis/result/TableResult.h"
#include "tables/ResultTable.h"

#include <QString>
#include <QStringList>

/// Writes a table to a file, whole or not at all: an HTML page for a name that ends in ".html" or ".htm", csv with a
/// byte order mark otherwise, title and notes as comment lines behind the cells.
/// @param notes lines below the table
/// @return the reason of a failure, in the system's words; empty on success
QString saveTable(const QString& path, const QString& title, const ResultTable& table, const QStringList& notes);
/// A name for the file of a table, by the request that the table was made from; without an extension.
QString tableFileName(const AnalysisRequest& request);
/// The same for the table that a result shows, which may be a stored one.
QString tableFileName(const TableResult& result);
