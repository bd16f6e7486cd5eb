#include "platform/system/Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

QString applicationFolderFound;

bool isSeparator(QChar c) {
    return c == u'/' || c == u'\\';
}

qsizetype lastSeparator(const QString& path) {
    return std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
}

QString withoutTrailingSeparators(QString path) {
    while (path.size() > 1 && isSeparator(path.back()))
        path.chop(1);
    return path;
}

QString programFolder() {
    if (QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    const QString program = QFile::symLinkTarget(u"/proc/self/exe"_s);
    return program.isEmpty() ? QDir::currentPath() : QFileInfo(program).absolutePath();
}

/// Where an installation puts the files that every user starts from.
QString installedFolder(const QString& program) {
    return QDir::cleanPath(program + u"/../share/varidex"_s);
}

/// What a program that ran from there has written of itself.
bool isLog(const QFileInfo& file) {
    const QString suffix = file.suffix().toLower();
    return suffix == u"log" || suffix == u"clf";
}

/// Copies what is not there yet, each file whole or not at all; programs stay where they are, and so do logs.
/// @return false if a file that may be read could not be copied
bool prepareUserFolder(const QString& folder, const QString& installed) {
    QDir().mkpath(folder);
    bool complete = true;
    for (const QFileInfo& file : QDir(installed).entryInfoList(QDir::Files)) {
        const QString target = folder + u'/' + file.fileName();
        const QString unfinished = target + u".new"_s;
        if (QFileInfo::exists(target) || file.permission(QFileDevice::ExeOwner) || isLog(file))
            continue;
        QFile::remove(unfinished); // left by a start that was broken off
        if (QFile::copy(file.filePath(), unfinished)) {
            QFile::setPermissions(unfinished, QFile::permissions(unfinished) | QFileDevice::WriteOwner);
            QFile::rename(unfinished, target);
        }
        complete = complete && (QFileInfo::exists(target) || !file.isReadable());
    }
    return complete;
}

QString findApplicationFolder() {
    const QString home = qEnvironmentVariable("VARIDEX_HOME");
    return home.isEmpty() ? Paths::chooseApplicationFolder(programFolder(), Paths::userDataFolder()) : home;
}

/// The entry of a folder that is called like `name`, exactly so if there is one, else without regard to case.
QString entryLike(const QString& folder, const QString& name) {
    if (QFileInfo::exists(QDir(folder).filePath(name)))
        return name;
    // An archive's folder holds thousands of files, so nothing but their names is asked for.
    QString found;
    std::error_code failure;
    const std::filesystem::path place(QFile::encodeName(folder.isEmpty() ? u"."_s : folder).toStdString());
    std::filesystem::directory_iterator entry(place, failure);
    for (; !failure && entry != std::filesystem::directory_iterator(); entry.increment(failure)) {
        const QString other = QFile::decodeName(entry->path().filename().c_str());
        if (other.compare(name, Qt::CaseInsensitive) == 0 && (found.isEmpty() || other < found))
            found = other;
    }
    return found;
}

} // namespace

QString Paths::native(const QString& path) {
    QString text = path;
    for (QChar& c : text)
        if (isSeparator(c))
            c = QDir::separator();
    return text;
}

QString Paths::join(const QString& folder, const QString& name) {
    if (folder.isEmpty())
        return native(name);
    QString text = withoutTrailingSeparators(native(folder));
    if (!isSeparator(text.back()))
        text += QDir::separator();
    qsizetype start = 0;
    while (start < name.size() && isSeparator(name[start]))
        ++start;
    return text + native(name.mid(start));
}

QString Paths::folderOf(const QString& path) {
    return path.left(std::max<qsizetype>(lastSeparator(path), 0));
}

QString Paths::fileOf(const QString& path) {
    return path.mid(lastSeparator(path) + 1);
}

QString Paths::asFileName(const QString& text) {
    constexpr qsizetype mostBytes = 150;
    static const QString refused = u"\\/:*?\"<>|"_s;
    QString name;
    for (const QChar c : text)
        name += refused.contains(c) || !(c.isPrint() || c.isSurrogate()) ? u'_' : c;
    while (name.toUtf8().size() > mostBytes)
        name.chop(name.size() > 1 && name.back().isLowSurrogate() ? 2 : 1);
    const auto isLoose = [](QChar c) { return c == u'.' || c.isSpace(); };
    while (!name.isEmpty() && isLoose(name.back()))
        name.chop(1);
    while (!name.isEmpty() && isLoose(name.front()))
        name.remove(0, 1);
    // Windows takes these for devices, whatever follows them behind a point.
    static const QRegularExpression device(u"^(CON|PRN|AUX|NUL|COM[0-9]|LPT[0-9])(?=\\.|$)"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return name.replace(device, u"\\1_"_s);
}

bool Paths::exists(const QString& path) {
    return !path.isEmpty() && QFileInfo::exists(onDisk(path));
}

QString Paths::onDisk(const QString& path) {
    const QString wanted = native(path);
    if (wanted.isEmpty() || QFileInfo::exists(wanted))
        return wanted;
    const QStringList parts = wanted.split(QDir::separator(), Qt::SkipEmptyParts);
    const QString root = isSeparator(wanted.front()) ? QString(QDir::separator()) : QString();
    // Mostly it is the last part that is missing: from there up, as far as the folders are there as they are spelled.
    qsizetype known = parts.size();
    QString found;
    do {
        found = root + QStringList(parts.mid(0, --known)).join(QDir::separator());
    } while (known > 0 && !QFileInfo::exists(found));
    for (; known < parts.size(); ++known) {
        const QString& part = parts[known];
        const QString entry = part == u"."_s || part == u".."_s ? part : entryLike(found, part);
        if (entry.isEmpty())
            return wanted;
        found = join(found, entry);
    }
    return found;
}

QString Paths::resolved(const QString& path) {
    const QString found = onDisk(path);
    return QFileInfo(found).isSymLink() && QFileInfo::exists(found) ? QFileInfo(found).canonicalFilePath() : found;
}

QString Paths::chooseApplicationFolder(const QString& programFolder, const QString& userFolder) {
    const QString installed = installedFolder(programFolder);
    const bool isInstalled = QFileInfo(installed).isDir();
    if (!isInstalled && QFileInfo(programFolder).isWritable())
        return programFolder;
    // A build that belongs to somebody else has its files beside the program.
    const QString source = isInstalled ? installed : programFolder;
    return prepareUserFolder(userFolder, source) ? userFolder : source;
}

QString Paths::fileWithin(const QString& folder, const QString& name) {
    if (folder.isEmpty() || name.isEmpty() || name.contains(QChar::Null))
        return {};
    const QString whole = QFileInfo(folder).canonicalFilePath();
    const QString file = QFileInfo(onDisk(join(whole, name))).canonicalFilePath();
    const QString inside = whole.endsWith(u'/') ? whole : whole + u'/';
    if (whole.isEmpty() || !file.startsWith(inside) || !QFileInfo(file).isFile())
        return {};
    return file;
}

QString Paths::userDataFolder() {
    const QString home = qEnvironmentVariable("VARIDEX_HOME");
    return home.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/varidex"_s
                          : home;
}

QString Paths::applicationFolder() {
    if (applicationFolderFound.isEmpty())
        applicationFolderFound = withoutTrailingSeparators(native(findApplicationFolder()));
    return applicationFolderFound;
}

void Paths::resetApplicationFolder() {
    applicationFolderFound.clear();
}

QString Paths::userConfigFolder() {
    const QString config = qEnvironmentVariable("VARIDEX_CONFIG");
    if (!config.isEmpty())
        return withoutTrailingSeparators(native(config));
    return join(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), u"varidex"_s);
}

QString Paths::machineConfigFolder() {
    const QString config = qEnvironmentVariable("VARIDEX_CONFIG");
    if (!config.isEmpty())
        return withoutTrailingSeparators(native(config));
    // The user's own folder comes first in the list; what follows belongs to the machine.
    const QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    return join(folders.value(1, folders.value(0)), u"varidex"_s);
}
