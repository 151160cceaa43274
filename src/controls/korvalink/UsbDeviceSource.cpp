// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/UsbDeviceSource.h"

#include "controls/korvalink/PortAccess.h"
#include "controls/korvalink/SerialTransport.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSerialPortInfo>
#include <QStandardPaths>

#include <algorithm>

namespace {

constexpr qint64 kLongestTable = 64 * 1024;

std::optional<UsbIdentity> identityOf(const QString& line)
{
    static const QRegularExpression numbers(QStringLiteral("^([0-9A-Fa-f]{4}):([0-9A-Fa-f]{4})$"));
    if (const QRegularExpressionMatch match = numbers.match(line); match.hasMatch()) {
        UsbIdentity identity;
        identity.vendor = match.captured(1).toUShort(nullptr, 16);
        identity.product = match.captured(2).toUShort(nullptr, 16);
        if (identity.vendor == 0)
            return {};
        return identity;
    }
    UsbIdentity identity;
    identity.manufacturerText = line.section(QLatin1Char('|'), 0, 0).trimmed();
    identity.productText = line.section(QLatin1Char('|'), 1).trimmed();
    // An empty manufacturer would take every port of the computer for an instrument.
    if (identity.manufacturerText.isEmpty())
        return {};
    return identity;
}

// Asking for all ports takes milliseconds, a dozen and more times at every start; a look at the names of terminal
// devices tells in microseconds that there is none on USB.
bool mayHaveUsbPorts()
{
    const QDir terminals(QStringLiteral("/sys/class/tty"));
    if (!terminals.exists())
        return true;
    const QStringList names = terminals.entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Unsorted);
    return std::any_of(names.begin(), names.end(), [&terminals](const QString& name) {
        return QFile::symLinkTarget(terminals.filePath(name)).contains(QLatin1String("/usb"));
    });
}

} // namespace

UsbDeviceSource::UsbDeviceSource()
    : m_table(builtInTable())
{
    const QString name = QStringLiteral("marrowick/usb-devices.conf");
    const QStringList files = QStandardPaths::locateAll(QStandardPaths::GenericConfigLocation, name) +
                              QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, name);
    for (const QString& fileName : files) {
        QFile file(fileName);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const std::vector<UsbIdentity> more = parseTable(QString::fromUtf8(file.read(kLongestTable)));
        m_table.insert(m_table.end(), more.begin(), more.end());
    }
}

const std::vector<UsbIdentity>& UsbDeviceSource::builtInTable()
{
    static const std::vector<UsbIdentity> table = {
        {0, 0, QStringLiteral("Marrowick"), {}},
    };
    return table;
}

std::vector<UsbIdentity> UsbDeviceSource::parseTable(const QString& text)
{
    std::vector<UsbIdentity> table;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QString content = line.section(QLatin1Char('#'), 0, 0).trimmed();
        if (const std::optional<UsbIdentity> identity = identityOf(content))
            table.push_back(*identity);
    }
    return table;
}

bool UsbDeviceSource::matches(const UsbPort& port, const std::vector<UsbIdentity>& table)
{
    if (port.vendorId == 0)
        return false;
    return std::any_of(table.begin(), table.end(), [&port](const UsbIdentity& identity) {
        if (identity.vendor != 0)
            return port.vendorId == identity.vendor && port.productId == identity.product;
        return port.manufacturer.startsWith(identity.manufacturerText, Qt::CaseInsensitive) &&
               port.product.startsWith(identity.productText, Qt::CaseInsensitive);
    });
}

std::vector<DeviceEntry> UsbDeviceSource::select(std::vector<UsbPort> ports, const std::vector<UsbIdentity>& table)
{
    std::erase_if(ports, [&table](const UsbPort& port) { return !matches(port, table); });
    std::sort(ports.begin(), ports.end(), [](const UsbPort& a, const UsbPort& b) { return a.name < b.name; });
    QHash<QString, int> bearers;
    for (const UsbPort& port : ports)
        ++bearers[port.serialNumber];

    std::vector<DeviceEntry> devices;
    for (const UsbPort& port : ports) {
        // A serial number that two ports bear tells neither from the other; the port's name then stands with it.
        QString name = port.serialNumber.isEmpty() ? port.name : port.serialNumber;
        if (!port.serialNumber.isEmpty() && bearers.value(port.serialNumber) > 1)
            name += QStringLiteral(" (%1)").arg(port.name);
        devices.push_back({name, port.path, {}});
    }
    return devices;
}

std::vector<DeviceEntry> UsbDeviceSource::devices() const
{
    std::vector<UsbPort> ports;
    if (!mayHaveUsbPorts())
        return {};
    const QList<QSerialPortInfo> all = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& info : all) {
        if (!info.hasVendorIdentifier())
            continue;
        ports.push_back({info.portName(), info.systemLocation(), info.serialNumber().trimmed(),
                         info.manufacturer().trimmed(), info.description().trimmed(), info.vendorIdentifier(),
                         info.productIdentifier()});
    }
    std::vector<DeviceEntry> found = select(std::move(ports), m_table);
    for (DeviceEntry& device : found)
        device.problem = portAccess(device.path).sentence();
    return found;
}

std::unique_ptr<Transport> UsbDeviceSource::makeTransport(const DeviceEntry& device) const
{
    return std::make_unique<SerialTransport>(device.path);
}
