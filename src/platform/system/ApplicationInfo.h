#pragma once

#include <QString>

/// The version record of the programs.
namespace ApplicationInfo {

inline const QString title = QStringLiteral("Varidex");
inline const QString productName = QStringLiteral("Varidex");
inline const QString companyName = QStringLiteral("Norvik");
/// Name of the executable without extension, the same for every program that works on the user's settings.
inline const QString executableName = QStringLiteral("Varidex");
constexpr int majorVersion = 3;
constexpr int minorVersion = 6;
constexpr int revision = 0;

} // namespace ApplicationInfo
