#include "platform/dao/DatabaseFile.h"
#include "platform/dao/Error.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/TableSchema.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

DatabaseFilePtr openOwner(const std::weak_ptr<DatabaseFile>& owner) {
    const DatabaseFilePtr file = owner.lock();
    if (!file || !file->isOpen()) {
        raiseEngineError(3420);
    }
    return file;
}

template<typename Item>
Item itemNamed(const std::vector<Item>& items, const QString& name) {
    for (const Item& item : items) {
        if (sameName(item->Name(), name)) {
            return item;
        }
    }
    return nullptr;
}

template<typename Item>
Item itemAt(const std::vector<Item>& items, int index) {
    if (index < 0 || index >= static_cast<int>(items.size())) {
        raiseEngineError(3265, QString::number(index));
    }
    return items[static_cast<size_t>(index)];
}

template<typename Item>
Item requireItem(const std::vector<Item>& items, const QString& name) {
    const Item item = itemNamed(items, name);
    if (!item) {
        raiseEngineError(3265, name);
    }
    return item;
}

} // namespace

// TableDef

void TableDef::setConnect(const QString& connect) {
    if (const DatabaseFilePtr owner = owner_.lock()) {
        if (attributes_ != dbAttachedTable) {
            raiseEngineError(3219);
        }
        const DatabaseFile::Operation operation(*owner);
        linkedFile(connect);
        owner->definitions().setLink({name_, source_, connect});
    }
    connect_ = connect;
}

void TableDef::setSourceTableName(const QString& table) {
    if (const DatabaseFilePtr owner = owner_.lock()) {
        if (attributes_ != dbAttachedTable) {
            raiseEngineError(3219);
        }
        const DatabaseFile::Operation operation(*owner);
        owner->definitions().setLink({name_, table, connect_});
    }
    source_ = table;
}

void TableDef::RefreshLink() {
    if (attributes_ == dbAttachedTable) {
        (void)columns();
    }
}

FieldDefinition TableDef::CreateField(const QString& name, int type, int size, int attributes) {
    return {name, type, size, attributes, false};
}

std::vector<ColumnInfo> TableDef::columns() const {
    const DatabaseFilePtr owner = openOwner(owner_);
    const DatabaseFile::Operation operation(*owner);
    Attachments::Use use;
    const std::optional<TableInfo> table = owner->findTable(name_, use);
    if (!table) {
        raiseEngineError(3078, name_);
    }
    return table->columns;
}

TableDefPtr DatabaseFile::CreateTableDef(const QString& name) {
    auto definition = std::make_shared<TableDef>();
    definition->name_ = name;
    return definition;
}

// TableDefs

const std::vector<TableDefPtr>& TableDefs::items() const {
    const DatabaseFile::Operation operation(owner_);
    if (current_) {
        return items_;
    }
    std::vector<TableDefPtr> items;
    const QStringList own = owner_.ownTables();
    for (const QString& name : own) {
        auto item = std::make_shared<TableDef>();
        item->name_ = name;
        items.push_back(item);
    }
    for (const Definitions::Link& link : owner_.definitions().links()) {
        if (containsName(own, link.name)) {
            continue;
        }
        auto item = std::make_shared<TableDef>();
        item->name_ = link.name;
        item->source_ = link.source;
        item->connect_ = link.connect;
        item->attributes_ = dbAttachedTable;
        items.push_back(item);
    }
    for (const TableDefPtr& item : items) {
        item->owner_ = owner_.weak_from_this();
    }
    std::sort(items.begin(), items.end(),
              [](const TableDefPtr& a, const TableDefPtr& b) { return compareTexts(a->Name(), b->Name()) < 0; });
    items_ = std::move(items);
    current_ = true;
    return items_;
}

int TableDefs::Count() const {
    return static_cast<int>(items().size());
}

TableDefPtr TableDefs::Item(int index) const {
    return itemAt(items(), index);
}

TableDefPtr TableDefs::Item(const QString& name) const {
    return requireItem(items(), name);
}

bool TableDefs::contains(const QString& name) const {
    return itemNamed(items(), name) != nullptr;
}

void TableDefs::Append(const TableDefPtr& definition) {
    const bool taken = contains(definition->Name());
    const DatabaseFile::Operation operation(owner_);
    requireValidName(definition->Name());
    if (taken) {
        raiseEngineError(3010, definition->Name());
    }
    if (owner_.definitions().findQuery(definition->Name()) != nullptr) {
        raiseEngineError(3012, definition->Name());
    }
    if (!definition->Connect().isEmpty()) {
        linkedFile(definition->Connect());
        owner_.definitions().setLink({definition->Name(), definition->SourceTableName(), definition->Connect()});
        definition->attributes_ = dbAttachedTable;
    } else {
        owner_.requireWritable();
        createTable(owner_.connection(), owner_.attachments().main().schema, *definition);
    }
    definition->owner_ = owner_.weak_from_this();
    owner_.definitionsChanged();
}

void TableDefs::Delete(const QString& name) {
    const TableDefPtr item = Item(name);
    const DatabaseFile::Operation operation(owner_);
    if (item->Attributes() == dbAttachedTable) {
        owner_.definitions().removeLink(name);
    } else {
        owner_.requireWritable();
        dropTable(owner_.connection(), owner_.attachments().main().schema, item->Name());
    }
    item->owner_.reset();
    owner_.definitionsChanged();
}

void TableDefs::DeleteLinks() {
    const DatabaseFile::Operation operation(owner_);
    for (const Definitions::Link& link : owner_.definitions().links()) {
        owner_.definitions().removeLink(link.name);
    }
    owner_.definitionsChanged();
}

void TableDefs::Refresh() {
    const DatabaseFile::Operation operation(owner_);
    owner_.definitions().load(owner_.connection());
    owner_.definitionsChanged();
}

// QueryDef and QueryDefs

void QueryDef::setSQL(const QString& sql) {
    const DatabaseFilePtr owner = openOwner(owner_);
    const DatabaseFile::Operation operation(*owner);
    owner->definitions().setQuery({name_, sql});
    sql_ = sql;
}

QueryDefPtr DatabaseFile::CreateQueryDef(const QString& name, const QString& sql) {
    const bool taken = tableDefs_.contains(name);
    const Operation operation(*this);
    requireValidName(name);
    if (taken || definitions_.findQuery(name) != nullptr) {
        raiseEngineError(3012, name);
    }
    definitions_.setQuery({name, sql});
    definitionsChanged();
    return requireItem(queryDefs_.items(), name);
}

const std::vector<QueryDefPtr>& QueryDefs::items() const {
    const DatabaseFile::Operation operation(owner_);
    if (current_) {
        return items_;
    }
    items_.clear();
    for (const Definitions::Query& query : owner_.definitions().queries()) {
        auto item = std::make_shared<QueryDef>();
        item->name_ = query.name;
        item->sql_ = query.sql;
        item->owner_ = owner_.weak_from_this();
        items_.push_back(item);
    }
    current_ = true;
    return items_;
}

int QueryDefs::Count() const {
    return static_cast<int>(items().size());
}

QueryDefPtr QueryDefs::Item(int index) const {
    return itemAt(items(), index);
}

QueryDefPtr QueryDefs::Item(const QString& name) const {
    return requireItem(items(), name);
}

bool QueryDefs::contains(const QString& name) const {
    return itemNamed(items(), name) != nullptr;
}

void QueryDefs::Delete(const QString& name) {
    const QueryDefPtr item = Item(name);
    const DatabaseFile::Operation operation(owner_);
    owner_.definitions().removeQuery(name);
    item->owner_.reset();
    owner_.definitionsChanged();
}

void QueryDefs::Refresh() {
    owner_.TableDefs().Refresh();
}

} // namespace dao
