// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/SweepResult.h"

#include <QJsonArray>

#include <gtest/gtest.h>

using namespace cli;

namespace {

SweepResult impedance()
{
    SweepResult result;
    result.testType = 2;
    result.wanted = 3;
    result.serial = QStringLiteral("T46-1");
    result.points = {{38000, 1200, -80}, {39987, 24.125F, 1.5F}, {41250, 41700, -12}};
    return result;
}

MeasuredPoint reactancePoint(float frequency, float reactance, float resistance, float susceptance, float conductance)
{
    return {frequency, reactance, 0, resistance, susceptance, conductance};
}

} // namespace

TEST(SweepResult, TheLineTellsRangeAndExtremes)
{
    EXPECT_EQ(resultLine(impedance()).toStdString(),
              "3 points from 38 kHz to 41.25 kHz, lowest impedance 24.13 Ohm at 39.987 kHz, highest 41.7 kOhm at 41.25 "
              "kHz");
    SweepResult amplitude = impedance();
    amplitude.testType = 1;
    amplitude.points = {{2000, -3.014F}, {1000, -40}};
    EXPECT_EQ(resultLine(amplitude).toStdString(),
              "2 points from 1 kHz to 2 kHz, lowest gain -40 dB at 1 kHz, highest -3.01 dB at 2 kHz");
    EXPECT_EQ(resultLine(SweepResult()).toStdString(), "no points");
}

TEST(SweepResult, TheModulusOfAReactanceSweepIsThatOfTheImpedance)
{
    SweepResult result;
    result.testType = 3;
    result.points = {reactancePoint(1000, -4, 3, 0, 0), reactancePoint(2000, 1, 1, 0, 0)};
    EXPECT_DOUBLE_EQ(result.points[0].modulus(3), 5);
    EXPECT_EQ(resultLine(result).toStdString(),
              "2 points from 1 kHz to 2 kHz, lowest impedance 1.414 Ohm at 2 kHz, highest 5 Ohm at 1 kHz");
}

TEST(SweepResult, TheTableHoldsEveryPointExactly)
{
    EXPECT_EQ(resultTable({impedance()}).toStdString(), "sweep,frequency_Hz,impedance_Ohm,phase_deg\n"
                                                        "1,38000,1200,-80\n1,39987,24.125,1.5\n1,41250,41700,-12\n");
    SweepResult noPhase = impedance();
    noPhase.phase = false;
    noPhase.points.resize(1);
    EXPECT_EQ(resultTable({noPhase, noPhase}).toStdString(),
              "sweep,frequency_Hz,impedance_Ohm\n1,38000,1200\n2,38000,1200\n");
    SweepResult reactance;
    reactance.testType = 3;
    reactance.points = {reactancePoint(1000, -4, 3, 0.16F, 0.12F)};
    EXPECT_EQ(resultTable({reactance}).toStdString(),
              "sweep,frequency_Hz,reactance_Ohm,resistance_Ohm,susceptance_S,conductance_S\n1,1000,-4,3,0.16,0.12\n");
}

TEST(SweepResult, TheObjectHoldsExtremesAndPoints)
{
    const QJsonObject object = resultObject(impedance());
    EXPECT_EQ(object[QStringLiteral("type")], QStringLiteral("impedance"));
    EXPECT_EQ(object[QStringLiteral("unit")], QStringLiteral("Ohm"));
    EXPECT_EQ(object[QStringLiteral("serial")], QStringLiteral("T46-1"));
    EXPECT_EQ(object[QStringLiteral("complete")], true);
    EXPECT_EQ(object[QStringLiteral("lowest")].toObject()[QStringLiteral("frequency")], 39987);
    EXPECT_EQ(object[QStringLiteral("highest")].toObject()[QStringLiteral("value")], 41700);
    const QJsonArray points = object[QStringLiteral("points")].toArray();
    ASSERT_EQ(points.size(), 3);
    EXPECT_EQ(points[1].toArray(), (QJsonArray{39987, 24.125, 1.5}));

    SweepResult partial = impedance();
    partial.wanted = 4;
    EXPECT_EQ(resultObject(partial)[QStringLiteral("complete")], false);
    EXPECT_FALSE(resultObject(SweepResult()).contains(QStringLiteral("lowest")));
}

TEST(SweepDifference, TheSweepThatWasAskedForIsNone)
{
    SweepResult result = impedance();
    result.points = {{38000, 1, 0}, {40000, 1, 0}, {42000, 1, 0}};
    EXPECT_EQ(differenceFrom({38000, 42000, 3, false}, {38000, 42000}, result), QString());
    std::reverse(result.points.begin(), result.points.end());
    EXPECT_EQ(differenceFrom({38000, 42000, 3, true}, {38000, 42000}, result), QString());
    EXPECT_EQ(differenceFrom({38000, 42000, 3, true}, {42000, 38000}, result), QString());
    EXPECT_EQ(differenceFrom({38000.5, 42000, 3, true}, {42000, 38000}, result), QString()) << "steps of an instrument";
}

TEST(SweepDifference, AnotherRangeDirectionOrNumberOfPointsIsTold)
{
    SweepResult result = impedance();
    result.points = {{38000, 1, 0}, {40000, 1, 0}, {42000, 1, 0}};
    EXPECT_EQ(differenceFrom({38000, 42000, 3, false}, {1000, 1000000}, result).toStdString(),
              "The instrument swept 1 kHz to 1 MHz, not 38 kHz to 42 kHz.");
    EXPECT_EQ(differenceFrom({38000, 42000, 3, true}, {38000, 42000}, result).toStdString(),
              "The instrument measured from 38 kHz to 42 kHz, not 42 kHz to 38 kHz.");
    EXPECT_EQ(differenceFrom({38000, 42000, 2, false}, {38000, 42000}, result).toStdString(),
              "The instrument measured 3 points, not 2.");
    EXPECT_NE(differenceFrom({38000, 42010, 3, false}, {38000, 42000}, result), QString());
}
