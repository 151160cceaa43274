// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/port/DeviceEntry.h"

#include "files/RuntimeFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <cerrno>
#include <cstring>
#include <unistd.h>
#include <utility>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::DeviceEntry", text);
}

/// Empty when it is no symbolic link.
QByteArray targetOf(const QByteArray& path)
{
    char target[4096];
    const ssize_t length = ::readlink(path.constData(), target, sizeof target);
    return length < 0 ? QByteArray() : QByteArray(target, static_cast<qsizetype>(length));
}

} // namespace

ValueOr<QByteArray> DeviceEntry::runtimeFolder()
{
    const QString folder = files::runtimeFolder();
    if (folder.isEmpty())
        return Outcome::failure(tr("There is no runtime folder in which hosts could find the instrument. Set "
                                   "XDG_RUNTIME_DIR to a folder of your own with mode 0700."));
    return QFile::encodeName(folder + QLatin1String("/marrowick"));
}

DeviceEntry::~DeviceEntry()
{
    release();
}

Outcome DeviceEntry::claim(const QByteArray& serial)
{
    if (serial == m_serial)
        return Outcome::success();
    if (m_folder.isEmpty()) {
        const ValueOr<QByteArray> folder = runtimeFolder();
        if (!folder)
            return Outcome::failure(folder.sentence());
        m_folder = folder.value();
    }
    const QString base = QFile::decodeName(m_folder);
    if (!QDir().mkpath(base + QLatin1String("/locks")) || !QDir().mkpath(base + QLatin1String("/devices")))
        return Outcome::failure(tr("The folder \"%1\" cannot be made.").arg(base));
    auto lock = std::make_unique<FileLock>(QFile::decodeName(lockPath(serial)));
    if (!lock->tryLock() && lock->isUsable())
        return Outcome::failure(
            tr("An instrument with the serial number \"%1\" is already running. Choose another with --serial.")
                .arg(QString::fromLatin1(serial)));
    if (!lock->isHeld())
        return Outcome::failure(
            tr("The serial number \"%1\" cannot be reserved: %2.")
                .arg(QString::fromLatin1(serial), QString::fromLocal8Bit(std::strerror(lock->error()))));
    const QByteArray target = m_target;
    release();
    m_serial = serial;
    m_lock = std::move(lock);
    return target.isEmpty() ? Outcome::success() : publish(target);
}

Outcome DeviceEntry::publish(const QByteArray& devicePath)
{
    // Made aside and moved into place, so that a host never sees a half-made entry and an old one is replaced in one
    // step.
    const QByteArray aside = m_folder + "/locks/." + m_serial + ".link";
    ::unlink(aside.constData());
    if (::symlink(devicePath.constData(), aside.constData()) != 0 ||
        ::rename(aside.constData(), linkPath().constData()) != 0) {
        const QString reason = QString::fromLocal8Bit(std::strerror(errno));
        ::unlink(aside.constData());
        return Outcome::failure(
            tr("The device entry \"%1\" cannot be made: %2.").arg(QFile::decodeName(linkPath()), reason));
    }
    m_target = devicePath;
    return Outcome::success();
}

void DeviceEntry::withdraw()
{
    if (!m_target.isEmpty() && targetOf(linkPath()) == m_target)
        ::unlink(linkPath().constData());
    m_target.clear();
}

void DeviceEntry::release()
{
    withdraw();
    if (m_lock)
        m_lock->removeAndUnlock();
    m_lock.reset();
    m_serial.clear();
}

} // namespace sim
