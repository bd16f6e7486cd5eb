#include "platform/dao/FileRecordset.h"

#include "platform/dao/Error.h"
#include "platform/dao/SqlText.h"

using namespace Qt::StringLiterals;

namespace dao {

bool Recordset::hasField(const QString& name) const {
    for (const Field& field : Fields()) {
        if (sameName(field.Name, name)) {
            return true;
        }
    }
    return false;
}

FileRecordset::FileRecordset(DatabaseFilePtr file, const QString& source, int type, const QString& sort,
                             const QStringList& columns)
    : file_(std::move(file)), source_(source), type_(type), appliedSort_(sort), sort_(sort), columns_(columns) {
    reopen();
}

void FileRecordset::reopen() {
    const bool editable = type_ != dbOpenSnapshot;
    auto cursor = std::make_unique<RowCursor>(RowCursor::Source{file_, source_, editable, appliedSort_, columns_});
    fields_.clear();
    for (const ColumnInfo& column : cursor->statement().columns) {
        fields_.push_back(
            {column.name, column.type, column.size, column.attributes, column.sourceTable, column.sourceField});
    }
    canEdit_ = cursor->isEditable() && !cursor->statement().editable->readOnly;
    cursor_ = std::move(cursor);
    editing_ = Editing::Nothing;
    noMatch_ = false;
}

RowCursor& FileRecordset::cursor() const {
    if (!cursor_) {
        raiseEngineError(3420);
    }
    return *cursor_;
}

void FileRecordset::MoveFirst() {
    errorList().clear();
    editing_ = Editing::Nothing;
    cursor().moveFirst();
}

void FileRecordset::MoveLast() {
    errorList().clear();
    editing_ = Editing::Nothing;
    cursor().moveLast();
}

void FileRecordset::Move(int rows) {
    errorList().clear();
    editing_ = Editing::Nothing;
    cursor().move(rows);
}

void FileRecordset::FindFirst(const QString& criteria) {
    errorList().clear();
    editing_ = Editing::Nothing;
    noMatch_ = true;
    noMatch_ = !cursor().find(criteria);
}

int FileRecordset::indexOf(const QString& name) const {
    for (size_t i = 0; i < fields_.size(); ++i) {
        if (sameName(fields_[i].Name, name)) {
            return static_cast<int>(i);
        }
    }
    for (size_t i = 0; i < fields_.size(); ++i) {
        if (sameName(fields_[i].SourceTable + u'.' + fields_[i].SourceField, name)) {
            return static_cast<int>(i);
        }
    }
    errorList().clear();
    raiseEngineError(3265, name);
}

const Field& FileRecordset::fieldAt(int column) const {
    if (column < 0 || column >= static_cast<int>(fields_.size())) {
        raiseEngineError(3265, QString::number(column));
    }
    return fields_[static_cast<size_t>(column)];
}

Value FileRecordset::value(int column) const {
    errorList().clear();
    (void)fieldAt(column);
    if (editing_ != Editing::Nothing && edited_[static_cast<size_t>(column)]) {
        return *edited_[static_cast<size_t>(column)];
    }
    return editing_ == Editing::NewRow ? Value() : cursor().value(column);
}

void FileRecordset::setBookmark(qint64 bookmark) {
    errorList().clear();
    editing_ = Editing::Nothing;
    cursor().setBookmark(bookmark);
}

qint64 FileRecordset::LastModified() const {
    if (!lastModified_) {
        errorList().clear();
        raiseEngineError(3021);
    }
    return *lastModified_;
}

std::shared_ptr<Recordset> FileRecordset::OpenRecordset() {
    (void)cursor();
    const DatabaseFile::Operation operation(*file_);
    return std::make_shared<FileRecordset>(file_, source_, type_, sort_, columns_);
}

void FileRecordset::Requery() {
    (void)cursor();
    const DatabaseFile::Operation operation(*file_);
    reopen();
}

void FileRecordset::Close() {
    cursor_.reset();
    editing_ = Editing::Nothing;
    canEdit_ = false;
}

} // namespace dao
