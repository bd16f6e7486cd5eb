#pragma once

#include "platform/dao/DBEngine.h"

#include <QString>
#include <functional>

/// Turns a statement into a recordset, with failures reported and logged.
class CDaoPersistance {
public:
    QString SqlString() const { return sql_; }

    /// Runs a statement. The recordset's count is true at once.
    /// @param callersOwn failures that the caller deals with itself: they are thrown, neither logged nor reported
    /// @return nothing when there is no database, or after a failure that has been reported
    dao::RecordsetPtr GetRecordset(const dao::DatabasePtr& database, const QString& statement, int type,
                                   const std::function<bool(const dao::Error&)>& callersOwn = {});

private:
    QString sql_;
};
