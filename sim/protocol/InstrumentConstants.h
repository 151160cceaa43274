// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <vector>

namespace sim {

inline constexpr int kHighestTrimCode = 255;
inline constexpr int kCalibrationPoints = 512;

/// Amplitude calibration: how far the detector reads off, in dB, at kCalibrationPoints frequencies spaced evenly by
/// their logarithm over the model's range.
struct Calibration
{
    bool valid = false;
    QByteArray stamp;              ///< "CAL-hhmmssddmmyyyy" as the host gave it, or "CAL-FACTORY"
    std::vector<double> deviation; ///< kCalibrationPoints entries when valid

    bool operator==(const Calibration&) const = default;
};

/// What makes this very instrument: set in its works or by its engineering functions.
struct InstrumentConstants
{
    QByteArray serial;
    int vrefCode = 128; ///< 0 to kHighestTrimCode
    int vdutCode = 128;
    double frequencyCompensation = 1000000; ///< measured frequency at 1 MHz, Hz
    double calibrationOffset = 0;           ///< dB
    double calibrationSlope = 1;
    bool applyCalibration = true;
    Calibration calibration;

    bool operator==(const InstrumentConstants&) const = default;
};

} // namespace sim
