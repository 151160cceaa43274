// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/PtyPort.h"

#include <gtest/gtest.h>

TEST(PtyPort, ComesUpOnAnotherTerminalThanTheOneToAvoid)
{
    QByteArray first;
    {
        sim::PtyPort port;
        ASSERT_TRUE(port.open().ok());
        first = port.devicePath();
    }
    EXPECT_TRUE(first.startsWith("/dev/pts/"));
    // The system gives the first free terminal, so without further ado it would be the same one again.
    for (int i = 0; i < 5; ++i) {
        sim::PtyPort port(first);
        ASSERT_TRUE(port.open().ok());
        EXPECT_NE(port.devicePath(), first);
        port.close();
        ASSERT_TRUE(port.open().ok());
        EXPECT_NE(port.devicePath(), first) << "after it was closed as well";
    }
}
