// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/Measures.h"

#include <gtest/gtest.h>
#include <limits>
#include <set>

namespace {

using namespace Qt::StringLiterals;

std::string text(double value, double uncertainty, const QString& unit = u"Hz"_s)
{
    return measures::valueText({value, uncertainty}, unit).toStdString();
}

} // namespace

TEST(Measures, AValueHasTheDigitsThatItsUncertaintyLeaves)
{
    EXPECT_EQ(text(40000.314159, 0.83), "40.00031 kHz \u00b1 830 mHz");
    EXPECT_EQ(text(100.456, 1.2, {}), "100.5 \u00b1 1.2");
    EXPECT_EQ(text(4.0764e-9, 3e-11, u"F"_s), "4.076 nF \u00b1 30 pF");
    EXPECT_EQ(text(5, 4, {}), "5.0 \u00b1 4.0");
    EXPECT_EQ(text(0.256561, 9e-5, {}), "0.256561 \u00b1 0.000090");
}

TEST(Measures, WhatIsNotThereIsNotAvailableAndHasNoUncertainty)
{
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(text(kNaN, kNaN), "N/A");
    EXPECT_EQ(text(kNaN, 1), "N/A");
    EXPECT_EQ(text(1000, kNaN), "1 kHz");
}

TEST(Measures, EachHasAKeyOfItsOwnAndADefinition)
{
    std::set<std::string> keys;
    for (const auto list : {measures::ofResonance(), measures::ofCircuit()}) {
        for (const measures::Measure& measure : list) {
            EXPECT_TRUE(keys.insert(measure.key).second) << measure.key;
            EXPECT_FALSE(measures::definition(measure).isEmpty());
        }
    }
    EXPECT_EQ(keys.size(), 11U);
}
