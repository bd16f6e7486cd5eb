#pragma once

#include <QString>
#include <QStringList>

struct NoteLine;

/// Keeps one writer at a time on a catalogue's files and sees to it that none of the files that a failed or
/// killed run began stays behind.
///
/// Before a run opens a file for writing, the guard writes its path into a note beside the catalogue, which
/// is locked for as long as the run lives. A run that ends without done() rolls back and takes its new files
/// away again; the next run does it for one that was killed. The note and each of its lines carry the
/// identity of what they are about, so that a note that came with a copied or unpacked folder moves and
/// deletes nothing. Paths in it start in the catalogue's folder, which may be called otherwise by the next run.
class ImportGuard {
public:
    /// Locks, and clears away what a killed run left. @throws ImportError when another run is at work or the
    /// folder cannot be written
    explicit ImportGuard(const QString& catalogue);
    /// Every database must be closed by then.
    ~ImportGuard();
    ImportGuard(const ImportGuard&) = delete;
    ImportGuard& operator=(const ImportGuard&) = delete;

    /// To be called before a file is opened for writing or made. @throws ImportError when the note cannot be
    /// written
    void willWrite(const QString& path);
    /// To be called before the commit that takes the last table out of a file: the file goes once it is
    /// committed, also when the run is killed before it gets to it. @throws ImportError as willWrite()
    void removeIfEmpty(const QString& path);
    /// The transaction is committed: everything stays.
    void done();

private:
    QString catalogue_;
    int note_; ///< descriptor of the locked note
    QStringList written_;

    void note(const QString& mark, const QString& path) const;
    void write(const NoteLine& line) const;
};

/// Clears away what a killed run left beside a catalogue: unfinished transactions are rolled back, files that
/// it had begun are removed. A build that was killed while it moved its files is not finished here, where
/// somebody only wants to look, but reported. To be called before a catalogue is opened, however its path is
/// spelled: costs one look for a file when there is nothing left, and does nothing while a run is at work or
/// where nothing can be written.
/// @throws ImportError if something cannot be cleared away (a file in use, damage, no room) or a build waits
/// for its move; the leftovers stay for the next call, and the catalogue cannot be trusted to be whole
void removeLeftovers(const QString& catalogue);
