// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/MainWindowPort.h"
#include "support/SettableActive.h"

#include <QCoreApplication>
#include <QStringList>

#include <functional>
#include <map>

/// A main window without a window: keeps what it was told and does what the test gave it to do.
class RecordingMainWindow : public MainWindowPort
{
public:
    SettableActive active;
    std::map<int, QString> panels;
    QStringList calls; ///< names of the operations, with their argument where there is one
    std::function<void()> onProcessEvents, onDeviceChooser, onFileNew, onShowSettings, onCloseAll, onEndProgram;

    void processEvents() override
    {
        QCoreApplication::processEvents();
        run(onProcessEvents);
    }

    void setPanel(int index, std::string_view text) override
    {
        panels[index] = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }
    void fileNew() override
    {
        note("fileNew");
        run(onFileNew);
    }
    void mnuTestDevice_Click() override
    {
        note("mnuTestDevice_Click");
        run(onDeviceChooser);
    }
    void mnuWindowCloseAll_Click() override
    {
        note("mnuWindowCloseAll_Click");
        run(onCloseAll);
    }
    void endProgram() override
    {
        note("endProgram");
        run(onEndProgram);
    }
    void showSettings() override
    {
        note("showSettings");
        run(onShowSettings);
    }
    void unloadDeviceChooser() override { note("unloadDeviceChooser"); }
    void unloadDeviceWindows() override { note("unloadDeviceWindows"); }

private:
    void note(const char* name) { calls << QLatin1String(name); }
    // A copy: the action may take itself away.
    static void run(std::function<void()> action)
    {
        if (action)
            action();
    }
};
