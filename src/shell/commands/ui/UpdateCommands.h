// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "shell/commands/ui/CommandContext.h"
#include "update/web/ui/UpdateHost.h"

#include <QCoreApplication>

#include <functional>

class MainWindowPort;

/// What is known of firmware. Without a wizard the windows offer none.
struct FirmwareWindows
{
    std::function<void(QWidget& owner)> showWizard = {};
    /// What names of firmware files for a model begin with, from the text that the instrument reports; empty for a
    /// model that is not known.
    std::function<QString(const QString& strDeviceModel)> listingTag = {};
};

/// Check for Updates, and what its windows need of the program.
class UpdateCommands : public UpdateHost, private FirmwareSide
{
    Q_DECLARE_TR_FUNCTIONS(UpdateCommands)

public:
    /// Registers the command. All of it outlives the object.
    UpdateCommands(const CommandContext& context, MainWindowPort& window, FirmwareWindows firmware = {});

    /// The chooser, modally.
    void mnuHelpUpdate_Click();

    const FirmwareSide& firmware() const override { return *this; }
    bool hasFirmwareWizard() const override { return bool(m_firmware.showWizard); }
    void showFirmwareWizard(QWidget& owner) override { m_firmware.showWizard(owner); }
    bool closeAllDocuments() override;
    QString openFileName(const QString& title, const QString& filters, const QString& folder,
                         const QString& name) override;
    Outcome mayStart(const QString& file) override;
    Outcome start(const QString& file) override;
    void endProgram() override;

private:
    QString listingTag() const override;
    double firmwareMajor() const override;
    double firmwareMinor() const override;
    bool deviceConnected() const override;

    const CommandContext& m_context;
    MainWindowPort& m_window;
    FirmwareWindows m_firmware;
};
