#pragma once

#include <QByteArray>
#include <QString>

/// Where things stand in a JSON text, for messages that lead to the spot. Paths are written as
/// "views[0].entries[2].name".
///
/// Qt's reader keeps neither lines nor members that stand twice in an object; this walks over a text that it
/// has found to be valid.
namespace JsonPlaces {

/// Line (from 1) of the value with that path; of the nearest value around it if there is none.
int lineOf(const QByteArray& json, const QString& path);
/// Path of the first member that stands twice in its object; empty if there is none.
QString repeatedMember(const QByteArray& json);
/// Line (from 1) of a byte.
int lineAt(const QByteArray& json, qsizetype offset);

} // namespace JsonPlaces
