// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "sim/protocol/InstrumentConstants.h"
#include "sim/protocol/ModelFacts.h"
#include "sim/protocol/SweepSettings.h"

namespace sim {

enum class TestKind
{
    Amplitude,
    Impedance
};

/// The state that status frames tell of.
struct InstrumentState
{
    const ModelFacts* facts = &ModelFacts::of(Model::T46);
    SweepSettings settings;
    InstrumentConstants constants;
    bool loopback = false;
    int pen = 0;            ///< 1 to 10, for which the host chose the pin; 0 when it has told none
    bool running = false;   ///< a sweep, calibration or diagnosis runs
    bool repeating = false; ///< and it will begin again by itself
    bool idleOutput = true; ///< a signal is put out between tests
    int pointsInTest = 100;
    TestKind lastTest = TestKind::Amplitude;
    int firmwareMajor = 1, firmwareMinor = 28, firmwareBuild = 3, boardVersion = 2;
    bool debugFirmware = false;
};

} // namespace sim
