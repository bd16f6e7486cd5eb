#pragma once

#include "platform/dao/Attachments.h"
#include "platform/dao/Binder.h"
#include "platform/dao/Database.h"
#include "platform/dao/Definitions.h"
#include "platform/dao/StatementMemory.h"
#include "platform/dao/TableSchema.h"

#include <QStringList>
#include <map>
#include <optional>

namespace dao {

class FileRecorder;

/// One open file: its connection, the files that its links reach, its definitions; and where the binder finds names.
class DatabaseFile final : public Database, private WatchedSchema, public std::enable_shared_from_this<DatabaseFile> {
public:
    enum class Opening { Existing, New };

    /// @throws Error as Workspace::OpenDatabase()
    DatabaseFile(const QString& path, Opening opening, bool exclusive, bool readOnly);
    ~DatabaseFile() override;

    QString Name() const override { return location_.path; }
    bool readOnly() const override { return readOnly_; }
    RecordsetPtr OpenRecordset(const QString& source, int type) override;
    RecordsetPtr OpenColumns(const QString& source, const QStringList& columns) override;
    void Execute(const QString& statement, int options) override;
    int RecordsAffected() const override { return recordsAffected_; }
    bool isUnique(const QString& table, const QString& field) override;
    class TableDefs& TableDefs() override {
        return tableDefs_;
    }
    class QueryDefs& QueryDefs() override {
        return queryDefs_;
    }
    TableDefPtr CreateTableDef(const QString& name) override;
    QueryDefPtr CreateQueryDef(const QString& name, const QString& sql) override;
    void saveDefinitions() override;
    std::unique_ptr<Appender> openAppender(const QString& table, const QStringList& fields) override;
    std::unique_ptr<Companion> openCompanion(const QString& path) override;
    QStringList unrecordable(const QStringList& tables) override;
    std::unique_ptr<ChangeRecorder> record(const QStringList& tables) override;
    void apply(const ChangeSet& changes, ChangeWay way, const std::function<void(const ChangedRow&)>& each) override;
    std::vector<qint64> contentVersion(const QStringList& tables) override;
    void Close() override;
    bool isOpen() const override { return connection_ != nullptr && !closing_; }

    /// One operation of the engine on this file: it begins with an empty error list, must not begin while the
    /// progress hook runs, and a Close that came meanwhile is done when it ends.
    class Operation {
    public:
        /// @throws Error 3420 closed, 3219 in the middle of another statement; the number of the write that failed
        ///         when the transaction around it is lost
        explicit Operation(DatabaseFile& file);
        ~Operation();
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;

    private:
        std::shared_ptr<DatabaseFile> file_;
    };

    /// Reads a statement, or a bare name where one may stand; the linked files that it reaches stay open as long as
    /// `use` lives.
    BoundStatement bind(const QString& source, Attachments::Use& use, bool mayBeName);
    std::optional<TableInfo> findTable(const QString& name, Attachments::Use& use);
    /// A search's condition as bindCriteriaSql() writes it.
    QString criteriaSql(const tree::Expression& criteria, const BoundStatement& statement, Attachments::Use& use);
    /// A table of one attached file.
    std::optional<TableInfo> tableIn(const Attachments::File& file, const QString& table);
    Connection& connection() { return *connection_; }
    Attachments& attachments() { return *attachments_; }
    Definitions& definitions() { return definitions_; }
    /// Names of the file's own tables, in order.
    const QStringList& ownTables();
    void requireWritable() const;
    /// Counts what this engine has written to a table, by its name for SQLite: rows in memory may be older.
    void noteWrite(const QString& sqlName);
    quint64 writesTo(const QString& sqlName) { return writes_[sqlName]; }
    void recorderGone(const FileRecorder* recorder) { recorder_ = recorder == recorder_ ? nullptr : recorder_; }
    /// After a change of tables, links or queries.
    void definitionsChanged();
    void trace(const QString& jet, const QString& sqlite) const;

    // The workspace's calls, from the outermost level 1 inwards.
    void begin(int level);
    void commit(int level);
    void rollback(int level);
    int transactionLevel() const { return level_; }
    /// True when SQLite has taken back the whole transaction after a failure: it can only be rolled back.
    bool isTransactionLost() const;

private:
    /// What was found in a field, and when.
    struct Content {
        bool onlyNumbers = false;
        qint64 dataVersion = -1;
    };
    struct CachedTable {
        qint64 schemaVersion = -1;
        int generation = 0;
        QByteArray stamp;      ///< of the file
        quint64 structure = 0; ///< another number whenever the table was read and found changed
        std::optional<StoredTable> table;
        std::map<QString, Content> contents; ///< of fields that were asked for
        std::optional<QStringList> unique;   ///< fields whose values are unique by declaration, once asked for
    };

    std::optional<TableInfo> findTable(const QString& name) override;
    std::optional<QString> findQuery(const QString& name) override;
    bool holdsOnlyNumbers(const QString& table, const QString& field) override;
    TableState tableState(const QString& name) override;
    /// Where a name leads.
    struct Place {
        const Attachments::File* file;
        CachedTable* table;
        QString link; ///< the link that leads there, if one does
    };
    Place placeOf(const QString& name);
    std::optional<TableInfo> infoOf(const Place& place) const;
    CachedTable& cachedTable(const Attachments::File& file, const QString& name);
    void holdOn(CachedTable& cached, const Attachments::File& file);
    bool isName(const QString& source);
    void open(Opening opening, bool exclusive, bool readOnly);
    void closeNow();
    void requireOutsideHook() const;
    void takeWritersPlace(const QStringList& tables);
    int lossNumber() const;

    DatabaseLocation location_;
    std::unique_ptr<Connection> connection_;
    std::unique_ptr<Attachments> attachments_;
    Definitions definitions_;
    bool readOnly_ = false;
    bool keepInMemory_ = false;
    bool closing_ = false;
    int operations_ = 0;
    int level_ = 0;
    int lostBy_ = 0; ///< number of the failed write with which SQLite took a whole transaction back
    int recordsAffected_ = 0;
    Attachments::Use* bindingUse_ = nullptr; ///< of the statement that is being bound
    std::map<std::pair<QString, QString>, CachedTable> tables_;
    quint64 structures_ = 0;
    StatementMemory memory_;
    std::map<QString, quint64> writes_;
    FileRecorder* recorder_ = nullptr;
    QStringList ownTables_;
    qint64 ownTablesVersion_ = -1;
    class TableDefs tableDefs_;
    class QueryDefs queryDefs_;
};

using DatabaseFilePtr = std::shared_ptr<DatabaseFile>;

} // namespace dao
