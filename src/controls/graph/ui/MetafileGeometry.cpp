// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/MetafileGeometry.h"

#include <QLineF>

#include <array>
#include <cmath>
#include <numeric>

namespace metafile {
namespace {

/// A pattern shorter than this cannot be told from a line.
constexpr double kShortestPattern = 2;

bool isFinite(const QPointF& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

/// Cuts the segment to the area; false when nothing of it is left.
bool clipSegment(QPointF& from, QPointF& to, const QRectF& area)
{
    const QPointF start = from;
    const QPointF way = to - from;
    double first = 0;
    double last = 1;
    const std::array<std::pair<double, double>, 4> borders{{
        {-way.x(), start.x() - area.left()},
        {way.x(), area.right() - start.x()},
        {-way.y(), start.y() - area.top()},
        {way.y(), area.bottom() - start.y()},
    }};
    for (const auto& [speed, distance] : borders) {
        if (speed == 0) {
            if (distance < 0)
                return false;
        } else if (speed < 0) {
            first = std::max(first, distance / speed);
        } else {
            last = std::min(last, distance / speed);
        }
    }
    if (!(first <= last))
        return false;
    if (last < 1)
        to = start + last * way;
    if (first > 0)
        from = start + first * way;
    return true;
}

/// One side of the area: what lies on it is kept where inside says so.
template <typename Inside, typename Cross>
QPolygonF cut(const QPolygonF& polygon, Inside inside, Cross cross)
{
    QPolygonF kept;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF& from = polygon[i];
        const QPointF& to = polygon[(i + 1) % polygon.size()];
        if (inside(from))
            kept.append(from);
        if (inside(from) != inside(to))
            kept.append(cross(from, to));
    }
    return kept;
}

QPointF atX(const QPointF& from, const QPointF& to, double x)
{
    return {x, from.y() + (to.y() - from.y()) * ((x - from.x()) / (to.x() - from.x()))};
}

QPointF atY(const QPointF& from, const QPointF& to, double y)
{
    return {from.x() + (to.x() - from.x()) * ((y - from.y()) / (to.y() - from.y())), y};
}

/// Where in its pattern a dashed line is.
class DashWalk
{
public:
    DashWalk(const QList<double>& pattern, double offset, double length)
        : m_pattern(pattern)
    {
        double rest = std::isfinite(offset) ? std::fmod(offset, length) : 0;
        if (rest < 0)
            rest += length;
        m_left = m_pattern.front();
        while (rest >= m_left && m_index + 1 < m_pattern.size()) {
            rest -= m_left;
            next();
        }
        m_left = std::max(0.0, m_left - rest);
    }
    bool draws() const { return m_index % 2 == 0; }
    /// Until the pen goes up or down.
    double left() const { return m_left; }
    void go(double way) { m_left -= way; }
    void next()
    {
        m_index = (m_index + 1) % m_pattern.size();
        m_left = m_pattern[m_index];
    }

private:
    const QList<double>& m_pattern;
    qsizetype m_index = 0;
    double m_left = 0;
};

} // namespace

std::vector<Line> clippedLine(std::span<const QPointF> line, const QRectF& area)
{
    std::vector<Line> parts;
    bool goesOn = false;
    for (std::size_t i = 1; i < line.size(); ++i) {
        QPointF from = line[i - 1];
        QPointF to = line[i];
        if (!isFinite(from) || !isFinite(to) || !clipSegment(from, to, area)) {
            goesOn = false;
            continue;
        }
        if (!goesOn || from != line[i - 1])
            parts.push_back({from});
        parts.back().push_back(to);
        goesOn = to == line[i];
    }
    return parts;
}

QPolygonF clippedPolygon(const QPolygonF& polygon, const QRectF& area)
{
    for (const QPointF& point : polygon) {
        if (!isFinite(point))
            return {};
    }
    if (area.contains(polygon.boundingRect()))
        return polygon;
    const double left = area.left();
    const double right = area.right();
    const double top = area.top();
    const double bottom = area.bottom();
    QPolygonF kept = cut(
        polygon, [left](const QPointF& p) { return p.x() >= left; },
        [left](const QPointF& a, const QPointF& b) { return atX(a, b, left); });
    kept = cut(
        kept, [right](const QPointF& p) { return p.x() <= right; },
        [right](const QPointF& a, const QPointF& b) { return atX(a, b, right); });
    kept = cut(
        kept, [top](const QPointF& p) { return p.y() >= top; },
        [top](const QPointF& a, const QPointF& b) { return atY(a, b, top); });
    return cut(
        kept, [bottom](const QPointF& p) { return p.y() <= bottom; },
        [bottom](const QPointF& a, const QPointF& b) { return atY(a, b, bottom); });
}

std::vector<Line> dashed(const Line& line, const QList<double>& pattern, double offset)
{
    const double length = std::accumulate(pattern.begin(), pattern.end(), 0.0);
    if (pattern.size() < 2 || !(length >= kShortestPattern))
        return {line};
    std::vector<Line> dashes;
    DashWalk walk(pattern, offset, length);
    bool penDown = false;
    for (std::size_t i = 1; i < line.size(); ++i) {
        const QLineF segment(line[i - 1], line[i]);
        const double end = segment.length();
        double gone = 0;
        while (gone < end) {
            if (walk.draws() && !penDown)
                dashes.push_back({segment.pointAt(gone / end)});
            penDown = walk.draws();
            const double way = std::min(walk.left(), end - gone);
            gone = way == walk.left() ? gone + way : end;
            walk.go(way);
            if (penDown)
                dashes.back().push_back(segment.pointAt(std::min(1.0, gone / end)));
            if (walk.left() <= 0) {
                walk.next();
                penDown = false;
            }
        }
    }
    return dashes;
}

} // namespace metafile
