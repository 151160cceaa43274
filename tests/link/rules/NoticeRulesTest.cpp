// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/rules/NoticeRules.h"

#include <gtest/gtest.h>
#include <limits>
#include <set>

namespace {

const QString kMismatch = QStringLiteral("Version number mismatch. The firmware may need upgrading.");

TEST(NoticeRules, ExactlyTheSixPairsAreKnownGood)
{
    const std::set<std::pair<int, int>> known{{10, 11}, {10, 12}, {10, 13}, {22, 23}, {23, 27}, {23, 28}};
    for (int firmware = 0; firmware < 40; ++firmware) {
        for (int program = 0; program < 40; ++program) {
            const bool good = known.count({firmware, program}) != 0;
            EXPECT_EQ(noticerules::isKnownGoodPair(1, firmware, 1, program), good) << firmware << ' ' << program;
            EXPECT_FALSE(noticerules::isKnownGoodPair(2, firmware, 1, program));
            EXPECT_FALSE(noticerules::isKnownGoodPair(1, firmware, 2, program));
        }
    }
    EXPECT_FALSE(noticerules::isKnownGoodPair(1, 23.5, 1, 28));
}

TEST(NoticeRules, OnlyTheMismatchErrorOfAKnownPairIsDiscarded)
{
    EXPECT_TRUE(noticerules::isDiscarded(kMismatch, 1, 1, 23, 1, 28));
    EXPECT_FALSE(noticerules::isDiscarded(kMismatch, 0, 1, 23, 1, 28));
    EXPECT_FALSE(noticerules::isDiscarded(kMismatch, 2, 1, 23, 1, 28));
    EXPECT_FALSE(noticerules::isDiscarded(kMismatch + QLatin1Char('!'), 1, 1, 23, 1, 28));
    EXPECT_FALSE(noticerules::isDiscarded(kMismatch, 1, 1, 24, 1, 28));
}

} // namespace
