// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include <functional>
#include <memory>

class KorvaLink;
class UserMessages;
struct InstrumentMirror;

namespace Ui {
class frmAbout;
}

/// Version of this program and of the connected instrument.
class frmAbout : public QDialog
{
    Q_OBJECT

public:
    frmAbout(const KorvaLink& device, const InstrumentMirror& mirror, UserMessages& messages,
             QWidget* parent = nullptr);
    ~frmAbout() override;

    /// Reads link and mirror anew; runs by itself when the instrument is connected or lost.
    void Update();

    /// Where the text of cmdSysInfo comes from; an empty text means that there is none to be had. Default:
    /// systemInformation().
    void setInformationSource(std::function<QString()> source) { m_information = std::move(source); }

public Q_SLOTS:
    void cmdSysInfo_Click();
    void cmdUpgrade_Click();

Q_SIGNALS:
    /// cmdUpgrade: the update window is wanted.
    void upgradeWanted();

private:
    std::unique_ptr<Ui::frmAbout> m_ui;
    const KorvaLink& m_device;
    const InstrumentMirror& m_mirror;
    UserMessages& m_messages;
    std::function<QString()> m_information;
};
