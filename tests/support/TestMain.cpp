// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of most test programs.
#include "support/TestHome.h"

#include <QApplication>
#include <QLocale>

#include <cstdlib>
#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    const TestHome home;
    if (!home.isValid())
        return EXIT_FAILURE;
    ::testing::InitGoogleMock(&argc, argv);
    QApplication application(argc, argv);
    QLocale::setDefault(QLocale::c());
    return RUN_ALL_TESTS();
}
