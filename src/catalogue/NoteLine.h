#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// A line of the notes that a run keeps for the one after it: what is to become of which file. Any file name
/// fits in.
struct NoteLine {
    QString mark, identity, path;

    /// With the end of the line.
    QByteArray text() const;
};

/// The lines of a note; what is not one is left out.
QList<NoteLine> noteLines(const QByteArray& content);
