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
    /// @param columns  all that is read of the rows, which are a snapshot then whatever the type; empty for all
    /// @return nothing when there is no database, or after a failure that has been reported
    dao::RecordsetPtr GetRecordset(const dao::DatabasePtr& database, const QString& statement, int type,
                                   const std::function<bool(const dao::Error&)>& callersOwn = {},
                                   const QStringList& columns = {});

    /// Appends a failed statement to the statement log, for failures that were the caller's own. A log that
    /// cannot be written is passed over: the failure itself is being reported already.
    static void logStatement(const QString& statement);

private:
    QString sql_;
};
