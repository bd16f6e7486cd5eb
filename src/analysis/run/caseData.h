#pragma once

#include "analysis/result/TableResult.h"
#include "platform/dao/Database.h"

#include <QString>

/// File that holds a case table: "<study>-<suffix>.mdb" in the folder if it is there, else "<study>.mdb",
/// which is not tested. The suffix stands behind the table's last "_" (the whole name without one).
QString caseFileOf(const QString& table, const QString& study, const QString& folder);

/// Folder of a study's case files: the data folder, or the catalogue's own where "<study>.mdb" isn't in the former;
/// empty if it is in neither. @param dataPath option DataPath
QString caseFolderOf(const dao::Database& catalogue, const QString& study, const QString& dataPath);

/// True if a run would attach the table to the same file again.
bool liesWhereItLay(const dao::Database& catalogue, const AttachedTable& attached, const QString& dataPath);

/// Makes sure that the catalogue links a case table to its file; a link that points elsewhere is set right,
/// and takes effect when the table is next opened. @param path folder of the case files
/// @return the file. @throws dao::Error of the engine
QString AttachCaseTable(dao::Database& catalogue, const QString& table, const QString& study, const QString& path);

/// Makes sure that the catalogue has a stored query named "q". @throws dao::Error
void EnsureQueryQ(dao::Database& catalogue);
