#pragma once

#include <QPageSize>
#include <QString>

class QLocale;

/// Papers by the codes that printers report for them: 1 "Letter" to 41 "FanfoldLglGerman". Any other number is no
/// paper.
namespace Paper {

inline constexpr int letter = 1, a4 = 9;

/// Name of a paper; "(Default Paper Size)" for a code that is none.
QString name(int code);
/// Code of a paper by its name, whatever its case; 0 for a name that is none.
int code(const QString& name);
/// All names in the order of their codes.
const QStringList& names();

/// Size of a paper, upright; not valid for a code that is none.
QPageSize size(int code);
/// Code of the paper of that size; 0 if none has it.
int code(const QPageSize& size);

/// What people print on where nothing else is known: Letter in some countries of America and on the Philippines, A4
/// everywhere else.
int byLocale(const QLocale& locale);
/// The same for the system's locale.
int byLocale();

} // namespace Paper
