// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/polar/PolarConversion.h"

#include <cmath>
#include <complex>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace {

TEST(PolarConversionTest, GivesACapacitorNegativeReactanceAndPositiveSusceptance)
{
    const polar::Rectangular capacitor = polar::toRectangular(100, -90);
    EXPECT_EQ(capacitor.resistance, 0);
    EXPECT_EQ(capacitor.reactance, -100);
    EXPECT_EQ(capacitor.conductance, 0);
    EXPECT_EQ(capacitor.susceptance, 0.01);
}

TEST(PolarConversionTest, ConvertsQuarterTurnsExactly)
{
    EXPECT_EQ(polar::toRectangular(50, 0).resistance, 50);
    EXPECT_EQ(polar::toRectangular(50, 0).reactance, 0);
    EXPECT_FALSE(std::signbit(polar::toRectangular(50, 0).susceptance));
    EXPECT_EQ(polar::toRectangular(50, 90).resistance, 0);
    EXPECT_EQ(polar::toRectangular(50, 90).reactance, 50);
    EXPECT_EQ(polar::toRectangular(50, 180).resistance, -50);
    EXPECT_EQ(polar::toRectangular(50, -180).reactance, 0);
    EXPECT_EQ(polar::toRectangular(50, 270).reactance, -50);
    EXPECT_EQ(polar::toRectangular(50, 720).resistance, 50);
}

TEST(PolarConversionTest, AgreesWithComplexArithmetic)
{
    for (double modulus : {0.01, 1.0, 47.3, 999999.0}) {
        for (int phase = -180; phase <= 180; phase += 7) {
            const std::complex<double> z = std::polar(modulus, phase * std::numbers::pi / 180);
            const std::complex<double> y = 1.0 / z;
            const polar::Rectangular r = polar::toRectangular(modulus, phase);
            EXPECT_NEAR(r.resistance, z.real(), 1e-14 * modulus);
            EXPECT_NEAR(r.reactance, z.imag(), 1e-14 * modulus);
            EXPECT_NEAR(r.conductance, y.real(), 1e-14 / modulus);
            EXPECT_NEAR(r.susceptance, y.imag(), 1e-14 / modulus);
            const polar::Polar back = polar::toPolar(r.reactance, r.resistance);
            EXPECT_NEAR(back.modulus, modulus, 1e-14 * modulus);
            EXPECT_NEAR(std::abs(std::remainder(back.phase - phase, 360)), 0, 1e-11);
        }
    }
}

TEST(PolarConversionTest, ReadsTheKnownTriangle)
{
    const polar::Polar p = polar::toPolar(-4, 3);
    EXPECT_DOUBLE_EQ(p.modulus, 5);
    EXPECT_NEAR(p.phase, -53.13010235415598, 1e-12);
    EXPECT_EQ(polar::toPolar(7, 0).phase, 90);
    EXPECT_EQ(polar::toPolar(0, -7).phase, 180);
    EXPECT_EQ(polar::toPolar(-0.0, -7).phase, 180);
}

TEST(PolarConversionTest, GivesNoAdmittanceToAShort)
{
    const polar::Rectangular r = polar::toRectangular(0, 30);
    EXPECT_EQ(r.resistance, 0);
    EXPECT_EQ(r.reactance, 0);
    EXPECT_EQ(r.conductance, 0);
    EXPECT_EQ(r.susceptance, 0);
    EXPECT_EQ(polar::toRectangular(1e-320, 0).conductance, 0);
    EXPECT_EQ(polar::toPolar(0, 0).modulus, 0);
    EXPECT_EQ(polar::toPolar(-0.0, -0.0).phase, 0);
}

TEST(PolarConversionTest, NeverPassesANonFiniteValueOn)
{
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (double bad : {inf, -inf, nan}) {
        EXPECT_EQ(polar::toRectangular(bad, 10).resistance, 0);
        EXPECT_EQ(polar::toRectangular(10, bad).conductance, 0);
        EXPECT_EQ(polar::toPolar(bad, 10).modulus, 0);
        EXPECT_EQ(polar::toPolar(10, bad).phase, 0);
    }
}

} // namespace
