// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/korvalink/DeviceList.h"

#include "controls/korvalink/RuntimeDeviceSource.h"
#include "controls/korvalink/UsbDeviceSource.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>
#include <QSet>
#include <QTimer>

struct DeviceList::Private
{
    struct Listed
    {
        DeviceEntry entry;
        const DeviceSource* source;
    };

    explicit Private(std::vector<std::unique_ptr<DeviceSource>> all)
        : sources(std::move(all))
    {}

    std::vector<Listed> look() const;
    static QSet<QString> keysOf(const std::vector<Listed>& listed);
    void watchFolders();

    std::vector<std::unique_ptr<DeviceSource>> sources;
    std::vector<Listed> listed;
    QSet<QString> known; // while watching: what was there at the last look
    std::unique_ptr<QFileSystemWatcher> watcher;
    QTimer poll;
};

namespace {

std::vector<std::unique_ptr<DeviceSource>> standardSources()
{
    std::vector<std::unique_ptr<DeviceSource>> sources;
    sources.push_back(std::make_unique<UsbDeviceSource>());
    sources.push_back(std::make_unique<RuntimeDeviceSource>());
    return sources;
}

} // namespace

std::vector<DeviceList::Private::Listed> DeviceList::Private::look() const
{
    std::vector<Listed> found;
    for (const auto& source : sources) {
        for (DeviceEntry& entry : source->devices())
            found.push_back({std::move(entry), source.get()});
    }
    return found;
}

QSet<QString> DeviceList::Private::keysOf(const std::vector<Listed>& listed)
{
    // Name and device: an instrument moved to another socket is new, and so is another one on the same socket. The path
    // of an entry in the registry stays when its link is turned to another terminal.
    QSet<QString> keys;
    for (const Listed& device : listed) {
        const QString target = QFileInfo(device.entry.path).canonicalFilePath();
        keys.insert(device.entry.name + QLatin1Char('\n') + (target.isEmpty() ? device.entry.path : target));
    }
    return keys;
}

void DeviceList::Private::watchFolders()
{
    // A folder that does not exist yet is seen to come by its nearest ancestor that does.
    for (const auto& source : sources) {
        const QStringList folders = source->foldersToWatch();
        for (QString folder : folders) {
            while (!QDir(folder).exists()) {
                const QString parent = QDir::cleanPath(folder + QStringLiteral("/.."));
                if (parent == folder)
                    break;
                folder = parent;
            }
            if (!watcher->directories().contains(folder))
                watcher->addPath(folder);
        }
    }
}

DeviceList::DeviceList(QObject* parent)
    : DeviceList(standardSources(), parent)
{}

DeviceList::DeviceList(std::vector<std::unique_ptr<DeviceSource>> sources, QObject* parent)
    : QObject(parent)
    , d(std::make_unique<Private>(std::move(sources)))
{}

DeviceList::~DeviceList() = default;

void DeviceList::refresh()
{
    d->listed = d->look();
}

int DeviceList::count() const
{
    return int(d->listed.size());
}

DeviceEntry DeviceList::device(int index) const
{
    return index >= 0 && index < count() ? d->listed[std::size_t(index)].entry : DeviceEntry();
}

std::unique_ptr<Transport> DeviceList::makeTransport(int index) const
{
    if (index < 0 || index >= count())
        return nullptr;
    const Private::Listed& device = d->listed[std::size_t(index)];
    return device.source->makeTransport(device.entry);
}

void DeviceList::startWatching()
{
    if (isWatching())
        return;
    d->known = Private::keysOf(d->look());
    d->watcher = std::make_unique<QFileSystemWatcher>();
    d->watchFolders();
    const auto look = [this] {
        const std::vector<Private::Listed> present = d->look();
        d->watchFolders();
        QStringList appeared;
        for (const Private::Listed& device : present) {
            if (!Private::keysOf({device}).subtract(d->known).isEmpty())
                appeared += device.entry.name;
        }
        d->known = Private::keysOf(present);
        const QPointer<DeviceList> self(this);
        for (const QString& name : std::as_const(appeared)) {
            if (self)
                Q_EMIT deviceAppeared(name);
        }
    };
    // Looked at from the event loop: a listener may stop the watching, which destroys the watcher.
    connect(d->watcher.get(), &QFileSystemWatcher::directoryChanged, this, look, Qt::QueuedConnection);
    d->poll.callOnTimeout(this, look);
    d->poll.setTimerType(Qt::VeryCoarseTimer);
    d->poll.start(kPollInterval);
}

void DeviceList::stopWatching()
{
    d->poll.stop();
    d->poll.disconnect(this);
    d->watcher.reset();
}

bool DeviceList::isWatching() const
{
    return d->watcher != nullptr;
}
