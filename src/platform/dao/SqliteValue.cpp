#include "platform/dao/SqliteValue.h"

#include "platform/dao/Error.h"
#include "platform/dao/GuardedFunction.h"

#include <cmath>
#include <sqlite3.h>

namespace dao {

namespace {

constexpr int infiniteNumber = 6;

}

Value valueOf(sqlite3_value* value) {
    switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
        return Value(static_cast<qint64>(sqlite3_value_int64(value)));
    case SQLITE_FLOAT: {
        const double number = sqlite3_value_double(value);
        if (!std::isfinite(number)) {
            raiseRuntimeError(infiniteNumber); // another program has left it in the file
        }
        return Value(number);
    }
    case SQLITE_TEXT: {
        // The text first, then its size: the other way round the size may be that of another encoding.
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
        const int bytes = sqlite3_value_bytes(value);
        functionWork += bytes;
        return Value(QString::fromUtf8(text, bytes));
    }
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
        return Value(QByteArray(bytes, sqlite3_value_bytes(value)));
    }
    default:
        return {};
    }
}

Value columnValue(sqlite3_stmt* statement, int column) {
    switch (sqlite3_column_type(statement, column)) {
    case SQLITE_INTEGER:
        return Value(static_cast<qint64>(sqlite3_column_int64(statement, column)));
    case SQLITE_FLOAT:
        return Value(sqlite3_column_double(statement, column));
    case SQLITE_TEXT: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
        return Value(QString::fromUtf8(text, sqlite3_column_bytes(statement, column)));
    }
    case SQLITE_BLOB: {
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, column));
        return Value(QByteArray(bytes, sqlite3_column_bytes(statement, column)));
    }
    default:
        return {};
    }
}

void setResult(sqlite3_context* context, const Value& value) {
    switch (value.kind()) {
    case Value::Kind::Null:
        sqlite3_result_null(context);
        break;
    case Value::Kind::Integer:
        sqlite3_result_int64(context, value.toInteger());
        break;
    case Value::Kind::Double:
        sqlite3_result_double(context, value.toDouble());
        break;
    case Value::Kind::Text: {
        const QByteArray utf8 = value.toText().toUtf8();
        functionWork += utf8.size();
        sqlite3_result_text64(context, utf8.constData(), static_cast<sqlite3_uint64>(utf8.size()), SQLITE_TRANSIENT,
                              SQLITE_UTF8);
        break;
    }
    case Value::Kind::Bytes: {
        const QByteArray bytes = value.toBytes();
        sqlite3_result_blob64(context, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()), SQLITE_TRANSIENT);
        break;
    }
    }
}

int bindValue(sqlite3_stmt* statement, int parameter, const Value& value) {
    switch (value.kind()) {
    case Value::Kind::Integer:
        return sqlite3_bind_int64(statement, parameter, value.toInteger());
    case Value::Kind::Double: {
        const double number = value.toDouble();
        if (!std::isfinite(number)) {
            raiseRuntimeError(infiniteNumber);
        }
        return isWhole(number) ? sqlite3_bind_int64(statement, parameter, static_cast<sqlite3_int64>(number))
                               : sqlite3_bind_double(statement, parameter, number);
    }
    case Value::Kind::Text: {
        const QByteArray utf8 = value.toText().toUtf8();
        return sqlite3_bind_text64(statement, parameter, utf8.constData(), static_cast<sqlite3_uint64>(utf8.size()),
                                   SQLITE_TRANSIENT, SQLITE_UTF8);
    }
    case Value::Kind::Bytes: {
        const QByteArray bytes = value.toBytes();
        return sqlite3_bind_blob64(statement, parameter, bytes.constData(), static_cast<sqlite3_uint64>(bytes.size()),
                                   SQLITE_TRANSIENT);
    }
    case Value::Kind::Null:
        break;
    }
    return sqlite3_bind_null(statement, parameter);
}

} // namespace dao
