#include "platform/dao/Definitions.h"

#include "platform/dao/DeclaredRules.h"
#include "platform/dao/Error.h"
#include "platform/dao/Functions.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr char linksTable[] = "__vx_links";
constexpr char queriesTable[] = "__vx_queries";
const QString mainSchema = u"\"main\""_s;

/// @throws Error 3274 for a table of another program's that would compute something when it is written
void requireWritable(Connection& connection, const char* table) {
    const QString name = QString::fromLatin1(table);
    if (!isPlainTable(connection, mainSchema, name) || computesOnWriting(connection, mainSchema, name)) {
        raiseEngineError(3274, name);
    }
}

bool hasColumns(Connection& connection, const char* table, const QStringList& columns) {
    for (const QString& column : columns) {
        if (sqlite3_table_column_metadata(connection.handle(), "main", table, column.toUtf8().constData(), nullptr,
                                          nullptr, nullptr, nullptr, nullptr) != SQLITE_OK) {
            return false;
        }
    }
    return isPlainTable(connection, mainSchema, QString::fromLatin1(table));
}

/// Calls `take` with each row's texts, if the table is there in the form in which this engine writes it.
template<typename Take>
void readRows(Connection& connection, const char* table, const QStringList& columns, Take take) {
    if (!hasColumns(connection, table, columns)) {
        return;
    }
    Statement rows(connection, u"SELECT "_s + columns.join(u", "_s) + u" FROM main."_s + QLatin1StringView(table));
    while (rows.step()) {
        take(rows);
    }
}

void writeRow(Connection& connection, const char* table, const QStringList& texts) {
    QStringList places;
    for (qsizetype i = 1; i <= texts.size(); ++i) {
        places += u"?%1"_s.arg(i);
    }
    Statement insert(connection,
                     u"INSERT OR REPLACE INTO main."_s + QLatin1StringView(table) + u" VALUES ("_s +
                         places.join(u", "_s) + u')',
                     Purpose::Write);
    for (int i = 0; i < texts.size(); ++i) {
        insert.bind(i + 1, Value(texts[i].isNull() ? u""_s : texts[i]));
    }
    insert.step();
}

void removeRow(Connection& connection, const char* table, const QString& name) {
    Statement remove(connection,
                     u"DELETE FROM main."_s + QLatin1StringView(table) + u" WHERE name = ?1 COLLATE "_s +
                         QLatin1StringView(textCollation), // another program's table has another order
                     Purpose::Write);
    remove.bind(1, Value(name));
    remove.step();
}

template<typename Map>
auto* find(Map& map, const QString& name) {
    const auto found = map.find(name);
    return found == map.end() ? nullptr : &found->second;
}

template<typename Map>
auto valuesOf(const Map& map) {
    std::vector<typename Map::mapped_type> values;
    values.reserve(map.size());
    for (const auto& [name, value] : map) {
        values.push_back(value);
    }
    return values;
}

/// Takes over what the file holds under every name that is not waiting to be written.
template<typename Map, typename Dirty>
void merge(Map& current, Map&& stored, const Dirty& dirty) {
    for (const auto& [name, set] : dirty) {
        stored.erase(name);
        if (set) {
            stored.emplace(name, current.at(name));
        }
    }
    current = std::move(stored);
}

} // namespace

void Definitions::load(Connection& connection) {
    decltype(links_) storedLinks;
    readRows(connection, linksTable, {u"name"_s, u"source"_s, u"connect"_s}, [&](const Statement& row) {
        storedLinks.insert_or_assign(row.text(0), Link{row.text(0), row.text(1), row.text(2)});
    });
    decltype(queries_) storedQueries;
    readRows(connection, queriesTable, {u"name"_s, u"sql"_s}, [&](const Statement& row) {
        storedQueries.insert_or_assign(row.text(0), Query{row.text(0), row.text(1)});
    });
    merge(links_, std::move(storedLinks), dirtyLinks_);
    merge(queries_, std::move(storedQueries), dirtyQueries_);
}

void Definitions::save(Connection& connection) {
    // Not IMMEDIATE: that would lock every linked file too, and wait for whoever reads or moves one of them.
    connection.run(u"BEGIN"_s, Purpose::Write);
    try {
        connection.run(u"CREATE TABLE IF NOT EXISTS main.__vx_links (name TEXT NOT NULL PRIMARY KEY COLLATE VXTEXT, "
                       "source TEXT NOT NULL, connect TEXT NOT NULL);"
                       "CREATE TABLE IF NOT EXISTS main.__vx_queries (name TEXT NOT NULL PRIMARY KEY COLLATE VXTEXT, "
                       "sql TEXT NOT NULL)"_s,
                       Purpose::Write);
        requireWritable(connection, linksTable);
        requireWritable(connection, queriesTable);
        for (const auto& [name, set] : dirtyLinks_) {
            removeRow(connection, linksTable, name);
            if (set) {
                const Link& link = links_.at(name);
                writeRow(connection, linksTable, {link.name, link.source, link.connect});
            }
        }
        for (const auto& [name, set] : dirtyQueries_) {
            removeRow(connection, queriesTable, name);
            if (set) {
                const Query& query = queries_.at(name);
                writeRow(connection, queriesTable, {query.name, query.sql});
            }
        }
        connection.run(u"COMMIT"_s, Purpose::Write);
    } catch (...) {
        sqlite3_exec(connection.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
    dirtyLinks_.clear();
    dirtyQueries_.clear();
}

const Definitions::Link* Definitions::findLink(const QString& name) const {
    return find(links_, name);
}

const Definitions::Query* Definitions::findQuery(const QString& name) const {
    return find(queries_, name);
}

void Definitions::setLink(const Link& link) {
    links_.insert_or_assign(link.name, link);
    dirtyLinks_.insert_or_assign(link.name, true);
}

void Definitions::setQuery(const Query& query) {
    queries_.insert_or_assign(query.name, query);
    dirtyQueries_.insert_or_assign(query.name, true);
}

bool Definitions::removeLink(const QString& name) {
    if (links_.erase(name) == 0) {
        return false;
    }
    dirtyLinks_.insert_or_assign(name, false);
    return true;
}

bool Definitions::removeQuery(const QString& name) {
    if (queries_.erase(name) == 0) {
        return false;
    }
    dirtyQueries_.insert_or_assign(name, false);
    return true;
}

std::vector<Definitions::Link> Definitions::links() const {
    return valuesOf(links_);
}

std::vector<Definitions::Query> Definitions::queries() const {
    return valuesOf(queries_);
}

QString linkedFile(const QString& connect) {
    const QString key = u"DATABASE="_s;
    for (qsizetype begin = 0; begin <= connect.size();) {
        const QString rest = connect.mid(begin).trimmed();
        if (rest.startsWith(key, Qt::CaseInsensitive)) {
            // To the end, since a folder's name may hold a semicolon; one that only closes the text is no part of it.
            const QString file = rest.mid(key.size());
            return (file.endsWith(u';') ? file.chopped(1) : file).trimmed();
        }
        const qsizetype end = connect.indexOf(u';', begin);
        begin = end < 0 ? connect.size() + 1 : end + 1;
    }
    raiseEngineError(3170, connect);
}

} // namespace dao
