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
    const bool isKnown = figure.uncertainty > 0 && std::isfinite(figure.uncertainty);
    // Two digits of the uncertainty, and the value to the same place.
    const double place = isKnown ? std::floor(std::log10(figure.uncertainty)) - 1 : 0;
    QString value;
    QString uncertainty;
    if (unit.isEmpty()) {
        constexpr double kMostDecimals = 9;
        const int decimals = static_cast<int>(std::clamp(-place, 0.0, kMostDecimals));
        value = isKnown ? QString::number(figure.value, 'f', decimals) : QString::number(figure.value);
        uncertainty = QString::number(figure.uncertainty, 'f', decimals);
    } else {
        constexpr double kFewest = 2;
        constexpr double kMost = 12;
        const double digits =
            isKnown && figure.value != 0 ? std::floor(std::log10(std::abs(figure.value))) - place + 1 : kMost;
        value = values::engineeringText(figure.value, unit, static_cast<int>(std::clamp(digits, kFewest, kMost)));
        uncertainty = values::engineeringText(figure.uncertainty, unit, 2);
    }
    return isKnown ? value.trimmed() + u" \u00b1 "_s + uncertainty.trimmed() : value.trimmed();
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
