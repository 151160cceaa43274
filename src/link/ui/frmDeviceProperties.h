// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/LinkContext.h"

#include <QDialog>

#include <memory>

class DeviceModule;

namespace Ui {
class frmDeviceProperties;
}

/// What the instrument told of itself: picture, firmware and the texts of frames "l" and "V". It shows the mirror as it
/// is when the window is opened or activated and whenever Update() is called.
class frmDeviceProperties : public QDialog
{
    Q_OBJECT

public:
    explicit frmDeviceProperties(DeviceModule& module, QWidget* parent = nullptr);
    ~frmDeviceProperties() override;

    /// Reads the mirror anew. With no instrument each field shows "Unknown".
    void Update();

    /// The folder in which the terminal program is looked for; default: that of this program.
    void setProgramFolder(const QString& folder) { m_programFolder = folder; }

public Q_SLOTS:
    /// Hands the instrument to the terminal program: the link is closed, and opened again by the next test or the
    /// chooser. Where that program is not installed a message says so and the link stays.
    void cmdConsole_Click();
    void cmdOK_Click();

protected:
    void changeEvent(QEvent* event) override;

private:
    QString consoleProgram() const;
    void releaseLink();

    std::unique_ptr<Ui::frmDeviceProperties> m_ui;
    DeviceModule& m_module;
    LinkContext m_context;
    QString m_programFolder;
};
