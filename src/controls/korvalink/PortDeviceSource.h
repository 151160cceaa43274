// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"

/// One terminal device that a user named by its path, whoever sits behind it; its path is its name. It is listed while
/// it exists.
class PortDeviceSource : public DeviceSource
{
public:
    explicit PortDeviceSource(QString path);

    std::vector<DeviceEntry> devices() const override;
    std::unique_ptr<Transport> makeTransport(const DeviceEntry& device) const override;

private:
    QString m_path;
};
