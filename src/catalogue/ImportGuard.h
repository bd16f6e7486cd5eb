#pragma once

#include <QLockFile>
#include <QString>
#include <QStringList>
#include <memory>

/// Keeps one writer at a time on a catalogue's files and sees to it that none of the files that a failed or
/// killed run began stays behind.
///
/// Before a run makes a file, the guard writes down its path in a note beside the catalogue. A run that ends
/// without done() takes its files away again; the next run does it for one that was killed.
class ImportGuard {
public:
    /// Locks, and removes what a killed run left. @throws ImportError when another run is at work or the
    /// folder cannot be written
    explicit ImportGuard(const QString& catalogue);
    /// Without done() before: removes the files that this run made. Every database must be closed by then.
    ~ImportGuard();
    ImportGuard(const ImportGuard&) = delete;
    ImportGuard& operator=(const ImportGuard&) = delete;

    /// To be called before a file is opened for writing or made. @throws ImportError when the note cannot be
    /// written
    void willWrite(const QString& path);
    /// The transaction is committed: everything stays.
    void done();

private:
    QString note_;
    QLockFile lock_;
    QStringList touched_, made_;
};

/// What a killed run left beside a catalogue: unfinished transactions are rolled back, files that it had
/// begun are removed. Does nothing while a run is at work or when there is nothing left.
void removeLeftovers(const QString& catalogue);
