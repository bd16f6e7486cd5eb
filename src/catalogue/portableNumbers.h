#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// A portable file (.por) as the reading library can take it.
struct PortableText {
    qint64 rows = 0;
    QByteArray spelledOut; ///< empty where the file can be read as it stands
};

/// Goes through a portable file, whose numbers the reading library does not know in all their forms: some
/// writers leave out the zero before a fraction (".F"), the digits after a point ("5.") or the text of an
/// empty string, and the library takes the whole file for damaged. In the copy, which is as large as the file
/// and held in memory, they are spelled out, and a range of missing values stands before single ones, which
/// the library would otherwise forget.
/// @return nothing for a file that is not understood to its last character
std::optional<PortableText> portableText(const QString& path);
