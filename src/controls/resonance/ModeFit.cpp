// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/ModeFit.h"

#include <Eigen/Cholesky>
#include <Eigen/LU>
#include <algorithm>
#include <cmath>

namespace resonance {
namespace {

/// The pole 1/(1 + jQu) and its derivatives by ln fs and ln Q, as plain numbers: this is the innermost loop.
struct PoleColumns
{
    double re[3];
    double im[3];

    PoleColumns(double f, double fs, double q)
    {
        const double up = f / fs;
        const double down = fs / f;
        const double x = q * (up - down);
        const double norm = 1 / (1 + x * x);
        re[0] = norm;
        im[0] = -x * norm;
        const double squareRe = re[0] * re[0] - im[0] * im[0];
        const double squareIm = 2 * re[0] * im[0];
        // -j L^2 dx
        const double dx = -q * (up + down);
        re[1] = squareIm * dx;
        im[1] = -squareRe * dx;
        re[2] = squareIm * x;
        im[2] = -squareRe * x;
    }
};

/// Solves a symmetric positive system with its diagonal brought to 1 first. False when it is singular.
bool solveScaled(const Model::Matrix& matrix, const Model::Vector& right, Model::Vector& solution)
{
    const Eigen::Index n = matrix.rows();
    Model::Vector scale(n);
    for (Eigen::Index i = 0; i < n; ++i) {
        if (!(matrix(i, i) > 0))
            return false;
        scale[i] = 1 / std::sqrt(matrix(i, i));
    }
    Model::Matrix scaled(n, n);
    for (Eigen::Index i = 0; i < n; ++i) {
        for (Eigen::Index k = 0; k < n; ++k)
            scaled(i, k) = matrix(i, k) * scale[i] * scale[k];
    }
    const Eigen::LDLT<Model::Matrix> factors(scaled);
    if (factors.info() != Eigen::Success)
        return false;
    solution = right.cwiseProduct(scale);
    factors.solveInPlace(solution);
    solution = solution.cwiseProduct(scale).eval();
    return solution.allFinite();
}

bool invertScaled(const Model::Matrix& matrix, Model::Matrix& inverse)
{
    const Eigen::Index n = matrix.rows();
    inverse.resize(n, n);
    Model::Vector column;
    for (Eigen::Index i = 0; i < n; ++i) {
        Model::Vector unit = Model::Vector::Zero(n);
        unit[i] = 1;
        if (!solveScaled(matrix, unit, column) || !(column[i] > 0))
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

/// The normal equations for columns of unit G1: three for each mode, then the background.
struct ModeFitter::Normal
{
    Model::Matrix matrix; ///< in the order of the model's parameters
    Model::Vector right;
};

bool ModeFitter::spend(Window window, int modes) const
{
    m_workLeft -= static_cast<std::int64_t>(window.count()) * modes;
    return m_workLeft >= 0;
}

void ModeFitter::weighByData(const Noise& noise)
{
    m_weight.resize(m_sweep.size());
    for (std::size_t i = 0; i < m_weight.size(); ++i)
        m_weight[i] = 1 / noise.variance(m_sweep.modulusSquared(i));
}

void ModeFitter::weighByModel(const Noise& noise, const FitResult& fit)
{
    for (std::size_t i = fit.window.first; i < fit.window.last; ++i)
        m_weight[i] = 1 / noise.variance(std::norm(fit.model(m_sweep.f[i])));
}

void ModeFitter::accumulate(Window window, const Model& model, Normal& normal) const
{
    const int modes = model.modes;
    const int columns = 3 * modes;
    double pair[3 * kMostModes][3 * kMostModes] = {};
    double withConstant[3 * kMostModes][2] = {};
    double withTilt[3 * kMostModes][2] = {};
    double rightPole[3 * kMostModes] = {};
    double w0 = 0, w1 = 0, w2 = 0, yr = 0, yi = 0, tr = 0, ti = 0;
    double fs[kMostModes];
    double q[kMostModes];
    for (int k = 0; k < modes; ++k) {
        fs[k] = std::exp(model.lnFs[static_cast<std::size_t>(k)]);
        q[k] = std::exp(model.lnQ[static_cast<std::size_t>(k)]);
    }
    double re[3 * kMostModes] = {};
    double im[3 * kMostModes] = {};
    for (std::size_t i = window.first; i < window.last; ++i) {
        const double f = m_sweep.f[i];
        const double w = m_weight[i];
        const double t = f / model.reference - 1;
        const double g = m_sweep.g[i];
        const double b = m_sweep.b[i];
        for (int k = 0; k < modes; ++k) {
            const PoleColumns pole(f, fs[k], q[k]);
            // As the parameters stand: ln fs, ln Q of each mode, then the poles themselves.
            re[2 * k] = pole.re[1];
            im[2 * k] = pole.im[1];
            re[2 * k + 1] = pole.re[2];
            im[2 * k + 1] = pole.im[2];
            re[2 * modes + k] = pole.re[0];
            im[2 * modes + k] = pole.im[0];
        }
        for (int c = 0; c < columns; ++c) {
            const double wr = w * re[c];
            const double wi = w * im[c];
            for (int d = 0; d <= c; ++d)
                pair[c][d] += wr * re[d] + wi * im[d];
            withConstant[c][0] += wr;
            withConstant[c][1] += wi;
            withTilt[c][0] += wr * t;
            withTilt[c][1] += wi * t;
            rightPole[c] += wr * g + wi * b;
        }
        const double wt = w * t;
        w0 += w;
        w1 += wt;
        w2 += wt * t;
        yr += w * g;
        yi += w * b;
        tr += wt * g;
        ti += wt * b;
    }
    const int size = model.parameters();
    normal.matrix.setZero(size, size);
    normal.right.resize(size);
    for (int c = 0; c < columns; ++c) {
        for (int d = 0; d <= c; ++d)
            normal.matrix(c, d) = normal.matrix(d, c) = pair[c][d];
        for (int part = 0; part < 2; ++part) {
            normal.matrix(c, columns + part) = normal.matrix(columns + part, c) = withConstant[c][part];
            if (model.slope)
                normal.matrix(c, columns + 2 + part) = normal.matrix(columns + 2 + part, c) = withTilt[c][part];
        }
        normal.right[c] = rightPole[c];
    }
    for (int part = 0; part < 2; ++part) {
        normal.matrix(columns + part, columns + part) = w0;
        normal.right[columns + part] = part == 0 ? yr : yi;
        if (model.slope) {
            normal.matrix(columns + part, columns + 2 + part) = normal.matrix(columns + 2 + part, columns + part) = w1;
            normal.matrix(columns + 2 + part, columns + 2 + part) = w2;
            normal.right[columns + 2 + part] = part == 0 ? tr : ti;
        }
    }
}

double ModeFitter::residual(Window window, const Model& model, Model::Vector& gradient) const
{
    const int modes = model.modes;
    double slopes[2 * kMostModes] = {};
    double chi2 = 0;
    double fs[kMostModes];
    double q[kMostModes];
    for (int k = 0; k < modes; ++k) {
        fs[k] = std::exp(model.lnFs[static_cast<std::size_t>(k)]);
        q[k] = std::exp(model.lnQ[static_cast<std::size_t>(k)]);
    }
    for (std::size_t i = window.first; i < window.last; ++i) {
        const double f = m_sweep.f[i];
        const double t = f / model.reference - 1;
        double r = m_sweep.g[i] - model.offset.real() - model.tilt.real() * t;
        double s = m_sweep.b[i] - model.offset.imag() - model.tilt.imag() * t;
        double dr[2 * kMostModes];
        double di[2 * kMostModes];
        for (int k = 0; k < modes; ++k) {
            const PoleColumns pole(f, fs[k], q[k]);
            const double g1 = model.g1[static_cast<std::size_t>(k)];
            r -= g1 * pole.re[0];
            s -= g1 * pole.im[0];
            for (int c = 0; c < 2; ++c) {
                dr[2 * k + c] = g1 * pole.re[1 + c];
                di[2 * k + c] = g1 * pole.im[1 + c];
            }
        }
        const double w = m_weight[i];
        chi2 += w * (r * r + s * s);
        for (int c = 0; c < 2 * modes; ++c)
            slopes[c] += w * (dr[c] * r + di[c] * s);
    }
    gradient.setZero(model.parameters());
    for (int c = 0; c < 2 * modes; ++c)
        gradient[c] = slopes[c];
    return chi2;
}

namespace {

/// G1 and background for the poles that the normal equations were made with.
bool setLinear(const Model::Matrix& matrix, const Model::Vector& right, Model& model)
{
    const int first = 2 * model.modes;
    const int count = model.parameters() - first;
    Model::Vector linear;
    const Model::Matrix block = matrix.block(first, first, count, count);
    const Model::Vector side = right.segment(first, count);
    if (!solveScaled(block, side, linear))
        return false;
    Model::Vector all = model.vector();
    all.segment(first, count) = linear;
    model.set(all);
    return true;
}

} // namespace

double ModeFitter::solveLinear(Window window, Model& model) const
{
    Normal normal;
    if (!spend(window, model.modes))
        return std::numeric_limits<double>::infinity();
    accumulate(window, model, normal);
    if (!setLinear(normal.matrix, normal.right, model))
        return std::numeric_limits<double>::infinity();
    Model::Vector gradient;
    const double chi2 = residual(window, model, gradient);
    return std::isfinite(chi2) ? chi2 : std::numeric_limits<double>::infinity();
}

FitResult ModeFitter::refine(Window window, const Model& start, double tolerance) const
{
    const int mostSteps = tolerance < kRoughTolerance ? 40 : 15;
    FitResult fit;
    fit.window = window;
    fit.model = start;
    const int nonlinear = 2 * start.modes;
    Normal normal;
    Model::Vector gradient;
    accumulate(window, fit.model, normal);
    if (!setLinear(normal.matrix, normal.right, fit.model))
        return fit;
    fit.chi2 = residual(window, fit.model, gradient);
    // The columns of ln fs and ln Q were made for a G1 of 1.
    const auto withG1 = [&](const Model::Matrix& unit, const Model& model) {
        Model::Matrix scaled = unit;
        for (int k = 0; k < nonlinear; ++k) {
            const double g1 = model.g1[static_cast<std::size_t>(k / 2)];
            scaled.row(k) *= g1;
            scaled.col(k) *= g1;
        }
        return scaled;
    };
    double damping = 1e-3;
    Model::Vector step;
    for (int i = 0; i < mostSteps; ++i) {
        if (!spend(window, start.modes))
            return fit;
        Model::Matrix damped = withG1(normal.matrix, fit.model);
        for (int k = 0; k < nonlinear; ++k)
            damped(k, k) *= 1 + damping;
        if (!solveScaled(damped, gradient, step))
            return fit;
        Model trial = fit.model;
        double longest = 0;
        for (int k = 0; k < nonlinear; ++k) {
            const double clipped = std::clamp(step[k], -0.5, 0.5);
            longest = std::max(longest, std::abs(clipped));
            (k % 2 == 0 ? trial.lnFs : trial.lnQ)[static_cast<std::size_t>(k / 2)] += clipped;
        }
        Normal next;
        accumulate(window, trial, next);
        Model::Vector nextGradient;
        double chi2 = std::numeric_limits<double>::infinity();
        if (setLinear(next.matrix, next.right, trial))
            chi2 = residual(window, trial, nextGradient);
        if (chi2 <= fit.chi2) {
            const bool still = longest < tolerance || (longest < 1e-6 && fit.chi2 - chi2 < 1e-12 * fit.chi2);
            fit.model = trial;
            fit.chi2 = chi2;
            normal = next;
            gradient = nextGradient;
            damping = std::max(damping * 0.1, 1e-12);
            if (still)
                break;
        } else {
            if (longest < std::max(tolerance, 1e-9) || damping > 1e12)
                break;
            damping = std::max(damping * 10, 1e-6);
        }
    }
    fit.good = fit.degreesOfFreedom() > 0 && std::isfinite(fit.chi2) && fit.model.vector().allFinite() &&
               invertScaled(withG1(normal.matrix, fit.model), fit.covariance);
    return fit;
}

bool ModeFitter::linearPole(Window window, double& f0, double& q0) const
{
    using Vector4 = Eigen::Matrix<std::complex<double>, 4, 1>;
    std::complex<double> c = 0;
    for (int round = 0; round < 5; ++round) {
        if (!spend(window, 1))
            return false;
        double gram[4][4][2] = {};
        double right[4][2] = {};
        for (std::size_t i = window.first; i < window.last; ++i) {
            const double x = q0 * (m_sweep.f[i] / f0 - f0 / m_sweep.f[i]);
            const double g = m_sweep.g[i];
            const double b = m_sweep.b[i];
            const double dr = 1 + c.real() * x;
            const double di = c.imag() * x;
            const double w = m_weight[i] / std::max(dr * dr + di * di, 1e-12);
            const double re[4] = {1, x, x * x, -x * g};
            const double im[4] = {0, 0, 0, -x * b};
            for (int k = 0; k < 4; ++k) {
                for (int l = 0; l < 4; ++l) {
                    gram[k][l][0] += w * (re[k] * re[l] + im[k] * im[l]);
                    gram[k][l][1] += w * (re[k] * im[l] - im[k] * re[l]);
                }
                right[k][0] += w * (re[k] * g + im[k] * b);
                right[k][1] += w * (re[k] * b - im[k] * g);
            }
        }
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
    const double middle = m_sweep.f[window.first + static_cast<std::size_t>(window.count() / 2)];
    const double span = m_sweep.f[window.last - 1] - m_sweep.f[window.first];
    double moments[5] = {};
    double right[2][3] = {};
    for (std::size_t i = window.first; i < window.last; ++i) {
        const double t = (m_sweep.f[i] - middle) / span;
        const double w = m_weight[i];
        double power = w;
        for (int k = 0; k < 5; ++k, power *= t) {
            moments[k] += power;
            if (k < 3) {
                right[0][k] += power * m_sweep.g[i];
                right[1][k] += power * m_sweep.b[i];
            }
        }
    }
    Eigen::Matrix3d matrix;
    Eigen::Matrix<double, 3, 2> side;
    for (int k = 0; k < 3; ++k) {
        for (int l = 0; l < 3; ++l)
            matrix(k, l) = moments[k + l];
        side(k, 0) = right[0][k];
        side(k, 1) = right[1][k];
    }
    const Eigen::Matrix<double, 3, 2> solution = matrix.partialPivLu().solve(side);
    double chi2 = 0;
    for (std::size_t i = window.first; i < window.last; ++i) {
        const double t = (m_sweep.f[i] - middle) / span;
        const double r = m_sweep.g[i] - (solution(0, 0) + t * (solution(1, 0) + t * solution(2, 0)));
        const double s = m_sweep.b[i] - (solution(0, 1) + t * (solution(1, 1) + t * solution(2, 1)));
        chi2 += m_weight[i] * (r * r + s * s);
    }
    return chi2;
}

} // namespace resonance
