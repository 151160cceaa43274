// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "document/PenDocument.h"
#include "link/MainWindowPort.h"

#include <QCoreApplication>
#include <QPointer>
#include <QStringList>

#include <functional>
#include <map>

/// A main window without a window: keeps what it was told and does what the test gave it to do.
class RecordingMainWindow : public MainWindowPort
{
public:
    QPointer<PenDocument> active;
    std::map<int, QString> panels;
    bool penBarEnabled = true;
    bool repeatStatus = false;
    bool wizardReads = false;
    bool testGoesOn = false; ///< answer of QuestionTestCancel
    QStringList calls;       ///< names of the operations, with their argument where there is one
    std::function<void()> onProcessEvents, onDeviceChooser, onFileNew, onShowSettings, onCloseAll, onEndProgram;

    PenDocument* activeDocument() const override { return active; }
    void updateToolBars(PenDocument&) override {}
    void defaultToolBars() override {}
    void penShowCurrent(int iPenNumber) override { note("penShowCurrent", iPenNumber); }
    bool QuestionTestCancel() override
    {
        note("QuestionTestCancel");
        return testGoesOn;
    }
    void UpdateQuickFileList(const QString&) override {}
    void removeDocument(const QString& strKey) override { calls << QStringLiteral("removeDocument ") + strKey; }
    void processEvents() override
    {
        QCoreApplication::processEvents();
        run(onProcessEvents);
    }

    void setPanel(int index, std::string_view text) override
    {
        panels[index] = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    }
    void setPenBarEnabled(bool enabled) override { penBarEnabled = enabled; }
    void SetRepeatStatus(bool bfRepeat) override
    {
        repeatStatus = bfRepeat;
        note("SetRepeatStatus", bfRepeat ? 1 : 0);
    }
    void penSetActive(int iPenNumber) override { note("penSetActive", iPenNumber); }
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
    void showLoopView() override { note("showLoopView"); }
    void refreshLoopView() override { ++loopRefreshes; }
    void closeLoopView() override { note("closeLoopView"); }
    bool firmwareWizardReadsVersion() const override { return wizardReads; }
    void showWizardVersion(const QString& text) override { wizardVersion = text; }

    int loopRefreshes = 0;
    QString wizardVersion;

private:
    void note(const char* name) { calls << QLatin1String(name); }
    void note(const char* name, int argument)
    {
        calls << QLatin1String(name) + QLatin1Char(' ') + QString::number(argument);
    }
    // A copy: the action may take itself away.
    static void run(std::function<void()> action)
    {
        if (action)
            action();
    }
};
