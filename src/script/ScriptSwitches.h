// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "analysis/rules/ResultSwitches.h"

class FerrolexChecker;

/// The measures that the analysis statements of the script last checked ask for.
class ScriptSwitches : public ResultSwitches
{
public:
    /// Outlives the object.
    explicit ScriptSwitches(FerrolexChecker& checker)
        : m_checker(checker)
    {}

    std::int16_t ShowF1() const override;
    std::int16_t ShowF2() const override;
    std::int16_t ShowFr() const override;
    std::int16_t ShowZr() const override;
    std::int16_t ShowQ() const override;
    void SetAnalysisMode(std::int16_t mode) override;

private:
    FerrolexChecker& m_checker;
};
