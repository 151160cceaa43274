// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/Transport.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// A device as a source found it.
struct DeviceEntry
{
    QString name;    ///< serial number, or the port's name when it tells none
    QString path;    ///< what the source opens, for example /dev/ttyACM0
    QString problem; ///< why it may not be opened, in a sentence for the user; empty when it may

    bool operator==(const DeviceEntry&) const = default;
};

/// Finds the devices of one kind and makes their transports.
class DeviceSource
{
public:
    virtual ~DeviceSource() = default;

    /// The devices present now, in a stable order.
    virtual std::vector<DeviceEntry> devices() const = 0;
    virtual std::unique_ptr<Transport> makeTransport(const DeviceEntry& device) const = 0;
    /// Folders whose change tells that the devices may have changed; they need not exist.
    virtual QStringList foldersToWatch() const { return {}; }
};

/// The devices present, source by source. The list is a snapshot: it changes in refresh() only.
class DeviceList : public QObject
{
    Q_OBJECT

public:
    /// The instruments of this computer: known USB serial ports (UsbDeviceSource.h), then the entries of the runtime
    /// folder (RuntimeDeviceSource.h).
    explicit DeviceList(QObject* parent = nullptr);
    explicit DeviceList(std::vector<std::unique_ptr<DeviceSource>> sources, QObject* parent = nullptr);
    ~DeviceList() override;

    /// Looks for devices anew.
    void refresh();
    int count() const;
    /// Index from 0 to count() - 1 for these; anything else gives an empty entry and no transport.
    DeviceEntry device(int index) const;
    std::unique_ptr<Transport> makeTransport(int index) const;

    /// Looks for new devices from now on: at once when a watched folder changes, else every kPollInterval milliseconds.
    /// The snapshot stays as it is.
    void startWatching();
    void stopWatching();
    bool isWatching() const;

    static constexpr int kPollInterval = 2000;

Q_SIGNALS:
    /// A device is present that was not when it was last looked for while watching.
    void deviceAppeared(const QString& name);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
