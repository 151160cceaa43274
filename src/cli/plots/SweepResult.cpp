// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/plots/SweepResult.h"

#include "document/PenDocument.h"
#include "values/Conversions.h"

#include <QCoreApplication>
#include <QJsonArray>

#include <algorithm>
#include <array>
#include <cmath>

namespace cli {
namespace {

using namespace Qt::StringLiterals;

QString tr(const char* text)
{
    return QCoreApplication::translate("cli", text);
}

struct Quantity
{
    const char* typeName; ///< on the command line and in JSON
    const char* name;     ///< in the line of results
    const char* unit;
};

const Quantity& quantityOf(std::int16_t testType)
{
    static constexpr std::array<Quantity, 4> quantities = {{
        {"unknown", QT_TRANSLATE_NOOP("cli", "value"), ""},
        {"amplitude", QT_TRANSLATE_NOOP("cli", "gain"), "dB"},
        {"impedance", QT_TRANSLATE_NOOP("cli", "impedance"), "Ohm"},
        {"reactance", QT_TRANSLATE_NOOP("cli", "impedance"), "Ohm"},
    }};
    return quantities[testType >= 1 && testType <= 3 ? static_cast<std::size_t>(testType) : 0];
}

QString valueText(const SweepResult& result, double value)
{
    const QString unit = QLatin1String(quantityOf(result.testType).unit);
    if (result.testType == PenDocument::Amplitude)
        return values::decimalText(std::round(value * 100) / 100) + u' ' + unit;
    return engineeringText(value, unit, 4).trimmed();
}

QByteArray tableHeading(const SweepResult& result)
{
    switch (result.testType) {
    case PenDocument::Reactance:
        return "frequency_Hz,reactance_Ohm,resistance_Ohm,susceptance_S,conductance_S";
    case PenDocument::Amplitude:
        return QByteArray("frequency_Hz,gain_dB") + (result.phase ? ",phase_deg" : "");
    case PenDocument::Impedance:
        return QByteArray("frequency_Hz,impedance_Ohm") + (result.phase ? ",phase_deg" : "");
    default:
        return "frequency_Hz,value";
    }
}

QByteArray tableRow(const SweepResult& result, const MeasuredPoint& point)
{
    const auto text = [](float value) { return values::decimalText(value).toLatin1(); };
    QByteArray row = text(point.frequency) + ',' + text(point.value);
    if (result.testType == PenDocument::Reactance)
        row += ',' + text(point.resistance) + ',' + text(point.susceptance) + ',' + text(point.conductance);
    else if (result.phase && result.testType != PenDocument::NoTest)
        row += ',' + text(point.phase);
    return row;
}

} // namespace

QJsonObject extremeObject(const SweepResult& result, const MeasuredPoint& point)
{
    return {{u"frequency"_s, static_cast<double>(point.frequency)}, {u"value"_s, point.modulus(result.testType)}};
}

std::optional<Extremes> extremesOf(const SweepResult& result)
{
    std::optional<Extremes> extremes;
    for (const MeasuredPoint& point : result.points) {
        const double modulus = point.modulus(result.testType);
        if (!std::isfinite(modulus) || !std::isfinite(point.frequency))
            continue;
        if (!extremes)
            extremes = Extremes{point, point};
        if (modulus < extremes->lowest.modulus(result.testType))
            extremes->lowest = point;
        if (modulus >= extremes->highest.modulus(result.testType))
            extremes->highest = point;
    }
    return extremes;
}

std::optional<FrequencyRange> frequencyRangeOf(const SweepResult& result)
{
    std::optional<FrequencyRange> range;
    for (const MeasuredPoint& point : result.points) {
        if (!std::isfinite(point.frequency))
            continue;
        if (!range)
            range = FrequencyRange{point.frequency, point.frequency};
        range->from = std::min(range->from, point.frequency);
        range->to = std::max(range->to, point.frequency);
    }
    return range;
}

QString typeName(std::int16_t testType)
{
    return QLatin1String(quantityOf(testType).typeName);
}

QString unitOf(std::int16_t testType)
{
    return QLatin1String(quantityOf(testType).unit);
}

double MeasuredPoint::modulus(std::int16_t testType) const
{
    return testType == PenDocument::Reactance ? std::hypot(static_cast<double>(value), static_cast<double>(resistance))
                                              : static_cast<double>(value);
}

SweepResult readPen(const PenDocument& document, int pen)
{
    SweepResult result;
    result.testType = document.pgiTestType;
    const GraphModel& graph = document.peGraph();
    const bool reactance = result.testType == PenDocument::Reactance;
    // A point that was lost on the way leaves a gap; what came behind it counts all the same.
    for (int i = 0; i < graph.Points(); ++i) {
        MeasuredPoint point{graph.XData(pen, i), graph.YData(pen, i)};
        if (point.frequency == 0 || point.value == graph::kNullValue)
            continue;
        (reactance ? point.resistance : point.phase) = graph.YData(pen + 30, i);
        if (reactance) {
            point.susceptance = graph.YData(pen + 10, i);
            point.conductance = graph.YData(pen + 20, i);
        }
        result.points.push_back(point);
    }
    return result;
}

QString engineeringText(double value, const QString& unit, int significant)
{
    if (!std::isfinite(value))
        return values::decimalText(value) + u' ' + unit;
    static constexpr std::array<const char*, 9> prefixes = {"p", "n", "u", "m", "", "k", "M", "G", "T"};
    // Rounded first: 999.96 becomes 1 k.
    const double rounded = QString::number(value, 'e', significant - 1).toDouble();
    int exponent = rounded == 0 ? 0 : static_cast<int>(std::floor(std::log10(std::abs(rounded)) / 3 + 1e-12));
    exponent = std::clamp(exponent, -4, 4);
    const double scaled = QString::number(rounded / std::pow(1000.0, exponent), 'g', significant).toDouble();
    const int place = exponent + 4;
    return values::decimalText(scaled) + u' ' + QLatin1String(prefixes[static_cast<std::size_t>(place)]) + unit;
}

QString resultLine(const SweepResult& result)
{
    if (result.points.empty())
        return tr("no points");
    const auto frequency = [](float hertz) { return engineeringText(static_cast<double>(hertz), u"Hz"_s, 6); };
    const std::optional<FrequencyRange> range = frequencyRangeOf(result);
    const std::optional<Extremes> extremes = extremesOf(result);
    const QString count = QString::number(result.points.size());
    if (!range || !extremes)
        return tr("%1 points, none of them a finite number").arg(count);
    return tr("%1 points from %2 to %3, lowest %4 %5 at %6, highest %7 at %8")
        .arg(count, frequency(range->from), frequency(range->to), tr(quantityOf(result.testType).name),
             valueText(result, extremes->lowest.modulus(result.testType)), frequency(extremes->lowest.frequency),
             valueText(result, extremes->highest.modulus(result.testType)), frequency(extremes->highest.frequency));
}

QJsonObject resultObject(const SweepResult& result)
{
    QJsonObject object{{u"type"_s, QLatin1String(quantityOf(result.testType).typeName)},
                       {u"unit"_s, QLatin1String(quantityOf(result.testType).unit)},
                       {u"serial"_s, result.serial},
                       {u"complete"_s, result.complete()}};
    QJsonArray points;
    for (const MeasuredPoint& point : result.points) {
        QJsonArray row{static_cast<double>(point.frequency), static_cast<double>(point.value)};
        if (result.testType == PenDocument::Reactance) {
            row.append(static_cast<double>(point.resistance));
            row.append(static_cast<double>(point.susceptance));
            row.append(static_cast<double>(point.conductance));
        } else if (result.phase) {
            row.append(static_cast<double>(point.phase));
        }
        points.append(row);
    }
    if (const std::optional<Extremes> extremes = extremesOf(result)) {
        object.insert(u"lowest"_s, extremeObject(result, extremes->lowest));
        object.insert(u"highest"_s, extremeObject(result, extremes->highest));
    }
    object.insert(u"points"_s, points);
    return object;
}

QByteArray resultTable(const std::vector<SweepResult>& results)
{
    QByteArray table;
    int sweep = 0;
    for (const SweepResult& result : results) {
        if (++sweep == 1)
            table += "sweep," + tableHeading(result) + '\n';
        for (const MeasuredPoint& point : result.points)
            table += QByteArray::number(sweep) + ',' + tableRow(result, point) + '\n';
    }
    return table;
}

QByteArray pointsTable(const SweepResult& result)
{
    QByteArray table = tableHeading(result) + '\n';
    for (const MeasuredPoint& point : result.points)
        table += tableRow(result, point) + '\n';
    return table;
}

} // namespace cli
