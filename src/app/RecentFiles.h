#pragma once

#include "platform/system/Registry.h"

#include <QString>
#include <QStringList>

/// The catalogues that were opened last, newest first, kept in the registry.
class RecentFiles {
public:
    Registry::Hive RootKey = Registry::CurrentUser;
    QString RegistryPath;
    int places = 4;

    /// Puts a file at the head; one that was in the list already moves there. A file that goes beyond the last place is
    /// forgotten. @return false if the list cannot be stored; a box has said so
    bool SetRecentFiles(const QString& file);
    QStringList GetRecentFiles() const;
    /// Takes a file out that turned out to be no catalogue; one that is gone may come back.
    void RemoveRecentFile(const QString& file);

private:
    bool store(const QStringList& files) const;
};
