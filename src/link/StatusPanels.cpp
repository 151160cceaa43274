// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/StatusPanels.h"

#include "instrument/InstrumentEvents.h"
#include "instrument/InstrumentMirror.h"
#include "program/ProgramState.h"
#include "values/EngineeringText.h"

void StatusPanels::follow(InstrumentEvents& events, const InstrumentMirror& mirror, const ProgramState& state)
{
    const auto on = [&events](auto signal, auto handler) { QObject::connect(&events, signal, &events, handler); };
    on(&InstrumentEvents::connected, [this] { show(State, "Connected"); });
    on(&InstrumentEvents::lost, [this] { clear(); });
    on(&InstrumentEvents::phaseReported, [this](bool phase) { show(Phase, phase ? "On" : "Off"); });
    on(&InstrumentEvents::periodReported, [this](double milliseconds) { ShowTestPeriod(milliseconds); });
    on(&InstrumentEvents::sweepModeReported, [this](int mode) { ShowSweepMode(mode); });
    on(&InstrumentEvents::changed, [this, &mirror, &state](MirrorPart part) { showChanged(part, mirror, state); });
}

void StatusPanels::showChanged(MirrorPart part, const InstrumentMirror& mirror, const ProgramState& state)
{
    switch (part) {
    case MirrorPart::Attenuation:
        ShowAttenuation(mirror.iAttenuationCode, mirror.dblAttenuationStep);
        break;
    case MirrorPart::IdleFrequency:
        ShowIdleFrequency(mirror.dblIdleFrequency);
        break;
    case MirrorPart::SweepRangeConfirmed:
        showFrequency(StartFrequency, mirror.dblStartFrequency);
        showFrequency(EndFrequency, mirror.dblEndFrequency);
        break;
    case MirrorPart::Points:
        // While a test runs the panel belongs to its progress.
        if (!state.gbfPlotting)
            showPoints(mirror.iPointsInTest);
        break;
    default:
        break;
    }
}

void StatusPanels::clear()
{
    show(State, "Disconnected");
    show(Pen, "1");
    for (const Panel panel :
         {StartFrequency, EndFrequency, Points, Phase, Period, IdleFrequency, SweepMode, Attenuation})
        show(panel, {});
}

void StatusPanels::showFrequency(Panel panel, double hertz)
{
    show(panel, values::frequencyText(hertz));
}

void StatusPanels::showPoints(double points)
{
    show(Points, values::pointsText(points));
}

void StatusPanels::showProgress(int point, int points)
{
    show(Points, values::progressText(point, points));
}

void StatusPanels::ShowAttenuation(int code, double dblAttenuationStep)
{
    show(Attenuation, values::attenuationText(code, dblAttenuationStep));
}

void StatusPanels::ShowIdleFrequency(double value)
{
    if (value == 0)
        show(IdleFrequency, "Off");
    else if (value == -1)
        show(IdleFrequency, "Start");
    else
        showFrequency(IdleFrequency, value);
}

void StatusPanels::ShowSweepMode(int mode)
{
    static constexpr std::string_view kModes[] = {"A to B", "B to A", "Alternate"};
    if (mode >= 0 && mode <= 2)
        show(SweepMode, kModes[mode]);
}

void StatusPanels::ShowTestPeriod(double ms)
{
    show(Period, values::millisecondsText(ms));
}
