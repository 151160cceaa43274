// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/Version.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace {

TEST(Version, IsMadeOfItsThreeNumbers)
{
    EXPECT_EQ(
        version::text(),
        QStringLiteral("%1.%2.%3").arg(version::majorNumber()).arg(version::minorNumber()).arg(version::revision()));
    EXPECT_GE(version::majorNumber(), 1);
    EXPECT_EQ(version::shortText(), version::text().section(u'.', 0, 1));
}

TEST(Version, FollowsATitle)
{
    EXPECT_EQ(version::titled(QStringLiteral("Bench 3")), QStringLiteral("Bench 3 V") + version::text());
    EXPECT_EQ(version::programTitle(), QStringLiteral("MarrowickGraph"));
}

} // namespace
