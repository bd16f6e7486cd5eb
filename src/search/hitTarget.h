#pragma once

#include <QString>
#include <optional>

/// Where a hit of the extended search leads.
struct HitTarget {
    enum class Window { Explorer, Description };
    Window window = Window::Explorer;
    int view = 0;
    QString nodeKey;  ///< of the entry, or of the study that the variable stands in
    QString entryKey; ///< of an entry: its key without the view's letter
    QString variable; ///< empty for an entry
    QString study;    ///< of the variable
};

/// Reads the key of a hit; nothing for a text that is none.
std::optional<HitTarget> hitTarget(const QString& key);
