// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

namespace sim {

enum class Model
{
    T46,
    DT46
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

} // namespace sim
