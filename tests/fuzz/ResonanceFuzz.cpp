// SPDX-License-Identifier: GPL-3.0-or-later
// The analysis engine under arbitrary doubles: it ends, keeps to its bound of work, finds nothing that is not finite,
// and says the same twice. How long that takes without the sanitizers is for the benchmark to tell, which goes through
// the same corpus.
#include "tests/fuzz/ResonanceInput.h"

#include <cmath>
#include <cstdlib>

namespace {

void check(bool held)
{
    if (!held)
        std::abort();
}

void checkMode(const resonance::Mode& mode)
{
    for (const resonance::Figure* figure :
         {&mode.fs, &mode.q, &mode.g1, &mode.f1, &mode.f2, &mode.zr, &mode.r1, &mode.l1, &mode.c1})
        check(std::isfinite(figure->value) && std::isfinite(figure->uncertainty) && figure->value > 0);
    for (const resonance::Figure* figure : {&mode.c0, &mode.fp, &mode.keff})
        check(std::isfinite(figure->value) == std::isfinite(figure->uncertainty));
    check(std::isfinite(mode.conductance) && std::isfinite(mode.susceptance));
    check(mode.f1.value < mode.fs.value && mode.fs.value < mode.f2.value);
    check(mode.degreesOfFreedom > 0 && std::isfinite(mode.coverageFactor));
}

void checkCapacitance(ResonanceEngine& engine)
{
    const bool found = engine.AnalysisSolveClf(0);
    check(found == std::isfinite(engine.ResultClf()) && found == std::isfinite(engine.ResultClfFrequency()));
    check(!ResonanceEngine::FormatEngineering(engine.ResultClf()).contains(u'e'));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ResonanceEngine engine;
    fuzzed::feed(engine, data, size);
    const bool found = engine.AnalysisSolve(0, -1);
    check(engine.solver().work() <= resonance::ResonanceSolver::kMostWork * 11 / 10);
    for (const double result :
         {engine.ResultFr(), engine.ResultZr(), engine.ResultQ(), engine.ResultF1(), engine.ResultF2()}) {
        check(found == std::isfinite(result));
        check(!ResonanceEngine::FormatEngineering(result).contains(u'e'));
    }
    check(found == (engine.ResultPointIndex() >= 0));
    const resonance::Solution first = engine.solution(0);
    check(found == first.found && found == resonance::refusalText(first.refusal).empty());
    if (found) {
        checkMode(first.mode);
        for (int k = 0; k < first.otherCount; ++k)
            checkMode(first.others[static_cast<std::size_t>(k)]);
    }
    checkCapacitance(engine);
    ResonanceEngine again;
    fuzzed::feed(again, data, size);
    check(again.AnalysisSolve(0, -1) == found);
    const resonance::Solution& second = again.solution(0);
    check(second.flags == first.flags && second.otherCount == first.otherCount);
    check(!found ||
          (second.mode.fs.value == first.mode.fs.value && second.mode.q.uncertainty == first.mode.q.uncertainty));
    return 0;
}
