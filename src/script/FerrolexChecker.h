// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Ferrolex.h"
#include "script/ScriptPorts.h"

class Preferences;

/// The checker of the script language. The measures that the analysis statements of the script last checked ask for are
/// kept with the settings: a script that the instrument holds shows them after a restart of the program too.
class FerrolexChecker : public ScriptChecker
{
public:
    /// Outlives this.
    explicit FerrolexChecker(Preferences& preferences)
        : m_preferences(preferences)
    {}

    std::int16_t CheckScript(const QString& fileName, double& firmwareVersion, QString& deviceModel) override;
    void GetMessages(std::int32_t size, QString& buffer) override;

    /// Of the script last checked, in this run of the program or an earlier one; all of them before the first.
    std::int16_t ShowF1() const;
    std::int16_t ShowF2() const;
    std::int16_t ShowFr() const;
    std::int16_t ShowZr() const;
    std::int16_t ShowQ() const;

    Ferrolex& control() { return m_ferrolex; }

private:
    Preferences& m_preferences;
    Ferrolex m_ferrolex;
};
