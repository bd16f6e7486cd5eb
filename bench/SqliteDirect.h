#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <utility>
#include <vector>

/// The bare way: statements prepared and stepped through SQLite's C interface on the same files, every column of every
/// row read.
class SqliteDirect {
public:
    /// @param attached alias and file of each further database
    SqliteDirect(const QString& file, const std::vector<std::pair<QString, QString>>& attached = {});
    ~SqliteDirect();

    /// Steps a statement to its end. @return rows
    int run(const QString& sql);

private:
    struct Content;
    std::unique_ptr<Content> content_;
};
