#include "platform/dao/Appending.h"

#include "platform/dao/Error.h"
#include "platform/dao/RowSource.h"
#include "platform/dao/SqlText.h"
#include "platform/dao/SqliteValue.h"
#include "platform/dao/TableSchema.h"
#include "platform/system/NumberFormat.h"

#include <QStringList>
#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr int numberBeyondAll = 6;

}

FileAppender::FileAppender(DatabaseFilePtr file, const TableInfo& table, const QStringList& fields,
                           std::unique_ptr<Attachments::Use> use)
    : file_(std::move(file)), use_(std::move(use)), table_(table.sqlName) {
    if (table.readOnly) {
        raiseEngineError(3027);
    }
    if (fields.isEmpty()) {
        raiseEngineError(3264, table.name);
    }
    QStringList names;
    QStringList places;
    for (const QString& field : fields) {
        const auto column = std::find_if(table.columns.begin(), table.columns.end(),
                                         [&](const ColumnInfo& one) { return sameName(one.name, field); });
        if (column == table.columns.end()) {
            raiseEngineError(3265, field);
        }
        names += quotedName(column->name);
        places += u"?"_s;
        types_.push_back(column->type);
    }
    target_ = table.sqlName + u" ("_s + names.join(u", "_s) + u')';
    const QString sql = u"INSERT INTO "_s + target_ + u" VALUES ("_s + places.join(u", "_s) + u')';
    insert_ = std::make_unique<Statement>(file_->connection(), sql, Purpose::Write);
}

int FileAppender::parameter(int column) const {
    if (column < 0 || column >= static_cast<int>(types_.size())) {
        raiseEngineError(3265, QString::number(column));
    }
    return column + 1;
}

void FileAppender::setNull(int column) {
    sqlite3_bind_null(insert_->handle(), parameter(column));
}

void FileAppender::setNumber(int column, double number) {
    const int place = parameter(column);
    const int type = types_[static_cast<size_t>(column)];
    if (isTextType(type)) {
        setText(column, numberToText(number, NumberFormat::decimalSeparator()));
    } else if (type == dbBoolean) {
        sqlite3_bind_int64(insert_->handle(), place, number != 0 ? -1 : 0);
    } else if (isWhole(number)) {
        sqlite3_bind_int64(insert_->handle(), place, static_cast<sqlite3_int64>(number));
    } else if (std::isfinite(number)) {
        sqlite3_bind_double(insert_->handle(), place, number);
    } else {
        raiseRuntimeError(numberBeyondAll);
    }
}

void FileAppender::setText(int column, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    setUtf8(column, utf8.constData(), static_cast<int>(utf8.size()));
}

void FileAppender::setUtf8(int column, const char* text, int bytes) {
    const int place = parameter(column);
    if (isNumericType(types_[static_cast<size_t>(column)])) {
        // The file would keep the text among the numbers.
        const QString spelled = QString::fromUtf8(text, bytes);
        const std::optional<double> number = textToNumber(spelled);
        if (!number) {
            raiseEngineError(3421, spelled);
        }
        setNumber(column, *number);
        return;
    }
    sqlite3_bind_text(insert_->handle(), place, bytes > 0 ? text : "", bytes, SQLITE_TRANSIENT);
}

void FileAppender::appendRow() {
    const DatabaseFile::Operation operation(*file_);
    file_->noteWrite(table_);
    run(*insert_);
}

void FileAppender::run(Statement& insert) {
    // What was bound must not enter the next row, also after a failure.
    const auto clear = [&insert] {
        insert.reset();
        sqlite3_clear_bindings(insert.handle());
    };
    try {
        insert.step();
    } catch (...) {
        clear();
        throw;
    }
    clear();
}

RowBlock FileAppender::newBlock() const {
    if (types_.size() > RowSource::mostColumns) {
        raiseEngineError(3190);
    }
    std::vector<RowBlock::Column> columns;
    for (const int type : types_) {
        using enum RowBlock::Column;
        columns.push_back(isTextType(type) ? Text : type == dbBoolean ? YesNo : Number);
    }
    return RowBlock(std::move(columns));
}

void FileAppender::appendRows(const RowBlock& block) {
    const DatabaseFile::Operation operation(*file_);
    file_->noteWrite(table_);
    if (!insertBlock_) {
        // Being able to take back a single block would cost a copy of every page that it changes.
        insertBlock_ = std::make_unique<Statement>(file_->connection(),
                                                   u"INSERT OR FAIL INTO "_s + target_ + u' ' +
                                                       RowSource::selectSql(static_cast<int>(types_.size())),
                                                   Purpose::Write);
    }
    RowSource::bind(insertBlock_->handle(), block);
    run(*insertBlock_);
}

FileCompanion::FileCompanion(DatabaseFilePtr file, const QString& path)
    : file_(std::move(file)), path_(path), use_(std::make_unique<Attachments::Use>()) {
    const Attachments::File& attached = file_->attachments().reachNew(path, *use_);
    if (attached.readOnly) {
        raiseEngineError(3027);
    }
    schema_ = attached.schema;
    file_->connection().leaveWal(schema_);
    prepareForBulk();
}

/// A file that is yet to be made is written from beginning to end, and read so later: larger pages save a tenth of the
/// time, and a cache that stays within the processor's memory is faster than a larger one.
void FileCompanion::prepareForBulk() {
    Statement pages(file_->connection(), u"PRAGMA "_s + schema_ + u".page_count"_s);
    if (!pages.step() || pages.number(0) > 0) {
        return;
    }
    pages.reset();
    file_->connection().run(u"PRAGMA %1.page_size=16384; PRAGMA %1.cache_size=-512"_s.arg(schema_));
}

FileCompanion::~FileCompanion() {
    const Errors before = errorList();
    try {
        close();
    } catch (...) {
        // Still in use: it stays attached until the database closes.
    }
    errorList() = before; // where a failure ends all this, it is the failure that is told
}

const Attachments::File& FileCompanion::reach(Attachments::Use& use) const {
    if (!use_) {
        raiseEngineError(3420);
    }
    return file_->attachments().reachNew(path_, use);
}

QStringList FileCompanion::tableNames() const {
    const DatabaseFile::Operation operation(*file_);
    Attachments::Use use;
    return dao::tableNames(file_->connection(), reach(use).schema);
}

void FileCompanion::createTable(const TableDef& definition) {
    const DatabaseFile::Operation operation(*file_);
    Attachments::Use use;
    dao::createTable(file_->connection(), reach(use).schema, definition);
}

void FileCompanion::dropTable(const QString& name) {
    const DatabaseFile::Operation operation(*file_);
    Attachments::Use use;
    dao::dropTable(file_->connection(), reach(use).schema, name);
}

std::unique_ptr<Appender> FileCompanion::openAppender(const QString& table, const QStringList& fields) {
    const DatabaseFile::Operation operation(*file_);
    auto use = std::make_unique<Attachments::Use>();
    const std::optional<TableInfo> info = file_->tableIn(reach(*use), table);
    if (!info) {
        raiseEngineError(3078, table);
    }
    return std::make_unique<FileAppender>(file_, *info, fields, std::move(use));
}

void FileCompanion::close() {
    if (!use_) {
        return;
    }
    if (file_->isOpen()) {
        const DatabaseFile::Operation operation(*file_);
        if (file_->transactionLevel() > 0) {
            raiseEngineError(3246);
        }
        use_.reset();
        file_->attachments().letGo(schema_);
    }
    use_.reset();
}

} // namespace dao
