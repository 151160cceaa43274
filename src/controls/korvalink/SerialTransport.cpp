// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/SerialTransport.h"

#include "controls/korvalink/PortAccess.h"

#include <QFileInfo>
#include <QPointer>
#include <QSerialPort>
#include <QSocketNotifier>
#include <QThread>

#include <cerrno>
#include <cstring>
#include <sys/ioctl.h>
#include <unistd.h>

namespace {

constexpr int kChunkSize = 32 * 1024;

// The instrument's USB link has no line speed of its own; a real serial adapter needs one.
constexpr qint32 kBaudRate = QSerialPort::Baud115200;
constexpr int kLockPatience = 10; // times 10 ms

} // namespace

SerialTransport::SerialTransport(QString path, QObject* parent)
    : Transport(parent)
    , m_path(std::move(path))
{}

SerialTransport::~SerialTransport()
{
    SerialTransport::close();
}

Outcome SerialTransport::open()
{
    close();
    // The lock is taken by device name: two links to one device must meet at the same lock.
    const QString device = QFileInfo(m_path).canonicalFilePath();
    if (device.isEmpty())
        return Outcome::failure(tr("The device %1 is not there any more.").arg(m_path));
    if (Outcome access = portAccess(device); !access)
        return access;

    auto port = std::make_unique<QSerialPort>();
    port->setPortName(device);
    port->setBaudRate(kBaudRate);
    port->setDataBits(QSerialPort::Data8);
    port->setParity(QSerialPort::NoParity);
    port->setStopBits(QSerialPort::OneStop);
    port->setFlowControl(QSerialPort::NoFlowControl);
    // A program that lets go of a port frees the port first and its lock file a moment later.
    bool opened = port->open(QIODevice::ReadWrite);
    for (int i = 0; i < kLockPatience && !opened && port->error() == QSerialPort::PermissionError; ++i) {
        QThread::msleep(10);
        opened = port->open(QIODevice::ReadWrite);
    }
    if (!opened) {
        if (port->error() == QSerialPort::PermissionError)
            return Outcome::failure(portInUse(device, m_path));
        return Outcome::failure(tr("The device %1 cannot be opened: %2.").arg(m_path, port->errorString()));
    }
    // The mark of exclusive use stays on a pseudo-terminal when its program is killed, and would shut out the next one;
    // the lock file keeps others away all the same.
    if (device.startsWith(QLatin1String("/dev/pts/")))
        ::ioctl(port->handle(), TIOCNXCL);
    // A pseudo-terminal has no modem lines and refuses; on USB the instrument may wait for it. Either way the port
    // works.
    port->setDataTerminalReady(true);
    port->clearError();

    m_port = std::move(port);
    m_lossReported = false;
    m_chunk.resize(kChunkSize);
    m_writable = std::make_unique<QSocketNotifier>(m_port->handle(), QSocketNotifier::Write);
    m_writable->setEnabled(false);
    connect(m_writable.get(), &QSocketNotifier::activated, this, [this] {
        m_writable->setEnabled(false);
        Q_EMIT bytesWritten();
    });
    connect(m_port.get(), &QSerialPort::readyRead, this, &SerialTransport::readAll);
    connect(m_port.get(), &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
        if (error != QSerialPort::NoError && error != QSerialPort::TimeoutError &&
            error != QSerialPort::UnsupportedOperationError)
            reportLoss(m_port->errorString());
    });
    return Outcome::success();
}

void SerialTransport::close()
{
    if (!m_port)
        return;
    m_writable.reset();
    m_port->disconnect(this);
    m_port->close();
    // close() may have been reached from a signal of the port itself.
    m_port.release()->deleteLater();
}

bool SerialTransport::isOpen() const
{
    return m_port != nullptr;
}

qint64 SerialTransport::write(const char* data, qint64 size)
{
    if (!m_port || m_lossReported || size <= 0)
        return 0;
    ssize_t taken = 0;
    do {
        taken = ::write(m_port->handle(), data, std::size_t(size));
    } while (taken < 0 && errno == EINTR);
    if (taken < 0 && errno != EAGAIN && errno != EWOULDBLOCK) {
        reportLoss(QString::fromLocal8Bit(std::strerror(errno)));
        return 0;
    }
    if (taken < size)
        m_writable->setEnabled(true);
    return qMax<qint64>(taken, 0);
}

void SerialTransport::readAll()
{
    const QPointer<SerialTransport> self(this);
    while (self && m_port) {
        const qint64 count = m_port->read(m_chunk.data(), m_chunk.size());
        if (count <= 0)
            return;
        Q_EMIT received(m_chunk.constData(), count);
    }
}

void SerialTransport::reportLoss(const QString& reason)
{
    if (m_lossReported)
        return;
    m_lossReported = true;
    m_writable->setEnabled(false);
    // From the event loop: listeners close and destroy, which the port's own signal would not survive.
    QMetaObject::invokeMethod(
        this,
        [this, reason, port = QPointer<QSerialPort>(m_port.get())] {
            if (m_port && m_port.get() == port)
                Q_EMIT lost(tr("The link to %1 was lost: %2.").arg(m_path, reason));
        },
        Qt::QueuedConnection);
}
