#pragma once

#include "tables/ResultTable.h"

/// A table as it is kept with its variable.
struct StoredTable {
    QString title;
    TableKind kind = TableKind::Frequency; ///< a comparison is kept as a frequency
    int values =
        0; ///< the view of a crosstab: 0 "absolute Werte", 1 "Spaltenprozente", 2 "Zeilenprozente", 3 "Gesamtprozente"
    QString nFlag; ///< of a crosstab: empty, "N" or "NFirst"
    ResultTable table;
    QString weight; ///< name of the weight variable; empty for none
};
