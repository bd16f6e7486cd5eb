#pragma once

#include "platform/dao/Value.h"

#include <QHash>
#include <functional>
#include <optional>

namespace dao {

/// For one column of rows in memory: the first row with a value that compareValues() finds equal to the one sought.
class EqualityIndex {
public:
    void build(size_t rows, const std::function<Value(size_t)>& valueAt);
    std::optional<size_t> find(const Value& sought) const;

private:
    using Place = quint32;
    QHash<double, Place> numbers_;
    QHash<QString, Place> texts_;         ///< folded
    QHash<double, Place> spelledNumbers_; ///< texts that are wholly a number
    bool hasOthers_ = false;

public:
    /// False when the column holds what has no place in here (bytes, numbers beyond a double's digits).
    bool isComplete() const { return !hasOthers_; }
};

} // namespace dao
