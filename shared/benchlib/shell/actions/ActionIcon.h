#pragma once

#include <QIcon>

/// The drawing of that name among the program's icons, in colours that suit the palette: lighter on
/// dark windows, and as the text where an entry of a menu is selected. Null if there is no such
/// drawing.
QIcon actionIcon(const QString& name);
