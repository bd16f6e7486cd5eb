#pragma once

#include <QIcon>
#include <QString>

/// The program's icons: one family of line drawings, drawn in the text colour of the palette, so that they show on light and
/// on dark.
namespace Icons {

/// The icon of that name under resources/icons (without ".svg"); a null icon if there is none.
QIcon get(const QString& name);

/// The picture of an entry in a tree or a row of a list by its number: 2v + 4 and 2v + 5 an entry of view v without a
/// description, closed and open, 2v + 23 and 2v + 24 one with a description, 24 a variable.
/// @param study the entries of a study view are studies
QIcon numbered(int number, bool study);

/// Name of the icon of a view: "1" in `type` makes it a study view, in `comparison` a trend view.
QString ofView(const QString& type, const QString& comparison);

} // namespace Icons
