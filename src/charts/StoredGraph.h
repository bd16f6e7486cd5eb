#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// A chart as it is kept with its variable: the picture of the plot alone, and what stands beside it.
struct StoredGraph {
    QString title;
    float width = 0, height = 0; ///< in twips
    QString explanation;         ///< pairs of code and label that the plot had no room for; empty for none
    QByteArray jpeg;

    bool operator==(const StoredGraph&) const = default;
};
