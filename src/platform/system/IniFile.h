#pragma once

#include <QString>
#include <memory>
#include <optional>

/// One ini file, read whole and written whole or not at all; UTF-8; backslashes, quotes, umlauts and ";" in values survive.
class IniFile {
public:
    /// Reads the file. False if it is there but cannot be read; a missing file is an empty one.
    bool load(const QString& path);
    bool save(const QString& path) const;

    std::optional<QString> value(const QString& section, const QString& key) const;
    void setValue(const QString& section, const QString& key, const QString& value);
    bool hasSection(const QString& section) const;

    IniFile();
    ~IniFile();

private:
    struct Content;
    std::unique_ptr<Content> content_;
};
