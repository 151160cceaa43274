// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/ui/frmSplash.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QScreen>
#include <QSet>
#include <QTest>

#include <gtest/gtest.h>

namespace {

int coloursOf(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    }
    return static_cast<int>(colours.size());
}

TEST(Splash, IsABorderlessWindowInTheMiddleOfTheScreen)
{
    frmSplash splash;
    splash.showAndRefresh();
    EXPECT_TRUE(splash.isVisible());
    EXPECT_TRUE(splash.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(splash.windowType(), Qt::SplashScreen);
    const QPoint middle = QGuiApplication::primaryScreen()->availableGeometry().center();
    EXPECT_LE((splash.geometry().center() - middle).manhattanLength(), 2);
}

TEST(Splash, PaintsItsCurvesOverTheWholeWidth)
{
    frmSplash splash;
    const QImage image = splash.grab().toImage();
    EXPECT_GT(coloursOf(image), 100);
    // The modulus curve, the only strong yellow, goes from edge to edge.
    const auto isCurve = [](QRgb colour) {
        return qRed(colour) > 0xe0 && qGreen(colour) > 0x90 && qBlue(colour) < 0x80;
    };
    for (int x = 2; x < image.width() - 2; ++x) {
        bool found = false;
        for (int y = 0; y < image.height() && !found; ++y)
            found = isCurve(image.pixel(x, y));
        ASSERT_TRUE(found) << "column " << x;
    }
}

TEST(Splash, IsDrawnAnewAtDoubleScale)
{
    const auto picture = [](int factor) {
        QImage image(QSize(576, 324) * factor, QImage::Format_RGB32);
        QPainter painter(&image);
        frmSplash::paintPicture(painter, QRectF(image.rect()));
        return image;
    };
    const QImage once = picture(1);
    const QImage twice = picture(2);
    const QImage blownUp = once.scaled(twice.size());
    int differing = 0;
    for (int y = 0; y < twice.height(); ++y) {
        for (int x = 0; x < twice.width(); ++x)
            differing += qAbs(qGray(twice.pixel(x, y)) - qGray(blownUp.pixel(x, y))) > 24 ? 1 : 0;
    }
    EXPECT_GT(differing, 2000) << "finer than the small picture blown up";
    EXPECT_LT(differing, twice.width() * twice.height() / 10) << "but the same picture";
}

} // namespace
