// SPDX-License-Identifier: GPL-3.0-or-later
#include "update/FirmwareUpgrade.h"

#include "controls/korvalink/KorvaLink.h"
#include "files/FileNames.h"
#include "link/DeviceModule.h"
#include "prefs/Preferences.h"
#include "program/UserMessages.h"

#include <QCoreApplication>
#include <QPointer>

namespace {

constexpr int kNameSize = 128;
const QString kDeviceClass = QStringLiteral("KorvaLink");
const QString kFileWithoutAName = QStringLiteral("Upgrade.mfw");

} // namespace

FirmwareUpgrade::FirmwareUpgrade(DeviceModule& module, DeviceList& devices, const QString& keyFolder)
    : m_module(module)
    , m_loader(devices, keyFolder)
{
    m_loader.askOlder([this](const QString& running, const QString& file) { return olderWanted(running, file); });
}

// The file
// -------------------------------------------------------------------------------------------------------------

QString FirmwareUpgrade::storedFile() const
{
    return m_module.context().preferences.valueOr(options::kFirmwareUpgradeFile,
                                                  QCoreApplication::applicationDirPath());
}

void FirmwareUpgrade::storeFile(const QString& fileName)
{
    m_module.context().preferences.setValue(options::kFirmwareUpgradeFile, fileName);
}

QString FirmwareUpgrade::browseFolder() const
{
    const Preferences& preferences = m_module.context().preferences;
    const QString updates = preferences.valueOr(options::kUpdateFiles.option, QCoreApplication::applicationDirPath());
    const QString last = preferences.valueOr(options::kFirmwareUpgradeFile, updates);
    return last.contains(QLatin1Char('.')) ? files::PathOfFile(last) : last;
}

FirmwareUpgrade::Verdict FirmwareUpgrade::verdict()
{
    std::int32_t major = 0, minor = 0, build = 0;
    QString notes;
    if (!m_loader.GetUpgradeFileInfo(major, minor, build, notes))
        return {false, {}, tr("Not valid upgrade file")};
    return {true, m_loader.header().versionText(), notes};
}

std::optional<FirmwareUpgrade::Verdict> FirmwareUpgrade::CheckUpgradeFile(QString& fileName)
{
    if (m_loader.Busy())
        return {};
    if (fileName.isEmpty())
        fileName = kFileWithoutAName;
    if (!m_loader.OpenUpgradeFile(fileName))
        return Verdict{false, {}, tr("File not found")};
    const Verdict found = verdict();
    m_loader.CloseUpgradeFile();
    return found;
}

// The instrument
// -------------------------------------------------------------------------------------------------------

void FirmwareUpgrade::takeAway()
{
    KorvaLink& link = m_module.context().device;
    if (m_taken.isEmpty() && m_opened.isEmpty())
        m_taken = link.ConnectedName();
    link.Close();
}

void FirmwareUpgrade::wait(int rounds, int milliseconds)
{
    const QPointer<FirmwareUpgrade> self(this);
    KorvaLink& link = m_module.context().device;
    for (int round = 0; round < rounds && self; ++round) {
        link.Wait(milliseconds);
        QCoreApplication::processEvents();
    }
}

QStringList FirmwareUpgrade::findInstruments()
{
    const QPointer<FirmwareUpgrade> self(this);
    KorvaLink& link = m_module.context().device;
    QStringList serials;
    const int count = link.DeviceCount();
    // One beyond the last is asked for as well: it has no name and adds nothing.
    for (int index = 0; count > 0 && index <= count; ++index) {
        QString name;
        if (link.GetDeviceName(index, name, kNameSize))
            serials.append(name);
        QCoreApplication::processEvents();
        if (!self)
            break;
    }
    return serials;
}

int FirmwareUpgrade::indexOf(const QString& serial) const
{
    KorvaLink& link = m_module.context().device;
    const int count = link.DeviceCount();
    for (int index = 0; index < count; ++index) {
        QString name;
        if (link.GetDeviceName(index, name, kNameSize) && name == serial)
            return index;
    }
    return -1;
}

bool FirmwareUpgrade::open(const QString& serial)
{
    KorvaLink& link = m_module.context().device;
    const int index = serial.isEmpty() ? -1 : indexOf(serial);
    if (index < 0)
        return false;
    m_opened = serial;
    link.Configure(kDeviceClass, 1, 0, index);
    static_cast<void>(link.Open());
    return link.Connected();
}

std::int16_t FirmwareUpgrade::openIndex() const
{
    const QString name = m_module.context().device.ConnectedName();
    return static_cast<std::int16_t>(name.isEmpty() ? -1 : indexOf(name));
}

bool FirmwareUpgrade::olderWanted(const QString& running, const QString& file)
{
    const QPointer<FirmwareUpgrade> self(this);
    const int reply = m_module.context().messages.message(
        tr("The instrument runs %1. The file holds the older %2.\nInstall the older version?").arg(running, file),
        UserMessages::YesNo | UserMessages::Question, tr("Firmware Upgrade"));
    return self && reply == UserMessages::ReplyYes;
}

bool FirmwareUpgrade::RunUpgrade(const QString& fileName, std::int16_t iDeviceIndex)
{
    if (m_loader.Busy() || !m_loader.OpenUpgradeFile(fileName))
        return false;
    // A file that has turned invalid is shown as such and handed to the loader all the same, which refuses it.
    const Verdict found = verdict();
    Q_EMIT fileJudged(found.version, found.information);
    // An index is no identity: devices may have come and gone since it was told.
    m_loader.expectSerial(m_opened);
    const std::int16_t error = m_loader.ProgramDevice(kDeviceClass, iDeviceIndex);
    QString text;
    if (error != 0 && m_loader.GetUpgradeError(error, text))
        m_module.context().messages.message(text, UserMessages::OkOnly | UserMessages::Exclamation, tr(kErrorTitle));
    m_loader.CloseUpgradeFile();
    return error == 0;
}

void FirmwareUpgrade::giveBack()
{
    KorvaLink& link = m_module.context().device;
    const QString wanted = m_taken.isEmpty() ? m_opened : m_taken;
    const bool hadOne = !m_taken.isEmpty();
    m_taken.clear();
    m_opened.clear();
    if (wanted.isEmpty())
        return;
    if (link.ConnectedName() == wanted) {
        // Of what it has told so far, everything but its version was passed over.
        m_module.DeviceEnquire();
        return;
    }
    link.Close();
    const int index = indexOf(wanted);
    if (index >= 0) {
        link.Configure(kDeviceClass, 1, 0, index);
        if (link.Open())
            return;
    }
    if (hadOne)
        Q_EMIT link.Disconnected();
}
