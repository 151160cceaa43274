// SPDX-License-Identifier: GPL-3.0-or-later
#include "widgets/ui/WindowPosition.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace {

using namespace windowposition;

constexpr int kTwips = 15; // a pixel

QRect screen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

TEST(WindowPosition, TwipsAreFifteenAPixel)
{
    EXPECT_EQ(toTwips(100), 1500);
    EXPECT_EQ(toPixels(1500), 100);
    EXPECT_EQ(toPixels(1507), 100);
    EXPECT_EQ(toPixels(1508), 101);
    EXPECT_EQ(toPixels(-1508), -101);
}

TEST(WindowPosition, NumbersOutOfRangeAreHeldAtTheLimits)
{
    EXPECT_EQ(toTwips(std::numeric_limits<int>::max()), std::numeric_limits<int>::max());
    EXPECT_EQ(toPixels(1e300), std::numeric_limits<int>::max());
    EXPECT_EQ(toPixels(-1e300), std::numeric_limits<int>::min());
    EXPECT_EQ(toPixels(std::nan("")), 0);
}

TEST(WindowPosition, AStoredSizeIsNeverLargerThanAllScreens)
{
    QWidget window;
    const QSize all = QGuiApplication::primaryScreen()->virtualSize();
    apply({0, 0, 32767 * kTwips, 32767 * kTwips, Normal}, window);
    EXPECT_EQ(window.size(), all);
    const int most = std::numeric_limits<int>::max();
    apply({0, 0, most, 300 * kTwips, Normal}, window);
    EXPECT_EQ(window.size(), QSize(all.width(), 300));
}

TEST(WindowPosition, ASizeThatIsNoneBecomesTheDefaultOne)
{
    QWidget window;
    apply({0, 0, -5, 6000, Normal}, window);
    EXPECT_EQ(window.size(), QSize(toPixels(10000), toPixels(8000)).boundedTo(screen().size()));
}

TEST(WindowPosition, AWindowIsReachableWhileAPieceOfItsTitleIsOnAScreen)
{
    const QRect area = screen();
    EXPECT_TRUE(reachable(QRect(area.topLeft(), QSize(200, 100))));
    EXPECT_TRUE(reachable(QRect(area.right() - 60, area.top(), 200, 100)));
    EXPECT_FALSE(reachable(QRect(area.right() - 20, area.top(), 200, 100)));
    EXPECT_FALSE(reachable(QRect(area.left(), area.bottom() + 1, 200, 100)));
    EXPECT_FALSE(reachable(QRect(area.left(), area.top() - 90, 200, 100))) << "only the lower part is in sight";
}

TEST(WindowPosition, AWindowIsNotMovedOutOfReach)
{
    QWidget window;
    window.resize(200, 100);
    window.move(30, 40);
    EXPECT_TRUE(moveTo({50, 60}, window));
    EXPECT_EQ(window.pos(), QPoint(50, 60));
    EXPECT_FALSE(moveTo({100000, 60}, window));
    EXPECT_EQ(window.pos(), QPoint(50, 60));
}

TEST(WindowPosition, AWindowKeepsItsPlaceBesideTheMainWindow)
{
    EXPECT_EQ(besideMain({120, 80}, {100, 50}, {400, 300}), QPoint(420, 330));
}

} // namespace
