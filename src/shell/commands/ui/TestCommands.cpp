// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/commands/ui/TestCommands.h"

#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentList.h"
#include "link/TestRun.h"
#include "link/ui/DeviceWindows.h"
#include "program/CommandRegistry.h"
#include "program/ProgramState.h"

#include <QApplication>

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
    commands.add({.name = "mnuReRunLastTestScript",
                  .menu = Command::Menu::Test,
                  .place = 200,
                  .text = tr("Re-r&un Last Test Script"),
                  .icon = "rerun-script",
                  .shortcut = "Shift+F5",
                  .statusTip = tr("Run the script that the instrument holds"),
                  .handler = [this] { mnuReRunLastTestScript_Click(); },
                  .functionKey = true});
}

void TestCommands::mnuTestRepeat_Click()
{
    m_context.testRun.mnuTestRepeat_Click(m_context.commands.isChecked("mnuTestRepeat"));
}

bool TestCommands::offerConnection(int rounds, int milliseconds)
{
    const QPointer<QWidget> alive = m_context.guard();
    m_context.deviceWindows.mnuTestDevice_Click();
    if (alive)
        m_context.waitRounds(rounds, milliseconds);
    return alive;
}

void TestCommands::mnuReRunLastTestScript_Click()
{
    const QPointer<QWidget> alive = m_context.guard();
    if (m_context.testGoesOn() || !alive)
        return;
    KorvaLink& device = m_context.program.device;
    if (!device.Connected()) {
        QApplication::processEvents();
        if (!alive)
            return;
        m_context.deviceWindows.mnuTestDevice_Click();
        if (!alive || !device.Connected())
            return;
        m_context.waitRounds(25, 10);
        if (!alive)
            return;
    }
    m_context.deviceWindows.unloadSettings();
    m_context.documents.CloseAll();
    if (!alive)
        return;
    m_context.program.state.gbfScriptRunning = true;
    device.Write(QStringLiteral("y\rrun\r"));
}

void TestCommands::reRunAtStart()
{
    const QPointer<QWidget> alive = m_context.guard();
    KorvaLink& device = m_context.program.device;
    if (!device.Connected() && !offerConnection(50, 5))
        return;
    m_context.waitRounds(50, 5);
    if (!alive)
        return;
    m_context.deviceWindows.unloadSettings();
    m_context.program.state.gbfScriptRunning = true;
    device.Write(QStringLiteral("run\r"));
    QApplication::processEvents();
}
