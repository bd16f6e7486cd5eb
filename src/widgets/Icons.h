#pragma once

#include <QIcon>
#include <QString>

/// The program's icons: one family of line drawings, drawn in the text colour of the palette, so that they show on
/// light and on dark.
namespace Icons {

/// The icon of that name under resources/icons (without ".svg"); a null icon if there is none.
QIcon get(const QString& name);

/// The same with a digit in its corner, by which those of several views differ.
QIcon withNumber(const QString& name, int number);

/// Name of the icon of a view: "1" in `type` makes it a study view, in `comparison` a trend view.
QString ofView(const QString& type, const QString& comparison);

} // namespace Icons
