#include "platform/dao/TableSchema.h"

#include "platform/dao/DeclaredRules.h"
#include "platform/dao/Error.h"
#include "platform/dao/Functions.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqliteError.h"

#include <algorithm>
#include <array>
#include <limits>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr size_t mostFields = 2000; // SQLite's limit of columns
constexpr qsizetype longestName = 64;

struct TypeName {
    int type;
    const char* name;
};

/// The first name of a type is the one that new tables get.
constexpr std::array typeNames = {
    TypeName{dbBoolean, "BOOLEAN"},   TypeName{dbByte, "TINYINT"},    TypeName{dbByte, "BYTE"},
    TypeName{dbInteger, "SMALLINT"},  TypeName{dbInteger, "SHORT"},   TypeName{dbLong, "INTEGER"},
    TypeName{dbLong, "LONG"},         TypeName{dbLong, "INT"},        TypeName{dbCurrency, "CURRENCY"},
    TypeName{dbSingle, "FLOAT"},      TypeName{dbSingle, "SINGLE"},   TypeName{dbDouble, "DOUBLE"},
    TypeName{dbDouble, "REAL"},       TypeName{dbDate, "DATETIME"},   TypeName{dbDate, "DATE"},
    TypeName{dbBinary, "BINARYBLOB"}, TypeName{dbText, "TEXT"},       TypeName{dbText, "VARCHAR"},
    TypeName{dbText, "NVARCHAR"},     TypeName{dbLongBinary, "BLOB"}, TypeName{dbMemo, "LONGTEXT"},
    TypeName{dbBigInt, "BIGINT"},     TypeName{dbDecimal, "DECIMAL"}, TypeName{dbDecimal, "NUMERIC"},
};

/// SQLite's own rule for a declared type that is none of ours.
int typeByAffinity(const QString& name) {
    const auto holds = [&](const char* word) { return name.contains(QLatin1StringView(word)); };
    if (holds("INT")) {
        return dbLong;
    }
    if (holds("CHAR") || holds("CLOB") || holds("TEXT")) {
        return dbText;
    }
    if (name.isEmpty() || holds("BLOB")) {
        return dbLongBinary;
    }
    return holds("REAL") || holds("FLOA") || holds("DOUB") ? dbDouble : dbDecimal;
}

QString typeName(int type) {
    for (const TypeName& entry : typeNames) {
        if (entry.type == type) {
            return QString::fromLatin1(entry.name);
        }
    }
    raiseEngineError(3259, QString::number(type)); // invalid field data type
}

/// The field whose whole numbers are the rows' own numbers in SQLite: the counter, or a Long that is the whole key.
const FieldDefinition* rowNumberField(const TableDef& definition) {
    for (const FieldDefinition& field : definition.Fields) {
        if ((field.Attributes & dbAutoIncrField) != 0) {
            return &field;
        }
    }
    for (const FieldDefinition& field : definition.Fields) {
        if (field.Type == dbLong && definition.PrimaryKey.size() == 1 &&
            sameName(definition.PrimaryKey.first(), field.Name)) {
            return &field;
        }
    }
    return nullptr;
}

QString columnSql(const FieldDefinition& field, bool isRowNumber, bool isInKey) {
    const QString name = quotedName(field.Name);
    if (isRowNumber) {
        const bool counter = (field.Attributes & dbAutoIncrField) != 0;
        return name + u" INTEGER PRIMARY KEY"_s + (counter ? u" AUTOINCREMENT"_s : QString());
    }
    QString sql = name + u' ' + typeName(field.Type);
    const bool sized = field.Size > 0 && (field.Type == dbText || field.Type == dbBinary);
    if (sized) {
        sql += u'(' + QString::number(field.Size) + u')';
    }
    if (field.Type == dbBoolean) {
        sql += u" NOT NULL DEFAULT 0"_s;
    } else if (field.Required || isInKey) {
        sql += u" NOT NULL"_s;
    }
    if (isTextType(field.Type)) {
        sql += u" COLLATE "_s + QLatin1StringView(textCollation);
    }
    if (sized) {
        // Enforced by the file itself, so that no way of writing circumvents it.
        sql += u" CONSTRAINT "_s + quotedName(sizeRuleName(field.Name)) + u" CHECK (length("_s + name + u") <= "_s +
               QString::number(field.Size) + u')';
    }
    return sql;
}

QString nameList(const QStringList& names) {
    QStringList quoted;
    for (const QString& name : names) {
        quoted += quotedName(name);
    }
    return u'(' + quoted.join(u", "_s) + u')';
}

void requireFields(const TableDef& definition) {
    if (definition.Fields.empty()) {
        raiseEngineError(3264, definition.Name());
    }
    if (definition.Fields.size() > mostFields) {
        raiseEngineError(3190);
    }
    QStringList folded;
    for (const FieldDefinition& field : definition.Fields) {
        requireValidName(field.Name);
        folded += field.Name.toCaseFolded();
    }
    std::sort(folded.begin(), folded.end());
    const auto twice = std::adjacent_find(folded.begin(), folded.end());
    if (twice != folded.end()) {
        raiseEngineError(3191, *twice);
    }
}

QString tableSql(const QString& schema, const TableDef& definition) {
    const FieldDefinition* const rowNumber = rowNumberField(definition);
    const bool keyIsRowNumber =
        rowNumber != nullptr && definition.PrimaryKey.size() <= 1 &&
        (definition.PrimaryKey.isEmpty() || sameName(definition.PrimaryKey.first(), rowNumber->Name));
    QStringList parts;
    for (const FieldDefinition& field : definition.Fields) {
        parts += columnSql(field, &field == rowNumber, containsName(definition.PrimaryKey, field.Name));
    }
    if (!definition.PrimaryKey.isEmpty() && !keyIsRowNumber) {
        parts += (rowNumber != nullptr ? u"UNIQUE "_s : u"PRIMARY KEY "_s) + nameList(definition.PrimaryKey);
    }
    return u"CREATE TABLE "_s + schema + u'.' + quotedName(definition.Name()) + u" ("_s + parts.join(u", "_s) + u')';
}

/// A name by which a statement reaches the hidden row number: one that no column has taken.
QString rowNumberName(const std::vector<ColumnInfo>& columns) {
    for (const QString& name : {u"rowid"_s, u"_rowid_"_s, u"oid"_s}) {
        const auto same = [&](const ColumnInfo& column) { return sameName(column.name, name); };
        if (std::none_of(columns.begin(), columns.end(), same)) {
            return name;
        }
    }
    return {};
}

ColumnInfo columnOf(Connection& connection, const QString& schema, const QString& table, const Statement& row) {
    ColumnInfo column;
    column.name = row.text(1);
    const DeclaredType declared = declaredType(row.text(2));
    column.type = declared.type;
    column.size = declared.size;
    column.sourceTable = table;
    column.sourceField = column.name;
    const bool isKey = row.number(5) != 0;
    int counter = 0;
    if (isKey && column.type == dbLong) {
        const QByteArray database = schema.mid(1, schema.size() - 2).toUtf8(); // without its quotes
        sqlite3_table_column_metadata(connection.handle(), database.constData(), table.toUtf8().constData(),
                                      column.name.toUtf8().constData(), nullptr, nullptr, nullptr, nullptr, &counter);
    }
    column.attributes = counter != 0 ? dbAutoIncrField : 0;
    return column;
}

} // namespace

DeclaredType declaredType(const QString& declaration) {
    const qsizetype bracket = declaration.indexOf(u'(');
    const QString name = declaration.left(bracket < 0 ? declaration.size() : bracket).trimmed().toUpper();
    DeclaredType result;
    result.type = typeByAffinity(name);
    for (const TypeName& entry : typeNames) {
        if (name == QLatin1StringView(entry.name)) {
            result.type = entry.type;
            break;
        }
    }
    if (bracket >= 0 && (result.type == dbText || result.type == dbBinary)) {
        const qsizetype end = declaration.indexOf(u')', bracket);
        result.size = std::max(0, declaration.mid(bracket + 1, end - bracket - 1).trimmed().toInt());
    }
    return result;
}

bool isSystemName(const QString& name) {
    return name.startsWith(systemPrefix, Qt::CaseInsensitive) || name.startsWith(u"sqlite_"_s, Qt::CaseInsensitive);
}

void requireValidName(const QString& name) {
    bool valid = !name.isEmpty() && name.size() <= longestName && !name.startsWith(u' ') && !isSystemName(name);
    for (const QChar c : name) {
        valid = valid && c.unicode() >= 0x20 && !u".!`[]"_s.contains(c);
    }
    if (!valid) {
        raiseEngineError(3125, name);
    }
}

void createTable(Connection& connection, const QString& schema, const TableDef& definition) {
    requireValidName(definition.Name());
    requireFields(definition);
    connection.run(u"SAVEPOINT \"table\""_s, Purpose::Write);
    try {
        connection.run(tableSql(schema, definition), Purpose::Write);
        for (const TableDef::Index& index : definition.Indexes) {
            const QString unique = index.unique ? u"UNIQUE "_s : QString();
            connection.run(u"CREATE "_s + unique + u"INDEX "_s + schema + u'.' +
                               quotedName(definition.Name() + u'_' + index.name) + u" ON "_s +
                               quotedName(definition.Name()) + u' ' + nameList(index.fields),
                           Purpose::Write);
        }
        connection.run(u"RELEASE \"table\""_s, Purpose::Write);
    } catch (const Error&) {
        sqlite3_exec(connection.handle(), "ROLLBACK TO \"table\"; RELEASE \"table\"", nullptr, nullptr, nullptr);
        throw;
    }
}

void dropTable(Connection& connection, const QString& schema, const QString& table) {
    connection.run(u"DROP TABLE "_s + schema + u'.' + quotedName(table), Purpose::Write);
}

std::optional<StoredTable> readTable(Connection& connection, const QString& schema, const QString& table) {
    if (isSystemName(table)) {
        return std::nullopt;
    }
    StoredTable stored;
    {
        Statement rows(connection, u"SELECT type = 'index', name, sql FROM "_s + schema +
                                       u".sqlite_schema WHERE type IN ('table', 'view', 'index') AND tbl_name = ?1 "
                                       "COLLATE "_s +
                                       QLatin1StringView(textCollation));
        rows.bind(1, Value(table));
        while (rows.step()) {
            const bool isIndex = rows.number(0) != 0;
            if (!isIndex && stored.name.isEmpty()) {
                stored.name = rows.text(1);
            }
            stored.readOnly = stored.readOnly || callsFunctions(rows.text(2).toUtf8());
        }
    }
    if (stored.name.isEmpty()) {
        return std::nullopt;
    }
    Statement kind(connection, u"PRAGMA "_s + schema + u".table_list("_s + quotedName(stored.name) + u')');
    if (!kind.step() || kind.text(2) == u"shadow"_s) {
        return std::nullopt; // a virtual table keeps its content in it
    }
    if (kind.text(2) != u"table"_s) {
        raiseEngineError(3274, stored.name + (kind.text(2) == u"view"_s ? u" is a view"_s : u" is a virtual table"_s));
    }
    const bool withoutRowNumber = kind.number(4) != 0;
    Statement columns(connection, u"PRAGMA "_s + schema + u".table_xinfo("_s + quotedName(stored.name) + u')');
    while (columns.step()) {
        if (isComputedField(columns)) {
            raiseEngineError(3274, stored.name + u'.' + columns.text(1) + u" is a computed field"_s);
        }
        stored.columns.push_back(columnOf(connection, schema, stored.name, columns));
        if (columns.number(5) != 0) {
            stored.keyColumns += stored.columns.back().name;
        }
    }
    if (!withoutRowNumber) {
        stored.rowKey = rowNumberName(stored.columns);
    }
    return stored;
}

QStringList uniqueFields(Connection& connection, const QString& schema, const StoredTable& table) {
    const auto isText = [&](const QString& field) {
        return std::any_of(table.columns.begin(), table.columns.end(), [&](const ColumnInfo& column) {
            return sameName(column.name, field) && !isNumericType(column.type);
        });
    };
    QStringList fields;
    if (table.keyColumns.size() == 1 && !isText(table.keyColumns.first())) {
        fields += table.keyColumns; // the row's own number has no index
    }
    Statement indexes(connection, u"PRAGMA "_s + schema + u".index_list("_s + quotedName(table.name) + u')');
    while (indexes.step()) {
        const bool isPartial = indexes.number(4) != 0;
        if (indexes.number(2) == 0 || isPartial) {
            continue;
        }
        Statement parts(connection, u"PRAGMA "_s + schema + u".index_xinfo("_s + quotedName(indexes.text(1)) + u')');
        QStringList keys;
        bool comparesAsHere = true;
        while (parts.step()) {
            const bool isKey = parts.number(5) != 0;
            const QString field = parts.text(2); // empty for an expression
            if (isKey) {
                keys += field;
                comparesAsHere = !isText(field) || parts.text(4) == QLatin1StringView(textCollation);
            }
        }
        if (keys.size() == 1 && comparesAsHere && !keys.first().isEmpty()) {
            fields += keys;
        }
    }
    return fields;
}

QStringList tableNames(Connection& connection, const QString& schema) {
    QStringList names;
    Statement list(connection,
                   u"SELECT name FROM "_s + schema +
                       u".sqlite_schema WHERE type = 'table' AND rootpage > 0"_s); // a virtual table has none
    while (list.step()) {
        const QString name = list.text(0);
        if (!isSystemName(name)) {
            names += name;
        }
    }
    std::sort(names.begin(), names.end(), [](const QString& a, const QString& b) { return compareTexts(a, b) < 0; });
    return names;
}

qint64 schemaVersion(Connection& connection, const QString& schema) {
    return connection.ask(u"PRAGMA "_s + schema + u".schema_version"_s);
}

qint64 dataVersion(Connection& connection, const QString& schema) {
    return connection.ask(u"PRAGMA "_s + schema + u".data_version"_s);
}

bool holdsOnlyNumbers(Connection& connection, const QString& schema, const QString& table, const QString& field) {
    // Texts and bytes are above every number.
    const QString name = quotedName(field);
    Statement other(connection, u"SELECT 1 FROM "_s + schema + u'.' + quotedName(table) + u" WHERE "_s + name +
                                    u" > ?1 OR "_s + name + u" < ?2 LIMIT 1"_s);
    constexpr double greatest = std::numeric_limits<double>::max();
    other.bind(1, Value(greatest));
    other.bind(2, Value(-greatest));
    return !other.step();
}

} // namespace dao
