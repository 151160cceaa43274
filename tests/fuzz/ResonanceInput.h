// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/ResonanceEngine.h"

#include <cstdint>
#include <cstring>
#include <vector>

/// How bytes become a pen of the analysis engine: a byte of options, then doubles of any bits.
namespace fuzzed {

constexpr std::size_t kMostPoints = 1024; ///< as many as a pen holds

enum Option : std::uint8_t
{
    Polar = 1,  ///< modulus and phase; otherwise R, X, B and G
    Grid = 2,   ///< the frequencies are those of a logarithmic sweep; otherwise doubles too
    Repeat = 4, ///< the doubles are gone through again until the pen is full
};

inline void feed(ResonanceEngine& engine, const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return;
    const std::uint8_t options = data[0];
    std::vector<double> numbers((size - 1) / sizeof(double));
    if (numbers.empty())
        return;
    std::memcpy(numbers.data(), data + 1, numbers.size() * sizeof(double));
    const std::size_t width = ((options & Polar) ? 2 : 4) + ((options & Grid) ? 0 : 1);
    std::size_t next = 0;
    double frequency = 20e3;
    for (std::size_t point = 0; point < kMostPoints; ++point) {
        if (next + width > numbers.size()) {
            if (!(options & Repeat) || numbers.size() < width)
                return;
            next = 0;
        }
        frequency *= 1.0013;
        const double f = (options & Grid) ? frequency : numbers[next++];
        auto index = static_cast<std::int32_t>(point);
        const double* const n = numbers.data() + next;
        if (options & Polar) {
            engine.AnalysisAddPolar(f, n[0], n[1], 0, index);
            next += 2;
        } else {
            engine.AnalysisAddRect(f, n[0], n[1], n[2], n[3], 0, index);
            next += 4;
        }
    }
}

} // namespace fuzzed
