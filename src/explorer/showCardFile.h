#pragma once

#include <QString>

/// Path that a catalogue gives a show card: its name, with either separator, below the catalogue's folder. Empty for a
/// catalogue that is known by its bare name.
QString showCardPath(const QString& catalogue, const QString& name);

/// The file of that name below the catalogue's folder as it is spelled on disk, links followed. Names are found without
/// regard to case. Empty where there is no such file, and for one that lies outside the folder, whether the name leads
/// there or a link does.
QString showCardFile(const QString& catalogue, const QString& name);
