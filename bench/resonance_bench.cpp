// SPDX-License-Identifier: GPL-3.0-or-later
// Accuracy, coverage, random parts, false alarms and speed of the resonance engine. Fixed seeds: every run prints the
// same figures, times apart.
#include "controls/resonance/ResonanceSolver.h"

#include <Eigen/Dense>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <random>

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
void bound(const Part& part, const std::vector<double>& f, double noise, double halfWidths, double& fs, double& q)
{
    Eigen::Matrix<double, 7, 7> information = Eigen::Matrix<double, 7, 7>::Zero();
    for (const double at : f) {
        const double u = at / part.fs - part.fs / at;
        if (std::abs(part.q * u) > halfWidths)
            continue;
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

void accuracy(int seeds)
{
    struct Row
    {
        int points;
        double decades, q, noise;
    };
    std::printf(
        "%5s %4s %5s %6s | rms fs ppm, Q %% | bound +-3 | bound all | bias/bound | covered fs Q F1 R1 C0 | found\n",
        "N", "D", "Q", "noise");
    for (const Row& row : {Row{256, 1, 100, 1e-3}, Row{512, 1, 100, 1e-2}, Row{1024, 1, 20, 1e-3},
                           Row{1024, 1, 100, 1e-3}, Row{1024, 1, 500, 1e-2}, Row{1024, 0.1, 1000, 1e-2}}) {
        double sums[4] = {};
        double bounds[4] = {};
        int covered[5] = {};
        int found = 0;
        ResonanceSolver solver;
        for (int seed = 0; seed < seeds; ++seed) {
            std::mt19937_64 random(static_cast<unsigned>(seed) + 1);
            std::uniform_real_distribution<double> place(-0.5, 0.5);
            Part part;
            part.q = row.q;
            const double step = row.decades * std::log(10.0) / (row.points - 1);
            const double shift = place(random) * step;
            std::vector<Sample> samples;
            std::vector<double> f;
            for (int i = 0; i < row.points; ++i) {
                const double at = part.fs * std::exp((i - row.points / 2) * step + shift);
                f.push_back(at);
                samples.push_back(noisy(at, admittance(part, at), row.noise, random));
            }
            double b[4];
            bound(part, f, row.noise, 3, b[0], b[1]);
            bound(part, f, row.noise, 1e9, b[2], b[3]);
            for (int i = 0; i < 4; ++i)
                bounds[i] += b[i] * b[i];
            const Solution solution = solver.solve(samples);
            if (!solution.found)
                continue;
            ++found;
            const Mode& mode = solution.mode;
            const double dfs = mode.fs.value / part.fs - 1;
            const double dq = mode.q.value / part.q - 1;
            sums[0] += dfs;
            sums[1] += dfs * dfs;
            sums[2] += dq;
            sums[3] += dq * dq;
            const double half = 1 / (2 * part.q);
            const double f1 = part.fs * (std::sqrt(1 + half * half) - half);
            const double truths[5] = {part.fs, part.q, f1, 1 / part.g1,
                                      part.g1 / part.m / (2 * std::numbers::pi * part.fs)};
            const Figure* figures[5] = {&mode.fs, &mode.q, &mode.f1, &mode.r1, &mode.c0};
            for (int i = 0; i < 5; ++i)
                covered[i] += std::abs(figures[i]->value - truths[i]) < mode.coverageFactor * figures[i]->uncertainty;
        }
        for (double& b : bounds)
            b = std::sqrt(b / seeds);
        const double n = std::max(found, 1);
        std::printf("%5d %4.1f %5.0f %5.1f%% | %7.3f %6.3f | %7.3f %6.3f | %7.3f %6.3f | %5.2f %5.2f | %5.1f %5.1f "
                    "%5.1f %5.1f %5.1f | %d/%d\n",
                    row.points, row.decades, row.q, row.noise * 100, 1e6 * std::sqrt(sums[1] / n),
                    100 * std::sqrt(sums[3] / n), 1e6 * bounds[0], 100 * bounds[1], 1e6 * bounds[2], 100 * bounds[3],
                    sums[0] / n / bounds[0], sums[2] / n / bounds[1], 100 * covered[0] / n, 100 * covered[1] / n,
                    100 * covered[2] / n, 100 * covered[3] / n, 100 * covered[4] / n, found, seeds);
    }
}

void randomParts(int circuits)
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
        const auto start = std::chrono::steady_clock::now();
        const Solution solution = solver.solve(samples);
        const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
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
}

void falseAlarms(int sweeps)
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
}

void speed()
{
    for (const double decades : {0.02, 0.1, 1.0}) {
        std::mt19937_64 random(1);
        Part part;
        std::vector<Sample> samples;
        for (int i = 0; i < 1024; ++i) {
            const double f = part.fs * std::pow(10, decades * (i - 512) / 1024);
            samples.push_back(noisy(f, admittance(part, f), 1e-3, random));
        }
        ResonanceSolver solver;
        solver.solve(samples);
        constexpr int kRounds = 200;
        const auto start = std::chrono::steady_clock::now();
        int found = 0;
        for (int i = 0; i < kRounds; ++i)
            found += solver.solve(samples).found;
        const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        std::printf("1024 points over %.2f decades: %.3f ms a solution, ten pens %.3f ms (%d found)\n", decades,
                    ms / kRounds, 10 * ms / kRounds, found);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const int share = argc > 1 ? std::atoi(argv[1]) : 1; // a fraction of the counts, for a quick look
    accuracy(300 / share);
    randomParts(10000 / share);
    falseAlarms(10002 / share);
    speed();
}
