// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/StatusPanels.h"

#include "values/EngineeringText.h"

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
