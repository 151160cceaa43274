// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/Moment.h"

#include <QString>

#include <cstdio>

namespace sim {

/// One line that tells a person what the instrument is doing: rewritten in place on a terminal, a new line at each
/// change anywhere else.
class StatusLine
{
public:
    /// The stream outlives the line.
    StatusLine(std::FILE* stream, bool enabled);
    ~StatusLine(); ///< leaves the cursor at the beginning of an empty line

    /// Shows the text, at most four times a second; steady is the part that makes a new line elsewhere than on a
    /// terminal.
    void show(const QString& steady, const QString& moving, Moment now);
    /// When a text that came too early is worth showing.
    bool wanted(Moment now) const { return m_enabled && now >= m_next; }
    /// A line of its own that stays, shown whether the status is enabled or not.
    void say(const QString& sentence);
    bool enabled() const { return m_enabled; }

private:
    std::FILE* m_stream;
    bool m_enabled;
    bool m_terminal;
    QString m_lastSteady;
    bool m_lineOpen = false;
    Moment m_next{0};
};

} // namespace sim
