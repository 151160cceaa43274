// SPDX-License-Identifier: GPL-3.0-or-later
// Entry of test programs that load no widgets.
#include "support/TestHome.h"

#include <QGuiApplication>
#include <QLocale>

#include <cstdlib>
#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    const TestHome home;
    if (!home.isValid())
        return EXIT_FAILURE;
    ::testing::InitGoogleMock(&argc, argv);
    QGuiApplication application(argc, argv);
    QLocale::setDefault(QLocale::c());
    return RUN_ALL_TESTS();
}
