#pragma once

#include "platform/dao/DatabaseLocation.h"
#include "platform/dao/Value.h"

#include <QString>
#include <exception>
#include <map>
#include <memory>
#include <sqlite3.h>
#include <utility>

namespace dao {

/// What SQLite was asked for when it refused: the error number of a refusal depends on it.
enum class Purpose { Open, Read, Write };

class Statement;

/// One SQLite connection with the engine's rules set: no trust in what a file brings along, waiting for other
/// processes' locks, the progress hook, and every refusal turned into the engine's error.
class Connection {
public:
    /// Opens the file and makes sure that it is a database. @throws Error 3343, 3049, 3050, 3051, 3043
    Connection(const DatabaseLocation& location, DatabaseLocation::Mode mode);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    sqlite3* handle() const { return handle_; }
    /// Runs statements that give no rows.
    void run(const QString& sql, Purpose purpose = Purpose::Read);
    /// Throws the engine's error for a result code of the last call. `file` is named where one is to blame.
    [[noreturn]] void raise(int code, Purpose purpose, const QString& file = QString());

    /// True while the progress hook runs: SQLite must not be entered then.
    bool isInHook() const { return inHook_; }
    /// Ends the running statement with 3059 when the hook returns.
    void cancel() { cancelled_ = true; }
    /// Calls the progress hook if it has waited long, in the middle of a function that SQLite has called.
    /// @return true if the statement is to end
    static bool endsLongFunction(sqlite3* handle);

    bool isReadOnly(const QByteArray& schema = "main") const;
    /// Gives a file the rollback journal that lets several files commit as one. A file that is in use otherwise stays
    /// as it is.
    void leaveWal(const QString& schema);
    bool isInTransaction() const { return sqlite3_get_autocommit(handle_) == 0; }

    /// The number that a statement gives, 0 for none. For the same few questions asked again and again: the statement
    /// stays prepared.
    qint64 ask(const QString& sql);
    /// Drops the statements that ask() has prepared, so that a file that they read can be detached.
    void forgetQuestions();

private:
    friend class Reading;
    friend class Statement;
    void beginReading();
    void endReading();
    void configure();
    void checkContent(const QString& file);
    void forgetHandle();
    void beginStatement();
    bool isHookOverdue() const;
    bool callHook();
    static int onProgress(void* self);
    static int onBusy(void* self, int count);

    sqlite3* handle_ = nullptr;
    bool inHook_ = false;
    bool cancelled_ = false;
    std::exception_ptr hookFailure_;
    int stepsSinceHook_ = 0;
    qint64 lastHook_ = 0; ///< or when the statement began, in milliseconds
    qint64 busySince_ = 0;
    std::map<QString, std::unique_ptr<Statement>> questions_;
    std::unique_ptr<Statement> reading_;
    int readings_ = 0;
};

/// A prepared statement.
class Statement {
public:
    /// @throws Error as Connection::raise()
    Statement(Connection& connection, const QString& sql, Purpose purpose = Purpose::Read);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    sqlite3_stmt* handle() const { return handle_; }
    /// True for a row, false at the end.
    bool step();
    void reset();
    void bind(int parameter, const Value& value);
    QString text(int column) const;
    qint64 number(int column) const { return sqlite3_column_int64(handle_, column); }

private:
    Connection& connection_;
    Purpose purpose_;
    sqlite3_stmt* handle_ = nullptr;
    bool running_ = false;
};

/// As long as it lives, reads of the connection's files lock each file only once and see it in one state; without it
/// every read locks the file again, which costs more than the read itself. One inside another adds nothing. Meant for
/// reads that belong together, not for what takes long, since nobody else can write into the connection's own file
/// meanwhile; nor to be held during a write: who is reading already does not wait for another's lock.
class Reading {
public:
    /// @throws Error as Connection::raise()
    explicit Reading(Connection& connection) : connection_(&connection) { connection.beginReading(); }
    ~Reading() { end(); }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    void end() {
        if (Connection* const connection = std::exchange(connection_, nullptr)) {
            connection->endReading();
        }
    }

private:
    Connection* connection_;
};

} // namespace dao
