#pragma once

#include "platform/dao/DBEngine.h"

#include <QTemporaryDir>
#include <map>

/// The database that statements.txt runs against, made from catalogue.txt in a temporary folder: a catalogue
/// with links to a case file, and the tables of the system database beside it.
class StatementCatalogue {
public:
    StatementCatalogue();
    ~StatementCatalogue();

    dao::Database& database() const { return *files_.at(QStringLiteral("catalogue")); }
    /// Stores or rewrites a query.
    void setQuery(const QString& name, const QString& text) const;

private:
    using Cells = QStringList;

    void beginTable(const QString& name, const Cells& fields);
    void addRow(const Cells& cells);
    void finishFile();

    QTemporaryDir folder_;
    std::map<QString, dao::DatabasePtr> files_;
    QString file_;
    std::vector<dao::FieldDefinition> fields_;
    std::unique_ptr<dao::Appender> appender_;
};
