// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/TestCommands.h"

#include "link/TestRun.h"
#include "program/CommandRegistry.h"

TestCommands::TestCommands(const CommandContext& context)
    : m_context(context)
{
    registerCommands();
}

void TestCommands::registerCommands()
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuTestStart",
                  .menu = Command::Menu::Test,
                  .place = 100,
                  .text = tr("&Start"),
                  .icon = "test-start",
                  .shortcut = "F5",
                  .statusTip = tr("Start a test into the active document"),
                  .handler = [this] { m_context.testRun.mnuTestStart_Click(); },
                  .functionKey = true,
                  .toolBarKey = "Start Test"});
    commands.add({.name = "mnuTestStopTest",
                  .menu = Command::Menu::Test,
                  .place = 110,
                  .text = tr("S&top"),
                  .icon = "test-stop",
                  .shortcut = "F6",
                  .statusTip = tr("Stop the test"),
                  .handler = [this] { m_context.testRun.mnuTestStopTest_Click(); },
                  .functionKey = true,
                  .toolBarKey = "Stop Test"});
    commands.add({.name = "mnuTestRepeat",
                  .menu = Command::Menu::Test,
                  .place = 120,
                  .text = tr("&Repeat"),
                  .icon = "test-repeat",
                  .shortcut = "Ctrl+R",
                  .statusTip = tr("Repeat the test until stopped"),
                  .handler = [this] { mnuTestRepeat_Click(); },
                  .rules = Command::NeedsInstrument,
                  .checkable = true,
                  .toolBarKey = "Repeat Test"});
}

void TestCommands::mnuTestRepeat_Click()
{
    m_context.testRun.mnuTestRepeat_Click(m_context.commands.isChecked("mnuTestRepeat"));
}
