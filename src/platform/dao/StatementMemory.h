#pragma once

#include "platform/dao/Binder.h"

#include <map>

namespace dao {

/// What a table looked like at one moment: equal states mean that the binder would get the same answers about it.
struct TableState {
    QString name;          ///< as the binder gets it, empty if there is no such table
    quint64 structure = 0; ///< a number that no other structure, of this table or another, ever has
    bool readOnly = false;
    friend bool operator==(const TableState&, const TableState&) = default;
};

class WatchedSchema : public SchemaSource {
public:
    /// Reaches the table as findTable() does and throws as it does, but doesn't list its columns.
    virtual TableState tableState(const QString& name) = 0;
};

/// The SELECTs and names that were bound last, with everything that the schema answered meanwhile. One is used again
/// only if the schema answers each of the questions now as it did then, so that nobody has to report changes.
class StatementMemory {
public:
    /// As bindStatement() or, with a name, bindName().
    BoundStatement bind(const QString& text, bool isName, WatchedSchema& schema);

private:
    class Listener;
    struct Answers {
        struct Table {
            QString name;
            TableState state;
        };
        struct Query {
            QString name;
            std::optional<QString> text;
        };
        struct Content {
            QString table, field;
            bool onlyNumbers;
        };
        std::vector<Table> tables;
        std::vector<Query> queries;
        std::vector<Content> contents;

        bool holdFor(WatchedSchema& schema) const;
    };
    struct Kept {
        BoundStatement bound;
        Answers answers;
    };

    void keep(const QString& text, bool isName, Kept kept);

    std::map<std::pair<QString, bool>, Kept> kept_;
    qsizetype size_ = 0;
};

} // namespace dao
