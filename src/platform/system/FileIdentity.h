#pragma once

#include <QString>

/// What tells one file or folder from every other, whatever it is called: it outlasts a renaming and a
/// restart of the machine, and a copy or an unpacked file has another one. Empty if there is nothing; of a
/// link, the link's own.
QString fileIdentity(const QString& path);
/// The same of an open file.
QString fileIdentity(int descriptor);
