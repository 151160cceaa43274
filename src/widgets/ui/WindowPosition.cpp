// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/WindowPosition.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <cmath>

namespace windowposition {

namespace {

constexpr int kLostLeft = -245760;
constexpr int kReachable = 48; // pixels of the title bar that must lie on some screen

bool reachable(const QRect& window)
{
    const QRect titleBar(window.left(), window.top(), window.width(), kReachable);
    const auto screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&titleBar](const QScreen* screen) {
        const QRect visible = screen->availableGeometry() & titleBar;
        return visible.width() >= kReachable && visible.height() > 0;
    });
}

} // namespace

int toTwips(int pixels)
{
    return pixels * kTwipsPerPixel;
}

int toPixels(int twips)
{
    return static_cast<int>(std::lround(static_cast<double>(twips) / kTwipsPerPixel));
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
    QRect place(toPixels(wanted.left), toPixels(wanted.top), toPixels(wanted.width), toPixels(wanted.height));
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
