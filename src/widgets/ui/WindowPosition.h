// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

class QWidget;

/// Places and sizes of windows as the settings store keeps them: in twips, 1/1440 inch, at 96 dpi; one
/// device-independent pixel is 15 twips.
namespace windowposition {

/// State as stored: the numbers of the settings.
enum State
{
    Normal = 0,
    Minimised = 1,
    Maximised = 2
};

struct Position
{
    int left = 0;
    int top = 0;
    int width = 10000;
    int height = 8000;
    int state = Maximised;
};

/// Both hold numbers that are too large for the other unit at its limits.
int toTwips(int pixels);
/// The nearest pixel; 0 for what is not a number.
int toPixels(double twips);

/// Whether enough of the title of a window at this place lies on some screen to take hold of it.
bool reachable(const QRect& window);

State stateOf(const QWidget& window);
/// Place, size and state of the window.
Position positionOf(const QWidget& window);
/// Place and size first, then the state. A place from which no part of the title could be reached (a screen that is
/// gone) is moved onto the primary screen; a size that is no size is replaced by the default one, and no size is larger
/// than all screens together. Shows nothing.
void apply(const Position& position, QWidget& window);

/// Moves a window to the place, in pixels, unless it could not be reached there; then it stays and the answer is false.
bool moveTo(const QPoint& place, QWidget& window);
/// The place that is as far from the main window now as the stored place was from the main window then.
QPoint besideMain(const QPoint& stored, const QPoint& storedMain, const QPoint& mainNow);

/// A normal window that stands at Left -245760 is lost: it is brought back to 0, 0 with the default size. True if so.
bool bringBackLost(QWidget& window);

} // namespace windowposition
