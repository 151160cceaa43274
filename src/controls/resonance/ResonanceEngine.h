// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/ResonanceSolver.h"

#include <QString>

#include <array>
#include <cstdint>

/// Sets of points, one for each pen, and the resonance of each. A set is solved once, when it is first asked for after
/// a change of its points; a set that is fed the same points again keeps its solution, so that every reader may begin
/// with AnalysisClear. Takes no memory once it has met sets of a size.
class ResonanceEngine
{
public:
    static constexpr int kPens = 11; ///< ten of the graph and one that the user may name
    /// The phase of a point measured without one, in degrees, of either sign.
    static constexpr double kNoPhase = 65536;

    void AnalysisClear();
    /// A point of an impedance document: Hz, Ohm, signed degrees. Index 0 begins the pen's set anew; the others are
    /// added in the order they come in. Pens out of range are ignored.
    void AnalysisAddPolar(double frequency, double modulus, double phase, std::int32_t pen, std::int32_t& index);
    /// A point of a reactance document: Hz, Ohm, Ohm, S, S. Where both of B and G are 0 they are taken from R and X.
    void AnalysisAddRect(double frequency, double resistance, double reactance, double susceptance, double conductance,
                         std::int32_t pen, std::int32_t& index);
    /// False when the pen has no resonance, or no set. Mode -1 (and 0) is the resonance, 1 and up are the other modes
    /// by falling conductance.
    bool AnalysisSolve(std::int32_t pen, std::int32_t mode);
    bool AnalysisSolveClf(std::int32_t pen);

    // Of the last solve that succeeded; not a number after one that failed.
    double ResultFr() const { return m_mode.fs.value; } ///< Hz
    double ResultZr() const { return m_mode.zr.value; } ///< Ohm
    double ResultQ() const { return m_mode.q.value; }
    double ResultF2() const { return m_mode.f2.value; }           ///< Hz
    double ResultF1() const { return m_mode.f1.value; }           ///< Hz
    double ResultClf() const { return m_clf.capacitance; }        ///< F
    double ResultClfFrequency() const { return m_clf.frequency; } ///< Hz

    /// The index under which the point nearest to ResultFr was added; -1 after a solve that failed.
    std::int32_t ResultPointIndex() const { return m_pointIndex; }

    /// Four significant digits and a prefix, "4.076 n"; "N/A" for what is not finite.
    static QString FormatEngineering(double value);

    bool hasPoints(std::int32_t pen) const;
    /// All there is to know of a pen's resonance, and why there is none. Valid until the pen's points change.
    const resonance::Solution& solution(std::int32_t pen);
    /// How often sets were solved.
    int solveCount() const { return m_solveCount; }
    const resonance::ResonanceSolver& solver() const { return m_solver; }

private:
    struct Set
    {
        std::vector<resonance::Sample> samples;
        std::vector<std::int32_t> indices; ///< of the samples
        bool withoutPhase = false;
        bool solved = false; ///< the solution is that of the samples
        std::vector<resonance::Sample> solvedSamples;
        resonance::Solution solution;

        void forget();
        bool isAsSolved() const;
        std::int32_t indexNear(double frequency) const;
    };

    Set* setFor(std::int32_t pen, std::int32_t index);

    std::array<Set, kPens> m_sets;
    resonance::ResonanceSolver m_solver;
    resonance::Solution m_none;
    resonance::Mode m_mode;
    resonance::LowFrequencyCapacitance m_clf;
    std::int32_t m_pointIndex = -1;
    int m_solveCount = 0;
};
