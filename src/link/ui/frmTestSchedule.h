// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <memory>

class KorvaLink;
class Preferences;

namespace Ui {
class frmTestSchedule;
}

/// Switches the link's test mode. A click takes effect and is saved at once; cmdOK only closes.
class frmTestSchedule : public QDialog
{
    Q_OBJECT

public:
    frmTestSchedule(KorvaLink& device, Preferences& preferences, QWidget* parent = nullptr);
    ~frmTestSchedule() override;

public Q_SLOTS:
    void chkTestSchedule_Click();
    void cmdOK_Click();

private:
    std::unique_ptr<Ui::frmTestSchedule> m_ui;
    KorvaLink& m_device;
    Preferences& m_preferences;
};
