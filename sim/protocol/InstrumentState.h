// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

#include <array>
#include <vector>

namespace sim {

enum class Model
{
    T46,
    DT46
};
enum class TestKind
{
    Amplitude,
    Impedance
};

/// What differs between the models and never changes in one of them.
struct ModelFacts
{
    Model model;
    const char* name;      ///< for people and serial numbers
    const char* modelText; ///< slot 6 of frame "l": what the host takes for the model
    std::array<const char*, 6>
        information; ///< slots 0 to 5: hardware, inputs and outputs, impedance, phase, amplitude, frequency range
    double minFrequency, maxFrequency; ///< Hz
    double minLevel, maxLevel;         ///< dB
    double minImpedance, maxImpedance; ///< Ohm
    double maxReactance;               ///< Ohm, either sign
    bool hasAttenuator;
    double attenuationStep; ///< dB
    int attenuationSteps;   ///< highest attenuator code
    bool samples;           ///< averages a settable number of samples

    static const ModelFacts& of(Model model);
};

inline constexpr int kMostPoints = 1024;
inline constexpr int kMostSamples = 1024;
inline constexpr int kHighestTrimCode = 255;
inline constexpr int kCalibrationPoints = 512;

/// What the host sets before a test. Frequencies in Hz.
struct SweepSettings
{
    double startFrequency = 1000;
    double endFrequency = 1000000;
    double spotFrequency = 1000;
    double idleFrequency = -1; ///< output between tests: 0 off, -1 the start frequency, else Hz
    int points = 100;          ///< 1 to kMostPoints
    int period = 0;            ///< ms a point, 0 to 32767
    int attenuation = 0;       ///< attenuator code
    bool repeat = false;
    int sweepMode = 2; ///< 0 A to B, 1 B to A, 2 alternate
    bool phase = true;
    bool linear = false; ///< points spaced evenly by frequency instead of by its logarithm
    int samples = 16;    ///< averaged a point, 1 to kMostSamples
    int pin = 1;         ///< output pin, 1 or 2

    bool operator==(const SweepSettings&) const = default;
};

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

/// What survives switching off.
struct KeptMemory
{
    Model model = Model::T46;
    SweepSettings settings;
    InstrumentConstants constants;
    QByteArray script;

    bool operator==(const KeptMemory&) const = default;
};

/// The state that status frames tell of.
struct InstrumentState
{
    const ModelFacts* facts = &ModelFacts::of(Model::T46);
    SweepSettings settings;
    InstrumentConstants constants;
    bool loopback = false;
    bool running = false;   ///< a sweep, calibration or diagnosis runs
    bool repeating = false; ///< and it will begin again by itself
    bool idleOutput = true; ///< a signal is put out between tests
    int pointsInTest = 100;
    TestKind lastTest = TestKind::Amplitude;
    int firmwareMajor = 1, firmwareMinor = 28, firmwareBuild = 3, boardVersion = 2;
    bool debugFirmware = false;
};

} // namespace sim
