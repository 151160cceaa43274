// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/ModeFit.h"
#include "controls/resonance/Peaks.h"

#include <cstdint>
#include <vector>

namespace resonance {

/// Finds the resonance of a sweep. The same samples give the same answer, bit for bit; what is found is finite. Work is
/// bounded, so that no 1024 samples, whatever they are, take longer than 20 ms. Keeps its memory between calls: none is
/// taken after the first of a size.
class ResonanceSolver
{
public:
    /// Points times modes that all fits of a sweep may visit together: some 30 times what a part of many modes takes.
    /// What follows for the verdict on those fitted takes a tenth of it at most.
    static constexpr std::int64_t kMostWork = 600000;

    Solution solve(const std::vector<Sample>& samples);
    /// The capacitance below the resonance, by the median of the first few points.
    LowFrequencyCapacitance lowFrequencyCapacitance(const std::vector<Sample>& samples, const Solution& solution);

    /// Points times modes that the last solution visited.
    std::int64_t work() const { return kMostWork - m_fitter.workLeft(); }

private:
    /// A fit of one mode or several close ones, and the span of the sweep it may use.
    struct Group
    {
        FitResult fit;
        Window limits;
        bool edge = false;
    };

    Solution solveSweep();
    bool fitPeaks(Refusal& refusal);
    bool fitPeak(const Peak& peak, Window limits, Group& group);
    void seed(const Peak& peak, Window window, Model& best) const;
    void joinOverlapping();
    void estimateNoise();
    void polish(Group& group);
    void widen(Group& group);
    void divide(Group& group);
    Window windowAbout(const Model& model, Window limits, double halfWidths) const;
    std::size_t indexOf(double f) const;
    bool atEdge(const Model& model, int mode) const;
    Refusal judge(const Group& group, int mode) const;
    double pointsPerBandwidth(const Model& model, int mode) const;
    void answer(Solution& solution) const;

    Sweep m_sweep;
    Sweep m_lowSweep; ///< of the capacitance
    ModeFitter m_fitter{m_sweep};
    NoiseEstimator m_estimator;
    Noise m_noise;
    std::vector<Peak> m_peaks;
    std::vector<Group> m_groups;
    std::vector<double> m_re;
    std::vector<double> m_im;
    std::vector<double> m_level;
};

} // namespace resonance
