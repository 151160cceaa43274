// SPDX-License-Identifier: GPL-3.0-or-later
#include "sim/protocol/ModelFacts.h"

namespace sim {

const ModelFacts& ModelFacts::of(Model model)
{
    static const ModelFacts t46{
        Model::T46,
        "T46",
        "T46",
        {"T46", "1 output, 2 pins, 1 input", "0.01 Ohm to 1 MOhm", "-180 to 180 Degrees", "-90 to 10 dB",
         "10 Hz to 50 MHz"},
        10,
        50e6,
        -90,
        10,
        0.01,
        1e6,
        50000,
        true,
        10,
        4,
        false,
    };
    static const ModelFacts dt46{
        Model::DT46,
        "DT46",
        "PELLFERN",
        {"DT46", "1 output, 2 sampling inputs", "0.01 Ohm to 1 MOhm", "-180 to 180 Degrees", "-90 to 10 dB",
         "10 Hz to 5 MHz"},
        10,
        5e6,
        -90,
        10,
        0.01,
        1e6,
        50000,
        false,
        0,
        0,
        true,
    };
    return model == Model::DT46 ? dt46 : t46;
}

} // namespace sim
