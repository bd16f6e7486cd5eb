#include "printing/ReportCatalogue.h"

#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

void ReportCatalogue::open(const QString& path) {
    close();
    database_ = workspace_.OpenDatabase(path, false, true);
}

void ReportCatalogue::close() {
    if (database_)
        database_->Close();
    database_.reset();
    columns_.clear();
}

bool ReportCatalogue::hasTable(const QString& table) {
    return !table.isEmpty() && database_->TableDefs().contains(table);
}

QStringList ReportCatalogue::present(const QString& table, const QStringList& columns) {
    if (!columns_.contains(table)) {
        QStringList names;
        if (hasTable(table))
            for (const dao::ColumnInfo& column : database_->TableDefs().Item(table)->columns())
                names << column.name;
        columns_.insert(table, names);
    }
    QStringList found;
    for (const QString& column : columns)
        if (columns_[table].contains(column, Qt::CaseInsensitive))
            found << column;
    return found;
}

bool ReportCatalogue::has(const QString& table, const QStringList& columns) {
    return present(table, columns).size() == columns.size();
}

dao::RecordsetPtr ReportCatalogue::rows(const QString& statement) {
    return database_->OpenRecordset(statement, dao::dbOpenSnapshot);
}

std::vector<qint64> ReportCatalogue::version(const QStringList& tables) {
    return database_->contentVersion(tables);
}

QString textIn(const dao::Recordset& rows, const QString& column) {
    return rows.hasField(column) ? rows.text(column) : QString();
}

bool isLocked(const dao::Error& error) {
    return error.number() == 3050 || error.number() == 3260;
}
