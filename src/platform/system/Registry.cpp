#include "platform/system/Registry.h"

#include "platform/system/IniFile.h"
#include "platform/system/Paths.h"

#include <QDir>
#include <QLockFile>
#include <QRegularExpression>
#include <map>

using namespace Qt::StringLiterals;

namespace {

constexpr int lockPatience = 2000;

/// Path of a hive's file, empty for a hive that does not exist.
QString fileOf(Registry::Hive hive) {
    switch (hive) {
    case Registry::CurrentUser:
        return Paths::join(Paths::userConfigFolder(), u"user.ini"_s);
    case Registry::LocalMachine:
        return Paths::join(Paths::machineConfigFolder(), u"machine.ini"_s);
    }
    return {};
}

/// Keys are written with or without a separator at their end.
QString sectionOf(QString key) {
    while (key.endsWith(u'\\'))
        key.chop(1);
    return key;
}

QString toLine(const Registry::Entry& entry) {
    const QString content = entry.type == Registry::Number ? QString::number(entry.number) : entry.text;
    return QString::number(entry.type) + u':' + content;
}

/// A line without a type was typed by hand and is a text.
Registry::Entry fromLine(const QString& line) {
    static const QRegularExpression typed(u"^(\\d{1,4}):(.*)$"_s, QRegularExpression::DotMatchesEverythingOption);
    Registry::Entry entry;
    const QRegularExpressionMatch match = typed.match(line);
    entry.type = match.hasMatch() ? match.captured(1).toInt() : static_cast<int>(Registry::String);
    entry.text = match.hasMatch() ? match.captured(2) : line;
    if (entry.type == Registry::Number)
        entry.number = entry.text.toUInt();
    return entry;
}

struct Loaded {
    IniFile file;
    bool readable = false;
};
int readings = 0;
std::map<Registry::Hive, Loaded> kept; ///< what has been read while there is a Reading

void load(Registry::Hive hive, Loaded& loaded) {
    loaded.readable = loaded.file.load(fileOf(hive));
}

/// Gives the hive's file to whoever asks it. @return what that one returns
template<class Ask>
auto asked(Registry::Hive hive, Ask&& ask) {
    if (readings == 0) {
        Loaded loaded;
        load(hive, loaded);
        return ask(loaded);
    }
    const auto [place, isNew] = kept.try_emplace(hive);
    if (isNew)
        load(hive, place->second);
    return ask(place->second);
}

} // namespace

Registry::Reading::Reading() {
    ++readings;
}

Registry::Reading::~Reading() {
    if (--readings == 0)
        kept.clear();
}

bool Registry::keyExists(Hive hive, const QString& key) {
    return asked(hive, [&](const Loaded& loaded) { return loaded.readable && loaded.file.hasSection(sectionOf(key)); });
}

Registry::Outcome Registry::read(Hive hive, const QString& key, const QString& name, Entry& entry) {
    return asked(hive, [&](const Loaded& loaded) {
        if (!loaded.readable)
            return Outcome::Corrupted;
        const std::optional<QString> line = loaded.file.value(sectionOf(key), name);
        if (!line)
            return Outcome::NotFound;
        entry = fromLine(*line);
        return Outcome::Done;
    });
}

Registry::Outcome Registry::write(Hive hive, const QString& key, const QString& name, const Entry& entry) {
    const QString path = fileOf(hive);
    if (path.isEmpty())
        return Outcome::NotFound;
    if (!QDir().mkpath(Paths::folderOf(path)))
        return Outcome::NotWritable;
    kept.erase(hive);
    // Two programs may write at the same moment; neither may lose the other's value.
    QLockFile lock(path + u".lock"_s);
    if (!lock.tryLock(lockPatience))
        return Outcome::NotWritable;
    IniFile file;
    if (!file.load(path))
        return Outcome::Corrupted;
    file.setValue(sectionOf(key), name, toLine(entry));
    return file.save(path) ? Outcome::Done : Outcome::NotWritable;
}
