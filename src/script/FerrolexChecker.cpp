// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/FerrolexChecker.h"

#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"

static_assert(ScriptChecker::Clean == static_cast<int>(Ferrolex::Clean) &&
              ScriptChecker::Warnings == static_cast<int>(Ferrolex::Warnings) &&
              ScriptChecker::Errors == static_cast<int>(Ferrolex::Errors) &&
              ScriptChecker::SevereErrors == static_cast<int>(Ferrolex::Unreadable));

std::int16_t FerrolexChecker::CheckScript(const QString& fileName, double& firmwareVersion, QString& deviceModel)
{
    const std::int16_t code = m_ferrolex.CheckScript(fileName, firmwareVersion, deviceModel);
    if (code == Ferrolex::Unreadable)
        return code;
    const SettingsStore::Batch batch(m_preferences.store());
    m_preferences.setValue(options::kShowF1, m_ferrolex.ShowF1() != 0);
    m_preferences.setValue(options::kShowF2, m_ferrolex.ShowF2() != 0);
    m_preferences.setValue(options::kShowFr, m_ferrolex.ShowFr() != 0);
    m_preferences.setValue(options::kShowZr, m_ferrolex.ShowZr() != 0);
    m_preferences.setValue(options::kShowQ, m_ferrolex.ShowQ() != 0);
    return code;
}

void FerrolexChecker::GetMessages(std::int32_t size, QString& buffer)
{
    m_ferrolex.GetMessages(size, buffer);
}

std::int16_t FerrolexChecker::ShowF1() const
{
    return m_preferences.value(options::kShowF1) ? 1 : 0;
}

std::int16_t FerrolexChecker::ShowF2() const
{
    return m_preferences.value(options::kShowF2) ? 1 : 0;
}

std::int16_t FerrolexChecker::ShowFr() const
{
    return m_preferences.value(options::kShowFr) ? 1 : 0;
}

std::int16_t FerrolexChecker::ShowZr() const
{
    return m_preferences.value(options::kShowZr) ? 1 : 0;
}

std::int16_t FerrolexChecker::ShowQ() const
{
    return m_preferences.value(options::kShowQ) ? 1 : 0;
}
