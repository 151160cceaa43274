// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/ReadoutCursor.h"

#include "controls/graph/GraphModel.h"
#include "controls/graph/ui/GraphPlot.h"
#include "controls/graph/ui/PlotElements.h"
#include "controls/graph/ui/TracePlottable.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace {

constexpr double kPickReach = 12; // pixels

} // namespace

ReadoutCursor::ReadoutCursor(const GraphModel& model, GraphPlot& plot, std::function<void()> changed)
    : m_model(model)
    , m_plot(plot)
    , m_changed(std::move(changed))
{}

bool ReadoutCursor::pick(const QPointF& position)
{
    int subset = -1;
    int point = -1;
    double nearest = kPickReach;
    for (const int candidate : m_plot.drawn()) {
        double distance = 0;
        const TracePlottable* trace = m_plot.trace(candidate);
        const int found = trace != nullptr ? trace->nearestPoint(position, nearest, &distance) : -1;
        if (found >= 0 && (point < 0 || distance < nearest)) {
            subset = candidate;
            point = found;
            nearest = distance;
        }
    }
    if (point < 0)
        return false;
    if (subset != m_subset || point != m_point)
        moveTo(subset, point);
    return true;
}

void ReadoutCursor::moveTo(int subset, int point)
{
    m_subset = subset;
    m_point = point;
    place();
    m_changed();
}

void ReadoutCursor::clear()
{
    m_subset = -1;
    m_point = -1;
    place();
    m_changed();
}

// Follows its point when the view or the data moves, and goes when the point does.
void ReadoutCursor::place()
{
    std::optional<QPointF> position;
    QColor color;
    if (m_subset >= 0) {
        if (const TracePlottable* trace = m_plot.trace(m_subset)) {
            position = trace->pixelOf(m_point);
            color = trace->pen().color();
        }
        if (!position) {
            m_subset = -1;
            m_point = -1;
        } else if (!QRectF(m_plot.plotArea()).adjusted(-1, -1, 1, 1).contains(*position)) {
            position.reset();
        }
    }
    if (position == m_plot.overlay().cursor())
        return;
    m_plot.overlay().setCursor(position, color);
    m_plot.redrawOverlay();
}

// The next drawn point at or behind from; -1 when there is none.
int ReadoutCursor::seek(int subset, int from, int direction) const
{
    const TracePlottable* trace = m_plot.trace(subset);
    for (int point = from; trace != nullptr && point >= 0 && point < m_model.Points(); point += direction) {
        if (trace->pixelOf(point))
            return point;
    }
    return -1;
}

bool ReadoutCursor::start()
{
    if (m_subset >= 0)
        return false;
    for (const int subset : m_plot.drawn()) {
        const int first = seek(subset, 0, 1);
        if (first >= 0) {
            moveTo(subset, first);
            return true;
        }
    }
    return false;
}

bool ReadoutCursor::step(int points)
{
    if (start())
        return true;
    if (m_subset < 0)
        return false;
    const int direction = points < 0 ? -1 : 1;
    int target = m_point;
    for (int i = 0; i < std::abs(points); ++i) {
        const int next = seek(m_subset, target + direction, direction);
        if (next < 0)
            break;
        target = next;
    }
    if (target != m_point)
        moveTo(m_subset, target);
    return true;
}

bool ReadoutCursor::moveToEnd(bool last)
{
    start();
    if (m_subset < 0)
        return false;
    const int target = last ? seek(m_subset, m_model.Points() - 1, -1) : seek(m_subset, 0, 1);
    if (target >= 0 && target != m_point)
        moveTo(m_subset, target);
    return true;
}

bool ReadoutCursor::changeCurve(int direction)
{
    if (start())
        return true;
    const std::vector<int>& drawn = m_plot.drawn();
    const auto here = std::find(drawn.begin(), drawn.end(), m_subset);
    if (here == drawn.end())
        return false;
    const int count = static_cast<int>(drawn.size());
    int index = static_cast<int>(here - drawn.begin());
    for (int i = 1; i < count; ++i) {
        index = (index + direction + count) % count;
        const int subset = drawn[static_cast<std::size_t>(index)];
        int point = seek(subset, m_point, 1);
        if (point < 0)
            point = seek(subset, m_point, -1);
        if (point >= 0) {
            moveTo(subset, point);
            break;
        }
    }
    return true;
}
