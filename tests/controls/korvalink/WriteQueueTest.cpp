// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/WriteQueue.h"

#include <gtest/gtest.h>

namespace {

TEST(WriteQueueTest, KeepsTextsInOrder)
{
    WriteQueue queue(100);
    EXPECT_TRUE(queue.push("points 100\r"));
    EXPECT_TRUE(queue.push("y\r"));
    EXPECT_EQ(queue.waiting(), "points 100\ry\r");
    queue.drop(7);
    EXPECT_EQ(queue.waiting(), "100\ry\r");
    EXPECT_EQ(queue.size(), 6);
    queue.drop(6);
    EXPECT_EQ(queue.size(), 0);
    EXPECT_TRUE(queue.waiting().isEmpty());
}

TEST(WriteQueueTest, TakesATextWholeOrNotAtAll)
{
    WriteQueue queue(8);
    EXPECT_TRUE(queue.push("12345"));
    EXPECT_FALSE(queue.push("6789"));
    EXPECT_EQ(queue.waiting(), "12345");
    EXPECT_TRUE(queue.push("678"));
    EXPECT_FALSE(queue.push("9"));
    queue.drop(1);
    EXPECT_TRUE(queue.push("9"));
    EXPECT_EQ(queue.waiting(), "23456789");
}

TEST(WriteQueueTest, StaysWithinItsLimitWhenItNeverRunsEmpty)
{
    WriteQueue queue(64);
    ASSERT_TRUE(queue.push(QByteArray(40, 'a')));
    for (int i = 0; i < 10000; ++i) {
        ASSERT_TRUE(queue.push(QByteArray(10, char('b' + i % 20))));
        queue.drop(10);
        ASSERT_EQ(queue.size(), 40);
    }
    EXPECT_EQ(queue.waiting(), QByteArray(10, char('b' + 9996 % 20)) + QByteArray(10, char('b' + 9997 % 20)) +
                                   QByteArray(10, char('b' + 9998 % 20)) + QByteArray(10, char('b' + 9999 % 20)));
}

TEST(WriteQueueTest, DropsNoMoreThanWaits)
{
    WriteQueue queue(8);
    ASSERT_TRUE(queue.push("abc"));
    queue.drop(-2);
    EXPECT_EQ(queue.size(), 3);
    queue.drop(50);
    EXPECT_EQ(queue.size(), 0);
    ASSERT_TRUE(queue.push("abc"));
    queue.clear();
    EXPECT_EQ(queue.size(), 0);
}

} // namespace
