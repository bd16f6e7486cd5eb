#pragma once

#include <QString>
#include <memory>
#include <optional>

/// One ini file, read whole and written whole or not at all; UTF-8 (a file that is not is read as Latin-1).
///
/// Sections and keys go without regard to case. Backslashes, quotes, umlauts, ";" and blanks at the ends of values
/// survive; a line break in a value becomes a blank.
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
