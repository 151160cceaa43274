// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"

/// Devices that announce themselves in the runtime folder $XDG_RUNTIME_DIR/marrowick/devices: each entry is a symbolic
/// link, named by serial number, to a terminal device. Whoever makes the link does so after the device exists and takes
/// it away again; an entry left behind is skipped, also when its pseudo-terminal's number has been given to somebody
/// else since, which the device's being younger than the link tells.
class RuntimeDeviceSource : public DeviceSource
{
public:
    /// An empty folder stands for the one told above.
    explicit RuntimeDeviceSource(QString folder = {});

    std::vector<DeviceEntry> devices() const override;
    std::unique_ptr<Transport> makeTransport(const DeviceEntry& device) const override;
    QStringList foldersToWatch() const override;

    const QString& folder() const { return m_folder; }

private:
    QString m_folder;
};
