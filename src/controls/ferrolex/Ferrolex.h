// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ferrolex/Finding.h"

#include <QString>

#include <cstdint>
#include <vector>

class QByteArray;

/// Checks test scripts and keeps what the last check found. It knows neither window nor instrument: what it is to judge
/// against is told with each check.
class Ferrolex
{
public:
    enum Code : std::int16_t
    {
        Clean = 0,
        Warnings = 1,
        Errors = 2,
        Unreadable = 3 ///< no file, too large, or no text
    };
    static constexpr std::int32_t kLongestMessages = 31200; ///< characters

    /// Reads and checks a file of at most 1 MiB. The firmware version is the one that the instrument tells, 0 for
    /// unknown; the model is its text, and the widest model is taken when it is empty or unknown.
    std::int16_t CheckScript(const QString& fileName, const double& firmwareVersion, const QString& deviceModel);
    /// The same with a script in hand.
    std::int16_t CheckBytes(const QByteArray& bytes, const double& firmwareVersion, const QString& deviceModel);

    /// Warnings and errors of the last check, cut to size characters; empty after a clean one. Each is
    /// "line:column: error|warning: sentence" with the line itself, a caret below it, and a suggestion where there is
    /// one. What is left out is counted in the last line.
    void GetMessages(std::int32_t size, QString& buffer) const;

    /// Which measures the analysis statements of the last script that could be read ask for: 1 or 0.
    std::int16_t ShowF1() const { return shows(0); }
    std::int16_t ShowF2() const { return shows(1); }
    std::int16_t ShowFr() const { return shows(2); }
    std::int16_t ShowZr() const { return shows(3); }
    std::int16_t ShowQ() const { return shows(4); }

    /// The number that came with the analysis frame.
    void SetAnalysisMode(std::int16_t mode) { m_analysisMode = mode; }
    std::int16_t AnalysisMode() const { return m_analysisMode; }

    /// In the order of their places.
    const std::vector<ferrolex::Finding>& findings() const { return m_findings; }
    /// How many errors and warnings there are beyond those kept.
    int leftOut() const { return m_leftOut; }

private:
    std::int16_t refuse(const QString& sentence);
    std::int16_t shows(unsigned bit) const { return static_cast<std::int16_t>((m_measures >> bit) & 1U); }

    std::vector<ferrolex::Finding> m_findings;
    int m_leftOut = 0;
    unsigned m_measures = 0;
    std::int16_t m_analysisMode = 0;
};
