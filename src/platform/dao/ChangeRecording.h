#pragma once

#include "platform/dao/ChangeSet.h"
#include "platform/dao/DatabaseFile.h"

#include <set>

struct sqlite3_session;

namespace dao {

/// A recorder over SQLite's sessions. Must be gone before the connection is.
class FileRecorder final : public ChangeRecorder {
public:
    /// @param tables names for SQLite of the file's own tables, without schema
    FileRecorder(DatabaseFilePtr file, const QStringList& tables);
    ~FileRecorder() override;
    FileRecorder(const FileRecorder&) = delete;
    FileRecorder& operator=(const FileRecorder&) = delete;

    ChangeSet take(QIODevice& device) override;
    QStringList missed() const override;

    void noteWrite(const QString& sqlName) { written_.insert(sqlName); }
    /// Stops recording, before the connection is closed.
    void end();

private:
    DatabaseFilePtr file_;
    std::set<QString> recorded_, written_;
    sqlite3_session* session_ = nullptr;
};

} // namespace dao
