// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/TracePlottable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr double kNotDrawn = std::numeric_limits<double>::quiet_NaN();
// The painter clips at the plotting area; lines are cut here only where their pixels would leave its number range.
constexpr double kReach = 3000;
constexpr double kWidestBundle = 5; // device pixels
constexpr double kMarkSize = 5;
constexpr double kSymbolSize = 8;
constexpr double kSymbolDistance = 34;

constexpr std::array<QCPScatterStyle::ScatterShape, 10> kSymbols{QCPScatterStyle::ssCircle,
                                                                 QCPScatterStyle::ssSquare,
                                                                 QCPScatterStyle::ssTriangle,
                                                                 QCPScatterStyle::ssDiamond,
                                                                 QCPScatterStyle::ssCross,
                                                                 QCPScatterStyle::ssPlus,
                                                                 QCPScatterStyle::ssTriangleInverted,
                                                                 QCPScatterStyle::ssCrossCircle,
                                                                 QCPScatterStyle::ssPlusSquare,
                                                                 QCPScatterStyle::ssStar};

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

// Collects the points of one pixel column and passes on those that shape it.
class Column
{
public:
    template <typename Take>
    void add(const QPointF& point, double columnsPerPixel, const Take& take)
    {
        const auto column = static_cast<std::int64_t>(std::clamp(point.x() * columnsPerPixel, -1e15, 1e15));
        if (m_count > 0 && column != m_column)
            flush(take);
        if (m_count == 0) {
            m_column = column;
            m_first = m_lowest = m_highest = point;
            m_lowestAt = m_highestAt = 0;
        } else {
            if (point.y() > m_lowest.y()) {
                m_lowest = point;
                m_lowestAt = m_count;
            }
            if (point.y() < m_highest.y()) {
                m_highest = point;
                m_highestAt = m_count;
            }
        }
        m_last = point;
        ++m_count;
    }

    template <typename Take>
    void flush(const Take& take)
    {
        if (m_count == 0)
            return;
        take(m_first);
        const bool lowestFirst = m_lowestAt < m_highestAt;
        const std::size_t one = lowestFirst ? m_lowestAt : m_highestAt;
        const std::size_t two = lowestFirst ? m_highestAt : m_lowestAt;
        const std::size_t end = m_count - 1;
        if (one != 0 && one != end)
            take(lowestFirst ? m_lowest : m_highest);
        if (two != one && two != 0 && two != end)
            take(lowestFirst ? m_highest : m_lowest);
        if (end != 0)
            take(m_last);
        m_count = 0;
    }

private:
    std::int64_t m_column = 0;
    std::size_t m_count = 0;
    std::size_t m_lowestAt = 0;
    std::size_t m_highestAt = 0;
    QPointF m_first, m_lowest, m_highest, m_last;
};

} // namespace

TracePlottable::TracePlottable(QCPAxis* keyAxis, QCPAxis* valueAxis, const GraphModel& model, int subset)
    : QCPAbstractPlottable(keyAxis, valueAxis)
    , m_model(model)
    , m_subset(subset)
{
    setSelectable(QCP::stNone);
}

bool TracePlottable::update(const graph::PointFilter& filter)
{
    const std::uint64_t revision = m_model.dataRevision(m_subset);
    if (m_filter == filter && m_revision == revision)
        return false;
    m_filter = filter;
    m_revision = revision;
    m_built.reset();
    m_extent = graph::extentOf(m_model, m_subset, filter);
    const std::span<const float> xs = m_model.xArray(m_subset);
    const std::span<const float> ys = m_model.yArray(m_subset);
    m_u.resize(xs.size());
    m_v.resize(xs.size());
    for (std::size_t i = 0; i < xs.size(); ++i) {
        if (!filter.isDrawn(xs[i], ys[i])) {
            m_u[i] = kNotDrawn;
            continue;
        }
        m_u[i] = filter.isLogX() ? std::log10(static_cast<double>(xs[i])) : static_cast<double>(xs[i]);
        m_v[i] = filter.isLogY() ? std::log10(static_cast<double>(ys[i])) : static_cast<double>(ys[i]);
    }
    return true;
}

TracePlottable::Mapping TracePlottable::mapping(double columnsPerPixel) const
{
    Mapping map;
    const QCPAxis* x = keyAxis();
    const QCPAxis* y = valueAxis();
    if (x == nullptr || y == nullptr || !m_filter)
        return map;
    map.area = x->axisRect()->rect();
    map.columnsPerPixel = columnsPerPixel;
    const auto scaled = [](double value, bool logarithmic) { return logarithmic ? std::log10(value) : value; };
    const double x0 = scaled(x->range().lower, m_filter->isLogX());
    const double x1 = scaled(x->range().upper, m_filter->isLogX());
    const double y0 = scaled(y->range().lower, m_filter->isLogY());
    const double y1 = scaled(y->range().upper, m_filter->isLogY());
    map.xFactor = map.area.width() / (x1 - x0);
    map.xOffset = map.area.left() - x0 * map.xFactor;
    map.yFactor = -map.area.height() / (y1 - y0);
    map.yOffset = map.area.bottom() + 1 - y0 * map.yFactor;
    return map;
}

bool TracePlottable::isWithin(const Mapping& map, const QRectF& reach) const
{
    const auto scaled = [](double value, bool logarithmic) { return logarithmic ? std::log10(value) : value; };
    return reach.contains(
               map.pixel(scaled(m_extent.x.lower, m_filter->isLogX()), scaled(m_extent.y.lower, m_filter->isLogY()))) &&
           reach.contains(
               map.pixel(scaled(m_extent.x.upper, m_filter->isLogX()), scaled(m_extent.y.upper, m_filter->isLogY())));
}

void TracePlottable::build(const Mapping& map, bool everyPoint)
{
    // A point makes at most two pixels: where its line enters the reach, and where it ends.
    m_pixels.resize(m_u.size() * 2);
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
    const bool allWithin = isWithin(map, reach);
    bool hasPrevious = false;
    QPointF previous;
    const auto take = [&](const QPointF& point) {
        if (allWithin) {
            pixels[used++] = point;
            return;
        }
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
    Column column;
    const auto breakLine = [&] {
        column.flush(take);
        endRun();
        hasPrevious = false;
    };
    for (std::size_t i = 0; i < m_u.size(); ++i) {
        if (std::isnan(m_u[i])) {
            breakLine();
            continue;
        }
        const QPointF point = map.pixel(m_u[i], m_v[i]);
        if (everyPoint)
            take(point);
        else
            column.add(point, map.columnsPerPixel, take);
    }
    breakLine();
}

void TracePlottable::draw(QCPPainter* painter)
{
    ++m_drawCount;
    if (!m_filter || m_extent.empty)
        return;
    const bool vector = painter->modes().testFlag(QCPPainter::pmVectorized);
    const double scale = std::hypot(painter->deviceTransform().m11(), painter->deviceTransform().m12());
    const Mapping map = mapping(scale > 0 ? scale : 1);
    if (vector || m_built != map) {
        build(map, vector);
        m_built = vector ? std::nullopt : std::optional(map);
    }
    applyDefaultAntialiasingHint(painter);
    painter->setPen(mPen);
    painter->setBrush(Qt::NoBrush);
    drawRuns(painter, scale);
    if (m_marks != Marks::None)
        drawMarks(painter, map);
}

// A polyline wider than one device pixel is turned into an outline and filled, which takes thirty times as long as a
// polyline of one pixel. On the screen a wide line is therefore painted as a bundle of those, half a pixel apart, and a
// pattern is cut into dashes first.
void TracePlottable::drawRuns(QCPPainter* painter, double scale) const
{
    const double deviceWidth = mPen.widthF() * scale;
    const bool onScreen = !painter->modes().testFlag(QCPPainter::pmNoCaching);
    const bool asBundle = onScreen && deviceWidth > 1.01 && deviceWidth <= kWidestBundle;
    for (const Run& run : m_runs) {
        const QPointF* points = m_pixels.data() + run.start;
        if (run.count == 1) {
            painter->save();
            painter->setPen(QPen(mPen.color(), std::max(2.0, mPen.widthF() * 1.5), Qt::SolidLine, Qt::RoundCap));
            painter->drawPoint(*points);
            painter->restore();
        } else if (asBundle && mPen.style() != Qt::SolidLine) {
            drawDashes(painter, points, run.count, deviceWidth, scale);
        } else if (asBundle) {
            drawBundle(painter, points, run.count, deviceWidth, scale);
        } else {
            painter->drawPolyline(points, static_cast<int>(run.count));
        }
    }
}

void TracePlottable::drawDashes(QCPPainter* painter, const QPointF* points, std::size_t count, double deviceWidth,
                                double scale) const
{
    const QList<qreal> pattern = mPen.dashPattern(); // in widths of the pen, a dash and a gap by turns
    if (pattern.isEmpty())
        return;
    qsizetype element = 0;
    double left = pattern.at(0) * mPen.widthF();
    m_dash.clear();
    m_dash.push_back(points[0]);
    const auto endDash = [&] {
        if (m_dash.size() > 1)
            drawBundle(painter, m_dash.data(), m_dash.size(), deviceWidth, scale);
        m_dash.clear();
    };
    for (std::size_t i = 1; i < count; ++i) {
        const QPointF d = points[i] - points[i - 1];
        const double length = std::hypot(d.x(), d.y());
        double walked = 0;
        while (length - walked > left) {
            walked += left;
            const QPointF turn = points[i - 1] + d * (walked / length);
            if (element % 2 == 0) {
                m_dash.push_back(turn);
                endDash();
            } else {
                m_dash.push_back(turn);
            }
            element = (element + 1) % pattern.size();
            left = std::max(0.5, pattern.at(element) * mPen.widthF());
        }
        left -= length - walked;
        if (element % 2 == 0)
            m_dash.push_back(points[i]);
    }
    endDash();
}

void TracePlottable::drawBundle(QCPPainter* painter, const QPointF* points, std::size_t count, double deviceWidth,
                                double scale) const
{
    QPen hair(mPen.color(), 1);
    hair.setCosmetic(true);
    painter->setPen(hair);
    // Where the line turns, the miter keeps its width; beyond a right angle it would run away.
    constexpr double kLongestMiter = 1.5;
    m_normals.resize(count);
    QPointF before;
    for (std::size_t i = 0; i < count; ++i) {
        QPointF after = before;
        if (i + 1 < count) {
            const QPointF d = points[i + 1] - points[i];
            const double length = std::hypot(d.x(), d.y());
            after = length > 0 ? QPointF(-d.y() / length, d.x() / length) : before;
        }
        if (i == 0)
            before = after;
        const QPointF sum = before + after;
        const double square = QPointF::dotProduct(sum, sum);
        m_normals[i] = square > 0.01 ? sum * std::min(2 / square, kLongestMiter / std::sqrt(square)) : after;
        before = after;
    }
    const int lines = static_cast<int>(std::ceil((deviceWidth - 1) / 0.5)) + 1;
    m_shifted.resize(count);
    for (int line = 0; line < lines; ++line) {
        const double shift = (deviceWidth - 1) * (static_cast<double>(line) / (lines - 1) - 0.5) / scale;
        for (std::size_t i = 0; i < count; ++i)
            m_shifted[i] = points[i] + m_normals[i] * shift;
        painter->drawPolyline(m_shifted.data(), static_cast<int>(count));
    }
    painter->setPen(mPen);
}

void TracePlottable::drawMarks(QCPPainter* painter, const Mapping& map) const
{
    painter->save();
    painter->setPen(QPen(mPen.color(), 1));
    const QRectF area = QRectF(map.area).adjusted(-kSymbolSize, -kSymbolSize, kSymbolSize, kSymbolSize);
    // Symbols of different pens start at different places, so that curves on top of each other show both.
    double untilNext = kSymbolDistance * (m_subset % 10) / 10;
    std::optional<QPointF> previous;
    for (std::size_t i = 0; i < m_u.size(); ++i) {
        if (std::isnan(m_u[i]))
            continue;
        const QPointF point = map.pixel(m_u[i], m_v[i]);
        if (!area.contains(point))
            continue;
        const double distance = previous ? std::hypot(point.x() - previous->x(), point.y() - previous->y()) : 0;
        if (!previous)
            previous = point;
        if (m_marks == Marks::Every ? distance < 1 && previous != point : distance < untilNext)
            continue;
        drawMark(painter, point);
        previous = point;
        untilNext = kSymbolDistance;
    }
    painter->restore();
}

void TracePlottable::drawMark(QCPPainter* painter, const QPointF& position) const
{
    if (m_marks == Marks::Every) {
        const double size = std::max(kMarkSize, mPen.widthF() * 2.5);
        painter->setBrush(mPen.color());
        painter->drawEllipse(position, size / 2, size / 2);
        return;
    }
    QCPScatterStyle symbol(kSymbols[static_cast<std::size_t>(m_subset % 10)], kSymbolSize);
    symbol.setPen(QPen(mPen.color(), std::max(1.0, mPen.widthF())));
    symbol.applyTo(painter, mPen);
    symbol.drawShape(painter, position);
}

void TracePlottable::drawLegendIcon(QCPPainter* painter, const QRectF& rect) const
{
    applyDefaultAntialiasingHint(painter);
    QPen pen = mPen;
    pen.setWidthF(std::max(1.5, mPen.widthF()));
    pen.setCapStyle(Qt::FlatCap);
    painter->setPen(pen);
    const double y = rect.center().y();
    painter->drawLine(QLineF(rect.left(), y, rect.right(), y));
    if (m_marks == Marks::None)
        return;
    painter->save();
    painter->setPen(QPen(mPen.color(), 1));
    drawMark(painter, QPointF(rect.center().x(), y));
    painter->restore();
}

std::optional<QPointF> TracePlottable::pixelOf(int point) const
{
    if (point < 0 || static_cast<std::size_t>(point) >= m_u.size() || std::isnan(m_u[static_cast<std::size_t>(point)]))
        return std::nullopt;
    return mapping(1).pixel(m_u[static_cast<std::size_t>(point)], m_v[static_cast<std::size_t>(point)]);
}

int TracePlottable::nearestPoint(const QPointF& position, double reach, double* distance) const
{
    const Mapping map = mapping(1);
    const QRectF area = QRectF(map.area).adjusted(-1, -1, 1, 1);
    int nearest = -1;
    double best = reach * reach;
    for (std::size_t i = 0; i < m_u.size(); ++i) {
        if (std::isnan(m_u[i]))
            continue;
        const QPointF point = map.pixel(m_u[i], m_v[i]);
        const QPointF d = point - position;
        const double square = QPointF::dotProduct(d, d);
        if (square <= best && area.contains(point)) {
            best = square;
            nearest = static_cast<int>(i);
        }
    }
    if (nearest >= 0 && distance != nullptr)
        *distance = std::sqrt(best);
    return nearest;
}

double TracePlottable::selectTest(const QPointF& pos, bool onlySelectable, QVariant* details) const
{
    double distance = -1;
    const int point = onlySelectable ? -1 : nearestPoint(pos, mParentPlot->selectionTolerance(), &distance);
    if (point >= 0 && details != nullptr)
        details->setValue(point);
    return point >= 0 ? distance : -1;
}

QCPRange TracePlottable::getKeyRange(bool& foundRange, QCP::SignDomain inSignDomain) const
{
    foundRange = !m_extent.empty && inSignDomain != QCP::sdNegative;
    return {m_extent.x.lower, m_extent.x.upper};
}

QCPRange TracePlottable::getValueRange(bool& foundRange, QCP::SignDomain inSignDomain, const QCPRange& inKeyRange) const
{
    Q_UNUSED(inKeyRange)
    foundRange = !m_extent.empty && inSignDomain != QCP::sdNegative;
    return {m_extent.y.lower, m_extent.y.upper};
}
