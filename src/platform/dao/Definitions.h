#pragma once

#include "platform/dao/Connection.h"

#include <map>
#include <vector>

namespace dao {

/// The links and stored queries of a database. They are read from its file once; from then on memory counts, and what
/// changed is written when it is asked for.
class Definitions {
public:
    struct Link {
        QString name;
        QString source;
        QString connect;
    };
    struct Query {
        QString name;
        QString sql;
    };

    /// Reads what the file holds, keeping what was changed and not yet written.
    void load(Connection& connection);
    /// Writes what changed, in one transaction. @throws Error; everything still counts as changed then
    void save(Connection& connection);
    bool isDirty() const { return !dirtyLinks_.empty() || !dirtyQueries_.empty(); }

    const Link* findLink(const QString& name) const;
    const Query* findQuery(const QString& name) const;
    void setLink(const Link& link);
    void setQuery(const Query& query);
    bool removeLink(const QString& name);
    bool removeQuery(const QString& name);
    /// In order of name.
    std::vector<Link> links() const;
    std::vector<Query> queries() const;

private:
    struct ByName {
        bool operator()(const QString& a, const QString& b) const { return compareTexts(a, b) < 0; }
    };
    std::map<QString, Link, ByName> links_;
    std::map<QString, Query, ByName> queries_;
    /// Names that were set (true) or removed (false) since they were written.
    std::map<QString, bool, ByName> dirtyLinks_;
    std::map<QString, bool, ByName> dirtyQueries_;
};

/// The file that a link's connect text names, ";DATABASE=" and a path. @throws Error 3170
QString linkedFile(const QString& connect);

} // namespace dao
