#include "catalogue/BuildFolder.h"

#include "catalogue/CatalogueImport.h"
#include "catalogue/importTexts.h"
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

QString readyNote(const QString& folder) {
    return folder + u"/ready"_s;
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
            throw ImportError(said(u"'%1' kann nicht nach '%2' gebracht werden: %3"_s,
                                   u"'%1' cannot be moved to '%2': %3"_s)
                                  .arg(Paths::native(from), Paths::native(to), file.errorString()));
        done_.emplace_back(from, to);
    }
    void keep() { done_.clear(); }

private:
    std::vector<std::pair<QString, QString>> done_;
};

QStringList filesBelow(const QString& folder) {
    QStringList names;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext())
        names << QDir(folder).relativeFilePath(files.next());
    return names;
}

void moveAll(const QString& catalogue, const QString& folder, const QStringList& outdated) {
    const QFileInfo target(catalogue);
    const QString place = target.absolutePath() + u'/';
    const QString built = folder + u"/new/"_s;
    const QString old = folder + u"/old/"_s;
    Moves moves;
    const auto takeAway = [&](const QString& name) {
        // A journal that a killed program left belongs to the old file; beside the new one it would spoil it.
        for (const QString& file : {name, name + u"-journal"_s, name + u"-wal"_s, name + u"-shm"_s})
            if (QFileInfo(place + file).isFile())
                moves.move(place + file, old + file);
    };
    QStringList names = filesBelow(built);
    // Without the catalogue among them it has taken its place already, and only the folder is left to be
    // removed.
    if (names.removeAll(target.fileName()) > 0) {
        takeAway(target.fileName());
        for (const QString& name : outdated)
            if (!name.contains(u'/')) // what the note of a killed run names lies beside the catalogue
                takeAway(name);
        for (const QString& name : std::as_const(names)) {
            takeAway(name);
            moves.move(built + name, place + name);
        }
        moves.move(built + target.fileName(), target.absoluteFilePath());
    }
    moves.keep();
}

} // namespace

BuildFolder::BuildFolder(const QString& catalogue) : catalogue_(catalogue), folder_(folderFor(catalogue)) {
    if (QFileInfo(folder_).isSymLink() || !QDir().mkpath(files()))
        throw ImportError(
            said(u"Der Ordner '%1' kann nicht angelegt werden."_s, u"The folder '%1' cannot be made."_s)
                .arg(Paths::native(folder_)));
}

BuildFolder::~BuildFolder() {
    // Old files that could not be put back stay where they are; the next run finishes the move.
    if (inPlace_ || filesBelow(folder_ + u"/old"_s).isEmpty())
        QDir(folder_).removeRecursively();
}

QString BuildFolder::files() const {
    return folder_ + u"/new"_s;
}

void BuildFolder::moveIntoPlace(const QStringList& outdated) {
    // What is replaced goes when its successor comes: a second run after a kill must not take away the new
    // file.
    QStringList vanishing = outdated;
    for (const QString& name : filesBelow(files()))
        vanishing.removeAll(name);
    QSaveFile note(readyNote(folder_));
    const QByteArray names = vanishing.join(u'\n').toUtf8();
    if (!note.open(QIODevice::WriteOnly) || note.write(names) != names.size() || !note.commit())
        throw ImportError(said(u"'%1' kann nicht geschrieben werden: %2"_s, u"'%1' cannot be written: %2"_s)
                              .arg(Paths::native(note.fileName()), note.errorString()));
    moveAll(catalogue_, folder_, vanishing);
    inPlace_ = true;
}

void finishInterruptedBuild(const QString& catalogue) {
    const QString folder = folderFor(catalogue);
    // A link is none of ours: what it points to is somebody else's.
    if (!QFileInfo::exists(folder) || QFileInfo(folder).isSymLink() ||
        QFileInfo(folder + u"/new"_s).isSymLink() || QFileInfo(folder + u"/old"_s).isSymLink())
        return;
    QFile note(readyNote(folder));
    if (note.open(QIODevice::ReadOnly))
        moveAll(catalogue, folder, QString::fromUtf8(note.readAll()).split(u'\n', Qt::SkipEmptyParts));
    QDir(folder).removeRecursively();
}

} // namespace archive
