// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/rules/Measures.h"

#include "values/EngineeringText.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>

namespace measures {
namespace {

using namespace Qt::StringLiterals;
using resonance::Mode;

QString tr(const char* text)
{
    return QCoreApplication::translate("measures", text);
}

constexpr std::array<Measure, 5> kResonance = {{
    {"f1", "F1", "Hz", QT_TRANSLATE_NOOP("measures", "lower frequency of half the motional conductance"), &Mode::f1},
    {"f2", "F2", "Hz", QT_TRANSLATE_NOOP("measures", "upper frequency of half the motional conductance"), &Mode::f2},
    {"fr", "Fr", "Hz", QT_TRANSLATE_NOOP("measures", "series resonance, where the motional conductance is largest"),
     &Mode::fs},
    {"zr", "Zr", "Ohm", QT_TRANSLATE_NOOP("measures", "modulus of the impedance at Fr, as the instrument reads it"),
     &Mode::zr},
    {"q", "Q", "", QT_TRANSLATE_NOOP("measures", "quality factor of the motional arm, Fr / (F2 - F1)"), &Mode::q},
}};

constexpr std::array<Measure, 6> kCircuit = {{
    {"r1", "R1", "Ohm", QT_TRANSLATE_NOOP("measures", "motional resistance"), &Mode::r1},
    {"l1", "L1", "H", QT_TRANSLATE_NOOP("measures", "motional inductance"), &Mode::l1},
    {"c1", "C1", "F", QT_TRANSLATE_NOOP("measures", "motional capacitance"), &Mode::c1},
    {"c0", "C0", "F", QT_TRANSLATE_NOOP("measures", "parallel capacitance near the resonance, other modes included"),
     &Mode::c0},
    {"fp", "fp", "Hz", QT_TRANSLATE_NOOP("measures", "parallel resonance, Fr times the root of 1 + C1/C0"), &Mode::fp},
    {"keff", "keff", "", QT_TRANSLATE_NOOP("measures", "effective coupling factor, the root of C1 / (C0 + C1)"),
     &Mode::keff},
}};

} // namespace

std::span<const Measure> ofResonance()
{
    return kResonance;
}

std::span<const Measure> ofCircuit()
{
    return kCircuit;
}

QString definition(const Measure& measure)
{
    return tr(measure.definition);
}

QString capacitanceDefinition()
{
    return tr("capacitance at low frequency, the median of the first points");
}

QString valueText(const resonance::Figure& figure, const QString& unit)
{
    if (!std::isfinite(figure.value))
        return u"N/A"_s;
    // Two digits of the uncertainty.
    constexpr double kFewest = 2;
    constexpr double kMost = 12;
    double digits = kMost;
    if (figure.uncertainty > 0 && figure.value != 0)
        digits = std::floor(std::log10(std::abs(figure.value))) - std::floor(std::log10(figure.uncertainty)) + 2;
    const int shown = static_cast<int>(std::clamp(digits, kFewest, kMost));
    const QString text = values::engineeringText(figure.value, unit, shown).trimmed();
    return std::isfinite(figure.uncertainty)
               ? text + u" \u00b1 "_s + values::engineeringText(figure.uncertainty, unit, 2).trimmed()
               : text;
}

QString coverageText(const Mode& mode)
{
    return tr("95 of 100 intervals of %1 times the uncertainties hold the true value")
        .arg(QString::number(mode.coverageFactor, 'f', 2));
}

QString pointsText(const resonance::Solution& solution)
{
    return tr("%1 points per bandwidth, %2 points used")
        .arg(QString::number(solution.mode.pointsPerBandwidth, 'g', 3), QString::number(solution.usedPoints));
}

QStringList flags(const resonance::Solution& solution)
{
    QStringList texts;
    for (const std::string& text : resonance::flagTexts(solution))
        texts += QString::fromStdString(text);
    return texts;
}

} // namespace measures
