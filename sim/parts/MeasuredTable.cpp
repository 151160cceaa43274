// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/parts/MeasuredTable.h"

#include "values/Conversions.h"

#include <QCoreApplication>
#include <QList>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace sim {

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("sim::MeasuredTable", text);
}

char separatorOf(const QByteArray& line)
{
    for (const char separator : {'\t', ';'}) {
        if (line.contains(separator))
            return separator;
    }
    return ',';
}

std::optional<double> cellNumber(QByteArray cell, bool decimalComma)
{
    cell = cell.trimmed();
    if (cell.size() >= 2 && cell.startsWith('"') && cell.endsWith('"'))
        cell = cell.mid(1, cell.size() - 2).trimmed();
    if (decimalComma)
        cell.replace(',', '.');
    const std::optional<double> number =
        values::strictNumber(std::string_view(cell.constData(), static_cast<std::size_t>(cell.size())));
    return number && std::isfinite(*number) ? number : std::nullopt;
}

/// Where the three numbers stand in a line.
struct Columns
{
    qsizetype first = 0;
    double hertz = 1; ///< of one unit of frequency
};

Columns columnsOf(const QList<QByteArray>& headings)
{
    for (qsizetype i = 0; i < headings.size(); ++i) {
        const QByteArray heading = headings[i].toLower();
        if (heading.contains("freq"))
            return {i, heading.contains("khz") ? 1e3 : heading.contains("mhz") ? 1e6 : 1.0};
    }
    return {};
}

} // namespace

MeasuredTable::MeasuredTable(QString name, std::vector<Point> points)
    : m_name(std::move(name))
    , m_points(std::move(points))
{}

ValueOr<MeasuredTable> MeasuredTable::fromCsv(const QByteArray& text, const QString& name)
{
    std::vector<Point> points;
    std::optional<Columns> headings;
    int lineNumber = 0;
    for (QByteArray line : text.split('\n')) {
        ++lineNumber;
        if (lineNumber == 1 && line.startsWith("\xef\xbb\xbf"))
            line.remove(0, 3);
        if (line.trimmed().isEmpty() || line.startsWith('#'))
            continue;
        const char separator = separatorOf(line);
        const QList<QByteArray> cells = line.split(separator);
        const bool decimalComma = separator != ',';
        if (points.empty() && !headings && !cellNumber(cells[0], decimalComma)) {
            headings = columnsOf(cells);
            continue;
        }
        const Columns columns = headings.value_or(Columns());
        std::array<double, 3> numbers{};
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const qsizetype column = columns.first + static_cast<qsizetype>(i);
            const std::optional<double> number =
                column < cells.size() ? cellNumber(cells[column], decimalComma) : std::nullopt;
            if (!number)
                return Outcome::failure(
                    tr("Line %1 of the table lacks one of three numbers: frequency, modulus and phase.")
                        .arg(lineNumber));
            numbers[i] = *number;
        }
        const Point point{numbers[0] * columns.hertz, numbers[1], numbers[2]};
        if (!(point.frequency > 0) || !(point.modulus > 0))
            return Outcome::failure(tr("Line %1 of the table: frequency and modulus must be above 0.").arg(lineNumber));
        points.push_back(point);
    }
    if (points.empty())
        return Outcome::failure(tr("The table holds no points."));
    std::stable_sort(points.begin(), points.end(),
                     [](const Point& first, const Point& second) { return first.frequency < second.frequency; });
    return MeasuredTable(name, std::move(points));
}

std::complex<double> MeasuredTable::impedance(double frequencyHz) const
{
    const auto above =
        std::lower_bound(m_points.begin(), m_points.end(), frequencyHz,
                         [](const Point& point, double frequency) { return point.frequency < frequency; });
    const auto polar = [](double modulus, double degrees) {
        return std::polar(modulus, degrees * std::numbers::pi / 180.0);
    };
    if (above == m_points.end())
        return polar(m_points.back().modulus, m_points.back().phase);
    if (above == m_points.begin() || above->frequency == frequencyHz)
        return polar(above->modulus, above->phase);
    const Point& low = *(above - 1);
    const double share = std::log(frequencyHz / low.frequency) / std::log(above->frequency / low.frequency);
    // Through zero degrees at the far side when that is the shorter way.
    const double turn = std::remainder(above->phase - low.phase, 360.0);
    return polar(low.modulus * std::pow(above->modulus / low.modulus, share), low.phase + turn * share);
}

std::optional<Specimen::Range> MeasuredTable::knownRange() const
{
    return Range{m_points.front().frequency, m_points.back().frequency};
}

} // namespace sim
