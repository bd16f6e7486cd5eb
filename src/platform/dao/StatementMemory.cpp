#include "platform/dao/StatementMemory.h"

#include "platform/dao/Parser.h"

namespace dao {

namespace {

/// Of all that is kept, in characters; some megabytes.
constexpr qsizetype mostCharacters = 2'000'000;
/// What one column of a result or one answer is counted as.
constexpr qsizetype charactersOfAnEntry = 100;

qsizetype sizeOf(const BoundStatement& bound) {
    const auto columns =
        static_cast<qsizetype>(bound.columns.size() + (bound.editable ? bound.editable->columns.size() : 0));
    return bound.sql.size() + bound.keySql.size() + bound.whereSql.size() + 2 * bound.rowSql.size() +
           bound.orderSql.size() + (columns + bound.columnSql.size()) * charactersOfAnEntry;
}

} // namespace

/// Passes the binder's questions on and records the answers.
class StatementMemory::Listener final : public SchemaSource {
public:
    explicit Listener(WatchedSchema& schema) : schema_(schema) {}

    std::optional<TableInfo> findTable(const QString& name) override {
        answers.tables.push_back({name, schema_.tableState(name)});
        return schema_.findTable(name);
    }
    std::optional<QString> findQuery(const QString& name) override {
        answers.queries.push_back({name, schema_.findQuery(name)});
        return answers.queries.back().text;
    }
    bool holdsOnlyNumbers(const QString& table, const QString& field) override {
        answers.contents.push_back({table, field, schema_.holdsOnlyNumbers(table, field)});
        return answers.contents.back().onlyNumbers;
    }

    Answers answers;

private:
    WatchedSchema& schema_;
};

bool StatementMemory::Answers::holdFor(WatchedSchema& schema) const {
    for (const Table& table : tables) {
        if (schema.tableState(table.name) != table.state) {
            return false;
        }
    }
    for (const Query& query : queries) {
        if (schema.findQuery(query.name) != query.text) {
            return false;
        }
    }
    for (const Content& content : contents) {
        if (schema.holdsOnlyNumbers(content.table, content.field) != content.onlyNumbers) {
            return false;
        }
    }
    return true;
}

BoundStatement StatementMemory::bind(const QString& text, bool isName, WatchedSchema& schema) {
    const auto known = kept_.find({text, isName});
    if (known != kept_.end() && known->second.answers.holdFor(schema)) {
        return known->second.bound;
    }
    Listener listener(schema);
    BoundStatement bound = isName ? bindName(text, listener) : bindStatement(parseStatement(text), listener);
    keep(text, isName, {bound, std::move(listener.answers)});
    return bound;
}

void StatementMemory::keep(const QString& text, bool isName, Kept kept) {
    const auto answers =
        static_cast<qsizetype>(kept.answers.tables.size() + kept.answers.queries.size() + kept.answers.contents.size());
    size_ += text.size() + sizeOf(kept.bound) + answers * charactersOfAnEntry;
    if (size_ > mostCharacters) {
        kept_.clear(); // a caller with that many different statements repeats few of them
        size_ = 0;
        return;
    }
    kept_.insert_or_assign({text, isName}, std::move(kept));
}

} // namespace dao
