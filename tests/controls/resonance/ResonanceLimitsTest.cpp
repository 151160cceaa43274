// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine promises whatever it is fed: an end in bounded time, finite figures, no memory taken on the way.
#include "controls/resonance/ResonanceEngine.h"
#include "controls/resonance/SyntheticPart.h"
#include "controls/resonance/WildSweep.h"

#include <algorithm>
#include <atomic>
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

void feed(ResonanceEngine& engine, std::int32_t pen, const std::vector<resonance::Sample>& samples)
{
    std::int32_t index = 0;
    for (const resonance::Sample& sample : samples) {
        engine.AnalysisAddRect(sample.frequency, 0, 0, sample.susceptance, sample.conductance, pen, index);
        ++index;
    }
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
