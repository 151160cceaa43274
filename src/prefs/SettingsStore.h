// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "prefs/IniText.h"

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

class FileLock;

/// The settings store: application, section and key to text, one INI file per application title (see IniText).
///
/// Every reader asks the store at the moment it needs a value. Two copies of the program may write at once: a save
/// changes its own key only and loses no key of the other. A copy that holds the file's lock for long, because it was
/// stopped, holds nobody up: saves are kept, seen by every reader of this store, and written as soon as a later save or
/// the end of the store gets the lock. A file is replaced whole or not at all. A damaged file is set aside
/// (NAME.damaged-N) and the store starts empty; takeDamage() tells so once.
///
/// Where the user's file has no value, a file of the same name in the system's configuration folders
/// (/etc/xdg/marrowick/, see XDG_CONFIG_DIRS) is asked before the caller's default, so that an administrator can set
/// values for all users. It is never written.
class SettingsStore
{
public:
    /// The folder of the INI files; created on the first save. Default: the folder "marrowick" in the user's
    /// configuration folder, with the system's folders behind it; a folder given here stands alone.
    explicit SettingsStore(QString folder = {});
    ~SettingsStore();
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

    /// The stored text, or the default turned into text when the key is absent (a flag as "True" or "False").
    QString GetSetting(const QString& application, const QString& section, const QString& key,
                       const QVariant& defaultValue) const;
    /// The stored text; nothing when the key is absent.
    std::optional<QString> find(const QString& application, const QString& section, const QString& key) const;
    /// Writes the text form of the value; false when it could not be written (read-only folder, full disk, a file that
    /// cannot be read). What was stored before is then still there.
    bool SaveSetting(const QString& application, const QString& section, const QString& key, const QVariant& value);
    /// While a batch lives, saves are kept in memory, where every reader of this store sees them, and reach the disk
    /// together at its end: one write instead of one per key. Batches may nest; the outermost writes.
    class Batch
    {
    public:
        explicit Batch(SettingsStore& store);
        ~Batch() { commit(); }
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        /// Ends the batch; false when its saves could not be written, which are then lost.
        bool commit();

    private:
        SettingsStore* m_store;
    };
    bool contains(const QString& application, const QString& section, const QString& key) const;

    const QString& folder() const { return m_folder; }
    QString fileOf(const QString& application) const;
    /// A file that could not be understood.
    struct Damage
    {
        QString file;
        QString setAside; ///< where it is now; empty when it could not be moved and stays in use by nobody
        /// What happened, for the user.
        QString sentence() const;
    };
    /// The damage met since the last call; nothing when there was none.
    std::optional<Damage> takeDamage();

    /// The text form of a value: a flag as "True" or "False", numbers as ordinary decimal text.
    static QString textOf(const QVariant& value);

private:
    struct Snapshot
    {
        IniText text;
        qint64 size = -1;
        QDateTime modified;
        bool settled = false; ///< the file was old enough that any later change shows in its time
    };
    enum class Content
    {
        Absent,
        Unreadable,
        Damaged,
        Whole
    };
    struct Change
    {
        QString section;
        QString key;
        QString text;
    };

    const IniText& snapshotOf(const QString& path, bool own) const;
    static Content read(const QString& path, Snapshot& snapshot);
    bool setAside(const QString& path) const;
    bool write(const QString& application, const QList<Change>& changes);
    enum class Locking
    {
        Taken,
        Busy,
        Impossible
    };
    Locking takeLock(FileLock& lock) const;

    QString m_folder;
    QStringList m_systemFolders;
    int m_openBatches = 0;
    QHash<QString, QList<Change>> m_pending;      ///< by application, in the order of saving
    mutable QHash<QString, Snapshot> m_snapshots; ///< by path
    QHash<QString, QList<Change>> m_heldBack;     ///< by application, while another copy holds the lock
    mutable bool m_lockWasBusy = false;           ///< who was kept waiting once waits less
    mutable std::optional<Damage> m_damage;
    mutable QStringList m_reported; ///< damaged files that could not be moved, told once
};
