// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/QuickFileList.h"

#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"

#include <utility>

namespace {

constexpr int kWriteDelay = 500; // ms

void putOnTop(QStringList& entries, const QString& file)
{
    entries.removeIf([&file](const QString& entry) { return entry.compare(file, Qt::CaseInsensitive) == 0; });
    entries.prepend(file);
}

} // namespace

QuickFileList::QuickFileList(Preferences& preferences)
    : m_preferences(preferences)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(kWriteDelay);
    m_delay.callOnTimeout([this] { store(); });
}

QuickFileList::~QuickFileList()
{
    store();
}

QStringList QuickFileList::saved() const
{
    QStringList entries;
    for (int i = 0; i < kCapacity; ++i) {
        const QString entry = m_preferences.value(options::kQuickOpenFile, i);
        if (!entry.isEmpty())
            entries << entry;
    }
    return entries;
}

void QuickFileList::merge()
{
    m_entries = saved();
    for (const QString& file : std::as_const(m_unwritten))
        putOnTop(m_entries, file);
    while (m_entries.size() > kCapacity)
        m_entries.removeLast();
}

void QuickFileList::UpdateQuickFileList(const QString& strFilePathName)
{
    if (!strFilePathName.isEmpty()) {
        m_unwritten.append(strFilePathName);
        if (!m_delay.isActive())
            m_delay.start();
    }
    merge();
}

void QuickFileList::store()
{
    m_delay.stop();
    if (m_unwritten.isEmpty())
        return;
    merge();
    m_unwritten.clear();
    const SettingsStore::Batch batch(m_preferences.store());
    for (int i = 0; i < kCapacity; ++i)
        m_preferences.setValue(options::kQuickOpenFile, i, m_entries.value(i));
}
