// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/WindowPosition.h"

#include "values/Conversions.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace windowposition {

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kLostLeft = -245760;
constexpr int kReachable = 48; // pixels of the title bar that must lie on some screen

/// No window needs to be larger than all screens together; its memory grows with its size.
QSize largestSize()
{
    const QScreen* const screen = QGuiApplication::primaryScreen();
    return screen != nullptr ? screen->virtualSize() : QSize(kReachable, kReachable);
}

} // namespace

int toTwips(int pixels)
{
    return values::roundToInt32(static_cast<double>(pixels) * kTwipsPerPixel);
}

int toPixels(double twips)
{
    return values::roundToInt32(std::round(twips / kTwipsPerPixel));
}

bool reachable(const QRect& window)
{
    const QRect titleBar(window.left(), window.top(), window.width(), kReachable);
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&titleBar](const QScreen* screen) {
        const QRect visible = screen->availableGeometry() & titleBar;
        return visible.width() >= kReachable && visible.height() > 0;
    });
}

State stateOf(const QWidget& window)
{
    if (window.isMinimized())
        return Minimised;
    return window.isMaximized() || window.isFullScreen() ? Maximised : Normal;
}

Position positionOf(const QWidget& window)
{
    return {toTwips(window.pos().x()), toTwips(window.pos().y()), toTwips(window.width()), toTwips(window.height()),
            stateOf(window)};
}

void apply(const Position& position, QWidget& window)
{
    Position wanted = position;
    const Position standard;
    if (wanted.width < toTwips(kReachable) || wanted.height < toTwips(kReachable)) {
        wanted.width = standard.width;
        wanted.height = standard.height;
    }
    const QSize size = QSize(toPixels(wanted.width), toPixels(wanted.height)).boundedTo(largestSize());
    QRect place(QPoint(toPixels(wanted.left), toPixels(wanted.top)), size);
    if (!reachable(place) && wanted.left != kLostLeft) {
        if (const QScreen* screen = QGuiApplication::primaryScreen())
            place.moveTopLeft(screen->availableGeometry().topLeft());
    }
    window.resize(place.size());
    window.move(place.topLeft());
    Qt::WindowStates states = window.windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized);
    if (wanted.state == Maximised)
        states |= Qt::WindowMaximized;
    else if (wanted.state == Minimised)
        states |= Qt::WindowMinimized;
    window.setWindowState(states);
}

bool moveTo(const QPoint& place, QWidget& window)
{
    if (!reachable(QRect(place, window.size())))
        return false;
    window.move(place);
    return true;
}

QPoint besideMain(const QPoint& stored, const QPoint& storedMain, const QPoint& mainNow)
{
    return stored - storedMain + mainNow;
}

bool bringBackLost(QWidget& window)
{
    if (stateOf(window) != Normal || toTwips(window.pos().x()) != kLostLeft)
        return false;
    const Position standard;
    window.move(0, 0);
    window.resize(toPixels(standard.width), toPixels(standard.height));
    return true;
}

} // namespace windowposition
