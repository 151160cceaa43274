// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

class Preferences;

/// The files last opened or saved, newest first, as the File menu shows them; kept in section "QuickOpen" under
/// "File0", "File1" and so on.
class QuickFileList
{
public:
    static constexpr int kCapacity = 9;

    /// The preferences outlive the list.
    explicit QuickFileList(Preferences& preferences)
        : m_preferences(preferences)
    {}

    /// Puts the file on top, once whatever the case of its letters, drops what no longer fits and writes the entries
    /// back. An empty name reads the saved entries instead.
    void UpdateQuickFileList(const QString& strFilePathName);
    /// Entries to show, newest first; none of them is empty.
    const QStringList& entries() const { return m_entries; }

private:
    Preferences& m_preferences;
    QStringList m_entries;
};
