// SPDX-License-Identifier: GPL-3.0-or-later
// Axes, views and the extent that goes to the instrument.
#include "controls/korvalink/KorvaLink.h"
#include "document/DocumentHost.h"
#include "document/GraphScope.h"
#include "document/GraphTexts.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "prefs/Preferences.h"
#include "program/ProgramState.h"
#include "values/Conversions.h"

#include <QPointer>

#include <algorithm>
#include <cmath>

using namespace graphtexts;

namespace {

/// Degrees; the "180" axis carries the negated magnitude, the "360" axis the signed phase.
constexpr double kHalfCycleMin = -180, kHalfCycleMax = 0;
constexpr double kWholeCycleMin = -180, kWholeCycleMax = 180;

void setTitle(GraphModel& graph, int axis, QLatin1String title)
{
    const AxisScope scope(graph, axis);
    graph.setYAxisLabel(title);
}

void setManualControl(GraphModel& graph, std::initializer_list<int> axes, bool automatic)
{
    for (const int axis : axes) {
        const AxisScope scope(graph, axis);
        graph.setManualScaleControlY(automatic ? graph::ScaleAutomatic : graph::ScaleManual);
    }
}

void setYScale(GraphModel& graph, std::initializer_list<int> axes, bool linear)
{
    for (const int axis : axes) {
        const AxisScope scope(graph, axis);
        graph.setYAxisScaleControl(linear ? graph::ScaleLinear : graph::ScaleLogarithmic);
    }
}

} // namespace

void PenDocument::setManualLimits(int axis, int control, double minimum, double maximum)
{
    const AxisScope scope(m_graph, axis);
    m_graph.setManualScaleControlY(control);
    m_graph.setManualMinY(minimum);
    m_graph.setManualMaxY(maximum);
}

void PenDocument::graphConfigureTestType(std::int16_t iTestType)
{
    const InstrumentMirror& mirror = m_context.mirror;
    pgiTestType = iTestType;
    gbfAltSubset = false;
    giPhaseView = 0;
    giDisplayRG = iTestType == Reactance ? 1 : 0;
    switch (iTestType) {
    case Amplitude:
        setManualLimits(0, graph::ScaleManual, mirror.dblAmpMinDb, mirror.dblAmpMaxDb);
        setManualLimits(1, graph::ScaleManual, -mirror.dblAmpMaxDb, -mirror.dblAmpMinDb);
        break;
    case Impedance:
        setManualLimits(0, graph::ScaleManual, mirror.dblImpMinOhms, mirror.dblImpMaxOhms);
        if (mirror.dblImpMinOhms > 0 && mirror.dblImpMaxOhms > 0)
            setManualLimits(1, graph::ScaleManual, 1.0 / mirror.dblImpMaxOhms, 1.0 / mirror.dblImpMinOhms);
        break;
    case Reactance:
        setManualLimits(0, graph::ScaleAutomatic, mirror.dblReactanceAxisMin, mirror.dblReactanceAxisMax);
        setManualLimits(1, graph::ScaleAutomatic, mirror.dblSusceptanceAxisMin, mirror.dblSusceptanceAxisMax);
        setManualLimits(2, graph::ScaleAutomatic, mirror.dblConductanceAxisMin, mirror.dblConductanceAxisMax);
        setManualLimits(3, graph::ScaleAutomatic, mirror.dblResistanceAxisMin, mirror.dblResistanceAxisMax);
        break;
    default:
        break;
    }
    if (iTestType == Amplitude || iTestType == Impedance) {
        setManualLimits(2, graph::ScaleManual, kHalfCycleMin, kHalfCycleMax);
        setManualLimits(3, graph::ScaleManual, kWholeCycleMin, kWholeCycleMax);
    }
    setYScale(m_graph, {0, 1}, iTestType != Impedance);
    setYScale(m_graph, {2, 3}, true);
    nameAxes();

    gbfPenHide.fill(false);
    graphUpdateDisplayedPens();
    for (int pen = 0; pen < kPens; ++pen)
        graphResetPenName(pen);
    m_graph.setMultiSubTitles(0, lockText());
}

void PenDocument::nameAxes()
{
    QLatin1String main(""), alternate("");
    switch (pgiTestType) {
    case Amplitude:
        main = kGain;
        alternate = kLoss;
        break;
    case Impedance:
        main = kImpedance;
        alternate = kAdmittance;
        break;
    case Reactance:
        main = kReactance;
        alternate = kSusceptance;
        break;
    default:
        break;
    }
    setTitle(m_graph, 0, gbfAltSubset ? kSwitchedOff : main);
    setTitle(m_graph, 1, gbfAltSubset ? alternate : kSwitchedOff);
    if (pgiTestType == Reactance) {
        setTitle(m_graph, 2, giDisplayRG == 2 ? kConductance : kSwitchedOff);
        setTitle(m_graph, 3, giDisplayRG == 1 ? kResistance : kSwitchedOff);
    } else {
        setTitle(m_graph, 2, giPhaseView == 1 ? kPhase : kSwitchedOff);
        setTitle(m_graph, 3, giPhaseView == 2 ? kPhase : kSwitchedOff);
    }
    m_graph.setWorkingAxis(0);
}

void PenDocument::graphConfigureFrequncyView(bool Linear)
{
    const InstrumentMirror& mirror = m_context.mirror;
    gbfXLinear = Linear;
    m_graph.setXAxisLabel(kFrequency);
    m_graph.setXAxisScaleControl(Linear ? graph::ScaleLinear : graph::ScaleLogarithmic);
    m_graph.setManualScaleControlX(graph::ScaleManual);
    // A sweep fills the graph that it was set up for.
    const double start = std::min(mirror.dblStartFrequency, mirror.dblEndFrequency);
    const double end = std::max(mirror.dblStartFrequency, mirror.dblEndFrequency);
    const bool sweep = start > 0 && start < end;
    m_graph.setManualMinX(sweep ? start : mirror.dblAmpMinFreq);
    m_graph.setManualMaxX(sweep ? end : mirror.dblAmpMaxFreq);
}

void PenDocument::graphSetDefaultView()
{
    const Preferences& preferences = m_context.preferences;
    const auto phaseView = [&preferences](const options::Option<options::Integer>& option) {
        return values::roundToInt16(preferences.value(option));
    };
    const QPointer<PenDocument> self(this);
    switch (pgiTestType) {
    case Amplitude:
        setManualControl(m_graph, {0, 1}, preferences.value(options::kAmplitudeAxisScaleAuto));
        graphSetPhase(phaseView(options::kAmplitudePhaseGraph));
        graphSetFrequecyLinear(preferences.value(options::kAmplitudeAxisScaleLin));
        break;
    case Impedance:
        setManualControl(m_graph, {0, 1}, preferences.value(options::kImpedanceDisplayLimits) == options::kAutoLimits);
        ImpedanceLinear(false);
        graphSetPhase(phaseView(options::kImpedancePhaseGraph));
        graphSetFrequecyLinear(preferences.value(options::kImpedanceAxisScaleLin));
        break;
    case Reactance: {
        setManualControl(m_graph, {0, 1}, preferences.value(options::kReactanceReactAuto));
        setManualControl(m_graph, {2, 3}, preferences.value(options::kReactanceResAuto));
        const bool impedance = preferences.value(options::kReactanceImpedance);
        graphSetAlternateView(!impedance);
        if (!self)
            return;
        graphSetRG(impedance ? 1 : 2);
        graphSetFrequecyLinear(!preferences.value(options::kReactanceFreqLog));
        break;
    }
    default:
        break;
    }
    if (self)
        m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphSetAlternateView(bool bfAlternate)
{
    gbfAltSubset = bfAlternate;
    nameAxes();
    updatePopupChecks();
    graphUpdateDisplayedPens();
    // The Y limits of stored zooms belong to the other quantity.
    gcolZooms.RemoveStoredZooms(0);
    const QPointer<PenDocument> self(this);
    m_graph.PEactions(graph::UndoZoom);
    if (!self)
        return;
    gbfZoomExtents = true;
    updateZoomButtons();
}

void PenDocument::graphSetPhase(std::int16_t View)
{
    if ((pgiTestType != Amplitude && pgiTestType != Impedance) || View < 0 || View > 2)
        return;
    giPhaseView = View;
    nameAxes();
    updatePopupChecks();
    graphUpdateDisplayedPens();
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphSetRG(std::int16_t View)
{
    if (pgiTestType != Reactance || View < 0 || View > 2)
        return;
    giDisplayRG = View;
    nameAxes();
    updatePopupChecks();
    graphUpdateDisplayedPens();
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphSetAmpScale(std::int16_t iMax, std::int16_t iMin)
{
    setManualLimits(0, graph::ScaleManual, iMin, iMax);
    setManualLimits(1, graph::ScaleManual, -iMax, -iMin);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::graphSetFrequecyLinear(bool bfXLin)
{
    const bool changes = gbfXLinear != bfXLin;
    gbfXLinear = bfXLin;
    m_graph.setXAxisScaleControl(bfXLin ? graph::ScaleLinear : graph::ScaleLogarithmic);
    // Stored X limits are exponents on one scale and plain on the other.
    gcolZooms.RemoveStoredZooms(0);
    const QPointer<PenDocument> self(this);
    m_graph.PEactions(graph::UndoZoom);
    if (!self)
        return;
    gbfZoomExtents = true;
    updateZoomButtons();
    if (changes)
        UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
}

void PenDocument::graphUpdateDisplayedPens()
{
    const bool reactance = pgiTestType == Reactance;
    const bool third = reactance ? giDisplayRG == 2 : giPhaseView == 1;
    const bool fourth = reactance ? giDisplayRG == 1 : giPhaseView == 2;
    const auto show = [this](int subset, bool shown) { m_graph.setRandomSubsetsToGraph(subset, shown ? subset : -1); };
    for (int pen = 0; pen < kPens; ++pen) {
        const bool shown = !isHidden(pen);
        show(pen, shown && !gbfAltSubset);
        show(pen + kPens, shown && gbfAltSubset);
        show(pen + 2 * kPens, shown && third);
        show(pen + 3 * kPens, shown && fourth);
    }
}

void PenDocument::ImpedanceLinear(bool bfLinear)
{
    setYScale(m_graph, {1, 0}, bfLinear);
    m_graph.PEactions(graph::Reinitialise);
}

void PenDocument::SendGraphExtents()
{
    if (!m_graph.Zoomed() && m_context.mirror.bfGraphExtents)
        UpdateTestExtents(m_graph.ManualMinX(), m_graph.ManualMaxX());
    else
        UpdateTestExtents(m_gdblTestMinFreq, m_gdblTestMaxFreq);
}

void PenDocument::UpdateTestExtents(double lMinFreq, double lMaxFreq)
{
    const QPointer<PenDocument> self(this);
    m_context.host.processEvents();
    if (!self || m_context.state.gbfSweepActive)
        return;
    m_gdblTestMinFreq = lMinFreq;
    m_gdblTestMaxFreq = lMaxFreq;
    KorvaLink& device = m_context.device;
    if (!device.Connected() || !gbfSendZoom || !m_context.mirror.bfGraphExtents)
        return;
    // An axis of something else, trim codes for one, has no extents to sweep.
    if (m_graph.XAxisLabel() != kFrequency)
        return;
    // The exponents of a zoom can lie beyond any frequency: that is nothing to command.
    if (!std::isfinite(lMinFreq) || !std::isfinite(lMaxFreq))
        return;
    device.Write(QStringLiteral("startfreq %1\r").arg(values::plainDecimalText(lMinFreq)));
    device.Write(QStringLiteral("endfreq %1\r").arg(values::plainDecimalText(lMaxFreq)));
    device.Write(m_graph.XAxisScaleControl() == graph::ScaleLogarithmic ? QStringLiteral("linear 0\r")
                                                                        : QStringLiteral("linear 1\r"));
}
