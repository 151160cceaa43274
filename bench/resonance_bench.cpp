// SPDX-License-Identifier: GPL-3.0-or-later
// Accuracy, coverage, random parts, false alarms and speed of the resonance engine. Fixed seeds: every run prints the
// same figures, times apart. The exit code tells whether all that is wanted of them was met. A number divides the
// counts, for a quick look, which is judged by its times alone; with VERBOSE set, parts that were missed or mistaken
// are told.
#include "ResonanceSpeed.h"

#include "controls/resonance/ResonanceSolver.h"

#include <QCoreApplication>

#include <Eigen/Dense>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iterator>
#include <numbers>
#include <numeric>
#include <random>
#include <vector>

using namespace resonance;

namespace {

struct Part
{
    double fs = 40e3;
    double q = 100;
    double m = 10; ///< Q C1/C0
    double g1 = 0.01;
};

std::complex<double> admittance(const Part& part, double f)
{
    const double u = f / part.fs - part.fs / f;
    return part.g1 / std::complex<double>(1, part.q * u) + std::complex<double>(0, part.g1 / part.m * f / part.fs);
}

Sample noisy(double f, std::complex<double> y, double noise, std::mt19937_64& random)
{
    std::normal_distribution<double> normal;
    const double re = normal(random);
    const double im = normal(random);
    y *= 1.0 + noise * std::complex<double>(re, im) / std::numbers::sqrt2;
    return {f, static_cast<float>(y.real()), static_cast<float>(y.imag())};
}

/// Bound of ln fs and ln Q over points of weight 1/(noise^2 |Y|^2/2), the model being mode, offset and slope.
void bound(const Part& part, const std::vector<double>& f, double noise, double& fs, double& q)
{
    Eigen::Matrix<double, 7, 7> information = Eigen::Matrix<double, 7, 7>::Zero();
    for (const double at : f) {
        const double u = at / part.fs - part.fs / at;
        const std::complex<double> pole = 1.0 / std::complex<double>(1, part.q * u);
        const std::complex<double> j(0, 1);
        const std::complex<double> d = -j * pole * pole * part.g1;
        const std::complex<double> columns[7] = {-d * part.q * (at / part.fs + part.fs / at),
                                                 d * part.q * u,
                                                 pole,
                                                 1,
                                                 j,
                                                 at / part.fs - 1,
                                                 j * (at / part.fs - 1)};
        const double w = 2 / (noise * noise * std::norm(admittance(part, at)));
        for (int i = 0; i < 7; ++i) {
            for (int k = 0; k < 7; ++k)
                information(i, k) += w * (columns[i] * std::conj(columns[k])).real();
        }
    }
    const Eigen::Matrix<double, 7, 1> scale = information.diagonal().cwiseSqrt().cwiseInverse();
    const Eigen::Matrix<double, 7, 7> inverse =
        (scale.asDiagonal() * information * scale.asDiagonal()).fullPivLu().inverse();
    fs = std::sqrt(inverse(0, 0)) * scale[0];
    q = std::sqrt(inverse(1, 1)) * scale[1];
}

/// Errors of fs (relative) and Q (relative) over the seeds of a row.
struct Tally
{
    double sum[2] = {};
    double squares[2] = {};
    int count = 0;

    void add(double fs, double q)
    {
        const double errors[2] = {fs, q};
        for (int i = 0; i < 2; ++i) {
            sum[i] += errors[i];
            squares[i] += errors[i] * errors[i];
        }
        ++count;
    }
    double rms(int which) const { return std::sqrt(squares[which] / std::max(count, 1)); }
    double bias(int which) const { return sum[which] / std::max(count, 1); }
};

/// What is read without a fit: the highest sample of G, and Q between the extremes of B.
void readSamples(const std::vector<Sample>& samples, const Part& part, Tally& tally)
{
    const auto byG = [](const Sample& a, const Sample& b) { return a.conductance < b.conductance; };
    const auto byB = [](const Sample& a, const Sample& b) { return a.susceptance < b.susceptance; };
    const auto top = std::max_element(samples.begin(), samples.end(), byG);
    // About the peak, since the capacitance is larger at the end of the sweep.
    const auto reach = std::min<std::ptrdiff_t>({top - samples.begin(), samples.end() - top - 1, 40});
    const auto extremes = std::minmax_element(top - reach, top + reach + 1, byB);
    const double width = std::abs(extremes.first->frequency - extremes.second->frequency);
    tally.add(top->frequency / part.fs - 1, top->frequency / width / part.q - 1);
}

/// The better usual reading: a parabola through the top three samples of G, and the width at half its height.
void readParabola(const std::vector<Sample>& samples, const Part& part, Tally& tally)
{
    std::size_t top = 1;
    for (std::size_t i = 1; i + 1 < samples.size(); ++i) {
        if (samples[i].conductance > samples[top].conductance)
            top = i;
    }
    const double before = samples[top - 1].conductance;
    const double at = samples[top].conductance;
    const double after = samples[top + 1].conductance;
    const double shift = 0.5 * (before - after) / (before - 2 * at + after);
    const double step = (samples[top + 1].frequency - samples[top - 1].frequency) / 2;
    const double height = at - 0.25 * (before - after) * shift;
    double ends[2] = {};
    for (int side = 0; side < 2; ++side) {
        std::size_t i = top;
        while (i > 0 && i + 1 < samples.size() && samples[i].conductance > height / 2)
            i = side == 0 ? i - 1 : i + 1;
        const Sample& low = samples[i];
        const Sample& high = samples[side == 0 ? i + 1 : i - 1];
        ends[side] = low.frequency + (height / 2 - low.conductance) / (high.conductance - low.conductance) *
                                         (high.frequency - low.frequency);
    }
    const double fs = samples[top].frequency + shift * step;
    tally.add(fs / part.fs - 1, fs / (ends[1] - ends[0]) / part.q - 1);
}

struct Row
{
    int points;
    double decades, q, noise;
};

/// False when errors or bias are larger than wanted, or the intervals of 95 % cover too little or too much.
bool accuracyOf(const Row& row, int seeds)
{
    Tally fit, nearest, parabola;
    double bounds[2] = {};
    int covered[5] = {};
    ResonanceSolver solver;
    for (int seed = 0; seed < seeds; ++seed) {
        std::mt19937_64 random(static_cast<unsigned>(seed) + 1);
        Part part;
        part.q = row.q;
        const double step = row.decades * std::log(10.0) / (row.points - 1);
        const double shift = std::uniform_real_distribution<double>(-0.5, 0.5)(random) * step;
        std::vector<Sample> samples;
        std::vector<double> f;
        for (int i = 0; i < row.points; ++i) {
            f.push_back(part.fs * std::exp((i - row.points / 2) * step + shift));
            samples.push_back(noisy(f.back(), admittance(part, f.back()), row.noise, random));
        }
        double fs = 0;
        double q = 0;
        bound(part, f, row.noise, fs, q);
        bounds[0] += fs * fs / seeds;
        bounds[1] += q * q / seeds;
        readSamples(samples, part, nearest);
        readParabola(samples, part, parabola);
        const Solution solution = solver.solve(samples);
        if (!solution.found)
            continue;
        const Mode& mode = solution.mode;
        fit.add(mode.fs.value / part.fs - 1, mode.q.value / part.q - 1);
        const double half = 1 / (2 * part.q);
        const double truths[5] = {part.fs, part.q, part.fs * (std::sqrt(1 + half * half) - half), 1 / part.g1,
                                  part.g1 / part.m / (2 * std::numbers::pi * part.fs)};
        const Figure* figures[5] = {&mode.fs, &mode.q, &mode.f1, &mode.r1, &mode.c0};
        for (int i = 0; i < 5; ++i)
            covered[i] += std::abs(figures[i]->value - truths[i]) < mode.coverageFactor * figures[i]->uncertainty;
    }
    const double fsBound = std::sqrt(bounds[0]);
    const double qBound = std::sqrt(bounds[1]);
    const double ppm = 1e6;
    const double percent = 100;
    std::printf("%4d %3.1f %4.0f %3.1f%% | %6.0f /%5.1f | %6.0f /%5.1f | %6.2f /%6.3f | %6.2f /%6.3f | %4.2f %4.2f | "
                "%5.2f %5.2f |",
                row.points, row.decades, row.q, row.noise * 100, ppm * nearest.rms(0), percent * nearest.rms(1),
                ppm * parabola.rms(0), percent * parabola.rms(1), ppm * fit.rms(0), percent * fit.rms(1), ppm * fsBound,
                percent * qBound, fit.rms(0) / fsBound, fit.rms(1) / qBound, fit.bias(0) / fsBound,
                fit.bias(1) / qBound);
    bool met = fit.count == seeds && fit.rms(0) < 1.3 * fsBound && fit.rms(1) < 1.3 * qBound &&
               std::abs(fit.bias(0)) < 0.2 * fsBound && std::abs(fit.bias(1)) < 0.2 * qBound;
    for (const int count : covered) {
        const double share = 100.0 * count / std::max(fit.count, 1);
        met = met && share >= 93 && share <= 97;
        std::printf(" %5.1f", share);
    }
    std::printf(" | %d of %d%s\n", fit.count, seeds, met ? "" : " MISSED");
    return met;
}

bool accuracy(int seeds)
{
    std::printf(
        "rms errors of fs (ppm) / Q (%%) by nearest sample, parabola, fit; bound over the whole sweep; rms/bound; "
        "bias/bound; truth within the 95 %% interval of fs Q F1 R1 C0 (%%)\n");
    bool met = true;
    for (const Row& row : {Row{256, 1, 100, 1e-3}, Row{512, 1, 100, 1e-2}, Row{1024, 1, 20, 1e-3},
                           Row{1024, 1, 100, 1e-3}, Row{1024, 1, 500, 1e-2}, Row{1024, 0.1, 1000, 1e-2}})
        met = accuracyOf(row, seeds) && met;
    return met;
}

bool randomParts(int circuits)
{
    std::mt19937_64 random(4711);
    std::uniform_real_distribution<double> uniform;
    ResonanceSolver solver;
    int solved = 0, wrong = 0, resolvable = 0, resolved = 0, covered[2] = {};
    double longest = 0, total = 0;
    for (int i = 0; i < circuits; ++i) {
        Part part;
        part.q = 5 * std::pow(4000, uniform(random));
        part.m = 1.5 * std::pow(333, uniform(random));
        part.fs = std::pow(10, 3 + 4 * uniform(random));
        part.g1 = std::pow(10, -5 + 5 * uniform(random));
        const int points = static_cast<int>(64 * std::pow(16, uniform(random)));
        const bool logarithmic = uniform(random) < 0.5;
        const double noise = uniform(random) < 0.1 ? 0 : std::pow(10, -5 + 3.3 * uniform(random));
        // From two bandwidths to a decade, the resonance anywhere in or just outside.
        const double narrow = std::log(1 + 2 / part.q);
        const double span = narrow * std::pow(std::max(1.0, std::log(10.0) / narrow), uniform(random));
        const double place = -0.05 + 1.1 * uniform(random);
        const double low = part.fs * std::exp(-place * span);
        const double high = low * std::exp(span);
        std::vector<Sample> samples;
        std::vector<double> f;
        for (int k = 0; k < points; ++k) {
            const double share = k / (points - 1.0);
            f.push_back(logarithmic ? low * std::exp(span * share) : low + (high - low) * share);
            samples.push_back(noisy(f.back(), admittance(part, f.back()), noise, random));
        }
        const std::clock_t start = std::clock(); // of the processor: other programs do not count
        const Solution solution = solver.solve(samples);
        const double ms = 1e3 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        longest = std::max(longest, ms);
        total += ms;
        const double width = part.fs / part.q;
        double gap = f[1] - f[0];
        for (int k = 1; k < points && f[static_cast<std::size_t>(k)] - gap < part.fs; ++k)
            gap = f[static_cast<std::size_t>(k)] - f[static_cast<std::size_t>(k - 1)];
        const bool wanted = width / gap > 2 && part.fs > low + width && part.fs < high - width;
        resolvable += wanted;
        resolved += wanted && solution.found;
        const bool report = std::getenv("VERBOSE");
        if (wanted && !solution.found && report)
            std::printf("missed %d: Q %.1f M %.2f N %d log %d noise %.2g span/bw %.2f ppb %.2f place %.3f: %s\n", i,
                        part.q, part.m, points, logarithmic, noise, span * part.q, width / gap, place,
                        refusalText(solution.refusal).c_str());
        if (!solution.found)
            continue;
        ++solved;
        const Mode& mode = solution.mode;
        const double k = mode.coverageFactor / 1.96;
        const double dfs = std::abs(mode.fs.value / part.fs - 1);
        const double dq = std::abs(mode.q.value / part.q - 1);
        covered[0] += dfs < std::max(mode.coverageFactor * mode.fs.uncertainty / part.fs, 0.05e-6);
        covered[1] += dq < mode.coverageFactor * mode.q.uncertainty / part.q;
        const bool bad = dfs > std::max(5 * k * mode.fs.uncertainty / part.fs, 0.5e-6) ||
                         dq > std::max(5 * k * mode.q.uncertainty / part.q, 5e-4);
        wrong += bad;
        if (bad && report)
            std::printf("wrong %d: Q %.1f (%.3f) M %.2f N %d log %d noise %.2g span/bw %.2f ppb %.2f place %.3f: dfs "
                        "%.3g u %.3g dq %.3g u %.3g others %d flags %u dof %d\n",
                        i, part.q, mode.q.value, part.m, points, logarithmic, noise, span * part.q, width / gap, place,
                        dfs, mode.fs.uncertainty / part.fs, dq, mode.q.uncertainty / part.q, solution.otherCount,
                        solution.flags, mode.degreesOfFreedom);
    }
    std::printf("%d random parts: %d solved, %d beyond 5 u, %d of %d resolvable solved, covered fs %.1f Q %.1f %%, "
                "%.3f ms mean, %.3f ms longest\n",
                circuits, solved, wrong, resolved, resolvable, 100.0 * covered[0] / solved, 100.0 * covered[1] / solved,
                total / circuits, longest);
    const auto covers = [&](int count) { return count >= 0.93 * solved && count <= 0.97 * solved; };
    return wrong <= 3 && resolved >= 0.99 * resolvable && covers(covered[0]) && covers(covered[1]);
}

bool falseAlarms(int sweeps)
{
    std::mt19937_64 random(99);
    std::uniform_real_distribution<double> uniform;
    ResonanceSolver solver;
    static constexpr const char* names[] = {"noise", "capacitor", "resistor", "inductor", "RC ladder", "RC line"};
    int alarms[6] = {};
    for (int i = 0; i < sweeps; ++i) {
        const int kind = i % 6;
        const int points = static_cast<int>(64 * std::pow(16, uniform(random)));
        const double noise = std::pow(10, -5 + 3.3 * uniform(random));
        const double decades = 0.1 + 3 * uniform(random);
        const double corner = std::pow(10, -1 + (decades + 2) * uniform(random));
        const double loss = 0.05 * uniform(random);
        std::vector<Sample> samples;
        for (int k = 0; k < points; ++k) {
            const double w = std::pow(10, decades * k / (points - 1.0));
            const std::complex<double> s(0, w / corner);
            std::complex<double> y;
            if (kind == 0) {
                std::normal_distribution<double> normal;
                const double re = normal(random);
                y = {re, normal(random)};
            } else if (kind == 1)
                y = s * std::complex<double>(1, -loss);
            else if (kind == 2)
                y = 1;
            else if (kind == 3)
                y = 1.0 / (s + loss);
            else if (kind == 4) {
                std::complex<double> z = 1.0 / s;
                for (int stage = 0; stage < 5; ++stage)
                    z = 1.0 / (s + 1.0 / (1.0 + z));
                y = 1.0 / (1.0 + z);
            } else
                y = std::sqrt(s) * std::tanh(std::sqrt(s));
            samples.push_back(noisy(1e3 * w, 1e-3 * y, noise, random));
        }
        const Solution solution = solver.solve(samples);
        alarms[kind] += solution.found;
        if (solution.found && std::getenv("VERBOSE"))
            std::printf("alarm %s: N %d noise %.2g decades %.2f corner %.2f: Q %.2f +- %.2f fs %.4g dof %d flags %u g1 "
                        "%g ppb %.2f\n",
                        names[kind], points, noise, decades, corner, solution.mode.q.value, solution.mode.q.uncertainty,
                        solution.mode.fs.value, solution.mode.degreesOfFreedom, solution.flags, solution.mode.g1.value,
                        solution.mode.pointsPerBandwidth);
    }
    for (int kind = 0; kind < 6; ++kind)
        std::printf("false alarms on %s: %d of %d\n", names[kind], alarms[kind], sweeps / 6);
    return std::accumulate(std::begin(alarms), std::end(alarms), 0) <= 1;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int share = argc > 1 ? std::atoi(argv[1]) : 1; // a fraction of the counts, for a quick look
    bool met = accuracy(1000 / share);
    met = randomParts(10000 / share) && met;
    met = falseAlarms(10002 / share) && met;
    met = met || share > 1;
    met = resonancespeed::solutions() && met;
    met = resonancespeed::wildSweeps() && met;
    met = resonancespeed::againstScipy() && met;
    std::printf("%s\n", met ? "all met" : "not all met");
    return met ? 0 : 1;
}
