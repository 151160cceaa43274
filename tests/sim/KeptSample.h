// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/sim/SimBench.h"

/// A memory in which nothing stands at its default.
inline sim::KeptMemory keptSample()
{
    SimBench bench([](sim::Instrument::Setup& setup) { setup.model = sim::Model::DT46; });
    for (const char* command : {"startfreq 12345.678", "points 77", "repeat 1", "phase 0", "linear 1", "samples 3",
                                "idlefreq 0", "setpin 21", "setvref 9 0", "calon 0"})
        bench.ask(command);
    bench.ask(std::string("loadscript 5\ra\0\r\xff.", 18));
    bench.ask("save");
    return *bench.kept;
}
