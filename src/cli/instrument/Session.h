// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "cli/instrument/ConsoleWindow.h"
#include "cli/plots/Workspace.h"
#include "link/DeviceModule.h"
#include "link/TestRun.h"

namespace cli {

/// The engine of the program with a console in place of its windows: a workspace and an instrument.
class Session
{
public:
    /// The console outlives the session.
    explicit Session(Console& console);

    /// Opens the instrument of that serial number, the terminal device of that path, or the first that opens.
    Outcome open(const QString& device);
    /// As in a workspace; the new document is the active one.
    PenDocument& newDocument(std::int16_t testType) { return m_workspace.newDocument(testType); }

    KorvaLink& device() { return m_workspace.device(); }
    InstrumentMirror& mirror() { return m_workspace.mirror(); }
    const ProgramState& state() { return m_workspace.state(); }
    ConsoleMessages& messages() { return m_messages; }
    ConsoleWindow& window() { return m_window; }
    DeviceModule& deviceModule() { return m_deviceModule; }
    TestRun& testRun() { return m_testRun; }

private:
    Outcome openListed(const QString& serial);

    ConsoleMessages m_messages;
    ConsoleWindow m_window;
    Workspace m_workspace;
    DeviceModule m_deviceModule;
    TestRun m_testRun;
};

} // namespace cli
