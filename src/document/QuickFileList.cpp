// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/QuickFileList.h"

#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"

void QuickFileList::UpdateQuickFileList(const QString& strFilePathName)
{
    if (strFilePathName.isEmpty()) {
        m_entries.clear();
        for (int i = 0; i < kCapacity; ++i) {
            const QString entry = m_preferences.value(options::kQuickOpenFile, i);
            if (!entry.isEmpty())
                m_entries << entry;
        }
        return;
    }
    // Another copy of the program may have opened files meanwhile: its entries stay.
    UpdateQuickFileList(QString());
    m_entries.removeIf([&](const QString& entry) { return entry.compare(strFilePathName, Qt::CaseInsensitive) == 0; });
    m_entries.prepend(strFilePathName);
    while (m_entries.size() > kCapacity)
        m_entries.removeLast();
    const SettingsStore::Batch batch(m_preferences.store());
    for (int i = 0; i < kCapacity; ++i)
        m_preferences.setValue(options::kQuickOpenFile, i, m_entries.value(i));
}
