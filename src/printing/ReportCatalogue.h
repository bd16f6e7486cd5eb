#pragma once

#include "platform/dao/DBEngine.h"

#include <QHash>
#include <QStringList>

/// A catalogue as a report reads it: read only and through a workspace of its own, so that no transaction of the
/// program's covers it. Each statement is read out at once and leaves nothing open in the file.
class ReportCatalogue {
public:
    /// @throws dao::Error as Workspace::OpenDatabase() has it
    void open(const QString& path);
    void close();
    bool isOpen() const { return database_ != nullptr; }

    bool hasTable(const QString& table);
    bool has(const QString& table, const QStringList& columns);
    /// Those of the columns that the table has, as an older catalogue may lack some; none without the table.
    QStringList present(const QString& table, const QStringList& columns);
    /// @throws dao::Error
    dao::RecordsetPtr rows(const QString& statement);
    /// Stays equal as long as nobody writes to the tables.
    std::vector<qint64> version(const QStringList& tables);

private:
    dao::Workspace workspace_;
    dao::DatabasePtr database_;
    QHash<QString, QStringList> columns_;
};

/// The text of a column that a result may lack; Null and what is not there are empty.
QString textIn(const dao::Recordset& rows, const QString& column);
/// True for an error that goes by itself when somebody else has ended his writing.
bool isLocked(const dao::Error& error);

/// While it lives statements wait no longer than this for a lock, and the engine's list of errors is given back as it
/// was: a report reads between the events of a program whose own writing may hold the lock, and can wait for its end
/// only by returning.
class BriefReading {
public:
    explicit BriefReading(int milliseconds) { dao::DBEngine::instance().setLockWait(milliseconds); }
    ~BriefReading() { dao::DBEngine::instance().setLockWait(before_); }
    BriefReading(const BriefReading&) = delete;
    BriefReading& operator=(const BriefReading&) = delete;

private:
    dao::KeptErrors errors_;
    int before_ = dao::DBEngine::instance().lockWait();
};
