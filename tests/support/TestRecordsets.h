#pragma once

#include "platform/dao/DBEngine.h"

#include <utility>
#include <vector>

/// Recordsets made of rows that a test writes down. The file must lie in a folder of the test's own.
class TestRecordsets {
public:
    using Fields = std::vector<std::pair<QString, int>>;
    using Rows = std::vector<std::vector<dao::Value>>;

    explicit TestRecordsets(const QString& path);

    /// A snapshot of a table of that name, made anew, with its rows in their order.
    dao::RecordsetPtr make(const QString& name, const Fields& fields, const Rows& rows);

private:
    dao::DatabasePtr file_;
};
