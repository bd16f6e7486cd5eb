#include "catalogue/ImportGuard.h"

#include "catalogue/BuildFolder.h"
#include "catalogue/CatalogueImport.h"
#include "catalogue/NoteLine.h"
#include "catalogue/importTexts.h"
#include "catalogue/schema.h"
#include "platform/dao/Journals.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString headMark = u"note"_s;
const QString madeMark = u"made"_s;
const QString blankMark = u"blank"_s; ///< was there without content
const QString touchedMark = u"touched"_s;

QString noteOf(const QString& catalogue) {
    return catalogue + u"-import"_s;
}

/// True for the place of a note where there is a link, a pipe or anything but a file.
bool isTaken(const QString& note) {
    struct stat found {};
    return lstat(QFile::encodeName(note).constData(), &found) == 0 && !S_ISREG(found.st_mode);
}

/// @param error  of the system
QString cannotWrite(const QString& path, int error) {
    const QString reason = QString::fromLocal8Bit(strerror(error));
    return said(u"%1: Die Datei kann nicht geschrieben werden (%2)"_s, u"%1: The file cannot be written (%2)"_s)
        .arg(path, reason);
}

QString journalOf(const QString& path) {
    return path + u"-journal"_s;
}

/// A journal that was begun but not yet needed stays when a database is only read; a change that is taken
/// back at once removes it, unless it is in use by another.
void endJournal(dao::Database& database) {
    dao::Workspace& workspace = dao::DBEngine::instance().Workspaces(0);
    workspace.BeginTrans();
    try {
        schema::create(database, schema::cases(u"import_probe"_s, {}));
        workspace.Rollback();
    } catch (const dao::Error&) {
        workspace.Rollback();
    }
}

/// Opens a database that the note is about, which rolls back what a killed process left unfinished in it. @return false
/// if it holds no table
bool recover(const QString& path, const QString& catalogue) {
    if (QFileInfo(path).size() == 0)
        return false;
    // A case file in another folder does not tell by itself where its catalogue lies.
    dao::settleJournals(dao::DatabaseLocation::find(path),
                        {.mainFolder = QFileInfo(catalogue).absolutePath(), .isOriginal = true});
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(path);
    const bool hasTables = database->TableDefs().Count() > 0;
    if (hasTables && QFileInfo::exists(journalOf(path)))
        endJournal(*database);
    database->Close();
    return hasTables;
}

/// True if the file of a line is still the one that it is about. What was to be made is known by its folder.
bool isSame(const NoteLine& line) {
    const QString identity = fileIdentity(line.path);
    return !identity.isEmpty() &&
           (line.identity == identity ||
            (line.mark == madeMark && line.identity == fileIdentity(QFileInfo(line.path).absolutePath())));
}

/// Deals with one line of the note of a killed run. What an import cannot have written there, such as a link
/// or a file of another kind, is somebody else's and stays.
void recoverLine(const QString& catalogue, const NoteLine& line) {
    constexpr int noDatabase = 3343;
    const QString& path = line.path;
    const bool made = line.mark == madeMark, touched = line.mark == touchedMark;
    if (!isSame(line) || (!touched && QFileInfo(path).isSymLink()))
        return;
    if (path != catalogue && !path.endsWith(u".mdb"_s, Qt::CaseInsensitive))
        return;
    // Without a journal there is nothing to roll back, and a file that was damaged before stays as it was.
    if (touched && !QFileInfo::exists(journalOf(QFileInfo(path).canonicalFilePath())))
        return;
    bool hasTables = false;
    try {
        hasTables = recover(path, catalogue);
    } catch (const dao::Error& error) {
        // What is no database has nothing to roll back. Anything else, a lock or damage, is for the user to
        // see to.
        if (error.number() == noDatabase)
            return;
        throw ImportError(said(u"%1: Der Rest eines abgebrochenen Imports kann nicht aufgeräumt werden (%2)"_s,
                               u"%1: What an interrupted import left cannot be cleared away (%2)"_s)
                              .arg(path, error.description()));
    }
    if (line.mark == blankMark && !hasTables && QFileInfo::exists(path)) {
        QFile::resize(path, 0);
        QFile::remove(journalOf(path));
    }
    if (made && !hasTables)
        for (const QString& file : {path, journalOf(path)})
            QFile::remove(file);
}

/// A commit of several files lists their journals in a file of its own, named after the main one. One that was killed
/// before any journal named it is found by nobody else.
void settleCommits(const QString& catalogue) {
    const QFileInfo info(catalogue);
    const QDir folder(info.absolutePath());
    for (const QString& name : folder.entryList(QDir::Files))
        if (name.startsWith(info.fileName() + u"-mj"_s))
            dao::settleSuperJournal(folder.filePath(name));
}

/// Opens and locks the note. The lock goes with the process, however it ends.
/// @return its descriptor, -1 if it is locked by another or cannot be opened (`busy` tells)
int lockNote(const QString& catalogue, bool create, bool& busy) {
    const QByteArray path = QFile::encodeName(noteOf(catalogue));
    busy = false;
    for (;;) {
        const int note =
            open(path.constData(), O_RDWR | O_CLOEXEC | O_APPEND | O_NOFOLLOW | (create ? O_CREAT : 0), 0666);
        if (note < 0)
            return -1;
        struct stat locked {
        }, present{};
        if (fstat(note, &locked) == 0 && !S_ISREG(locked.st_mode)) {
            close(note);
            errno = EEXIST;
            return -1;
        }
        if (flock(note, LOCK_EX | LOCK_NB) != 0) {
            busy = true;
            close(note);
            return -1;
        }
        // The one before may have removed its note between our opening and our lock.
        if (fstat(note, &locked) == 0 && stat(path.constData(), &present) == 0 && locked.st_ino == present.st_ino)
            return note;
        close(note);
    }
}

/// The first line of a note: what only a run that made it, here, can have written.
NoteLine headOf(const QString& catalogue, int note) {
    return {headMark, fileIdentity(note), fileIdentity(QFileInfo(catalogue).absolutePath())};
}

/// Rolls back and removes what the note lists. Under the lock.
/// @return false for a note that was copied, unpacked or written by somebody: it means nothing here
bool clearAway(const QString& catalogue, int note) {
    QFile file;
    if (!file.open(note, QIODevice::ReadOnly) || !file.seek(0))
        return false;
    const QByteArray content = file.readAll();
    if (content.isEmpty())
        return true;
    if (!content.startsWith(headOf(catalogue, note).text()))
        return false;
    const QFileInfo main(catalogue);
    QList<NoteLine> lines = noteLines(content);
    if (lines.size() > 1)
        settleCommits(catalogue); // while all of their files are still there
    for (NoteLine& line : lines)
        if (line.mark != headMark) {
            line.path = QDir::cleanPath(main.absoluteDir().absoluteFilePath(line.path));
            recoverLine(main.absoluteFilePath(), line);
        }
    return true;
}

void removeNote(const QString& catalogue, int note) {
    QFile::remove(noteOf(catalogue));
    close(note);
}

} // namespace

ImportGuard::ImportGuard(const QString& catalogue) : catalogue_(catalogue) {
    bool busy = false;
    note_ = lockNote(catalogue, true, busy);
    const int error = errno;
    if (note_ < 0)
        throw ImportError(
            busy ? said(u"%1: Ein anderer Import ist gerade an der Arbeit"_s, u"%1: Another import is at work"_s)
                       .arg(catalogue)
                 : cannotWrite(isTaken(noteOf(catalogue)) ? noteOf(catalogue) : catalogue, error));
    try {
        archive::finishInterruptedBuild(catalogue);
        clearAway(catalogue, note_);
    } catch (...) {
        close(note_);
        throw;
    }
    try {
        if (ftruncate(note_, 0) != 0)
            throw ImportError(cannotWrite(noteOf(catalogue), errno));
        write(headOf(catalogue, note_));
    } catch (...) {
        removeNote(catalogue, note_); // which has nothing to say by now
        throw;
    }
}

ImportGuard::~ImportGuard() {
    if (note_ < 0)
        return;
    try {
        clearAway(catalogue_, note_);
        removeNote(catalogue_, note_);
    } catch (const ImportError&) {
        close(note_); // the note stays for the next run to try again
    }
}

void ImportGuard::willWrite(const QString& path) {
    const QString absolute = QFileInfo(path).absoluteFilePath();
    if (written_.contains(absolute))
        return;
    written_ << absolute;
    const QFileInfo file(absolute);
    if (QFileInfo(absolute).isSymLink()) {
        if (!file.exists())
            throw ImportError(
                said(u"%1: Die Verknüpfung zeigt ins Leere"_s, u"%1: The link points to a file that is not there"_s)
                    .arg(path));
        note(touchedMark, absolute);
        return;
    }
    note(!file.exists() ? madeMark : file.size() == 0 ? blankMark : touchedMark, absolute);
}

void ImportGuard::removeIfEmpty(const QString& path) {
    note(madeMark, QFileInfo(path).absoluteFilePath());
}

void ImportGuard::note(const QString& mark, const QString& path) const {
    QString identity = fileIdentity(path);
    if (identity.isEmpty())
        identity = fileIdentity(QFileInfo(path).absolutePath());
    const QString relative = QFileInfo(catalogue_).absoluteDir().relativeFilePath(path);
    write({mark, identity, relative});
    // Of two folders, one or both may be moved before the next run.
    if (relative.startsWith(u"../"_s))
        write({mark, identity, path});
}

void ImportGuard::write(const NoteLine& line) const {
    const QByteArray text = line.text();
    const ssize_t written = ::write(note_, text.constData(), static_cast<size_t>(text.size()));
    // A part that was written is no error to the system.
    if (written != text.size())
        throw ImportError(cannotWrite(noteOf(catalogue_), written < 0 ? errno : ENOSPC));
}

void ImportGuard::done() {
    removeNote(catalogue_, note_);
    note_ = -1;
}

void removeLeftovers(const QString& path) {
    const QString catalogue = Paths::resolved(path);
    bool busy = false;
    const int note = lockNote(catalogue, false, busy);
    if (note < 0)
        return;
    try {
        const bool ours = clearAway(catalogue, note);
        if (ours && archive::waitsForItsMove(catalogue))
            throw ImportError(
                said(u"%1: Ein Aufbau wurde abgebrochen, als er seine Dateien verschob; vdx build oder vdx "
                     u"import bringt ihn zu Ende"_s,
                     u"%1: A build was interrupted while it moved its files; vdx build or vdx import finishes "
                     u"it"_s)
                    .arg(catalogue));
        if (!ours) {
            close(note);
            return;
        }
        archive::finishInterruptedBuild(catalogue); // which only removes its folder then
    } catch (...) {
        close(note);
        throw;
    }
    removeNote(catalogue, note);
}
