// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPen>
#include <QPointF>

#include <span>
#include <vector>

class QPainter;

/// Paints polylines wider than one device pixel, or broken ones, on a screen. The painter would turn each into an
/// outline and fill it, which takes thirty times as long as a polyline of one pixel; here it becomes a bundle of those,
/// half a pixel apart, and a pattern is cut into dashes first.
class WideLine
{
public:
    /// Whether a line of such a pen is for this class. scale: device pixels for a unit of the pen's width.
    static bool takes(const QPen& pen, double scale);

    /// The painter's pen is the line's again afterwards.
    void draw(QPainter* painter, std::span<const QPointF> points, const QPen& pen, double scale);

private:
    void drawDashes(QPainter* painter, std::span<const QPointF> points, const QPen& pen, double scale);
    void drawBundle(QPainter* painter, std::span<const QPointF> points, double deviceWidth, double scale);

    std::vector<QPointF> m_normals;
    std::vector<QPointF> m_shifted;
    std::vector<QPointF> m_dash;
};
