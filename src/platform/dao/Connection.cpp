#include "platform/dao/Connection.h"

#include "platform/dao/EngineSettings.h"
#include "platform/dao/Error.h"
#include "platform/dao/Functions.h"
#include "platform/dao/Permissions.h"
#include "platform/dao/RowSource.h"
#include "platform/dao/SqliteError.h"
#include "platform/dao/SqliteValue.h"

#include <QThread>
#include <chrono>
#include <mutex>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr int outOfMemory = 7;
/// Steps of SQLite's machine between two calls of the hook: some milliseconds. A step that works on a long text takes
/// many times as long as any other, so the clock is looked at more often.
constexpr int stepsBetweenProgress = 20000;
constexpr int stepsBetweenLooks = 500;
constexpr qint64 longestWithoutProgress = 50; // milliseconds

/// The open connections, for the functions that SQLite calls, which know it only by its handle.
struct OpenConnections {
    std::mutex mutex;
    std::map<sqlite3*, Connection*> byHandle;
};

/// Never destroyed: a catalogue that is open to the end of the program is closed after every other object has gone.
OpenConnections& openConnections() {
    static auto* const open = new OpenConnections;
    return *open;
}

qint64 milliseconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

} // namespace

Connection::Connection(const DatabaseLocation& location, DatabaseLocation::Mode mode) {
    constexpr int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    // The mode of the URI narrows the flags.
    const int result = sqlite3_open_v2(location.uri(mode).constData(), &handle_, flags, nullptr);
    try {
        if (result != SQLITE_OK) {
            raise(result, Purpose::Open, location.path);
        }
        configure();
        {
            const std::lock_guard lock(openConnections().mutex);
            openConnections().byHandle.emplace(handle_, this);
        }
        checkContent(location.path);
        // No memory mapping: a medium that is taken out would end the process. The page cache keeps its size: SQLite
        // sorts in pieces of that size, and larger ones are slower.
        run(u"PRAGMA cell_size_check=ON; PRAGMA mmap_size=0"_s, Purpose::Open);
    } catch (...) {
        forgetHandle();
        sqlite3_close(handle_);
        throw;
    }
}

Connection::~Connection() {
    questions_.clear();
    reading_.reset();
    forgetHandle();
    sqlite3_close_v2(handle_);
}

void Connection::forgetHandle() {
    const std::lock_guard lock(openConnections().mutex);
    openConnections().byHandle.erase(handle_);
}

void Connection::configure() {
    const auto set = [this](int option, int on) { sqlite3_db_config(handle_, option, on, nullptr); };
    set(SQLITE_DBCONFIG_DEFENSIVE, 1);
    set(SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0);
    set(SQLITE_DBCONFIG_DQS_DML, 0);
    set(SQLITE_DBCONFIG_DQS_DDL, 0);
    set(SQLITE_DBCONFIG_ENABLE_TRIGGER, 0);
    set(SQLITE_DBCONFIG_ENABLE_VIEW, 0);
    set(SQLITE_DBCONFIG_ENABLE_LOAD_EXTENSION, 0);
    set(SQLITE_DBCONFIG_ENABLE_FKEY, 0);
    sqlite3_busy_handler(handle_, onBusy, this);
    sqlite3_progress_handler(handle_, stepsBetweenLooks, onProgress, this);
    restrictConnection(handle_);
    registerFunctions(handle_);
    if (RowSource::registerOn(handle_) != SQLITE_OK) {
        throw std::bad_alloc();
    }
}

void Connection::checkContent(const QString& file) {
    sqlite3_stmt* statement = nullptr;
    int result = sqlite3_prepare_v2(handle_, "SELECT count(*) FROM sqlite_schema", -1, &statement, nullptr);
    if (result == SQLITE_OK) {
        result = sqlite3_step(statement);
    }
    sqlite3_finalize(statement);
    if (result != SQLITE_ROW) {
        raise(result, Purpose::Open, file);
    }
}

void Connection::run(const QString& sql, Purpose purpose) {
    const QByteArray utf8 = sql.toUtf8();
    const char* rest = utf8.constData();
    while (*rest != '\0') {
        sqlite3_stmt* statement = nullptr;
        int result = sqlite3_prepare_v2(handle_, rest, -1, &statement, &rest);
        while (statement != nullptr && (result == SQLITE_OK || result == SQLITE_ROW)) {
            result = sqlite3_step(statement);
        }
        sqlite3_finalize(statement);
        if (result != SQLITE_OK && result != SQLITE_DONE) {
            raise(result, purpose);
        }
    }
}

qint64 Connection::ask(const QString& sql) {
    std::unique_ptr<Statement>& question = questions_[sql];
    if (!question) {
        question = std::make_unique<Statement>(*this, sql);
    }
    const qint64 answer = question->step() ? question->number(0) : 0;
    question->reset();
    return answer;
}

void Connection::forgetQuestions() {
    questions_.clear();
}

void Connection::beginReading() {
    if (readings_ == 0) {
        if (!reading_) {
            reading_ = std::make_unique<Statement>(*this, u"SELECT (SELECT 1 FROM main.sqlite_schema LIMIT 1)"_s);
        }
        reading_->step();
    }
    ++readings_;
}

void Connection::endReading() {
    if (--readings_ == 0) {
        reading_->reset();
    }
}

void Connection::raise(int code, Purpose purpose, const QString& file) {
    if (hookFailure_) {
        const std::exception_ptr failure = hookFailure_;
        hookFailure_ = nullptr;
        std::rethrow_exception(failure);
    }
    raiseFunctionError();
    if ((code & 0xFF) == SQLITE_NOMEM) {
        raiseRuntimeError(outOfMemory);
    }
    const QString message = handle_ != nullptr ? QString::fromUtf8(sqlite3_errmsg(handle_)) : QString();
    const int number = engineNumber(isForWantOfRoom(handle_, code) ? SQLITE_FULL : code, purpose, message);
    raiseEngineError(number, file.isEmpty() ? engineDetail(number, message) : file);
}

bool Connection::isReadOnly(const QByteArray& schema) const {
    return sqlite3_db_readonly(handle_, schema.constData()) == 1;
}

void Connection::leaveWal(const QString& schema) {
    Statement mode(*this, u"PRAGMA "_s + schema + u".journal_mode"_s);
    if (mode.step() && mode.text(0) == u"wal"_s) {
        mode.reset();
        const QByteArray sql = "PRAGMA " + schema.toUtf8() + ".journal_mode=DELETE";
        sqlite3_exec(handle_, sql.constData(), nullptr, nullptr, nullptr);
    }
}

int Connection::onProgress(void* self) {
    auto* connection = static_cast<Connection*>(self);
    connection->stepsSinceHook_ += stepsBetweenLooks;
    const bool due = connection->stepsSinceHook_ >= stepsBetweenProgress || connection->isHookOverdue();
    return due && connection->callHook() ? 1 : 0;
}

bool Connection::endsLongFunction(sqlite3* handle) {
    Connection* connection = nullptr;
    {
        const std::lock_guard lock(openConnections().mutex);
        const auto found = openConnections().byHandle.find(handle);
        connection = found != openConnections().byHandle.end() ? found->second : nullptr;
    }
    return connection != nullptr && connection->isHookOverdue() && connection->callHook();
}

void Connection::beginStatement() {
    lastHook_ = milliseconds();
}

bool Connection::isHookOverdue() const {
    return milliseconds() - lastHook_ >= longestWithoutProgress;
}

/// @return true if the statement is to end
bool Connection::callHook() {
    stepsSinceHook_ = 0;
    const std::function<bool()> hook = engineSettings().progress;
    if (!hook || inHook_) {
        lastHook_ = milliseconds();
        return false;
    }
    inHook_ = true;
    cancelled_ = false;
    bool stop = false;
    try {
        stop = hook();
    } catch (...) {
        hookFailure_ = std::current_exception();
        stop = true;
    }
    inHook_ = false;
    lastHook_ = milliseconds();
    return stop || cancelled_;
}

int Connection::onBusy(void* self, int count) {
    auto* connection = static_cast<Connection*>(self);
    if (count == 0) {
        connection->busySince_ = milliseconds();
    }
    if (milliseconds() - connection->busySince_ >= engineSettings().lockWait) {
        return 0;
    }
    QThread::msleep(static_cast<unsigned long>(std::min(5 + count * 5, 50)));
    return 1;
}

Statement::Statement(Connection& connection, const QString& sql, Purpose purpose)
    : connection_(connection), purpose_(purpose) {
    const QByteArray utf8 = sql.toUtf8();
    const int result =
        sqlite3_prepare_v2(connection.handle(), utf8.constData(), static_cast<int>(utf8.size()) + 1, &handle_, nullptr);
    if (result != SQLITE_OK) {
        connection.raise(result, purpose);
    }
}

Statement::~Statement() {
    sqlite3_finalize(handle_);
}

bool Statement::step() {
    if (!running_) {
        connection_.beginStatement();
        running_ = true;
    }
    const int result = sqlite3_step(handle_);
    if (result == SQLITE_ROW) {
        return true;
    }
    if (result != SQLITE_DONE) {
        // What neither writes nor has written can only have met a full disk with what it sorts.
        const bool onlySorts =
            sqlite3_stmt_readonly(handle_) != 0 && sqlite3_txn_state(connection_.handle(), nullptr) != SQLITE_TXN_WRITE;
        if (onlySorts && ((result & 0xFF) == SQLITE_FULL || isForWantOfRoom(connection_.handle(), result))) {
            constexpr int noRoom = 3026;
            sqlite3_reset(handle_);
            raiseEngineErrorInWords(
                noRoom, u"Not enough space on disk in '%1', the folder for temporary files."_s.arg(temporaryFolder()));
        }
        sqlite3_reset(handle_); // the message stays until the next call, the lock does not
        connection_.raise(result, purpose_);
    }
    return false;
}

void Statement::reset() {
    running_ = false;
    sqlite3_reset(handle_);
}

void Statement::bind(int parameter, const Value& value) {
    const int result = bindValue(handle_, parameter, value);
    if (result != SQLITE_OK) {
        connection_.raise(result, purpose_);
    }
}

QString Statement::text(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle_, column));
    return QString::fromUtf8(text, sqlite3_column_bytes(handle_, column));
}

} // namespace dao
