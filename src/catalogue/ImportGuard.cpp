#include "catalogue/ImportGuard.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

const QString madeMark = u"made\t"_s;
const QString touchedMark = u"touched\t"_s;

QString noteOf(const QString& catalogue) {
    return catalogue + u"-import"_s;
}

QString lockOf(const QString& catalogue) {
    return catalogue + u"-import.lock"_s;
}

void removeFile(const QString& path) {
    QFile::remove(path);
    QFile::remove(path + u"-journal"_s);
}

/// Opens a database, which rolls back what a killed process left unfinished in it. @return false if it holds
/// no table
bool recover(const QString& path) {
    if (QFileInfo(path).size() == 0)
        return false;
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(path);
    const bool hasTables = database->TableDefs().Count() > 0;
    database->Close();
    return hasTables;
}

/// Deals with one line of the note of a killed run.
void recoverLine(const QString& line) {
    const bool made = line.startsWith(madeMark);
    const QString path = line.mid(line.indexOf(u'\t') + 1);
    if (!QFileInfo::exists(path)) {
        if (made)
            QFile::remove(path + u"-journal"_s);
        return;
    }
    bool hasTables = false;
    try {
        hasTables = recover(path);
    } catch (const dao::Error& error) {
        // Locked or unreadable: it may hold something, so it stays.
        throw ImportError(
            said(u"%1: Der Rest eines abgebrochenen Imports kann nicht aufgeräumt werden (%2)"_s,
                 u"%1: What an interrupted import left cannot be cleared away (%2)"_s)
                .arg(path, error.description()));
    }
    if (made && !hasTables)
        removeFile(path);
}

/// A commit of several files notes their journals in a file of its own, named after the main one.
void removeCommitNotes(const QString& catalogue) {
    const QFileInfo info(catalogue);
    const QDir folder(info.absolutePath());
    for (const QString& name : folder.entryList({info.fileName() + u"-mj*"_s}, QDir::Files))
        QFile::remove(folder.filePath(name));
}

/// Under the lock.
void clearAfterKilledRun(const QString& catalogue) {
    QFile note(noteOf(catalogue));
    if (!note.open(QIODevice::ReadOnly))
        return;
    const QString text = QString::fromUtf8(note.readAll());
    note.close();
    for (const QString& line : text.split(u'\n', Qt::SkipEmptyParts))
        recoverLine(line);
    removeCommitNotes(catalogue);
    note.remove();
}

} // namespace

ImportGuard::ImportGuard(const QString& catalogue) : note_(noteOf(catalogue)), lock_(lockOf(catalogue)) {
    // A lock is stale when its process is gone, however old it is.
    lock_.setStaleLockTime(0);
    if (!lock_.tryLock(0)) {
        const bool busy = lock_.error() == QLockFile::LockFailedError;
        throw ImportError((busy ? said(u"%1: Ein anderer Import ist gerade an der Arbeit"_s,
                                       u"%1: Another import is at work"_s)
                                : said(u"%1: In den Ordner kann nicht geschrieben werden"_s,
                                       u"%1: The folder cannot be written"_s))
                              .arg(catalogue));
    }
    clearAfterKilledRun(catalogue);
}

ImportGuard::~ImportGuard() {
    for (const QString& path : made_)
        removeFile(path);
    QFile::remove(note_);
}

void ImportGuard::willWrite(const QString& path) {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    if (touched_.contains(absolute) || made_.contains(absolute))
        return;
    // A file of no bytes is nobody's work.
    const bool made = QFileInfo(absolute).size() == 0;
    QFile note(note_);
    const QByteArray line = ((made ? madeMark : touchedMark) + absolute + u'\n').toUtf8();
    if (!note.open(QIODevice::WriteOnly | QIODevice::Append) || note.write(line) != line.size() ||
        !note.flush())
        throw ImportError(
            said(u"%1: Die Datei kann nicht geschrieben werden"_s, u"%1: The file cannot be written"_s)
                .arg(note_));
    (made ? made_ : touched_) << absolute;
}

void ImportGuard::done() {
    made_.clear();
    QFile::remove(note_);
}

void removeLeftovers(const QString& catalogue) {
    if (!QFileInfo::exists(noteOf(catalogue)))
        return;
    QLockFile lock(lockOf(catalogue));
    lock.setStaleLockTime(0);
    if (lock.tryLock(0))
        clearAfterKilledRun(catalogue);
}
