// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/tarnload/Patience.h"
#include "controls/tarnload/UpgradeErrors.h"
#include "controls/tarnload/file/FirmwareFile.h"

#include <QFile>
#include <QObject>
#include <QString>

#include <cstdint>
#include <functional>

class DeviceList;

/// The firmware loader: opens a firmware file, tells what it is, writes it into an instrument. Everything that can be
/// refused is refused before anything of the instrument is touched, and the instrument runs its old image until the new
/// one is there, whole.
///
/// Lives on the user-interface thread. ProgramDevice runs an event loop; the object must live until it returns.
class UpGrade : public QObject
{
    Q_OBJECT

public:
    /// The list outlives it. Of the folder every key is trusted.
    explicit UpGrade(DeviceList& devices, QString keyFolder = firmware::TrustedKeys::installedFolder(),
                     QObject* parent = nullptr);

    /// True when the file can be opened: a regular file that may be read. One that was open is closed.
    bool OpenUpgradeFile(const QString& strFileName);
    /// True when the open file is whole and its signature fits a trusted key. The arguments are filled in then only.
    bool GetUpgradeFileInfo(std::int32_t& lMajor, std::int32_t& lMinor, std::int32_t& lBuild, QString& strNotes);
    void CloseUpgradeFile();
    /// Writes the open file into the device of that index and returns when the new image has reported in, or with an
    /// error code; the only device type is "KorvaLink". Must not be called while Busy().
    std::int16_t ProgramDevice(const QString& strDeviceType, std::int16_t iDeviceIndex);
    /// The text of an error code, at most 128 characters; false when there is none.
    bool GetUpgradeError(std::int16_t iError, QString& strError) const;
    bool Busy() const { return m_busy; }

    /// Does all of ProgramDevice that changes nothing: file, instrument, model, hardware, version.
    std::int16_t CheckDevice(const QString& strDeviceType, std::int16_t iDeviceIndex);
    /// Why GetUpgradeFileInfo was false.
    tarnload::UpgradeError fileError() const { return m_fileError; }
    /// Of the file that GetUpgradeFileInfo found valid last.
    const firmware::Header& header() const { return m_file.header; }
    /// The device must answer with this serial number, whatever index it has by then; empty stands for the name in the
    /// list.
    void expectSerial(const QString& serial) { m_expected = serial; }
    /// Asked with both versions before an older one is written; without it an older one is refused.
    void askOlder(std::function<bool(const QString& running, const QString& file)> question)
    {
        m_askOlder = std::move(question);
    }
    /// Of the instrument that was checked or programmed last, as it told; empty when it was not reached.
    const QString& answeredSerial() const { return m_answered; }
    void setPatience(const tarnload::Patience& patience) { m_patience = patience; }

Q_SIGNALS:
    /// 0 when there is nothing more to show.
    void ProgressRange(std::int16_t iTotal);
    void ProgressValue(std::int16_t iValue);
    /// The instrument is gone in the middle of an upgrade, and is waited for: to be plugged in again. False when that
    /// is over.
    void LinkLost(bool lost);

private:
    tarnload::UpgradeError readFile();
    std::int16_t run(const QString& strDeviceType, std::int16_t iDeviceIndex, bool program);

    DeviceList& m_devices;
    QString m_keyFolder;
    QFile m_open;
    firmware::FirmwareFile m_file;
    tarnload::UpgradeError m_fileError = tarnload::UpgradeError::NoFile;
    QString m_expected, m_answered;
    std::function<bool(const QString&, const QString&)> m_askOlder;
    tarnload::Patience m_patience;
    bool m_busy = false;
};
