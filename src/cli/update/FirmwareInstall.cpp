// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/update/FirmwareInstall.h"

#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/PortDeviceSource.h"
#include "controls/korvalink/RuntimeDeviceSource.h"
#include "controls/korvalink/UsbDeviceSource.h"
#include "controls/tarnload/UpGrade.h"

#include <QCoreApplication>
#include <QJsonObject>

#include <cstdint>
#include <utility>
#include <vector>

namespace cli {
namespace {

using namespace Qt::StringLiterals;
using tarnload::UpgradeError;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

bool isPath(const QString& device)
{
    return device.contains(u'/');
}

/// The index of the device of that name, or of the only one.
ValueOr<int> findDevice(DeviceList& devices, const QString& serial)
{
    devices.refresh();
    QStringList names;
    if (isPath(serial) && devices.device(0).name != serial)
        return Outcome::failure(tr("There is no terminal device %1.").arg(serial));
    for (int index = 0; index < devices.count(); ++index) {
        names.append(devices.device(index).name);
        if (names.constLast() == serial)
            return index;
    }
    if (names.isEmpty())
        return Outcome::failure(tr("No instrument was found."));
    if (serial.isEmpty() && names.size() == 1)
        return 0;
    if (serial.isEmpty())
        return Outcome::failure(
            tr("There are several instruments; choose one with --device: %1.").arg(names.join(u", "_s)));
    return Outcome::failure(tr("There is no instrument %1; found: %2.").arg(serial, names.join(u", "_s)));
}

} // namespace

ExitCode exitCodeOf(UpgradeError error)
{
    switch (error) {
    case UpgradeError::None:
        return ExitCode::Done;
    case UpgradeError::NoFile:
    case UpgradeError::Unreadable:
        return ExitCode::FileError;
    case UpgradeError::NoDevice:
    case UpgradeError::NoAnswer:
    case UpgradeError::OtherInstrument:
        return ExitCode::NoInstrument;
    case UpgradeError::Interrupted:
    case UpgradeError::NotTaken:
    case UpgradeError::NotBack:
        return ExitCode::Lost;
    default:
        return ExitCode::Refused;
    }
}

std::unique_ptr<DeviceList> devicesFor(const QString& device)
{
    if (!isPath(device))
        return std::make_unique<DeviceList>();
    std::vector<std::unique_ptr<DeviceSource>> sources;
    sources.push_back(std::make_unique<PortDeviceSource>(device));
    // An instrument that restarts may come back at another port.
    sources.push_back(std::make_unique<UsbDeviceSource>());
    sources.push_back(std::make_unique<RuntimeDeviceSource>());
    return std::make_unique<DeviceList>(std::move(sources));
}

ExitCode installFirmware(DeviceList& devices, const FirmwareInstall& wanted, Console& console)
{
    UpGrade loader(devices, wanted.keyFolder);
    loader.setPatience(wanted.patience);
    std::int32_t major = 0, minor = 0, build = 0;
    QString notes;
    if (!loader.OpenUpgradeFile(wanted.file))
        return console.failed(ExitCode::FileError, tr("%1 cannot be opened.").arg(wanted.file));
    if (!loader.GetUpgradeFileInfo(major, minor, build, notes))
        return console.failed(exitCodeOf(loader.fileError()),
                              wanted.file + u": "_s + tarnload::errorText(loader.fileError()));
    const QString version = loader.header().versionText();
    const ValueOr<int> index = findDevice(devices, wanted.device);
    if (!index)
        return console.failed(ExitCode::NoInstrument, index.sentence());
    const QString name = devices.device(index.value()).name;
    loader.expectSerial(name);
    if (wanted.allowOlder)
        loader.askOlder([](const QString&, const QString&) { return true; });
    int blocks = 0;
    QObject::connect(&loader, &UpGrade::ProgressRange, &loader, [&blocks](std::int16_t total) { blocks = total; });
    QObject::connect(&loader, &UpGrade::ProgressValue, &loader, [&](std::int16_t value) {
        if (!wanted.quiet)
            console.progress(tr("%1: block %2 of %3; do not unplug the instrument").arg(name).arg(value).arg(blocks));
    });
    QObject::connect(&loader, &UpGrade::LinkLost, &loader, [&](bool lost) {
        if (lost && !wanted.quiet)
            console.progress(
                tr("%1: the link is lost; plug the instrument in again, it goes on where it stopped").arg(name));
    });
    const QString deviceType = u"KorvaLink"_s;
    const auto place = static_cast<std::int16_t>(index.value());
    const auto error = static_cast<UpgradeError>(wanted.dryRun ? loader.CheckDevice(deviceType, place)
                                                               : loader.ProgramDevice(deviceType, place));
    console.endProgress();
    if (error != UpgradeError::None)
        return console.failed(exitCodeOf(error), name + u": "_s + tarnload::errorText(error));
    const QString& serial = loader.answeredSerial();
    if (wanted.json)
        console.result(QJsonObject{{u"serial"_s, serial}, {u"version"_s, version}, {u"installed"_s, !wanted.dryRun}});
    else
        console.result((wanted.dryRun ? tr("%1 would take %2.") : tr("%1 runs %2.")).arg(serial, version));
    return ExitCode::Done;
}

} // namespace cli
