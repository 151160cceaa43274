// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/ResonanceSolver.h"

#include "controls/resonance/Figures.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace resonance {
namespace {

constexpr std::size_t kFewestPoints = 7;
constexpr double kWindow = 3;  ///< |Q u| at the ends of the first window
constexpr int kSidePoints = 6; ///< at least so many on either side of it
constexpr double kOverlap = 6; ///< half-widths below which modes are fitted together
constexpr double kLargestQ = 1e7;

double qOf(const Model& model, int mode)
{
    return std::exp(model.lnQ[static_cast<std::size_t>(mode)]);
}

double fsOf(const Model& model, int mode)
{
    return std::exp(model.lnFs[static_cast<std::size_t>(mode)]);
}

bool isKnown(const Figure& figure)
{
    return std::isfinite(figure.value) && std::isfinite(figure.uncertainty);
}

/// Every figure that a resonance always has.
bool isWhole(const Mode& mode)
{
    return isKnown(mode.fs) && isKnown(mode.q) && isKnown(mode.g1) && isKnown(mode.f1) && isKnown(mode.f2) &&
           isKnown(mode.zr) && isKnown(mode.r1) && isKnown(mode.l1) && isKnown(mode.c1);
}

} // namespace

Solution ResonanceSolver::solve(const std::vector<Sample>& samples)
{
    m_sweep.load(samples);
    m_sweep.leaveOutPlateau();
    m_fitter.begin(kMostWork);
    Solution solution = solveSweep();
    if (!solution.found && solution.refusal != Refusal::NoPoints && solution.refusal != Refusal::TooFewPoints) {
        m_sweep.conjugate();
        Solution turned = solveSweep();
        if (turned.found)
            solution = turned;
    }
    solution.leftOut = m_sweep.leftOut;
    solution.usedPoints = static_cast<int>(m_sweep.size());
    return solution;
}

Solution ResonanceSolver::solveSweep()
{
    Solution solution;
    solution.flags = m_sweep.flags;
    if (m_sweep.size() == 0)
        return solution;
    if (m_sweep.size() < kFewestPoints) {
        solution.refusal = Refusal::TooFewPoints;
        return solution;
    }
    m_groups.clear();
    estimateNoise();
    m_fitter.weighByData(m_noise);
    findPeaks(m_sweep, m_noise, m_peaks);
    if (!fitPeaks(solution.refusal))
        return solution;
    joinOverlapping();
    estimateNoise();
    for (Group& group : m_groups) {
        polish(group);
        divide(group);
        widen(group);
    }
    answer(solution);
    return solution;
}

std::size_t ResonanceSolver::indexOf(double f) const
{
    return static_cast<std::size_t>(std::lower_bound(m_sweep.f.begin(), m_sweep.f.end(), f) - m_sweep.f.begin());
}

bool ResonanceSolver::atEdge(const Model& model, int mode) const
{
    const double half = 1 / (2 * qOf(model, mode));
    const double fs = fsOf(model, mode);
    return fs * (1 - half) < m_sweep.f.front() || fs * (1 + half) > m_sweep.f.back();
}

/// Third differences of what the modes found so far leave.
void ResonanceSolver::estimateNoise()
{
    const std::size_t size = m_sweep.size();
    m_re = m_sweep.g;
    m_im = m_sweep.b;
    m_level.resize(size);
    for (std::size_t i = 0; i < size; ++i)
        m_level[i] = m_sweep.modulusSquared(i);
    for (const Group& group : m_groups)
        m_fitter.takeModesAway(group.fit.model, m_re, m_im);
    m_noise = m_estimator.estimate(m_re, m_im, m_level);
}

Window ResonanceSolver::windowAbout(const Model& model, Window limits, double halfWidths) const
{
    double low = m_sweep.f.back();
    double high = m_sweep.f.front();
    bool wholeSweep = false;
    for (int k = 0; k < model.modes; ++k) {
        const double reach = halfWidths / (2 * qOf(model, k));
        const double fs = fsOf(model, k);
        const double factor = std::sqrt(1 + reach * reach) + reach;
        low = std::min(low, fs / factor);
        high = std::max(high, fs * factor);
        wholeSweep = wholeSweep || qOf(model, k) < 5;
    }
    if (wholeSweep)
        return limits;
    Window window{indexOf(low), indexOf(high)};
    const auto sidePoints = static_cast<std::size_t>(kSidePoints);
    double first = m_sweep.f.back();
    double last = m_sweep.f.front();
    for (int k = 0; k < model.modes; ++k) {
        first = std::min(first, fsOf(model, k));
        last = std::max(last, fsOf(model, k));
    }
    const std::size_t begin = indexOf(first);
    const std::size_t end = indexOf(last);
    window.first = std::min(window.first, begin - std::min(begin, sidePoints));
    window.last = std::max(window.last, end + sidePoints);
    window.first = std::clamp(window.first, limits.first, limits.last);
    window.last = std::clamp(window.last, window.first, limits.last);
    // Too little between neighbours or at an edge: what is there is taken.
    const int needed = 2 * kSidePoints;
    while (window.count() < needed && window.first > limits.first)
        --window.first;
    while (window.count() < needed && window.last < limits.last)
        ++window.last;
    return window;
}

bool ResonanceSolver::fitPeaks(Refusal& refusal)
{
    refusal = Refusal::NoPeak;
    for (const Peak& peak : m_peaks) {
        Window limits{0, m_sweep.size()};
        for (const Peak& other : m_peaks) {
            const std::size_t between = (peak.index + other.index) / 2;
            if (other.index < peak.index)
                limits.first = std::max(limits.first, between);
            else if (other.index > peak.index)
                limits.last = std::min(limits.last, between + 1);
        }
        // Between close peaks even a poor start will do: they are polished together.
        const auto few = static_cast<std::size_t>(kSidePoints);
        limits.first = std::min(limits.first, peak.index - std::min(peak.index, few / 2));
        limits.last = std::min(m_sweep.size(), std::max(limits.last, peak.index + few / 2 + 1));
        Group group;
        if (!fitPeak(peak, limits, group))
            continue;
        const Refusal verdict = judge(group, 0);
        if (verdict == Refusal::None)
            m_groups.push_back(group);
        else if (refusal == Refusal::NoPeak)
            refusal = verdict;
    }
    return !m_groups.empty();
}

/// The pole to start from: the cheapest of the widths read from the peak, of the linear fit and, where the peak is too
/// narrow to read, of a fixed ladder.
void ResonanceSolver::seed(const Peak& peak, Window window, Model& best) const
{
    double bestCost = std::numeric_limits<double>::infinity();
    const double f0 = m_sweep.f[peak.index];
    Model trial = best;
    const auto tryPole = [&](double f, double q) {
        if (!(q > 0.1) || !(q < kLargestQ) || !(f > 0))
            return;
        trial.lnFs[0] = std::log(f);
        trial.lnQ[0] = std::log(q);
        const double cost = m_fitter.solveLinear(window, trial);
        if (cost < bestCost && trial.g1[0] > 0) {
            bestCost = cost;
            best = trial;
        }
    };
    const double read = f0 / peak.width;
    tryPole(f0, read);
    double f = f0;
    double q = read;
    if (m_fitter.linearPole(window, f, q) && f > 0.5 * f0 && f < 2 * f0)
        tryPole(f, q);
    const std::size_t before = peak.index == 0 ? 0 : peak.index - 1;
    const std::size_t after = std::min(peak.index + 1, m_sweep.size() - 1);
    const double step = (m_sweep.f[after] - m_sweep.f[before]) / static_cast<double>(after - before);
    if (peak.width > 4 * step)
        return;
    for (const double ladder : {10.0, 30.0, 100.0, 300.0, 1000.0, 3000.0, 10000.0}) {
        for (const double offset : {-0.5, -0.25, 0.0, 0.25, 0.5})
            tryPole(f0 + offset * step, ladder);
    }
}

bool ResonanceSolver::fitPeak(const Peak& peak, Window limits, Group& group)
{
    group.limits = limits;
    Model model;
    model.lnFs[0] = std::log(m_sweep.f[peak.index]);
    model.lnQ[0] = std::log(std::clamp(m_sweep.f[peak.index] / peak.width, 0.5, kLargestQ));
    model.reference = m_sweep.f[peak.index];
    for (int round = 0; round < 3; ++round) {
        const Window window = windowAbout(model, limits, kWindow);
        if (2 * window.count() <= 7)
            return false;
        group.edge = atEdge(model, 0) || window.first + 2 > peak.index || peak.index + 3 > window.last;
        model.slope = !group.edge;
        if (!model.slope)
            model.tilt = 0;
        if (round == 0)
            seed(peak, window, model);
        group.fit = m_fitter.refine(window, model, kRoughTolerance);
        if (!group.fit.good)
            return false;
        const Model before = model;
        model = group.fit.model;
        if (!(qOf(model, 0) < kLargestQ) || !(qOf(model, 0) > 0.05) || !(fsOf(model, 0) > 0))
            return false;
        const Window next = windowAbout(model, limits, kWindow);
        const bool sameTask =
            next.first == window.first && next.last == window.last && model.slope == !atEdge(model, 0);
        if (sameTask || (std::abs(model.lnQ[0] - before.lnQ[0]) < 0.02 && round > 0))
            break;
    }
    return true;
}

void ResonanceSolver::joinOverlapping()
{
    std::sort(m_groups.begin(), m_groups.end(),
              [](const Group& a, const Group& b) { return a.fit.model.lnFs[0] < b.fit.model.lnFs[0]; });
    for (std::size_t i = 0; i + 1 < m_groups.size();) {
        Group& group = m_groups[i];
        const Group& next = m_groups[i + 1];
        Model joined = group.fit.model;
        const int last = joined.modes - 1;
        const double wider = 1 / std::min(qOf(joined, last), qOf(next.fit.model, 0));
        const double apart = 2 * std::sinh((next.fit.model.lnFs[0] - joined.lnFs[static_cast<std::size_t>(last)]));
        const bool same = apart < 0.05 * wider; // two starts that ended in one pole
        if (apart >= kOverlap * wider || joined.modes + 1 > kMostModes) {
            ++i;
            continue;
        }
        if (!same) {
            const auto k = static_cast<std::size_t>(joined.modes);
            joined.lnFs[k] = next.fit.model.lnFs[0];
            joined.lnQ[k] = next.fit.model.lnQ[0];
            joined.g1[k] = next.fit.model.g1[0];
            ++joined.modes;
        }
        joined.slope = true;
        const Window limits{std::min(group.limits.first, next.limits.first),
                            std::max(group.limits.last, next.limits.last)};
        const FitResult fit = m_fitter.refine(windowAbout(joined, limits, kWindow), joined);
        if (!fit.good) {
            ++i;
            continue;
        }
        group.fit = fit;
        group.limits = limits;
        m_groups.erase(m_groups.begin() + static_cast<std::ptrdiff_t>(i) + 1);
    }
}

void ResonanceSolver::polish(Group& group)
{
    for (int round = 0; round < 2; ++round) {
        m_fitter.weighByData(m_noise);
        group.fit.window = windowAbout(group.fit.model, group.limits, kWindow);
        m_fitter.weighByModel(m_noise, group.fit);
        FitResult fit = m_fitter.refine(group.fit.window, group.fit.model, round == 0 ? kRoughTolerance : kTolerance);
        if (!fit.good)
            return;
        group.fit = fit;
    }
    if (group.fit.model.slope)
        return;
    // The rest of the part does slope: without it the answer is surer than it is right. It stays away only where it
    // cannot be told from the resonance.
    Group sloped = group;
    sloped.fit.model.slope = true;
    sloped.fit = m_fitter.refine(group.fit.window, sloped.fit.model);
    if (sloped.fit.good && judge(sloped, 0) == Refusal::None)
        group = sloped;
}

/// A wider window tells more, as long as the noise explains what is left there.
void ResonanceSolver::widen(Group& group)
{
    for (const double halfWidths : {6.0, 15.0, 40.0, 1e6}) {
        FitResult wide = group.fit;
        wide.window = windowAbout(wide.model, group.limits, halfWidths);
        if (wide.window.count() <= group.fit.window.count())
            continue;
        wide.model.slope = true;
        m_fitter.weighByModel(m_noise, wide);
        wide = m_fitter.refine(wide.window, wide.model, 1e-5);
        // The scale of differences is known to about twice what that of a fit is.
        if (!wide.good || wide.scale() > 1 + 4 * std::sqrt(8.0 / wide.degreesOfFreedom()) ||
            wide.scale() > group.fit.scale() * (1 + 4 * std::sqrt(2.0 / group.fit.degreesOfFreedom())))
            return;
        for (int k = 0; k < wide.model.modes; ++k) {
            const auto at = static_cast<std::size_t>(k);
            const double moved = std::abs(wide.model.lnQ[at] - group.fit.model.lnQ[at]);
            if (moved > 4 * std::sqrt(group.fit.covariance(2 * k + 1, 2 * k + 1) * group.fit.scale()))
                return;
        }
        group.fit = wide;
        group.edge = false;
    }
}

/// Tries one mode more where the noise does not explain what is left.
void ResonanceSolver::divide(Group& group)
{
    const FitResult& single = group.fit;
    if (single.model.modes >= kMostModes || single.scale() < 1 + 6 / std::sqrt(single.degreesOfFreedom()))
        return;
    FitResult best;
    double bestCost = single.chi2;
    const auto more = static_cast<std::size_t>(single.model.modes);
    for (const double offset : {-3.0, -2.0, -1.2, -0.6, 0.6, 1.2, 2.0, 3.0}) {
        for (const double narrower : {0.5, 1.0, 3.0}) {
            Model trial = single.model;
            trial.lnFs[more] = trial.lnFs[0] + std::asinh(offset / (2 * qOf(trial, 0)));
            trial.lnQ[more] = trial.lnQ[0] + std::log(narrower);
            ++trial.modes;
            trial.slope = true;
            const double cost = m_fitter.solveLinear(single.window, trial);
            if (cost < bestCost) {
                bestCost = cost;
                best.model = trial;
                best.good = true;
            }
        }
    }
    if (!best.good)
        return;
    Group pair = group;
    pair.fit = m_fitter.refine(single.window, best.model);
    if (!pair.fit.good)
        return;
    pair.edge = false;
    const double values = 2 * single.window.count();
    const double gain = values * std::log(single.chi2 / pair.fit.chi2) - 3 * std::log(values);
    if (gain <= 10)
        return;
    for (int k = 0; k < pair.fit.model.modes; ++k) {
        if (judge(pair, k) != Refusal::None)
            return;
    }
    group = pair;
}

double ResonanceSolver::pointsPerBandwidth(const Model& model, int mode) const
{
    const double fs = fsOf(model, mode);
    const std::size_t above = std::clamp<std::size_t>(indexOf(fs), 1, m_sweep.size() - 1);
    return fs / (qOf(model, mode) * (m_sweep.f[above] - m_sweep.f[above - 1]));
}

Refusal ResonanceSolver::judge(const Group& group, int mode) const
{
    const FitResult& fit = group.fit;
    const auto k = static_cast<std::size_t>(mode);
    const double fs = fsOf(fit.model, mode);
    const double q = qOf(fit.model, mode);
    const double g1 = fit.model.g1[k];
    if (!fit.good || !(g1 > 0) || !(q > 0.5))
        return Refusal::NotAPole;
    if (!(fs >= m_sweep.f.front()) || !(fs <= m_sweep.f.back()))
        return Refusal::Outside;
    const double scale = std::max(fit.scale(), 1e-300);
    if (!(g1 > 10 * std::sqrt(scale * m_noise.variance(std::norm(fit.model(fs))))))
        return Refusal::TooWeak;
    if (!(std::sqrt(fit.covariance(2 * mode + 1, 2 * mode + 1) * scale) < 0.3))
        return Refusal::TooUncertain;
    // Points of the window with |Q u| up to a reach.
    const auto within = [&](double reach) {
        const double half = reach / (2 * q);
        const double root = std::sqrt(1 + half * half);
        const std::size_t first = std::clamp(indexOf(fs * (root - half)), fit.window.first, fit.window.last);
        return std::clamp(indexOf(fs * (root + half)), first, fit.window.last) - first;
    };
    const std::size_t near = within(2);
    const std::size_t about = within(4);
    const auto distance = [&](std::size_t i) { return std::abs(q * (m_sweep.f[i] / fs - fs / m_sweep.f[i])); };
    const double farthest = std::max(distance(fit.window.first), distance(fit.window.last - 1));
    // Near one point a bandwidth the flanks stand in for the third point.
    if (near < 3 && (near < 1 || about < 3))
        return Refusal::TooCoarse;
    const double values = 2 * fit.window.count();
    const double smooth = m_fitter.smoothChi2(fit.window);
    if (!((smooth - fit.chi2) / scale > 30) || !(values * std::log(smooth / fit.chi2) - std::log(values) > 10))
        return Refusal::NotAPole;
    // A smooth curve that is no pole leaves more than the noise and much of the height.
    if (farthest < 1 || m_fitter.plainSquares(fit) / values > 0.05 * 0.05 * g1 * g1)
        return Refusal::NotAPole;
    return Refusal::None;
}

void ResonanceSolver::answer(Solution& solution) const
{
    std::array<Mode, Solution::kMostOthers + 1> modes;
    std::array<std::uint32_t, Solution::kMostOthers + 1> flags{};
    std::size_t count = 0;
    for (const Group& group : m_groups) {
        for (int k = 0; k < group.fit.model.modes && count < modes.size(); ++k) {
            const Refusal verdict = judge(group, k);
            if (verdict != Refusal::None) {
                solution.refusal = verdict;
                continue;
            }
            Mode mode = figuresOf(group.fit, k);
            if (!isWhole(mode)) {
                solution.refusal = Refusal::NotAPole;
                continue;
            }
            mode.pointsPerBandwidth = pointsPerBandwidth(group.fit.model, k);
            std::uint32_t raised = 0;
            if (atEdge(group.fit.model, k))
                raised |= EdgeFlag;
            if (mode.f1.value < m_sweep.f.front() || mode.f2.value > m_sweep.f.back())
                raised |= ExtrapolatedFlag;
            if (mode.q.value < 5)
                raised |= LowQFlag;
            if (mode.pointsPerBandwidth < 1)
                raised |= CoarseFlag;
            if (group.fit.model.modes > 1)
                raised |= OverlapFlag;
            // Kept in order of falling G1.
            std::size_t at = count++;
            for (; at > 0 && modes[at - 1].g1.value < mode.g1.value; --at) {
                modes[at] = modes[at - 1];
                flags[at] = flags[at - 1];
            }
            modes[at] = mode;
            flags[at] = raised;
        }
    }
    if (count == 0)
        return;
    solution.found = true;
    solution.refusal = Refusal::None;
    solution.mode = modes[0];
    solution.flags |= flags[0];
    solution.otherCount = static_cast<int>(count) - 1;
    for (std::size_t i = 1; i < count; ++i)
        solution.others[i - 1] = modes[i];
}

LowFrequencyCapacitance ResonanceSolver::lowFrequencyCapacitance(const std::vector<Sample>& samples,
                                                                 const Solution& solution)
{
    const LowFrequencyCapacitance none;
    Sweep& sweep = m_lowSweep;
    sweep.load(samples);
    const std::size_t size = sweep.size();
    if (size == 0)
        return none;
    if (solution.found && (solution.flags & ConjugatedFlag))
        sweep.conjugate();
    // An odd number near a fiftieth, so that the middle point is one of them.
    std::size_t count = std::clamp<std::size_t>(size / 50, 1, 9);
    count -= count % 2 == 0;
    while (solution.found && count > 0 && sweep.f[count - 1] >= solution.mode.fs.value / 2)
        count = count > 1 ? count - 2 : 0;
    if (count == 0)
        return none;
    std::array<double, 9> capacitance{};
    for (std::size_t i = 0; i < count; ++i) {
        // At phases of the impedance above -45 degrees it is a lossy part and no capacitor.
        if (!(sweep.b[i] > 0) || sweep.b[i] < sweep.g[i])
            return none;
        capacitance[i] = sweep.b[i] / (2 * std::numbers::pi * sweep.f[i]);
    }
    std::sort(capacitance.begin(), capacitance.begin() + static_cast<std::ptrdiff_t>(count));
    return {true, capacitance[count / 2], sweep.f[count / 2]};
}

} // namespace resonance
