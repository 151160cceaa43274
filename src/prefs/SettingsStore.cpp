// SPDX-License-Identifier: GPL-3.0-or-later
#include "prefs/SettingsStore.h"

#include "files/FileLock.h"
#include "files/SafeFile.h"
#include "values/Conversions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaType>
#include <QStandardPaths>

#include <utility>

namespace {

using namespace std::chrono_literals;

const QString kFolderName = QStringLiteral("marrowick");
constexpr auto kLockPatience = 5s;
constexpr qint64 kSettledAfterMs = 1000; // coarser than the time stamps of any file system in use
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
        m_damaged = aside;
        return true;
    }
    if (!m_reported.contains(path)) {
        m_reported.append(path);
        m_damaged = path;
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
        const bool locked = lock.tryLock(kLockPatience);
        if ((locked && read(path, snapshot) == Content::Damaged) || (!locked && !lock.isUsable()))
            setAside(path);
    }
    return snapshot.text;
}

std::optional<QString> SettingsStore::find(const QString& application, const QString& section, const QString& key) const
{
    if (const auto pending = m_pending.constFind(application); pending != m_pending.constEnd()) {
        for (auto change = pending->crbegin(); change != pending->crend(); ++change) {
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

bool SettingsStore::write(const QString& application, const QList<Change>& changes)
{
    const QString path = fileOf(application);
    if (!QDir().mkpath(m_folder))
        return false;
    FileLock lock(lockFileOf(path));
    if (!lock.tryLock(kLockPatience))
        return false;

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

QString SettingsStore::takeDamaged()
{
    return std::exchange(m_damaged, QString());
}
