// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "program/Version.h"

#include <QString>

#include <array>
#include <cstdint>

/// What the whole program shares beside the instrument's mirror. One object per running program, owned by its start-up
/// code and handed to those who need it by reference; everything runs on the user-interface thread.
struct ProgramState
{
    QString gstrAppTitle = version::programTitle();      ///< title without instance number; key of the settings store
    QString gstrInstanceTitle = version::programTitle(); ///< title with instance number; key of the window position
    bool gbfSplashShown = false;   ///< the splash must be taken down when the main window has loaded
    std::int16_t giNewDocType = 1; ///< type of the next new document: 1 amplitude, 2 impedance, 3 reactance, 0 none
    bool gbfPlotting = false;      ///< from frame "D" to frame "E"
    bool gbfSweepActive = false;   ///< multi-pen run
    bool gbfScriptRunning = false;
    bool gbfDeviceReady = false;                 ///< the complete state has arrived: the settings dialog is live
    std::array<std::uint32_t, 10> glPenColour{}; ///< default pen colours, 0x00BBGGRR
};
