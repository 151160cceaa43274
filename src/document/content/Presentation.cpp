// SPDX-License-Identifier: GPL-3.0-or-later
#include "document/content/Presentation.h"

#include "document/content/GraphScope.h"
#include "document/content/GraphTexts.h"
#include "document/content/Pens.h"
#include "prefs/Preferences.h"
#include "values/Conversions.h"

#include <algorithm>
#include <cmath>

using namespace graphtexts;

namespace {

/// Degrees; the "180" axis carries the negated magnitude, the "360" axis the signed phase.
constexpr double kHalfCycleMin = -180, kHalfCycleMax = 0;
constexpr double kWholeCycleMin = -180, kWholeCycleMax = 180;

/// 10 to the power of a zoom limit; the last digits, noise of the power, are rounded away.
double hertz(double exponent)
{
    const double value = std::pow(10.0, exponent);
    if (!std::isfinite(value) || value == 0.0)
        return value;
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 11.0);
    const double rounded = std::round(value / unit) * unit;
    // Whole hertz come out exactly, whatever the unit's own rounding.
    const double whole = std::round(rounded);
    return std::abs(rounded - whole) < unit ? whole : rounded;
}

} // namespace

QString Presentation::title(int axis) const
{
    return m_graph.properties().yAxes[static_cast<std::size_t>(axis)].YAxisLabel;
}

bool Presentation::isOverFrequency() const
{
    return m_graph.XAxisLabel() == kFrequency;
}

bool Presentation::isFrequencyLogarithmic() const
{
    return isOverFrequency() && m_graph.XAxisScaleControl() == graph::ScaleLogarithmic;
}

void Presentation::setLimits(int axis, int control, double minimum, double maximum)
{
    const AxisScope scope(m_graph, axis);
    m_graph.setManualScaleControlY(control);
    m_graph.setManualMinY(minimum);
    m_graph.setManualMaxY(maximum);
}

void Presentation::setAutomatic(std::initializer_list<int> axes, bool automatic)
{
    for (const int axis : axes) {
        const AxisScope scope(m_graph, axis);
        m_graph.setManualScaleControlY(automatic ? graph::ScaleAutomatic : graph::ScaleManual);
    }
}

void Presentation::setYScale(std::initializer_list<int> axes, bool linear)
{
    for (const int axis : axes) {
        const AxisScope scope(m_graph, axis);
        m_graph.setYAxisScaleControl(linear ? graph::ScaleLinear : graph::ScaleLogarithmic);
    }
}

void Presentation::configureTest(std::int16_t testType, const PlotSource::Limits& limits)
{
    m_testType = testType;
    m_alternate = false;
    m_phaseView = plot::NoPhase;
    m_rgView = testType == plot::Reactance ? plot::Resistance : plot::NeitherRG;
    switch (testType) {
    case plot::Amplitude:
        setAmplitudeLimits(limits.lowestLevel, limits.highestLevel);
        break;
    case plot::Impedance:
        setLimits(0, graph::ScaleManual, limits.lowestImpedance, limits.highestImpedance);
        if (limits.lowestImpedance > 0 && limits.highestImpedance > 0)
            setLimits(1, graph::ScaleManual, 1.0 / limits.highestImpedance, 1.0 / limits.lowestImpedance);
        break;
    case plot::Reactance:
        setLimits(0, graph::ScaleAutomatic, limits.reactanceMin, limits.reactanceMax);
        setLimits(1, graph::ScaleAutomatic, limits.susceptanceMin, limits.susceptanceMax);
        setLimits(2, graph::ScaleAutomatic, limits.conductanceMin, limits.conductanceMax);
        setLimits(3, graph::ScaleAutomatic, limits.resistanceMin, limits.resistanceMax);
        break;
    default:
        break;
    }
    if (testType == plot::Amplitude || testType == plot::Impedance) {
        setLimits(2, graph::ScaleManual, kHalfCycleMin, kHalfCycleMax);
        setLimits(3, graph::ScaleManual, kWholeCycleMin, kWholeCycleMax);
    }
    setYScale({0, 1}, testType != plot::Impedance);
    setYScale({2, 3}, true);
    nameAxes();
}

void Presentation::nameAxes()
{
    QLatin1String main(""), alternate("");
    switch (m_testType) {
    case plot::Amplitude:
        main = kGain;
        alternate = kLoss;
        break;
    case plot::Impedance:
        main = kImpedance;
        alternate = kAdmittance;
        break;
    case plot::Reactance:
        main = kReactance;
        alternate = kSusceptance;
        break;
    default:
        break;
    }
    const auto name = [this](int axis, QLatin1String text) {
        const AxisScope scope(m_graph, axis);
        m_graph.setYAxisLabel(text);
    };
    name(0, m_alternate ? kSwitchedOff : main);
    name(1, m_alternate ? alternate : kSwitchedOff);
    if (m_testType == plot::Reactance) {
        name(2, m_rgView == plot::Conductance ? kConductance : kSwitchedOff);
        name(3, m_rgView == plot::Resistance ? kResistance : kSwitchedOff);
    } else {
        name(2, m_phaseView == plot::HalfCycle ? kPhase : kSwitchedOff);
        name(3, m_phaseView == plot::WholeCycle ? kPhase : kSwitchedOff);
    }
    m_graph.setWorkingAxis(0);
}

void Presentation::configureFrequency(bool linear, const PlotSource::Limits& limits)
{
    m_graph.setXAxisLabel(kFrequency);
    setFrequencyLinear(linear);
    m_graph.setManualScaleControlX(graph::ScaleManual);
    // A sweep fills the graph that it was set up for.
    const double start = std::min(limits.sweepStart, limits.sweepEnd);
    const double end = std::max(limits.sweepStart, limits.sweepEnd);
    const bool sweep = start > 0 && start < end;
    m_graph.setManualMinX(sweep ? start : limits.lowestFrequency);
    m_graph.setManualMaxX(sweep ? end : limits.highestFrequency);
}

void Presentation::setDefaults(const Preferences& preferences)
{
    const auto phaseOf = [&preferences](const options::Option<options::Integer>& option) {
        return values::roundToInt16(preferences.value(option));
    };
    switch (m_testType) {
    case plot::Amplitude:
        setAutomatic({0, 1}, preferences.value(options::kAmplitudeAxisScaleAuto));
        setPhaseView(phaseOf(options::kAmplitudePhaseGraph));
        setFrequencyLinear(preferences.value(options::kAmplitudeAxisScaleLin));
        break;
    case plot::Impedance:
        setAutomatic({0, 1}, preferences.value(options::kImpedanceDisplayLimits) == options::kAutoLimits);
        setImpedanceLinear(false);
        setPhaseView(phaseOf(options::kImpedancePhaseGraph));
        setFrequencyLinear(preferences.value(options::kImpedanceAxisScaleLin));
        break;
    case plot::Reactance: {
        setAutomatic({0, 1}, preferences.value(options::kReactanceReactAuto));
        setAutomatic({2, 3}, preferences.value(options::kReactanceResAuto));
        const bool impedance = preferences.value(options::kReactanceImpedance);
        setAlternate(!impedance);
        setRGView(impedance ? plot::Resistance : plot::Conductance);
        setFrequencyLinear(!preferences.value(options::kReactanceFreqLog));
        break;
    }
    default:
        break;
    }
}

void Presentation::readTitles()
{
    m_alternate = false;
    const QString first = title(0);
    if (first == kImpedance) {
        m_testType = plot::Impedance;
    } else if (first == kGain) {
        m_testType = plot::Amplitude;
    } else if (first == kReactance) {
        m_testType = plot::Reactance;
    } else if (first == kSwitchedOff) {
        m_alternate = true;
        const QString second = title(1);
        if (second == kAdmittance)
            m_testType = plot::Impedance;
        else if (second == kLoss)
            m_testType = plot::Amplitude;
        else
            m_testType = plot::Reactance;
    }
    m_graph.setWorkingAxis(0);

    m_frequencyLinear = m_graph.XAxisScaleControl() == graph::ScaleLinear;
    if (m_testType == plot::Amplitude || m_testType == plot::Impedance) {
        m_phaseView = plot::NoPhase;
        if (title(2) == kPhase)
            m_phaseView = plot::HalfCycle;
        if (title(3) == kPhase)
            m_phaseView = plot::WholeCycle;
    } else if (m_testType == plot::Reactance) {
        m_rgView = title(3) == kResistance ? plot::Resistance : plot::Conductance;
    }
}

void Presentation::setAlternate(bool alternate)
{
    m_alternate = alternate;
    nameAxes();
}

bool Presentation::setPhaseView(std::int16_t view)
{
    if ((m_testType != plot::Amplitude && m_testType != plot::Impedance) || view < plot::NoPhase ||
        view > plot::WholeCycle)
        return false;
    m_phaseView = view;
    nameAxes();
    return true;
}

bool Presentation::setRGView(std::int16_t view)
{
    if (m_testType != plot::Reactance || view < plot::NeitherRG || view > plot::Conductance)
        return false;
    m_rgView = view;
    nameAxes();
    return true;
}

void Presentation::setFrequencyLinear(bool linear)
{
    m_frequencyLinear = linear;
    m_graph.setXAxisScaleControl(linear ? graph::ScaleLinear : graph::ScaleLogarithmic);
}

void Presentation::setImpedanceLinear(bool linear)
{
    setYScale({1, 0}, linear);
}

void Presentation::setAmplitudeLimits(double minimum, double maximum)
{
    setLimits(0, graph::ScaleManual, minimum, maximum);
    setLimits(1, graph::ScaleManual, -maximum, -minimum);
}

void Presentation::showPens(const Pens& pens)
{
    const bool reactance = m_testType == plot::Reactance;
    const bool third = reactance ? m_rgView == plot::Conductance : m_phaseView == plot::HalfCycle;
    const bool fourth = reactance ? m_rgView == plot::Resistance : m_phaseView == plot::WholeCycle;
    const auto show = [this](int subset, bool shown) { m_graph.setRandomSubsetsToGraph(subset, shown ? subset : -1); };
    for (int pen = 0; pen < plot::kPens; ++pen) {
        const bool shown = !pens.isHidden(pen);
        show(pen, shown && !m_alternate);
        show(pen + plot::kPens, shown && m_alternate);
        show(pen + 2 * plot::kPens, shown && third);
        show(pen + 3 * plot::kPens, shown && fourth);
    }
}

void Presentation::readShownPens(Pens& pens) const
{
    pens.setAllHidden(true);
    const int offset = m_alternate ? plot::kPens : 0;
    for (int slot = 0; slot < plot::kPens; ++slot) {
        int entry = m_graph.RandomSubsetsToGraph(slot);
        // The alternate view keeps its subsets in the second ten slots and leaves -1 in the first.
        if (m_alternate && entry < 0)
            entry = m_graph.RandomSubsetsToGraph(slot + plot::kPens);
        // A 0 can only stand for pen 0, in front: further on the list has ended.
        if (entry == 0 && slot > 0)
            break;
        if (entry < 0 || entry >= offset + plot::kPens)
            continue;
        pens.setHidden(entry >= plot::kPens ? entry - offset : entry, false);
    }
}

double Presentation::plainX(double zoomLimit) const
{
    return isFrequencyLogarithmic() ? hertz(zoomLimit) : zoomLimit;
}

Presentation::CursorTexts Presentation::cursorTexts(int subset, int point) const
{
    CursorTexts texts;
    texts.x = tr("X: %1").arg(values::decimalText(m_graph.XData(subset, point)));
    if (isOverFrequency())
        texts.x += tr(" Hz");
    QString unit;
    if (subset < 2 * plot::kPens) {
        if (m_testType == plot::Amplitude)
            unit = tr(" dB");
        else
            unit = subset < plot::kPens ? tr(" Ohms") : tr(" Siemens");
    } else if (m_testType == plot::Amplitude || m_testType == plot::Impedance) {
        unit = tr(" Deg");
    } else if (m_testType == plot::Reactance) {
        unit = m_rgView == plot::Conductance ? tr(" Siemens") : tr(" Ohms");
    }
    texts.y = tr("Y: %1").arg(values::decimalText(m_graph.YData(subset, point))) + unit;
    return texts;
}
