// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ui/ScriptCommands.h"

#include "document/FilePicker.h"
#include "link/ui/DeviceWindows.h"
#include "program/CommandRegistry.h"
#include "script/ui/frmMessages.h"
#include "script/ui/frmSendScript.h"
#include "widgets/ui/ShowModally.h"

ScriptCommands::ScriptCommands(const Context& context)
    : m_context(context)
    , m_checker(context.preferences)
    , m_host(context.device, context.testRun, m_checker, *this)
{
    registerCommands();
}

void ScriptCommands::registerCommands()
{
    CommandRegistry& commands = m_context.commands;
    commands.add({.name = "mnuRunTestScript",
                  .menu = Command::Menu::Test,
                  .place = 200,
                  .text = tr("Run Test Scr&ipt..."),
                  .shortcut = "Ctrl+F5",
                  .statusTip = tr("Check a script, send it to the instrument and run it there"),
                  .handler = [this] { m_host.mnuRunTestScript_Click(); },
                  .functionKey = true});
    commands.add({.name = "mnuReRunLastTestScript",
                  .menu = Command::Menu::Test,
                  .place = 210,
                  .text = tr("Re-r&un Last Test Script"),
                  .icon = "rerun-script",
                  .shortcut = "Shift+F5",
                  .statusTip = tr("Run the script that the instrument holds"),
                  .handler = [this] { m_host.mnuReRunLastTestScript_Click(); },
                  .functionKey = true});
    commands.add({.name = "mnuSendTestScript",
                  .menu = Command::Menu::Test,
                  .place = 220,
                  .text = tr("Se&nd Test Script..."),
                  .statusTip = tr("Send a script to the instrument without running it"),
                  .handler = [this] { m_host.mnuSendTestScript_Click(); }});
}

QString ScriptCommands::openFileName(const QString& title, const QString& filters, const QString& folder)
{
    return m_context.files.openFileName(title, filters, folder);
}

void ScriptCommands::refresh()
{
    m_context.window.repaint();
}

void ScriptCommands::showMessages(ScriptChecker& checker)
{
    showModally(new frmMessages(checker, &m_context.window));
}

void ScriptCommands::showTransfer(ScriptTransfer& transfer)
{
    unloadTransfer();
    m_transferForm = new frmSendScript(transfer, &m_context.window);
    m_transferForm->show();
    m_transferForm->repaint();
}

void ScriptCommands::unloadTransfer()
{
    if (!m_transferForm)
        return;
    m_transferForm->hide();
    m_transferForm->deleteLater();
    m_transferForm = nullptr;
}

void ScriptCommands::unloadSettings()
{
    m_context.deviceWindows.unloadSettings();
}
