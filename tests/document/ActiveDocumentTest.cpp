// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/ActiveDocument.h"

#include "document/DocumentBench.h"

#include <gtest/gtest.h>

TEST(ActiveDocument, TellsOfEachChangeOnceAndOfADeath)
{
    DocumentBench bench;
    std::vector<PenDocument*> told;
    QObject::connect(&bench.active, &ActiveDocument::changed, [&](PenDocument* document) { told.push_back(document); });
    auto first = std::make_unique<PenDocument>(bench.context);
    auto second = std::make_unique<PenDocument>(bench.context);
    bench.active.set(first.get());
    bench.active.set(first.get());
    bench.active.set(second.get());
    first.reset();
    PenDocument* const last = second.get();
    second.reset();
    EXPECT_EQ(bench.active.get(), nullptr);
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[1], last);
    EXPECT_EQ(told[2], nullptr);
}
