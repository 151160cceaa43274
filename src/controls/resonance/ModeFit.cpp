// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/ModeFit.h"

#include <Eigen/Cholesky>
#include <Eigen/LU>
#include <algorithm>
#include <cmath>

namespace resonance {
namespace {

sums::Curve curveOf(const Model& model)
{
    sums::Curve curve;
    curve.modes = model.modes;
    for (int k = 0; k < model.modes; ++k) {
        const auto at = static_cast<std::size_t>(k);
        curve.fs[k] = std::exp(model.lnFs[at]);
        curve.q[k] = std::exp(model.lnQ[at]);
        curve.g1[k] = model.g1[at];
    }
    curve.reference = model.reference;
    curve.offset[0] = model.offset.real();
    curve.offset[1] = model.offset.imag();
    curve.tilt[0] = model.tilt.real();
    curve.tilt[1] = model.tilt.imag();
    return curve;
}

/// A symmetric positive system, with its diagonal brought to 1.
class ScaledSystem
{
public:
    /// False when it is not positive.
    bool factor(const Model::Matrix& matrix)
    {
        const Eigen::Index n = matrix.rows();
        if (!(matrix.diagonal().array() > 0).all())
            return false;
        m_scale = matrix.diagonal().cwiseSqrt().cwiseInverse();
        Model::Matrix scaled(n, n);
        for (Eigen::Index k = 0; k < n; ++k) {
            for (Eigen::Index i = k; i < n; ++i)
                scaled(i, k) = matrix(i, k) * m_scale[i] * m_scale[k];
        }
        m_factors.compute(scaled);
        return m_factors.info() == Eigen::Success;
    }
    bool solve(const Model::Vector& right, Model::Vector& solution) const
    {
        solution = right.cwiseProduct(m_scale);
        m_factors.solveInPlace(solution);
        solution = solution.cwiseProduct(m_scale).eval();
        return solution.allFinite();
    }

private:
    Model::Vector m_scale;
    Eigen::LDLT<Model::Matrix> m_factors;
};

bool invert(const Model::Matrix& matrix, Model::Matrix& inverse)
{
    ScaledSystem system;
    if (!system.factor(matrix))
        return false;
    const Eigen::Index n = matrix.rows();
    inverse.resize(n, n);
    Model::Vector column;
    for (Eigen::Index i = 0; i < n; ++i) {
        const Model::Vector unit = Model::Vector::Unit(n, i);
        if (!system.solve(unit, column) || !(column[i] > 0))
            return false;
        inverse.col(i) = column;
    }
    return true;
}

} // namespace

Model::Vector Model::vector() const
{
    Vector values(parameters());
    for (int k = 0; k < modes; ++k) {
        values[2 * k] = lnFs[static_cast<std::size_t>(k)];
        values[2 * k + 1] = lnQ[static_cast<std::size_t>(k)];
        values[2 * modes + k] = g1[static_cast<std::size_t>(k)];
    }
    values[3 * modes] = offset.real();
    values[3 * modes + 1] = offset.imag();
    if (slope) {
        values[3 * modes + 2] = tilt.real();
        values[3 * modes + 3] = tilt.imag();
    }
    return values;
}

void Model::set(const Vector& values)
{
    for (int k = 0; k < modes; ++k) {
        lnFs[static_cast<std::size_t>(k)] = values[2 * k];
        lnQ[static_cast<std::size_t>(k)] = values[2 * k + 1];
        g1[static_cast<std::size_t>(k)] = values[2 * modes + k];
    }
    offset = {values[3 * modes], values[3 * modes + 1]};
    tilt = slope ? std::complex<double>(values[3 * modes + 2], values[3 * modes + 3]) : 0.0;
}

std::complex<double> Model::pole(int mode, double f) const
{
    const auto k = static_cast<std::size_t>(mode);
    const double fs = std::exp(lnFs[k]);
    const double x = std::exp(lnQ[k]) * (f / fs - fs / f);
    const double norm = 1 / (1 + x * x);
    return {norm, -x * norm};
}

std::complex<double> Model::motional(double f) const
{
    std::complex<double> sum;
    for (int k = 0; k < modes; ++k)
        sum += g1[static_cast<std::size_t>(k)] * pole(k, f);
    return sum;
}

void ModeFitter::begin(std::int64_t visits)
{
    m_workLeft = visits;
    m_inverseF.resize(m_sweep.size());
    m_weight.resize(m_sweep.size());
    for (std::size_t i = 0; i < m_inverseF.size(); ++i)
        m_inverseF[i] = 1 / m_sweep.f[i];
}

sums::Points ModeFitter::points(Window window) const
{
    const std::size_t at = window.first;
    return {m_sweep.f.data() + at, m_inverseF.data() + at, m_sweep.g.data() + at,
            m_sweep.b.data() + at, m_weight.data() + at,   window.count()};
}

bool ModeFitter::spend(Window window, int modes) const
{
    m_workLeft -= static_cast<std::int64_t>(window.count()) * modes;
    return m_workLeft >= 0;
}

void ModeFitter::weighByData(const Noise& noise)
{
    for (std::size_t i = 0; i < m_weight.size(); ++i)
        m_weight[i] = 1 / noise.variance(m_sweep.modulusSquared(i));
}

void ModeFitter::weighByModel(const Noise& noise, const FitResult& fit)
{
    spend(fit.window, fit.model.modes);
    sums::weigh(points(fit.window), curveOf(fit.model), noise.constant, noise.proportional,
                m_weight.data() + fit.window.first);
}

void ModeFitter::takeModesAway(const Model& model, std::vector<double>& g, std::vector<double>& b) const
{
    spend({0, m_sweep.size()}, model.modes);
    sums::takeAway(points({0, m_sweep.size()}), curveOf(model), g.data(), b.data());
}

double ModeFitter::plainSquares(const FitResult& fit) const
{
    spend(fit.window, fit.model.modes);
    return sums::rest(points(fit.window), curveOf(fit.model)).plain;
}

namespace {

/// Normal equations in the order of the model's parameters; the columns of ln fs and ln Q for a G1 of 1.
void arrange(const sums::Normal& sums, const Model& model, Model::Matrix& matrix, Model::Vector& right, int from)
{
    const int columns = 3 * model.modes;
    const int size = model.parameters();
    matrix.setZero(size, size);
    right.setZero(size);
    for (int c = from; c < columns; ++c) {
        for (int d = from; d <= c; ++d)
            matrix(c, d) = matrix(d, c) = sums.pair[c][d];
        for (int part = 0; part < 2; ++part) {
            matrix(c, columns + part) = matrix(columns + part, c) = sums.withOffset[c][part];
            if (model.slope)
                matrix(c, columns + 2 + part) = matrix(columns + 2 + part, c) = sums.withTilt[c][part];
        }
        right[c] = sums.right[c];
    }
    for (int part = 0; part < 2; ++part) {
        const int offset = columns + part;
        matrix(offset, offset) = sums.background[0];
        right[offset] = sums.rightOffset[part];
        if (model.slope) {
            const int tilt = offset + 2;
            matrix(offset, tilt) = matrix(tilt, offset) = sums.background[1];
            matrix(tilt, tilt) = sums.background[2];
            right[tilt] = sums.rightTilt[part];
        }
    }
}

/// The change of G1 and background that the poles of the normal equations ask for.
bool linearStep(const Model::Matrix& matrix, const Model::Vector& right, int first, Model::Vector& step)
{
    const Eigen::Index count = matrix.rows() - first;
    ScaledSystem system;
    return system.factor(matrix.bottomRightCorner(count, count)) && system.solve(right.tail(count), step);
}

/// The background and poles moved by the last of a model's parameters.
void moveLinear(Model& model, const Model::Vector& step)
{
    Model::Vector all = model.vector();
    all.tail(step.size()) += step;
    model.set(all);
}

} // namespace

double ModeFitter::solveLinear(Window window, Model& model) const
{
    constexpr double kNone = std::numeric_limits<double>::infinity();
    if (!spend(window, model.modes))
        return kNone;
    model.g1 = {};
    model.offset = model.tilt = 0;
    sums::Normal sums;
    sums::normal(points(window), curveOf(model), sums::Columns::Poles, sums);
    Model::Matrix matrix;
    Model::Vector right;
    Model::Vector step;
    arrange(sums, model, matrix, right, 2 * model.modes);
    if (!linearStep(matrix, right, 2 * model.modes, step))
        return kNone;
    moveLinear(model, step);
    spend(window, model.modes);
    const double chi2 = sums::rest(points(window), curveOf(model)).weighted;
    return std::isfinite(chi2) ? chi2 : kNone;
}

/// Where the descent stands: the model with the best G1 and background for its poles, and the normal equations there.
struct ModeFitter::Place
{
    Model model;
    double chi2 = std::numeric_limits<double>::infinity();
    Model::Matrix matrix;
    Model::Vector gradient; ///< of half of chi2, downhill
};

bool ModeFitter::look(Window window, const Model& model, Place& place) const
{
    place.model = model;
    const int nonlinear = 2 * model.modes;
    Model::Vector step;
    // What the curve leaves decides the digits of the second look: once is enough when it was near.
    for (int round = 0; round < 2; ++round) {
        if (!spend(window, model.modes))
            return false;
        sums::Normal sums;
        sums::normal(points(window), curveOf(place.model), sums::Columns::All, sums);
        arrange(sums, model, place.matrix, place.gradient, 0);
        if (!linearStep(place.matrix, place.gradient, nonlinear, step))
            return false;
        const double gain = step.dot(place.gradient.tail(step.size()));
        moveLinear(place.model, step);
        place.chi2 = sums.chi2 - gain;
        if (gain < 0.999 * sums.chi2)
            break;
    }
    place.gradient.head(nonlinear) -= place.matrix.topRightCorner(nonlinear, step.size()) * step;
    place.gradient.tail(step.size()).setZero();
    for (int k = 0; k < nonlinear; ++k) {
        const double g1 = place.model.g1[static_cast<std::size_t>(k / 2)];
        place.matrix.row(k) *= g1;
        place.matrix.col(k) *= g1;
        place.gradient[k] *= g1;
    }
    return std::isfinite(place.chi2) && place.chi2 >= 0;
}

FitResult ModeFitter::refine(Window window, const Model& start, double tolerance) const
{
    constexpr double kLittle = 1e-6; // of a squared deviation: a thousandth of the uncertainty
    const int mostSteps = tolerance < kRoughTolerance ? 40 : 15;
    FitResult fit;
    fit.window = window;
    fit.model = start;
    Place here;
    Place next;
    if (!look(window, start, here))
        return fit;
    const int nonlinear = 2 * start.modes;
    const int freedom = std::max(fit.degreesOfFreedom(), 1);
    double damping = 1e-3;
    Model::Vector step;
    ScaledSystem system;
    for (int i = 0; i < mostSteps; ++i) {
        Model::Matrix damped = here.matrix;
        for (int k = 0; k < nonlinear; ++k)
            damped(k, k) *= 1 + damping;
        if (!system.factor(damped) || !system.solve(here.gradient, step))
            return fit;
        const double longest = step.head(nonlinear).cwiseAbs().maxCoeff();
        const double gain = step.dot(here.gradient);
        if (longest < tolerance || gain * freedom < kLittle * here.chi2) {
            // The last step is taken on trust: it is too short for the curve to bend.
            moveLinear(here.model, step);
            here.chi2 = std::max(here.chi2 - gain, 0.0);
            break;
        }
        Model trial = here.model;
        for (int k = 0; k < nonlinear; ++k)
            (k % 2 == 0 ? trial.lnFs : trial.lnQ)[static_cast<std::size_t>(k / 2)] += std::clamp(step[k], -0.5, 0.5);
        const bool usable = look(window, trial, next);
        if (m_workLeft < 0)
            return fit;
        if (usable && next.chi2 <= here.chi2) {
            std::swap(here, next);
            damping = std::max(damping * 0.1, 1e-12);
        } else {
            if (longest < 1e-8 || damping > 1e12)
                break;
            damping = std::max(damping * 10, 1e-6);
        }
    }
    fit.model = here.model;
    fit.chi2 = here.chi2;
    fit.good = fit.degreesOfFreedom() > 0 && std::isfinite(fit.chi2) && fit.model.vector().allFinite() &&
               invert(here.matrix, fit.covariance);
    return fit;
}

bool ModeFitter::linearPole(Window window, double& f0, double& q0) const
{
    using Vector4 = Eigen::Matrix<std::complex<double>, 4, 1>;
    std::complex<double> c = 0;
    for (int round = 0; round < 5; ++round) {
        if (!spend(window, 1))
            return false;
        const sums::PoleSums sum = sums::pole(points(window), f0, q0, {c.real(), c.imag()});
        // Columns 1, x, x^2 and -xY.
        double gram[4][4][2] = {};
        double right[4][2] = {};
        for (int k = 0; k < 3; ++k) {
            for (int l = 0; l < 3; ++l)
                gram[k][l][0] = sum.powers[k + l];
            for (int part = 0; part < 2; ++part) {
                gram[k][3][part] = -sum.data[k + 1][part];
                gram[3][k][part] = (part == 0 ? -1 : 1) * sum.data[k + 1][part];
                right[k][part] = sum.data[k][part];
            }
        }
        gram[3][3][0] = sum.squares[1];
        right[3][0] = -sum.squares[0];
        double scale[4];
        for (int k = 0; k < 4; ++k) {
            if (!(gram[k][k][0] > 0))
                return false;
            scale[k] = 1 / std::sqrt(gram[k][k][0]);
        }
        Eigen::Matrix<std::complex<double>, 4, 4> matrix;
        Vector4 side;
        for (int k = 0; k < 4; ++k) {
            for (int l = 0; l < 4; ++l)
                matrix(k, l) = std::complex<double>(gram[k][l][0], gram[k][l][1]) * (scale[k] * scale[l]);
            side[k] = std::complex<double>(right[k][0], right[k][1]) * scale[k];
        }
        const Vector4 solution = matrix.partialPivLu().solve(side);
        c = solution[3] * scale[3];
        if (!std::isfinite(c.real()) || !std::isfinite(c.imag()) || std::abs(c) < 1e-9)
            return false;
    }
    const std::complex<double> inverse = 1.0 / c;
    if (std::abs(inverse.imag()) < 1e-9)
        return false;
    const double ts = -inverse.real() / q0;
    const double factor = ts / 2 + std::sqrt(1 + ts * ts / 4);
    const double q = -q0 / inverse.imag();
    if (!std::isfinite(factor) || !(factor > 0) || !std::isfinite(q))
        return false;
    f0 *= factor;
    q0 = q;
    return true;
}

double ModeFitter::smoothChi2(Window window) const
{
    spend(window, 2);
    const double middle = m_sweep.f[window.first + static_cast<std::size_t>(window.count() / 2)];
    const double span = m_sweep.f[window.last - 1] - m_sweep.f[window.first];
    const sums::SmoothSums sum = sums::smooth(points(window), middle, span);
    Eigen::Matrix3d matrix;
    Eigen::Matrix<double, 3, 2> side;
    for (int k = 0; k < 3; ++k) {
        for (int l = 0; l < 3; ++l)
            matrix(k, l) = sum.powers[k + l];
        side(k, 0) = sum.data[k][0];
        side(k, 1) = sum.data[k][1];
    }
    const Eigen::Matrix<double, 3, 2> solution = matrix.partialPivLu().solve(side);
    return sums::smoothRest(points(window), middle, span, {solution(0, 0), solution(1, 0), solution(2, 0)},
                            {solution(0, 1), solution(1, 1), solution(2, 1)});
}

} // namespace resonance
