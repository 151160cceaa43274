// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "script/FerrolexChecker.h"
#include "script/ScriptHost.h"
#include "script/ScriptWindows.h"

#include <QCoreApplication>
#include <QPointer>

class frmSendScript;
struct CommandContext;

/// The commands of the Test menu that have to do with scripts, and the windows of the road to a running script.
class ScriptCommands : public ScriptWindows
{
    Q_DECLARE_TR_FUNCTIONS(ScriptCommands)

public:
    /// Registers them. Both outlive the object.
    ScriptCommands(const CommandContext& context, DeviceModule& device);

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

    const CommandContext& m_context;
    FerrolexChecker m_checker;
    ScriptHost m_host;
    QPointer<frmSendScript> m_transferForm;
};
