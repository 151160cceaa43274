// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/TracePixels.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

// The painter clips at the plotting area; lines are cut here only where their pixels would leave its number range.
constexpr double kReach = 3000;

// The part of a line within a rectangle; false when there is none.
bool clipLine(const QRectF& rect, QPointF& from, QPointF& to)
{
    double t0 = 0;
    double t1 = 1;
    const QPointF d = to - from;
    const auto cut = [&](double p, double q) {
        if (p == 0)
            return q >= 0;
        const double r = q / p;
        if (p < 0)
            t0 = std::max(t0, r);
        else
            t1 = std::min(t1, r);
        return t0 <= t1;
    };
    if (!cut(-d.x(), from.x() - rect.left()) || !cut(d.x(), rect.right() - from.x()) ||
        !cut(-d.y(), from.y() - rect.top()) || !cut(d.y(), rect.bottom() - from.y()))
        return false;
    const QPointF start = from;
    from = start + t0 * d;
    to = start + t1 * d;
    return true;
}

// Passes on the points of a pixel column that shape it: the first at once, the others when the column is over. Most
// columns have one point, so nothing else is remembered of a first one.
class Column
{
public:
    template <typename Take>
    void add(const QPointF& point, double columnsPerPixel, const Take& take)
    {
        const auto column = static_cast<std::int64_t>(std::clamp(point.x() * columnsPerPixel, -1e15, 1e15));
        if (m_count == 0 || column != m_column) {
            end(take);
            take(point);
            m_column = column;
            m_first = point;
            m_count = 1;
            return;
        }
        if (m_count == 1) {
            m_lowest = m_highest = m_first;
            m_lowestAt = m_highestAt = 0;
        }
        if (point.y() > m_lowest.y()) {
            m_lowest = point;
            m_lowestAt = m_count;
        }
        if (point.y() < m_highest.y()) {
            m_highest = point;
            m_highestAt = m_count;
        }
        m_last = point;
        ++m_count;
    }

    template <typename Take>
    void end(const Take& take)
    {
        if (m_count > 1)
            takeRest(take);
        m_count = 0;
    }

private:
    template <typename Take>
    void takeRest(const Take& take) const
    {
        const bool lowestFirst = m_lowestAt < m_highestAt;
        const std::size_t one = lowestFirst ? m_lowestAt : m_highestAt;
        const std::size_t two = lowestFirst ? m_highestAt : m_lowestAt;
        const std::size_t last = m_count - 1;
        if (one != 0 && one != last)
            take(lowestFirst ? m_lowest : m_highest);
        if (two != one && two != 0 && two != last)
            take(lowestFirst ? m_highest : m_lowest);
        take(m_last);
    }

    std::int64_t m_column = 0;
    std::size_t m_count = 0;
    std::size_t m_lowestAt = 0;
    std::size_t m_highestAt = 0;
    QPointF m_first, m_lowest, m_highest, m_last;
};

} // namespace

void TracePixels::build(std::span<const double> u, std::span<const double> v, const QRectF& extent,
                        const TraceMapping& map, bool everyPoint)
{
    // A point makes at most two pixels: where its line enters the reach, and where it ends.
    m_pixels.resize(u.size() * 2);
    m_runs.clear();
    QPointF* pixels = m_pixels.data();
    std::size_t used = 0;
    std::size_t start = 0;
    const auto endRun = [&] {
        if (used > start)
            m_runs.push_back({start, used - start});
        start = used;
    };
    const QRectF reach = QRectF(map.area).adjusted(-kReach, -kReach, kReach, kReach);
    const bool allWithin = reach.contains(map.pixel(extent.left(), extent.top())) &&
                           reach.contains(map.pixel(extent.right(), extent.bottom()));
    bool hasPrevious = false;
    QPointF previous;
    const auto takeWhole = [&](const QPointF& point) { pixels[used++] = point; };
    const auto takeCut = [&](const QPointF& point) {
        const bool inside = reach.contains(point);
        if (hasPrevious && (!inside || !reach.contains(previous))) {
            QPointF from = previous;
            QPointF to = point;
            if (clipLine(reach, from, to)) {
                if (used == start)
                    pixels[used++] = from;
                pixels[used++] = to;
            }
            if (!inside)
                endRun();
        } else if (inside) {
            pixels[used++] = point;
        }
        previous = point;
        hasPrevious = true;
    };
    const auto walk = [&](const auto& take) {
        Column column;
        const auto breakLine = [&] {
            column.end(take);
            endRun();
            hasPrevious = false;
        };
        for (std::size_t i = 0; i < u.size(); ++i) {
            if (std::isnan(u[i])) {
                breakLine();
                continue;
            }
            const QPointF point = map.pixel(u[i], v[i]);
            if (everyPoint)
                take(point);
            else
                column.add(point, map.columnsPerPixel, take);
        }
        breakLine();
    };
    // Most views show the whole of a curve: its points need no look at the reach, one by one.
    if (allWithin)
        walk(takeWhole);
    else
        walk(takeCut);
}
