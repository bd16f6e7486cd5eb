#include "platform/dao/Parser.h"
#include "platform/dao/RowCursor.h"
#include "platform/dao/SqliteValue.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

/// Searches on one column before an index of it pays.
constexpr int searchesBeforeIndex = 3;

} // namespace

bool RowCursor::find(const QString& criteria) {
    return loaded_ ? findInMemory(criteria) : findInFile(criteria);
}

bool RowCursor::findInFile(const QString& criteria) {
    const tree::ExpressionPtr condition = parseCriteria(criteria);
    const DatabaseFile::Operation operation(*source_.file);
    Reading reading(source_.file->connection());
    Attachments::Use use;
    reachTable(use);
    const QString sql = source_.file->criteriaSql(*condition, bound_, use);
    endUnlessOwn(reading);
    const bool found = fetch(bound_.whereSql + u" AND ("_s + sql + u')' + orderedSql() + u" LIMIT 1"_s);
    if (found) {
        place_ = Place::Fetched;
    }
    return found;
}

bool RowCursor::findInMemory(const QString& criteria) {
    if (!compiled_ || criteria != compiledText_) {
        compiled_ = compileCriteria(criteria, bound_.columns);
        compiledText_ = criteria;
    }
    catchUp();
    const std::optional<size_t> found = search(*compiled_);
    if (found) {
        place_ = Place::At;
        position_ = *found;
    }
    return found.has_value();
}

std::optional<size_t> RowCursor::search(const Criteria& criteria) {
    size_t position = 0;
    const auto equality = criteria.equality();
    if (equality && ++searches_[equality->first] > searchesBeforeIndex) {
        const auto& [column, sought] = *equality;
        const auto [entry, fresh] = indexes_.try_emplace(column);
        if (fresh) {
            entry->second.build(rowCount(), [&](size_t at) {
                const size_t row = rowAt(at);
                return rows_.isGone(row) ? Value() : contentOf(row, column);
            });
        }
        const bool exact = sought.kind() != Value::Kind::Integer || isWhole(sought.toDouble());
        if (entry->second.isComplete() && exact) {
            return entry->second.find(sought);
        }
    }
    const Criteria::Row row = [&](int column) { return contentOf(rowAt(position), column); };
    for (; position < rowCount(); ++position) {
        if (!rows_.isGone(rowAt(position)) && criteria.matches(row)) {
            return position;
        }
    }
    return std::nullopt;
}

void RowCursor::forgetSearches() {
    indexes_.clear();
}

} // namespace dao
