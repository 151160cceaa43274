// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>

/// The program's own icon of that name (icons/NAME.svg), drawn from its outlines at the size and scale asked for. Lines
/// drawn in "currentColor" take the text colour of the application's palette at the moment of painting, so that an icon
/// stays readable when the desktop turns dark. A null icon when there is no such drawing.
QIcon tintedIcon(const QString& name);

/// The program's emblem, for windows and the about box.
QIcon programIcon();
