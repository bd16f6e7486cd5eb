#pragma once

#include "platform/dao/DBEngine.h"

#include <QString>

/// Owner of the open catalogue; gDatabase is the one instance.
class CDaoDatabase {
public:
    /// The engine must outlive the one instance, so it is brought up first.
    CDaoDatabase() { dao::DBEngine::instance(); }

    /// The engine's database; null when none is open.
    dao::DatabasePtr CurrentDatabase() const { return current_; }
    dao::Workspace& CurrentWorkspace() const { return dao::DBEngine::instance().Workspaces(0); }
    /// The path; "Keine Datenbankdatei ausgewählt" when none is set, in either language.
    QString Database() const;
    void setDatabase(const QString& path) { path_ = path; }
    QString ConnectString() const { return connect_; }
    /// 0 closed, 1 open.
    qint16 State() const { return state_; }
    /// True if a table or link of the catalogue has that name, without regard to case.
    bool TableExist(const QString& name) const;
    void CloseDatabase();
    /// Opens the path set; the caller reads State afterwards.
    void OpenQXDatabase(bool readOnly = false);
    /// Why what an interrupted import has left could not be cleared away at the last opening; empty otherwise.
    const QString& leftovers() const { return leftovers_; }

private:
    QString path_;
    QString connect_;
    QString leftovers_;
    dao::DatabasePtr current_;
    qint16 state_ = 0;

    void m_CloseDatabase();
};
