// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/PortDeviceSource.h"

#include "controls/korvalink/PortAccess.h"
#include "controls/korvalink/SerialTransport.h"

#include <QFileInfo>

#include <utility>

PortDeviceSource::PortDeviceSource(QString path)
    : m_path(std::move(path))
{}

std::vector<DeviceEntry> PortDeviceSource::devices() const
{
    if (!QFileInfo::exists(m_path))
        return {};
    return {{m_path, m_path, portAccess(m_path).sentence()}};
}

std::unique_ptr<Transport> PortDeviceSource::makeTransport(const DeviceEntry& device) const
{
    return std::make_unique<SerialTransport>(device.path);
}
