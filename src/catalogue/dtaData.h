#pragma once

#include <QString>
#include <optional>

/// What in a Stata file (.dta) is not as its head says, in the user's language: empty if all is in order, nothing
/// where the head itself is not.
///
/// The library that reads it believes the number of cases, ends without a word where a value label is not whole,
/// and takes for granted that long strings end with a zero.
std::optional<QString> dtaDataFault(const QString& path);
