#pragma once

#include "platform/dao/DatabaseFile.h"
#include "platform/dao/RowCursor.h"

namespace dao {

/// A recordset over an open file: a cursor, and the row in edit.
class FileRecordset final : public Recordset {
public:
    /// @param columns that are read; empty for all
    FileRecordset(DatabaseFilePtr file, const QString& source, int type, const QString& sort,
                  const QStringList& columns = {});

    bool Bof() const override { return cursor().isBefore(); }
    bool Eof() const override { return cursor().isBehind(); }
    int RecordCount() const override { return cursor().count(); }
    int AbsolutePosition() const override { return cursor().position(); }
    void MoveFirst() override;
    void MoveLast() override;
    void MoveNext() override { Move(1); }
    void MovePrevious() override { Move(-1); }
    void Move(int rows) override;

    void FindFirst(const QString& criteria) override;
    bool NoMatch() const override { return noMatch_; }

    const std::vector<Field>& Fields() const override { return fields_; }
    int indexOf(const QString& name) const override;
    Value value(int column) const override;

    bool Updatable() const override { return canEdit_; }
    void Edit() override;
    void AddNew() override;
    void setValue(int column, const Value& value) override;
    void Update() override;
    void CancelUpdate() override;
    void Delete() override;

    qint64 Bookmark() const override { return cursor().bookmark(); }
    void setBookmark(qint64 bookmark) override;
    qint64 LastModified() const override;

    void setSort(const QString& orderBy) override { sort_ = orderBy; }
    std::shared_ptr<Recordset> OpenRecordset() override;
    void Requery() override;
    void Close() override;

    int Type() const override { return type_; }
    QString Name() const override { return source_; }

private:
    enum class Editing { Nothing, Row, NewRow };

    RowCursor& cursor() const;
    void reopen();
    const Field& fieldAt(int column) const;
    void requireEditable() const;
    qint64 write(Statement& statement, const std::vector<int>& columns) const;
    qint64 writeChanges(const TableInfo& table);
    qint64 writeNewRow(const TableInfo& table);
    std::vector<int> assigned() const;

    DatabaseFilePtr file_;
    QString source_;
    int type_;
    QString appliedSort_;
    QString sort_;
    QStringList columns_;
    std::unique_ptr<RowCursor> cursor_;
    std::vector<Field> fields_;
    bool canEdit_ = false;
    bool noMatch_ = false;

    Editing editing_ = Editing::Nothing;
    std::vector<std::optional<Value>> edited_;
    std::optional<qint64> lastModified_;
};

} // namespace dao
