// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/RuntimeDeviceSource.h"

#include "controls/korvalink/PortAccess.h"
#include "controls/korvalink/SerialTransport.h"
#include "files/RuntimeFolder.h"

#include <QDir>
#include <QFileInfo>

#include <sys/stat.h>
#include <unistd.h>

namespace {

// Some file systems keep times in whole seconds only.
constexpr qint64 kClockGrain = 2;

bool isTerminal(const QString& path)
{
    const QString device = QFileInfo(path).canonicalFilePath();
    // A console or the program's own terminal is no instrument.
    for (const char* kind : {"/dev/pts/", "/dev/ttyS", "/dev/ttyUSB", "/dev/ttyACM"}) {
        if (device.startsWith(QLatin1String(kind)))
            return true;
    }
    return false;
}

bool isLivingLink(const QString& path)
{
    const QByteArray file = QFile::encodeName(path);
    struct stat link
    {};
    struct stat device
    {};
    return ::lstat(file.constData(), &link) == 0 && S_ISLNK(link.st_mode) && ::stat(file.constData(), &device) == 0 &&
           link.st_uid == ::geteuid() && device.st_uid == ::geteuid() && S_ISCHR(device.st_mode) &&
           device.st_ctim.tv_sec <= link.st_mtim.tv_sec + kClockGrain && isTerminal(path);
}

} // namespace

RuntimeDeviceSource::RuntimeDeviceSource(QString folder)
    : m_folder(std::move(folder))
{
    if (!m_folder.isEmpty())
        return;
    const QString runtime = files::runtimeFolder();
    if (!runtime.isEmpty())
        m_folder = runtime + QStringLiteral("/marrowick/devices");
}

std::vector<DeviceEntry> RuntimeDeviceSource::devices() const
{
    std::vector<DeviceEntry> found;
    if (m_folder.isEmpty())
        return found;
    const QDir folder(m_folder);
    const QStringList names = folder.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString& name : names) {
        const QString path = folder.filePath(name);
        if (isLivingLink(path))
            found.push_back({name, path, portAccess(path).sentence()});
    }
    return found;
}

std::unique_ptr<Transport> RuntimeDeviceSource::makeTransport(const DeviceEntry& device) const
{
    return std::make_unique<SerialTransport>(device.path);
}

QStringList RuntimeDeviceSource::foldersToWatch() const
{
    return m_folder.isEmpty() ? QStringList() : QStringList(m_folder);
}
