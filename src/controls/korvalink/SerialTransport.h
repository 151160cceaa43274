// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/korvalink/Transport.h"

#include <QByteArray>

#include <memory>

class QSerialPort;
class QSocketNotifier;

/// An instrument on a terminal device: a serial port over USB or a pseudo-terminal. Raw bytes, 8N1, no flow control,
/// opened for this program alone (a lock file keeps a second copy away, the kernel everyone else).
///
/// Nothing is buffered on the way out: write() takes what the system takes. A device that is gone is reported once by
/// lost(), from the event loop.
class SerialTransport : public Transport
{
    Q_OBJECT

public:
    /// Path of the device, for example /dev/ttyACM0 or a symbolic link to a pseudo-terminal.
    explicit SerialTransport(QString path, QObject* parent = nullptr);
    ~SerialTransport() override;

    Outcome open() override;
    void close() override;
    bool isOpen() const override;
    qint64 write(const char* data, qint64 size) override;

    const QString& path() const { return m_path; }

private:
    void readAll();
    void reportLoss(const QString& reason);

    QString m_path;
    std::unique_ptr<QSerialPort> m_port;
    std::unique_ptr<QSocketNotifier> m_writable;
    QByteArray m_chunk; // what is read in one go, kept to spare an allocation per read
    bool m_lossReported = false;
};
