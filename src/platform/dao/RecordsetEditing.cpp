#include "platform/dao/Error.h"
#include "platform/dao/FileRecordset.h"
#include "platform/dao/FunctionBodies.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqliteValue.h"

#include <QStringList>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr int overflow = 6;

Value wholeInRange(const Value& value, qint64 lowest, qint64 highest) {
    const qint64 whole = value.toInteger();
    if (whole < lowest || whole > highest) {
        raiseRuntimeError(overflow);
    }
    return Value(whole);
}

/// The value in the form in which a field of that type holds it.
Value forField(const Field& field, const Value& value) {
    if (value.isNull()) {
        return field.Type == dbBoolean ? Value(false) : Value();
    }
    switch (field.Type) {
    case dbBoolean:
        return Value(value.toBoolean());
    case dbByte:
        return wholeInRange(value, 0, 255);
    case dbInteger:
        return wholeInRange(value, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
    case dbLong:
        return wholeInRange(value, std::numeric_limits<qint32>::min(), std::numeric_limits<qint32>::max());
    case dbBigInt:
        return Value(value.toInteger());
    case dbCurrency:
        return Value(std::nearbyint(value.toDouble() * 10000) / 10000);
    case dbSingle:
    case dbDouble:
    case dbDecimal:
        return Value(value.toDouble());
    case dbText:
    case dbMemo:
        return field.Size > 0 ? bodies::fitting({value, Value(field.Size), Value(field.Name)}) : Value(value.toText());
    default:
        return value;
    }
}

} // namespace

void FileRecordset::requireEditable() const {
    errorList().clear();
    (void)cursor();
    if (!file_->isOpen()) {
        raiseEngineError(3420);
    }
    if (!canEdit_) {
        raiseEngineError(3027);
    }
}

void FileRecordset::Edit() {
    requireEditable();
    editing_ = Editing::Nothing;
    (void)cursor().bookmark(); // there has to be a row
    {
        // What another recordset has written meanwhile is what is edited, and not written back as it was.
        const DatabaseFile::Operation operation(*file_);
        cursor().refresh();
    }
    editing_ = Editing::Row;
    edited_.assign(fields_.size(), std::nullopt);
}

void FileRecordset::AddNew() {
    requireEditable();
    editing_ = Editing::NewRow;
    edited_.assign(fields_.size(), std::nullopt);
}

void FileRecordset::setValue(int column, const Value& value) {
    errorList().clear();
    const Field& field = fieldAt(column);
    if (editing_ == Editing::Nothing) {
        raiseEngineError(3020);
    }
    if (field.SourceField.isEmpty()) {
        raiseEngineError(3027); // an expression
    }
    edited_[static_cast<size_t>(column)] = forField(field, value);
}

void FileRecordset::Update() {
    requireEditable();
    if (editing_ == Editing::Nothing) {
        raiseEngineError(3020);
    }
    const DatabaseFile::Operation operation(*file_);
    file_->requireWritable();
    Attachments::Use use;
    const TableInfo table = cursor().reachTable(use);
    if (editing_ == Editing::Row) {
        cursor().refresh();
    }
    // A failure leaves the row in edit, so that it can be put right.
    const qint64 key = editing_ == Editing::Row ? writeChanges(table) : writeNewRow(table);
    file_->noteWrite(table.sqlName);
    const bool isNew = editing_ == Editing::NewRow;
    editing_ = Editing::Nothing;
    lastModified_ = key;
    if (isNew) {
        cursor().added(key);
    } else {
        cursor().changed(key);
    }
}

void FileRecordset::CancelUpdate() {
    errorList().clear();
    if (editing_ == Editing::Nothing) {
        raiseEngineError(3020);
    }
    editing_ = Editing::Nothing;
}

void FileRecordset::Delete() {
    requireEditable();
    editing_ = Editing::Nothing;
    cursor().prepareRemoval();
    const DatabaseFile::Operation operation(*file_);
    file_->requireWritable();
    Attachments::Use use;
    const TableInfo table = cursor().reachTable(use);
    cursor().refresh();
    Statement remove(file_->connection(), u"DELETE FROM "_s + table.sqlName + u" WHERE "_s + table.rowKey + u" = ?1"_s,
                     Purpose::Write);
    remove.bind(1, Value(cursor().bookmark()));
    remove.step();
    if (sqlite3_changes(file_->connection().handle()) == 0) {
        raiseEngineError(3167);
    }
    file_->noteWrite(table.sqlName);
    cursor().removed();
}

std::vector<int> FileRecordset::assigned() const {
    std::vector<int> columns;
    for (size_t i = 0; i < edited_.size(); ++i) {
        if (edited_[i]) {
            columns.push_back(static_cast<int>(i));
        }
    }
    return columns;
}

qint64 FileRecordset::write(Statement& statement, const std::vector<int>& columns) const {
    for (size_t i = 0; i < columns.size(); ++i) {
        statement.bind(static_cast<int>(i) + 1, *edited_[static_cast<size_t>(columns[i])]);
    }
    if (!statement.step()) {
        raiseEngineError(3167); // another process has deleted the row
    }
    const qint64 key = statement.number(0);
    statement.step();
    return key;
}

qint64 FileRecordset::writeChanges(const TableInfo& table) {
    const std::vector<int> columns = assigned();
    const qint64 key = cursor().bookmark();
    if (columns.empty()) {
        return key;
    }
    QStringList assignments;
    for (const int column : columns) {
        assignments += quotedName(fieldAt(column).SourceField) + u" = ?"_s;
    }
    Statement update(file_->connection(),
                     u"UPDATE "_s + table.sqlName + u" SET "_s + assignments.join(u", "_s) + u" WHERE "_s +
                         table.rowKey + u" = ? RETURNING "_s + table.rowKey,
                     Purpose::Write);
    update.bind(static_cast<int>(columns.size()) + 1, Value(key));
    return write(update, columns);
}

qint64 FileRecordset::writeNewRow(const TableInfo& table) {
    const std::vector<int> columns = assigned();
    QStringList names;
    QStringList places;
    for (const int column : columns) {
        names += quotedName(fieldAt(column).SourceField);
        places += u"?"_s;
    }
    const QString values = columns.empty() ? u"DEFAULT VALUES"_s
                                           : u'(' + names.join(u", "_s) + u") VALUES ("_s + places.join(u", "_s) + u')';
    Statement insert(file_->connection(),
                     u"INSERT INTO "_s + table.sqlName + u' ' + values + u" RETURNING "_s + table.rowKey,
                     Purpose::Write);
    return write(insert, columns);
}

} // namespace dao
