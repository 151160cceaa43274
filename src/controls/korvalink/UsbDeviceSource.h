// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/DeviceList.h"

#include <cstdint>

/// What tells an instrument among the serial ports on USB: its vendor and product number, or its manufacturer and
/// product text.
struct UsbIdentity
{
    std::uint16_t vendor = 0; ///< 0: told by the texts instead
    std::uint16_t product = 0;
    QString manufacturerText; ///< the port's text begins with it, whatever the case
    QString productText;      ///< the same; empty for any

    bool operator==(const UsbIdentity&) const = default;
};

/// A serial port of this computer, as far as an identity asks for it.
struct UsbPort
{
    QString name; ///< ttyACM0
    QString path; ///< /dev/ttyACM0
    QString serialNumber;
    QString manufacturer;
    QString product;
    std::uint16_t vendorId = 0; ///< 0 when the port is not on USB
    std::uint16_t productId = 0;
};

/// Serial ports on USB whose identity stands in a table: the built-in one, then every file
/// marrowick/usb-devices.conf in the standard configuration and data folders. A line of such a file is "VVVV:PPPP" in
/// hexadecimal, or "manufacturer text | product text", whose second half may be missing; "#" begins a comment.
class UsbDeviceSource : public DeviceSource
{
public:
    UsbDeviceSource();

    std::vector<DeviceEntry> devices() const override;
    std::unique_ptr<Transport> makeTransport(const DeviceEntry& device) const override;

    /// Built-in identities and those of the files, as they were when this object was made.
    const std::vector<UsbIdentity>& table() const { return m_table; }

    static const std::vector<UsbIdentity>& builtInTable();
    /// The identities of such a file's text; lines that are none are left out.
    static std::vector<UsbIdentity> parseTable(const QString& text);
    static bool matches(const UsbPort& port, const std::vector<UsbIdentity>& table);
    /// The ports the table knows, by name, as devices; their problem is not looked into.
    static std::vector<DeviceEntry> select(std::vector<UsbPort> ports, const std::vector<UsbIdentity>& table);

private:
    std::vector<UsbIdentity> m_table;
};
