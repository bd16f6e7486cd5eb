#pragma once

#include <QString>
#include <optional>
#include <variant>

/// Stand-in for the registry: two hives, each one ini file ("user.ini", "machine.ini") in the folders that Paths
/// names; a key is a section, a value a line that keeps its type. A write replaces the file whole or not at all.
namespace Registry {

enum Hive : quint32 { CurrentUser = 0x80000001u, LocalMachine = 0x80000002u };
enum Type : int { String = 1, Number = 4 };

struct Entry {
    int type = String; ///< any other type is kept but not understood
    QString text;
    quint32 number = 0;
};

/// Result of an operation, by the code the messages of CProfile use: 0 success, 2 no such key or value, 5 cannot be
/// written, 8 access denied, 1 file unreadable.
enum class Outcome : int { Done = 0, Corrupted = 1, NotFound = 2, NotReadable = 4, NotWritable = 5, Denied = 8 };

bool keyExists(Hive hive, const QString& key);
Outcome read(Hive hive, const QString& key, const QString& name, Entry& entry);
Outcome write(Hive hive, const QString& key, const QString& name, const Entry& entry);

/// While one lives, a hive's file is read once for all values that are asked for; what is written through here counts
/// at once. For where many values are read in a row: each asked for alone reads the whole file.
class Reading {
public:
    Reading();
    ~Reading();
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
};

} // namespace Registry
