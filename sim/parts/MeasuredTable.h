// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/parts/Specimen.h"
#include "values/Outcome.h"

#include <QByteArray>

#include <vector>

namespace sim {

/// A part that somebody has measured: modulus and phase at some frequencies, and in between along straight lines in the
/// logarithms of frequency and modulus (phase: straight over the logarithm of frequency). Beyond the ends the last
/// point holds.
class MeasuredTable : public Specimen
{
public:
    static constexpr qint64 kLongestFile = 16 * 1024 * 1024;

    struct Point
    {
        double frequency; ///< Hz
        double modulus;   ///< Ohm
        double phase;     ///< degrees
    };

    /// From a table as laboratories have them: a line a point, columns frequency (Hz), modulus (Ohm) and phase
    /// (degrees) in this order, further columns ignored; separated by tab, semicolon or comma; with tab or semicolon
    /// the decimal point may be a comma. One line of headings, lines that begin with "#" and empty lines are passed
    /// over; the order of the lines is free. The sentence of a failure names the line.
    static ValueOr<MeasuredTable> fromCsv(const QByteArray& text, const QString& name);

    std::complex<double> impedance(double frequencyHz) const override;
    /// From the first point to the last.
    std::optional<Range> knownRange() const override;
    QString name() const override { return m_name; }
    /// By rising frequency.
    const std::vector<Point>& points() const { return m_points; }

private:
    MeasuredTable(QString name, std::vector<Point> points);

    QString m_name;
    std::vector<Point> m_points;
};

} // namespace sim
