#pragma once

#include "platform/dao/ChangeSet.h"
#include "platform/dao/Recordset.h"
#include "platform/dao/Types.h"

#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

namespace dao {

class Database;
class DatabaseFile;
class RowBlock;
using DatabasePtr = std::shared_ptr<Database>;

/// A field to be made.
struct FieldDefinition {
    QString Name;
    int Type = dbText;
    int Size = 0;       ///< Text columns only; 0 without limit
    int Attributes = 0; ///< dbAutoIncrField: a counter that is the table's key and never reuses a number
    bool Required = false;
    /// A Double whose numbers are all whole is still a Double.
};

/// A table, or a link to a table in another file.
///
/// A definition from CreateTableDef lives apart until TableDefs::Append makes it real; changes to `Connect` and
/// `SourceTableName` of an existing link take effect when the table is next opened.
class TableDef {
public:
    QString Name() const { return name_; }
    int Attributes() const { return attributes_; }
    QString Connect() const { return connect_; }
    QString SourceTableName() const { return source_; }
    void setConnect(const QString& connect);
    void setSourceTableName(const QString& table);
    /// Opens the linked file and the table in it. @throws Error 3011, 3024, 3044, 3343 ...
    void RefreshLink();

    static FieldDefinition CreateField(const QString& name, int type, int size = 0, int attributes = 0);
    std::vector<FieldDefinition> Fields; ///< of a definition to be appended
    QStringList PrimaryKey;              ///< empty: the counter, if there is one
    struct Index {
        QString name;
        QStringList fields;
        bool unique = false;
    };
    std::vector<Index> Indexes;
    /// The fields of the table as it stands in its file.
    std::vector<ColumnInfo> columns() const;

private:
    friend class DatabaseFile;
    friend class TableDefs;
    QString name_, connect_, source_;
    int attributes_ = 0;
    std::weak_ptr<DatabaseFile> owner_; ///< nobody until it is appended
};
using TableDefPtr = std::shared_ptr<TableDef>;

/// The tables and links of a database, in order of name. A link that has the name of one of the file's own tables,
/// which only another program can have put there, leads nowhere: it is no item, and no name finds it.
class TableDefs {
public:
    int Count() const;
    TableDefPtr Item(int index) const;
    TableDefPtr Item(const QString& name) const; ///< @throws Error 3265
    bool contains(const QString& name) const;
    /// Makes the table or link. @throws Error 3010 exists, 3264 no field defined, 3027
    void Append(const TableDefPtr& definition);
    void Delete(const QString& name); ///< a link: only the link. @throws Error 3265, 3027
    /// Deletes every link, also those that are no items; never a table.
    void DeleteLinks();
    void Refresh();

private:
    friend class DatabaseFile;
    explicit TableDefs(DatabaseFile& owner) : owner_(owner) {}
    const std::vector<TableDefPtr>& items() const;
    DatabaseFile& owner_;
    mutable std::vector<TableDefPtr> items_;
    mutable bool current_ = false; ///< false: items_ are to be made again
};

class QueryDef {
public:
    QString Name() const { return name_; }
    QString SQL() const { return sql_; }
    /// Any text is kept; a text that is no SELECT fails when the query is opened.
    void setSQL(const QString& sql);

private:
    friend class DatabaseFile;
    friend class QueryDefs;
    QString name_, sql_;
    std::weak_ptr<DatabaseFile> owner_;
};
using QueryDefPtr = std::shared_ptr<QueryDef>;

class QueryDefs {
public:
    int Count() const;
    QueryDefPtr Item(int index) const;
    QueryDefPtr Item(const QString& name) const; ///< @throws Error 3265
    bool contains(const QString& name) const;
    void Delete(const QString& name); ///< @throws Error 3265
    void Refresh();

private:
    friend class DatabaseFile;
    explicit QueryDefs(DatabaseFile& owner) : owner_(owner) {}
    const std::vector<QueryDefPtr>& items() const;
    DatabaseFile& owner_;
    mutable std::vector<QueryDefPtr> items_;
    mutable bool current_ = false;
};

/// Fast way to add many rows to one table: one prepared statement, no value objects.
/// Columns are addressed by their place in the list the appender was opened with.
class Appender {
public:
    virtual ~Appender() = default;
    virtual void setNull(int column) = 0;
    virtual void setNumber(int column, double number) = 0; ///< whole numbers are stored as integers
    virtual void setText(int column, const QString& text) = 0;
    virtual void setUtf8(int column, const char* text, int bytes) = 0;
    /// Columns that were not set since the last row are Null. @throws Error 3022, 3026, 3043 ...
    virtual void appendRow() = 0;

    /// An empty block for the fields, which are numbers and texts. @throws Error 3190 too many of them
    virtual RowBlock newBlock() const = 0;
    /// Appends all rows of such a block, several times faster than one by one. The engine reads the block only
    /// meanwhile. Of a block that fails some rows may have been appended; what must be whole is taken back as a whole.
    /// @throws Error as appendRow()
    virtual void appendRows(const RowBlock& block) = 0;
};

/// A second file that is changed together with a database: what is done in it inside a transaction of the
/// database's workspace is committed or rolled back with it as one.
class Companion {
public:
    virtual ~Companion() = default;
    virtual QStringList tableNames() const = 0;
    virtual void createTable(const TableDef& definition) = 0;
    virtual void dropTable(const QString& name) = 0;
    virtual std::unique_ptr<Appender> openAppender(const QString& table, const QStringList& fields) = 0;
    /// Closes the file; not inside a transaction.
    virtual void close() = 0;
};

/// One open database file.
class Database {
public:
    virtual ~Database() = default;

    virtual QString Name() const = 0; ///< full path
    virtual bool readOnly() const = 0;
    /// A statement, or the bare name of a table, link or stored query.
    /// @throws Error 3078 no such table or query, 3011 a link's source table is gone, 3024, 3044 its file or folder,
    ///         3061 unknown column, 3075 syntax, 3464 type mismatch, 3274 a table that computes its fields, 3035 more
    ///         rows than memory has room for, 3059 ended by the progress hook, 3043, 3049, 3050 the file cannot be read
    virtual RecordsetPtr OpenRecordset(const QString& source, int type = dbOpenDynaset) = 0;
    /// A snapshot of some columns of what a SELECT gives: the others are neither read nor kept, however large.
    /// @param columns by their names in the result; one twice counts once
    /// @throws Error as OpenRecordset(); 3061 also for a name that the result has not
    virtual RecordsetPtr OpenColumns(const QString& source, const QStringList& columns) = 0;
    /// UPDATE, DELETE or INSERT; all or nothing. @throws Error, also without dbFailOnError
    virtual void Execute(const QString& statement, int options = 0) = 0;
    virtual int RecordsAffected() const = 0;

    /// Whether the declaration of a table, or of the table that a link leads to, keeps two rows from having equal
    /// values in a field: it is by itself the primary key or a unique index over all rows. A unique index lets Null
    /// stand in any number of rows. Looks at the declaration only, once for each structure of the table, never at rows.
    /// @throws Error 3078 no such table or link, 3265 no such field, 3011, 3024, 3044 as the link has it
    virtual bool isUnique(const QString& table, const QString& field) = 0;

    virtual class TableDefs& TableDefs() = 0;
    virtual class QueryDefs& QueryDefs() = 0;
    virtual TableDefPtr CreateTableDef(const QString& name) = 0;
    /// Keeps the query at once. @throws Error 3012 exists
    virtual QueryDefPtr CreateQueryDef(const QString& name, const QString& sql = QString()) = 0;

    /// Writes links and stored queries that changed since they were last written, in one transaction. Until then they
    /// live in memory, where every statement sees them. Never throws: a file that cannot be written keeps them in
    /// memory.
    virtual void saveDefinitions() = 0;

    virtual std::unique_ptr<Appender> openAppender(const QString& table, const QStringList& fields) = 0;
    /// Opens (or makes) a file beside this one for common transactions. Not inside a transaction.
    virtual std::unique_ptr<Companion> openCompanion(const QString& path) = 0;

    /// Those of the tables whose changes can't be recorded, because they have no declared key, hold rows without a key
    /// or are links.
    virtual QStringList unrecordable(const QStringList& tables) = 0;
    /// Records what is written to tables from now on, to be called at the beginning of a transaction. Makes the
    /// transaction a writer of this file at once, waiting for another's lock: none who writes later can have read what
    /// this transaction reads. Linked files stay unlocked. One at a time; rows written by another way than this
    /// engine's recordsets, statements and appenders are recorded too, but not missed.
    /// @throws Error 3260 another writes, 3027, 3219 outside of a transaction
    virtual std::unique_ptr<ChangeRecorder> record(const QStringList& tables) = 0;
    /// Takes a change set back, or applies it again, inside a transaction, which it makes a writer as record() does.
    /// `each` hears of every row that was written: first the removed, then the changed, then the added. After a failure
    /// the transaction is to be rolled back.
    /// @throws Error 3197 a row isn't, to the letter, what the change set leads from; 3260, 3026, 3043 ...
    virtual void apply(const ChangeSet& changes, ChangeWay way, const std::function<void(const ChangedRow&)>& each) = 0;

    /// As long as what this gives stays equal, nobody has changed a row of the tables, this program included. The
    /// reverse isn't said: it may differ though they are as they were. Costs no more than a look at the files.
    /// @throws Error 3011, 3024, 3044 a link's file or table is gone
    virtual std::vector<qint64> contentVersion(const QStringList& tables) = 0;

    /// Saves definitions, closes linked files and then the database. Recordsets in memory stay readable.
    virtual void Close() = 0;
    virtual bool isOpen() const = 0;
};

} // namespace dao
