// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPoint>
#include <QSize>

class QWidget;

/// Places and sizes of the main window as the settings store keeps them: in twips, 1/1440 inch, at 96 dpi; one
/// device-independent pixel is 15 twips.
namespace windowposition {

inline constexpr int kTwipsPerPixel = 15;

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

int toTwips(int pixels);
/// The nearest pixel.
int toPixels(int twips);

State stateOf(const QWidget& window);
/// Place, size and state of the window.
Position positionOf(const QWidget& window);
/// Place and size first, then the state. A place from which no part of the title could be reached (a screen that is
/// gone) is moved onto the primary screen; a size that is no size is replaced by the default one. Shows nothing.
void apply(const Position& position, QWidget& window);
/// A normal window that stands at Left -245760 is lost: it is brought back to 0, 0 with the default size. True if so.
bool bringBackLost(QWidget& window);

} // namespace windowposition
