// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/SettingsStore.h"

#include "files/FileLock.h"
#include "files/SafeFile.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaType>
#include <QStandardPaths>

#include <utility>

namespace {

using namespace std::chrono_literals;

const QString kFolderName = QStringLiteral("marrowick");
constexpr auto kLockPatience = 1000ms;    // a save takes a few of them
constexpr auto kLockPatienceAgain = 20ms; // with a copy that has used it up
constexpr qint64 kSettledAfterMs = 1000;  // coarser than the time stamps of any file system in use
constexpr qint64 kLargestFile = 16 << 20;

/// A title is free text; a file name is not.
QString fileNameOf(const QString& application)
{
    QString name;
    for (const QChar c : application) {
        const bool plain =
            c.isLetterOrNumber() || c == u' ' || c == u'-' || c == u'_' || (c == u'.' && !name.isEmpty());
        name += plain ? QString(c) : QStringLiteral("%%1").arg(static_cast<uint>(c.unicode()), 4, 16, QLatin1Char('0'));
    }
    return name + QStringLiteral(".ini");
}

QString lockFileOf(const QString& path)
{
    return path + QStringLiteral(".lock");
}

} // namespace

SettingsStore::SettingsStore(QString folder)
    : m_folder(std::move(folder))
{
    if (!m_folder.isEmpty())
        return;
    const QStringList roots = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    m_folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + kFolderName;
    for (const QString& root : roots) {
        const QString systemFolder = root + u'/' + kFolderName;
        if (systemFolder != m_folder)
            m_systemFolders.append(systemFolder);
    }
}

QString SettingsStore::fileOf(const QString& application) const
{
    return m_folder + u'/' + fileNameOf(application);
}

SettingsStore::~SettingsStore()
{
    m_lockWasBusy = false;
    const auto heldBack = std::exchange(m_heldBack, {});
    for (auto changes = heldBack.cbegin(); changes != heldBack.cend(); ++changes)
        write(changes.key(), changes.value());
}

QString SettingsStore::textOf(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return values::booleanText(value.toBool());
    case QMetaType::Double:
        return values::decimalText(value.toDouble());
    case QMetaType::Float:
        return values::decimalText(value.toFloat());
    default:
        return value.toString();
    }
}

SettingsStore::Content SettingsStore::read(const QString& path, Snapshot& snapshot)
{
    snapshot = Snapshot();
    const QFileInfo before(path);
    if (!before.exists())
        return Content::Absent;
    QFile file(path);
    if (!before.isFile() || before.size() > kLargestFile || !file.open(QIODevice::ReadOnly))
        return before.isFile() && before.size() > kLargestFile ? Content::Damaged : Content::Unreadable;
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Content::Unreadable;
    std::optional<IniText> text = IniText::parse(bytes);
    if (!text)
        return Content::Damaged;
    snapshot.text = std::move(*text);
    snapshot.size = before.size();
    snapshot.modified = before.lastModified();
    // A file changed a moment ago may change again within the same tick of its time stamp: it is read anew next time.
    const qint64 age = snapshot.modified.msecsTo(QDateTime::currentDateTime());
    snapshot.settled = age > kSettledAfterMs && snapshot.size == bytes.size();
    return Content::Whole;
}

bool SettingsStore::setAside(const QString& path) const
{
    for (int number = 1; number < 1000; ++number) {
        const QString aside = path + QStringLiteral(".damaged-%1").arg(number);
        if (QFile::exists(aside))
            continue;
        if (!QFile::rename(path, aside))
            break;
        m_damage = Damage{path, aside};
        return true;
    }
    if (!m_reported.contains(path)) {
        m_reported.append(path);
        m_damage = Damage{path, {}};
    }
    return false;
}

const IniText& SettingsStore::snapshotOf(const QString& path, bool own) const
{
    Snapshot& snapshot = m_snapshots[path];
    if (snapshot.settled) {
        const QFileInfo info(path);
        if (info.exists() && info.size() == snapshot.size && info.lastModified() == snapshot.modified)
            return snapshot.text;
    }
    if (read(path, snapshot) == Content::Damaged && own) {
        // Under the lock it is sure that no other copy of the program has set it aside and written a new one meanwhile.
        FileLock lock(lockFileOf(path));
        const Locking locking = takeLock(lock);
        if (locking == Locking::Impossible || (locking == Locking::Taken && read(path, snapshot) == Content::Damaged))
            setAside(path);
    }
    return snapshot.text;
}

std::optional<QString> SettingsStore::find(const QString& application, const QString& section, const QString& key) const
{
    for (const auto* const waiting : {&m_pending, &m_heldBack}) {
        const QList<Change> changes = waiting->value(application);
        for (auto change = changes.crbegin(); change != changes.crend(); ++change) {
            if (change->section == section && change->key == key)
                return change->text;
        }
    }
    if (std::optional<QString> text = snapshotOf(fileOf(application), true).value(section, key))
        return text;
    for (const QString& folder : m_systemFolders) {
        if (std::optional<QString> text =
                snapshotOf(folder + u'/' + fileNameOf(application), false).value(section, key))
            return text;
    }
    return {};
}

QString SettingsStore::GetSetting(const QString& application, const QString& section, const QString& key,
                                  const QVariant& defaultValue) const
{
    if (std::optional<QString> text = find(application, section, key))
        return *text;
    return textOf(defaultValue);
}

bool SettingsStore::contains(const QString& application, const QString& section, const QString& key) const
{
    return find(application, section, key).has_value();
}

bool SettingsStore::SaveSetting(const QString& application, const QString& section, const QString& key,
                                const QVariant& value)
{
    const Change change{section, key, textOf(value)};
    if (m_openBatches == 0)
        return write(application, {change});
    m_pending[application].append(change);
    return true;
}

SettingsStore::Batch::Batch(SettingsStore& store)
    : m_store(&store)
{
    ++m_store->m_openBatches;
}

bool SettingsStore::Batch::commit()
{
    SettingsStore* const store = std::exchange(m_store, nullptr);
    if (store == nullptr || --store->m_openBatches > 0)
        return true;
    bool written = true;
    const auto pending = std::exchange(store->m_pending, {});
    for (auto changes = pending.cbegin(); changes != pending.cend(); ++changes)
        written = store->write(changes.key(), changes.value()) && written;
    return written;
}

SettingsStore::Locking SettingsStore::takeLock(FileLock& lock) const
{
    const bool taken = lock.tryLock(m_lockWasBusy ? kLockPatienceAgain : kLockPatience);
    m_lockWasBusy = !taken && lock.isUsable();
    return taken ? Locking::Taken : m_lockWasBusy ? Locking::Busy : Locking::Impossible;
}

bool SettingsStore::write(const QString& application, const QList<Change>& newChanges)
{
    const QString path = fileOf(application);
    if (!QDir().mkpath(m_folder))
        return false;
    FileLock lock(lockFileOf(path));
    const Locking locking = takeLock(lock);
    if (locking == Locking::Busy)
        m_heldBack[application] += newChanges;
    if (locking != Locking::Taken)
        return locking == Locking::Busy;
    const QList<Change> changes = m_heldBack.take(application) + newChanges;

    Snapshot snapshot;
    const Content content = read(path, snapshot);
    if (content == Content::Unreadable || (content == Content::Damaged && !setAside(path)))
        return false;
    bool differs = false;
    for (const Change& change : changes) {
        if (snapshot.text.value(change.section, change.key) == change.text)
            continue;
        snapshot.text.setValue(change.section, change.key, change.text);
        differs = true;
    }
    if (!differs)
        return true;
    if (!files::writeFile(path, snapshot.text.bytes()))
        return false;
    m_snapshots.remove(path);
    return true;
}

std::optional<SettingsStore::Damage> SettingsStore::takeDamage()
{
    return std::exchange(m_damage, std::nullopt);
}

QString SettingsStore::Damage::sentence() const
{
    if (setAside.isEmpty())
        return QCoreApplication::translate("SettingsStore",
                                           "The settings in %1 could not be read, and the file could not be set aside. "
                                           "The program works with its defaults and stores no change.")
            .arg(file);
    return QCoreApplication::translate("SettingsStore", "The settings could not be read and were set aside as %1. The "
                                                        "program starts with its defaults.")
        .arg(setAside);
}
