// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/ui/WideLine.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kWidest = 5; // device pixels; beyond it a bundle takes longer than the outline

} // namespace

bool WideLine::takes(const QPen& pen, double scale)
{
    const double width = pen.widthF() * scale;
    return width > 1.01 && width <= kWidest;
}

void WideLine::draw(QPainter* painter, std::span<const QPointF> points, const QPen& pen, double scale)
{
    QPen hair(pen.color(), 1);
    hair.setCosmetic(true);
    painter->setPen(hair);
    if (pen.style() == Qt::SolidLine)
        drawBundle(painter, points, pen.widthF() * scale, scale);
    else
        drawDashes(painter, points, pen, scale);
    painter->setPen(pen);
}

void WideLine::drawDashes(QPainter* painter, std::span<const QPointF> points, const QPen& pen, double scale)
{
    const QList<qreal> pattern = pen.dashPattern(); // in widths of the pen, a dash and a gap by turns
    if (pattern.isEmpty())
        return;
    qsizetype element = 0;
    double left = pattern.at(0) * pen.widthF();
    m_dash.clear();
    m_dash.push_back(points[0]);
    const auto endDash = [&] {
        if (m_dash.size() > 1)
            drawBundle(painter, m_dash, pen.widthF() * scale, scale);
        m_dash.clear();
    };
    for (std::size_t i = 1; i < points.size(); ++i) {
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
            left = std::max(0.5, pattern.at(element) * pen.widthF());
        }
        left -= length - walked;
        if (element % 2 == 0)
            m_dash.push_back(points[i]);
    }
    endDash();
}

void WideLine::drawBundle(QPainter* painter, std::span<const QPointF> points, double deviceWidth, double scale)
{
    const std::size_t count = points.size();
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
}
