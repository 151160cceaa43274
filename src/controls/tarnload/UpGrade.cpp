// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/tarnload/UpGrade.h"

#include "controls/tarnload/Programmer.h"

#include <QFileInfo>

#include <utility>

using tarnload::UpgradeError;

namespace {

std::int16_t code(UpgradeError error)
{
    return static_cast<std::int16_t>(error);
}

} // namespace

UpGrade::UpGrade(DeviceList& devices, QString keyFolder, QObject* parent)
    : QObject(parent)
    , m_devices(devices)
    , m_keyFolder(std::move(keyFolder))
{}

bool UpGrade::OpenUpgradeFile(const QString& strFileName)
{
    CloseUpgradeFile();
    // A pipe would keep the program waiting, a folder opens and gives nothing.
    if (!QFileInfo(strFileName).isFile())
        return false;
    m_open.setFileName(strFileName);
    return m_open.open(QIODevice::ReadOnly);
}

bool UpGrade::GetUpgradeFileInfo(std::int32_t& lMajor, std::int32_t& lMinor, std::int32_t& lBuild, QString& strNotes)
{
    m_fileError = readFile();
    if (m_fileError != UpgradeError::None)
        return false;
    lMajor = m_file.header.major;
    lMinor = m_file.header.minor;
    lBuild = m_file.header.build;
    strNotes = m_file.header.notes;
    return true;
}

void UpGrade::CloseUpgradeFile()
{
    m_open.close();
}

UpgradeError UpGrade::readFile()
{
    m_file = {};
    if (!m_open.isOpen())
        return UpgradeError::NoFile;
    if (!m_open.seek(0))
        return UpgradeError::Unreadable;
    firmware::ReadResult result = firmware::read(m_open, firmware::TrustedKeys::ofFolder(m_keyFolder));
    if (result.problem == firmware::Problem::None)
        m_file = std::move(result.file);
    return tarnload::errorOf(result.problem);
}

std::int16_t UpGrade::run(const QString& strDeviceType, std::int16_t iDeviceIndex, bool program)
{
    if (m_busy)
        return code(UpgradeError::Busy);
    m_answered.clear();
    // What is written is what was checked: from here on the file itself is not looked at again.
    m_fileError = readFile();
    if (m_fileError != UpgradeError::None)
        return code(m_fileError);
    if (strDeviceType != QLatin1String("KorvaLink"))
        return code(UpgradeError::UnknownClass);
    m_busy = true;
    tarnload::Programmer programmer(m_devices, m_file, m_patience);
    programmer.expectedSerial = m_expected;
    programmer.askOlder = m_askOlder;
    programmer.range = [this](int total) { Q_EMIT ProgressRange(static_cast<std::int16_t>(total)); };
    programmer.value = [this](int value) { Q_EMIT ProgressValue(static_cast<std::int16_t>(value)); };
    programmer.linkLost = [this](bool lost) { Q_EMIT LinkLost(lost); };
    const UpgradeError error = program ? programmer.program(iDeviceIndex) : programmer.check(iDeviceIndex);
    m_answered = programmer.serial();
    m_busy = false;
    if (program)
        Q_EMIT ProgressRange(0);
    return code(error);
}

std::int16_t UpGrade::ProgramDevice(const QString& strDeviceType, std::int16_t iDeviceIndex)
{
    return run(strDeviceType, iDeviceIndex, true);
}

std::int16_t UpGrade::CheckDevice(const QString& strDeviceType, std::int16_t iDeviceIndex)
{
    return run(strDeviceType, iDeviceIndex, false);
}

bool UpGrade::GetUpgradeError(std::int16_t iError, QString& strError) const
{
    strError = tarnload::errorText(iError);
    return !strError.isEmpty();
}
