// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QTimer>

class Preferences;

/// The files last opened or saved, newest first, as the File menu shows them; kept in section "QuickOpen" under
/// "File0", "File1" and so on.
///
/// Many files may be opened at once: they are written together, half a second after the first of them, or with the end
/// of the list. Only a program that is killed within that time forgets them.
class QuickFileList
{
public:
    static constexpr int kCapacity = 9;

    /// The preferences outlive the list.
    explicit QuickFileList(Preferences& preferences);
    ~QuickFileList();
    QuickFileList(const QuickFileList&) = delete;
    QuickFileList& operator=(const QuickFileList&) = delete;

    /// Puts the file on top, once whatever the case of its letters, and drops what no longer fits. An empty name reads
    /// the saved entries. What other copies of the program have opened meanwhile stays.
    void UpdateQuickFileList(const QString& strFilePathName);
    /// Writes what is not written yet.
    void store();
    /// Entries to show, newest first; none of them is empty.
    const QStringList& entries() const { return m_entries; }

private:
    QStringList saved() const;
    void merge();

    Preferences& m_preferences;
    QStringList m_entries;
    QStringList m_unwritten; ///< oldest first
    QTimer m_delay;
};
