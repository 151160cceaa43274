// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

class PenDocument;

namespace cli {

/// One measured point. Frequency in Hz; the quantities are those of the document's four views.
struct MeasuredPoint
{
    float frequency = 0;
    float value = 0;                        ///< gain in dB, modulus of Z in Ohm, or reactance in Ohm
    float phase = 0;                        ///< signed, degrees; of no meaning for a reactance document
    float resistance = 0;                   ///< Ohm; reactance documents only
    float susceptance = 0, conductance = 0; ///< Siemens; reactance documents only

    /// What the extremes of a sweep are told by: the gain, or the modulus of the impedance.
    double modulus(std::int16_t testType) const;
};

/// What a pen of a document holds after its sweep. Unmeasured points do not count.
struct SweepResult
{
    std::int16_t testType = 0; ///< 1 amplitude, 2 impedance, 3 reactance
    bool phase = true;         ///< the phase was measured
    int wanted = 0;            ///< points asked for
    QString serial;            ///< of the instrument
    std::vector<MeasuredPoint> points;

    bool complete() const { return static_cast<int>(points.size()) >= wanted; }
};

/// The points of the lowest and the highest modulus; points that are not finite do not count.
struct Extremes
{
    MeasuredPoint lowest, highest;
};
std::optional<Extremes> extremesOf(const SweepResult& result);

/// Lowest and highest finite frequency in Hz.
struct FrequencyRange
{
    float from = 0, to = 0;
};
std::optional<FrequencyRange> frequencyRangeOf(const SweepResult& result);

/// A sweep as it was asked for, in Hz.
struct AskedSweep
{
    double from = 0, to = 0; ///< from is below to
    int points = 0;
    bool down = false; ///< measured from the upper end
};
/// A sentence on what the instrument did otherwise: swept is the range that it told at the start, the order of its two
/// ends without meaning. Empty when a complete sweep is the one asked for.
QString differenceFrom(const AskedSweep& asked, const FrequencyRange& swept, const SweepResult& result);

/// "amplitude", "impedance", "reactance"; "unknown" for any other type.
QString typeName(std::int16_t testType);
/// "dB" or "Ohm"; empty for an unknown type.
QString unitOf(std::int16_t testType);

/// Reads the pen (0 to 9) of a document.
SweepResult readPen(const PenDocument& document, int pen);

/// "1024 points from 38 kHz to 42 kHz, lowest impedance 24.1 Ohm at 39.982 kHz, highest 41.7 kOhm at 41.12 kHz".
QString resultLine(const SweepResult& result);
/// The same and every point, for other programs.
QJsonObject resultObject(const SweepResult& result);
/// Table with a heading, values separated by commas, "." as decimal point; sweeps below one another, numbered in the
/// first column.
QByteArray resultTable(const std::vector<SweepResult>& results);
/// The same of one pen, without that column.
QByteArray pointsTable(const SweepResult& result);
/// {"frequency": Hz, "value": modulus}
QJsonObject extremeObject(const SweepResult& result, const MeasuredPoint& point);

} // namespace cli
