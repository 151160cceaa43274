#include "cli/SweepResult.h"

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
    static constexpr std::array<Quantity, 3> quantities = {{
        {"amplitude", QT_TRANSLATE_NOOP("cli", "gain"), "dB"},
        {"impedance", QT_TRANSLATE_NOOP("cli", "impedance"), "Ohm"},
        {"reactance", QT_TRANSLATE_NOOP("cli", "impedance"), "Ohm"},
    }};
    return quantities[static_cast<std::size_t>(std::clamp<std::int16_t>(testType, 1, 3) - 1)];
}

QString valueText(const SweepResult& result, double value)
{
    const QString unit = QLatin1String(quantityOf(result.testType).unit);
    if (result.testType == PenDocument::Amplitude)
        return values::decimalText(std::round(value * 100) / 100) + u' ' + unit;
    return engineeringText(value, unit, 4);
}

struct Extremes
{
    const MeasuredPoint* lowest;
    const MeasuredPoint* highest;
};

Extremes extremesOf(const SweepResult& result)
{
    const auto [lowest, highest] =
        std::minmax_element(result.points.begin(), result.points.end(), [&result](const auto& a, const auto& b) {
            return a.modulus(result.testType) < b.modulus(result.testType);
        });
    return {&*lowest, &*highest};
}

QJsonObject extremeObject(const SweepResult& result, const MeasuredPoint& point)
{
    return {{u"frequency"_s, static_cast<double>(point.frequency)}, {u"value"_s, point.modulus(result.testType)}};
}

} // namespace

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
    return values::decimalText(scaled) + u' ' + QLatin1String(prefixes[static_cast<std::size_t>(exponent + 4)]) + unit;
}

QString resultLine(const SweepResult& result)
{
    if (result.points.empty())
        return tr("no points");
    const auto frequency = [](const MeasuredPoint& point) {
        return engineeringText(static_cast<double>(point.frequency), u"Hz"_s, 6);
    };
    const auto [first, last] =
        std::minmax_element(result.points.begin(), result.points.end(),
                            [](const auto& a, const auto& b) { return a.frequency < b.frequency; });
    const auto [lowest, highest] = extremesOf(result);
    return tr("%1 points from %2 to %3, lowest %4 %5 at %6, highest %7 at %8")
        .arg(QString::number(result.points.size()), frequency(*first), frequency(*last),
             tr(quantityOf(result.testType).name), valueText(result, lowest->modulus(result.testType)),
             frequency(*lowest), valueText(result, highest->modulus(result.testType)), frequency(*highest));
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
    if (!result.points.empty()) {
        const auto [lowest, highest] = extremesOf(result);
        object.insert(u"lowest"_s, extremeObject(result, *lowest));
        object.insert(u"highest"_s, extremeObject(result, *highest));
    }
    object.insert(u"points"_s, points);
    return object;
}

QByteArray resultTable(const std::vector<SweepResult>& results)
{
    QByteArray table;
    int sweep = 0;
    for (const SweepResult& result : results) {
        const bool reactance = result.testType == PenDocument::Reactance;
        if (++sweep == 1) {
            table += "sweep,frequency_Hz,";
            if (reactance)
                table += "reactance_Ohm,resistance_Ohm,susceptance_S,conductance_S";
            else
                table += result.testType == PenDocument::Amplitude ? "gain_dB" : "impedance_Ohm";
            table += !reactance && result.phase ? ",phase_deg\n" : "\n";
        }
        for (const MeasuredPoint& point : result.points) {
            table += QByteArray::number(sweep);
            const auto append = [&table](float value) { table += ',' + values::decimalText(value).toLatin1(); };
            append(point.frequency);
            append(point.value);
            if (reactance) {
                append(point.resistance);
                append(point.susceptance);
                append(point.conductance);
            } else if (result.phase) {
                append(point.phase);
            }
            table += '\n';
        }
    }
    return table;
}

} // namespace cli
