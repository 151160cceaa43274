// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine promises whatever it is fed: an end in bounded time, finite figures, no memory taken on the way.
#include "controls/resonance/ResonanceEngine.h"
#include "controls/resonance/SyntheticPart.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

namespace {

std::atomic<long> allocations = 0;

void* counted(std::size_t size)
{
    ++allocations;
    void* const memory = std::malloc(size == 0 ? 1 : size);
    if (!memory)
        std::abort();
    return memory;
}

} // namespace

void* operator new(std::size_t size)
{
    return counted(size);
}
void* operator new[](std::size_t size)
{
    return counted(size);
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

using namespace synthetic;

namespace {

constexpr int kPoints = 1024;

void feed(ResonanceEngine& engine, std::int32_t pen, const std::vector<resonance::Sample>& samples)
{
    std::int32_t index = 0;
    for (const resonance::Sample& sample : samples) {
        engine.AnalysisAddRect(sample.frequency, 0, 0, sample.susceptance, sample.conductance, pen, index);
        ++index;
    }
}

/// Sweeps that no part gives: many peaks, close peaks, steps, spikes, plateaus, wild numbers.
std::vector<resonance::Sample> wild(unsigned seed)
{
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> uniform;
    std::normal_distribution<double> normal;
    std::vector<resonance::Sample> samples;
    const unsigned kind = seed % 8;
    Part part;
    part.arms.clear();
    const int arms = kind < 3 ? 1 + static_cast<int>(12 * uniform(random)) : 0;
    for (int k = 0; k < arms; ++k)
        part.arms.push_back({40e3 * std::exp((kind == 1 ? 0.02 : 0.5) * normal(random)),
                             10 * std::pow(1000, uniform(random)), 0.001 * std::exp(normal(random))});
    double walk = 1;
    for (int i = 0; i < kPoints; ++i) {
        const double f = 20e3 * std::pow(4, i / (kPoints - 1.0));
        resonance::Sample sample{f, 1, 1};
        if (kind < 3) {
            const std::complex<double> y = part(f) * (1.0 + 1e-4 * normal(random));
            sample.conductance = y.real() + (kind == 2 ? 1e-3 * uniform(random) : 0);
            sample.susceptance = y.imag();
        } else if (kind == 3) { // any bits at all
            sample = {std::bit_cast<double>(random()), std::bit_cast<double>(random()),
                      std::bit_cast<double>(random())};
        } else if (kind == 4) { // spikes
            sample.conductance = uniform(random) < 0.02 ? 100 * uniform(random) : 1e-3;
            sample.susceptance = normal(random);
        } else if (kind == 5) { // a random walk over many decades
            walk *= std::exp(0.5 * normal(random));
            sample.conductance = walk;
            sample.susceptance = walk * normal(random);
        } else if (kind == 6) { // a comb
            sample.conductance = i % 3 == 0 ? 1 + 0.01 * i : 0.01;
            sample.susceptance = i % 2 == 0 ? 1 : -1;
        } else { // few frequencies, any order
            sample.frequency = 20e3 + std::floor(50 * uniform(random));
            sample.conductance = std::exp(20 * normal(random));
            sample.susceptance = -sample.conductance;
        }
        samples.push_back(sample);
    }
    return samples;
}

bool isWhole(const resonance::Mode& mode)
{
    for (const resonance::Figure* figure :
         {&mode.fs, &mode.q, &mode.g1, &mode.f1, &mode.f2, &mode.zr, &mode.r1, &mode.l1, &mode.c1}) {
        if (!std::isfinite(figure->value) || !std::isfinite(figure->uncertainty))
            return false;
    }
    for (const resonance::Figure* figure : {&mode.c0, &mode.fp, &mode.keff}) {
        if (std::isfinite(figure->value) != std::isfinite(figure->uncertainty))
            return false;
    }
    return true;
}

} // namespace

TEST(ResonanceLimits, NoSweepHoweverWildIsAnsweredByWhatIsNotFinite)
{
    resonance::ResonanceSolver solver;
    int found = 0;
    for (unsigned seed = 0; seed < 1600; ++seed) {
        const std::vector<resonance::Sample> samples = wild(seed);
        const resonance::Solution solution = solver.solve(samples);
        if (!solution.found)
            continue;
        ++found;
        EXPECT_TRUE(isWhole(solution.mode)) << seed;
        for (int k = 0; k < solution.otherCount; ++k)
            EXPECT_TRUE(isWhole(solution.others[static_cast<std::size_t>(k)])) << seed;
    }
    EXPECT_GT(found, 100) << "among them are parts of many modes";
}

TEST(ResonanceLimits, ASolutionTakesNoMemoryAfterTheFirst)
{
    ResonanceEngine engine;
    const auto rising = measured(Part{}, logarithmic(20e3, 80e3, kPoints), 1e-3, 1);
    auto shuffled = measured(Part{}, logarithmic(20e3, 80e3, kPoints), 1e-3, 2);
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937_64(3));
    Part two;
    two.arms.push_back({42e3, 120, 0.008});
    const auto close = measured(two, logarithmic(20e3, 80e3, kPoints), 1e-4, 3);
    const auto capacitor =
        measured([](double f) { return std::complex<double>(0, 1e-8 * f); }, logarithmic(20e3, 80e3, kPoints), 1e-3, 4);
    const std::vector<resonance::Sample>* const sweeps[] = {&rising, &shuffled, &close, &capacitor};
    const auto round = [&] {
        engine.AnalysisClear();
        for (std::int32_t pen = 0; pen < ResonanceEngine::kPens; ++pen) {
            for (const auto* samples : sweeps) {
                feed(engine, pen, *samples);
                engine.AnalysisSolve(pen, -1);
                engine.AnalysisSolveClf(pen);
            }
        }
    };
    const long atStart = allocations;
    round();
    const long before = allocations;
    EXPECT_GT(before, atStart) << "memory is counted";
    round();
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(engine.solveCount(), 2 * ResonanceEngine::kPens * 4);
}
