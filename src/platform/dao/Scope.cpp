#include "platform/dao/Scope.h"

#include "platform/dao/Error.h"
#include "platform/dao/SqlText.h"

#include <utility>

namespace dao {

namespace {

const ScopeColumn* findIn(const ScopeSource& source, const QString& name) {
    for (const ScopeColumn& column : source.columns)
        if (sameName(column.info.name, name))
            return &column;
    return nullptr;
}

} // namespace

Domain domainOf(int fieldType) {
    if (isNumericType(fieldType))
        return Domain::Number;
    return isTextType(fieldType) ? Domain::Text : Domain::Mixed;
}

ScopeSourcePtr recordsetSource(const std::vector<ColumnInfo>& columns, const QStringList& sql) {
    auto source = std::make_shared<ScopeSource>();
    for (size_t i = 0; i < columns.size(); ++i) {
        const ColumnInfo& info = columns[i];
        // What an expression gives may be text in one row and number in the next, whatever its type says.
        const Domain domain = info.sourceField.isEmpty() ? Domain::Mixed : domainOf(info.type);
        source->columns.push_back({info, domain, {}, sql.value(static_cast<qsizetype>(i)), static_cast<int>(i)});
    }
    for (size_t i = 0; i < columns.size(); ++i) {
        const QString qualified = columns[i].sourceTable + u'.' + columns[i].sourceField;
        if (columns[i].sourceTable.isEmpty() || findIn(*source, qualified))
            continue;
        ScopeColumn column = source->columns[i];
        column.info.name = qualified;
        source->columns.push_back(std::move(column));
    }
    return source;
}

void Scope::add(ScopeSourcePtr source) {
    if (findSource(source->name))
        raiseEngineError(3081, source->name);
    sources_.push_back(std::move(source));
}

const ScopeSource* Scope::findSource(const QString& name) const {
    for (const ScopeSourcePtr& source : sources_)
        if (sameName(source->name, name))
            return source.get();
    return nullptr;
}

const ScopeColumn* Scope::findHere(const QString& name) const {
    const ScopeColumn* found = nullptr;
    for (const ScopeSourcePtr& source : sources_) {
        const ScopeColumn* column = findIn(*source, name);
        if (column && found)
            raiseEngineError(3079, name);
        if (column)
            found = column;
    }
    return found;
}

bool Scope::findOwn(const QString& qualifier, const QString& name, const ScopeColumn*& column) const {
    if (qualifier.isEmpty()) {
        column = findHere(name);
        return column != nullptr;
    }
    const ScopeSource* source = findSource(qualifier);
    column = source ? findIn(*source, name) : findHere(qualifier + u'.' + name);
    return column || source;
}

const ScopeColumn* Scope::find(const QString& qualifier, const QString& name) const {
    const ScopeColumn* column = nullptr;
    if (findOwn(qualifier, name, column))
        return column;
    return outer_ ? outer_->findFromInside(qualifier, name) : nullptr;
}

const ScopeColumn* Scope::findFromInside(const QString& qualifier, const QString& name) const {
    const ScopeColumn* column = nullptr;
    if (!findOwn(qualifier, name, column))
        return outer_ ? outer_->findFromInside(qualifier, name) : nullptr;
    if (column)
        namedInside_.push_back(*column);
    return column;
}

std::vector<ScopeColumn> Scope::takeNamedInside() const {
    return std::exchange(namedInside_, {});
}

} // namespace dao
