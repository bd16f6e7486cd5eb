#include "platform/system/DesktopApplications.h"

#include <QDir>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Entries that are read of a folder without a list of them.
constexpr int mostEntries = 2000;

const QString defaults = u"Default Applications"_s, added = u"Added Associations"_s,
              removed = u"Removed Associations"_s, cached = u"MIME Cache"_s;

QStringList applicationFolders() {
    QStringList folders;
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        folders << folder + u"/applications"_s;
    return folders;
}

/// A folder that says which applications there are for which kind of file.
struct Place {
    std::vector<KeyFile> lists; ///< what the user, the administrator or the distribution has set
    QString entries;            ///< folder of the entries of applications; empty: only settings
};

/// In the order in which they are to be asked.
std::vector<Place> places() {
    QStringList names;
    for (const QString& desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':', Qt::SkipEmptyParts))
        names << desktop.toLower() + u"-mimeapps.list"_s;
    names << u"mimeapps.list"_s;
    std::vector<Place> found;
    const auto add = [&](const QString& folder, const QString& entries) {
        Place& place = found.emplace_back();
        place.entries = entries;
        for (const QString& name : names)
            place.lists.push_back(readKeyFile(folder + u'/' + name));
    };
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation))
        add(folder, {});
    for (const QString& folder : applicationFolders()) {
        add(folder, folder);
        found.back().lists.push_back(readKeyFile(folder + u"/defaults.list"_s));
    }
    return found;
}

QStringList listed(const KeyFile& list, const QString& group, const QString& type) {
    return list.value(group).value(type).split(u';', Qt::SkipEmptyParts);
}

/// The names of the entries in a folder that are for a kind of file.
QStringList entriesFor(const QString& folder, const QString& type) {
    const QString cache = folder + u"/mimeinfo.cache"_s;
    if (QFileInfo::exists(cache))
        return listed(readKeyFile(cache), cached, type);
    QStringList names = QDir(folder).entryList({u"*.desktop"_s}, QDir::Files, QDir::Name).mid(0, mostEntries);
    erase_if(names, [&](const QString& name) {
        const KeyFile entry = readKeyFile(folder + u'/' + name);
        return !listed(entry, u"Desktop Entry"_s, u"MimeType"_s).contains(type);
    });
    return names;
}

/// The file of an entry by its name, in which "-" may stand for the folders below the first.
QString entryFile(const QString& name) {
    if (name.contains(u'/') || !name.endsWith(u".desktop"))
        return {};
    for (const QString& folder : applicationFolders()) {
        QString relative = name;
        for (qsizetype dash = -1;;) {
            if (const QString file = folder + u'/' + relative; QFileInfo(file).isFile())
                return file;
            dash = relative.indexOf(u'-', dash + 1);
            if (dash < 0)
                break;
            relative[dash] = u'/';
        }
    }
    return {};
}

/// The kinds of file that a file is of, the closest first. What holds for any file says nothing of this one.
QStringList typesOf(const QString& path) {
    const QMimeType type = QMimeDatabase().mimeTypeForFile(path);
    QStringList types{type.name()};
    types << type.aliases();
    for (const QString& ancestor : type.allAncestors())
        if (ancestor != u"application/octet-stream")
            types << ancestor;
    return types;
}

/// The names of the entries for a kind of file, the chosen ones first.
QStringList namesFor(const QString& type, const std::vector<Place>& from) {
    QStringList names, others;
    QSet<QString> blocked;
    for (const Place& place : from) {
        for (const KeyFile& list : place.lists) {
            names << listed(list, defaults, type);
            for (const QString& name : listed(list, added, type))
                if (!blocked.contains(name))
                    others << name;
            for (const QString& name : listed(list, removed, type))
                blocked << name;
        }
        if (!place.entries.isEmpty())
            for (const QString& name : entriesFor(place.entries, type))
                if (!blocked.contains(name))
                    others << name;
    }
    names << others;
    names.removeDuplicates();
    return names;
}

} // namespace

std::vector<ProgramStart> DesktopApplications::startsFor(const QString& path) {
    const QString whole = QFileInfo(path).absoluteFilePath();
    const std::vector<Place> from = places();
    QStringList names;
    for (const QString& type : typesOf(whole))
        names << namesFor(type, from);
    names.removeDuplicates();
    std::vector<ProgramStart> starts;
    for (const QString& name : names)
        if (const QString file = entryFile(name); !file.isEmpty())
            if (const std::optional<ProgramStart> start = startOf(file, whole))
                starts.push_back(*start);
    return starts;
}

bool DesktopApplications::open(const QString& path) {
    const std::vector<ProgramStart> starts = startsFor(path);
    return std::ranges::any_of(starts, [](const ProgramStart& start) {
        QProcess process;
        process.setProgram(start.program);
        process.setArguments(start.arguments);
        if (!start.folder.isEmpty() && QFileInfo(start.folder).isDir())
            process.setWorkingDirectory(start.folder);
        process.setStandardInputFile(QProcess::nullDevice());
        process.setStandardOutputFile(QProcess::nullDevice());
        process.setStandardErrorFile(QProcess::nullDevice());
        return process.startDetached();
    });
}
