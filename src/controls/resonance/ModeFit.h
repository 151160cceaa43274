// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/resonance/Noise.h"
#include "controls/resonance/Sums.h"
#include "controls/resonance/Sweep.h"

#include <Eigen/Core>
#include <array>
#include <complex>
#include <cstdint>
#include <vector>

namespace resonance {

using sums::kMostModes; ///< fitted together
constexpr double kTolerance = 1e-10;
constexpr double kRoughTolerance = 1e-3; ///< for a fit that another follows
constexpr int kMostParameters = 3 * kMostModes + 4;

/// Points first to last - 1 of a sweep.
struct Window
{
    std::size_t first = 0;
    std::size_t last = 0;

    int count() const { return static_cast<int>(last - first); }
};

/// Y = sum of G1/(1 + jQu) + p + s (f/reference - 1), with complex p and s. The slope goes by f, so that a capacitance
/// with losses is exact however wide the window.
///
/// Order of the parameters: ln fs and ln Q of each mode, G1 of each mode, Re p, Im p, Re s, Im s.
struct Model
{
    using Vector = Eigen::Matrix<double, Eigen::Dynamic, 1, 0, kMostParameters, 1>;
    using Matrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, 0, kMostParameters, kMostParameters>;

    int modes = 1;
    bool slope = true;
    double reference = 1; ///< Hz
    std::array<double, kMostModes> lnFs{};
    std::array<double, kMostModes> lnQ{};
    std::array<double, kMostModes> g1{};
    std::complex<double> offset;
    std::complex<double> tilt;

    int parameters() const { return 3 * modes + (slope ? 4 : 2); }
    Vector vector() const;
    void set(const Vector& values);

    std::complex<double> pole(int mode, double f) const; ///< without its G1
    std::complex<double> motional(double f) const;       ///< all modes
    std::complex<double> background(double f) const { return offset + tilt * (f / reference - 1); }
    std::complex<double> operator()(double f) const { return motional(f) + background(f); }
};

struct FitResult
{
    bool good = false;
    Model model;
    Window window;
    double chi2 = 0;          ///< over the variances the fit was weighted with
    Model::Matrix covariance; ///< for variances that are right; to be scaled with chi2/degrees of freedom

    int degreesOfFreedom() const { return 2 * window.count() - model.parameters(); }
    double scale() const { return chi2 / degreesOfFreedom(); }
};

/// Fits modes to a window of a sweep. Fixed caps on iterations; equal input gives equal output.
class ModeFitter
{
public:
    explicit ModeFitter(const Sweep& sweep)
        : m_sweep(sweep)
    {}

    /// A sweep has been loaded. Its fits may visit that many points, each mode of the model counting; then they fail.
    void begin(std::int64_t visits);
    /// What is left of them; below 0 when the last fits failed for it, or when other sums went on.
    std::int64_t workLeft() const { return m_workLeft; }

    /// Variances by the measured modulus.
    void weighByData(const Noise& noise);
    /// Variances by the model's modulus, inside the window.
    void weighByModel(const Noise& noise, const FitResult& fit);

    /// f0 and Q0 from a linear fit of a pole over a quadratic background. Q may come out negative: the loop runs the
    /// wrong way round. False when there is no such pole.
    bool linearPole(Window window, double& f0, double& q0) const;

    /// Weighted squares of what is left by the best G1 and background for the given poles; G1 and background are set.
    double solveLinear(Window window, Model& model) const;

    /// Levenberg-Marquardt in ln fs and ln Q, G1 and background being the best for them at each step. It ends when no
    /// logarithm moves by more than the tolerance, or when the step is a thousandth of the uncertainty.
    FitResult refine(Window window, const Model& start, double tolerance = kTolerance) const;

    /// Weighted squares of what a quadratic complex background leaves.
    double smoothChi2(Window window) const;

    /// Squares of what the fit leaves in its window, without weights.
    double plainSquares(const FitResult& fit) const;

    /// Subtracts the modes from a copy of the whole sweep.
    void takeModesAway(const Model& model, std::vector<double>& g, std::vector<double>& b) const;

private:
    struct Place;
    bool look(Window window, const Model& model, Place& place) const;

    sums::Points points(Window window) const;
    bool spend(Window window, int modes) const;

    const Sweep& m_sweep;
    std::vector<double> m_inverseF;
    std::vector<double> m_weight; ///< 1/variance
    mutable std::int64_t m_workLeft = 0;
};

} // namespace resonance
