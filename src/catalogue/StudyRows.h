#pragma once

#include "platform/dao/Database.h"

#include <utility>
#include <vector>

/// What is absent is Null, never empty text.
inline dao::Value orNull(const QString& text) {
    return text.isEmpty() ? dao::Value() : dao::Value(text);
}

/// The fields of an entry; an older catalogue may lack some of them.
using EntryFields = std::vector<std::pair<QString, dao::Value>>;

void setFields(dao::Recordset& rows, const EntryFields& entry);

/// A text as statements write it.
QString quoted(const QString& text);

/// True if the catalogue has a table with all these columns.
bool hasColumns(dao::Database& catalogue, const QString& table, const QStringList& columns);

/// The rows of a table that belong to one study.
dao::RecordsetPtr rowsOfStudy(dao::Database& catalogue, const QString& table, const QString& studyField,
                              const QString& study);
