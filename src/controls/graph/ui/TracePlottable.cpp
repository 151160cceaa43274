// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/TracePlottable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr double kNotDrawn = std::numeric_limits<double>::quiet_NaN();
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

double scaled(double value, bool logarithmic)
{
    return logarithmic ? std::log10(value) : value;
}

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

TraceMapping TracePlottable::mapping(double columnsPerPixel) const
{
    TraceMapping map;
    const QCPAxis* x = keyAxis();
    const QCPAxis* y = valueAxis();
    if (x == nullptr || y == nullptr || !m_filter)
        return map;
    map.area = x->axisRect()->rect();
    map.columnsPerPixel = columnsPerPixel;
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

void TracePlottable::draw(QCPPainter* painter)
{
    ++m_drawCount;
    if (!m_filter || m_extent.empty)
        return;
    const bool vector = painter->modes().testFlag(QCPPainter::pmVectorized);
    const double scale = std::hypot(painter->deviceTransform().m11(), painter->deviceTransform().m12());
    const TraceMapping map = mapping(scale > 0 ? scale : 1);
    if (vector || m_built != map) {
        const QPointF least(scaled(m_extent.x.lower, m_filter->isLogX()), scaled(m_extent.y.lower, m_filter->isLogY()));
        const QPointF most(scaled(m_extent.x.upper, m_filter->isLogX()), scaled(m_extent.y.upper, m_filter->isLogY()));
        m_pixels.build(m_u, m_v, QRectF(least, most), map, vector);
        m_built = vector ? std::nullopt : std::optional(map);
    }
    applyDefaultAntialiasingHint(painter);
    painter->setPen(mPen);
    painter->setBrush(Qt::NoBrush);
    drawLines(painter, scale);
    if (m_marks != Marks::None)
        drawMarks(painter, map);
}

// Pictures and prints take the real stroke.
void TracePlottable::drawLines(QCPPainter* painter, double scale)
{
    const bool onScreen = !painter->modes().testFlag(QCPPainter::pmNoCaching);
    const bool isWide = onScreen && WideLine::takes(mPen, scale);
    for (std::size_t i = 0; i < m_pixels.lines(); ++i) {
        const std::span<const QPointF> line = m_pixels.line(i);
        if (line.size() == 1) {
            painter->save();
            painter->setPen(QPen(mPen.color(), std::max(2.0, mPen.widthF() * 1.5), Qt::SolidLine, Qt::RoundCap));
            painter->drawPoint(line.front());
            painter->restore();
        } else if (isWide) {
            m_wideLine.draw(painter, line, mPen, scale);
        } else {
            painter->drawPolyline(line.data(), static_cast<int>(line.size()));
        }
    }
}

void TracePlottable::drawMarks(QCPPainter* painter, const TraceMapping& map) const
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
    const TraceMapping map = mapping(1);
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
