// SPDX-License-Identifier: GPL-3.0-or-later
// Part files from anywhere: refused with a sentence, or a part that has a finite impedance at every frequency.
#include "sim/parts/PartFile.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const ValueOr<sim::PartModel> part = sim::partfile::fromJson(text);
    if (!part) {
        if (part.sentence().isEmpty())
            std::abort();
        return 0;
    }
    for (const double frequency : {10.0, 32768.0, 40000.0, 1e6, 50e6}) {
        const double modulus = std::abs(part.value().impedance(frequency));
        if (!std::isfinite(modulus) || modulus <= 0)
            std::abort();
    }
    for (const sim::MotionalBranch& branch : part.value().branches()) {
        const double resonance = branch.seriesResonance();
        if (resonance > 0 && !std::isfinite(std::abs(part.value().impedance(resonance))))
            std::abort();
    }
    return 0;
}
