// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"

enum class MirrorPart;
class InstrumentEvents;
struct InstrumentMirror;
struct ProgramState;

/// The status bar's panels 1 to 10, in the wording they have. Texts are put together without allocation: a panel
/// changes with every measured point.
class StatusPanels
{
public:
    enum Panel
    {
        State = 1,
        Pen,
        StartFrequency,
        EndFrequency,
        Points,
        Phase,
        Period,
        IdleFrequency,
        SweepMode,
        Attenuation
    };

    explicit StatusPanels(MainWindowPort& port)
        : m_port(port)
    {}

    /// From now on the panels of link and settings follow the instrument. All that is handed over lives as long as
    /// this; the mirror is read when an event is raised.
    void follow(InstrumentEvents& events, const InstrumentMirror& mirror, const ProgramState& state);

    void show(Panel panel, std::string_view text) { m_port.setPanel(panel, text); }
    /// The value and " Hz".
    void showFrequency(Panel panel, double hertz);
    /// The value and " pts".
    void showPoints(double points);
    /// Number of the point from 1, "/", points of the test and " pts".
    void showProgress(int point, int points);

    /// Minus code times step, " dB"; at most six significant digits.
    void ShowAttenuation(int code, double dblAttenuationStep);
    /// "Off" for 0, "Start" for -1, else the value and " Hz".
    void ShowIdleFrequency(double value);
    /// "A to B", "B to A", "Alternate" for 0, 1, 2; untouched otherwise.
    void ShowSweepMode(int mode);
    /// The value and " mS".
    void ShowTestPeriod(double ms);

private:
    void showChanged(MirrorPart part, const InstrumentMirror& mirror, const ProgramState& state);
    void clear();

    MainWindowPort& m_port;
};
