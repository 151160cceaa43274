// SPDX-License-Identifier: GPL-3.0-or-later
// What the engine's figures are worth, over noise of fixed seeds.
#include "controls/resonance/ResonanceSolver.h"
#include "controls/resonance/SyntheticPart.h"

#include <Eigen/Dense>
#include <gtest/gtest.h>

using namespace synthetic;
using namespace resonance;

namespace {

struct Row
{
    int points;
    double decades;
    double q;
    double noise;
};

std::vector<double> sweepOf(const Row& row, unsigned seed)
{
    // The resonance lies anywhere between two points.
    const double step = row.decades * std::log(10.0) / (row.points - 1);
    std::mt19937_64 random(seed + 1000);
    const double shift = std::uniform_real_distribution<double>(-0.5, 0.5)(random);
    const double low = 40e3 * std::exp((-row.points / 2 + shift) * step);
    return logarithmic(low, low * std::pow(10, row.decades), row.points);
}

/// Lower bound of the relative errors of fs and Q, for mode, complex offset and slope, over all points of
/// the sweep.
std::pair<double, double> bound(const Part& part, const std::vector<double>& frequencies, double noise)
{
    const Arm& arm = part.arms[0];
    Eigen::Matrix<double, 7, 7> information = Eigen::Matrix<double, 7, 7>::Zero();
    for (const double f : frequencies) {
        const double u = f / arm.fs - arm.fs / f;
        const std::complex<double> j(0, 1);
        const std::complex<double> pole = 1.0 / (1.0 + j * arm.q * u);
        const std::complex<double> slope = -j * arm.g1 * pole * pole;
        const double t = f / arm.fs - 1;
        const std::array<std::complex<double>, 7> columns = {-slope * arm.q * (f / arm.fs + arm.fs / f),
                                                             slope * arm.q * u,
                                                             arm.g1 * pole,
                                                             arm.g1,
                                                             j * arm.g1,
                                                             arm.g1 * arm.q * t,
                                                             j * arm.g1 * arm.q * t};
        for (int i = 0; i < 7; ++i) {
            for (int k = 0; k < 7; ++k)
                information(i, k) +=
                    2 / (noise * noise * std::norm(part(f))) *
                    (columns[static_cast<std::size_t>(i)] * std::conj(columns[static_cast<std::size_t>(k)])).real();
        }
    }
    const Eigen::Matrix<double, 7, 7> inverse = information.inverse();
    return {std::sqrt(inverse(0, 0)), std::sqrt(inverse(1, 1))};
}

/// A plain Gauss-Newton fit of R1, L1, C1 and C0 to the admittance, weighted by its modulus, with derivatives by
/// differences: nothing in common with the engine.
struct FourElements
{
    Eigen::Vector4d logarithms;
    Eigen::Matrix4d covariance;

    static std::complex<double> admittance(const Eigen::Vector4d& logarithms, double f)
    {
        const double w = 2 * std::numbers::pi * f;
        const std::complex<double> j(0, 1);
        const std::complex<double> arm =
            std::exp(logarithms[0]) + j * w * std::exp(logarithms[1]) + 1.0 / (j * w * std::exp(logarithms[2]));
        return 1.0 / arm + j * w * std::exp(logarithms[3]);
    }

    FourElements(const std::vector<Sample>& samples, const Eigen::Vector4d& start)
        : logarithms(start)
    {
        const auto rows = static_cast<Eigen::Index>(2 * samples.size());
        Eigen::VectorXd rest(rows);
        Eigen::MatrixXd slopes(rows, 4);
        for (int round = 0; round < 30; ++round) {
            for (Eigen::Index i = 0; i < rows / 2; ++i) {
                const Sample& sample = samples[static_cast<std::size_t>(i)];
                const std::complex<double> y(sample.conductance, sample.susceptance);
                const std::complex<double> model = admittance(logarithms, sample.frequency);
                rest[2 * i] = (y - model).real() / std::abs(y);
                rest[2 * i + 1] = (y - model).imag() / std::abs(y);
                for (int p = 0; p < 4; ++p) {
                    Eigen::Vector4d moved = logarithms;
                    moved[p] += 1e-7;
                    const std::complex<double> slope = (admittance(moved, sample.frequency) - model) / 1e-7;
                    slopes(2 * i, p) = slope.real() / std::abs(y);
                    slopes(2 * i + 1, p) = slope.imag() / std::abs(y);
                }
            }
            logarithms += slopes.colPivHouseholderQr().solve(rest);
        }
        covariance = (slopes.transpose() * slopes).inverse() * rest.squaredNorm() / static_cast<double>(rows - 4);
    }

    double combined(const Eigen::Vector4d& weights) const { return std::sqrt(weights.dot(covariance * weights)); }
};

} // namespace

TEST(ResonanceAccuracy, IsNearTheBoundWithoutBias)
{
    ResonanceSolver solver;
    for (const Row& row : {Row{256, 1, 100, 1e-3}, Row{512, 1, 100, 1e-2}, Row{1024, 1, 20, 1e-3},
                           Row{1024, 1, 100, 1e-3}, Row{1024, 1, 500, 1e-2}, Row{1024, 0.1, 1000, 1e-2}}) {
        SCOPED_TRACE(testing::Message() << row.points << ' ' << row.decades << ' ' << row.q << ' ' << row.noise);
        Part part;
        part.arms[0].q = row.q;
        constexpr int kSeeds = 60;
        double fsBound = 0, qBound = 0, fsSum = 0, qSum = 0, fsSquares = 0, qSquares = 0;
        for (unsigned seed = 1; seed <= kSeeds; ++seed) {
            const std::vector<double> sweep = sweepOf(row, seed);
            const auto [fs, q] = bound(part, sweep, row.noise);
            fsBound += fs * fs / kSeeds;
            qBound += q * q / kSeeds;
            const Solution solution = solver.solve(measured(part, sweep, row.noise, seed));
            ASSERT_TRUE(solution.found) << seed << refusalText(solution.refusal);
            const double fsError = solution.mode.fs.value / 40e3 - 1;
            const double qError = solution.mode.q.value / row.q - 1;
            fsSum += fsError / kSeeds;
            qSum += qError / kSeeds;
            fsSquares += fsError * fsError / kSeeds;
            qSquares += qError * qError / kSeeds;
        }
        EXPECT_LT(std::sqrt(fsSquares / fsBound), 1.3);
        EXPECT_LT(std::sqrt(qSquares / qBound), 1.3);
        // The mean of so few is itself uncertain by the error over the root of their number.
        const double chance = 3 / std::sqrt(kSeeds);
        EXPECT_LT(std::abs(fsSum), 0.2 * std::sqrt(fsBound) + chance * std::sqrt(fsSquares));
        EXPECT_LT(std::abs(qSum), 0.2 * std::sqrt(qBound) + chance * std::sqrt(qSquares));
    }
}

TEST(ResonanceAccuracy, IntervalsOf95PercentCoverTheTruth)
{
    ResonanceSolver solver;
    constexpr int kSeeds = 400;
    const Row row{200, 0.4, 80, 3e-3};
    Part part;
    part.arms[0].q = row.q;
    part.loss = 0.01;
    const double half = 1 / (2 * row.q);
    const double omega = 2 * std::numbers::pi * 40e3;
    const std::array<double, 6> truths = {
        40e3, row.q, 40e3 * (std::sqrt(1 + half * half) - half), 100, 100 * row.q / omega, part.c0};
    std::array<int, 6> covered{};
    for (unsigned seed = 1; seed <= kSeeds; ++seed) {
        const Solution solution = solver.solve(measured(part, sweepOf(row, seed), row.noise, seed));
        ASSERT_TRUE(solution.found) << seed;
        const Mode& mode = solution.mode;
        const std::array<Figure, 6> figures = {mode.fs, mode.q, mode.f1, mode.r1, mode.l1, mode.c0};
        for (std::size_t i = 0; i < figures.size(); ++i)
            covered[i] += std::abs(figures[i].value - truths[i]) <= mode.coverageFactor * figures[i].uncertainty;
    }
    for (const int count : covered) {
        EXPECT_GE(count, 0.92 * kSeeds);
        EXPECT_LE(count, 0.98 * kSeeds);
    }
}

TEST(ResonanceAccuracy, CallsNoNoiseAndNoSmoothPartAResonance)
{
    ResonanceSolver solver;
    int alarms = 0;
    for (unsigned seed = 0; seed < 2000; ++seed) {
        std::mt19937_64 random(seed);
        std::uniform_real_distribution<double> uniform;
        const int points = static_cast<int>(40 + 40 * uniform(random));
        const double noise = std::pow(10, -5 + 3.3 * uniform(random));
        const double corner = 1e3 * std::pow(10, 4 * uniform(random));
        std::normal_distribution<double> normal;
        const auto part = [&](double f) -> std::complex<double> {
            const std::complex<double> s(0, f / corner);
            switch (seed % 5) {
            case 0: {
                const double re = normal(random);
                return {re, normal(random)};
            }
            case 1:
                return s;
            case 2:
                return 1;
            case 3:
                return 1.0 / (s + 0.01);
            default:
                break;
            }
            std::complex<double> z = 1.0 / s;
            for (int stage = 0; stage < 4; ++stage)
                z = 1.0 / (s + 1.0 / (1.0 + z));
            return 1.0 / (1.0 + z);
        };
        alarms += solver
                      .solve(measured(part, logarithmic(1e3, 1e3 * std::pow(10, 0.1 + 3 * uniform(random)), points),
                                      noise, seed))
                      .found;
    }
    EXPECT_LE(alarms, 1);
}

TEST(ResonanceAccuracy, APlainFitOfTheFourElementsAgrees)
{
    const double omega = 2 * std::numbers::pi * 40e3;
    for (unsigned seed = 1; seed <= 12; ++seed) {
        Part part;
        part.arms[0].q = 40 * (1 + seed % 4);
        const double q = part.arms[0].q;
        const auto samples = measured(part, linear(40e3 * (1 - 2 / q), 40e3 * (1 + 2 / q), 120), 2e-3, seed);
        const Solution solution = ResonanceSolver().solve(samples);
        ASSERT_TRUE(solution.found);
        const Eigen::Vector4d start(std::log(103), std::log(100 * q / omega * (1 + 0.05 / q)),
                                    std::log(1 / (omega * q * 100)), std::log(1.05 * part.c0));
        const FourElements plain(samples, start);
        const Eigen::Vector4d& p = plain.logarithms;
        const double fs = std::exp(-(p[1] + p[2]) / 2) / (2 * std::numbers::pi);
        const double plainQ = std::exp((p[1] - p[2]) / 2 - p[0]);
        const Mode& mode = solution.mode;
        const auto joint = [](const Figure& figure, double relative) {
            return 3 * std::hypot(figure.uncertainty, relative * figure.value);
        };
        EXPECT_NEAR(mode.fs.value, fs, joint(mode.fs, plain.combined({0, 0.5, 0.5, 0}))) << seed;
        EXPECT_NEAR(mode.q.value, plainQ, joint(mode.q, plain.combined({-1, 0.5, -0.5, 0}))) << seed;
        EXPECT_NEAR(mode.r1.value, std::exp(p[0]), joint(mode.r1, plain.combined({1, 0, 0, 0}))) << seed;
        EXPECT_NEAR(mode.c0.value, std::exp(p[3]), joint(mode.c0, plain.combined({0, 0, 0, 1}))) << seed;
    }
}
