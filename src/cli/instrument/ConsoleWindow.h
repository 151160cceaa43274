// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"

#include <functional>

namespace cli {

/// The main window of a program without one: a single document is the active one, everything to be shown goes nowhere,
/// and the changes of state that a sweep waits for are told by callbacks.
class ConsoleWindow : public MainWindowPort
{
public:
    std::function<void()> onEndProgram; ///< the instrument's script ends the program

    void processEvents() override;

    void setPanel(int, std::string_view) override {}
    void fileNew() override {}
    void mnuTestDevice_Click() override {}
    void mnuWindowCloseAll_Click() override {}
    void endProgram() override;
    void showSettings() override {}
    void unloadDeviceChooser() override {}
    void unloadDeviceWindows() override {}
};

} // namespace cli
