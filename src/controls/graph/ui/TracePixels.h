// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointF>
#include <QRect>

#include <span>
#include <vector>

/// From the scaled (linear or logarithmic) values of a view's axes to its pixels.
struct TraceMapping
{
    double xFactor = 0, xOffset = 0, yFactor = 0, yOffset = 0;
    QRect area;
    double columnsPerPixel = 1; ///< of the device
    bool operator==(const TraceMapping&) const = default;
    QPointF pixel(double u, double v) const { return {u * xFactor + xOffset, v * yFactor + yOffset}; }
};

/// The pixels of one curve in a view: polylines, one for each stretch without a gap. Of a pixel column only its first,
/// lowest, highest and last point are kept, unless every point is wanted. Lines that leave the plotting area by far are
/// cut there.
class TracePixels
{
public:
    /// u, v: scaled values of the same number; a u that is no number makes a gap. extent: all of the values lie in it.
    void build(std::span<const double> u, std::span<const double> v, const QRectF& extent, const TraceMapping& map,
               bool everyPoint);

    std::size_t lines() const { return m_runs.size(); }
    std::span<const QPointF> line(std::size_t i) const
    {
        return std::span(m_pixels).subspan(m_runs[i].start, m_runs[i].count);
    }

private:
    struct Run
    {
        std::size_t start;
        std::size_t count;
    };
    std::vector<QPointF> m_pixels;
    std::vector<Run> m_runs;
};
