#pragma once

#include "platform/dao/Database.h"
#include "platform/dao/Error.h"
#include "platform/dao/Recordset.h"
#include "platform/dao/Types.h"

#include <memory>

namespace dao {

/// A session with the engine; transactions cover every database that was opened through it.
class Workspace {
public:
    Workspace();
    ~Workspace();
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// Opens a file. A file that may not be written is opened nevertheless: its links and stored queries are then kept
    /// in memory and a write of content fails with 3027.
    /// @throws Error 3044 no such folder, 3024 no such file, 3051 cannot be opened, 3343 no database, 3049 damaged,
    ///         3050 locked by another process
    DatabasePtr OpenDatabase(const QString& path, bool exclusive = false, bool readOnly = false);

    /// Makes a new, empty database file and opens it. @throws Error 3204 exists already, 3044, 3043
    DatabasePtr CreateDatabase(const QString& path);

    /// Nested transactions are savepoints. A commit that fails on a lock may be tried again; after any other
    /// failure the transaction is rolled back and over. @throws Error 3034 commit or rollback without begin
    void BeginTrans();
    void CommitTrans();
    void Rollback();

private:
    friend class DatabaseFile;
    struct State;
    std::shared_ptr<State> state_;
};

/// The engine: one for the process.
class DBEngine {
public:
    static DBEngine& instance();
    /// Version of the library that keeps the files.
    static QString storeVersion();

    Workspace& Workspaces(int index);
    DatabasePtr OpenDatabase(const QString& path) { return Workspaces(0).OpenDatabase(path); }
    /// The errors of the last operation; empties when the next operation begins.
    Errors& errors();

    /// With true, links and stored queries of databases opened from now on live in memory only (for a program that
    /// must not change a catalogue by analysing it).
    void setDefinitionsInMemory(bool inMemory);
    bool definitionsInMemory() const;

    /// How long a statement waits for another process's lock before error 3050 or 3260, in milliseconds.
    void setLockWait(int milliseconds);
    int lockWait() const;

    /// Called every few milliseconds while a statement runs, also inside a function that takes long; returning true
    /// ends the statement with error 3059 (operation cancelled). The analysis processes events here. An empty function
    /// removes the hook.
    void setProgress(std::function<bool()> hook);

    /// Called with each statement just before SQLite runs it (Jet text, SQLite text); for tests and --sql.
    void setTrace(std::function<void(const QString& jet, const QString& sqlite)> trace);

private:
    DBEngine();
    ~DBEngine();
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace dao
