#pragma once

#include "analysis/request/AnalysisRequest.h"

#include "platform/dao/Recordset.h"

#include <optional>

/// Comparisons as the open catalogue keeps them in tsys_Comparison and tsys_VariableComparison, and the texts of their
/// entries.

/// What the list shows for an entry.
QString entryText(const ComparisonEntry& entry);

/// The name of a part (a row of tkey_Parts) in a language of the contents; in the other one, or its number, where it
/// has none.
QString partName(dao::Recordset& part, bool english);

struct StoredComparison {
    QString title;
    QList<ComparisonEntry> entries;
};

/// True if the catalogue keeps a comparison of that name. Failures are reported and count as no.
bool comparisonNamed(const QString& name);
/// Stores a comparison in one transaction, the tables made where they are missing.
/// @throws dao::Error 3163 a text longer than its field, 3027 a catalogue that cannot be written
void storeComparison(const QString& name, const QString& title, const QList<ComparisonEntry>& entries);
/// Reads one; nothing if there is none of that number.
/// @param english the language of the parts' names @throws dao::Error
std::optional<StoredComparison> readComparison(const QString& id, bool english);
/// Deletes one and its entries in one transaction. @return false if there is none of that number. @throws dao::Error
bool deleteComparison(const QString& id);
