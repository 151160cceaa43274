// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "script/FerrolexChecker.h"
#include "script/ScriptHost.h"
#include "script/ScriptWindows.h"

#include <QCoreApplication>
#include <QPointer>

class CommandRegistry;
class DeviceWindows;
class FilePicker;
class QWidget;
class frmSendScript;

/// The commands of the Test menu that have to do with scripts, and the windows of the road to a running script.
class ScriptCommands : public ScriptWindows
{
    Q_DECLARE_TR_FUNCTIONS(ScriptCommands)

public:
    /// All of it outlives the commands.
    struct Context
    {
        QWidget& window;
        CommandRegistry& commands;
        Preferences& preferences;
        DeviceModule& device;
        TestRun& testRun;
        DeviceWindows& deviceWindows;
        FilePicker& files;
    };
    /// Registers them.
    explicit ScriptCommands(const Context& context);

    ScriptHost& host() { return m_host; }
    FerrolexChecker& checker() { return m_checker; }

    QString openFileName(const QString& title, const QString& filters, const QString& folder) override;
    void refresh() override;
    void showMessages(ScriptChecker& checker) override;
    void showTransfer(ScriptTransfer& transfer) override;
    void unloadTransfer() override;
    void unloadSettings() override;

private:
    void registerCommands();

    Context m_context;
    FerrolexChecker m_checker;
    ScriptHost m_host;
    QPointer<frmSendScript> m_transferForm;
};
