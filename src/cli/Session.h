// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/Console.h"
#include "cli/ConsoleWindow.h"
#include "controls/korvalink/DeviceList.h"
#include "controls/korvalink/KorvaLink.h"
#include "document/ActiveDocument.h"
#include "document/PenDocument.h"
#include "instrument/InstrumentMirror.h"
#include "link/DeviceModule.h"
#include "link/InstrumentPlotSource.h"
#include "link/TestRun.h"
#include "prefs/Preferences.h"
#include "prefs/SettingsStore.h"
#include "program/ProgramState.h"

#include <QTemporaryDir>

#include <memory>

namespace cli {

/// The engine of the program with a console in place of its windows, and one document.
///
/// Settings are those of a fresh installation and are forgotten at the end: what a sweep does depends on the command
/// line alone, and the user's own settings of an instrument stay as they are.
class Session
{
public:
    /// The console outlives the session.
    explicit Session(Console& console);

    /// Opens the instrument of that serial number, the terminal device of that path, or the first that opens.
    Outcome open(const QString& device);
    /// A new document of that type takes the place of the one before, in the default view, with the phase when it is
    /// measured. The sweep settings must stand in the mirror.
    PenDocument& newDocument(std::int16_t testType);

    /// The plot of a file takes the place of the document before, with the look that the file gives it.
    ValueOr<PenDocument*> openPlot(const QString& fileName);

    /// The document that newDocument() or openPlot() has made last.
    PenDocument& document() { return *m_document; }
    KorvaLink& device() { return m_device; }
    InstrumentMirror& mirror() { return m_mirror; }
    const ProgramState& state() const { return m_state; }
    ConsoleMessages& messages() { return m_messages; }
    ConsoleWindow& window() { return m_window; }
    DeviceModule& deviceModule() { return m_deviceModule; }
    TestRun& testRun() { return m_testRun; }

private:
    Outcome openListed(const QString& serial);
    PenDocument& replaceDocument();

    QTemporaryDir m_settingsFolder;
    SettingsStore m_store;
    ProgramState m_state;
    Preferences m_preferences;
    ConsoleMessages m_messages;
    ConsoleWindow m_window;
    DeviceList m_devices;
    KorvaLink m_device;
    InstrumentMirror m_mirror;
    ActiveDocument m_active;
    InstrumentPlotSource m_source;
    DeviceModule m_deviceModule;
    TestRun m_testRun;
    std::unique_ptr<PenDocument> m_document;
};

} // namespace cli
