#pragma once

#include "platform/dao/DBEngine.h"

#include <QString>

/// Turns a statement into a recordset, with failures reported and logged.
class CDaoPersistance {
public:
    QString SqlString() const { return sql_; }

    /// Runs a statement. The recordset's count is true at once.
    /// @return nothing when there is no database, or after a failure that has been reported
    dao::RecordsetPtr GetRecordset(const dao::DatabasePtr& database, const QString& statement, int type);

private:
    QString sql_;
};
