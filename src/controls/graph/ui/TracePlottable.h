// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/graph/AxisRange.h"
#include "controls/graph/ui/PlotLibrary.h"
#include "controls/graph/ui/TracePixels.h"
#include "controls/graph/ui/WideLine.h"

#include <optional>
#include <vector>

/// One subset of a graph, drawn from the model's arrays in place. The scaled (linear or logarithmic) values are kept
/// until the data changes, their pixels until the view changes. On a screen every pixel column takes at most its first,
/// lowest, highest and last point; vector output gets every point. Points without data break the line; a point alone is
/// a dot.
///
/// The model must outlive the plottable.
class TracePlottable : public QCPAbstractPlottable
{
public:
    TracePlottable(QCPAxis* keyAxis, QCPAxis* valueAxis, const GraphModel& model, int subset);

    enum class Marks
    {
        None,
        Every,
        Symbols
    };
    void setMarks(Marks marks) { m_marks = marks; }

    int subset() const { return m_subset; }
    /// Takes up new data or another filter; true when anything changed.
    bool update(const graph::PointFilter& filter);
    /// Extent of the points drawn, as of the last update.
    const graph::Extent& extent() const { return m_extent; }

    /// Where a point is drawn; nothing for one that is not drawn.
    std::optional<QPointF> pixelOf(int point) const;
    /// The nearest drawn point within the plotting area and reach (pixels), or -1; distance is set when found.
    int nearestPoint(const QPointF& position, double reach, double* distance) const;

    double selectTest(const QPointF& pos, bool onlySelectable, QVariant* details) const override;
    QCPRange getKeyRange(bool& foundRange, QCP::SignDomain inSignDomain) const override;
    QCPRange getValueRange(bool& foundRange, QCP::SignDomain inSignDomain, const QCPRange& inKeyRange) const override;

    /// How often it was drawn.
    std::uint64_t drawCount() const { return m_drawCount; }

protected:
    void draw(QCPPainter* painter) override;
    void drawLegendIcon(QCPPainter* painter, const QRectF& rect) const override;

private:
    TraceMapping mapping(double columnsPerPixel) const;
    void drawLines(QCPPainter* painter, double scale);
    void drawMarks(QCPPainter* painter, const TraceMapping& map) const;
    void drawMark(QCPPainter* painter, const QPointF& position) const;

    const GraphModel& m_model;
    int m_subset;
    Marks m_marks = Marks::None;
    std::optional<graph::PointFilter> m_filter;
    std::uint64_t m_revision = 0;
    graph::Extent m_extent;
    std::vector<double> m_u; ///< scaled X; not a number for a point that is not drawn
    std::vector<double> m_v; ///< scaled Y
    std::optional<TraceMapping> m_built;
    TracePixels m_pixels;
    WideLine m_wideLine;
    std::uint64_t m_drawCount = 0;
};
