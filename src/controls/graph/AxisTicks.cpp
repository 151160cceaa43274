// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/graph/AxisTicks.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <cmath>

namespace graph {
namespace {

constexpr int kMaxTicks = 200;

// "p n u m k M G T ": the prefix of 10^-12 stands at 0, each next one three powers of ten on; 10^0 has none.
QString prefixOf(int exponent, const QString& prefixes)
{
    if (exponent == 0)
        return QString();
    const int index = 2 * (exponent < 0 ? exponent / 3 + 4 : exponent / 3 + 3);
    if (index < 0 || index >= prefixes.size() || prefixes.at(index).isSpace())
        return QString();
    return prefixes.at(index) == QLatin1Char('u') ? QStringLiteral("\u00B5") : QString(prefixes.at(index));
}

// The power of ten, a multiple of three for which a prefix exists, that leaves at least 1 before the point.
int engineeringExponent(double value, const QString& prefixes)
{
    if (value == 0 || prefixes.isEmpty() || !std::isfinite(value))
        return 0;
    const double magnitude = std::log10(std::abs(value));
    int exponent = 3 * static_cast<int>(std::floor((magnitude + 1e-9) / 3));
    exponent = std::clamp(exponent, -12, 12);
    while (exponent != 0 && prefixOf(exponent, prefixes).isEmpty())
        exponent += exponent < 0 ? 3 : -3;
    return exponent;
}

QString withMinusSign(QString text)
{
    if (text.startsWith(QLatin1Char('-')))
        text[0] = QChar(0x2212);
    return text;
}

QString fixedText(double value, int decimals)
{
    return withMinusSign(QLocale::c().toString(value == 0 ? 0.0 : value, 'f', std::clamp(decimals, 0, 12)));
}

// Decimals that tell two ticks a step apart.
int decimalsOf(double step)
{
    return std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
}

QString tickLabel(double tick, double step, int exponent, const QString& prefixes)
{
    if (tick == 0)
        return QStringLiteral("0");
    const double scale = std::pow(10.0, exponent);
    const double scaledStep = step / scale;
    if (prefixes.isEmpty() && (std::abs(tick) >= 1e6 || std::abs(step) < 1e-5))
        return withMinusSign(QLocale::c().toString(tick, 'g', 6));
    return fixedText(tick / scale, decimalsOf(scaledStep)) + prefixOf(exponent, prefixes);
}

double snapped(double tick, double step)
{
    return std::abs(tick) < step * 1e-6 ? 0 : tick;
}

std::vector<double> multiples(const Range& range, double step)
{
    std::vector<double> ticks;
    const double slack = step * 1e-6;
    const double first = std::ceil((range.lower - slack) / step);
    for (int i = 0; i < kMaxTicks; ++i) {
        const double tick = (first + i) * step;
        if (tick > range.upper + slack)
            break;
        ticks.push_back(snapped(tick, step));
    }
    return ticks;
}

// How many parts a step is divided into by minor ticks.
int divisions(double step, bool degrees)
{
    if (degrees) {
        if (step >= 30)
            return 3;
        if (step == 15)
            return 3;
    }
    const double mantissa = step / std::pow(10.0, std::floor(std::log10(step) + 1e-9));
    return mantissa > 1.5 && mantissa < 3 ? 4 : 5;
}

void addLogLabels(AxisTicks& ticks, double step, const QString& prefixes)
{
    for (const double tick : ticks.major) {
        const int exponent = engineeringExponent(tick, prefixes);
        ticks.labels.push_back(tickLabel(tick, step > 0 ? step : tick, exponent, prefixes));
    }
}

} // namespace

QString unitOf(const QString& title)
{
    const int dash = static_cast<int>(title.lastIndexOf(QLatin1String(" - ")));
    return dash < 0 ? QString() : title.mid(dash + 3).trimmed();
}

bool takesPrefix(const QString& unit)
{
    return unit.compare(QLatin1String("dB"), Qt::CaseInsensitive) != 0 &&
           !unit.startsWith(QLatin1String("Deg"), Qt::CaseInsensitive);
}

double niceStep(double step, bool degrees)
{
    if (!(step > 0) || !std::isfinite(step))
        return 1;
    if (degrees && step > 5) {
        for (const double nice : {10.0, 15.0, 30.0, 45.0, 90.0, 180.0, 360.0}) {
            if (nice >= step * (1 - 1e-9))
                return nice;
        }
    }
    const double power = std::pow(10.0, std::floor(std::log10(step)));
    for (const double mantissa : {1.0, 2.0, 5.0}) {
        if (mantissa * power >= step * (1 - 1e-9))
            return mantissa * power;
    }
    return 10 * power;
}

AxisTicks linearTicks(const Range& range, const TickStyle& style)
{
    AxisTicks ticks;
    const double span = range.upper - range.lower;
    if (!(span > 0) || !std::isfinite(span))
        return ticks;
    const double step = niceStep(span / std::max(1, style.wanted), style.degrees);
    ticks.major = multiples(range, step);
    const int exponent = engineeringExponent(std::max(std::abs(range.lower), std::abs(range.upper)), style.prefixes);
    for (const double tick : ticks.major)
        ticks.labels.push_back(tickLabel(tick, step, exponent, style.prefixes));
    for (const double tick : multiples(range, step / divisions(step, style.degrees))) {
        const double nearest = std::round(tick / step) * step;
        if (std::abs(tick - nearest) > step * 1e-3)
            ticks.minor.push_back(tick);
    }
    return ticks;
}

AxisTicks logarithmicTicks(const Range& range, const TickStyle& style)
{
    AxisTicks ticks;
    if (!(range.lower > 0) || !(range.upper > range.lower))
        return ticks;
    const double decades = std::log10(range.upper / range.lower);
    if (decades < 0.8) {
        ticks = linearTicks(range, style);
        return ticks;
    }
    const int first = static_cast<int>(std::floor(std::log10(range.lower) - 1e-9));
    const int last = static_cast<int>(std::ceil(std::log10(range.upper) + 1e-9));
    const int wanted = std::max(1, style.wanted);
    const int stride = std::max(1, static_cast<int>(std::ceil((last - first) / (1.5 * wanted))));
    const bool labelAll = decades * 3 <= 1.5 * wanted;
    const bool allDigits = style.length / decades * std::log10(10.0 / 9.0) >= kLeastTickDistance;
    const auto isInside = [&range](double tick) {
        return tick >= range.lower * (1 - 1e-9) && tick <= range.upper * (1 + 1e-9);
    };
    for (int exponent = first; exponent <= last; ++exponent) {
        const double decade = std::pow(10.0, exponent);
        const bool labelled = ((exponent % stride) + stride) % stride == 0;
        if (isInside(decade))
            (labelled ? ticks.major : ticks.minor).push_back(decade);
        for (int digit = 2; stride == 1 && digit <= 9; ++digit) {
            const bool thinned = !allDigits && digit != 2 && digit != 3 && digit != 5;
            if (thinned || !isInside(digit * decade))
                continue;
            const bool major = labelAll && (digit == 2 || digit == 5);
            (major ? ticks.major : ticks.minor).push_back(digit * decade);
        }
    }
    addLogLabels(ticks, 0, style.prefixes);
    return ticks;
}

} // namespace graph
