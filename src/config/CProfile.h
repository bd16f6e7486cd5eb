#pragma once

#include "platform/system/Registry.h"

#include <QPair>
#include <QString>
#include <QVariant>
#include <vector>

/// The one way to the registry and to ini files; reports failures in its own box, so that no error leaves the
/// class.
class CProfile {
public:
    CProfile();

    QString ApplicationIniFile;

    /// Always ends in a separator.
    QString ApplicationPath() const { return applicationPath_; }
    /// Title and version numbers, joined without separators.
    QString ApplicationVersion() const;
    /// The executable's name, which is the section of the options.
    QString ApplicationExeFile() const;

    /// Text of an ini file, at most 255 characters; empty if absent.
    QString ReadProfileString(const QString& section, const QString& key);
    /// The number that a text of an ini file begins with, 0 if it begins with none; -100 if absent.
    qint32 ReadProfileInt(const QString& section, const QString& key);
    void WriteProfileEntry(const QString& section, const QString& key, const QString& value);
    /// Several entries at once: all are written or none, and a failure shows one box.
    void WriteProfileEntries(const QString& section, const std::vector<QPair<QString, QString>>& entries);

    /// A value (text, or number of type 4) under a key, else under the fallback key, else `byDefault`. A
    /// value that is there without content, or of a type that is not understood, gives `byDefault` too.
    QVariant GetRegistryEntry(Registry::Hive hive, const QString& key, const QString& name, const QVariant& byDefault,
                              Registry::Hive fallbackHive, const QString& fallbackKey);
    /// Writes a value, making the key. Empty text is stored as one blank. @return false on success
    bool SetRegistryEntry(Registry::Hive hive, const QString& key, const QString& name, const QVariant& value,
                          int type = Registry::String);

private:
    QString applicationPath_;
    QString lastRead_;
    bool fileMissing_ = false;

    bool m_ReadStringFromProfile(const QString& section, const QString& key, const QString& site);
    static QVariant m_QueryValue(const Registry::Entry& entry, const QVariant& byDefault);
    void showMessage(int code, const QString& site, const QString& key) const;
};

/// Where the user's settings lie, and where an installation puts its own defaults.
namespace SettingsKeys {
inline const QString user = QStringLiteral("Software\\Norvik\\Varidex\\3.6\\");
inline const QString machine = QStringLiteral("Software\\Norvik\\Varidex\\3.6\\Default\\");
/// "1" if the user has asked for the start window. Its flag in the system database says so too, but is on from the
/// beginning, so that the window comes at the very first start.
inline const QString startWindow = QStringLiteral("StartWindow");
/// Number of the page that the options dialog was left on.
inline const QString optionsPage = QStringLiteral("OptionsPage");
} // namespace SettingsKeys

/// A setting under the user's key, else the installation's, else `byDefault`.
QVariant storedSetting(const QString& name, const QVariant& byDefault);
