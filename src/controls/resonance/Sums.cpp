// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/Sums.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numbers>

// Compiled for wider registers too, and chosen when the program starts. Without fused operations, both give the same
// bits. The sanitizers are not ready that early.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_ADDRESS__)
#define MG_WIDE __attribute__((target_clones("avx2", "default")))
#else
#define MG_WIDE
#endif

namespace resonance::sums {
namespace {

/// Points that are worked on at once; every sum is kept as so many, which are added at the end.
constexpr int kLanes = 16;
using Lanes = double[kLanes];

/// A block of points; behind the last point of the stretch stand copies of it of weight 0.
struct Block
{
    const double* f;
    const double* inverseF;
    const double* g;
    const double* b;
    const double* weight;
    Lanes padding[5];

    void load(const Points& points, int first)
    {
        const double* const from[5] = {points.f, points.inverseF, points.g, points.b, points.weight};
        const double* to[5];
        const int count = points.count - first;
        for (int k = 0; k < 5; ++k) {
            to[k] = from[k] + first;
            if (count >= kLanes)
                continue;
            for (int i = 0; i < kLanes; ++i)
                padding[k][i] = i < count ? to[k][i] : k == 4 ? 0.0 : to[k][count - 1];
            to[k] = padding[k];
        }
        f = to[0];
        inverseF = to[1];
        g = to[2];
        b = to[3];
        weight = to[4];
    }
};

inline double total(const Lanes& lanes)
{
    double sum = 0;
    for (int i = 0; i < kLanes; ++i)
        sum += lanes[i];
    return sum;
}

inline void clear(Lanes* sums, int count)
{
    std::memset(sums, 0, sizeof(Lanes) * static_cast<std::size_t>(count));
}

inline void addModes(const Curve& curve, const Block& block, Lanes& re, Lanes& im)
{
    for (int k = 0; k < curve.modes; ++k) {
        const double fs = curve.fs[k];
        const double inverseFs = 1 / fs;
        const double q = curve.q[k];
        const double g1 = curve.g1[k];
        for (int i = 0; i < kLanes; ++i) {
            const double x = q * ((block.f[i] - fs) * (inverseFs + block.inverseF[i]));
            const double norm = g1 / (1 + x * x);
            re[i] += norm;
            im[i] -= x * norm;
        }
    }
}

inline void valuesOf(const Curve& curve, const Block& block, Lanes& re, Lanes& im)
{
    const double inverseReference = 1 / curve.reference;
    for (int i = 0; i < kLanes; ++i) {
        const double t = block.f[i] * inverseReference - 1;
        re[i] = curve.offset[0] + curve.tilt[0] * t;
        im[i] = curve.offset[1] + curve.tilt[1] * t;
    }
    addModes(curve, block, re, im);
}

/// Enough for all columns with each other, with the background and with the data.
constexpr int kMostSums = kMostColumns * (kMostColumns + 1) / 2 + 5 * kMostColumns + 8;

} // namespace

MG_WIDE void normal(const Points& points, const Curve& curve, Columns which, Normal& sums)
{
    const int modes = curve.modes;
    const int columns = 3 * modes;
    const int firstColumn = which == Columns::Poles ? 2 * modes : 0;
    alignas(64) Lanes all[kMostSums];
    alignas(64) Lanes re[kMostColumns];
    alignas(64) Lanes im[kMostColumns];
    alignas(64) Lanes t, r, s, wr, wi;
    const int used = columns - firstColumn;
    clear(all, used * (used + 1) / 2 + 5 * used + 8);
    Block block;
    for (int first = 0; first < points.count; first += kLanes) {
        block.load(points, first);
        const double inverseReference = 1 / curve.reference;
        for (int i = 0; i < kLanes; ++i) {
            t[i] = block.f[i] * inverseReference - 1;
            r[i] = block.g[i] - curve.offset[0] - curve.tilt[0] * t[i];
            s[i] = block.b[i] - curve.offset[1] - curve.tilt[1] * t[i];
        }
        for (int k = 0; k < modes; ++k) {
            const double fs = curve.fs[k];
            const double inverseFs = 1 / fs;
            const double q = curve.q[k];
            const double g1 = curve.g1[k];
            for (int i = 0; i < kLanes; ++i) {
                // Q (f/fs - fs/f), without the loss of digits near fs
                const double x = q * ((block.f[i] - fs) * (inverseFs + block.inverseF[i]));
                const double dx = -q * (block.f[i] * inverseFs + fs * block.inverseF[i]);
                const double norm = 1 / (1 + x * x);
                const double poleIm = -x * norm;
                const double squareRe = norm * norm - poleIm * poleIm;
                const double squareIm = 2 * norm * poleIm;
                re[2 * k][i] = squareIm * dx;
                im[2 * k][i] = -squareRe * dx;
                re[2 * k + 1][i] = squareIm * x;
                im[2 * k + 1][i] = -squareRe * x;
                re[2 * modes + k][i] = norm;
                im[2 * modes + k][i] = poleIm;
                r[i] -= g1 * norm;
                s[i] -= g1 * poleIm;
            }
        }
        Lanes* sum = all;
        for (int c = firstColumn; c < columns; ++c) {
            for (int i = 0; i < kLanes; ++i) {
                wr[i] = block.weight[i] * re[c][i];
                wi[i] = block.weight[i] * im[c][i];
            }
            for (int d = firstColumn; d <= c; ++d, ++sum) {
                for (int i = 0; i < kLanes; ++i)
                    (*sum)[i] += wr[i] * re[d][i] + wi[i] * im[d][i];
            }
            for (int i = 0; i < kLanes; ++i) {
                sum[0][i] += wr[i];
                sum[1][i] += wi[i];
                sum[2][i] += wr[i] * t[i];
                sum[3][i] += wi[i] * t[i];
                sum[4][i] += wr[i] * r[i] + wi[i] * s[i];
            }
            sum += 5;
        }
        for (int i = 0; i < kLanes; ++i) {
            const double w = block.weight[i];
            const double wt = w * t[i];
            sum[0][i] += w;
            sum[1][i] += wt;
            sum[2][i] += wt * t[i];
            sum[3][i] += w * r[i];
            sum[4][i] += w * s[i];
            sum[5][i] += wt * r[i];
            sum[6][i] += wt * s[i];
            sum[7][i] += w * (r[i] * r[i] + s[i] * s[i]);
        }
    }
    const Lanes* sum = all;
    for (int c = firstColumn; c < columns; ++c) {
        for (int d = firstColumn; d <= c; ++d)
            sums.pair[c][d] = total(*sum++);
        for (int part = 0; part < 2; ++part) {
            sums.withOffset[c][part] = total(sum[part]);
            sums.withTilt[c][part] = total(sum[2 + part]);
        }
        sums.right[c] = total(sum[4]);
        sum += 5;
    }
    for (int k = 0; k < 3; ++k)
        sums.background[k] = total(sum[k]);
    for (int part = 0; part < 2; ++part) {
        sums.rightOffset[part] = total(sum[3 + part]);
        sums.rightTilt[part] = total(sum[5 + part]);
    }
    sums.chi2 = total(sum[7]);
}

MG_WIDE Rest rest(const Points& points, const Curve& curve)
{
    alignas(64) Lanes sum[2];
    alignas(64) Lanes r, s;
    clear(sum, 2);
    Block block;
    for (int first = 0; first < points.count; first += kLanes) {
        block.load(points, first);
        valuesOf(curve, block, r, s);
        const int count = std::min(kLanes, points.count - first);
        for (int i = 0; i < kLanes; ++i) {
            const double g = block.g[i] - r[i];
            const double b = block.b[i] - s[i];
            const double square = g * g + b * b;
            sum[0][i] += block.weight[i] * square;
            sum[1][i] += i < count ? square : 0;
        }
    }
    return {total(sum[0]), total(sum[1])};
}

MG_WIDE void weigh(const Points& points, const Curve& curve, double constant, double proportional, double* weight)
{
    alignas(64) Lanes r, s;
    Block block;
    for (int first = 0; first < points.count; first += kLanes) {
        block.load(points, first);
        valuesOf(curve, block, r, s);
        for (int i = 0; i < kLanes; ++i)
            r[i] = 1 / (constant + proportional * (r[i] * r[i] + s[i] * s[i]));
        std::copy_n(r, std::min(kLanes, points.count - first), weight + first);
    }
}

MG_WIDE void takeAway(const Points& points, const Curve& curve, double* g, double* b)
{
    alignas(64) Lanes r, s;
    Block block;
    for (int first = 0; first < points.count; first += kLanes) {
        block.load(points, first);
        std::fill_n(r, kLanes, 0.0);
        std::fill_n(s, kLanes, 0.0);
        addModes(curve, block, r, s);
        const int count = std::min(kLanes, points.count - first);
        for (int i = 0; i < count; ++i) {
            g[first + i] -= r[i];
            b[first + i] -= s[i];
        }
    }
}

MG_WIDE PoleSums pole(const Points& points, double f0, double q0, const double (&c)[2])
{
    alignas(64) Lanes sum[15];
    clear(sum, 15);
    const double inverseF0 = 1 / f0;
    Block block;
    for (int first = 0; first < points.count; first += kLanes) {
        block.load(points, first);
        for (int i = 0; i < kLanes; ++i) {
            const double x = q0 * ((block.f[i] - f0) * (inverseF0 + block.inverseF[i]));
            const double g = block.g[i];
            const double b = block.b[i];
            const double re = 1 + c[0] * x;
            const double im = c[1] * x;
            const double square = re * re + im * im;
            const double w = block.weight[i] / (square > 1e-12 ? square : 1e-12);
            const double wx = w * x;
            const double wxx = wx * x;
            const double wxxx = wxx * x;
            const double modulus = g * g + b * b;
            sum[0][i] += w;
            sum[1][i] += wx;
            sum[2][i] += wxx;
            sum[3][i] += wxxx;
            sum[4][i] += wxxx * x;
            sum[5][i] += w * g;
            sum[6][i] += w * b;
            sum[7][i] += wx * g;
            sum[8][i] += wx * b;
            sum[9][i] += wxx * g;
            sum[10][i] += wxx * b;
            sum[11][i] += wxxx * g;
            sum[12][i] += wxxx * b;
            sum[13][i] += wx * modulus;
            sum[14][i] += wxx * modulus;
        }
    }
    PoleSums sums;
    for (int k = 0; k < 5; ++k)
        sums.powers[k] = total(sum[k]);
    for (int k = 0; k < 4; ++k) {
        sums.data[k][0] = total(sum[5 + 2 * k]);
        sums.data[k][1] = total(sum[6 + 2 * k]);
    }
    sums.squares[0] = total(sum[13]);
    sums.squares[1] = total(sum[14]);
    return sums;
}

MG_WIDE SmoothSums smooth(const Points& points, double middle, double span)
{
    alignas(64) Lanes sum[11];
    clear(sum, 11);
    const double inverseSpan = 1 / span;
    Block block;
    for (int first = 0; first < points.count; first += kLanes) {
        block.load(points, first);
        for (int i = 0; i < kLanes; ++i) {
            const double t = (block.f[i] - middle) * inverseSpan;
            const double w = block.weight[i];
            const double wt = w * t;
            const double wtt = wt * t;
            const double wttt = wtt * t;
            sum[0][i] += w;
            sum[1][i] += wt;
            sum[2][i] += wtt;
            sum[3][i] += wttt;
            sum[4][i] += wttt * t;
            sum[5][i] += w * block.g[i];
            sum[6][i] += w * block.b[i];
            sum[7][i] += wt * block.g[i];
            sum[8][i] += wt * block.b[i];
            sum[9][i] += wtt * block.g[i];
            sum[10][i] += wtt * block.b[i];
        }
    }
    SmoothSums sums;
    for (int k = 0; k < 5; ++k)
        sums.powers[k] = total(sum[k]);
    for (int k = 0; k < 3; ++k) {
        sums.data[k][0] = total(sum[5 + 2 * k]);
        sums.data[k][1] = total(sum[6 + 2 * k]);
    }
    return sums;
}

MG_WIDE double smoothRest(const Points& points, double middle, double span, const std::array<double, 3>& re,
                          const std::array<double, 3>& im)
{
    alignas(64) Lanes sum[1];
    clear(sum, 1);
    const double inverseSpan = 1 / span;
    const double re0 = re[0], re1 = re[1], re2 = re[2];
    const double im0 = im[0], im1 = im[1], im2 = im[2];
    Block block;
    for (int first = 0; first < points.count; first += kLanes) {
        block.load(points, first);
        for (int i = 0; i < kLanes; ++i) {
            const double t = (block.f[i] - middle) * inverseSpan;
            const double r = block.g[i] - (re0 + t * (re1 + t * re2));
            const double s = block.b[i] - (im0 + t * (im1 + t * im2));
            sum[0][i] += block.weight[i] * (r * r + s * s);
        }
    }
    return total(sum[0]);
}

MG_WIDE double relativeSquares(const double* squares, const double* levels, int count, double share, double* relative)
{
    // The logarithm is taken of the product of all mantissas, in lanes that cannot overflow, and of the exponents' sum.
    constexpr std::uint64_t kMantissa = (std::uint64_t(1) << 52) - 1;
    constexpr std::uint64_t kOne = std::uint64_t(1023) << 52;
    constexpr int kMostFactors = 512;
    alignas(64) Lanes product;
    alignas(64) Lanes variance;
    alignas(64) std::uint64_t exponents[kLanes] = {};
    double logarithms = 0;
    std::fill_n(product, kLanes, 1.0);
    const double rest = 1 - share;
    for (int first = 0; first < count; first += kLanes) {
        const int used = std::min(kLanes, count - first);
        if (used == kLanes) {
            for (int i = 0; i < kLanes; ++i) {
                variance[i] = share + rest * levels[first + i];
                relative[first + i] = squares[first + i] / variance[i];
            }
        } else {
            for (int i = 0; i < kLanes; ++i) {
                variance[i] = i < used ? share + rest * levels[first + i] : 1.0;
                if (i < used)
                    relative[first + i] = squares[first + i] / variance[i];
            }
        }
        for (int i = 0; i < kLanes; ++i) {
            std::uint64_t bits;
            std::memcpy(&bits, &variance[i], sizeof bits);
            exponents[i] += bits >> 52;
            bits = (bits & kMantissa) | kOne;
            double mantissa;
            std::memcpy(&mantissa, &bits, sizeof mantissa);
            product[i] *= mantissa;
        }
        if (first / kLanes % kMostFactors == kMostFactors - 1) {
            for (double& factor : product) {
                logarithms += std::log(factor);
                factor = 1;
            }
        }
    }
    const int blocks = (count + kLanes - 1) / kLanes;
    double powers = -1023.0 * blocks * kLanes;
    for (int i = 0; i < kLanes; ++i) {
        logarithms += std::log(product[i]);
        powers += static_cast<double>(exponents[i]);
    }
    return logarithms + powers * std::numbers::ln2;
}

MG_WIDE double clipped(const double* values, int count, double factor, double most)
{
    alignas(64) Lanes sum[1];
    clear(sum, 1);
    int first = 0;
    for (; first + kLanes <= count; first += kLanes) {
        for (int i = 0; i < kLanes; ++i) {
            const double value = factor * values[first + i];
            sum[0][i] += value < most ? value : most;
        }
    }
    for (int i = 0; first + i < count; ++i)
        sum[0][i] += std::min(factor * values[first + i], most);
    return total(sum[0]);
}

} // namespace resonance::sums
