// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/resonance/ResonanceEngine.h"

#include "controls/polar/PolarConversion.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

using resonance::Refusal;

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

} // namespace

void ResonanceEngine::AnalysisClear()
{
    for (Set& set : m_sets)
        set.forget();
}

void ResonanceEngine::Set::forget()
{
    samples.clear();
    indices.clear();
    withoutPhase = false;
    solved = false;
}

bool ResonanceEngine::Set::isAsSolved() const
{
    // By their bytes: what is not a number is equal to itself here.
    static_assert(sizeof(resonance::Sample) == 3 * sizeof(double));
    return samples.size() == solvedSamples.size() &&
           std::memcmp(samples.data(), solvedSamples.data(), samples.size() * sizeof(resonance::Sample)) == 0;
}

std::int32_t ResonanceEngine::Set::indexNear(double frequency) const
{
    std::int32_t nearest = -1;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double distance = std::abs(samples[i].frequency - frequency);
        if (distance < least && std::isfinite(samples[i].conductance) && std::isfinite(samples[i].susceptance)) {
            least = distance;
            nearest = indices[i];
        }
    }
    return nearest;
}

ResonanceEngine::Set* ResonanceEngine::setFor(std::int32_t pen, std::int32_t index)
{
    if (pen < 0 || pen >= kPens)
        return nullptr;
    Set& set = m_sets[static_cast<std::size_t>(pen)];
    if (index == 0)
        set.forget();
    set.solved = false;
    set.indices.push_back(index);
    return &set;
}

void ResonanceEngine::AnalysisAddPolar(double frequency, double modulus, double phase, std::int32_t pen,
                                       std::int32_t& index)
{
    Set* const set = setFor(pen, index);
    if (!set)
        return;
    if (std::abs(phase) == kNoPhase)
        set->withoutPhase = true;
    // A sample that is not finite is left out and counted by the solver.
    resonance::Sample sample{frequency, kNaN, kNaN};
    if (std::isfinite(modulus) && modulus != 0 && std::isfinite(phase)) {
        const polar::Rectangular point = polar::toRectangular(modulus, phase);
        sample.conductance = point.conductance;
        sample.susceptance = point.susceptance;
    }
    set->samples.push_back(sample);
}

void ResonanceEngine::AnalysisAddRect(double frequency, double resistance, double reactance, double susceptance,
                                      double conductance, std::int32_t pen, std::int32_t& index)
{
    Set* const set = setFor(pen, index);
    if (!set)
        return;
    if (susceptance == 0 && conductance == 0) {
        const double square = resistance * resistance + reactance * reactance;
        conductance = square > 0 ? resistance / square : kNaN;
        susceptance = square > 0 ? -reactance / square : kNaN;
    }
    set->samples.push_back({frequency, conductance, susceptance});
}

bool ResonanceEngine::hasPoints(std::int32_t pen) const
{
    return pen >= 0 && pen < kPens && !m_sets[static_cast<std::size_t>(pen)].samples.empty();
}

const resonance::Solution& ResonanceEngine::solution(std::int32_t pen)
{
    if (!hasPoints(pen))
        return m_none;
    Set& set = m_sets[static_cast<std::size_t>(pen)];
    if (set.solved)
        return set.solution;
    if (set.withoutPhase) {
        set.solution = {};
        set.solution.refusal = Refusal::NoPhase;
        set.solvedSamples.clear();
    } else if (!set.isAsSolved()) {
        set.solution = m_solver.solve(set.samples);
        set.solvedSamples = set.samples;
        ++m_solveCount;
    }
    set.solved = true;
    return set.solution;
}

bool ResonanceEngine::AnalysisSolve(std::int32_t pen, std::int32_t mode)
{
    m_mode = {};
    m_pointIndex = -1;
    const resonance::Solution& found = solution(pen);
    if (!found.found || mode > found.otherCount)
        return false;
    m_mode = mode <= 0 ? found.mode : found.others[static_cast<std::size_t>(mode - 1)];
    m_pointIndex = m_sets[static_cast<std::size_t>(pen)].indexNear(m_mode.fs.value);
    return true;
}

bool ResonanceEngine::AnalysisSolveClf(std::int32_t pen)
{
    m_clf = {};
    if (!hasPoints(pen) || m_sets[static_cast<std::size_t>(pen)].withoutPhase)
        return false;
    m_clf = m_solver.lowFrequencyCapacitance(m_sets[static_cast<std::size_t>(pen)].samples, solution(pen));
    return m_clf.found;
}

QString ResonanceEngine::FormatEngineering(double value)
{
    if (!std::isfinite(value))
        return QStringLiteral("N/A");
    if (value == 0)
        return QStringLiteral("0.000 ");
    static constexpr std::array<const char*, 15> prefixes = {"y", "z", "a", "f", "p", "n", "u", "m",
                                                             "",  "k", "M", "G", "T", "P", "E"};
    constexpr int kUnity = 8;
    constexpr int kDigits = 4;
    // Rounded first: 999.96 becomes 1.000 k.
    const QString text = QString::number(value, 'e', kDigits - 1);
    const qsizetype mark = text.indexOf(u'e');
    const int power = text.sliced(mark + 1).toInt();
    const int third = power >= 0 ? power / 3 : -((2 - power) / 3);
    if (third < -kUnity)
        return QStringLiteral("0.000 ");
    const int prefix = std::min(third, static_cast<int>(prefixes.size()) - 1 - kUnity);
    const int entry = prefix + kUnity;
    QString digits = text.first(mark).remove(u'.');
    const qsizetype sign = digits.startsWith(u'-') ? 1 : 0;
    const qsizetype whole = sign + 1 + power - 3 * prefix;
    if (whole < digits.size())
        digits.insert(whole, u'.');
    else
        digits = digits.leftJustified(whole, u'0');
    return digits + u' ' + QLatin1String(prefixes[static_cast<std::size_t>(entry)]);
}
