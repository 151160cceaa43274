// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/Figures.h"

#include <cmath>
#include <numbers>

namespace resonance {
namespace {

constexpr int kFigures = 12;
using Values = std::array<double, kFigures>;

/// In the order of the members of Mode.
Values valuesOf(const Model& model, int mode)
{
    const auto k = static_cast<std::size_t>(mode);
    const double fs = std::exp(model.lnFs[k]);
    const double q = std::exp(model.lnQ[k]);
    const double g1 = model.g1[k];
    const double half = 1 / (2 * q);
    const double root = std::sqrt(1 + half * half);
    const double omega = 2 * std::numbers::pi * fs;
    const double r1 = 1 / g1;
    const double c1 = 1 / (omega * q * r1);
    double c0 = model.background(fs).imag() / omega;
    if (!(c0 > 0))
        c0 = std::numeric_limits<double>::quiet_NaN();
    return {fs,
            q,
            g1,
            fs * (root - half),
            fs * (root + half),
            1 / std::abs(model(fs)),
            r1,
            q * r1 / omega,
            c1,
            c0,
            fs * std::sqrt(1 + c1 / c0),
            std::sqrt(c1 / (c0 + c1))};
}

} // namespace

Mode figuresOf(const FitResult& fit, int mode)
{
    const Values values = valuesOf(fit.model, mode);
    const Model::Vector centre = fit.model.vector();
    const Eigen::Index count = centre.size();
    // Differences over a thousandth of each parameter's uncertainty: the figures are smooth in them.
    std::array<Model::Vector, kFigures> slopes;
    for (Model::Vector& slope : slopes)
        slope.resize(count);
    for (Eigen::Index p = 0; p < count; ++p) {
        const double size =
            std::max(std::abs(centre[p]), 1e-12 * std::abs(fit.model.g1[static_cast<std::size_t>(mode)]));
        const double step = std::max(1e-3 * std::sqrt(fit.covariance(p, p) * fit.scale()), 1e-9 * size);
        Model up = fit.model;
        Model down = fit.model;
        Model::Vector moved = centre;
        moved[p] += step;
        up.set(moved);
        moved[p] = centre[p] - step;
        down.set(moved);
        const Values high = valuesOf(up, mode);
        const Values low = valuesOf(down, mode);
        for (std::size_t v = 0; v < kFigures; ++v)
            slopes[v][p] = (high[v] - low[v]) / (2 * step);
    }
    Mode result;
    const std::array<Figure*, kFigures> figures = {&result.fs, &result.q,  &result.g1, &result.f1,
                                                   &result.f2, &result.zr, &result.r1, &result.l1,
                                                   &result.c1, &result.c0, &result.fp, &result.keff};
    for (std::size_t v = 0; v < kFigures; ++v) {
        double variance = 0;
        for (Eigen::Index p = 0; p < count; ++p) {
            for (Eigen::Index r = 0; r < count; ++r)
                variance += slopes[v][p] * fit.covariance(p, r) * slopes[v][r];
        }
        if (std::isfinite(values[v])) // what is unknown has no uncertainty
            *figures[v] = {values[v], std::sqrt(std::max(variance, 0.0) * fit.scale())};
    }
    const std::complex<double> top = fit.model(values[0]);
    result.conductance = top.real();
    result.susceptance = top.imag();
    result.degreesOfFreedom = fit.degreesOfFreedom();
    result.coverageFactor = studentFactor95(result.degreesOfFreedom);
    return result;
}

} // namespace resonance
