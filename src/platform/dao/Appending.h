#pragma once

#include "platform/dao/DatabaseFile.h"
#include "platform/dao/RowBlock.h"

namespace dao {

class FileAppender final : public Appender {
public:
    /// @throws Error 3265 a field that the table hasn't got, 3264 no field, 3027
    FileAppender(DatabaseFilePtr file, const TableInfo& table, const QStringList& fields,
                 std::unique_ptr<Attachments::Use> use);

    void setNull(int column) override;
    void setNumber(int column, double number) override;
    void setText(int column, const QString& text) override;
    void setUtf8(int column, const char* text, int bytes) override;
    void appendRow() override;
    RowBlock newBlock() const override;
    void appendRows(const RowBlock& block) override;

private:
    int parameter(int column) const;
    static void run(Statement& insert);

    DatabaseFilePtr file_;
    std::unique_ptr<Attachments::Use> use_;
    QString table_;  ///< its name for SQLite
    QString target_; ///< with the fields
    std::vector<int> types_;
    std::unique_ptr<Statement> insert_, insertBlock_;
};

class FileCompanion final : public Companion {
public:
    FileCompanion(DatabaseFilePtr file, const QString& path);
    ~FileCompanion() override;

    QStringList tableNames() const override;
    void createTable(const TableDef& definition) override;
    void dropTable(const QString& name) override;
    std::unique_ptr<Appender> openAppender(const QString& table, const QStringList& fields) override;
    void close() override;

private:
    const Attachments::File& reach(Attachments::Use& use) const;
    void prepareForBulk();

    DatabaseFilePtr file_;
    QString path_;
    QString schema_;
    std::unique_ptr<Attachments::Use> use_;
};

} // namespace dao
