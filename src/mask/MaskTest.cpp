// SPDX-License-Identifier: GPL-3.0-or-later
#include "mask/MaskTest.h"

#include "document/content/GraphScope.h"
#include "document/content/GraphTexts.h"
#include "document/content/Pens.h"

#include <cmath>

namespace mask {

bool isOn(const GraphModel& graph, Qt::CaseSensitivity cs)
{
    const auto& cells = graph.properties().tables[graphtexts::kMaskTable].cells;
    return !cells.empty() && cells.front().TAText.compare(graphtexts::kMask, cs) == 0;
}

} // namespace mask

using mask::kNone;

namespace {

bool isLogarithmic(GraphModel& graph)
{
    const AxisScope scope(graph, 0);
    return graph.YAxisScaleControl() == graph::ScaleLogarithmic;
}

} // namespace

MaskTest::MaskTest(GraphModel& graph)
    : m_graph(graph)
    , m_xIsLogarithmic(graph.XAxisScaleControl() == graph::ScaleLogarithmic)
    , m_yIsLogarithmic(isLogarithmic(graph))
{}

bool MaskTest::maskCheckOrder(int pen) const
{
    double previous = 0;
    for (int i = 0; i < mask::kPoints; ++i) {
        if (m_graph.YData(pen, i) == kNone)
            continue;
        const double frequency = m_graph.XData(pen, i);
        if (!(frequency > previous))
            return false;
        previous = frequency;
    }
    return true;
}

bool MaskTest::maskCheckBothOrders() const
{
    const bool lower = maskCheckOrder(mask::kLower);
    const bool upper = maskCheckOrder(mask::kUpper);
    return lower && upper;
}

double MaskTest::maskLimitAt(double x, int pen) const
{
    int i = 0;
    while (i < mask::kPoints && !(m_graph.XData(pen, i) >= x))
        ++i;
    // Behind the last point lies an unset one.
    if (i == mask::kPoints)
        return kNone;
    const double at = m_graph.XData(pen, i);
    const double y = m_graph.YData(pen, i);
    if (at == x)
        return y;
    if (i == 0 || y == kNone)
        return kNone;
    const double yBefore = m_graph.YData(pen, i - 1);
    if (yBefore == kNone)
        return kNone;
    return interpolated(x, m_graph.XData(pen, i - 1), yBefore, at, y);
}

double MaskTest::interpolated(double x, double before, double yBefore, double at, double yAt) const
{
    double t = 0;
    if (m_xIsLogarithmic) {
        // A frequency of 0 has no place on such an axis; its logarithm would be an infinity that cancels out below.
        if (!(before > 0) || !(x > 0))
            return kNone;
        const auto logAt = std::log(static_cast<long double>(at));
        t = static_cast<double>((logAt - std::log(static_cast<long double>(x))) /
                                (logAt - std::log(static_cast<long double>(before))));
    } else {
        t = (at - x) / (at - before);
    }
    const double u = 1.0 - t;
    const double limit = m_yIsLogarithmic ? std::pow(yAt, u) * std::pow(yBefore, t) : u * yAt + t * yBefore;
    return std::isfinite(limit) ? limit : kNone;
}

bool MaskTest::maskPointInside(double x, double y) const
{
    const double upper = maskLimitAt(x, mask::kUpper);
    if (upper != kNone && upper < y)
        return false;
    const double lower = maskLimitAt(x, mask::kLower);
    return lower == kNone || lower <= y;
}

bool MaskTest::maskPenInside(int pen, bool& hasData) const
{
    hasData = false;
    for (int i = 0; i < m_graph.Points() && Pens::isPen(pen); ++i) {
        const double y = m_graph.YData(pen, i);
        if (y == kNone)
            break;
        hasData = true;
        if (!maskPointInside(m_graph.XData(pen, i), y))
            return false;
    }
    return true;
}

std::optional<WorstMaskPoint> MaskTest::worstPoint(int pen) const
{
    std::optional<WorstMaskPoint> worst;
    for (int i = 0; i < m_graph.Points() && Pens::isPen(pen); ++i) {
        const double y = m_graph.YData(pen, i);
        if (y == kNone)
            break;
        const double x = m_graph.XData(pen, i);
        for (const int line : {mask::kUpper, mask::kLower}) {
            const double limit = maskLimitAt(x, line);
            if (limit == kNone)
                continue;
            const double margin = line == mask::kUpper ? limit - y : y - limit;
            if (!worst || margin < worst->margin)
                worst = {i, x, y, limit, margin, line};
        }
    }
    return worst;
}
