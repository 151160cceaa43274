// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/GraphProperties.h"

#include <cstdint>
#include <utility>

namespace graph {

/// The properties of a graph twice: as they were set, and as they are shown since the last action. The classes that
/// give them their names share one store.
class PropertyStore
{
public:
    const Properties& properties() const { return m_properties; }
    /// The properties as they were at the last PEactions.
    const Properties& shownProperties() const { return m_shown; }
    /// Grows with every change of the shown properties, except those that only moved vertical lines.
    std::uint64_t shownRevision() const { return m_shownRevision; }
    /// Grows with every change of the shown vertical line annotations.
    std::uint64_t shownLinesRevision() const { return m_shownLinesRevision; }

protected:
    PropertyStore() = default;
    ~PropertyStore() = default;

    template <typename T>
    void assign(T& member, T value)
    {
        if (member == value)
            return;
        member = std::move(value);
        m_changed = true;
    }
    void assign(QString& member, const QString& text);
    /// Leaves the member as it is when the value is none.
    void assignFinite(double& member, double value);
    /// Shows what was set so far.
    void show();

    Properties m_properties;
    Properties m_shown;
    std::uint64_t m_shownRevision = 0;
    std::uint64_t m_shownLinesRevision = 0;
    bool m_changed = false;      ///< properties differ from the shown ones by more than vertical lines
    bool m_linesChanged = false; ///< vertical lines differ from the shown ones
};

} // namespace graph
