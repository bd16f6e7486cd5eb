#include "app/RecentFiles.h"

#include "config/CProfile.h"
#include "platform/system/Paths.h"

using namespace Qt::StringLiterals;

namespace {

QString nameOf(int place) {
    return u"File"_s + QString::number(place);
}

/// Two spellings of a path that lead to one file on disk are one file.
bool isSameFile(const QString& a, const QString& b) {
    return Paths::onDisk(Paths::native(a)) == Paths::onDisk(Paths::native(b));
}

} // namespace

bool RecentFiles::SetRecentFiles(const QString& file) {
    QStringList files = GetRecentFiles();
    files.removeIf([&](const QString& other) { return isSameFile(other, file); });
    files.prepend(file);
    return store(files);
}

void RecentFiles::RemoveRecentFile(const QString& file) {
    QStringList files = GetRecentFiles();
    if (files.removeIf([&](const QString& other) { return isSameFile(other, file); }) > 0)
        store(files);
}

bool RecentFiles::store(const QStringList& files) const {
    CProfile profile;
    // Where one cannot be written the others cannot either, and one box says so.
    for (int place = 1; place <= places; ++place)
        if (profile.SetRegistryEntry(RootKey, RegistryPath, nameOf(place), files.value(place - 1), Registry::String))
            return false;
    return true;
}

QStringList RecentFiles::GetRecentFiles() const {
    QStringList files;
    const Registry::Reading reading;
    CProfile profile;
    for (int place = 1; place <= places; ++place) {
        const QString file =
            profile.GetRegistryEntry(RootKey, RegistryPath, nameOf(place), QString(), RootKey, RegistryPath).toString();
        // Empty text is kept as a blank.
        if (!file.trimmed().isEmpty())
            files << file;
    }
    return files;
}
