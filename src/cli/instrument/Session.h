// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "cli/instrument/ConsoleWindow.h"
#include "cli/plots/Workspace.h"
#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/InstrumentPlotSource.h"
#include "link/TestRun.h"
#include "program/ProgramState.h"

namespace cli {

/// The engine of the program with a console in place of its windows: a workspace and an instrument.
class Session
{
public:
    /// The console outlives the session, and so does what takes the place of its messages and of its window.
    explicit Session(Console& console, UserMessages* messages = nullptr, MainWindowPort* port = nullptr);

    /// Opens the instrument of that serial number, the terminal device of that path, or the first that opens.
    Outcome open(const QString& device);
    /// As in a workspace; with the phase when the mirror says so. The sweep settings must stand there.
    PenDocument& newDocument(std::int16_t testType) { return m_workspace.newDocument(testType, m_mirror.bfPhaseOn); }
    PenDocument& document() { return m_workspace.document(); }

    KorvaLink& device() { return m_device; }
    InstrumentMirror& mirror() { return m_mirror; }
    ProgramState& state() { return m_state; }
    Preferences& preferences() { return m_workspace.preferences(); }
    ActiveDocument& active() { return m_workspace.active(); }
    const PlotSource& source() const { return m_source; }
    ConsoleMessages& messages() { return m_messages; }
    ConsoleWindow& window() { return m_window; }
    DeviceModule& deviceModule() { return m_deviceModule; }
    TestRun& testRun() { return m_testRun; }

private:
    Outcome openListed(const QString& serial);

    ConsoleMessages m_messages;
    ConsoleWindow m_window;
    ProgramState m_state;
    DeviceList m_devices;
    KorvaLink m_device;
    InstrumentMirror m_mirror;
    InstrumentPlotSource m_source;
    Workspace m_workspace;
    DeviceModule m_deviceModule;
    TestRun m_testRun;
};

} // namespace cli
