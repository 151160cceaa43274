// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"
#include "program/UserMessages.h"
#include "tests/support/SettableActive.h"

/// A main window and messages that do nothing and cost nothing, for benchmarks and fuzz targets: they derive and
/// override what they look at. Tests that assert what was asked of the window take the recording ones.
class SilentMainWindow : public MainWindowPort
{
public:
    void setPanel(int, std::string_view) override {}
    void processEvents() override {}
    void fileNew() override {}
    void mnuTestDevice_Click() override {}
    void mnuWindowCloseAll_Click() override {}
    void endProgram() override {}
    void showSettings() override {}
    void unloadDeviceChooser() override {}
    void unloadDeviceWindows() override {}

    SettableActive active;
};

/// Answers every message with OK.
class SilentMessages : public UserMessages
{
public:
    int message(const QString&, int, const QString&) override { return ReplyOk; }
    int systemBox(const QString&, int, const QString&) override { return ReplyOk; }
};
