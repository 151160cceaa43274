// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace ferrolex {

class Source;

struct Finding
{
    enum class Severity
    {
        Warning,
        Error
    };
    Severity severity = Severity::Error;
    int line = 0;   ///< from 1
    int column = 0; ///< in characters, from 1
    QString sentence;
    QString suggestion; ///< empty without one
    QString excerpt;    ///< the line, or the part of it around the column
    int caret = 0;      ///< column of the caret below the excerpt, from 0
};

/// Collects what a check finds, up to a bound; what comes beyond is counted.
class Findings
{
public:
    static constexpr int kMostKept = 1000;

    explicit Findings(const Source& source)
        : m_source(source)
    {}

    void error(std::uint32_t offset, const QString& sentence, const QString& suggestion = {});
    void warning(std::uint32_t offset, const QString& sentence, const QString& suggestion = {});

    int errors() const { return m_errors; }
    int warnings() const { return m_warnings; }
    /// A suggestion costs time: none is looked for once there are many findings.
    bool wantsSuggestions() const { return m_findings.size() < 100; }
    int leftOut() const { return m_leftOut; }
    /// In the order of their places.
    std::vector<Finding> sorted() &&;

private:
    void add(Finding::Severity severity, std::uint32_t offset, const QString& sentence, const QString& suggestion);

    const Source& m_source;
    std::vector<Finding> m_findings;
    int m_errors = 0;
    int m_warnings = 0;
    int m_leftOut = 0;
};

/// "line:column: error|warning: sentence", the line with a caret below it, and the suggestion, each with its line end.
QString textOf(const Finding& finding);

/// The text for people: at most that many characters, ending in a line that counts what is left out (with those counted
/// already).
QString messageText(const std::vector<Finding>& findings, int leftOut, int size);

} // namespace ferrolex
