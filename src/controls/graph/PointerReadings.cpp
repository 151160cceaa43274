// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/PointerReadings.h"

#include "controls/graph/AxisRange.h"
#include "controls/graph/AxisTicks.h"
#include "values/EngineeringText.h"

#include <algorithm>
#include <cmath>

namespace graph {
namespace {

struct Nearest
{
    int point = -1;
    double distance = 0; ///< on the axis as it is scaled
    bool hasBelow = false, hasAbove = false;
};

Nearest nearestPoint(const GraphModel& model, int subset, double place)
{
    const PointFilter filter(model.shownProperties(), subset);
    const std::span<const float> xs = model.xArray(subset);
    const std::span<const float> ys = model.yArray(subset);
    // Ratios order as their logarithms do, and cost no logarithm for each point.
    const auto distanceTo = [&](double x) {
        return filter.isLogX() ? std::max(x / place, place / x) : std::abs(x - place);
    };
    Nearest nearest;
    for (std::size_t i = 0; i < xs.size(); ++i) {
        if (!filter.isDrawn(xs[i], ys[i]))
            continue;
        const double distance = distanceTo(xs[i]);
        (xs[i] < place ? nearest.hasBelow : nearest.hasAbove) = true;
        if (nearest.point < 0 || distance < nearest.distance) {
            nearest.point = static_cast<int>(i);
            nearest.distance = distance;
        }
    }
    if (nearest.point >= 0 && filter.isLogX())
        nearest.distance = std::log10(nearest.distance);
    return nearest;
}

QString valueText(double value, const QString& unit)
{
    if (takesPrefix(unit))
        return values::engineeringText(value, unit, kReadingDigits);
    const QString number = QString::number(value, 'g', kReadingDigits);
    return unit.isEmpty() ? number : number + u' ' + unit;
}

} // namespace

QString PointerReadings::toText() const
{
    QString text = xText;
    for (const PenReading& pen : pens) {
        text += u'\n' + pen.name;
        for (const CurveReading& curve : pen.curves)
            text += u'\t' + curve.text;
        if (!pen.xText.isEmpty())
            text += u'\t' + pen.xText;
    }
    return text;
}

std::optional<PointerReadings> readingsAt(const GraphModel& model, const std::vector<int>& drawn, double x, double span,
                                          double reach)
{
    const Properties& properties = model.shownProperties();
    const QString xUnit = unitOf(properties.XAxisLabel);
    const bool logarithmic = properties.XAxisScaleControl == ScaleLogarithmic;
    if (!std::isfinite(x) || (logarithmic && !(x > 0)))
        return std::nullopt;
    PointerReadings readings;
    std::optional<double> nearestOfAll;
    std::vector<int> subsets = drawn;
    // Pen by pen, and of a pen in the order of the axes.
    std::stable_sort(subsets.begin(), subsets.end(), [](int a, int b) {
        return a % kSubsetsOfAxis != b % kSubsetsOfAxis ? a % kSubsetsOfAxis < b % kSubsetsOfAxis : a < b;
    });
    int pen = -1;
    for (const int subset : subsets) {
        const Nearest nearest = nearestPoint(model, subset, x);
        if (nearest.point < 0)
            continue;
        const bool between = nearest.hasBelow && nearest.hasAbove;
        if (!between && nearest.distance > reach * span)
            continue;
        CurveReading reading;
        reading.subset = subset;
        reading.point = nearest.point;
        reading.x = static_cast<double>(model.XData(subset, nearest.point));
        reading.y = static_cast<double>(model.YData(subset, nearest.point));
        reading.text =
            valueText(reading.y, unitOf(properties.yAxes[static_cast<std::size_t>(yAxisOf(subset))].YAxisLabel));
        if (!nearestOfAll || nearest.distance < *nearestOfAll) {
            nearestOfAll = nearest.distance;
            readings.x = reading.x;
        }
        if (subset % kSubsetsOfAxis != pen) {
            pen = subset % kSubsetsOfAxis;
            readings.pens.push_back({properties.SubsetLabels[static_cast<std::size_t>(subset)], {}, {}});
        }
        readings.pens.back().curves.push_back(reading);
    }
    if (readings.pens.empty())
        return std::nullopt;
    readings.xText = valueText(readings.x, xUnit);
    for (PenReading& entry : readings.pens) {
        const double own = entry.curves.front().x;
        if (own != readings.x)
            entry.xText = valueText(own, xUnit);
    }
    return readings;
}

} // namespace graph
