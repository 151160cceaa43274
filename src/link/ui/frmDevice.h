// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

class KorvaLink;
class Preferences;
class QListWidgetItem;
class UserMessages;

namespace Ui {
class frmDevice;
}

/// The chooser: lists the instruments by serial number and connects to one. A device that is there but may not be
/// opened is listed with a warning, and the line below the list says which group or rule is missing.
///
/// The list is filled when the window is shown. A connection made through it may destroy the window from within the
/// link's event; so may any event while the list is filled.
class frmDevice : public QDialog
{
    Q_OBJECT

public:
    frmDevice(KorvaLink& device, Preferences& preferences, UserMessages& messages, QWidget* parent = nullptr);
    ~frmDevice() override;

    /// Lets the link settle, then fills the list anew; the selected name stays selected. Runs events.
    void ScanBus();

public Q_SLOTS:
    void cmdRefresh_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdBrowseTo_Click();
    void lstDevice_DblClick();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fillList();
    void showSelection();

    std::unique_ptr<Ui::frmDevice> m_ui;
    KorvaLink& m_device;
    Preferences& m_preferences;
    UserMessages& m_messages;
    bool m_scanning = false;
    bool m_scanned = false;
};
