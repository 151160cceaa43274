// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/PropertyStore.h"

#include <algorithm>
#include <cmath>

namespace graph {
namespace {

/// Member by member: the cursor's position was written a moment ago, and a copy of the whole line would read it wider
/// than it was written, which stalls until all writes before it, measured points among them, have reached the cache.
void copyLines(const std::vector<VerticalLine>& from, std::vector<VerticalLine>& to)
{
    to.resize(from.size());
    for (std::size_t i = 0; i < from.size(); ++i) {
        to[i].position = from[i].position;
        to[i].type = from[i].type;
        to[i].color = from[i].color;
    }
}

} // namespace

void PropertyStore::assign(QString& member, const QString& text)
{
    qsizetype length = std::min<qsizetype>(text.size(), kLongestText);
    if (length < text.size() && text.at(length - 1).isHighSurrogate())
        --length;
    if (member == QStringView(text).first(length))
        return;
    member = length < text.size() ? text.first(length) : text;
    m_changed = true;
}

void PropertyStore::assignFinite(double& member, double value)
{
    if (std::isfinite(value))
        assign(member, value);
}

// A moving plotting cursor changes one line and shows it with every measured point: that must not copy everything else.
void PropertyStore::show()
{
    if (m_changed) {
        m_shown = m_properties;
        ++m_shownRevision;
        ++m_shownLinesRevision;
    } else if (m_linesChanged) {
        copyLines(m_properties.verticalLines, m_shown.verticalLines);
        ++m_shownLinesRevision;
    }
    m_changed = false;
    m_linesChanged = false;
}

} // namespace graph
