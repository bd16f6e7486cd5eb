#pragma once

#include "platform/dao/Value.h"

#include <QStringList>
#include <optional>

class QIODevice;

namespace dao {

/// What a transaction has written, as rows before and after: a stretch of a device that can be read at any place.
struct ChangeSet {
    QIODevice* device = nullptr;
    qint64 begin = 0, size = 0;
};

enum class ChangeWay { Back, Forth };

/// A row that a change set leads from one state into another, in the way in which it is gone.
class ChangedRow {
public:
    enum class Kind { Removed, Changed, Added };

    virtual ~ChangedRow() = default;
    virtual Kind kind() const = 0;
    virtual QString table() const = 0;
    /// A field before and after. Of a row that is changed only fields that differ and those of the key are known, of a
    /// removed one none after, of an added one none before; nothing also for a field that the table hasn't got.
    virtual std::optional<Value> before(const QString& field) const = 0;
    virtual std::optional<Value> after(const QString& field) const = 0;
};

/// Notes what is written to tables for as long as it lives.
class ChangeRecorder {
public:
    virtual ~ChangeRecorder() = default;
    /// What was written up to now, added to the end of a device; a size of 0 if nothing is otherwise than before.
    /// @throws Error 3026 the device takes no more
    virtual ChangeSet take(QIODevice& device) = 0;
    /// Tables that were written besides: their changes are in no change set.
    virtual QStringList missed() const = 0;
};

} // namespace dao
