// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

/// The innermost loops: sums over the points of a sweep. The points are added in a fixed order, whatever the processor
/// does at once, so that equal input gives equal sums. Nothing here takes memory.
namespace resonance::sums {

constexpr int kMostModes = 4;
constexpr int kMostColumns = 3 * kMostModes;

/// A stretch of a sweep.
struct Points
{
    const double* f;        ///< Hz
    const double* inverseF; ///< 1/f
    const double* g;        ///< S
    const double* b;        ///< S
    const double* weight;
    int count;
};

/// Sum of G1/(1 + jQu) + offset + tilt (f/reference - 1), as plain numbers.
struct Curve
{
    int modes = 1;
    double fs[kMostModes];
    double q[kMostModes];
    double g1[kMostModes];
    double reference = 1;
    double offset[2]; ///< real, imaginary
    double tilt[2];
};

/// What a step of the fit needs. Columns: derivatives by ln fs and ln Q of each mode, then the poles, all of unit G1.
struct Normal
{
    double pair[kMostColumns][kMostColumns]; ///< columns with each other, the lower triangle
    double withOffset[kMostColumns][2];
    double withTilt[kMostColumns][2];
    double right[kMostColumns]; ///< columns with what the curve leaves
    double background[3];       ///< sums of w, wt and wt^2 with t = f/reference - 1
    double rightOffset[2];
    double rightTilt[2];
    double chi2; ///< weighted squares of what the curve leaves
};
enum class Columns
{
    All,
    Poles, ///< the entries of the derivatives stay as they are
};
void normal(const Points& points, const Curve& curve, Columns which, Normal& sums);

/// Squares of what the curve leaves.
struct Rest
{
    double weighted;
    double plain;
};
Rest rest(const Points& points, const Curve& curve);

/// Takes the modes away from g and b, without the background.
void takeAway(const Points& points, const Curve& curve, double* g, double* b);

/// 1/(constant + proportional |Y|^2) by the curve's modulus.
void weigh(const Points& points, const Curve& curve, double constant, double proportional, double* weight);

/// For the linear fit of a pole, with x = q0 (f/f0 - f0/f) and weights w/|1 + cx|^2.
struct PoleSums
{
    double powers[5];  ///< of x
    double data[4][2]; ///< Y times powers of x
    double squares[2]; ///< |Y|^2 times x and x^2
};
PoleSums pole(const Points& points, double f0, double q0, const double (&c)[2]);

/// For a quadratic background in t = (f - middle)/span.
struct SmoothSums
{
    double powers[5];
    double data[3][2];
};
SmoothSums smooth(const Points& points, double middle, double span);
/// Weighted squares of what is left by re and im, polynomials in t.
double smoothRest(const Points& points, double middle, double span, const std::array<double, 3>& re,
                  const std::array<double, 3>& im);

/// Squares over share + (1 - share) level, and the sum of the logarithms of these.
double relativeSquares(const double* squares, const double* levels, int count, double share, double* relative);
/// Sum of factor times the values, each at most most.
double clipped(const double* values, int count, double factor, double most);

} // namespace resonance::sums
