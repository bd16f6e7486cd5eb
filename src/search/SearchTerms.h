#pragma once

#include <QStringList>

/// The terms that were searched last, the latest first; kept from one start of the program to the next.
namespace SearchTerms {

constexpr int most = 15;

QStringList stored();
/// Puts a term at the front. One that nobody would choose from a list, since it is too long, is not kept.
void remember(const QString& term);

} // namespace SearchTerms
