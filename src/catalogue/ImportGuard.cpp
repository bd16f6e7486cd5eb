#include "catalogue/ImportGuard.h"

#include "catalogue/BuildFolder.h"
#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"
#include "catalogue/schema.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

const QString madeMark = u"made\t"_s;
const QString blankMark = u"blank\t"_s; ///< was there without content
const QString touchedMark = u"touched\t"_s;

QString noteOf(const QString& catalogue) {
    return catalogue + u"-import"_s;
}

QString cannotWrite(const QString& path) {
    return said(u"%1: Die Datei kann nicht geschrieben werden"_s, u"%1: The file cannot be written"_s)
        .arg(path);
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

/// Opens a database, which rolls back what a killed process left unfinished in it. @return false if it holds
/// no table
bool recover(const QString& path) {
    if (QFileInfo(path).size() == 0)
        return false;
    const dao::DatabasePtr database = dao::DBEngine::instance().OpenDatabase(path);
    const bool hasTables = database->TableDefs().Count() > 0;
    if (hasTables && QFileInfo::exists(journalOf(path)))
        endJournal(*database);
    database->Close();
    return hasTables;
}

/// Deals with one line of the note of a killed run. A note may be as old as the archive that it came with:
/// what an import cannot have written there, such as a link or a file of another kind, is somebody else's and
/// stays.
void recoverLine(const QString& line) {
    constexpr int noDatabase = 3343;
    const bool made = line.startsWith(madeMark);
    const QString path = line.mid(line.indexOf(u'\t') + 1);
    if (!line.startsWith(touchedMark) && QFileInfo(path).isSymLink())
        return;
    bool hasTables = false;
    try {
        hasTables = QFileInfo::exists(path) && recover(path);
    } catch (const dao::Error& error) {
        // What is no database has nothing to roll back. Anything else, a lock or damage, is for the user to
        // see to.
        if (error.number() == noDatabase)
            return;
        throw ImportError(
            said(u"%1: Der Rest eines abgebrochenen Imports kann nicht aufgeräumt werden (%2)"_s,
                 u"%1: What an interrupted import left cannot be cleared away (%2)"_s)
                .arg(path, error.description()));
    }
    if (line.startsWith(blankMark) && !hasTables && QFileInfo::exists(path)) {
        QFile::resize(path, 0);
        QFile::remove(journalOf(path));
    }
    if (made && !hasTables)
        for (const QString& file : {path, journalOf(path)})
            QFile::remove(file);
}

/// A commit of several files notes their journals in a file of its own, named after the main one.
void removeCommitNotes(const QString& catalogue) {
    const QFileInfo info(catalogue);
    const QDir folder(info.absolutePath());
    for (const QString& name : folder.entryList({info.fileName() + u"-mj*"_s}, QDir::Files))
        QFile::remove(folder.filePath(name));
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
        if (flock(note, LOCK_EX | LOCK_NB) != 0) {
            busy = true;
            close(note);
            return -1;
        }
        // The one before may have removed its note between our opening and our lock.
        struct stat locked {
        }, present{};
        if (fstat(note, &locked) == 0 && stat(path.constData(), &present) == 0 &&
            locked.st_ino == present.st_ino)
            return note;
        close(note);
    }
}

/// Rolls back and removes what the note lists, and empties it. Under the lock.
void clearAway(const QString& catalogue, int note) {
    QFile file;
    if (!file.open(note, QIODevice::ReadOnly) || !file.seek(0))
        return;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines)
        recoverLine(line);
    if (!lines.isEmpty())
        removeCommitNotes(catalogue);
    if (ftruncate(note, 0) != 0)
        throw ImportError(cannotWrite(noteOf(catalogue)));
}

void removeNote(const QString& catalogue, int note) {
    QFile::remove(noteOf(catalogue));
    close(note);
}

} // namespace

ImportGuard::ImportGuard(const QString& catalogue) : catalogue_(catalogue) {
    bool busy = false;
    note_ = lockNote(catalogue, true, busy);
    if (note_ < 0)
        throw ImportError(
            busy ? said(u"%1: Ein anderer Import ist gerade an der Arbeit"_s,
                        u"%1: Another import is at work"_s)
                       .arg(catalogue)
                 : cannotWrite(QFileInfo(noteOf(catalogue)).isSymLink() ? noteOf(catalogue) : catalogue));
    try {
        archive::finishInterruptedBuild(catalogue);
        clearAway(catalogue, note_);
    } catch (...) {
        close(note_);
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
            throw ImportError(said(u"%1: Die Verknüpfung zeigt ins Leere"_s,
                                   u"%1: The link points to a file that is not there"_s)
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
    const QByteArray line = (mark + path + u'\n').toUtf8();
    if (write(note_, line.constData(), static_cast<size_t>(line.size())) != line.size())
        throw ImportError(cannotWrite(noteOf(catalogue_)));
}

void ImportGuard::done() {
    removeNote(catalogue_, note_);
    note_ = -1;
}

void removeLeftovers(const QString& path) {
    const QString catalogue = Paths::onDisk(path);
    bool busy = false;
    const int note = lockNote(catalogue, false, busy);
    if (note < 0)
        return;
    try {
        archive::finishInterruptedBuild(catalogue);
        clearAway(catalogue, note);
    } catch (...) {
        close(note);
        throw;
    }
    removeNote(catalogue, note);
}
