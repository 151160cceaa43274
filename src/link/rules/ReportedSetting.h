// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>

#include <optional>

/// A setting that the host commands and the instrument reports. What was in force before a command may be reported
/// once more behind it, by an answer that was on its way, and the report of the new value may get lost; so for three
/// seconds a report of the replaced value is not believed. Any other is what the instrument has made of the command.
class ReportedSetting
{
public:
    static constexpr int kLate = 3000; ///< ms

    /// The host has told the instrument this value.
    void command(double value)
    {
        if (!m_reported || *m_reported == value) {
            m_replaced.reset();
            return;
        }
        m_replaced = m_reported;
        m_sinceCommand.start();
    }
    /// Whether the instrument's report of this value says what is in force.
    bool believes(double value)
    {
        if (m_replaced && *m_replaced == value && !m_sinceCommand.hasExpired(kLate))
            return false;
        m_replaced.reset();
        m_reported = value;
        return true;
    }

private:
    std::optional<double> m_reported, m_replaced;
    QElapsedTimer m_sinceCommand;
};
