#pragma once

#include <QHash>
#include <QString>

/// The ways to entries: name of the view, then the names of what stands above an entry. The entries of a view are read
/// when the first way in it is asked for.
class EntryWays {
public:
    explicit EntryWays(bool english) : english_(english) {}

    /// @param whole with the entry's own name at the end
    /// @return the name of the view alone where the catalogue can't say more
    QString way(int view, const QString& key, bool whole);

private:
    struct Entry {
        QString parent, name; ///< the key where it has no name
    };
    bool english_;
    QHash<int, QHash<QString, Entry>> views_; ///< keys folded

    const QHash<QString, Entry>& entriesOf(int view);
};
