#pragma once

#include "platform/dao/Connection.h"

#include <memory>
#include <vector>

namespace dao {

/// The files that a database's connection has opened besides its own. SQLite takes only a few at a time, so a file is
/// attached when it is first reached, and the least recently used one that nobody needs is detached to make room for
/// it. A file keeps its alias for as long as the database is open.
class Attachments {
public:
    struct File {
        QString schema; ///< quoted alias, such as "ln2"
        DatabaseLocation location;
        bool attached = false;
        bool readOnly = false;
        int users = 0;
        quint64 lastUse = 0;
        /// Counts how often it was attached: what was known of its tables is no longer valid then.
        int generation = 0;
        qint64 dataVersion = -1; ///< when it was attached
        QByteArray stamp;        ///< a moment later; see stampOf()
    };

    /// Keeps every file that was reached through it from being detached.
    class Use {
    public:
        Use() = default;
        ~Use();
        Use(const Use&) = delete;
        Use& operator=(const Use&) = delete;

    private:
        friend class Attachments;
        std::vector<std::shared_ptr<File>> files_;
    };

    Attachments(Connection& connection, const DatabaseLocation& main);

    const File& main() const { return *main_; }
    /// The file at the path, attached. @throws Error 3024, 3044, 3343, 3049, 3050, 3051; 3048 when all that
    /// can be open at a time are in use
    const File& reach(const QString& path, Use& use);
    /// The same for a file that is made if it isn't there.
    const File& reachNew(const QString& path, Use& use);
    /// How often the file of that alias was opened; 0 for the connection's own.
    int generation(const QString& schema) const;
    /// Detaches a file. @throws Error 3050 when it is still in use
    void letGo(const QString& schema);

private:
    std::shared_ptr<File> knownAt(const QString& path) const;
    const File& take(const std::shared_ptr<File>& file, Use& use);
    const File& attach(const DatabaseLocation& location, bool create, Use& use);
    std::shared_ptr<File> fileOf(const DatabaseLocation& location);
    QByteArray stampOf(const File& file) const;
    void open(File& file, bool create);
    void makeRoom();
    bool detach(File& file);

    Connection& connection_;
    std::shared_ptr<File> main_;
    std::vector<std::shared_ptr<File>> files_;
    quint64 uses_ = 0;
};

} // namespace dao
