// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>

#include <span>
#include <vector>

/// Lines and areas cut to what a file with 16-bit coordinates can hold, and lines broken into dashes, which such files
/// cannot hold for wide pens.
namespace metafile {

using Line = std::vector<QPointF>;

/// The parts of a line that lie in the area, at least two points each. A point that is not finite interrupts the line.
std::vector<Line> clippedLine(std::span<const QPointF> line, const QRectF& area);

/// The part of a polygon that lies in the area, empty where there is none or where a point is not finite. What leaves
/// the area and comes back runs along its border.
QPolygonF clippedPolygon(const QPolygonF& polygon, const QRectF& area);

/// The dashes of a line. The pattern is dash, gap, dash, gap ... in units of the line, the offset where in it the line
/// begins. A pattern without length gives the line itself.
std::vector<Line> dashed(const Line& line, const QList<double>& pattern, double offset);

} // namespace metafile
