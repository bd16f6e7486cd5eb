#include "config/CProfile.h"

#include "app/globals.h"
#include "platform/system/ApplicationInfo.h"
#include "platform/system/IniFile.h"
#include "platform/system/Paths.h"
#include "platform/ui/Asker.h"

#include <QDir>
#include <QRegularExpression>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype bufferSize = 255;
constexpr qint32 numberNotFound = -100;
constexpr int iniFileMissing = -2;
constexpr int iniKeyMissing = 100;

QString m_StripTerminator(const QString& text) {
    return text.section(QChar(0), 0, 0);
}

bool isBlank(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c == u' '; });
}

QString messageText(int code, const QString& key, const QString& file) {
    switch (code) {
    case iniFileMissing:
        return said(u"Die Konfigurationsdatei: "_s + file + u" existiert nicht!"_s,
                    u"The Config-File: "_s + file + u" don't exist!\""_s);
    case 1:
        return said(u"Fehlerhafte Registrierdatenbank"_s, u"The Registry is corrupted"_s);
    case 2:
        return said(u"Falscher Schlüsselname: "_s + key, u"Wrong Keyname: "_s + key);
    case 3:
        return said(u"Schlüssel: "_s + key + u" kann nicht geöffnet werden"_s,
                    u"Key: "_s + key + u" cannot be opened"_s);
    case 4:
        return said(u"Schlüssel kann nicht gelesen werden"_s, u"Key: "_s + key + u" cannot be read"_s);
    case 5:
        return said(u"Schlüssel: "_s + key + u" kann nicht geschrieben werden"_s,
                    u"Key: "_s + key + u" cannot be written"_s);
    case 8:
        return said(u"Zugriff auf die Regstrierdatenbank verweigert"_s, u"Registry Access denied"_s);
    case iniKeyMissing:
        return said(u"Es fehlt der Schlüssel in der *.ini-Datei"_s, u"Missing key in *.ini-File"_s);
    default:
        return said(u"Unbekannter Registrierungsfehler-Code"_s, u"Unknown Error!\""_s);
    }
}

} // namespace

CProfile::CProfile()
    : ApplicationIniFile(Paths::join(Paths::applicationFolder(), ApplicationInfo::executableName + u".ini"_s)),
      applicationPath_(Paths::join(Paths::applicationFolder(), QString(QDir::separator()))) {}

QString CProfile::ApplicationVersion() const {
    return ApplicationInfo::title + QString::number(ApplicationInfo::majorVersion) +
           QString::number(ApplicationInfo::minorVersion) + QString::number(ApplicationInfo::revision);
}

QString CProfile::ApplicationExeFile() const {
    return ApplicationInfo::executableName;
}

void CProfile::showMessage(int code, const QString& site, const QString& key) const {
    const QString text = messageText(code, key, ApplicationIniFile);
    const QString details = said(u"Fehler bei: "_s, u"Error at: "_s) + site + u"\r\n"_s +
                            said(u"Fehlernummer: "_s, u"Number: "_s) + QString::number(code) + u"\r\n"_s +
                            said(u"Beschreibung: "_s, u"Description: "_s) + text + u"\r\n"_s;
    if (ui::asker().pointer() == ui::Pointer::Wait)
        ui::asker().setPointer(ui::Pointer::Default);
    ui::asker().messageBox(
        {text + u"\r\n"_s + details, said(u"Fehler"_s, u"Error"_s), ui::Icon::Critical, ui::Buttons::Ok});
}

bool CProfile::m_ReadStringFromProfile(const QString& section, const QString& key, const QString& site) {
    lastRead_.clear();
    fileMissing_ = !Paths::exists(ApplicationIniFile);
    IniFile file;
    if (fileMissing_ || !file.load(ApplicationIniFile)) {
        showMessage(fileMissing_ ? iniFileMissing : static_cast<int>(Registry::Outcome::NotReadable), site, key);
        return false;
    }
    const std::optional<QString> value = file.value(section, key);
    lastRead_ = m_StripTerminator(value.value_or(QString()).left(bufferSize));
    return value.has_value();
}

QString CProfile::ReadProfileString(const QString& section, const QString& key) {
    m_ReadStringFromProfile(section, key, u"GetPrivateProfileString"_s);
    return lastRead_;
}

qint32 CProfile::ReadProfileInt(const QString& section, const QString& key) {
    if (!m_ReadStringFromProfile(section, key, u"GetPrivateProfileInt"_s))
        return numberNotFound;
    static const QRegularExpression leadingNumber(u"^\\s*([-+]?\\d{1,10})"_s);
    return leadingNumber.match(lastRead_).captured(1).toInt();
}

void CProfile::WriteProfileEntry(const QString& section, const QString& key, const QString& value) {
    WriteProfileEntries(section, {{key, value}});
}

void CProfile::WriteProfileEntries(const QString& section, const std::vector<QPair<QString, QString>>& entries) {
    IniFile file;
    bool done = file.load(ApplicationIniFile);
    if (done) {
        for (const auto& [key, value] : entries)
            file.setValue(section, key, value);
        done = file.save(ApplicationIniFile);
    }
    if (!done)
        showMessage(iniKeyMissing, u"WriteProfileEntry"_s, entries.empty() ? QString() : entries.front().first);
}

QVariant CProfile::m_QueryValue(const Registry::Entry& entry, const QVariant& byDefault) {
    if (entry.type == Registry::Number)
        return entry.number;
    if (entry.type != Registry::String)
        return byDefault;
    const QString text = m_StripTerminator(entry.text);
    return isBlank(text) ? byDefault : QVariant(text);
}

QVariant CProfile::GetRegistryEntry(Registry::Hive hive, const QString& key, const QString& name,
                                    const QVariant& byDefault, Registry::Hive fallbackHive,
                                    const QString& fallbackKey) {
    const std::pair<Registry::Hive, QString> places[] = {{hive, key}, {fallbackHive, fallbackKey}};
    for (const auto& [placeHive, placeKey] : places) {
        if (!Registry::keyExists(placeHive, placeKey))
            continue;
        Registry::Entry entry;
        const Registry::Outcome outcome = Registry::read(placeHive, placeKey, name, entry);
        if (outcome == Registry::Outcome::Done)
            return m_QueryValue(entry, byDefault);
        if (outcome != Registry::Outcome::NotFound) {
            showMessage(static_cast<int>(outcome), u"m_QueryValueEx"_s, placeKey);
            return byDefault;
        }
    }
    return byDefault;
}

bool CProfile::SetRegistryEntry(Registry::Hive hive, const QString& key, const QString& name, const QVariant& value,
                                int type) {
    Registry::Entry entry;
    entry.type = type;
    bool understood = type == Registry::String || type == Registry::Number;
    if (type == Registry::Number)
        entry.number = value.toUInt(&understood);
    else
        entry.text = value.toString().isEmpty() ? u" "_s : value.toString();
    Registry::Entry before;
    // A value that stands there already is not written again: each write replaces the whole file.
    if (understood && Registry::read(hive, key, name, before) == Registry::Outcome::Done && before.type == entry.type &&
        before.text == entry.text && before.number == entry.number)
        return false;
    const Registry::Outcome outcome =
        understood ? Registry::write(hive, key, name, entry) : Registry::Outcome::NotWritable;
    if (outcome == Registry::Outcome::Done)
        return false;
    showMessage(static_cast<int>(outcome), u"SetValueEx"_s, key);
    return true;
}

QVariant storedSetting(const QString& name, const QVariant& byDefault) {
    return CProfile().GetRegistryEntry(Registry::CurrentUser, SettingsKeys::user, name, byDefault,
                                       Registry::LocalMachine, SettingsKeys::machine);
}
