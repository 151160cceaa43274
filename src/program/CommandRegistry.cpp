// SPDX-License-Identifier: GPL-3.0-or-later
#include "program/CommandRegistry.h"

#include <algorithm>
#include <utility>

bool CommandConditions::allow(int rules) const
{
    return (document || !(rules & Command::NeedsDocument)) && (instrument || !(rules & Command::NeedsInstrument)) &&
           !(testRuns && (rules & Command::NotDuringTest)) && !(viewOnly && (rules & Command::NotViewOnly));
}

const Command& CommandRegistry::add(Command command)
{
    Q_ASSERT_X(command.handler, "CommandRegistry::add", qPrintable(command.name));
    const QString name = command.name;
    const auto [place, isNew] = m_entries.try_emplace(name, Entry{std::move(command)});
    Q_ASSERT_X(isNew, "CommandRegistry::add", qPrintable(name));
    if (isNew) {
        m_order.push_back(&place->second.command);
        Q_EMIT added(name);
    }
    return place->second.command;
}

const CommandRegistry::Entry* CommandRegistry::entry(const QString& name) const
{
    const auto place = m_entries.find(name);
    return place == m_entries.end() ? nullptr : &place->second;
}

const Command* CommandRegistry::find(const QString& name) const
{
    const Entry* found = entry(name);
    return found ? &found->command : nullptr;
}

std::vector<const Command*> CommandRegistry::commands() const
{
    return m_order;
}

const Command* CommandRegistry::findButton(const QString& toolBarKey) const
{
    const auto found = std::find_if(m_order.begin(), m_order.end(), [&toolBarKey](const Command* command) {
        return !command->toolBarKey.isEmpty() && command->toolBarKey.compare(toolBarKey, Qt::CaseInsensitive) == 0;
    });
    return found == m_order.end() ? nullptr : *found;
}

const Command* CommandRegistry::findPopupEntry(const QString& identifier) const
{
    const auto found = std::find_if(m_order.begin(), m_order.end(), [&identifier](const Command* command) {
        return !command->popupEntry.isEmpty() && command->popupEntry == identifier;
    });
    return found == m_order.end() ? nullptr : *found;
}

void CommandRegistry::setConditions(const CommandConditions& conditions)
{
    if (conditions == m_conditions)
        return;
    std::vector<std::pair<QString, bool>> changed;
    const CommandConditions before = std::exchange(m_conditions, conditions);
    for (const auto& [name, entry] : m_entries) {
        const bool was = entry.allowed && before.allow(entry.command.rules);
        if (was != enabled(entry))
            changed.emplace_back(name, !was);
    }
    for (const auto& [name, now] : changed)
        Q_EMIT enabledChanged(name, now);
}

void CommandRegistry::setEnabled(const QString& name, bool allowed)
{
    const auto place = m_entries.find(name);
    if (place == m_entries.end())
        return;
    const bool was = enabled(place->second);
    place->second.allowed = allowed;
    if (const bool now = enabled(place->second); now != was)
        Q_EMIT enabledChanged(name, now);
}

void CommandRegistry::setChecked(const QString& name, bool checked)
{
    const auto place = m_entries.find(name);
    if (place == m_entries.end() || place->second.checked == checked)
        return;
    place->second.checked = checked;
    Q_EMIT checkedChanged(name, checked);
}

bool CommandRegistry::isEnabled(const QString& name) const
{
    const Entry* found = entry(name);
    return found && enabled(*found);
}

bool CommandRegistry::isChecked(const QString& name) const
{
    const Entry* found = entry(name);
    return found && found->checked;
}

bool CommandRegistry::trigger(const QString& name)
{
    const Entry* found = entry(name);
    if (!found || !enabled(*found))
        return false;
    // A copy: the handler may end the program and the registry with it.
    const auto handler = found->command.handler;
    handler();
    return true;
}
