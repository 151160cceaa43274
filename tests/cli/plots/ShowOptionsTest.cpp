// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandWords.h"
#include "cli/plots/ShowCommand.h"

using namespace cli;

namespace {

using Words = CommandWords<ShowCommand>;

} // namespace

TEST(ShowOptions, FilesAndAPenAreRead)
{
    const Words many("a.gzd --json b.gad --jobs 5");
    EXPECT_EQ(many.problem(), "");
    EXPECT_EQ(many.options().files, (QStringList{QStringLiteral("a.gzd"), QStringLiteral("b.gad")}));
    EXPECT_TRUE(many.options().json);
    EXPECT_EQ(many.options().jobs, 5);
    EXPECT_EQ(many.options().pointsOfPen, 0);
    const Words points("--points 10 a.gzd");
    EXPECT_EQ(points.problem(), "");
    EXPECT_EQ(points.options().pointsOfPen, 10);
    EXPECT_FALSE(points.options().json);
}

TEST(ShowOptions, WhatDoesNotFitIsRefused)
{
    for (const char* pen : {"0", "11", "-1", "two", "1.5"})
        EXPECT_EQ(Words((std::string("a.gzd --points=") + pen).c_str()).problem(),
                  std::string("--points needs a pen from 1 to 10, not \"") + pen + "\".");
    EXPECT_EQ(Words("a.gzd --points 1 --json").problem(), "--points prints a table; --json has no place beside it.");
    EXPECT_EQ(Words("a.gzd b.gzd --points 1").problem(), "--points takes one plot file, not 2.");
}
