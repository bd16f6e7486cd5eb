#include "catalogue/BuildFolder.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/NoteLine.h"
#include "catalogue/fileRights.h"
#include "catalogue/importTexts.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace archive {

namespace {

QString folderFor(const QString& catalogue) {
    const QFileInfo file(catalogue);
    return u"%1/.%2.vdx-build"_s.arg(file.absolutePath(), file.fileName());
}

const QString ownerMark = u"folder"_s, oldMark = u"old"_s, newMark = u"new"_s;

QString ownerNote(const QString& folder) {
    return folder + u"/owner"_s;
}

QString readyNote(const QString& folder) {
    return folder + u"/ready"_s;
}

/// What only the run that made the folder, here, can have written into it.
QByteArray ownerLine(const QString& folder) {
    return NoteLine{ownerMark, fileIdentity(folder), fileIdentity(QFileInfo(folder).absolutePath())}.text();
}

void writeNote(const QString& path, const QByteArray& content) {
    QSaveFile note(path);
    if (!note.open(QIODevice::WriteOnly) || note.write(content) != content.size() || !note.commit())
        throw ImportError(said(u"'%1' kann nicht geschrieben werden: %2"_s, u"'%1' cannot be written: %2"_s)
                              .arg(Paths::native(path), note.errorString()));
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    // A pipe that somebody has put there would keep the reader waiting.
    return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString cannotMove(const QString& from, const QString& to, const QString& reason) {
    return said(u"'%1' kann nicht nach '%2' gebracht werden: %3"_s, u"'%1' cannot be moved to '%2': %3"_s)
        .arg(Paths::native(from), Paths::native(to), reason);
}

/// Renames that can be taken back until they are kept.
class Moves {
public:
    ~Moves() {
        for (auto move = done_.rbegin(); move != done_.rend(); ++move)
            QFile::rename(move->second, move->first);
    }
    void move(const QString& from, const QString& to) {
        QDir().mkpath(QFileInfo(to).absolutePath());
        QFile file(from);
        if (!file.rename(to))
            throw ImportError(cannotMove(from, to, file.errorString()));
        done_.emplace_back(from, to);
    }
    void keep() { done_.clear(); }

private:
    std::vector<std::pair<QString, QString>> done_;
};

QStringList filesBelow(const QString& folder) {
    QStringList names;
    QDirIterator files(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext())
        names << QDir(folder).relativeFilePath(files.next());
    return names;
}

/// A run that was killed at once had not come to put its name to the folder.
bool isOurs(const QString& folder) {
    // A link is none of ours: what it points to is somebody else's.
    for (const QString& part : {folder, folder + u"/new"_s, folder + u"/old"_s})
        if (QFileInfo(part).isSymLink())
            return false;
    return filesBelow(folder).isEmpty() || contentOf(ownerNote(folder)) == ownerLine(folder);
}

QStringList journalsOf(const QString& name) {
    return {name + u"-journal"_s, name + u"-wal"_s, name + u"-shm"_s};
}

bool isDatabaseName(const QString& name) {
    return name.endsWith(u".mdb"_s, Qt::CaseInsensitive) && !name.contains(u'/');
}

bool leadsOut(const QString& name) {
    return QDir::isAbsolutePath(name) || QDir::cleanPath(name) != name || name.startsWith(u".."_s);
}

/// What is to be moved, in its order: the old catalogue goes first, the new one comes last.
QList<NoteLine> movesToMake(const QString& catalogue, const QString& folder, const QStringList& outdated) {
    const QFileInfo target(catalogue);
    QStringList built = filesBelow(folder + u"/new"_s);
    built.removeAll(target.fileName());
    QStringList going = QStringList{target.fileName()} + outdated + built;
    going.removeDuplicates();
    QList<NoteLine> lines;
    for (const QString& name : std::as_const(going))
        if (const QString path = target.absolutePath() + u'/' + name; QFileInfo(path).isFile())
            lines << NoteLine{oldMark, fileIdentity(path), name};
    for (const QString& name : built + QStringList{target.fileName()})
        lines << NoteLine{newMark, fileIdentity(folder + u"/new/"_s + name), name};
    return lines;
}

/// Gives what was built the rights of what it replaces, and new case files the old catalogue's.
void passOnRights(const QString& catalogue, const QString& built) {
    const QString place = QFileInfo(catalogue).absolutePath() + u'/';
    for (const QString& name : filesBelow(built)) {
        if (QFileInfo(place + name).isFile())
            giveRights(place + name, built + u'/' + name);
        else if (isDatabaseName(name) && QFileInfo(catalogue).isFile())
            giveRights(catalogue, built + u'/' + name);
    }
}

/// Makes the moves that are not made yet. Only the very files that were there when the note was written move.
void moveAll(const QString& catalogue, const QString& folder, const QList<NoteLine>& lines) {
    const QFileInfo target(catalogue);
    const QString place = target.absolutePath() + u'/';
    const QString built = folder + u"/new/"_s;
    const QString old = folder + u"/old/"_s;
    // Without the catalogue among them it has taken its place already, and only the folder is left to be
    // removed.
    if (!QFileInfo(built + target.fileName()).isFile())
        return;
    QStringList arriving;
    for (const NoteLine& line : lines)
        if (line.mark == newMark)
            arriving << line.path;
    Moves moves;
    // A journal that a killed program left belongs to the old file; beside the new one it would spoil it.
    const auto takeJournals = [&](const QString& name) {
        for (const QString& file : journalsOf(name))
            if (QFileInfo(place + file).isFile())
                moves.move(place + file, old + file);
    };
    for (const NoteLine& line : lines) {
        const bool isNew = line.mark == newMark;
        if (leadsOut(line.path) || (!isNew && !isDatabaseName(line.path) && !arriving.contains(line.path)))
            continue;
        const QString from = (isNew ? built : place) + line.path;
        const QString identity = fileIdentity(from);
        if (isNew && !identity.isEmpty() && identity != line.identity)
            throw ImportError(
                cannotMove(from, place + line.path, said(u"nicht mehr dieselbe Datei"_s, u"another file by now"_s)));
        if (identity.isEmpty() || identity != line.identity)
            continue; // has moved already
        takeJournals(line.path);
        moves.move(from, (isNew ? place : old) + line.path);
    }
    moves.keep();
}

/// Removes a folder so that whatever moment it is killed at, the next run can go on: without the note of the
/// moves first, since half of a new archive must not be moved, and with the owner's note to the last.
void removeFolder(const QString& folder) {
    QFile::remove(readyNote(folder));
    if (QFileInfo::exists(readyNote(folder)))
        return;
    const bool emptied = QDir(folder + u"/old"_s).removeRecursively() && QDir(folder + u"/new"_s).removeRecursively();
    if (emptied && (QFile::remove(ownerNote(folder)) || !QFileInfo::exists(ownerNote(folder))))
        QDir(folder).removeRecursively();
}

} // namespace

BuildFolder::BuildFolder(const QString& catalogue) : catalogue_(catalogue), folder_(folderFor(catalogue)) {
    if (!isOurs(folder_))
        throw ImportError(said(u"Den Ordner '%1' hat kein Aufbau hier angelegt. Sehen Sie ihn durch und "
                               u"löschen Sie ihn, oder benennen Sie ihn um"_s,
                               u"The folder '%1' was not made by a build here. Look through it and delete "
                               u"or rename it"_s)
                              .arg(Paths::native(folder_)));
    if (!QDir().mkpath(files()))
        throw ImportError(said(u"Der Ordner '%1' kann nicht angelegt werden."_s, u"The folder '%1' cannot be made."_s)
                              .arg(Paths::native(folder_)));
    // Nobody else looks into the new files before they have the rights of the old ones.
    QFile::setPermissions(files(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    writeNote(ownerNote(folder_), ownerLine(folder_));
}

BuildFolder::~BuildFolder() {
    // Old files that could not be put back stay where they are; the next run finishes the move.
    if (inPlace_ || filesBelow(folder_ + u"/old"_s).isEmpty())
        removeFolder(folder_);
}

QString BuildFolder::files() const {
    return folder_ + u"/new"_s;
}

void BuildFolder::settle(const QStringList& outdated) {
    passOnRights(catalogue_, files());
    giveRights(folder_, files());
    QByteArray note;
    for (const NoteLine& line : movesToMake(catalogue_, folder_, outdated))
        note += line.text();
    writeNote(readyNote(folder_), note);
}

void BuildFolder::moveIntoPlace(const QStringList& outdated) {
    settle(outdated);
    moveAll(catalogue_, folder_, noteLines(contentOf(readyNote(folder_))));
    inPlace_ = true;
}

bool waitsForItsMove(const QString& catalogue) {
    const QString folder = folderFor(catalogue);
    return isOurs(folder) && QFileInfo::exists(readyNote(folder)) &&
           QFileInfo::exists(folder + u"/new/"_s + QFileInfo(catalogue).fileName());
}

void finishInterruptedBuild(const QString& catalogue) {
    const QString folder = folderFor(catalogue);
    if (!QFileInfo::exists(folder) || !isOurs(folder))
        return;
    if (QFileInfo::exists(readyNote(folder)))
        moveAll(catalogue, folder, noteLines(contentOf(readyNote(folder))));
    removeFolder(folder);
}

} // namespace archive
