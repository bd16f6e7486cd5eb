#pragma once

#include "platform/dao/Error.h"
#include "platform/dao/Recordset.h"

#include <QStringList>

/// Rows in memory behind the recordset interface, for what reads a recordset and nothing else. FindFirst
/// understands "F = number" and "F like ''".
class ListRecordset : public dao::Recordset {
public:
    using Rows = std::vector<std::vector<dao::Value>>;

    ListRecordset(const QStringList& names, Rows rows) : rows_(std::move(rows)) {
        for (const QString& name : names) {
            dao::Field field;
            field.Name = name;
            fields_.push_back(field);
        }
    }

    bool Bof() const override { return rows_.empty(); }
    bool Eof() const override { return at_ >= rows_.size(); }
    int RecordCount() const override { return static_cast<int>(rows_.size()); }
    int AbsolutePosition() const override { return static_cast<int>(at_); }
    void MoveFirst() override { at_ = 0; }
    void MoveLast() override { at_ = rows_.empty() ? 0 : rows_.size() - 1; }
    void MoveNext() override { ++at_; }
    void MovePrevious() override { --at_; }
    void Move(int rows) override { at_ += static_cast<size_t>(rows); }

    void FindFirst(const QString& criteria) override {
        const qsizetype equals = criteria.indexOf(QLatin1String(" = "));
        const int column = indexOf(criteria.section(u' ', 0, 0));
        noMatch_ = true;
        for (size_t i = 0; i < rows_.size() && noMatch_; ++i) {
            const QString text = rows_[i][static_cast<size_t>(column)].toText();
            noMatch_ = equals < 0 ? !text.isEmpty()
                                  : dao::textToNumber(text) !=
                                        dao::textToNumber(QStringView(criteria).mid(equals + 3));
            if (!noMatch_)
                at_ = i;
        }
    }
    bool NoMatch() const override { return noMatch_; }

    const std::vector<dao::Field>& Fields() const override { return fields_; }
    int indexOf(const QString& name) const override {
        for (size_t i = 0; i < fields_.size(); ++i)
            if (fields_[i].Name == name)
                return static_cast<int>(i);
        throw dao::Error(3265, QStringLiteral("no field ") + name);
    }
    dao::Value value(int column) const override {
        if (Eof())
            throw dao::Error(3021, QStringLiteral("No current record."));
        return rows_[at_][static_cast<size_t>(column)];
    }

    bool Updatable() const override { return false; }
    void Edit() override { readOnly(); }
    void AddNew() override { readOnly(); }
    void setValue(int, const dao::Value&) override { readOnly(); }
    void Update() override { readOnly(); }
    void CancelUpdate() override { readOnly(); }
    void Delete() override { readOnly(); }
    qint64 Bookmark() const override { return static_cast<qint64>(at_); }
    void setBookmark(qint64 bookmark) override { at_ = static_cast<size_t>(bookmark); }
    qint64 LastModified() const override { return 0; }
    void setSort(const QString&) override {}
    std::shared_ptr<dao::Recordset> OpenRecordset() override { return nullptr; }
    void Requery() override { at_ = 0; }
    void Close() override {}
    int Type() const override { return dao::dbOpenSnapshot; }
    QString Name() const override { return {}; }

private:
    [[noreturn]] static void readOnly() { throw dao::Error(3027, QStringLiteral("read only")); }

    std::vector<dao::Field> fields_;
    Rows rows_;
    size_t at_ = 0;
    bool noMatch_ = false;
};
