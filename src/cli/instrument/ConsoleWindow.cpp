// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/instrument/ConsoleWindow.h"

#include <QCoreApplication>

namespace cli {
namespace {

void call(const std::function<void()>& callback)
{
    if (callback)
        callback();
}

} // namespace

void ConsoleWindow::processEvents()
{
    QCoreApplication::processEvents();
}

void ConsoleWindow::endProgram()
{
    call(onEndProgram);
}

} // namespace cli
