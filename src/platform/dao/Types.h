#pragma once

#include <QString>

namespace dao {

/// Field types by the engine's codes.
enum FieldType : int {
    dbBoolean = 1,
    dbByte = 2,
    dbInteger = 3,
    dbLong = 4,
    dbCurrency = 5,
    dbSingle = 6,
    dbDouble = 7,
    dbDate = 8,
    dbBinary = 9,
    dbText = 10,
    dbLongBinary = 11,
    dbMemo = 12,
    dbBigInt = 16,
    dbDecimal = 20
};

enum RecordsetType : int { dbOpenTable = 1, dbOpenDynaset = 2, dbOpenSnapshot = 4 };

enum ExecuteOption : int { dbFailOnError = 128 };

constexpr int dbAutoIncrField = 16;
constexpr int dbAttachedTable = 0x40000000;

/// True for the types whose values are numbers.
constexpr bool isNumericType(int type) {
    return (type >= dbBoolean && type <= dbDouble) || type == dbBigInt || type == dbDecimal;
}
constexpr bool isTextType(int type) {
    return type == dbText || type == dbMemo;
}

/// What is known of one column of a table, a query or a result.
struct ColumnInfo {
    QString name;
    int type = dbText;
    int size = 0;        ///< characters of a Text column, 0 without limit
    int attributes = 0;  ///< dbAutoIncrField for a counter
    QString sourceTable; ///< table that the column comes from, empty for an expression
    QString sourceField; ///< its name there
    friend bool operator==(const ColumnInfo&, const ColumnInfo&) = default;
};

} // namespace dao
