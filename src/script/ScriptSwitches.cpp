// SPDX-License-Identifier: GPL-3.0-or-later
#include "script/ScriptSwitches.h"

#include "script/FerrolexChecker.h"

std::int16_t ScriptSwitches::ShowF1() const
{
    return m_checker.ShowF1();
}

std::int16_t ScriptSwitches::ShowF2() const
{
    return m_checker.ShowF2();
}

std::int16_t ScriptSwitches::ShowFr() const
{
    return m_checker.ShowFr();
}

std::int16_t ScriptSwitches::ShowZr() const
{
    return m_checker.ShowZr();
}

std::int16_t ScriptSwitches::ShowQ() const
{
    return m_checker.ShowQ();
}

void ScriptSwitches::SetAnalysisMode(std::int16_t mode)
{
    m_checker.control().SetAnalysisMode(mode);
}
