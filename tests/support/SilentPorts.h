// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"
#include "program/UserMessages.h"

/// A main window and messages that do nothing and cost nothing, for benchmarks and fuzz targets: they derive and
/// override what they look at. Tests that assert what was asked of the window take the recording ones.
template <typename Port>
class SilentHost : public Port
{
public:
    PenDocument* activeDocument() const override { return active; }
    void updateToolBars(PenDocument&) override {}
    void defaultToolBars() override {}
    void penShowCurrent(int) override {}
    bool QuestionTestCancel() override { return false; }
    void UpdateQuickFileList(const QString&) override {}
    void removeDocument(const QString&) override {}
    void processEvents() override {}

    PenDocument* active = nullptr;
};

using SilentDocumentHost = SilentHost<DocumentHost>;

class SilentMainWindow : public SilentHost<MainWindowPort>
{
public:
    void setPanel(int, std::string_view) override {}
    void setPenBarEnabled(bool) override {}
    void SetRepeatStatus(bool) override {}
    void penSetActive(int) override {}
    void fileNew() override {}
    void mnuTestDevice_Click() override {}
    void mnuWindowCloseAll_Click() override {}
    void endProgram() override {}
    void showSettings() override {}
    void unloadDeviceChooser() override {}
    void unloadDeviceWindows() override {}
    void showLoopView() override {}
    void refreshLoopView() override {}
    void closeLoopView() override {}
    bool firmwareWizardReadsVersion() const override { return false; }
    void showWizardVersion(const QString&) override {}
};

/// Answers every message with OK.
class SilentMessages : public UserMessages
{
public:
    int message(const QString&, int, const QString&) override { return ReplyOk; }
    int systemBox(const QString&, int, const QString&) override { return ReplyOk; }
};
