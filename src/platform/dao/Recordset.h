#pragma once

#include "platform/dao/Types.h"
#include "platform/dao/Value.h"

#include <memory>
#include <vector>

namespace dao {

class Database;

/// One column of a recordset and its value in the current row.
struct Field {
    QString Name;
    int Type = dbText;
    int Size = 0;
    int Attributes = 0;
    QString SourceTable;
    QString SourceField;
};

/// The rows of a table or statement, with a current row.
///
/// RecordCount is true at once. A snapshot keeps its rows in memory in at most 16 bytes a number cell. A table or a
/// dynaset over a single table can be edited; FindFirst on a whole table goes to the file and does not read the
/// table into memory. Memos of one that can be edited and has its table's declared key stay in the file until they are
/// asked for, and are what they are by then, 3167 where their row is gone, 3420 where the file is closed. Columns are
/// addressed by position from 0, by name without regard to case, or by "table.field" where two columns share a name.
/// Every access to a value without a current row throws Error 3021.
class Recordset {
public:
    virtual ~Recordset() = default;

    virtual bool Bof() const = 0;
    virtual bool Eof() const = 0;
    virtual int RecordCount() const = 0;
    /// From 0; -1 without a current row.
    virtual int AbsolutePosition() const = 0;
    virtual void MoveFirst() = 0;
    virtual void MoveLast() = 0;
    virtual void MoveNext() = 0;
    virtual void MovePrevious() = 0;
    /// Moves by a number of rows, stopping at Bof or Eof.
    virtual void Move(int rows) = 0;

    /// Goes to the first row that satisfies the condition; NoMatch says whether there is one. Without a match the
    /// current row stays.
    /// @throws Error 3077 syntax, 3070 unknown column
    virtual void FindFirst(const QString& criteria) = 0;
    virtual bool NoMatch() const = 0;

    virtual const std::vector<Field>& Fields() const = 0;
    /// Position of a column. @throws Error 3265 if there is none of that name
    virtual int indexOf(const QString& name) const = 0;
    bool hasField(const QString& name) const;
    virtual Value value(int column) const = 0;
    Value value(const QString& name) const { return value(indexOf(name)); }
    /// The text of a field, Null as empty text.
    QString text(const QString& name) const { return value(indexOf(name)).toText(); }

    virtual bool Updatable() const = 0;
    /// @throws Error 3027 not updatable or read only, 3021, 3167 the row was deleted meanwhile
    virtual void Edit() = 0;
    virtual void AddNew() = 0;
    /// Sets a field of the row in edit. @throws Error 3020 without Edit or AddNew, 3163 text longer than its field,
    ///         3265, 13
    virtual void setValue(int column, const Value& value) = 0;
    void setValue(const QString& name, const Value& value) { setValue(indexOf(name), value); }
    /// Writes the row. @throws Error 3020, 3022 duplicate key, 3314 required field empty, 3260 locked
    virtual void Update() = 0;
    virtual void CancelUpdate() = 0;
    virtual void Delete() = 0;

    /// Names the current row for as long as the recordset lives; setBookmark goes back to it.
    virtual qint64 Bookmark() const = 0;
    virtual void setBookmark(qint64 bookmark) = 0;
    /// Bookmark of the row that Update wrote last.
    virtual qint64 LastModified() const = 0;

    /// An ORDER BY list ("F ASC") that takes effect in the recordset opened from this one.
    virtual void setSort(const QString& orderBy) = 0;
    virtual std::shared_ptr<Recordset> OpenRecordset() = 0;
    /// Runs the statement again and goes to its first row.
    virtual void Requery() = 0;
    /// Further use throws 3420.
    virtual void Close() = 0;

    virtual int Type() const = 0;
    /// The statement or name it was opened with.
    virtual QString Name() const = 0;
};

using RecordsetPtr = std::shared_ptr<Recordset>;

} // namespace dao
