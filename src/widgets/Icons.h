#pragma once

#include <QIcon>
#include <QString>

/// The program's icons: one family of line drawings, drawn in the text colour of the palette, so that they show on light and
/// on dark.
namespace Icons {

/// The icon of that name under resources/icons (without ".svg"); a null icon if there is none.
QIcon get(const QString& name);

} // namespace Icons
