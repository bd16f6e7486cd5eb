#pragma once

#include <QString>
#include <QTemporaryFile>
#include <memory>

/// A copy, among the system's temporary files, of a portable file (.por) whose numbers the reading library
/// does not know: some writers leave out the zero before a fraction (".F"), the digits after a point ("5.")
/// or the text of an empty string, and the library takes the whole file for damaged. In the copy they are
/// spelled out, and a range of missing values stands before single ones, which the library would otherwise
/// forget.
/// @return nothing where the file can be read as it stands, or is not understood
std::unique_ptr<QTemporaryFile> withNumbersSpelledOut(const QString& path);
