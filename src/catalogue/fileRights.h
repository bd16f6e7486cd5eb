#pragma once

#include <QString>

/// Gives a file the permission bits of another, so that a new file is open to nobody whom the old one shut out.
/// @throws ImportError when they cannot be set
void giveRights(const QString& from, const QString& to);
